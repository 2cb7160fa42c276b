#include "ParcelScreensFixture.h"
#include "documents/screens/Editor.h"
#include "parcels/ParcelSearch.h"
#include "parcels/screens/ParcelListModel.h"
#include "parcels/screens/SblFrm.h"
#include "support/DamagedPage.h"
#include "ui/PostitDialog.h"

#include <QAction>
#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTreeView>
#include <map>
#include <tuple>

using namespace pvardo;
using namespace pvardo::parcels;
using namespace pvardo::test;

namespace {

class ParcelBrowserTest : public ParcelScreensTest
{
protected:
    void SetUp() override
    {
        ParcelScreensTest::SetUp();
        seedParcel(q("12-34-0-1-5-1-0-0"),
            {{q("ASSOC"), q("O'BRIEN, KATE")}, {q("LOCN1"), q("14 MILL POND RD")},
                {q("PERMIT"), q("PB12-207")}, {q("HISTORICAL"), q("*PB11-3*Z12-207")},
                {q("EASTCOORD"), 612345.0}, {q("NORTHCOORD"), 1104567.5}});
        seedParcel(q("12-0-0-2-7-0-0-0"),
            {{q("ASSOC"), q("HART")}, {q("LOCN1"), q("NULL")}, {q("OTHER"), 1}, {q("PERMIT"), q("?")}});
        seedParcel(q("30-0-0-4-1-0-0-0"),
            {{q("ASSOC"), q("OBRIENTAL LLC")}, {q("NOTES"), q("barking dog")}, {q("FAILED"), 2},
                {q("VIOL"), 1}});
        seedParcel(
            q("31-0-0-5-2-0-0-0"), {{q("ASSOC"), q("LOWE")}, {q("PERMIT"), q("PB09-1")}, {q("FAILED"), 1}});
    }

    SblFrm& open()
    {
        browser = std::make_unique<SblFrm>();
        return *browser;
    }
    QLineEdit* field(const char* name) { return browser->findChild<QLineEdit*>(q(name)); }
    QString total() { return browser->findChild<QLabel*>(q("lblTotal"))->text(); }
    QString cell(int row, int column)
    {
        return browser->model().data(browser->model().index(row, column), Qt::DisplayRole).toString();
    }
    void select(const QString& sbl)
    {
        ParcelListModel& model = browser->model();
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.sblAt(row) == sbl) {
                browser->list().setCurrentIndex(model.index(row, 0));
                return;
            }
        }
        ADD_FAILURE() << "not listed: " << sbl.toStdString();
    }
    void runMenu(const char* name)
    {
        auto* action = browser->findChild<QMenu*>(q("maction"))->findChild<QAction*>(q(name));
        ASSERT_TRUE(action) << name;
        action->trigger();
    }

    std::unique_ptr<SblFrm> browser;
};

TEST(ParcelQueriesTest, BuildsTheSearchFromTheFilledFieldsOnly)
{
    ParcelSearchFields fields;
    EXPECT_TRUE(ParcelQueries::locate(fields).isEmpty()) << "nothing filled, nothing searched";
    fields.boxes.section = q("12.34");
    fields.boxes.block = q("1");
    // The sections 12 with subsections beginning with 34 lie between 12-34
    // and 12-35: the store reads them through its index.
    EXPECT_EQ(ParcelQueries::locate(fields),
        q("Select * from SBL where [SBLF] >= '12-34' AND [SBLF] < '12-35' AND [SBLF] like "
          "'12-34%-%-1%-%-%-%-%' order by [SBLF]"));
    fields.boxes = {};
    fields.boxes.lot = q("7a");
    EXPECT_EQ(ParcelQueries::locate(fields),
        q("Select * from SBL where [SBLF] like '%-%-%-%-7A%-%-%-%' order by [SBLF]"));
    fields = {};
    fields.owner = q("  O'Brien ");
    fields.permit = q("PB");
    fields.location = q("Mill");
    fields.notes = q("dog");
    EXPECT_EQ(ParcelQueries::locate(fields),
        q("Select * from SBL where [ASSOC] like '%O''Brien%' AND [PERMIT] like '%PB%' AND [LOCN1] like "
          "'%Mill%' AND "
          "[NOTES] like '%dog%' OR [HISTORICAL] like '%dog%' order by [SBLF]"));
    EXPECT_EQ(ParcelQueries::crossReference(1000, 250),
        q("Select * from SBL where [NORTHCOORD] > 0 AND [EASTCOORD] > 0 AND (([NORTHCOORD] > -250 AND "
          "[NORTHCOORD] < 750) AND ([EASTCOORD] > 500 AND [EASTCOORD] < 1500))  order by [SBLF]"));
}

