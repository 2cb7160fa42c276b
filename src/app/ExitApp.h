#pragma once

#include <functional>

namespace pvardo::app {

// The one way out of a session: stores the parcel store's version in
// sblversion.txt of the database folder, runs the office's backup policy
// (BackupMode 1 copies, 0 asks, 2 leaves it to the administrator) and ends the
// process at once through EndProgram. Open screens are not asked; an unsaved
// edit elsewhere is lost, as the office expects.
void ExitApp();

// The backup ExitApp runs, given its mode (2: the stored backup folder): the
// copy of the databases (pvardo::BackupDatabases) unless a handler is put in
// its place, as a test does to record it. An empty handler restores the copy.
using BackupDatabasesHandler = std::function<void(int destination)>;
BackupDatabasesHandler setBackupDatabasesHandler(BackupDatabasesHandler handler);
void BackupDatabases(int destination);

// Writes the parcel store's version to sblversion.txt of the database folder,
// replacing the file whole; false when it could not be written.
bool writeParcelStoreVersion();

} // namespace pvardo::app
