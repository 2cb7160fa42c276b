#pragma once

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QTime>
#include <QVariant>

namespace pvardo {

// Dates, times and money as the screens, records and letters show them. Dates
// on screens are texts until they are stored, and these routines keep the
// office's long-standing readings, odd ones included, because their results
// end up in records and in printed letters.

// A typed date made into "mm/dd/yyyy". The month is the number before the first
// "/" (or, without one, the first "-"), the day the number after it. A year of
// four digits stands as it is: dates from the picker and the clock are never
// cut. A shorter year is read from the last two characters of the text as the
// year within 50 years before or 49 after today (FullYear): in 2026, 3/7/12 is
// 03/07/2012, 3-7-75 is 03/07/2075 and 3-7-76 is 03/07/1976. A text with neither
// "/" nor "-" comes back as it stands.
QString FixDateText(const QString& text);

// The year a two-digit year means: the one within 50 years before or 49
// after the year of `today`.
int FullYear(int twoDigitYear, const QDate& today);

// Money as "$##,###,###.#0": thousands separated by commas, always two decimals
// and a zero before the point when there are no dollars ("$0.50"). With a
// width above 0 a shorter text gets blanks in front up to the width; a longer
// one stays whole.
QString MoneyText(double value, int width = 0);

// A time of day as "hh:mm AMPM", on the twelve-hour clock: "02:05 PM". A value
// that is not a time gives the empty text.
QString TimeText(const QTime& time);
QString TimeText(const QDateTime& when);
// Also takes a time text ("14:05", "2:05 PM") or a number, the part of a day.
QString TimeText(const QVariant& value);

// A numeric text read as a day number (day 0 is 12/30/1899, day 1 12/31/1899)
// and shown as "mm/dd/yyyy". The number is read by its leading digits, so a text
// without any gives 12/30/1899. Out of the calendar's range: the empty text.
QString DateText(const QString& numericText);

// The day number of a date in the same count (12/30/1899 is 0).
double DayNumberOf(const QDate& date);

// Reads a date text in the forms people type and the store gives: m/d/yy,
// m/d/yyyy, m-d-yyyy, yyyy-mm-dd, "May 3, 2011". A two-digit year is read
// as FixDateText reads it, against today. An invalid date (2/30/2011) gives an invalid QDate.
QDate ReadDateText(const QString& text);

// "3rd day of May, 2011": the day without a leading zero, its suffix, " day of ",
// the month's name from the session's MonthNames, ", " and the year. The
// suffix looks at the last digit only, so the 11th is "11st", the 12th "12nd"
// and the 13th "13rd", as the office's letters always had them. A text that is
// not a date gives today's.
QString LongDateText(const QString& dateText);
QString LongDateText(const QDate& date);

// The text cut or filled with blanks on the right to exactly `width`
// characters, so report columns never shift.
QString PadColumn(const QString& text, int width);

// The same for text a reader reads as words (a description): text longer
// than the column ends at the last whole word that fits, a single word
// longer than the column is cut.
QString PadWordsColumn(const QString& text, int width);

// The part of a text before its first NUL, or the text as it stands.
QString CutAtNul(const QString& text);

// The astronomical Julian day number of a day, month and year, plus `hour`
// (added as it stands). Not the day number the meetings table sorts by.
double Julianday(double day, double month, double year, double hour);

// The day of the month (as text) of the first Sunday of a month: the first of
// days 1 to 8 whose Julian number at hour 1.5 is a whole multiple of 7.
QString FirstSunday(int month, int year);

} // namespace pvardo
