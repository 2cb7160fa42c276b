#include "subrecords/SubRecordSettings.h"

namespace pvardo::subrecords {

QString SubRecordSettings::fullQuery(const QString& caseNumber) const
{
    return QStringLiteral("Select * from ") + tableName() + QStringLiteral(" WHERE [") + keyColumn
        + QStringLiteral("] = '") + caseNumber + QStringLiteral("' order by SEQ");
}

const SubRecordSettings& feesSettings()
{
    static const SubRecordSettings settings = [] {
        SubRecordSettings s;
        s.screenName = QStringLiteral("feesfrm");
        s.caption = QStringLiteral("Fees Management");
        s.screenCode = 3;
        s.databaseFile = QStringLiteral("\\pbfees.mdb");
        s.table = store::Table::PBFEES;
        s.keyColumn = QStringLiteral("PBFCASE");
        s.libraryCode = QStringLiteral("03");
        s.statusColumn = QStringLiteral("PBFSTATUS");
        s.descriptionColumn = QStringLiteral("PBFPAYDESC");
        s.listColumns = {
            {QStringLiteral(" Case "), 1380, QStringLiteral("PBFCASE"), false},
            {QStringLiteral(" Description "), 2510, QStringLiteral("PBFPAYDESC"), false},
            {QStringLiteral("  Charged "), 1400, QStringLiteral("PBFAMOUNT"), true},
            {QStringLiteral("   Paid "), 1400, QStringLiteral("PBFPAID"), true},
            {QStringLiteral("  Date "), 1300, QStringLiteral("PBFPAIDDATE"), false},
            {QStringLiteral("  Balance "), 1400, QStringLiteral("PBFBALDUE"), true},
        };
        s.required = {{1, QStringLiteral("Description")}, {2, QStringLiteral("Payment")}};
        s.reportTypes = {QStringLiteral("Listing of Fees"), QStringLiteral("Receipt"), QStringLiteral("Billing Letter"),
                         QStringLiteral("Label for Mailing")};
        return s;
    }();
    return settings;
}

} // namespace pvardo::subrecords
