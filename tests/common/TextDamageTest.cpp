#include "common/TextDamage.h"

#include "common/BoardMembers.h"
#include "support/ScriptedPrompts.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::test;

TEST(TextDamage, OnlyBytesNoTextFileHoldsCountAsDamage)
{
    EXPECT_FALSE(looksDamagedText(QByteArray()));
    EXPECT_FALSE(looksDamagedText("Ann Ode\tBoard\r\nBo Lee\f\n"));
    // Windows-1252 and UTF-8 letters, and the end-of-file mark old editors add.
    EXPECT_FALSE(looksDamagedText("Caf\xe9 \x93quoted\x94\nZo\xc3\xab\n\x1a"));
    EXPECT_TRUE(looksDamagedText("Ann\x1a" "Ode\n"));
    EXPECT_TRUE(looksDamagedText(QByteArray(4096, '\0')));
    EXPECT_TRUE(looksDamagedText("Ann Ode\n\x07\x02"));
}

TEST(TextDamage, ADamagedListIsSaidOnceAndGivesNoNames)
{
    QTemporaryDir dir;
    const QString members = BoardMembers::fileOf(dir.path());
    {
        QFile file(members);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("Ann Ode\n");
        file.write(QByteArray(4096, '\0'));
    }
    EXPECT_TRUE(BoardMembers::read(dir.path()).isEmpty());
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    const QString told = scriptedPrompts().shown().constFirst().text;
    EXPECT_TRUE(told.startsWith(QStringLiteral("The file ") + members + QStringLiteral(" is damaged (error 3343)")))
        << told.toStdString();
    EXPECT_TRUE(told.contains(QStringLiteral("No board member is offered meanwhile.")));
    EXPECT_TRUE(told.contains(QStringLiteral("restore the file from the last backup")));
    // Each screen that opens reads the list again; the user is told once.
    EXPECT_TRUE(BoardMembers::read(dir.path()).isEmpty());
    EXPECT_EQ(scriptedPrompts().shown().size(), 1);

    ASSERT_TRUE(BoardMembers::write(dir.path(), {QStringLiteral("Bo Lee")}));
    EXPECT_EQ(BoardMembers::read(dir.path()), QStringList{QStringLiteral("Bo Lee")});
}
