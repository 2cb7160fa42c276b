#include "schedule/MeetingRules.h"

#include "common/NumberText.h"

namespace pvardo::schedule {

const QStringList& occurrenceNames()
{
    static const QStringList names{QStringLiteral("First"), QStringLiteral("Second"), QStringLiteral("Third"),
        QStringLiteral("Fourth"), QStringLiteral("Last")};
    return names;
}

const QStringList& weekdayNames()
{
    static const QStringList names{QStringLiteral("Sunday"), QStringLiteral("Monday"),
        QStringLiteral("Tuesday"), QStringLiteral("Wednesday"), QStringLiteral("Thursday"),
        QStringLiteral("Friday"), QStringLiteral("Saturday")};
    return names;
}

const QStringList& intervalNames()
{
    static const QStringList names{
        QStringLiteral("03 months"), QStringLiteral("06 months"), QStringLiteral("12 months")};
    return names;
}

int DayNumber(int year, int month, int day)
{
    // Integer arithmetic that truncates toward zero, as C++ division does:
    // (month - 9) / 7 is -1 for January and February and 0 from March on.
    return 367 * year - (7 * (year + 5001 + (month - 9) / 7)) / 4 + (275 * month) / 9 + day + 1729777;
}

int occurrenceFromText(const QString& ordinal)
{
    const int index = static_cast<int>(occurrenceNames().indexOf(ordinal.trimmed()));
    if (index < 0) {
        return 1;
    }
    // The list's fifth entry, "Last", jumps to 6: 5 would be the fifth
    // weekday, which most months do not have.
    return index == 4 ? OccurrenceLast : index + 1;
}

int weekdayFromText(const QString& weekday)
{
    const int index = static_cast<int>(weekdayNames().indexOf(weekday.trimmed()));
    return index < 0 ? 2 : index + 1;
}

QString occurrenceText(int occurrence)
{
    if (occurrence >= 1 && occurrence <= 4) {
        return occurrenceNames().at(occurrence - 1);
    }
    return occurrence == OccurrenceLast ? occurrenceNames().at(4) : QString();
}

QString weekdayText(int weekday)
{
    return weekday >= 1 && weekday <= 7 ? weekdayNames().at(weekday - 1) : QString();
}

QString encodeRule(const MeetingRule& rule)
{
    return QString::number(rule.occurrence).trimmed() + QString::number(rule.weekday).trimmed();
}

MeetingRule decodeRule(const QString& mrec)
{
    const QString text = mrec.trimmed();
    return MeetingRule{LeadingWholeNumber(text.left(1)), LeadingWholeNumber(text.mid(1))};
}

int intervalFromText(const QString& intervalBox)
{
    return LeadingWholeNumber(intervalBox.left(2).trimmed());
}

bool intervalGiven(const QString& intervalBox)
{
    return !intervalBox.left(2).trimmed().isEmpty();
}

namespace {

QString twoDigits(int month)
{
    return QStringLiteral("%1").arg(month, 2, 10, QLatin1Char('0'));
}

} // namespace

QString buildMonthChain(int firstMonth, const QString& intervalBox)
{
    if (!intervalGiven(intervalBox)) {
        return {};
    }
    QString chain = twoDigits(firstMonth);
    const int interval = intervalFromText(intervalBox);
    // A typed 0 or a negative number would never reach 12; such a rule keeps
    // its own month only.
    if (interval <= 0) {
        return chain;
    }
    for (int step = interval; step <= 12; step += interval) {
        int month = firstMonth + step;
        if (month > 12) {
            month -= 12;
        }
        chain += twoDigits(month);
    }
    return chain;
}

bool chainCountsIn(const QString& extra2, int month)
{
    const QString chain = extra2.trimmed();
    if (chain.isEmpty()) {
        return true;
    }
    const QString wanted = twoDigits(month);
    for (int position = 0; position <= 6; position += 2) {
        if (chain.mid(position, 2) == wanted) {
            return true;
        }
    }
    return false;
}

int chainInterval(const QString& extra2)
{
    const QString chain = extra2.trimmed();
    if (chain.isEmpty()) {
        return 0;
    }
    // A chain of its first month alone counts once a year.
    if (chain.size() <= 2) {
        return 12;
    }
    const int first = LeadingWholeNumber(chain.left(2));
    const int second = LeadingWholeNumber(chain.mid(2, 2));
    // Counted forward through the year end, so a quarterly rule saved in
    // November (11, 02, ...) reads as 3 months, not 9.
    const int distance = ((second - first) % 12 + 12) % 12;
    return distance == 0 ? 12 : distance;
}

QString intervalText(int interval)
{
    if (interval == 0) {
        return {};
    }
    return twoDigits(interval) + QStringLiteral(" months");
}

} // namespace pvardo::schedule
