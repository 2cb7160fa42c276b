#include "common/TextFiles.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace pvardo;

TEST(TextFiles, ReadsCrlfAndLfAndFallsBackToWindows1252)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("list.txt"));
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("Caf\xe9\r\n\x93quoted\x94\nlast");
    }
    const auto lines = readTextLines(path);
    ASSERT_TRUE(lines.has_value());
    EXPECT_EQ(*lines, QStringList({QStringLiteral("Caf\u00e9"), QStringLiteral("\u201cquoted\u201d"), QStringLiteral("last")}));
    EXPECT_FALSE(readTextLines(dir.filePath(QStringLiteral("missing.txt"))).has_value());
}

TEST(TextFiles, ReplaceKeepsTheOldFileWhenTheFolderIsGone)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("a.txt"));
    ASSERT_TRUE(replaceTextLines(path, {QStringLiteral("one"), QStringLiteral("two")}));
    EXPECT_EQ(*readTextLines(path), QStringList({QStringLiteral("one"), QStringLiteral("two")}));
    QString error;
    EXPECT_FALSE(replaceTextLines(dir.filePath(QStringLiteral("no/such/folder/b.txt")), {QStringLiteral("x")}, &error));
    EXPECT_FALSE(error.isEmpty());
}

TEST(TextFiles, JoinsOfficePaths)
{
    EXPECT_EQ(joinPath(QStringLiteral("/srv/app/"), QStringLiteral("\\wrk\\sbl.db")), QStringLiteral("/srv/app/wrk/sbl.db"));
    EXPECT_EQ(joinPath(QStringLiteral("/srv/app"), QStringLiteral("PVardo.ini")), QStringLiteral("/srv/app/PVardo.ini"));
}
