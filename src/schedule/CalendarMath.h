#pragma once

#include <QDate>

namespace pvardo::schedule {

// The arithmetic of the month calendar, apart from any drawing, so that the
// calendar widget, the meeting rules and reports count days the same way.

// The calendar's range: January 1583 to December 9999, the whole Gregorian years.
constexpr int FirstCalendarYear = 1583;
constexpr int LastCalendarYear = 9999;

// The number of days of a month: the day before the first of the next month.
// 29 for February of a leap year. 0 for a month outside 1 to 12.
int GetMonthDays(int month, int year);

// The days since the 1st of January of the year, plus 1: 1 on New Year's Day.
int DayOfYear(int day, int month, int year);

// The days from one date to another, negative when `to` comes first.
int DaysBetween(const QDate& from, const QDate& to);

// The astronomical Julian day number at noon: 2451545 for 1 January 2000.
// Before the calendar reform of October 1582 the Julian calendar's count is
// used, so 4 and 15 October 1582 are one day apart. Not the day number the
// meetings sort by (DayNumber), and the two are never compared.
long GetJulianDay(int year, int month, int day);

// The age of the moon for a Julian day, as a fraction of its cycle: 0 new
// moon, 0.5 full moon.
double GetMoonPhaseExact(double julianDay);

// The week of the year shown in the calendar's info line (ISO weeks).
int weekOfYear(int day, int month, int year);

} // namespace pvardo::schedule
