#include "documents/screens/Letters.h"

#include "documents/FormDefinitions.h"
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
#include <QDir>
#include <QTextDocument>

namespace pvardo::documents {

namespace {

bool finishMerge(const FormLoad& load)
{
    if (!load.ok) {
        showMessage(load.message, formFileMessageTitle(), PromptButtons::Ok, PromptIcon::Critical);
    } else {
        showBuiltReport();
    }
    WaitSeconds(1);
    ui::TaskFrm::close();
    return load.ok;
}

} // namespace

PrintChoice doprint(int screenCode, const QStringList& builtIn, QWidget* parent)
{
    PrintChoice result;
    const FormDefinitions custom
        = readFormDefinitions(QDir(session().FormsFolder).filePath(customFileName(screenCode)));
    const QList<FormEntry> customForms = custom.entries;
    printState().ReportList = makeReportList(builtIn, customForms);
    PrintFrm dialog(parent);
    if (prompts().exec(dialog) != QDialog::Accepted || session().StopFlag) {
        return result;
    }
    result.chosen = true;
    result.choice = printState().ReportChoice;
    result.customFile = customFormFor(customForms, result.choice);
    if (!result.customFile.isEmpty()) {
        MergeFormFile(result.customFile, screenCode);
    }
    return result;
}

bool MergeFormFile(const QString& fileName, int screenCode)
{
    ui::TaskFrm::open(QStringLiteral("Printing to default printer..."));
    Editor& editor = Editor::instance();
    editor.clearBuffers();
    editor.setOrigin(QString());
    const FormLoad load = mergeFormFile(editor.ReportBuffer(), fileName, screenCode);
    return finishMerge(load);
}

bool mergeAndShow(const QString& path, int screenCode, const Addressee& addressee)
{
    ui::TaskFrm::open(QStringLiteral("Printing to default printer..."));
    Editor& editor = Editor::instance();
    editor.clearBuffers();
    editor.setOrigin(QString());
    const FormLoad load = mergeTemplate(editor.ReportBuffer(), path, screenCode, addressee);
    return finishMerge(load);
}

void showBuiltReport()
{
    Editor& editor = Editor::instance();
    if (!printState().preview) {
        editor.showReport();
        return;
    }
    // The notepad lets go of what it holds first: the clerk may still be
    // editing the last letter, which lives in the same file.
    NotepadFrm& notepad = NotepadFrm::shared();
    if (!notepad.askToSaveChanges()) {
        return;
    }
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
    if (notepad.openDocument(path)) {
        notepad.show();
        notepad.raise();
        notepad.activateWindow();
    }
}

} // namespace pvardo::documents
