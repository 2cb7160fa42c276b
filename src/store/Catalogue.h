#pragma once

#include "store/Recordset.h"

#include <QString>
#include <QStringList>

#include <span>

struct sqlite3;

namespace pvardo::store {

// Every table the program knows, in one place: the tables of the database
// files, their columns, kinds and widths, and the places of ColumnMap.

enum class Table {
    PBPROJ,
    PBFEES,
    BONDS,
    MEETING,
    ACTIONS,
    ISSUES,
    PBSEQRA,
    PBAGENCY,
    PBMAPS,
    PBWETL,
    ADJ,
    CHECKLIST,
    SBL,   // the older parcel table, 13 columns
    SBL18, // the newer parcel table, 18 columns, table name SBL
    RPS,
    PBREVIEW, // kept for the sibling inspection program; nothing here opens it
    DB5,
    DB6,
    DB7,
};

// One column of a table, or one place of ColumnMap.
struct ColumnDef {
    const char* name;
    FieldKind kind;
    int longest; // longest value; 0 means no limit
    int box;     // entry box of the screen that shows it; 0 for none
};

struct TableDef {
    Table id;
    const char* tableName; // the table inside the file
    const char* fileName;  // the database file, e.g. "pbproj.db"
    bool seeded;           // a seed of the file is delivered in wrk/
    bool inColumnMap;      // the places of ColumnMap are the columns below
    std::span<const ColumnDef> places; // in ColumnMap order; a name may stand twice
    std::span<const ColumnDef> extraColumns; // columns outside the map
    std::span<const char* const> indexedColumns; // looked up, so indexed
    const char* uniqueColumn; // nullptr, or the column with a unique index
};

const TableDef& tableDef(Table table);
std::span<const TableDef> allTables();

// The distinct physical columns of a table, in order: the places, a repeated
// name once, then the extra columns.
QList<ColumnDef> physicalColumns(const TableDef& table);

// The database files of the database folder, one per table, as the office
// keeps them: pbproj.db and the fourteen others.
QStringList databaseFileNames();

// The seeds delivered in wrk/, by file name.
QStringList seedFileNames();
const TableDef* seedTableFor(const QString& fileName);

// The statements that make a table and its indexes in an empty database.
QStringList createStatements(const TableDef& table);

// Makes a database file holding the empty table; replaces nothing: an existing
// file is an error. Written whole through a temporary file.
StoreStatus createDatabaseFile(const QString& path, const TableDef& table);

} // namespace pvardo::store
