#include "schedule/MonthEvents.h"

#include "common/Session.h"
#include "schedule/MeetingRecord.h"
#include "schedule/MeetingRules.h"
#include "schedule/SchedulerPlugVars.h"
#include "store/Recordset.h"
#include "support/InstallationTest.h"

#include <QFile>
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::schedule;

namespace {

using pvardo::test::q;

QString monthDate(int year, int month)
{
    return QStringLiteral("%1/01/%2").arg(month, 2, 10, QLatin1Char('0')).arg(year);
}

class MonthEventsTest : public test::InstallationTest
{
protected:
    void SetUp() override
    {
        InstallationTest::SetUp();
        session().CurrentUser = q("clerk");
        path = installation.createDatabase(store::Table::MEETING);
    }

    MeetingForm once(const char* name)
    {
        MeetingForm form;
        form.Text2 = q(name);
        form.Text3 = q("Town Hall");
        form.Option1 = true;
        form.DTPicker1 = QTime(19, 30);
        return form;
    }

    MeetingForm rule(const char* name, const char* ordinal, const char* weekday, const char* interval = "")
    {
        MeetingForm form = once(name);
        form.Option1 = false;
        form.Option2 = true;
        form.Combo1 = q(ordinal);
        form.Combo2 = q(weekday);
        form.Combo3 = q(interval);
        return form;
    }

    // Adds a meeting as the editor does, with the calendar on a date.
    QString add(const MeetingForm& form, int year, int month, int day, MeetingRow* row = nullptr)
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(path, q("Select * from MEETING order by [MJUL]"), &status);
        EXPECT_TRUE(rows) << status.description.toStdString();
        rows->AddNew();
        status = movefieldsintodb(form, year, month, day, *rows, session().CurrentUser, row);
        EXPECT_TRUE(status.ok()) << status.description.toStdString();
        status = rows->Update();
        EXPECT_TRUE(status.ok()) << status.description.toStdString();
        auto last = store::openRecordsetAt(path, q("Select * from MEETING order by [RECNO]"), &status);
        last->MoveLast();
        return last->text(q("RECNO"));
    }

    // The names listed in a month, and the days they fall on.
    QStringList listed(int year, int month)
    {
        MonthEvents events(path);
        EXPECT_EQ(events.GetMonthEvents(monthDate(year, month)), MonthEvents::Outcome::Loaded);
        QStringList names;
        for (const MonthEntry& entry : events.entries()) {
            names.append(entry.name + QLatin1Char('@') + QString::number(entry.day));
            EXPECT_TRUE(events.isMarked(entry.day));
            EXPECT_EQ(entry.date.left(2).toInt(), month);
        }
        names.sort();
        return names;
    }

    QString path;
};

} // namespace

TEST_F(MonthEventsTest, AQuarterlyRuleFromFebruaryIsListedInItsFourMonthsOnly)
{
    add(rule("Quarterly", "Second", "Tuesday", "03 months"), 2011, 2, 3);
    add(once("Filler"), 2011, 1, 10); // so that every month of 2011 has rows
    for (int month = 1; month <= 12; ++month) {
        const bool expected = month == 2 || month == 5 || month == 8 || month == 11;
        EXPECT_EQ(listed(2011, month).join(QLatin1Char(',')).contains(q("Quarterly")), expected) << month;
    }
    // A rule has no end: the next year's months are the same.
    EXPECT_EQ(listed(2012, 5), QStringList{q("Quarterly@8")});
    EXPECT_TRUE(listed(2012, 6).isEmpty());
}

TEST_F(MonthEventsTest, ARuleWithoutIntervalIsListedEveryMonthOnItsDay)
{
    MeetingRow row;
    add(rule("Board", "Second", "Tuesday"), 2011, 3, 20, &row);
    EXPECT_EQ(row.EXTRA2, q(""));
    EXPECT_EQ(row.MDATE, QDate(2011, 3, 8)); // the rule's day replaces the calendar's 20th
    add(rule("Workshop", "Last", "Friday"), 2011, 3, 1);
    EXPECT_EQ(listed(2011, 3), (QStringList{q("Board@8"), q("Workshop@25")}));
    EXPECT_EQ(listed(2011, 4), (QStringList{q("Board@12"), q("Workshop@29")}));
    // Nothing ends a rule, but it begins with the month it was made for.
    for (int year = 2010; year <= 2013; ++year) {
        for (int month = 1; month <= 12; ++month) {
            const bool begun = year > 2011 || (year == 2011 && month >= 3);
            EXPECT_EQ(listed(year, month).size(), begun ? 2 : 0) << year << "-" << month;
        }
    }
}

