#include "app/ProgramFolder.h"

#include "admin/Installation.h"
#include "common/PromptService.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

namespace pvardo::app {

namespace {

QString withoutTrailingSlash(QString folder)
{
    while (folder.size() > 1 && folder.endsWith(QLatin1Char('/'))) {
        folder.chop(1);
    }
    return folder;
}

// A program under /usr was installed by the package manager (or by `cmake
// --install` with its default prefix): its folder is not the user's to write.
bool installedUnderUsr(const QString& programDir)
{
    const QString folder = QDir::cleanPath(programDir);
    return folder == QLatin1String("/usr") || folder.startsWith(QLatin1String("/usr/"));
}

QString makeByHandAdvice(const QString& folder)
{
    return QStringLiteral("\n\nMake an installation there with:\n    pvardo-admin --home ") + folder
        + QStringLiteral(" init\nor start the program with PVARDO_HOME naming the office's installation.");
}

} // namespace

ProgramFolderChoice chooseProgramFolder(const QString& named, const QString& programDir,
                                        const QString& userDataFolder)
{
    if (!named.isEmpty()) {
        return {withoutTrailingSlash(QDir(named).absolutePath()), FolderOrigin::Named};
    }
    if (installedUnderUsr(programDir) && !userDataFolder.isEmpty()) {
        return {withoutTrailingSlash(QDir::cleanPath(userDataFolder + QStringLiteral("/pvardo"))),
            FolderOrigin::UserData};
    }
    return {withoutTrailingSlash(programDir), FolderOrigin::ProgramsOwn};
}

ProgramFolderChoice programFolderChoice()
{
    return chooseProgramFolder(qEnvironmentVariable("PVARDO_HOME"), QCoreApplication::applicationDirPath(),
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
}

QString programFolder()
{
    return programFolderChoice().folder;
}

bool prepareProgramFolder(const ProgramFolderChoice& choice)
{
    if (choice.origin != FolderOrigin::UserData) {
        return true;
    }
    admin::Installation installation(choice.folder);
    if (installation.looksLikeInstallation()) {
        return true;
    }
    const QString title = QStringLiteral(" New installation");
    const QString unusable = installation.unusableReason();
    if (!unusable.isEmpty()) {
        showMessage(QStringLiteral("pvardo keeps your installation in ") + choice.folder
                + QStringLiteral(", but none can be made there.\n\n") + unusable + makeByHandAdvice(choice.folder),
            title, PromptButtons::Ok, PromptIcon::Critical);
        return false;
    }
    if (!installation.make()) {
        showMessage(QStringLiteral("The new installation in ") + choice.folder
                + QStringLiteral(" could not be made:\n    ")
                + installation.failures().join(QStringLiteral("\n    ")) + makeByHandAdvice(choice.folder),
            title, PromptButtons::Ok, PromptIcon::Critical);
        return false;
    }
    showMessage(QStringLiteral("This is the first start of pvardo for you on this computer: a new, empty "
                               "installation was made in ")
            + choice.folder + QStringLiteral(".\n\nLog on as ") + admin::Installation::defaultAdminName()
            + QStringLiteral(" with the password ") + admin::Installation::defaultAdminPassword()
            + QStringLiteral(" and change the password under Options > Change Password. To work on the "
                             "office's shared installation instead, set PVARDO_HOME to its folder."),
        title, PromptButtons::Ok, PromptIcon::Information);
    return true;
}

} // namespace pvardo::app
