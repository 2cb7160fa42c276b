#include "store/SqliteRecordset.h"

#include "store/Catalogue.h"
#include "store/DatabaseLocation.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

#include <algorithm>
#include <cstring>

namespace pvardo::store {

namespace {

// How long a write waits for another workstation's transaction to end.
constexpr int BusyTimeoutMs = 5000;

QString quotedName(const QString& name)
{
    QString escaped = name;
    escaped.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

// Waits for another workstation's lock in short, slightly uneven steps, for
// up to BusyTimeoutMs. The engine's own waiting backs off to a tenth of a
// second, and a workstation that writes row after row then keeps the file to
// itself: short steps give the other one its turn between two writes.
int waitForLock(void*, int attempt)
{
    constexpr int stepMs = 2;
    if (attempt * stepMs >= BusyTimeoutMs) {
        return 0;
    }
    sqlite3_sleep(stepMs + (attempt % 3));
    return 1;
}

// pv_number(x): the number a stored value holds, or null when it holds none.
// Lets a number in a query compare with a text column as the office's engine
// compared them: "02" equals 2.
void numberFunction(sqlite3_context* context, int, sqlite3_value** argv)
{
    sqlite3_value* value = argv[0];
    switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
        sqlite3_result_int64(context, sqlite3_value_int64(value));
        return;
    case SQLITE_FLOAT:
        sqlite3_result_double(context, sqlite3_value_double(value));
        return;
    case SQLITE_TEXT: {
        const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
        const QByteArray bytes = QByteArray(text, sqlite3_value_bytes(value)).trimmed();
        bool ok = false;
        const double number = bytes.toDouble(&ok);
        if (ok && !bytes.isEmpty()) {
            sqlite3_result_double(context, number);
            return;
        }
        break;
    }
    default:
        break;
    }
    sqlite3_result_null(context);
}

FieldKind kindOfDeclared(const QString& declared, bool primaryKey)
{
    const QString type = declared.toUpper();
    if (primaryKey && type.contains(QLatin1String("INT"))) {
        return FieldKind::Counter;
    }
    if (type.startsWith(QLatin1String("DATETIME"))) {
        return FieldKind::DateTime;
    }
    if (type.startsWith(QLatin1String("DATE"))) {
        return FieldKind::Date;
    }
    if (type.startsWith(QLatin1String("TIME"))) {
        return FieldKind::Time;
    }
    if (type.contains(QLatin1String("MONEY")) || type.contains(QLatin1String("CURRENCY"))) {
        return FieldKind::Money;
    }
    if (type.contains(QLatin1String("CHAR")) && type.contains(QLatin1Char('('))) {
        return FieldKind::Text;
    }
    if (type.contains(QLatin1String("TEXT")) || type.contains(QLatin1String("CHAR")) || type.contains(QLatin1String("CLOB"))
        || type.isEmpty()) {
        return FieldKind::LongText;
    }
    return FieldKind::Number;
}

QDate dateOf(const QString& stored)
{
    return QDate::fromString(stored.left(10), Qt::ISODate);
}

QTime timeOf(const QString& stored)
{
    const qsizetype t = stored.indexOf(QLatin1Char('T'));
    return QTime::fromString(t >= 0 ? stored.mid(t + 1) : stored, Qt::ISODate);
}

int execute(sqlite3* db, const QString& sql)
{
    return sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, nullptr);
}

bool indexExists(sqlite3* db, const QString& name)
{
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db, "SELECT 1 FROM sqlite_master WHERE type = 'index' AND name = ? COLLATE NOCASE", -1,
                           &statement, nullptr)
        != SQLITE_OK) {
        sqlite3_finalize(statement);
        return true; // cannot tell: leave the file alone
    }
    const QByteArray bytes = name.toUtf8();
    sqlite3_bind_text(statement, 1, bytes.constData(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT);
    const bool found = sqlite3_step(statement) == SQLITE_ROW;
    sqlite3_finalize(statement);
    return found;
}

qint64 countOf(sqlite3* db, const QString& sql)
{
    sqlite3_stmt* statement = nullptr;
    qint64 count = -1;
    if (sqlite3_prepare_v2(db, sql.toUtf8().constData(), -1, &statement, nullptr) == SQLITE_OK
        && sqlite3_step(statement) == SQLITE_ROW) {
        count = sqlite3_column_int64(statement, 0);
    }
    sqlite3_finalize(statement);
    return count;
}

void ensureUniqueKey(sqlite3* db, const QString& path, const QString& table, const QString& key,
                     const QStringList& columns)
{
    const QString keyIndex = table + QLatin1Char('_') + key + QStringLiteral("_key");
    if (indexExists(db, keyIndex) || sqlite3_db_readonly(db, "main") == 1) {
        return;
    }
    const QString t = quotedName(table);
    const QString k = quotedName(key);
    // The first row of a key stays; the others are its duplicates. A blank key
    // is no parcel number, and rows without one are not merged.
    const QString isDuplicate = QStringLiteral("ifnull(%1.%2, '') <> '' AND EXISTS (SELECT 1 FROM %3 AS first WHERE "
                                               "first.%2 = %1.%2 COLLATE NOCASE AND first.rowid < %1.rowid)");
    const QString duplicatesSql = QStringLiteral("SELECT count(*) FROM %1 WHERE %2").arg(t, isDuplicate.arg(t, k, t));
    const qint64 blanks = countOf(db, QStringLiteral("SELECT count(*) FROM %1 WHERE ifnull(%2, '') = ''").arg(t, k));
    qint64 duplicates = countOf(db, duplicatesSql);
    // Several rows without a key cannot take a unique index; they stay as
    // they are, with the ordinary index.
    if (duplicates < 0 || blanks < 0 || blanks > 1) {
        return;
    }
    if (duplicates > 0) {
        // The file as it was stays beside it: nothing of a duplicate is lost.
        const QString copy = path + QStringLiteral(".before-merge-")
                             + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
        sqlite3* target = nullptr;
        bool copied = sqlite3_open_v2(QFile::encodeName(copy).constData(), &target,
                                      SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr)
                      == SQLITE_OK;
        sqlite3_backup* backup = copied ? sqlite3_backup_init(target, "main", db, "main") : nullptr;
        copied = backup && sqlite3_backup_step(backup, -1) == SQLITE_DONE;
        if (backup) {
            copied = sqlite3_backup_finish(backup) == SQLITE_OK && copied;
        }
        sqlite3_close(target);
        if (!copied) {
            QFile::remove(copy); // no room for the copy: the file stays as it is
            return;
        }
    }
    if (execute(db, QStringLiteral("BEGIN IMMEDIATE")) != SQLITE_OK) {
        return; // another workstation writes; the next opening tries again
    }
    // Counted again inside the group: another workstation may have written.
    duplicates = countOf(db, duplicatesSql);
    bool ok = duplicates >= 0;
    if (ok && duplicates > 0) {
        // The row that stays takes what only a duplicate holds.
        const QString later = QStringLiteral("SELECT later.%1 FROM %2 AS later WHERE later.%3 = %2.%3 COLLATE NOCASE "
                                             "AND later.rowid > %2.rowid AND ifnull(later.%1, '') <> '' ORDER BY "
                                             "later.rowid LIMIT 1");
        const QString keeper = QStringLiteral("ifnull(%1.%2, '') <> '' AND NOT EXISTS (SELECT 1 FROM %1 AS first "
                                              "WHERE first.%2 = %1.%2 COLLATE NOCASE AND first.rowid < %1.rowid)")
                                   .arg(t, k);
        for (const QString& column : columns) {
            if (!ok || column.compare(key, Qt::CaseInsensitive) == 0) {
                continue;
            }
            const QString c = quotedName(column);
            const QString from = later.arg(c, t, k);
            ok = execute(db, QStringLiteral("UPDATE %1 SET %2 = (%3) WHERE ifnull(%2, '') = '' AND %4 AND (%3) IS NOT "
                                            "NULL")
                                 .arg(t, c, from, keeper))
                 == SQLITE_OK;
        }
        ok = ok && execute(db, QStringLiteral("DELETE FROM %1 WHERE %2").arg(t, isDuplicate.arg(t, k, t))) == SQLITE_OK;
    }
    ok = ok && execute(db, QStringLiteral("DROP INDEX IF EXISTS %1").arg(quotedName(table + QLatin1Char('_') + key)))
                   == SQLITE_OK;
    ok = ok
         && execute(db, QStringLiteral("CREATE UNIQUE INDEX %1 ON %2 (%3 COLLATE NOCASE)").arg(quotedName(keyIndex), t, k))
                == SQLITE_OK;
    ok = ok && execute(db, QStringLiteral("COMMIT")) == SQLITE_OK;
    if (!ok) {
        execute(db, QStringLiteral("ROLLBACK"));
    }
}

} // namespace

