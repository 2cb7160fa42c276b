// The nightly backup and the repair of damaged database files, run as the
// office's IT person runs them: the admin tool in its own process.
#include "app/InstanceGuard.h"
#include "common/TextFiles.h"
#include "store/Catalogue.h"
#include "support/AdminTool.h"
#include "support/TestInstallation.h"
#include "support/Text.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

using namespace pvardo;
using namespace pvardo::test;

namespace {

QStringList inHome(const TestInstallation& installation, const QStringList& words)
{
    return QStringList{q("--home"), installation.programFolder()} + words;
}

// One SQL statement's first column of every row, or the error.
QStringList query(const QString& file, const char* sql)
{
    sqlite3* db = nullptr;
    QStringList rows;
    if (sqlite3_open_v2(QFile::encodeName(file).constData(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        rows << q("error: ") + QString::fromUtf8(sqlite3_errmsg(db));
        sqlite3_close(db);
        return rows;
    }
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) != SQLITE_OK) {
        rows << q("error: ") + QString::fromUtf8(sqlite3_errmsg(db));
    } else {
        int step = SQLITE_ROW;
        while ((step = sqlite3_step(stmt)) == SQLITE_ROW) {
            rows << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
        }
        if (step != SQLITE_DONE) {
            rows << q("error: ") + QString::fromUtf8(sqlite3_errmsg(db));
        }
    }
    sqlite3_finalize(stmt);
    sqlite3_close(db);
    return rows;
}

bool execute(const QString& file, const QString& sql)
{
    sqlite3* db = nullptr;
    bool ok = sqlite3_open(QFile::encodeName(file).constData(), &db) == SQLITE_OK
        && sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
    sqlite3_close(db);
    return ok;
}

// A database of notes: `rows` rows of some 600 bytes each, in 4096-byte pages.
QString notesDatabase(const TestInstallation& installation, int rows)
{
    const QString file = installation.databaseFolder() + q("/notes.db");
    EXPECT_TRUE(execute(file,
        QStringLiteral("PRAGMA page_size=4096; CREATE TABLE NOTES (ID INTEGER PRIMARY KEY AUTOINCREMENT, BODY TEXT);"
                       "CREATE INDEX NOTES_BODY ON NOTES (BODY);"
                       "WITH RECURSIVE n(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM n WHERE x < %1)"
                       " INSERT INTO NOTES (BODY) SELECT printf('%05d', x) || hex(randomblob(300)) FROM n;")
            .arg(rows)));
    return file;
}

// Zeroes the first table leaf page found after the first quarter of the file.
bool zeroATableLeaf(const QString& file)
{
    QFile bytes(file);
    if (!bytes.open(QIODevice::ReadWrite)) {
        return false;
    }
    const qint64 pages = bytes.size() / 4096;
    for (qint64 page = pages / 4; page < pages; ++page) {
        bytes.seek(page * 4096);
        if (bytes.read(1) == QByteArray(1, '\x0d')) {
            bytes.seek(page * 4096);
            bytes.write(QByteArray(4096, '\0'));
            return true;
        }
    }
    return false;
}

QStringList datedCopies(const QString& destination)
{
    return QDir(destination).entryList({q("pvardo-*")}, QDir::Dirs, QDir::Name);
}

} // namespace

