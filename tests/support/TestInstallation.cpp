#include "support/TestInstallation.h"

#include "common/Session.h"
#include "common/TextFiles.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace pvardo::test {

TestInstallation::TestInstallation()
{
    QDir root(m_dir.path());
    root.mkpath(QStringLiteral("program/wrk"));
    root.mkpath(QStringLiteral("program/databases"));
    root.mkpath(QStringLiteral("program/forms"));
    const QDir seeds(QStringLiteral(PVARDO_SEED_DIR));
    const QStringList files = seeds.entryList({QStringLiteral("*.db")}, QDir::Files);
    EXPECT_FALSE(files.isEmpty()) << "no seeds in " << PVARDO_SEED_DIR;
    for (const QString& file : files) {
        QFile::copy(seeds.filePath(file), path(QStringLiteral("wrk/") + file));
    }
    // What every installation ships besides: the report header of the
    // letters and the user list with its administrator.
    replaceFile(path(QStringLiteral("forms/gTitle.rtf")), QByteArrayLiteral("{\\rtf1\\ansi Header\\par}\n"));
    replaceFile(path(QStringLiteral("Users.Set")), usersFileBytes());
}

QByteArray TestInstallation::usersFileBytes()
{
    // ADMIN / PLANNING / ADMIN, each scrambled with the key starting at 91.
    QByteArray bytes = "1\n";
    const char* const fields[] = {"ADMIN", "PLANNING", "ADMIN"};
    for (int f = 0; f < 3; ++f) {
        int key = 91;
        for (const char* c = fields[f]; *c; ++c, ++key) {
            bytes += static_cast<char>((static_cast<unsigned char>(*c) ^ key) & 0xFF);
        }
        bytes += f < 2 ? ',' : '\n';
    }
    return bytes;
}

QString TestInstallation::programFolder() const
{
    return m_dir.path() + QStringLiteral("/program");
}

QString TestInstallation::databaseFolder() const
{
    return programFolder() + QStringLiteral("/databases");
}

QString TestInstallation::path(const QString& relative) const
{
    return joinPath(programFolder(), relative);
}

QString TestInstallation::createDatabase(store::Table table) const
{
    const store::TableDef& def = store::tableDef(table);
    const QString file = databaseFolder() + QLatin1Char('/') + QString::fromLatin1(def.fileName);
    QFile::remove(file);
    const store::StoreStatus status = store::createDatabaseFile(file, def);
    EXPECT_TRUE(status.ok()) << status.description.toStdString();
    return file;
}

void TestInstallation::applyTo(Session& session) const
{
    session.ProgramFolder = programFolder();
    session.MasterDatabaseFolder = databaseFolder();
    session.DatabaseFolder = databaseFolder();
    session.FormsFolder = programFolder() + QStringLiteral("/forms");
    session.ParcelDatabasePath = databaseFolder() + QStringLiteral("/sbl.db");
}

} // namespace pvardo::test
