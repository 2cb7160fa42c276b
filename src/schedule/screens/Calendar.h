#pragma once

#include "schedule/CalendarAlmanac.h"
#include "schedule/CalendarLanguage.h"

#include <QColor>
#include <QDate>
#include <QList>
#include <QWidget>
#include <array>

namespace pvardo::schedule {

// The month calendar of the dashboard and of any screen that needs one: a
// navigation bar with the month and year, a row of weekday names, six weeks
// of seven days (the neighbouring months' days greyed), and an info line with
// the day of the year, the week and today's date.
//
// Days can carry a mark (on or off, with a colour index) that screens set for
// the days that have something booked, and a selection flag. Marks belong to
// the month shown: they are cleared when another month comes into view, and
// the screen marks the new month's days. The calendar runs from January 1583
// to December 9999; trying to leave that range shows the info line's message
// and does not move.
//
// Keys: arrows move a day or a week, Page Up / Page Down a month (with Ctrl a
// year), Home / End to the first or last day, Space toggles the selection of
// the day in multiple selection. A click picks a day; a click on a greyed day
// goes to its month; the arrows of the navigation bar and the wheel change the
// month; a click on "Today:" goes to today.
class Calendar : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int CalDay READ CalDay WRITE setCalDay)
    Q_PROPERTY(int CalMonth READ CalMonth WRITE setCalMonth)
    Q_PROPERTY(int CalYear READ CalYear WRITE setCalYear)
    Q_PROPERTY(int FirstWeekDay READ FirstWeekDay WRITE setFirstWeekDay)
    Q_PROPERTY(int Language READ Language WRITE setLanguage)
    Q_PROPERTY(int Hemisphere READ Hemisphere WRITE setHemisphere)
    Q_PROPERTY(bool ShowInfoBar READ ShowInfoBar WRITE setShowInfoBar)
    Q_PROPERTY(bool ShowNavigationBar READ ShowNavigationBar WRITE setShowNavigationBar)
    Q_PROPERTY(bool CellOtherMonthView READ CellOtherMonthView WRITE setCellOtherMonthView)
    Q_PROPERTY(int SelectionType READ SelectionType WRITE setSelectionType)
    Q_PROPERTY(int SelectedDayMark READ SelectedDayMark WRITE setSelectedDayMark)
    Q_PROPERTY(QString DateFormat READ DateFormat WRITE setDateFormat)

