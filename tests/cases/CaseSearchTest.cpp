#include "CaseScreenFixture.h"
#include "cases/CaseQuery.h"
#include "cases/LotFigures.h"
#include "ui/DateInput.h"
#include "ui/RecordMode.h"

#include <QApplication>
#include <QMap>
#include <QTest>
#include <QTreeView>

using namespace pvardo;
using namespace pvardo::test;
using cases::CaseQuery;
using ui::RecordMode;

namespace {

QString queryOf(std::initializer_list<std::pair<int, const char*>> boxes, const char* caseNumber = "",
    QList<QPair<QString, QString>> lists = {}, QDate markedDate = {})
{
    store::ColumnMap map;
    map.fill(store::Table::PBPROJ);
    QMap<int, QString> typed;
    for (const auto& [box, text] : boxes) {
        typed.insert(box, q(text));
    }
    cases::CaseExample example;
    example.caseNumber = q(caseNumber);
    example.box = [typed](int box) { return typed.value(box); };
    example.lists = lists;
    example.fileDateMarked = markedDate.isValid();
    example.fileDate = markedDate;
    return CaseQuery::build(map, example).value_or(q("<none>"));
}

} // namespace

TEST(CaseQuery, TextsOfTheSearchByExample)
{
    const QString select = q("Select * from PBPROJ where ");
    const QString order = q(" order by [PBCASE]");
    EXPECT_EQ(queryOf({}), q("<none>"));
    EXPECT_EQ(queryOf({{7, "   "}}), q("<none>"));
    EXPECT_EQ(queryOf({}, "12-207"), select + q("[PBCASE] = '12-207'") + order);
    // Section, block, lot and sublots match exactly; the rest anywhere.
    EXPECT_EQ(queryOf({{2, "12"}}), select + q("[SEC]  = '12'") + order);
    EXPECT_EQ(queryOf({{7, "12"}}), select + q("[PBLOCN1] like '%12%'") + order);
    EXPECT_EQ(queryOf({{8, " SMITH "}, {2, "12"}}, "12-1"),
        select + q("[PBCASE] = '12-1' AND[SEC]  = '12' AND[PBAPPNAME1] like '%SMITH%'") + order);
    EXPECT_EQ(queryOf({}, "", {{q("PBTYPE"), q("<select>")}, {q("PBUSE"), q("Accessory")}}),
        select + q(" [PBUSE] like '%Accessory%'") + order);
    // The contact's address also tests the expiry date.
    EXPECT_EQ(queryOf({{21, "5/1/12"}}),
        select + q("[PBCONTACTADDR1] like '%5/1/12%' AND [PBEXPIRYDATE] = #5/1/12#") + order);
    // Once the date picker was used, every search carries the date.
    EXPECT_EQ(queryOf({{8, "ANN"}}, "", {}, QDate(2012, 2, 3)),
        select + q("[PBAPPNAME1] like '%ANN%' AND[PBFILEDATE] = #02/03/2012#") + order);
    // Districts past the north grid are not searched.
    EXPECT_EQ(queryOf({{63, "CENTRAL"}}), q("<none>"));
}

TEST(LotFigures, CalculatesInTheOfficesFormats)
{
    struct Row
    {
        const char *width, *depth, *footprint, *improvement, *area, *acres, *coverage, *improved;
    };
    const Row rows[] = {
        {"100", "200", "2000", "1000", "20000.00", "0.46", "10.00", "15.00"},
        {"0.5", "1", "", "", ".50", "0.00", "0.00", "0.00"},
        {"10 ft", "10", "200", "", "100.00", "0.00", "200.00", "200.00"},
        {"208.71", "208.71", "", "", "43559.87", "1.00", "0.00", "0.00"},
    };
    for (const Row& row : rows) {
        const auto results = cases::LotFigures::calculate(
            {q(row.width), q(row.depth), q(row.footprint), q(row.improvement)});
        ASSERT_TRUE(results) << row.width;
        EXPECT_EQ(results->area, q(row.area)) << row.width;
        EXPECT_EQ(results->acres, q(row.acres)) << row.width;
        EXPECT_EQ(results->coverage, q(row.coverage)) << row.width;
        EXPECT_EQ(results->improvedCoverage, q(row.improved)) << row.width;
    }
    EXPECT_FALSE(cases::LotFigures::calculate({q(""), q("200"), q("1"), q("1")}));
    EXPECT_FALSE(cases::LotFigures::calculate({q("abc"), q("200"), q("1"), q("1")}));
}

