#pragma once

#include "store/Recordset.h"
#include "store/SqlSubset.h"

#include <QElapsedTimer>
#include <QHash>
#include <QStringList>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace pvardo::store {

// The cursor on an SQLite file. It keeps the row ids of the result in the
// order of the query (a keyset) and reads a row's values only when asked, so
// a large result opens fast and holds little memory. Every statement is reset
// as soon as it has run: between calls the cursor holds no lock on the file,
// and other workstations can write.
class SqliteRecordset final : public Recordset
{
public:
    ~SqliteRecordset() override;

    static std::unique_ptr<SqliteRecordset> open(const QString& path, const QString& queryText, StoreStatus* status);

    QString queryText() const override { return m_queryText; }
    QString databasePath() const override { return m_path; }
    QString tableName() const override { return m_table; }

    bool Bof() const override;
    bool Eof() const override;
    int RecordCount() const override;
    int AbsolutePosition() const override;
    Bookmark bookmark() const override;
    bool setBookmark(const Bookmark& mark) override;

    StoreStatus MoveFirst() override;
    StoreStatus MoveLast() override;
    StoreStatus MoveNext() override;
    StoreStatus MovePrevious() override;
    StoreStatus Move(int rows) override;

    void AddNew() override;
    bool isEditing() const override { return m_editing; }
    bool isNewRow() const override { return m_newRow; }
    StoreStatus Update() override;
    void CancelUpdate() override;
    StoreStatus Delete() override;
    StoreStatus Requery() override;
    StoreStatus Find(const QString& criteria, int skip, bool forward) override;
    StoreStatus FindKey(const QString& column, const QVariant& value) override;

    int fieldCount() const override { return static_cast<int>(m_columns.size()); }
    QString fieldName(int index) const override;
    FieldKind fieldKind(int index) const override;
    int fieldIndex(const QString& name) const override;
    QVariant value(const QString& name) const override;
    QVariant value(int index) const override;
    QString text(const QString& name) const override;
    StoreStatus setValue(const QString& name, const QVariant& value) override;

    StoreStatus beginTransaction() override;
    StoreStatus commitTransaction() override;
    void rollbackTransaction() override;

    StoreStatus lastStatus() const override { return m_lastStatus; }
    StoreStatus rowStatus() const override;

private:
    struct Column {
        QString name;
        FieldKind kind;
    };

    // One row's values as read: the raw bytes of each column kept in one buffer.
    struct RowCache {
        std::int64_t rowId = 0;
        bool loaded = false;
        bool missing = false; // the row is gone (another workstation deleted it)
        std::vector<char> present; // the column has been read
        std::vector<int> types;
        std::vector<std::pair<size_t, size_t>> spans; // offset and length in bytes
        std::vector<double> reals;
        std::vector<std::int64_t> integers;
        std::string bytes;
    };

    SqliteRecordset() = default;

    StoreStatus prepareStatement(const QString& sql, sqlite3_stmt** statement);
    sqlite3_stmt* cachedStatement(const QString& sql, StoreStatus* status);
    StoreStatus bindAll(sqlite3_stmt* statement, const QVariantList& binds);
    StoreStatus loadColumns();
    // Runs one statement that writes, with its values.
    StoreStatus runWrite(const QString& sql, const QVariantList& binds, const QString& what);
    StoreStatus runWrite(sqlite3_stmt* statement, const QVariantList& binds, const QString& what);
    sqlite3_stmt* writeStatement(bool insert);
    sqlite3_stmt* keyLookup(const QString& criteria);
    StoreStatus runKeysetQuery();
    StoreStatus fail(long long number, const QString& description);
    StoreStatus sqliteFailure(int code, const QString& what);
    // After a failed statement: SQLite rolls a whole group of changes back on
    // some errors (a full disk, an I/O error), and later statements would then
    // each be written on their own. The group is marked lost instead.
    void noteTransactionState();
    StoreStatus lostTransaction();
    std::optional<FieldKind> kindOf(const QString& name, QString* canonical) const;
    StoreStatus flushPendingEdit();
    StoreStatus moveTo(qsizetype index);
    const RowCache& rowWith(int column) const;
    void startRow(std::int64_t rowId);
    void fetchWindow();
    void clearRow(RowCache& row, std::int64_t rowId) const;
    // False when the row could not be read (a damaged file).
    bool readColumns(sqlite3_stmt* statement, int firstResultColumn, const std::vector<int>& columns, RowCache& row);
    void dropWindow();
    QVariant convert(int column, const RowCache& row) const;
    StoreStatus toStored(const Column& column, const QVariant& value, QVariant* stored) const;
    void rebuildPositions() const;
    bool onRow() const;

    QString m_path;
    QString m_queryText;
    QString m_table;
    sqlite3* m_db = nullptr;
    std::vector<Column> m_columns;
    QHash<QString, int> m_columnIndex; // upper-case name to index
    QString m_keysetSql;
    QVariantList m_keysetBinds;

    std::vector<std::int64_t> m_keys;
    qsizetype m_pos = -1; // -1 before the first row, m_keys.size() after the last
    bool m_onDeletedRow = false;
    mutable std::unordered_map<std::int64_t, qsizetype> m_positions;
    mutable bool m_positionsValid = false;

    mutable RowCache m_row;
    bool m_editing = false;
    bool m_newRow = false;
    std::vector<std::pair<int, QVariant>> m_pending; // column index and stored value
    qsizetype m_posBeforeNew = -1;

    QHash<QString, sqlite3_stmt*> m_statements;
    QHash<QByteArray, sqlite3_stmt*> m_writeStatements; // by column set; owned by m_statements
    QHash<int, sqlite3_stmt*> m_keyLookups;             // by column; owned by m_statements
    // The columns asked for so far. Rows are read in windows of these columns
    // for the rows around the current one, in one statement: each statement
    // takes and drops the file's lock, and that, not the reading, is what a
    // walk over many rows would otherwise spend its time on. A window is
    // dropped after any write, and read again when it is older than a moment,
    // so another workstation's changes show as soon as a user moves.
    std::vector<int> m_hotColumns;
    sqlite3_stmt* m_windowStatement = nullptr; // owned by m_statements
    std::vector<RowCache> m_window;
    std::unordered_map<std::int64_t, size_t> m_windowSlots;
    QElapsedTimer m_windowAge;
    bool m_movingBack = false;
    bool m_stepping = false; // the last move was one row forward or back
    int m_transactionDepth = 0;
    bool m_transactionLost = false;
    StoreStatus m_lossCause;
    StoreStatus m_lastStatus;
    StoreStatus m_windowFailure; // the last window read failed
    StoreStatus m_rowFailure;    // the current row could not be read
};

} // namespace pvardo::store
