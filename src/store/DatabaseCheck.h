#pragma once

#include "store/Catalogue.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace pvardo::store {

// What a look into one database file found.
struct FileVerdict {
    QString path;
    bool damaged = false;  // SQLite's quick check failed, or the file is no database
    QStringList problems;  // what is wrong, one line each; empty when the file is sound
    // What is not damage but needs the office's hand: a key left without its
    // unique index (keyIndexNotice).
    QStringList notices;
    bool ok() const { return problems.isEmpty(); }
};

// Said when a table whose key must be unique (case numbers, parcel
// identifiers) has no unique index because several of its rows have a blank
// key: such rows cannot be merged by key, so the index is never made and the
// file accepts a second row with a number it already holds. Empty when the
// index is there, the table has no such key, or the file cannot be read.
QString keyIndexNotice(const QString& path, const TableDef& table);

// keyIndexNotice of every file of the catalogue in the folder, the empty ones
// left out.
QStringList keyIndexNotices(const QString& folder);

// The message that names such tables and says what to do; empty when there
// are none.
QString keyIndexMessage(const QStringList& notices);

// SQLite's quick check of a file, then its table and the columns the
// catalogue gives it. Only reads the file.
FileVerdict verifyDatabaseFile(const QString& path, const TableDef& table);

// verifyDatabaseFile of every database file of the catalogue that is in the
// folder; the parcel store may be of either generation.
QList<FileVerdict> verifyDatabaseFolder(const QString& folder);

// The message that names damaged files and says what to do.
QString damagedFilesMessage(const QList<FileVerdict>& verdicts);

} // namespace pvardo::store
