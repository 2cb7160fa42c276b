#include "DocumentFixtures.h"
#include "PdfPages.h"
#include "common/Clock.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "documents/Merge.h"
#include "documents/NotepadTexts.h"
#include "documents/PrintState.h"
#include "documents/RtfReader.h"
#include "documents/RtfWriter.h"
#include "documents/printer/DefaultPrinter.h"
#include "documents/screens/Editor.h"
#include "documents/screens/FormatToolbar.h"
#include "documents/screens/HeaderFrm.h"
#include "documents/screens/Letters.h"
#include "documents/screens/NotepadFrm.h"
#include "documents/screens/PrintFrm.h"
#include "documents/screens/SearchFrm.h"
#include "store/Recordset.h"
#include "support/InstallationTest.h"
#include "support/ScriptedPrompts.h"
#include "support/Text.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::documents;
using pvardo::test::q;
using pvardo::test::scriptedPrompts;

namespace {

template <typename T> T* child(QObject& parent, const char* name)
{
    T* found = parent.findChild<T*>(q(name));
    EXPECT_TRUE(found) << name;
    return found;
}

void trigger(QObject& parent, const char* name)
{
    auto* action = child<QAction>(parent, name);
    ASSERT_TRUE(action);
    action->trigger();
}

void click(QObject& parent, const char* name)
{
    auto* button = child<QPushButton>(parent, name);
    ASSERT_TRUE(button);
    ASSERT_TRUE(button->isEnabled()) << name;
    button->click();
}

// The file dialog of the notepad answered with a file, as a clerk picks one.
void pickFile(const QString& path)
{
    scriptedPrompts().onDialog(q("CommonDialog1"), [path](QDialog& dialog) {
        auto& files = static_cast<QFileDialog&>(dialog);
        files.selectFile(path);
        return int(QDialog::Accepted);
    });
}

// The print dialog answered with Print.
void printWithDialog()
{
    scriptedPrompts().onDialog(q("PrintFrm"), [](QDialog& dialog) {
        click(dialog, "iPrint");
        return dialog.result();
    });
}

QString pdfText(const QString& path)
{
    return test::pdfPageTexts(path).join(QLatin1Char('\n')).simplified();
}

class Notepad : public test::InstallationTest
{
protected:
    void SetUp() override
    {
        InstallationTest::SetUp();
        resetPrintState();
        session().TempFolder = installation.programFolder();
        session().StopFlag = false;
        Editor::setPdfFolder(installation.programFolder());
        Editor::instance().clearBuffers();
        pad = std::make_unique<NotepadFrm>();
        pad->show();
        edit = &pad->buffer();
    }
    void TearDown() override
    {
        pad.reset();
        NotepadFrm::shared().newdoc();
        NotepadFrm::shared().hide();
        unregisterCaseTexts();
        resetPrintState();
    }

    void type(const char* text) { QTest::keyClicks(edit, q(text)); }

    void select(int from, int to)
    {
        QTextCursor cursor(edit->document());
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        edit->setTextCursor(cursor);
    }

    bool down(const char* key) { return child<QAction>(pad->toolbar(), key)->isChecked(); }

    QString file(const char* name) const { return QDir(installation.programFolder()).filePath(q(name)); }

    std::unique_ptr<NotepadFrm> pad;
    QTextEdit* edit = nullptr;
};

} // namespace

