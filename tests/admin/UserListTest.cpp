#include "admin/UserList.h"

#include "admin/ScrambleText.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pvardo::admin;

TEST(ScrambleText, SampleAndRoundTrip)
{
    // With the key starting at 91: 97 XOR 91 is 58, 98 XOR 92 is 62.
    EXPECT_EQ(ScrambleText(QStringLiteral("ab")), QStringLiteral(":>"));
    EXPECT_EQ(ScrambleText(QStringLiteral(":>")), QStringLiteral("ab"));
    for (const QString& text : {QStringLiteral("ADMIN"), QStringLiteral("Planning Board 2012"), QString(),
             QStringLiteral("caf\u00e9")}) {
        const QString scrambled = ScrambleText(text);
        EXPECT_EQ(ScrambleText(scrambled), text);
        for (const QChar c : scrambled) {
            EXPECT_LE(c.unicode(), 0xFF);
        }
    }
}

TEST(UserList, WritesAndReadsBack)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Users.Set"));
    UserList users;
    users.entries = {{QStringLiteral("ADMIN"), QStringLiteral("PLANNING"), QStringLiteral("ADMIN")},
        {QStringLiteral("CLERK"), QStringLiteral("Hudson"), QStringLiteral("MEMBER")},
        {QStringLiteral("VIEWER"), QStringLiteral("look"), QStringLiteral("USER")}};
    QString error;
    ASSERT_TRUE(users.write(path, &error)) << error.toStdString();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.startsWith("3\n"));
    EXPECT_FALSE(bytes.contains("ADMIN"));
    EXPECT_EQ(bytes.count('\n'), 4);

    const auto read = UserList::read(path, &error);
    ASSERT_TRUE(read.has_value()) << error.toStdString();
    EXPECT_EQ(read->entries, users.entries);
    EXPECT_EQ(read->indexOf(QStringLiteral("clerk")), 1);
    EXPECT_EQ(read->indexOf(QStringLiteral("nobody")), -1);
}

TEST(UserList, ReadsCrlfAndSkipsBrokenLines)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Users.Set"));
    const QString admin = ScrambleText(QStringLiteral("ADMIN"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("2\r\n"
        + (admin + QLatin1Char(',') + ScrambleText(QStringLiteral("PW")) + QLatin1Char(',') + admin)
              .toLatin1()
        + "\r\nnot,a line with four,fields,here\r\n");
    file.close();
    QStringList problems;
    const auto read = UserList::read(path, nullptr, &problems);
    ASSERT_TRUE(read.has_value());
    ASSERT_EQ(read->entries.size(), 1);
    EXPECT_EQ(read->entries.first().password, QStringLiteral("PW"));
    EXPECT_EQ(problems.size(), 1);
}

TEST(UserList, RefusesWhatCouldNotBeReadBack)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Users.Set"));
    UserList good;
    good.entries = {{QStringLiteral("ADMIN"), QStringLiteral("PLANNING"), QStringLiteral("ADMIN")}};
    ASSERT_TRUE(good.write(path));

    const struct
    {
        const char* name;
        QString password;
    } cases[] = {
        {"w starts with the letter that scrambles to a comma", QStringLiteral("x")},
        {"BOB", QStringLiteral("\u20ac uro")},
    };
    for (const auto& c : cases) {
        UserList bad = good;
        bad.entries.append({QString::fromUtf8(c.name), c.password, QStringLiteral("USER")});
        QString error;
        EXPECT_FALSE(bad.write(path, &error)) << c.name;
        EXPECT_FALSE(error.isEmpty());
        // The file on disk is the old one, whole.
        const auto kept = UserList::read(path);
        ASSERT_TRUE(kept.has_value());
        EXPECT_EQ(kept->entries, good.entries);
    }
    EXPECT_FALSE(UserList::read(dir.filePath(QStringLiteral("missing.Set"))).has_value());
}
