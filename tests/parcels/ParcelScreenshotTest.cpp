#include "ParcelScreensFixture.h"
#include "parcels/screens/CCalc.h"
#include "parcels/screens/ParcelEditors.h"
#include "parcels/screens/ParcelListModel.h"
#include "parcels/screens/ParcelLocator.h"
#include "parcels/screens/SblFrm.h"

#include <QDir>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>

using namespace pvardo;
using namespace pvardo::parcels;
using namespace pvardo::test;

namespace {

// Draws the parcel browser, the editor, the two locators and the
// coordinates dialog over a few parcels, for the documentation. With
// PVARDO_SCREENSHOT_DIR set the pictures are written there.
TEST_F(ParcelScreensTest, Screenshots)
{
    const struct
    {
        const char* sbl;
        const char* owner;
        const char* location;
        const char* permit;
        int failed, viol, other;
    } parcels[] = {
        {"12-3-0-1-5-0-0-0", "WHITCOMB, ANNE", "14 MILL POND RD", "12-207", 0, 0, 0},
        {"12-3-0-1-6-0-0-0", "KIERNAN, ROBERT", "18 MILL POND RD", "12-208", 1, 0, 0},
        {"12-3-0-1-7-0-0-0", "ST. MARY'S CHURCH", "22 MILL POND RD", "", 0, 0, 1},
        {"12-3-0-2-1-1-0-0", "O'BRIEN, KATE", "3 QUARRY RD", "", 2, 0, 0},
        {"14-0-0-1-12-0-0-0", "HART & LOWE LLC", "101 BROADWAY", "11-044", 0, 1, 0},
        {"14-0-0-1-13-0-0-0", "DUBOIS, MARC", "105 BROADWAY", "", 0, 0, 0},
        {"20-1-0-4-2-0-0-0", "TOWN OF ESOPUS", "RIVER RD", "", 0, 0, 0},
    };
    for (const auto& p : parcels) {
        seedParcel(q(p.sbl),
            {{q("ASSOC"), q(p.owner)}, {q("LOCN1"), q(p.location)}, {q("PERMIT"), q(p.permit)},
                {q("FAILED"), p.failed}, {q("VIOL"), p.viol}, {q("OTHER"), p.other},
                {q("CONTACT"), q(p.owner)}, {q("MAILING"), q("PO BOX 7, ESOPUS NY 12429")},
                {q("EASTCOORD"), 612345.0}, {q("NORTHCOORD"), 1104567.0}, {q("GISLINK"), q("41.84,-73.97")},
                {q("HISTORICAL"), q("*Z12-207")},
                {q("NOTES"), p.failed ? q("Footing inspection failed 3/1") : q("")}});
    }
    const QString folder = qEnvironmentVariable("PVARDO_SCREENSHOT_DIR");
    auto save = [&](QWidget& widget, const char* name) {
        widget.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
        QCoreApplication::processEvents();
        const QImage image = widget.grab().toImage();
        ASSERT_FALSE(image.isNull());
        if (!folder.isEmpty()) {
            QDir().mkpath(folder);
            EXPECT_TRUE(image.save(folder + q("/") + q(name) + q(".png")));
        }
    };
    SblFrm browser;
    browser.resize(900, 520);
    browser.list().setColumnWidth(0, 150);
    browser.list().setColumnWidth(1, 170);
    browser.list().setColumnWidth(2, 170);
    browser.list().setColumnWidth(3, 90);
    browser.list().setCurrentIndex(browser.model().index(1, 0));
    save(browser, "parcel-browser");

    SBLEdit editor(q("12-3-0-1-6-0-0-0"));
    editor.resize(560, 520);
    save(editor, "parcel-editor");

    ParcelLocator locator(ParcelLocator::Kind::BySbl);
    locator.findChild<QLineEdit*>(q("Text1_2"))->setText(q("12.3"));
    locator.findChild<QLineEdit*>(q("Text1_3"))->setText(q("1"));
    locator.iLook();
    save(locator, "parcel-locator");

    ParcelLocator byAddress(ParcelLocator::Kind::ByAddress);
    byAddress.findChild<QLineEdit*>(q("txtLookFor"))->setText(q("mill"));
    byAddress.iLook();
    save(byAddress, "parcel-address-locator");

    CCalc calc(QString(), QString(), true);
    const char* typed[][2] = {{"txtLatDeg", "41"}, {"txtLatMin", "50"}, {"txtLatSec", "24"},
        {"txtLongDeg", "-73"}, {"txtLongMin", "58"}, {"txtLongSec", "12"}};
    for (const auto& [name, text] : typed) {
        calc.findChild<QLineEdit*>(q(name))->setText(q(text));
    }
    calc.Command1();
    save(calc, "coordinates");
}

} // namespace