TEST_F(Notepad, aLetterIsTypedFormattedSavedAndReadBackTheSame)
{
    EXPECT_EQ(pad->windowTitle(), q(" Recorder Pad"));
    type("Dear Ms. Whitcomb,");
    QTest::keyClick(edit, Qt::Key_Return);
    type("Your application is complete.");
    EXPECT_TRUE(pad->changed());

    // The salutation bold and centred, one word of the body in another face
    // and size: the toolbar follows the selection.
    select(0, 18);
    trigger(pad->toolbar(), "Bold");
    trigger(pad->toolbar(), "JustC");
    select(19, 23);
    auto* fonts = child<QComboBox>(pad->toolbar(), "Combo1");
    auto* sizes = child<QComboBox>(pad->toolbar(), "Combo2");
    ASSERT_GT(fonts->count(), 0); // built when the window was shown
    const QString face = fonts->itemText(0);
    fonts->setEditText(face);
    emit fonts->textActivated(face);
    emit sizes->textActivated(q("18"));
    trigger(pad->toolbar(), "Italic");

    select(2, 4);
    EXPECT_TRUE(down("Bold"));
    EXPECT_TRUE(down("JustC"));
    EXPECT_FALSE(down("JustL"));
    EXPECT_FALSE(down("Italic"));
    select(19, 23);
    EXPECT_EQ(fonts->currentText(), face);
    EXPECT_EQ(sizes->currentText(), q("18"));
    EXPECT_TRUE(down("Italic"));
    EXPECT_TRUE(down("JustL"));
    // A selection over both faces and both weights: the lists are empty and
    // Bold is up.
    select(10, 30);
    EXPECT_EQ(fonts->currentText(), QString());
    EXPECT_EQ(sizes->currentText(), QString());
    EXPECT_FALSE(down("Bold"));

    // The font dialog starts from the selection and its choice is applied.
    select(19, 23);
    scriptedPrompts().onDialog(q("CommonDialog1"), [&](QDialog& dialog) {
        auto& fontDialog = static_cast<QFontDialog&>(dialog);
        EXPECT_EQ(fontDialog.currentFont().family(), face);
        EXPECT_TRUE(fontDialog.currentFont().italic());
        QFont chosen = fontDialog.currentFont();
        chosen.setUnderline(true);
        fontDialog.setCurrentFont(chosen);
        return int(QDialog::Accepted);
    });
    trigger(*pad, "font");
    EXPECT_TRUE(down("Underline"));

    // Save without a name asks for one.
    const QString path = file("letter.rtf");
    pickFile(path);
    trigger(*pad, "savedoc");
    ASSERT_TRUE(QFileInfo::exists(path));
    EXPECT_TRUE(pad->saved());
    EXPECT_FALSE(pad->changed());
    EXPECT_EQ(pad->currentDocument(), path);
    EXPECT_EQ(child<QLabel>(*pad, "Panel1")->text(), QDir::toNativeSeparators(path));

    NotepadFrm reopened;
    ASSERT_TRUE(reopened.openDocument(path));
    const QTextDocument& again = *reopened.buffer().document();
    EXPECT_EQ(again.toPlainText(), q("Dear Ms. Whitcomb,\nYour application is complete."));
    EXPECT_TRUE(
        again.begin().charFormat().font().bold() || QTextCursor(again.begin()).charFormat().font().bold());
    EXPECT_EQ(again.begin().blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
    EXPECT_FALSE(reopened.changed());
    // What it saves it reads back unchanged.
    EXPECT_EQ(writeRtf(again), test::readFixtureBytes(path));

    // A plain text file opens as text and saves as text.
    const QString notes = file("notes.txt");
    ASSERT_TRUE(replaceFile(notes, "Gate locked; call first.\n"));
    ASSERT_TRUE(reopened.openDocument(notes));
    reopened.buffer().moveCursor(QTextCursor::End);
    QTest::keyClicks(&reopened.buffer(), q("Dog."));
    ASSERT_TRUE(reopened.savedoc());
    EXPECT_EQ(test::readFixtureBytes(notes), QByteArray("Gate locked; call first.\nDog."));
}

TEST_F(Notepad, aChangeIsNeverLostWithoutBeingAsked)
{
    const QString path = file("minutes.rtf");
    type("Motion carried 4-1.");

    // Cancel: the window stays, StopFlag set.
    scriptedPrompts().answer(q("Save Changes"), PromptAnswer::Cancel);
    EXPECT_FALSE(pad->close());
    EXPECT_TRUE(pad->isVisible());
    EXPECT_TRUE(session().StopFlag);
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_EQ(scriptedPrompts().shown().first().text, q("Do you want to save the file?"));
    EXPECT_EQ(scriptedPrompts().shown().first().buttons, PromptButtons::YesNoCancel);

    // Yes without a name, and the name dialog cancelled, or a name where
    // nothing can be written: still open, the change still marked.
    scriptedPrompts().answer(q("Save Changes"), PromptAnswer::Yes);
    EXPECT_FALSE(pad->close());
    scriptedPrompts().answer(q("Save Changes"), PromptAnswer::Yes);
    pickFile(file("no-such-folder/minutes.rtf"));
    EXPECT_FALSE(pad->close());
    EXPECT_TRUE(scriptedPrompts().shownTexts().last().startsWith(q("The document could not be saved to ")));
    EXPECT_TRUE(pad->isVisible());
    EXPECT_TRUE(pad->changed());

    // A file that cannot be read leaves the document and its change as they
    // were, without a question.
    scriptedPrompts().clear();
    EXPECT_FALSE(pad->openDocument(file("missing.rtf")));
    const QString picture = file("plan.png");
    ASSERT_TRUE(QImage(8, 8, QImage::Format_RGB32).save(picture));
    EXPECT_FALSE(pad->openDocument(picture)); // binary: refused, never shown as text
    EXPECT_EQ(edit->toPlainText(), q("Motion carried 4-1."));
    EXPECT_TRUE(pad->changed());
    EXPECT_FALSE(scriptedPrompts().shownTexts().contains(q("Do you want to save the file?")));

    // New asks as well; No lets the change go.
    scriptedPrompts().answer(q("Save Changes"), PromptAnswer::Cancel);
    trigger(*pad, "newdoc");
    EXPECT_EQ(edit->toPlainText(), q("Motion carried 4-1."));

    // An insert counts as a change; Yes with a name saves it and closes.
    ASSERT_TRUE(replaceFile(path, writeRtf(*edit->document())));
    scriptedPrompts().answer(q("Save Changes"), PromptAnswer::No);
    ASSERT_TRUE(pad->openDocument(path));
    EXPECT_FALSE(pad->changed());
    {
        ScopedClockDay day(QDate(2026, 3, 7));
        trigger(*pad, "inserdate");
    }
    EXPECT_TRUE(pad->changed());
    scriptedPrompts().clear();
    scriptedPrompts().answer(q("Save Changes"), PromptAnswer::Yes);
    EXPECT_TRUE(pad->close());
    EXPECT_EQ(scriptedPrompts().shown().size(), 1);
    NotepadFrm check;
    ASSERT_TRUE(check.openDocument(path));
    EXPECT_EQ(check.buffer().toPlainText(), q("03/07/2026Motion carried 4-1."));

    // A damaged file shows what could be read, under no name, so Save cannot
    // write the part over the whole.
    const QByteArray whole = writeRtf(*check.buffer().document());
    const QString torn = file("torn.rtf");
    ASSERT_TRUE(replaceFile(torn, whole.left(whole.indexOf("Motion") + 6)));
    scriptedPrompts().clear();
    EXPECT_TRUE(check.openDocument(torn));
    EXPECT_TRUE(check.currentDocument().isEmpty());
    EXPECT_TRUE(check.buffer().toPlainText().contains(q("Motion")));
    EXPECT_TRUE(scriptedPrompts().shownTexts().join(q("|")).contains(q("is damaged")));
}

TEST_F(Notepad, findAndReplace)
{
    type("The cat sat on the mat. Cat food for the cat.");
    select(4, 7); // "cat" selected: the search starts with it
    trigger(*pad, "search");
    auto* search = pad->findChild<SearchFrm*>(q("SearchFrm"));
    ASSERT_TRUE(search);
    EXPECT_EQ(search->windowTitle(), q("Search & Replace"));
    EXPECT_EQ(child<QLineEdit>(*search, "Text1")->text(), q("cat"));

    click(*search, "FindButton");
    EXPECT_EQ(edit->textCursor().selectionStart(), 4);
    click(*search, "FindNextButton");
    EXPECT_EQ(edit->textCursor().selectedText(), q("Cat")); // case ignored by default
    click(*search, "FindNextButton");
    click(*search, "FindNextButton");
    EXPECT_EQ(search->windowTitle(), q("Search & Replace: No more matches"));
    for (const char* name : {"FindNextButton", "ReplaceButton", "ReplaceAllButton"}) {
        EXPECT_FALSE(child<QPushButton>(*search, name)->isEnabled()) << name;
    }

    // Case and whole word: "cat" alone, not "Cat", and not inside "cats".
    child<QCheckBox>(*search, "Check1")->setChecked(true);
    child<QCheckBox>(*search, "Check2")->setChecked(true);
    child<QLineEdit>(*search, "Text2")->setText(q("dog"));
    click(*search, "FindButton");
    click(*search, "ReplaceButton");
    EXPECT_EQ(edit->toPlainText(), q("The dog sat on the mat. Cat food for the cat."));
    EXPECT_EQ(edit->textCursor().selectionStart(), 41); // found again behind it
    click(*search, "ReplaceAllButton");
    EXPECT_EQ(edit->toPlainText(), q("The dog sat on the mat. Cat food for the dog."));
    EXPECT_EQ(search->windowTitle(), q("Search & Replace: 1 replacement"));

    child<QCheckBox>(*search, "Check1")->setChecked(false);
    child<QLineEdit>(*search, "Text1")->setText(q("THE"));
    child<QLineEdit>(*search, "Text2")->setText(q("a"));
    click(*search, "ReplaceAllButton");
    EXPECT_EQ(edit->toPlainText(), q("a dog sat on a mat. Cat food for a dog."));
    EXPECT_EQ(search->windowTitle(), q("Search & Replace: 3 replacements"));
    // One Undo takes the whole run back.
    trigger(*pad, "Undo");
    EXPECT_EQ(edit->toPlainText(), q("The dog sat on the mat. Cat food for the dog."));

    child<QLineEdit>(*search, "Text1")->setText(q("horse"));
    click(*search, "ReplaceAllButton");
    EXPECT_EQ(search->windowTitle(), q("Search & Replace: No replacement"));
    click(*search, "FindButton");
    EXPECT_EQ(search->windowTitle(), q("Search & Replace: Text not found."));
}

TEST_F(Notepad, insertCommandsWithoutACase)
{
    ASSERT_TRUE(replaceTextLines(
        session().DatabaseFolder + q("/Inspectors.txt"), {q("  Ruth Ames "), q(""), q("Tom Baker")}));
    trigger(*pad, "insertboard");
    EXPECT_EQ(edit->toPlainText(), q("Ruth Ames\nTom Baker\n"));

    // Without a case screen the case texts are empty and nothing changes.
    scriptedPrompts().answer(q("Save Changes"), PromptAnswer::No);
    pad->newdoc();
    for (const char* command : {"insertprop", "insertown", "insertproj"}) {
        trigger(*pad, command);
    }
    EXPECT_EQ(edit->toPlainText(), QString());
    EXPECT_FALSE(pad->changed());

    trigger(*pad, "inserttime");
    EXPECT_TRUE(QRegularExpression(q("^\\d\\d:\\d\\d [AP]M$")).match(edit->toPlainText()).hasMatch())
        << edit->toPlainText().toStdString();
    EXPECT_TRUE(pad->changed());
}

TEST_F(Notepad, minutesAreLoadedFromTheirRowAndWrittenBack)
{
    const QString path = installation.createDatabase(store::Table::MEETING);
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(path, q("Select * from MEETING"), &status);
        ASSERT_TRUE(rows);
        rows->AddNew();
        rows->setValue(q("MNAME"), q("Site visit"));
        ASSERT_TRUE(rows->Update().ok());
        rows->AddNew();
        rows->setValue(q("MNAME"), q("Public hearing"));
        rows->setValue(q("MINUTES"), q("{\\rtf1\\ansi {\\b Present:} Ames, Baker\\par}"));
        ASSERT_TRUE(rows->Update().ok());
    }
    const QString mins = session().DatabaseFolder + q("/mins");
    QDir().mkpath(mins);
    const QString templatePath = mins + q("/04Template1.rtf");
    const QByteArray templateBytes = "{\\rtf1\\ansi MINUTES OF THE MEETING\\par}";
    ASSERT_TRUE(replaceFile(templatePath, templateBytes));

    store::StoreStatus status;
    auto screenRows = store::openRecordsetAt(path, q("Select * from MEETING order by RECNO"), &status);
    ASSERT_TRUE(screenRows) << status.description.toStdString();

    // A meeting without minutes starts from the template; saving writes the
    // minutes into the row and leaves the template alone.
    ASSERT_TRUE(pad->openDocument(templatePath));
    ASSERT_TRUE(pad->externalLoad(*screenRows));
    EXPECT_EQ(edit->toPlainText(), q("MINUTES OF THE MEETING"));
    EXPECT_FALSE(pad->changed());
    edit->moveCursor(QTextCursor::End);
    type(" 5 May");
    session().CurrentUser = q("clerk");
    trigger(*pad, "savedoc");
    EXPECT_TRUE(pad->saved());
    EXPECT_FALSE(pad->changed());
    EXPECT_EQ(test::readFixtureBytes(templatePath), templateBytes);

    // The row that holds minutes shows them; the edit goes back as RTF.
    screenRows->MoveNext();
    NotepadFrm second;
    ASSERT_TRUE(second.externalLoad(*screenRows));
    EXPECT_EQ(second.buffer().toPlainText(), q("Present: Ames, Baker"));
    second.buffer().moveCursor(QTextCursor::End);
    QTest::keyClicks(&second.buffer(), q(", Cole"));
    scriptedPrompts().answer(q("Save Changes"), PromptAnswer::Yes);
    EXPECT_TRUE(second.close());

    auto check = store::openRecordsetAt(path, q("Select * from MEETING order by RECNO"), &status);
    ASSERT_TRUE(check);
    EXPECT_TRUE(check->text(q("MINUTES")).startsWith(q("{\\rtf")));
    EXPECT_TRUE(check->text(q("MINUTES")).contains(q("5 May")));
    EXPECT_EQ(check->text(q("BYUSER")), q("clerk"));
    check->MoveNext();
    QTextDocument minutes;
    readRtf(check->text(q("MINUTES")).toUtf8(), minutes);
    EXPECT_EQ(minutes.toPlainText(), q("Present: Ames, Baker, Cole"));
    EXPECT_FALSE(QFileInfo::exists(templatePath + q(".bak")));
}

