#include "ParcelScreensFixture.h"
#include "common/SettingStore.h"
#include "parcels/Coordinates.h"
#include "parcels/screens/CCalc.h"
#include "parcels/screens/ParcelListModel.h"
#include "parcels/screens/ParcelLocator.h"

#include <QDesktopServices>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>

using namespace pvardo;
using namespace pvardo::parcels;
using namespace pvardo::test;

namespace {

// Catches the addresses the program hands to the desktop.
class OpenedUrls : public QObject
{
    Q_OBJECT

public:
    OpenedUrls() { QDesktopServices::setUrlHandler(q("https"), this, "open"); }
    ~OpenedUrls() override { QDesktopServices::unsetUrlHandler(q("https")); }
    QStringList urls;

public slots:
    void open(const QUrl& url) { urls << url.toString(); }
};

class LocatorTest : public ParcelScreensTest
{
protected:
    void SetUp() override
    {
        ParcelScreensTest::SetUp();
        seedParcel(q("12-34-0-1-5-1-0-0"),
            {{q("ASSOC"), q("KATE O'BRIEN")}, {q("LOCN1"), q("14 OAK LANE")},
                {q("MAILING"), q("PO BOX 9, ESOPUS NY")}});
        seedParcel(q("12-0-0-2-7-0-0-0"), {{q("LOCN1"), q("7 OAKWOOD DR")}, {q("VIOL"), 1}});
        seedParcel(q("30-0-0-4-1-0-0-0"), {{q("LOCN1"), q("2 RIVER RD")}});
    }