TEST(ParcelQueriesTest, MarksFollowTheFlagsLastSetWinning)
{
    const QVariant null;
    EXPECT_EQ(parcelMarkOf(null, null, null), ParcelMark::None);
    EXPECT_EQ(parcelMarkOf(1, 0, 0), ParcelMark::Other);
    EXPECT_EQ(parcelMarkOf(1, 1, 0), ParcelMark::Failed);
    EXPECT_EQ(parcelMarkOf(1, 2, 0), ParcelMark::Complaint);
    EXPECT_EQ(parcelMarkOf(0, 2, 1), ParcelMark::Violation);
    EXPECT_EQ(parcelMarkOf(0, 3, 0), ParcelMark::None) << "only 1 and 2 mean something in FAILED";
    EXPECT_EQ(trailLines(q("*PB11-3*Z12-207")), q("PB11-3\nZ12-207"));
}

TEST_F(ParcelBrowserTest, ListsTheStoreWithShortFormsMarksAndDashesForNothing)
{
    open();
    EXPECT_EQ(browser->windowTitle(), q(" S-B-L Repository"));
    EXPECT_EQ(total(), q("4"));
    ParcelListModel& model = browser->model();
    QStringList headings;
    for (int column = 0; column < model.columnCount(); ++column) {
        headings << model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    }
    EXPECT_EQ(
        headings, (QStringList{q(" S-B-L "), q(" Name "), q(" Location "), q(" Permit "), q(" Grid ")}));
    // In S-B-L order: 12-0-..., 12-34-..., 30-..., 31-..., each written as
    // the tax map writes it; the grid only where the roll gave one.
    EXPECT_EQ(cell(0, 0), q("12-2-7"));
    EXPECT_EQ(model.sblAt(0), q("12-0-0-2-7-0-0-0"));
    EXPECT_EQ(cell(0, 2), q("--")) << "a location never written";
    EXPECT_EQ(cell(0, 3), QString()) << "the store's ? for no permit";
    EXPECT_EQ(cell(0, 4), QString());
    EXPECT_EQ(cell(1, 0), q("12.34-1-5.1"));
    EXPECT_EQ(cell(1, 1), q("O'BRIEN, KATE"));
    EXPECT_EQ(cell(1, 3), q("PB12-207"));
    EXPECT_EQ(cell(1, 4), q("612345, 1104567.5"));
    EXPECT_EQ(model.markAt(0), ParcelMark::Other);
    EXPECT_EQ(model.markAt(1), ParcelMark::None);
    EXPECT_EQ(model.markAt(2), ParcelMark::Violation);
    EXPECT_EQ(model.markAt(3), ParcelMark::Failed);
    EXPECT_EQ(model.data(model.index(2, 0), Qt::ToolTipRole).toString(), q("Violation"));

    // Print with no parcel picked out prints the list as it stands.
    clickIn(*browser, "iPrint");
    const QString printed = documents::Editor::instance().ReportBuffer().toPlainText();
    EXPECT_TRUE(printed.contains(q("12.34-1-5.1"))) << printed.toStdString();
    EXPECT_FALSE(printed.contains(q("12-34-0-1")));
    EXPECT_TRUE(printed.contains(q("TOTAL = 4")));
    EXPECT_FALSE(prompts().shownTexts().contains(q("That S-B-L cannot be located.")));
}

