#include "cases/CaseScreenFixture.h"

#include "common/Clock.h"
#include "subrecords/screens/FeesFrm.h"
#include "subrecords/screens/SubRecordScreens.h"
#include "ui/DateRangeDialog.h"
#include "ui/MonthSelect.h"

#include <QDialog>
#include <QRadioButton>
#include <QDir>
#include <QTest>

namespace pvardo::test {

namespace {

// Writes a picture of `widget` as `name`.png to PVARDO_SCREENSHOT_DIR, when
// it is set; otherwise only checks that the widget draws.
void save(QWidget& widget, const char* name)
{
    widget.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
    QCoreApplication::processEvents();
    const QImage image = widget.grab().toImage();
    ASSERT_FALSE(image.isNull());
    const QString folder = qEnvironmentVariable("PVARDO_SCREENSHOT_DIR");
    if (!folder.isEmpty()) {
        QDir().mkpath(folder);
        EXPECT_TRUE(image.save(folder + QLatin1Char('/') + QString::fromLatin1(name) + QStringLiteral(".png")));
    }
}

} // namespace

// The fees screen with a few charges, the receipt dialog from it, and the
// two dialogs of the case reports, for the documentation.
TEST_F(CaseScreenTest, FeesScreenshots)
{
    setClockDay(QDate(2012, 3, 1));
    installation.createDatabase(store::Table::PBFEES);
    seedCase(q("12-207"), {{q("PBAPPNAME1"), q("Anne Whitcomb")},
                           {q("PBAPPADDR1"), q("14 Mill Pond Road, Esopus NY 12429")},
                           {q("PBAPPTEL"), q("845-555-0142")},
                           {q("PBPROJNAME"), q("Detached garage")}});
    open().setSubRecordOpener(subrecords::openSubRecordScreen);
    find<QPushButton>("ifees")->click();
    auto* fees = qobject_cast<subrecords::FeesFrm*>(subrecords::subRecordScreen(q("feesfrm")));
    ASSERT_TRUE(fees);
    const char* charges[][3] = {{"Application fee", "150", "150"},
                                {"Engineering review escrow", "$2,500.00", "1,000"},
                                {"Public hearing notice", "45.50", ""}};
    for (const auto& charge : charges) {
        fees->INew();
        for (int box = 1; box <= 3; ++box) {
            fees->setBoxText(box, q(charge[box - 1]));
        }
        fees->findChild<QRadioButton*>(q("Option1_0"))->click();
        fees->IAdd();
    }
    fees->resize(1180, 600);
    save(*fees, "fees-screen");

    prompts().onDialog(q("receipt"), [](QDialog& dialog) {
        save(dialog, "receipt");
        return int(QDialog::Rejected);
    });
    fees->findChild<QAction*>(q("printreceipt"))->trigger();

    ui::MonthSelect month;
    save(month, "month-select");
    ui::DateRangeDialog range;
    save(range, "dtrange");
    subrecords::closeSubRecordScreens();
    setClockDay({});
}

} // namespace pvardo::test
