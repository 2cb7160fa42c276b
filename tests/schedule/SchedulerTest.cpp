#include "schedule/screens/Scheduler.h"

#include "app/screens/DashboardWiring.h"
#include "app/screens/WidgetStartupHost.h"
#include "common/ProgramEnd.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "common/Waiting.h"
#include "documents/PdfPages.h"
#include "documents/PrintState.h"
#include "documents/printer/DefaultPrinter.h"
#include "documents/screens/Editor.h"
#include "documents/screens/NotepadFrm.h"
#include "schedule/MeetingTable.h"
#include "schedule/MonthEvents.h"
#include "schedule/screens/Calendar.h"
#include "store/Recordset.h"
#include "support/InstallationTest.h"
#include "support/ProgramEndRecorder.h"
#include "support/ScriptedPrompts.h"
#include "support/Text.h"
#include "ui/DateInput.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <QTreeWidget>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::schedule;
using namespace pvardo::test;

namespace {

using pvardo::test::q;

// One stored meeting, as read back from the file.
struct StoredMeeting
{
    QString key;
    QString name;
    QString freq;
    QString rule;
    QString months;
    QDate date;
    QString user;
};

QList<StoredMeeting> storedMeetings(const QString& path)
{
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(path, q("Select * from MEETING order by [MJUL]"), &status);
    EXPECT_TRUE(rows) << status.description.toStdString();
    QList<StoredMeeting> meetings;
    while (rows && !rows->Eof()) {
        meetings.append(
            {rows->text(q("RECNO")), rows->text(q("MNAME")), rows->text(q("MFREQ")), rows->text(q("MREC")),
                rows->text(q("EXTRA2")), rows->value(q("MDATE")).toDate(), rows->text(q("BYUSER"))});
        rows->MoveNext();
    }
    return meetings;
}

class SchedulerTest : public InstallationTest
{
protected:
    void SetUp() override
    {
        InstallationTest::SetUp();
        session().CurrentUser = q("clerk");
        session().BackupMode = 2;
        path = installation.createDatabase(store::Table::MEETING);
    }

    // Opens the dashboard on a day, with its meeting editor in view.
    void open(const QDate& day = QDate(2011, 3, 15))
    {
        dashboard = std::make_unique<Scheduler>();
        dashboard->load(day);
        dashboard->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(dashboard.get()));
        click("iManage");
    }

    template <class T> T* child(const char* name) const
    {
        T* found = dashboard->findChild<T*>(q(name));
        EXPECT_TRUE(found) << name;
        return found;
    }

    void click(const char* button)
    {
        QPushButton* target = child<QPushButton>(button);
        ASSERT_TRUE(target);
        ASSERT_TRUE(target->isEnabled()) << button << " is off";
        QTest::mouseClick(target, Qt::LeftButton);
    }

    // Clicks a radio button on its round indicator.
    void pick(const char* option)
    {
        QRadioButton* button = child<QRadioButton>(option);
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(6, button->height() / 2));
        EXPECT_TRUE(button->isChecked()) << option;
    }

    void type(const char* box, const QString& text)
    {
        QLineEdit* edit = child<QLineEdit>(box);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClicks(edit, text);
    }

    void choose(const char* combo, const QString& text)
    {
        QComboBox* box = child<QComboBox>(combo);
        if (box->isEditable()) {
            box->setEditText(text);
            return;
        }
        const int index = box->findText(text);
        ASSERT_GE(index, 0) << text.toStdString();
        box->setCurrentIndex(index);
        emit box->activated(index);
    }

    void clickDay(int day)
    {
        Calendar* calendar = dashboard->calendar();
        QTest::mouseClick(calendar, Qt::LeftButton, Qt::NoModifier, calendar->dayRect(day).center());
    }

    void chooseMonth(int month)
    {
        QComboBox* box = child<QComboBox>("cmbMonth");
        box->setCurrentIndex(month - 1);
        emit box->activated(month - 1);
    }

    void chooseYear(int year)
    {
        QComboBox* box = child<QComboBox>("cmbYear");
        box->setEditText(QString::number(year));
        QTest::keyClick(box->lineEdit(), Qt::Key_Return);
    }

    // Fills the editor with a new meeting: once only, or on a rule.
    void newMeeting(const char* name, const char* ordinal = nullptr, const char* weekday = nullptr,
        const char* interval = "")
    {
        click("INew");
        type("Text2", q(name));
        type("Text3", q("Town Hall, Room 2"));
        type("Text5", q("Clerk"));
        if (ordinal) {
            pick("Option2");
            choose("Combo1", q(ordinal));
            choose("Combo2", q(weekday));
            choose("Combo3", q(interval));
        } else {
            pick("Option1");
        }
    }

    QStringList listed() const
    {
        QStringList lines;
        auto* list = child<QTreeWidget>("ListView1");
        for (int row = 0; row < list->topLevelItemCount(); ++row) {
            const QTreeWidgetItem* item = list->topLevelItem(row);
            lines << item->text(0) + QLatin1Char(' ') + item->text(1) + QLatin1Char(' ') + item->text(2);
        }
        return lines;
    }

    QList<int> markedDays() const
    {
        QList<int> days;
        for (int day = 1; day <= 31; ++day) {
            if (dashboard->calendar()->dayMark(day) != 0) {
                days << day;
            }
        }
        return days;
    }

    QString path;
    std::unique_ptr<Scheduler> dashboard;
};

} // namespace

