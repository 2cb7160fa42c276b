#include "CasePrintingFixture.h"

#include "common/Clock.h"
#include "documents/PdfPages.h"
#include "documents/PrintState.h"
#include "documents/printer/DefaultPrinter.h"
#include "documents/screens/Editor.h"
#include "ui/DateInput.h"

#include <QDialog>
#include <QDir>
#include <QFile>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTextDocument>

namespace pvardo::test {

namespace {

// The case screen's Reports menu over cases filed in 2012, with the shipped
// heading files in the forms folder.
class CaseReports : public CasePrintingTest
{
protected:
    void SetUp() override
    {
        CasePrintingTest::SetUp();
        setClockDay(QDate(2012, 3, 1));
        for (const char* name : {"apphead.rtf", "exphead.rtf"}) {
            QFile shipped(q(":/shipped/forms/") + q(name));
            ASSERT_TRUE(shipped.open(QIODevice::ReadOnly)) << name;
            ASSERT_TRUE(replaceFile(session().FormsFolder + q("/") + q(name), shipped.readAll()));
        }
        fileCase(q("12-001"), QDate(2012, 2, 28), q("P"), q("Two-lot subdivision"));
        fileCase(q("12-002"), QDate(2012, 3, 1), q("A"), q("Site plan, garden centre"),
                 {{q("PBAPPNAME1"), q("Ann Applicant")}, {q("PBLOCN1"), q("10 MAIN ST")},
                  {q("PBOWNRNAME1"), q("Owen Owner")}, {q("PBTYPE"), q("Site Plan")},
                  {q("SEC"), q("12")}, {q("BLK"), q("1")},
                  {q("LOT"), q("5")}});
        fileCase(q("12-003"), QDate(2012, 3, 15), q("V"), q("Withdrawn lot line change"),
                 {{q("PBOWNRNAME1"), q("Vera Voided")}});
        fileCase(q("12-004"), QDate(2012, 3, 20), q("I"), QString(), {{q("PRMFOR"), q("Sign")}});
        fileCase(q("12-005"), QDate(2012, 4, 2), q("O"), q("Appeal of denial"));
    }
    void TearDown() override
    {
        setClockDay({});
        CasePrintingTest::TearDown();
    }

    void fileCase(const QString& number, const QDate& filed, const QString& status, const QString& description,
                  std::map<QString, QString> more = {})
    {
        more[q("PBFILEDATE")] = filed.toString(q("MM/dd/yyyy"));
        more[q("FILEMONTH")] = filed.toString(q("MM"));
        more[q("FILEDATE")] = filed.toString(q("dd"));
        more[q("FILEYEAR")] = filed.toString(q("yy"));
        more[q("PBSTATUS")] = status;
        more[q("PBPROJDESC")] = description;
        seedCase(number, more);
    }
    // Opens the screen on its third case, as a clerk who has moved on.
    void openOnThirdCase()
    {
        open();
        click("IMoveNext");
        click("IMoveNext");
        ASSERT_EQ(text(1), q("12-003"));
        ownQuery = screen->currentQuery();
    }
    void answerMonth(int month, int year)
    {
        prompts().onDialog(q("MonthSelect"), [=](QDialog& dialog) {
            auto* months = dialog.findChild<QComboBox*>(q("cboMonth"));
            months->setCurrentIndex(months->findData(month));
            dialog.findChild<QSpinBox*>(q("txtYear"))->setValue(year);
            dialog.findChild<QPushButton*>(q("cmdOK"))->click();
            return dialog.result();
        });
    }
    QString report() { return documents::Editor::instance().ReportBuffer().toPlainText(); }
    void expectScreenAsBefore()
    {
        EXPECT_EQ(screen->currentQuery(), ownQuery);
        EXPECT_EQ(session().ScreenQuery[0], ownQuery);
        EXPECT_EQ(text(1), q("12-003"));
        EXPECT_EQ(label("recpos"), q("Record 3 of 5"));
    }

