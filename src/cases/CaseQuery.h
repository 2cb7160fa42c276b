#pragma once

#include "store/ColumnMap.h"

#include <QDate>
#include <QList>
#include <QPair>
#include <QString>
#include <optional>

namespace pvardo::cases {

// What the clerk typed and picked on the cleared case screen for a search by
// example.
struct CaseExample
{
    QString caseNumber; // Text1(1)
    store::BoxReader box; // the text inputs by number
    // The lists in the order they join the search (Combo1, 2, 3, 4, 6, 7, 8):
    // column and the list's text; "<select>" takes no part.
    QList<QPair<QString, QString>> lists;
    // The file-date picker: once it has been changed in this run, every
    // search carries its date.
    bool fileDateMarked = false;
    QDate fileDate;
};

// Turns a search by example into the query text of the case table. Values are
// written as quoted texts, apostrophes doubled, so "O'Brien" finds O'Brien.
// The result of a search is the same query text the reports and other screens
// read back.
class CaseQuery
{
public:
    // The whole table, in case number order.
    static QString fullQuery() { return QStringLiteral("Select * from PBPROJ order by PBCASE"); }

    // The query of the example, or nothing when no input holds a criterion.
    static std::optional<QString> build(const store::ColumnMap& map, const CaseExample& example);

    // The lists of the case screen, with the column each searches, in order.
    static QList<QPair<QString, QString>> listColumns();
};

} // namespace pvardo::cases