TEST_F(SchedulerTest, OpensOnTheMonthOfTheDayWithTheEditorOutOfView)
{
    dashboard = std::make_unique<Scheduler>();
    dashboard->load(QDate(2011, 3, 15));
    dashboard->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(dashboard.get()));

    EXPECT_EQ(dashboard->objectName(), q("scheduler"));
    EXPECT_EQ(dashboard->windowTitle(), q(" Vardo Dashboard"));
    EXPECT_EQ(child<QLabel>("Label2")->text(), q("March 2011"));
    EXPECT_EQ(child<QComboBox>("cmbMonth")->currentText(), q("March"));
    EXPECT_EQ(child<QComboBox>("cmbYear")->currentText(), q("2011"));
    const QTreeWidgetItem* header = child<QTreeWidget>("ListView1")->headerItem();
    EXPECT_EQ(header->text(0), q(" Date "));
    EXPECT_EQ(header->text(1), q(" Time "));
    EXPECT_EQ(header->text(2), q(" Scheduled "));
    EXPECT_EQ(session().ScreenCode, 1);

    auto* editor = child<QWidget>("MeetingEditor");
    EXPECT_FALSE(editor->isVisible());
    click("iManage");
    EXPECT_TRUE(editor->isVisible());
    EXPECT_GE(dashboard->width(), Scheduler::WideTwips / 15);
    click("iClose");
    EXPECT_FALSE(editor->isVisible());
    EXPECT_LT(dashboard->width(), Scheduler::WideTwips / 15);
}

TEST_F(SchedulerTest, ARecurringMeetingIsListedAndMarkedInTheMonthsOfItsChain)
{
    open();
    newMeeting("Planning Board", "Second", "Tuesday", "03 months");
    EXPECT_TRUE(child<QPushButton>("IAdd")->isEnabled());
    click("IAdd");

    const QList<StoredMeeting> stored = storedMeetings(path);
    ASSERT_EQ(stored.size(), 1);
    EXPECT_EQ(stored[0].freq, q("R"));
    EXPECT_EQ(stored[0].rule, q("23"));
    EXPECT_EQ(stored[0].months, q("0306091203"));
    EXPECT_EQ(stored[0].date, QDate(2011, 3, 8));
    EXPECT_EQ(stored[0].user, q("clerk"));
    EXPECT_EQ(dashboard->editState(), Scheduler::EditState::Browse);
    EXPECT_EQ(dashboard->currentKey(), stored[0].key);
    // The rule's day becomes the calendar's day.
    EXPECT_EQ(dashboard->calendar()->CalDay(), 8);

    const struct
    {
        int year;
        int month;
        QStringList lines;
        QList<int> marks;
    } months[] = {
        // Months of the chain before the rule was made show nothing.
        {2010, 12, {}, {}},
        {2011, 3, {q("03/08/2011 07:00 PM Planning Board")}, {8}},
        {2011, 4, {}, {}},
        {2011, 6, {q("06/14/2011 07:00 PM Planning Board")}, {14}},
        {2011, 9, {q("09/13/2011 07:00 PM Planning Board")}, {13}},
        {2011, 12, {q("12/13/2011 07:00 PM Planning Board")}, {13}},
        {2012, 3, {q("03/13/2012 07:00 PM Planning Board")}, {13}},
        {2012, 5, {}, {}},
    };
    for (const auto& m : months) {
        if (dashboard->calendar()->CalYear() != m.year) {
            chooseYear(m.year);
        }
        chooseMonth(m.month);
        EXPECT_EQ(child<QLabel>("Label2")->text(),
            QLocale(QLocale::English).monthName(m.month) + QLatin1Char(' ') + QString::number(m.year));
        EXPECT_EQ(listed(), m.lines) << m.year << "-" << m.month;
        EXPECT_EQ(markedDays(), m.marks) << m.year << "-" << m.month;
    }
}

TEST_F(SchedulerTest, AOnceOnlyMeetingFallsOnTheChosenDayAndOnlyInItsMonth)
{
    open();
    clickDay(22);
    EXPECT_EQ(dashboard->calendar()->CalDay(), 22);
    newMeeting("Site walk");
    click("IAdd");

    const QList<StoredMeeting> stored = storedMeetings(path);
    ASSERT_EQ(stored.size(), 1);
    EXPECT_EQ(stored[0].freq, q("O"));
    EXPECT_EQ(stored[0].date, QDate(2011, 3, 22));
    EXPECT_EQ(listed(), QStringList{q("03/22/2011 07:00 PM Site walk")});
    EXPECT_EQ(markedDays(), QList<int>{22});
    EXPECT_EQ(child<QLineEdit>("Text2")->text(), q("Site walk"));
    EXPECT_TRUE(child<QLineEdit>("Text2")->isReadOnly());

    chooseMonth(4);
    EXPECT_TRUE(listed().isEmpty());
    EXPECT_TRUE(markedDays().isEmpty());
    chooseMonth(3);
    EXPECT_EQ(listed().size(), 1);

    // Moved to another office's folder without meetings: nothing of the old
    // folder stays listed, whatever month is shown.
    const QString other = installation.path(q("other"));
    QDir().mkpath(other);
    TestInstallation office;
    ASSERT_TRUE(QFile::copy(office.createDatabase(store::Table::MEETING), other + q("/meeting.db")));
    session().DatabaseFolder = other;
    dashboard->reloadMonth();
    EXPECT_TRUE(listed().isEmpty());
    EXPECT_TRUE(markedDays().isEmpty());
    chooseMonth(4);
    chooseMonth(3);
    EXPECT_TRUE(listed().isEmpty());
}

TEST_F(SchedulerTest, ChangingOnlyTheDayReadsNothingAgain)
{
    open();
    newMeeting("Workshop");
    click("IAdd");
    // Another workstation books a meeting meanwhile.
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(path, q("Select * from MEETING"), &status);
        ASSERT_TRUE(rows);
        MeetingForm form;
        form.Text2 = q("Late booking");
        form.Text3 = q("Annex");
        form.Option1 = true;
        rows->AddNew();
        ASSERT_TRUE(movefieldsintodb(form, 2011, 3, 28, *rows, q("other")).ok());
        ASSERT_TRUE(rows->Update().ok());
    }
    clickDay(3);
    EXPECT_EQ(listed().size(), 1);
    EXPECT_EQ(markedDays(), QList<int>{15});
    clickDay(4);
    EXPECT_EQ(markedDays(), QList<int>{15});

    chooseMonth(2);
    chooseMonth(3);
    EXPECT_EQ(listed().size(), 2);
    EXPECT_EQ(markedDays(), (QList<int>{15, 28}));
}

