#pragma once

#include "store/Recordset.h"

#include <QDateTime>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace pvardo::store {

// The query language the program speaks: plain selects of one table, as the
// screens build them by joining texts. This is a small parser of exactly that
// language; a text outside it is refused, so nothing else reaches the engine.
//
//   select   := SELECT * FROM name [WHERE expr] [ORDER BY name [ASC|DESC] {, ...}] [;]
//   expr     := term {OR term}
//   term     := factor {AND factor}
//   factor   := NOT factor | ( expr ) | operand compare operand
//   compare  := = | <> | < | > | <= | >= | LIKE
//   operand  := [name] | name | 'text' | #date# | number

struct SqlLiteral {
    enum class Kind { Column, Text, Number, Date };
    Kind kind = Kind::Text;
    QString text;       // column name or text literal
    double number = 0;  // number literal
    QDate date;         // date literal
    QTime time;         // time of a date literal, when it has one
    bool hasDate = false;
    bool hasTime = false;
};

enum class SqlCompare { Equal, NotEqual, Less, Greater, LessOrEqual, GreaterOrEqual, Like };

struct SqlExpression {
    enum class Kind { And, Or, Not, Compare };
    Kind kind = Kind::Compare;
    std::vector<std::unique_ptr<SqlExpression>> children; // And, Or, Not
    SqlLiteral left;                                       // Compare
    SqlCompare compare = SqlCompare::Equal;
    SqlLiteral right;
};

struct SqlOrder {
    QString column;
    bool descending = false;
};

struct SqlSelect {
    QString table;
    std::unique_ptr<SqlExpression> where;
    std::vector<SqlOrder> orderBy;
};

// A typed value as a text literal of a query text: between apostrophes, with
// each apostrophe in it doubled, so "O'Brien" searches for O'Brien. Every
// query text and criterion built from what someone typed takes its values
// through here.
QString quotedText(const QString& value);

// Parses a query text. Gives nullopt and a reason for anything outside the language.
std::optional<SqlSelect> parseSelect(const QString& text, QString* error);

// Parses the criteria of Find: one condition, or several joined as in a where clause.
std::unique_ptr<SqlExpression> parseCriteria(const QString& text, QString* error);

// Reads a date as the program writes it between "#": m/d/yy, m/d/yyyy or
// yyyy-mm-dd, with an optional time "h:mm[:ss] [AM|PM]". Two-digit years
// below 30 are of the 2000s.
bool parseDateLiteral(const QString& text, QDate* date, QTime* time, bool* hasDate, bool* hasTime);

// The SQLite form of a parsed condition, with its values to bind.
struct TranslatedSql {
    QString sql;
    QVariantList binds;
};

// Looks up the kind of a column by name; nullopt when the table has none.
using ColumnKindLookup = std::function<std::optional<FieldKind>(const QString& name, QString* canonicalName)>;

// Translates a condition to SQLite, comparing as the office's engine did: texts
// without regard to case, a number with a text column by the text's number,
// dates by their calendar order. Fails (3604, 3464 or 3265) with a reason.
StoreStatus translateCondition(const SqlExpression& expression, const ColumnKindLookup& kinds, TranslatedSql* out);

// The ORDER BY clause of a select, without the keyword; texts without regard to case.
StoreStatus translateOrder(const std::vector<SqlOrder>& order, const ColumnKindLookup& kinds, QString* out);

} // namespace pvardo::store
