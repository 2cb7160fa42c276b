#include "common/Settings.h"

#include "common/BoardMembers.h"
#include "common/ProgramEnd.h"
#include "common/Session.h"
#include "common/SettingStore.h"
#include "common/TextFiles.h"
#include "support/ScriptedPrompts.h"
#include "support/TestInstallation.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::test;

namespace {

// Counts the ends of the program instead of ending the test program.
class EndCounter
{
public:
    EndCounter()
    {
        m_previous = setProgramEndHandler([this](int) { ++calls; });
    }
    ~EndCounter() { setProgramEndHandler(m_previous); }
    int calls = 0;

private:
    ProgramEndHandler m_previous;
};

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

QStringList officeSettings(const QString& databaseFolder)
{
    return {databaseFolder, QStringLiteral("Town of Elm Crossing"), QStringLiteral("1 Main Street"),
        QStringLiteral("Elm Crossing"), QStringLiteral("NY"), QStringLiteral("12000"),
        QStringLiteral("555-0100"), QStringLiteral("1"), QStringLiteral("False"), QStringLiteral("10"),
        QStringLiteral("Arial"), QStringLiteral("NYS Fire Prevention & Bldg Code"),
        QStringLiteral("Building and Zoning Codes"), QStringLiteral("0")};
}

// A session on a test installation, its settings file not yet read.
struct SettingsFixture
{
    TestInstallation installation;
    QString ini;
    SettingsFixture()
        : ini(installation.path(QStringLiteral("PVardo.ini")))
    {
        session().ProgramFolder = installation.programFolder();
    }
};

} // namespace

TEST(ReadSettings, ReadsTheFourteenLinesByPosition)
{
    SettingsFixture f;
    // Written by hand on another system: CRLF line ends and blanks kept.
    QStringList lines = officeSettings(f.installation.databaseFolder());
    lines[1] = QStringLiteral("  Town of Elm Crossing ");
    writeBytes(f.ini, lines.join(QStringLiteral("\r\n")).toUtf8() + "\r\n");
    ASSERT_TRUE(ReadSettings(f.ini));
    const Session& s = session();
    EXPECT_EQ(s.MasterDatabaseFolder, f.installation.databaseFolder());
    EXPECT_EQ(s.DatabaseFolder, f.installation.databaseFolder());
    EXPECT_EQ(s.FormsFolder, f.installation.programFolder() + QStringLiteral("/forms"));
    EXPECT_EQ(s.MunicipalityName, QStringLiteral("  Town of Elm Crossing "));
    EXPECT_EQ(s.MunicipalityPhone, QStringLiteral("555-0100"));
    EXPECT_EQ(s.BackupMode, 1);
    EXPECT_FALSE(s.ShareParcelStore);
    EXPECT_EQ(s.EditorFontSize, 10);
    EXPECT_EQ(s.EditorFontName, QStringLiteral("Arial"));
    EXPECT_EQ(s.ReportHeaderRtf, QStringLiteral("{\\rtf1\\ansi Header\\par}\n"));
    EXPECT_EQ(s.ParcelDatabasePath, f.installation.databaseFolder() + QStringLiteral("/sbl.db"));
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());
    // A good file is left as it was.
    EXPECT_TRUE(readTextLines(f.ini)->at(1).startsWith(QLatin1String("  Town")));
}

TEST(ReadSettings, ShortOrHeadlessFileIsReplacedByDefaults)
{
    const struct
    {
        const char* what;
        int keep; // lines of the office's file kept
        bool emptyFirst;
        bool present;
    } cases[] = {
        {"13 lines", 13, false, true},
        {"one line", 1, false, true},
        {"empty file", 0, false, true},
        {"empty first line", 14, true, true},
        {"blank first line", 14, true, true},
        {"no file", 0, false, false},
    };
    for (const auto& c : cases) {
        resetSession();
        SettingsFixture f;
        QStringList lines = officeSettings(f.installation.databaseFolder()).mid(0, c.keep);
        if (c.emptyFirst) {
            lines[0] = QString::fromLatin1(c.what).startsWith(QLatin1String("blank")) ? QStringLiteral("   ")
                                                                                      : QString();
        }
        if (c.present) {
            ASSERT_TRUE(replaceTextLines(f.ini, lines));
        }
        ASSERT_TRUE(ReadSettings(f.ini)) << c.what;
        // The municipality is lost: the file is now the defaults.
        const auto written = readTextLines(f.ini);
        ASSERT_TRUE(written.has_value()) << c.what;
        EXPECT_EQ(*written, Settings::defaultLines(f.installation.databaseFolder(), false)) << c.what;
        EXPECT_TRUE(session().MunicipalityName.isEmpty()) << c.what;
        EXPECT_EQ(session().BackupMode, 0) << c.what;
        EXPECT_EQ(session().EditorFontSize, 12) << c.what;
        EXPECT_EQ(session().DatabaseFolder, f.installation.databaseFolder()) << c.what;
    }
}