    // Runs a locator: types into it, searches, and picks the listed row of the key.
    std::optional<PickedParcel> locate(ParcelLocator::Kind kind, std::function<void(QDialog&)> type,
        const QString& pick, QStringList* listed)
    {
        prompts().onDialog(
            kind == ParcelLocator::Kind::BySbl ? q("sblloc") : q("adloc"), [=](QDialog& dialog) {
                auto& locator = static_cast<ParcelLocator&>(dialog);
                type(dialog);
                clickIn(dialog, "iLook");
                for (int row = 0; row < locator.model().rowCount(); ++row) {
                    *listed << locator.model().sblAt(row);
                    if (locator.model().sblAt(row) == pick) {
                        dialog.findChild<QTreeView*>(q("ListView1"))
                            ->setCurrentIndex(locator.model().index(row, 0));
                    }
                }
                clickIn(dialog, "iContinue");
                return dialog.result();
            });
        return ParcelLocator::pick(kind, nullptr);
    }
};

TEST_F(LocatorTest, SblLocatorFindsPartialKeysAndHandsBackTheParcel)
{
    QStringList listed;
    auto picked = locate(
        ParcelLocator::Kind::BySbl,
        [](QDialog& dialog) {
            dialog.findChild<QLineEdit*>(q("Text1_2"))->setText(q("12.34"));
            dialog.findChild<QLineEdit*>(q("Text1_3"))->setText(q("1"));
        },
        q("12-34-0-1-5-1-0-0"), &listed);
    EXPECT_EQ(listed, QStringList{q("12-34-0-1-5-1-0-0")});
    ASSERT_TRUE(picked);
    EXPECT_EQ(picked->sbl, q("12-34-0-1-5-1-0-0"));
    EXPECT_EQ(picked->association, q("KATE O'BRIEN"));
    EXPECT_EQ(picked->location, q("14 OAK LANE"));
    EXPECT_EQ(picked->mailing, q("PO BOX 9, ESOPUS NY"));

    // A section of 1 lists the sections that begin with 1, not those that
    // hold a 1 somewhere else.
    listed.clear();
    picked = locate(
        ParcelLocator::Kind::BySbl,
        [](QDialog& dialog) { dialog.findChild<QLineEdit*>(q("Text1_2"))->setText(q("1")); },
        q("12-0-0-2-7-0-0-0"), &listed);
    EXPECT_EQ(listed, (QStringList{q("12-0-0-2-7-0-0-0"), q("12-34-0-1-5-1-0-0")}));

    listed.clear();
    picked = locate(
        ParcelLocator::Kind::BySbl,
        [](QDialog& dialog) { dialog.findChild<QLineEdit*>(q("Text1_2"))->setText(q("99")); }, QString(),
        &listed);
    EXPECT_TRUE(listed.isEmpty());
    EXPECT_FALSE(picked) << "nothing selected, nothing handed back";
    EXPECT_TRUE(prompts().shownTexts().contains(q("No matching SBL found.")));
}

TEST_F(LocatorTest, AddressLocatorMatchesAnyPartOfTheLocationAndMarksFlags)
{
    QStringList listed;
    const auto picked = locate(
        ParcelLocator::Kind::ByAddress,
        [](QDialog& dialog) { dialog.findChild<QLineEdit*>(q("txtLookFor"))->setText(q("oak")); },
        q("12-0-0-2-7-0-0-0"), &listed);
    EXPECT_EQ(listed, (QStringList{q("12-0-0-2-7-0-0-0"), q("12-34-0-1-5-1-0-0")}));
    ASSERT_TRUE(picked);
    EXPECT_EQ(picked->location, q("7 OAKWOOD DR"));

    ParcelLocator locator(ParcelLocator::Kind::ByAddress);
    EXPECT_EQ(locator.model().rowCount(), 3) << "the whole store before a search";
    EXPECT_EQ(locator.model().markAt(0), ParcelMark::Violation);
}

TEST(CoordinatesTest, ConvertsAndChecksInTheOrderGiven)
{
    using namespace Coordinates;
    auto converted = convert({q("40"), q("44"), q("13"), q("-73"), q("59"), q("24")});
    EXPECT_TRUE(converted.faults.isEmpty());
    EXPECT_EQ(converted.latitude, q("40.736944"));
    EXPECT_EQ(converted.longitude, q("-73.99"));
    converted = convert({q("90"), q("59"), q(""), q("0"), q(""), q("")});
    EXPECT_EQ(converted.latitude, q("90.983333")) << "the check lets 90 degrees 59 minutes through";
    EXPECT_EQ(converted.longitude, q("0.0"));
    // What the converter writes is a number to the look-up, 0.0 too.
    EXPECT_EQ(
        lookupFaults(converted.latitude, converted.longitude), QStringList{q("Latitude cannot be mapped.")});
    converted = convert({q("41"), q(""), q(""), q("-74"), q(""), q("")});
    EXPECT_EQ(converted.latitude, q("41.0"));
    EXPECT_TRUE(lookupFaults(converted.latitude, converted.longitude).isEmpty());
    // Blank degrees, or a box of no number, are refused with the box's line,
    // never read as 0 (45 minutes alone would be 0.75 degrees).
    converted = convert({q("41"), q("5-"), q(""), q(""), q("45"), q("")});
    EXPECT_EQ(converted.faults,
        (QStringList{q("Longitude Degrees cannot be less than -180 or greater than 180."),
            q("Latitude Minutes cannot be less than 0 or greater than 59.")}));
    EXPECT_TRUE(converted.longitude.isEmpty());
    converted = convert({q("-91"), q("60"), q("60"), q("181"), q("-1"), q("60")});
    EXPECT_EQ(converted.faults,
        (QStringList{q("Latitude Degrees cannot be less than -90 or greater than 90."),
            q("Longitude Degrees cannot be less than -180 or greater than 180."),
            q("Latitude Minutes cannot be less than 0 or greater than 59."),
            q("Longitude Minutes cannot be less than 0 or greater than 59."),
            q("Latitude Seconds cannot be less than 0 or greater than 59."),
            q("Longitude Seconds cannot be less than 0 or greater than 59.")}));
    EXPECT_TRUE(converted.latitude.isEmpty());

    for (const char* text : {"40.5", "-73.99", "40.50", "0.5", ".5", "0.0"}) {
        EXPECT_TRUE(isNumber(q(text))) << text;
    }
    for (const char* text : {"40.5N", " 40.5", "", "-", "4.0.1"}) {
        EXPECT_FALSE(isNumber(q(text))) << text;
    }
    EXPECT_EQ(lookupFaults(q("41.2x"), q("")),
        (QStringList{
            q("Latitude may not be a coordinate number."), q("Longitude may not be a coordinate number.")}));
    EXPECT_EQ(storeFaults(q(" "), q("")),
        (QStringList{q("Latitude field must have an entry."), q("Longitude field must have an entry.")}));
    EXPECT_EQ(storedPair(q("40.736944"), q("-73.9931134")), q("40.736944,-73.993113"));
    EXPECT_EQ(mapAddress(q("https://maps.example.org/pvardo"), q("40.5"), q("-73.9")),
        q("https://maps.example.org/pvardo/gps.htm?txtLat=40.5&txtLong=-73.9&txtZoom=17"));
}

class CCalcTest : public ParcelScreensTest
{
};

TEST_F(CCalcTest, DialogFiltersKeysConvertsStoresAndLooksUp)
{
    OpenedUrls opened;
    ASSERT_TRUE(SettingPut(q("MAPHOST"), q("https://maps.example.org/")));
    // Typing: digits and the minus sign only.
    {
        CCalc dialog(QString(), QString(), true);
        auto* degrees = dialog.findChild<QLineEdit*>(q("txtLongDeg"));
        QTest::keyClicks(degrees, q("-7a3.5"));
        EXPECT_EQ(degrees->text(), q("-735"));
        QTest::keyClick(degrees, Qt::Key_Backspace);
        EXPECT_EQ(degrees->text(), q("-73"));
    }
    // Store: the pair goes back trimmed.
    prompts().onDialog(q("ccalc"), [](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>(q("txtLatitude"))->text(), q("41.5"));
        EXPECT_EQ(dialog.findChild<QLineEdit*>(q("txtLongitude"))->text(), q("-74"));
        dialog.findChild<QLineEdit*>(q("txtLatitude"))->clear();
        clickIn(dialog, "Command2");
        EXPECT_FALSE(dialog.result()) << "the store needs a latitude";
        dialog.findChild<QLineEdit*>(q("txtLatDeg"))->setText(q("40"));
        dialog.findChild<QLineEdit*>(q("txtLatMin"))->setText(q("44"));
        dialog.findChild<QLineEdit*>(q("txtLatSec"))->setText(q("13"));
        dialog.findChild<QLineEdit*>(q("txtLongDeg"))->setText(q("-73"));
        dialog.findChild<QLineEdit*>(q("txtLongMin"))->setText(q("59"));
        dialog.findChild<QLineEdit*>(q("txtLongSec"))->setText(q("24"));
        clickIn(dialog, "Command1");
        EXPECT_EQ(dialog.findChild<QLineEdit*>(q("txtLongitude"))->text(), q("-73.99"));
        dialog.findChild<QLineEdit*>(q("txtLatitude"))->setText(q(" 40.7 "));
        clickIn(dialog, "Command2");
        return dialog.result();
    });
    auto choice = askCoordinates(q("41.5,-74"), true, nullptr);
    EXPECT_EQ(choice.outcome, CCalc::Store);
    EXPECT_EQ(choice.latitude, q("40.7"));
    EXPECT_EQ(choice.longitude, q("-73.99"));
    EXPECT_TRUE(opened.urls.isEmpty());

