#include "CasePrintingFixture.h"

#include "documents/PdfPages.h"
#include "documents/PrintState.h"
#include "documents/printer/DefaultPrinter.h"
#include "documents/screens/Editor.h"
#include "documents/screens/NotepadFrm.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QSet>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QTest>
#include <QTextEdit>

namespace pvardo::test {

namespace {

// A description that wraps on paper and holds a line break of its own.
QString longDescription()
{
    return q("Subdivide the twelve acre parcel into four residential lots with a shared driveway, a "
             "stormwater basin at the north line and a conservation easement along the creek.\n"
             "Phase two follows once the road is dedicated.");
}

class CaseLetters : public CasePrintingTest
{
protected:
    void SetUp() override
    {
        CasePrintingTest::SetUp();
        seedCase(q("24-017"), {{q("PBAPPNAME1"), q("Ann Applicant")},
                               {q("PBAPPADDR1"), q("1 Elm Rd, Elmford NY 12000")},
                               {q("PBCONTACTNAME1"), q("Carl Contact")},
                               {q("PBCONTACTADDR1"), q("7 Birch Ct, Oakdale NY 12001")},
                               {q("PBLOCN1"), q("10 Main St")},
                               {q("PBPROJNAME"), q("Mill Pond Subdivision")},
                               {q("PBPROJDESC"), longDescription()},
                               {q("PBCOST"), q("250000")},
                               {q("PBFILEDATE"), q("2012-02-03")},
                               {q("PBSTATUS"), q("P")}});
    }
    // A template the program ships, put in the installation's forms folder.
    void shipTemplate(const QString& name, const QString& from = q("forms"))
    {
        QFile shipped(q(":/shipped/") + from + q("/") + name);
        ASSERT_TRUE(shipped.open(QIODevice::ReadOnly)) << name.toStdString();
        ASSERT_TRUE(replaceFile(session().FormsFolder + q("/") + name, shipped.readAll()));
    }

    // Answers the print dialog by choosing a caption, with or without
    // editing first.
    QStringList choose(const QString& caption, bool editFirst = false, const char* command = "doprint")
    {
        auto offered = std::make_shared<QStringList>();
        prompts().onDialog(q("PrintFrm"), [=](QDialog& dialog) {
            auto* types = dialog.findChild<QComboBox*>(q("Combo2"));
            for (int i = 0; i < types->count(); ++i) {
                *offered << types->itemText(i);
            }
            types->setCurrentIndex(types->findText(caption));
            dialog.findChild<QCheckBox*>(q("Check1"))->setChecked(editFirst);
            dialog.findChild<QPushButton*>(q("iPrint"))->click();
            return dialog.result();
        });
        if (screen->findChild<QAction*>(q(command)) != nullptr) {
            trigger(command);
        } else {
            click(command);
        }
        return *offered;
    }