public:
    enum Selection { SingleSelection = 0, MultipleSelection = 1 };
    static constexpr int MarkColorCount = 16;

    explicit Calendar(QWidget* parent = nullptr);

    int CalDay() const { return m_date.day(); }
    int CalMonth() const { return m_date.month(); }
    int CalYear() const { return m_date.year(); }
    QDate date() const { return m_date; }
    // Each setter keeps the other parts; a day past the month's end becomes
    // its last day. A date outside the calendar's range is refused with the
    // info line's message. Every change emits dateChanged().
    void setCalDay(int day);
    void setCalMonth(int month);
    void setCalYear(int year);
    bool setDate(const QDate& date);

    // 1 Sunday to 7 Saturday: the weekday of the first column.
    int FirstWeekDay() const { return m_firstWeekDay; }
    void setFirstWeekDay(int weekday);
    int Language() const { return m_language; }
    void setLanguage(int language);
    // 0 northern, 1 southern: turns the seasons round.
    int Hemisphere() const { return m_hemisphere; }
    void setHemisphere(int hemisphere) { m_hemisphere = hemisphere == 1 ? 1 : 0; }
    bool ShowInfoBar() const { return m_showInfoBar; }
    void setShowInfoBar(bool show);
    bool ShowNavigationBar() const { return m_showNavigationBar; }
    void setShowNavigationBar(bool show);
    bool CellOtherMonthView() const { return m_otherMonthView; }
    void setCellOtherMonthView(bool show);
    int SelectionType() const { return m_selectionType; }
    void setSelectionType(int type);
    // The colour index of the mark drawn under a selected day.
    int SelectedDayMark() const { return m_selectedDayMark; }
    void setSelectedDayMark(int colorIndex) { m_selectedDayMark = colorIndex; }
    // How the info line shows today, as a QDate format ("MM/dd/yyyy").
    QString DateFormat() const { return m_dateFormat; }
    void setDateFormat(const QString& format);

    // Day arithmetic (see CalendarMath.h).
    int DaysBetween(const QDate& from, const QDate& to) const;
    int DayOfYear(int day, int month, int year) const;
    int GetMonthDays(int month, int year) const;
    long GetJulianDay(int year, int month, int day) const;
    double GetMoonPhaseExact(double julianDay) const;
    // The almanac of a day, in the calendar's language (see CalendarAlmanac.h).
    QString GetMoonPhaseDetail(double julianDay) const { return almanac().GetMoonPhaseDetail(julianDay); }
    QString GetMoonPhaseInfo(double julianDay) const { return almanac().GetMoonPhaseInfo(julianDay); }
    QString GetQuarterInfo(int month) const { return almanac().GetQuarterInfo(month); }
    QString GetSeasonInfo(int day, int month) const { return almanac().GetSeasonInfo(day, month); }
    QString GetZodiacInfo(int day, int month) const { return almanac().GetZodiacInfo(day, month); }
    // Names in the calendar's language: month 1 to 12, weekday 1 (Sunday) to 7.
    QString GetMonthName(int month) const;
    QString GetWeekdayName(int weekday) const;

    // Replaces one list of the External language; gives the check's message
    // and changes nothing when the list has the wrong number of items.
    QString FillExternalLanguage(int list, const QString& text);

    // Sets or clears a day's mark in the month shown; drawn at the next Refresh().
    void DayMarking(int day, int colorIndex, bool on);
    void clearMarks();
    // The colour index of a day's mark, 0 when it has none.
    int dayMark(int day) const;
    // Whether a day is marked or selected.
    bool IsDaySel(int day) const;
    bool isDaySelected(int day) const;
    void DaySelect(int day, bool on);
    // The colours of the mark indexes, from index 0.
    void SetMarkColors(const QList<QColor>& colors);
    QColor markColor(int colorIndex) const;
    void Refresh();

    // The date drawn as today: the system's date unless set.
    QDate today() const;
    void setToday(const QDate& today);

    // The text of the info line, and where a day of the month shown is drawn.
    QString infoText() const;
    QRect dayRect(int day) const;
    // The navigation bar's buttons to the month before and after.
    QRect previousMonthRect() const { return geometry().previous; }
    QRect nextMonthRect() const { return geometry().next; }
    QRect todayRect() const { return geometry().today; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    // The date shown changed: another day, month or year.
    void dateChanged(int year, int month, int day);
    // Another month came into view; its marks were cleared.
    void monthChanged(int year, int month);
    void selectionChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Geometry
    {
        QRect navigation;
        QRect previous;
        QRect next;
        QRect title;
        QRect header;
        QRect grid;
        QRect info;
        QRect today;
        int cellWidth = 0;
        int cellHeight = 0;
    };
    Geometry geometry() const;
    QDate firstCellDate() const;
    QDate dateAt(const QPoint& point) const;
    QRect cellRect(int index) const;
    QStringList languageList(int list) const;
    CalendarAlmanac almanac() const;
    QString miscellaneous(int item) const;
    void moveMonths(int months);
    void showInfoMessage(const QString& text);
    void paintNavigation(QPainter& painter, const Geometry& g) const;
    void paintCell(QPainter& painter, const QRect& rect, const QDate& day) const;
    void paintInfo(QPainter& painter, const Geometry& g) const;

    QDate m_date;
    int m_firstWeekDay = 1;
    int m_language = CalendarLanguage::English;
    int m_hemisphere = CalendarAlmanac::Northern;
    bool m_showInfoBar = true;
    bool m_showNavigationBar = true;
    bool m_otherMonthView = true;
    int m_selectionType = SingleSelection;
    int m_selectedDayMark = 0;
    QString m_dateFormat = QStringLiteral("MM/dd/yyyy");
    std::array<QStringList, CalendarLanguage::ListCount> m_external;
    std::array<int, 32> m_marks{};
    std::array<bool, 32> m_selected{};
    QList<QColor> m_markColors;
    QString m_message;
    QDate m_hover;
    QDate m_today;
};

} // namespace pvardo::schedule
