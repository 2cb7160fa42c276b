#include "store/SqlSubset.h"

#include "common/Clock.h"
#include "common/DateText.h"

#include <QRegularExpression>

namespace pvardo::store {

namespace {

enum class TokenKind { Name, Bracketed, Text, Date, Number, Symbol, End };

struct Token {
    TokenKind kind = TokenKind::End;
    QString text;
    qsizetype position = 0;
};

// Splits a query text into tokens. A text literal runs to the next quote; two
// quotes in a row stand for one. So a value with an apostrophe, joined in
// without doubling it, leaves an unbalanced quote and the text is refused.
class Tokenizer
{
public:
    explicit Tokenizer(const QString& text) : m_text(text) {}

    bool run(std::vector<Token>* tokens, QString* error)
    {
        while (true) {
            skipBlanks();
            if (m_pos >= m_text.size()) {
                tokens->push_back(Token{TokenKind::End, {}, m_pos});
                return true;
            }
            const QChar c = m_text.at(m_pos);
            const qsizetype start = m_pos;
            if (c == QLatin1Char('[')) {
                const qsizetype close = m_text.indexOf(QLatin1Char(']'), m_pos + 1);
                if (close < 0) {
                    return fail(error, QStringLiteral("a name in brackets is not closed"));
                }
                tokens->push_back(Token{TokenKind::Bracketed, m_text.mid(m_pos + 1, close - m_pos - 1), start});
                m_pos = close + 1;
            } else if (c == QLatin1Char('\'')) {
                QString value;
                ++m_pos;
                bool closed = false;
                while (m_pos < m_text.size()) {
                    const QChar d = m_text.at(m_pos++);
                    if (d == QLatin1Char('\'')) {
                        if (m_pos < m_text.size() && m_text.at(m_pos) == QLatin1Char('\'')) {
                            value.append(d);
                            ++m_pos;
                            continue;
                        }
                        closed = true;
                        break;
                    }
                    value.append(d);
                }
                if (!closed) {
                    return fail(error, QStringLiteral("a text in quotes is not closed"));
                }
                tokens->push_back(Token{TokenKind::Text, value, start});
            } else if (c == QLatin1Char('#')) {
                const qsizetype close = m_text.indexOf(QLatin1Char('#'), m_pos + 1);
                if (close < 0) {
                    return fail(error, QStringLiteral("a date between # is not closed"));
                }
                tokens->push_back(Token{TokenKind::Date, m_text.mid(m_pos + 1, close - m_pos - 1), start});
                m_pos = close + 1;
            } else if (c.isDigit() || (c == QLatin1Char('.') && nextIsDigit())
                       || (c == QLatin1Char('-') && signAllowed(*tokens) && (nextIsDigit() || nextIsPointDigit()))) {
                ++m_pos;
                while (m_pos < m_text.size() && (m_text.at(m_pos).isDigit() || m_text.at(m_pos) == QLatin1Char('.'))) {
                    ++m_pos;
                }
                tokens->push_back(Token{TokenKind::Number, m_text.mid(start, m_pos - start), start});
            } else if (c.isLetter() || c == QLatin1Char('_')) {
                while (m_pos < m_text.size() && (m_text.at(m_pos).isLetterOrNumber() || m_text.at(m_pos) == QLatin1Char('_'))) {
                    ++m_pos;
                }
                tokens->push_back(Token{TokenKind::Name, m_text.mid(start, m_pos - start), start});
            } else if (c == QLatin1Char('<') || c == QLatin1Char('>')) {
                ++m_pos;
                if (m_pos < m_text.size() && (m_text.at(m_pos) == QLatin1Char('=') || (c == QLatin1Char('<') && m_text.at(m_pos) == QLatin1Char('>')))) {
                    ++m_pos;
                }
                tokens->push_back(Token{TokenKind::Symbol, m_text.mid(start, m_pos - start), start});
            } else if (c == QLatin1Char('=') || c == QLatin1Char('(') || c == QLatin1Char(')') || c == QLatin1Char(',')
                       || c == QLatin1Char('*') || c == QLatin1Char(';')) {
                ++m_pos;
                tokens->push_back(Token{TokenKind::Symbol, QString(c), start});
            } else {
                return fail(error, QStringLiteral("unexpected \"%1\"").arg(c));
            }
        }
    }

private:
    void skipBlanks()
    {
        while (m_pos < m_text.size() && m_text.at(m_pos).isSpace()) {
            ++m_pos;
        }
    }
    bool nextIsDigit() const { return m_pos + 1 < m_text.size() && m_text.at(m_pos + 1).isDigit(); }
    bool nextIsPointDigit() const
    {
        return m_pos + 2 < m_text.size() && m_text.at(m_pos + 1) == QLatin1Char('.') && m_text.at(m_pos + 2).isDigit();
    }
    // A minus is a sign only where an operand may begin.
    static bool signAllowed(const std::vector<Token>& tokens)
    {
        if (tokens.empty()) {
            return true;
        }
        const Token& last = tokens.back();
        return last.kind == TokenKind::Symbol && last.text != QLatin1String(")");
    }
    bool fail(QString* error, const QString& reason) const
    {
        if (error) {
            *error = QStringLiteral("%1 at character %2").arg(reason).arg(m_pos + 1);
        }
        return false;
    }

