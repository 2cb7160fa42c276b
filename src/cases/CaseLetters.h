#pragma once

#include "documents/Listing.h"
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

// The detail page of a case and the head of the case listing, in the forms
// folder.
inline QString caseDetailTemplate() { return QStringLiteral("pbappd.rtf"); }
inline QString caseListingHead() { return QStringLiteral("apphead.rtf"); }

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

// The body of the case listing: number, year, description, status,
// applicant and site, in columns of 12, 12, 30, 25, 26 and 26 characters.
QList<documents::ListingColumn> caseListingColumns();

// Builds the listing of the cases of `rows` into `report`: the head file with
// the heading put in for "%sh", a line per case, then "TOTAL = " and the
// count. Gives the number of cases listed.
int buildCaseListing(QTextDocument& report, store::Recordset& rows, const QString& heading,
                     const QString& headPath, double fontSize);

} // namespace pvardo::cases
