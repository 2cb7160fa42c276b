#pragma once

#include "common/TextFiles.h"

#include <QString>

namespace pvardo::cli {

// The database folder of an installation, as the program finds it: the first
// line of PVardo.ini, or the databases folder of the installation.
inline QString databaseFolderOf(const QString& home)
{
    if (const auto lines = readTextLines(joinPath(home, QStringLiteral("\\PVardo.ini")));
        lines && !lines->isEmpty() && !lines->constFirst().trimmed().isEmpty()) {
        return lines->constFirst().trimmed();
    }
    return joinPath(home, QStringLiteral("\\databases"));
}

} // namespace pvardo::cli
