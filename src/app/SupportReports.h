#pragma once

#include <QString>
#include <QStringList>

namespace pvardo::app {

// The two reports a support call asks for, written in the program folder.

// The lines of appinfo.txt: the municipality, the installed programs and
// version as the settings hold them ("NI" when a setting is missing, which is
// then stored), the version built, the database and forms folders, the user,
// and the contact lines between two rules of equals signs.
QStringList applicationInfoLines(const QString& versionBuilt);

// Writes appinfo.txt in the program folder, replacing it; gives its path, or
// empty with the reason.
QString writeApplicationInfo(const QString& versionBuilt, QString* error = nullptr);

// The lines of the diagnostics report debug2.txt: the application
// information, then the system, the versions of Qt, SQLite and SANE, and each
// folder the program uses with whether it is there and its free space.
QStringList diagnosticsLines(const QString& versionBuilt);

// Writes appinfo.txt and debug2.txt in the program folder; gives the report's
// path, or empty with the reason.
QString writeDiagnosticsReport(const QString& versionBuilt, QString* error = nullptr);

} // namespace pvardo::app
