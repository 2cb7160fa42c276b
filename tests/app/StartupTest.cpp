#include "app/Startup.h"

#include "StartupFixtures.h"
#include "app/InstanceGuard.h"
#include "common/NetworkUser.h"
#include "common/Waiting.h"
#include "store/Recordset.h"
#include "support/ScriptedPrompts.h"
#include "support/TestInstallation.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::test;

namespace {

QStringList settingsLines(const QString& databaseFolder)
{
    return {databaseFolder, QString(), QString(), QString(), QString(), QString(), QString(),
        QStringLiteral("2"), QStringLiteral("False"), QStringLiteral("12"), QStringLiteral("Times New Roman"),
        QStringLiteral("NYS Fire Prevention & Bldg Code"), QStringLiteral("Building and Zoning Codes"),
        QStringLiteral("0")};
}

int fieldCountOf(const QString& path)
{
    store::StoreStatus status;
    const auto parcels = store::openRecordsetAt(path, QStringLiteral("Select * from SBL"), &status);
    return parcels ? parcels->fieldCount() : -1;
}

} // namespace

TEST(Startup, RunsEveryStepToTheMainWindow)
{
    TestInstallation installation;
    WorkingFolderKeeper keeper;
    ProgramEndRecorder end;
    writeLines(installation.path(QStringLiteral("PVardo.ini")), settingsLines(installation.databaseFolder()));
    writeLines(installation.path(QStringLiteral("session.log")), {QStringLiteral("old")});
    writeLines(installation.path(QStringLiteral("Updater")), {QStringLiteral("old updater")});
    writeLines(installation.path(QStringLiteral("Updater1")), {QStringLiteral("new updater")});
    writeLines(installation.path(QStringLiteral("updated.fl")), {QStringLiteral("1")});
    writeLines(installation.path(QStringLiteral("w7.txt")), {QStringLiteral(" 1 ")});
    writeLines(installation.path(QStringLiteral("browser.txt")),
        {QStringLiteral("http://gis.town.local/map"), QString()});

    RecordingHost host;
    app::Startup startup(host, installation.programFolder());
    const double waitedBefore = secondsAskedToWait();
    ASSERT_TRUE(startup.run());

    EXPECT_EQ(end.calls(), 0);
    EXPECT_EQ(host.calls,
        QStringList({QStringLiteral("splash"), QStringLiteral("close splash"), QStringLiteral("log-on"),
            QStringLiteral("wait notice"), QStringLiteral("close wait notice"),
            QStringLiteral("main window")}));
    // The files of the program folder.
    EXPECT_FALSE(QFile::exists(installation.path(QStringLiteral("session.log"))));
    EXPECT_FALSE(QFile::exists(installation.path(QStringLiteral("Updater1"))));
    EXPECT_EQ(readAllOf(installation.path(QStringLiteral("Updater"))), QByteArray("new updater\n"));
    EXPECT_FALSE(QFile::exists(installation.path(QStringLiteral("updated.fl"))));
    EXPECT_TRUE(startup.findings().settingsInFilesAsked);
    EXPECT_TRUE(startup.findings().updaterReplaced);
    EXPECT_EQ(QDir::currentPath(), QDir(installation.programFolder()).canonicalPath());

    // The session as the main window finds it.
    const Session& state = session();
    EXPECT_TRUE(state.LoggedIn);
    EXPECT_EQ(state.CurrentUser, GetNetworkUser());
    EXPECT_EQ(state.EditorFontSize, 9);
    EXPECT_EQ(state.BackupMode, 2);
    EXPECT_EQ(state.DatabaseFolder, installation.databaseFolder());
    EXPECT_EQ(state.FormsFolder, installation.programFolder() + QStringLiteral("/forms"));
    EXPECT_EQ(state.LocalGisLink, QStringLiteral("http://gis.town.local/map"));
    EXPECT_EQ(state.UseDefaultBrowser, QStringLiteral("T"));
    EXPECT_FALSE(state.FirstPass);
    EXPECT_TRUE(QFile::exists(state.ParcelDatabasePath));
    EXPECT_EQ(state.ParcelStoreVersion, fieldCountOf(state.ParcelDatabasePath));
    EXPECT_GE(state.ParcelStoreVersion, 13);
    EXPECT_EQ(state.MonthNames[12], QStringLiteral("December"));
    // The databases folder was empty: the seeds were put in place, and said so once.
    EXPECT_EQ(scriptedPrompts().shown().size(), 1);
    // session.log, the splash, the old updater, updated.fl and the wait notice.
    EXPECT_DOUBLE_EQ(secondsAskedToWait() - waitedBefore, 6.0);
}

