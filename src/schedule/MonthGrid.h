#pragma once

#include <array>

namespace pvardo::schedule {

// The weekdays of one month, by weekday (1 Sunday to 7 Saturday) and
// occurrence (1 the first such weekday, up to 5; 6 always the last one). A
// recurring meeting finds its day here: the second Tuesday is cell (3, 2).
// Cells a month does not have, and occurrence 0, hold 0.
class MonthGrid
{
public:
    MonthGrid() = default;
    MonthGrid(int year, int month) { build(year, month); }

    // Refills the grid for a month; a month outside 1 to 12 leaves it empty.
    void build(int year, int month);

    int year() const { return m_year; }
    int month() const { return m_month; }
    bool isFor(int year, int month) const { return m_year == year && m_month == month; }

    // The day of the month in a cell, 0 for none or for a weekday or
    // occurrence outside the grid.
    int cell(int weekday, int occurrence) const;

private:
    int m_year = 0;
    int m_month = 0;
    // [weekday 1..7][occurrence 0..6]; row 0 unused.
    std::array<std::array<int, 7>, 8> m_cells{};
};

} // namespace pvardo::schedule
