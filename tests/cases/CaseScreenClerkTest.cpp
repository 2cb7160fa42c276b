// The case screen as a new clerk meets it: dates typed and picked, the list,
// the commands whose screens are still to come, and the words it shows.
#include "CaseScreenFixture.h"
#include "cases/CaseStatus.h"
#include "cases/screens/CaseListModel.h"
#include "cases/screens/CaseListView.h"
#include "common/Clock.h"
#include "ui/DateInput.h"
#include "ui/NotAvailable.h"
#include "ui/RecordMode.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QHeaderView>
#include <QMenu>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>

using namespace pvardo;
using namespace pvardo::test;
using ui::RecordMode;

namespace {

class CaseClerkTest : public CaseScreenTest
{
protected:
    ui::DateInput* dateInput() { return find<ui::DateInput>("DTPicker3"); }

    // Types into the filing date as the clerk does: select all, type, Enter.
    void typeDate(const QString& text)
    {
        ui::DateInput* input = dateInput();
        input->setFocus();
        input->selectAll();
        QTest::keyClick(input, Qt::Key_Delete);
        QTest::keyClicks(input, text);
        QTest::keyClick(input, Qt::Key_Return);
    }

    // Drops the calendar down from the input's button and picks a day with
    // the keyboard: the calendar's own arrows and Enter.
    void pickDate(const QDate& date)
    {
        ui::DateInput* input = dateInput();
        QAction* drop = input->findChild<QAction*>(q("dropCalendar"));
        ASSERT_TRUE(drop);
        drop->trigger();
        QCalendarWidget* calendar = input->calendar();
        ASSERT_TRUE(calendar);
        calendar->setCurrentPage(date.year(), date.month());
        calendar->setSelectedDate(date);
        auto* view = calendar->findChild<QAbstractItemView*>();
        ASSERT_TRUE(view);
        QTest::keyClick(view, Qt::Key_Return);
    }

    // A new case with its required inputs, added.
    void addCase(const QString& number)
    {
        click("INew");
        fillRequired();
        type(1, number);
        click("IAdd");
        ASSERT_EQ(screen->mode(), RecordMode::Browse) << lastText().toStdString();
    }

    QDate filedOnDisk(const QString& number)
    {
        auto row = caseOnDisk(number);
        return row ? row->value(q("PBFILEDATE")).toDate() : QDate();
    }
};

} // namespace

TEST_F(CaseClerkTest, AnImpossibleFilingDateIsRefusedAndTheDateKept)
{
    seedCase(q("12-200"),
        {{q("PBFILEDATE"), q("2012-02-03")}, {q("PBAPPNAME1"), q("ANN")}, {q("PBAPPADDR1"), q("1 ELM")},
            {q("PBLOCN1"), q("10 MAIN ST")}, {q("PBSTATUS"), q("P")}, {q("SEC"), q("12")}, {q("BLK"), q("1")},
            {q("LOT"), q("5")}});
    seedParcel(q("12-0-0-1-5-0-0-0"));
    open();
    EXPECT_EQ(dateInput()->text(), q("02/03/2012"));
    EXPECT_TRUE(dateInput()->isReadOnly());
    click("IEdit");
    for (const char* impossible : {"13/45/2026", "2/30/2026", "12/1/202", "1/2"}) {
        prompts().clear();
        typeDate(q(impossible));
        ASSERT_EQ(prompts().shown().size(), 1) << impossible;
        EXPECT_EQ(lastText(), q(impossible) + q(" is not a date. The date stays 02/03/2012."));
        EXPECT_EQ(dateInput()->text(), q("02/03/2012")) << impossible;
        EXPECT_EQ(dateInput()->date(), QDate(2012, 2, 3));
    }
    // Leaving the input after a refusal asks nothing more.
    prompts().clear();
    find<QLineEdit>("Text1_8")->setFocus();
    EXPECT_TRUE(prompts().shown().isEmpty());
    click("ISave");
    EXPECT_EQ(filedOnDisk(q("12-200")), QDate(2012, 2, 3));

    // A real date typed in another form is shown in the office's form and saved.
    click("IEdit");
    typeDate(q("2-5-2026"));
    EXPECT_EQ(dateInput()->text(), q("02/05/2026"));
    click("ISave");
    EXPECT_EQ(filedOnDisk(q("12-200")), QDate(2026, 2, 5));
    EXPECT_EQ(caseOnDisk(q("12-200"))->text(q("FILEYEAR")), q("26"));
}

