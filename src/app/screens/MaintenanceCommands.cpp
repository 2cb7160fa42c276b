#include "app/screens/MaintenanceCommands.h"

#include "app/SupportReports.h"
#include "common/ProgramEnd.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "documents/screens/Editor.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QTextDocument>
#include <QVBoxLayout>

namespace pvardo::app {

namespace {

// Starts a program of the program folder on its own; false when it is not
// there or does not start.
bool startFromProgramFolder(const QString& name, QString* path)
{
    *path = joinPath(session().ProgramFolder, name);
    const QFileInfo file(*path);
    return file.isFile() && file.isExecutable()
        && QProcess::startDetached(file.absoluteFilePath(), {}, session().ProgramFolder);
}

void showInReportWindow(const QString& title, const QStringList& lines)
{
    documents::Editor& editor = documents::Editor::instance();
    editor.clearBuffers();
    editor.setTitle(title);
    editor.ReportBuffer().setPlainText(lines.join(QLatin1Char('\n')));
    editor.showReport();
}

QString versionBuilt()
{
    return QCoreApplication::applicationVersion();
}

} // namespace

UpdateNotice::UpdateNotice(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("updatenotice"));
    setWindowTitle(QStringLiteral("Update"));
    auto* layout = new QVBoxLayout(this);
    const char* const texts[] = {
        "If you are on a network, please make sure that no one else   has VARDOPB currently open/running.",
        "The update process cannot be completed if the program is open or in use. You must also have "
        "administrator privileges in order to perform an update.",
    };
    int number = 1;
    for (const char* text : texts) {
        auto* label = new QLabel(QString::fromLatin1(text), this);
        label->setObjectName(QStringLiteral("Label%1").arg(number++));
        label->setWordWrap(true);
        layout->addWidget(label);
    }
    auto* buttons = new QHBoxLayout;
    auto* cancel = new QPushButton(QStringLiteral(" Cancel "), this);
    cancel->setObjectName(QStringLiteral("ICancel"));
    auto* proceed = new QPushButton(QStringLiteral("Continue with update "), this);
    proceed->setObjectName(QStringLiteral("iContinue"));
    cancel->setDefault(true);
    buttons->addStretch();
    buttons->addWidget(cancel);
    buttons->addWidget(proceed);
    layout->addLayout(buttons);
    connect(cancel, &QPushButton::clicked, this, &UpdateNotice::ICancel);
    connect(proceed, &QPushButton::clicked, this, &UpdateNotice::iContinue);
    setFixedWidth(420);
}

void UpdateNotice::ICancel()
{
    session().StopFlag = true;
    reject();
}

void UpdateNotice::iContinue()
{
    session().StopFlag = false;
    accept();
}

void repairAttempt()
{
    QString path;
    if (!startFromProgramFolder(QStringLiteral("dbMender"), &path)) {
        showMessage(
            QStringLiteral("The repair tool %1 is not installed or cannot be started.\n\n"
                           "Ask the administrator to run \"pvardo-admin repair\" while the program is "
                           "closed on every workstation. The program stays open.")
                .arg(QDir::toNativeSeparators(path)),
            QStringLiteral(" Repair"), PromptButtons::Ok, PromptIcon::Exclamation);
        return;
    }
    // The tool needs the databases closed: the program ends here, without
    // the backup or the version of a normal exit.
    EndProgram(0);
}

void checkUpdates(QWidget* parent)
{
    // Closing the notice any other way is a cancel.
    session().StopFlag = true;
    UpdateNotice notice(parent);
    prompts().exec(notice);
    if (session().StopFlag) {
        return;
    }
    QString path;
    if (!startFromProgramFolder(QStringLiteral("Updater"), &path)) {
        showMessage(
            QStringLiteral("The updater %1 is not installed or cannot be started. Nothing was changed.")
                .arg(QDir::toNativeSeparators(path)),
            QStringLiteral(" Update"), PromptButtons::Ok, PromptIcon::Exclamation);
        return;
    }
    EndProgram(0);
}

void showApplicationInfo()
{
    QString error;
    if (writeApplicationInfo(versionBuilt(), &error).isEmpty()) {
        // The report is still worth reading on the screen.
        showMessage(QStringLiteral("appinfo.txt could not be written: ") + error,
            QStringLiteral(" Application Info"), PromptButtons::Ok, PromptIcon::Exclamation);
    }
    showInReportWindow(QStringLiteral("Application Info"), applicationInfoLines(versionBuilt()));
}

void showDiagnosticsReport()
{
    QString error;
    const QString report = writeDiagnosticsReport(versionBuilt(), &error);
    if (report.isEmpty()) {
        showMessage(QStringLiteral("The diagnostics report could not be written: ") + error,
            QStringLiteral(" Diagnostics"), PromptButtons::Ok, PromptIcon::Exclamation);
    }
    const auto written = report.isEmpty() ? std::nullopt : readTextLines(report);
    showInReportWindow(QStringLiteral("Diagnostics"), written ? *written : diagnosticsLines(versionBuilt()));
}

} // namespace pvardo::app
