#include "admin/UserList.h"
#include "admin/UserLogon.h"
#include "admin/screens/AdminScreens.h"
#include "admin/screens/NewFrm.h"
#include "admin/screens/PswFrm.h"
#include "admin/screens/UserEdit.h"
#include "admin/screens/UserMgr.h"
#include "admin/screens/hasVARDO.h"
#include "admin/screens/pswhelp.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "support/ScriptedPrompts.h"
#include "support/TestInstallation.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
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
    QPushButton* button = child<QPushButton>(screen, name);
    ASSERT_TRUE(button->isEnabled()) << name;
    QTest::mouseClick(button, Qt::LeftButton);
}

UserList listWith(int members)
{
    UserList users;
    users.entries.append(UserEntry{QStringLiteral("ADMIN"), QStringLiteral("PLANNING"), QStringLiteral("ADMIN")});
    for (int i = 1; i <= members; ++i) {
        users.entries.append(UserEntry{QStringLiteral("MEMBER%1").arg(i), QStringLiteral("PW%1").arg(i),
            i % 2 ? QStringLiteral("MEMBER") : QStringLiteral("USER")});
    }
    return users;
}

// A program folder with a user list, loaded for the session.
struct UsersFixture
{
    TestInstallation installation;
    QString file;
    explicit UsersFixture(const UserList& users = listWith(2))
        : file(installation.path(QStringLiteral("Users.Set")))
    {
        EXPECT_TRUE(users.write(file));
        session().ProgramFolder = installation.programFolder();
        EXPECT_TRUE(loadSessionUsers(installation.programFolder(), nullptr));
    }
    QList<UserEntry> onDisk() const { return UserList::read(file)->entries; }
};

void selectRow(UserMgr& screen, int row)
{
    QTreeWidget* list = child<QTreeWidget>(screen, "ListView1");
    list->setCurrentItem(list->topLevelItem(row));
}

} // namespace

TEST(PswFrm, LogsOnInAnyCaseOfLetters)
{
    UsersFixture users;
    PswFrm screen;
    screen.show();
    typeInto(screen, "Text1", QStringLiteral("member1"));
    typeInto(screen, "Text2", QStringLiteral("pw1"));
    click(screen, "cmdOK");
    EXPECT_EQ(screen.result(), QDialog::Accepted);
    EXPECT_TRUE(session().LoggedIn);
    // Typed in small letters, stamped as the list spells it.
    EXPECT_EQ(session().CurrentUser, QStringLiteral("MEMBER1"));
    EXPECT_EQ(session().UserLevel, QStringLiteral("MEMBER"));
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());
}

TEST(PswFrm, WrongPasswordStaysWithTheBoxSelected)
{
    UsersFixture users;
    PswFrm screen;
    screen.show();
    for (const char* name : {"ADMIN", "nobody"}) {
        typeInto(screen, "Text1", QString::fromLatin1(name));
        typeInto(screen, "Text2", QStringLiteral("guess"));
        click(screen, "cmdOK");
        EXPECT_TRUE(screen.isVisible()) << name;
        EXPECT_FALSE(session().LoggedIn) << name;
        ASSERT_FALSE(scriptedPrompts().shown().isEmpty());
        EXPECT_EQ(scriptedPrompts().shown().last().text, QStringLiteral("Invalid Password, try again!"));
        EXPECT_EQ(scriptedPrompts().shown().last().title, QStringLiteral("Login"));
        QLineEdit* password = child<QLineEdit>(screen, "Text2");
        EXPECT_EQ(password->selectedText(), QStringLiteral("guess")) << name;
    }
    // Attempts have no limit: the right password still works.
    typeInto(screen, "Text1", QStringLiteral("admin"));
    typeInto(screen, "Text2", QStringLiteral("Planning"));
    click(screen, "cmdOK");
    EXPECT_TRUE(session().LoggedIn);
    EXPECT_EQ(session().UserIndex, 0);
}