TEST_F(SchedulerTest, EditSavesTheMeetingOnItsOwnDay)
{
    open();
    clickDay(10);
    newMeeting("Budget review");
    click("IAdd");
    newMeeting("Zoning workshop");
    clickDay(24);
    click("IAdd");
    ASSERT_EQ(listed().size(), 2);

    // Pick the first meeting of the list while the calendar is on the 24th.
    auto* list = child<QTreeWidget>("ListView1");
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
        list->visualItemRect(list->topLevelItem(0)).center());
    EXPECT_EQ(child<QLineEdit>("Text2")->text(), q("Budget review"));
    EXPECT_FALSE(child<QPushButton>("ISave")->isEnabled());

    click("IEdit");
    EXPECT_FALSE(child<QLineEdit>("Text2")->isReadOnly());
    EXPECT_TRUE(child<QPushButton>("ISave")->isEnabled());
    EXPECT_FALSE(child<QPushButton>("INew")->isEnabled());
    type("Text2", q("Budget hearing"));
    child<QPlainTextEdit>("Text7")->setPlainText(q("Bring the draft."));
    click("ISave");

    const QList<StoredMeeting> stored = storedMeetings(path);
    ASSERT_EQ(stored.size(), 2);
    EXPECT_EQ(stored[0].name, q("Budget hearing"));
    EXPECT_EQ(stored[0].date, QDate(2011, 3, 10));
    EXPECT_EQ(stored[1].name, q("Zoning workshop"));
    EXPECT_EQ(listed(),
        (QStringList{q("03/10/2011 07:00 PM Budget hearing"), q("03/24/2011 07:00 PM Zoning workshop")}));
    EXPECT_EQ(child<QPlainTextEdit>("Text7")->toPlainText(), q("Bring the draft."));

    // Cancel of an edit brings the stored values back.
    click("IEdit");
    type("Text2", q("Scrapped"));
    click("ICancel");
    EXPECT_EQ(child<QLineEdit>("Text2")->text(), q("Budget hearing"));
    EXPECT_EQ(storedMeetings(path)[0].name, q("Budget hearing"));
}

TEST_F(SchedulerTest, ChecksRunInOrderAndStopTheCommandWithNothingWritten)
{
    open();
    const struct
    {
        const char* what;
        const char* name;
        const char* location;
        int option; // 0 none, 1 once, 2 recurring
        const char* ordinal;
        const char* interval;
        const char* message;
    } cases[] = {
        {"no name", "", "", 0, "First", "", "Please enter a meeting name first."},
        {"no location", "Hearing", "", 0, "First", "", "Please enter a location first."},
        {"no option", "Hearing", "Hall", 0, "First", "",
            "Please select the option for the schedule\n(once only or recurring.)"},
        {"no ordinal", "Hearing", "Hall", 2, "", "", "Please select the options for a recurring event."},
        {"monthly", "Hearing", "Hall", 2, "First", "01 months", "Maximum yearly or minimum quarterly."},
        {"two years", "Hearing", "Hall", 2, "First", "24", "Maximum yearly or minimum quarterly."},
    };
    for (const auto& c : cases) {
        scriptedPrompts().clear();
        click("INew");
        type("Text2", q(c.name));
        type("Text3", q(c.location));
        if (c.option == 1) {
            pick("Option1");
        } else if (c.option == 2) {
            pick("Option2");
            auto* ordinal = child<QComboBox>("Combo1");
            ordinal->setCurrentIndex(ordinal->findText(q(c.ordinal)));
            choose("Combo3", q(c.interval));
        }
        click("IAdd");
        EXPECT_EQ(scriptedPrompts().shownTexts(), QStringList{q(c.message)}) << c.what;
        EXPECT_EQ(dashboard->editState(), Scheduler::EditState::New) << c.what;
        EXPECT_EQ(child<QLineEdit>("Text2")->text(), q(c.name)) << c.what;
        EXPECT_TRUE(storedMeetings(path).isEmpty()) << c.what;
        click("ICancel");
    }

    // Saving an edited meeting does not check the interval.
    newMeeting("Hearing", "First", "Monday", "");
    click("IAdd");
    scriptedPrompts().clear();
    click("IEdit");
    choose("Combo3", q("01 months"));
    click("ISave");
    EXPECT_TRUE(scriptedPrompts().shownTexts().isEmpty());
    // Twelve months from March, cut to the column's width.
    EXPECT_EQ(storedMeetings(path)[0].months, q("03040506070809101112"));
}

TEST_F(SchedulerTest, AnAdministratorDeletesAfterConfirmingAndTheMarksFollow)
{
    session().IsAdmin = true;
    session().UserLevel = q("ADMIN");
    open();
    newMeeting("Planning Board", "Last", "Thursday");
    click("IAdd");
    newMeeting("Extra session");
    clickDay(2);
    click("IAdd");
    ASSERT_EQ(markedDays(), (QList<int>{2, 31}));

    auto* remove = child<QPushButton>("iDelete");
    EXPECT_FALSE(remove->isVisible());
    QTest::keyClick(dashboard.get(), Qt::Key_U, Qt::ControlModifier);
    ASSERT_TRUE(remove->isVisible());

    // No keeps the meeting.
    scriptedPrompts().onDialog(q("Delconfirm"), [](QDialog&) { return int(QDialog::Rejected); });
    click("iDelete");
    EXPECT_TRUE(session().StopFlag);
    EXPECT_EQ(storedMeetings(path).size(), 2);

    // The shown meeting is the extra session of the 2nd.
    EXPECT_EQ(child<QLineEdit>("Text2")->text(), q("Extra session"));
    scriptedPrompts().onDialog(q("Delconfirm"), [](QDialog&) { return int(QDialog::Accepted); });
    click("iDelete");
    // The key grants one delete: the next wants it again.
    EXPECT_TRUE(remove->isHidden());
    QTest::keyClick(dashboard.get(), Qt::Key_U, Qt::ControlModifier);
    QList<StoredMeeting> stored = storedMeetings(path);
    ASSERT_EQ(stored.size(), 1);
    EXPECT_EQ(stored[0].name, q("Planning Board"));
    EXPECT_EQ(markedDays(), QList<int>{31});
    EXPECT_EQ(listed(), QStringList{q("03/31/2011 07:00 PM Planning Board")});

    // The last one gone, the list and the marks are empty.
    scriptedPrompts().onDialog(q("Delconfirm"), [](QDialog&) { return int(QDialog::Accepted); });
    click("iDelete");
    EXPECT_TRUE(storedMeetings(path).isEmpty());
    EXPECT_TRUE(listed().isEmpty());
    EXPECT_TRUE(markedDays().isEmpty());
    EXPECT_FALSE(child<QPushButton>("IEdit")->isEnabled());
}