TEST(Startup, UpdaterIsPutInPlaceEvenWithoutAnOldOne)
{
    TestInstallation installation;
    WorkingFolderKeeper keeper;
    writeLines(installation.path(QStringLiteral("Updater1")), {QStringLiteral("new updater")});
    RecordingHost host;
    app::Startup startup(host, installation.programFolder());
    ASSERT_TRUE(startup.run());
    EXPECT_FALSE(QFile::exists(installation.path(QStringLiteral("Updater1"))));
    EXPECT_EQ(readAllOf(installation.path(QStringLiteral("Updater"))), QByteArray("new updater\n"));
}

TEST(Startup, W7AsksForSettingsInFilesOnlyWithAOne)
{
    const struct
    {
        const char* content; // nullptr: no file
        bool asks;
    } cases[] = {{" 1 \n", true}, {"1", true}, {"1\nsomething\n", true}, {"2\n", false}, {"\n1\n", false},
        {"", false}, {nullptr, false}};
    for (const auto& c : cases) {
        QTemporaryDir dir;
        if (c.content) {
            QFile file(dir.filePath(QStringLiteral("w7.txt")));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(c.content);
        }
        EXPECT_EQ(app::Startup::w7AsksForSettingsInFiles(dir.path()), c.asks)
            << (c.content ? c.content : "(none)");
    }
}

TEST(Startup, BrowserFileDecidesTheBrowser)
{
    const struct
    {
        QStringList lines;
        bool present;
        const char* link;
        const char* useDefault;
    } cases[] = {
        {{QStringLiteral("http://gis"), QStringLiteral("F")}, true, "http://gis", "F"},
        {{QStringLiteral("http://gis"), QStringLiteral(" F ")}, true, "http://gis", "F"},
        {{QStringLiteral("http://gis"), QStringLiteral("f")}, true, "http://gis", "T"},
        {{QStringLiteral("http://gis"), QString()}, true, "http://gis", "T"},
        {{QStringLiteral("http://gis")}, true, "http://gis", "T"},
        {{}, false, "", ""},
    };
    for (const auto& c : cases) {
        resetSession();
        TestInstallation installation;
        if (c.present) {
            writeLines(installation.path(QStringLiteral("browser.txt")), c.lines);
        }
        RecordingHost host;
        app::Startup startup(host, installation.programFolder());
        startup.readBrowserFile();
        EXPECT_EQ(session().LocalGisLink, QString::fromUtf8(c.link))
            << c.lines.join(QLatin1Char('|')).toStdString();
        EXPECT_EQ(session().UseDefaultBrowser, QString::fromUtf8(c.useDefault))
            << c.lines.join(QLatin1Char('|')).toStdString();
    }
}