TEST(PswFrm, CancelLeavesTheSessionLoggedOff)
{
    UsersFixture users;
    scriptedPrompts().onDialog(QStringLiteral("PswFrm"), [](QDialog& dialog) {
        typeInto(dialog, "Text1", QStringLiteral("admin"));
        typeInto(dialog, "Text2", QStringLiteral("planning"));
        click(dialog, "cmdCancel");
        return dialog.result();
    });
    EXPECT_FALSE(runLogOn());
    EXPECT_FALSE(session().LoggedIn);
}

TEST(PswFrm, PictureShowsTheHintUntilAKey)
{
    UsersFixture users;
    PswFrm screen;
    screen.show();
    QLabel* picture = child<QLabel>(screen, "image6");
    QTest::mouseClick(picture, Qt::LeftButton);
    pswhelp* hint = screen.helpBox();
    ASSERT_NE(hint, nullptr);
    EXPECT_TRUE(hint->isVisible());
    EXPECT_EQ(hint->objectName(), QStringLiteral("pswhelp"));
    EXPECT_EQ(child<QLabel>(*hint, "Label1")->text(), pswhelp::hintText());
    EXPECT_EQ(hint->pos().x() - screen.frameGeometry().x(), 1300 / 15);
    QTest::keyClick(hint, Qt::Key_A);
    EXPECT_FALSE(hint->isVisible());
    QTest::mouseClick(picture, Qt::LeftButton);
    EXPECT_TRUE(hint->isVisible());
    QTest::mouseClick(hint, Qt::LeftButton);
    EXPECT_FALSE(hint->isVisible());
}

TEST(UserMgr, AdministratorsCannotBeRemovedAndTwentyTurnAddOff)
{
    UserList users = listWith(18);
    users.entries[3].level = QStringLiteral("ADMIN");
    UsersFixture fixture(users);
    session().UserLevel = QStringLiteral("ADMIN");
    UserMgr screen(fixture.installation.programFolder());
    ASSERT_TRUE(screen.loaded());
    QPushButton* add = child<QPushButton>(screen, "Command1");
    QPushButton* remove = child<QPushButton>(screen, "Command2");
    EXPECT_EQ(child<QTreeWidget>(screen, "ListView1")->topLevelItemCount(), 19);
    EXPECT_TRUE(add->isEnabled());
    EXPECT_EQ(remove->toolTip(), QStringLiteral(" Delete highlighted user"));

    selectRow(screen, 0); // the row ADMIN
    EXPECT_FALSE(remove->isEnabled());
    selectRow(screen, 3); // another administrator
    EXPECT_FALSE(remove->isEnabled());
    selectRow(screen, 1);
    EXPECT_TRUE(remove->isEnabled());

    scriptedPrompts().onDialog(QStringLiteral("NewFrm"), [](QDialog& dialog) {
        typeInto(dialog, "Text1", QStringLiteral("Newcomer"));
        typeInto(dialog, "Text2", QStringLiteral("first"));
        child<QComboBox>(dialog, "Combo1")->setCurrentText(QStringLiteral("USER"));
        click(dialog, "Command1");
        return dialog.result();
    });
    click(screen, "Command1");
    ASSERT_EQ(screen.rows().size(), 20);
    EXPECT_FALSE(add->isEnabled());

    click(screen, "Command3");
    const QList<UserEntry> written = fixture.onDisk();
    ASSERT_EQ(written.size(), 20);
    EXPECT_EQ(written.last().name, QStringLiteral("Newcomer"));
    EXPECT_EQ(written.last().level, QStringLiteral("USER"));
    EXPECT_TRUE(written.last().accepts(QStringLiteral("FIRST")));
    // The list shows whether a user has a password, never the password.
    QTreeWidget* list = child<QTreeWidget>(screen, "ListView1");
    EXPECT_EQ(list->topLevelItem(19)->text(1), QStringLiteral("(set)"));
}

TEST(UserMgr, MoreThanTwentyInTheFileShowTwenty)
{
    UsersFixture fixture(listWith(24));
    UserMgr screen(fixture.installation.programFolder());
    EXPECT_EQ(child<QTreeWidget>(screen, "ListView1")->topLevelItemCount(), 20);
    EXPECT_FALSE(child<QPushButton>(screen, "Command1")->isEnabled());
}

