#pragma once

#include "common/TextFiles.h"
#include "store/DatabaseLocation.h"

#include <QString>

namespace pvardo::cli {

// The database folder of an installation, as the program finds it: the
// folder PVardo.ini names when it holds databases, else the databases folder
// of the installation.
inline QString databaseFolderOf(const QString& home)
{
    return store::chooseDatabaseFolder(home).folder;
}

} // namespace pvardo::cli
