// The admin tool on an installation that several workstations share, when
// the disk fills, two of them run the same job, or the database folder is not
// what it should be.
#include "common/TextFiles.h"
#include "support/AdminTool.h"
#include "support/Text.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <gtest/gtest.h>

using namespace pvardo;
using pvardo::test::AdminRun;
using pvardo::test::q;
using pvardo::test::runAdmin;
using pvardo::test::runAdminOnFullDisk;

namespace {

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

qint64 countRows(const QString& path, const char* sql)
{
    sqlite3* db = nullptr;
    qint64 count = -1;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) == SQLITE_OK && sqlite3_step(statement) == SQLITE_ROW) {
            count = sqlite3_column_int64(statement, 0);
        }
        sqlite3_finalize(statement);
    }
    sqlite3_close(db);
    return count;
}

// A roll extract of parcels 12.34-1-0 onwards, 460 bytes a record.
QByteArray rollOf(int parcels)
{
    QByteArray bytes;
    for (int i = 0; i < parcels; ++i) {
        QByteArray line(460, ' ');
        line.replace(0, 6, "134201");
        const QByteArray sbl = "12.34-1-" + QByteArray::number(i);
        line.replace(64, sbl.size(), sbl);
        line.replace(276, 9, "OWNER ONE");
        line.replace(458, 2, "14");
        bytes += line + '\n';
    }
    return bytes;
}

class SharedInstallation : public ::testing::Test
{
protected:
    void SetUp() override
    {
        home = dir.filePath(q("planning"));
        const AdminRun run = runAdmin({q("--home"), home, q("init")});
        ASSERT_EQ(run.code, 0) << run.err.toStdString();
    }

    QStringList admin(const QStringList& words) const { return QStringList{q("--home"), home} + words; }
    QString databases(const QString& file = {}) const { return home + q("/databases/") + file; }

    QTemporaryDir dir;
    QString home;
};

} // namespace

TEST_F(SharedInstallation, AFullDiskIsReportedAndTheOldFilesStay)
{
    // The user list: the new one does not fit; the old one stays whole.
    const QString users = home + q("/Users.Set");
    const QByteArray before = bytesOf(users);
    AdminRun run = runAdminOnFullDisk(admin({q("users"), q("add"), q("Planner"), q("MEMBER"), q("--password-stdin")}),
        before.size() + 4, "desk\n");
    EXPECT_EQ(run.code, 1) << run.out.toStdString();
    EXPECT_FALSE(run.out.contains(q("Added"))) << run.out.toStdString();
    EXPECT_TRUE(run.err.contains(q("cannot write"))) << run.err.toStdString();
    EXPECT_EQ(bytesOf(users), before);

    // A PDF printed over an older one.
    const QString pdf = dir.filePath(q("letter.pdf"));
    writeFile(pdf, "%PDF-1.4 the letter printed yesterday");
    run = runAdminOnFullDisk(
        {q("print"), q(PVARDO_TEST_DATA_DIR "/rtf/letter.rtf"), q("--pdf"), pdf}, 2000);
    EXPECT_EQ(run.code, 1);
    EXPECT_FALSE(run.out.contains(q("Printed"))) << run.out.toStdString();
    EXPECT_TRUE(run.err.contains(q("cannot write"))) << run.err.toStdString();
    EXPECT_EQ(bytesOf(pdf), QByteArray("%PDF-1.4 the letter printed yesterday"));

    // The conversion of the parcel store copies the newer empty store first:
    // the copy fails whole, and says so, rather than leaving an empty file.
    // A new installation has the newer store already; an office upgrading
    // has the older one, as the seed folder still holds it.
    const QString store = home + q("/databases/sbl.db");
    ASSERT_TRUE(QFile::remove(store));
    ASSERT_TRUE(QFile::copy(home + q("/wrk/sbl.db"), store));
    const QString roll = dir.filePath(q("roll.txt"));
    writeFile(roll, rollOf(5));
    ASSERT_EQ(runAdmin(admin({q("import-rps"), roll, q("--quiet")})).code, 0);
    run = runAdminOnFullDisk(admin({q("sync-sbl"), q("--convert"), q("--quiet")}), 1024);
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.contains(q("cannot write"))) << run.err.toStdString();
    EXPECT_FALSE(run.err.contains(q("table"))) << run.err.toStdString();
    EXPECT_FALSE(QFile::exists(home + q("/sbl18.db")) && bytesOf(home + q("/sbl18.db")).isEmpty());
    EXPECT_EQ(runAdmin(admin({q("sync-sbl"), q("--convert"), q("--quiet")})).code, 0);
}