TEST_F(SchedulerTest, ControlUDoesNothingForOthers)
{
    session().UserLevel = q("MEMBER");
    open();
    QTest::keyClick(dashboard.get(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_FALSE(child<QPushButton>("iDelete")->isVisible());
}

TEST_F(SchedulerTest, AYearWithoutMeetingsKeepsTheListAsItWas)
{
    open();
    newMeeting("Hearing");
    click("IAdd");
    ASSERT_EQ(listed().size(), 1);
    chooseYear(2012);
    EXPECT_EQ(child<QLabel>("Label2")->text(), q("March 2012"));
    EXPECT_TRUE(session().StopFlag);
    EXPECT_EQ(listed(), QStringList{q("03/15/2011 07:00 PM Hearing")});
    EXPECT_TRUE(markedDays().isEmpty());
}

TEST_F(SchedulerTest, AMissingMeetingFileFallsBackToTheProgramFolder)
{
    // The database folder named by the settings holds no meeting file.
    const QString elsewhere = installation.path(q("shared"));
    QDir().mkpath(elsewhere);
    session().DatabaseFolder = elsewhere;
    open();
    EXPECT_EQ(QFileInfo(dashboard->databasePath()), QFileInfo(path));
    EXPECT_EQ(QFileInfo(session().DatabaseLabel), QFileInfo(path));
    newMeeting("Hearing");
    click("IAdd");
    EXPECT_EQ(storedMeetings(path).size(), 1);
    EXPECT_FALSE(QFile::exists(elsewhere + q("/meeting.db")));

    // The preferences point at a folder that has one: the next load reads it.
    const QString moved = installation.path(q("moved"));
    QDir().mkpath(moved);
    ASSERT_TRUE(QFile::copy(path, moved + q("/meeting.db")));
    session().DatabaseFolder = moved;
    chooseMonth(4);
    EXPECT_EQ(QFileInfo(dashboard->databasePath()), QFileInfo(moved + q("/meeting.db")));
    chooseMonth(3);
    EXPECT_EQ(listed().size(), 1);
}

TEST_F(SchedulerTest, ABrokenMeetingFileIsReportedAndNothingIsLost)
{
    QFile::remove(path);
    {
        QFile junk(path);
        ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
        junk.write("this is not a database at all, just some words in a file");
    }
    open();
    EXPECT_FALSE(scriptedPrompts().shownTexts().isEmpty());
    EXPECT_TRUE(listed().isEmpty());
    newMeeting("Hearing");
    scriptedPrompts().clear();
    click("IAdd");
    EXPECT_EQ(scriptedPrompts().shownTexts().size(), 1);
    EXPECT_EQ(dashboard->editState(), Scheduler::EditState::New);
    EXPECT_EQ(child<QLineEdit>("Text2")->text(), q("Hearing"));
}

TEST_F(SchedulerTest, EveryWayOutGoesThroughExitApp)
{
    session().BackupMode = 0;
    open();
    const struct
    {
        const char* way;
        std::function<void(Scheduler&)> leave;
    } ways[] = {
        {"Quit", [](Scheduler& d) { d.findChild<QAction*>(q("Quit"))->trigger(); }},
        {"mexit",
            [](Scheduler& d) { QTest::mouseClick(d.findChild<QPushButton*>(q("mexit")), Qt::LeftButton); }},
        {"close", [](Scheduler& d) { d.close(); }},
    };
    for (const auto& way : ways) {
        scriptedPrompts().clear();
        session().LeavingMarker = 0;
        QFile::remove(installation.databaseFolder() + q("/sblversion.txt"));
        scriptedPrompts().answer(q("Backup database"), PromptAnswer::No);
        ProgramEndRecorder end;
        way.leave(*dashboard);
        EXPECT_EQ(end.calls(), 1) << way.way;
        EXPECT_EQ(scriptedPrompts().shown().size(), 1) << way.way;
        EXPECT_TRUE(QFile::exists(installation.databaseFolder() + q("/sblversion.txt"))) << way.way;
        EXPECT_EQ(session().LeavingMarker, QByteArray(way.way) == "close" ? 99 : 0) << way.way;
    }
}

TEST_F(SchedulerTest, TheMenuTreeAndTheUsersRights)
{
    session().UserLevel = q("USER");
    session().ReadOnlyUser = true;
    open();
    const char* const disabled[] = {"planningb", "maplookup", "backr", "backupto", "repair", "changepsw",
        "doappinfo", "dohelp", "contact", "About", "dosbl", "usermanage", "checkupdates", "defaults",
        "updateparcel", "viewparcel", "syncSBL", "loadp"};
    for (const char* name : disabled) {
        EXPECT_FALSE(child<QAction>(name)->isEnabled()) << name;
    }
    const char* const enabled[]
        = {"runvardo", "Quit", "hittheroad", "remotein", "convert", "mcopy", "mpaste", "savep"};
    for (const char* name : enabled) {
        EXPECT_TRUE(child<QAction>(name)->isEnabled()) << name;
    }
    EXPECT_EQ(child<QAction>("changepsw")->text(), q("Change &Password"));
    EXPECT_EQ(child<QAction>("Quit")->text(), q("&Quit"));
    EXPECT_EQ(child<QMenu>("report")->title(), q("&Admin"));
    EXPECT_FALSE(child<QMenu>("report")->menuAction()->isVisible());
    // A read-only user moves through the meetings but enters none.
    EXPECT_FALSE(child<QPushButton>("INew")->isEnabled());
    EXPECT_FALSE(child<QPushButton>("IEdit")->isEnabled());

    // The entries without a command do nothing.
    ProgramEndRecorder end;
    child<QAction>("hittheroad")->trigger();
    child<QAction>("convert")->trigger();
    EXPECT_EQ(end.calls(), 0);
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());

    // A screen given from outside turns its entry on.
    int shown = 0;
    dashboard->setMenuCommand(q("About"), [&shown] { ++shown; });
    EXPECT_TRUE(child<QAction>("About")->isEnabled());
    child<QAction>("About")->trigger();
    EXPECT_EQ(shown, 1);

    // Only the level written exactly "ADMIN" opens the Admin menu.
    for (const char* level : {"Admin", "admin", " ADMIN"}) {
        session().UserLevel = q(level);
        dashboard->applyUserRights();
        EXPECT_FALSE(child<QMenu>("report")->menuAction()->isVisible()) << level;
    }
    session().UserLevel = q("ADMIN");
    session().IsAdmin = true;
    session().ReadOnlyUser = false;
    dashboard->applyUserRights();
    EXPECT_TRUE(child<QMenu>("report")->menuAction()->isVisible());
    EXPECT_TRUE(child<QPushButton>("INew")->isEnabled());
}

TEST_F(SchedulerTest, ThePlanningBoardTakesThePlaceOfTheDashboard)
{
    open();
    EXPECT_FALSE(child<QPushButton>("iPlaning")->isEnabled());
    QWidget* made = nullptr;
    int calls = 0;
    dashboard->setCaseScreenFactory([&] {
        ++calls;
        made = new QWidget;
        made->setObjectName(q("ZPermits"));
        return made;
    });
    click("iPlaning");
    ASSERT_TRUE(made);
    EXPECT_TRUE(made->isVisible());
    EXPECT_FALSE(dashboard->isVisible());
    // The case screen's exit brings the dashboard back.
    made->hide();
    EXPECT_TRUE(dashboard->isVisible());
    // The menu entry shows the same screen again.
    child<QAction>("planningb")->trigger();
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(made->isVisible());
    EXPECT_FALSE(dashboard->isVisible());
    made->close();
    EXPECT_TRUE(dashboard->isVisible());
}

TEST_F(SchedulerTest, RemarksComeFromAndGoToAFile)
{
    open();
    const QString from = installation.path(q("remarks.txt"));
    {
        QFile file(from);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("Bring the maps.\r\nCall the engineer.\r\n");
    }
    newMeeting("Hearing");
    scriptedPrompts().onDialog(q("loadp"), [&from](QDialog& dialog) {
        static_cast<QFileDialog&>(dialog).selectFile(from);
        return int(QDialog::Accepted);
    });
    child<QAction>("loadp")->trigger();
    EXPECT_EQ(child<QPlainTextEdit>("Text7")->toPlainText(), q("Bring the maps.\nCall the engineer."));
    click("IAdd");

    const QString to = installation.path(q("saved.txt"));
    scriptedPrompts().onDialog(q("savep"), [&to](QDialog& dialog) {
        static_cast<QFileDialog&>(dialog).selectFile(to);
        return int(QDialog::Accepted);
    });
    child<QAction>("savep")->trigger();
    QFile saved(to);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll(), QByteArray("Bring the maps.\nCall the engineer.\n"));
}

