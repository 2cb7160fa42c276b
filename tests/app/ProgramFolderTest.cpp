#include "app/ProgramFolder.h"

#include "StartupFixtures.h"
#include "app/Startup.h"
#include "support/ScriptedPrompts.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::test;
using app::FolderOrigin;

TEST(ProgramFolder, NamedFolderThenUserFolderUnderUsrThenProgramsOwn)
{
    const QString data = QStringLiteral("/home/clerk/.local/share");
    struct Case {
        const char* named;
        const char* programDir;
        const char* folder;
        FolderOrigin origin;
    };
    const Case cases[] = {
        // PVARDO_HOME wins wherever the program lives; trailing slashes go.
        {"/srv/planning//", "/usr/lib/pvardo", "/srv/planning", FolderOrigin::Named},
        {"/srv/planning", "/opt/pvardo", "/srv/planning", FolderOrigin::Named},
        // Installed from the package, or by cmake --install into /usr/local.
        {"", "/usr/lib/pvardo", "/home/clerk/.local/share/pvardo", FolderOrigin::UserData},
        {"", "/usr/local/lib/pvardo", "/home/clerk/.local/share/pvardo", FolderOrigin::UserData},
        {"", "/usr", "/home/clerk/.local/share/pvardo", FolderOrigin::UserData},
        // Only /usr itself counts, not a folder whose name begins so, nor a
        // path that merely passes through it.
        {"", "/usrdata/pvardo", "/usrdata/pvardo", FolderOrigin::ProgramsOwn},
        {"", "/usr/../opt/pvardo", "/usr/../opt/pvardo", FolderOrigin::ProgramsOwn},
        {"", "/opt/pvardo/", "/opt/pvardo", FolderOrigin::ProgramsOwn},
        {"", "/", "/", FolderOrigin::ProgramsOwn},
    };
    for (const Case& c : cases) {
        const app::ProgramFolderChoice choice = app::chooseProgramFolder(
            QString::fromLatin1(c.named), QString::fromLatin1(c.programDir), data);
        EXPECT_EQ(choice.folder, QString::fromLatin1(c.folder)) << c.named << " " << c.programDir;
        EXPECT_EQ(choice.origin, c.origin) << c.named << " " << c.programDir;
    }
    // A relative PVARDO_HOME is taken from the working folder.
    EXPECT_EQ(app::chooseProgramFolder(QStringLiteral("office"), QStringLiteral("/opt/pvardo"), data).folder,
        QDir::current().absoluteFilePath(QStringLiteral("office")));
}

TEST(ProgramFolder, FirstStartMakesTheUsersInstallationThatTheProgramThenStartsOn)
{
    QTemporaryDir home;
    const QString folder = home.filePath(QStringLiteral(".local/share/pvardo"));
    ASSERT_TRUE(app::prepareProgramFolder({folder, FolderOrigin::UserData}));
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    const Prompt told = scriptedPrompts().shown().first();
    EXPECT_EQ(told.icon, PromptIcon::Information);
    EXPECT_TRUE(told.text.contains(folder)) << told.text.toStdString();
    EXPECT_TRUE(told.text.contains(QLatin1String("ADMIN"))) << told.text.toStdString();
    for (const char* file : {"PVardo.ini", "Users.Set", "def.txt", "databases/pbproj.db", "forms/gTitle.rtf"}) {
        EXPECT_TRUE(QFile::exists(folder + QLatin1Char('/') + QLatin1String(file))) << file;
    }

    // The next start finds it and neither says nor changes anything.
    writeLines(folder + QStringLiteral("/def.txt"), {QStringLiteral("kept")});
    scriptedPrompts().clear();
    ASSERT_TRUE(app::prepareProgramFolder({folder, FolderOrigin::UserData}));
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());
    EXPECT_EQ(readAllOf(folder + QStringLiteral("/def.txt")), QByteArray("kept\n"));

    WorkingFolderKeeper keeper;
    ProgramEndRecorder end;
    RecordingHost host;
    app::Startup startup(host, folder);
    ASSERT_TRUE(startup.run());
    EXPECT_EQ(end.calls(), 0);
    EXPECT_EQ(session().DatabaseFolder, folder + QStringLiteral("/databases"));
}

TEST(ProgramFolder, NothingIsMadeInANamedFolderOrWhereSomethingElseLives)
{
    QTemporaryDir root;
    // PVARDO_HOME and the program's own folder are the office's business: an
    // empty one stays empty, and the start-up says what is missing.
    const QString named = root.filePath(QStringLiteral("named"));
    ASSERT_TRUE(QDir().mkpath(named));
    EXPECT_TRUE(app::prepareProgramFolder({named, FolderOrigin::Named}));
    EXPECT_TRUE(app::prepareProgramFolder({named, FolderOrigin::ProgramsOwn}));
    EXPECT_TRUE(QDir(named).isEmpty());
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());

    // The user's folder taken by a file, or by a folder of other things: the
    // program stops, says how to make an installation by hand, and touches
    // nothing.
    const QString file = root.filePath(QStringLiteral("pvardo-file"));
    writeLines(file, {QStringLiteral("notes")});
    const QString foreign = root.filePath(QStringLiteral("pvardo-foreign"));
    ASSERT_TRUE(QDir().mkpath(foreign));
    writeLines(foreign + QStringLiteral("/notes.txt"), {QStringLiteral("notes")});
    for (const QString& folder : {file, foreign}) {
        scriptedPrompts().clear();
        EXPECT_FALSE(app::prepareProgramFolder({folder, FolderOrigin::UserData}));
        ASSERT_EQ(scriptedPrompts().shown().size(), 1);
        const Prompt told = scriptedPrompts().shown().first();
        EXPECT_EQ(told.icon, PromptIcon::Critical);
        EXPECT_TRUE(told.text.contains(QStringLiteral("pvardo-admin --home ") + folder + QStringLiteral(" init")))
            << told.text.toStdString();
    }
    EXPECT_EQ(readAllOf(file), QByteArray("notes\n"));
    EXPECT_EQ(QDir(foreign).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{QStringLiteral("notes.txt")});
}