    const QString& m_text;
    qsizetype m_pos = 0;
};

class Parser
{
public:
    Parser(std::vector<Token> tokens, QString* error) : m_tokens(std::move(tokens)), m_error(error) {}

    std::optional<SqlSelect> select()
    {
        SqlSelect statement;
        if (!expectKeyword("select") || !expectSymbol("*") || !expectKeyword("from")) {
            return std::nullopt;
        }
        if (!name(&statement.table)) {
            return fail("a table name is expected after FROM");
        }
        if (isKeyword("where")) {
            advance();
            statement.where = expression();
            if (!statement.where) {
                return std::nullopt;
            }
        }
        if (isKeyword("order")) {
            advance();
            if (!expectKeyword("by")) {
                return std::nullopt;
            }
            do {
                SqlOrder item;
                if (!name(&item.column)) {
                    return fail("a column name is expected in ORDER BY");
                }
                if (isKeyword("desc")) {
                    item.descending = true;
                    advance();
                } else if (isKeyword("asc")) {
                    advance();
                }
                statement.orderBy.push_back(item);
            } while (acceptSymbol(","));
        }
        acceptSymbol(";");
        if (current().kind != TokenKind::End) {
            return fail("the statement goes on where it should end");
        }
        return statement;
    }

    std::unique_ptr<SqlExpression> criteria()
    {
        auto result = expression();
        if (result && current().kind != TokenKind::End) {
            failText("the criteria go on where they should end");
            return nullptr;
        }
        return result;
    }

private:
    static constexpr int MaxDepth = 64;

    std::unique_ptr<SqlExpression> expression()
    {
        if (++m_depth > MaxDepth) {
            failText("the condition is nested too deeply");
            return nullptr;
        }
        auto left = term();
        while (left && isKeyword("or")) {
            advance();
            auto right = term();
            if (!right) {
                return nullptr;
            }
            left = join(SqlExpression::Kind::Or, std::move(left), std::move(right));
        }
        return left;
    }

    std::unique_ptr<SqlExpression> term()
    {
        auto left = factor();
        while (left && isKeyword("and")) {
            advance();
            auto right = factor();
            if (!right) {
                return nullptr;
            }
            left = join(SqlExpression::Kind::And, std::move(left), std::move(right));
        }
        return left;
    }

    std::unique_ptr<SqlExpression> factor()
    {
        if (isKeyword("not")) {
            advance();
            if (++m_depth > MaxDepth) {
                failText("the condition is nested too deeply");
                return nullptr;
            }
            auto inner = factor();
            --m_depth;
            if (!inner) {
                return nullptr;
            }
            auto node = std::make_unique<SqlExpression>();
            node->kind = SqlExpression::Kind::Not;
            node->children.push_back(std::move(inner));
            return node;
        }
        if (acceptSymbol("(")) {
            auto inner = expression();
            if (!inner) {
                return nullptr;
            }
            --m_depth;
            if (!acceptSymbol(")")) {
                failText("a parenthesis is not closed");
                return nullptr;
            }
            return inner;
        }
        auto node = std::make_unique<SqlExpression>();
        node->kind = SqlExpression::Kind::Compare;
        if (!operand(&node->left) || !comparison(&node->compare) || !operand(&node->right)) {
            if (m_error && m_error->isEmpty()) {
                *m_error = QStringLiteral("a comparison is expected at character %1").arg(current().position + 1);
            }
            return nullptr;
        }
        return node;
    }

