#pragma once

#include <QString>

namespace pvardo::app {

// Where the installation folder of a run comes from.
enum class FolderOrigin {
    Named,       // PVARDO_HOME names it
    ProgramsOwn, // the folder of the running program, which holds the whole installation
    UserData,    // the user's own folder, for a program installed under /usr
};

struct ProgramFolderChoice
{
    QString folder;
    FolderOrigin origin = FolderOrigin::ProgramsOwn;
};

// The rule for the installation folder: the folder `named` (PVARDO_HOME) when
// it is set; else, when the program lives under /usr (installed from the
// package, where only root writes), pvardo/ in the user's data folder; else
// the folder of the program itself, as an office keeps a whole installation
// in one folder. No trailing slash.
ProgramFolderChoice chooseProgramFolder(const QString& named, const QString& programDir,
                                        const QString& userDataFolder);

// The rule on this process: PVARDO_HOME, the folder of the running program and
// the user's data folder ($XDG_DATA_HOME, by default ~/.local/share).
ProgramFolderChoice programFolderChoice();
QString programFolder();

// Before the program starts on the user's own folder: makes a new installation
// there when the folder holds none yet, and says where and how to log on. False
// when none can be made; the user has then been told why and how to make one
// with pvardo-admin. A named folder, or the program's own, is left as it is.
bool prepareProgramFolder(const ProgramFolderChoice& choice);

} // namespace pvardo::app
