#include "common/Files.h"

#include "ScopedEnvironment.h"
#include "common/Session.h"
#include "support/ScriptedPrompts.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

using namespace pvardo;
using pvardo::test::ScopedEnvironment;
using pvardo::test::scriptedPrompts;

namespace {

QString writeFile(const QTemporaryDir& dir, const QString& name, const QByteArray& bytes = "x")
{
    const QString path = dir.filePath(name);
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(bytes);
    return path;
}

} // namespace

TEST(FileExists, PresentMissingAndEmpty)
{
    QTemporaryDir dir;
    const QString file = writeFile(dir, QStringLiteral("a.txt"));
    EXPECT_TRUE(FileExists(file));
    EXPECT_FALSE(FileExists(dir.filePath(QStringLiteral("missing.txt"))));
    EXPECT_FALSE(FileExists(dir.filePath(QStringLiteral("no/such/folder/file.txt"))));
    // A file used as a folder: the path is not found.
    EXPECT_FALSE(FileExists(file + QStringLiteral("/inside.txt")));
    EXPECT_FALSE(FileExists(QString()));
    EXPECT_FALSE(FileExists(QStringLiteral("   ")));
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());
    EXPECT_FALSE(session().StopFlag);
}

TEST(FileExists, FileHeldByAnotherWorkstationCountsAsThere)
{
    QTemporaryDir dir;
    const QString file = writeFile(dir, QStringLiteral("pbproj.db"));
    const int fd = ::open(QFile::encodeName(file).constData(), O_RDWR);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::flock(fd, LOCK_EX | LOCK_NB), 0);
    struct flock range
    {
    };
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    ASSERT_EQ(::fcntl(fd, F_SETLK, &range), 0);
    EXPECT_TRUE(FileExists(file));
    ::close(fd);
}

TEST(FileExists, UnreadableFileCountsAsThere)
{
    if (::geteuid() == 0) {
        GTEST_SKIP() << "root reads every file";
    }
    QTemporaryDir dir;
    const QString file = writeFile(dir, QStringLiteral("closed.txt"));
    QFile::setPermissions(file, QFileDevice::Permissions());
    EXPECT_TRUE(FileExists(file));
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());
}

TEST(FileExists, NameTooLongIsNotAValidName)
{
    const QString path = QStringLiteral("/tmp/") + QString(5000, QLatin1Char('n'));
    EXPECT_FALSE(FileExists(path));
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    const Prompt& prompt = scriptedPrompts().shown().constFirst();
    EXPECT_EQ(prompt.title, QStringLiteral("Disk Error"));
    EXPECT_EQ(prompt.text, QStringLiteral("The name ") + path + QStringLiteral(" is not a valid name."));
    EXPECT_EQ(prompt.buttons, PromptButtons::Ok);
    EXPECT_EQ(prompt.icon, PromptIcon::Exclamation);
    EXPECT_TRUE(session().StopFlag);
}

TEST(FileExists, ErrorTable)
{
    const struct
    {
        int systemError;
        bool exists;
        const char* text; // nullptr: no message
        bool stop;
    } cases[] = {
        {EACCES, true, nullptr, false}, // 75: held or closed to us
        {ETXTBSY, true, nullptr, false}, // 70
        {ENOENT, false, nullptr, false}, // 53
        {ENOTDIR, false, nullptr, false}, // 76
        {ENXIO, false, nullptr, false}, // 68
        {EIO, false, "Unexpected error: 57 Device I/O error", true},
        {EMFILE, false, "Unexpected error: 67 Too many files", true},
    };
    for (const auto& c : cases) {
        scriptedPrompts().clear();
        session().StopFlag = false;
        const bool exists = detail::FileExistsWith(
            QStringLiteral("/x/y"), [&](const QByteArray&) { return c.systemError; });
        EXPECT_EQ(exists, c.exists) << c.systemError;
        EXPECT_EQ(session().StopFlag, c.stop) << c.systemError;
        if (c.text) {
            ASSERT_EQ(scriptedPrompts().shown().size(), 1) << c.systemError;
            EXPECT_EQ(scriptedPrompts().shown().constFirst().text, QString::fromUtf8(c.text));
            EXPECT_EQ(scriptedPrompts().shown().constFirst().title, QStringLiteral("Disk Error"));
        } else {
            EXPECT_TRUE(scriptedPrompts().shown().isEmpty()) << c.systemError;
        }
    }
}

TEST(FileExists, DiskNotReadyRetriesOnOk)
{
    int calls = 0;
    const auto mediumComesBack = [&](const QByteArray&) { return ++calls < 3 ? ENOMEDIUM : 0; };
    scriptedPrompts().answer(QStringLiteral("Make sure the disk"), PromptAnswer::Ok);
    scriptedPrompts().answer(QStringLiteral("Make sure the disk"), PromptAnswer::Ok);
    EXPECT_TRUE(detail::FileExistsWith(QStringLiteral("/media/stick/a.db"), mediumComesBack));
    EXPECT_EQ(calls, 3);
    ASSERT_EQ(scriptedPrompts().shown().size(), 2);
    EXPECT_EQ(
        scriptedPrompts().shown().constFirst().text, QStringLiteral("Make sure the disk is in the drive."));
    EXPECT_EQ(scriptedPrompts().shown().constFirst().buttons, PromptButtons::OkCancel);
    EXPECT_FALSE(session().StopFlag);
}

