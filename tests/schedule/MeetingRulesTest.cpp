#include "schedule/MeetingRules.h"

#include "common/DateText.h"
#include "schedule/CalendarAlmanac.h"
#include "schedule/CalendarMath.h"
#include "schedule/MonthGrid.h"

#include "support/Text.h"

#include <gtest/gtest.h>

using namespace pvardo::schedule;

namespace {

using pvardo::test::q;

struct GridCase
{
    const char* what;
    int year;
    int month;
    int weekday;
    int occurrence;
    int day;
};

class MonthGridTest : public ::testing::TestWithParam<GridCase>
{
};

} // namespace

TEST_P(MonthGridTest, FindsTheDayOfARule)
{
    const GridCase& c = GetParam();
    EXPECT_EQ(MonthGrid(c.year, c.month).cell(c.weekday, c.occurrence), c.day) << c.what;
}

INSTANTIATE_TEST_SUITE_P(Rules, MonthGridTest,
    ::testing::Values(
        // March 2011 begins on a Tuesday.
        GridCase{"second Tuesday when the 1st is a Tuesday", 2011, 3, 3, 2, 8},
        GridCase{"first Tuesday when the 1st is a Tuesday", 2011, 3, 3, 1, 1},
        GridCase{"second Tuesday when the 1st is a Wednesday", 2011, 6, 3, 2, 14},
        GridCase{"last Friday of a month with five Fridays", 2011, 4, 6, OccurrenceLast, 29},
        GridCase{"last Friday of a month with four Fridays", 2011, 3, 6, OccurrenceLast, 25},
        GridCase{"fifth Friday where there is one", 2011, 4, 6, 5, 29},
        GridCase{"fifth Friday where there is none", 2011, 3, 6, 5, 0},
        GridCase{"last Sunday of a leap February", 2012, 2, 1, OccurrenceLast, 26},
        GridCase{"last Wednesday of a leap February with five", 2012, 2, 4, OccurrenceLast, 29},
        GridCase{"last Saturday of December", 2011, 12, 7, OccurrenceLast, 31},
        GridCase{"occurrence 0 holds no day", 2011, 3, 3, 0, 0},
        GridCase{"weekday outside the week", 2011, 3, 8, 1, 0},
        GridCase{"occurrence past the last", 2011, 3, 3, 7, 0}),
    [](const auto& testInfo) { return "case" + std::to_string(testInfo.index); });

TEST(MonthGridTest, AMonthOutsideTheYearGivesAnEmptyGrid)
{
    EXPECT_EQ(MonthGrid(2011, 13).cell(3, 1), 0);
    EXPECT_EQ(MonthGrid(2011, 0).cell(3, OccurrenceLast), 0);
}

TEST(DayNumberTest, GivesTheOfficesDayNumbers)
{
    // The office's count runs 13 days ahead of the astronomers' Julian day,
    // and every stored row carries it.
    EXPECT_EQ(DayNumber(2000, 1, 1), 2451558);
    EXPECT_EQ(DayNumber(2011, 3, 15), 2455649);
    EXPECT_EQ(DayNumber(2000, 1, 1) - GetJulianDay(2000, 1, 1), 13);
    // Every day of this century and the last is the common routines' Julian
    // day plus 13, one day after the other.
    for (QDate day(1900, 3, 1); day < QDate(2100, 3, 1); day = day.addDays(1)) {
        const double astronomers = pvardo::Julianday(day.day(), day.month(), day.year(), 0.5);
        ASSERT_EQ(DayNumber(day.year(), day.month(), day.day()), static_cast<int>(astronomers) + 13)
            << day.toString(Qt::ISODate).toStdString();
    }
    // Consecutive across a month end, a leap day and a year end.
    EXPECT_EQ(DayNumber(2012, 3, 1) - DayNumber(2012, 2, 28), 2);
    EXPECT_EQ(DayNumber(2012, 1, 1) - DayNumber(2011, 12, 31), 1);
}

TEST(CalendarMathTest, CountsDaysAsTheCalendarDoes)
{
    EXPECT_EQ(GetJulianDay(2000, 1, 1), 2451545);
    EXPECT_EQ(GetJulianDay(1582, 10, 15) - GetJulianDay(1582, 10, 4), 1);
    EXPECT_EQ(GetMonthDays(2, 2012), 29);
    EXPECT_EQ(GetMonthDays(2, 2011), 28);
    EXPECT_EQ(GetMonthDays(2, 1900), 28);
    EXPECT_EQ(GetMonthDays(2, 2000), 29);
    EXPECT_EQ(GetMonthDays(12, 9999), 31);
    EXPECT_EQ(DayOfYear(1, 1, 2011), 1);
    EXPECT_EQ(DayOfYear(31, 12, 2012), 366);
    // New moon of 6 January 2000 and full moon of 21 January 2000.
    const double newMoon = GetMoonPhaseExact(GetJulianDay(2000, 1, 6));
    EXPECT_TRUE(newMoon < 0.05 || newMoon > 0.95) << newMoon;
    EXPECT_NEAR(GetMoonPhaseExact(GetJulianDay(2000, 1, 21)), 0.5, 0.05);
}

