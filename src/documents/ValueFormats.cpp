#include "documents/ValueFormats.h"

#include <QLocale>
#include <QRegularExpression>
#include <QTime>

#include <cmath>

namespace pvardo::documents {

namespace {

const QStringList& monthNames()
{
    static const QStringList names{
        QStringLiteral("January"), QStringLiteral("February"), QStringLiteral("March"),
        QStringLiteral("April"),   QStringLiteral("May"),      QStringLiteral("June"),
        QStringLiteral("July"),    QStringLiteral("August"),   QStringLiteral("September"),
        QStringLiteral("October"), QStringLiteral("November"), QStringLiteral("December"),
    };
    return names;
}

} // namespace

QString formatMoney(const QString& value)
{
    QString text = value.trimmed();
    text.remove(QLatin1Char('$'));
    text.remove(QLatin1Char(','));
    bool ok = false;
    const double number = text.toDouble(&ok);
    if (!ok || !std::isfinite(number)) {
        return value;
    }
    const qint64 cents = qint64(std::llround(std::fabs(number) * 100.0));
    const qint64 whole = cents / 100;
    const int fraction = int(cents % 100);
    QString digits = whole == 0 ? QString() : QString::number(whole);
    for (qsizetype i = digits.size() - 3; i > 0; i -= 3) {
        digits.insert(i, QLatin1Char(','));
    }
    const QString result = QStringLiteral("$%1.%2").arg(digits).arg(fraction, 2, 10, QLatin1Char('0'));
    return (number < 0 && cents != 0) ? QLatin1Char('-') + result : result;
}

QDate parseDateValue(const QString& value)
{
    const QString text = value.trimmed();
    static const QRegularExpression usDate(QStringLiteral("^(\\d{1,2})[/-](\\d{1,2})[/-](\\d{2}|\\d{4})$"));
    const QRegularExpressionMatch us = usDate.match(text);
    if (us.hasMatch()) {
        int year = us.captured(3).toInt();
        if (us.captured(3).size() == 2) {
            year += year < 28 ? 2000 : 1900;
        }
        return QDate(year, us.captured(1).toInt(), us.captured(2).toInt());
    }
    static const QRegularExpression isoDate(QStringLiteral("^(\\d{4})-(\\d{2})-(\\d{2})([T ].*)?$"));
    const QRegularExpressionMatch iso = isoDate.match(text);
    if (iso.hasMatch()) {
        return QDate(iso.captured(1).toInt(), iso.captured(2).toInt(), iso.captured(3).toInt());
    }
    return {};
}

QString formatLegalDate(const QDate& date)
{
    const int day = date.day();
    QString suffix;
    switch (day % 10) {
    case 1:
        suffix = QStringLiteral("st");
        break;
    case 2:
        suffix = QStringLiteral("nd");
        break;
    case 3:
        suffix = QStringLiteral("rd");
        break;
    default:
        suffix = QStringLiteral("th");
        break;
    }
    return QStringLiteral("%1%2 day of %3, %4")
        .arg(day)
        .arg(suffix, monthNames().value(date.month() - 1))
        .arg(date.year(), 4, 10, QLatin1Char('0'));
}

QString formatDayCount(const QString& value)
{
    const QString text = value.trimmed();
    qsizetype digits = 0;
    while (digits < text.size() && digits < 9 && text.at(digits).isDigit()) {
        ++digits;
    }
    const qint64 days = digits == 0 ? 0 : text.left(digits).toLongLong();
    const QDate date = QDate(1899, 12, 30).addDays(days);
    return date.toString(QStringLiteral("MM/dd/yyyy"));
}

QString formatClockTime(const QString& value)
{
    const QString text = value.trimmed();
    QTime time;
    static const QRegularExpression clock(
        QStringLiteral("(?:^|[T ])(\\d{1,2}):(\\d{2})(?::(\\d{2}))?\\s*([AaPp][Mm])?$"));
    const QRegularExpressionMatch match = clock.match(text);
    if (match.hasMatch()) {
        int hour = match.captured(1).toInt();
        const int minute = match.captured(2).toInt();
        const QString half = match.captured(4).toUpper();
        if (half == QLatin1String("PM") && hour < 12) {
            hour += 12;
        } else if (half == QLatin1String("AM") && hour == 12) {
            hour = 0;
        }
        time = QTime(hour, minute);
    }
    if (!time.isValid()) {
        return value;
    }
    const int hour12 = time.hour() % 12 == 0 ? 12 : time.hour() % 12;
    return QStringLiteral("%1:%2 %3")
        .arg(hour12, 2, 10, QLatin1Char('0'))
        .arg(time.minute(), 2, 10, QLatin1Char('0'))
        .arg(time.hour() < 12 ? QStringLiteral("AM") : QStringLiteral("PM"));
}

QString formatLongDate(const QDate& date)
{
    return QStringLiteral("%1 %2, %3")
        .arg(monthNames().value(date.month() - 1))
        .arg(date.day(), 2, 10, QLatin1Char('0'))
        .arg(date.year(), 4, 10, QLatin1Char('0'));
}

QString formatLongDate(const QString& value)
{
    const QDate date = parseDateValue(value);
    return date.isValid() ? formatLongDate(date) : value;
}

} // namespace pvardo::documents
