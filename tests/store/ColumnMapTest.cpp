#include "store/ColumnMap.h"

#include "support/TestInstallation.h"

#include <QMap>

#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::store;

TEST(ColumnMap, EveryMappedTableHasItsPlaces)
{
    const struct {
        Table table;
        int places;
    } expected[] = {{Table::PBPROJ, 105}, {Table::PBFEES, 24},  {Table::BONDS, 24},    {Table::MEETING, 23},
                    {Table::ACTIONS, 23}, {Table::ISSUES, 23},  {Table::PBSEQRA, 17},  {Table::PBAGENCY, 17},
                    {Table::PBMAPS, 17},  {Table::PBWETL, 17},  {Table::ADJ, 14}};
    for (const auto& e : expected) {
        ColumnMap map;
        map.fill(e.table);
        EXPECT_EQ(map.count(), e.places) << tableDef(e.table).tableName;
    }
    ColumnMap map;
    map.fill(Table::PBPROJ);
    EXPECT_EQ(map.place(66).name, QStringLiteral("PBMISCNOTES"));
    EXPECT_EQ(map.place(71).name, QStringLiteral("PBMISCNOTES"));
    EXPECT_EQ(map.place(36).longest, ColumnMap::NoLimit);
    EXPECT_EQ(map.place(1).box, 1);
    EXPECT_EQ(map.place(14).longest, 40);
}

TEST(ColumnMap, RefillingForAShorterTableLeavesStalePlacesUnwalked)
{
    ColumnMap map;
    map.fill(Table::PBPROJ);
    map.fill(Table::ADJ);
    EXPECT_EQ(map.count(), 14);
    EXPECT_EQ(map.place(15).name, QStringLiteral("PBAPPADDR1")); // stale, from the case table
    int walked = 0;
    test::TestInstallation install;
    const QString file = install.createDatabase(Table::ADJ);
    StoreStatus status;
    auto rows = openRecordsetAt(file, QStringLiteral("Select * from ADJ"), &status);
    getdata(map, *rows, [&walked](int, const QString&) { ++walked; });
    EXPECT_EQ(walked, 0); // the surrounding parcels' map has no boxes at all
}

TEST(ColumnMap, WritingBoxesCutsTrimsAndKeepsLongTexts)
{
    test::TestInstallation install;
    const QString file = install.createDatabase(Table::PBPROJ);
    StoreStatus status;
    auto rows = openRecordsetAt(file, QStringLiteral("Select * from PBPROJ order by PBCASE"), &status);
    ColumnMap map;
    map.fill(Table::PBPROJ);

    QMap<int, QString> boxes;
    boxes[1] = QStringLiteral("  12-207  ");
    boxes[8] = QString(100, QLatin1Char('A'));  // applicant name, 40 at most
    boxes[24] = QString(5000, QLatin1Char('d')); // description, long text
    rows->AddNew();
    ASSERT_TRUE(movefieldsintodb(map, *rows, [&boxes](int box) { return boxes.value(box); }).ok());
    ASSERT_TRUE(stampRow(*rows, QStringLiteral("a-user-name-of-25-chars!!")).ok());
    ASSERT_TRUE(rows->Update().ok());
    rows->Requery();

    EXPECT_EQ(rows->text(QStringLiteral("PBCASE")), QStringLiteral("12-207"));
    EXPECT_EQ(rows->text(QStringLiteral("PBAPPNAME1")), QString(40, QLatin1Char('A')));
    EXPECT_EQ(rows->text(QStringLiteral("PBPROJDESC")).size(), 5000);
    EXPECT_EQ(rows->text(QStringLiteral("BYUSER")), QStringLiteral("a-user-name-of-25-"));
    EXPECT_TRUE(rows->value(QStringLiteral("TSTAMP")).toDateTime().isValid());
    // An empty box is saved as an empty text, not as nothing.
    EXPECT_FALSE(rows->value(QStringLiteral("PBOWNRNAME1")).isNull());
    EXPECT_EQ(rows->text(QStringLiteral("PBOWNRNAME1")), QString());

    QMap<int, QString> shown;
    getdata(map, *rows, [&shown](int box, const QString& text) { shown[box] = text; });
    EXPECT_EQ(shown.value(1), QStringLiteral("12-207"));
    EXPECT_EQ(shown.value(8).size(), 40);
    EXPECT_TRUE(shown.contains(12));
    EXPECT_EQ(shown.value(12), QString());
}

TEST(ColumnMap, NullColumnsShowAsEmptyBoxes)
{
    test::TestInstallation install;
    const QString file = install.createDatabase(Table::PBPROJ);
    StoreStatus status;
    auto rows = openRecordsetAt(file, QStringLiteral("Select * from PBPROJ"), &status);
    rows->AddNew();
    rows->setValue(QStringLiteral("PBCASE"), QStringLiteral("12-1"));
    ASSERT_TRUE(rows->Update().ok());
    ColumnMap map;
    map.fill(Table::PBPROJ);
    QMap<int, QString> shown;
    int walked = 0;
    getdata(map, *rows, [&](int box, const QString& text) {
        shown[box] = text;
        ++walked;
    });
    EXPECT_EQ(shown.value(7), QString());
    EXPECT_EQ(walked, 70); // every boxed place: the notes box twice
    EXPECT_EQ(shown.size(), 69);
}