    QString report() { return documents::Editor::instance().ReportBuffer().toPlainText(); }
};

} // namespace

// Without "Allow view /edit" the detail page goes to the printer at once.
TEST_F(CaseLetters, printCommandPrintsTheDetailPage)
{
    shipTemplate(q("pbappd.rtf"));
    open();
    click("iPrint");
    documents::Editor& editor = documents::Editor::instance();
    EXPECT_FALSE(editor.isVisible()) << "printed without a preview";
    const QString text = report();
    EXPECT_TRUE(text.contains(q("Case 24-017")));
    EXPECT_TRUE(text.contains(q("Mill Pond Subdivision")));
    EXPECT_TRUE(text.contains(q("Ann Applicant")));
    EXPECT_TRUE(text.contains(q("$250,000.00")));
    EXPECT_FALSE(text.contains(q("%PB"))) << text.toStdString();
    EXPECT_EQ(ui::TaskFrm::isOpen(), false);

    if (!documents::defaultPrinterName().isEmpty()) {
        GTEST_SKIP() << "a printer is set up on this machine";
    }
    const QStringList pages = pdfPageTexts(editor.lastPdf());
    ASSERT_FALSE(pages.isEmpty());
    EXPECT_TRUE(pages.first().contains(q("24-017")));
    EXPECT_TRUE(pages.first().contains(q("Ann Applicant")));

    // The description wraps in the column of the values, its own line break
    // too, never back under the labels.
    std::unique_ptr<Poppler::Document> document = Poppler::Document::load(editor.lastPdf());
    ASSERT_TRUE(document);
    const auto boxes = document->page(0)->textList();
    QRectF first;
    QRectF last;
    for (const std::unique_ptr<Poppler::TextBox>& box : boxes) {
        if (box->text() == q("Subdivide")) {
            first = box->boundingBox();
        } else if (box->text() == q("dedicated.")) {
            last = box->boundingBox();
        }
    }
    ASSERT_FALSE(first.isNull());
    ASSERT_FALSE(last.isNull());
    QSet<int> lines;
    for (const std::unique_ptr<Poppler::TextBox>& box : boxes) {
        const QRectF at = box->boundingBox();
        if (at.top() >= first.top() - 1 && at.top() <= last.top() + 1 && box->text() != q("Description")) {
            EXPECT_GE(at.left(), first.left() - 0.5) << box->text().toStdString();
            lines.insert(qRound(at.top()));
        }
    }
    EXPECT_GE(lines.size(), 3);
}

TEST_F(CaseLetters, customLettersOfTheCaseScreenGoToTheContact)
{
    shipTemplate(q("hearing.rtf"), q("demo"));
    shipTemplate(q("0custom.txt"), q("demo"));
    QFile header(q(":/shipped/forms/gTitle.rtf"));
    ASSERT_TRUE(header.open(QIODevice::ReadOnly));
    session().ReportHeaderRtf = QString::fromLatin1(header.readAll());
    open();
    const QStringList offered = choose(q("Notice of Public Hearing"));
    EXPECT_EQ(offered, (QStringList{q("Application Detail"), q("Label for Mailing"), q("Notice of Public Hearing"),
                                    q("Incomplete Application")}));
    const QString text = report();
    EXPECT_TRUE(text.contains(q("Carl Contact\n7 Birch Ct\nOakdale NY 12001"))) << text.toStdString();
    EXPECT_TRUE(text.contains(q("Case 24-017")));
    // The hearing's date, time and place are left for the clerk to fill in.
    EXPECT_TRUE(text.contains(q("which was filed on the 3rd day of February, 2012."))) << text.toStdString();
    EXPECT_TRUE(text.contains(q("Date of the hearing:")));
    EXPECT_TRUE(documents::Editor::instance().isVisible());
    // The letterhead's logo shows as it will print: nothing while none is chosen.
    EXPECT_FALSE(text.contains(q("%lo"))) << text.toStdString();
    if (documents::defaultPrinterName().isEmpty()) {
        // On paper the long paragraphs break into lines, whatever the window
        // does with them.
        documents::Editor::instance().findChild<QPushButton*>(q("iPrint"))->click();
        EXPECT_FALSE(documents::Editor::instance().isVisible()) << "printed, the preview closes";
        const QStringList pages = pdfPageTexts(documents::Editor::instance().lastPdf());
        ASSERT_EQ(pages.size(), 1);
        EXPECT_TRUE(pages.first().contains(q("addresses."))) << pages.first().toStdString();
        EXPECT_TRUE(pages.first().contains(q("Carl Contact")));
        // No signature chosen: its place stays empty.
        EXPECT_FALSE(pages.first().contains(q("%si")));
        // The hearing's date, time and place are blanks in one column.
        QList<qreal> blanks;
        qreal label = 0;
        for (const PdfWord& word : pdfWords(documents::Editor::instance().lastPdf(), 0)) {
            if (word.text.startsWith(q("____"))) {
                blanks << word.box.left();
            } else if (word.text == q("hearing:")) {
                label = word.box.right();
            }
        }
        ASSERT_EQ(blanks.size(), 3);
        EXPECT_NEAR(blanks.at(1), blanks.at(0), 0.5);
        EXPECT_NEAR(blanks.at(2), blanks.at(0), 0.5);
        EXPECT_GT(blanks.at(0), label + 4) << "the label stays short of its blank";
    }
    // With a logo chosen the window shows the picture.
    QDir(session().MasterDatabaseFolder).mkpath(q("memos"));
    QImage logo(40, 20, QImage::Format_RGB32);
    logo.fill(Qt::blue);
    ASSERT_TRUE(logo.save(session().MasterDatabaseFolder + q("/memos/logo.bmp"), "BMP"));
    choose(q("Notice of Public Hearing"));
    EXPECT_TRUE(report().contains(QChar::ObjectReplacementCharacter));
    EXPECT_FALSE(report().contains(q("%lo")));
    // And so does the notepad when the letter is to be edited first.
    choose(q("Notice of Public Hearing"), true);
    const QString edited = documents::NotepadFrm::shared().findChild<QTextEdit*>(q("RichTextBox1"))->toPlainText();
    EXPECT_TRUE(edited.contains(QChar::ObjectReplacementCharacter)) << edited.toStdString();
    EXPECT_FALSE(edited.contains(q("%lo")) || edited.contains(q("%si")));
    documents::NotepadFrm::shared().hide();
    documents::printState().preview = false;

    // Its file gone: the office is told which file and which list to check.
    QFile::remove(session().FormsFolder + q("/hearing.rtf"));
    choose(q("Notice of Public Hearing"));
    EXPECT_EQ(lastTitle(), q(" Error Loading"));
    EXPECT_TRUE(lastText().contains(q("hearing.rtf cannot be located")));
    EXPECT_TRUE(lastText().contains(q("0custom.txt")));
    EXPECT_FALSE(ui::TaskFrm::isOpen());
}

TEST_F(CaseLetters, lettersChosenForEditingOpenInTheNotepadAndPrintUnderTheirOwnNames)
{
    shipTemplate(q("pbappd.rtf"));
    shipTemplate(q("hearing.rtf"), q("demo"));
    shipTemplate(q("0custom.txt"), q("demo"));
    open();
    documents::Editor& editor = documents::Editor::instance();
    documents::NotepadFrm& notepad = documents::NotepadFrm::shared();
    const bool printer = !documents::defaultPrinterName().isEmpty();
    // The notepad's Print: its own dialog offers the document itself.
    auto printFromNotepad = [&] {
        prompts().onDialog(q("PrintFrm"), [](QDialog& dialog) {
            dialog.findChild<QPushButton*>(q("iPrint"))->click();
            return dialog.result();
        });
        notepad.findChild<QAction*>(q("printdoc"))->trigger();
    };

    // An office letter from the menu's Print.
    choose(q("Notice of Public Hearing"), true);
    EXPECT_TRUE(notepad.isVisible());
    EXPECT_FALSE(editor.isVisible());
    EXPECT_EQ(notepad.currentDocument(), pdfFolder.filePath(q("tmp.rtf")));
    // The status bar names the letter, not the file it is kept in meanwhile.
    EXPECT_EQ(notepad.findChild<QLabel*>(q("Panel1"))->text(), q("Notice of Public Hearing 24-017"));
    EXPECT_TRUE(notepad.buffer().toPlainText().contains(q("Carl Contact")));
    QTextCursor end(notepad.buffer().document());
    end.movePosition(QTextCursor::End);
    notepad.buffer().setTextCursor(end);
    QTest::keyClicks(&notepad.buffer(), q("Copy to the town engineer."));
    printFromNotepad();
    if (!printer) {
        const QString pdf = pdfFolder.filePath(q("Notice of Public Hearing 24-017.pdf"));
        EXPECT_EQ(notepad.lastPdf(), pdf);
        EXPECT_TRUE(lastText().contains(QDir::toNativeSeparators(pdf))) << lastText().toStdString();
        EXPECT_TRUE(pdfPageTexts(pdf).join(QString()).contains(q("Copy to the town engineer.")));
        EXPECT_FALSE(QFile::exists(pdfFolder.filePath(q("tmp.pdf"))));
    }

    // The detail page from the Print button: the choice to edit first stays
    // ticked, and the edited letter is let go when the clerk says so.
    prompts().answer(q("Save Changes"), PromptAnswer::No);
    auto ticked = std::make_shared<bool>(false);
    prompts().onDialog(q("PrintFrm"), [=](QDialog& dialog) {
        *ticked = dialog.findChild<QCheckBox*>(q("Check1"))->isChecked();
        dialog.findChild<QPushButton*>(q("iPrint"))->click();
        return dialog.result();
    });
    click("iPrint");
    EXPECT_TRUE(*ticked);
    EXPECT_FALSE(editor.isVisible());
    EXPECT_TRUE(notepad.buffer().toPlainText().contains(q("APPLICATION DETAIL")));
    EXPECT_TRUE(notepad.buffer().toPlainText().contains(q("Ann Applicant")));
    printFromNotepad();
    printFromNotepad();
    if (!printer) {
        EXPECT_EQ(notepad.lastPdf(), pdfFolder.filePath(q("Application Detail 24-017 (2).pdf")));
        EXPECT_TRUE(QFile::exists(pdfFolder.filePath(q("Application Detail 24-017.pdf"))));
    }

    // With no office letters the Print button asks nothing and still opens
    // the detail page for editing.
    QFile::remove(session().FormsFolder + q("/0custom.txt"));
    notepad.close();
    click("iPrint");
    EXPECT_TRUE(notepad.isVisible());
    EXPECT_FALSE(editor.isVisible());
    EXPECT_TRUE(notepad.buffer().toPlainText().contains(q("APPLICATION DETAIL")));
    notepad.close();
}

TEST_F(CaseLetters, labelForMailingGoesToTheOwnerFromTheCellPicked)
{
    seedCase(q("24-018"), {{q("PBOWNRNAME1"), q("Olive Owner")},
                           {q("PBOWNRADDR1"), q("4 Maple Ln, Elmford NY 12000")},
                           {q("PBCONTACTNAME1"), q("Carl Contact")}});
    open();
    click("IMoveLast");
    // Cancelled in the label window: nothing printed.
    prompts().onDialog(q("LabelFrm"), [](QDialog& dialog) {
        dialog.findChild<QPushButton*>(q("command2"))->click();
        return dialog.result();
    });
    choose(q("Label for Mailing"));
    EXPECT_TRUE(QDir(pdfFolder.path()).entryList({q("*.pdf")}).isEmpty());

    // The second cell of the third row, picked on the sheet's picture.
    prompts().onDialog(q("LabelFrm"), [](QDialog& dialog) {
        auto* picture = dialog.findChild<QWidget*>(q("Picture1"));
        const qreal cellHeight = (picture->height() - 170 / 15.0) / 10;
        QTest::mouseClick(picture, Qt::LeftButton, {},
                          QPoint(picture->width() / 2, int(cellHeight * 2.5)));
        dialog.findChild<QPushButton*>(q("command3"))->click();
        return dialog.result();
    });
    choose(q("Label for Mailing"));
    if (!documents::defaultPrinterName().isEmpty()) {
        GTEST_SKIP() << "a printer is set up on this machine";
    }
    // Named after the labels asked for and the case.
    const QStringList pdfs = QDir(pdfFolder.path()).entryList({q("*.pdf")});
    ASSERT_EQ(pdfs, QStringList{q("Label for Mailing 24-018.pdf")});
    EXPECT_TRUE(lastText().contains(q("The labels were written to")));
    const QString pdf = pdfFolder.filePath(pdfs.first());
    const QStringList pages = pdfPageTexts(pdf);
    ASSERT_EQ(pages.size(), 1);
    EXPECT_TRUE(pages.first().contains(q("Olive Owner"))) << pages.first().toStdString();
    EXPECT_TRUE(pages.first().contains(q("4 Maple Ln")));
    EXPECT_TRUE(pages.first().contains(q("Elmford NY 12000")));
    EXPECT_FALSE(pages.first().contains(q("Carl Contact")));
    // Without a catalogue the default sheet: 0.2 in from the left, 0.6 from
    // the top, 1 x 2.63 labels with 0.125 between columns.
    std::unique_ptr<Poppler::Document> document = Poppler::Document::load(pdf);
    QRectF olive;
    for (const std::unique_ptr<Poppler::TextBox>& box : document->page(0)->textList()) {
        if (box->text() == q("Olive")) {
            olive = box->boundingBox();
        }
    }
    EXPECT_NEAR(olive.left(), (0.2 + 2.63 + 0.125) * 72, 72.0 / 32);
    EXPECT_NEAR(olive.top(), (0.6 + 2) * 72, 72.0 / 32);
}

TEST_F(CaseLetters, theOfficesLettersAreOfferedByThePrintButtonAndTheReportsMenu)
{
    shipTemplate(q("pbappd.rtf"));
    shipTemplate(q("hearing.rtf"), q("demo"));
    shipTemplate(q("0custom.txt"), q("demo"));
    open();
    // The Print button now asks, on the detail page.
    auto opened = std::make_shared<QString>();
    auto offered = std::make_shared<QStringList>();
    auto answer = [this, opened, offered](const QString& pick) {
        prompts().onDialog(q("PrintFrm"), [=](QDialog& dialog) {
            auto* types = dialog.findChild<QComboBox*>(q("Combo2"));
            *opened = types->currentText();
            offered->clear();
            for (int i = 0; i < types->count(); ++i) {
                *offered << types->itemText(i);
            }
            if (!pick.isEmpty()) {
                types->setCurrentIndex(types->findText(pick));
            }
            dialog.findChild<QPushButton*>(q("iPrint"))->click();
            return dialog.result();
        });
    };
    answer(q("Notice of Public Hearing"));
    click("iPrint");
    EXPECT_EQ(*opened, q("Application Detail"));
    EXPECT_TRUE(offered->contains(q("Incomplete Application")));
    EXPECT_TRUE(report().contains(q("Dear Carl Contact:"))) << report().toStdString();

    // The Reports menu lists each letter, and the print dialog opens on it.
    auto* reports = find<QMenu>("mnuReports");
    emit reports->aboutToShow();
    auto* letter = find<QAction>("customLetter2");
    ASSERT_TRUE(letter);
    EXPECT_EQ(letter->text(), q("Incomplete Application"));
    auto* hearing = find<QAction>("customLetter1");
    answer(QString());
    hearing->trigger();
    EXPECT_EQ(*opened, q("Notice of Public Hearing"));
    EXPECT_TRUE(report().contains(q("public hearing")));
    // The list is read again when the office changes it.
    ASSERT_TRUE(replaceFile(session().FormsFolder + q("/0custom.txt"), QByteArray("1\nHearing notice\nhearing.rtf\n")));
    emit reports->aboutToShow();
    EXPECT_EQ(find<QAction>("customLetter1")->text(), q("Hearing notice"));
    EXPECT_EQ(screen->findChild<QAction*>(q("customLetter2")), nullptr);
    answer(q("Application Detail"));
    find<QAction>("rptprint")->trigger();
    EXPECT_TRUE(report().contains(q("APPLICATION DETAIL")));
}

TEST_F(CaseLetters, aLetterToACaseWithoutAContactIsNotMade)
{
    shipTemplate(q("hearing.rtf"), q("demo"));
    shipTemplate(q("0custom.txt"), q("demo"));
    seedCase(q("24-018"), {{q("PBAPPNAME1"), q("Ann Applicant")}, {q("PBAPPADDR1"), q("1 Elm Rd, Elmford")}});
    open();
    click("IMoveNext");
    ASSERT_EQ(text(1), q("24-018"));
    choose(q("Notice of Public Hearing"));
    EXPECT_FALSE(documents::Editor::instance().isVisible());
    EXPECT_EQ(lastTitle(), q(" No Addressee"));
    EXPECT_TRUE(lastText().contains(q("case 24-018 has no contact name"))) << lastText().toStdString();
    EXPECT_FALSE(report().contains(q("Dear")));
    EXPECT_FALSE(ui::TaskFrm::isOpen());
}

TEST_F(CaseLetters, theDetailPageLeavesOutWhatTheCaseDoesNotHold)
{
    shipTemplate(q("pbappd.rtf"));
    open();
    click("iPrint");
    const QString text = report();
    EXPECT_TRUE(text.contains(q("Applicant\tAnn Applicant"))) << text.toStdString();
    EXPECT_TRUE(text.contains(q("Contact\tCarl Contact")));
    EXPECT_TRUE(text.contains(q("Estimated cost\t$250,000.00")));
    // No agent, no owner, no setbacks, no telephone: not a line of them.
    for (const char* gone : {"Agent", "Owner", "setback", "Tel.", "Value"}) {
        EXPECT_FALSE(text.contains(q(gone))) << gone << "\n" << text.toStdString();
    }
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        EXPECT_FALSE(line.endsWith(q("\t"))) << line.toStdString();
    }