TEST(FileExists, DiskNotReadyCancelledStops)
{
    scriptedPrompts().answer(QStringLiteral("Make sure the disk"), PromptAnswer::Cancel);
    EXPECT_FALSE(detail::FileExistsWith(
        QStringLiteral("/media/stick/a.db"), [](const QByteArray&) { return ENOMEDIUM; }));
    EXPECT_TRUE(session().StopFlag);
}

TEST(KillIfPresent, RemovesTheFileAndAsksForASecondEvenWhenMissing)
{
    QTemporaryDir dir;
    const QString file = writeFile(dir, QStringLiteral("session.log"));
    const double before = secondsAskedToWait();
    KillIfPresent(file);
    EXPECT_FALSE(QFile::exists(file));
    KillIfPresent(file);
    EXPECT_DOUBLE_EQ(secondsAskedToWait() - before, 2.0);
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());
}

TEST(KillIfPresent, OnAMissingFileStillTakesASecond)
{
    const ScopedEnvironment noWait = ScopedEnvironment::unset("PVARDO_NO_WAIT");
    QTemporaryDir dir;
    QElapsedTimer clock;
    clock.start();
    KillIfPresent(dir.filePath(QStringLiteral("missing.log")));
    EXPECT_GE(clock.elapsed(), 900);
}

TEST(WaitSeconds, LetsEventsRunAndCanBeSwitchedOff)
{
    {
        const ScopedEnvironment noWait = ScopedEnvironment::unset("PVARDO_NO_WAIT");
        EXPECT_TRUE(waitsEnabled());
        bool fired = false;
        QTimer::singleShot(0, [&] { fired = true; });
        WaitSeconds(0.1);
        EXPECT_TRUE(fired);

        setWaitsEnabled(false);
        EXPECT_FALSE(waitsEnabled());
        QElapsedTimer clock;
        clock.start();
        WaitSeconds(30);
        EXPECT_LT(clock.elapsed(), 5000);
        setWaitsEnabled(true);
    }
    // The test programs run with PVARDO_NO_WAIT set.
    EXPECT_FALSE(waitsEnabled());
}

TEST(RenameQuietly, RenamesAndIgnoresFailures)
{
    QTemporaryDir dir;
    const QString from = writeFile(dir, QStringLiteral("Updater1"), "new");
    const QString to = dir.filePath(QStringLiteral("Updater"));
    RenameQuietly(from, to);
    EXPECT_FALSE(QFile::exists(from));
    EXPECT_TRUE(QFile::exists(to));
    // A target already there is left alone, and so is the source.
    const QString again = writeFile(dir, QStringLiteral("Updater1"), "newer");
    RenameQuietly(again, to);
    QFile kept(to);
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), QByteArray("new"));
    EXPECT_TRUE(QFile::exists(again));
    RenameQuietly(dir.filePath(QStringLiteral("missing")), dir.filePath(QStringLiteral("other")));
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("other"))));
}

TEST(DriveKindText, KindsFromTheMountTable)
{
    const QString table = QStringLiteral("/dev/sda1 / ext4 rw,relatime 0 0\n"
                                         "proc /proc proc rw 0 0\n"
                                         "tmpfs /run tmpfs rw 0 0\n"
                                         "server:/export /srv/planning nfs4 rw 0 0\n"
                                         "//office/share /mnt/office\\040share cifs rw 0 0\n"
                                         "/dev/sr0 /media/cdrom iso9660 ro 0 0\n"
                                         "/dev/sdb1 /media/clerk/STICK vfat rw 0 0\n"
                                         "/dev/sda2 /home ext4 rw 0 0\n");
    const auto removable = [](const QString& device) { return device == QLatin1String("/dev/sdb1"); };
    const struct
    {
        const char* path;
        const char* expected;
    } cases[] = {
        {"/home/clerk/backup", "Fixed /home"},
        {"/homestead", "Fixed /"},
        {"/srv/planning/databases", "Network/Remote /srv/planning"},
        {"/mnt/office share/db", "Network/Remote /mnt/office share"},
        {"/media/cdrom", "CDROM /media/cdrom"},
        {"/media/clerk/STICK/backup", "Removable /media/clerk/STICK"},
        {"/run/user/1000", "RAMdisk /run"},
        {"/proc/self", "UNKNOWN /proc"},
        {"", "UNKNOWN "},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(
            detail::driveKindText(QString::fromUtf8(c.path), table, removable), QString::fromUtf8(c.expected))
            << c.path;
    }
    EXPECT_EQ(detail::driveKindText(QStringLiteral("/data/x"), QString(), removable),
        QStringLiteral("UNKNOWN /data"));
}

TEST(DriveKindText, RealPaths)
{
    EXPECT_EQ(DriveKindText(QString()), QStringLiteral("UNKNOWN "));
    EXPECT_TRUE(DriveKindText(QStringLiteral("/proc/self")).startsWith(QLatin1String("UNKNOWN /proc")));
    const QString here = DriveKindText(QDir::currentPath());
    EXPECT_FALSE(here.startsWith(QLatin1String("UNKNOWN"))) << here.toStdString();
}

TEST(TempPath, IsAFolderWithoutTrailingSeparator)
{
    const QString temp = TempPath();
    EXPECT_FALSE(temp.isEmpty());
    EXPECT_FALSE(temp.size() > 1 && temp.endsWith(QLatin1Char('/')));
    EXPECT_TRUE(QFileInfo(temp).isDir());
}
