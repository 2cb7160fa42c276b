#pragma once

#include "store/Catalogue.h"

#include <QString>
#include <QTemporaryDir>

namespace pvardo {
struct Session;
}

namespace pvardo::test {

// A program folder in a temporary folder, as an installation has it: wrk/
// with the seeds made by the build, an empty databases/, forms/ with a report
// header, and Users.Set with the administrator ADMIN, password PLANNING. The
// folder goes when the object does.
class TestInstallation
{
public:
    TestInstallation();

    bool isValid() const { return m_dir.isValid(); }
    QString programFolder() const;
    QString databaseFolder() const;
    // A path below the program folder, in the office's form or plain.
    QString path(const QString& relative) const;
    // The database file of a table in the databases folder, made empty.
    QString createDatabase(store::Table table) const;
    // Points the session's folders at this installation.
    void applyTo(Session& session) const;
    // The bytes of the user file it starts with.
    static QByteArray usersFileBytes();

private:
    QTemporaryDir m_dir;
};

} // namespace pvardo::test
