#pragma once

#include <QDateTime>
#include <QString>

namespace pvardo::store {

// SQLite's integrity check of one database file: empty when the file is whole,
// else the first things it found wrong (or why the file cannot be opened).
QString integrityProblems(const QString& file);

// The rows of a table, or -1 when they cannot be counted (the count stops at
// the damage).
qint64 countRows(const QString& file, const QString& table);

struct RecoveryResult {
    bool done = false;
    QString error;            // why nothing was changed, when not done
    qint64 rowsBefore = -1;   // the damaged file's rows, -1 when it cannot count them
    qint64 rowsAfter = 0;     // the rows of the new file
    qint64 rowsRefused = 0;   // rows read but refused by a unique key of the table
    QString keptAs;           // the damaged file's new name, beside the new one
};

// Recovers a damaged database file: every row SQLite can still read, table
// by table in key order, stepping over pages it cannot, goes into a new file
// with the damaged file's tables and indexes. The new file
// takes the file's place; the damaged one is kept beside it under the name
// "<file>.damaged-<yyyyMMdd-HHmmss>", with its journal files. Nothing is
// changed when the new file cannot be made.
RecoveryResult recoverDatabaseFile(const QString& file, const QDateTime& now);

} // namespace pvardo::store
