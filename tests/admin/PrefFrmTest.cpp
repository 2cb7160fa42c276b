#include "admin/screens/PrefFrm.h"

#include "admin/Preferences.h"
#include "cases/CaseNumbering.h"
#include "cases/screens/ZPermits.h"
#include "parcels/ParcelService.h"
#include "common/Session.h"
#include "common/Settings.h"
#include "common/TextFiles.h"
#include "store/Catalogue.h"
#include "store/DatabaseLocation.h"
#include "support/FullDisk.h"
#include "support/InstallationTest.h"
#include "support/ScriptedPrompts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMap>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::admin;
using namespace pvardo::test;

namespace {

template <typename T> T* child(QWidget& screen, const char* name)
{
    T* found = screen.findChild<T*>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
}

void typeInto(QWidget& screen, const char* name, const QString& text)
{
    QLineEdit* box = child<QLineEdit>(screen, name);
    box->clear();
    QTest::keyClicks(box, text);
}

void click(QWidget& screen, const char* name)
{
    QTest::mouseClick(child<QAbstractButton>(screen, name), Qt::LeftButton);
}

QStringList linesOf(const QString& path)
{
    return readTextLines(path).value_or(QStringList{QStringLiteral("<missing>")});
}

// Every file under a folder with its bytes.
QMap<QString, QByteArray> snapshot(const QString& folder)
{
    QMap<QString, QByteArray> files;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        file.open(QIODevice::ReadOnly);
        files.insert(it.filePath(), file.readAll());
    }
    return files;
}

void chooseFolderNext(const QString& folder)
{
    scriptedPrompts().onDialog(QStringLiteral("BrowseForFolder"), [folder](QDialog& dialog) {
        auto& picker = static_cast<QFileDialog&>(dialog);
        picker.setDirectory(folder);
        picker.selectFile(folder);
        return int(QDialog::Accepted);
    });
}

class PrefFrmTest : public InstallationTest
{
protected:
    void SetUp() override
    {
        InstallationTest::SetUp();
        Session& state = session();
        state.MasterDatabaseFolder = state.DatabaseFolder;
        state.MunicipalityName = QStringLiteral("Town of Elmford");
        state.BackupMode = 2;
        state.EditorFontSize = 9; // as every session has it after log-on
        ASSERT_TRUE(replaceTextLines(installation.path(QStringLiteral("PVardo.ini")),
            Settings::defaultLines(state.DatabaseFolder, false)));
        ASSERT_TRUE(replaceTextLines(installation.path(QStringLiteral("databases/Inspectors.txt")),
            {QStringLiteral("Ann Ode"), QString(), QStringLiteral("Bo Lee")}));
        ASSERT_TRUE(
            replaceTextLines(installation.path(QStringLiteral("databases/pnb.txt")), {QStringLiteral("-1")}));
        ASSERT_TRUE(replaceTextLines(installation.path(QStringLiteral("browser.txt")),
            {QStringLiteral("http://gis.local/map"), QStringLiteral("F")}));
        casePath = installation.createDatabase(store::Table::PBPROJ);
    }

    QString casePath;
    QString ini() const { return installation.path(QStringLiteral("PVardo.ini")); }
};

} // namespace

