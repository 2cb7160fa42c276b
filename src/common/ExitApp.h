#pragma once

#include <functional>

namespace pvardo {

// The one way out of a session: first the windows that hold a document of
// their own are asked (see addExitQuestion); when every one agrees, stores
// the parcel store's version in sblversion.txt of the database folder, runs
// the office's backup policy (BackupMode 1 copies, 0 asks, 2 leaves it to the
// administrator; a backup whose destination question is cancelled is said
// once) and ends the process at once through EndProgram. The record
// screens are not asked; an unsaved edit there is lost, as the office
// expects. False when a window kept the program running.
bool ExitApp();

// A question a window asks before the session ends, such as the notepad's
// about an unsaved change; false keeps the program running. Questions are
// asked in the order they were added. addExitQuestion gives the number that
// removes the question again.
using ExitQuestion = std::function<bool()>;
int addExitQuestion(ExitQuestion question);
void removeExitQuestion(int id);

// The backup ExitApp runs, given its mode (2: the stored backup folder). By
// default BackupDatabases; a test may put a recorder in its place. An empty
// handler restores the default. Gives back the handler it replaces.
using BackupDatabasesHandler = std::function<void(int mode)>;
BackupDatabasesHandler setBackupDatabasesHandler(BackupDatabasesHandler handler);

// Writes the parcel store's version to sblversion.txt of the database folder,
// replacing the file whole; false when it could not be written.
bool writeParcelStoreVersion();

} // namespace pvardo