// From 2028 on, today's date and picked dates keep their century; only a
// typed two-digit year is read against today.
TEST_F(CaseClerkTest, TheCenturyOfADateFollowsTheClock)
{
    seedParcel(q("12-0-0-1-5-0-0-0"));
    const struct
    {
        QDate today;
        QDate picked;
        const char* typed;
        QDate typedMeans;
    } years[] = {
        {QDate(2028, 1, 10), QDate(2028, 12, 31), "5/6/78", QDate(1978, 5, 6)},
        {QDate(2031, 7, 1), QDate(2031, 6, 15), "5/6/80", QDate(2080, 5, 6)},
        {QDate(2060, 3, 3), QDate(2059, 2, 28), "5/6/09", QDate(2109, 5, 6)},
    };
    int n = 0;
    for (const auto& year : years) {
        ScopedClockDay clock(year.today);
        session().Today = year.today;
        cases::resetCaseNumbering();
        const QString yy = QString::number(year.today.year()).right(2);
        open();
        SCOPED_TRACE(year.today.toString(Qt::ISODate).toStdString());

        // Today, as the new case's filing date.
        const QString first = yy + QStringLiteral("-%1").arg(300 + n++);
        addCase(first);
        EXPECT_EQ(filedOnDisk(first), year.today);

        // A date picked from the calendar.
        click("INew");
        fillRequired();
        const QString second = yy + QStringLiteral("-%1").arg(300 + n++);
        type(1, second);
        pickDate(year.picked);
        EXPECT_EQ(dateInput()->text(), year.picked.toString(q("MM/dd/yyyy")));
        click("IAdd");
        EXPECT_EQ(filedOnDisk(second), year.picked);

        // A year typed with two digits.
        click("INew");
        fillRequired();
        const QString third = yy + QStringLiteral("-%1").arg(300 + n++);
        type(1, third);
        typeDate(q(year.typed));
        click("IAdd");
        EXPECT_EQ(filedOnDisk(third), year.typedMeans);
        screen.reset();
    }
}

TEST_F(CaseClerkTest, TheCalendarStartsTheWeekOnSunday)
{
    open();
    click("INew");
    pickDate(QDate(2012, 3, 14));
    EXPECT_EQ(dateInput()->date(), QDate(2012, 3, 14));
    dateInput()->findChild<QAction*>(q("dropCalendar"))->trigger();
    ASSERT_TRUE(dateInput()->calendar());
    EXPECT_EQ(dateInput()->calendar()->firstDayOfWeek(), Qt::Sunday);
    dateInput()->calendar()->close();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // Read-only, the input drops nothing down.
    click("ICancel");
    dateInput()->findChild<QAction*>(q("dropCalendar"))->trigger();
    EXPECT_FALSE(dateInput()->calendar());
}

TEST_F(CaseClerkTest, NewAndLocateFromUnderTheListComeBackToTheInputs)
{
    seedCase(q("12-200"));
    open();
    auto* stack = find<QStackedWidget>("stkDetail");
    for (const char* command : {"newr", "find"}) {
        click("iBrowse");
        ASSERT_EQ(stack->currentIndex(), 1);
        trigger(command);
        EXPECT_EQ(stack->currentIndex(), 0) << command;
        EXPECT_TRUE(find<QWidget>("ICancel")->isVisibleTo(screen.get())) << command;
        EXPECT_TRUE(on("ICancel")) << command;
        EXPECT_TRUE(find<QWidget>(command == std::string("newr") ? "IAdd" : "ILocate")->isVisibleTo(screen.get()));
        click("ICancel");
        EXPECT_EQ(screen->mode(), RecordMode::Browse);
    }
}

