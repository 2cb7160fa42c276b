#include "CaseScreenFixture.h"
#include "common/ExitApp.h"
#include "schedule/screens/Scheduler.h"
#include "support/ProgramEndRecorder.h"
#include "ui/RecordMode.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFocusEvent>
#include <QDialog>
#include <QTest>

using namespace pvardo;
using namespace pvardo::test;
using ui::RecordMode;

namespace {

// A case being typed on the case screen while the dashboard stands behind it,
// as the clerk has them: the dashboard's Exit ends the program.
class UnsavedCase : public CaseScreenTest
{
protected:
    void SetUp() override
    {
        CaseScreenTest::SetUp();
        session().BackupMode = 2;
        installation.createDatabase(store::Table::MEETING);
        seedCase(q("24-017"), {{q("PBAPPNAME1"), q("ANN APPLICANT")}, {q("PBAPPADDR1"), q("1 ELM RD")},
                                  {q("PBLOCN1"), q("10 MAIN ST")}, {q("PBSTATUS"), q("P")}, {q("SEC"), q("12")},
                                  {q("BLK"), q("1")}, {q("LOT"), q("5")}});
        open();
        screen->show();
        dashboard = std::make_unique<schedule::Scheduler>();
        dashboard->load(QDate(2012, 3, 1));
    }
    void TearDown() override
    {
        dashboard.reset();
        CaseScreenTest::TearDown();
    }

    void dashboardExit() { dashboard->findChild<QPushButton*>(q("mexit"))->click(); }
    QString storedApplicant() { return caseOnDisk(q("24-017"))->text(q("PBAPPNAME1")); }

    std::unique_ptr<schedule::Scheduler> dashboard;
};

} // namespace

TEST_F(UnsavedCase, TheProgramsExitAndTheWindowAskBeforeATypedChangeIsLost)
{
    ProgramEndRecorder end;

    // Begun and untouched: nothing to ask, the edit is given up.
    click("IEdit");
    EXPECT_FALSE(on("mexit")) << "Exit waits for Save or Cancel";
    dashboardExit();
    EXPECT_EQ(end.calls(), 1);
    EXPECT_TRUE(prompts().shown().isEmpty());
    EXPECT_EQ(screen->mode(), RecordMode::Browse);

    // Stay: the window's close and the dashboard's Exit both keep everything.
    click("IEdit");
    type(8, q("ANN CHANGED"));
    prompts().answer(q("not saved"), PromptAnswer::Cancel);
    screen->close();
    EXPECT_TRUE(screen->isVisible());
    prompts().answer(q("not saved"), PromptAnswer::Cancel);
    dashboardExit();
    EXPECT_EQ(end.calls(), 1);
    EXPECT_EQ(screen->mode(), RecordMode::Edit);
    EXPECT_EQ(text(8), q("ANN CHANGED"));
    ASSERT_EQ(prompts().shown().size(), 2);
    EXPECT_EQ(prompts().shown().last().title, q(" Projects"));
    EXPECT_EQ(prompts().shown().last().buttons, PromptButtons::YesNoCancel);
    EXPECT_TRUE(prompts().shown().last().text.startsWith(q("Case 24-017 has changes that are not saved.")));

    // Discard: the program ends, the file keeps what it had and the screen
    // shows it again.
    find<QComboBox>("Combo10")->setEditText(q("Approved"));
    prompts().answer(q("not saved"), PromptAnswer::No);
    dashboardExit();
    EXPECT_EQ(end.calls(), 2);
    EXPECT_EQ(storedApplicant(), q("ANN APPLICANT"));
    EXPECT_EQ(screen->mode(), RecordMode::Browse);
    EXPECT_EQ(text(8), q("ANN APPLICANT"));
    EXPECT_EQ(find<QComboBox>("Combo10")->currentText(), q("Pending"));

    // Save, refused by the checks: the clerk is told and the program stays.
    click("IEdit");
    type(8, QString());
    prompts().answer(q("not saved"), PromptAnswer::Yes);
    EXPECT_FALSE(ExitApp());
    EXPECT_EQ(end.calls(), 2);
    EXPECT_EQ(lastTitle(), q(" Missing Information"));
    EXPECT_EQ(screen->mode(), RecordMode::Edit);

    // Save: written, then the program ends.
    type(8, q("ANN CHANGED"));
    prompts().answer(q("not saved"), PromptAnswer::Yes);
    dashboardExit();
    EXPECT_EQ(end.calls(), 3);
    EXPECT_EQ(storedApplicant(), q("ANN CHANGED"));
    EXPECT_EQ(screen->mode(), RecordMode::Browse);

    // A new case saved on closing the window is added, and the window goes.
    click("INew");
    fillRequired();
    const QString number = text(1);
    prompts().answer(q("The new case"), PromptAnswer::Yes);
    screen->close();
    EXPECT_FALSE(screen->isVisible());
    EXPECT_TRUE(caseOnDisk(number));
    EXPECT_EQ(casesOnDisk(), 2);
}

TEST_F(UnsavedCase, TheStatusListTakesOnlyItsOwnWords)
{
    click("IEdit");
    QLineEdit* status = find<QComboBox>("Combo10")->lineEdit();
    auto typeStatus = [status](const QString& typed) {
        status->setFocus();
        status->selectAll();
        QTest::keyClicks(status, typed);
        QFocusEvent out(QEvent::FocusOut);
        QCoreApplication::sendEvent(status, &out);
        return status->text();
    };
    EXPECT_EQ(typeStatus(q("ApprovedEDITED")), q("Approved")) << "typing stops at the word";
    EXPECT_EQ(typeStatus(q("den")), q("Denied")) << "a part of one word is completed";
    EXPECT_EQ(typeStatus(q("xyz")), q("Denied")) << "nothing of it is taken";

    // A word of no status that reached the list is refused on saving.
    find<QComboBox>("Combo10")->setEditText(q("Xtra"));
    click("ISave");
    EXPECT_EQ(lastTitle(), q(" Missing Information"));
    EXPECT_TRUE(lastText().contains(q("--Application Status")));
    EXPECT_EQ(caseOnDisk(q("24-017"))->text(q("PBSTATUS")), q("P"));
}

TEST_F(UnsavedCase, ControlUShowsDeleteForTheCaseInViewOnly)
{
    seedCase(q("24-018"));
    screen->iReset();
    session().UserLevel = q("ADMIN");
    session().IsAdmin = true;
    QApplication::setActiveWindow(screen.get());
    auto* erase = find<QPushButton>("iDelete");
    auto reveal = [&] {
        QTest::keyClick(screen.get(), Qt::Key_U, Qt::ControlModifier);
        return erase->isVisible();
    };

    ASSERT_TRUE(reveal());
    click("IMoveNext");
    EXPECT_TRUE(erase->isHidden()) << "another case";
    ASSERT_TRUE(reveal());
    click("IEdit");
    EXPECT_TRUE(erase->isHidden()) << "an entry";
    click("ICancel");
    ASSERT_TRUE(reveal());
    screen->close();
    screen->show();
    QApplication::setActiveWindow(screen.get());
    EXPECT_TRUE(erase->isHidden()) << "the screen opened again";

    // Granted, it deletes one case and goes.
    ASSERT_TRUE(reveal());
    prompts().onDialog(q("Delconfirm"), [](QDialog&) { return int(QDialog::Accepted); });
    click("iDelete");
    EXPECT_EQ(casesOnDisk(), 1);
    EXPECT_TRUE(erase->isHidden());

    // Not an administrator: the key does nothing.
    session().UserLevel = q("MEMBER");
    session().IsAdmin = false;
    EXPECT_FALSE(reveal());
}