TEST_F(SchedulerTest, VardoThatIsNotThereIsSaidAndTheSessionGoesOn)
{
    open();
    ProgramEndRecorder end;
    click("iVardo");
    ASSERT_EQ(scriptedPrompts().shownTexts().size(), 1);
    // Said plainly, without a path under the database folder.
    EXPECT_EQ(scriptedPrompts().shownTexts()[0],
        q("Vardo is not installed: there is no companion program to start."));
    EXPECT_EQ(end.calls(), 0);
}

namespace {

// Lets the program's pauses really last while it lives.
class RealWaits
{
public:
    RealWaits()
    {
        qunsetenv("PVARDO_NO_WAIT");
        setWaitsEnabled(true);
    }
    ~RealWaits() { qputenv("PVARDO_NO_WAIT", "1"); }
};

} // namespace

TEST_F(SchedulerTest, AMonthChangeDuringTheLoadsPauseShowsTheNewestMonthThroughout)
{
    open(QDate(2026, 12, 1));
    clickDay(10);
    newMeeting("Hearing");
    click("IAdd");
    newMeeting("Planning Board", "Second", "Tuesday");
    click("IAdd");
    chooseYear(2027);
    chooseMonth(1);
    clickDay(20);
    newMeeting("Workshop");
    click("IAdd");
    chooseYear(2026);
    chooseMonth(11);
    ASSERT_EQ(child<QLabel>("Label2")->text(), q("November 2026"));

    RealWaits waits;
    Calendar* calendar = dashboard->calendar();
    // The second press comes half a second into the first month's pause.
    QTimer::singleShot(500, calendar, [calendar] {
        QTest::mouseClick(calendar, Qt::LeftButton, Qt::NoModifier, calendar->nextMonthRect().center());
    });
    QTest::mouseClick(calendar, Qt::LeftButton, Qt::NoModifier, calendar->nextMonthRect().center());
    EXPECT_EQ(calendar->date().month(), 1);
    EXPECT_EQ(child<QLabel>("Label2")->text(), q("January 2027"));
    EXPECT_EQ(
        listed(), QStringList({q("01/12/2027 07:00 PM Planning Board"), q("01/20/2027 07:00 PM Workshop")}));
    EXPECT_EQ(markedDays(), QList<int>({12, 20}));
}

