#pragma once

#include "store/StoreError.h"

#include <QString>
#include <QVariant>

#include <cstdint>
#include <memory>

namespace pvardo::store {

// What a column holds, as the program sees it.
enum class FieldKind {
    Text,     // text with a longest value
    LongText, // text without limit
    Date,     // a calendar date
    Time,     // a time of day
    DateTime, // a date and a time
    Number,   // a number
    Money,    // a number shown as money
    Counter,  // a number given by the store to each new row
};

// A saved position of a cursor: the row it was on.
struct Bookmark {
    std::int64_t rowId = 0;
    bool operator==(const Bookmark&) const = default;
};

// Special values of AbsolutePosition() when the cursor is on no row.
namespace Position {
constexpr int Unknown = -1;
constexpr int BeforeFirst = -2;
constexpr int AfterLast = -3;
} // namespace Position

// The cursor every screen and service works with: a forward and backward
// cursor over the result of one query text, positioned on the first row when
// opened, updatable because every query is a plain select of one table, with
// the full row count at once.
//
// Values are read and written by column name. A column that holds nothing
// reads as a null QVariant from value() and as the empty text from text().
// Dates read as QDate, times as QTime, dates with times as QDateTime, numbers
// as double (counters as qint64), texts as QString.
//
// Changes to the current row (setValue) and a new row (AddNew) are written by
// Update(). A move with unwritten changes writes them first, as the office's
// database engine did.
class Recordset
{
public:
    virtual ~Recordset() = default;

    // The query text this cursor was opened with.
    virtual QString queryText() const = 0;
    // The full path of the database file.
    virtual QString databasePath() const = 0;
    // The table the query reads.
    virtual QString tableName() const = 0;

    virtual bool Bof() const = 0;
    virtual bool Eof() const = 0;
    virtual int RecordCount() const = 0;
    // 1-based position of the current row, or one of the Position values.
    virtual int AbsolutePosition() const = 0;

    virtual Bookmark bookmark() const = 0;
    // Returns to a saved row; false when that row is no longer in the result.
    virtual bool setBookmark(const Bookmark& mark) = 0;

    virtual StoreStatus MoveFirst() = 0;
    virtual StoreStatus MoveLast() = 0;
    virtual StoreStatus MoveNext() = 0;
    virtual StoreStatus MovePrevious() = 0;
    virtual StoreStatus Move(int rows) = 0;

    // Starts a new row; values set after it belong to it until Update().
    virtual void AddNew() = 0;
    // True between AddNew() or a setValue() and the Update() or CancelUpdate() that ends it.
    virtual bool isEditing() const = 0;
    virtual bool isNewRow() const = 0;
    // Writes the new or changed row. A second row with the key of a unique
    // index gives StoreErrorNumber::DuplicateKey and leaves the row unwritten.
    virtual StoreStatus Update() = 0;
    // Drops the changes of the current or new row.
    virtual void CancelUpdate() = 0;
    // Deletes the current row; the cursor then stands on no row until it is moved.
    virtual StoreStatus Delete() = 0;
    // Runs the query again and stands on the first row.
    virtual StoreStatus Requery() = 0;
    // Looks forward from the current row for the first row that meets one
    // criterion ("[PBCASE] = '12-207'"); stands on it, or after the last row
    // (Eof) when there is none.
    virtual StoreStatus Find(const QString& criteria, int skip = 0, bool forward = true) = 0;
    // Stands on the first row of the result whose column equals the value (a
    // text compared without regard to case), or after the last row (Eof) when
    // there is none. The value is bound, never joined into a statement, so any
    // spelling is found. A row another workstation wrote since the cursor was
    // opened is found too: the result is read again to take it in.
    virtual StoreStatus FindKey(const QString& column, const QVariant& value) = 0;

    // Fields of the current row.
    virtual int fieldCount() const = 0;
    virtual QString fieldName(int index) const = 0;
    virtual FieldKind fieldKind(int index) const = 0;
    virtual int fieldIndex(const QString& name) const = 0; // -1 when the table has no such column
    virtual bool hasField(const QString& name) const { return fieldIndex(name) >= 0; }

    virtual QVariant value(const QString& name) const = 0;
    virtual QVariant value(int index) const = 0;
    // The value as text, a null read as the empty text: the reading every screen uses.
    virtual QString text(const QString& name) const = 0;
    // Sets a value of the current or new row. Texts are stored as given;
    // the limits of the columns are the callers' (ColumnMap cuts them).
    virtual StoreStatus setValue(const QString& name, const QVariant& value) = 0;

    // Groups the writes that follow into one transaction of the file, for long
    // runs of writes such as a roll import: much faster, and a run stopped
    // half-way leaves the rows of the groups already committed, whole. Other
    // workstations wait while a group is open, so keep groups short.
    virtual StoreStatus beginTransaction() = 0;
    virtual StoreStatus commitTransaction() = 0;
    virtual void rollbackTransaction() = 0;

    // The last failure of a move, a write or a find.
    virtual StoreStatus lastStatus() const = 0;
    // Whether the values of the current row could be read. A row that cannot
    // be read from a damaged file is error 3343, never an empty row: a screen
    // that shows a row asks this and says so.
    virtual StoreStatus rowStatus() const = 0;
};

// Opens a cursor on a database file with a query text of the program's subset.
// Gives nullptr and the status when that failed: 16389 for a missing file,
// 3604 for a query outside the subset, 3343 for a file that is not a database.
std::unique_ptr<Recordset> openRecordset(const QString& connectionString, const QString& queryText,
                                         StoreStatus* status);

// The same with the file's path in place of a connection string.
std::unique_ptr<Recordset> openRecordsetAt(const QString& databasePath, const QString& queryText,
                                           StoreStatus* status);

} // namespace pvardo::store
