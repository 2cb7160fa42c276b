#include "subrecords/FeeRules.h"
#include "subrecords/Money.h"

#include "store/Catalogue.h"
#include "support/InstallationTest.h"

#include <QTextDocument>
#include <gtest/gtest.h>

namespace pvardo::test {

using namespace subrecords;

TEST(Money, typedAmountsReadAsTheirLeadingNumberToTheCent)
{
    EXPECT_EQ(leadingCents(QStringLiteral("12.5")), 1250);
    EXPECT_EQ(leadingCents(QStringLiteral(" 100 ")), 10000);
    EXPECT_EQ(leadingCents(QStringLiteral("-0.1")), -10);
    EXPECT_EQ(leadingCents(QStringLiteral("19.999")), 2000);
    EXPECT_EQ(leadingCents(QStringLiteral("40 dollars")), 4000);
    EXPECT_EQ(leadingCents(QStringLiteral("$40")), 0);
    EXPECT_EQ(leadingCents(QString()), 0);
    EXPECT_EQ(plainAmount(30 - 10 - 20), QStringLiteral("0"));
    EXPECT_EQ(plainAmount(-1050), QStringLiteral("-10.5"));
    EXPECT_EQ(maskedAmount(5), QStringLiteral("0.05"));
    EXPECT_EQ(moneyText(123456789, 10), QStringLiteral("$1,234,567.89"));
    EXPECT_EQ(moneyText(-50), QStringLiteral("-$0.50"));
}

class FeeFile : public InstallationTest
{
};

TEST_F(FeeFile, aThousandDimesComeToOneHundredDollarsOnDiskAndOnPaper)
{
    const QString path = installation.createDatabase(store::Table::PBFEES);
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(path, QStringLiteral("Select * from PBFEES order by SEQ"), &status);
    ASSERT_TRUE(rows);
    rows->beginTransaction();
    for (int i = 0; i < 1000; ++i) {
        rows->AddNew();
        rows->setValue(QStringLiteral("PBFCASE"), QStringLiteral("C-%1").arg(i % 3));
        rows->setValue(QStringLiteral("PBFSTATUS"), i == 999 ? QStringLiteral("V") : QStringLiteral("A"));
        rows->setValue(QStringLiteral("PBFPAYDESC"), QStringLiteral("Copy"));
        rows->setValue(QStringLiteral("PBFAMOUNT"), storedAmount(leadingCents(QStringLiteral("0.10"))));
        rows->setValue(QStringLiteral("PBFPAID"), storedAmount(i % 2 ? 10 : 0));
        rows->setValue(QStringLiteral("PBFBALDUE"), storedAmount(i % 2 ? 0 : 10));
        ASSERT_TRUE(rows->Update().ok());
    }
    rows->commitTransaction();
    // One more, voided, that no total may count.
    rows->AddNew();
    rows->setValue(QStringLiteral("PBFSTATUS"), QStringLiteral("V"));
    rows->setValue(QStringLiteral("PBFAMOUNT"), 1000.0);
    ASSERT_TRUE(rows->Update().ok());
    rows->Requery();

    QTextDocument report;
    FeeReportHead head;
    head.kind = FeeReport::AllCases;
    head.title = QStringLiteral("ALL FEES FOR March");
    const FeeTotals totals = buildFeeReport(report, *rows, head);
    EXPECT_EQ(totals.rows, 999);
    EXPECT_EQ(totals.charged, 9990);
    const QString text = report.toPlainText();
    EXPECT_TRUE(text.contains(QStringLiteral("TOTAL = 999")));
    EXPECT_TRUE(text.contains(QStringLiteral("TOTAL FEES: $99.90")));
    EXPECT_TRUE(text.contains(QStringLiteral("(C-0) Copy")));

    // The same thousand without the void: exactly $100.00.
    FeeTotals all;
    for (rows->MoveFirst(); !rows->Eof(); rows->MoveNext()) {
        if (rows->text(QStringLiteral("PBFAMOUNT")).startsWith(QStringLiteral("0.1"))) {
            all.charged += centsOf(rows->value(QStringLiteral("PBFAMOUNT")));
        }
    }
    EXPECT_EQ(moneyText(all.charged), QStringLiteral("$100.00"));

    // An overpaid fee is a credit: listed apart, never netted into what is due.
    rows->AddNew();
    rows->setValue(QStringLiteral("PBFCASE"), QStringLiteral("C-9"));
    rows->setValue(QStringLiteral("PBFSTATUS"), QStringLiteral("A"));
    rows->setValue(QStringLiteral("PBFPAYDESC"), QStringLiteral("Overpaid filing fee"));
    rows->setValue(QStringLiteral("PBFAMOUNT"), 46.5);
    rows->setValue(QStringLiteral("PBFPAID"), 100.0);
    rows->setValue(QStringLiteral("PBFBALDUE"), -53.5);
    ASSERT_TRUE(rows->Update().ok());

    // Receivables leave the rows with no balance out and give no count.
    auto owing = store::openRecordsetAt(path, QStringLiteral("Select * from PBFEES WHERE [PBFBALDUE] <> 0 order by SEQ"),
                                        &status);
    ASSERT_TRUE(owing);
    QTextDocument receivables;
    head.kind = FeeReport::Receivables;
    const FeeTotals due = buildFeeReport(receivables, *owing, head);
    EXPECT_EQ(due.balance, 5000); // the 500 unpaid dimes
    const QString owed = receivables.toPlainText();
    EXPECT_TRUE(owed.contains(QStringLiteral("*TOTAL DUE: $50.00\n\nCREDITS (PAID OVER THE CHARGE)\n")))
        << owed.toStdString();
    EXPECT_TRUE(owed.section(QStringLiteral("CREDITS"), 1).contains(QStringLiteral("(C-9) Overpaid filing fee")));
    EXPECT_FALSE(owed.section(QStringLiteral("CREDITS"), 0, 0).contains(QStringLiteral("Overpaid")));
    EXPECT_TRUE(owed.contains(QStringLiteral("TOTAL CREDITS: $53.50")));
    EXPECT_FALSE(receivables.toPlainText().contains(QStringLiteral("TOTAL =")));
    EXPECT_FALSE(receivables.toPlainText().contains(QStringLiteral("TOTAL FEES")));
}

TEST(Money, monthQueriesOfTheFeeReports)
{
    // December runs into the next year; a quote in a case number stays text.
    EXPECT_EQ(feesByMonthQuery(QStringLiteral("24'017"), 12, 2012),
              QStringLiteral("Select * from PBFEES WHERE PBFCASE = '24''017' and [PBFFILEDATE] >= #12/01/2012# and "
                             "[PBFFILEDATE] < #01/01/2013# order by SEQ"));
    EXPECT_EQ(feesByMonthQuery(QString(), 0, 2009),
              QStringLiteral("Select * from PBFEES WHERE [PBFFILEDATE] >= #01/01/2009# and [PBFFILEDATE] < "
                             "#01/01/2010# order by SEQ"));
}

} // namespace pvardo::test