    // Without a printer the pages go to a file named after the report and the
    // case, and a second print keeps the first.
    if (!documents::defaultPrinterName().isEmpty()) {
        GTEST_SKIP() << "a printer is set up on this machine";
    }
    documents::Editor& editor = documents::Editor::instance();
    EXPECT_EQ(editor.lastPdf(), pdfFolder.filePath(q("Application Detail 24-017.pdf")));
    EXPECT_TRUE(lastText().contains(QDir::toNativeSeparators(editor.lastPdf()))) << lastText().toStdString();
    editor.findChild<QPushButton*>(q("iPrint"))->click();
    EXPECT_EQ(editor.lastPdf(), pdfFolder.filePath(q("Application Detail 24-017 (2).pdf")));
    EXPECT_TRUE(QFile::exists(pdfFolder.filePath(q("Application Detail 24-017.pdf"))));
}

// Draws the print dialog, the report window with a merged letter and the
// letter's printed page, for the documentation. With PVARDO_SCREENSHOT_DIR
// set they are written there as print-dialog.png, report-preview.png and
// letter-pdf-page.png.
TEST_F(CaseLetters, Screenshots)
{
    shipTemplate(q("hearing.rtf"), q("demo"));
    shipTemplate(q("0custom.txt"), q("demo"));
    session().ReportHeaderRtf = q("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\qc\\f0\\b\\fs32 PLANNING BOARD\\par"
                                  "\\b0\\fs20 Town of Elmford\\par}");
    open();
    const QString folder = qEnvironmentVariable("PVARDO_SCREENSHOT_DIR");
    auto save = [&](QWidget& widget, const char* name) {
        widget.show();
        QCoreApplication::processEvents();
        const QImage image = widget.grab().toImage();
        ASSERT_FALSE(image.isNull());
        if (!folder.isEmpty()) {
            QDir().mkpath(folder);
            EXPECT_TRUE(image.save(folder + q("/") + q(name) + q(".png")));
        }
    };
    prompts().onDialog(q("PrintFrm"), [&](QDialog& dialog) {
        auto* types = dialog.findChild<QComboBox*>(q("Combo2"));
        types->setCurrentIndex(types->findText(q("Notice of Public Hearing")));
        save(dialog, "print-dialog");
        dialog.findChild<QPushButton*>(q("iPrint"))->click();
        return dialog.result();
    });
    trigger("doprint");
    documents::Editor& editor = documents::Editor::instance();
    editor.resize(860, 900);
    save(editor, "report-preview");
    if (!documents::defaultPrinterName().isEmpty()) {
        GTEST_SKIP() << "a printer is set up on this machine";
    }
    editor.findChild<QPushButton*>(q("iPrint"))->click();
    const QImage page = renderPdfPage(editor.lastPdf(), 0, 90);
    ASSERT_FALSE(page.isNull());
    if (!folder.isEmpty()) {
        EXPECT_TRUE(page.save(folder + q("/letter-pdf-page.png")));
    }
}

} // namespace pvardo::test