TEST_F(ParcelBrowserTest, SearchesByEachFieldAndTheirCombinations)
{
    seedParcel(q("15-2-0-4-12-0-0-0"));
    seedParcel(q("41-0-0-2-5-0-0-0"));
    seedParcel(q("44-0-0-3-10-0-0-0"));
    open();
    auto search = [&](std::initializer_list<std::pair<const char*, const char*>> typed) {
        clickIn(*browser, "iLook");
        for (const auto& [name, text] : typed) {
            field(name)->setText(q(text));
        }
        clickIn(*browser, "ILocate");
        QStringList found;
        for (int row = 0; row < browser->model().rowCount(); ++row) {
            found << browser->model().sblAt(row);
        }
        EXPECT_EQ(total(), QString::number(found.size()));
        return found;
    };
    EXPECT_EQ(search({{"txtOwner", "o'brien"}}), QStringList{q("12-34-0-1-5-1-0-0")})
        << "the apostrophe is searched";
    EXPECT_EQ(search({{"txtOwner", "obrien"}}), QStringList{q("30-0-0-4-1-0-0-0")});
    // A partial S-B-L: each box typed begins its part, whatever follows.
    EXPECT_EQ(search({{"Text1_2", "1"}}),
        (QStringList{q("12-0-0-2-7-0-0-0"), q("12-34-0-1-5-1-0-0"), q("15-2-0-4-12-0-0-0")}));
    EXPECT_EQ(search({{"Text1_4", "1"}}),
        (QStringList{q("15-2-0-4-12-0-0-0"), q("30-0-0-4-1-0-0-0"), q("44-0-0-3-10-0-0-0")}));
    EXPECT_EQ(search({{"Text1_4", "10"}}), QStringList{q("44-0-0-3-10-0-0-0")});
    EXPECT_EQ(search({{"Text1_2", "12"}, {"Text1_3", "2"}}), QStringList{q("12-0-0-2-7-0-0-0")});
    EXPECT_EQ(search({{"Text1_2", "12.3"}}), QStringList{q("12-34-0-1-5-1-0-0")});
    EXPECT_EQ(search({{"Text1_2", "12.34"}, {"Text1_3", "1"}}), QStringList{q("12-34-0-1-5-1-0-0")});
    EXPECT_EQ(
        search({{"Text1_2", "4"}, {"Text1_3", "3"}, {"Text1_4", "1"}}), QStringList{q("44-0-0-3-10-0-0-0")});
    EXPECT_EQ(search({{"txtPermit", "PB"}, {"txtLocation", "mill"}}), QStringList{q("12-34-0-1-5-1-0-0")});
    EXPECT_EQ(search({{"txtNotes", "Z12-207"}}), QStringList{q("12-34-0-1-5-1-0-0")})
        << "the trail is searched";
    // The notes condition comes last with a bare OR: a match in the trail
    // stands on its own, whatever the other fields say; a match in the note
    // needs them.
    EXPECT_EQ(search({{"txtOwner", "HART"}, {"txtNotes", "Z12-207"}}), QStringList{q("12-34-0-1-5-1-0-0")});
    EXPECT_TRUE(search({{"txtOwner", "HART"}, {"txtNotes", "dog"}}).isEmpty());
    EXPECT_EQ(search({{"txtOwner", "OBRIENTAL"}, {"txtNotes", "dog"}}), QStringList{q("30-0-0-4-1-0-0-0")});
    EXPECT_TRUE(search({{"txtOwner", "nobody"}}).isEmpty());
    EXPECT_EQ(total(), q("0"));
    // Nothing filled: no search, the list stays as it was.
    clickIn(*browser, "iLook");
    clickIn(*browser, "ILocate");
    EXPECT_EQ(total(), q("0"));
    clickIn(*browser, "iReset");
    EXPECT_EQ(total(), q("7"));
}

TEST_F(ParcelBrowserTest, FlagCommandsStoreTheFlagAndItsNoteAndClearingEmptiesIt)
{
    open();
    select(q("12-34-0-1-5-1-0-0"));
    EXPECT_EQ(field("Text1_2")->text(), q("12.34")) << "a selected row fills the boxes";
    prompts().onDialog(q("Postit"), [](QDialog& dialog) {
        dialog.findChild<QPlainTextEdit*>(q("txtNote"))->setPlainText(q("Failed footing inspection"));
        return int(QDialog::Accepted);
    });
    runMenu("ffailed");
    auto row = parcelOnDisk(q("12-34-0-1-5-1-0-0"));
    ASSERT_TRUE(row);
    EXPECT_EQ(row->value(q("FAILED")).toInt(), 1);
    EXPECT_EQ(row->text(q("NOTES")), q("Failed footing inspection"));
    EXPECT_EQ(browser->model().markAt(1), ParcelMark::Failed);

    // A complaint replaces the failed inspection; the note cancelled stays as it was.
    select(q("12-34-0-1-5-1-0-0"));
    prompts().onDialog(q("Postit"), [](QDialog&) { return int(QDialog::Rejected); });
    runMenu("fcomplaint");
    row = parcelOnDisk(q("12-34-0-1-5-1-0-0"));
    EXPECT_EQ(row->value(q("FAILED")).toInt(), 2);
    EXPECT_EQ(row->text(q("NOTES")), q("Failed footing inspection"));

    // Another parcel's flag does not take this parcel's note.
    select(q("31-0-0-5-2-0-0-0"));
    prompts().onDialog(q("Postit"), [](QDialog&) { return int(QDialog::Rejected); });
    runMenu("fViol");
    EXPECT_EQ(parcelOnDisk(q("31-0-0-5-2-0-0-0"))->text(q("NOTES")), QString());

    select(q("12-34-0-1-5-1-0-0"));
    runMenu("clearit");
    row = parcelOnDisk(q("12-34-0-1-5-1-0-0"));
    EXPECT_EQ(row->value(q("FAILED")).toInt(), 0);
    EXPECT_EQ(row->text(q("NOTES")), QString());
    EXPECT_EQ(browser->model().markAt(1), ParcelMark::None);
}