TEST_F(CaseClerkTest, TheListOpensACaseOnDoubleClickAndGivesTheProjectTheRoom)
{
    seedCase(q("12-200"), {{q("PBPROJNAME"), q("Barn")}});
    seedCase(q("12-201"),
        {{q("PBPROJNAME"),
            q("Conversion of the old creamery on Route 9 into eight apartments with parking")}});
    seedCase(q("12-202"), {{q("PBSTATUS"), q("I")}});
    open();
    screen->resize(1366, 900);
    screen->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(screen.get()));
    click("iBrowse");
    auto* view = find<QTreeView>("ListView1");
    QHeaderView* header = view->header();
    int total = 0;
    for (int column = 0; column < header->count(); ++column) {
        total += header->sectionSize(column);
    }
    EXPECT_EQ(total, view->viewport()->width());
    EXPECT_GT(header->sectionSize(cases::CaseListModel::Project),
        2 * cases::CaseListModel::widthTwips(cases::CaseListModel::Project) / 15);
    // The longest status word is shown whole.
    EXPECT_GE(header->sectionSize(cases::CaseListModel::Status),
        view->fontMetrics().horizontalAdvance(q("Initial Application")) + 8);

    const QRect line = view->visualRect(view->model()->index(1, cases::CaseListModel::Case));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, line.center());
    EXPECT_EQ(text(1), q("12-201"));
    EXPECT_EQ(find<QStackedWidget>("stkDetail")->currentIndex(), 1); // a click only picks
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, line.center());
    EXPECT_EQ(find<QStackedWidget>("stkDetail")->currentIndex(), 0);
    EXPECT_EQ(text(1), q("12-201"));
    EXPECT_EQ(label("recpos"), q("Record 2 of 3"));
    EXPECT_EQ(find<QPushButton>("iBrowse")->text(), q("List"));
}

TEST_F(CaseClerkTest, CommandsWhoseScreensAreToComeSaySoInOneLine)
{
    seedCase(q("12-200"));
    open();
    const auto saysNotAvailable = [this](const std::string& what) {
        ASSERT_EQ(prompts().shown().size(), 1) << what;
        EXPECT_TRUE(lastText().endsWith(q(" is not available in this version.")))
            << what << ": " << lastText().toStdString();
        EXPECT_FALSE(lastText().contains(QLatin1Char('\n'))) << what;
        prompts().clear();
    };
    prompts().clear();
    for (const char* button :
        {"ifees", "iMeetings", "iReview", "iSEQRA", "iBonds", "iActions", "iMaps", "iWetlands", "iAdjacents",
            "iIssues", "iContinue", "iParcel", "IDoc", "IPic"}) {
        click(button);
        saysNotAvailable(button);
    }
    EXPECT_EQ(q("Fees is not available in this version."), ui::notAvailableText(q("Fees")));
    for (const char* action : {"reportfu", "hlpContents"}) {
        trigger(action);
        saysNotAvailable(action);
    }
}

TEST_F(CaseClerkTest, TheDeleteKeyIsNamedInTheMenuAndTheHelp)
{
    seedCase(q("12-200"));
    open();
    auto* voiding = find<QAction>("delr");
    EXPECT_TRUE(voiding->toolTip().contains(q("Control+U")));
    EXPECT_TRUE(find<QMenu>("mnuFile")->toolTipsVisible());
    trigger("hlpKeys");
    EXPECT_TRUE(lastText().contains(q("Control+U")));
    EXPECT_TRUE(lastText().contains(q("Control+F")));
}

TEST_F(CaseClerkTest, VoidingAndRestoringStampTheRow)
{
    seedCase(q("12-200"),
        {{q("PBSTATUS"), q("A")}, {q("BYUSER"), q("olduser")}, {q("TSTAMP"), q("2001-01-01 09:00:00")}});
    open();
    session().CurrentUser = q("voider");
    prompts().answer(q("void this record"), PromptAnswer::Yes);
    trigger("delr");
    auto row = caseOnDisk(q("12-200"));
    EXPECT_EQ(row->text(q("PBSTATUS")), q("V"));
    EXPECT_EQ(row->text(q("BYUSER")), q("voider"));
    EXPECT_EQ(row->value(q("TSTAMP")).toDateTime().date(), todaysDate());

    session().CurrentUser = q("restorer");
    prompts().answer(q("already voided"), PromptAnswer::Yes);
    trigger("delr");
    row = caseOnDisk(q("12-200"));
    EXPECT_EQ(row->text(q("PBSTATUS")), q("A")); // the status it had comes back
    EXPECT_EQ(row->text(q("BYUSER")), q("restorer"));
    EXPECT_EQ(find<QComboBox>("Combo10")->currentText(), q("Approved"));
    EXPECT_FALSE(find<QLabel>("lblVoid")->isVisible());
}

