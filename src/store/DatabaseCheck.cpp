#include "store/DatabaseCheck.h"

#include "common/TextFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <sqlite3.h>

namespace pvardo::store {

namespace {

struct Connection {
    sqlite3* db = nullptr;
    ~Connection() { sqlite3_close(db); }
};

QString quoted(const QString& name)
{
    return QLatin1Char('"') + QString(name).replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
}

} // namespace

FileVerdict verifyDatabaseFile(const QString& path, const TableDef& table)
{
    FileVerdict verdict;
    verdict.path = path;
    Connection connection;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &connection.db, SQLITE_OPEN_READONLY, nullptr)
        != SQLITE_OK) {
        verdict.problems << QStringLiteral("cannot be opened: %1").arg(QString::fromUtf8(sqlite3_errmsg(connection.db)));
        return verdict;
    }
    sqlite3_busy_timeout(connection.db, 5000);
    sqlite3_stmt* statement = nullptr;
    int rc = sqlite3_prepare_v2(connection.db, "PRAGMA quick_check", -1, &statement, nullptr);
    if (rc == SQLITE_OK) {
        while ((rc = sqlite3_step(statement)) == SQLITE_ROW) {
            const QString line = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)));
            if (line != QLatin1String("ok")) {
                verdict.problems << line;
            }
        }
    }
    const QString failure = QString::fromUtf8(sqlite3_errmsg(connection.db));
    sqlite3_finalize(statement);
    if (rc != SQLITE_DONE) {
        verdict.problems << failure;
    }
    if (!verdict.problems.isEmpty()) {
        verdict.damaged = true;
        return verdict;
    }

    // The table and its columns, as the program will ask for them.
    QSet<QString> present;
    rc = sqlite3_prepare_v2(connection.db,
                            QStringLiteral("PRAGMA table_info(%1)").arg(quoted(QString::fromLatin1(table.tableName))).toUtf8().constData(),
                            -1, &statement, nullptr);
    while (rc == SQLITE_OK && sqlite3_step(statement) == SQLITE_ROW) {
        present.insert(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, 1))).toUpper());
    }
    sqlite3_finalize(statement);
    if (present.isEmpty()) {
        verdict.problems << QStringLiteral("holds no table %1").arg(QString::fromLatin1(table.tableName));
        return verdict;
    }
    QStringList missing;
    for (const ColumnDef& column : physicalColumns(table)) {
        if (!present.contains(QString::fromLatin1(column.name).toUpper())) {
            missing << QString::fromLatin1(column.name);
        }
    }
    if (!missing.isEmpty()) {
        verdict.problems << QStringLiteral("the table %1 lacks the columns %2")
                                .arg(QString::fromLatin1(table.tableName), missing.join(QStringLiteral(", ")));
    }
    return verdict;
}

QList<FileVerdict> verifyDatabaseFolder(const QString& folder)
{
    QList<FileVerdict> verdicts;
    for (const TableDef& table : allTables()) {
        // The parcel store is checked once, against the older generation's
        // columns, which the newer one has too.
        if (table.id == Table::SBL18) {
            continue;
        }
        const QString path = joinPath(folder, QString::fromLatin1(table.fileName));
        if (!QFileInfo::exists(path)) {
            continue;
        }
        verdicts.append(verifyDatabaseFile(path, table));
    }
    return verdicts;
}

QString damagedFilesMessage(const QList<FileVerdict>& verdicts)
{
    QStringList lines;
    for (const FileVerdict& verdict : verdicts) {
        if (!verdict.ok()) {
            lines << QDir::toNativeSeparators(verdict.path) + QStringLiteral(": ") + verdict.problems.first();
        }
    }
    if (lines.isEmpty()) {
        return {};
    }
    return QStringLiteral("These database files are damaged or not as the program expects them:\n\n") + lines.join(QLatin1Char('\n'))
           + QStringLiteral("\n\nWork on other records may go on, but what the damaged files hold may read wrong or "
                            "be lost. Ask everyone to close the program, then restore these files from the last "
                            "backup, or have them repaired before anyone writes to them again.");
}

} // namespace pvardo::store