std::unique_ptr<Recordset> openRecordset(const QString& connectionString, const QString& queryText,
                                         StoreStatus* status)
{
    const QString path = dataSourceOf(connectionString);
    if (path.isEmpty()) {
        if (status) {
            *status = StoreStatus::failure(StoreErrorNumber::DatabaseNotFound,
                                           QStringLiteral("The connection names no database file."));
        }
        return nullptr;
    }
    return openRecordsetAt(path, queryText, status);
}

std::unique_ptr<Recordset> openRecordsetAt(const QString& databasePath, const QString& queryText, StoreStatus* status)
{
    return SqliteRecordset::open(databasePath, queryText, status);
}

SqliteRecordset::~SqliteRecordset()
{
    for (sqlite3_stmt* statement : std::as_const(m_statements)) {
        sqlite3_finalize(statement);
    }
    if (m_db) {
        if (m_transactionDepth > 0) {
            sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
        }
        sqlite3_close(m_db);
    }
}

std::unique_ptr<SqliteRecordset> SqliteRecordset::open(const QString& path, const QString& queryText, StoreStatus* status)
{
    auto report = [status](long long number, const QString& description) {
        if (status) {
            *status = StoreStatus::failure(number, description);
        }
        return nullptr;
    };
    const QFileInfo info(path);
    if (!info.exists() || !info.isFile()) {
        return report(StoreErrorNumber::DatabaseNotFound, QStringLiteral("Could not find file '%1'.").arg(path));
    }
    QString reason;
    std::optional<SqlSelect> select = parseSelect(queryText, &reason);
    if (!select) {
        return report(StoreErrorNumber::BadSql, QStringLiteral("Syntax error in the query: %1.").arg(reason));
    }

    std::unique_ptr<SqliteRecordset> cursor(new SqliteRecordset);
    cursor->m_path = path;
    cursor->m_queryText = queryText;
    const QByteArray name = QFile::encodeName(path);
    int rc = sqlite3_open_v2(name.constData(), &cursor->m_db, SQLITE_OPEN_READWRITE, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_close(cursor->m_db);
        cursor->m_db = nullptr;
        // A file this user may only read can still be shown.
        rc = sqlite3_open_v2(name.constData(), &cursor->m_db, SQLITE_OPEN_READONLY, nullptr);
        if (rc != SQLITE_OK) {
            return report(3051, QStringLiteral("Cannot open %1: %2").arg(path, QString::fromUtf8(sqlite3_errstr(rc))));
        }
    }
    sqlite3_busy_handler(cursor->m_db, &waitForLock, nullptr);
    sqlite3_extended_result_codes(cursor->m_db, 1);
    sqlite3_create_function(cursor->m_db, "pv_number", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, &numberFunction,
                            nullptr, nullptr);

    cursor->m_table = select->table;
    StoreStatus loaded = cursor->loadColumns();
    if (!loaded.ok()) {
        if (status) {
            *status = loaded;
        }
        return nullptr;
    }
    // A file made before its key was unique gets its unique index here.
    for (const TableDef& def : allTables()) {
        if (def.uniqueColumn && cursor->m_table.compare(QLatin1String(def.tableName), Qt::CaseInsensitive) == 0
            && cursor->hasField(QLatin1String(def.uniqueColumn))) {
            QStringList columns;
            for (const Column& column : cursor->m_columns) {
                columns.append(column.name);
            }
            ensureUniqueKey(cursor->m_db, path, cursor->m_table, QLatin1String(def.uniqueColumn), columns);
            break;
        }
    }

    auto kinds = [&cursor](const QString& column, QString* canonical) { return cursor->kindOf(column, canonical); };
    QString sql = QStringLiteral("SELECT rowid FROM %1").arg(quotedName(cursor->m_table));
    if (select->where) {
        TranslatedSql where;
        StoreStatus translated = translateCondition(*select->where, kinds, &where);
        if (!translated.ok()) {
            if (status) {
                *status = translated;
            }
            return nullptr;
        }
        sql += QStringLiteral(" WHERE ") + where.sql;
        cursor->m_keysetBinds = where.binds;
    }
    QString order;
    StoreStatus ordered = translateOrder(select->orderBy, kinds, &order);
    if (!ordered.ok()) {
        if (status) {
            *status = ordered;
        }
        return nullptr;
    }
    // Rows that tie keep the order they were written in.
    sql += QStringLiteral(" ORDER BY ") + (order.isEmpty() ? QStringLiteral("rowid") : order + QStringLiteral(", rowid"));
    cursor->m_keysetSql = sql;

    StoreStatus ran = cursor->runKeysetQuery();
    if (!ran.ok()) {
        if (status) {
            *status = ran;
        }
        return nullptr;
    }
    cursor->m_pos = cursor->m_keys.empty() ? -1 : 0;
    if (status) {
        *status = StoreStatus::success();
    }
    return cursor;
}

