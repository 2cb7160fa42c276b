#pragma once

#include "common/DriveKind.h"
#include "common/ShellCopy.h"
#include "common/Waiting.h"

#include <QByteArray>
#include <QString>
#include <functional>

namespace pvardo {

// Tests whether a file is there by opening it for reading and closing it.
//
// - An empty path (after trimming) is not there.
// - A file that is there but cannot be read (no permission, busy) counts as
//   there: another workstation may hold it, and the callers only want to know
//   whether to create or copy it.
// - A missing file or folder is not there, without a word.
// - A medium that is not ready, or a network share that does not answer, asks
//   "Make sure the disk is in the drive." with OK and Cancel; OK tries again.
// - A name the system refuses says so and is not there; any other failure
//   says "Unexpected error: " with the number and its text.
// After a message that is not retried the result is false and StopFlag is set.
bool FileExists(const QString& path);

// The error of a failed open, in the numbers the office's messages use:
// 53 file not found, 76 path not found, 68 device unavailable, 70 permission
// denied, 75 path/file access error, 71 disk not ready, 52 bad file name,
// 57 device I/O error, 67 too many files; another failure 1000 plus the
// system's error number.
struct FileError
{
    int number = 0;
    QString description;
};
FileError fileErrorOf(int systemError);

// Deletes a file if FileExists says it is there, then waits one second in any
// case. Every error is ignored.
void KillIfPresent(const QString& path);

// Renames a file; a failure (a file of the new name already there, a missing
// source) is ignored.
void RenameQuietly(const QString& from, const QString& to);

// The system's folder for temporary files, cut at NUL, without a trailing
// separator.
QString TempPath();

namespace detail {
// Opens a path for reading and closes it; gives 0 or the system's error number.
using OpenProbe = std::function<int(const QByteArray& nativePath)>;
// FileExists with another way of opening, for the failures a test cannot make
// happen on a real disk (a drive without its medium).
bool FileExistsWith(const QString& path, const OpenProbe& probe);
} // namespace detail

} // namespace pvardo