TEST_F(PrefFrmTest, EverySettingIsShownWrittenAndReadBack)
{
    PrefFrm screen;
    EXPECT_EQ(child<QTabWidget>(screen, "SSTab1")->currentIndex(), 0);
    EXPECT_EQ(child<QLineEdit>(screen, "Text1")->text(), QStringLiteral("Town of Elmford"));
    EXPECT_TRUE(child<QRadioButton>(screen, "Option3")->isChecked());
    EXPECT_TRUE(child<QCheckBox>(screen, "Check1")->isChecked());
    EXPECT_FALSE(child<QCheckBox>(screen, "Check9")->isChecked());
    EXPECT_EQ(child<QLineEdit>(screen, "Text20")->text(), QStringLiteral("http://gis.local/map"));
    EXPECT_EQ(child<QListWidget>(screen, "List4")->count(), 2);
    // The size the file holds, not the session's working size.
    EXPECT_EQ(child<QComboBox>(screen, "Combo2")->currentText(), QStringLiteral("12"));
    // No def.txt: the backup goes under the root of the program's drive.
    EXPECT_TRUE(child<QLineEdit>(screen, "Text8")->text().endsWith(QStringLiteral("/backup")));
    EXPECT_EQ(child<QPushButton>(screen, "Command3")->toolTip(),
        QStringLiteral(" Browse to select location of master database"));

    const char* boxes[6] = {"Text1", "Text3", "Text4", "Text5", "Text6", "Text7"};
    const QStringList town{QStringLiteral("Village of Oakhurst"), QStringLiteral("1 Main St"),
        QStringLiteral("Oakhurst"), QStringLiteral("NY"), QStringLiteral("12001"),
        QStringLiteral("518-555-0100")};
    for (int i = 0; i < 6; ++i) {
        typeInto(screen, boxes[i], town[i]);
    }
    click(screen, "Option1");
    click(screen, "Check3");
    typeInto(screen, "Text8", QStringLiteral("  /srv/backup  "));
    typeInto(screen, "Text19", QStringLiteral("https://codes.example.org"));
    typeInto(screen, "Text21", QStringLiteral("file:///srv/codes"));
    typeInto(screen, "Text20", QStringLiteral("http://gis.local/new"));
    click(screen, "Check9");
    click(screen, "Check1");
    typeInto(screen, "Text12", QStringLiteral(" 500 "));

    // Members: the empty name and the missing highlight are refused.
    click(screen, "Command7");
    click(screen, "Command9");
    EXPECT_EQ(scriptedPrompts().shownTexts(),
        QStringList({QStringLiteral("Type the Member's name prior to clicking the 'Add' button."),
            QStringLiteral("Highlight the name to remove before clicking the 'Del' button.")}));
    typeInto(screen, "Text15", QStringLiteral("Cy Dunn"));
    click(screen, "Command7");
    EXPECT_TRUE(child<QLineEdit>(screen, "Text15")->text().isEmpty());
    QListWidget* members = child<QListWidget>(screen, "List4");
    members->setCurrentRow(0);
    click(screen, "Command9");

    child<QComboBox>(screen, "Combo2")->setCurrentText(QStringLiteral("14"));
    EXPECT_EQ(child<QLineEdit>(screen, "Text10")->font().pointSizeF(), 14);
    const QString font = child<QComboBox>(screen, "Combo1")->currentText();

    child<QTabWidget>(screen, "SSTab1")->setCurrentIndex(3);
    click(screen, "Command1");
    EXPECT_EQ(screen.result(), QDialog::Accepted);
    EXPECT_EQ(child<QTabWidget>(screen, "SSTab1")->currentIndex(), 0);

    const QString databases = installation.databaseFolder();
    EXPECT_EQ(linesOf(ini()),
        QStringList({databases, town[0], town[1], town[2], town[3], town[4], town[5], QStringLiteral("1"),
            QStringLiteral("True"), QStringLiteral("14"), font,
            QStringLiteral("NYS Fire Prevention & Bldg Code"), QStringLiteral("Building and Zoning Codes"),
            QStringLiteral("0")}));
    EXPECT_EQ(linesOf(databases + QStringLiteral("/pnb.txt")), QStringList{QStringLiteral("500")});
    EXPECT_EQ(linesOf(databases + QStringLiteral("/Inspectors.txt")),
        QStringList({QStringLiteral("Bo Lee"), QStringLiteral("Cy Dunn")}));
    EXPECT_EQ(linesOf(installation.path(QStringLiteral("def.txt"))),
        QStringList({databases, QStringLiteral("/srv/backup"), QStringLiteral("https://codes.example.org"),
            QStringLiteral("file:///srv/codes")}));
    EXPECT_EQ(linesOf(installation.path(QStringLiteral("browser.txt"))),
        QStringList({QStringLiteral("http://gis.local/new"), QStringLiteral("T")}));
    EXPECT_EQ(session().BackupMode, 1);
    EXPECT_EQ(session().BackupFolder, QStringLiteral("/srv/backup"));

    // What was written is what a new start reads and the screen shows again.
    resetSession();
    installation.applyTo(session());
    ASSERT_TRUE(ReadSettings(ini()));
    EXPECT_EQ(session().MunicipalityPhone, town[5]);
    EXPECT_EQ(session().BackupMode, 1);
    EXPECT_EQ(session().EditorFontSize, 14);
    EXPECT_EQ(session().LocalCodesLink, QStringLiteral("file:///srv/codes"));
    PrefFrm again;
    EXPECT_FALSE(child<QCheckBox>(again, "Check1")->isChecked());
    EXPECT_EQ(child<QLineEdit>(again, "Text12")->text(), QStringLiteral("500"));
    EXPECT_TRUE(child<QCheckBox>(again, "Check9")->isChecked());
    EXPECT_EQ(child<QComboBox>(again, "Combo2")->currentText(), QStringLiteral("14"));
}