StoreStatus SqliteRecordset::loadColumns()
{
    sqlite3_stmt* statement = nullptr;
    StoreStatus status = prepareStatement(
        QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND name = ? COLLATE NOCASE"), &statement);
    if (!status.ok()) {
        return status;
    }
    sqlite3_bind_text(statement, 1, m_table.toUtf8().constData(), -1, SQLITE_TRANSIENT);
    int rc = sqlite3_step(statement);
    if (rc == SQLITE_ROW) {
        m_table = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)));
    }
    sqlite3_finalize(statement);
    if (rc == SQLITE_DONE) {
        return fail(StoreErrorNumber::UnknownTable,
                    QStringLiteral("The database %1 holds no table '%2'.").arg(m_path, m_table));
    }
    if (rc != SQLITE_ROW) {
        return sqliteFailure(rc, QStringLiteral("read the tables of"));
    }

    status = prepareStatement(QStringLiteral("PRAGMA table_info(%1)").arg(quotedName(m_table)), &statement);
    if (!status.ok()) {
        return status;
    }
    while ((rc = sqlite3_step(statement)) == SQLITE_ROW) {
        const QString columnName = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, 1)));
        const auto* declared = reinterpret_cast<const char*>(sqlite3_column_text(statement, 2));
        const bool primaryKey = sqlite3_column_int(statement, 5) > 0;
        m_columnIndex.insert(columnName.toUpper(), static_cast<int>(m_columns.size()));
        m_columns.push_back(Column{columnName, kindOfDeclared(QString::fromUtf8(declared ? declared : ""), primaryKey)});
    }
    sqlite3_finalize(statement);
    if (rc != SQLITE_DONE) {
        return sqliteFailure(rc, QStringLiteral("read the columns of"));
    }
    return StoreStatus::success();
}

StoreStatus SqliteRecordset::prepareStatement(const QString& sql, sqlite3_stmt** statement)
{
    const QByteArray utf8 = sql.toUtf8();
    const int rc = sqlite3_prepare_v2(m_db, utf8.constData(), static_cast<int>(utf8.size()), statement, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_finalize(*statement);
        *statement = nullptr;
        return sqliteFailure(rc, QStringLiteral("read"));
    }
    return StoreStatus::success();
}

sqlite3_stmt* SqliteRecordset::cachedStatement(const QString& sql, StoreStatus* status)
{
    auto found = m_statements.constFind(sql);
    if (found != m_statements.constEnd()) {
        sqlite3_reset(found.value());
        sqlite3_clear_bindings(found.value());
        *status = StoreStatus::success();
        return found.value();
    }
    sqlite3_stmt* statement = nullptr;
    *status = prepareStatement(sql, &statement);
    if (!status->ok()) {
        return nullptr;
    }
    m_statements.insert(sql, statement);
    return statement;
}