TEST_F(CaseClerkTest, ACaseIsNeverLeftWithoutAStatus)
{
    // Voided through the list, then restored from the menu: Pending again.
    seedCase(q("12-200"), {{q("PBSTATUS"), q("P")}, {q("PBAPPNAME1"), q("ANN")}, {q("PBAPPADDR1"), q("1 ELM")},
                              {q("PBLOCN1"), q("10 MAIN")}, {q("SEC"), q("12")}, {q("BLK"), q("1")}, {q("LOT"), q("5")}});
    // Voided before anything noted its status.
    seedCase(q("12-201"), {{q("PBSTATUS"), q("V")}, {q("PBAPPNAME1"), q("BEN")}, {q("PBAPPADDR1"), q("2 ELM")},
                              {q("PBLOCN1"), q("11 MAIN")}, {q("SEC"), q("12")}, {q("BLK"), q("1")}, {q("LOT"), q("5")}});
    open();
    click("IEdit");
    pick("Combo10", "Voided");
    click("ISave");
    ASSERT_EQ(caseOnDisk(q("12-200"))->text(q("PBSTATUS")), q("V")) << lastText().toStdString();
    prompts().answer(q("already voided"), PromptAnswer::Yes);
    trigger("delr");
    EXPECT_EQ(caseOnDisk(q("12-200"))->text(q("PBSTATUS")), q("P"));

    // An emptied status is refused on Save as on Add.
    click("IEdit");
    pick("Combo10", "");
    click("ISave");
    EXPECT_EQ(screen->mode(), RecordMode::Edit);
    EXPECT_TRUE(lastText().contains(q("--Application Status"))) << lastText().toStdString();
    EXPECT_EQ(caseOnDisk(q("12-200"))->text(q("PBSTATUS")), q("P"));
    click("ICancel");

    // No earlier status known: the clerk is asked to choose; Cancel keeps the
    // void, Save without a choice is refused, a choice is written.
    click("IMoveNext");
    ASSERT_EQ(text(1), q("12-201"));
    for (bool cancel : {true, false}) {
        prompts().clear();
        prompts().answer(q("already voided"), PromptAnswer::Yes);
        trigger("delr");
        EXPECT_TRUE(lastText().contains(q("not on record"))) << lastText().toStdString();
        ASSERT_EQ(screen->mode(), RecordMode::Edit);
        EXPECT_EQ(find<QComboBox>("Combo10")->currentText(), q("<select>"));
        EXPECT_EQ(caseOnDisk(q("12-201"))->text(q("PBSTATUS")), q("V"));
        if (cancel) {
            click("ICancel");
            EXPECT_EQ(caseOnDisk(q("12-201"))->text(q("PBSTATUS")), q("V"));
            continue;
        }
        click("ISave");
        EXPECT_EQ(screen->mode(), RecordMode::Edit);
        pick("Combo10", "Denied");
        click("ISave");
        EXPECT_EQ(caseOnDisk(q("12-201"))->text(q("PBSTATUS")), q("D"));
    }
}

TEST_F(CaseClerkTest, TheStatusListOffersTheWordsTheCaseShows)
{
    const char* letters[] = {"I", "P", "O", "A", "D", "C", "V"};
    int n = 0;
    for (const char* letter : letters) {
        seedCase(QStringLiteral("12-%1").arg(200 + n++), {{q("PBSTATUS"), q(letter)}});
    }
    open();
    auto* status = find<QComboBox>("Combo10");
    for (const char* letter : letters) {
        const QString shown = status->currentText();
        EXPECT_GE(status->findText(shown), 0) << letter << " shows " << shown.toStdString();
        EXPECT_EQ(cases::CaseStatus::letterOf(shown), q(letter));
        if (on("IMoveNext")) {
            click("IMoveNext");
        }
    }
    EXPECT_EQ(cases::CaseStatus::statusListTexts().size(), 7);
}