TEST_F(PrefFrmTest, CancelWritesNothingAndAnEmptyGisLinkKeepsItsFile)
{
    const auto before = snapshot(installation.programFolder());
    {
        PrefFrm screen;
        typeInto(screen, "Text1", QStringLiteral("Changed"));
        typeInto(screen, "Text15", QStringLiteral("Dee"));
        click(screen, "Command7");
        click(screen, "Command2");
        EXPECT_EQ(screen.result(), QDialog::Rejected);
    }
    EXPECT_EQ(snapshot(installation.programFolder()), before);
    EXPECT_EQ(session().MunicipalityName, QStringLiteral("Town of Elmford"));

    PrefFrm screen;
    child<QLineEdit>(screen, "Text20")->clear();
    click(screen, "Command1");
    EXPECT_EQ(linesOf(installation.path(QStringLiteral("browser.txt"))),
        QStringList({QStringLiteral("http://gis.local/map"), QStringLiteral("F")}));
}

TEST_F(PrefFrmTest, BeginNumberingWithIsWhereTheNextCaseNumberStarts)
{
    const QString parcelPath = installation.databaseFolder() + QStringLiteral("/sbl.db");
    ASSERT_TRUE(store::createDatabaseFile(parcelPath, store::tableDef(store::Table::SBL18)).ok());
    ASSERT_TRUE(replaceTextLines(installation.path(QStringLiteral("databases/zhi.txt")), {QStringLiteral("207")}));
    session().Today = QDate(2026, 11, 24);
    session().CurrentUser = QStringLiteral("clerk");
    session().UserLevel = QStringLiteral("MEMBER");
    parcels::unloadMdb();
    cases::resetCaseNumbering();
    auto proposal = [] {
        cases::ZPermits screen;
        QTest::mouseClick(child<QAbstractButton>(screen, "INew"), Qt::LeftButton);
        return child<QLineEdit>(screen, "Text1_1")->text();
    };
    // The computer decides: the sequence of zhi.txt, which a proposal alone
    // does not consume.
    EXPECT_EQ(proposal(), QStringLiteral("26-207"));
    EXPECT_EQ(proposal(), QStringLiteral("26-207"));

    {
        PrefFrm screen;
        child<QCheckBox>(screen, "Check1")->setChecked(false);
        typeInto(screen, "Text12", QStringLiteral("300"));
        click(screen, "Command1");
    }
    EXPECT_EQ(linesOf(installation.path(QStringLiteral("databases/pnb.txt"))), QStringList{QStringLiteral("300")});
    EXPECT_EQ(proposal(), QStringLiteral("26-300"));

    // A number taken already is climbed past, and the climb is kept in
    // pnb.txt, also for the next run.
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(casePath, QStringLiteral("Select * from PBPROJ"), &status);
    ASSERT_TRUE(rows);
    rows->AddNew();
    rows->setValue(QStringLiteral("PBCASE"), QStringLiteral("26-300"));
    ASSERT_TRUE(rows->Update().ok());
    rows.reset();
    EXPECT_EQ(proposal(), QStringLiteral("26-301"));
    cases::resetCaseNumbering();
    EXPECT_EQ(proposal(), QStringLiteral("26-301"));
    EXPECT_EQ(linesOf(installation.path(QStringLiteral("databases/pnb.txt"))), QStringList{QStringLiteral("301")});

    // Back to the computer deciding: zhi.txt's sequence again.
    {
        PrefFrm screen;
        EXPECT_EQ(child<QLineEdit>(screen, "Text12")->text(), QStringLiteral("301"));
        child<QCheckBox>(screen, "Check1")->setChecked(true);
        click(screen, "Command1");
    }
    EXPECT_EQ(proposal(), QStringLiteral("26-207"));
    parcels::unloadMdb();
    cases::resetCaseNumbering();
}

