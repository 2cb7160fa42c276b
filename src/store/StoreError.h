#pragma once

#include <QString>

namespace pvardo::store {

// The error numbers the screens act on. They are the numbers the office's
// database engine gave, kept so that every screen's handling reads the same.
namespace StoreErrorNumber {
constexpr int None = 0;
constexpr int BadSql = 3604;           // statement outside the subset, or broken by an apostrophe
constexpr int DatabaseNotFound = 16389; // the database file is not there
constexpr int LostConnection = 3639;   // the file went away or could not be read while open
constexpr long long DuplicateKey = 0x80004005; // a write refused by a unique index
constexpr int Locked = 3260;           // another workstation holds the file too long
constexpr int NotADatabase = 3343;     // the file is not a database of this program
constexpr int TypeMismatch = 3464;     // a value that cannot be compared with its column
constexpr int NoCurrentRecord = 3021;  // a read or write with the cursor before the first or after the last row
constexpr int RowDeleted = 3167;       // the row was deleted, by this cursor or another workstation
constexpr int UnknownTable = 3078;     // the query names a table the file does not hold
constexpr int UnknownField = 3265;     // a field name the table does not have
constexpr int WriteFailed = 3026;      // the disk is full or the file cannot be written
} // namespace StoreErrorNumber

// What a store call that can fail gives back. Callers test it; nothing is thrown.
struct StoreStatus {
    long long number = StoreErrorNumber::None;
    QString description;

    bool ok() const { return number == StoreErrorNumber::None; }
    explicit operator bool() const { return ok(); }

    static StoreStatus success() { return {}; }
    static StoreStatus failure(long long number, QString description)
    {
        return StoreStatus{number, std::move(description)};
    }
};

} // namespace pvardo::store