    bool operand(SqlLiteral* out)
    {
        const Token& token = current();
        switch (token.kind) {
        case TokenKind::Bracketed:
            out->kind = SqlLiteral::Kind::Column;
            out->text = token.text.trimmed();
            break;
        case TokenKind::Name:
            if (isReserved(token.text)) {
                return false;
            }
            out->kind = SqlLiteral::Kind::Column;
            out->text = token.text;
            break;
        case TokenKind::Text:
            out->kind = SqlLiteral::Kind::Text;
            out->text = token.text;
            break;
        case TokenKind::Number: {
            bool ok = false;
            out->kind = SqlLiteral::Kind::Number;
            out->text = token.text;
            out->number = token.text.toDouble(&ok);
            if (!ok) {
                failText(QStringLiteral("\"%1\" is not a number").arg(token.text));
                return false;
            }
            break;
        }
        case TokenKind::Date:
            out->kind = SqlLiteral::Kind::Date;
            out->text = token.text;
            if (!parseDateLiteral(token.text, &out->date, &out->time, &out->hasDate, &out->hasTime)) {
                failText(QStringLiteral("#%1# is not a date").arg(token.text));
                return false;
            }
            break;
        default:
            return false;
        }
        advance();
        return true;
    }

    bool comparison(SqlCompare* out)
    {
        const Token& token = current();
        if (token.kind == TokenKind::Name && token.text.compare(QLatin1String("like"), Qt::CaseInsensitive) == 0) {
            *out = SqlCompare::Like;
        } else if (token.kind != TokenKind::Symbol) {
            return false;
        } else if (token.text == QLatin1String("=")) {
            *out = SqlCompare::Equal;
        } else if (token.text == QLatin1String("<>")) {
            *out = SqlCompare::NotEqual;
        } else if (token.text == QLatin1String("<")) {
            *out = SqlCompare::Less;
        } else if (token.text == QLatin1String(">")) {
            *out = SqlCompare::Greater;
        } else if (token.text == QLatin1String("<=")) {
            *out = SqlCompare::LessOrEqual;
        } else if (token.text == QLatin1String(">=")) {
            *out = SqlCompare::GreaterOrEqual;
        } else {
            return false;
        }
        advance();
        return true;
    }

    static std::unique_ptr<SqlExpression> join(SqlExpression::Kind kind, std::unique_ptr<SqlExpression> left,
                                               std::unique_ptr<SqlExpression> right)
    {
        auto node = std::make_unique<SqlExpression>();
        node->kind = kind;
        node->children.push_back(std::move(left));
        node->children.push_back(std::move(right));
        return node;
    }

    static bool isReserved(const QString& word)
    {
        static const char* const reserved[] = {"select", "from", "where", "order", "by", "and", "or", "not", "like", "asc", "desc"};
        for (const char* r : reserved) {
            if (word.compare(QLatin1String(r), Qt::CaseInsensitive) == 0) {
                return true;
            }
        }
        return false;
    }

    bool name(QString* out)
    {
        const Token& token = current();
        if (token.kind == TokenKind::Bracketed || (token.kind == TokenKind::Name && !isReserved(token.text))) {
            *out = token.text.trimmed();
            advance();
            return !out->isEmpty();
        }
        return false;
    }

