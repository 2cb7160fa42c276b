#include "common/DateText.h"

#include "common/Clock.h"
#include "common/NumberText.h"
#include "common/Session.h"

#include <QRegularExpression>
#include <cmath>
#include <cstdlib>

namespace pvardo {

namespace {

QString twoDigits(int value)
{
    // Numbers below 10 get a "0" in front; others stand as they are.
    return value < 10 ? QLatin1Char('0') + QString::number(value) : QString::number(value);
}

// The day count of the office's dates begins here.
const QDate& dayZero()
{
    static const QDate zero(1899, 12, 30);
    return zero;
}

int windowedYear(int year, int digits)
{
    if (digits <= 2) {
        return FullYear(year, todaysDate());
    }
    return year;
}

int monthOfName(const QString& name)
{
    static const char* const names[] = {"january", "february", "march", "april", "may", "june", "july",
        "august", "september", "october", "november", "december"};
    const QString lower = name.toLower();
    if (lower.size() < 3) {
        return 0;
    }
    for (int month = 1; month <= 12; ++month) {
        const QString full = QString::fromLatin1(names[month - 1]);
        if (full == lower || (lower.size() == 3 && full.startsWith(lower))
            || (lower == QLatin1String("sept") && month == 9)) {
            return month;
        }
    }
    return 0;
}

} // namespace

QString FixDateText(const QString& text)
{
    qsizetype separator = text.indexOf(QLatin1Char('/'));
    if (separator < 0) {
        separator = text.indexOf(QLatin1Char('-'));
    }
    if (separator < 0) {
        return text;
    }
    const int month = LeadingWholeNumber(text.left(separator));
    const int day = LeadingWholeNumber(text.mid(separator + 1));
    // A year of four digits after the last separator is kept whole.
    const qsizetype yearAt = std::max(text.lastIndexOf(QLatin1Char('/')), text.lastIndexOf(QLatin1Char('-')));
    const QString fullYear = yearAt > separator ? text.mid(yearAt + 1).trimmed() : QString();
    static const QRegularExpression fourDigits(QStringLiteral("^\\d{4}$"));
    if (fourDigits.match(fullYear).hasMatch()) {
        return twoDigits(month) + QLatin1Char('/') + twoDigits(day) + QLatin1Char('/') + fullYear;
    }
    // Otherwise the last two characters are the year. Only a leading "/" is
    // dropped, so "3-7-5" reads its year as -5.
    QString yearText = text.right(2);
    if (yearText.startsWith(QLatin1Char('/'))) {
        yearText = yearText.mid(1);
    }
    if (yearText == QLatin1String("/")) {
        yearText = QStringLiteral("0");
    }
    const int twoDigitYear = LeadingWholeNumber(yearText);
    const int year = FullYear(twoDigitYear, todaysDate());
    return twoDigits(month) + QLatin1Char('/') + twoDigits(day) + QLatin1Char('/') + QString::number(year);
}

int FullYear(int twoDigitYear, const QDate& today)
{
    const int now = today.isValid() ? today.year() : todaysDate().year();
    const int earliest = now - 50;
    // The first year from `earliest` on whose last two digits are these.
    const int wanted = ((twoDigitYear % 100) + 100) % 100;
    const int offset = ((wanted - earliest % 100) + 100) % 100;
    return earliest + offset;
}

QString MoneyText(double value, int width)
{
    QString text;
    if (!std::isfinite(value)) {
        text = QStringLiteral("$0.00");
    } else if (std::abs(value) >= 9.0e15) {
        // Beyond any amount of the office; shown plainly rather than wrapped.
        text = QStringLiteral("$") + QString::number(value, 'f', 2);
    } else {
        const long long cents = std::llround(std::abs(value) * 100.0);
        const long long dollars = cents / 100;
        const int rest = static_cast<int>(cents % 100);
        // A leading zero under a dollar: "$0.50", as a clerk writes it.
        QString whole = QStringLiteral("0");
        if (dollars > 0) {
            whole.clear();
            const QString digits = QString::number(dollars);
            for (qsizetype i = 0; i < digits.size(); ++i) {
                if (i > 0 && (digits.size() - i) % 3 == 0) {
                    whole.append(QLatin1Char(','));
                }
                whole.append(digits.at(i));
            }
        }
        const bool negative = value < 0 && cents != 0;
        text = (negative ? QStringLiteral("-$") : QStringLiteral("$")) + whole + QLatin1Char('.')
            + QString::number(rest).rightJustified(2, QLatin1Char('0'));
    }
    if (width > 0 && text.size() < width) {
        text = text.rightJustified(width, QLatin1Char(' '));
    }
    return text;
}

QString TimeText(const QTime& time)
{
    if (!time.isValid()) {
        return {};
    }
    const int hour12 = time.hour() % 12 == 0 ? 12 : time.hour() % 12;
    return QString::number(hour12).rightJustified(2, QLatin1Char('0')) + QLatin1Char(':')
        + QString::number(time.minute()).rightJustified(2, QLatin1Char('0'))
        + (time.hour() < 12 ? QStringLiteral(" AM") : QStringLiteral(" PM"));
}

QString TimeText(const QDateTime& when)
{
    return when.isValid() ? TimeText(when.time()) : QString();
}

QString TimeText(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::QTime:
        return TimeText(value.toTime());
    case QMetaType::QDateTime:
        return TimeText(value.toDateTime());
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
    case QMetaType::LongLong: {
        // The part of a day after the point: 0.5 is noon.
        const double number = value.toDouble();
        const double fraction = std::abs(number - std::trunc(number));
        const int seconds = static_cast<int>(std::llround(fraction * 86400.0)) % 86400;
        return TimeText(QTime(0, 0).addSecs(seconds));
    }
    case QMetaType::QString: {
        const QString text = value.toString().trimmed();
        if (text.isEmpty()) {
            return {};
        }
        const QDateTime stamp = QDateTime::fromString(text, Qt::ISODate);
        if (stamp.isValid() && text.contains(QLatin1Char('T'))) {
            return TimeText(stamp.time());
        }
        static const char* const forms[] = {"H:mm", "H:mm:ss", "h:mm AP", "h:mm:ss AP", "h:mmAP", "h:mm ap",
            "h:mm:ss ap", "h:mmap", "h AP", "hAP"};
        for (const char* form : forms) {
            const QTime time = QTime::fromString(text, QString::fromLatin1(form));
            if (time.isValid()) {
                return TimeText(time);
            }
        }
        return {};
    }
    default:
        return {};
    }
}

