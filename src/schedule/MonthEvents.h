#pragma once

#include "schedule/MonthGrid.h"
#include "store/StoreError.h"

#include <QList>
#include <QString>
#include <array>

namespace pvardo::schedule {

// One line of the month's list of meetings.
struct MonthEntry
{
    QString key; // the row's RECNO
    QString date; // "mm/dd/yyyy"
    QString time; // "hh:mm AM"
    QString name; // MNAME
    int day = 0; // the day of the month, for the calendar's mark

    bool operator==(const MonthEntry&) const = default;
};

// The board's meetings of the month in view: the single meetings of that
// month and the recurring ones that fall in it, worked out from their rules
// each time a month is loaded, with the days to mark on the calendar.
class MonthEvents
{
public:
    // The colour index of the marks of meeting days on the calendar.
    static constexpr int MarkColorIndex = 5;

    enum class Outcome {
        Loaded, // the list and marks are the month's
        NoRows, // the year has no meetings and there are no rules: list and marks unchanged, StopFlag set
        Failed, // the table could not be read: the list holds what was built before the failure
        // Another month was loaded during this load's pause (the screen runs
        // events while it waits): that newer load's list and marks stand.
        Superseded,
    };

    explicit MonthEvents(QString databasePath);

    QString databasePath() const { return m_path; }

    // Loads the month of a date given as month/day/year text (the year is
    // its last four characters): selects the year's rows and every rule, in
    // day-number order, and keeps those that fall in the month in view. A
    // text that is no such date (a two-digit year, a month of 13) fails and
    // changes nothing.
    Outcome GetMonthEvents(const QString& dateText);

    // The query for a year, as the month load runs it.
    static QString monthQuery(const QString& year);

    const QList<MonthEntry>& entries() const { return m_entries; }
    // The mark of each day 1 to 31: 0 for none, else the colour index.
    const std::array<int, 32>& marks() const { return m_marks; }
    bool isMarked(int day) const { return day >= 1 && day <= 31 && m_marks[static_cast<size_t>(day)] != 0; }
    // The grid of the month last loaded, rebuilt whenever that month changes.
    const MonthGrid& grid() const { return m_grid; }
    // What went wrong in the last load that failed.
    const store::StoreStatus& lastStatus() const { return m_status; }

private:
    QString m_path;
    MonthGrid m_grid;
    QList<MonthEntry> m_entries;
    std::array<int, 32> m_marks{};
    store::StoreStatus m_status;
    int m_loads = 0; // loads begun, to recognise one overtaken during its pause
};

} // namespace pvardo::schedule
