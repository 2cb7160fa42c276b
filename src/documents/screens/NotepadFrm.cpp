#include "documents/screens/NotepadFrm.h"

#include "common/Clock.h"
#include "common/ExitApp.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "common/Waiting.h"
#include "documents/Merge.h"
#include "documents/NotepadTexts.h"
#include "documents/PrintState.h"
#include "documents/RtfReader.h"
#include "documents/RtfWriter.h"
#include "documents/printer/DefaultPrinter.h"
#include "documents/screens/Editor.h"
#include "documents/screens/FormatToolbar.h"
#include "documents/screens/PrintFrm.h"
#include "documents/screens/SearchFrm.h"
#include "store/Recordset.h"
#include "ui/TaskFrm.h"

#include <QAction>
#include <QCloseEvent>
#include <QDir>
#include <QRegularExpression>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTextEdit>
#include <memory>

namespace pvardo::documents {

namespace {

const QString kTitle = QStringLiteral(" Recorder Pad");

bool looksLikeRtf(const QByteArray& bytes)
{
    return bytes.trimmed().startsWith("{\\rtf");
}

bool isPlainTextName(const QString& path)
{
    return QFileInfo(path).suffix().compare(QLatin1String("txt"), Qt::CaseInsensitive) == 0;
}

// The document a new page of the notepad starts with: the office's
// fixed-pitch face, at the size the editors use.
void prepareDocument(QTextDocument& document)
{
    QFont face(QStringLiteral("Courier New"));
    face.setPointSizeF(session().EditorFontSize > 0 ? session().EditorFontSize : 12);
    document.setDefaultFont(face);
}

} // namespace

NotepadFrm::NotepadFrm(QWidget* parent)
    : QMainWindow(parent)
{
    setObjectName(QStringLiteral("NotepadFrm"));
    setWindowTitle(kTitle);
    resize(760, 820);

    m_text = new QTextEdit(this);
    m_text->setObjectName(QStringLiteral("RichTextBox1"));
    m_text->setAcceptRichText(true);
    prepareDocument(*m_text->document());
    setCentralWidget(m_text);
    connect(m_text, &QTextEdit::textChanged, this, [this] {
        if (!m_loading) {
            m_changed = true;
        }
    });

    m_toolbar = new FormatToolbar(*m_text, this);
    addToolBar(Qt::TopToolBarArea, m_toolbar);

    auto* status = new QStatusBar(this);
    status->setObjectName(QStringLiteral("StatusBar1"));
    m_pathPanel = new QLabel(status);
    m_pathPanel->setObjectName(QStringLiteral("Panel1"));
    status->addWidget(m_pathPanel, 1);
    setStatusBar(status);

    buildMenus();

    // The program's end asks the notepad's own question first, over the
    // document, and stays when the clerk cancels.
    m_exitQuestion = addExitQuestion([this] {
        if (!m_changed) {
            return true;
        }
        show();
        raise();
        activateWindow();
        return askToSaveChanges();
    });
}

NotepadFrm::~NotepadFrm()
{
    removeExitQuestion(m_exitQuestion);
}

NotepadFrm& NotepadFrm::shared()
{
    static QPointer<NotepadFrm> notepad;
    if (!notepad) {
        notepad = new NotepadFrm;
    }
    return *notepad;
}

void NotepadFrm::buildMenus()
{
    struct Command
    {
        const char* name;
        const char* caption;
        void (NotepadFrm::*run)();
        QKeySequence keys;
    };
    auto addCommands = [this](QMenu* menu, std::initializer_list<Command> commands) {
        for (const Command& command : commands) {
            QAction* action = menu->addAction(QString::fromUtf8(command.caption));
            action->setObjectName(QString::fromLatin1(command.name));
            action->setShortcut(command.keys);
            if (command.run) {
                connect(action, &QAction::triggered, this, command.run);
            }
        }
    };
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    file->setObjectName(QStringLiteral("mfile"));
    addCommands(file,
        {
            {"newdoc", "&New", &NotepadFrm::newdoc, QKeySequence::New},
            {"opendoc", "&Open..", &NotepadFrm::opendoc, QKeySequence::Open},
            {"savedoc", "&Save", nullptr, QKeySequence::Save},
            {"saveasdoc", "Save As..", nullptr, {}},
            {"printdoc", "Print..", &NotepadFrm::printdoc, QKeySequence::Print},
        });
    // Save and Save As say whether they saved; the menu does not need to know.
    connect(findChild<QAction*>(QStringLiteral("savedoc")), &QAction::triggered, this, [this] { savedoc(); });
    connect(
        findChild<QAction*>(QStringLiteral("saveasdoc")), &QAction::triggered, this, [this] { saveasdoc(); });
    file->addSeparator();
    QAction* quit = file->addAction(QStringLiteral("E&xit"));
    quit->setObjectName(QStringLiteral("mexit"));
    connect(quit, &QAction::triggered, this, &QWidget::close);

    QMenu* edit = menuBar()->addMenu(QStringLiteral("&Edit"));
    edit->setObjectName(QStringLiteral("medit"));
    addCommands(edit,
        {
            {"search", "Find/Replace..", &NotepadFrm::search, QKeySequence::Find},
            {"Undo", "&Undo", &NotepadFrm::undo, QKeySequence::Undo},
            {"Cut", "Cu&t", &NotepadFrm::cut, QKeySequence::Cut},
            {"Copy", "&Copy", &NotepadFrm::copy, QKeySequence::Copy},
            {"Paste", "&Paste", &NotepadFrm::paste, QKeySequence::Paste},
        });

    QMenu* format = menuBar()->addMenu(QStringLiteral("Format"));
    format->setObjectName(QStringLiteral("mformat"));
    addCommands(format,
        {
            {"font", "Font..", &NotepadFrm::chooseFont, {}},
            {"leftjust", "Left Justify", &NotepadFrm::leftjust, {}},
            {"centerjust", "Center Justify", &NotepadFrm::centerjust, {}},
            {"rightjust", "Right Justify", &NotepadFrm::rightjust, {}},
        });

    QMenu* insert = menuBar()->addMenu(QStringLiteral("Insert"));
    insert->setObjectName(QStringLiteral("minsert"));
    addCommands(insert,
        {
            {"insertboard", "Insert Board Members", &NotepadFrm::insertboard, {}},
            {"insertprop", "Insert Property Info", &NotepadFrm::insertprop, {}},
            {"insertown", "Insert Owner Info", &NotepadFrm::insertown, {}},
            {"insertproj", "Insert Project Description", &NotepadFrm::insertproj, {}},
            {"inserdate", "Insert Today's Date", &NotepadFrm::inserdate, {}},
            {"inserttime", "Insert Current Time", &NotepadFrm::inserttime, {}},
        });
}

void NotepadFrm::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    m_toolbar->fillLists();
}

