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
    QString databaseFolder = joinPath(programFolder, QStringLiteral("\\databases"));
    const auto settings = readTextLines(joinPath(programFolder, QStringLiteral("\\PVardo.ini")));
    if (settings && !settings->isEmpty()) {
        const QString named = settings->first().trimmed();
        if (!named.isEmpty() && QFileInfo(named).isDir()) {
            databaseFolder = QDir::cleanPath(named);
        }
    }
    if (!QFileInfo(databaseFolder).isDir()) {
        if (error) {
            *error
                = QStringLiteral("The installation %1 has no database folder (%2).")
                      .arg(QDir::toNativeSeparators(programFolder), QDir::toNativeSeparators(databaseFolder));
        }
        return false;
    }
    session.DatabaseFolder = databaseFolder;
    if (session.ParcelDatabasePath.isEmpty()) {
        session.ParcelDatabasePath = store::databaseFile(databaseFolder, QStringLiteral("sbl.mdb"));
    }
    return true;
}

} // namespace pvardo::parcels