TEST_F(MonthEventsTest, AOnceOnlyMeetingIsListedOnlyInItsMonth)
{
    const QString key = add(once("Hearing"), 2011, 3, 15);
    add(rule("Board", "First", "Monday"), 2011, 1, 1); // keeps every year's query non-empty
    MonthEvents events(path);
    ASSERT_EQ(events.GetMonthEvents(q("03/15/2011")), MonthEvents::Outcome::Loaded);
    ASSERT_EQ(events.entries().size(), 2);
    const MonthEntry& hearing = events.entries().at(events.entries().at(0).name == q("Hearing") ? 0 : 1);
    EXPECT_EQ(hearing, (MonthEntry{key, q("03/15/2011"), q("07:30 PM"), q("Hearing"), 15}));
    EXPECT_EQ(events.marks()[15], MonthEvents::MarkColorIndex);
    EXPECT_FALSE(events.isMarked(16));
    // The year's query brings it for every month of 2011; only March lists it.
    for (int month = 1; month <= 12; ++month) {
        EXPECT_EQ(listed(2011, month).join(QLatin1Char(',')).contains(q("Hearing")), month == 3) << month;
    }
    EXPECT_FALSE(listed(2012, 3).join(QLatin1Char(',')).contains(q("Hearing")));
}

TEST_F(MonthEventsTest, AYearWithoutRowsLeavesTheListAsItWasAndSetsStopFlag)
{
    add(once("Hearing"), 2011, 3, 15);
    MonthEvents events(path);
    ASSERT_EQ(events.GetMonthEvents(q("3/1/2011")), MonthEvents::Outcome::Loaded);
    ASSERT_EQ(events.entries().size(), 1);
    EXPECT_FALSE(session().StopFlag);
    EXPECT_EQ(events.GetMonthEvents(q("3/1/2012")), MonthEvents::Outcome::NoRows);
    EXPECT_TRUE(session().StopFlag);
    EXPECT_EQ(events.entries().size(), 1);
    EXPECT_TRUE(events.isMarked(15));
    EXPECT_TRUE(events.grid().isFor(2012, 3));
    // A month of the year without meetings of its own empties the list.
    EXPECT_EQ(events.GetMonthEvents(q("4/1/2011")), MonthEvents::Outcome::Loaded);
    EXPECT_TRUE(events.entries().isEmpty());
    EXPECT_FALSE(events.isMarked(15));
}

TEST_F(MonthEventsTest, BadDatesDamagedRulesAndMissingFilesEndQuietly)
{
    add(once("Hearing"), 2011, 3, 15);
    {
        // A rule damaged by hand names no day; it is left out.
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(path, q("Select * from MEETING"), &status);
        rows->AddNew();
        rows->setValue(q("MNAME"), q("Damaged"));
        rows->setValue(q("MFREQ"), q("R"));
        rows->setValue(q("MREC"), q("9x"));
        rows->setValue(q("MYEAR"), q("2011"));
        ASSERT_TRUE(rows->Update().ok());
    }
    EXPECT_EQ(listed(2011, 3), QStringList{q("Hearing@15")});

    MonthEvents events(path);
    EXPECT_EQ(events.GetMonthEvents(q("13/01/2011")), MonthEvents::Outcome::Failed);
    EXPECT_EQ(events.GetMonthEvents(q("")), MonthEvents::Outcome::Failed);
    EXPECT_EQ(events.GetMonthEvents(q("3/1/11")), MonthEvents::Outcome::Failed);
    EXPECT_TRUE(events.entries().isEmpty());
    // An apostrophe never reaches the query.
    EXPECT_EQ(events.GetMonthEvents(q("03/01/20'1")), MonthEvents::Outcome::Failed);

    MonthEvents missing(installation.databaseFolder() + q("/nothing.db"));
    EXPECT_EQ(missing.GetMonthEvents(q("03/01/2011")), MonthEvents::Outcome::Failed);
    EXPECT_EQ(missing.lastStatus().number, store::StoreErrorNumber::DatabaseNotFound);
}