TEST_F(PrefFrmTest, ScreensOpenOnTheOldFolderAreClosedBeforeASwitch)
{
    const QString old = installation.databaseFolder();
    ASSERT_TRUE(store::createDatabaseFile(old + QStringLiteral("/sbl.db"), store::tableDef(store::Table::SBL18)).ok());
    QTemporaryDir filled;
    ASSERT_TRUE(QFile::copy(casePath, filled.filePath(QStringLiteral("pbproj.db"))));
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(casePath, QStringLiteral("Select * from PBPROJ"), &status);
        ASSERT_TRUE(rows);
        rows->AddNew();
        rows->setValue(QStringLiteral("PBCASE"), QStringLiteral("12-100"));
        ASSERT_TRUE(rows->Update().ok());
    }
    session().CurrentUser = QStringLiteral("clerk");
    session().UserLevel = QStringLiteral("MEMBER");
    parcels::unloadMdb();
    cases::resetCaseNumbering();
    cases::ZPermits projects;
    projects.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&projects));
    ASSERT_EQ(child<QLineEdit>(projects, "Text1_1")->text(), QStringLiteral("12-100"));
    const QByteArray settingsBefore = snapshot(installation.programFolder()).value(ini());

    // Keeping the screen keeps everything as it was.
    {
        PrefFrm screen;
        typeInto(screen, "Text9", filled.path());
        scriptedPrompts().answer(QStringLiteral("SWITCH"), PromptAnswer::Yes);
        scriptedPrompts().answer(QStringLiteral("closed before the switch"), PromptAnswer::No);
        click(screen, "Command1");
        EXPECT_NE(screen.result(), QDialog::Accepted);
        const QString asked = scriptedPrompts().shownTexts().value(1);
        EXPECT_TRUE(asked.contains(projects.windowTitle())) << asked.toStdString();
    }
    EXPECT_TRUE(projects.isVisible());
    EXPECT_EQ(session().DatabaseFolder, old);
    EXPECT_EQ(snapshot(installation.programFolder()).value(ini()), settingsBefore);

    // Closing it lets the switch go on, and the next case screen reads the
    // new folder.
    {
        PrefFrm screen;
        typeInto(screen, "Text9", filled.path());
        scriptedPrompts().answer(QStringLiteral("SWITCH"), PromptAnswer::Yes);
        scriptedPrompts().answer(QStringLiteral("closed before the switch"), PromptAnswer::Yes);
        click(screen, "Command1");
        EXPECT_EQ(screen.result(), QDialog::Accepted);
    }
    EXPECT_FALSE(projects.isVisible());
    EXPECT_EQ(session().DatabaseFolder, filled.path());
    cases::ZPermits reopened;
    EXPECT_EQ(child<QLineEdit>(reopened, "Text1_1")->text(), QString());
    parcels::unloadMdb();
    cases::resetCaseNumbering();
}

