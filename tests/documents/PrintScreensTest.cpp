#include "PdfPages.h"

#include "documents/Labels.h"
#include "documents/PrintState.h"
#include "documents/printer/DefaultPrinter.h"
#include "documents/screens/Editor.h"
#include "documents/screens/PrintFrm.h"

#include "common/Session.h"
#include "support/ScriptedPrompts.h"
#include "support/Text.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>
#include <QTextEdit>

#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::documents;
using pvardo::test::q;
using pvardo::test::scriptedPrompts;

namespace {

template <typename T> T* child(QWidget& parent, const char* name)
{
    T* widget = parent.findChild<T*>(q(name));
    EXPECT_TRUE(widget) << name;
    return widget;
}

void click(QWidget& parent, const char* name)
{
    auto* button = child<QPushButton>(parent, name);
    ASSERT_TRUE(button);
    ASSERT_TRUE(button->isEnabled()) << name;
    button->click();
}

// Types into a margin box and leaves it with Enter, as a user would.
QString typeMargin(PrintFrm& dialog, const char* box, const char* text)
{
    auto* edit = child<QLineEdit>(dialog, box);
    edit->clear();
    QTest::keyClicks(edit, q(text));
    QTest::keyClick(edit, Qt::Key_Return);
    return edit->text();
}

class PrintScreens : public ::testing::Test
{
protected:
    void SetUp() override
    {
        resetPrintState();
        session().ScreenCode = 0;
        session().StopFlag = false;
        ASSERT_TRUE(folder.isValid());
        Editor::setPdfFolder(folder.path());
        Editor::instance().clearBuffers();
        Editor::instance().setOrigin(QString());
    }
    void TearDown() override
    {
        Editor::instance().hide();
        resetPrintState();
    }

