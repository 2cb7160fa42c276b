#pragma once

#include "schedule/CalendarLanguage.h"

#include <QString>

namespace pvardo::schedule {

// The small almanac of the month calendar: quarter, season, zodiac sign and
// the moon's phase of a day, in the calendar's language.
class CalendarAlmanac
{
public:
    enum Hemisphere { Northern = 0, Southern = 1 };

    explicit CalendarAlmanac(
        CalendarLanguage::Language language = CalendarLanguage::English, Hemisphere hemisphere = Northern);

    // "First quarter" to "Fourth quarter" of the year for a month.
    QString GetQuarterInfo(int month) const;
    // The season of a day: spring from 21 March, summer from 21 June, autumn
    // from 23 September and winter from 21 December in the north; the
    // opposite season in the south.
    QString GetSeasonInfo(int day, int month) const;
    // The sign of the zodiac the sun stands in on a day.
    QString GetZodiacInfo(int day, int month) const;

    // The moon's phase for a Julian day, in eight steps cut at 0.125, 0.25,
    // 0.375, 0.5, 0.626, 0.75 and 0.875 of its age: each step names the
    // phase it runs from or towards. Index 0 new moon, 1 first quarter, 2 full
    // moon, 3 last quarter.
    static int phaseIndex(double age);
    QString GetMoonPhaseInfo(double julianDay) const;
    // The same with the days to or from that phase: "3 days after Full moon",
    // "1 day before New moon", "the Full moon" on the day itself.
    QString GetMoonPhaseDetail(double julianDay) const;

private:
    QStringList list(int which) const;

    CalendarLanguage::Language m_language;
    Hemisphere m_hemisphere;
};

} // namespace pvardo::schedule