TEST_F(PrefFrmTest, SwitchingTheDatabaseLocation)
{
    const QString old = installation.databaseFolder();
    QTemporaryDir filled;
    ASSERT_TRUE(QFile::copy(casePath, filled.path() + QLatin1Char('/') + QFileInfo(casePath).fileName()));

    // No: the session stays on the old folder, the next start takes the new one.
    {
        PrefFrm screen;
        typeInto(screen, "Text9", filled.path());
        scriptedPrompts().answer(QStringLiteral("Change Master Database Location"), PromptAnswer::No);
        click(screen, "Command1");
        EXPECT_EQ(session().DatabaseFolder, old);
        EXPECT_EQ(session().MasterDatabaseFolder, old);
        EXPECT_EQ(linesOf(ini()).value(0), filled.path());
        EXPECT_EQ(linesOf(installation.path(QStringLiteral("def.txt"))).value(0), old);
    }
    // Yes to a folder with databases: it is used now and missing seeds are put
    // there; its own board members and numbering stay its own.
    {
        ASSERT_TRUE(
            replaceTextLines(filled.path() + QStringLiteral("/Inspectors.txt"), {QStringLiteral("Cy Dee")}));
        ASSERT_TRUE(replaceTextLines(filled.path() + QStringLiteral("/pnb.txt"), {QStringLiteral("300")}));
        session().MasterDatabaseFolder = old;
        PrefFrm screen;
        typeInto(screen, "Text9", filled.path());
        typeInto(screen, "Text15", QStringLiteral("Di Ewe"));
        click(screen, "Command7");
        scriptedPrompts().answer(QStringLiteral("Change Master Database Location"), PromptAnswer::Yes);
        click(screen, "Command1");
        EXPECT_EQ(session().DatabaseFolder, filled.path());
        EXPECT_EQ(session().MasterDatabaseFolder, filled.path());
        EXPECT_EQ(linesOf(filled.path() + QStringLiteral("/Inspectors.txt")),
            QStringList{QStringLiteral("Cy Dee")});
        EXPECT_EQ(linesOf(filled.path() + QStringLiteral("/pnb.txt")), QStringList{QStringLiteral("300")});
        EXPECT_EQ(linesOf(old + QStringLiteral("/Inspectors.txt")).value(2), QStringLiteral("Di Ewe"));
        EXPECT_TRUE(QFile::exists(filled.path() + QStringLiteral("/sbl.db")));
        EXPECT_EQ(linesOf(installation.path(QStringLiteral("def.txt"))).value(0), filled.path());
    }
    // A folder without databases would stop the next start: the switch
    // offers to copy the databases in use there. No keeps the location.
    session().MasterDatabaseFolder = session().DatabaseFolder = old;
    ASSERT_TRUE(replaceTextLines(ini(), Settings::defaultLines(old, false)));
    QTemporaryDir scratch;
    const QString empty = scratch.filePath(QStringLiteral("empty"));
    QDir().mkpath(empty);
    {
        scriptedPrompts().clear();
        PrefFrm screen;
        typeInto(screen, "Text9", empty);
        typeInto(screen, "Text1", QStringLiteral("Town of Ashby"));
        scriptedPrompts().answer(QStringLiteral("holds no databases"), PromptAnswer::No);
        click(screen, "Command1");
        EXPECT_EQ(screen.result(), QDialog::Accepted);
        EXPECT_EQ(linesOf(ini()).value(0), old);
        EXPECT_EQ(linesOf(ini()).value(1), QStringLiteral("Town of Ashby"));
        EXPECT_EQ(session().DatabaseFolder, old);
        EXPECT_TRUE(QDir(empty).isEmpty());
    }
    // A copy that cannot be made changes nothing and keeps the screen open.
    {
        const QByteArray before = snapshot(installation.programFolder()).value(ini());
        PrefFrm screen;
        typeInto(screen, "Text9", QStringLiteral("/proc/pvardo-databases"));
        scriptedPrompts().answer(QStringLiteral("holds no databases"), PromptAnswer::Yes);
        click(screen, "Command1");
        EXPECT_NE(screen.result(), QDialog::Accepted);
        EXPECT_TRUE(scriptedPrompts()
                        .shownTexts()
                        .join(QLatin1Char('\n'))
                        .contains(QStringLiteral("could not be copied")));
        EXPECT_EQ(snapshot(installation.programFolder()).value(ini()), before);
        EXPECT_EQ(session().DatabaseFolder, old);
    }
    // Yes to a folder not there yet: the databases and their lists are copied
    // and used there now, and the next start finds them.
    {
        const QString moved = scratch.filePath(QStringLiteral("share/databases"));
        PrefFrm screen;
        typeInto(screen, "Text9", moved);
        scriptedPrompts().answer(QStringLiteral("holds no databases"), PromptAnswer::Yes);
        click(screen, "Command1");
        EXPECT_EQ(screen.result(), QDialog::Accepted);
        EXPECT_EQ(session().DatabaseFolder, moved);
        EXPECT_EQ(linesOf(ini()).value(0), moved);
        EXPECT_EQ(linesOf(installation.path(QStringLiteral("def.txt"))).value(0), moved);
        EXPECT_EQ(linesOf(moved + QStringLiteral("/Inspectors.txt")),
            linesOf(old + QStringLiteral("/Inspectors.txt")));
        EXPECT_TRUE(QFile::exists(moved + QStringLiteral("/pbproj.db")));
        EXPECT_TRUE(QFile::exists(old + QStringLiteral("/pbproj.db")));
        EXPECT_TRUE(store::unreachableFolderMessage(moved, installation.programFolder()).isEmpty());
    }
}

