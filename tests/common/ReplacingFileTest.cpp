#include "common/ReplacingFile.h"
#include "common/TextFiles.h"
#include "support/FullDisk.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace pvardo;
using pvardo::test::onFullDisk;

namespace {

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

int modeOf(const QString& path)
{
    struct stat info = {};
    ::stat(QFile::encodeName(path).constData(), &info);
    return static_cast<int>(info.st_mode & 0777);
}

} // namespace

TEST(ReplacingFile, KeepsTheOldFileWhenTheDiskFillsUp)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Users.Set"));
    ASSERT_TRUE(replaceFile(path, "1\nthe old list\n"));

    // Smaller than any write buffer: the whole file goes out in one last
    // write, which is the one a commit can miss.
    const QByteArray small(3000, 'x');
    EXPECT_FALSE(onFullDisk(1000, [&] { return replaceFile(path, small); }));
    EXPECT_EQ(contents(path), QByteArray("1\nthe old list\n"));

    // Larger than the buffers, written in pieces.
    const QByteArray large(300000, 'y');
    EXPECT_FALSE(onFullDisk(100000, [&] {
        ReplacingFile file(path);
        if (!file.open(QIODevice::WriteOnly)) {
            return true; // the test must see a failure at commit, not here
        }
        for (qsizetype at = 0; at < large.size(); at += 7000) {
            file.write(large.mid(at, 7000));
        }
        return file.commit();
    }));
    EXPECT_EQ(contents(path), QByteArray("1\nthe old list\n"));

    // Exactly at the limit fits; and nothing was left behind by the failures.
    EXPECT_TRUE(onFullDisk(1000, [&] { return replaceFile(path, QByteArray(1000, 'z')); }));
    EXPECT_EQ(contents(path), QByteArray(1000, 'z'));
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("Users.Set")});
}

TEST(ReplacingFile, SaysWhyAndLeavesNothingWhenTheFolderIsGone)
{
    QTemporaryDir dir;
    ReplacingFile file(dir.filePath(QStringLiteral("gone/out.pdf")));
    EXPECT_FALSE(file.open(QIODevice::WriteOnly));
    EXPECT_TRUE(file.errorText().startsWith(QStringLiteral("cannot write "))) << file.errorText().toStdString();
    EXPECT_FALSE(file.commit());

    // Dropped without a commit: the old file stays, no temporary remains.
    const QString path = dir.filePath(QStringLiteral("kept.txt"));
    ASSERT_TRUE(replaceFile(path, "kept"));
    {
        ReplacingFile dropped(path);
        ASSERT_TRUE(dropped.open(QIODevice::WriteOnly));
        dropped.write("new");
    }
    EXPECT_EQ(contents(path), QByteArray("kept"));
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("kept.txt")});
}

TEST(ReplacingFile, NewFilesFollowTheUmaskAndReplacedFilesKeepTheirModes)
{
    QTemporaryDir dir;
    const mode_t saved = ::umask(002);
    const QString fresh = dir.filePath(QStringLiteral("fresh.txt"));
    const bool made = replaceFile(fresh, "a");
    ::umask(saved);
    ASSERT_TRUE(made);
    // Group members of a shared folder can write it, others read it.
    EXPECT_EQ(modeOf(fresh), 0664);

    ::chmod(QFile::encodeName(fresh).constData(), 0640);
    ASSERT_TRUE(replaceFile(fresh, "b"));
    EXPECT_EQ(modeOf(fresh), 0640);
    EXPECT_EQ(contents(fresh), QByteArray("b"));
}