TEST_F(ParcelBrowserTest, EditorWritesTheParcelBackAndNeedsARow)
{
    open();
    clickIn(*browser, "iEdit");
    EXPECT_EQ(lastText(), q("You must click and highlight a parcel\nfirst before you can edit it."));
    select(q("30-0-0-4-1-0-0-0"));
    prompts().onDialog(q("SBLEdit"), [](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), q(" SBL Repository Edit"));
        EXPECT_EQ(dialog.findChild<QLineEdit*>(q("Text1_2"))->text(), q("30"));
        EXPECT_TRUE(dialog.findChild<QLineEdit*>(q("Text1_2"))->isReadOnly());
        EXPECT_EQ(dialog.findChild<QLineEdit*>(q("txtASSOC"))->text(), q("OBRIENTAL LLC"));
        dialog.findChild<QLineEdit*>(q("txtASSOC"))->setText(q("  O'Neill Farms  "));
        dialog.findChild<QLineEdit*>(q("txtEASTCOORD"))->setText(q("612345.5 ft"));
        // A link the map could not use is refused, with its format.
        dialog.findChild<QLineEdit*>(q("txtGISLINK"))->setText(q("41.9 N, 73.99 W"));
        dialog.findChild<QPushButton*>(q("ILocate"))->click();
        EXPECT_FALSE(dialog.result());
        dialog.findChild<QLineEdit*>(q("txtGISLINK"))->setText(q("41.9,-73.99"));
        dialog.findChild<QPlainTextEdit*>(q("txtNOTES"))->setPlainText(q("dog gone"));
        dialog.findChild<QPushButton*>(q("ILocate"))->click();
        return dialog.result();
    });
    clickIn(*browser, "iEdit");
    auto row = parcelOnDisk(q("30-0-0-4-1-0-0-0"));
    ASSERT_TRUE(row);
    EXPECT_EQ(row->text(q("ASSOC")), q("O'Neill Farms"));
    EXPECT_DOUBLE_EQ(row->value(q("EASTCOORD")).toDouble(), 612345.5);
    EXPECT_EQ(row->text(q("GISLINK")), q("41.9,-73.99"));
    EXPECT_EQ(row->text(q("NOTES")), q("dog gone"));
    EXPECT_EQ(row->value(q("VIOL")).toInt(), 1) << "the flags are not the editor's";
    EXPECT_EQ(cell(2, 1), q("O'Neill Farms")) << "the list shows the change";

    // Cancel writes nothing.
    select(q("30-0-0-4-1-0-0-0"));
    prompts().onDialog(q("SBLEdit"), [](QDialog& dialog) {
        dialog.findChild<QLineEdit*>(q("txtASSOC"))->setText(q("NOT SAVED"));
        dialog.findChild<QPushButton*>(q("ICancel"))->click();
        return dialog.result();
    });
    clickIn(*browser, "iEdit");
    EXPECT_EQ(parcelOnDisk(q("30-0-0-4-1-0-0-0"))->text(q("ASSOC")), q("O'Neill Farms"));
    EXPECT_TRUE(lastText().startsWith(q("GISLINK must follow the format of Latitude coma Longitude.")));

    // The store's "?" for no permit, and coordinates never given, show as
    // nothing and stay as they were.
    select(q("12-0-0-2-7-0-0-0"));
    prompts().onDialog(q("SBLEdit"), [](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>(q("txtPERMIT"))->text(), QString());
        EXPECT_EQ(dialog.findChild<QLineEdit*>(q("txtNORTHCOORD"))->text(), QString());
        dialog.findChild<QLineEdit*>(q("txtASSOC"))->setText(q("HART FAMILY TRUST"));
        dialog.findChild<QPushButton*>(q("ILocate"))->click();
        return dialog.result();
    });
    clickIn(*browser, "iEdit");
    row = parcelOnDisk(q("12-0-0-2-7-0-0-0"));
    EXPECT_EQ(row->text(q("ASSOC")), q("HART FAMILY TRUST"));
    EXPECT_EQ(row->text(q("PERMIT")), q("?"));
    EXPECT_TRUE(row->value(q("NORTHCOORD")).isNull());
}

