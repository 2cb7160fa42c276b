#include "admin/UserList.h"

#include "admin/PasswordHash.h"
#include "admin/ScrambleText.h"
#include "common/TextFiles.h"
#include "support/Text.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pvardo::admin;
using pvardo::test::q;

namespace {

UserEntry user(const char* name, const char* password, const char* level)
{
    UserEntry entry;
    entry.name = q(name);
    entry.password = q(password);
    entry.level = q(level);
    return entry;
}

// A user file in the older form: the count, then scrambled fields joined by commas.
QByteArray legacyFile(const QString& countLine, const QList<QStringList>& rows)
{
    QByteArray bytes = countLine.toLatin1() + "\r\n";
    for (const QStringList& row : rows) {
        QStringList scrambled;
        for (const QString& field : row) {
            scrambled << ScrambleText(field);
        }
        bytes += scrambled.join(QLatin1Char(',')).toLatin1() + "\r\n";
    }
    return bytes;
}

struct ReadBack
{
    std::optional<UserList> list;
    QString error;
    QStringList problems;
    QStringList notes;
};

ReadBack readBytes(const QByteArray& bytes)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(q("Users.Set"));
    EXPECT_TRUE(pvardo::replaceFile(path, bytes));
    ReadBack back;
    back.list = UserList::read(path, &back.error, &back.problems, &back.notes);
    return back;
}

} // namespace

TEST(ScrambleText, SampleAndRoundTrip)
{
    // With the key starting at 91: 97 XOR 91 is 58, 98 XOR 92 is 62.
    EXPECT_EQ(ScrambleText(q("ab")), q(":>"));
    EXPECT_EQ(ScrambleText(q(":>")), q("ab"));
}

TEST(PasswordHash, SaltedArgon2idThatOnlyItsPasswordMatches)
{
    const QString first = hashPassword(q("PLANNING"));
    const QString second = hashPassword(q("PLANNING"));
    EXPECT_TRUE(first.startsWith(q("$argon2id$"))) << first.toStdString();
    EXPECT_NE(first, second); // salted
    EXPECT_TRUE(passwordMatches(first, q("PLANNING")));
    EXPECT_TRUE(passwordMatches(second, q("PLANNING")));
    EXPECT_FALSE(passwordMatches(first, q("PLANNINg")));
    EXPECT_FALSE(passwordMatches(first, QString()));
    EXPECT_FALSE(passwordMatches(QString(), QString()));
    EXPECT_FALSE(passwordMatches(q("PLANNING"), q("PLANNING")));
    EXPECT_FALSE(passwordMatches(first.left(first.size() - 3), q("PLANNING")));
}

TEST(UserList, KeepsAnySpellingAndNoPasswordInTheFile)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(q("Users.Set"));
    UserList users;
    // Names and passwords the scrambled form could not keep, and separators
    // of the file itself.
    users.entries = {user("ADMIN", "PLANNING", "ADMIN"), user("SMITH", "x", "MEMBER"),
        user("Clerk", "w,rd", "USER"), user("O'Brien, Jr.\tII", "caf\u00e9 \u20ac", "MEMBER"),
        user("Zo\u00eb \u5c71\u7530", "%41\n", "SUPERVISOR")};
    QString error;
    ASSERT_TRUE(users.write(path, &error)) << error.toStdString();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.startsWith("#pvardo-users 2\n5\nADMIN\t$argon2id$")) << bytes.constData();
    EXPECT_FALSE(bytes.contains("PLANNING"));
    EXPECT_EQ(bytes.count('\n'), 7);

    QStringList problems;
    QStringList notes;
    const auto read = UserList::read(path, &error, &problems, &notes);
    ASSERT_TRUE(read.has_value()) << error.toStdString();
    EXPECT_TRUE(problems.isEmpty()) << problems.join(q("; ")).toStdString();
    EXPECT_TRUE(notes.isEmpty()) << notes.join(q("; ")).toStdString();
    ASSERT_EQ(read->entries.size(), users.entries.size());
    for (qsizetype i = 0; i < users.entries.size(); ++i) {
        const UserEntry& stored = read->entries.at(i);
        EXPECT_EQ(stored.name, users.entries.at(i).name);
        EXPECT_EQ(stored.level, users.entries.at(i).level);
        EXPECT_TRUE(stored.password.isEmpty());
        // Passwords are not case-sensitive.
        EXPECT_TRUE(stored.accepts(users.entries.at(i).password.toLower())) << i;
        EXPECT_FALSE(stored.accepts(users.entries.at(i).password + q("x"))) << i;
    }
    EXPECT_EQ(read->indexOf(q("clerk")), 2);
    EXPECT_EQ(read->indexOf(q("ZO\u00cb \u5c71\u7530")), 4);
    EXPECT_EQ(read->indexOf(q("nobody")), -1);

    // Written again without new passwords, the hashes are kept as they are.
    ASSERT_TRUE(read->write(path));
    EXPECT_EQ(UserList::read(path)->entries, read->entries);
}

