#pragma once

#include <QString>

namespace pvardo {

// The file operation the backup uses to copy the database folder.
enum class ShellOperation {
    Copy = 2,
};

// Flags of ShellCopy, with the values the office's backup passes (0x210).
namespace ShellFlags {
constexpr int Silent = 0x0004; // no progress (there is none here anyway)
constexpr int NoConfirmation = 0x0010; // replace existing files without asking
constexpr int NoConfirmMkdir = 0x0200; // make missing folders without asking
} // namespace ShellFlags

// Results of ShellCopy; 0 is success.
namespace ShellResult {
constexpr int Success = 0;
constexpr int Cancelled = 0x75; // the user declined to replace a file
constexpr int SourceMissing = 0x7C; // nothing to copy at the source
constexpr int Unsupported = 0x78; // an operation other than a copy
constexpr int CopyFailed = 0x402; // a file could not be read or written
constexpr int BadDestination = 0x10000 | 0x74; // the destination cannot be made or written
} // namespace ShellResult

// Copies a file or a whole folder. A folder copied into an existing folder
// arrives there as a subfolder of its own name; copied to a name that does
// not exist, it arrives under that name. A file likewise goes into an
// existing folder or to the new name.
//
// Each database file (*.db) is copied through SQLite's online backup, so a copy
// taken while another workstation writes holds either the state before or after
// that write, never half of it; the journals beside them (-journal, -wal, -shm)
// are left out, since the copy needs none. A *.db file that is not a database
// is copied byte for byte. Every file is written to a temporary name first, so
// each copied file is whole.
//
// Without ShellFlags::NoConfirmation, replacing an existing file is asked
// through the prompt service. A file that fails does not stop the others;
// the result is then the failure's number, with its reason in `error`.
int ShellCopy(
    ShellOperation operation, const QString& from, const QString& to, int flags, QString* error = nullptr);

// Copies one SQLite database file through the online backup into `to`, whole
// or not at all; gives false with a reason.
bool copyDatabaseFile(const QString& from, const QString& to, QString* error = nullptr);

} // namespace pvardo