void NotepadFrm::closeEvent(QCloseEvent* event)
{
    if (!askToSaveChanges()) {
        event->ignore();
        return;
    }
    if (m_search) {
        m_search->close();
    }
    event->accept();
    // The window is met again empty, for the next document it is given.
    newdoc();
}

void NotepadFrm::clearFlags()
{
    m_changed = false;
    m_saved = false;
}

void NotepadFrm::setCurrentDocument(const QString& path)
{
    if (path != m_path) {
        m_reportTitle.clear();
    }
    m_path = path;
    m_pathPanel->setText(QDir::toNativeSeparators(path));
}

bool NotepadFrm::askToSaveChanges()
{
    if (!m_changed) {
        return true;
    }
    const PromptAnswer answer = showMessage(QStringLiteral("Do you want to save the file?"),
        QStringLiteral("Save Changes"), PromptButtons::YesNoCancel, PromptIcon::Question);
    if (answer == PromptAnswer::Yes) {
        return (m_bound || !m_path.isEmpty()) ? savedoc() : saveasdoc();
    }
    if (answer == PromptAnswer::No) {
        m_changed = false; // the change is let go
        return true;
    }
    session().StopFlag = true;
    return false;
}

bool NotepadFrm::openDocument(const QString& path)
{
    // The file is read before the clerk is asked about the open document, so
    // a file that cannot be read leaves that document, and its change, as
    // they were.
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        showMessage(QStringLiteral("The document ") + QDir::toNativeSeparators(path)
                + QStringLiteral(" could not be opened: ") + file.errorString(),
            kTitle, PromptButtons::Ok, PromptIcon::Critical);
        return false;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        showMessage(QStringLiteral("The document ") + QDir::toNativeSeparators(path)
                + QStringLiteral(" could not be read: ") + file.errorString(),
            kTitle, PromptButtons::Ok, PromptIcon::Critical);
        return false;
    }

    const bool rtf = looksLikeRtf(bytes);
    if (!rtf && bytes.contains('\0')) {
        // A picture or a PDF picked under "All Files": shown as text and
        // saved, it would be lost.
        showMessage(QStringLiteral("The file ") + QDir::toNativeSeparators(path)
                + QStringLiteral(" is neither a rich-text nor a text document."),
            kTitle, PromptButtons::Ok, PromptIcon::Exclamation);
        return false;
    }
    auto document = std::make_unique<QTextDocument>();
    prepareDocument(*document);
    RtfReadResult read;
    if (rtf) {
        read = readRtf(bytes, *document);
    } else {
        document->setPlainText(decodeText(bytes));
    }
    if (!askToSaveChanges()) {
        return false;
    }
    document->setParent(m_text);
    m_loading = true;
    m_text->setDocument(document.release());
    m_text->moveCursor(QTextCursor::Start);
    m_loading = false;
    m_bound.reset();
    m_plainText = !rtf;
    clearFlags();
    if (read.damaged) {
        // What could be read is shown, but saving it over the file would
        // lose the rest: it is saved under a new name.
        setCurrentDocument(QString());
        showMessage(QStringLiteral("The document ") + QDir::toNativeSeparators(path)
                + QStringLiteral(" is damaged: ") + read.problem
                + QStringLiteral("\nWhat could be read is shown. Save it under a new name."),
            kTitle, PromptButtons::Ok, PromptIcon::Exclamation);
    } else {
        setCurrentDocument(path);
    }
    m_toolbar->SelChange();
    return true;
}

