#include "cases/CaseLetters.h"

#include "cases/CaseStatus.h"
#include "documents/Placeholders.h"
#include "documents/PrintState.h"
#include "parcels/SblParts.h"
#include "store/Catalogue.h"
#include "store/Recordset.h"

#include <QTextDocument>

namespace pvardo::cases {

documents::FixedWords caseFixedWords(const store::Recordset& caseRow)
{
    documents::FixedWords words;
    words.caseNumber = caseRow.text(QStringLiteral("PBCASE")).trimmed();
    words.statusWord = CaseStatus::statusVerbose(caseRow.text(QStringLiteral("PBSTATUS")));
    parcels::SblParts parts;
    words.sbl = parts.mysbl2SBL(parcels::SblParts::currentSBL(caseRow));
    return words;
}

void plugCaseValues(QTextDocument& buffer, const store::Recordset& caseRow, const documents::FixedWords& words)
{
    documents::plugFixedWords(buffer, documents::ScreenCodes::Case, words);
    const store::TableDef& table = store::tableDef(store::Table::PBPROJ);
    documents::plugColumns(buffer, documents::columnValuesOf(caseRow, table.places, CaseLetterColumns));
}

documents::Addressee caseContact(const store::Recordset& caseRow)
{
    return documents::SplitAddress(caseRow.text(QStringLiteral("PBCONTACTNAME1")),
                                   caseRow.text(QStringLiteral("PBCONTACTADDR1")));
}

documents::Addressee caseApplicant(const store::Recordset& caseRow)
{
    return documents::SplitAddress(caseRow.text(QStringLiteral("PBAPPNAME1")),
                                   caseRow.text(QStringLiteral("PBAPPADDR1")));
}

} // namespace pvardo::cases
