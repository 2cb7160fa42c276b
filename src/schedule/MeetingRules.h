#pragma once

#include <QString>
#include <QStringList>

namespace pvardo::schedule {

// How the board's calendar writes a meeting's schedule into its row.
//
// A recurring meeting is a rule, not a row per date: MREC holds two decimal
// parts, the occurrence (1 to 4 for "First" to "Fourth", 6 for "Last") and
// the weekday (1 for Sunday to 7 for Saturday), so the second Tuesday is "23"
// and the last Friday "66". EXTRA2 holds the months the rule counts in, as a
// chain of two-digit month numbers from the month the rule was saved in; an
// empty chain means every month.

// Occurrence 6 is the last such weekday of the month, whether the fourth or the fifth.
constexpr int OccurrenceLast = 6;

// The entries of the editor's lists: ordinals ("First" ... "Last"), weekdays
// ("Sunday" ... "Saturday") and the usual intervals ("03 months" ...).
const QStringList& occurrenceNames();
const QStringList& weekdayNames();
const QStringList& intervalNames();

// The day number a meeting row sorts by (MJUL). It runs 13 days ahead of the
// astronomers' Julian day (2451558 for 1 January 2000), and every row ever
// written carries it, so the count must stay as it is. (It is the day count of
// the old Julian calendar applied to our dates: 13 ahead from March 1900 to
// February 2100, 14 after that, which keeps the order of days all the same.)
int DayNumber(int year, int month, int day);

struct MeetingRule
{
    int occurrence = 1; // 1 to 4, or OccurrenceLast
    int weekday = 2; // 1 Sunday to 7 Saturday
};

// The occurrence for an ordinal of the list: 1 to 4, 6 for "Last", and 1 for
// anything that is not one of the list's entries.
int occurrenceFromText(const QString& ordinal);
// The weekday for a name of the list, 2 (Monday) for anything else.
int weekdayFromText(const QString& weekday);
// The list entry of an occurrence or weekday, empty for numbers outside the lists.
QString occurrenceText(int occurrence);
QString weekdayText(int weekday);

// MREC of a rule: occurrence and weekday joined.
QString encodeRule(const MeetingRule& rule);
// A stored MREC: the first character the occurrence, the rest the weekday,
// each read by its leading digits (so a damaged value gives 0, which names no day).
MeetingRule decodeRule(const QString& mrec);

// The interval of months an interval box holds: its first two characters,
// trimmed, read by their leading digits; 0 when they are empty.
int intervalFromText(const QString& intervalBox);
bool intervalGiven(const QString& intervalBox);

// EXTRA2 for a rule saved while `firstMonth` is shown: that month, then one
// pair for each multiple of the interval up to 12, wrapped into 1 to 12. So 3
// from February gives "0205081102" and 12 from May "0505". An interval that is
// not above 0 gives the first month alone, and an empty box an empty chain.
QString buildMonthChain(int firstMonth, const QString& intervalBox);

// Whether a rule with this EXTRA2 counts in `month`: always for an empty
// chain, otherwise when one of its first four pairs is that month.
bool chainCountsIn(const QString& extra2, int month);

// The interval a stored chain stands for: the months from its first month
// forward to its second, 12 when they are the same or there is no second;
// 0 for an empty chain.
int chainInterval(const QString& extra2);

// The interval as the box shows it: "03 months". Empty for 0.
QString intervalText(int interval);

} // namespace pvardo::schedule
