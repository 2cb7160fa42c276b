#include "common/ShellCopy.h"

#include "support/ScriptedPrompts.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sqlite3.h>

using namespace pvardo;
using pvardo::test::scriptedPrompts;

namespace {

struct Db
{
    sqlite3* handle = nullptr;
    explicit Db(const QString& path) { sqlite3_open(QFile::encodeName(path).constData(), &handle); }
    ~Db() { sqlite3_close(handle); }
    int exec(const char* sql) { return sqlite3_exec(handle, sql, nullptr, nullptr, nullptr); }
    int count(const char* table)
    {
        sqlite3_stmt* statement = nullptr;
        const QByteArray sql = QByteArray("select count(*) from ") + table;
        if (sqlite3_prepare_v2(handle, sql.constData(), -1, &statement, nullptr) != SQLITE_OK) {
            return -1;
        }
        const int n = sqlite3_step(statement) == SQLITE_ROW ? sqlite3_column_int(statement, 0) : -1;
        sqlite3_finalize(statement);
        return n;
    }
};

void writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

constexpr int backupFlags = ShellFlags::NoConfirmation | ShellFlags::NoConfirmMkdir;

} // namespace

TEST(ShellCopy, CopiesTheDatabaseFolderAsASubfolderOfTheDestination)
{
    QTemporaryDir dir;
    const QString source = dir.filePath(QStringLiteral("office/databases"));
    QDir().mkpath(source);
    {
        Db db(source + QStringLiteral("/meeting.db"));
        ASSERT_EQ(
            db.exec("create table MEETING (MNAME text); insert into MEETING values ('Board')"), SQLITE_OK);
    }
    writeFile(source + QStringLiteral("/pnb.txt"), "-1\n");
    writeFile(source + QStringLiteral("/pics/1.jpg"), "picture");
    writeFile(source + QStringLiteral("/meeting.db-journal"), "stale journal");
    const QString destination = dir.filePath(QStringLiteral("backup"));
    QDir().mkpath(destination);

    QString error;
    EXPECT_EQ(ShellCopy(ShellOperation::Copy, source, destination, backupFlags, &error), ShellResult::Success)
        << error.toStdString();
    const QString copy = destination + QStringLiteral("/databases");
    EXPECT_EQ(readFile(copy + QStringLiteral("/pnb.txt")), QByteArray("-1\n"));
    EXPECT_EQ(readFile(copy + QStringLiteral("/pics/1.jpg")), QByteArray("picture"));
    EXPECT_FALSE(QFile::exists(copy + QStringLiteral("/meeting.db-journal")));
    Db copied(copy + QStringLiteral("/meeting.db"));
    EXPECT_EQ(copied.count("MEETING"), 1);

    // A second backup replaces the first without asking.
    EXPECT_EQ(ShellCopy(ShellOperation::Copy, source, destination, backupFlags), ShellResult::Success);
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());
}

TEST(ShellCopy, ACopyWhileAnotherWorkstationWritesHoldsOnlyWhatWasCommitted)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("pbproj.db"));
    Db writer(file);
    ASSERT_EQ(
        writer.exec("create table PBPROJ (PBCASE text); insert into PBPROJ values ('12-1')"), SQLITE_OK);
    ASSERT_EQ(writer.exec("begin immediate; insert into PBPROJ values ('12-2')"), SQLITE_OK);

    const QString target = dir.filePath(QStringLiteral("copy.db"));
    QString error;
    EXPECT_EQ(ShellCopy(ShellOperation::Copy, file, target, backupFlags, &error), ShellResult::Success)
        << error.toStdString();
    ASSERT_EQ(writer.exec("commit"), SQLITE_OK);
    Db copy(target);
    EXPECT_EQ(copy.count("PBPROJ"), 1);
    char* check = nullptr;
    sqlite3_stmt* statement = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(copy.handle, "pragma integrity_check", -1, &statement, nullptr), SQLITE_OK);
    ASSERT_EQ(sqlite3_step(statement), SQLITE_ROW);
    EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)), "ok");
    sqlite3_finalize(statement);
    sqlite3_free(check);
}

TEST(ShellCopy, ADamagedDatabaseIsKeptAsItIs)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("bonds.db"));
    writeFile(file, QByteArray(4096, 'z'));
    const QString target = dir.filePath(QStringLiteral("out/bonds.db"));
    EXPECT_EQ(ShellCopy(ShellOperation::Copy, file, target, backupFlags), ShellResult::Success);
    EXPECT_EQ(readFile(target), QByteArray(4096, 'z'));
}

TEST(ShellCopy, RefusesWhatCannotBeCopied)
{
    QTemporaryDir dir;
    const QString source = dir.filePath(QStringLiteral("databases"));
    QDir().mkpath(source);
    EXPECT_EQ(
        ShellCopy(ShellOperation::Copy, dir.filePath(QStringLiteral("missing")), dir.path(), backupFlags),
        ShellResult::SourceMissing);
    EXPECT_EQ(ShellCopy(ShellOperation::Copy, source, source + QStringLiteral("/inner"), backupFlags),
        ShellResult::BadDestination);
    EXPECT_FALSE(QFile::exists(source + QStringLiteral("/inner")));
    // A destination under a file cannot be made.
    writeFile(dir.filePath(QStringLiteral("plain")), "x");
    EXPECT_NE(ShellCopy(ShellOperation::Copy, source, dir.filePath(QStringLiteral("plain/sub")), backupFlags),
        ShellResult::Success);
}

TEST(ShellCopy, AsksBeforeReplacingWithoutNoConfirmation)
{
    QTemporaryDir dir;
    writeFile(dir.filePath(QStringLiteral("src/def.txt")), "new");
    writeFile(dir.filePath(QStringLiteral("dst/src/def.txt")), "old");
    scriptedPrompts().answer(QStringLiteral("Confirm File Replace"), PromptAnswer::No);
    EXPECT_EQ(ShellCopy(ShellOperation::Copy, dir.filePath(QStringLiteral("src")),
                  dir.filePath(QStringLiteral("dst")), ShellFlags::NoConfirmMkdir),
        ShellResult::Cancelled);
    EXPECT_EQ(readFile(dir.filePath(QStringLiteral("dst/src/def.txt"))), QByteArray("old"));
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
}