TEST(UserList, OlderFileIsReadAsItWasAndConvertedWhenWritten)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(q("Users.Set"));
    ASSERT_TRUE(pvardo::replaceFile(path,
        legacyFile(q("2"), {{q("ADMIN"), q("PLANNING"), q("ADMIN")}, {q("CLERK"), q("Hudson"), q("MEMBER")}})));
    auto read = UserList::read(path);
    ASSERT_TRUE(read.has_value());
    ASSERT_EQ(read->entries.size(), 2);
    EXPECT_EQ(read->entries.at(1).name, q("CLERK"));
    EXPECT_EQ(read->entries.at(1).level, q("MEMBER"));
    EXPECT_TRUE(read->entries.at(1).accepts(q("HUDSON")));

    ASSERT_TRUE(read->write(path));
    const auto converted = UserList::read(path);
    ASSERT_TRUE(converted.has_value());
    ASSERT_EQ(converted->entries.size(), 2);
    EXPECT_TRUE(converted->entries.at(1).password.isEmpty());
    EXPECT_TRUE(converted->entries.at(1).accepts(q("hudson")));
    EXPECT_TRUE(converted->entries.at(0).accepts(q("Planning")));
    EXPECT_FALSE(pvardo::readTextLines(path)->join(QLatin1Char('\n')).contains(ScrambleText(q("PLANNING"))));
}

TEST(UserList, DamagedEntriesNeverGiveMoreThanTheyShould)
{
    const QStringList admin = {q("ADMIN"), q("PLANNING"), q("ADMIN")};
    const struct
    {
        const char* what;
        QByteArray bytes;
        int users;
        int problems;
        int notes;
    } cases[] = {
        // ",," is a line with a blank name, a blank password and a blank level.
        {"blank line of commas", legacyFile(q("2"), {admin}) + ",,\n", 1, 1, 1},
        {"blank name", legacyFile(q("2"), {admin, {q("  "), q("pw"), q("MEMBER")}}), 1, 1, 1},
        {"empty password", legacyFile(q("2"), {admin, {q("NOPW"), QString(), q("MEMBER")}}), 2, 0, 1},
        {"truncated level", legacyFile(q("2"), {admin, {q("CLERK"), q("pw"), q("ME")}}), 2, 0, 1},
        {"mixed-case level", legacyFile(q("2"), {admin, {q("BOSS"), q("pw"), q("Admin")}}), 2, 0, 1},
        {"blanks around level", legacyFile(q("2"), {admin, {q("BOSS"), q("pw"), q("ADMIN ")}}), 2, 0, 1},
        // The count bounds the list: lines past it are left out and said.
        {"more than counted", legacyFile(q("1"), {admin, {q("EXTRA"), q("pw"), q("ADMIN")}}), 1, 1, 0},
        {"fewer than counted", legacyFile(q("3"), {admin}), 1, 0, 1},
        {"count of none", legacyFile(q("0"), {admin}), 0, 1, 0},
        {"four fields", legacyFile(q("2"), {admin}) + "a,b,c,d\n", 1, 1, 1},
        {"new form, damaged hash",
            "#pvardo-users 2\n2\nADMIN\t$argon2id$v=19$broken\tADMIN\nX\t\tMEMBER\n", 2, 0, 2},
    };
    for (const auto& c : cases) {
        const ReadBack back = readBytes(c.bytes);
        ASSERT_TRUE(back.list.has_value()) << c.what << ": " << back.error.toStdString();
        EXPECT_EQ(back.list->entries.size(), c.users) << c.what;
        EXPECT_EQ(back.problems.size(), c.problems) << c.what << ": " << back.problems.join(q("; ")).toStdString();
        EXPECT_EQ(back.notes.size(), c.notes) << c.what << ": " << back.notes.join(q("; ")).toStdString();
        for (const UserEntry& entry : back.list->entries) {
            EXPECT_FALSE(entry.name.trimmed().isEmpty()) << c.what;
            EXPECT_TRUE(UserLevels::isKnown(entry.level)) << c.what;
            // Nobody logs on with an empty password.
            EXPECT_FALSE(entry.accepts(QString())) << c.what;
            if (entry.name != q("ADMIN")) {
                EXPECT_NE(entry.level, q("ADMIN")) << c.what;
            }
        }
    }
}

TEST(UserList, CountThatIsNotANumberIsRefused)
{
    for (const QByteArray& bytes : {QByteArray(), QByteArray("\nab,cd,ef\n"), QByteArray("one\nab,cd,ef\n"),
             QByteArray("-1\n"), QByteArray("#pvardo-users 2\n"), QByteArray("#pvardo-users 2\nx\n"),
             QByteArray("\xff\xfe\x00\x01", 4)}) {
        const ReadBack back = readBytes(bytes);
        EXPECT_FALSE(back.list.has_value()) << bytes.toHex().constData();
        EXPECT_TRUE(back.error.contains(q("number of users"))) << back.error.toStdString();
    }
    EXPECT_FALSE(UserList::read(q("/nonexistent/Users.Set")).has_value());
}

TEST(UserList, RefusesWhatCouldNotBeReadBackAndKeepsTheOldFile)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(q("Users.Set"));
    UserList good;
    good.entries = {user("ADMIN", "PLANNING", "ADMIN")};
    ASSERT_TRUE(good.write(path));
    const QByteArray before = pvardo::readTextLines(path)->join(QLatin1Char('\n')).toUtf8();

    UserList blank = good;
    blank.entries.append(user("  ", "pw", "USER"));
    UserList tooMany;
    for (int i = 0; i <= UserList::capacity; ++i) {
        UserEntry entry = user("U", "", "USER");
        entry.name += QString::number(i);
        tooMany.entries.append(entry);
    }
    for (const UserList* bad : {&blank, &tooMany}) {
        QString error;
        EXPECT_FALSE(bad->write(path, &error));
        EXPECT_FALSE(error.isEmpty());
        EXPECT_EQ(pvardo::readTextLines(path)->join(QLatin1Char('\n')).toUtf8(), before);
    }
    // A level the program does not know is written as USER.
    UserList odd = good;
    odd.entries.append(user("ODD", "pw", "Admin"));
    ASSERT_TRUE(odd.write(path));
    EXPECT_EQ(UserList::read(path)->entries.at(1).level, q("USER"));
}
