#include "common/DatabaseBackup.h"

#include "common/Session.h"
#include "support/ScriptedPrompts.h"
#include "support/TestInstallation.h"
#include "support/Text.h"
#include "ui/BrowseForFolder.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::test;

namespace {

// Installs a picker for one test, and counts what it was asked.
class PickerScript
{
public:
    explicit PickerScript(QStringList answers)
        : m_answers(std::move(answers))
    {
        m_previous = setBackupFolderPicker([this](const QString& title) {
            titles << title;
            return m_answers.isEmpty() ? QString() : m_answers.takeFirst();
        });
    }
    ~PickerScript() { setBackupFolderPicker(m_previous); }
    QStringList titles;

private:
    QStringList m_answers;
    BackupFolderPicker m_previous;
};

void touch(const QString& path)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("x");
}

} // namespace

TEST(BackupDestination, AnyFolderThatIsTherePassesEmptyOrNot)
{
    QTemporaryDir dir;
    touch(dir.filePath(q("marker.txt")));
    QDir().mkpath(dir.filePath(q("empty")));
    EXPECT_TRUE(backupDestinationPasses(dir.path()));
    EXPECT_TRUE(backupDestinationPasses(dir.path() + q("/")));
    EXPECT_TRUE(backupDestinationPasses(dir.filePath(q("empty"))));
    EXPECT_TRUE(backupDestinationPasses(dir.filePath(q("empty/"))));
    EXPECT_FALSE(backupDestinationPasses(dir.filePath(q("missing"))));
    EXPECT_FALSE(backupDestinationPasses(dir.filePath(q("missing/"))));
    EXPECT_FALSE(backupDestinationPasses(dir.filePath(q("marker.txt"))));
    EXPECT_FALSE(backupDestinationPasses(QString()));
    EXPECT_FALSE(backupDestinationPasses(q("  ")));
}

TEST(BackupDatabases, StoredFolderThatFailsBringsThePickerUntilAChoicePasses)
{
    TestInstallation installation;
    installation.applyTo(session());
    installation.createDatabase(store::Table::PBPROJ);
    QTemporaryDir drive;
    const QString unplugged = drive.filePath(q("unplugged"));
    session().BackupFolder = unplugged;
    session().StopFlag = false;
    // The drive's empty folder passes.
    PickerScript picker({drive.filePath(q("nothing-here/")), drive.path()});

    BackupDatabases(2);

    EXPECT_FALSE(session().StopFlag);
    EXPECT_EQ(picker.titles.size(), 2);
    EXPECT_EQ(picker.titles.value(0), q("Locate the drive and directory to store the backup databases."));
    const QStringList texts = scriptedPrompts().shownTexts();
    ASSERT_EQ(texts.size(), 3) << texts.join(q("|")).toStdString();
    EXPECT_EQ(texts.at(0), q("The default backup destination ") + unplugged
            + q(" cannot be found.\nYou must select the destination manually."));
    EXPECT_EQ(scriptedPrompts().shown().at(2).title, q(" Completed"));
    EXPECT_EQ(texts.at(2),
        q("You will find the backup database on the location you selected:\n") + drive.path()
            + q("/databases/\nPlease ensure the safe removal of your\nremovable media and store it in a safe place. "));
    // The database folder arrives as a subfolder of its own name.
    EXPECT_TRUE(QFile::exists(drive.filePath(q("databases/pbproj.db"))));

    // Again onto the earlier copy: replaced without a question.
    scriptedPrompts().clear();
    session().BackupFolder = drive.path() + q("/");
    BackupDatabases(2);
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_EQ(scriptedPrompts().shown().at(0).title, q(" Completed"));
}

TEST(BackupDatabases, CancelledPickerSetsStopFlagAndCopiesNothing)
{
    TestInstallation installation;
    installation.applyTo(session());
    installation.createDatabase(store::Table::PBPROJ);
    session().BackupFolder.clear();
    session().StopFlag = false;
    // The program's own picker, cancelled.
    const BackupFolderPicker previous
        = setBackupFolderPicker([](const QString& title) { return ui::BrowseForFolder(title); });
    BackupDatabases(2);
    setBackupFolderPicker(previous);
    EXPECT_TRUE(session().StopFlag);
    EXPECT_EQ(scriptedPrompts().dialogsRun(), QStringList{q("BrowseForFolder")});
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());
}

TEST(BackupDatabases, ACopyThatFailsSaysSo)
{
    TestInstallation installation;
    installation.applyTo(session());
    installation.createDatabase(store::Table::PBPROJ);
    QTemporaryDir drive;
    // A file where the copy's folder must go.
    touch(drive.filePath(q("databases")));
    session().BackupFolder = drive.path() + q("/");
    BackupDatabases(2);
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    const Prompt& told = scriptedPrompts().shown().at(0);
    EXPECT_EQ(told.title, q(" Backup Failed"));
    EXPECT_EQ(told.icon, PromptIcon::Critical);
    EXPECT_EQ(told.text,
        q("The backup operation has failed or canceled.\nUntil successful, you will not have a good set\n"
          "of database files. Please check your source and\ndestination folder locations and try again.     "));
}