    QString ownQuery;
};

} // namespace

TEST_F(CaseReports, applicationsOfAMonthOrAYear)
{
    openOnThirdCase();
    answerMonth(3, 2012);
    trigger("monthlynumber");
    const QString march = report();
    EXPECT_TRUE(march.contains(q("PLANNING BOARD APPLICATIONS FOR MARCH 2012"))) << march.toStdString();
    EXPECT_TRUE(march.contains(q("CASE        FILED       DESCRIPTION"))) << "the heading file";
    // Three lines a case, in columns; the voided case is neither listed nor counted.
    EXPECT_TRUE(march.contains(q("12-002      03/01/2012  Site plan, garden centre        Approved\n")))
        << march.toStdString();
    const QString second = march.section(q("12-002      "), 1).section(q("\n"), 1, 1);
    EXPECT_EQ(second.mid(25), q("Ann Applicant             10 MAIN ST                "));
    EXPECT_TRUE(march.contains(QString(77, QLatin1Char('-')) + q("\n")));
    EXPECT_TRUE(march.contains(q("12-004      03/20/2012  --                              Initial Application")));
    EXPECT_FALSE(march.contains(q("12-003")));
    EXPECT_FALSE(march.contains(q("12-001")));
    EXPECT_TRUE(march.contains(q("TOTAL = 2")));
    expectScreenAsBefore();

    // The whole year.
    answerMonth(0, 2012);
    trigger("monthlynumber");
    EXPECT_TRUE(report().contains(q("PLANNING BOARD APPLICATIONS FOR 2012")));
    EXPECT_TRUE(report().contains(q("TOTAL = 4")));

    // A month without cases says so and leaves the screen as it was.
    prompts().clear();
    answerMonth(7, 2012);
    trigger("monthlynumber");
    EXPECT_EQ(lastTitle(), q(" Record(s) not Found"));
    EXPECT_EQ(lastText(), q("No records meet the criteria."));
    expectScreenAsBefore();

    // Cancelled: nothing runs.
    prompts().clear();
    prompts().onDialog(q("MonthSelect"), [](QDialog& dialog) {
        dialog.findChild<QPushButton*>(q("cmdCancel"))->click();
        return dialog.result();
    });
    trigger("monthlynumber");
    EXPECT_TRUE(session().StopFlag);
    EXPECT_TRUE(prompts().shown().isEmpty());

    // Printed, the listing reaches the paper.
    if (!documents::defaultPrinterName().isEmpty()) {
        GTEST_SKIP() << "a printer is set up on this machine";
    }
    answerMonth(3, 2012);
    trigger("monthlynumber");
    documents::Editor::instance().iPrint();
    const QStringList pages = pdfPageTexts(documents::Editor::instance().lastPdf());
    ASSERT_FALSE(pages.isEmpty());
    EXPECT_TRUE(pages.first().contains(q("Site plan, garden centre")));
    EXPECT_TRUE(pages.join(q("\n")).contains(q("TOTAL = 2")));
}

TEST_F(CaseReports, statusOfASpanHoldsBothItsDays)
{
    openOnThirdCase();
    // An end before the start is refused and the dialog stays for a mend.
    auto refusals = std::make_shared<int>(0);
    auto span = [this, refusals](QDate start, QDate end, const QString& type) {
        prompts().onDialog(q("dtrange"), [=, this](QDialog& dialog) {
            auto* from = dialog.findChild<ui::DateInput*>(q("DTPicker1"));
            auto* to = dialog.findChild<ui::DateInput*>(q("DTPicker2"));
            from->setDate(start);
            to->setDate(start.addDays(-1));
            dialog.findChild<QPushButton*>(q("cmdOK"))->click();
            if (dialog.result() != QDialog::Accepted && lastTitle() == q("Invalid Dates")
                && lastText() == q("Date before cannot be prior to date after.")) {
                ++*refusals;
            }
            to->setDate(end);
            dialog.findChild<QLineEdit*>(q("Text1"))->setText(type);
            dialog.findChild<QPushButton*>(q("cmdOK"))->click();
            return dialog.result();
        });
    };
    // Filed on the start day (03/01) or the end day (03/20): inside.
    span(QDate(2012, 3, 1), QDate(2012, 3, 20), QString());
    trigger("exppermits");
    EXPECT_EQ(*refusals, 1);
    QString listed = report();
    EXPECT_TRUE(listed.contains(q("CASES STATUS FROM 03/01/12 THROUGH 03/20/12"))) << listed.toStdString();
    EXPECT_TRUE(listed.contains(q("OWNER"))) << "the heading file";
    EXPECT_TRUE(listed.contains(q("12-002")));
    EXPECT_TRUE(listed.contains(q("12-004")));
    EXPECT_FALSE(listed.contains(q("12-003"))) << "voided";
    EXPECT_TRUE(listed.contains(q("TOTAL = 2")));

    span(QDate(2012, 2, 1), QDate(2012, 3, 31), QString());
    trigger("exppermits");
    listed = report();
    EXPECT_TRUE(listed.contains(q("12-001       ")));
    const QString line = listed.section(q("12-002"), 1).section(q("\n"), 0, 0);
    EXPECT_EQ(line.mid(7 + 20, 40), q("03/01/2012          Approved            "));
    EXPECT_EQ(line.mid(7 + 60), q("Owen Owner                       10 MAIN ST") + QString(35, QLatin1Char(' ')));
    EXPECT_TRUE(listed.contains(q("TOTAL = 3")));
    expectScreenAsBefore();

    // A permit type keeps to its cases: the type the case screen files, in
    // any case of letters, or one set from outside it.
    span(QDate(2012, 1, 1), QDate(2012, 12, 31), q("site plan"));
    trigger("exppermits");
    EXPECT_TRUE(report().contains(q("12-002")));
    EXPECT_TRUE(report().contains(q("TOTAL = 1")));
    span(QDate(2012, 1, 1), QDate(2012, 12, 31), q("Sign"));
    trigger("exppermits");
    EXPECT_TRUE(report().contains(q("12-004")));
    EXPECT_TRUE(report().contains(q("TOTAL = 1")));

    prompts().onDialog(q("dtrange"), [](QDialog& dialog) {
        dialog.findChild<QPushButton*>(q("cmdCancel"))->click();
        return dialog.result();
    });
    documents::Editor::instance().clearBuffers();
    trigger("exppermits");
    EXPECT_TRUE(session().StopFlag);
    EXPECT_TRUE(report().isEmpty());
}

TEST_F(CaseReports, labelsForTheOwnersOfTheCasesOfASpan)
{
    openOnThirdCase();
    auto span = [this](QDate start, QDate end) {
        prompts().onDialog(q("dtrange"), [=](QDialog& dialog) {
            dialog.findChild<ui::DateInput*>(q("DTPicker1"))->setDate(start);
            dialog.findChild<ui::DateInput*>(q("DTPicker2"))->setDate(end);
            dialog.findChild<QPushButton*>(q("cmdOK"))->click();
            return dialog.result();
        });
    };
    prompts().onDialog(q("LabelFrm"), [](QDialog& dialog) {
        dialog.findChild<QPushButton*>(q("command3"))->click();
        return dialog.result();
    });
    // A span without cases says so, and no label window opens.
    span(QDate(2013, 1, 1), QDate(2013, 12, 31));
    trigger("lettersofexppermits");
    EXPECT_EQ(lastText(), q("No records meet the criteria."));
    EXPECT_EQ(prompts().dialogsRun().count(q("LabelFrm")), 0);

    span(QDate(2012, 3, 1), QDate(2012, 3, 31));
    trigger("lettersofexppermits");
    EXPECT_EQ(prompts().dialogsRun().count(q("LabelFrm")), 1);
    expectScreenAsBefore();
    if (!documents::defaultPrinterName().isEmpty()) {
        GTEST_SKIP() << "a printer is set up on this machine";
    }
    const QStringList pdfs = QDir(pdfFolder.path()).entryList({q("*.pdf")});
    ASSERT_EQ(pdfs.size(), 1) << lastText().toStdString();
    const QString labels = pdfPageTexts(pdfFolder.filePath(pdfs.first())).join(q("\n"));
    EXPECT_TRUE(labels.contains(q("Owen Owner"))) << labels.toStdString();
    EXPECT_FALSE(labels.contains(q("Vera Voided"))) << "a voided case gets no label";
}

TEST_F(CaseReports, activeApplicationsAreTheSameOnAnyDay)
{
    openOnThirdCase();
    trigger("expiringsoon");
    const QString first = report();
    EXPECT_TRUE(first.contains(q("ACTIVE CASES (PENDING, INITIAL APPLICATION, ON APPEAL) AS OF 03/01/12")))
        << first.toStdString();
    for (const char* number : {"12-001", "12-004", "12-005"}) {
        EXPECT_TRUE(first.contains(q(number))) << number;
    }
    EXPECT_FALSE(first.contains(q("12-002"))) << "approved";
    EXPECT_TRUE(first.contains(q("TOTAL = 3")));
    expectScreenAsBefore();

    setClockDay(QDate(2030, 8, 1));
    trigger("expiringsoon");
    EXPECT_EQ(report().section(q("\n"), 2), first.section(q("\n"), 2)) << "only the title and date change";
}

// The status and active listings are 151 characters wide: on paper they
// turn to landscape and keep each case, heading lines included, on one line.
TEST_F(CaseReports, statusAndActiveListingsKeepEachCaseOnOneLineOnPaper)
{
    if (!documents::defaultPrinterName().isEmpty()) {
        GTEST_SKIP() << "a printer is set up on this machine";
    }
    fileCase(q("12-006"), QDate(2012, 3, 10), q("P"), q("Barn conversion"),
             {{q("PBOWNRNAME1"), q("Olive Orchard-Whitcombe")},
              {q("PBLOCN1"), q("1200 STATE ROUTE 9W AT THE CORNER OF RIVER RD")}});
    openOnThirdCase();
    prompts().onDialog(q("dtrange"), [](QDialog& dialog) {
        dialog.findChild<ui::DateInput*>(q("DTPicker1"))->setDate(QDate(2012, 2, 1));
        dialog.findChild<ui::DateInput*>(q("DTPicker2"))->setDate(QDate(2012, 3, 31));
        dialog.findChild<QPushButton*>(q("cmdOK"))->click();
        return dialog.result();
    });
    documents::Editor& editor = documents::Editor::instance();
    for (const char* report : {"exppermits", "expiringsoon"}) {
        trigger(report);
        editor.findChild<QPushButton*>(q("iPrint"))->click();
        QSizeF paper;
        const QList<PdfWord> words = pdfWords(editor.lastPdf(), 0, &paper);
        EXPECT_GT(paper.width(), paper.height()) << report << ": landscape";
        const QStringList row = pdfLineOf(words, q("12-006"));
        ASSERT_FALSE(row.isEmpty()) << report;
        EXPECT_EQ(row.first(), q("12-006"));
        EXPECT_TRUE(row.contains(q("Pending")) && row.contains(q("Orchard-Whitcombe"))) << row.join(q(" ")).toStdString();
        EXPECT_EQ(row.last(), q("RD")) << report << ": the site, the last column, on the case's line";
        const QStringList heading = pdfLineOf(words, q("OWNER"));
        EXPECT_TRUE(heading.contains(q("LOCATION"))) << report << ": " << heading.join(q(" ")).toStdString();
    }
}

} // namespace pvardo::test
