#include "schedule/screens/Calendar.h"

#include "common/Session.h"
#include "schedule/MeetingRecord.h"
#include "schedule/MonthEvents.h"
#include "schedule/screens/MonthMarks.h"
#include "store/Recordset.h"
#include "support/TestInstallation.h"

#include <QDir>
#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::schedule;

namespace {

using pvardo::test::q;

class CalendarTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        calendar.setObjectName(q("Calendar"));
        calendar.setToday(QDate(2011, 3, 15));
        calendar.setDate(QDate(2011, 3, 15));
        calendar.resize(calendar.sizeHint());
        calendar.show();
        calendar.setFocus();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&calendar));
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&calendar, key, modifiers);
    }

    void click(const QRect& rect, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        ASSERT_TRUE(rect.isValid());
        QTest::mouseClick(&calendar, Qt::LeftButton, modifiers, rect.center());
    }

    // Counts the pixels of a colour (within a small tolerance) in a rectangle of a picture.
    static int pixelsLike(const QImage& image, const QRect& rect, const QColor& colour)
    {
        int count = 0;
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            for (int x = rect.left(); x <= rect.right(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                if (std::abs(pixel.red() - colour.red()) < 12 && std::abs(pixel.green() - colour.green()) < 12
                    && std::abs(pixel.blue() - colour.blue()) < 12) {
                    ++count;
                }
            }
        }
        return count;
    }

    Calendar calendar;
};

struct KeyCase
{
    const char* what;
    QDate from;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    QDate to;
    bool newMonth;
};

class CalendarKeyTest : public CalendarTest, public ::testing::WithParamInterface<KeyCase>
{
};

} // namespace

TEST_P(CalendarKeyTest, KeysMoveTheDate)
{
    const KeyCase& c = GetParam();
    ASSERT_TRUE(calendar.setDate(c.from));
    QSignalSpy changed(&calendar, &Calendar::dateChanged);
    QSignalSpy month(&calendar, &Calendar::monthChanged);
    press(c.key, c.modifiers);
    EXPECT_EQ(calendar.date(), c.to) << c.what;
    EXPECT_EQ(changed.count(), c.from == c.to ? 0 : 1) << c.what;
    EXPECT_EQ(month.count(), c.newMonth ? 1 : 0) << c.what;
    if (changed.count() == 1) {
        EXPECT_EQ(changed.at(0), (QList<QVariant>{c.to.year(), c.to.month(), c.to.day()})) << c.what;
    }
}

INSTANTIATE_TEST_SUITE_P(Keys, CalendarKeyTest,
    ::testing::Values(
        KeyCase{"right", QDate(2011, 3, 15), Qt::Key_Right, Qt::NoModifier, QDate(2011, 3, 16), false},
        KeyCase{"left over the month's start", QDate(2011, 3, 1), Qt::Key_Left, Qt::NoModifier,
            QDate(2011, 2, 28), true},
        KeyCase{"up a week", QDate(2011, 3, 15), Qt::Key_Up, Qt::NoModifier, QDate(2011, 3, 8), false},
        KeyCase{"down a week over the year's end", QDate(2011, 12, 28), Qt::Key_Down, Qt::NoModifier,
            QDate(2012, 1, 4), true},
        KeyCase{"page down keeps the day", QDate(2011, 3, 15), Qt::Key_PageDown, Qt::NoModifier,
            QDate(2011, 4, 15), true},
        KeyCase{"page down to a shorter month", QDate(2012, 1, 31), Qt::Key_PageDown, Qt::NoModifier,
            QDate(2012, 2, 29), true},
        KeyCase{"page up", QDate(2011, 3, 15), Qt::Key_PageUp, Qt::NoModifier, QDate(2011, 2, 15), true},
        KeyCase{"ctrl page up a year", QDate(2012, 2, 29), Qt::Key_PageUp, Qt::ControlModifier,
            QDate(2011, 2, 28), true},
        KeyCase{"home", QDate(2011, 3, 15), Qt::Key_Home, Qt::NoModifier, QDate(2011, 3, 1), false},
        KeyCase{"end", QDate(2011, 2, 3), Qt::Key_End, Qt::NoModifier, QDate(2011, 2, 28), false},
        KeyCase{"before the calendar's first month", QDate(1583, 1, 20), Qt::Key_PageUp, Qt::NoModifier,
            QDate(1583, 1, 20), false},
        KeyCase{"before its first day", QDate(1583, 1, 1), Qt::Key_Left, Qt::NoModifier, QDate(1583, 1, 1),
            false},
        KeyCase{"past its last month", QDate(9999, 12, 5), Qt::Key_PageDown, Qt::NoModifier,
            QDate(9999, 12, 5), false}),
    [](const auto& testInfo) { return "case" + std::to_string(testInfo.index); });