bool NotepadFrm::writeFile(const QString& path)
{
    // A text file stays a text file.
    const bool plain = isPlainTextName(path) || (m_plainText && path == m_path);
    const QByteArray bytes
        = plain ? m_text->document()->toPlainText().toUtf8() : writeRtf(*m_text->document());
    QString error;
    if (!replaceFile(path, bytes, &error)) {
        showMessage(QStringLiteral("The document could not be saved to ") + QDir::toNativeSeparators(path)
                + QStringLiteral(": ") + error + QStringLiteral("\nIt is still open; nothing is lost."),
            QStringLiteral("Save a Document"), PromptButtons::Ok, PromptIcon::Critical);
        return false;
    }
    return true;
}

bool NotepadFrm::openReport(const QString& path, const QString& title)
{
    if (!openDocument(path)) {
        return false;
    }
    m_reportTitle = title.trimmed();
    // The clerk knows the letter by its name; the file is only where it is
    // kept until it is saved under a name of the clerk's.
    if (!m_reportTitle.isEmpty()) {
        m_pathPanel->setText(m_reportTitle);
    }
    return true;
}

QString NotepadFrm::minutesFileOf(const QString& recno, const QDate& day)
{
    return QDir(session().DatabaseFolder)
        .filePath(QStringLiteral("mins/01") + recno.trimmed() + QLatin1Char('~')
            + day.toString(QStringLiteral("yyyyMMdd")) + QStringLiteral(".rtf"));
}

