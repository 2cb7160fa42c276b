// The store when a file is damaged, the disk fills in a group of changes, or
// another workstation writes the same table.
#include "common/ReplacingFile.h"
#include "store/Catalogue.h"
#include "store/DatabaseCheck.h"
#include "store/Recordset.h"
#include "support/DamagedPage.h"
#include "support/FullDisk.h"
#include "support/TestInstallation.h"
#include "support/Text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::store;
using pvardo::test::q;

namespace {

std::unique_ptr<Recordset> open(const QString& path, const QString& query)
{
    StoreStatus status;
    auto rows = openRecordsetAt(path, query, &status);
    EXPECT_TRUE(rows) << status.description.toStdString();
    return rows;
}

StoreStatus addRow(Recordset& rows, const std::initializer_list<std::pair<const char*, QVariant>>& values)
{
    rows.AddNew();
    for (const auto& [column, value] : values) {
        const StoreStatus status = rows.setValue(QString::fromLatin1(column), value);
        if (!status.ok()) {
            rows.CancelUpdate();
            return status;
        }
    }
    return rows.Update();
}

// Runs statements on a file through a connection of its own, as another
// workstation (or an older version of the program) would.
void execute(const QString& path, const char* sql)
{
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(path).constData(), &db), SQLITE_OK);
    char* message = nullptr;
    EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, &message), SQLITE_OK) << (message ? message : "");
    sqlite3_free(message);
    sqlite3_close(db);
}

qint64 count(const QString& path, const char* sql)
{
    sqlite3* db = nullptr;
    qint64 result = -1;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) == SQLITE_OK && sqlite3_step(statement) == SQLITE_ROW) {
            result = sqlite3_column_int64(statement, 0);
        }
        sqlite3_finalize(statement);
    }
    sqlite3_close(db);
    return result;
}

} // namespace

TEST(StoreSharing, LookUpsSeeRowsAnotherWorkstationAddedAndTheKeyIsUnique)
{
    test::TestInstallation install;
    const QString roll = install.createDatabase(Table::RPS);
    auto mine = open(roll, q("Select * from RPS"));
    ASSERT_TRUE(mine);
    ASSERT_TRUE(addRow(*mine, {{"RSBLF", q("A")}}).ok());

    // Written by another workstation after this cursor read its result.
    execute(roll, "INSERT INTO RPS (RSBLF, RASSOC) VALUES ('12.34-1-5''A', 'THEIRS')");
    ASSERT_TRUE(mine->FindKey(q("RSBLF"), q("12.34-1-5'a")).ok());
    ASSERT_FALSE(mine->Eof());
    EXPECT_EQ(mine->text(q("RASSOC")), q("THEIRS"));
    EXPECT_EQ(mine->RecordCount(), 2);

    ASSERT_TRUE(mine->FindKey(q("RSBLF"), q("nothing")).ok());
    EXPECT_TRUE(mine->Eof());

    // A second row of a key is refused, whatever its case.
    const StoreStatus twice = addRow(*mine, {{"RSBLF", q("12.34-1-5'A")}});
    EXPECT_EQ(twice.number, StoreErrorNumber::DuplicateKey);
    mine->CancelUpdate();
    EXPECT_EQ(count(roll, "SELECT count(*) FROM RPS"), 2);
}

TEST(StoreSharing, AnOlderFileGetsItsUniqueKeyWithoutLosingARow)
{
    test::TestInstallation install;
    const QString parcels = install.createDatabase(Table::SBL18);
    // As files were made before: an ordinary index, and a race's duplicates.
    execute(parcels, "DROP INDEX \"SBL_SBLF_key\"; CREATE INDEX \"SBL_SBLF\" ON SBL (SBLF COLLATE NOCASE);"
                     "INSERT INTO SBL (SBLF, ASSOC, HISTORICAL) VALUES ('1-2-3', 'FIRST', '');"
                     "INSERT INTO SBL (SBLF, ASSOC, HISTORICAL) VALUES ('1-2-3', 'SECOND', '*12-207');"
                     "INSERT INTO SBL (SBLF, ASSOC) VALUES ('4-5-6', 'ALONE');"
                     "INSERT INTO SBL (SBLF, ASSOC) VALUES ('1-2-3', 'THIRD');");

    auto rows = open(parcels, q("Select * from SBL"));
    ASSERT_TRUE(rows);
    EXPECT_EQ(rows->RecordCount(), 2);
    ASSERT_TRUE(rows->FindKey(q("SBLF"), q("1-2-3")).ok());
    EXPECT_EQ(rows->text(q("ASSOC")), q("FIRST"));
    // What only a duplicate held is kept on the row that stays.
    EXPECT_EQ(rows->text(q("HISTORICAL")), q("*12-207"));
    EXPECT_EQ(addRow(*rows, {{"SBLF", q("4-5-6")}}).number, StoreErrorNumber::DuplicateKey);

    // And the file as it was is kept beside it.
    const QStringList copies = QFileInfo(parcels).dir().entryList({q("sbl18.db.before-merge-*")});
    ASSERT_EQ(copies.size(), 1);
    EXPECT_EQ(count(QFileInfo(parcels).dir().filePath(copies.first()), "SELECT count(*) FROM SBL"), 4);
}