    const Token& current() const { return m_tokens.at(m_index); }
    void advance()
    {
        if (m_index + 1 < m_tokens.size()) {
            ++m_index;
        }
    }
    bool isKeyword(const char* word) const
    {
        return current().kind == TokenKind::Name && current().text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
    }
    bool expectKeyword(const char* word)
    {
        if (!isKeyword(word)) {
            failText(QStringLiteral("%1 is expected at character %2").arg(QString::fromLatin1(word).toUpper()).arg(current().position + 1));
            return false;
        }
        advance();
        return true;
    }
    bool acceptSymbol(const char* symbol)
    {
        if (current().kind == TokenKind::Symbol && current().text == QLatin1String(symbol)) {
            advance();
            return true;
        }
        return false;
    }
    bool expectSymbol(const char* symbol)
    {
        if (!acceptSymbol(symbol)) {
            failText(QStringLiteral("\"%1\" is expected at character %2").arg(QLatin1String(symbol)).arg(current().position + 1));
            return false;
        }
        return true;
    }
    std::nullopt_t fail(const char* reason)
    {
        failText(QString::fromLatin1(reason));
        return std::nullopt;
    }
    void failText(const char* reason) { failText(QString::fromLatin1(reason)); }
    void failText(const QString& reason)
    {
        if (m_error && m_error->isEmpty()) {
            *m_error = reason;
        }
    }

