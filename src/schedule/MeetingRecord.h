#pragma once

#include "schedule/MeetingForm.h"
#include "schedule/MonthGrid.h"
#include "store/Recordset.h"

#include <QDate>
#include <QString>
#include <QTime>

namespace pvardo::schedule {

// One row of the MEETING table as the calendar writes it, worked out from the
// editor's values and the date chosen on the calendar.
struct MeetingRow
{
    QString MYEAR; // the year's four digits
    int MJUL = 0; // DayNumber of the date, which the month's list sorts by
    QDate MDATE;
    QTime MTIME;
    double MDUR = 0;
    QString MRMID;
    QString MNAME;
    QString MLOC;
    QString MFREQ; // "O" once only, "R" recurring
    QString MREC; // the rule, empty for "O"
    QString MBY;
    QString EXTRA1; // spare, always empty
    QString EXTRA2; // the months of a rule, empty for every month
    QString MRECNO;
    QString MNOTES;
};

// The row a save writes. A once-only meeting falls on the calendar's date; a
// recurring one on its rule's day of the calendar's month, which then
// replaces the calendar's day (the date to show is the row's MDATE). Texts
// are trimmed and cut to their columns' widths; numbers read by their leading
// digits.
MeetingRow meetingRowFromForm(const MeetingForm& form, int calYear, int calMonth, int calDay);

// Writes the editor's values into the current or new row of a cursor on
// MEETING, in the table's order, and stamps it with the user and the time.
// Does not Update() the row. `row`, when given, receives what was written.
store::StoreStatus movefieldsintodb(const MeetingForm& form, int calYear, int calMonth, int calDay,
    store::Recordset& rows, const QString& currentUser, MeetingRow* row = nullptr);

// A row read back for the editor: its key, the date it shows on in the month
// of the grid, and the editor's values.
struct MeetingShown
{
    QString key; // RECNO
    QDate date; // invalid for a rule whose day the month does not have
    MeetingForm form;
};

// Reads the current row of a cursor on MEETING into the editor's values. A
// recurring meeting shows on its rule's day in the grid's month, with its
// ordinal, weekday and interval; anything else is a once-only meeting.
MeetingShown GetRecord(const store::Recordset& rows, const MonthGrid& grid);

} // namespace pvardo::schedule