TEST_F(MonthEventsTest, SavedValuesAreWrittenCutAndStampedAndReadBack)
{
    MeetingForm form = rule("A name much longer than the thirty characters", "Last", "Friday", "03 months");
    form.Text1 = q("  Room 2  ");
    form.Text4 = q("2.5 hours");
    form.Text5 = q(" J. Clerk ");
    form.Text6 = q("11-042");
    form.Text7 = q("Bring the maps.");
    const QString key = add(form, 2011, 11, 2);

    store::StoreStatus status;
    auto rows
        = store::openRecordsetAt(path, q("Select * from MEETING where [RECNO] = '") + key + q("'"), &status);
    ASSERT_TRUE(rows && !rows->Eof());
    EXPECT_EQ(rows->text(q("MYEAR")), q("2011"));
    EXPECT_EQ(rows->value(q("MJUL")).toInt(), DayNumber(2011, 11, 25));
    EXPECT_EQ(rows->text(q("MDATE")), q("11/25/2011"));
    EXPECT_EQ(rows->value(q("MTIME")).toTime(), QTime(19, 30));
    EXPECT_EQ(rows->value(q("MDUR")).toDouble(), 2.5);
    EXPECT_EQ(rows->text(q("MRMID")), q("Room 2"));
    EXPECT_EQ(rows->text(q("MNAME")), q("A name much longer than the th"));
    EXPECT_EQ(rows->text(q("MFREQ")), q("R"));
    EXPECT_EQ(rows->text(q("MREC")), q("66"));
    EXPECT_EQ(rows->text(q("MBY")), q("J. Clerk"));
    EXPECT_EQ(rows->text(q("EXTRA1")), q(""));
    EXPECT_EQ(rows->text(q("EXTRA2")), q("1102050811"));
    EXPECT_EQ(rows->text(q("BYUSER")), q("clerk"));
    EXPECT_TRUE(rows->value(q("TSTAMP")).toDateTime().isValid());

    // Read back in February, one of the rule's months.
    const MeetingShown shown = GetRecord(*rows, MonthGrid(2012, 2));
    EXPECT_EQ(shown.key, key);
    EXPECT_EQ(shown.date, QDate(2012, 2, 24));
    EXPECT_TRUE(shown.form.Option2);
    EXPECT_FALSE(shown.form.Option1);
    EXPECT_EQ(shown.form.Combo1, q("Last"));
    EXPECT_EQ(shown.form.Combo2, q("Friday"));
    EXPECT_EQ(shown.form.Combo3, q("03 months"));
    EXPECT_EQ(shown.form.Text4, q("2.5"));
    EXPECT_EQ(shown.form.Text7, q("Bring the maps."));

    // Saving the values read back writes the same rule again.
    EXPECT_EQ(meetingRowFromForm(shown.form, 2011, 11, 1).EXTRA2, q("1102050811"));
}

TEST_F(MonthEventsTest, AOnceOnlyRowReadsBackWithItsOwnDate)
{
    MeetingForm form = once("Hearing");
    form.Text4 = q("none");
    form.Combo3 = q("06 months"); // kept in the row, but a single meeting ignores it
    const QString key = add(form, 2011, 3, 15);
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(path, q("Select * from MEETING"), &status);
    EXPECT_EQ(rows->value(q("MDUR")).toDouble(), 0.0);
    EXPECT_EQ(rows->text(q("MREC")), q(""));
    EXPECT_EQ(rows->text(q("MFREQ")), q("O"));
    const MeetingShown shown = GetRecord(*rows, MonthGrid(2011, 7));
    EXPECT_EQ(shown.date, QDate(2011, 3, 15));
    EXPECT_TRUE(shown.form.Option1);
    EXPECT_EQ(shown.form.DTPicker1, QTime(19, 30));
    EXPECT_EQ(shown.form.Combo3, q("06 months"));
    EXPECT_EQ(listed(2011, 7), QStringList{});
}

TEST(SchedulerPlugVarsTest, GivesTheMonthNameAndYear)
{
    auto values = schedulerPlugValues(2011, 3);
    ASSERT_EQ(values.size(), 2);
    EXPECT_EQ(values[0], (QPair<QString, QString>{q("%mm"), q("March")}));
    EXPECT_EQ(values[1], (QPair<QString, QString>{q("%yy"), q("2011")}));
    session().fillConstants(QDate(2011, 3, 1));
    EXPECT_EQ(schedulerPlugValues(2012, 12).at(0).second, q("December"));
}
