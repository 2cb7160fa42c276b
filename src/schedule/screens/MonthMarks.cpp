#include "schedule/screens/MonthMarks.h"

#include "schedule/screens/Calendar.h"

namespace pvardo::schedule {

void showMonthMarks(Calendar& calendar, const std::array<int, 32>& marks)
{
    calendar.clearMarks();
    for (int day = 1; day <= 31; ++day) {
        if (marks[static_cast<size_t>(day)] != 0) {
            calendar.DayMarking(day, marks[static_cast<size_t>(day)], true);
        }
    }
    calendar.Refresh();
}

} // namespace pvardo::schedule
