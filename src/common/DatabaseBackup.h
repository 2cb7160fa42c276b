#pragma once

#include <QString>
#include <functional>

namespace pvardo {

// The copy of the office's databases to a safe place, as the program runs it
// (at exit, by the office's backup policy).
//
// Mode 1 asks for the destination with the folder picker; mode 2 uses the
// stored BackupFolder (and asks when none is stored). A destination that does
// not pass the destination test is said, and the picker comes up until a
// choice passes or the user cancels; a cancel sets StopFlag, which is clear
// once a destination is found and the copy runs. The database
// folder is then copied into the destination, arriving there as a subfolder
// of its own name, each database file through SQLite's online backup (see
// ShellCopy), and the result is told: " Completed" or " Backup Failed".
void BackupDatabases(int mode);

// The folder picker the backup asks with, given its title: the program
// installs the screens' picker. Without one, asking gives no folder, which
// reads as a cancel. Gives back the picker it replaces.
using BackupFolderPicker = std::function<QString(const QString& title)>;
BackupFolderPicker setBackupFolderPicker(BackupFolderPicker picker);

// The title of the picker.
QString backupPickerTitle();

// The destination test: a path passes when it names a folder that is there,
// empty or not (with or without a trailing "/"). A missing folder (a drive
// not plugged in, a share not connected) or a file fails.
bool backupDestinationPasses(const QString& destination);

} // namespace pvardo
