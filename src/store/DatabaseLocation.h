#pragma once

#include "store/StoreError.h"

#include <QString>
#include <QStringList>

namespace pvardo {
struct Session;
}

namespace pvardo::store {

// "PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=" path ";": every open in the
// program names its file this way, and screens keep the text per screen.
QString BuildConnectionString(const QString& path);

// The path named by a connection string; empty when it names none.
QString dataSourceOf(const QString& connectionString);

// The database file of a table's office name, in a folder: "pbproj.mdb" and
// "\pbproj.mdb" both give folder + "/pbproj.db".
QString databaseFile(const QString& folder, const QString& officeName);

// The forms folder that goes with a database folder: its parent with "/forms",
// so a database folder moved elsewhere takes its forms along. A folder without
// a separator gives the program folder with "/forms".
QString formsFolderFor(const QString& databaseFolder, const QString& programFolder);

// What CheckDatabases did.
struct CheckResult {
    bool missing = false;        // the message about missing databases was shown
    bool fellBackToDefault = false; // the named folder held no database
    QStringList seeded;          // files copied from wrk/
    QStringList failed;          // files that could not be copied, with the reason
};

// Checks the database folder at start-up and after a change of location: falls
// back to the program's own databases folder when the named one holds no
// database, puts an empty seed in place of each missing seeded file, reads the
// parcel store version, says once that something was missing, and sets the
// final database and forms folders of the session.
CheckResult CheckDatabases(Session& session);

// The database folder of an installation, by the rule the program follows at
// its start: the folder named on line 1 of PVardo.ini when it holds a
// database, else databases/ of the installation. Every command of the admin
// tool chooses by this rule, so that all of them and the program work on one
// folder.
struct DatabaseFolderChoice {
    QString named;       // the folder PVardo.ini names; the default when it names none
    QString folder;      // the folder chosen
    bool namedIsEmpty = false; // the named folder is there but holds no database (a share not mounted?)
    bool namedIsMissing = false; // the named folder is not there
    bool holdsDatabases = false; // the chosen folder holds a database
};
DatabaseFolderChoice chooseDatabaseFolder(const QString& programFolder);

// True when a folder holds at least one database file.
bool holdsAnyDatabase(const QString& folder);

// What an admin command says when the folder chosen is not where the
// installation's databases are expected; empty when all is well.
QString databaseFolderProblem(const DatabaseFolderChoice& choice);

// What the program says, and then ends, when the database folder its
// settings name is not its own databases folder and holds no database: most
// often a shared folder that did not connect. It never falls back to its own
// folder then, so that no day's work goes into databases nobody else sees;
// empty when the named folder is the installation's own or holds databases.
QString unreachableFolderMessage(const QString& namedFolder, const QString& programFolder);

// The message CheckDatabases shows when something was missing.
QString missingDatabasesMessage();

} // namespace pvardo::store
