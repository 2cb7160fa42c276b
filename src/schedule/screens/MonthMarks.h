#pragma once

#include <array>

namespace pvardo::schedule {

class Calendar;

// Puts a month's marks (a colour index per day 1 to 31, 0 for none) on the
// calendar in place of the ones it shows, and draws them.
void showMonthMarks(Calendar& calendar, const std::array<int, 32>& marks);

} // namespace pvardo::schedule
