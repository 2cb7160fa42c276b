#include "CaseScreenFixture.h"
#include "common/TextFiles.h"
#include "parcels/RpsRoll.h"
#include "parcels/screens/ParcelListModel.h"
#include "parcels/screens/ParcelLocator.h"
#include "parcels/screens/RollScreens.h"

#include <QApplication>
#include <QDesktopServices>
#include <QTest>
#include <QTreeView>

using namespace pvardo;
using namespace pvardo::test;

namespace {

// Catches the web addresses the program hands to the desktop.
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

// Picks the first listed row of a locator after a search for `typed` in `box`.
void pickFirst(ScriptedPrompts& prompts, const char* locator, const char* box, const char* typed)
{
    prompts.onDialog(q(locator), [=](QDialog& dialog) {
        dialog.findChild<QLineEdit*>(q(box))->setText(q(typed));
        dialog.findChild<QPushButton*>(q("iLook"))->click();
        auto& found = static_cast<parcels::ParcelLocator&>(dialog);
        EXPECT_EQ(found.model().rowCount(), 1);
        dialog.findChild<QTreeView*>(q("ListView1"))->setCurrentIndex(found.model().index(0, 0));
        dialog.findChild<QPushButton*>(q("iContinue"))->click();
        return dialog.result();
    });
}

TEST_F(CaseScreenTest, FindersFillTheParcelOwnerAndLocationOfANewCase)
{
    seedParcel(q("12-34-0-1-5-1-0-0"));
    seedParcel(q("40-0-0-2-0-0-0-0"));
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(parcelPath, q("Select * from SBL"), &status);
        ASSERT_TRUE(rows->FindKey(q("SBLF"), q("40-0-0-2-0-0-0-0")).ok());
        rows->setValue(q("ASSOC"), q("MARY O'HARA"));
        rows->setValue(q("LOCN1"), q("9 QUARRY RD"));
        rows->setValue(q("MAILING"), q("PO BOX 12, ROSENDALE NY"));
        ASSERT_TRUE(rows->Update().ok());
    }
    open();
    EXPECT_FALSE(on("iSBLLoc")) << "the finders change inputs: off while a case is only shown";
    click("INew");
    pickFirst(prompts(), "sblloc", "Text1_2", "12.34");
    click("iSBLLoc");
    EXPECT_EQ(text(2), q("12.34"));
    EXPECT_EQ(text(3), q("1"));
    EXPECT_EQ(text(4), q("5"));
    EXPECT_EQ(text(5), q("1"));
    EXPECT_EQ(text(12), q("SOMEONE"));

    pickFirst(prompts(), "adloc", "txtLookFor", "quarry");
    click("finda");
    EXPECT_EQ(text(2), q("40"));
    EXPECT_EQ(text(3), q("2"));
    EXPECT_EQ(text(4), QString());
    EXPECT_EQ(text(5), QString()) << "a part of 0 leaves its box blank";
    EXPECT_EQ(text(12), q("MARY O'HARA"));
    EXPECT_EQ(text(7), q("9 QUARRY RD"));
    EXPECT_EQ(text(13), q("PO BOX 12, ROSENDALE NY"));

