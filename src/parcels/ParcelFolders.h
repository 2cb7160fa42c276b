#pragma once

#include <QString>

namespace pvardo {
struct Session;
}

namespace pvardo::parcels {

// Points a session at an installation folder for the parcel commands of the
// admin tool: the database folder is chosen as the program chooses it
// (chooseDatabaseFolder); the parcel store is sbl.db in it. Gives false, with
// a reason, when the folder named in PVardo.ini is missing or holds no
// database, or when no folder holds one: nothing is then to be written.
bool useInstallationFolders(const QString& programFolder, Session& session, QString* error = nullptr);

} // namespace pvardo::parcels
