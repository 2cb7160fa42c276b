#include "store/DatabaseRepair.h"

#include "common/ReplacingFile.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <limits>
#include <optional>
#include <sqlite3.h>
#include <sys/stat.h>

namespace pvardo::store {

namespace {

struct Connection
{
    sqlite3* db = nullptr;
    Connection() = default;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() { close(); }
    void close()
    {
        if (db) {
            sqlite3_close_v2(db);
            db = nullptr;
        }
    }
    QString error() const { return QString::fromUtf8(sqlite3_errmsg(db)); }
};

struct Statement
{
    sqlite3_stmt* stmt = nullptr;
    Statement() = default;
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    ~Statement() { sqlite3_finalize(stmt); }
};

bool open(Connection& connection, const QString& file, int flags, QString* error)
{
    if (sqlite3_open_v2(QFile::encodeName(file).constData(), &connection.db, flags, nullptr) != SQLITE_OK) {
        *error = connection.error();
        return false;
    }
    sqlite3_busy_timeout(connection.db, 5000);
    return true;
}

bool execute(sqlite3* db, const QString& sql, QString* error)
{
    char* message = nullptr;
    if (sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, &message) != SQLITE_OK) {
        *error = QString::fromUtf8(message ? message : sqlite3_errmsg(db));
        sqlite3_free(message);
        return false;
    }
    return true;
}

QString quoted(const QString& name)
{
    return QLatin1Char('"') + QString(name).replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
}

struct SchemaItem
{
    QString type;
    QString name;
    QString sql;
};

// The tables and indexes of the damaged file, tables first; empty when its
// schema cannot be read.
QList<SchemaItem> readSchema(sqlite3* db)
{
    QList<SchemaItem> tables;
    QList<SchemaItem> others;
    Statement query;
    if (sqlite3_prepare_v2(db,
            "SELECT type, name, sql FROM sqlite_master WHERE sql IS NOT NULL AND name NOT LIKE 'sqlite_%'",
            -1, &query.stmt, nullptr)
        != SQLITE_OK) {
        return {};
    }
    int step = SQLITE_ROW;
    while ((step = sqlite3_step(query.stmt)) == SQLITE_ROW) {
        SchemaItem item{QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(query.stmt, 0))),
            QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(query.stmt, 1))),
            QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(query.stmt, 2)))};
        (item.type == QLatin1String("table") ? tables : others).append(item);
    }
    if (step != SQLITE_DONE) {
        return {};
    }
    return tables + others;
}

// Copies the rows of one table that can still be read, in key order. Where a
// read fails, the copy looks further on in the keys for the first one it can
// reach again, and goes on from there.
class TableCopy
{
public:
    TableCopy(sqlite3* from, sqlite3* to, const QString& table)
        : m_from(from)
        , m_to(to)
        , m_table(table)
    {
    }

    bool run(QString* error)
    {
        if (sqlite3_prepare_v2(m_from,
                (QStringLiteral("SELECT rowid, * FROM ") + quoted(m_table)
                    + QStringLiteral(" WHERE rowid >= ? ORDER BY rowid"))
                    .toUtf8()
                    .constData(),
                -1, &m_select.stmt, nullptr)
            != SQLITE_OK) {
            *error = QString::fromUtf8(sqlite3_errmsg(m_from));
            return false;
        }
        const int columns = sqlite3_column_count(m_select.stmt) - 1;
        QStringList marks;
        for (int i = 0; i < columns; ++i) {
            marks << QStringLiteral("?");
        }
        if (sqlite3_prepare_v2(m_to,
                (QStringLiteral("INSERT OR IGNORE INTO ") + quoted(m_table) + QStringLiteral(" VALUES (")
                    + marks.join(QLatin1Char(',')) + QLatin1Char(')'))
                    .toUtf8()
                    .constData(),
                -1, &m_insert.stmt, nullptr)
            != SQLITE_OK) {
            *error = QString::fromUtf8(sqlite3_errmsg(m_to));
            return false;
        }
        qint64 start = std::numeric_limits<qint64>::min();
        for (;;) {
            qint64 last = 0;
            bool any = false;
            const int step = copyFrom(start, columns, &last, &any, error);
            if (step == SQLITE_DONE) {
                return true;
            }
            if (step != SQLITE_ROW) {
                return false; // a write failed
            }
            // A read failed: the first key not read is past the last one copied.
            const qint64 failedAt = any ? last : start;
            if (failedAt == std::numeric_limits<qint64>::max()) {
                return true;
            }
            const std::optional<qint64> next = nextReachable(failedAt);
            if (!next) {
                return true;
            }
            start = *next;
        }
    }

