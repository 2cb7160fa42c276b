#pragma once

#include "schedule/MeetingForm.h"
#include "schedule/MeetingRecord.h"
#include "store/Recordset.h"

#include <QString>
#include <memory>

namespace pvardo::schedule {

// The dashboard's own cursor on the board's MEETING table: the rows of the
// year in view and every rule, as the month list shows them. The editor finds
// a meeting by its key here, adds, saves and deletes through it.
//
// When the meeting file of the database folder cannot be found, the calendar
// falls back to the program's own databases folder (the seeded empty file
// lives there), remembers that file as the database in use and opens the
// year's single meetings from it; later loads read the same file.
class MeetingTable
{
public:
    MeetingTable(QString databaseFolder, QString programFolder);

    // The meeting file of a database folder.
    static QString meetingFile(const QString& folder);
    // The query the fallback file is opened with: the year's rows alone.
    static QString fallbackQuery(const QString& year);

    // The file in use: the database folder's, or the fallback's after a fallback.
    QString path() const { return m_path; }
    bool fellBack() const { return m_fellBack; }

    // Opens the year's rows and every rule. A missing file switches to the
    // fallback file (see above) and stores its path in the session's database
    // label. Gives the failure when no file could be opened; the previous
    // cursor is kept then.
    store::StoreStatus open(const QString& year);
    bool isOpen() const { return m_rows != nullptr; }
    store::Recordset* rows() const { return m_rows.get(); }

    // Reads the rows again, with what other workstations wrote meanwhile.
    store::StoreStatus requery();

    // Stands on the meeting with this key, looked for from the first row;
    // false when it is not among the rows.
    bool findKey(const QString& key);

    // Adds a meeting from the editor's values on the calendar's date and gives
    // its key; nothing is written when the row fails.
    store::StoreStatus add(const MeetingForm& form, int calYear, int calMonth, int calDay,
        const QString& currentUser, QString* newKey, MeetingRow* written = nullptr);
    // Writes the editor's values into the meeting with this key.
    store::StoreStatus save(const QString& key, const MeetingForm& form, int calYear, int calMonth,
        int calDay, const QString& currentUser, MeetingRow* written = nullptr);
    // Deletes the meeting with this key, for every month it shows in, and
    // moves on to the next row.
    store::StoreStatus remove(const QString& key);

private:
    store::StoreStatus notFound(const QString& key) const;
    // Moves the form into the current row and stores it; a refused row is
    // given up, so the table is left as it was.
    store::StoreStatus writeRow(const MeetingForm& form, int calYear, int calMonth, int calDay,
        const QString& currentUser, MeetingRow* written);

    QString m_path;
    QString m_programFolder;
    bool m_fellBack = false;
    std::unique_ptr<store::Recordset> m_rows;
};

} // namespace pvardo::schedule
