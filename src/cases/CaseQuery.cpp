#include "cases/CaseQuery.h"

#include "cases/CaseStatus.h"
#include "store/SqlSubset.h"

namespace pvardo::cases {

namespace {

// The places of the map that are searched by their text: from the site
// location to the north grid. Section, block, lot and the two sublots must
// match exactly; everything else matches anywhere in the column.
constexpr int FirstSearchedPlace = 2;
constexpr int LastSearchedPlace = 91;
constexpr int FirstExactPlace = 8;
constexpr int LastExactPlace = 12;
// The contact's address box also tests the expiry date: kept as the office's
// searches have always run.
constexpr int ContactAddressBox = 21;

} // namespace

QList<QPair<QString, QString>> CaseQuery::listColumns()
{
    return {
        {QStringLiteral("Combo1"), QStringLiteral("PBTYPE")},
        {QStringLiteral("Combo2"), QStringLiteral("PBUSE")},
        {QStringLiteral("Combo3"), QStringLiteral("PBACC")},
        {QStringLiteral("Combo4"), QStringLiteral("PBCURZONE")},
        {QStringLiteral("Combo6"), QStringLiteral("PBSTRUCTYPE")},
        {QStringLiteral("Combo7"), QStringLiteral("PBFOOTTYPE")},
        {QStringLiteral("Combo8"), QStringLiteral("PBFOOTERMAT")},
    };
}

std::optional<QString> CaseQuery::build(const store::ColumnMap& map, const CaseExample& example)
{
    bool criterion = false;
    QString sql = QStringLiteral("Select * from PBPROJ where ");

    const QString caseNumber = example.caseNumber.trimmed();
    if (!caseNumber.isEmpty()) {
        sql += QStringLiteral("[PBCASE] = ") + store::quotedText(caseNumber) + QStringLiteral(" AND");
        criterion = true;
    }

    const int last = std::min(LastSearchedPlace, map.count());
    for (int place = FirstSearchedPlace; place <= last; ++place) {
        const store::ColumnMap::Place& entry = map.place(place);
        if (entry.box <= 0 || !example.box) {
            continue;
        }
        const QString text = example.box(entry.box).trimmed();
        if (text.isEmpty()) {
            continue;
        }
        sql += QLatin1Char('[') + entry.name + QStringLiteral("] ");
        if (place >= FirstExactPlace && place <= LastExactPlace) {
            sql += QStringLiteral(" = ") + store::quotedText(text);
        } else {
            sql += QStringLiteral("like ") + store::quotedText(QLatin1Char('%') + text + QLatin1Char('%'));
        }
        sql += QStringLiteral(" AND");
        criterion = true;
    }

    for (const auto& [column, text] : example.lists) {
        if (text == CaseStatus::placeholder()) {
            continue;
        }
        sql += QStringLiteral(" [") + column + QStringLiteral("] like ")
            + store::quotedText(QLatin1Char('%') + text + QLatin1Char('%')) + QStringLiteral(" AND");
        criterion = true;
    }

    if (example.fileDateMarked) {
        sql += QStringLiteral("[PBFILEDATE] = #") + example.fileDate.toString(QStringLiteral("MM/dd/yyyy"))
            + QStringLiteral("# AND");
        criterion = true;
    }

    if (example.box) {
        const QString contactAddress = example.box(ContactAddressBox).trimmed();
        if (!contactAddress.isEmpty()) {
            sql += QStringLiteral(" [PBEXPIRYDATE] = #") + contactAddress + QStringLiteral("# AND");
            criterion = true;
        }
    }

    if (!criterion) {
        return std::nullopt;
    }
    if (sql.endsWith(QLatin1String("AND"))) {
        sql.chop(4);
    }
    sql += QStringLiteral(" order by [PBCASE]");
    return sql;
}

} // namespace pvardo::cases