    // Look-up: refused while a box is not a plain number, then opens the map.
    prompts().onDialog(q("ccalc"), [](QDialog& dialog) {
        EXPECT_FALSE(dialog.findChild<QPushButton*>(q("Command2"))->isVisibleTo(&dialog));
        dialog.findChild<QLineEdit*>(q("txtLatitude"))->setText(q("40.5N"));
        dialog.findChild<QLineEdit*>(q("txtLongitude"))->setText(q("-73.99"));
        clickIn(dialog, "Command3");
        EXPECT_FALSE(dialog.result());
        dialog.findChild<QLineEdit*>(q("txtLatitude"))->setText(q("40.5"));
        clickIn(dialog, "Command3");
        return dialog.result();
    });
    maplookup(nullptr);
    EXPECT_EQ(opened.urls,
        QStringList{q("https://maps.example.org/gps.htm?txtLat=40.5&txtLong=-73.99&txtZoom=17")});
    EXPECT_TRUE(prompts().shownTexts().contains(q("Latitude may not be a coordinate number.")));
    EXPECT_EQ(lastText(),
        q("The map was opened in your web browser at\n"
          "https://maps.example.org/gps.htm?txtLat=40.5&txtLong=-73.99&txtZoom=17"))
        << "the look-up says where the map went";
}

} // namespace

#include "LocatorAndCoordinatesTest.moc"