TEST_F(ParcelBrowserTest, AParcelACaseUsesIsNotDeletedAndTheSearchStays)
{
    session().UserLevel = q("ADMIN");
    const QString casePath = installation.createDatabase(store::Table::PBPROJ);
    {
        store::StoreStatus status;
        auto cases = store::openRecordsetAt(casePath, q("Select * from PBPROJ"), &status);
        ASSERT_TRUE(cases);
        // On 12.34-1-5.1: two cases; a case on 12.34-1-5 (no sub-lot) or on
        // 12.34-1-5.2 is on another parcel. On 12-2-7: a case on 12-2-7.3 only.
        const std::tuple<const char*, const char*, const char*, const char*, const char*> filed[]
            = {{"12-300", "34", "1", "5", "1"}, {"12-207", "34", "1", "5", "1"}, {"13-1", "34", "1", "5", ""},
                {"13-2", "34", "1", "5", "2"}, {"13-3", "", "2", "7", "3"}};
        for (const auto& [number, subsection, block, lot, sublot] : filed) {
            cases->AddNew();
            for (const auto& [column, value] : std::map<QString, QString>{{q("PBCASE"), q(number)},
                     {q("SEC"), q("12")}, {q("SUD"), q(subsection)}, {q("BLK"), q(block)}, {q("LOT"), q(lot)},
                     {q("LOD"), q(sublot)}}) {
                cases->setValue(column, value);
            }
            ASSERT_TRUE(cases->Update().ok());
        }
    }
    open();
    clickIn(*browser, "iLook");
    field("txtOwner")->setText(q("O"));
    clickIn(*browser, "ILocate");
    ASSERT_EQ(total(), q("3")) << "O'BRIEN, OBRIENTAL and LOWE";

    select(q("12-34-0-1-5-1-0-0"));
    clickIn(*browser, "iDelete");
    EXPECT_EQ(lastText(),
        q("Parcel 12.34-1-5.1 cannot be deleted: cases 12-207, 12-300 are filed on it.\nA parcel stays in the "
          "SBL Repository while a case refers to it."));
    EXPECT_FALSE(prompts().dialogsRun().contains(q("Delconfirm")));
    EXPECT_TRUE(parcelOnDisk(q("12-34-0-1-5-1-0-0")));

    // A parcel no case is on goes after the question; the search's list stays, less the parcel.
    select(q("30-0-0-4-1-0-0-0"));
    prompts().onDialog(q("Delconfirm"), [](QDialog& dialog) {
        dialog.findChild<QPushButton*>(q("cmdYes"))->click();
        return dialog.result();
    });
    clickIn(*browser, "iDelete");
    EXPECT_FALSE(parcelOnDisk(q("30-0-0-4-1-0-0-0")));
    EXPECT_EQ(total(), q("2"));
    EXPECT_EQ(field("txtOwner")->text(), q("O"));
    clickIn(*browser, "iReset");
    select(q("12-0-0-2-7-0-0-0"));
    clickIn(*browser, "iDelete");
    EXPECT_EQ(prompts().dialogsRun().count(q("Delconfirm")), 2) << "a case on 12-2-7.3 is not on 12-2-7";

    // Without a readable case file nothing is deleted.
    ASSERT_TRUE(QFile::remove(casePath));
    select(q("31-0-0-5-2-0-0-0"));
    clickIn(*browser, "iDelete");
    EXPECT_TRUE(lastText().startsWith(q("Parcel 31-5-2 is not deleted: the cases filed on it could not be read.")))
        << lastText().toStdString();
    EXPECT_TRUE(parcelOnDisk(q("31-0-0-5-2-0-0-0")));
}