TEST_F(SchedulerTest, AnotherDayOfAMonthWithoutMeetingsMarksNothing)
{
    open();
    clickDay(8);
    newMeeting("Hearing");
    click("IAdd");
    EXPECT_EQ(markedDays(), QList<int>({8}));
    chooseYear(2012); // March 2012: a year without meetings
    EXPECT_EQ(child<QLabel>("Label2")->text(), q("March 2012"));
    EXPECT_TRUE(markedDays().isEmpty());
    clickDay(15);
    EXPECT_TRUE(markedDays().isEmpty());
    // Back in the month of the meeting, its mark is there again and stays
    // when only the day changes.
    chooseYear(2011);
    clickDay(20);
    EXPECT_EQ(markedDays(), QList<int>({8}));
}

TEST_F(SchedulerTest, AYearOutsideTheCalendarIsRefusedVisibly)
{
    open();
    auto* year = child<QComboBox>("cmbYear");
    year->lineEdit()->selectAll();
    QTest::keyClicks(year->lineEdit(), q("1582"));
    QTest::keyClick(year->lineEdit(), Qt::Key_Return);
    EXPECT_EQ(dashboard->calendar()->infoText(), q("Begin of calendar!"));
    EXPECT_EQ(year->currentText(), q("2011"));
    EXPECT_EQ(child<QLabel>("Label2")->text(), q("March 2011"));
}

TEST_F(SchedulerTest, MeetingInputsStopAtTheirColumnsAndTheDurationTakesOnlyANumber)
{
    open();
    click("INew");
    type("Text2", q("Joint meeting of the planning and zoning boards"));
    EXPECT_EQ(child<QLineEdit>("Text2")->text(), q("Joint meeting of the planning "));
    type("Text1", q("Room 12345678901"));
    EXPECT_EQ(child<QLineEdit>("Text1")->text().size(), 12);
    type("Text4", q("abc"));
    EXPECT_EQ(child<QLineEdit>("Text4")->text(), q(""));
    type("Text4", q("1h.5x"));
    EXPECT_EQ(child<QLineEdit>("Text4")->text(), q("1.5"));
    type("Text3", q("Town Hall"));
    type("Text5", q("Clerk"));
    pick("Option1");
    click("IAdd");
    const QList<StoredMeeting> stored = storedMeetings(path);
    ASSERT_EQ(stored.size(), 1);
    EXPECT_EQ(stored[0].name, q("Joint meeting of the planning"));
}

TEST_F(SchedulerTest, TheDeleteKeyIsNamedInTheToolTipAndTheHelp)
{
    open();
    EXPECT_TRUE(child<QPushButton>("iManage")->toolTip().contains(q("Control+U")));
    child<QAction>("hlpKeys")->trigger();
    ASSERT_FALSE(scriptedPrompts().shownTexts().isEmpty());
    EXPECT_TRUE(scriptedPrompts().shownTexts().last().contains(q("Control+U")));
}

TEST_F(SchedulerTest, PlugVarsNameTheMonthInView)
{
    open();
    chooseMonth(7);
    const auto values = dashboard->PlugVars();
    ASSERT_EQ(values.size(), 2);
    EXPECT_EQ(values[0], qMakePair(q("%mm"), q("July")));
    EXPECT_EQ(values[1], qMakePair(q("%yy"), q("2011")));
}

// Draws the dashboard with a month of meetings, without and with the meeting
// editor. With PVARDO_SCREENSHOT_DIR set the pictures are written there.
TEST_F(SchedulerTest, Screenshots)
{
    open(QDate(2026, 11, 17));
    dashboard->setCaseScreenFactory([] { return nullptr; });
    newMeeting("Planning Board", "Third", "Tuesday");
    click("IAdd");
    newMeeting("Zoning Board of Appeals", "First", "Thursday");
    click("IAdd");
    clickDay(10);
    newMeeting("Site visit: Maple Ridge");
    click("IAdd");
    clickDay(24);
    newMeeting("Budget workshop");
    click("IAdd");
    auto* list = child<QTreeWidget>("ListView1");
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
        list->visualItemRect(list->topLevelItem(2)).center());
    dashboard->calendar()->setToday(QDate(2026, 11, 21));

    const QString folder = qEnvironmentVariable("PVARDO_SCREENSHOT_DIR");
    const QImage wide = dashboard->grab().toImage();
    click("iClose");
    QTest::qWait(20);
    const QImage narrow = dashboard->grab().toImage();
    ASSERT_FALSE(wide.isNull());
    ASSERT_FALSE(narrow.isNull());
    EXPECT_GT(wide.width(), narrow.width());
    if (!folder.isEmpty()) {
        QDir().mkpath(folder);
        EXPECT_TRUE(narrow.save(folder + q("/dashboard.png")));
        EXPECT_TRUE(wide.save(folder + q("/dashboard-meeting-editor.png")));
    }
}

TEST_F(SchedulerTest, CopyAndPasteWorkOnTheActiveBox)
{
    open();
    newMeeting("Special hearing");
    QLineEdit* name = child<QLineEdit>("Text2");
    name->setFocus();
    name->selectAll();
    child<QAction>("mcopy")->trigger();
    QLineEdit* room = child<QLineEdit>("Text3");
    room->setFocus();
    room->clear();
    child<QAction>("mpaste")->trigger();
    EXPECT_EQ(room->text(), q("Special hearing"));
    // The room number holds twelve characters: the paste stops there too.
    QLineEdit* number = child<QLineEdit>("Text1");
    number->setFocus();
    child<QAction>("mpaste")->trigger();
    EXPECT_EQ(number->text(), q("Special hear"));

    // A locked box takes nothing.
    click("ICancel");
    room = child<QLineEdit>("Text1");
    room->setFocus();
    child<QAction>("mpaste")->trigger();
    EXPECT_TRUE(room->text().isEmpty());
}

