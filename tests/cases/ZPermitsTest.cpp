#include "CaseScreenFixture.h"
#include "common/ProgramEnd.h"
#include "store/Catalogue.h"
#include "store/DatabaseLocation.h"
#include "ui/RecordMode.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTest>
#include <QTreeView>

using namespace pvardo;
using namespace pvardo::test;
using ui::RecordMode;

namespace {

const QString kMissingAll
    = q("Missing: --Case Number\n--Applicant\n--Applicant Address\n--Property Location\n"
        "--Application Status\n--S-B-L\n\nPlease ensure required\nfields are filled in correctly.");

} // namespace

TEST_F(CaseScreenTest, AnEmptyTableOpensEmptyAndTheLeftPaneHasNoCase)
{
    open();
    EXPECT_EQ(screen->mode(), RecordMode::Empty);
    EXPECT_EQ(label("recpos"), q("empty database"));
    EXPECT_TRUE(on("INew"));
    for (const char* off : {"IAdd", "IEdit", "ISave", "ICancel", "ILocate", "IMoveNext", "recinfod"}) {
        EXPECT_FALSE(on(off)) << off;
    }
    EXPECT_TRUE(find<QAction>("newr")->isEnabled());
    EXPECT_FALSE(find<QAction>("find")->isEnabled());
    click("ifees");
    EXPECT_EQ(lastTitle(), q(" No current case "));
    EXPECT_EQ(lastText(),
        q("You have no case or no case selected. All selections on the left pane  \n"
          "are related to the currently displayed case record."));
    EXPECT_TRUE(session().StopFlag);
}

TEST_F(CaseScreenTest, CancelAfterNewOnAnEmptyTableComesBackEmpty)
{
    open();
    click("INew");
    EXPECT_EQ(screen->mode(), RecordMode::New);
    EXPECT_EQ(label("recpos"), q("enter data"));
    EXPECT_TRUE(on("IAdd"));
    EXPECT_TRUE(on("ICancel"));
    EXPECT_FALSE(on("INew"));
    EXPECT_FALSE(find<QWidget>("Text1_1")->property("readOnly").toBool());
    click("ICancel");
    EXPECT_EQ(screen->mode(), RecordMode::Empty);
    EXPECT_EQ(label("recpos"), q("empty database"));
    EXPECT_TRUE(find<QLineEdit>("Text1_1")->isReadOnly());
    EXPECT_EQ(casesOnDisk(), 0);
}

TEST_F(CaseScreenTest, NewProposesTheNextFreeNumberAndKeepsTheClimb)
{
    seedCase(q("12-200"));
    seedCase(q("12-201"));
    open();
    EXPECT_EQ(screen->mode(), RecordMode::Browse);
    EXPECT_EQ(label("recpos"), q("Record 1 of 2"));
    EXPECT_FALSE(on("IMoveFirst"));
    EXPECT_TRUE(on("IMoveNext"));
    click("IMoveNext");
    EXPECT_EQ(label("recpos"), q("Record 2 of 2"));
    EXPECT_FALSE(on("IMoveLast"));
    click("INew");
    EXPECT_EQ(text(1), q("12-202"));
    const auto zhi = readTextLines(joinPath(installation.databaseFolder(), q("\\zhi.txt")));
    ASSERT_TRUE(zhi);
    EXPECT_EQ(zhi->first(), q("202"));
    // A cancelled proposal does not use the number up.
    click("ICancel");
    EXPECT_EQ(label("recpos"), q("Record 2 of 2"));
    click("INew");
    EXPECT_EQ(text(1), q("12-202"));
}

TEST_F(CaseScreenTest, MissingInputsAreListedInOneMessageInOrder)
{
    open();
    click("INew");
    type(1, q("  "));
    click("IAdd");
    ASSERT_EQ(prompts().shown().size(), 1);
    EXPECT_EQ(lastTitle(), q(" Missing Information"));
    EXPECT_EQ(lastText(), kMissingAll);
    EXPECT_EQ(prompts().shown().last().icon, PromptIcon::Critical);
    EXPECT_EQ(screen->mode(), RecordMode::New);

    // Section given but no block: the S-B-L is named once.
    fillRequired();
    type(3, q(""));
    type(4, q(""));
    click("IAdd");
    EXPECT_EQ(lastText(),
        q("Missing: --Case Number\n--S-B-L\n\nPlease ensure required\nfields are filled in correctly."));
    EXPECT_EQ(casesOnDisk(), 0);
}

