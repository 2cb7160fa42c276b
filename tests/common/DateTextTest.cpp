#include "common/DateText.h"

#include "common/Clock.h"
#include "common/NumberText.h"
#include "common/Session.h"

#include <gtest/gtest.h>

using namespace pvardo;

namespace {

struct TextCase
{
    const char* input;
    const char* expected;
};

void PrintTo(const TextCase& c, std::ostream* os)
{
    *os << '"' << c.input << '"';
}

} // namespace

class FixDateTextCases : public ::testing::TestWithParam<TextCase>
{
};

TEST_P(FixDateTextCases, GivesMonthDayAndPivotedYear)
{
    ScopedClockDay clock(QDate(2026, 11, 23));
    EXPECT_EQ(FixDateText(QString::fromUtf8(GetParam().input)), QString::fromUtf8(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(DateText, FixDateTextCases,
    ::testing::Values(
        // In 2026 a two-digit year is one of 1976 to 2075.
        TextCase{"12/25/99", "12/25/1999"}, TextCase{"12/25/00", "12/25/2000"},
        TextCase{"12/25/75", "12/25/2075"}, TextCase{"12/25/76", "12/25/1976"},
        TextCase{"3/7/12", "03/07/2012"}, TextCase{"3-7-28", "03/07/2028"},
        // Four-digit years stand as they are.
        TextCase{"3/7/1985", "03/07/1985"}, TextCase{"3/7/2031", "03/07/2031"},
        TextCase{"12/25/2027", "12/25/2027"}, TextCase{"1-2-1899", "01/02/1899"},
        // A one-digit year: its leading "/" is dropped.
        TextCase{"3/7/5", "03/07/2005"},
        // Nothing to split on: as it stands.
        TextCase{"20120307", "20120307"}, TextCase{"", ""}, TextCase{"March 7", "March 7"},
        // "/" wins over "-" when both are there.
        TextCase{"3-7/12", "03/12/2012"}));

TEST(DateText, TheTwoDigitPivotSlidesWithToday)
{
    // The year within 50 years before and 49 after today.
    const struct
    {
        int today;
        int twoDigits;
        int year;
    } cases[] = {
        {2026, 76, 1976},
        {2026, 75, 2075},
        {2028, 28, 2028},
        {2028, 78, 1978},
        {2028, 77, 2077},
        {2031, 31, 2031},
        {2031, 80, 2080},
        {2031, 81, 1981},
        {2060, 10, 2010},
        {2060, 9, 2109},
        {2060, 99, 2099},
        {2000, 50, 1950},
        {2000, 49, 2049},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(FullYear(c.twoDigits, QDate(c.today, 6, 1)), c.year) << c.today << " " << c.twoDigits;
        ScopedClockDay clock(QDate(c.today, 6, 1));
        EXPECT_EQ(FixDateText(QStringLiteral("1/2/%1").arg(c.twoDigits, 2, 10, QLatin1Char('0'))),
            QStringLiteral("01/02/%1").arg(c.year));
        EXPECT_EQ(ReadDateText(QStringLiteral("1/2/%1").arg(c.twoDigits, 2, 10, QLatin1Char('0'))),
            QDate(c.year, 1, 2));
    }
}

TEST(DateText, MoneyTextFormatsAndPadsInFront)
{
    const struct
    {
        double value;
        int width;
        const char* expected;
    } cases[] = {
        {1234.5, 0, "$1,234.50"},
        {1234567.891, 0, "$1,234,567.89"},
        {0.5, 0, "$0.50"},
        {0, 0, "$0.00"},
        {100, 0, "$100.00"},
        {-45.25, 0, "-$45.25"},
        {123456789012.0, 0, "$123,456,789,012.00"},
        // Shorter than the width: blanks in front; longer: whole.
        {12.5, 10, "    $12.50"},
        {1234567.0, 5, "$1,234,567.00"},
        {12.5, 0, "$12.50"},
        {12.5, -4, "$12.50"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(MoneyText(c.value, c.width), QString::fromUtf8(c.expected))
            << c.value << " width " << c.width;
    }
}

TEST(DateText, TimeTextIsTwelveHourWithAmPm)
{
    EXPECT_EQ(TimeText(QTime(14, 5)), QStringLiteral("02:05 PM"));
    EXPECT_EQ(TimeText(QTime(0, 30)), QStringLiteral("12:30 AM"));
    EXPECT_EQ(TimeText(QTime(12, 0)), QStringLiteral("12:00 PM"));
    EXPECT_EQ(TimeText(QTime(9, 59, 59)), QStringLiteral("09:59 AM"));
    EXPECT_EQ(TimeText(QDateTime(QDate(2012, 2, 3), QTime(19, 15))), QStringLiteral("07:15 PM"));
    EXPECT_EQ(TimeText(QVariant(QStringLiteral("2012-02-03T14:05:00"))), QStringLiteral("02:05 PM"));
    EXPECT_EQ(TimeText(QVariant(QStringLiteral("7:30 pm"))), QStringLiteral("07:30 PM"));
    EXPECT_EQ(TimeText(QVariant(0.75)), QStringLiteral("06:00 PM"));
    EXPECT_EQ(TimeText(QVariant(QStringLiteral("soon"))), QString());
    EXPECT_EQ(TimeText(QTime()), QString());
}

TEST(DateText, DateTextReadsADayNumber)
{
    EXPECT_EQ(DateText(QStringLiteral("0")), QStringLiteral("12/30/1899"));
    EXPECT_EQ(DateText(QStringLiteral("abc")), QStringLiteral("12/30/1899"));
    EXPECT_EQ(DateText(QStringLiteral("40942")), QStringLiteral("02/03/2012"));
    EXPECT_EQ(DateText(QStringLiteral("40942.75")), QStringLiteral("02/03/2012"));
    EXPECT_EQ(DateText(QStringLiteral("-1")), QStringLiteral("12/29/1899"));
    EXPECT_EQ(DateText(QStringLiteral("99999999")), QString());
    EXPECT_EQ(DayNumberOf(QDate(2012, 2, 3)), 40942.0);
}

TEST(DateText, LongDateKeepsTheLastDigitSuffixes)
{
    const struct
    {
        const char* input;
        const char* expected;
    } cases[] = {
        {"5/3/2011", "3rd day of May, 2011"},
        {"5/11/2011", "11st day of May, 2011"},
        {"5/12/2011", "12nd day of May, 2011"},
        {"5/13/2011", "13rd day of May, 2011"},
        {"5/22/2011", "22nd day of May, 2011"},
        {"5/21/2011", "21st day of May, 2011"},
        {"5/4/2011", "4th day of May, 2011"},
        {"2011-12-31", "31st day of December, 2011"},
        {"March 1, 2012", "1st day of March, 2012"},
        {"2/29/12", "29th day of February, 2012"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(LongDateText(QString::fromUtf8(c.input)), QString::fromUtf8(c.expected)) << c.input;
    }
    // Not a date: today.
    EXPECT_EQ(LongDateText(QStringLiteral("2/30/2011")), LongDateText(QDate::currentDate()));
    EXPECT_EQ(LongDateText(QStringLiteral("pending")), LongDateText(QDate::currentDate()));
}

TEST(DateText, LongDateTakesTheSessionMonthNames)
{
    session().MonthNames[5] = QStringLiteral("Mai");
    EXPECT_EQ(LongDateText(QDate(2011, 5, 3)), QStringLiteral("3rd day of Mai, 2011"));
}

TEST(DateText, PadColumnCutsOrFillsToTheWidth)
{
    EXPECT_EQ(PadColumn(QStringLiteral("abcdef"), 3), QStringLiteral("abc"));
    EXPECT_EQ(PadColumn(QStringLiteral("ab"), 4), QStringLiteral("ab  "));
    EXPECT_EQ(PadColumn(QString(), 2), QStringLiteral("  "));
    EXPECT_EQ(PadColumn(QStringLiteral("ab"), 0), QString());
    // A description ends at a whole word; a word alone longer than the
    // column is cut; text that fits, or whose cut falls between words, stays.
    EXPECT_EQ(PadWordsColumn(QStringLiteral("Day care in existing church building"), 24),
              QStringLiteral("Day care in existing    "));
    EXPECT_EQ(PadWordsColumn(QStringLiteral("Subdivision-of-lands plan"), 10), QStringLiteral("Subdivisio"));
    EXPECT_EQ(PadWordsColumn(QStringLiteral("Two lots now"), 8), QStringLiteral("Two lots"));
    EXPECT_EQ(PadWordsColumn(QStringLiteral("Two lots"), 10), QStringLiteral("Two lots  "));
}

TEST(DateText, CutAtNul)
{
    EXPECT_EQ(CutAtNul(QStringLiteral("C:\\TEMP") + QChar(u'\0') + QStringLiteral("junk")),
        QStringLiteral("C:\\TEMP"));
    EXPECT_EQ(CutAtNul(QStringLiteral("plain")), QStringLiteral("plain"));
}

TEST(DateText, JuliandayAndFirstSunday)
{
    // 1 January 2000 at noon is Julian day 2451545.
    EXPECT_DOUBLE_EQ(Julianday(1, 1, 2000, 0.5), 2451545.0);
    EXPECT_NEAR(Julianday(4, 10, 1957, 0.81), 2436116.31, 1e-6);
    const struct
    {
        int month;
        int year;
        const char* sunday;
    } cases[]
        = {{1, 2012, "1"}, {2, 2012, "5"}, {9, 2012, "2"}, {12, 2026, "6"}, {3, 2000, "5"}, {11, 2026, "1"}};
    for (const auto& c : cases) {
        EXPECT_EQ(FirstSunday(c.month, c.year), QString::fromLatin1(c.sunday)) << c.month << '/' << c.year;
        const QDate date(c.year, c.month, QString::fromLatin1(c.sunday).toInt());
        EXPECT_EQ(date.dayOfWeek(), 7);
    }
}

TEST(NumberText, ReadsLeadingDigits)
{
    EXPECT_EQ(LeadingNumber(QStringLiteral("12 ft")), 12.0);
    EXPECT_EQ(LeadingNumber(QStringLiteral(" 1 200")), 1200.0);
    EXPECT_EQ(LeadingNumber(QStringLiteral("abc")), 0.0);
    EXPECT_EQ(LeadingNumber(QStringLiteral("-3.5x")), -3.5);
    EXPECT_EQ(LeadingNumber(QStringLiteral("1e3")), 1000.0);
    EXPECT_EQ(LeadingNumber(QStringLiteral("1e")), 1.0);
    EXPECT_EQ(LeadingWholeNumber(QStringLiteral("07")), 7);
    EXPECT_EQ(LeadingWholeNumber(QStringLiteral("9e99")), std::numeric_limits<int>::max());
}