bool NotepadFrm::openMinutes(const store::Recordset& row, const QDate& day)
{
    if (!askToSaveChanges()) {
        return false;
    }
    const bool readable = !row.Eof() && !row.Bof();
    const QString startFrom = QDir(session().DatabaseFolder).filePath(QStringLiteral("mins/04Template1.rtf"));
    const bool recurring
        = readable && row.text(QStringLiteral("MFREQ")).trimmed() == QLatin1String("R") && day.isValid();
    if (recurring) {
        const QString own = minutesFileOf(row.text(QStringLiteral("RECNO")), day);
        if (QFileInfo(own).isFile()) {
            if (!openDocument(own)) {
                return false;
            }
        } else {
            if (!QFileInfo(startFrom).isFile() || !openDocument(startFrom)) {
                newdoc();
            }
            // Saved, the day's minutes go to their own file, never the template.
            QDir().mkpath(QFileInfo(own).absolutePath());
            setCurrentDocument(own);
            m_plainText = false;
        }
    } else {
        const int column = row.fieldIndex(QStringLiteral("MINUTES"));
        if (column >= 0 && readable && row.value(QStringLiteral("MINUTES")).isNull()) {
            if (!QFileInfo(startFrom).isFile() || !openDocument(startFrom)) {
                newdoc();
            }
        }
        if (!externalLoad(row)) {
            return false;
        }
    }
    // Whose minutes these are, in the clerk's words.
    const QDate shown = recurring ? day : row.value(QStringLiteral("MDATE")).toDate();
    QString which = QStringLiteral("Minutes of ") + row.text(QStringLiteral("MNAME")).trimmed();
    if (shown.isValid()) {
        which += QStringLiteral(", ") + shown.toString(QStringLiteral("MM/dd/yyyy"));
    }
    m_pathPanel->setText(which);
    show();
    raise();
    activateWindow();
    return true;
}

bool NotepadFrm::externalLoad(const store::Recordset& row)
{
    // The row is found again by its counter, which no other workstation
    // changes.
    QString counter;
    for (int i = 0; i < row.fieldCount() && counter.isEmpty(); ++i) {
        if (row.fieldKind(i) == store::FieldKind::Counter) {
            counter = row.fieldName(i);
        }
    }
    if (counter.isEmpty() || row.fieldIndex(QStringLiteral("MINUTES")) < 0 || row.Eof() || row.Bof()) {
        return false;
    }
    const qint64 key = row.value(counter).toLongLong();
    store::StoreStatus status;
    std::unique_ptr<store::Recordset> own = store::openRecordsetAt(row.databasePath(),
        QStringLiteral("Select * from ") + row.tableName() + QStringLiteral(" where [") + counter
            + QStringLiteral("] = ") + QString::number(key),
        &status);
    if (!own || own->Eof()) {
        showMessage(QStringLiteral("The minutes cannot be opened: ")
                + (own ? QStringLiteral("the record is no longer there.") : status.description),
            kTitle, PromptButtons::Ok, PromptIcon::Critical);
        return false;
    }
    if (!askToSaveChanges()) {
        return false;
    }
    const QVariant minutes = own->value(QStringLiteral("MINUTES"));
    if (!minutes.isNull()) {
        auto* document = new QTextDocument(m_text);
        prepareDocument(*document);
        const QByteArray bytes = minutes.toString().toUtf8();
        if (looksLikeRtf(bytes)) {
            readRtf(bytes, *document);
        } else {
            document->setPlainText(minutes.toString());
        }
        m_loading = true;
        m_text->setDocument(document);
        m_text->moveCursor(QTextCursor::Start);
        m_loading = false;
        m_toolbar->SelChange();
    }
    m_bound = std::move(own);
    m_reportTitle.clear();
    clearFlags();
    return true;
}

void NotepadFrm::newdoc()
{
    if (!askToSaveChanges()) {
        return;
    }
    auto* document = new QTextDocument(m_text);
    prepareDocument(*document);
    m_loading = true;
    m_text->setDocument(document);
    m_loading = false;
    m_bound.reset();
    m_plainText = false;
    clearFlags();
    setCurrentDocument(QString());
    m_toolbar->SelChange();
}

