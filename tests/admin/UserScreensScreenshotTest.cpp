// Draws the log-on and the user list as the office sees them, for the
// documentation. With PVARDO_SCREENSHOT_DIR set the pictures are written there
// as logon.png and user-management.png.
#include "admin/UserList.h"
#include "admin/UserLogon.h"
#include "admin/screens/PrefFrm.h"
#include "admin/screens/PswFrm.h"
#include "admin/screens/UserMgr.h"
#include "common/Session.h"
#include "support/TestInstallation.h"

#include <QDir>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::admin;

namespace {

void keep(QWidget& screen, const char* fileName)
{
    screen.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&screen));
    const QImage image = screen.grab().toImage();
    ASSERT_FALSE(image.isNull());
    EXPECT_GT(image.width(), 100);
    const QString folder = qEnvironmentVariable("PVARDO_SCREENSHOT_DIR");
    if (!folder.isEmpty()) {
        QDir().mkpath(folder);
        EXPECT_TRUE(image.save(folder + QLatin1Char('/') + QLatin1String(fileName)));
    }
}

} // namespace

TEST(UserScreensScreenshot, LogOnAndUserList)
{
    test::TestInstallation installation;
    UserList users;
    users.entries = {{QStringLiteral("ADMIN"), QStringLiteral("PLANNING"), QStringLiteral("ADMIN")},
        {QStringLiteral("CLERK"), QStringLiteral("DESK"), QStringLiteral("MEMBER")},
        {QStringLiteral("PLANNER"), QStringLiteral("MAPS"), QStringLiteral("MEMBER")},
        {QStringLiteral("VISITOR"), QStringLiteral("LOOK"), QStringLiteral("USER")}};
    ASSERT_TRUE(users.write(installation.path(QStringLiteral("Users.Set"))));
    session().ProgramFolder = installation.programFolder();
    session().CurrentUser = QStringLiteral("clerk");

    PswFrm logOn;
    logOn.findChild<QLineEdit*>(QStringLiteral("Text2"))->setText(QStringLiteral("desk"));
    keep(logOn, "logon.png");

    session().UserLevel = QStringLiteral("ADMIN");
    UserMgr manager(installation.programFolder());
    QTreeWidget* list = manager.findChild<QTreeWidget*>(QStringLiteral("ListView1"));
    list->setCurrentItem(list->topLevelItem(1));
    keep(manager, "user-management.png");
}

TEST(PrefFrmScreenshot, EachTab)
{
    test::TestInstallation installation;
    installation.applyTo(session());
    session().MasterDatabaseFolder = session().DatabaseFolder;
    session().MunicipalityName = QStringLiteral("Town of Elmford");
    session().MunicipalityAddress = QStringLiteral("12 Orchard Road");
    session().MunicipalityCity = QStringLiteral("Elmford");
    session().MunicipalityState = QStringLiteral("NY");
    session().MunicipalityZip = QStringLiteral("12000");
    session().MunicipalityPhone = QStringLiteral("518-555-0100");
    PrefFrm screen;
    QTabWidget* tabs = screen.findChild<QTabWidget*>(QStringLiteral("SSTab1"));
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        keep(screen, QStringLiteral("preferences-%1.png").arg(tab + 1).toLatin1().constData());
    }
}
