#pragma once

#include <QString>

namespace pvardo {
struct Session;
}

namespace pvardo::cases {

// The change log another program of the office reads: each write of a case
// appends a line to \changed.txt of the database folder, and \homebound.txt of
// the program folder holds the time of the last change. Nothing is logged
// when the parcel store is shared with the sibling inspection program.
class CaseChangeLog
{
public:
    // Appends the code, the key name, the number padded to 25 and the present
    // date and time; then replaces \homebound.txt. Gives false, with a reason,
    // when a file could not be written (the case itself is written all the same).
    static bool LogCaseChange(const Session& session, const QString& code, const QString& keyName,
        const QString& caseNumber, QString* error = nullptr);
    // The date and time as the log writes them.
    static QString logTime();
};

} // namespace pvardo::cases
