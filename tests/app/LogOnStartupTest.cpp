#include "StartupFixtures.h"
#include "admin/UserList.h"
#include "admin/screens/PswFrm.h"
#include "app/Startup.h"
#include "common/Settings.h"
#include "support/ScriptedPrompts.h"
#include "support/TestInstallation.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::test;

namespace {

// The start-up's screens as recorded, with the real log-on screen.
class LogOnHost final : public app::StartupHost
{
public:
    QStringList calls;
    void showSplash() override { calls << QStringLiteral("splash"); }
    void closeSplash() override { }
    bool logOn() override
    {
        calls << QStringLiteral("log-on");
        return admin::runLogOn();
    }
    void showWaitNotice() override { }
    void closeWaitNotice() override { }
    void showMainWindow() override { calls << QStringLiteral("main window"); }
    void bringToFront() override { }
};

void logOnAs(const QString& name, const QString& password)
{
    scriptedPrompts().onDialog(QStringLiteral("PswFrm"), [name, password](QDialog& dialog) {
        QLineEdit* user = dialog.findChild<QLineEdit*>(QStringLiteral("Text1"));
        QLineEdit* secret = dialog.findChild<QLineEdit*>(QStringLiteral("Text2"));
        user->clear();
        QTest::keyClicks(user, name);
        QTest::keyClicks(secret, password);
        dialog.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
        if (dialog.result() != QDialog::Accepted) {
            dialog.findChild<QPushButton*>(QStringLiteral("cmdCancel"))->click();
        }
        return dialog.result();
    });
}

QStringList settingsWithBackupQuestion(const QString& databaseFolder)
{
    QStringList lines = Settings::defaultLines(databaseFolder, false);
    lines[7] = QStringLiteral("0");
    return lines;
}

} // namespace

TEST(LogOnStartup, EachLevelReachesTheMainWindowWithItsRights)
{
    const struct
    {
        const char* name;
        const char* password;
        const char* level;
        const char* listed; // the name as the user list spells it
        bool admin;
        bool readOnly;
    } cases[] = {
        {"admin", "Planning", "ADMIN", "ADMIN", true, false},
        {"Clerk", "DESK", "MEMBER", "CLERK", false, false},
        {"VISITOR", "look", "USER", "visitor", false, true},
    };
    for (const auto& c : cases) {
        resetSession();
        scriptedPrompts().clear();
        TestInstallation installation;
        WorkingFolderKeeper keeper;
        admin::UserList users = *admin::UserList::read(installation.path(QStringLiteral("Users.Set")));
        users.entries.append(admin::UserEntry{QStringLiteral("CLERK"), QStringLiteral("desk"), QStringLiteral("MEMBER")});
        users.entries.append(admin::UserEntry{QStringLiteral("visitor"), QStringLiteral("LOOK"), QStringLiteral("USER")});
        ASSERT_TRUE(users.write(installation.path(QStringLiteral("Users.Set"))));
        writeLines(installation.path(QStringLiteral("PVardo.ini")),
            settingsWithBackupQuestion(installation.databaseFolder()));

        logOnAs(QString::fromLatin1(c.name), QString::fromLatin1(c.password));
        LogOnHost host;
        app::Startup startup(host, installation.programFolder());
        ASSERT_TRUE(startup.run()) << c.name;
        EXPECT_EQ(host.calls.last(), QStringLiteral("main window"));
        const Session& state = session();
        EXPECT_TRUE(state.LoggedIn) << c.name;
        EXPECT_EQ(state.CurrentUser, QString::fromLatin1(c.listed));
        EXPECT_EQ(state.UserLevel, QString::fromLatin1(c.level));
        EXPECT_EQ(state.IsAdmin, c.admin) << c.name;
        EXPECT_EQ(state.ReadOnlyUser, c.readOnly) << c.name;
    }
}

TEST(LogOnStartup, CancelEndsWithoutBackupQuestionOrVersionFile)
{
    TestInstallation installation;
    WorkingFolderKeeper keeper;
    writeLines(installation.path(QStringLiteral("PVardo.ini")),
        settingsWithBackupQuestion(installation.databaseFolder()));
    // A wrong password first, then Cancel.
    logOnAs(QStringLiteral("admin"), QStringLiteral("wrong"));
    ProgramEndRecorder end;
    LogOnHost host;
    app::Startup startup(host, installation.programFolder());
    EXPECT_FALSE(startup.run());
    EXPECT_EQ(end.calls(), 1);
    EXPECT_FALSE(session().LoggedIn);
    EXPECT_EQ(host.calls, QStringList({QStringLiteral("splash"), QStringLiteral("log-on")}));
    EXPECT_FALSE(QFile::exists(installation.path(QStringLiteral("databases/sblversion.txt"))));
    for (const Prompt& prompt : scriptedPrompts().shown()) {
        EXPECT_FALSE(prompt.title.contains(QLatin1String("Backup"))) << prompt.text.toStdString();
    }
    EXPECT_TRUE(scriptedPrompts().shownTexts().contains(admin::PswFrm::invalidPasswordText()));
}

TEST(LogOnStartup, MissingUserListIsExplainedAndEndsTheProgram)
{
    TestInstallation installation;
    WorkingFolderKeeper keeper;
    QFile::remove(installation.path(QStringLiteral("Users.Set")));
    ProgramEndRecorder end;
    RecordingHost host;
    app::Startup startup(host, installation.programFolder());
    EXPECT_FALSE(startup.run());
    EXPECT_EQ(end.calls(), 1);
    EXPECT_TRUE(host.calls.isEmpty());
    ASSERT_FALSE(scriptedPrompts().shown().isEmpty());
    const QString text = scriptedPrompts().shown().last().text;
    EXPECT_TRUE(text.contains(installation.path(QStringLiteral("Users.Set")))) << text.toStdString();
    EXPECT_TRUE(text.contains(QLatin1String("pvardo-admin --home"))) << text.toStdString();
}

TEST(LogOnStartup, DamagedUserListStillReachesTheLogOn)
{
    TestInstallation installation;
    WorkingFolderKeeper keeper;
    writeLines(installation.path(QStringLiteral("Users.Set")), {QString(), QStringLiteral("x,y,z")});
    ProgramEndRecorder end;
    RecordingHost host;
    host.acceptLogOn = false;
    app::Startup startup(host, installation.programFolder());
    EXPECT_FALSE(startup.run());
    EXPECT_TRUE(host.calls.contains(QStringLiteral("log-on")));
    EXPECT_EQ(end.calls(), 1);
    EXPECT_TRUE(
        scriptedPrompts().shownTexts().join(QLatin1Char('\n')).contains(QLatin1String("cannot be read")));
}

TEST(LogOnStartup, UnreadableReportHeaderEndsBeforeTheSplash)
{
    TestInstallation installation;
    WorkingFolderKeeper keeper;
    QFile::remove(installation.path(QStringLiteral("forms/gTitle.rtf")));
    ProgramEndRecorder end;
    RecordingHost host;
    app::Startup startup(host, installation.programFolder());
    EXPECT_FALSE(startup.run());
    EXPECT_EQ(end.calls(), 1);
    EXPECT_TRUE(host.calls.isEmpty());
    EXPECT_TRUE(scriptedPrompts().shownTexts().contains(Settings::fatalMessage()));
}