StoreStatus SqliteRecordset::bindAll(sqlite3_stmt* statement, const QVariantList& binds)
{
    for (int i = 0; i < binds.size(); ++i) {
        const QVariant& value = binds.at(i);
        int rc = SQLITE_OK;
        if (value.isNull()) {
            rc = sqlite3_bind_null(statement, i + 1);
        } else {
            switch (value.typeId()) {
            case QMetaType::Double:
            case QMetaType::Float:
                rc = sqlite3_bind_double(statement, i + 1, value.toDouble());
                break;
            case QMetaType::Int:
            case QMetaType::LongLong:
            case QMetaType::UInt:
            case QMetaType::ULongLong:
            case QMetaType::Bool:
                rc = sqlite3_bind_int64(statement, i + 1, value.toLongLong());
                break;
            default: {
                const QByteArray text = value.toString().toUtf8();
                rc = sqlite3_bind_text(statement, i + 1, text.constData(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
                break;
            }
            }
        }
        if (rc != SQLITE_OK) {
            return sqliteFailure(rc, QStringLiteral("read"));
        }
    }
    return StoreStatus::success();
}

// A write outside a group takes the file's write lock before it reads
// anything (BEGIN IMMEDIATE): two workstations that both read first and then
// both want to write would otherwise block each other, and one would be
// refused at once instead of waiting its turn.
StoreStatus SqliteRecordset::runWrite(const QString& sql, const QVariantList& binds, const QString& what)
{
    StoreStatus status;
    sqlite3_stmt* statement = cachedStatement(sql, &status);
    if (!statement) {
        return status;
    }
    return runWrite(statement, binds, what);
}

StoreStatus SqliteRecordset::runWrite(sqlite3_stmt* statement, const QVariantList& binds, const QString& what)
{
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
    StoreStatus status;
    if (!(status = bindAll(statement, binds)).ok()) {
        return status;
    }
    if (m_transactionLost || (m_transactionDepth > 0 && sqlite3_get_autocommit(m_db))) {
        sqlite3_clear_bindings(statement);
        return lostTransaction();
    }
    const bool own = m_transactionDepth == 0;
    if (own) {
        const int begun = sqlite3_exec(m_db, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
        if (begun != SQLITE_OK) {
            sqlite3_clear_bindings(statement);
            return sqliteFailure(begun, what);
        }
    }
    int rc = sqlite3_step(statement);
    sqlite3_reset(statement);
    if (own) {
        if (rc == SQLITE_DONE) {
            rc = sqlite3_exec(m_db, "COMMIT", nullptr, nullptr, nullptr);
            rc = rc == SQLITE_OK ? SQLITE_DONE : rc;
        }
        if (rc != SQLITE_DONE) {
            const StoreStatus failure = sqliteFailure(rc, what);
            sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
            return failure;
        }
    }
    if (rc != SQLITE_DONE) {
        const StoreStatus failure = sqliteFailure(rc, what);
        noteTransactionState();
        return failure;
    }
    return StoreStatus::success();
}

void SqliteRecordset::noteTransactionState()
{
    if (m_transactionDepth > 0 && sqlite3_get_autocommit(m_db)) {
        m_transactionDepth = 0;
        m_transactionLost = true;
        m_lossCause = m_lastStatus;
    }
}

StoreStatus SqliteRecordset::lostTransaction()
{
    if (!m_transactionLost) {
        m_transactionDepth = 0;
        m_transactionLost = true;
        m_lossCause = StoreStatus::failure(StoreErrorNumber::WriteFailed, QStringLiteral("the file could not be written"));
    }
    return fail(m_lossCause.ok() ? StoreErrorNumber::WriteFailed : m_lossCause.number,
                QStringLiteral("The changes to %1 since the last save were undone after an error (%2); nothing more "
                               "is written.")
                    .arg(m_path, m_lossCause.description));
}

// The INSERT or UPDATE of the columns set so far, prepared once for each set
// of columns: a long run of rows written alike, such as a roll import, then
// costs one lookup a row.
sqlite3_stmt* SqliteRecordset::writeStatement(bool insert)
{
    QByteArray key(1, insert ? 'I' : 'U');
    for (const auto& [column, stored] : m_pending) {
        key.append(reinterpret_cast<const char*>(&column), sizeof column);
    }
    if (sqlite3_stmt* known = m_writeStatements.value(key)) {
        return known;
    }
    QStringList names;
    QStringList marks;
    for (const auto& [column, stored] : m_pending) {
        names.append(quotedName(m_columns[static_cast<size_t>(column)].name) + (insert ? QString() : QStringLiteral(" = ?")));
        marks.append(QStringLiteral("?"));
    }
    QString sql;
    if (!insert) {
        sql = QStringLiteral("UPDATE %1 SET %2 WHERE rowid = ?").arg(quotedName(m_table), names.join(QLatin1Char(',')));
    } else if (names.isEmpty()) {
        sql = QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(quotedName(m_table));
    } else {
        sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                  .arg(quotedName(m_table), names.join(QLatin1Char(',')), marks.join(QLatin1Char(',')));
    }
    StoreStatus status;
    sqlite3_stmt* statement = cachedStatement(sql, &status);
    if (!statement) {
        m_lastStatus = status;
        return nullptr;
    }
    m_writeStatements.insert(key, statement);
    return statement;
}

StoreStatus SqliteRecordset::runKeysetQuery()
{
    StoreStatus status;
    sqlite3_stmt* statement = cachedStatement(m_keysetSql, &status);
    if (!statement) {
        return status;
    }
    status = bindAll(statement, m_keysetBinds);
    if (!status.ok()) {
        return status;
    }
    std::vector<std::int64_t> keys;
    int rc;
    while ((rc = sqlite3_step(statement)) == SQLITE_ROW) {
        keys.push_back(sqlite3_column_int64(statement, 0));
    }
    sqlite3_reset(statement);
    if (rc != SQLITE_DONE) {
        return sqliteFailure(rc, QStringLiteral("read"));
    }
    m_keys = std::move(keys);
    m_positionsValid = false;
    m_row.loaded = false;
    dropWindow();
    m_onDeletedRow = false;
    return StoreStatus::success();
}

StoreStatus SqliteRecordset::fail(long long number, const QString& description)
{
    m_lastStatus = StoreStatus::failure(number, description);
    return m_lastStatus;
}

StoreStatus SqliteRecordset::sqliteFailure(int code, const QString& what)
{
    const QString detail = QString::fromUtf8(m_db ? sqlite3_errmsg(m_db) : sqlite3_errstr(code));
    switch (code & 0xff) {
    case SQLITE_CONSTRAINT:
        if (code == SQLITE_CONSTRAINT_UNIQUE || code == SQLITE_CONSTRAINT_PRIMARYKEY) {
            return fail(StoreErrorNumber::DuplicateKey,
                        QStringLiteral("The changes you requested to the table were not successful because they "
                                       "would create duplicate values in the index (%1).")
                            .arg(detail));
        }
        return fail(3022, detail);
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return fail(StoreErrorNumber::Locked,
                    QStringLiteral("Could not %1 %2: it is in use by another workstation. Try again in a moment.")
                        .arg(what, m_path));
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
        return fail(StoreErrorNumber::NotADatabase,
                    QStringLiteral("The file %1 is not a database of this program, or it is damaged (%2). Close "
                                   "the program on every workstation and restore the file from the last backup.")
                        .arg(m_path, detail));
    case SQLITE_FULL:
        return fail(StoreErrorNumber::WriteFailed,
                    QStringLiteral("Could not write %1: the disk is full.").arg(m_path));
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return fail(3051, QStringLiteral("Could not write %1: the file may only be read (%2).").arg(m_path, detail));
    case SQLITE_IOERR:
    case SQLITE_CANTOPEN:
        return fail(StoreErrorNumber::LostConnection,
                    QStringLiteral("The connection to %1 was lost (%2).").arg(m_path, detail));
    default:
        return fail(3000 + (code & 0xff), QStringLiteral("Could not %1 %2: %3").arg(what, m_path, detail));
    }
}

std::optional<FieldKind> SqliteRecordset::kindOf(const QString& name, QString* canonical) const
{
    const int index = fieldIndex(name);
    if (index < 0) {
        return std::nullopt;
    }
    if (canonical) {
        *canonical = m_columns[static_cast<size_t>(index)].name;
    }
    return m_columns[static_cast<size_t>(index)].kind;
}

bool SqliteRecordset::onRow() const
{
    return !m_newRow && !m_onDeletedRow && m_pos >= 0 && m_pos < static_cast<qsizetype>(m_keys.size());
}

bool SqliteRecordset::Bof() const
{
    if (m_newRow || m_onDeletedRow) {
        return false;
    }
    return m_keys.empty() || m_pos < 0;
}

bool SqliteRecordset::Eof() const
{
    if (m_newRow || m_onDeletedRow) {
        return false;
    }
    return m_keys.empty() || m_pos >= static_cast<qsizetype>(m_keys.size());
}

int SqliteRecordset::RecordCount() const
{
    return static_cast<int>(m_keys.size());
}

int SqliteRecordset::AbsolutePosition() const
{
    if (m_newRow || m_onDeletedRow) {
        return Position::Unknown;
    }
    if (Bof()) {
        return Position::BeforeFirst;
    }
    if (Eof()) {
        return Position::AfterLast;
    }
    return static_cast<int>(m_pos + 1);
}

Bookmark SqliteRecordset::bookmark() const
{
    return onRow() ? Bookmark{m_keys[static_cast<size_t>(m_pos)]} : Bookmark{};
}

void SqliteRecordset::rebuildPositions() const
{
    if (m_positionsValid) {
        return;
    }
    m_positions.clear();
    m_positions.reserve(m_keys.size());
    for (size_t i = 0; i < m_keys.size(); ++i) {
        m_positions.emplace(m_keys[i], static_cast<qsizetype>(i));
    }
    m_positionsValid = true;
}

bool SqliteRecordset::setBookmark(const Bookmark& mark)
{
    if (!flushPendingEdit().ok()) {
        return false;
    }
    rebuildPositions();
    const auto found = m_positions.find(mark.rowId);
    if (found == m_positions.end()) {
        return false;
    }
    moveTo(found->second);
    return true;
}

StoreStatus SqliteRecordset::flushPendingEdit()
{
    if (!m_editing) {
        return StoreStatus::success();
    }
    return Update();
}

StoreStatus SqliteRecordset::moveTo(qsizetype index)
{
    const auto size = static_cast<qsizetype>(m_keys.size());
    m_movingBack = index < m_pos;
    m_stepping = false;
    m_pos = std::clamp<qsizetype>(index, -1, size);
    m_onDeletedRow = false;
    m_row.loaded = false;
    m_lastStatus = StoreStatus::success();
    return m_lastStatus;
}

StoreStatus SqliteRecordset::MoveFirst()
{
    StoreStatus status = flushPendingEdit();
    if (!status.ok()) {
        return status;
    }
    return moveTo(m_keys.empty() ? -1 : 0);
}

StoreStatus SqliteRecordset::MoveLast()
{
    StoreStatus status = flushPendingEdit();
    if (!status.ok()) {
        return status;
    }
    return moveTo(m_keys.empty() ? -1 : static_cast<qsizetype>(m_keys.size()) - 1);
}

StoreStatus SqliteRecordset::MoveNext()
{
    StoreStatus status = flushPendingEdit();
    if (!status.ok()) {
        return status;
    }
    if (Eof()) {
        return fail(StoreErrorNumber::NoCurrentRecord, QStringLiteral("No current record: already after the last row."));
    }
    const StoreStatus moved = moveTo(m_onDeletedRow ? m_pos : m_pos + 1);
    m_stepping = true;
    return moved;
}

StoreStatus SqliteRecordset::MovePrevious()
{
    StoreStatus status = flushPendingEdit();
    if (!status.ok()) {
        return status;
    }
    if (Bof()) {
        return fail(StoreErrorNumber::NoCurrentRecord, QStringLiteral("No current record: already before the first row."));
    }
    const StoreStatus moved = moveTo(m_pos - 1);
    m_stepping = true;
    return moved;
}

StoreStatus SqliteRecordset::Move(int rows)
{
    StoreStatus status = flushPendingEdit();
    if (!status.ok()) {
        return status;
    }
    if (rows == 0) {
        return StoreStatus::success();
    }
    if ((rows > 0 && Eof()) || (rows < 0 && Bof())) {
        return fail(StoreErrorNumber::NoCurrentRecord, QStringLiteral("No current record."));
    }
    const qsizetype from = (m_onDeletedRow && rows > 0) ? m_pos - 1 : m_pos;
    return moveTo(from + rows);
}

void SqliteRecordset::AddNew()
{
    if (m_editing) {
        flushPendingEdit();
        CancelUpdate();
    }
    m_posBeforeNew = m_onDeletedRow ? std::min<qsizetype>(m_pos, static_cast<qsizetype>(m_keys.size()) - 1) : m_pos;
    m_newRow = true;
    m_editing = true;
    m_pending.clear();
}

void SqliteRecordset::CancelUpdate()
{
    if (m_newRow) {
        m_newRow = false;
        moveTo(m_posBeforeNew);
    }
    m_editing = false;
    m_pending.clear();
}

StoreStatus SqliteRecordset::Update()
{
    if (!m_editing) {
        return StoreStatus::success();
    }
    StoreStatus status;
    if (m_newRow) {
        QVariantList binds;
        binds.reserve(static_cast<qsizetype>(m_pending.size()));
        for (const auto& [column, stored] : m_pending) {
            binds.append(stored);
        }
        sqlite3_stmt* statement = writeStatement(true);
        if (!statement) {
            return m_lastStatus;
        }
        if (!(status = runWrite(statement, binds, QStringLiteral("write"))).ok()) {
            return status;
        }
        const std::int64_t rowId = sqlite3_last_insert_rowid(m_db);
        m_keys.push_back(rowId);
        if (m_positionsValid) {
            m_positions.emplace(rowId, static_cast<qsizetype>(m_keys.size()) - 1);
        }
        m_newRow = false;
        m_editing = false;
        m_pending.clear();
        // The new row stays current, at the end of the result until the next Requery.
        moveTo(static_cast<qsizetype>(m_keys.size()) - 1);
        return StoreStatus::success();
    }

    if (!onRow()) {
        return fail(StoreErrorNumber::NoCurrentRecord, QStringLiteral("No current record to write."));
    }
    QVariantList binds;
    binds.reserve(static_cast<qsizetype>(m_pending.size()) + 1);
    for (const auto& [column, stored] : m_pending) {
        binds.append(stored);
    }
    binds.append(QVariant::fromValue<qlonglong>(m_keys[static_cast<size_t>(m_pos)]));
    sqlite3_stmt* statement = writeStatement(false);
    if (!statement) {
        return m_lastStatus;
    }
    if (!(status = runWrite(statement, binds, QStringLiteral("write"))).ok()) {
        return status;
    }
    if (sqlite3_changes(m_db) == 0) {
        m_editing = false;
        m_pending.clear();
        return fail(StoreErrorNumber::RowDeleted,
                    QStringLiteral("The record was deleted by another workstation; the changes were not written."));
    }
    m_editing = false;
    m_pending.clear();
    m_row.loaded = false;
    dropWindow();
    return StoreStatus::success();
}

StoreStatus SqliteRecordset::Delete()
{
    if (m_newRow) {
        CancelUpdate();
        return StoreStatus::success();
    }
    if (!onRow()) {
        return fail(StoreErrorNumber::NoCurrentRecord, QStringLiteral("No current record to delete."));
    }
    m_editing = false;
    m_pending.clear();
    const StoreStatus status = runWrite(QStringLiteral("DELETE FROM %1 WHERE rowid = ?").arg(quotedName(m_table)),
                                       {QVariant::fromValue<qlonglong>(m_keys[static_cast<size_t>(m_pos)])},
                                       QStringLiteral("delete from"));
    if (!status.ok()) {
        return status;
    }
    m_keys.erase(m_keys.begin() + m_pos);
    m_positionsValid = false;
    m_onDeletedRow = true;
    m_row.loaded = false;
    dropWindow();
    m_lastStatus = StoreStatus::success();
    return m_lastStatus;
}

StoreStatus SqliteRecordset::Requery()
{
    StoreStatus status = flushPendingEdit();
    if (!status.ok()) {
        return status;
    }
    if (!QFileInfo::exists(m_path)) {
        return fail(StoreErrorNumber::LostConnection, QStringLiteral("The connection to %1 was lost: the file is gone.").arg(m_path));
    }
    status = runKeysetQuery();
    if (!status.ok()) {
        return status;
    }
    return moveTo(m_keys.empty() ? -1 : 0);
}

StoreStatus SqliteRecordset::Find(const QString& criteria, int skip, bool forward)
{
    StoreStatus status = flushPendingEdit();
    if (!status.ok()) {
        return status;
    }
    sqlite3_stmt* statement = keyLookup(criteria);
    if (!statement) {
        QString reason;
        std::unique_ptr<SqlExpression> condition = parseCriteria(criteria, &reason);
        if (!condition) {
            return fail(StoreErrorNumber::BadSql, QStringLiteral("Syntax error in the criteria: %1.").arg(reason));
        }
        TranslatedSql where;
        status = translateCondition(*condition, [this](const QString& n, QString* c) { return kindOf(n, c); }, &where);
        if (!status.ok()) {
            m_lastStatus = status;
            return status;
        }
        statement = cachedStatement(QStringLiteral("SELECT rowid FROM %1 WHERE %2").arg(quotedName(m_table), where.sql), &status);
        if (!statement) {
            return status;
        }
        if (!(status = bindAll(statement, where.binds)).ok()) {
            return status;
        }
    }
    rebuildPositions();
    const auto size = static_cast<qsizetype>(m_keys.size());
    qsizetype start = m_pos;
    if (forward) {
        start = std::max<qsizetype>(m_pos, 0) + skip;
    } else {
        start = (m_onDeletedRow ? m_pos - 1 : std::min(m_pos, size - 1)) - skip;
    }
    qsizetype best = forward ? size : -1;
    int rc;
    while ((rc = sqlite3_step(statement)) == SQLITE_ROW) {
        const auto found = m_positions.find(sqlite3_column_int64(statement, 0));
        if (found == m_positions.end()) {
            continue; // a row outside this cursor's query
        }
        const qsizetype position = found->second;
        if (forward && position >= start && position < best) {
            best = position;
        } else if (!forward && position <= start && position > best) {
            best = position;
        }
    }
    sqlite3_reset(statement);
    if (rc != SQLITE_DONE) {
        return sqliteFailure(rc, QStringLiteral("search"));
    }
    return moveTo(best);
}

StoreStatus SqliteRecordset::FindKey(const QString& column, const QVariant& value)
{
    StoreStatus status = flushPendingEdit();
    if (!status.ok()) {
        return status;
    }
    const int index = fieldIndex(column);
    if (index < 0) {
        return fail(StoreErrorNumber::UnknownField, QStringLiteral("Item not found in this collection: %1.").arg(column));
    }
    const Column& def = m_columns[static_cast<size_t>(index)];
    const bool text = def.kind == FieldKind::Text || def.kind == FieldKind::LongText;
    QVariant stored;
    if (!(status = toStored(def, value, &stored)).ok()) {
        m_lastStatus = status;
        return status;
    }
    sqlite3_stmt* statement = cachedStatement(QStringLiteral("SELECT rowid FROM %1 WHERE %2 = ?%3 ORDER BY rowid")
                                                  .arg(quotedName(m_table), quotedName(def.name),
                                                       text ? QStringLiteral(" COLLATE NOCASE") : QString()),
                                              &status);
    if (!statement) {
        return status;
    }
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
    if (!(status = bindAll(statement, {stored})).ok()) {
        return status;
    }
    std::vector<std::int64_t> found;
    int rc;
    while ((rc = sqlite3_step(statement)) == SQLITE_ROW) {
        found.push_back(sqlite3_column_int64(statement, 0));
    }
    sqlite3_reset(statement);
    if (rc != SQLITE_DONE) {
        return sqliteFailure(rc, QStringLiteral("search"));
    }
    auto best = [this, &found] {
        rebuildPositions();
        qsizetype first = static_cast<qsizetype>(m_keys.size());
        for (const std::int64_t rowId : found) {
            const auto at = m_positions.find(rowId);
            if (at != m_positions.end()) {
                first = std::min(first, at->second);
            }
        }
        return first;
    };
    qsizetype position = best();
    if (position == static_cast<qsizetype>(m_keys.size()) && !found.empty() && !m_editing) {
        // Written by another workstation after this result was read.
        if (!(status = runKeysetQuery()).ok()) {
            return status;
        }
        position = best();
    }
    return moveTo(position);
}

// The look-up of a key, "[COLUMN] = 'value'" on a text column, is by far the
// most frequent criterion (every case, parcel and roll row is found so). It
// is recognised here and bound straight to a prepared statement; anything
// else goes through the parser. Gives nullptr when the text is of another shape.
sqlite3_stmt* SqliteRecordset::keyLookup(const QString& criteria)
{
    const QString text = criteria.trimmed();
    if (!text.startsWith(QLatin1Char('[')) || !text.endsWith(QLatin1Char('\''))) {
        return nullptr;
    }
    const qsizetype close = text.indexOf(QLatin1Char(']'));
    if (close < 0) {
        return nullptr;
    }
    qsizetype at = close + 1;
    while (at < text.size() && text.at(at) == QLatin1Char(' ')) {
        ++at;
    }
    if (at >= text.size() || text.at(at) != QLatin1Char('=')) {
        return nullptr;
    }
    ++at;
    while (at < text.size() && text.at(at) == QLatin1Char(' ')) {
        ++at;
    }
    if (at >= text.size() - 1 || text.at(at) != QLatin1Char('\'')) {
        return nullptr;
    }
    const QString value = text.mid(at + 1, text.size() - at - 2);
    if (value.contains(QLatin1Char('\''))) {
        return nullptr; // doubled or broken quotes: the parser says which
    }
    const int column = fieldIndex(text.mid(1, close - 1));
    if (column < 0) {
        return nullptr;
    }
    const FieldKind kind = m_columns[static_cast<size_t>(column)].kind;
    if (kind != FieldKind::Text && kind != FieldKind::LongText) {
        return nullptr;
    }
    sqlite3_stmt* statement = m_keyLookups.value(column);
    if (!statement) {
        StoreStatus status;
        statement = cachedStatement(QStringLiteral("SELECT rowid FROM %1 WHERE %2 = ? COLLATE NOCASE")
                                        .arg(quotedName(m_table), quotedName(m_columns[static_cast<size_t>(column)].name)),
                                    &status);
        if (!statement) {
            return nullptr;
        }
        m_keyLookups.insert(column, statement);
    }
    sqlite3_reset(statement);
    const QByteArray bytes = value.toUtf8();
    sqlite3_bind_text(statement, 1, bytes.constData(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT);
    return statement;
}

QString SqliteRecordset::fieldName(int index) const
{
    return index >= 0 && index < fieldCount() ? m_columns[static_cast<size_t>(index)].name : QString();
}

FieldKind SqliteRecordset::fieldKind(int index) const
{
    return index >= 0 && index < fieldCount() ? m_columns[static_cast<size_t>(index)].kind : FieldKind::Text;
}

int SqliteRecordset::fieldIndex(const QString& name) const
{
    return m_columnIndex.value(name.trimmed().toUpper(), -1);
}

namespace {
// Rows read in one statement, and how long they are trusted.
constexpr size_t WindowRows = 64;
constexpr qint64 WindowLifeMs = 1000;
} // namespace

// A row is read lazily and only in the columns asked for: a walk over many
// rows that shows one column reads that column alone. A column asked for the
// first time is read on its own and joins the set read for the rows after.
const SqliteRecordset::RowCache& SqliteRecordset::rowWith(int column) const
{
    auto* self = const_cast<SqliteRecordset*>(this);
    const std::int64_t rowId = m_keys[static_cast<size_t>(m_pos)];
    if (!m_row.loaded || m_row.rowId != rowId) {
        self->startRow(rowId);
    }
    const auto i = static_cast<size_t>(column);
    if (!m_row.missing && !m_row.present[i]) {
        StoreStatus status;
        sqlite3_stmt* statement = self->cachedStatement(
            QStringLiteral("SELECT %1 FROM %2 WHERE rowid = ?").arg(quotedName(m_columns[i].name), quotedName(m_table)), &status);
        if (statement) {
            sqlite3_bind_int64(statement, 1, rowId);
            if (!self->readColumns(statement, 0, {column}, self->m_row)) {
                self->m_rowFailure = m_lastStatus;
                self->m_row.missing = true;
            }
        } else {
            self->m_rowFailure = status;
            self->m_row.missing = true;
        }
        self->m_hotColumns.push_back(column);
        self->m_windowStatement = nullptr;
        self->dropWindow();
    }
    return m_row;
}

void SqliteRecordset::clearRow(RowCache& row, std::int64_t rowId) const
{
    const size_t count = m_columns.size();
    row.rowId = rowId;
    row.loaded = true;
    row.missing = false;
    row.present.assign(count, 0);
    row.types.assign(count, SQLITE_NULL);
    row.spans.assign(count, {0, 0});
    row.reals.assign(count, 0);
    row.integers.assign(count, 0);
    row.bytes.clear();
}

void SqliteRecordset::dropWindow()
{
    m_window.clear();
    m_windowSlots.clear();
}

StoreStatus SqliteRecordset::rowStatus() const
{
    if (!onRow() || m_columns.empty()) {
        return StoreStatus::success();
    }
    rowWith(m_hotColumns.empty() ? 0 : m_hotColumns.front());
    return m_rowFailure;
}

void SqliteRecordset::startRow(std::int64_t rowId)
{
    m_rowFailure = StoreStatus::success();
    if (!m_hotColumns.empty()) {
        if (m_windowSlots.empty() || !m_windowAge.isValid() || m_windowAge.elapsed() > WindowLifeMs
            || !m_windowSlots.contains(rowId)) {
            fetchWindow();
        }
        const auto found = m_windowSlots.find(rowId);
        if (found != m_windowSlots.end()) {
            m_row = m_window[found->second];
            return;
        }
    }
    clearRow(m_row, rowId);
    if (!m_hotColumns.empty()) {
        // Not in the file any more, or not readable from it.
        m_row.missing = true;
        m_rowFailure = m_windowFailure;
    }
}

void SqliteRecordset::fetchWindow()
{
    dropWindow();
    m_windowFailure = StoreStatus::success();
    if (!m_windowStatement) {
        QStringList names;
        for (const int column : m_hotColumns) {
            names.append(quotedName(m_columns[static_cast<size_t>(column)].name));
        }
        QStringList marks;
        for (size_t k = 0; k < WindowRows; ++k) {
            marks.append(QStringLiteral("?"));
        }
        StoreStatus status;
        m_windowStatement = cachedStatement(QStringLiteral("SELECT rowid, %1 FROM %2 WHERE rowid IN (%3)")
                                                 .arg(names.join(QLatin1Char(',')), quotedName(m_table), marks.join(QLatin1Char(','))),
                                             &status);
        if (!m_windowStatement) {
            m_windowFailure = status;
            return;
        }
    }
    // Walking row by row, the rows ahead in the direction of travel; after a
    // jump (a find, a bookmark, the first or last row) the row alone.
    const auto size = static_cast<qsizetype>(m_keys.size());
    const auto rows = static_cast<qsizetype>(m_stepping ? WindowRows : 1);
    const qsizetype first = m_movingBack ? std::max<qsizetype>(0, m_pos - rows + 1) : m_pos;
    const qsizetype last = std::min<qsizetype>(size - 1, first + rows - 1);
    sqlite3_reset(m_windowStatement);
    sqlite3_clear_bindings(m_windowStatement);
    int bind = 1;
    for (qsizetype p = first; p <= last; ++p) {
        sqlite3_bind_int64(m_windowStatement, bind++, m_keys[static_cast<size_t>(p)]);
    }
    m_window.reserve(WindowRows);
    while (true) {
        RowCache row;
        clearRow(row, 0);
        const int rc = sqlite3_step(m_windowStatement);
        if (rc != SQLITE_ROW) {
            if (rc != SQLITE_DONE) {
                m_windowFailure = sqliteFailure(rc, QStringLiteral("read"));
                // The rows read before the failure are kept; the others are
                // not "gone".
            }
            break;
        }
        row.rowId = sqlite3_column_int64(m_windowStatement, 0);
        readColumns(m_windowStatement, 1, m_hotColumns, row);
        m_windowSlots.emplace(row.rowId, m_window.size());
        m_window.push_back(std::move(row));
    }
    sqlite3_reset(m_windowStatement);
    m_windowAge.start();
}

// Copies the columns of the row a statement stands on; steps it first when it
// has not been stepped (firstResultColumn 0 means a one-row statement to run).
bool SqliteRecordset::readColumns(sqlite3_stmt* statement, int firstResultColumn, const std::vector<int>& columns, RowCache& row)
{
    if (firstResultColumn == 0) {
        const int rc = sqlite3_step(statement);
        if (rc != SQLITE_ROW) {
            bool read = true;
            if (rc == SQLITE_DONE) {
                row.missing = true;
            } else {
                sqliteFailure(rc, QStringLiteral("read"));
                read = false;
            }
            sqlite3_reset(statement);
            return read;
        }
    }
    for (size_t k = 0; k < columns.size(); ++k) {
        const int at = firstResultColumn + static_cast<int>(k);
        const auto i = static_cast<size_t>(columns[k]);
        const int type = sqlite3_column_type(statement, at);
        row.present[i] = 1;
        row.types[i] = type;
        if (type == SQLITE_INTEGER) {
            row.integers[i] = sqlite3_column_int64(statement, at);
        } else if (type == SQLITE_FLOAT) {
            row.reals[i] = sqlite3_column_double(statement, at);
        } else if (type == SQLITE_TEXT || type == SQLITE_BLOB) {
            const auto* data = static_cast<const char*>(type == SQLITE_TEXT ? static_cast<const void*>(sqlite3_column_text(statement, at))
                                                                            : sqlite3_column_blob(statement, at));
            const auto length = static_cast<size_t>(sqlite3_column_bytes(statement, at));
            row.spans[i] = {row.bytes.size(), length};
            row.bytes.append(data ? data : "", length);
        }
    }
    if (firstResultColumn == 0) {
        sqlite3_reset(statement);
    }
    return true;
}

QVariant SqliteRecordset::convert(int column, const RowCache& row) const
{
    const auto i = static_cast<size_t>(column);
    const int type = row.types[i];
    if (type == SQLITE_NULL) {
        return {};
    }
    const FieldKind kind = m_columns[i].kind;
    QString text;
    if (type == SQLITE_TEXT || type == SQLITE_BLOB) {
        text = QString::fromUtf8(row.bytes.data() + row.spans[i].first, static_cast<qsizetype>(row.spans[i].second));
    }
    switch (kind) {
    case FieldKind::Text:
    case FieldKind::LongText:
        if (type == SQLITE_INTEGER) {
            return QString::number(row.integers[i]);
        }
        if (type == SQLITE_FLOAT) {
            return QString::number(row.reals[i], 'g', 15);
        }
        return text;
    case FieldKind::Counter:
        if (type == SQLITE_INTEGER) {
            return QVariant::fromValue<qlonglong>(row.integers[i]);
        }
        return type == SQLITE_FLOAT ? QVariant::fromValue<qlonglong>(static_cast<qlonglong>(row.reals[i])) : QVariant(text);
    case FieldKind::Number:
    case FieldKind::Money:
        if (type == SQLITE_INTEGER) {
            return static_cast<double>(row.integers[i]);
        }
        if (type == SQLITE_FLOAT) {
            return row.reals[i];
        }
        {
            bool ok = false;
            const double number = text.trimmed().toDouble(&ok);
            return ok ? QVariant(number) : QVariant(text);
        }
    case FieldKind::Date: {
        const QDate date = dateOf(text);
        return date.isValid() ? QVariant(date) : QVariant(text);
    }
    case FieldKind::DateTime: {
        const QDate date = dateOf(text);
        if (!date.isValid()) {
            return text;
        }
        const QTime time = text.size() > 10 ? timeOf(text) : QTime(0, 0);
        return QDateTime(date, time.isValid() ? time : QTime(0, 0));
    }
    case FieldKind::Time: {
        const QTime time = timeOf(text);
        return time.isValid() ? QVariant(time) : QVariant(text);
    }
    }
    return text;
}

QVariant SqliteRecordset::value(int index) const
{
    if (index < 0 || index >= fieldCount()) {
        return {};
    }
    for (const auto& [column, stored] : m_pending) {
        if (column == index) {
            // A value set and not yet written reads back as it will be stored.
            RowCache one;
            one.types.assign(m_columns.size(), SQLITE_NULL);
            one.spans.assign(m_columns.size(), {0, 0});
            one.reals.assign(m_columns.size(), 0);
            one.integers.assign(m_columns.size(), 0);
            const auto i = static_cast<size_t>(index);
            if (!stored.isNull()) {
                if (stored.typeId() == QMetaType::Double) {
                    one.types[i] = SQLITE_FLOAT;
                    one.reals[i] = stored.toDouble();
                } else if (stored.typeId() == QMetaType::LongLong) {
                    one.types[i] = SQLITE_INTEGER;
                    one.integers[i] = stored.toLongLong();
                } else {
                    one.types[i] = SQLITE_TEXT;
                    one.bytes = stored.toString().toStdString();
                    one.spans[i] = {0, one.bytes.size()};
                }
            }
            return convert(index, one);
        }
    }
    if (!onRow()) {
        return {};
    }
    const RowCache& row = rowWith(index);
    if (row.missing) {
        return {};
    }
    return convert(index, row);
}

QVariant SqliteRecordset::value(const QString& name) const
{
    return value(fieldIndex(name));
}

QString SqliteRecordset::text(const QString& name) const
{
    const int index = fieldIndex(name);
    const QVariant v = value(index);
    if (v.isNull()) {
        return {};
    }
    switch (v.typeId()) {
    case QMetaType::QDate:
        return v.toDate().toString(QStringLiteral("MM/dd/yyyy"));
    case QMetaType::QDateTime: {
        const QDateTime moment = v.toDateTime();
        if (moment.time() == QTime(0, 0)) {
            return moment.date().toString(QStringLiteral("MM/dd/yyyy"));
        }
        return moment.toString(QStringLiteral("MM/dd/yyyy h:mm:ss AP"));
    }
    case QMetaType::QTime:
        return v.toTime().toString(QStringLiteral("h:mm:ss AP"));
    case QMetaType::Double:
        return QString::number(v.toDouble(), 'g', 15);
    default:
        return v.toString();
    }
}

StoreStatus SqliteRecordset::toStored(const Column& column, const QVariant& value, QVariant* stored) const
{
    if (value.isNull() || !value.isValid()) {
        *stored = QVariant();
        return StoreStatus::success();
    }
    auto conversionError = [&column, &value]() {
        return StoreStatus::failure(3421, QStringLiteral("The value \"%1\" cannot be stored in the column %2.")
                                              .arg(value.toString(), column.name));
    };
    switch (column.kind) {
    case FieldKind::Text:
    case FieldKind::LongText:
        *stored = value.toString();
        return StoreStatus::success();
    case FieldKind::Counter:
        return StoreStatus::failure(3164, QStringLiteral("The column %1 is numbered by the store and cannot be written.").arg(column.name));
    case FieldKind::Number:
    case FieldKind::Money: {
        if (value.typeId() == QMetaType::QString) {
            const QString text = value.toString().trimmed();
            if (text.isEmpty()) {
                *stored = QVariant();
                return StoreStatus::success();
            }
            bool ok = false;
            const double number = text.toDouble(&ok);
            if (!ok) {
                return conversionError();
            }
            *stored = number;
            return StoreStatus::success();
        }
        bool ok = false;
        const double number = value.toDouble(&ok);
        if (!ok) {
            return conversionError();
        }
        *stored = number;
        return StoreStatus::success();
    }
    case FieldKind::Date:
    case FieldKind::DateTime:
    case FieldKind::Time: {
        QDate date;
        QTime time(0, 0);
        bool hasDate = false;
        bool hasTime = false;
        if (value.typeId() == QMetaType::QDate) {
            date = value.toDate();
            hasDate = date.isValid();
        } else if (value.typeId() == QMetaType::QDateTime) {
            date = value.toDateTime().date();
            time = value.toDateTime().time();
            hasDate = date.isValid();
            hasTime = true;
        } else if (value.typeId() == QMetaType::QTime) {
            time = value.toTime();
            hasTime = time.isValid();
        } else {
            const QString text = value.toString().trimmed();
            if (text.isEmpty()) {
                *stored = QVariant();
                return StoreStatus::success();
            }
            if (!parseDateLiteral(text, &date, &time, &hasDate, &hasTime)) {
                const QDateTime iso = QDateTime::fromString(text, Qt::ISODate);
                if (!iso.isValid()) {
                    return conversionError();
                }
                date = iso.date();
                time = iso.time();
                hasDate = hasTime = true;
            }
        }
        if (column.kind == FieldKind::Time) {
            if (!hasTime && !hasDate) {
                return conversionError();
            }
            *stored = time.toString(QStringLiteral("HH:mm:ss"));
        } else if (!hasDate) {
            return conversionError();
        } else if (column.kind == FieldKind::Date) {
            *stored = date.toString(Qt::ISODate);
        } else {
            *stored = date.toString(Qt::ISODate) + QLatin1Char('T') + time.toString(QStringLiteral("HH:mm:ss"));
        }
        return StoreStatus::success();
    }
    }
    return conversionError();
}

StoreStatus SqliteRecordset::setValue(const QString& name, const QVariant& value)
{
    const int index = fieldIndex(name);
    if (index < 0) {
        return fail(StoreErrorNumber::UnknownField, QStringLiteral("Item not found in this collection: %1.").arg(name));
    }
    if (!m_newRow && !onRow()) {
        return fail(StoreErrorNumber::NoCurrentRecord, QStringLiteral("No current record to change."));
    }
    QVariant stored;
    StoreStatus status = toStored(m_columns[static_cast<size_t>(index)], value, &stored);
    if (!status.ok()) {
        m_lastStatus = status;
        return status;
    }
    for (auto& [column, pendingValue] : m_pending) {
        if (column == index) {
            pendingValue = stored;
            m_editing = true;
            return StoreStatus::success();
        }
    }
    m_pending.emplace_back(index, stored);
    m_editing = true;
    return StoreStatus::success();
}

StoreStatus SqliteRecordset::beginTransaction()
{
    if (m_transactionLost) {
        return lostTransaction();
    }
    if (m_transactionDepth == 0) {
        const int rc = sqlite3_exec(m_db, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
        if (rc != SQLITE_OK) {
            return sqliteFailure(rc, QStringLiteral("write"));
        }
    }
    ++m_transactionDepth;
    return StoreStatus::success();
}

StoreStatus SqliteRecordset::commitTransaction()
{
    if (m_transactionLost || (m_transactionDepth > 0 && sqlite3_get_autocommit(m_db))) {
        return lostTransaction();
    }
    if (m_transactionDepth == 0) {
        return StoreStatus::success();
    }
    StoreStatus status = flushPendingEdit();
    if (!status.ok()) {
        return status;
    }
    if (--m_transactionDepth > 0) {
        return StoreStatus::success();
    }
    const int rc = sqlite3_exec(m_db, "COMMIT", nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK) {
        status = sqliteFailure(rc, QStringLiteral("write"));
        rollbackTransaction();
        return status;
    }
    return StoreStatus::success();
}

void SqliteRecordset::rollbackTransaction()
{
    if (m_transactionDepth == 0 && !m_transactionLost) {
        return;
    }
    m_transactionDepth = 0;
    m_transactionLost = false;
    m_lossCause = StoreStatus::success();
    m_editing = false;
    m_newRow = false;
    m_pending.clear();
    sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
    // Rows written in the transaction are gone again: read the result anew.
    if (runKeysetQuery().ok()) {
        moveTo(m_keys.empty() ? -1 : 0);
    }
}

} // namespace pvardo::store