TEST_F(Notepad, printsThroughThePrintDialogAndKeepsItsPlaceholders)
{
    if (!defaultPrinterName().isEmpty()) {
        GTEST_SKIP() << "a printer is set up; the PDF fall-back is what is read back here";
    }
    type("Hearing notice, page ## of the file.");
    printWithDialog();
    trigger(*pad, "printdoc");
    ASSERT_FALSE(pad->lastPdf().isEmpty());
    EXPECT_TRUE(pdfText(pad->lastPdf()).contains(q("Hearing notice, page 1 of the file.")));
    EXPECT_EQ(edit->toPlainText(), q("Hearing notice, page ## of the file."));
    EXPECT_EQ(printState().ReportList, QStringList{q("Current Notepad")});

    // Cancelled: nothing printed.
    const QString before = pad->lastPdf();
    scriptedPrompts().onDialog(q("PrintFrm"), [](QDialog& dialog) {
        click(dialog, "iCancel");
        return dialog.result();
    });
    trigger(*pad, "printdoc");
    EXPECT_EQ(pad->lastPdf(), before);
}

TEST_F(Notepad, aMergedLetterToEditOpensInTheNotepad)
{
    NotepadFrm& shared = NotepadFrm::shared();
    Editor::instance().ReportBuffer().setPlainText(q("Dear neighbour, a hearing is set."));
    printState().preview = true;
    showBuiltReport();
    const QString tmp = QDir(session().TempFolder).filePath(q("tmp.rtf"));
    EXPECT_TRUE(shared.isVisible());
    EXPECT_EQ(shared.currentDocument(), tmp);
    EXPECT_EQ(shared.buffer().toPlainText(), q("Dear neighbour, a hearing is set."));

    // The clerk edits it; the next letter asks before the edit is lost, and
    // Cancel keeps it, in the window and in its file.
    shared.buffer().moveCursor(QTextCursor::End);
    QTest::keyClicks(&shared.buffer(), q(" Be there."));
    Editor::instance().ReportBuffer().setPlainText(q("Second letter"));
    scriptedPrompts().answer(q("Save Changes"), PromptAnswer::Cancel);
    showBuiltReport();
    EXPECT_EQ(shared.buffer().toPlainText(), q("Dear neighbour, a hearing is set. Be there."));
    QTextDocument onDisk;
    readRtf(test::readFixtureBytes(tmp), onDisk);
    EXPECT_EQ(onDisk.toPlainText(), q("Dear neighbour, a hearing is set."));

    scriptedPrompts().answer(q("Save Changes"), PromptAnswer::No);
    Editor::instance().setTitle(q("Incomplete Application 24-017"));
    showBuiltReport();
    EXPECT_EQ(shared.buffer().toPlainText(), q("Second letter"));
    EXPECT_FALSE(shared.changed());

    // Saved, the letter goes where the clerk says, offered among the office's
    // documents under its own name, never into the shared temporary file.
    shared.buffer().moveCursor(QTextCursor::End);
    QTest::keyClicks(&shared.buffer(), q(" Signed."));
    const QString docs = QDir(session().DatabaseFolder).filePath(q("docs"));
    const QString kept = QDir(docs).filePath(q("hearing letter.rtf"));
    QString offered;
    scriptedPrompts().onDialog(q("CommonDialog1"), [&](QDialog& dialog) {
        auto& files = static_cast<QFileDialog&>(dialog);
        offered = files.selectedFiles().value(0);
        files.selectFile(kept);
        return int(QDialog::Accepted);
    });
    ASSERT_TRUE(shared.savedoc());
    EXPECT_EQ(QFileInfo(offered), QFileInfo(QDir(docs).filePath(q("Incomplete Application 24-017.rtf"))));
    EXPECT_EQ(scriptedPrompts().shown().last().text, q("The letter is saved as ") + kept + q("."));
    EXPECT_EQ(shared.currentDocument(), kept);
    QTextDocument saved;
    readRtf(test::readFixtureBytes(kept), saved);
    EXPECT_EQ(saved.toPlainText(), q("Second letter Signed."));
    readRtf(test::readFixtureBytes(tmp), onDisk);
    EXPECT_EQ(onDisk.toPlainText(), q("Second letter"));
    // From then on Save writes its own file, without asking.
    QTest::keyClicks(&shared.buffer(), q(" PS."));
    ASSERT_TRUE(shared.savedoc());
    EXPECT_EQ(scriptedPrompts().dialogsRun().count(q("CommonDialog1")), 1);
    readRtf(test::readFixtureBytes(kept), saved);
    EXPECT_EQ(saved.toPlainText(), q("Second letter Signed. PS."));
}

