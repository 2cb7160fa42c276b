#include "documents/screens/Letters.h"

#include "documents/FormDefinitions.h"
#include "documents/Listing.h"
#include "documents/Merge.h"
#include "documents/RtfWriter.h"
#include "documents/screens/Editor.h"
#include "documents/screens/NotepadFrm.h"
#include "documents/screens/PrintFrm.h"

#include "common/TextFiles.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "common/Waiting.h"
#include "ui/TaskFrm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QDir>
#include <QTextDocument>

namespace pvardo::documents {

namespace {

// `printAtOnce`: without "Allow view /edit" the letter goes to the printer
// without being shown.
bool finishMerge(const FormLoad& load, const QString& title, bool printAtOnce = false)
{
    if (load.noAddressee) {
        showMessage(load.message, noAddresseeTitle(), PromptButtons::Ok, PromptIcon::Exclamation);
    } else if (!load.ok) {
        showMessage(load.message, formFileMessageTitle(), PromptButtons::Ok, PromptIcon::Critical);
    } else {
        Editor::instance().setTitle(title);
        if (printAtOnce && !printState().preview) {
            Editor::instance().printCopies(1);
        } else {
            showBuiltReport();
        }
    }
    WaitSeconds(1);
    ui::TaskFrm::close();
    return load.ok;
}

} // namespace

QString caseReportTitle(const QString& caption)
{
    const QString number = session().CurrentCase.trimmed();
    return number.isEmpty() ? caption.trimmed() : caption.trimmed() + QLatin1Char(' ') + number;
}

PrintChoice doprint(int screenCode, const QStringList& builtIn, QWidget* parent, const QString& preselected)
{
    PrintChoice result;
    const FormDefinitions custom
        = readFormDefinitions(QDir(session().FormsFolder).filePath(customFileName(screenCode)));
    const QList<FormEntry> customForms = custom.entries;
    printState().ReportList = makeReportList(builtIn, customForms);
    PrintFrm dialog(parent);
    if (!preselected.isEmpty()) {
        if (auto* types = dialog.findChild<QComboBox*>(QStringLiteral("Combo2"))) {
            types->setCurrentIndex(types->findText(preselected));
        }
    }
    if (prompts().exec(dialog) != QDialog::Accepted || session().StopFlag) {
        return result;
    }
    result.chosen = true;
    result.choice = printState().ReportChoice;
    result.customFile = customFormFor(customForms, result.choice);
    if (!result.customFile.isEmpty()) {
        // The caption as the office wrote it, of the entry that wins.
        QString caption;
        for (const FormEntry& entry : customForms) {
            if (entry.caption.toUpper() == result.choice) {
                caption = entry.caption;
            }
        }
        MergeFormFile(result.customFile, screenCode, caption);
    }
    return result;
}

bool MergeFormFile(const QString& fileName, int screenCode, const QString& caption)
{
    ui::TaskFrm::open(QStringLiteral("Printing to default printer..."));
    Editor& editor = Editor::instance();
    editor.clearBuffers();
    editor.setOrigin(QString());
    const FormLoad load = mergeFormFile(editor.ReportBuffer(), fileName, screenCode);
    return finishMerge(load, caseReportTitle(caption.isEmpty() ? QFileInfo(fileName).completeBaseName() : caption));
}

bool mergeAndPrint(const QString& path, int screenCode, const Addressee& addressee, const QString& party,
                   const QString& caption, EmptyLines lines)
{
    ui::TaskFrm::open(QStringLiteral("Printing to default printer..."));
    Editor& editor = Editor::instance();
    editor.clearBuffers();
    editor.setOrigin(QString());
    const FormLoad load = mergeTemplate(editor.ReportBuffer(), path, screenCode, addressee, party, lines);
    return finishMerge(load, caseReportTitle(caption), true);
}

void showBuiltReport()
{
    Editor& editor = Editor::instance();
    if (!printState().preview) {
        editor.showReport();
        return;
    }
    if (isListing(editor.ReportBuffer())) {
        // A listing is edited where it prints: the report window sets its
        // rows on the paper they fit, the notepad would break them.
        editor.showReport();
        if (auto* allow = editor.findChild<QCheckBox*>(QStringLiteral("Check1"))) {
            allow->setChecked(true);
        }
        return;
    }
    // The notepad lets go of what it holds first: the clerk may still be
    // editing the last letter, which lives in the same file.
    NotepadFrm& notepad = NotepadFrm::shared();
    if (!notepad.askToSaveChanges()) {
        return;
    }
    // The clerk edits the letter as it will print: its logo and signature
    // are pictures, or gone while none is chosen.
    ExpandPictureTokens(editor.ReportBuffer());
    QString folder = session().TempFolder;
    if (folder.isEmpty()) {
        folder = QDir::tempPath();
    }
    const QString path = QDir(folder).filePath(QStringLiteral("tmp.rtf"));
    QString error;
    if (!replaceFile(path, writeRtf(editor.ReportBuffer()), &error)) {
        // Without the file the letter is edited in the report window itself.
        editor.showReport();
        if (auto* allow = editor.findChild<QCheckBox*>(QStringLiteral("Check1"))) {
            allow->setChecked(true);
        }
        return;
    }
    if (notepad.openReport(path, editor.title())) {
        notepad.show();
        notepad.raise();
        notepad.activateWindow();
    }
}

} // namespace pvardo::documents