TEST(ReadSettings, ADamagedFileIsKeptAsideSaidAndReplacedByDefaults)
{
    QByteArray garbage = officeSettings(QStringLiteral("/srv/planning/databases")).join(QLatin1Char('\n')).toUtf8();
    garbage.replace(20, 8, QByteArray("\x00\x13\xff\x02\x00\x00\x9c\x01", 8));
    const QByteArray damages[] = {QByteArray(4096, '\0'), garbage};
    for (const QByteArray& damage : damages) {
        resetSession();
        scriptedPrompts().clear();
        SettingsFixture f;
        writeBytes(f.ini, damage);
        ASSERT_TRUE(ReadSettings(f.ini));
        EXPECT_EQ(*readTextLines(f.ini), Settings::defaultLines(f.installation.databaseFolder(), false));
        EXPECT_EQ(session().DatabaseFolder, f.installation.databaseFolder());
        const QStringList kept = QDir(f.installation.programFolder()).entryList({QStringLiteral("PVardo.ini.damaged-*")});
        ASSERT_EQ(kept.size(), 1);
        QFile keptFile(f.installation.path(kept.first()));
        ASSERT_TRUE(keptFile.open(QIODevice::ReadOnly));
        EXPECT_EQ(keptFile.readAll(), damage);
        ASSERT_EQ(scriptedPrompts().shown().size(), 1);
        const QString told = scriptedPrompts().shown().constFirst().text;
        EXPECT_TRUE(told.startsWith(QStringLiteral("The settings file ") + f.ini + QStringLiteral(" is damaged")))
            << told.toStdString();
        EXPECT_TRUE(told.contains(kept.first()));
        EXPECT_TRUE(told.contains(QStringLiteral("restore the settings file from the last backup")));
    }
}

TEST(ReadSettings, OnlyTrueInAnyCaseSharesTheParcelStore)
{
    const struct
    {
        const char* line9;
        bool shared;
    } cases[] = {{"true", true}, {"True", true}, {"TRUE", true}, {"-1", false}, {"1", false},
        {"False", false}, {" True", false}, {"", false}};
    for (const auto& c : cases) {
        resetSession();
        SettingsFixture f;
        // The sibling program is installed, so the line decides.
        session().ProgramFolder = f.installation.programFolder();
        ASSERT_TRUE(SettingPut(QStringLiteral("EP"), QStringLiteral("/opt/sibling")));
        QStringList lines = officeSettings(f.installation.databaseFolder());
        lines[8] = QString::fromLatin1(c.line9);
        ASSERT_TRUE(replaceTextLines(f.ini, lines));
        ASSERT_TRUE(ReadSettings(f.ini));
        EXPECT_EQ(session().ShareParcelStore, c.shared) << c.line9;
        EXPECT_EQ(session().ParcelDatabasePath,
            c.shared ? QStringLiteral("/opt/sibling/databases/sbl.db")
                     : f.installation.databaseFolder() + QStringLiteral("/sbl.db"))
            << c.line9;
    }
}

TEST(ReadSettings, WithoutTheSiblingProgramTheStoreIsNeverShared)
{
    SettingsFixture f;
    QStringList lines = officeSettings(f.installation.databaseFolder());
    lines[8] = QStringLiteral("True");
    ASSERT_TRUE(replaceTextLines(f.ini, lines));
    ASSERT_TRUE(ReadSettings(f.ini));
    EXPECT_FALSE(session().ShareParcelStore);
    EXPECT_EQ(session().ParcelDatabasePath, f.installation.databaseFolder() + QStringLiteral("/sbl.db"));
}