TEST_F(Notepad, theLetterheadIsDefinedAndPrinted)
{
    if (!defaultPrinterName().isEmpty()) {
        GTEST_SKIP() << "a printer is set up; the PDF fall-back is what is read back here";
    }
    QFile::remove(HeaderFrm::headerPath());
    // A picture of another kind than its name says, as offices have them.
    QImage logo(120, 40, QImage::Format_RGB32);
    logo.fill(Qt::darkBlue);
    const QString png = file("seal.png");
    ASSERT_TRUE(logo.save(png, "PNG"));

    // From the print dialog's " Set report default header".
    printState().ReportList = {q("Current report")};
    PrintFrm dialog;
    scriptedPrompts().onDialog(q("HeaderFrm"), [&](QDialog& header) {
        EXPECT_EQ(header.windowTitle(), q(" Define Header"));
        auto* text = child<QTextEdit>(header, "RichTextBox1");
        EXPECT_EQ(text->toPlainText(), QString()); // no gTitle.rtf yet
        QTest::keyClicks(text, q("TOWN OF ESOPUS PLANNING BOARD"));
        text->selectAll();
        child<QAction>(header, "Bold")->trigger();
        pickFile(png);
        click(header, "iLogo");
        click(header, "Command1");
        return header.result();
    });
    click(dialog, "XPButton1");
    ASSERT_EQ(scriptedPrompts().dialogsRun(), QStringList({q("HeaderFrm"), q("CommonDialog1")}));
    ASSERT_TRUE(QFileInfo::exists(HeaderFrm::headerPath()));
    EXPECT_TRUE(session().ReportHeaderRtf.startsWith(q("{\\rtf")));
    EXPECT_EQ(test::readFixtureBytes(HeaderFrm::logoPath()), test::readFixtureBytes(png));

    // The next report carries it: heading as text, logo as a picture.
    QTextDocument& report = Editor::instance().ReportBuffer();
    report.setPlainText(q("%mh\n%lo\nNotice of hearing"));
    Editor::instance().iPrint();
    const QString pdf = Editor::instance().lastPdf();
    ASSERT_FALSE(pdf.isEmpty());
    EXPECT_TRUE(pdfText(pdf).contains(q("TOWN OF ESOPUS PLANNING BOARD")));
    EXPECT_TRUE(pdfText(pdf).contains(q("Notice of hearing")));
    const QImage page = test::renderPdfPage(pdf, 0, 72);
    int blue = 0;
    for (int y = 0; y < page.height() / 3; ++y) {
        for (int x = 0; x < page.width(); ++x) {
            const QColor c = page.pixelColor(x, y);
            blue += c.blue() > 100 && c.red() < 60 && c.green() < 60 ? 1 : 0;
        }
    }
    EXPECT_GT(blue, 1000) << "the logo is on the page";

    // Opened again, the header shows what was saved. A file that is no
    // picture is refused and the logo kept; Cancel keeps the heading's file.
    const QByteArray saved = test::readFixtureBytes(HeaderFrm::headerPath());
    HeaderFrm again;
    const QString notPicture = file("seal.bmp");
    ASSERT_TRUE(replaceFile(notPicture, "BM not really a bitmap"));
    pickFile(notPicture);
    click(again, "iLogo");
    EXPECT_TRUE(scriptedPrompts().shownTexts().last().endsWith(q("is not a picture this program can read.")));
    EXPECT_EQ(test::readFixtureBytes(HeaderFrm::logoPath()), test::readFixtureBytes(png));
    EXPECT_EQ(child<QTextEdit>(again, "RichTextBox1")->toPlainText(), q("TOWN OF ESOPUS PLANNING BOARD"));
    QTest::keyClicks(child<QTextEdit>(again, "RichTextBox1"), q("X"));
    click(again, "Command2");
    EXPECT_EQ(test::readFixtureBytes(HeaderFrm::headerPath()), saved);
}

