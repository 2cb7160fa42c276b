#pragma once

#include <QDate>
#include <QString>

namespace pvardo::documents {

// The value forms a placeholder can ask for by its second character, as the
// office's letters have always printed them.

// "$##,###,###.#0": 1234.5 gives "$1,234.50", 0.5 gives "$.50", -3 gives
// "-$3.00". Text that is no number comes back as it stands (so an empty value
// stays empty).
QString formatMoney(const QString& value);

// A date from a value as the screens hold it: "mm/dd/yyyy" (one-digit parts
// and two-digit years allowed), ISO "yyyy-mm-dd", or an ISO date and time.
// Invalid when the value is no date.
QDate parseDateValue(const QString& value);

// "3rd day of March, 2024". The suffix goes by the day's last digit alone, so
// the 11th prints as "11st", the 12th as "12nd" and the 13th as "13rd": that
// is how the office's legal notices have always read.
QString formatLegalDate(const QDate& date);

// The value's leading number (digits up to the first other character; none
// gives 0) taken as a day count from 12/30/1899, as "mm/dd/yyyy".
QString formatDayCount(const QString& value);

// "hh:mm AMPM", as "02:05 PM". A value that is no time comes back as it stands.
QString formatClockTime(const QString& value);

// "mmmm dd, yyyy", as "March 03, 2024". A value that is no date comes back as
// it stands.
QString formatLongDate(const QString& value);
QString formatLongDate(const QDate& date);

} // namespace pvardo::documents