TEST(UserMgr, DuplicateNameIsRefusedInAnyCase)
{
    UsersFixture fixture;
    UserMgr screen(fixture.installation.programFolder());
    bool stayed = false;
    scriptedPrompts().onDialog(QStringLiteral("NewFrm"), [&](QDialog& dialog) {
        typeInto(dialog, "Text1", QStringLiteral("member1"));
        typeInto(dialog, "Text2", QStringLiteral("x"));
        click(dialog, "Command1");
        stayed = dialog.result() != QDialog::Accepted;
        click(dialog, "Command2");
        return dialog.result();
    });
    click(screen, "Command1");
    EXPECT_TRUE(stayed);
    EXPECT_EQ(screen.rows().size(), 3);
    ASSERT_FALSE(scriptedPrompts().shown().isEmpty());
    EXPECT_EQ(scriptedPrompts().shown().last().title, QStringLiteral(" Duplicate User"));
    EXPECT_EQ(scriptedPrompts().shown().last().text,
        QStringLiteral("A user with that name already exist. Please use a different name."));
}

TEST(UserMgr, RemoveThenCancelLeavesTheFileAlone)
{
    UsersFixture fixture;
    const QList<UserEntry> before = fixture.onDisk();
    UserMgr screen(fixture.installation.programFolder());
    selectRow(screen, 2);
    click(screen, "Command2");
    EXPECT_EQ(screen.rows().size(), 2);
    click(screen, "Command4");
    EXPECT_EQ(fixture.onDisk(), before);
}

TEST(UserEdit, AdministratorsRowKeepsNameAndAccess)
{
    const struct
    {
        const char* editor;
        const char* row;
        bool fromChangePassword;
        bool nameOn;
        bool levelOn;
    } cases[] = {
        {"ADMIN", "ADMIN", false, false, false},
        {"ADMIN", "MEMBER1", false, true, true},
        {"SUPERVISOR", "MEMBER1", false, true, false},
        {"USER", "MEMBER1", false, true, false},
        {"MEMBER", "MEMBER1", true, true, false},
        {"ADMIN", "ADMIN", true, false, false},
    };
    for (const auto& c : cases) {
        UserEdit screen(UserEntry{QString::fromLatin1(c.row).toLower(), QStringLiteral("Secret"),
                            QStringLiteral("MEMBER")},
            QString::fromLatin1(c.editor), c.fromChangePassword);
        EXPECT_EQ(child<QLineEdit>(screen, "Text1")->isEnabled(), c.nameOn) << c.editor << c.row;
        EXPECT_EQ(child<QComboBox>(screen, "Combo1")->isEnabled(), c.levelOn) << c.editor << c.row;
        // Shown in capitals; the password never.
        EXPECT_EQ(child<QLineEdit>(screen, "Text1")->text(), QString::fromLatin1(c.row));
        EXPECT_TRUE(child<QLineEdit>(screen, "Text2")->text().isEmpty());
        EXPECT_EQ(child<QLineEdit>(screen, "Text2")->echoMode(), QLineEdit::Password);
    }
}

TEST(UserEdit, EmptyPasswordIsRefusedAndCancelStops)
{
    UserEdit screen(UserEntry{QStringLiteral("CLERK"), QString(), QStringLiteral("MEMBER")},
        QStringLiteral("ADMIN"), false);
    screen.show();
    typeInto(screen, "Text2", QStringLiteral("   "));
    click(screen, "Command1");
    EXPECT_TRUE(screen.isVisible());
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_EQ(scriptedPrompts().shown().first().title, QStringLiteral(" Missing user password"));
    click(screen, "Command2");
    EXPECT_TRUE(session().StopFlag);
}