TEST_F(ParcelBrowserTest, ParcelHandlerAddsOrUpdatesOnlyWhenAsked)
{
    open();
    auto handle = [&](const char* section, const char* owner, const char* location) {
        prompts().onDialog(q("Scan"), [=](QDialog& dialog) {
            dialog.findChild<QLineEdit*>(q("Text1_2"))->setText(q(section));
            dialog.findChild<QLineEdit*>(q("Text1_3"))->setText(q("9"));
            dialog.findChild<QLineEdit*>(q("txtOwner"))->setText(q(owner));
            dialog.findChild<QLineEdit*>(q("txtPermit"))->setText(q("PB12-300"));
            dialog.findChild<QLineEdit*>(q("txtLocation"))->setText(q(location));
            dialog.findChild<QPushButton*>(q("IAdd"))->click();
            return dialog.result();
        });
        clickIn(*browser, "IAdd");
    };
    handle("44", "", "");
    EXPECT_TRUE(lastText().startsWith(q("Missing --Association/Owner\n--Property Location\n")))
        << lastText().toStdString();
    handle("44", "NEW OWNER", "9 ELM ST");
    EXPECT_EQ(total(), q("5"));
    auto row = parcelOnDisk(q("44-0-0-9-0-0-0-0"));
    ASSERT_TRUE(row);
    EXPECT_EQ(row->text(q("HISTORICAL")), q("*PB12-300"));
    prompts().answer(q("Duplicate SBL"), PromptAnswer::No);
    handle("44", "OTHER OWNER", "9 ELM ST");
    EXPECT_EQ(parcelOnDisk(q("44-0-0-9-0-0-0-0"))->text(q("ASSOC")), q("NEW OWNER"));
    prompts().answer(q("Duplicate SBL"), PromptAnswer::Yes);
    handle("44", "OTHER OWNER", "9 ELM ST");
    EXPECT_EQ(parcelOnDisk(q("44-0-0-9-0-0-0-0"))->text(q("ASSOC")), q("OTHER OWNER"));
    EXPECT_EQ(total(), q("5"));
}

TEST_F(ParcelBrowserTest, CrossReferenceNeedsCoordinates)
{
    seedParcel(q("50-0-0-1-0-0-0-0"), {{q("EASTCOORD"), 1000.0}, {q("NORTHCOORD"), 2000.0}});
    seedParcel(q("51-0-0-1-0-0-0-0"), {{q("EASTCOORD"), 1499.0}, {q("NORTHCOORD"), 2000.0}});
    seedParcel(q("52-0-0-1-0-0-0-0"), {{q("EASTCOORD"), 1500.0}, {q("NORTHCOORD"), 2000.0}});
    seedParcel(q("53-0-0-1-0-0-0-0"), {{q("EASTCOORD"), 0.0}, {q("NORTHCOORD"), 2000.0}});
    open();
    select(q("12-0-0-2-7-0-0-0"));
    clickIn(*browser, "iXREF");
    EXPECT_EQ(lastText(), q("Subject coordinates are zero."));
    select(q("53-0-0-1-0-0-0-0"));
    clickIn(*browser, "iXREF");
    EXPECT_EQ(total(), q("0"))
        << "one zero coordinate can be looked around, and finds only parcels with both";
    clickIn(*browser, "iReset");
    select(q("50-0-0-1-0-0-0-0"));
    clickIn(*browser, "iXREF");
    EXPECT_EQ(total(), q("2")) << "the bound itself is outside";
}

} // namespace

TEST_F(ParcelBrowserTest, ADamagedStoreIsReportedNotListedBlank)
{
    zeroFirstLeafPage(storePath, "SBL");
    open();
    // The parcels on the zeroed page are listed as unreadable, and said once.
    EXPECT_EQ(cell(0, 0), ParcelListModel::unreadableText());
    EXPECT_EQ(cell(1, 0), ParcelListModel::unreadableText());
    QCoreApplication::processEvents();
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_EQ(scriptedPrompts().shown().first().title, browser->windowTitle());
    EXPECT_TRUE(lastText().contains(q("damaged"))) << lastText().toStdString();
    EXPECT_TRUE(lastText().contains(storePath)) << lastText().toStdString();
}