TEST(BackupCommand, CopiesTakenWhileAnotherProcessWritesAreWhole)
{
    TestInstallation installation;
    const QString load = installation.databaseFolder() + q("/load.db");
    ASSERT_TRUE(execute(load, q("CREATE TABLE LOAD (TXN INTEGER, PART INTEGER, BODY BLOB)")));
    installation.createDatabase(store::Table::PBPROJ);

    // A thousand rows in two hundred transactions of five, with a pause of
    // work between them, written by another process.
    QString script = q(".timeout 20000\n");
    for (int txn = 1; txn <= 200; ++txn) {
        script += q("BEGIN;");
        for (int part = 1; part <= 5; ++part) {
            script += QStringLiteral("INSERT INTO LOAD VALUES (%1, %2, randomblob(3000));").arg(txn).arg(part);
        }
        script += q("COMMIT;\nWITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c WHERE x < 60000)"
                    " SELECT count(*) FROM c WHERE x = 0;\n");
    }
    QTemporaryDir scratch;
    const QString scriptFile = scratch.filePath(q("load.sql"));
    ASSERT_TRUE(replaceFile(scriptFile, script.toUtf8()));
    QProcess writer;
    writer.start(q("sqlite3"), {load, q(".read ") + scriptFile});
    ASSERT_TRUE(writer.waitForStarted()) << "sqlite3 is not installed";

    QTemporaryDir destination;
    int whileWriting = 0;
    for (int run = 0; run < 40 && (writer.state() != QProcess::NotRunning || run < 2); ++run) {
        const bool writing = writer.state() != QProcess::NotRunning;
        const AdminRun backup = runAdmin(inHome(installation, {q("backup"), destination.path()}));
        ASSERT_EQ(backup.code, 0) << backup.err.toStdString();
        EXPECT_TRUE(backup.out.startsWith(q("Copied "))) << backup.out.toStdString();
        EXPECT_EQ(backup.out.count(QLatin1Char('\n')), 1);
        whileWriting += writing && writer.state() != QProcess::NotRunning ? 1 : 0;
    }
    ASSERT_TRUE(writer.waitForFinished(60000));
    EXPECT_EQ(writer.exitCode(), 0) << writer.readAllStandardError().constData();
    EXPECT_EQ(query(load, "SELECT count(*) FROM LOAD"), QStringList{q("1000")});
    EXPECT_GE(whileWriting, 2);

    int midWay = 0;
    QStringList counts;
    for (const QString& copy : datedCopies(destination.path())) {
        const QString file = destination.path() + QLatin1Char('/') + copy + q("/databases/load.db");
        EXPECT_EQ(query(file, "PRAGMA integrity_check"), QStringList{q("ok")}) << copy.toStdString();
        // Only whole transactions: five rows to each.
        EXPECT_TRUE(query(file, "SELECT TXN FROM LOAD GROUP BY TXN HAVING count(*) <> 5").isEmpty())
            << copy.toStdString();
        const int rows = query(file, "SELECT count(*) FROM LOAD").value(0).toInt();
        EXPECT_EQ(rows % 5, 0);
        midWay += rows > 0 && rows < 1000 ? 1 : 0;
        counts << QString::number(rows);
        EXPECT_TRUE(QFile::exists(destination.path() + QLatin1Char('/') + copy + q("/databases/pbproj.db")));
    }
    EXPECT_GE(midWay, 1) << counts.join(q(", ")).toStdString();
}

