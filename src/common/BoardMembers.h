#pragma once

#include <QString>
#include <QStringList>

namespace pvardo {

// The board members offered by the case and minutes screens: the non-blank
// lines of \Inspectors.txt in the database folder, one name a line. The
// screens' list has room for 49 names (its first entry stays empty); the names
// after the 49th are not read. A missing or unreadable file gives no names.
class BoardMembers
{
public:
    static constexpr int capacity = 49;

    static QStringList read(const QString& databaseFolder);
    // Writes the list whole: the names, trimmed, blank ones left out.
    static bool write(const QString& databaseFolder, const QStringList& names, QString* error = nullptr);
    static QString fileOf(const QString& databaseFolder);
};

} // namespace pvardo
