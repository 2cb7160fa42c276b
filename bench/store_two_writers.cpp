// Two processes writing the same case table at once, as two workstations on a
// shared folder do. Each child writes its rows one transaction at a time; the
// parent then counts the rows and asks SQLite to check the file.
//
//   ./build-bench/bench/bench_store_two_writers [ROWS_PER_WRITER]
#include "store/Catalogue.h"
#include "store/Recordset.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

#include <sqlite3.h>

using namespace pvardo::store;

namespace {

int writeRows(const QString& file, const QString& prefix, int count)
{
    QTextStream out(stdout);
    StoreStatus status;
    auto rows = openRecordsetAt(file, QStringLiteral("Select * from PBPROJ"), &status);
    if (!rows) {
        out << "open failed: " << status.description << Qt::endl;
        return 1;
    }
    int written = 0;
    for (int i = 0; i < count; ++i) {
        rows->AddNew();
        rows->setValue(QStringLiteral("PBCASE"), prefix + QString::number(i));
        rows->setValue(QStringLiteral("PBLOCN1"), QStringLiteral("%1 Main Street").arg(i));
        status = rows->Update();
        if (!status.ok()) {
            out << "stopped after " << written << " rows: " << status.number << ' ' << status.description << Qt::endl;
            rows->CancelUpdate();
            continue;
        }
        ++written;
    }
    out << written << Qt::endl;
    return 0;
}

QString integrity(const QString& file)
{
    sqlite3* db = nullptr;
    QString result = QStringLiteral("cannot open");
    if (sqlite3_open_v2(file.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &statement, nullptr) == SQLITE_OK
            && sqlite3_step(statement) == SQLITE_ROW) {
            result = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)));
        }
        sqlite3_finalize(statement);
    }
    sqlite3_close(db);
    return result;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() == 5 && args.at(1) == QLatin1String("--write")) {
        return writeRows(args.at(2), args.at(3), args.at(4).toInt());
    }
    const int count = args.size() > 1 ? args.at(1).toInt() : 2000;
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("pbproj.db"));
    createDatabaseFile(file, tableDef(Table::PBPROJ));

    QElapsedTimer timer;
    timer.start();
    QProcess first;
    QProcess second;
    first.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--write"), file, QStringLiteral("A-"), QString::number(count)});
    second.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--write"), file, QStringLiteral("B-"), QString::number(count)});
    first.waitForFinished(-1);
    second.waitForFinished(-1);
    const qint64 elapsed = timer.elapsed();

    StoreStatus status;
    auto rows = openRecordsetAt(file, QStringLiteral("Select * from PBPROJ"), &status);
    QTextStream out(stdout);
    out << "writer A: " << first.readAllStandardOutput().trimmed() << '\n'
        << "writer B: " << second.readAllStandardOutput().trimmed() << '\n'
        << "rows in the file: " << (rows ? rows->RecordCount() : -1) << " of " << 2 * count << '\n'
        << "integrity check: " << integrity(file) << '\n'
        << "elapsed: " << elapsed << " ms" << Qt::endl;
    return integrity(file) == QLatin1String("ok") ? 0 : 1;
}