    qint64 copied() const { return m_copied; }
    qint64 refused() const { return m_refused; }

private:
    // Copies from the first key at or after `start`. SQLITE_DONE at the end of
    // the table, SQLITE_ROW when a read failed on the way, else a write failed.
    int copyFrom(qint64 start, int columns, qint64* last, bool* any, QString* error)
    {
        sqlite3_reset(m_select.stmt);
        sqlite3_bind_int64(m_select.stmt, 1, start);
        for (;;) {
            const int step = sqlite3_step(m_select.stmt);
            if (step == SQLITE_DONE) {
                return SQLITE_DONE;
            }
            if (step != SQLITE_ROW) {
                return SQLITE_ROW;
            }
            *last = sqlite3_column_int64(m_select.stmt, 0);
            *any = true;
            sqlite3_reset(m_insert.stmt);
            for (int i = 0; i < columns; ++i) {
                sqlite3_bind_value(m_insert.stmt, i + 1, sqlite3_column_value(m_select.stmt, i + 1));
            }
            if (sqlite3_step(m_insert.stmt) != SQLITE_DONE) {
                *error = QString::fromUtf8(sqlite3_errmsg(m_to));
                return SQLITE_ERROR;
            }
            if (sqlite3_changes(m_to) > 0) {
                ++m_copied;
            } else {
                ++m_refused;
            }
        }
    }

    // Whether a read from this key gets a row or the end without an error.
    bool reachable(qint64 key, bool* atEnd)
    {
        sqlite3_reset(m_select.stmt);
        sqlite3_bind_int64(m_select.stmt, 1, key);
        const int step = sqlite3_step(m_select.stmt);
        *atEnd = step == SQLITE_DONE;
        return step == SQLITE_ROW || step == SQLITE_DONE;
    }

    // The first key after `failedAt` from which the table reads again, by
    // steps that double, then halving back; nullopt when nothing further on
    // can be read.
    std::optional<qint64> nextReachable(qint64 failedAt)
    {
        qint64 bad = failedAt;
        qint64 stride = 1;
        for (;;) {
            if (bad > std::numeric_limits<qint64>::max() - stride) {
                return std::nullopt;
            }
            const qint64 probe = bad + stride;
            bool atEnd = false;
            if (reachable(probe, &atEnd)) {
                if (atEnd && stride == 1) {
                    return std::nullopt;
                }
                qint64 good = probe;
                while (good - bad > 1) {
                    const qint64 middle = bad + (good - bad) / 2;
                    bool middleAtEnd = false;
                    if (reachable(middle, &middleAtEnd)) {
                        good = middle;
                    } else {
                        bad = middle;
                    }
                }
                return good;
            }
            bad = probe;
            stride = stride > std::numeric_limits<qint64>::max() / 2 ? std::numeric_limits<qint64>::max() : stride * 2;
        }
    }

    sqlite3* m_from;
    sqlite3* m_to;
    QString m_table;
    Statement m_select;
    Statement m_insert;
    qint64 m_copied = 0;
    qint64 m_refused = 0;
};

QString damagedName(const QString& file, const QDateTime& now)
{
    return file + QStringLiteral(".damaged-") + now.toString(QStringLiteral("yyyyMMdd-HHmmss"));
}

const char* const journalEndings[] = {"-journal", "-wal", "-shm"};

} // namespace

QString integrityProblems(const QString& file)
{
    Connection connection;
    QString error;
    if (!QFileInfo(file).isFile()) {
        return file + QStringLiteral(": no such file");
    }
    if (!open(connection, file, SQLITE_OPEN_READWRITE, &error)) {
        return error;
    }
    Statement check;
    if (sqlite3_prepare_v2(connection.db, "PRAGMA integrity_check(20)", -1, &check.stmt, nullptr) != SQLITE_OK) {
        return connection.error();
    }
    QStringList found;
    int step = SQLITE_ROW;
    while ((step = sqlite3_step(check.stmt)) == SQLITE_ROW) {
        found << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(check.stmt, 0)));
    }
    if (step != SQLITE_DONE) {
        found << connection.error();
    }
    if (found == QStringList{QStringLiteral("ok")}) {
        return {};
    }
    // The check's lines, on one line, the first few of them.
    QString text = found.mid(0, 3).join(QStringLiteral("; "));
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    text.remove(QStringLiteral("*** in database main *** "));
    return found.size() > 3 ? text + QStringLiteral("; ...") : text;
}

