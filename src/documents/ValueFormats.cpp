#include "documents/ValueFormats.h"

#include "common/DateText.h"

#include <QStringList>

#include <cmath>

namespace pvardo::documents {

QString formatLongDate(const QDate& date)
{
    static const QStringList months{
        QStringLiteral("January"), QStringLiteral("February"), QStringLiteral("March"),
        QStringLiteral("April"),   QStringLiteral("May"),      QStringLiteral("June"),
        QStringLiteral("July"),    QStringLiteral("August"),   QStringLiteral("September"),
        QStringLiteral("October"), QStringLiteral("November"), QStringLiteral("December"),
    };
    return QStringLiteral("%1 %2, %3")
        .arg(months.value(date.month() - 1))
        .arg(date.day(), 2, 10, QLatin1Char('0'))
        .arg(date.year(), 4, 10, QLatin1Char('0'));
}

QString formatLongDate(const QString& value)
{
    const QDate date = ReadDateText(value);
    return date.isValid() ? formatLongDate(date) : value;
}

bool readMoneyValue(const QString& value, double* number)
{
    QString text = value.trimmed();
    text.remove(QLatin1Char('$'));
    text.remove(QLatin1Char(','));
    bool ok = false;
    const double result = text.toDouble(&ok);
    if (!ok || !std::isfinite(result)) {
        return false;
    }
    *number = result;
    return true;
}

} // namespace pvardo::documents
