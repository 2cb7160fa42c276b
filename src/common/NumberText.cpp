#include "common/NumberText.h"

#include <cmath>
#include <limits>

namespace pvardo {

double LeadingNumber(const QString& text)
{
    // Blanks, tabs and line ends are skipped wherever they stand, as the
    // office's number reading always did.
    QString compact;
    compact.reserve(text.size());
    for (const QChar c : text) {
        if (c != QLatin1Char(' ') && c != QLatin1Char('\t') && c != QLatin1Char('\n')
            && c != QLatin1Char('\r')) {
            compact.append(c);
        }
    }
    qsizetype i = 0;
    const qsizetype n = compact.size();
    QString number;
    if (i < n && (compact.at(i) == QLatin1Char('+') || compact.at(i) == QLatin1Char('-'))) {
        number.append(compact.at(i));
        ++i;
    }
    bool anyDigit = false;
    while (i < n && compact.at(i).isDigit() && compact.at(i).unicode() < 128) {
        number.append(compact.at(i));
        anyDigit = true;
        ++i;
    }
    if (i < n && compact.at(i) == QLatin1Char('.')) {
        number.append(QLatin1Char('.'));
        ++i;
        while (i < n && compact.at(i).isDigit() && compact.at(i).unicode() < 128) {
            number.append(compact.at(i));
            anyDigit = true;
            ++i;
        }
    }
    if (!anyDigit) {
        return 0.0;
    }
    if (i < n
        && (compact.at(i) == QLatin1Char('e') || compact.at(i) == QLatin1Char('E')
            || compact.at(i) == QLatin1Char('d') || compact.at(i) == QLatin1Char('D'))) {
        QString exponent = QStringLiteral("e");
        qsizetype j = i + 1;
        if (j < n && (compact.at(j) == QLatin1Char('+') || compact.at(j) == QLatin1Char('-'))) {
            exponent.append(compact.at(j));
            ++j;
        }
        bool expDigit = false;
        while (j < n && compact.at(j).isDigit() && compact.at(j).unicode() < 128) {
            exponent.append(compact.at(j));
            expDigit = true;
            ++j;
        }
        if (expDigit) {
            number.append(exponent);
        }
    }
    bool ok = false;
    const double value = number.toDouble(&ok);
    if (!ok || !std::isfinite(value)) {
        return 0.0;
    }
    return value;
}

int LeadingWholeNumber(const QString& text)
{
    const double value = std::trunc(LeadingNumber(text));
    if (value >= static_cast<double>(std::numeric_limits<int>::max())) {
        return std::numeric_limits<int>::max();
    }
    if (value <= static_cast<double>(std::numeric_limits<int>::min())) {
        return std::numeric_limits<int>::min();
    }
    return static_cast<int>(value);
}

} // namespace pvardo