    // The report printed from the report window; the PDF when there is no
    // printer, which is how the tests' machines are.
    QString printFromEditor()
    {
        if (!defaultPrinterName().isEmpty()) {
            return {};
        }
        Editor::instance().iPrint();
        return Editor::instance().lastPdf();
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(PrintScreens, oneReportTypeIsChosenAtOnce)
{
    printState().ReportList = {q("Application Detail")};
    printState().reportFontSize = 11;
    PrintFrm dialog;
    EXPECT_EQ(dialog.windowTitle(), q("  Print"));
    EXPECT_EQ(child<QComboBox>(dialog, "Combo2")->currentText(), q("Application Detail"));
    EXPECT_EQ(child<QComboBox>(dialog, "Combo1")->currentText(), q("11"));
    EXPECT_TRUE(child<QPushButton>(dialog, "XPButton1")->isEnabled());
    child<QCheckBox>(dialog, "Check1")->setChecked(true);
    click(dialog, "iPrint");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_FALSE(session().StopFlag);
    EXPECT_EQ(printState().ReportChoice, q("APPLICATION DETAIL"));
    EXPECT_TRUE(printState().footer);
    EXPECT_TRUE(printState().preview);
}

TEST_F(PrintScreens, withoutAReportTypeTheDialogStays)
{
    printState().ReportList = {};
    PrintFrm dialog;
    click(dialog, "iPrint");
    EXPECT_NE(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(session().StopFlag);
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_EQ(scriptedPrompts().shown().first().text,
              q("You must select a report type from the pop down list prior to proceeding."));

    // Two types: none is chosen for the user, and Cancel leaves StopFlag set.
    printState().ReportList = {q("Application Detail"), q("Label for Mailing")};
    PrintFrm two;
    EXPECT_EQ(child<QComboBox>(two, "Combo2")->currentIndex(), -1);
    click(two, "iCancel");
    EXPECT_EQ(two.result(), QDialog::Rejected);
    EXPECT_TRUE(session().StopFlag);
}

TEST_F(PrintScreens, marginsAreKeptWithinLimits)
{
    printState().ReportList = {q("Current report"), q("ID Card"), q("Roster of Members")};
    printState().leftMargin = 0.1;   // too small for a side: the usual 0.8
    printState().topMargin = 0.3;    // below the printable band: 0.67
    printState().rightMargin = 1.25;
    PrintFrm dialog;
    EXPECT_EQ(child<QLineEdit>(dialog, "Text3")->text(), q("0.8"));
    EXPECT_EQ(child<QLineEdit>(dialog, "Text4")->text(), q("0.67"));
    EXPECT_EQ(child<QLineEdit>(dialog, "Text5")->text(), q("1.25"));

    EXPECT_EQ(typeMargin(dialog, "Text3", "0.4"), q("0.5"));
    EXPECT_EQ(typeMargin(dialog, "Text4", "3.1"), q("3"));
    EXPECT_EQ(typeMargin(dialog, "Text5", "1x.2"), q("1.2")); // letters are not taken
    EXPECT_EQ(PrintFrm::checkMargins(q("")), q("0.5"));

    // An identity card has its own layout: no margins, no type size.
    auto* types = child<QComboBox>(dialog, "Combo2");
    types->setCurrentIndex(1);
    EXPECT_FALSE(child<QLineEdit>(dialog, "Text6")->isEnabled());
    EXPECT_FALSE(child<QComboBox>(dialog, "Combo1")->isEnabled());
    types->setCurrentIndex(2);
    EXPECT_EQ(printState().templateName, q("roster"));
    EXPECT_TRUE(child<QLineEdit>(dialog, "Text6")->isEnabled());

    types->setCurrentIndex(0);
    click(dialog, "iPrint");
    EXPECT_DOUBLE_EQ(printState().leftMargin, 0.5);
    EXPECT_DOUBLE_EQ(printState().topMargin, 3);
    EXPECT_DOUBLE_EQ(printState().rightMargin, 1.2);
    EXPECT_DOUBLE_EQ(printState().bottomMargin, 0.8);
}

TEST_F(PrintScreens, printToFileWritesThePlainText)
{
    const QString before = QDir::currentPath();
    QDir::setCurrent(folder.path());
    Editor& editor = Editor::instance();
    editor.ReportBuffer().setPlainText(q("FEES FOR PROJECT 24-1\n01/02/2024  Filing fee"));
    editor.showReport();
    click(editor, "iPrint2File");
    QDir::setCurrent(before);
    // The file is the one the message names, letter for letter.
    EXPECT_FALSE(QFile::exists(folder.filePath(q("Print.txt"))));
    QFile written(folder.filePath(q("print.txt")));
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(), QByteArray("FEES FOR PROJECT 24-1\n01/02/2024  Filing fee\n"));
    ASSERT_FALSE(scriptedPrompts().shown().isEmpty());
    EXPECT_EQ(scriptedPrompts().shown().last().title, q(" Text Written"));
    EXPECT_EQ(scriptedPrompts().shown().last().text,
              q("Text written to a file called 'print.txt'\ninside the application directory."));
}

TEST_F(PrintScreens, editingIsAllowedOnlyWhenTicked)
{
    Editor& editor = Editor::instance();
    editor.ReportBuffer().setPlainText(q("A letter"));
    editor.showReport();
    EXPECT_EQ(editor.windowTitle(), q("  Report Preview"));
    auto* report = child<QTextEdit>(editor, "RichTextBox1");
    EXPECT_TRUE(report->isReadOnly());
    child<QCheckBox>(editor, "Check1")->setChecked(true);
    EXPECT_FALSE(report->isReadOnly());
    report->moveCursor(QTextCursor::End);
    QTest::keyClicks(report, q(", signed"));
    EXPECT_EQ(editor.ReportBuffer().toPlainText(), q("A letter, signed"));
    click(editor, "iCancel");
    EXPECT_TRUE(session().StopFlag);
    EXPECT_FALSE(editor.isVisible());
}

TEST_F(PrintScreens, aOnePageReportHasOneFooterAndOnePage)
{
    printState().footer = true;
    printState().footerText = q("{\\rtf1\\ansi\\qc Page ## of the board\\par}");
    printState().leftMargin = 2.5; // set in the print dialog before: the report window prints at 0.8
    Editor::instance().ReportBuffer().setPlainText(q("Dear Neighbour,\nA hearing is set."));
    const QString pdf = printFromEditor();
    if (pdf.isEmpty()) {
        GTEST_SKIP() << "a printer is set up on this machine";
    }
    const QStringList pages = test::pdfPageTexts(pdf);
    ASSERT_EQ(pages.size(), 1);
    EXPECT_EQ(pages.first().count(q("Page 1 of the board")), 1);
    EXPECT_EQ(printState().pageCounter, 2);
    EXPECT_NEAR(test::pdfWordBox(pdf, q("Dear")).left(), 0.8 * 72, 3);
    ASSERT_FALSE(scriptedPrompts().shown().isEmpty());
    EXPECT_TRUE(scriptedPrompts().shown().last().text.contains(pdf));
}

TEST_F(PrintScreens, pageCounterRunsAcrossPages)
{
    printState().footer = true;
    printState().footerText = q("{\\rtf1\\ansi Page ##\\par}");
    QStringList lines;
    for (int i = 1; i <= 150; ++i) {
        lines << q("Line %1 of the listing").arg(i);
    }
    Editor::instance().ReportBuffer().setPlainText(lines.join(QLatin1Char('\n')));
    const QString pdf = printFromEditor();
    if (pdf.isEmpty()) {
        GTEST_SKIP() << "a printer is set up on this machine";
    }
    const QStringList pages = test::pdfPageTexts(pdf);
    ASSERT_GE(pages.size(), 3);
    for (int i = 0; i < pages.size(); ++i) {
        EXPECT_TRUE(pages.at(i).contains(q("Page %1").arg(i + 1))) << i;
        EXPECT_FALSE(pages.at(i).contains(q("Page %1").arg(i + 2))) << i;
    }
    EXPECT_TRUE(pages.first().contains(q("Line 1 of the listing")));
    EXPECT_TRUE(pages.last().contains(q("Line 150 of the listing")));
}

TEST_F(PrintScreens, anExpiryReportOffersLettersAndLeavesThemToItsScreen)
{
    session().ScreenCode = 1;
    printState().reportKind = 1;
    Editor& editor = Editor::instance();
    editor.ReportBuffer().setPlainText(q("EXPIRED CASES"));
    QString followed;
    editor.setFollowUp([&](const QString& choice) { followed = choice; });
    editor.showReport();
    QStringList offered;
    scriptedPrompts().onDialog(q("PrintFrm"), [&](QDialog& dialog) {
        auto* types = dialog.findChild<QComboBox*>(q("Combo2"));
        for (int i = 0; i < types->count(); ++i) {
            offered << types->itemText(i);
        }
        types->setCurrentIndex(1);
        dialog.findChild<QPushButton*>(q("iPrint"))->click();
        return dialog.result();
    });
    click(editor, "iPrint");
    EXPECT_EQ(offered, (QStringList{q("Current report"), q("Letters for Expired Permits"),
                                    q("Labels for Expired Permits")}));
    EXPECT_EQ(followed, q("LETTERS FOR EXPIRED PERMITS"));
    EXPECT_EQ(printState().templateName, q("expired.rtf"));
    EXPECT_FALSE(editor.isVisible());
}

TEST_F(PrintScreens, labelsAfterAReportAskForTheSheetFirst)
{
    session().ScreenCode = 1;
    Editor& editor = Editor::instance();
    editor.ReportBuffer().setPlainText(q("EXPIRED CASES"));
    QString followed;
    editor.setFollowUp([&](const QString& choice) { followed = choice; });
    auto chooseLabels = [&](const char* labelButton) {
        printState().reportKind = 1;
        scriptedPrompts().onDialog(q("PrintFrm"), [](QDialog& dialog) {
            dialog.findChild<QComboBox*>(q("Combo2"))->setCurrentIndex(2);
            dialog.findChild<QPushButton*>(q("iPrint"))->click();
            return dialog.result();
        });
        scriptedPrompts().onDialog(q("LabelFrm"), [labelButton](QDialog& dialog) {
            dialog.findChild<QPushButton*>(q(labelButton))->click();
            return dialog.result();
        });
        editor.showReport();
        click(editor, "iPrint");
    };
    // Cancelled in the label window: the report stays, nothing follows.
    chooseLabels("command2");
    EXPECT_TRUE(followed.isEmpty());
    EXPECT_TRUE(editor.isVisible());
    chooseLabels("command3");
    EXPECT_EQ(followed, q("LABELS FOR EXPIRED PERMITS"));
    EXPECT_EQ(printState().templateName, q("lab.rtf"));
    EXPECT_TRUE(labelState().running);
    EXPECT_FALSE(editor.isVisible());
    editor.setFollowUp(nullptr);
    resetLabelState();
}

TEST_F(PrintScreens, aReportIsNamedAfterTheCaptionChosenAndTheCaseUnlessItsScreenNamesIt)
{
    if (!defaultPrinterName().isEmpty()) {
        GTEST_SKIP() << "a printer is set up on this machine";
    }
    session().CurrentCase = q("24-201");
    Editor& editor = Editor::instance();
    editor.ReportBuffer().setPlainText(q("A report before any choice"));
    EXPECT_EQ(printFromEditor(), folder.filePath(q("Report.pdf")));

    // Chosen in the print dialog and built by a screen that names nothing.
    printState().ReportList = {q("Listing of Fees"), q("Receipt")};
    {
        PrintFrm dialog;
        child<QComboBox>(dialog, "Combo2")->setCurrentIndex(0);
        click(dialog, "iPrint");
    }
    editor.clearBuffers();
    editor.ReportBuffer().setPlainText(q("FEES FOR PROJECT 24-201"));
    EXPECT_EQ(printFromEditor(), folder.filePath(q("Listing of Fees 24-201.pdf")));
    EXPECT_EQ(printFromEditor(), folder.filePath(q("Listing of Fees 24-201 (2).pdf")));
    // A screen's own name wins.
    editor.setTitle(q("Receipt 24-201"));
    EXPECT_EQ(printFromEditor(), folder.filePath(q("Receipt 24-201.pdf")));
    session().CurrentCase.clear();
}
