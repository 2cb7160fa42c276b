#pragma once

#include "documents/Merge.h"

#include <QString>

class QTextDocument;

namespace pvardo::store {
class Recordset;
}

namespace pvardo::cases {

// The letters and listings of a case: what the case screen's PlugVars fills
// and the listing of cases.

// The columns of a case a letter can name: the first 91 places of the case
// table. The last ones, from PBSCHOOLDIST on, have no placeholder.
constexpr int CaseLetterColumns = 91;

// The detail page of a case, in the forms folder.
inline QString caseDetailTemplate() { return QStringLiteral("pbappd.rtf"); }

// The fixed words of a case row: its number, its status word and its parcel
// in display form.
documents::FixedWords caseFixedWords(const store::Recordset& caseRow);

// The case screen's PlugVars on a case row: the fixed words, then the column
// placeholders in the order of the case table.
void plugCaseValues(QTextDocument& buffer, const store::Recordset& caseRow, const documents::FixedWords& words);

// The contact of a case, to whom its letters go, and the applicant, to whom
// its detail page goes.
documents::Addressee caseContact(const store::Recordset& caseRow);
documents::Addressee caseApplicant(const store::Recordset& caseRow);

} // namespace pvardo::cases