QString NotepadFrm::chooseFile(bool saving)
{
    QString folder = m_path.isEmpty() ? session().DatabaseFolder : QFileInfo(m_path).absolutePath();
    // A letter opened for editing lives in the temporary folder until it is
    // saved: it is offered a place among the office's documents, under its
    // own name.
    const bool letter = saving && !m_reportTitle.isEmpty();
    if (letter) {
        folder = QDir(session().DatabaseFolder).filePath(QStringLiteral("docs"));
        QDir().mkpath(folder);
    }
    QFileDialog dialog(
        this, saving ? QStringLiteral("Save a Document") : QStringLiteral("Load a Document"), folder);
    dialog.setObjectName(QStringLiteral("CommonDialog1"));
    dialog.setNameFilters({QStringLiteral("Documents (*.rtf *.txt)"), QStringLiteral("All Files (*)")});
    dialog.setAcceptMode(saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(saving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (saving) {
        dialog.setDefaultSuffix(QStringLiteral("rtf"));
        if (letter) {
            QString name = m_reportTitle;
            name.replace(QRegularExpression(QStringLiteral("[\\\\/:*?\"<>|]")), QStringLiteral("-"));
            dialog.selectFile(name + QStringLiteral(".rtf"));
        } else if (!m_path.isEmpty()) {
            dialog.selectFile(QFileInfo(m_path).fileName());
        }
    }
    if (prompts().exec(dialog) != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return {};
    }
    return dialog.selectedFiles().constFirst();
}

void NotepadFrm::opendoc()
{
    const QString path = chooseFile(false);
    if (!path.isEmpty()) {
        openDocument(path);
    }
}

bool NotepadFrm::savedoc()
{
    if (m_bound) {
        const QString rtf = QString::fromUtf8(writeRtf(*m_text->document()));
        m_bound->setValue(QStringLiteral("MINUTES"), rtf);
        if (m_bound->fieldIndex(QStringLiteral("BYUSER")) >= 0) {
            m_bound->setValue(QStringLiteral("BYUSER"), session().CurrentUser.left(18));
        }
        if (m_bound->fieldIndex(QStringLiteral("TSTAMP")) >= 0) {
            m_bound->setValue(QStringLiteral("TSTAMP"), presentTime());
        }
        const store::StoreStatus status = m_bound->Update();
        if (!status.ok()) {
            m_bound->CancelUpdate();
            showMessage(QStringLiteral("The minutes could not be saved: ") + status.description
                    + QStringLiteral("\nThey are still open; nothing is lost."),
                kTitle, PromptButtons::Ok, PromptIcon::Critical);
            return false;
        }
        clearFlags();
        session().StopFlag = false;
        m_saved = true;
        statusBar()->showMessage(QStringLiteral("The minutes are saved."), 5000);
        return true;
    }
    // A letter opened for editing has no file of its own yet: its temporary
    // file is shared by every letter, so it is saved where the clerk says.
    if (m_path.isEmpty() || !m_reportTitle.isEmpty()) {
        return saveasdoc();
    }
    if (!writeFile(m_path)) {
        return false;
    }
    clearFlags();
    m_saved = true;
    statusBar()->showMessage(QStringLiteral("Saved to ") + QDir::toNativeSeparators(m_path), 5000);
    return true;
}

bool NotepadFrm::saveasdoc()
{
    const bool letter = !m_reportTitle.isEmpty();
    const QString path = chooseFile(true);
    if (path.isEmpty() || !writeFile(path)) {
        return false;
    }
    // Saved under a name of its own, the document is a file from now on.
    m_bound.reset();
    setCurrentDocument(path);
    clearFlags();
    m_saved = true;
    statusBar()->showMessage(QStringLiteral("Saved to ") + QDir::toNativeSeparators(path), 5000);
    if (letter) {
        showMessage(QStringLiteral("The letter is saved as ") + QDir::toNativeSeparators(path) + QLatin1Char('.'),
            kTitle, PromptButtons::Ok, PromptIcon::Information);
    }
    return true;
}

void NotepadFrm::printdoc()
{
    PrintState& state = printState();
    state.ReportList = {QStringLiteral("Current Notepad")};
    PrintFrm dialog(this);
    if (prompts().exec(dialog) != QDialog::Accepted || session().StopFlag) {
        return;
    }
    ui::TaskFrm::open(QStringLiteral("Printing to default printer..."));
    WaitSeconds(1);
    // The letter numbers its own pages, and the print-time pass fills a copy:
    // the placeholders stay in the clerk's document for the next print.
    state.pageCounter = 1;
    std::unique_ptr<QTextDocument> copy(m_text->document()->clone());
    PrintSettings settings;
    settings.leftMargin = state.leftMargin;
    settings.topMargin = state.topMargin;
    settings.rightMargin = state.rightMargin;
    settings.bottomMargin = state.bottomMargin;
    settings.footer = state.footer;
    settings.footerRtf = state.footerText;
    settings.pageCounter = &state.pageCounter;
    settings.expandPrintTokens = [](QTextDocument& document) { ExpandPrintTokens(document); };
    QString title = m_reportTitle;
    if (title.isEmpty()) {
        title = m_path.isEmpty() ? QStringLiteral("Notepad") : QFileInfo(m_path).completeBaseName();
    }
    const PrinterOutcome outcome = printOnDefaultPrinter(*copy, settings, Editor::unusedPdfPath(title), title);
    ui::TaskFrm::close();
    m_lastPdf = outcome.pdfPath;
    Editor::tellPrintOutcome(outcome, QStringLiteral("The document was"));
}

void NotepadFrm::search()
{
    if (!m_search) {
        m_search = new SearchFrm(*m_text, this);
        m_search->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_search->show();
    m_search->raise();
    m_search->activateWindow();
}

void NotepadFrm::undo()
{
    m_text->undo();
}

void NotepadFrm::cut()
{
    m_text->cut();
}

void NotepadFrm::copy()
{
    m_text->copy();
}

void NotepadFrm::paste()
{
    m_text->paste();
}

void NotepadFrm::chooseFont()
{
    // A mixed selection gives no value for a property; the dialog's own
    // default stands in for it.
    const FormatToolbar::Selection now = FormatToolbar::selectionOf(*m_text);
    QFont initial = m_text->document()->defaultFont();
    if (now.family) {
        initial.setFamily(*now.family);
    }
    if (now.size && *now.size > 0) {
        initial.setPointSizeF(*now.size);
    }
    initial.setBold(now.bold.value_or(false));
    initial.setItalic(now.italic.value_or(false));
    initial.setUnderline(now.underline.value_or(false));
    initial.setStrikeOut(now.strikeOut.value_or(false));
    QFontDialog dialog(initial, this);
    dialog.setObjectName(QStringLiteral("CommonDialog1"));
    if (prompts().exec(dialog) != QDialog::Accepted) {
        return;
    }
    QTextCharFormat format;
    format.setFont(dialog.currentFont());
    m_text->mergeCurrentCharFormat(format);
    m_toolbar->SelChange();
}

void NotepadFrm::leftjust()
{
    m_toolbar->tbrHandler(QStringLiteral("JustL"));
}

void NotepadFrm::centerjust()
{
    m_toolbar->tbrHandler(QStringLiteral("JustC"));
}

void NotepadFrm::rightjust()
{
    m_toolbar->tbrHandler(QStringLiteral("JustR"));
}

void NotepadFrm::insertText(const QString& text)
{
    // Inserted where the clerk stands, without passing through the
    // clipboard, which keeps what the clerk put there.
    if (text.isEmpty()) {
        return;
    }
    m_text->textCursor().insertText(text);
    m_changed = true;
}

void NotepadFrm::insertboard()
{
    insertText(NotepadTexts::boardMembers(session().DatabaseFolder));
}

void NotepadFrm::insertprop()
{
    insertText(currentCaseTexts().property);
}

void NotepadFrm::insertown()
{
    insertText(currentCaseTexts().owner);
}

void NotepadFrm::insertproj()
{
    insertText(currentCaseTexts().project);
}

void NotepadFrm::inserdate()
{
    insertText(NotepadTexts::todaysDate());
}

void NotepadFrm::inserttime()
{
    insertText(NotepadTexts::currentTime());
}

} // namespace pvardo::documents