TEST_F(CaseScreenTest, ANewParcelIsAddedThroughSblNotFound)
{
    open();
    click("INew");
    fillRequired();
    type(69, q("GARAGE"));
    prompts().answer(q("SBL not found"), PromptAnswer::Yes);
    click("IAdd");
    EXPECT_EQ(prompts().shown().last().text,
        q("The Section, Block and Lot info cannot be found.\nIf this is a new S-B-L, click 'Yes' to add this "
          "as a new record."));
    EXPECT_EQ(screen->mode(), RecordMode::Browse);
    EXPECT_EQ(label("recpos"), q("Record 1 of 1"));
    auto row = caseOnDisk(q("12-200"));
    ASSERT_TRUE(row);
    EXPECT_EQ(row->text(q("PBAPPNAME1")), q("ANN APPLICANT"));
    EXPECT_EQ(row->text(q("PBPROJNAME")), q("GARAGE"));
    EXPECT_EQ(row->text(q("PBSTATUS")), q("P"));
    EXPECT_EQ(row->text(q("BYUSER")), q("clerk"));
    EXPECT_EQ(row->text(q("PBTYPE")), q(""));
    auto parcel = parcelOnDisk(q("12-0-0-1-5-0-0-0"));
    ASSERT_TRUE(parcel);
    EXPECT_EQ(parcel->text(q("HISTORICAL")), q("*PB12-200*Z12-200"));
    EXPECT_EQ(parcel->text(q("ASSOC")), q("OWEN OWNER"));
    EXPECT_EQ(session().CurrentCase, q("12-200"));
    // The sequence moved on.
    click("INew");
    EXPECT_EQ(text(1), q("12-201"));
}

TEST_F(CaseScreenTest, NoToSblNotFoundWritesNothing)
{
    open();
    click("INew");
    fillRequired();
    prompts().answer(q("SBL not found"), PromptAnswer::No);
    click("IAdd");
    EXPECT_EQ(screen->mode(), RecordMode::New);
    EXPECT_TRUE(session().StopFlag);
    EXPECT_EQ(casesOnDisk(), 0);
    EXPECT_FALSE(parcelOnDisk(q("12-0-0-1-5-0-0-0")));
}

TEST_F(CaseScreenTest, ATakenNumberAsksDupeAndResolvesWhenTicked)
{
    seedCase(q("12-207"));
    seedParcel(q("12-0-0-1-5-0-0-0"));
    open();
    click("INew");
    fillRequired();
    type(1, q("12-207"));
    prompts().onDialog(q("dupe"), [](QDialog&) { return int(QDialog::Rejected); });
    click("IAdd");
    EXPECT_EQ(prompts().dialogsRun(), QStringList{q("dupe")});
    EXPECT_EQ(screen->mode(), RecordMode::New);
    EXPECT_EQ(text(1), q("12-207"));
    EXPECT_EQ(casesOnDisk(), 1);

    prompts().onDialog(q("dupe"), [](QDialog& dialog) {
        dialog.findChild<QCheckBox*>(q("Check1"))->setChecked(true);
        return int(QDialog::Accepted);
    });
    click("IAdd");
    EXPECT_TRUE(caseOnDisk(q("12-208")));
    EXPECT_EQ(screen->mode(), RecordMode::Browse);
    EXPECT_EQ(cases::caseNumbering().PermitSeq, q("209"));
    EXPECT_EQ(parcelOnDisk(q("12-0-0-1-5-0-0-0"))->text(q("HISTORICAL")), q("*Z12-208"));
}

