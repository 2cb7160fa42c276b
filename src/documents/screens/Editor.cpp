#include "documents/screens/Editor.h"

#include "documents/Listing.h"
#include "documents/Merge.h"
#include "documents/PrintRichText.h"
#include "documents/PrintState.h"
#include "documents/printer/DefaultPrinter.h"
#include "documents/screens/LabelFrm.h"
#include "documents/screens/Letters.h"
#include "documents/screens/PrintFrm.h"

#include "common/PromptService.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "common/Waiting.h"
#include "ui/TaskFrm.h"
#include "ui/XPButton.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QTextEdit>
#include <QVBoxLayout>

namespace pvardo::documents {

namespace {

QString& pdfFolder()
{
    static QString folder;
    return folder;
}

QTextEdit* makeBuffer(const char* name, QWidget* parent)
{
    auto* edit = new QTextEdit(parent);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setAcceptRichText(true);
    return edit;
}

} // namespace

Editor& Editor::instance()
{
    static Editor* editor = new Editor;
    return *editor;
}

Editor::Editor()
{
    setObjectName(QStringLiteral("Editor"));
    setWindowTitle(QStringLiteral("  Report Preview"));
    resize(820, 900);
    auto* layout = new QVBoxLayout(this);

    m_report = makeBuffer("RichTextBox1", this);
    m_report->setReadOnly(true);
    // Lines break where they will on paper: 8.5 inches less the 0.8-inch
    // margins of the report window's printing.
    m_report->setLineWrapMode(QTextEdit::FixedPixelWidth);
    m_report->setLineWrapColumnOrWidth(qRound(6.9 * m_report->logicalDpiX()));
    layout->addWidget(m_report, 1);
    m_scratch = makeBuffer("RichTextBox2", this);
    m_scratch->hide();
    m_footer = makeBuffer("RichTextBox3", this);
    m_footer->hide();
    m_origin = new QLineEdit(this);
    m_origin->setObjectName(QStringLiteral("Text1"));
    m_origin->hide();

    auto* row = new QHBoxLayout;
    m_allowEdit = new QCheckBox(QStringLiteral("Allow editing before printing"), this);
    m_allowEdit->setObjectName(QStringLiteral("Check1"));
    connect(m_allowEdit, &QCheckBox::toggled, this, [this](bool on) { m_report->setReadOnly(!on); });
    row->addWidget(m_allowEdit);
    row->addStretch();
    const struct {
        const char* name;
        const char* caption;
        const char* tip;
        void (Editor::*run)();
    } commands[] = {
        {"iPrint", " Print", " Print the report", &Editor::iPrint},
        {"iPrint2File", " Print to File", " Write the report as text to print.txt", &Editor::iPrint2File},
        {"iContinue", " Continue", " Close the preview", &Editor::iContinue},
        {"iCancel", " Cancel", " Cancel", &Editor::iCancel},
    };
    for (const auto& command : commands) {
        auto* button = new ui::XPButton(QString::fromLatin1(command.name), QString::fromLatin1(command.caption),
                                        QString::fromLatin1(command.tip), this);
        connect(button, &QPushButton::clicked, this, command.run);
        row->addWidget(button);
    }
    layout->addLayout(row);
}

QTextDocument& Editor::ReportBuffer()
{
    return *m_report->document();
}

QTextDocument& Editor::scratchBuffer()
{
    return *m_scratch->document();
}

QTextDocument& Editor::footerBuffer()
{
    return *m_footer->document();
}

void Editor::clearBuffers()
{
    for (QTextEdit* edit : {m_report, m_scratch, m_footer}) {
        edit->clear();
        edit->moveCursor(QTextCursor::Start);
    }
    m_followUp = nullptr;
    m_title.clear();
}

void Editor::setOrigin(const QString& tag)
{
    m_origin->setText(tag);
}

void Editor::showReport()
{
    // A listing's rows stay whole here as on paper, where it is set smaller
    // or turned to fit; other reports break where they will on paper.
    m_report->setLineWrapMode(isListing(ReportBuffer()) ? QTextEdit::NoWrap : QTextEdit::FixedPixelWidth);
    // The logo, signature and picture show as they will print, or not at
    // all while none is chosen, never as their placeholders.
    ExpandPictureTokens(ReportBuffer());
    m_allowEdit->setChecked(false);
    m_report->setReadOnly(true);
    m_report->moveCursor(QTextCursor::Start);
    show();
    raise();
    activateWindow();
}

void Editor::setTitle(const QString& title)
{
    m_title = title.trimmed();
}

QString Editor::title() const
{
    if (!m_title.isEmpty()) {
        return m_title;
    }
    const QString caption = printState().reportCaption.trimmed();
    return caption.isEmpty() ? QStringLiteral("Report") : caseReportTitle(caption);
}

void Editor::setPdfFolder(const QString& folder)
{
    pdfFolder() = folder;
}

QString Editor::nextPdfPath()
{
    return outputPdfPath(QStringLiteral("Report"), pdfFolder());
}

void Editor::iPrint()
{
    PrintState& state = printState();
    state.pageCounter = 1;
    state.leftMargin = state.topMargin = state.rightMargin = state.bottomMargin = 0.8;

    const int code = session().ScreenCode;
    if (m_origin->text() == QLatin1String("SUR")) {
        state.ReportList = {QStringLiteral("Current report"), QStringLiteral("Labels for mailing")};
        state.reportKind = 99;
    } else if (code == 1 || code >= 8) {
        state.ReportList = {QStringLiteral("Current report")};
        switch (state.reportKind) {
        case 3:
        case 4:
            state.reportKind = 0;
            break;
        case 1:
            state.ReportList << QStringLiteral("Letters for Expired Permits")
                             << QStringLiteral("Labels for Expired Permits");
            state.templateName = QStringLiteral("expired.rtf");
            break;
        case 2:
            state.ReportList << QStringLiteral("Letters for Anticipated Expiring Permits")
                             << QStringLiteral("Labels for Anticipated Expiring Permits");
            state.templateName = QStringLiteral("expiring.rtf");
            break;
        case 81:
            state.ReportList << QStringLiteral("Letters for Expired Zoning Permits")
                             << QStringLiteral("Labels for Expired Zoning Permits");
            state.templateName = QStringLiteral("zexpired.rtf");
            break;
        case 82:
            state.ReportList << QStringLiteral("Letters for Anticipated Expiring Permits")
                             << QStringLiteral("Labels for Anticipated Expiring Permits");
            state.templateName = QStringLiteral("zexpiring.rtf");
            break;
        default:
            break;
        }
    }

    if (state.reportKind != 0) {
        PrintFrm dialog(this);
        if (prompts().exec(dialog) != QDialog::Accepted || session().StopFlag) {
            return;
        }
        if (state.ReportChoice.left(3) != QLatin1String("CUR")) {
            // Labels: the sheet and the start cell first; the screen that
            // built the report prints them.
            if (state.ReportChoice.left(3) == QLatin1String("LAB") && !chooseLabelSheet(this)) {
                return;
            }
            hide();
            if (m_followUp) {
                m_followUp(state.ReportChoice);
            }
            return;
        }
    }

    printReport(1);
}

void Editor::printCopies(int copies)
{
    PrintState& state = printState();
    state.pageCounter = 1;
    state.leftMargin = state.topMargin = state.rightMargin = state.bottomMargin = 0.8;
    printReport(copies);
}

void Editor::printReport(int copies)
{
    m_lastPdf.clear();
    // Printed, the report has done its work: the window goes.
    if (printDocument(ReportBuffer(), title(), QStringLiteral("The report was"), copies, &m_lastPdf)) {
        hide();
    }
}

bool Editor::printDocument(QTextDocument& document, const QString& title, const QString& what, int copies,
                           QString* pdfPath)
{
    const PrintState& state = printState();
    ui::TaskFrm::open(QStringLiteral("Printing to default printer..."));
    WaitSeconds(1);
    PrintSettings settings;
    settings.copies = copies;
    settings.leftMargin = state.leftMargin;
    settings.topMargin = state.topMargin;
    settings.rightMargin = state.rightMargin;
    settings.bottomMargin = state.bottomMargin;
    settings.footer = state.footer;
    settings.footerRtf = state.footerText;
    settings.pageCounter = &printState().pageCounter;
    settings.expandPrintTokens = [](QTextDocument& page) { ExpandPrintTokens(page); };
    const PrinterOutcome outcome = printOnDefaultPrinter(document, settings, unusedPdfPath(title), title);
    ui::TaskFrm::close();
    if (pdfPath) {
        *pdfPath = outcome.pdfPath;
    }
    return tellPrintOutcome(outcome, what);
}

bool Editor::tellPrintOutcome(const PrinterOutcome& outcome, const QString& what)
{
    if (!outcome.ok) {
        showMessage(outcome.error, QStringLiteral("Printer error"), PromptButtons::Ok, PromptIcon::Critical);
        return false;
    }
    if (!outcome.pdfPath.isEmpty()) {
        showMessage(QStringLiteral("No printer is set up on this computer. ") + what + QStringLiteral(" written to ")
                + QDir::toNativeSeparators(outcome.pdfPath) + QLatin1Char('.'),
            QStringLiteral(" Print"), PromptButtons::Ok, PromptIcon::Information);
    }
    return true;
}

QString Editor::unusedPdfPath(const QString& baseName)
{
    return outputPdfPath(baseName, pdfFolder());
}

void Editor::iPrint2File()
{
    // The file is named as the message names it: on this system the case of
    // a name matters, and the clerk looks for what the message says.
    const QString path = QDir::current().absoluteFilePath(QStringLiteral("print.txt"));
    QByteArray text = ReportBuffer().toPlainText().toUtf8();
    text.replace(QByteArray("\xe2\x80\xa8"), QByteArray("\n"));
    QString error;
    if (!replaceFile(path, text + '\n', &error)) {
        showMessage(QStringLiteral("The report could not be written to ") + QDir::toNativeSeparators(path)
                        + QStringLiteral(": ") + error,
                    QStringLiteral(" Text Written"), PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    showMessage(QStringLiteral("Text written to a file called 'print.txt'\ninside the application directory."),
                QStringLiteral(" Text Written"), PromptButtons::Ok, PromptIcon::Information);
}

void Editor::iContinue()
{
    hide();
}

void Editor::iCancel()
{
    session().StopFlag = true;
    hide();
}

} // namespace pvardo::documents
