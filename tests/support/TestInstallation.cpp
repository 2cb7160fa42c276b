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
