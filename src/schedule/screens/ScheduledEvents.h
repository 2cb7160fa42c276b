#pragma once

#include <QDate>
#include <QString>

class QTextDocument;

namespace pvardo::store {
class Recordset;
}

namespace pvardo::schedule {

// The dashboard's listing of the board's meetings, "SCHEDULED EVENTS".

// The meetings of a span: the single meetings from `start` to `end` (the
// query compares strictly, so each bound is widened by a day) and every
// recurring meeting, in date order. A single meeting outside the span is
// never listed, whatever year the dashboard shows.
QString scheduledEventsQuery(const QDate& start, const QDate& end);

// One meeting of the listing, two lines: the date (12), the time (10), the
// name (30) and the place (30); then, under the date, who booked it (20) and
// the remarks (50). A recurring meeting is dated on its day of the month in
// view; one that names no day of that month has no date.
QString scheduledEventLines(const store::Recordset& meeting, int yearInView, int monthInView);

// Writes the listing into `report` in a fixed-pitch face: the heading file
// with the report's title and the dashboard's words put in, a meeting after
// the other, or "NO MEETINGS SCHEDULED " when there is none. Gives the number
// of meetings listed.
int buildScheduledEvents(QTextDocument& report, store::Recordset& rows, int yearInView, int monthInView,
    const QString& headPath, double fontSize);

} // namespace pvardo::schedule