TEST_F(PrefFrmTest, DriveWarningsOfTheBrowseButtons)
{
    if (!QFileInfo(QStringLiteral("/dev/shm")).isDir()) {
        GTEST_SKIP() << "no RAM disk at /dev/shm";
    }
    PrefFrm screen;
    QLineEdit* databases = child<QLineEdit>(screen, "Text9");
    const QString before = databases->text();
    // A RAM disk counts as removable: No keeps the old folder, Yes takes it.
    chooseFolderNext(QStringLiteral("/dev/shm"));
    scriptedPrompts().answer(QStringLiteral("Alert"), PromptAnswer::No);
    click(screen, "Command3");
    EXPECT_EQ(databases->text(), before);
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_EQ(scriptedPrompts().shown().constFirst().title, QStringLiteral(" Alert"));
    EXPECT_TRUE(scriptedPrompts().shown().constFirst().text.startsWith(
        QStringLiteral("The drive you have selected is a removable drive.\nSince the program needs")));
    chooseFolderNext(QStringLiteral("/dev/shm"));
    scriptedPrompts().answer(QStringLiteral("Alert"), PromptAnswer::Yes);
    click(screen, "Command3");
    EXPECT_EQ(databases->text(), QStringLiteral("/dev/shm"));

    // A fixed disk is taken without a question.
    QTemporaryDir fixed;
    scriptedPrompts().clear();
    chooseFolderNext(fixed.path());
    click(screen, "Command3");
    EXPECT_EQ(databases->text(), QDir::cleanPath(fixed.path()));
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());

    // The backup folder is taken in any case; automatic backup adds its warning.
    click(screen, "Option1");
    chooseFolderNext(QStringLiteral("/dev/shm"));
    click(screen, "Command5");
    EXPECT_EQ(child<QLineEdit>(screen, "Text8")->text(), QStringLiteral("/dev/shm"));
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_EQ(scriptedPrompts().shown().constFirst().title, QStringLiteral(" Note"));
    EXPECT_TRUE(scriptedPrompts().shown().constFirst().text.contains(
        QStringLiteral("In addition, you have selected automatic backup upon ")));
}

