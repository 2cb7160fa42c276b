#include "subrecords/Money.h"

#include "common/DateText.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace pvardo::subrecords {

Cents leadingCents(const QString& text)
{
    const QString t = text.trimmed();
    qsizetype i = 0;
    bool negative = false;
    if (i < t.size() && (t.at(i) == QLatin1Char('-') || t.at(i) == QLatin1Char('+'))) {
        negative = t.at(i) == QLatin1Char('-');
        ++i;
    }
    Cents whole = 0;
    bool any = false;
    while (i < t.size() && t.at(i).isDigit()) {
        if (whole < 100000000000000LL) { // beyond any amount of the office: stop growing
            whole = whole * 10 + t.at(i).digitValue();
        }
        any = true;
        ++i;
    }
    Cents fraction = 0;
    if (i < t.size() && t.at(i) == QLatin1Char('.')) {
        ++i;
        int digits = 0;
        bool roundUp = false;
        while (i < t.size() && t.at(i).isDigit()) {
            if (digits < 2) {
                fraction = fraction * 10 + t.at(i).digitValue();
            } else if (digits == 2) {
                roundUp = t.at(i).digitValue() >= 5;
            }
            ++digits;
            any = true;
            ++i;
        }
        if (digits == 1) {
            fraction *= 10;
        }
        if (roundUp) {
            ++fraction;
        }
    }
    if (!any) {
        return 0;
    }
    const Cents cents = whole * 100 + fraction;
    return negative ? -cents : cents;
}

std::optional<Cents> typedCents(const QString& text)
{
    QString t = text.trimmed();
    bool negative = false;
    for (int signs = 0, dollars = 0; !t.isEmpty();) {
        const QChar first = t.at(0);
        if ((first == QLatin1Char('-') || first == QLatin1Char('+')) && signs++ == 0) {
            negative = first == QLatin1Char('-');
        } else if (first == QLatin1Char('$') && dollars++ == 0) {
        } else {
            break;
        }
        t = t.mid(1).trimmed();
    }
    if (t.isEmpty()) {
        return text.trimmed().isEmpty() ? std::optional<Cents>(0) : std::nullopt;
    }
    const qsizetype point = t.indexOf(QLatin1Char('.'));
    const QString whole = point < 0 ? t : t.left(point);
    const QString fraction = point < 0 ? QString() : t.mid(point + 1);
    auto digitsOnly = [](const QString& part) {
        return std::all_of(part.begin(), part.end(), [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
    };
    if ((whole.isEmpty() && fraction.isEmpty()) || !digitsOnly(fraction)) {
        return std::nullopt;
    }
    if (whole.contains(QLatin1Char(','))) {
        // Commas group thousands: one to three digits first, then threes.
        const QStringList groups = whole.split(QLatin1Char(','));
        if (groups.first().isEmpty() || groups.first().size() > 3) {
            return std::nullopt;
        }
        for (qsizetype i = 1; i < groups.size(); ++i) {
            if (groups.at(i).size() != 3) {
                return std::nullopt;
            }
        }
    }
    QString plain = whole;
    plain.remove(QLatin1Char(','));
    if (!digitsOnly(plain) || plain.size() > 13) {
        return std::nullopt;
    }
    const QString sign = negative ? QStringLiteral("-") : QString();
    return leadingCents(sign + plain + QLatin1Char('.') + fraction);
}

Cents centsOf(const QVariant& stored)
{
    if (stored.isNull()) {
        return 0;
    }
    if (stored.typeId() == QMetaType::QString) {
        return leadingCents(stored.toString());
    }
    bool ok = false;
    const double value = stored.toDouble(&ok);
    return ok ? std::llround(value * 100.0) : 0;
}

double storedAmount(Cents cents)
{
    return static_cast<double>(cents) / 100.0;
}

QString plainAmount(Cents cents)
{
    const Cents magnitude = std::llabs(cents);
    QString text = QString::number(magnitude / 100);
    const int rest = static_cast<int>(magnitude % 100);
    if (rest != 0) {
        text += QLatin1Char('.') + QString::number(rest).rightJustified(2, QLatin1Char('0'));
        if (text.endsWith(QLatin1Char('0'))) {
            text.chop(1);
        }
    }
    return cents < 0 ? QLatin1Char('-') + text : text;
}

QString moneyText(Cents cents, int width)
{
    // Whole cents are exact in a double far beyond the office's amounts.
    return MoneyText(storedAmount(cents), width);
}

QString maskedAmount(Cents cents)
{
    const Cents magnitude = std::llabs(cents);
    const QString text = QString::number(magnitude / 100) + QLatin1Char('.')
        + QString::number(magnitude % 100).rightJustified(2, QLatin1Char('0'));
    return cents < 0 ? QLatin1Char('-') + text : text;
}

} // namespace pvardo::subrecords