TEST_F(CaseScreenTest, TheCaseNumberShowsTheParcelsFlags)
{
    struct Case
    {
        const char* sbl;
        const char* section;
        const char* notes;
        int viol;
        int failed;
        QColor colour;
        const char* tip;
    };
    const Case table[] = {
        {"1-0-0-1-1-0-0-0", "1", "", 0, 0, QColor(), " Case Number "},
        {"2-0-0-1-1-0-0-0", "2", "dog", 0, 0, QColor(0, 255, 0), " This property had note-it notes "},
        {"3-0-0-1-1-0-0-0", "3", "dog", 0, 1, QColor(255, 255, 0), " This property had a failed inspection "},
        {"4-0-0-1-1-0-0-0", "4", "dog", 0, 2, QColor(255, 0, 255), " This property had a failed inspection "},
        {"5-0-0-1-1-0-0-0", "5", "dog", 1, 2, QColor(255, 0, 0), " This property had a Violation "},
    };
    int n = 0;
    for (const Case& c : table) {
        seedParcel(q(c.sbl), q(c.notes), c.viol, c.failed);
        seedCase(QStringLiteral("12-%1").arg(300 + n++),
            {{q("SEC"), q(c.section)}, {q("BLK"), q("1")}, {q("LOT"), q("1")}});
    }
    open();
    for (const Case& c : table) {
        auto* number = find<QLineEdit>("Text1_1");
        const QColor expected
            = c.colour.isValid() ? c.colour : QApplication::palette().color(QPalette::Button);
        EXPECT_EQ(number->palette().color(QPalette::Base), expected) << c.sbl;
        EXPECT_EQ(number->toolTip(), q(c.tip)) << c.sbl;
        if (on("IMoveNext")) {
            click("IMoveNext");
        }
    }
}

TEST_F(CaseScreenTest, AViolationShowsPostitBeforeTheSaveAndKeepsANewNote)
{
    seedParcel(q("12-0-0-1-5-0-0-0"), q("old note"), 1);
    seedCase(q("12-200"),
        {{q("SEC"), q("12")}, {q("BLK"), q("1")}, {q("LOT"), q("5")}, {q("PBLOCN1"), q("10 MAIN ST")},
            {q("PBAPPNAME1"), q("ANN")}, {q("PBAPPADDR1"), q("1 ELM")}, {q("PBSTATUS"), q("P")}});
    open();
    click("IEdit");
    EXPECT_EQ(screen->mode(), RecordMode::Edit);
    type(69, q("SHED"));
    prompts().onDialog(q("Postit"), [](QDialog&) { return int(QDialog::Rejected); });
    click("ISave");
    EXPECT_EQ(screen->mode(), RecordMode::Edit);
    EXPECT_EQ(caseOnDisk(q("12-200"))->text(q("PBPROJNAME")), q(""));

    prompts().onDialog(q("Postit"), [](QDialog& dialog) {
        dialog.findChild<QPushButton*>(q("noteEdit"))->click();
        dialog.findChild<QPlainTextEdit*>(q("txtNote"))->setPlainText(q("new note"));
        return int(QDialog::Accepted);
    });
    click("ISave");
    EXPECT_EQ(screen->mode(), RecordMode::Browse);
    EXPECT_EQ(caseOnDisk(q("12-200"))->text(q("PBPROJNAME")), q("SHED"));
    EXPECT_EQ(parcelOnDisk(q("12-0-0-1-5-0-0-0"))->text(q("NOTES")), q("new note"));
    EXPECT_EQ(parcelOnDisk(q("12-0-0-1-5-0-0-0"))->text(q("LOCN1")), q("10 MAIN ST"));
}

TEST_F(CaseScreenTest, SavingOntoAnotherCasesNumberIsRefusedAndStaysInEdit)
{
    seedCase(q("12-200"),
        {{q("SEC"), q("9")}, {q("BLK"), q("1")}, {q("LOT"), q("5")}, {q("PBLOCN1"), q("X")},
            {q("PBAPPNAME1"), q("ANN")}, {q("PBAPPADDR1"), q("1 ELM")}, {q("PBSTATUS"), q("P")}});
    seedCase(q("12-201"));
    open();
    click("IEdit");
    type(1, q("12-201"));
    click("ISave");
    EXPECT_EQ(lastTitle(), q(" Duplicate Permit"));
    EXPECT_EQ(screen->mode(), RecordMode::Edit);
    click("ICancel");
    EXPECT_EQ(text(1), q("12-200"));
    EXPECT_TRUE(caseOnDisk(q("12-200")));
}

