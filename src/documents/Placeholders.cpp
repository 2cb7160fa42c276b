#include "documents/Placeholders.h"

#include "documents/ValueFormats.h"

#include "common/DateText.h"

#include <QTextDocument>

namespace pvardo::documents {

QTextCursor findPlaceholder(const QTextDocument& document, const QString& token, int from)
{
    if (token.isEmpty()) {
        return {};
    }
    return document.find(token, from);
}

int replaceMatches(QTextDocument& document, const QString& token, const std::function<QString(int match)>& valueFor)
{
    int count = 0;
    int from = 0;
    for (;;) {
        QTextCursor match = findPlaceholder(document, token, from);
        if (match.isNull() || !match.hasSelection()) {
            break;
        }
        const int start = match.selectionStart();
        QTextCursor first(&document);
        first.setPosition(start + 1);
        const QTextCharFormat format = first.charFormat();
        // A value of several lines (a description typed with line breaks)
        // keeps to its paragraph, so its lines stay in the value's column
        // rather than starting again under a label.
        QString value = valueFor(count);
        value.replace(QLatin1String("\r\n"), QString(QChar::LineSeparator));
        value.replace(QLatin1Char('\n'), QChar::LineSeparator);
        value.replace(QLatin1Char('\r'), QChar::LineSeparator);
        match.insertText(value, format);
        ++count;
        from = value.contains(token, Qt::CaseInsensitive) ? start + int(value.size()) : start + 1;
    }
    return count;
}

int ReplaceLiteral(QTextDocument& buffer, const QString& token, const QString& value, int mode)
{
    return replaceMatches(buffer, token,
                          [&](int) { return mode == 2 ? formatLongDate(value) : value; });
}

int ReplaceToken(QTextDocument& buffer, const QString& token, const QString& value, int mode)
{
    const QChar form = token.size() > 1 ? token.at(1) : QChar();
    QString current = value;
    return replaceMatches(buffer, token, [&](int) {
        if (form == QLatin1Char('$')) {
            double number = 0;
            if (readMoneyValue(current, &number)) {
                current = MoneyText(number);
            }
        } else if (form == QLatin1Char('@')) {
            current = LongDateText(current); // today when the value is no date
        } else if (form == QLatin1Char('&')) {
            current = DateText(current);
        } else if (form == QLatin1Char('~')) {
            const QString time = TimeText(QVariant(current));
            if (!time.isEmpty()) {
                current = time;
            }
        }
        return mode == 2 ? formatLongDate(current) : current;
    });
}

} // namespace pvardo::documents