TEST(StoreDamage, AFullDiskInAGroupLosesTheGroupAndWritesNothingAfterIt)
{
    test::TestInstallation install;
    const QString roll = install.createDatabase(Table::RPS);
    const qint64 size = QFileInfo(roll).size();
    const bool held = test::onFullDisk(size + 64 * 1024, [&] {
        auto rows = openRecordsetAt(roll, q("Select * from RPS"), nullptr);
        if (!rows || !rows->beginTransaction().ok()) {
            return false;
        }
        StoreStatus status;
        const QString filler(400, QLatin1Char('x'));
        for (int written = 0; written < 20000 && status.ok(); ++written) {
            status = addRow(*rows, {{"RSBLF", QString::number(written)}, {"RNOTES", filler}});
        }
        if (!status.ok()) {
            // Failed inside the group: whatever the engine did with it, a
            // write after the failure is no row of its own, and the group
            // never reports a commit.
            rows->CancelUpdate();
            addRow(*rows, {{"RSBLF", q("after")}});
            status = rows->commitTransaction();
            rows->rollbackTransaction();
            return !status.ok();
        }
        // Or the failure comes with the commit itself.
        return !rows->commitTransaction().ok();
    });
    EXPECT_TRUE(held);
    EXPECT_EQ(count(roll, "SELECT count(*) FROM RPS"), 0);
}

TEST(StoreDamage, AZeroedPageIsDamageNotAnEmptyRecord)
{
    test::TestInstallation install;
    const QString cases = install.createDatabase(Table::PBPROJ);
    {
        auto rows = open(cases, q("Select * from PBPROJ order by PBCASE"));
        ASSERT_TRUE(rows);
        for (int i = 0; i < 36; ++i) {
            ASSERT_TRUE(addRow(*rows, {{"PBCASE", QStringLiteral("12-%1").arg(100 + i)},
                                          {"PBLOCN1", QString(70, QLatin1Char('L'))},
                                          {"PBGENNOTES", QString(2500, QLatin1Char('n'))}})
                            .ok());
        }
    }
    // The table page of the first case, zeroed as a failing disk leaves it.
    test::zeroFirstLeafPage(cases, "PBPROJ");

    auto rows = open(cases, q("Select * from PBPROJ order by PBCASE"));
    ASSERT_TRUE(rows);
    ASSERT_EQ(rows->RecordCount(), 36); // the index is whole
    EXPECT_TRUE(rows->text(q("PBLOCN1")).isEmpty());
    const StoreStatus read = rows->rowStatus();
    EXPECT_EQ(read.number, StoreErrorNumber::NotADatabase) << read.description.toStdString();
    EXPECT_TRUE(read.description.contains(cases));
    // A row on a sound page reads as ever.
    rows->MoveLast();
    EXPECT_EQ(rows->text(q("PBLOCN1")), QString(70, QLatin1Char('L')));
    EXPECT_TRUE(rows->rowStatus().ok());

    const FileVerdict verdict = verifyDatabaseFile(cases, tableDef(Table::PBPROJ));
    EXPECT_TRUE(verdict.damaged);
    EXPECT_FALSE(damagedFilesMessage({verdict}).isEmpty());
}

TEST(StoreSharing, NewDatabaseFilesCanBeOpenedByTheGroup)
{
    test::TestInstallation install;
    const mode_t saved = ::umask(002);
    const QString path = install.path(q("databases/pbfees.db"));
    const StoreStatus made = createDatabaseFile(path, tableDef(Table::PBFEES));
    ::umask(saved);
    ASSERT_TRUE(made.ok()) << made.description.toStdString();
    struct stat info = {};
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0664u);
}
