#pragma once

#include <QString>
#include <QStringList>

namespace pvardo::store {
class Recordset;
}

namespace pvardo::cases {

// The status of a case: one letter in PBSTATUS, chosen from the status list
// by its first letter. The list offers the same words the case, the listings
// and the letters show for the letters.
class CaseStatus
{
public:
    // The list's entries after its placeholder "<select>".
    static QStringList statusListTexts();
    static QString placeholder() { return QStringLiteral("<select>"); }
    // The letter stored for a list text: its first letter.
    static QString letterOf(const QString& listText);
    // The word shown for a letter; any other value comes back unchanged.
    static QString statusVerbose(const QString& letter);
    // Pending, initial and on-appeal cases are the active ones of the reports.
    static bool isActive(const QString& letter);
    static QString activeCriteria();
    // True when PBSTATUS of the current row is exactly "V".
    static bool isVoided(const store::Recordset& caseRow);
};

} // namespace pvardo::cases
