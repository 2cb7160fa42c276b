#include "schedule/MeetingTable.h"

#include "common/Session.h"
#include "support/InstallationTest.h"

#include <QDir>
#include <QFileInfo>
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::schedule;

namespace {

using pvardo::test::q;

MeetingForm meeting(const char* name, bool recurring)
{
    MeetingForm form;
    form.Text2 = q(name);
    form.Text3 = q("Town Hall");
    form.Option1 = !recurring;
    form.Option2 = recurring;
    return form;
}

class MeetingTableTest : public test::InstallationTest
{
protected:
    void SetUp() override
    {
        InstallationTest::SetUp();
        path = installation.createDatabase(store::Table::MEETING);
    }

    QString path;
};

} // namespace

TEST_F(MeetingTableTest, AddsFindsSavesAndRemovesByKey)
{
    MeetingTable table(installation.databaseFolder(), installation.programFolder());
    ASSERT_TRUE(table.open(q("2011")).ok());
    QString first;
    QString second;
    ASSERT_TRUE(table.add(meeting("Hearing", false), 2011, 3, 15, q("clerk"), &first).ok());
    ASSERT_TRUE(table.add(meeting("Board", true), 2011, 3, 15, q("clerk"), &second).ok());
    EXPECT_NE(first, second);

    ASSERT_TRUE(table.open(q("2011")).ok());
    ASSERT_TRUE(table.findKey(first));
    EXPECT_EQ(table.rows()->text(q("MNAME")), q("Hearing"));
    EXPECT_FALSE(table.findKey(q("999")));
    EXPECT_FALSE(table.findKey(QString()));

    ASSERT_TRUE(table.save(second, meeting("Board meeting", true), 2011, 3, 15, q("clerk")).ok());
    ASSERT_TRUE(table.findKey(second));
    EXPECT_EQ(table.rows()->text(q("MNAME")), q("Board meeting"));

    // A key that is gone changes nothing and says so.
    EXPECT_FALSE(table.remove(q("999")).ok());
    EXPECT_FALSE(table.save(q("999"), meeting("Ghost", false), 2011, 3, 15, q("clerk")).ok());
    ASSERT_TRUE(table.remove(first).ok());
    ASSERT_TRUE(table.open(q("2011")).ok());
    EXPECT_EQ(table.rows()->RecordCount(), 1);
}

TEST_F(MeetingTableTest, AMissingFileFallsBackToTheYearsRowsOfTheProgramsFile)
{
    // The program's file holds a rule saved in 2010 and a meeting of 2011.
    {
        MeetingTable seed(installation.databaseFolder(), installation.programFolder());
        ASSERT_TRUE(seed.open(q("2010")).ok());
        ASSERT_TRUE(seed.add(meeting("Rule of 2010", true), 2010, 5, 1, q("clerk"), nullptr).ok());
        ASSERT_TRUE(seed.add(meeting("Hearing", false), 2011, 3, 15, q("clerk"), nullptr).ok());
    }
    const QString elsewhere = installation.path(q("nowhere"));
    QDir().mkpath(elsewhere);
    MeetingTable table(elsewhere, installation.programFolder());
    ASSERT_TRUE(table.open(q("2011")).ok());
    EXPECT_TRUE(table.fellBack());
    EXPECT_EQ(QFileInfo(table.path()), QFileInfo(path));
    EXPECT_EQ(QFileInfo(session().DatabaseLabel), QFileInfo(path));
    // The fallback's query asks for the year alone: the rule is not among the rows.
    EXPECT_EQ(table.rows()->queryText(), q("Select * from MEETING where [MYEAR] = '2011' order by [MJUL]"));
    EXPECT_EQ(table.rows()->RecordCount(), 1);
    // Later loads read the same file, with the rules.
    ASSERT_TRUE(table.open(q("2011")).ok());
    EXPECT_EQ(table.rows()->RecordCount(), 2);
}

TEST_F(MeetingTableTest, NoFileAnywhereKeepsTheCursorAndSaysWhy)
{
    QFile::remove(path);
    MeetingTable table(installation.databaseFolder(), installation.programFolder());
    const store::StoreStatus status = table.open(q("2011"));
    EXPECT_EQ(status.number, store::StoreErrorNumber::DatabaseNotFound);
    EXPECT_FALSE(table.isOpen());
    QString key;
    EXPECT_FALSE(table.add(meeting("Hearing", false), 2011, 3, 15, q("clerk"), &key).ok());
    EXPECT_FALSE(QFile::exists(path));
}