TEST(MeetingRulesTest, EncodesTheRuleInTwoDigits)
{
    EXPECT_EQ(encodeRule({occurrenceFromText(q("Second")), weekdayFromText(q("Tuesday"))}), q("23"));
    EXPECT_EQ(encodeRule({occurrenceFromText(q("Last")), weekdayFromText(q("Friday"))}), q("66"));
    // Nothing chosen in the lists: the first Monday.
    EXPECT_EQ(encodeRule({occurrenceFromText(q("")), weekdayFromText(q(""))}), q("12"));
    const MeetingRule last = decodeRule(q("66"));
    EXPECT_EQ(last.occurrence, OccurrenceLast);
    EXPECT_EQ(last.weekday, 6);
    EXPECT_EQ(occurrenceText(last.occurrence), q("Last"));
    EXPECT_EQ(weekdayText(last.weekday), q("Friday"));
    // A damaged rule names no day rather than a wrong one.
    EXPECT_EQ(MonthGrid(2011, 3).cell(decodeRule(q("x")).weekday, decodeRule(q("x")).occurrence), 0);
    EXPECT_EQ(occurrenceText(5), q(""));
}

namespace {

struct ChainCase
{
    int firstMonth;
    const char* box;
    const char* chain;
    int interval; // as read back
};

class MonthChainTest : public ::testing::TestWithParam<ChainCase>
{
};

} // namespace

TEST_P(MonthChainTest, BuildsAndReadsBackTheChain)
{
    const ChainCase& c = GetParam();
    const QString chain = buildMonthChain(c.firstMonth, q(c.box));
    EXPECT_EQ(chain, q(c.chain));
    EXPECT_EQ(chainInterval(chain), c.interval);
}

INSTANTIATE_TEST_SUITE_P(Chains, MonthChainTest,
    ::testing::Values(ChainCase{2, "03 months", "0205081102", 3}, ChainCase{5, "12 months", "0505", 12},
        ChainCase{11, "03 months", "1102050811", 3}, ChainCase{10, "06 months", "100410", 6},
        ChainCase{1, "4", "01050901", 4}, ChainCase{3, "", "", 0}, ChainCase{3, "  ", "", 0},
        // Typed values that never reach 12 must not loop: the rule keeps its month.
        ChainCase{5, "0", "05", 12}, ChainCase{5, "-3", "05", 12}, ChainCase{5, "24", "05", 12},
        ChainCase{5, "ab", "05", 12}),
    [](const auto& testInfo) { return "case" + std::to_string(testInfo.index); });

TEST(MonthChainTest, OnlyTheFirstFourPairsCount)
{
    const QString quarterly = buildMonthChain(2, q("03 months"));
    QList<int> months;
    for (int month = 1; month <= 12; ++month) {
        if (chainCountsIn(quarterly, month)) {
            months.append(month);
        }
    }
    EXPECT_EQ(months, (QList<int>{2, 5, 8, 11}));
    // A monthly chain saved by an edit: its fifth pair onwards is never read.
    const QString monthly = buildMonthChain(1, q("1"));
    EXPECT_TRUE(chainCountsIn(monthly, 4));
    EXPECT_FALSE(chainCountsIn(monthly, 5));
    EXPECT_TRUE(chainCountsIn(q(""), 7));
    EXPECT_TRUE(chainCountsIn(q("  "), 7));
}

TEST(CalendarAlmanacTest, NamesTheQuarterSeasonSignAndMoon)
{
    const CalendarAlmanac north;
    const CalendarAlmanac south(CalendarLanguage::English, CalendarAlmanac::Southern);
    EXPECT_EQ(north.GetQuarterInfo(3), q("First quarter"));
    EXPECT_EQ(north.GetQuarterInfo(7), q("Thirth quarter"));
    EXPECT_EQ(north.GetSeasonInfo(20, 3), q("Winter"));
    EXPECT_EQ(north.GetSeasonInfo(21, 3), q("Spring"));
    EXPECT_EQ(south.GetSeasonInfo(21, 3), q("Autumn"));
    EXPECT_EQ(north.GetSeasonInfo(31, 12), q("Winter"));
    const std::pair<int, int> days[]
        = {{20, 3}, {21, 3}, {19, 1}, {20, 1}, {18, 2}, {19, 2}, {22, 11}, {31, 12}};
    const char* const signs[]
        = {"Fishes", "Ram", "Goat", "Water Carrier", "Water Carrier", "Fishes", "Archer", "Goat"};
    for (size_t i = 0; i < std::size(days); ++i) {
        EXPECT_EQ(north.GetZodiacInfo(days[i].first, days[i].second), q(signs[i])) << i;
    }
    // Full moon in the morning of 21 January 2000, new moon on the 6th.
    EXPECT_EQ(north.GetMoonPhaseDetail(GetJulianDay(2000, 1, 21)), q("the Full moon"));
    // The moon runs faster near its perigee, so three days after may read as four.
    const QString after = north.GetMoonPhaseDetail(GetJulianDay(2000, 1, 24));
    EXPECT_TRUE(after == q("3 days after Full moon") || after == q("4 days after Full moon"))
        << after.toStdString();
    EXPECT_EQ(north.GetMoonPhaseDetail(GetJulianDay(2000, 1, 5)), q("1 day before New moon"));
    EXPECT_EQ(north.GetMoonPhaseInfo(GetJulianDay(2000, 1, 24)), q("Full moon"));
    // 0.626, not 0.625, ends the step after the full moon.
    EXPECT_EQ(CalendarAlmanac::phaseIndex(0.6255), 2);
    EXPECT_EQ(CalendarAlmanac::phaseIndex(0.626), 3);
}
