#include "schedule/MonthEvents.h"

#include "common/DateText.h"
#include "common/NumberText.h"
#include "common/Session.h"
#include "common/Waiting.h"
#include "schedule/MeetingRules.h"
#include "store/Recordset.h"

#include <QDate>

namespace pvardo::schedule {

namespace {

// Whether a rule first written for the date `firstDate` ("mm/dd/yyyy") begins
// after the month in view. A rule without a readable first date shows in
// every month of its chain, as rules always did.
bool beginsAfter(const QString& firstDate, int year, int month)
{
    const QString text = firstDate.trimmed();
    bool monthOk = false;
    bool yearOk = false;
    const int firstMonth = text.left(2).toInt(&monthOk);
    const int firstYear = text.right(4).toInt(&yearOk);
    if (!monthOk || !yearOk || text.size() != 10) {
        return false;
    }
    return firstYear > year || (firstYear == year && firstMonth > month);
}

} // namespace

MonthEvents::MonthEvents(QString databasePath)
    : m_path(std::move(databasePath))
{
}

QString MonthEvents::monthQuery(const QString& year)
{
    return QStringLiteral("Select * from MEETING where [MYEAR] = '") + year
        + QStringLiteral("' or [MFREQ] = 'R' order by [MJUL]");
}

MonthEvents::Outcome MonthEvents::GetMonthEvents(const QString& dateText)
{
    const QString text = dateText.trimmed();
    const QString year = text.right(4);
    const int month = LeadingWholeNumber(text.section(QLatin1Char('/'), 0, 0));
    const int yearNumber = LeadingWholeNumber(year);
    bool digits = year.size() == 4;
    for (const QChar c : year) {
        digits = digits && c.isDigit();
    }
    if (!digits || month < 1 || month > 12 || yearNumber < 1 || !QDate(yearNumber, month, 1).isValid()) {
        m_status = store::StoreStatus::failure(store::StoreErrorNumber::TypeMismatch,
            QStringLiteral("\"%1\" is not a date of the calendar.").arg(dateText));
        return Outcome::Failed;
    }
    const int load = ++m_loads;

    store::StoreStatus status;
    auto rows = store::openRecordsetAt(m_path, monthQuery(year), &status);
    if (!rows) {
        m_status = status;
        return Outcome::Failed;
    }
    // Other workstations' writes settle before the rows are read.
    WaitSeconds(1);
    if (load != m_loads) {
        return Outcome::Superseded;
    }
    if (!m_grid.isFor(yearNumber, month)) {
        m_grid.build(yearNumber, month);
    }
    if (rows->Eof()) {
        session().StopFlag = true;
        return Outcome::NoRows;
    }
    m_entries.clear();
    m_marks = {};
    session().StopFlag = false;

    const QString monthText = QStringLiteral("%1").arg(month, 2, 10, QLatin1Char('0'));
    const QString yearText = QStringLiteral("%1").arg(yearNumber, 4, 10, QLatin1Char('0'));
    while (!rows->Eof()) {
        QString date;
        int day = 0;
        if (rows->text(QStringLiteral("MFREQ")).trimmed() != QLatin1String("R")) {
            date = rows->text(QStringLiteral("MDATE"));
            day = date.mid(3, 2).toInt();
        } else {
            // A rule falls on its weekday of this month, in the months of its chain.
            const MeetingRule rule = decodeRule(rows->text(QStringLiteral("MREC")));
            day = m_grid.cell(rule.weekday, rule.occurrence);
            // A rule begins with the month it was made for: a clerk looking back
            // at the months before must not see meetings that were never held.
            const bool counts = chainCountsIn(rows->text(QStringLiteral("EXTRA2")), month)
                && !beginsAfter(rows->text(QStringLiteral("MDATE")), yearNumber, month);
            // A damaged rule that names no day of the month is left out
            // rather than shown on a day that does not exist.
            if (counts && day > 0) {
                date = monthText + QLatin1Char('/') + QStringLiteral("%1").arg(day, 2, 10, QLatin1Char('0'))
                    + QLatin1Char('/') + yearText;
            }
        }
        // The year's query brings every single meeting of the year: only
        // those of the month in view are listed.
        if (!date.isEmpty() && date.left(2) == monthText && day >= 1 && day <= 31) {
            m_marks[static_cast<size_t>(day)] = MarkColorIndex;
            m_entries.append(MonthEntry{rows->text(QStringLiteral("RECNO")), date,
                TimeText(rows->value(QStringLiteral("MTIME"))), rows->text(QStringLiteral("MNAME")), day});
        }
        status = rows->MoveNext();
        if (!status.ok()) {
            m_status = status;
            return Outcome::Failed;
        }
    }
    m_status = store::StoreStatus::success();
    return Outcome::Loaded;
}

} // namespace pvardo::schedule