// The notepad and the header window for the documentation. With
// PVARDO_SCREENSHOT_DIR set they are written there as notepad.png and
// header.png.
TEST_F(Notepad, Screenshots)
{
    QTextCursor cursor(edit->document());
    QTextBlockFormat centred;
    centred.setAlignment(Qt::AlignHCenter);
    QTextCharFormat heading;
    heading.setFontWeight(QFont::Bold);
    heading.setFontPointSize(14);
    cursor.setBlockFormat(centred);
    cursor.insertText(q("TOWN OF ESOPUS PLANNING BOARD"), heading);
    cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
    cursor.insertText(q("\nMarch 7, 2026\n\nAnne Whitcomb\n14 Mill Pond Road\nEsopus NY 12429\n\n"
                        "Re: Case 12-207, detached garage\n\nDear Ms. Whitcomb,\n\n"
                        "The Planning Board will hear your application on March 19 at 7:30 PM "
                        "in the Town Hall. Please bring the site plan.\n\nSincerely,\n\nRuth Ames, Chair"));
    pickFile(file("whitcomb-hearing.rtf"));
    ASSERT_TRUE(pad->saveasdoc());
    select(0, 5);
    pad->resize(760, 620);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(pad.get()));
    const QString folder = qEnvironmentVariable("PVARDO_SCREENSHOT_DIR");
    auto save = [&](QWidget& widget, const char* name) {
        QCoreApplication::processEvents();
        const QImage image = widget.grab().toImage();
        ASSERT_FALSE(image.isNull());
        if (!folder.isEmpty()) {
            QDir().mkpath(folder);
            EXPECT_TRUE(image.save(folder + QLatin1Char('/') + q(name)));
        }
    };
    save(*pad, "notepad.png");

    ASSERT_TRUE(replaceFile(HeaderFrm::headerPath(),
        "{\\rtf1\\ansi\\qc{\\b\\fs32 TOWN OF ESOPUS}\\par\\qc PLANNING BOARD\\par"
        "\\qc 1 Government Drive, Port Ewen NY 12466\\par}"));
    QImage seal(240, 120, QImage::Format_RGB32);
    seal.fill(Qt::white);
    {
        QPainter painter(&seal);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::darkBlue, 6));
        painter.drawEllipse(QPoint(120, 60), 52, 52);
        painter.drawText(seal.rect(), Qt::AlignCenter, q("ESOPUS"));
    }
    QDir().mkpath(QFileInfo(HeaderFrm::logoPath()).absolutePath());
    ASSERT_TRUE(seal.save(HeaderFrm::logoPath(), "PNG"));
    HeaderFrm header;
    header.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&header));
    save(header, "header.png");
}