TEST_F(PrefFrmTest, AFailingSaveLeavesEverySettingsFileAsItWas)
{
    const auto before = snapshot(installation.programFolder());
    Preferences chosen = loadPreferences(session());
    chosen.municipalityName = QStringLiteral("Written first");
    chosen.boardMembers = {QStringLiteral("New Member")};
    // def.txt comes after PVardo.ini, Inspectors.txt and pnb.txt and is the
    // only one too big for the disk.
    chosen.onlineCodesLink = QStringLiteral("https://codes.example.org/") + QString(600, QLatin1Char('x'));
    EXPECT_FALSE(
        onFullDisk(400, [&] { return writePreferences(session(), chosen, session().DatabaseFolder); }));
    EXPECT_EQ(snapshot(installation.programFolder()), before);

    // On the screen the user is told and the screen stays open.
    PrefFrm screen;
    QFile::setPermissions(installation.databaseFolder(), QFile::ReadOwner | QFile::ExeOwner);
    const QString probe = installation.path(QStringLiteral("databases/probe"));
    const bool enforced = !QFile(probe).open(QIODevice::WriteOnly);
    QFile::remove(probe);
    if (enforced) {
        click(screen, "Command1");
        EXPECT_NE(screen.result(), QDialog::Accepted);
        EXPECT_TRUE(scriptedPrompts().shownTexts().join(QString()).contains(
            QStringLiteral("No settings were changed")));
    }
    QFile::setPermissions(
        installation.databaseFolder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(snapshot(installation.programFolder()), before);
}

TEST_F(PrefFrmTest, DamagedSettingsFilesAreNamedAndWrittenAnewBySave)
{
    const QString def = installation.path(QStringLiteral("def.txt"));
    const QString members = installation.path(QStringLiteral("databases/Inspectors.txt"));
    const QString browser = installation.path(QStringLiteral("browser.txt"));
    auto overwrite = [](const QString& path, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
    };
    // A block zeroed by the disk, garbage over a file, and a sound file
    // ending in the old editors' end-of-file mark.
    overwrite(members, QByteArray(4096, '\0'));
    overwrite(browser, QByteArray("http://gis\x01\x02\xff\xfe\x07map\n"));
    overwrite(def, QByteArray("/x\r\n/media/backup\r\n\r\n\r\n\x1a"));

    PrefFrm screen;
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    const Prompt& told = scriptedPrompts().shown().constFirst();
    EXPECT_EQ(told.title, QStringLiteral(" Preferences"));
    EXPECT_TRUE(told.text.contains(members)) << told.text.toStdString();
    EXPECT_TRUE(told.text.contains(browser)) << told.text.toStdString();
    EXPECT_FALSE(told.text.contains(def)) << told.text.toStdString();
    EXPECT_TRUE(told.text.contains(QStringLiteral("restore them from the last backup")));
    // Nothing of the damage is shown as a setting.
    EXPECT_EQ(child<QListWidget>(screen, "List4")->count(), 0);
    EXPECT_EQ(child<QLineEdit>(screen, "Text20")->text(), QString());
    EXPECT_EQ(child<QLineEdit>(screen, "Text8")->text(), QStringLiteral("/media/backup"));

    typeInto(screen, "Text15", QStringLiteral("Ann Ode"));
    click(screen, "Command7");
    click(screen, "Command1");
    EXPECT_EQ(linesOf(members), QStringList{QStringLiteral("Ann Ode")});
    EXPECT_EQ(linesOf(browser), QStringList({QString(), QStringLiteral("F")}));
    scriptedPrompts().clear();
    PrefFrm again;
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());
}