TEST_F(CaseScreenTest, VoidAndRestore)
{
    seedCase(q("12-200"), {{q("PBSTATUS"), q("A")}});
    open();
    EXPECT_FALSE(find<QLabel>("lblVoid")->isVisibleTo(screen.get()));
    prompts().answer(q("Void a Record"), PromptAnswer::Yes);
    trigger("delr");
    EXPECT_EQ(caseOnDisk(q("12-200"))->text(q("PBSTATUS")), q("V"));
    EXPECT_TRUE(find<QLabel>("lblVoid")->isVisibleTo(screen.get()));
    EXPECT_EQ(find<QComboBox>("Combo10")->currentText(), q("Voided"));
    EXPECT_TRUE(on("IEdit"));

    prompts().answer(q("Record Void"), PromptAnswer::Yes);
    trigger("delr");
    EXPECT_EQ(lastText(),
        q("This record is already voided. Do you want to reset it?\nClicking 'Yes' will restore/unvoid it"));
    EXPECT_EQ(caseOnDisk(q("12-200"))->text(q("PBSTATUS")), q("A"));
    EXPECT_FALSE(find<QLabel>("lblVoid")->isVisibleTo(screen.get()));
    EXPECT_EQ(find<QComboBox>("Combo10")->currentText(), q("Approved"));
}