    // Closing a finder without a choice changes nothing; Control+F opens
    // the address finder too.
    prompts().onDialog(q("sblloc"), [](QDialog&) { return int(QDialog::Rejected); });
    click("iSBLLoc");
    EXPECT_EQ(text(2), q("40"));
    prompts().onDialog(q("adloc"), [](QDialog&) { return int(QDialog::Rejected); });
    screen->show();
    QApplication::setActiveWindow(screen.get());
    QTest::keyClick(screen.get(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(prompts().dialogsRun().count(q("adloc")), 2);
    EXPECT_EQ(text(12), q("MARY O'HARA"));
}

TEST_F(CaseScreenTest, PickingAnotherParcelLeavesNothingOfThePreviousOwner)
{
    seedParcel(q("12-0-0-1-5-0-0-0")); // owner SOMEONE, no mailing address
    seedParcel(q("40-0-0-2-0-0-0-0"));
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(parcelPath, q("Select * from SBL"), &status);
        ASSERT_TRUE(rows->FindKey(q("SBLF"), q("40-0-0-2-0-0-0-0")).ok());
        rows->setValue(q("ASSOC"), q("MARY O'HARA"));
        rows->setValue(q("LOCN1"), q("9 QUARRY RD"));
        rows->setValue(q("MAILING"), q("PO BOX 12, ROSENDALE NY"));
        ASSERT_TRUE(rows->Update().ok());
    }
    open();
    click("INew");
    fillRequired();
    type(14, q("845-555-0101"));
    type(15, q("owen@example.org"));
    type(60, q("OAK HILLS"));
    pickFirst(prompts(), "adloc", "txtLookFor", "quarry");
    click("finda");
    EXPECT_EQ(text(12), q("MARY O'HARA"));
    EXPECT_EQ(text(13), q("PO BOX 12, ROSENDALE NY"));
    EXPECT_EQ(text(14), QString()) << "the previous owner's telephone";
    EXPECT_EQ(text(15), QString());
    EXPECT_EQ(text(60), QString()) << "the previous parcel's subdivision";

    // A parcel without a mailing address leaves the new owner without one.
    type(14, q("845-555-0202"));
    pickFirst(prompts(), "sblloc", "Text1_2", "12");
    click("iSBLLoc");
    EXPECT_EQ(text(12), q("SOMEONE"));
    EXPECT_EQ(text(7), QString()) << "nor a location";
    EXPECT_EQ(text(13), QString());
    EXPECT_EQ(text(14), QString());

    // Picking the same parcel again keeps what was typed for its owner.
    type(13, q("3 BIRCH RD"));
    type(14, q("845-555-0303"));
    type(60, q("BIRCH HILLS"));
    pickFirst(prompts(), "sblloc", "Text1_2", "12");
    click("iSBLLoc");
    EXPECT_EQ(text(13), q("3 BIRCH RD"));
    EXPECT_EQ(text(14), q("845-555-0303"));
    EXPECT_EQ(text(60), q("BIRCH HILLS"));
    type(7, q("10 MAIN ST"));
    const QString number = text(1);
    click("IAdd");
    auto added = caseOnDisk(number);
    ASSERT_TRUE(added) << prompts().shownTexts().join(q(" | ")).toStdString();
    EXPECT_EQ(added->text(q("PBOWNRNAME1")), q("SOMEONE"));
    EXPECT_EQ(added->text(q("PBOWNRADDR1")), q("3 BIRCH RD"));
    EXPECT_EQ(added->text(q("PBOWNTEL")), q("845-555-0303"));
    EXPECT_EQ(added->text(q("PBSUBDIV")), q("BIRCH HILLS"));
}

TEST_F(CaseScreenTest, RollLookUpFillsTheCaseFromTheImportedRoll)
{
    open();
    click("INew");
    click("rpslook");
    EXPECT_TRUE(lastText().startsWith(q("There are no imported tax parcels to look in.")))
        << lastText().toStdString();
    {
        parcels::RpsRoll roll(parcels::RpsRoll::rollPathIn(session().DatabaseFolder));
        ASSERT_TRUE(roll.resetRPSsbl().ok());
        auto add = [&](const char* full, const char* written, const char* owner, const char* location,
                       const char* mailing) {
            parcels::RpsRow row;
            row.fullForm = q(full);
            row.shortForm = q(written);
            row.association = row.contact = q(owner);
            row.location = q(location);
            row.mailing = q(mailing);
            return roll.RPSSBLAdd(row).ok();
        };
        ASSERT_TRUE(add(
            "12-34-0-1-5-1-0-0", "12.34-1-5.1", "KATE O'BRIEN", "14 OAK LANE", "PO BOX 9, ESOPUS NY 12429"));
        ASSERT_TRUE(add("40-0-0-2-0-0-0-0", "40-2", "MARY O'HARA", "9 OAKWOOD DR", ""));
    }
    prompts().onDialog(q("rpsloc"), [this](QDialog& dialog) {
        auto& roll = static_cast<parcels::RpsLoc&>(dialog);
        EXPECT_EQ(roll.model().rowCount(), 2) << "the whole roll at first";
        EXPECT_EQ(roll.model().data(roll.model().index(0, 0), Qt::DisplayRole).toString(), q("12.34-1-5.1"));
        auto lookFor = [&](const char* location, const char* contact) {
            dialog.findChild<QLineEdit*>(q("txtLocation"))->setText(q(location));
            dialog.findChild<QLineEdit*>(q("txtContact"))->setText(q(contact));
            dialog.findChild<QPushButton*>(q("iLook"))->click();
            return roll.model().rowCount();
        };
        EXPECT_EQ(lookFor("oak", ""), 2);
        EXPECT_EQ(lookFor("oak", "nobody"), 0);
        EXPECT_EQ(lastText(), q("No matches found."));
        EXPECT_EQ(lookFor("oak", "o'brien"), 1);
        dialog.findChild<QTreeView*>(q("ListView1"))->setCurrentIndex(roll.model().index(0, 0));
        dialog.findChild<QPushButton*>(q("iContinue"))->click();
        return dialog.result();
    });
    click("rpslook");
    EXPECT_EQ(text(2), q("12.34"));
    EXPECT_EQ(text(3), q("1"));
    EXPECT_EQ(text(4), q("5"));
    EXPECT_EQ(text(5), q("1"));
    EXPECT_EQ(text(12), q("KATE O'BRIEN"));
    EXPECT_EQ(text(7), q("14 OAK LANE"));
    EXPECT_EQ(text(13), q("PO BOX 9, ESOPUS NY 12429"));
}

TEST_F(CaseScreenTest, MapButtonStoresTheCoordinatesOfTheCaseShown)
{
    seedCase(q("12-207"), {{q("PBGISCOORD"), q("41.5,-74.1")}});
    open();
    prompts().onDialog(q("ccalc"), [](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>(q("txtLatitude"))->text(), q("41.5"));
        EXPECT_EQ(dialog.findChild<QLineEdit*>(q("txtLongitude"))->text(), q("-74.1"));
        dialog.findChild<QLineEdit*>(q("txtLatitude"))->setText(q("41.9312345678"));
        dialog.findChild<QLineEdit*>(q("txtLongitude"))->setText(q("-73.9912345678"));
        dialog.findChild<QPushButton*>(q("Command2"))->click();
        return dialog.result();
    });
    click("Image7");
    EXPECT_EQ(caseOnDisk(q("12-207"))->text(q("PBGISCOORD")), q("41.9312345678,-73.99"));
    EXPECT_EQ(label("lblGISCOORD"), q("41.9312345678,-73.99"));