TEST_F(CalendarTest, TheEndsOfTheCalendarSayWhyItDoesNotMove)
{
    EXPECT_EQ(calendar.infoText(), q("Day 74 in: 2011    Week: 11"));
    ASSERT_TRUE(calendar.setDate(QDate(1583, 1, 10)));
    press(Qt::Key_PageUp);
    EXPECT_EQ(calendar.infoText(), q("Begin of calendar!"));
    EXPECT_EQ(calendar.date(), QDate(1583, 1, 10));
    press(Qt::Key_Right);
    EXPECT_EQ(calendar.infoText(), q("Day 11 in: 1583    Week: 2"));
    calendar.setCalYear(10000);
    EXPECT_EQ(calendar.infoText(), q("End of calendar!"));
    EXPECT_EQ(calendar.CalYear(), 1583);
}

TEST_F(CalendarTest, ClicksPickDaysAndChangeMonths)
{
    QSignalSpy changed(&calendar, &Calendar::dateChanged);
    click(calendar.dayRect(8));
    EXPECT_EQ(calendar.date(), QDate(2011, 3, 8));
    EXPECT_EQ(changed.count(), 1);
    // March 2011 begins on a Tuesday: the first cells are the end of February.
    QTest::mouseClick(&calendar, Qt::LeftButton, {},
        calendar.dayRect(1).center() - QPoint(calendar.dayRect(1).width() * 2, 0));
    EXPECT_EQ(calendar.date(), QDate(2011, 2, 27));
    click(calendar.nextMonthRect());
    EXPECT_EQ(calendar.date(), QDate(2011, 3, 27));
    click(calendar.previousMonthRect());
    click(calendar.previousMonthRect());
    EXPECT_EQ(calendar.date(), QDate(2011, 1, 27));
    click(calendar.todayRect());
    EXPECT_EQ(calendar.date(), QDate(2011, 3, 15));
    // With the week starting on Monday, the 1st moves one column to the left.
    const int sundayStart = calendar.dayRect(1).left();
    calendar.setFirstWeekDay(2);
    EXPECT_LT(calendar.dayRect(1).left(), sundayStart);
    click(calendar.dayRect(31));
    EXPECT_EQ(calendar.date(), QDate(2011, 3, 31));
}

TEST_F(CalendarTest, MarksBelongToTheMonthShown)
{
    calendar.DayMarking(8, MonthEvents::MarkColorIndex, true);
    calendar.DayMarking(22, 0, true);
    calendar.Refresh();
    EXPECT_TRUE(calendar.IsDaySel(8));
    EXPECT_EQ(calendar.dayMark(8), MonthEvents::MarkColorIndex);
    EXPECT_TRUE(calendar.IsDaySel(22));
    EXPECT_TRUE(calendar.IsDaySel(15)); // the day shown is the selection
    EXPECT_FALSE(calendar.IsDaySel(9));
    calendar.DayMarking(22, 0, false);
    EXPECT_FALSE(calendar.IsDaySel(22));
    // Another day of the month keeps the marks; another month clears them.
    press(Qt::Key_Right);
    EXPECT_TRUE(calendar.IsDaySel(8));
    press(Qt::Key_PageDown);
    press(Qt::Key_PageUp);
    EXPECT_FALSE(calendar.IsDaySel(8));
    // Days outside the month are ignored.
    calendar.DayMarking(0, 5, true);
    calendar.DayMarking(40, 5, true);
    EXPECT_FALSE(calendar.IsDaySel(0));
}

TEST_F(CalendarTest, MultipleSelectionTogglesDays)
{
    calendar.setSelectionType(Calendar::MultipleSelection);
    QSignalSpy selection(&calendar, &Calendar::selectionChanged);
    EXPECT_FALSE(calendar.IsDaySel(15));
    press(Qt::Key_Space);
    EXPECT_TRUE(calendar.isDaySelected(15));
    click(calendar.dayRect(3), Qt::ControlModifier);
    click(calendar.dayRect(4), Qt::ControlModifier);
    click(calendar.dayRect(4), Qt::ControlModifier);
    EXPECT_TRUE(calendar.isDaySelected(3));
    EXPECT_FALSE(calendar.isDaySelected(4));
    EXPECT_EQ(selection.count(), 4);
    calendar.DaySelect(31, true);
    calendar.DaySelect(32, true);
    EXPECT_TRUE(calendar.IsDaySel(31));
    press(Qt::Key_PageDown);
    EXPECT_FALSE(calendar.isDaySelected(3));
}