TEST_F(CaseScreenTest, DeleteIsAnAdministratorsHiddenCommand)
{
    seedCase(q("12-200"));
    seedCase(q("12-201"));
    open();
    screen->show();
    QApplication::setActiveWindow(screen.get());
    auto* erase = find<QPushButton>("iDelete");
    QTest::keyClick(screen.get(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_FALSE(erase->isVisible());

    session().UserLevel = q("ADMIN");
    session().IsAdmin = true;
    QTest::keyClick(screen.get(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_TRUE(erase->isVisible());
    QString warning;
    prompts().onDialog(q("Delconfirm"), [&warning](QDialog& dialog) {
        // The whole warning reads as one sentence, from its first line on.
        warning = dialog.findChild<QLabel*>(q("Label2"))->text() + q(" ")
            + dialog.findChild<QLabel*>(q("Label1"))->text();
        return int(QDialog::Rejected);
    });
    click("iDelete"); // Delconfirm refused: kept
    EXPECT_EQ(prompts().dialogsRun(), QStringList{q("Delconfirm")});
    EXPECT_TRUE(
        warning.startsWith(q("You are about to remove this record from the database. This option cannot be "
                             "reversed.")))
        << warning.toStdString();
    EXPECT_EQ(casesOnDisk(), 2);
    prompts().onDialog(q("Delconfirm"), [](QDialog&) { return int(QDialog::Accepted); });
    click("iDelete");
    EXPECT_EQ(casesOnDisk(), 1);
    EXPECT_FALSE(caseOnDisk(q("12-200")));
    EXPECT_EQ(label("recpos"), q("Record 1 of 1"));
    EXPECT_EQ(text(1), q("12-201"));
}

// Files one record of the table under the case number, as its screen would.
static void fileUnder(TestInstallation& installation, store::Table table, const char* column, const QString& caseNumber)
{
    store::StoreStatus status;
    const QString path
        = store::databaseFile(installation.databaseFolder(), QString::fromLatin1(store::tableDef(table).fileName));
    if (!QFileInfo::exists(path)) {
        installation.createDatabase(table);
    }
    auto rows = store::openRecordsetAt(
        path, QStringLiteral("Select * from ") + QString::fromLatin1(store::tableDef(table).tableName), &status);
    ASSERT_TRUE(rows) << status.description.toStdString();
    rows->AddNew();
    rows->setValue(QString::fromLatin1(column), caseNumber);
    ASSERT_TRUE(rows->Update().ok());
}

TEST_F(CaseScreenTest, ACaseWithRecordsFiledUnderItIsNotDeleted)
{
    seedCase(q("12-200"));
    fileUnder(installation, store::Table::PBFEES, "PBFCASE", q("12-200"));
    fileUnder(installation, store::Table::ADJ, "ACASE", q("12-200"));
    fileUnder(installation, store::Table::ADJ, "ACASE", q("12-200"));
    open();
    session().UserLevel = q("ADMIN");
    session().IsAdmin = true;
    screen->show();
    QApplication::setActiveWindow(screen.get());
    QTest::keyClick(screen.get(), Qt::Key_U, Qt::ControlModifier);
    click("iDelete");

    // Refused before the question, naming what is filed; the case stays.
    EXPECT_TRUE(prompts().dialogsRun().isEmpty());
    ASSERT_EQ(prompts().shown().size(), 1);
    EXPECT_TRUE(prompts().shown().last().text.contains(q("1 fee\n2 surrounding parcels")))
        << prompts().shown().last().text.toStdString();
    EXPECT_EQ(casesOnDisk(), 1);
}

TEST_F(CaseScreenTest, ACaseWithRecordsFiledUnderItKeepsItsNumber)
{
    seedCase(q("12-200"),
        {{q("SEC"), q("9")}, {q("BLK"), q("1")}, {q("LOT"), q("5")}, {q("PBLOCN1"), q("X")},
            {q("PBAPPNAME1"), q("ANN")}, {q("PBAPPADDR1"), q("1 ELM")}, {q("PBSTATUS"), q("P")}});
    fileUnder(installation, store::Table::PBFEES, "PBFCASE", q("12-200"));
    open();
    click("IEdit");
    type(1, q("12-299"));
    click("ISave");

    // Refused, naming the fee; still editing, and nothing written under either number.
    ASSERT_FALSE(prompts().shown().isEmpty());
    EXPECT_TRUE(prompts().shown().last().text.startsWith(
        q("The number of case 12-200 cannot be changed while records are filed under it:\n\n1 fee")))
        << prompts().shown().last().text.toStdString();
    EXPECT_EQ(screen->mode(), RecordMode::Edit);
    EXPECT_TRUE(caseOnDisk(q("12-200")));
    EXPECT_FALSE(caseOnDisk(q("12-299")));

    // With its number back, the other changes save.
    type(1, q("12-200"));
    click("ISave");
    EXPECT_EQ(screen->mode(), RecordMode::Browse);
    EXPECT_TRUE(caseOnDisk(q("12-200")));
}

TEST_F(CaseScreenTest, AReadOnlyUserHasNoEntryCommands)
{
    seedCase(q("12-200"));
    session().UserLevel = q("USER");
    session().ReadOnlyUser = true;
    open();
    screen->show();
    for (const char* name : {"INew", "IAdd", "IEdit", "ISave"}) {
        EXPECT_FALSE(find<QWidget>(name)->isVisible()) << name;
        EXPECT_FALSE(on(name)) << name;
    }
    for (const char* name : {"newr", "addr", "saver", "delr"}) {
        EXPECT_FALSE(find<QAction>(name)->isEnabled()) << name;
    }
    EXPECT_TRUE(on("ILocate"));
    EXPECT_TRUE(on("recinfod"));
}

TEST_F(CaseScreenTest, RecordInformationShowsTheStamps)
{
    seedCase(q("12-200"), {{q("BYUSER"), q("MARY")}});
    open();
    QString user;
    prompts().onDialog(q("recinfo"), [&user](QDialog& box) {
        user = box.findChild<QLabel*>(q("lblUser"))->text();
        return int(QDialog::Accepted);
    });
    click("recinfod");
    EXPECT_EQ(user, q("MARY"));
}

TEST_F(CaseScreenTest, TheListSortsWithTheMovesOffUntilReset)
{
    seedCase(q("12-200"), {{q("PBAPPNAME1"), q("ZED")}});
    seedCase(q("12-201"), {{q("PBAPPNAME1"), q("AMY")}});
    seedCase(q("12-202"), {{q("PBAPPNAME1"), q("BOB")}});
    open();
    screen->show();
    click("iBrowse");
    EXPECT_EQ(find<QPushButton>("iBrowse")->text(), q("Detail"));
    EXPECT_FALSE(find<QWidget>("INew")->isVisible());
    EXPECT_FALSE(find<QWidget>("recpos")->isVisible());
    auto* view = find<QTreeView>("ListView1");
    ASSERT_EQ(view->model()->rowCount(), 3);
    EXPECT_EQ(view->model()->headerData(4, Qt::Horizontal).toString(), q(" Applicant "));
    emit view->header()->sectionClicked(4);
    EXPECT_EQ(view->model()->index(0, 4).data().toString(), q("AMY"));
    EXPECT_TRUE(find<QWidget>("iReset")->isVisible());
    EXPECT_FALSE(on("IMoveNext"));
    // Picking a line shows its case.
    view->clicked(view->model()->index(2, 0));
    EXPECT_EQ(text(1), q("12-200"));
    click("iBrowse");
    EXPECT_TRUE(find<QWidget>("INew")->isVisible());
    EXPECT_FALSE(on("IMoveNext"));
    click("iReset");
    EXPECT_FALSE(find<QWidget>("iReset")->isVisible());
    EXPECT_TRUE(on("IMoveNext"));
    EXPECT_EQ(view->model()->index(0, 4).data().toString(), q("ZED"));
}

TEST_F(CaseScreenTest, AHopShowsTheCaseOrTheWholeSet)
{
    seedCase(q("12-200"));
    seedCase(q("12-201"));
    seedCase(q("12-202"));
    open();
    session().HopTarget = q("12-202");
    screen->activateScreen();
    EXPECT_EQ(text(1), q("12-202"));
    EXPECT_TRUE(find<QWidget>("iReset")->isVisibleTo(screen.get()));
    EXPECT_TRUE(session().HopTarget.isEmpty());

    // A hop to a case outside the current filter: message, then the full set.
    click("ILocate");
    type(1, q("12-201"));
    click("ILocate");
    EXPECT_EQ(label("recpos"), q("Record 1 of 1"));
    session().HopTarget = q("12-200");
    screen->activateScreen();
    EXPECT_EQ(lastTitle(), q(" Record(s) not Found"));
    EXPECT_EQ(lastText(), q("Case 12-200 to hop, is not found.\nEntire recordset will be displayed."));
    EXPECT_EQ(screen->currentQuery(), q("Select * from PBPROJ order by PBCASE"));
    EXPECT_EQ(label("recpos"), q("Record 1 of 3"));
    EXPECT_FALSE(find<QWidget>("iReset")->isVisibleTo(screen.get()));
}

TEST_F(CaseScreenTest, AMissingCaseFileIsNamedAndTheScreenStaysEmpty)
{
    ASSERT_TRUE(QFile::remove(casePath));
    int endedWith = -1;
    const ProgramEndHandler previous = setProgramEndHandler([&endedWith](int code) { endedWith = code; });
    open();
    EXPECT_EQ(lastText(), q("DB ") + casePath + q(" not found."));
    EXPECT_EQ(screen->mode(), RecordMode::Empty);
    EXPECT_EQ(label("recpos"), q("empty database"));
    EXPECT_EQ(endedWith, -1);
    click("INew");
    fillRequired();
    prompts().answer(q("SBL not found"), PromptAnswer::Yes);
    click("IAdd"); // nothing to write into: refused, nothing breaks
    EXPECT_EQ(screen->mode(), RecordMode::New);
    click("ICancel");
    EXPECT_EQ(screen->mode(), RecordMode::Empty);

    // With the stop mark set the program ends, as the office's program did.
    screen.reset();
    session().StopFlag = true;
    open();
    EXPECT_EQ(endedWith, 0);
    setProgramEndHandler(previous);
}

TEST_F(CaseScreenTest, TheSameAsBoxesCopyOnce)
{
    seedCase(q("12-200"));
    open();
    click("IEdit");
    type(8, q("ANN"));
    type(9, q("1 ELM"));
    type(10, q("555-1234"));
    type(11, q("ann@example.org"));
    find<QCheckBox>("Check1")->setChecked(true);
    EXPECT_EQ(text(12), q("ANN"));
    EXPECT_EQ(text(13), q("1 ELM"));
    EXPECT_EQ(text(14), q("555-1234"));
    EXPECT_EQ(text(15), q("ann@example.org"));
    type(8, q("ANNE"));
    find<QCheckBox>("Check1")->setChecked(false);
    EXPECT_EQ(text(12), q("ANN"));
    find<QCheckBox>("Check2")->setChecked(true);
    EXPECT_EQ(text(16), q("ANNE"));
    EXPECT_EQ(text(18), q("555-1234"));
    EXPECT_EQ(text(19), q("ann@example.org"));

    // Copying from blank boxes erases nothing typed on the other side.
    for (int box = 12; box <= 15; ++box) {
        type(box, QString());
    }
    type(8, q("ANN APPLICANT"));
    type(9, q("1 ELM RD"));
    find<QCheckBox>("Check7")->setChecked(true);
    EXPECT_EQ(text(8), q("ANN APPLICANT"));
    EXPECT_EQ(text(9), q("1 ELM RD"));
    EXPECT_FALSE(find<QCheckBox>("Check7")->isChecked());
    EXPECT_EQ(lastText(), q("There is nothing to copy: the boxes of the owner are empty."));
    type(12, q("OWEN OWNER"));
    find<QCheckBox>("Check7")->setChecked(true);
    EXPECT_EQ(text(8), q("OWEN OWNER"));
    EXPECT_EQ(text(9), q("1 ELM RD")) << "a blank owner address leaves the typed one";
}

TEST_F(CaseScreenTest, ACaseIsShownAsStoredAndWrittenBackWhole)
{
    seedCase(q("12-200"),
        {{q("SEC"), q("12")}, {q("SUD"), q("3")}, {q("BLK"), q("1")}, {q("LOT"), q("5")},
            {q("PBLOCN1"), q("10 MAIN")}, {q("PBAPPNAME1"), q("ANN")}, {q("PBAPPADDR1"), q("1 ELM")},
            {q("PBSTATUS"), q("I")}, {q("PBTYPE"), q("Addition")}, {q("PBFW"), q("1")},
            {q("PBSITEPLAN"), q("1")}, {q("PBFILEDATE"), q("2012-02-03")}});
    seedParcel(q("12-3-0-1-5-0-0-0"));
    open();
    EXPECT_EQ(text(2), q("12.3"));
    EXPECT_EQ(find<QComboBox>("Combo10")->currentText(), q("Initial Application"));
    EXPECT_EQ(find<QComboBox>("Combo1")->currentText(), q("Addition"));
    EXPECT_TRUE(find<QCheckBox>("Check3")->isChecked());
    EXPECT_TRUE(find<QAbstractButton>("optWaterPrivate")->isChecked());
    EXPECT_EQ(find<QLineEdit>("Text1_7")->maxLength(), 80);
    click("IEdit");
    pick("Combo10", "Approved");
    find<QAbstractButton>("optGasPrivate")->click();
    find<QCheckBox>("Check3")->setChecked(false);
    type(22, q("125000"));
    click("ISave");
    EXPECT_EQ(screen->mode(), RecordMode::Browse);
    auto row = caseOnDisk(q("12-200"));
    ASSERT_TRUE(row);
    EXPECT_EQ(row->text(q("PBSTATUS")), q("A"));
    EXPECT_EQ(row->text(q("PBFW")), q("1"));
    EXPECT_EQ(row->text(q("PBFG")), q("1"));
    EXPECT_EQ(row->text(q("PBSITEPLAN")), q("0"));
    EXPECT_EQ(row->text(q("PBCOST")), q("125000"));
    EXPECT_EQ(row->text(q("PBTYPE")), q("Addition"));
    EXPECT_EQ(row->text(q("SEC")), q("12"));
    EXPECT_EQ(row->text(q("SUD")), q("3"));
    EXPECT_EQ(row->text(q("FILEMONTH")), q("02"));
    // The parcel follows the case; no new token on a save.
    auto parcel = parcelOnDisk(q("12-3-0-1-5-0-0-0"));
    EXPECT_EQ(parcel->text(q("LOCN1")), q("10 MAIN"));
    EXPECT_EQ(parcel->text(q("HISTORICAL")), q(""));
    EXPECT_EQ(find<QTreeView>("ListView1")->model()->index(0, 6).data().toString(), q("Approved"));
}

TEST_F(CaseScreenTest, TabOrderFollowsTheForm)
{
    open();
    const char* order[]
        = {"Text1_1", "DTPicker3", "Combo10", "Text1_2", "Text1_3", "Text1_4", "Text1_5", "Text1_6"};
    QWidget* widget = find<QWidget>(order[0]);
    for (size_t i = 1; i < std::size(order); ++i) {
        widget = widget->nextInFocusChain();
        while (widget && (widget->focusPolicy() & Qt::TabFocus) == 0) {
            widget = widget->nextInFocusChain();
        }
        ASSERT_TRUE(widget);
        // A list's own line edit belongs to it.
        if (widget->parentWidget() && widget->parentWidget()->objectName() == q(order[i - 1])) {
            widget = widget->nextInFocusChain();
            while (widget && (widget->focusPolicy() & Qt::TabFocus) == 0) {
                widget = widget->nextInFocusChain();
            }
        }
        EXPECT_EQ(widget->objectName(), q(order[i])) << "after " << order[i - 1];
    }
    // The parties: name, address, telephone, e-mail.
    widget = find<QWidget>("Text1_8");
    for (const char* next : {"Text1_9", "Text1_10", "Text1_11"}) {
        widget = widget->nextInFocusChain();
        while (widget && (widget->focusPolicy() & Qt::TabFocus) == 0) {
            widget = widget->nextInFocusChain();
        }
        EXPECT_EQ(widget->objectName(), q(next));
    }
}

TEST_F(CaseScreenTest, ADamagedCaseFileIsReportedAndNothingIsLost)
{
    seedCase(q("12-200"));
    QFile file(casePath);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray original = file.readAll();
    file.close();
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("this is not a database file, but a letter someone saved over it");
    file.close();
    open();
    ASSERT_FALSE(prompts().shown().isEmpty());
    EXPECT_EQ(lastTitle(), q(" Projects"));
    EXPECT_TRUE(lastText().contains(casePath));
    EXPECT_EQ(screen->mode(), RecordMode::Empty);
    EXPECT_FALSE(on("IEdit"));
    click("ifees");
    EXPECT_EQ(lastTitle(), q(" No current case "));
    screen.reset();
    // The file is left as it was found.
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("this is not a database file, but a letter someone saved over it"));
    EXPECT_FALSE(original.isEmpty());
}

TEST_F(CaseScreenTest, TheNotepadShowsAndKeepsTheParcelsNote)
{
    seedParcel(q("12-0-0-1-5-0-0-0"));
    seedCase(q("12-200"), {{q("SEC"), q("12")}, {q("BLK"), q("1")}, {q("LOT"), q("5")}});
    seedCase(q("12-201"), {{q("SEC"), q("99")}, {q("BLK"), q("1")}, {q("LOT"), q("5")}});
    open();
    bool editing = false;
    prompts().onDialog(q("Postit"), [&editing](QDialog& dialog) {
        auto* note = dialog.findChild<QPlainTextEdit*>(q("txtNote"));
        editing = !note->isReadOnly(); // an empty note opens for typing at once
        note->setPlainText(q("septic failed 2011"));
        return int(QDialog::Accepted);
    });
    click("iNote");
    EXPECT_TRUE(editing);
    EXPECT_EQ(parcelOnDisk(q("12-0-0-1-5-0-0-0"))->text(q("NOTES")), q("septic failed 2011"));

    click("IMoveNext");
    click("iNote");
    EXPECT_EQ(lastTitle(), q(" SBL not found"));
    EXPECT_EQ(lastText(),
        q("The Section, Block and Lot info cannot be found.\nPlease ensure the S-B-L format is followed"));
}

TEST_F(CaseScreenTest, MenusFollowTheModes)
{
    seedCase(q("12-200"));
    open();
    auto* file = find<QMenu>("mnuFile");
    auto* reports = find<QMenu>("mnuReports");
    auto* help = find<QMenu>("mnuHelp");
    EXPECT_TRUE(file->isEnabled() && reports->isEnabled() && help->isEnabled());
    EXPECT_FALSE(find<QAction>("addr")->isEnabled());
    EXPECT_FALSE(find<QAction>("saver")->isEnabled());
    click("IEdit");
    EXPECT_FALSE(file->isEnabled() || reports->isEnabled() || help->isEnabled());
    EXPECT_FALSE(on("IMoveNext"));
    click("ICancel");
    click("ILocate");
    EXPECT_FALSE(file->isEnabled() || reports->isEnabled());
    EXPECT_TRUE(help->isEnabled());
    EXPECT_EQ(label("recpos"), q("enter data"));
}