TEST(UserMgr, OlderListIsShownWithoutPasswordsAndWrittenHashed)
{
    TestInstallation installation; // its list is in the older, scrambled form
    session().ProgramFolder = installation.programFolder();
    session().UserLevel = QStringLiteral("ADMIN");
    const QByteArray before = installation.usersFileBytes();
    scriptedPrompts().onDialog(QStringLiteral("UserMgr"), [](QDialog& dialog) {
        QTreeWidget* list = child<QTreeWidget>(dialog, "ListView1");
        EXPECT_EQ(list->topLevelItem(0)->text(0), QStringLiteral("ADMIN"));
        EXPECT_EQ(list->topLevelItem(0)->text(1), QStringLiteral("(set)"));
        click(dialog, "Command3");
        return dialog.result();
    });
    showUserManager(nullptr);
    QFile file(installation.path(QStringLiteral("Users.Set")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray after = file.readAll();
    EXPECT_NE(after, before);
    EXPECT_TRUE(after.startsWith(UserList::formatLine()));
    const auto read = UserList::read(file.fileName());
    ASSERT_TRUE(read.has_value());
    EXPECT_TRUE(read->entries.at(0).password.isEmpty());
    EXPECT_TRUE(read->entries.at(0).accepts(QStringLiteral("planning")));
}

TEST(UserMgr, DamagedLevelIsToldAndWrittenAsUser)
{
    TestInstallation installation;
    session().ProgramFolder = installation.programFolder();
    // A hand-edited list: the clerk's level in mixed case.
    ASSERT_TRUE(replaceFile(installation.path(QStringLiteral("Users.Set")),
        UserList::formatLine() + "\n1\nCLERK\t\tAdmin\n"));
    scriptedPrompts().onDialog(QStringLiteral("UserMgr"), [](QDialog& dialog) {
        QTreeWidget* list = child<QTreeWidget>(dialog, "ListView1");
        EXPECT_EQ(list->topLevelItem(0)->text(1), QStringLiteral("(none: cannot log on)"));
        EXPECT_EQ(list->topLevelItem(0)->text(2), QStringLiteral("USER"));
        click(dialog, "Command3");
        return dialog.result();
    });
    showUserManager(nullptr);
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    const QString told = scriptedPrompts().shown().first().text;
    EXPECT_TRUE(told.contains(QLatin1String("\"Admin\""))) << told.toStdString();
    EXPECT_TRUE(told.contains(QLatin1String("cannot log on"))) << told.toStdString();
    EXPECT_EQ(UserList::read(installation.path(QStringLiteral("Users.Set")))->entries.at(0).level,
        QStringLiteral("USER"));
}

TEST(UserMgr, EditWritesTheRowOnlyOnOk)
{
    UsersFixture fixture;
    session().UserLevel = QStringLiteral("ADMIN");
    UserMgr screen(fixture.installation.programFolder());
    for (const bool ok : {false, true}) {
        scriptedPrompts().onDialog(QStringLiteral("UserEdit"), [ok](QDialog& dialog) {
            typeInto(dialog, "Text1", QStringLiteral("RENAMED"));
            child<QComboBox>(dialog, "Combo1")->setCurrentText(QStringLiteral("USER"));
            click(dialog, ok ? "Command1" : "Command2");
            return dialog.result();
        });
        selectRow(screen, 1);
        click(screen, "Command5");
        EXPECT_EQ(screen.rows().at(1).name, ok ? QStringLiteral("RENAMED") : QStringLiteral("MEMBER1"));
    }
    EXPECT_EQ(screen.rows().at(1).level, QStringLiteral("USER"));
    click(screen, "Command3");
    EXPECT_EQ(fixture.onDisk().at(1).name, QStringLiteral("RENAMED"));
}

TEST(ChangePassword, WritesTheLoggedOnUsersNewPassword)
{
    UsersFixture fixture;
    ValidateUser(QStringLiteral("member2"), QStringLiteral("pw2"));
    ASSERT_TRUE(session().LoggedIn);
    bool levelOff = false;
    scriptedPrompts().onDialog(QStringLiteral("UserEdit"), [&](QDialog& dialog) {
        levelOff = !child<QComboBox>(dialog, "Combo1")->isEnabled();
        typeInto(dialog, "Text2", QStringLiteral("fresh"));
        click(dialog, "Command1");
        return dialog.result();
    });
    showChangePassword(nullptr);
    EXPECT_TRUE(levelOff);
    const QList<UserEntry> written = fixture.onDisk();
    ASSERT_EQ(written.size(), 3);
    EXPECT_TRUE(written.at(2).accepts(QStringLiteral("Fresh")));
    EXPECT_FALSE(written.at(2).accepts(QStringLiteral("PW2")));
    EXPECT_EQ(written.at(2).level, QStringLiteral("USER"));
    EXPECT_TRUE(written.at(0).accepts(QStringLiteral("planning")));

    // An empty box keeps the password the user has.
    ValidateUser(QStringLiteral("member2"), QStringLiteral("fresh"));
    ASSERT_TRUE(session().LoggedIn);
    scriptedPrompts().onDialog(QStringLiteral("UserEdit"), [&](QDialog& dialog) {
        click(dialog, "Command1");
        return dialog.result();
    });
    showChangePassword(nullptr);
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());
    EXPECT_TRUE(fixture.onDisk().at(2).accepts(QStringLiteral("FRESH")));
}

TEST(UserMgr, MissingListIsToldAndNothingIsWritten)
{
    UsersFixture fixture;
    QFile::remove(fixture.file);
    showUserManager(nullptr);
    EXPECT_TRUE(scriptedPrompts().dialogsRun().isEmpty());
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_TRUE(scriptedPrompts().shown().first().text.contains(QLatin1String("cannot be read")));
    EXPECT_FALSE(QFile::exists(fixture.file));
}

TEST(UserMgr, ListThatCannotBeReplacedKeepsTheScreenOpen)
{
    UsersFixture fixture;
    UserMgr screen(fixture.installation.programFolder());
    screen.show();
    selectRow(screen, 2);
    click(screen, "Command2");
    // Something the list cannot be renamed over: a folder of that name.
    QFile::remove(fixture.file);
    QDir().mkpath(fixture.file + QStringLiteral("/held"));
    click(screen, "Command3");
    EXPECT_TRUE(screen.isVisible());
    EXPECT_NE(screen.result(), QDialog::Accepted);
    EXPECT_TRUE(scriptedPrompts().shownTexts().last().contains(QLatin1String("was not written")));
    EXPECT_EQ(screen.rows().size(), 2);
}

TEST(hasVARDO, ContinueSharesAndCancelDoesNot)
{
    for (const bool go : {true, false}) {
        scriptedPrompts().onDialog(QStringLiteral("hasVARDO"), [go](QDialog& dialog) {
            EXPECT_EQ(dialog.windowTitle(), QStringLiteral("  Vardo Installation Detected"));
            EXPECT_EQ(child<QLabel>(dialog, "Label1")->text(), hasVARDO::questionText());
            click(dialog, go ? "iContinue" : "iCancel");
            return dialog.result();
        });
        EXPECT_EQ(askShareParcelStore(nullptr), go);
    }
}

TEST(UserMgr, UsersPastTwentyAndDamagedLinesAreToldOrKept)
{
    UsersFixture fixture(listWith(22));
    session().UserLevel = QStringLiteral("ADMIN");
    // The list on screen stops at 20; Done writes the two beyond it back.
    scriptedPrompts().onDialog(QStringLiteral("UserMgr"), [](QDialog& dialog) {
        selectRow(static_cast<UserMgr&>(dialog), 5);
        click(dialog, "Command2");
        click(dialog, "Command3");
        return dialog.result();
    });
    showUserManager(nullptr);
    const QList<UserEntry> written = fixture.onDisk();
    ASSERT_EQ(written.size(), 22);
    EXPECT_EQ(written.last().name, QStringLiteral("MEMBER22"));
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());

    // A line the reader cannot split into three is named before the list opens.
    QFile file(fixture.file);
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("a,b,c,d\n");
    file.close();
    showUserManager(nullptr);
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_TRUE(scriptedPrompts().shown().first().text.contains(QLatin1String("damaged")));
}
