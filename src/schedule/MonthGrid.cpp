#include "schedule/MonthGrid.h"

#include "schedule/CalendarMath.h"

#include <QDate>

namespace pvardo::schedule {

void MonthGrid::build(int year, int month)
{
    m_cells = {};
    m_year = year;
    m_month = month;
    if (month < 1 || month > 12) {
        return;
    }
    std::array<int, 8> counters{};
    std::array<int, 8> lastOf{};
    const int days = GetMonthDays(month, year);
    for (int day = 1; day <= days; ++day) {
        const int weekday = QDate(year, month, day).dayOfWeek() % 7 + 1; // Sunday is 1
        const int occurrence = ++counters[static_cast<size_t>(weekday)];
        if (occurrence <= 5) {
            m_cells[static_cast<size_t>(weekday)][static_cast<size_t>(occurrence)] = day;
        }
        lastOf[static_cast<size_t>(weekday)] = day;
    }
    for (size_t weekday = 1; weekday <= 7; ++weekday) {
        m_cells[weekday][6] = lastOf[weekday];
    }
}

int MonthGrid::cell(int weekday, int occurrence) const
{
    if (weekday < 1 || weekday > 7 || occurrence < 0 || occurrence > 6) {
        return 0;
    }
    return m_cells[static_cast<size_t>(weekday)][static_cast<size_t>(occurrence)];
}

} // namespace pvardo::schedule