TEST(BackupCommand, DestinationsItCannotUseAreSaidAndLeaveNoCopy)
{
    TestInstallation installation;
    installation.createDatabase(store::Table::PBPROJ);
    QTemporaryDir scratch;
    const QString file = scratch.filePath(q("plain.txt"));
    QFile(file).open(QIODevice::WriteOnly);
    QString readOnly = scratch.filePath(q("locked"));
    QDir().mkpath(readOnly);
    QFile::setPermissions(readOnly, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    if (geteuid() == 0) {
        readOnly = q("/proc"); // the superuser writes anywhere but here
    }
    const struct
    {
        QString destination;
        const char* said;
    } cases[] = {
        {scratch.filePath(q("unmounted/drive")), "does not exist"},
        {file, "is a file"},
        {readOnly, "cannot be made"},
    };
    for (const auto& c : cases) {
        const AdminRun run = runAdmin(inHome(installation, {q("backup"), c.destination}));
        EXPECT_EQ(run.code, 1) << c.said;
        EXPECT_TRUE(run.err.contains(QLatin1String(c.said))) << run.err.toStdString();
        EXPECT_EQ(run.err.count(QLatin1Char('\n')), 1) << run.err.toStdString();
        EXPECT_TRUE(run.out.isEmpty());
    }
    EXPECT_FALSE(QFileInfo::exists(scratch.filePath(q("unmounted"))));

    // An empty database folder (a share that did not mount) is no backup.
    QFile::remove(installation.databaseFolder() + q("/pbproj.db"));
    const AdminRun empty = runAdmin(inHome(installation, {q("backup"), scratch.path()}));
    EXPECT_EQ(empty.code, 1);
    EXPECT_TRUE(empty.err.contains(QLatin1String("holds no database."))) << empty.err.toStdString();
    EXPECT_TRUE(datedCopies(scratch.path()).isEmpty());

    for (const QStringList& bad : {QStringList{q("backup")}, QStringList{q("backup"), scratch.path(), q("--keep")},
             QStringList{q("backup"), scratch.path(), q("--keep"), q("0")}}) {
        EXPECT_EQ(runAdmin(inHome(installation, bad)).code, 2) << bad.join(QLatin1Char(' ')).toStdString();
    }
}

TEST(BackupCommand, AndRepairRefuseWhenTheNamedFolderHoldsNoDatabase)
{
    // The installation's own folder holds databases, but the settings name a
    // shared folder that did not connect: copying or repairing the own folder
    // would report success on data the office does not use.
    TestInstallation installation;
    installation.createDatabase(store::Table::PBPROJ);
    QTemporaryDir scratch;
    QTemporaryDir destination;
    for (const QString& named : {scratch.filePath(q("share")), scratch.filePath(q("unmounted"))}) {
        if (named.endsWith(q("share"))) {
            QDir().mkpath(named);
        }
        ASSERT_TRUE(replaceTextLines(installation.path(q("PVardo.ini")), {named}));
        for (const QStringList& command : {QStringList{q("backup"), destination.path()},
                 QStringList{q("repair")}, QStringList{q("repair"), q("--table"), q("PBPROJ")}}) {
            const AdminRun run = runAdmin(inHome(installation, command));
            const std::string what = (command.first() + q(" with ") + named).toStdString();
            EXPECT_EQ(run.code, 1) << what;
            EXPECT_TRUE(run.err.contains(named + q(", named in the program's settings,")))
                << run.err.toStdString();
            EXPECT_TRUE(run.out.isEmpty()) << what;
        }
        EXPECT_TRUE(QDir(destination.path()).isEmpty());
        EXPECT_EQ(QDir(installation.databaseFolder()).entryList(QDir::Files), QStringList{q("pbproj.db")});
    }
    EXPECT_TRUE(QDir(scratch.filePath(q("share"))).isEmpty());
    EXPECT_FALSE(QFileInfo::exists(scratch.filePath(q("unmounted"))));
}

TEST(BackupCommand, KeepsTheNewestCopiesAndNothingElse)
{
    TestInstallation installation;
    installation.createDatabase(store::Table::PBPROJ);
    QTemporaryDir destination;
    QDir(destination.path()).mkdir(q("photos"));
    // An older copy from another night.
    QDir(destination.path()).mkpath(q("pvardo-2001-01-01-000000/databases"));
    QStringList made;
    for (int run = 0; run < 4; ++run) {
        const AdminRun backup
            = runAdmin(inHome(installation, {q("backup"), destination.path(), q("--keep"), q("2")}));
        ASSERT_EQ(backup.code, 0) << backup.err.toStdString();
        made << backup.out.section(QLatin1Char('/'), -2, -2);
    }
    const QStringList kept = datedCopies(destination.path());
    ASSERT_EQ(kept.size(), 2) << kept.join(q(", ")).toStdString();
    EXPECT_TRUE(kept.contains(made.at(2))) << made.join(q(", ")).toStdString();
    EXPECT_TRUE(kept.contains(made.at(3))) << made.join(q(", ")).toStdString();
    EXPECT_TRUE(QFileInfo(destination.filePath(q("photos"))).isDir());
}

TEST(RepairCommand, RecoversWhatCanBeReadOfADamagedFileAndKeepsTheDamagedOne)
{
    const struct
    {
        const char* damage;
    } cases[] = {{"zeroed page"}, {"truncated file"}};
    for (const auto& c : cases) {
        TestInstallation installation;
        const QString pbproj = installation.createDatabase(store::Table::PBPROJ);
        const QString notes = notesDatabase(installation, 2000);
        if (QLatin1String(c.damage) == QLatin1String("zeroed page")) {
            ASSERT_TRUE(zeroATableLeaf(notes));
        } else {
            QFile file(notes);
            ASSERT_TRUE(file.resize(file.size() / 2));
        }
        EXPECT_NE(query(notes, "PRAGMA integrity_check"), QStringList{q("ok")}) << c.damage;

        const AdminRun run = runAdmin(inHome(installation, {q("repair")}));
        EXPECT_EQ(run.code, 0) << c.damage << ": " << run.err.toStdString();
        EXPECT_TRUE(run.out.contains(q("pbproj.db: whole, 0 rows"))) << run.out.toStdString();
        const QString line = run.out.split(QLatin1Char('\n')).filter(q("notes.db")).value(0);
        EXPECT_TRUE(line.contains(q("rows recovered into a new file"))) << line.toStdString();
        EXPECT_TRUE(line.contains(q("kept as notes.db.damaged-"))) << line.toStdString();

        // The new file is whole and holds the rows that could be read, in their keys.
        EXPECT_EQ(query(notes, "PRAGMA integrity_check"), QStringList{q("ok")});
        const int recovered = query(notes, "SELECT count(*) FROM NOTES").value(0).toInt();
        EXPECT_GT(recovered, 0) << c.damage;
        EXPECT_LT(recovered, 2000) << c.damage;
        EXPECT_TRUE(line.contains(QString::number(recovered) + q(" rows recovered"))) << line.toStdString();
        EXPECT_TRUE(query(notes, "SELECT ID FROM NOTES WHERE substr(BODY, 1, 5) <> printf('%05d', ID)").isEmpty());
        if (QLatin1String(c.damage) == QLatin1String("zeroed page")) {
            // One page of some six rows is lost, and the rows after it are found again.
            EXPECT_GE(recovered, 1980) << recovered;
            EXPECT_EQ(query(notes, "SELECT max(ID) FROM NOTES"), QStringList{q("2000")});
        }
        // The counter goes on past the highest key recovered.
        EXPECT_TRUE(execute(notes, q("INSERT INTO NOTES (BODY) VALUES ('next')")));
        EXPECT_GT(query(notes, "SELECT ID FROM NOTES WHERE BODY = 'next'").value(0).toInt(),
            query(notes, "SELECT max(ID) FROM NOTES WHERE BODY <> 'next'").value(0).toInt());
        const QStringList kept = QDir(installation.databaseFolder()).entryList({q("notes.db.damaged-*")});
        ASSERT_EQ(kept.size(), 1);
        EXPECT_FALSE(QFileInfo::exists(notes + q(".recovering")));

        // A second run finds every file whole.
        const AdminRun again = runAdmin(inHome(installation, {q("repair"), q("--table"), q("pbproj")}));
        EXPECT_EQ(again.code, 0) << again.err.toStdString();
        EXPECT_EQ(again.out, q("pbproj.db: whole, 0 rows\n"));
        EXPECT_TRUE(QFileInfo::exists(pbproj));
    }
}

TEST(RepairCommand, AFileOfWhichNoRowCanBeReadIsLeftInPlace)
{
    TestInstallation installation;
    // A few rows, all on the table's first page; that page is zeroed.
    const QString notes = notesDatabase(installation, 5);
    {
        QFile bytes(notes);
        ASSERT_TRUE(bytes.open(QIODevice::ReadWrite));
        bytes.seek(4096);
        bytes.write(QByteArray(4096, '\0'));
    }
    QFile file(notes);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    file.close();

    const AdminRun run = runAdmin(inHome(installation, {q("repair")}));
    EXPECT_EQ(run.code, 1) << run.out.toStdString();
    EXPECT_TRUE(run.err.contains(q("notes.db: damaged"))) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(q("restore it from a backup"))) << run.err.toStdString();
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), before);
    file.close();
    EXPECT_TRUE(QDir(installation.databaseFolder()).entryList({q("notes.db.*")}).isEmpty());
}

TEST(RepairCommand, RefusedWhileTheProgramIsOpen)
{
    TestInstallation installation;
    const QString notes = notesDatabase(installation, 500);
    ASSERT_TRUE(zeroATableLeaf(notes));
    QFile file(notes);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    file.close();
    {
        app::InstanceGuard program(installation.programFolder());
        ASSERT_TRUE(program.acquire());
        const AdminRun run = runAdmin(inHome(installation, {q("repair")}));
        EXPECT_EQ(run.code, 1);
        EXPECT_TRUE(run.err.contains(q("the program is open"))) << run.err.toStdString();
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), before);
        file.close();
        EXPECT_EQ(QDir(installation.databaseFolder()).entryList({q("*.damaged-*")}).size(), 0);
    }
    // Closed, the repair goes ahead.
    EXPECT_EQ(runAdmin(inHome(installation, {q("repair")})).code, 0);

    EXPECT_EQ(runAdmin(inHome(installation, {q("repair"), q("--table"), q("NOSUCH")})).code, 2);
}
