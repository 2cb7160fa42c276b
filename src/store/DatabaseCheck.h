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
    bool ok() const { return problems.isEmpty(); }
};

// SQLite's quick check of a file, then its table and the columns the
// catalogue gives it. Only reads the file.
FileVerdict verifyDatabaseFile(const QString& path, const TableDef& table);

// verifyDatabaseFile of every database file of the catalogue that is in the
// folder; the parcel store may be of either generation.
QList<FileVerdict> verifyDatabaseFolder(const QString& folder);

// The message that names damaged files and says what to do.
QString damagedFilesMessage(const QList<FileVerdict>& verdicts);

} // namespace pvardo::store
