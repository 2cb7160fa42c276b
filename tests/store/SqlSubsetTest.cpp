#include "store/SqlSubset.h"

#include "common/Clock.h"

#include <gtest/gtest.h>

using namespace pvardo::store;

namespace {

struct QueryCase {
    const char* text;
    bool accepted;
};

void PrintTo(const QueryCase& c, std::ostream* out)
{
    *out << '"' << c.text << '"';
}

class QueryTexts : public ::testing::TestWithParam<QueryCase>
{
};

} // namespace

// Every shape of query the screens build, and texts that must be refused.
TEST_P(QueryTexts, ParseOrRefuse)
{
    const QueryCase& c = GetParam();
    QString error;
    const auto parsed = parseSelect(QString::fromUtf8(c.text), &error);
    EXPECT_EQ(parsed.has_value(), c.accepted) << c.text << " -> " << error.toStdString();
    if (!c.accepted) {
        EXPECT_FALSE(error.isEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Store, QueryTexts,
    ::testing::Values(
        QueryCase{"Select * from PBPROJ order by PBCASE", true},
        QueryCase{"Select * from SBL order by [SBLF]", true},
        QueryCase{"Select * from RPS", true},
        QueryCase{"select * FROM pbfees WHERE [PBFCASE] = '12-207' order by SEQ", true},
        QueryCase{"Select * from PBFEES WHERE PBFCASE = '12-1' and [PBFPAIDMM] = 3 and [PBFPAIDYY] = 12 order by SEQ", true},
        QueryCase{"Select * from MEETING where [MINUTES] like '%zoning%' order by [MJUL]", true},
        QueryCase{"Select * from PBPROJ where [PBFILEDATE] > #02/03/12# order by [PBFILEDATE]", true},
        QueryCase{"Select * from MEETING where ([MDATE] > #1/1/2012# and [MDATE] < #2/1/2012#) or ([MYEAR] = '2012' or [MFREQ] = 'R') order by [MDATE]", true},
        QueryCase{"Select * from PBPROJ where [PBSTATUS] = 'P' or [PBSTATUS] = 'I' or [PBSTATUS] = 'O'", true},
        QueryCase{"Select * from PBFEES WHERE [PBFBALDUE] <> 0 order by SEQ", true},
        QueryCase{"Select * from SBL where [SEC] = '12' AND[BLK] = '1' AND[LOT] = '5' order by [SBLF]", true},
        QueryCase{"Select * from SBL where [NORTHCOORD] > 0 AND [EASTCOORD] > 0 AND (([NORTHCOORD] > -500.5 AND [NORTHCOORD] < 1500) AND ([EASTCOORD] > 10 AND [EASTCOORD] < 20))  order by [SBLF]", true},
        QueryCase{"Select * from PBPROJ where [PBAPPNAME1] like '%O''Brien%'", true},
        // An apostrophe joined in as it stands breaks the statement.
        QueryCase{"Select * from PBPROJ where [PBAPPNAME1] like '%O'Brien%'", false},
        QueryCase{"Select * from PBPROJ where [PBCASE] = 'O'Brien'", false},
        // A search form's text left open on AND.
        QueryCase{"Select * from RPS where [RLOCN1] like '%MAIN%' AND ", false},
        QueryCase{"Select * from SBL where [SEC] = '0' AND [BLK] = '0' AND", false},
        // Anything outside the subset.
        QueryCase{"Delete from PBPROJ", false},
        QueryCase{"Select PBCASE from PBPROJ", false},
        QueryCase{"Select * from PBPROJ, SBL", false},
        QueryCase{"Select * from PBPROJ; drop table PBPROJ", false},
        QueryCase{"Select * from PBPROJ where [PBCASE] = '1' -- comment", false},
        QueryCase{"Select * from PBPROJ where [PBFILEDATE] > #13/45/12#", false},
        QueryCase{"Select * from PBPROJ where ((([PBCASE] = '1')", false},
        QueryCase{"", false}));

TEST(SqlSubset, DatesBetweenHashesReadAsTheOfficeWritesThem)
{
    QDate date;
    QTime time;
    bool hasDate = false;
    bool hasTime = false;
    ASSERT_TRUE(parseDateLiteral(QStringLiteral("02/03/12"), &date, &time, &hasDate, &hasTime));
    EXPECT_EQ(date, QDate(2012, 2, 3));
    ASSERT_TRUE(parseDateLiteral(QStringLiteral("2/3/2012"), &date, &time, &hasDate, &hasTime));
    EXPECT_EQ(date, QDate(2012, 2, 3));
    ASSERT_TRUE(parseDateLiteral(QStringLiteral("12/25/85"), &date, &time, &hasDate, &hasTime));
    EXPECT_EQ(date, QDate(1985, 12, 25));
    ASSERT_TRUE(parseDateLiteral(QStringLiteral("3/7/2012 2:05 PM"), &date, &time, &hasDate, &hasTime));
    EXPECT_TRUE(hasTime);
    EXPECT_EQ(time, QTime(14, 5));
    EXPECT_FALSE(parseDateLiteral(QStringLiteral("2/30/2012"), &date, &time, &hasDate, &hasTime));
    EXPECT_FALSE(parseDateLiteral(QStringLiteral("soon"), &date, &time, &hasDate, &hasTime));
}

TEST(SqlSubset, AShortYearSlidesWithTodayAsTypedDatesDo)
{
    QDate date;
    QTime time;
    bool hasDate = false;
    bool hasTime = false;
    const struct {
        QDate today;
        const char* literal;
        QDate meant;
    } cases[] = {
        {QDate(2026, 11, 23), "1/2/29", QDate(2029, 1, 2)},  // a fixed pivot of 30 agreed here
        {QDate(2026, 11, 23), "1/2/45", QDate(2045, 1, 2)},  // and read 1945 here
        {QDate(2026, 11, 23), "1/2/77", QDate(1977, 1, 2)},
        {QDate(2060, 6, 1), "1/2/29", QDate(2029, 1, 2)},
        {QDate(2060, 6, 1), "1/2/05", QDate(2105, 1, 2)},
        {QDate(2060, 6, 1), "1/2/2005", QDate(2005, 1, 2)}, // four digits stand
    };
    for (const auto& c : cases) {
        pvardo::ScopedClockDay day(c.today);
        ASSERT_TRUE(parseDateLiteral(QString::fromLatin1(c.literal), &date, &time, &hasDate, &hasTime));
        EXPECT_EQ(date, c.meant) << c.literal << " on " << c.today.toString(Qt::ISODate).toStdString();
    }
}

TEST(SqlSubset, NestingIsBounded)
{
    QString text = QStringLiteral("Select * from PBPROJ where ");
    text += QString(200, QLatin1Char('(')) + QStringLiteral("[PBCASE] = '1'") + QString(200, QLatin1Char(')'));
    QString error;
    EXPECT_FALSE(parseSelect(text, &error).has_value());
    EXPECT_TRUE(error.contains(QLatin1String("nested")));
}
