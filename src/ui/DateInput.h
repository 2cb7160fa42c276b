#pragma once

#include <QCalendarWidget>
#include <QDate>
#include <QLineEdit>
#include <QPointer>

namespace pvardo::ui {

// A date input: the date as "mm/dd/yyyy" that can be typed, or picked from a
// month calendar that drops down from the button at its end. A typed date is
// read when the clerk leaves the input or presses Enter: a year of two
// digits as FixDateText reads it, four digits as they stand. A text that is
// no date (13/45/2026, 2/30/2026) is refused with a message saying so, and
// the input goes back to the date it held: an impossible date never becomes
// another date. The calendar starts its weeks as the office's calendar does,
// on Sunday. Read-only, the input neither takes typing nor drops down.
class DateInput : public QLineEdit
{
    Q_OBJECT

public:
    explicit DateInput(const QDate& date = {}, QWidget* parent = nullptr);

    QDate date() const { return m_date; }
    // Shows a date; an invalid one leaves the input empty.
    void setDate(const QDate& date);

    // Whether the clerk may empty the input (a search by example, where an
    // empty date looks for any date). Otherwise an empty text is refused.
    void setEmptyAllowed(bool allowed) { m_emptyAllowed = allowed; }

    // The drop-down calendar, while it is open; nullptr otherwise.
    QCalendarWidget* calendar() const { return m_calendar; }
    // Drops the calendar down on the input's date.
    void showCalendar();

    // The office's calendar: weeks from Sunday, US names.
    static QLocale officeLocale();

signals:
    // The date was changed by the clerk or by setDate.
    void dateChanged(const QDate& date);

protected:
    void focusOutEvent(QFocusEvent* event) override;

private:
    // Reads the typed text; refuses it (and restores the date) when it is no date.
    void acceptTyped();

    QDate m_date;
    bool m_emptyAllowed = false;
    QPointer<QCalendarWidget> m_calendar;
};

} // namespace pvardo::ui