// After start-up the program's main window is the dashboard, with the screens
// of the rest of the program on its buttons and menus.
TEST_F(SchedulerTest, StartUpEndsOnTheDashboard)
{
    app::WidgetStartupHost host;
    host.showMainWindow();
    Scheduler* main = host.mainWindow();
    ASSERT_TRUE(main);
    EXPECT_TRUE(main->isVisible());
    EXPECT_EQ(main->objectName(), q("scheduler"));
    EXPECT_EQ(main->findChild<QLabel*>(q("Label2"))->text(),
        QLocale(QLocale::English).monthName(QDate::currentDate().month()) + QLatin1Char(' ')
            + QString::number(QDate::currentDate().year()));
    EXPECT_TRUE(main->findChild<QPushButton*>(q("iPlaning"))->isEnabled());
    for (const char* entry : {"planningb", "About", "usermanage", "changepsw"}) {
        EXPECT_TRUE(main->findChild<QAction*>(q(entry))->isEnabled()) << entry;
    }
}

TEST_F(SchedulerTest, ComingToTheFrontReadsTheShownMeetingAgain)
{
    open();
    newMeeting("Hearing");
    click("IAdd");
    // Another workstation renames the meeting meanwhile.
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(path, q("Select * from MEETING"), &status);
        ASSERT_TRUE(rows);
        ASSERT_TRUE(rows->setValue(q("MNAME"), q("Public hearing")).ok());
        ASSERT_TRUE(rows->Update().ok());
    }
    session().ScreenCode = 0;
    QEvent activate(QEvent::WindowActivate);
    QApplication::sendEvent(dashboard.get(), &activate);
    EXPECT_EQ(session().ScreenCode, 1);
    EXPECT_EQ(child<QLineEdit>("Text2")->text(), q("Public hearing"));

    // Not while the clerk is typing.
    click("IEdit");
    type("Text2", q("Typed"));
    QApplication::sendEvent(dashboard.get(), &activate);
    EXPECT_EQ(child<QLineEdit>("Text2")->text(), q("Typed"));
}

TEST_F(SchedulerTest, MinutesOpenTheSelectedMeetingInTheNotepadAndAreSavedInItsRow)
{
    const QString startFrom = QDir(session().DatabaseFolder).filePath(q("mins/04Template1.rtf"));
    ASSERT_TRUE(QDir().mkpath(QFileInfo(startFrom).absolutePath()));
    const QByteArray template1 = "{\\rtf1\\ansi MINUTES OF THE MEETING\\par}";
    {
        QFile file(startFrom);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(template1);
    }
    open();
    app::wireDashboard(*dashboard);
    EXPECT_FALSE(child<QPushButton>("iMinutes")->isEnabled());
    newMeeting("Planning Board");
    EXPECT_FALSE(child<QPushButton>("iMinutes")->isEnabled());
    click("IAdd");

    // A meeting without minutes starts from the office's template.
    click("iMinutes");
    documents::NotepadFrm& notepad = documents::NotepadFrm::shared();
    EXPECT_TRUE(notepad.isVisible());
    EXPECT_TRUE(notepad.buffer().toPlainText().contains(q("MINUTES OF THE MEETING")));
    QTextCursor end(notepad.buffer().document());
    end.movePosition(QTextCursor::End);
    notepad.buffer().setTextCursor(end);
    QTest::keyClicks(&notepad.buffer(), q("Motion carried."));
    notepad.findChild<QAction*>(q("savedoc"))->trigger();
    EXPECT_FALSE(notepad.changed());
    notepad.close();

    store::StoreStatus status;
    auto rows = store::openRecordsetAt(path, q("Select * from MEETING"), &status);
    ASSERT_TRUE(rows && !rows->Eof());
    EXPECT_TRUE(rows->text(q("MINUTES")).startsWith(q("{\\rtf")));
    EXPECT_TRUE(rows->text(q("MINUTES")).contains(q("Motion carried.")));
    QFile file(startFrom);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), template1);

    // Opened again from another day of the month: the row's own minutes.
    clickDay(2);
    QTreeWidget* list = child<QTreeWidget>("ListView1");
    ASSERT_EQ(list->topLevelItemCount(), 1);
    list->setCurrentItem(list->topLevelItem(0));
    click("iMinutes");
    EXPECT_TRUE(notepad.buffer().toPlainText().contains(q("Motion carried.")));
    notepad.close();
}

TEST_F(SchedulerTest, MinutesOfARecurringMeetingAreKeptForEachOfItsDays)
{
    open();
    app::wireDashboard(*dashboard);
    newMeeting("Planning Board", "First", "Tuesday");
    click("IAdd");
    newMeeting("Public hearing");
    clickDay(15);
    click("IAdd");
    documents::NotepadFrm& notepad = documents::NotepadFrm::shared();
    auto write = [&](const QString& text) {
        QTextCursor end(notepad.buffer().document());
        end.movePosition(QTextCursor::End);
        notepad.buffer().setTextCursor(end);
        QTest::keyClicks(&notepad.buffer(), text);
        notepad.findChild<QAction*>(q("savedoc"))->trigger();
        EXPECT_FALSE(notepad.changed());
        notepad.close();
    };
    auto minutesOf = [&](int day) {
        clickDay(day);
        click("iMinutes");
        EXPECT_TRUE(notepad.isVisible());
        return notepad.findChild<QLabel*>(q("Panel1"))->text();
    };

    // A day brings its meeting into the editor, and Minutes names it.
    EXPECT_EQ(minutesOf(1), q("Minutes of Planning Board, 03/01/2011"));
    EXPECT_EQ(child<QLineEdit>("Text2")->text(), q("Planning Board"));
    write(q("March minutes."));
    const QString recno = dashboard->currentKey();
    const QString march = documents::NotepadFrm::minutesFileOf(recno, QDate(2011, 3, 1));
    QFile marchFile(march);
    ASSERT_TRUE(marchFile.open(QIODevice::ReadOnly));
    EXPECT_TRUE(marchFile.readAll().contains("March minutes."));

    // The same meeting in April starts a page of its own.
    chooseMonth(4);
    EXPECT_EQ(minutesOf(5), q("Minutes of Planning Board, 04/05/2011"));
    EXPECT_FALSE(notepad.buffer().toPlainText().contains(q("March minutes.")));
    write(q("April minutes."));
    chooseMonth(3);
    minutesOf(1);
    EXPECT_TRUE(notepad.buffer().toPlainText().contains(q("March minutes.")));
    EXPECT_FALSE(notepad.buffer().toPlainText().contains(q("April minutes.")));
    notepad.close();

    // The hearing of the 15th keeps its minutes in its own row.
    EXPECT_EQ(minutesOf(15), q("Minutes of Public hearing, 03/15/2011"));
    write(q("Hearing closed."));
    for (const StoredMeeting& meeting : storedMeetings(path)) {
        store::StoreStatus status;
        auto row = store::openRecordsetAt(
            path, q("Select * from MEETING where [RECNO] = ") + meeting.key, &status);
        ASSERT_TRUE(row && !row->Eof());
        EXPECT_EQ(row->text(q("MINUTES")).contains(q("Hearing closed.")), meeting.name == q("Public hearing"));
    }
}