TEST_F(CaseScreenTest, FindByExampleNarrowsTheSetAndResetBringsItBack)
{
    seedCase(q("12-200"), {{q("SEC"), q("12")}, {q("PBLOCN1"), q("12 MAIN ST")}});
    seedCase(q("12-201"), {{q("SEC"), q("120")}, {q("PBLOCN1"), q("5 OAK")}});
    seedCase(q("12-202"), {{q("SEC"), q("7")}, {q("PBLOCN1"), q("112 ELM")}});
    open();
    click("ILocate");
    EXPECT_EQ(screen->mode(), RecordMode::Find);
    EXPECT_EQ(find<QPushButton>("ILocate")->text(), q("Find"));
    EXPECT_TRUE(find<QPushButton>("ILocate")->isDefault());
    EXPECT_TRUE(on("iBrowse"));
    EXPECT_TRUE(on("ICancel"));
    EXPECT_FALSE(on("INew"));
    EXPECT_EQ(text(1), q(""));
    // Nothing typed: no search, no message.
    click("ILocate");
    EXPECT_EQ(screen->mode(), RecordMode::Find);
    EXPECT_TRUE(prompts().shown().isEmpty());

    type(2, q("12"));
    click("ILocate");
    EXPECT_EQ(screen->currentQuery(), q("Select * from PBPROJ where [SEC]  = '12' order by [PBCASE]"));
    EXPECT_EQ(screen->mode(), RecordMode::Browse);
    EXPECT_EQ(label("recpos"), q("Record 1 of 1"));
    EXPECT_TRUE(find<QWidget>("iReset")->isVisibleTo(screen.get()));
    EXPECT_EQ(find<QPushButton>("ILocate")->text(), q("&Locate"));

    click("iReset");
    click("ILocate");
    type(7, q("12"));
    click("ILocate");
    EXPECT_EQ(label("recpos"), q("Record 1 of 2"));
    click("iReset");
    EXPECT_EQ(label("recpos"), q("Record 1 of 3"));
    EXPECT_FALSE(find<QWidget>("iReset")->isVisibleTo(screen.get()));
}

TEST_F(CaseScreenTest, ASearchThatFindsNothingOrBreaksComesBackToTheWholeSet)
{
    seedCase(q("12-200"));
    seedCase(q("12-201"));
    open();
    click("ILocate");
    type(8, q("NOBODY"));
    click("ILocate");
    EXPECT_EQ(lastTitle(), q(" Record not Found"));
    EXPECT_EQ(
        lastText(), q("Unable to locate a matching record.\nPlease check info for accuracy and try again."));
    EXPECT_EQ(screen->currentQuery(), CaseQuery::fullQuery());
    EXPECT_EQ(label("recpos"), q("Record 1 of 2"));
}

TEST_F(CaseScreenTest, AnApostropheInAnyInputIsSearchedForAsTyped)
{
    seedCase(q("12-200"),
        {{q("PBAPPNAME1"), q("O'BRIEN")}, {q("PBOWNRNAME1"), q("D'ANGELO")}, {q("PBLOCN1"), q("1 KING'S RD")},
            {q("SEC"), q("1'2")}});
    seedCase(q("12-201"), {{q("PBAPPNAME1"), q("OBRIEN")}});
    seedCase(q("O'1"));
    open();
    const std::pair<int, const char*> searches[]
        = {{8, "o'brien"}, {12, "D'ANGELO"}, {7, "KING'S"}, {2, "1'2"}, {1, "O'1"}};
    for (const auto& [box, value] : searches) {
        prompts().clear();
        click("ILocate");
        type(box, q(value));
        click("ILocate");
        EXPECT_TRUE(prompts().shown().isEmpty()) << value << ": " << lastText().toStdString();
        EXPECT_EQ(label("recpos"), q("Record 1 of 1")) << value;
        EXPECT_EQ(text(1), box == 1 ? q("O'1") : q("12-200")) << value;
        click("iReset");
    }
    // A list's typed text goes the same way.
    click("ILocate");
    pick("Combo1", "Owner's choice");
    click("ILocate");
    EXPECT_EQ(lastTitle(), q(" Record not Found"));
    EXPECT_NE(lastText(), q("Bad SQL"));
    // Picking the case from the list finds it by its number, apostrophe and all.
    screen->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(screen.get()));
    click("iBrowse");
    auto* view = find<QTreeView>("ListView1");
    const QModelIndex last = view->model()->index(2, 1);
    ASSERT_EQ(last.data().toString(), q("O'1"));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, view->visualRect(last).center());
    EXPECT_EQ(text(1), q("O'1"));
    EXPECT_EQ(label("recpos"), q("Record 3 of 3"));
}

