#include "common/ExitApp.h"

#include "common/DatabaseBackup.h"
#include "common/ProgramEnd.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "common/TextFiles.h"

#include <QList>

namespace pvardo {

namespace {

BackupDatabasesHandler& backupHandler()
{
    static BackupDatabasesHandler handler;
    return handler;
}

void runBackup(int mode)
{
    Session& state = session();
    state.StopFlag = false;
    if (backupHandler()) {
        backupHandler()(mode);
    } else {
        BackupDatabases(mode);
    }
    if (state.StopFlag) {
        // The destination question was cancelled: the program still ends,
        // but the office must know that tonight's copy is missing.
        showMessage(QStringLiteral("No backup of the databases was made: no destination was chosen."),
            QStringLiteral(" Backup database"), PromptButtons::Ok, PromptIcon::Exclamation);
    }
}

struct ExitQuestionEntry
{
    int id = 0;
    ExitQuestion question;
};

QList<ExitQuestionEntry>& exitQuestions()
{
    static QList<ExitQuestionEntry> questions;
    return questions;
}

} // namespace

int addExitQuestion(ExitQuestion question)
{
    static int lastId = 0;
    exitQuestions().append({++lastId, std::move(question)});
    return lastId;
}

void removeExitQuestion(int id)
{
    exitQuestions().removeIf([id](const ExitQuestionEntry& entry) { return entry.id == id; });
}

BackupDatabasesHandler setBackupDatabasesHandler(BackupDatabasesHandler handler)
{
    BackupDatabasesHandler previous = std::move(backupHandler());
    backupHandler() = std::move(handler);
    return previous;
}

bool writeParcelStoreVersion()
{
    const Session& state = session();
    if (state.DatabaseFolder.isEmpty()) {
        return false;
    }
    return replaceTextLines(joinPath(state.DatabaseFolder, QStringLiteral("\\sblversion.txt")),
        {QString::number(state.ParcelStoreVersion)});
}

bool ExitApp()
{
    // A copy: a question may close its window, which takes the question away.
    const QList<ExitQuestionEntry> questions = exitQuestions();
    for (const ExitQuestionEntry& entry : questions) {
        if (entry.question && !entry.question()) {
            return false;
        }
    }
    // A folder that cannot be written loses only this number, which the next
    // start reads again from the parcel store itself.
    writeParcelStoreVersion();
    const int mode = session().BackupMode;
    if (mode == 1) {
        runBackup(2);
    } else if (mode == 0) {
        Prompt question;
        question.title = QStringLiteral(" Backup database");
        question.text = QStringLiteral("Do you want to backup your database?    \nClick 'Yes' to backup.");
        question.buttons = PromptButtons::YesNo;
        question.icon = PromptIcon::Question;
        if (prompts().message(question) == PromptAnswer::Yes) {
            runBackup(2);
        }
    }
    EndProgram(0);
    return true;
}

} // namespace pvardo