TEST(ReadSettings, NewFileAsksWhetherToShareTheSiblingStore)
{
    for (const bool confirmed : {true, false}) {
        resetSession();
        SettingsFixture f;
        ASSERT_TRUE(SettingPut(QStringLiteral("EP"), QStringLiteral("/opt/sibling")));
        int asked = 0;
        const Settings::ShareQuestion previous = Settings::setShareQuestion([&] {
            ++asked;
            return confirmed;
        });
        ASSERT_TRUE(ReadSettings(f.ini));
        Settings::setShareQuestion(previous);
        EXPECT_EQ(asked, 1);
        EXPECT_EQ(session().ShareParcelStore, confirmed);
        EXPECT_EQ(readTextLines(f.ini)->at(8), confirmed ? QStringLiteral("True") : QStringLiteral("False"));
        EXPECT_EQ(session().ParcelDatabasePath,
            confirmed ? QStringLiteral("/opt/sibling/databases/sbl.db")
                      : f.installation.databaseFolder() + QStringLiteral("/sbl.db"));
    }
}

TEST(ReadSettings, DefFileGivesTheBackupFolderTrimmed)
{
    SettingsFixture f;
    ASSERT_TRUE(replaceTextLines(f.ini, officeSettings(f.installation.databaseFolder())));
    writeBytes(f.installation.path(QStringLiteral("def.txt")),
        "/old/databases\r\n   /mnt/backup   \r\nhttps://codes.example/town\r\n/srv/codes\r\n");
    ASSERT_TRUE(ReadSettings(f.ini));
    EXPECT_EQ(session().BackupFolder, QStringLiteral("/mnt/backup"));
    EXPECT_EQ(session().OnlineCodesLink, QStringLiteral("https://codes.example/town"));
    EXPECT_EQ(session().LocalCodesLink, QStringLiteral("/srv/codes"));
    // Line 1 is the settings file's folder, never def.txt's.
    EXPECT_EQ(session().DatabaseFolder, f.installation.databaseFolder());
}

TEST(ReadSettings, ImportNeedsBothTheMarkerAndTheRoll)
{
    const struct
    {
        bool imported;
        bool roll;
        bool available;
    } cases[] = {{true, true, true}, {true, false, false}, {false, true, false}, {false, false, false}};
    for (const auto& c : cases) {
        resetSession();
        SettingsFixture f;
        ASSERT_TRUE(replaceTextLines(f.ini, officeSettings(f.installation.databaseFolder())));
        if (c.imported) {
            writeBytes(f.installation.path(QStringLiteral("databases/imported.txt")), "2026\n");
        }
        if (c.roll) {
            f.installation.createDatabase(store::Table::RPS);
        }
        ASSERT_TRUE(ReadSettings(f.ini));
        EXPECT_EQ(session().ImportAvailable, c.available) << c.imported << c.roll;
    }
}

TEST(ReadSettings, UnreadableReportHeaderIsFatal)
{
    SettingsFixture f;
    ASSERT_TRUE(replaceTextLines(f.ini, officeSettings(f.installation.databaseFolder())));
    QFile::remove(f.installation.path(QStringLiteral("forms/gTitle.rtf")));
    EndCounter end;
    EXPECT_FALSE(ReadSettings(f.ini));
    EXPECT_EQ(end.calls, 1);
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_EQ(scriptedPrompts().shown().first().text, Settings::fatalMessage());
}

TEST(ReadSettings, SettingsThatCannotBeWrittenLeaveTheDefaultsInUse)
{
    SettingsFixture f;
    // The file's folder is not there, so the new file cannot be written.
    const QString ini = f.installation.path(QStringLiteral("gone/PVardo.ini"));
    EndCounter end;
    ASSERT_TRUE(ReadSettings(ini));
    EXPECT_EQ(end.calls, 0);
    EXPECT_FALSE(QFile::exists(ini));
    EXPECT_EQ(session().DatabaseFolder, f.installation.databaseFolder());
    EXPECT_EQ(session().EditorFontName, QStringLiteral("Times New Roman"));
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_TRUE(scriptedPrompts().shown().first().text.contains(QLatin1String("could not be written")));
}