    std::vector<Token> m_tokens;
    size_t m_index = 0;
    int m_depth = 0;
    QString* m_error;
};

std::optional<std::vector<Token>> tokenize(const QString& text, QString* error)
{
    std::vector<Token> tokens;
    Tokenizer tokenizer(text);
    if (!tokenizer.run(&tokens, error)) {
        return std::nullopt;
    }
    return tokens;
}

const char* sqlOperator(SqlCompare compare)
{
    switch (compare) {
    case SqlCompare::Equal:
        return "=";
    case SqlCompare::NotEqual:
        return "<>";
    case SqlCompare::Less:
        return "<";
    case SqlCompare::Greater:
        return ">";
    case SqlCompare::LessOrEqual:
        return "<=";
    case SqlCompare::GreaterOrEqual:
        return ">=";
    case SqlCompare::Like:
        return "LIKE";
    }
    return "=";
}

SqlCompare mirrored(SqlCompare compare)
{
    switch (compare) {
    case SqlCompare::Less:
        return SqlCompare::Greater;
    case SqlCompare::Greater:
        return SqlCompare::Less;
    case SqlCompare::LessOrEqual:
        return SqlCompare::GreaterOrEqual;
    case SqlCompare::GreaterOrEqual:
        return SqlCompare::LessOrEqual;
    default:
        return compare;
    }
}

QString quotedName(const QString& name)
{
    QString escaped = name;
    escaped.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

bool isTextKind(FieldKind kind)
{
    return kind == FieldKind::Text || kind == FieldKind::LongText;
}

bool isNumberKind(FieldKind kind)
{
    return kind == FieldKind::Number || kind == FieldKind::Money || kind == FieldKind::Counter;
}

bool isDateKind(FieldKind kind)
{
    return kind == FieldKind::Date || kind == FieldKind::DateTime || kind == FieldKind::Time;
}

// The stored text of a date literal compared with a column of a kind.
QString storedDate(const SqlLiteral& literal, FieldKind kind)
{
    if (kind == FieldKind::Time) {
        return literal.time.toString(QStringLiteral("HH:mm:ss"));
    }
    if (literal.hasTime && literal.time != QTime(0, 0)) {
        return literal.date.toString(Qt::ISODate) + QLatin1Char('T') + literal.time.toString(QStringLiteral("HH:mm:ss"));
    }
    return literal.date.toString(Qt::ISODate);
}

StoreStatus mismatch(const QString& column)
{
    return StoreStatus::failure(StoreErrorNumber::TypeMismatch,
                                QStringLiteral("Data type mismatch in criteria expression (%1).").arg(column));
}

StoreStatus translateCompare(const SqlExpression& node, const ColumnKindLookup& kinds, TranslatedSql* out)
{
    SqlLiteral left = node.left;
    SqlLiteral right = node.right;
    SqlCompare compare = node.compare;
    if (left.kind != SqlLiteral::Kind::Column && right.kind == SqlLiteral::Kind::Column) {
        if (compare == SqlCompare::Like) {
            return StoreStatus::failure(StoreErrorNumber::BadSql, QStringLiteral("LIKE needs a column on its left."));
        }
        std::swap(left, right);
        compare = mirrored(compare);
    }
    if (left.kind != SqlLiteral::Kind::Column) {
        return StoreStatus::failure(StoreErrorNumber::BadSql, QStringLiteral("A comparison must name a column."));
    }
    QString column;
    const std::optional<FieldKind> kind = kinds(left.text, &column);
    if (!kind) {
        return StoreStatus::failure(StoreErrorNumber::UnknownField,
                                    QStringLiteral("Item not found in this collection: %1.").arg(left.text));
    }
    const QString name = quotedName(column);
    const QString op = QString::fromLatin1(sqlOperator(compare));

    if (right.kind == SqlLiteral::Kind::Column) {
        QString other;
        const std::optional<FieldKind> otherKind = kinds(right.text, &other);
        if (!otherKind) {
            return StoreStatus::failure(StoreErrorNumber::UnknownField,
                                        QStringLiteral("Item not found in this collection: %1.").arg(right.text));
        }
        out->sql += QStringLiteral("%1 %2 %3").arg(name, op, quotedName(other));
        if (isTextKind(*kind) && isTextKind(*otherKind) && compare != SqlCompare::Like) {
            out->sql += QStringLiteral(" COLLATE NOCASE");
        }
        return StoreStatus::success();
    }

    if (compare == SqlCompare::Like) {
        // LIKE compares texts, whatever the column; SQLite's LIKE ignores case.
        out->sql += QStringLiteral("%1 LIKE ?").arg(name);
        out->binds.append(right.kind == SqlLiteral::Kind::Date ? storedDate(right, *kind) : right.text);
        return StoreStatus::success();
    }

    if (isTextKind(*kind)) {
        switch (right.kind) {
        case SqlLiteral::Kind::Text:
            out->sql += QStringLiteral("%1 %2 ? COLLATE NOCASE").arg(name, op);
            out->binds.append(right.text);
            break;
        case SqlLiteral::Kind::Number:
            // A number against a text column compares the number the text holds:
            // [FILEMONTH] = 2 finds "02". Texts that hold no number never match.
            out->sql += QStringLiteral("pv_number(%1) %2 ?").arg(name, op);
            out->binds.append(right.number);
            break;
        case SqlLiteral::Kind::Date:
            out->sql += QStringLiteral("%1 %2 ?").arg(name, op);
            out->binds.append(storedDate(right, *kind));
            break;
        case SqlLiteral::Kind::Column:
            break;
        }
        return StoreStatus::success();
    }

    if (isNumberKind(*kind)) {
        double value = right.number;
        if (right.kind == SqlLiteral::Kind::Text) {
            bool ok = false;
            value = right.text.trimmed().toDouble(&ok);
            if (!ok) {
                return mismatch(column);
            }
        } else if (right.kind != SqlLiteral::Kind::Number) {
            return mismatch(column);
        }
        out->sql += QStringLiteral("%1 %2 ?").arg(name, op);
        out->binds.append(value);
        return StoreStatus::success();
    }

    if (isDateKind(*kind)) {
        SqlLiteral date = right;
        if (right.kind == SqlLiteral::Kind::Text) {
            if (!parseDateLiteral(right.text, &date.date, &date.time, &date.hasDate, &date.hasTime)) {
                return mismatch(column);
            }
        } else if (right.kind != SqlLiteral::Kind::Date) {
            return mismatch(column);
        }
        if (*kind != FieldKind::Time && !date.hasDate) {
            return mismatch(column);
        }
        out->sql += QStringLiteral("%1 %2 ?").arg(name, op);
        out->binds.append(storedDate(date, *kind));
        return StoreStatus::success();
    }
    return mismatch(column);
}

} // namespace

bool parseDateLiteral(const QString& text, QDate* date, QTime* time, bool* hasDate, bool* hasTime)
{
    static const QRegularExpression pattern(QStringLiteral(
        R"(^\s*(?:(\d{1,2})[/-](\d{1,2})[/-](\d{1,4})|(\d{4})-(\d{1,2})-(\d{1,2}))?)"
        R"((?:[\sT]*(\d{1,2}):(\d{2})(?::(\d{2}))?\s*([AaPp][Mm])?)?\s*$)"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch() || text.trimmed().isEmpty()) {
        return false;
    }
    *hasDate = false;
    *hasTime = false;
    *date = QDate();
    *time = QTime(0, 0);
    if (!match.captured(1).isEmpty() || !match.captured(4).isEmpty()) {
        int year = 0;
        int month = 0;
        int day = 0;
        if (!match.captured(1).isEmpty()) {
            month = match.captured(1).toInt();
            day = match.captured(2).toInt();
            year = match.captured(3).toInt();
            // A short year reads as everywhere else in the program: within 50
            // years before or 49 after today.
            if (match.captured(3).size() <= 2) {
                year = FullYear(year, todaysDate());
            }
        } else {
            year = match.captured(4).toInt();
            month = match.captured(5).toInt();
            day = match.captured(6).toInt();
        }
        *date = QDate(year, month, day);
        if (!date->isValid()) {
            return false;
        }
        *hasDate = true;
    }
    if (!match.captured(7).isEmpty()) {
        int hour = match.captured(7).toInt();
        const int minute = match.captured(8).toInt();
        const int second = match.captured(9).isEmpty() ? 0 : match.captured(9).toInt();
        const QString half = match.captured(10).toUpper();
        if (!half.isEmpty()) {
            if (hour < 1 || hour > 12) {
                return false;
            }
            hour = (hour % 12) + (half == QLatin1String("PM") ? 12 : 0);
        }
        *time = QTime(hour, minute, second);
        if (!time->isValid()) {
            return false;
        }
        *hasTime = true;
    }
    return *hasDate || *hasTime;
}

QString quotedText(const QString& value)
{
    QString text = value;
    text.replace(QLatin1Char('\''), QStringLiteral("''"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

std::optional<SqlSelect> parseSelect(const QString& text, QString* error)
{
    QString reason;
    auto tokens = tokenize(text, &reason);
    std::optional<SqlSelect> result;
    if (tokens) {
        Parser parser(std::move(*tokens), &reason);
        result = parser.select();
    }
    if (!result && error) {
        *error = reason.isEmpty() ? QStringLiteral("the statement cannot be read") : reason;
    }
    return result;
}

std::unique_ptr<SqlExpression> parseCriteria(const QString& text, QString* error)
{
    QString reason;
    auto tokens = tokenize(text, &reason);
    std::unique_ptr<SqlExpression> result;
    if (tokens) {
        Parser parser(std::move(*tokens), &reason);
        result = parser.criteria();
    }
    if (!result && error) {
        *error = reason.isEmpty() ? QStringLiteral("the criteria cannot be read") : reason;
    }
    return result;
}

StoreStatus translateCondition(const SqlExpression& expression, const ColumnKindLookup& kinds, TranslatedSql* out)
{
    switch (expression.kind) {
    case SqlExpression::Kind::Compare:
        return translateCompare(expression, kinds, out);
    case SqlExpression::Kind::Not: {
        out->sql += QStringLiteral("NOT (");
        StoreStatus status = translateCondition(*expression.children.front(), kinds, out);
        out->sql += QLatin1Char(')');
        return status;
    }
    case SqlExpression::Kind::And:
    case SqlExpression::Kind::Or: {
        const QString joiner = expression.kind == SqlExpression::Kind::And ? QStringLiteral(" AND ") : QStringLiteral(" OR ");
        for (size_t i = 0; i < expression.children.size(); ++i) {
            if (i > 0) {
                out->sql += joiner;
            }
            out->sql += QLatin1Char('(');
            StoreStatus status = translateCondition(*expression.children[i], kinds, out);
            if (!status.ok()) {
                return status;
            }
            out->sql += QLatin1Char(')');
        }
        return StoreStatus::success();
    }
    }
    return StoreStatus::success();
}

StoreStatus translateOrder(const std::vector<SqlOrder>& order, const ColumnKindLookup& kinds, QString* out)
{
    QStringList parts;
    for (const SqlOrder& item : order) {
        QString column;
        const std::optional<FieldKind> kind = kinds(item.column, &column);
        if (!kind) {
            return StoreStatus::failure(StoreErrorNumber::UnknownField,
                                        QStringLiteral("Item not found in this collection: %1.").arg(item.column));
        }
        QString part = quotedName(column);
        if (isTextKind(*kind)) {
            part += QStringLiteral(" COLLATE NOCASE");
        }
        part += item.descending ? QStringLiteral(" DESC") : QStringLiteral(" ASC");
        parts.append(part);
    }
    *out = parts.join(QStringLiteral(", "));
    return StoreStatus::success();
}

} // namespace pvardo::store