TEST_F(CaseClerkTest, TheScreensWordsAreSpeltAndMeanWhatIsThere)
{
    seedParcel(q("1-0-0-1-1-0-0-0"));
    seedCase(q("12-200"), {{q("SEC"), q("1")}, {q("BLK"), q("1")}, {q("LOT"), q("1")}});
    open();
    QStringList texts;
    for (QLabel* caption : screen->findChildren<QLabel*>()) {
        texts << caption->text();
    }
    const QString all = texts.join(QLatin1Char('\n'));
    EXPECT_FALSE(all.contains(q("Accesory")));
    EXPECT_TRUE(all.contains(q("Accessory Structure")));
    EXPECT_FALSE(all.contains(q("calculator icon")));
    EXPECT_TRUE(all.contains(q("clicking the Calculate button")));
    EXPECT_EQ(find<QLineEdit>("Text1_1")->toolTip(), q(" Case Number "));
    click("INew");
    EXPECT_EQ(find<QLineEdit>("Text1_1")->toolTip(), q(" Case Number "));
}

TEST_F(CaseClerkTest, AnAutomaticallyResolvedOldNumberLeavesTheYearsSequenceAlone)
{
    ASSERT_TRUE(replaceTextLines(joinPath(installation.databaseFolder(), q("\\zhi.txt")), {q("250")}));
    ASSERT_TRUE(replaceTextLines(joinPath(installation.databaseFolder(), q("\\pnb.txt")), {q("-1")}));
    seedCase(q("10-201"));
    seedCase(q("12-250"));
    seedParcel(q("12-0-0-1-5-0-0-0"));
    open();
    click("INew");
    EXPECT_EQ(text(1), q("12-251"));
    fillRequired();
    type(1, q("10-201"));
    prompts().onDialog(q("dupe"), [](QDialog& dialog) {
        dialog.findChild<QCheckBox*>(q("Check1"))->setChecked(true);
        return int(QDialog::Accepted);
    });
    click("IAdd");
    EXPECT_TRUE(caseOnDisk(q("10-202")));
    click("INew");
    EXPECT_EQ(text(1), q("12-252"));
    const auto zhi = readTextLines(joinPath(installation.databaseFolder(), q("\\zhi.txt")));
    ASSERT_TRUE(zhi);
    EXPECT_EQ(zhi->first(), q("252"));
}

TEST_F(CaseClerkTest, TheCommandsStayInPlaceAndAFailedSearchKeepsTheScreen)
{
    seedCase(q("12-200"), {{q("PBSTATUS"), q("A")}, {q("PBAPPNAME1"), q("ANN")}});
    seedCase(q("12-201"), {{q("PBSTATUS"), q("P")}});
    open();
    screen->resize(1366, 900);
    screen->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(screen.get()));
    auto placeOf = [this](const char* name) {
        QApplication::processEvents();
        auto* widget = find<QWidget>(name);
        return QRect(widget->mapTo(screen.get(), QPoint(0, 0)), widget->size());
    };
    const QRect exit = placeOf("mexit");
    const QRect list = placeOf("iBrowse");
    const QSize least = screen->minimumSizeHint();

    // The VOID banner does not push the commands down.
    prompts().answer(q("void this record"), PromptAnswer::Yes);
    trigger("delr");
    ASSERT_TRUE(find<QLabel>("lblVoid")->isVisible());
    EXPECT_EQ(placeOf("mexit"), exit);
    // Nor do the list, the other tabs or a read-only user's rights move them.
    click("iBrowse");
    EXPECT_EQ(placeOf("iBrowse"), list);
    EXPECT_EQ(placeOf("mexit"), exit);
    click("iBrowse");
    find<QTabWidget>("SSTab1")->setCurrentIndex(1);
    EXPECT_EQ(placeOf("mexit"), exit);
    find<QTabWidget>("SSTab1")->setCurrentIndex(0);
    session().ReadOnlyUser = true;
    screen->activateScreen();
    EXPECT_EQ(placeOf("mexit"), exit);
    EXPECT_EQ(screen->minimumSizeHint(), least);
    session().ReadOnlyUser = false;
    screen->activateScreen();

    // While "Unable to locate" is up, the search the clerk typed stays
    // behind it, not an empty file with every command off.
    click("ILocate");
    type(8, q("NOBODY"));
    QString behind;
    QString typed;
    bool commandsOn = false;
    prompts().whileShown([&](const Prompt&) {
        behind = label("recpos");
        typed = text(8);
        commandsOn = on("ICancel") && on("ILocate");
    });
    click("ILocate");
    EXPECT_EQ(lastTitle(), q(" Record not Found"));
    EXPECT_EQ(behind, q("enter data"));
    EXPECT_EQ(typed, q("NOBODY"));
    EXPECT_TRUE(commandsOn);
    EXPECT_EQ(label("recpos"), q("Record 1 of 2"));
    EXPECT_EQ(screen->mode(), RecordMode::Browse);
}