TEST_F(CaseScreenTest, TheFilingDateMarkSearchesTheDateSetAndCanBeTakenAway)
{
    seedCase(q("12-200"), {{q("PBAPPNAME1"), q("O'BRIEN")}, {q("PBOWNRNAME1"), q("MARGUERITE")},
                              {q("PBFILEDATE"), q("2012-02-03")}});
    seedCase(q("12-201"), {{q("PBAPPNAME1"), q("ANN")}, {q("PBFILEDATE"), q("2012-05-05")},
                              {q("PBLOCN1"), q("1 MAIN")}, {q("PBAPPADDR1"), q("1 ELM")}, {q("SEC"), q("1")},
                              {q("BLK"), q("1")}, {q("LOT"), q("1")}, {q("PBSTATUS"), q("P")}});
    open();
    auto* mark = find<QLabel>("lblFileDateMark");
    auto* date = find<ui::DateInput>("DTPicker3");
    click("ILocate");
    EXPECT_FALSE(mark->isVisibleTo(screen.get()));
    EXPECT_EQ(date->text(), q("")); // a search starts from no date
    click("ICancel");

    // A filing date changed while editing marks the searches after it: the
    // search shows and carries that date, not today's.
    click("IMoveLast");
    click("IEdit");
    date->setFocus();
    date->selectAll();
    QTest::keyClicks(date, q("2/28/28"));
    QTest::keyClick(date, Qt::Key_Return);
    click("ISave");
    ASSERT_EQ(caseOnDisk(q("12-201"))->value(q("PBFILEDATE")).toDate(), QDate(2028, 2, 28));
    for (int round = 0; round < 2; ++round) { // Cancel does not take the mark away
        click("ILocate");
        EXPECT_TRUE(mark->isVisibleTo(screen.get()));
        EXPECT_EQ(mark->text(), q("Searching also by filing date 02/28/2028"));
        EXPECT_EQ(date->text(), q("02/28/2028"));
        if (round == 0) {
            click("ICancel");
        }
    }
    type(8, q("ANN"));
    click("ILocate");
    EXPECT_EQ(screen->lastBuiltQuery(),
        q("Select * from PBPROJ where [PBAPPNAME1] like '%ANN%' AND[PBFILEDATE] = #02/28/2028# order by [PBCASE]"));
    EXPECT_EQ(text(1), q("12-201"));

    // Emptying the date of a search takes the mark away, with no complaint;
    // owner and applicant are then found by themselves.
    prompts().clear();
    click("ILocate");
    date->setFocus();
    date->selectAll();
    QTest::keyClick(date, Qt::Key_Delete);
    QTest::keyClick(date, Qt::Key_Return);
    EXPECT_TRUE(prompts().shown().isEmpty()) << lastText().toStdString();
    EXPECT_FALSE(mark->isVisibleTo(screen.get()));
    type(12, q("Marguerite"));
    type(8, q("O'Brien"));
    click("ILocate");
    EXPECT_EQ(label("recpos"), q("Record 1 of 1"));
    EXPECT_EQ(text(1), q("12-200"));
    click("ILocate");
    EXPECT_EQ(date->text(), q("")); // gone for the next search too
    click("ICancel");

    // Outside a search an empty date is refused, and the message says so.
    click("IEdit");
    date->setFocus();
    date->selectAll();
    QTest::keyClick(date, Qt::Key_Delete);
    QTest::keyClick(date, Qt::Key_Return);
    EXPECT_EQ(lastText(), q("The date cannot be left empty. The date stays 02/03/2012."));
    EXPECT_EQ(date->text(), q("02/03/2012"));
    click("ICancel");
}

TEST_F(CaseScreenTest, TheLotCalculatorFillsItsFigures)
{
    seedCase(q("12-200"));
    open();
    EXPECT_FALSE(on("Image5"));
    click("IEdit");
    type(26, q("100"));
    type(27, q("200"));
    type(30, q("2000"));
    type(34, q("1000"));
    click("Image5");
    EXPECT_EQ(text(28), q("20000.00"));
    EXPECT_EQ(text(29), q("0.46"));
    EXPECT_EQ(text(31), q("10.00"));
    EXPECT_EQ(text(32), q("15.00"));
    type(26, q(""));
    type(28, q("keep"));
    click("Image5");
    EXPECT_EQ(lastText(), q("Lot Area cannot be zero."));
    EXPECT_EQ(text(28), q("keep"));
}

TEST_F(CaseScreenTest, TheListsComeFromTheOfficesFiles)
{
    ASSERT_TRUE(
        replaceTextLines(joinPath(installation.databaseFolder(), q("\\zpt.txt")), {q("Pool"), q("Barn")}));
    open();
    auto* types = find<QComboBox>("Combo1");
    ASSERT_EQ(types->count(), 2);
    EXPECT_EQ(types->itemText(1), q("Barn"));
    EXPECT_EQ(types->currentText(), q("<select>"));
    EXPECT_EQ(find<QComboBox>("Combo2")->count(), 19);
    EXPECT_EQ(find<QComboBox>("Combo10")->count(), 7);
    EXPECT_EQ(find<QComboBox>("Combo9")->count(), 0);

    // The map providers: a count, a line not read, then name and address;
    // a blank name is left out. Control+G reads the file again.
    ASSERT_TRUE(replaceTextLines(joinPath(installation.databaseFolder(), q("\\GIS.txt")),
        {q("3"), q("Providers"), q("County GIS"), q("https://gis.example.org"), q("  "), q("https://x"),
            q("State Parcels"), q("https://parcels.example.org")}));
    screen->show();
    QApplication::setActiveWindow(screen.get());
    QTest::keyClick(screen.get(), Qt::Key_G, Qt::ControlModifier);
    auto* providers = find<QComboBox>("Combo9");
    ASSERT_EQ(providers->count(), 2);
    EXPECT_EQ(providers->itemText(1), q("State Parcels"));
    EXPECT_EQ(providers->itemData(0).toString(), q("https://gis.example.org"));
}
