#include "admin/UserLogon.h"

#include "admin/ScrambleText.h"
#include "common/Session.h"
#include "support/TestInstallation.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::admin;

namespace {

UserList officeUsers()
{
    UserList users;
    users.entries = {{QStringLiteral("ADMIN"), QStringLiteral("PLANNING"), QStringLiteral("ADMIN")},
        {QStringLiteral("CLERK"), QStringLiteral("MiXeD9"), QStringLiteral("MEMBER")},
        {QStringLiteral("Viewer"), QStringLiteral("look"), QStringLiteral("USER")},
        // A second entry of the first name: never reached.
        {QStringLiteral("clerk"), QStringLiteral("second"), QStringLiteral("ADMIN")}};
    return users;
}

} // namespace

TEST(ValidateUser, ComparesNamesAndPasswordsInCapitalsAndStopsAtTheFirstName)
{
    const struct
    {
        const char* name;
        const char* password;
        bool loggedOn;
        const char* level; // "" when the session keeps its level
        int index;
    } cases[] = {
        {"admin", "planning", true, "ADMIN", 0},
        {"Admin", "PlAnNiNg", true, "ADMIN", 0},
        {"clerk", "mixed9", true, "MEMBER", 1},
        {"CLERK", "MIXED9", true, "MEMBER", 1},
        {"viewer", "LOOK", true, "USER", 2},
        // A wrong password still gives the entry's level.
        {"clerk", "wrong", false, "MEMBER", 1},
        // Only the first of two entries of a name is ever tried.
        {"CLERK", "second", false, "MEMBER", 1},
        // Blanks are part of what was typed.
        {" clerk", "mixed9", false, "", -1},
        {"nobody", "planning", false, "", -1},
        {"", "", false, "", -1},
    };
    for (const auto& c : cases) {
        resetSession();
        ValidateUser(officeUsers(), QString::fromLatin1(c.name), QString::fromLatin1(c.password));
        EXPECT_EQ(session().LoggedIn, c.loggedOn) << c.name << "/" << c.password;
        EXPECT_EQ(session().UserLevel, QString::fromLatin1(c.level)) << c.name << "/" << c.password;
        EXPECT_EQ(session().UserIndex, c.index) << c.name << "/" << c.password;
    }
}

TEST(ValidateUser, BlankNamesAndEmptyPasswordsNeverLogOn)
{
    UserList users = officeUsers();
    users.entries.prepend(UserEntry{QString(), QString(), QStringLiteral("MEMBER")});
    users.entries.append(UserEntry{QStringLiteral("NOPASS"), QString(), QStringLiteral("MEMBER")});
    users.entries.append(UserEntry{QStringLiteral("  "), QStringLiteral("x"), QStringLiteral("MEMBER")});
    const struct
    {
        const char* name;
        const char* password;
    } cases[] = {{"", ""}, {"", "x"}, {"  ", "x"}, {"nopass", ""}, {"NOPASS", " "}};
    for (const auto& c : cases) {
        resetSession();
        ValidateUser(users, QString::fromLatin1(c.name), QString::fromLatin1(c.password));
        EXPECT_FALSE(session().LoggedIn) << "'" << c.name << "'/'" << c.password << "'";
    }

    // The same through the file: a line ",," and an entry with an empty password.
    QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("Users.Set")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("3\n,,\n" + pvardo::test::TestInstallation::usersFileBytes().mid(2));
    const auto scrambled = [](const QString& text) { return ScrambleText(text).toLatin1(); };
    file.write(scrambled(QStringLiteral("NOPASS")) + ",," + scrambled(QStringLiteral("MEMBER")) + "\n");
    file.close();
    ASSERT_TRUE(loadSessionUsers(dir.path(), nullptr));
    for (const auto& c : cases) {
        resetSession();
        ValidateUser(QString::fromLatin1(c.name), QString::fromLatin1(c.password));
        EXPECT_FALSE(session().LoggedIn) << "file: '" << c.name << "'/'" << c.password << "'";
    }
    ValidateUser(QStringLiteral("admin"), QStringLiteral("planning"));
    EXPECT_TRUE(session().LoggedIn);
}