TEST_F(SharedInstallation, TwoWorkstationsImportingAtOnceLeaveOneRowAParcel)
{
    constexpr int parcels = 20000;
    const QString roll = dir.filePath(q("roll.txt"));
    writeFile(roll, rollOf(parcels));

    const auto both = [&](const QStringList& words) {
        auto first = test::startAdmin(admin(words));
        auto second = test::startAdmin(admin(words));
        const AdminRun one = test::finishAdmin(*first);
        const AdminRun two = test::finishAdmin(*second);
        EXPECT_EQ(one.code, 0) << one.err.toStdString();
        EXPECT_EQ(two.code, 0) << two.err.toStdString();
    };
    both({q("import-rps"), roll, q("--quiet")});
    EXPECT_EQ(countRows(databases(q("rps.db")), "SELECT count(*) FROM RPS"), parcels);
    EXPECT_EQ(countRows(databases(q("rps.db")), "SELECT count(DISTINCT RSBLF) FROM RPS"), parcels);

    ASSERT_EQ(runAdmin(admin({q("sync-sbl"), q("--convert"), q("--quiet")})).code, 0);
    QFile::remove(databases(q("sbl.db")));
    ASSERT_TRUE(QFile::copy(home + q("/wrk/sbl18.db"), databases(q("sbl.db"))));
    both({q("sync-sbl"), q("--quiet")});
    EXPECT_EQ(countRows(databases(q("sbl.db")), "SELECT count(*) FROM SBL"), parcels);
}

TEST_F(SharedInstallation, AnEmptyDatabaseFolderIsNeverANewInstallation)
{
    const QString roll = dir.filePath(q("roll.txt"));
    writeFile(roll, rollOf(3));
    // The settings name a shared folder that did not connect: it is there,
    // and empty.
    const QString share = dir.filePath(q("share"));
    QDir().mkpath(share);
    QStringList settings = *readTextLines(home + q("/PVardo.ini"));
    settings[0] = share;
    ASSERT_TRUE(replaceTextLines(home + q("/PVardo.ini"), settings));

    for (const QStringList& words : {QStringList{q("import-rps"), roll}, QStringList{q("sync-sbl")}}) {
        const AdminRun run = runAdmin(admin(words));
        EXPECT_EQ(run.code, 2) << words.first().toStdString();
        EXPECT_TRUE(run.err.contains(q("holds no database"))) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(share)) << run.err.toStdString();
    }
    EXPECT_TRUE(QDir(share).isEmpty());
    EXPECT_EQ(countRows(databases(q("rps.db")), "SELECT count(*) FROM RPS"), 0);

    // With no database anywhere, nothing is made anywhere.
    QDir(databases()).removeRecursively();
    QDir().mkpath(databases());
    AdminRun run = runAdmin(admin({q("check-databases")}));
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.contains(q("Nothing was written"))) << run.err.toStdString();
    run = runAdmin(admin({q("import-rps"), roll}));
    EXPECT_EQ(run.code, 2);
    EXPECT_TRUE(QDir(share).isEmpty());
    EXPECT_TRUE(QDir(databases()).isEmpty());
}

TEST_F(SharedInstallation, VerifyNamesDamagedFilesAndWhatIsWrong)
{
    AdminRun run = runAdmin(admin({q("check-databases"), q("--verify")}));
    EXPECT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.contains(q("damaged or not as expected"))) << run.out.toStdString();
    EXPECT_TRUE(run.out.contains(q(" 0 damaged"))) << run.out.toStdString();

    // Garbage over the second page of one file; another without a column.
    {
        QFile meeting(databases(q("meeting.db")));
        ASSERT_TRUE(meeting.open(QIODevice::ReadWrite));
        ASSERT_TRUE(meeting.seek(4096));
        meeting.write(QByteArray(4096, '\x5a'));
    }
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(databases(q("bonds.db"))).constData(), &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db, "ALTER TABLE BONDS RENAME TO OTHER", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(db);

    run = runAdmin(admin({q("check-databases"), q("--verify")}));
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.contains(databases(q("meeting.db")) + q(" is damaged"))) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(databases(q("bonds.db")) + q(":\n  holds no table BONDS"))) << run.err.toStdString();
    EXPECT_FALSE(run.err.contains(q("pbproj.db"))) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(q("restore"))) << run.err.toStdString();
}