TEST_F(SchedulerTest, AMeetingBeingTypedIsAskedForWhenTheProgramEnds)
{
    open();
    ProgramEndRecorder end;
    newMeeting("Hearing");
    scriptedPrompts().answer(q("not saved"), PromptAnswer::Cancel);
    click("mexit");
    EXPECT_EQ(end.calls(), 0);
    EXPECT_EQ(dashboard->editState(), Scheduler::EditState::New);
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_EQ(scriptedPrompts().shown().first().title, q("Manage Meetings"));
    EXPECT_TRUE(scriptedPrompts().shown().first().text.startsWith(q("The new meeting \"Hearing\" has changes")));

    scriptedPrompts().answer(q("not saved"), PromptAnswer::Yes);
    click("mexit");
    EXPECT_EQ(end.calls(), 1);
    ASSERT_EQ(storedMeetings(path).size(), 1);

    // A change dropped: the stored meeting stays as it was.
    click("IEdit");
    type("Text2", q("Hearing moved"));
    scriptedPrompts().answer(q("not saved"), PromptAnswer::No);
    click("mexit");
    EXPECT_EQ(end.calls(), 2);
    EXPECT_EQ(storedMeetings(path).first().name, q("Hearing"));
    EXPECT_EQ(dashboard->editState(), Scheduler::EditState::Browse);
}

TEST_F(SchedulerTest, PrintListsTheMeetingsOfASpanOnPaper)
{
    QTemporaryDir pdfs;
    documents::resetPrintState();
    documents::Editor::setPdfFolder(pdfs.path());
    QFile head(q(":/shipped/forms/mtghead.rtf"));
    ASSERT_TRUE(head.open(QIODevice::ReadOnly));
    ASSERT_TRUE(replaceFile(session().FormsFolder + q("/mtghead.rtf"), head.readAll()));
    auto span = [](const QDate& from, const QDate& to) {
        scriptedPrompts().onDialog(q("dtrange"), [from, to](QDialog& dialog) {
            EXPECT_TRUE(dialog.findChild<QLineEdit*>(q("Text1"))->isHidden()) << "no permit type here";
            dialog.findChild<ui::DateInput*>(q("DTPicker1"))->setDate(from);
            dialog.findChild<ui::DateInput*>(q("DTPicker2"))->setDate(to);
            dialog.findChild<QPushButton*>(q("cmdOK"))->click();
            return dialog.result();
        });
    };
    auto report = [] { return documents::Editor::instance().ReportBuffer().toPlainText(); };
    open();

    // Nothing in the file: the listing says so.
    span(QDate(2011, 3, 1), QDate(2011, 3, 31));
    click("iPrint");
    EXPECT_TRUE(report().contains(q("SCHEDULED EVENTS")));
    EXPECT_TRUE(report().contains(q("NO MEETINGS SCHEDULED"))) << report().toStdString();

    newMeeting("Planning Board", "Last", "Thursday");
    click("IAdd");
    newMeeting("Extra session");
    clickDay(2);
    QTest::keyClicks(child<QPlainTextEdit>("Text7"), q("Bring the maps"));
    click("IAdd");
    newMeeting("Site walk");
    clickDay(22);
    click("IAdd");

    // One day: its meeting, and the recurring one on its day of the month;
    // the meeting of another day of the year is not listed.
    span(QDate(2011, 3, 2), QDate(2011, 3, 2));
    click("iPrint");
    const QString listed = report();
    EXPECT_TRUE(listed.contains(q("DATE        TIME        MEETING"))) << "the heading file";
    EXPECT_TRUE(listed.contains(
        q("03/02/2011  07:00 PM  Extra session                 Town Hall, Room 2             \n"
          "            Clerk               Bring the maps")))
        << listed.toStdString();
    EXPECT_TRUE(listed.contains(q("03/31/2011  07:00 PM  Planning Board"))) << listed.toStdString();
    EXPECT_FALSE(listed.contains(q("Site walk")));
    EXPECT_FALSE(listed.contains(q("NO MEETINGS")));

    // Cancelled: nothing is built.
    documents::Editor::instance().clearBuffers();
    scriptedPrompts().onDialog(q("dtrange"), [](QDialog& dialog) {
        dialog.findChild<QPushButton*>(q("cmdCancel"))->click();
        return dialog.result();
    });
    click("iPrint");
    EXPECT_TRUE(report().isEmpty());

    // Printed, without a printer: a PDF named after the report.
    if (!documents::defaultPrinterName().isEmpty()) {
        GTEST_SKIP() << "a printer is set up on this machine";
    }
    span(QDate(2011, 3, 1), QDate(2011, 3, 31));
    click("iPrint");
    documents::Editor::instance().iPrint();
    const QString pdf = documents::Editor::instance().lastPdf();
    EXPECT_EQ(QFileInfo(pdf).fileName(), q("Scheduled Events.pdf"));
    const QString pages = pdfPageTexts(pdf).join(q("\n"));
    EXPECT_TRUE(pages.contains(q("SCHEDULED EVENTS")));
    EXPECT_TRUE(pages.contains(q("Site walk")));
    EXPECT_TRUE(pages.contains(q("Bring the maps")));
    documents::Editor::instance().hide();
    documents::Editor::instance().clearBuffers();
}