TEST_F(CalendarTest, LanguagesAndExternalLists)
{
    EXPECT_EQ(calendar.GetMonthName(3), q("March"));
    EXPECT_EQ(calendar.GetWeekdayName(1), q("Sunday"));
    calendar.setLanguage(CalendarLanguage::Dutch);
    EXPECT_EQ(calendar.GetMonthName(3), q("Maart"));
    EXPECT_EQ(calendar.infoText(), q("Dag 74 in: 2011    Week: 11"));
    calendar.setLanguage(CalendarLanguage::Spanish);
    EXPECT_EQ(calendar.GetWeekdayName(4), q("Mi\u00e9rcoles"));
    for (int language = CalendarLanguage::English; language <= CalendarLanguage::Spanish; ++language) {
        for (int list = 0; list < CalendarLanguage::ListCount; ++list) {
            EXPECT_EQ(
                CalendarLanguage::builtIn(static_cast<CalendarLanguage::Language>(language), list).size(),
                CalendarLanguage::itemCount(list))
                << language << " " << list;
        }
    }
    calendar.setLanguage(CalendarLanguage::External);
    EXPECT_EQ(calendar.FillExternalLanguage(CalendarLanguage::DayNames, q("Su,Mo,Tu,We,Th,Fr")),
        q("DayNames = 6) needs: 7 items!"));
    EXPECT_EQ(calendar.FillExternalLanguage(CalendarLanguage::DayNames, q("Su,Mo,Tu,We,Th,Fr,Sa")), q(""));
    EXPECT_EQ(calendar.GetWeekdayName(7), q("Sa"));
    EXPECT_EQ(CalendarLanguage::checkLines({q("a"), q("b")}),
        q("NewLanguageText(2) array must have 8 lines! (0 to 7)"));
    EXPECT_FALSE(calendar.GetMonthName(12).isEmpty()); // the system's names until the office gives its own
}

TEST_F(CalendarTest, TodayTheSelectionAndTheMarksAreDrawn)
{
    calendar.DayMarking(22, MonthEvents::MarkColorIndex, true);
    calendar.Refresh();
    const QImage image = calendar.grab().toImage();
    const QColor accent = calendar.palette().color(QPalette::Highlight);
    const QColor mark = calendar.markColor(MonthEvents::MarkColorIndex);
    // The day shown is filled with the accent colour, the marked day carries
    // its mark's colour, a plain day neither.
    EXPECT_GT(pixelsLike(image, calendar.dayRect(15), accent), 50);
    EXPECT_GT(pixelsLike(image, calendar.dayRect(22), mark), 5);
    EXPECT_EQ(pixelsLike(image, calendar.dayRect(23), accent), 0);
    EXPECT_EQ(pixelsLike(image, calendar.dayRect(23), mark), 0);
    // Today, when it is not the day shown, keeps a ring of the accent colour.
    press(Qt::Key_Right);
    const QImage moved = calendar.grab().toImage();
    EXPECT_GT(pixelsLike(moved, calendar.dayRect(15), accent), 20);
    EXPECT_LT(
        pixelsLike(moved, calendar.dayRect(15), accent), pixelsLike(moved, calendar.dayRect(16), accent));
}

TEST(CalendarMonthTest, AMonthLoadedFromTheMeetingTableIsMarked)
{
    test::TestInstallation installation;
    installation.applyTo(session());
    const QString path = installation.createDatabase(store::Table::MEETING);
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(path, q("Select * from MEETING"), &status);
    ASSERT_TRUE(rows);
    MeetingForm form;
    form.Text2 = q("Planning Board");
    form.Text3 = q("Town Hall");
    form.Option2 = true;
    form.Combo1 = q("Second");
    form.Combo2 = q("Tuesday");
    rows->AddNew();
    ASSERT_TRUE(movefieldsintodb(form, 2011, 3, 1, *rows, q("clerk")).ok());
    ASSERT_TRUE(rows->Update().ok());

    Calendar calendar;
    calendar.setDate(QDate(2011, 3, 1));
    MonthEvents events(path);
    QObject::connect(&calendar, &Calendar::monthChanged, [&](int year, int month) {
        if (events.GetMonthEvents(QStringLiteral("%1/1/%2").arg(month).arg(year))
            == MonthEvents::Outcome::Loaded) {
            showMonthMarks(calendar, events.marks());
        }
    });
    calendar.setCalMonth(4);
    EXPECT_TRUE(calendar.IsDaySel(12));
    EXPECT_FALSE(calendar.IsDaySel(8));
    QTest::keyClick(&calendar, Qt::Key_PageUp);
    EXPECT_TRUE(calendar.IsDaySel(8));
    EXPECT_FALSE(calendar.IsDaySel(12));
}

// Draws the calendar as the dashboard shows it, for the documentation. With
// PVARDO_SCREENSHOT_DIR set the picture is written there as calendar.png.
TEST(CalendarScreenshotTest, DrawsAMonthWithMeetings)
{
    Calendar calendar;
    calendar.setObjectName(q("Calendar"));
    calendar.setToday(QDate(2026, 11, 21));
    calendar.setDate(QDate(2026, 11, 17));
    for (int day : {5, 10, 19, 24}) {
        calendar.DayMarking(day, MonthEvents::MarkColorIndex, true);
    }
    calendar.DayMarking(17, MonthEvents::MarkColorIndex, true);
    calendar.DayMarking(2, 3, true);
    calendar.Refresh();
    calendar.resize(calendar.sizeHint());
    calendar.show();
    calendar.setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&calendar));
    const QImage image = calendar.grab().toImage();
    ASSERT_FALSE(image.isNull());
    const QString folder = qEnvironmentVariable("PVARDO_SCREENSHOT_DIR");
    if (!folder.isEmpty()) {
        QDir().mkpath(folder);
        EXPECT_TRUE(image.save(folder + q("/calendar.png")));
    }
}
