#include "common/DatabaseBackup.h"

#include "common/PromptService.h"
#include "common/Session.h"
#include "common/ShellCopy.h"
#include "common/Waiting.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace pvardo {

namespace {

BackupFolderPicker& picker()
{
    static BackupFolderPicker installed;
    return installed;
}

// The destination as the copy takes it: without a trailing "/", but a root
// stays a root.
QString withoutTrailingSlash(QString destination)
{
    while (destination.size() > 1 && (destination.endsWith(QLatin1Char('/')) || destination.endsWith(QLatin1Char('\\')))) {
        destination.chop(1);
    }
    return destination;
}

} // namespace

BackupFolderPicker setBackupFolderPicker(BackupFolderPicker replacement)
{
    BackupFolderPicker previous = std::move(picker());
    picker() = std::move(replacement);
    return previous;
}

QString backupPickerTitle()
{
    return QStringLiteral("Locate the drive and directory to store the backup databases.");
}

bool backupDestinationPasses(const QString& destination)
{
    // Any folder that is there will do, an empty one (a new stick, a fresh
    // folder on the share) as well as one holding earlier copies. A missing
    // folder, or a file, is no place to copy to.
    return !destination.trimmed().isEmpty() && QFileInfo(destination).isDir();
}

void BackupDatabases(int mode)
{
    Session& state = session();
    for (;;) {
        QString destination;
        if (mode == 1 || state.BackupFolder.trimmed().isEmpty()) {
            destination = picker() ? picker()(backupPickerTitle()) : QString();
            if (destination.isEmpty()) {
                state.StopFlag = true;
                return;
            }
        } else {
            destination = state.BackupFolder;
        }
        if (!backupDestinationPasses(destination)) {
            showMessage(QStringLiteral("The default backup destination ") + QDir::toNativeSeparators(destination)
                    + QStringLiteral(" cannot be found.\nYou must select the destination manually."),
                QStringLiteral(" Backup database"), PromptButtons::Ok, PromptIcon::Exclamation);
            state.StopFlag = true;
            mode = 1;
            continue;
        }
        destination = withoutTrailingSlash(destination);
        // A destination was found: the copy runs, whatever came before.
        state.StopFlag = false;

        QString error;
        const int result = ShellCopy(ShellOperation::Copy, state.DatabaseFolder, destination,
            ShellFlags::NoConfirmation | ShellFlags::NoConfirmMkdir, &error);
        QCoreApplication::processEvents();
        WaitSeconds(1);
        if (result != ShellResult::Success) {
            showMessage(QStringLiteral("The backup operation has failed or canceled.\n"
                                       "Until successful, you will not have a good set\n"
                                       "of database files. Please check your source and\n"
                                       "destination folder locations and try again.     "),
                QStringLiteral(" Backup Failed"), PromptButtons::Ok, PromptIcon::Critical);
            return;
        }
        showMessage(QStringLiteral("You will find the backup database on the location you selected:\n")
                + QDir::toNativeSeparators(destination) + QStringLiteral("/databases/\n")
                + QStringLiteral("Please ensure the safe removal of your\n"
                                 "removable media and store it in a safe place. "),
            QStringLiteral(" Completed"), PromptButtons::Ok, PromptIcon::Information);
        return;
    }
}

} // namespace pvardo
