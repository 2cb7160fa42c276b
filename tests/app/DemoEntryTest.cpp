// The whole entry routine on the demonstration installation, with the real
// screens: log-on, then the main window with the rights of the level.
#include "StartupFixtures.h"
#include "admin/DemoInstallation.h"
#include "admin/Installation.h"
#include "admin/UserList.h"
#include "app/Startup.h"
#include "common/TextFiles.h"
#include "app/screens/WidgetStartupHost.h"
#include "schedule/screens/Scheduler.h"
#include "support/ScriptedPrompts.h"

#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::test;

namespace {

void answerLogOn(const QString& name, const QString& password)
{
    scriptedPrompts().onDialog(QStringLiteral("PswFrm"), [name, password](QDialog& dialog) {
        auto* user = dialog.findChild<QLineEdit*>(QStringLiteral("Text1"));
        user->clear();
        QTest::keyClicks(user, name);
        QTest::keyClicks(dialog.findChild<QLineEdit*>(QStringLiteral("Text2")), password);
        dialog.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
        return dialog.result();
    });
}

} // namespace

TEST(DemoEntry, DocumentedLogOnReachesTheMainWindowAndLevelsSwitchTheAdminMenu)
{
    QTemporaryDir dir;
    const QString home = dir.filePath(QStringLiteral("demo"));
    admin::Installation installation(home);
    ASSERT_TRUE(installation.make()) << installation.failures().join(QLatin1Char('\n')).toStdString();
    admin::DemoInstallation demo(home, QDate::currentDate());
    ASSERT_TRUE(demo.make()) << demo.failures().join(QLatin1Char('\n')).toStdString();
    admin::UserList users = *admin::UserList::read(home + QStringLiteral("/Users.Set"));
    users.entries.append(admin::UserEntry{QStringLiteral("PLANNER"), QStringLiteral("MAPS"), QStringLiteral("MEMBER")});
    users.entries.append(admin::UserEntry{QStringLiteral("VISITOR"), QStringLiteral("look"), QStringLiteral("USER")});
    users.entries.append(admin::UserEntry{QStringLiteral("BOSS"), QStringLiteral("chief"), QStringLiteral("SUPERVISOR")});
    // The list edited by hand: the last user's level in mixed case, which is
    // no administrator's level.
    QByteArray bytes = users.toBytes();
    ASSERT_TRUE(bytes.endsWith("\tSUPERVISOR\n"));
    bytes.replace(bytes.size() - 12, 12, "\tAdmin\n");
    ASSERT_TRUE(replaceFile(home + QStringLiteral("/Users.Set"), bytes));

    const struct
    {
        const char* name;
        const char* password;
        bool adminMenu;
        bool readOnly;
    } cases[] = {{"admin", "planning", true, false}, {"Planner", "maps", false, false},
        {"visitor", "LOOK", false, true}, {"boss", "chief", false, true}};
    for (const auto& c : cases) {
        resetSession();
        scriptedPrompts().clear();
        WorkingFolderKeeper keeper;
        ProgramEndRecorder end;
        answerLogOn(QString::fromLatin1(c.name), QString::fromLatin1(c.password));
        app::WidgetStartupHost host;
        app::Startup startup(host, home);
        ASSERT_TRUE(startup.run()) << c.name;
        EXPECT_EQ(end.calls(), 0);
        EXPECT_TRUE(scriptedPrompts().dialogsRun().contains(QStringLiteral("PswFrm")));
        // A complete installation says nothing on the way in.
        EXPECT_TRUE(scriptedPrompts().shown().isEmpty())
            << scriptedPrompts().shownTexts().join(QLatin1Char('|')).toStdString();

        schedule::Scheduler* window = host.mainWindow();
        ASSERT_NE(window, nullptr);
        EXPECT_TRUE(window->isVisible());
        QMenu* adminMenu = window->findChild<QMenu*>(QStringLiteral("report"));
        ASSERT_NE(adminMenu, nullptr);
        EXPECT_EQ(adminMenu->menuAction()->isVisible(), c.adminMenu) << c.name;
        EXPECT_EQ(session().IsAdmin, c.adminMenu);
        EXPECT_EQ(session().ReadOnlyUser, c.readOnly) << c.name;
        // Entry on the main window is off for a read-only user.
        auto* newMeeting = window->findChild<QPushButton*>(QStringLiteral("INew"));
        ASSERT_NE(newMeeting, nullptr);
        EXPECT_EQ(newMeeting->isEnabled(), !c.readOnly) << c.name;
        // Control+U brings the hidden delete command out for administrators only.
        auto* erase = window->findChild<QPushButton*>(QStringLiteral("iDelete"));
        ASSERT_NE(erase, nullptr);
        EXPECT_TRUE(erase->isHidden());
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
        QTest::keyClick(window, Qt::Key_U, Qt::ControlModifier);
        EXPECT_EQ(erase->isHidden(), !c.adminMenu) << c.name;
    }
}