TEST(ReadSettings, UnreadableFileFallsBackToTheProgramFolder)
{
    SettingsFixture f;
    // Elsewhere, a folder where a file should be: it cannot be read.
    const QString elsewhere = f.installation.path(QStringLiteral("other/PVardo.ini"));
    QDir().mkpath(elsewhere);
    ASSERT_TRUE(replaceTextLines(f.ini, officeSettings(f.installation.databaseFolder())));
    EndCounter end;
    ASSERT_TRUE(ReadSettings(elsewhere));
    EXPECT_EQ(end.calls, 0);
    EXPECT_EQ(session().MunicipalityName, QStringLiteral("Town of Elm Crossing"));

    // The program folder's own file unreadable as well: the user is told and
    // the program ends.
    resetSession();
    session().ProgramFolder = f.installation.programFolder();
    QFile::remove(f.ini);
    QDir().mkpath(f.ini);
    EXPECT_FALSE(ReadSettings(f.ini));
    EXPECT_EQ(end.calls, 1);
    EXPECT_TRUE(scriptedPrompts().shownTexts().last().contains(QLatin1String("cannot be read")));
}

TEST(SettingStore, FilesHoldTheNamedValues)
{
    TestInstallation installation;
    session().ProgramFolder = installation.programFolder();
    // A missing name gets its file, holding the default.
    EXPECT_EQ(SettingGet(QStringLiteral("Settings"), QStringLiteral("VERSION"), QStringLiteral("1.0")),
        QStringLiteral("1.0"));
    EXPECT_EQ(*readTextLines(installation.path(QStringLiteral("settings/VERSION"))),
        QStringList{QStringLiteral("1.0")});
    EXPECT_EQ(SettingGet(QStringLiteral("Settings"), QStringLiteral("VERSION"), QStringLiteral("2.0")),
        QStringLiteral("1.0"));

    // An empty value is kept as such: the sibling program then counts as absent.
    ASSERT_TRUE(SettingPut(QStringLiteral("EP"), QString()));
    EXPECT_EQ(
        SettingGet(QStringLiteral("Settings"), QStringLiteral("EP"), QStringLiteral("/default")), QString());
    EXPECT_FALSE(ReadSiblingInfo());
    // One blank is not empty, and the folder is not looked at.
    ASSERT_TRUE(SettingPut(QStringLiteral("EP"), QStringLiteral(" ")));
    EXPECT_TRUE(ReadSiblingInfo());
    EXPECT_EQ(session().SiblingFolder, QStringLiteral(" "));
    ASSERT_TRUE(SettingPut(QStringLiteral("AE"), QStringLiteral("Vardo")));
    ReadSiblingInfo();
    EXPECT_EQ(session().SiblingProgram, QStringLiteral("Vardo"));
}

TEST(SettingStore, FolderThatCannotBeWrittenGivesTheDefault)
{
    TestInstallation installation;
    session().ProgramFolder = installation.programFolder();
    // A file where the settings folder should be.
    writeBytes(installation.path(QStringLiteral("settings")), "not a folder");
    QString error;
    EXPECT_FALSE(SettingPut(QStringLiteral("EP"), QStringLiteral("/opt/sibling"), &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_EQ(SettingGet(QStringLiteral("Settings"), QStringLiteral("EP"), QStringLiteral("fallback")),
        QStringLiteral("fallback"));
    EXPECT_FALSE(ReadSiblingInfo());
}

TEST(BoardMembers, NonBlankLinesUpToFortyNine)
{
    QTemporaryDir dir;
    EXPECT_TRUE(BoardMembers::read(dir.path()).isEmpty());

    writeBytes(dir.filePath(QStringLiteral("Inspectors.txt")), "Ada Brook\r\n\r\n   \r\nCal Dunn\r\n");
    EXPECT_EQ(BoardMembers::read(dir.path()),
        QStringList({QStringLiteral("Ada Brook"), QStringLiteral("Cal Dunn")}));

    QStringList many;
    for (int i = 1; i <= 60; ++i) {
        many << QStringLiteral("Member %1").arg(i);
    }
    ASSERT_TRUE(BoardMembers::write(dir.path(), many));
    const QStringList read = BoardMembers::read(dir.path());
    ASSERT_EQ(read.size(), 49);
    EXPECT_EQ(read.last(), QStringLiteral("Member 49"));
}