    // A new case takes its pair when it is written.
    click("INew");
    fillRequired();
    prompts().onDialog(q("ccalc"), [](QDialog& dialog) {
        EXPECT_TRUE(dialog.findChild<QLineEdit*>(q("txtLatitude"))->text().isEmpty());
        dialog.findChild<QLineEdit*>(q("txtLatitude"))->setText(q("42"));
        dialog.findChild<QLineEdit*>(q("txtLongitude"))->setText(q("-74"));
        dialog.findChild<QPushButton*>(q("Command2"))->click();
        return dialog.result();
    });
    click("Image7");
    const QString number = text(1);
    click("IAdd");
    auto added = caseOnDisk(number);
    ASSERT_TRUE(added);
    EXPECT_EQ(added->text(q("PBGISCOORD")), q("42,-74"));
    EXPECT_EQ(caseOnDisk(q("12-207"))->text(q("PBGISCOORD")), q("41.9312345678,-73.99"));
}

TEST_F(CaseScreenTest, PickingAnotherParcelTakesItsPlaceOrNone)
{
    seedCase(q("12-210"),
        {{q("SEC"), q("12")}, {q("BLK"), q("1")}, {q("LOT"), q("5")}, {q("PBLOCN1"), q("10 MAIN")},
            {q("PBAPPNAME1"), q("ANN")}, {q("PBAPPADDR1"), q("1 ELM")}, {q("PBSTATUS"), q("P")},
            {q("PBGISCOORD"), q("41.5,-74.1")}});
    seedParcel(q("12-0-0-1-5-0-0-0"));
    seedParcel(q("40-0-0-2-7-0-0-0"));
    seedParcel(q("41-0-0-3-8-0-0-0"));
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(parcelPath, q("Select * from SBL"), &status);
        ASSERT_TRUE(rows->FindKey(q("SBLF"), q("41-0-0-3-8-0-0-0")).ok());
        rows->setValue(q("GISLINK"), q(" 41.93123456789 , -73.99123456789 "));
        ASSERT_TRUE(rows->Update().ok());
    }
    open();
    ASSERT_EQ(label("lblGISCOORD"), q("41.5,-74.1"));

    // The same parcel again keeps the case's place.
    click("IEdit");
    pickFirst(prompts(), "sblloc", "Text1_2", "12");
    click("iSBLLoc");
    EXPECT_EQ(label("lblGISCOORD"), q("41.5,-74.1"));

    // A parcel with no place of its own clears the case's; one with a place
    // gives it, cut as a stored pair is.
    pickFirst(prompts(), "sblloc", "Text1_2", "40");
    click("iSBLLoc");
    EXPECT_EQ(label("lblGISCOORD"), QString());
    pickFirst(prompts(), "sblloc", "Text1_2", "41");
    click("iSBLLoc");
    EXPECT_EQ(label("lblGISCOORD"), q("41.93123456789,-73.9"));
    type(7, q("9 QUARRY RD"));
    click("ISave");
    EXPECT_EQ(caseOnDisk(q("12-210"))->text(q("PBGISCOORD")), q("41.93123456789,-73.9"))
        << prompts().shownTexts().join(q(" | ")).toStdString();

    // A parcel from the roll carries no place: it clears the case's, and
    // cancelling the edit shows the stored one again.
    {
        parcels::RpsRoll roll(parcels::RpsRoll::rollPathIn(session().DatabaseFolder));
        ASSERT_TRUE(roll.resetRPSsbl().ok());
        parcels::RpsRow row;
        row.fullForm = q("50-0-0-1-0-0-0-0");
        row.shortForm = q("50-1");
        row.association = row.contact = q("KATE O'BRIEN");
        ASSERT_TRUE(roll.RPSSBLAdd(row).ok());
    }
    prompts().onDialog(q("rpsloc"), [](QDialog& dialog) {
        auto& roll = static_cast<parcels::RpsLoc&>(dialog);
        dialog.findChild<QTreeView*>(q("ListView1"))->setCurrentIndex(roll.model().index(0, 0));
        dialog.findChild<QPushButton*>(q("iContinue"))->click();
        return dialog.result();
    });
    click("IEdit");
    click("rpslook");
    EXPECT_EQ(text(2), q("50"));
    EXPECT_EQ(label("lblGISCOORD"), QString());
    click("ICancel");
    EXPECT_EQ(label("lblGISCOORD"), q("41.93123456789,-73.9"));

    // The map dialog starts from the picked parcel's place, here none, and
    // the old parcel's place is not written back.
    click("IEdit");
    pickFirst(prompts(), "sblloc", "Text1_2", "40");
    click("iSBLLoc");
    prompts().onDialog(q("ccalc"), [](QDialog& dialog) {
        EXPECT_TRUE(dialog.findChild<QLineEdit*>(q("txtLatitude"))->text().isEmpty());
        return int(QDialog::Rejected);
    });
    click("Image7");
    EXPECT_EQ(prompts().dialogsRun().count(q("ccalc")), 1);
    type(7, q("9 QUARRY RD"));
    click("ISave");
    EXPECT_EQ(caseOnDisk(q("12-210"))->text(q("PBGISCOORD")), QString());
}

TEST_F(CaseScreenTest, ProviderListOpensThePickedProvidersPage)
{
    OpenedUrls opened;
    // The count says five, the file holds two providers: the list holds two.
    ASSERT_TRUE(replaceTextLines(joinPath(installation.databaseFolder(), q("\\GIS.txt")),
        {q("5"), q("Providers"), q("County GIS"), q("https://gis.example.org/county"), q("State Parcels"),
            q("https://parcels.example.org")}));
    open();
    auto* providers = find<QComboBox>("Combo9");
    ASSERT_EQ(providers->count(), 2);
    EXPECT_EQ(providers->currentText(), QString()) << "the prompt stands until a provider is picked";
    QTest::keyClick(providers, Qt::Key_Down);
    EXPECT_EQ(opened.urls, QStringList{q("https://gis.example.org/county")});
    EXPECT_EQ(providers->currentIndex(), -1);
}

} // namespace

#include "CaseParcelFinderTest.moc"