TEST_F(CaseClerkTest, TheCaseNumbersColourIsAlwaysThatOfTheCaseShown)
{
    seedParcel(q("2-0-0-1-1-0-0-0"), q("dog"), 1);
    seedCase(q("12-200"), {{q("SEC"), q("2")}, {q("BLK"), q("1")}, {q("LOT"), q("1")}});
    seedCase(q("12-201"), {{q("SEC"), q("9")}, {q("BLK"), q("9")}, {q("LOT"), q("9")}}); // no such parcel
    open();
    auto* number = find<QLineEdit>("Text1_1");
    const QColor plain = QApplication::palette().color(QPalette::Base);
    EXPECT_EQ(number->palette().color(QPalette::Base), QColor(255, 0, 0));
    click("IMoveNext");
    EXPECT_EQ(text(1), q("12-201"));
    EXPECT_EQ(number->palette().color(QPalette::Base), plain);
    EXPECT_TRUE(number->toolTip().contains(q("not in the parcel store"))) << number->toolTip().toStdString();
    click("IMovePrev");
    EXPECT_EQ(number->palette().color(QPalette::Base), QColor(255, 0, 0));
    // A jump to the end as well.
    click("IMoveLast");
    EXPECT_EQ(number->palette().color(QPalette::Base), plain);
}

TEST_F(CaseClerkTest, AClerkWhoMayOnlyReadSeesReadOnlyInputsUntilASearch)
{
    seedCase(q("12-200"), {{q("PBLOCN1"), q("10 Main St")}});
    session().UserLevel = q("USER");
    session().ReadOnlyUser = true;
    open();
    screen->show();
    const QColor window = QApplication::palette().color(QPalette::Window);
    const QColor editable = QApplication::palette().color(QPalette::Base);
    for (const char* name : {"Text1_1", "Text1_7", "Text1_12"}) {
        auto* input = find<QLineEdit>(name);
        EXPECT_TRUE(input->isReadOnly()) << name;
        EXPECT_EQ(input->palette().color(QPalette::Base), window) << name;
    }
    EXPECT_EQ(find<QWidget>("DTPicker3")->palette().color(QPalette::Base), window);
    // A search is typed: the inputs look as open as they are.
    click("ILocate");
    EXPECT_FALSE(find<QLineEdit>("Text1_7")->isReadOnly());
    EXPECT_EQ(find<QLineEdit>("Text1_7")->palette().color(QPalette::Base), editable);
    click("ICancel");
    EXPECT_EQ(find<QLineEdit>("Text1_7")->palette().color(QPalette::Base), window);

    // Everybody else reads and edits on the usual white.
    screen.reset();
    session().UserLevel = q("MEMBER");
    session().ReadOnlyUser = false;
    open();
    EXPECT_EQ(find<QLineEdit>("Text1_7")->palette().color(QPalette::Base), editable);
}