TEST(ValidateUser, UnknownNameLeavesTheSessionAsItWas)
{
    session().LoggedIn = true;
    session().UserLevel = QStringLiteral("MEMBER");
    ValidateUser(officeUsers(), QStringLiteral("stranger"), QStringLiteral("x"));
    EXPECT_TRUE(session().LoggedIn);
    EXPECT_EQ(session().UserLevel, QStringLiteral("MEMBER"));
}

TEST(ApplyUserLevel, SetsTheFlagsOfTheLevelAndNeverClearsThem)
{
    const struct
    {
        const char* level;
        bool admin;
        bool readOnly;
    } cases[] = {{"ADMIN", true, false}, {"MEMBER", false, false}, {"USER", false, true},
        {"SUPERVISOR", false, false},
        // A level the program does not know gives no more than USER.
        {"admin", false, true}, {"Admin", false, true}, {"ADMIN ", false, true}, {"ME", false, true},
        {"", false, true}};
    for (const auto& c : cases) {
        resetSession();
        session().UserLevel = QString::fromLatin1(c.level);
        ApplyUserLevel();
        EXPECT_EQ(session().IsAdmin, c.admin) << c.level;
        EXPECT_EQ(session().ReadOnlyUser, c.readOnly) << c.level;
    }
    // Run again after the preferences with another level: the flags stay.
    resetSession();
    session().UserLevel = QStringLiteral("ADMIN");
    ApplyUserLevel();
    session().UserLevel = QStringLiteral("USER");
    ApplyUserLevel();
    EXPECT_TRUE(session().IsAdmin);
    EXPECT_TRUE(session().ReadOnlyUser);
}

TEST(SessionUsers, MissingFileNamesItAndTheToolThatMakesIt)
{
    QTemporaryDir dir;
    QString message;
    EXPECT_FALSE(loadSessionUsers(dir.path(), &message));
    EXPECT_TRUE(message.contains(dir.path() + QStringLiteral("/Users.Set"))) << message.toStdString();
    EXPECT_TRUE(message.contains(QStringLiteral("pvardo-admin --home ") + dir.path()))
        << message.toStdString();
    EXPECT_TRUE(message.contains(QLatin1String("users add"))) << message.toStdString();
    EXPECT_TRUE(sessionUsers().entries.isEmpty());
}

TEST(SessionUsers, DamagedFilesLoadWhatCanBeRead)
{
    const struct
    {
        const char* what;
        QByteArray bytes;
        bool loads;
        int users;
    } cases[] = {
        {"shipped list", pvardo::test::TestInstallation::usersFileBytes(), true, 1},
        {"empty file", QByteArray(), false, 0},
        {"no count", QByteArray("\nabc,def,ghi\n"), false, 0},
        // Empty lines are passed over; a line with a comma too many is left out.
        {"empty lines", pvardo::test::TestInstallation::usersFileBytes() + "\n\n", true, 1},
        {"extra comma", pvardo::test::TestInstallation::usersFileBytes() + "a,b,c,d\n", true, 1},
        {"two fields", QByteArray("1\nab,cd\n"), true, 0},
        {"binary", QByteArray("\xff\xfe\x00\x01", 4), false, 0},
    };
    for (const auto& c : cases) {
        QTemporaryDir dir;
        QFile file(dir.filePath(QStringLiteral("Users.Set")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(c.bytes);
        file.close();
        QString message;
        EXPECT_EQ(loadSessionUsers(dir.path(), &message), c.loads) << c.what;
        EXPECT_EQ(sessionUsers().entries.size(), c.users) << c.what;
        EXPECT_EQ(message.isEmpty(), c.loads) << c.what;
    }
    // The shipped administrator logs on against the loaded list.
    pvardo::test::TestInstallation installation;
    ASSERT_TRUE(loadSessionUsers(installation.programFolder(), nullptr));
    ValidateUser(QStringLiteral("admin"), QStringLiteral("planning"));
    EXPECT_TRUE(session().LoggedIn);
}
