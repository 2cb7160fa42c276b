#pragma once

#include <QString>

namespace pvardo {
struct Session;
}

namespace pvardo::parcels {

// Points a session at an installation folder for the parcel commands of the
// admin tool: the database folder is the one line 1 of PVardo.ini names when
// that folder is there, else databases/ of the installation; the parcel store
// is sbl.db in it. Gives false, with a reason, when there is no database folder.
bool useInstallationFolders(const QString& programFolder, Session& session, QString* error = nullptr);

} // namespace pvardo::parcels
