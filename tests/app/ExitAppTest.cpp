#include "common/ExitApp.h"

#include "StartupFixtures.h"
#include "app/screens/WidgetStartupHost.h"
#include "common/DatabaseBackup.h"
#include "documents/screens/NotepadFrm.h"
#include "schedule/screens/Scheduler.h"
#include "support/ScriptedPrompts.h"
#include "support/TestInstallation.h"
#include "ui/BrowseForFolder.h"

#include <QAction>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::test;

namespace {

class BackupRecorder
{
public:
    BackupRecorder()
    {
        m_previous = setBackupDatabasesHandler([this](int destination) { destinations << destination; });
    }
    ~BackupRecorder() { setBackupDatabasesHandler(m_previous); }
    QList<int> destinations;

private:
    BackupDatabasesHandler m_previous;
};

} // namespace

TEST(ExitApp, WritesTheVersionAndFollowsTheBackupMode)
{
    const struct
    {
        int mode;
        std::optional<PromptAnswer> answer; // the backup question, when asked
        bool backedUp;
    } cases[] = {
        {0, PromptAnswer::No, false},
        {0, PromptAnswer::Yes, true},
        {1, std::nullopt, true},
        {2, std::nullopt, false},
    };
    for (const auto& c : cases) {
        scriptedPrompts().clear();
        QTemporaryDir dir;
        writeLines(
            dir.filePath(QStringLiteral("sblversion.txt")), {QStringLiteral("13"), QStringLiteral("junk")});
        session().DatabaseFolder = dir.path();
        session().ParcelStoreVersion = 18;
        session().BackupMode = c.mode;
        if (c.answer) {
            scriptedPrompts().answer(QStringLiteral("Backup database"), *c.answer);
        }
        ProgramEndRecorder end;
        BackupRecorder backups;
        ExitApp();

        EXPECT_EQ(end.calls(), 1) << c.mode;
        EXPECT_EQ(readAllOf(dir.filePath(QStringLiteral("sblversion.txt"))), QByteArray("18\n")) << c.mode;
        EXPECT_EQ(backups.destinations, c.backedUp ? QList<int>{2} : QList<int>{}) << c.mode;
        if (c.answer) {
            ASSERT_EQ(scriptedPrompts().shown().size(), 1);
            const Prompt& question = scriptedPrompts().shown().constFirst();
            EXPECT_EQ(question.title, QStringLiteral(" Backup database"));
            EXPECT_EQ(question.text,
                QStringLiteral("Do you want to backup your database?    \nClick 'Yes' to backup."));
            EXPECT_EQ(question.buttons, PromptButtons::YesNo);
        } else {
            EXPECT_TRUE(scriptedPrompts().shown().isEmpty()) << c.mode;
        }
    }
}

TEST(ExitApp, AutomaticBackupCopiesTheDatabasesAndTheProgramStillEnds)
{
    TestInstallation installation;
    installation.applyTo(session());
    installation.createDatabase(store::Table::MEETING);
    QTemporaryDir drive;
    writeLines(drive.filePath(QStringLiteral("label.txt")), {QStringLiteral("backup drive")});
    session().BackupMode = 1;
    session().BackupFolder = drive.path() + QStringLiteral("/");
    ProgramEndRecorder end;
    ExitApp();
    EXPECT_EQ(end.calls(), 1);
    EXPECT_TRUE(QFile::exists(drive.filePath(QStringLiteral("databases/meeting.db"))));
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_EQ(scriptedPrompts().shown().first().title, QStringLiteral(" Completed"));

    // An empty folder is a fine destination.
    scriptedPrompts().clear();
    QTemporaryDir fresh;
    session().BackupFolder = fresh.path();
    ExitApp();
    EXPECT_EQ(end.calls(), 2);
    EXPECT_TRUE(QFile::exists(fresh.filePath(QStringLiteral("databases/meeting.db"))));
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_EQ(scriptedPrompts().shown().first().title, QStringLiteral(" Completed"));

    // With no destination stored and the folder question cancelled, nothing is
    // copied, the user is told so once, and the program ends all the same.
    scriptedPrompts().clear();
    session().BackupFolder.clear();
    const BackupFolderPicker previous
        = setBackupFolderPicker([](const QString& title) { return ui::BrowseForFolder(title); });
    ExitApp();
    setBackupFolderPicker(previous);
    EXPECT_EQ(end.calls(), 3);
    EXPECT_EQ(scriptedPrompts().dialogsRun(), QStringList{QStringLiteral("BrowseForFolder")});
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_EQ(scriptedPrompts().shown().first().title, QStringLiteral(" Backup database"));
    EXPECT_EQ(scriptedPrompts().shown().first().text,
        QStringLiteral("No backup of the databases was made: no destination was chosen."));
}

