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
        return verdict;
    }
    if (const QString notice = keyIndexNotice(path, table); !notice.isEmpty()) {
        verdict.notices << notice;
    }
    return verdict;
}

QString keyIndexNotice(const QString& path, const TableDef& table)
{
    if (!table.uniqueColumn) {
        return {};
    }
    Connection connection;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &connection.db, SQLITE_OPEN_READONLY, nullptr)
        != SQLITE_OK) {
        return {};
    }
    sqlite3_busy_timeout(connection.db, 5000);
    const QString tableName = QString::fromLatin1(table.tableName);
    const QString key = QString::fromLatin1(table.uniqueColumn);
    auto count = [&connection](const QString& sql, const QString& bound) {
        sqlite3_stmt* statement = nullptr;
        qint64 found = -1;
        if (sqlite3_prepare_v2(connection.db, sql.toUtf8().constData(), -1, &statement, nullptr) == SQLITE_OK) {
            const QByteArray bytes = bound.toUtf8();
            if (!bound.isEmpty()) {
                sqlite3_bind_text(statement, 1, bytes.constData(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT);
            }
            if (sqlite3_step(statement) == SQLITE_ROW) {
                found = sqlite3_column_int64(statement, 0);
            }
        }
        sqlite3_finalize(statement);
        return found;
    };
    const qint64 indexes = count(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = 'index' AND name = ? "
                                                "COLLATE NOCASE"),
                                 tableName + QLatin1Char('_') + key + QStringLiteral("_key"));
    if (indexes != 0) {
        return {};
    }
    const qint64 blanks
        = count(QStringLiteral("SELECT count(*) FROM %1 WHERE ifnull(%2, '') = ''").arg(quoted(tableName), quoted(key)),
                QString());
    if (blanks < 2) {
        return {};
    }
    return QStringLiteral("%1: %2 rows of the table %3 have no %4, so the file cannot be kept from taking a second "
                          "row with a %4 it already holds. Give those rows their %4 (or remove the empty ones) with "
                          "the program; the file is made safe the next time it is opened.")
        .arg(QDir::toNativeSeparators(path), QString::number(blanks), tableName, key);
}

QStringList keyIndexNotices(const QString& folder)
{
    QStringList notices;
    for (const TableDef& table : allTables()) {
        if (table.id == Table::SBL18) {
            continue;
        }
        const QString path = joinPath(folder, QString::fromLatin1(table.fileName));
        if (QFileInfo::exists(path)) {
            if (const QString notice = keyIndexNotice(path, table); !notice.isEmpty()) {
                notices << notice;
            }
        }
    }
    return notices;
}

QString keyIndexMessage(const QStringList& notices)
{
    if (notices.isEmpty()) {
        return {};
    }
    return QStringLiteral("These tables can take the same number twice:\n\n") + notices.join(QLatin1Char('\n'));
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
