#pragma once

#include "cli/AdminCommand.h"
#include "store/DatabaseLocation.h"

#include <QString>

namespace pvardo::cli {

// The database folder of an installation, as the program finds it at its
// start, for a command that reads or writes the databases. When the folder
// the settings name is missing or holds no database (a shared folder that did
// not connect), or no folder holds a database at all, the command says so as
// the program's start says it, and gives an empty folder: it must then touch
// nothing, least of all the installation's own databases folder, whose files
// are not the office's.
inline QString usableDatabaseFolder(CommandContext& context, const char* command)
{
    const store::DatabaseFolderChoice choice = store::chooseDatabaseFolder(context.home);
    QString problem = store::databaseFolderProblem(choice);
    if (problem.isEmpty()) {
        problem = store::unreachableFolderMessage(choice.named, context.home).simplified();
    }
    if (!problem.isEmpty()) {
        context.err << "pvardo-admin " << command << ": " << problem << Qt::endl;
        return {};
    }
    return choice.folder;
}

} // namespace pvardo::cli