QString DateText(const QString& numericText)
{
    const double number = LeadingNumber(numericText);
    if (std::abs(number) > 4.0e6) {
        return {};
    }
    const QDate date = dayZero().addDays(static_cast<qint64>(std::trunc(number)));
    if (!date.isValid() || date.year() < 100 || date.year() > 9999) {
        return {};
    }
    return date.toString(QStringLiteral("MM/dd/yyyy"));
}

double DayNumberOf(const QDate& date)
{
    return static_cast<double>(dayZero().daysTo(date));
}

QDate ReadDateText(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty()) {
        return {};
    }
    // The store's own form: 2011-05-03, with or without a time after it.
    static const QRegularExpression iso(QStringLiteral("^(\\d{4})-(\\d{1,2})-(\\d{1,2})(?:[T ].*)?$"));
    QRegularExpressionMatch match = iso.match(trimmed);
    if (match.hasMatch()) {
        return QDate(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
    }
    // Typed forms: 5/3/2011, 5-3-11, 05/03/2011 10:15 AM, 5/3 (this year).
    static const QRegularExpression typed(
        QStringLiteral("^(\\d{1,2})[/-](\\d{1,2})(?:[/"
                       "-](\\d{1,4}))?(?:\\s+\\d{1,2}:\\d{2}(?::\\d{2})?(?:\\s*[AaPp][Mm])?)?$"));
    match = typed.match(trimmed);
    if (match.hasMatch()) {
        int year = todaysDate().year();
        if (match.capturedLength(3) > 0) {
            year = windowedYear(match.captured(3).toInt(), static_cast<int>(match.capturedLength(3)));
        }
        return QDate(year, match.captured(1).toInt(), match.captured(2).toInt());
    }
    // Written out: May 3, 2011 or 3 May 2011.
    static const QRegularExpression monthFirst(
        QStringLiteral("^([A-Za-z]+)\\.?\\s+(\\d{1,2}),?\\s+(\\d{2,4})$"));
    match = monthFirst.match(trimmed);
    if (match.hasMatch()) {
        const int month = monthOfName(match.captured(1));
        if (month == 0) {
            return {};
        }
        return QDate(windowedYear(match.captured(3).toInt(), static_cast<int>(match.capturedLength(3))),
            month, match.captured(2).toInt());
    }
    static const QRegularExpression dayFirst(
        QStringLiteral("^(\\d{1,2})\\s+([A-Za-z]+)\\.?,?\\s+(\\d{2,4})$"));
    match = dayFirst.match(trimmed);
    if (match.hasMatch()) {
        const int month = monthOfName(match.captured(2));
        if (month == 0) {
            return {};
        }
        return QDate(windowedYear(match.captured(3).toInt(), static_cast<int>(match.capturedLength(3))),
            month, match.captured(1).toInt());
    }
    return {};
}

QString LongDateText(const QString& dateText)
{
    const QDate date = ReadDateText(dateText);
    return LongDateText(date.isValid() ? date : todaysDate());
}

QString LongDateText(const QDate& date)
{
    const QDate shown = date.isValid() ? date : todaysDate();
    const int day = shown.day();
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
    return QString::number(day) + suffix + QStringLiteral(" day of ") + session().MonthNames.at(shown.month())
        + QStringLiteral(", ") + QString::number(shown.year()).rightJustified(4, QLatin1Char('0'));
}

QString PadColumn(const QString& text, int width)
{
    if (width <= 0) {
        return {};
    }
    return text.left(width).leftJustified(width, QLatin1Char(' '));
}

QString PadWordsColumn(const QString& text, int width)
{
    if (text.size() <= width || width <= 0) {
        return PadColumn(text, width);
    }
    const qsizetype space = text.lastIndexOf(QLatin1Char(' '), width);
    return PadColumn(space > 0 ? text.left(space).trimmed() : text, width);
}

QString CutAtNul(const QString& text)
{
    const qsizetype nul = text.indexOf(QChar(u'\0'));
    return nul < 0 ? text : text.left(nul);
}

double Julianday(double day, double month, double year, double hour)
{
    if (month < 3) {
        month += 12;
        year -= 1;
    }
    const double a = std::floor(year / 100.0);
    const double b = 2.0 - a + std::floor(a / 4.0);
    return std::floor(365.25 * (year + 4716.0)) + std::floor(30.6001 * (month + 1.0)) + day + hour + b
        - 1524.5;
}

QString FirstSunday(int month, int year)
{
    for (int day = 1; day <= 8; ++day) {
        if (std::fmod(Julianday(day, month, year, 1.5), 7.0) == 0.0) {
            return QString::number(day);
        }
    }
    return {};
}

} // namespace pvardo
