#include "CaseScreenFixture.h"

#include <QDir>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTest>

using namespace pvardo;
using namespace pvardo::test;

// Draws the case screen's three tabs and its list over a few cases, for the
// documentation. With PVARDO_SCREENSHOT_DIR set the pictures are written
// there as case-screen-case.png, -project.png, -structure.png and -list.png.
TEST_F(CaseScreenTest, Screenshots)
{
    seedParcel(q("12-3-0-1-5-0-0-0"), q("Barking dog; gate locked"), 0, 1);
    seedCase(q("12-207"),
        {{q("SEC"), q("12")}, {q("SUD"), q("3")}, {q("BLK"), q("1")}, {q("LOT"), q("5")},
            {q("PBLOCN1"), q("14 Mill Pond Road")}, {q("PBSUBDIV"), q("Mill Pond Estates")},
            {q("PBAPPNAME1"), q("Anne Whitcomb")}, {q("PBAPPADDR1"), q("14 Mill Pond Road, Esopus NY 12429")},
            {q("PBAPPTEL"), q("845-555-0142")}, {q("PBAPPEMAIL"), q("awhitcomb@example.org")},
            {q("PBOWNRNAME1"), q("Anne Whitcomb")},
            {q("PBOWNRADDR1"), q("14 Mill Pond Road, Esopus NY 12429")},
            {q("PBPROXYNAME1"), q("Hart & Lowe, Attorneys")},
            {q("PBPROXYADDR1"), q("2 Wall Street, Kingston NY 12401")}, {q("PBSTATUS"), q("P")},
            {q("PBFILEDATE"), q("2012-02-03")}, {q("PBPROJNAME"), q("Detached garage")},
            {q("PBTYPE"), q("New Structure")}, {q("PBUSE"), q("Accessory")},
            {q("PBACC"), q("Detached Garage")}, {q("PBCURZONE"), q("Rural Residential")},
            {q("PBPROJDESC"), q("A two-car detached garage with a storage loft, 24 by 28 feet.")},
            {q("PBCOST"), q("48000")}, {q("PBLOTWIDTH"), q("100")}, {q("PBLOTDEPTH"), q("200")},
            {q("PBTOTAREASTRUC"), q("2000")}, {q("PBTOTAREAIMPRV"), q("1000")},
            {q("PBLOTAREASQF"), q("20000.00")}, {q("PBLOTAREAACR"), q("0.46")},
            {q("PBLOTCOVPCT"), q("10.00")}, {q("PBLOTIMPCOVPCT"), q("15.00")}, {q("PBSITEPLAN"), q("1")},
            {q("PBSTRUCTYPE"), q("Frame")}, {q("PBSTORIES"), q("1.5")}, {q("PBSTRUCHEIGHT"), q("22")},
            {q("PBFOOTTYPE"), q("Vinyl Siding")}, {q("PBFOOTERMAT"), q("Earth Tone")},
            {q("PBSETBFRONT"), q("60")}, {q("PBSETBREAR"), q("85")}, {q("PBSETBLEFT"), q("15")},
            {q("PBSETBRIGHT"), q("20")}, {q("PBWATER"), q("Well")}, {q("PBFW"), q("1")},
            {q("PBSEWAGE"), q("Septic")}, {q("PBFS"), q("1")}, {q("PBELECTRIC"), q("Central Hudson")},
            {q("PBSCHOOLDIST"), q("Kingston")}, {q("PBFIREDIST"), q("Port Ewen")}});
    seedCase(q("12-208"),
        {{q("PBAPPNAME1"), q("Robert Kiernan")}, {q("PBAPPTEL"), q("845-555-0199")},
            {q("PBPROJNAME"), q("Two-lot subdivision")}, {q("PBSTATUS"), q("I")},
            {q("PBFILEDATE"), q("2012-02-17")}});
    seedCase(q("12-209"),
        {{q("PBAPPNAME1"), q("St. Mary's Church")}, {q("PBAPPTEL"), q("845-555-0101")},
            {q("PBPROJNAME"), q("Lighted sign")}, {q("PBSTATUS"), q("A")},
            {q("PBFILEDATE"), q("2012-03-01")}});
    open();
    screen->resize(1100, 760);
    screen->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(screen.get()));
    const QString folder = qEnvironmentVariable("PVARDO_SCREENSHOT_DIR");
    auto save = [&](const char* name) {
        QCoreApplication::processEvents();
        const QImage image = screen->grab().toImage();
        ASSERT_FALSE(image.isNull());
        if (!folder.isEmpty()) {
            QDir().mkpath(folder);
            EXPECT_TRUE(image.save(folder + q("/case-screen-") + q(name) + q(".png")));
        }
    };
    auto* tabs = find<QTabWidget>("SSTab1");
    save("case");
    tabs->setCurrentIndex(1);
    save("project");
    tabs->setCurrentIndex(2);
    save("structure");
    tabs->setCurrentIndex(0);
    click("iBrowse");
    save("list");
}
