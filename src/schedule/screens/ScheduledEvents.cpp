#include "schedule/screens/ScheduledEvents.h"

#include "common/DateText.h"
#include "documents/Listing.h"
#include "documents/Merge.h"
#include "documents/PrintState.h"
#include "schedule/MeetingRules.h"
#include "schedule/MonthGrid.h"
#include "store/Recordset.h"

#include <QTextDocument>

namespace pvardo::schedule {

namespace {

QString literalDate(const QDate& date)
{
    // Four-digit years: a span is never read through a two-digit pivot.
    return date.toString(QStringLiteral("MM/dd/yyyy"));
}

QString column(const store::Recordset& row, const char* name)
{
    return row.text(QString::fromLatin1(name)).trimmed();
}

} // namespace

QString scheduledEventsQuery(const QDate& start, const QDate& end)
{
    return QStringLiteral("Select * from MEETING where ([MDATE] > #") + literalDate(start.addDays(-1))
        + QStringLiteral("# and [MDATE] < #") + literalDate(end.addDays(1))
        + QStringLiteral("#) or [MFREQ] = 'R' order by [MDATE]");
}

QString scheduledEventLines(const store::Recordset& meeting, int yearInView, int monthInView)
{
    QString date = column(meeting, "MDATE");
    if (column(meeting, "MFREQ") == QLatin1String("R")) {
        const MeetingRule rule = decodeRule(column(meeting, "MREC"));
        const int day = MonthGrid(yearInView, monthInView).cell(rule.weekday, rule.occurrence);
        date = day > 0 ? QDate(yearInView, monthInView, day).toString(QStringLiteral("MM/dd/yyyy")) : QString();
    }
    return PadColumn(date, 12) + PadColumn(TimeText(meeting.value(QStringLiteral("MTIME"))), 10)
        + PadColumn(column(meeting, "MNAME"), 30) + PadColumn(column(meeting, "MLOC"), 30) + QLatin1Char('\n')
        + PadColumn(QString(), 12) + PadColumn(column(meeting, "MBY"), 20)
        + PadColumn(column(meeting, "MNOTES").simplified(), 50) + QLatin1Char('\n');
}

int buildScheduledEvents(QTextDocument& report, store::Recordset& rows, int yearInView, int monthInView,
    const QString& headPath, double fontSize)
{
    documents::Listing listing(report, fontSize);
    listing.appendHeadFile(headPath);
    documents::printState().reportHeading = QStringLiteral("SCHEDULED EVENTS");
    documents::runPlugVars(documents::ScreenCodes::Dashboard, report);
    documents::printState().reportHeading.clear();
    QString lines;
    int listed = 0;
    if (rows.RecordCount() > 0) {
        for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) {
            lines += scheduledEventLines(rows, yearInView, monthInView);
            ++listed;
        }
    }
    if (listed == 0) {
        lines = QStringLiteral("\nNO MEETINGS SCHEDULED ");
    }
    listing.append(lines + QLatin1Char('\n'));
    return listed;
}

} // namespace pvardo::schedule