qint64 countRows(const QString& file, const QString& table)
{
    Connection connection;
    QString error;
    if (!open(connection, file, SQLITE_OPEN_READONLY, &error)) {
        return -1;
    }
    Statement count;
    if (sqlite3_prepare_v2(connection.db, (QStringLiteral("SELECT count(*) FROM ") + quoted(table)).toUtf8().constData(),
            -1, &count.stmt, nullptr)
            != SQLITE_OK
        || sqlite3_step(count.stmt) != SQLITE_ROW) {
        return -1;
    }
    return sqlite3_column_int64(count.stmt, 0);
}

RecoveryResult recoverDatabaseFile(const QString& file, const QDateTime& now)
{
    RecoveryResult result;
    const QString fresh = file + QStringLiteral(".recovering");
    QFile::remove(fresh);
    {
        Connection damaged;
        // Opened for writing, so that a journal a stopped write left is rolled
        // back first. With the schema writable, SQLite reads a file shorter than
        // its header says as far as it goes instead of refusing it whole.
        QString ignored;
        if (!open(damaged, file, SQLITE_OPEN_READWRITE, &result.error)
            || !execute(damaged.db, QStringLiteral("PRAGMA writable_schema = ON"), &ignored)) {
            if (result.error.isEmpty()) {
                result.error = ignored;
            }
            return result;
        }
        const QList<SchemaItem> schema = readSchema(damaged.db);
        if (schema.isEmpty()) {
            result.error = QStringLiteral("its list of tables cannot be read: ") + damaged.error();
            return result;
        }

        Connection target;
        if (!open(target, fresh, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, &result.error)
            || !execute(target.db, QStringLiteral("BEGIN"), &result.error)) {
            QFile::remove(fresh);
            return result;
        }
        const auto fail = [&](const QString& why) {
            result.error = why;
            target.close();
            QFile::remove(fresh);
            return result;
        };
        for (const SchemaItem& item : std::as_const(schema)) {
            if (!item.sql.isEmpty() && !execute(target.db, item.sql, &result.error)) {
                return fail(result.error);
            }
        }
        result.rowsBefore = 0;
        for (const SchemaItem& item : std::as_const(schema)) {
            if (item.type != QLatin1String("table")) {
                continue;
            }
            const qint64 before = countRows(file, item.name);
            result.rowsBefore = before < 0 || result.rowsBefore < 0 ? -1 : result.rowsBefore + before;
            TableCopy copy(damaged.db, target.db, item.name);
            QString why;
            if (!copy.run(&why)) {
                return fail(item.name + QStringLiteral(": ") + why);
            }
            result.rowsAfter += copy.copied();
            result.rowsRefused += copy.refused();
        }
        if (!execute(target.db, QStringLiteral("COMMIT"), &result.error)) {
            return fail(result.error);
        }
        // An empty file in the place of one that held rows would open as if
        // the records had never been: the damaged file stays where it is, for
        // a backup or a specialist to restore.
        if (result.rowsAfter == 0 && result.rowsBefore != 0) {
            return fail(QStringLiteral("not one row of it can be read; restore it from a backup"));
        }
    }
    // The new file is shared as the one it replaces was (SQLite makes it
    // writable by its owner only).
    struct stat before = {};
    if (::stat(QFile::encodeName(file).constData(), &before) == 0) {
        ::chmod(QFile::encodeName(fresh).constData(), before.st_mode & 07777);
    } else {
        ::chmod(QFile::encodeName(fresh).constData(), static_cast<mode_t>(newFileMode()));
    }
    // The damaged file and its journals go aside under a dated name, the new
    // file takes its place.
    result.keptAs = damagedName(file, now);
    if (!QFile::rename(file, result.keptAs)) {
        QFile::remove(fresh);
        result.error = QStringLiteral("the damaged file cannot be renamed to ") + result.keptAs;
        result.keptAs.clear();
        return result;
    }
    for (const char* ending : journalEndings) {
        const QString journal = file + QLatin1String(ending);
        if (QFileInfo::exists(journal)) {
            QFile::rename(journal, result.keptAs + QLatin1String(ending));
        }
    }
    if (!QFile::rename(fresh, file)) {
        QFile::rename(result.keptAs, file);
        QFile::remove(fresh);
        result.error = QStringLiteral("the new file cannot take the damaged one's place");
        result.keptAs.clear();
        return result;
    }
    result.done = true;
    return result;
}

} // namespace pvardo::store