TEST(Startup, SecondStartNeverReachesTheLogOnAndLeavesTheFolderAlone)
{
    TestInstallation installation;
    WorkingFolderKeeper keeper;
    app::InstanceGuard first(installation.programFolder());
    ASSERT_TRUE(first.acquire());
    QSignalSpy raised(&first, &app::InstanceGuard::activationRequested);
    writeLines(installation.path(QStringLiteral("session.log")), {QStringLiteral("kept")});
    writeLines(installation.path(QStringLiteral("Updater1")), {QStringLiteral("new updater")});

    ProgramEndRecorder end;
    RecordingHost host;
    app::Startup second(host, installation.programFolder());
    EXPECT_FALSE(second.run());
    EXPECT_TRUE(second.findings().secondInstance);
    EXPECT_EQ(end.calls(), 1);
    EXPECT_TRUE(host.calls.isEmpty());
    EXPECT_EQ(scriptedPrompts().shownTexts(), QStringList{QStringLiteral("Vardo is already running.")});
    EXPECT_TRUE(QFile::exists(installation.path(QStringLiteral("session.log"))));
    EXPECT_TRUE(QFile::exists(installation.path(QStringLiteral("Updater1"))));
    EXPECT_FALSE(QFile::exists(installation.path(QStringLiteral("databases/meeting.db"))));
    // The first instance is asked to come to the front.
    EXPECT_TRUE(raised.count() > 0 || raised.wait(3000));
}

TEST(Startup, CancelledLogOnEndsWithoutBackupOrVersion)
{
    TestInstallation installation;
    WorkingFolderKeeper keeper;
    writeLines(installation.path(QStringLiteral("PVardo.ini")), settingsLines(installation.databaseFolder()));
    ProgramEndRecorder end;
    RecordingHost host;
    host.acceptLogOn = false;
    app::Startup startup(host, installation.programFolder());
    EXPECT_FALSE(startup.run());
    EXPECT_EQ(end.calls(), 1);
    EXPECT_EQ(host.calls.last(), QStringLiteral("log-on"));
    EXPECT_FALSE(host.calls.contains(QStringLiteral("main window")));
    EXPECT_FALSE(QFile::exists(installation.path(QStringLiteral("databases/sblversion.txt"))));
    for (const Prompt& prompt : scriptedPrompts().shown()) {
        EXPECT_NE(prompt.title, QStringLiteral(" Backup database"));
    }
}

TEST(Startup, ANamedFolderWithoutDatabasesEndsTheStartAndNamesIt)
{
    TestInstallation installation;
    WorkingFolderKeeper keeper;
    installation.createDatabase(store::Table::PBPROJ); // the installation's own folder holds databases
    const QString share = installation.programFolder() + QStringLiteral("/share");
    for (const bool connected : {false, true}) {
        // A share that is not there, then one that is there and empty.
        if (connected) {
            QDir().mkpath(share);
        }
        scriptedPrompts().clear();
        writeLines(installation.path(QStringLiteral("PVardo.ini")), settingsLines(share));
        ProgramEndRecorder end;
        RecordingHost host;
        app::Startup startup(host, installation.programFolder());
        EXPECT_FALSE(startup.run());
        EXPECT_EQ(end.calls(), 1);
        EXPECT_FALSE(host.calls.contains(QStringLiteral("log-on")));
        ASSERT_EQ(scriptedPrompts().shown().size(), 1);
        const Prompt& said = scriptedPrompts().shown().first();
        EXPECT_EQ(said.title, QStringLiteral(" Database Folder"));
        EXPECT_TRUE(said.text.contains(share + QStringLiteral(", named in the program's settings, ")
                                       + (connected ? QStringLiteral("holds no database") : QStringLiteral("is not there"))))
            << said.text.toStdString();
        // Nothing made there, nor in the installation's own folder.
        EXPECT_FALSE(QFile::exists(installation.path(QStringLiteral("databases/meeting.db"))));
        if (connected) {
            EXPECT_TRUE(QDir(share).isEmpty());
        }
    }
}

TEST(InstanceGuard, OnePerInstallationFolder)
{
    QTemporaryDir one;
    QTemporaryDir two;
    auto first = std::make_unique<app::InstanceGuard>(one.path());
    app::InstanceGuard other(two.path());
    EXPECT_TRUE(first->acquire());
    EXPECT_TRUE(other.acquire());
    app::InstanceGuard again(one.path() + QStringLiteral("/"));
    EXPECT_FALSE(again.acquire());
    EXPECT_TRUE(again.activateFirstInstance());
    first.reset();
    app::InstanceGuard after(one.path());
    EXPECT_TRUE(after.acquire());
}