TEST(ExitApp, AFolderThatCannotBeWrittenStillEnds)
{
    QTemporaryDir dir;
    session().DatabaseFolder = dir.filePath(QStringLiteral("gone"));
    session().BackupMode = 2;
    ProgramEndRecorder end;
    ExitApp();
    EXPECT_EQ(end.calls(), 1);
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("gone/sblversion.txt"))));
}

TEST(ExitApp, TheMainWindowLeavesThroughItByQuitAndByClosing)
{
    TestInstallation installation;
    installation.applyTo(session());
    installation.createDatabase(store::Table::MEETING);
    session().BackupMode = 2;
    session().ParcelStoreVersion = 13;
    ProgramEndRecorder end;
    app::WidgetStartupHost host;
    host.showMainWindow();
    schedule::Scheduler* window = host.mainWindow();
    ASSERT_NE(window, nullptr);
    auto* quit = window->findChild<QAction*>(QStringLiteral("Quit"));
    ASSERT_NE(quit, nullptr);
    quit->trigger();
    EXPECT_EQ(end.calls(), 1);
    EXPECT_EQ(
        readAllOf(installation.databaseFolder() + QStringLiteral("/sblversion.txt")), QByteArray("13\n"));
    EXPECT_EQ(session().LeavingMarker, 0);
    window->close();
    EXPECT_EQ(end.calls(), 2);
    EXPECT_EQ(session().LeavingMarker, 99);
}

TEST(ExitApp, TheNotepadsUnsavedTextIsAskedForAndCancelKeepsTheProgram)
{
    TestInstallation installation;
    installation.applyTo(session());
    installation.createDatabase(store::Table::MEETING);
    session().BackupMode = 2;
    const QString letter = installation.databaseFolder() + QStringLiteral("/letter.rtf");
    writeLines(letter, {QStringLiteral("{\\rtf1\\ansi Dear neighbour,\\par}")});
    ProgramEndRecorder end;
    app::WidgetStartupHost host;
    host.showMainWindow();
    schedule::Scheduler* window = host.mainWindow();
    ASSERT_NE(window, nullptr);
    documents::NotepadFrm& notepad = documents::NotepadFrm::shared();
    ASSERT_TRUE(notepad.openDocument(letter));
    notepad.show();
    QTest::keyClicks(&notepad.buffer(), QStringLiteral("The hearing is moved. "));

    // Cancel: nothing ends, by Exit or by closing the dashboard.
    scriptedPrompts().answer(QStringLiteral("Save Changes"), PromptAnswer::Cancel);
    window->findChild<QAction*>(QStringLiteral("Quit"))->trigger();
    scriptedPrompts().answer(QStringLiteral("Save Changes"), PromptAnswer::Cancel);
    window->close();
    EXPECT_EQ(end.calls(), 0);
    EXPECT_EQ(session().LeavingMarker, 0);
    EXPECT_TRUE(notepad.changed());
    ASSERT_FALSE(scriptedPrompts().shown().isEmpty());
    EXPECT_EQ(scriptedPrompts().shown().first().text, QStringLiteral("Do you want to save the file?"));

    // Yes: the letter is saved, then the program ends.
    scriptedPrompts().answer(QStringLiteral("Save Changes"), PromptAnswer::Yes);
    EXPECT_TRUE(ExitApp());
    EXPECT_EQ(end.calls(), 1);
    EXPECT_TRUE(readAllOf(letter).contains("The hearing is moved."));
    notepad.close();
}
