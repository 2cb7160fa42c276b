#include "parcels/ParcelFolders.h"

#include "common/Session.h"
#include "common/TextFiles.h"
#include "store/DatabaseLocation.h"

#include <QDir>
#include <QFileInfo>

namespace pvardo::parcels {

bool useInstallationFolders(const QString& programFolder, Session& session, QString* error)
{
    if (!QFileInfo(programFolder).isDir()) {
        if (error) {
            *error = QStringLiteral("%1 is not a folder.").arg(QDir::toNativeSeparators(programFolder));
        }
        return false;
    }
    session.ProgramFolder = programFolder;
    // The program's rule, so that the roll goes where the program reads it.
    // A named folder without databases is most often a shared folder that is
    // not connected: nothing is written, neither there nor in the default.
    const store::DatabaseFolderChoice choice = store::chooseDatabaseFolder(programFolder);
    QString problem = store::databaseFolderProblem(choice);
    if (problem.isEmpty() && (choice.namedIsEmpty || choice.namedIsMissing)) {
        problem = QStringLiteral("The database folder %1 named in PVardo.ini %2; the program would use %3 "
                                 "instead. If the databases are on a shared folder, make sure it is connected, or "
                                 "name the right folder in Preferences. Nothing was written.")
                      .arg(QDir::toNativeSeparators(choice.named),
                          choice.namedIsMissing ? QStringLiteral("is not there")
                                                : QStringLiteral("holds no database"),
                          QDir::toNativeSeparators(choice.folder));
    }
    if (!problem.isEmpty()) {
        if (error) {
            *error = problem;
        }
        return false;
    }
    const QString databaseFolder = choice.folder;
    session.DatabaseFolder = databaseFolder;
    if (session.ParcelDatabasePath.isEmpty()) {
        session.ParcelDatabasePath = store::databaseFile(databaseFolder, QStringLiteral("sbl.mdb"));
    }
    return true;
}

} // namespace pvardo::parcels
