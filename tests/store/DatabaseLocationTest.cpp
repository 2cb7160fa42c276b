#include "store/DatabaseLocation.h"

#include "common/Session.h"
#include "common/TextFiles.h"
#include "support/ScriptedPrompts.h"
#include "support/TestInstallation.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::store;

TEST(DatabaseLocation, ConnectionStringAndForms)
{
    EXPECT_EQ(BuildConnectionString(QStringLiteral("/srv/db/pbproj.db")),
              QStringLiteral("PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=/srv/db/pbproj.db;"));
    EXPECT_EQ(dataSourceOf(BuildConnectionString(QStringLiteral("/srv/db/pbproj.db"))), QStringLiteral("/srv/db/pbproj.db"));
    EXPECT_EQ(databaseFile(QStringLiteral("/srv/db"), QStringLiteral("\\pbproj.mdb")), QStringLiteral("/srv/db/pbproj.db"));
    // A moved database folder takes its forms folder along, one level up.
    EXPECT_EQ(formsFolderFor(QStringLiteral("/srv/app/databases"), QStringLiteral("/opt/p")), QStringLiteral("/srv/app/forms"));
    EXPECT_EQ(formsFolderFor(QStringLiteral("/data"), QStringLiteral("/opt/p")), QStringLiteral("/forms"));
    EXPECT_EQ(formsFolderFor(QStringLiteral("data"), QStringLiteral("/opt/p")), QStringLiteral("/opt/p/forms"));
}

TEST(DatabaseLocation, AnEmptyFolderGetsTheSeedsAndOneMessage)
{
    test::TestInstallation install;
    Session& s = session();
    install.applyTo(s);
    const CheckResult result = CheckDatabases(s);
    EXPECT_TRUE(result.missing);
    EXPECT_TRUE(result.fellBackToDefault);
    EXPECT_EQ(result.seeded.size(), 8);
    for (const char* name : {"meeting.db", "pbseqra.db", "pbagency.db", "pbreview.db", "db5.db", "db6.db", "db7.db", "sbl.db"}) {
        EXPECT_TRUE(QFileInfo::exists(install.path(QStringLiteral("databases/") + QLatin1String(name)))) << name;
    }
    EXPECT_FALSE(QFileInfo::exists(install.path(QStringLiteral("databases/pbproj.db"))));
    ASSERT_EQ(test::scriptedPrompts().shown().size(), 1);
    EXPECT_EQ(test::scriptedPrompts().shown().first().text, missingDatabasesMessage());
    EXPECT_TRUE(test::scriptedPrompts().shown().first().title.isEmpty());
    EXPECT_EQ(s.FormsFolder, install.path(QStringLiteral("forms")));
    EXPECT_EQ(s.ParcelStoreVersion, 13);

    // The case table has no seed: its absence shows when a screen opens it.
    StoreStatus status;
    EXPECT_FALSE(openRecordsetAt(install.path(QStringLiteral("databases/pbproj.db")), QStringLiteral("Select * from PBPROJ"), &status));
    EXPECT_EQ(status.number, StoreErrorNumber::DatabaseNotFound);

    // A second check finds everything and says nothing.
    test::scriptedPrompts().clear();
    EXPECT_FALSE(CheckDatabases(s).missing);
    EXPECT_TRUE(test::scriptedPrompts().shown().isEmpty());
}

TEST(DatabaseLocation, AFolderThatDoesNotExistFallsBackToTheDefault)
{
    test::TestInstallation install;
    Session& s = session();
    install.applyTo(s);
    s.DatabaseFolder = QStringLiteral("/no/such/drive/data");
    CheckDatabases(s);
    EXPECT_EQ(s.DatabaseFolder, install.databaseFolder());
    EXPECT_EQ(test::scriptedPrompts().shown().size(), 1);
}

TEST(DatabaseLocation, AMovedFolderIsKeptAndItsVersionRead)
{
    test::TestInstallation install;
    Session& s = session();
    install.applyTo(s);
    const QString elsewhere = install.path(QStringLiteral("shared/data"));
    QDir().mkpath(elsewhere);
    ASSERT_TRUE(createDatabaseFile(elsewhere + QStringLiteral("/pbproj.db"), tableDef(Table::PBPROJ)).ok());
    ASSERT_TRUE(replaceTextLines(elsewhere + QStringLiteral("/sblversion.txt"), {QStringLiteral("18")}));
    s.DatabaseFolder = elsewhere;
    const CheckResult result = CheckDatabases(s);
    EXPECT_FALSE(result.fellBackToDefault);
    EXPECT_EQ(s.DatabaseFolder, elsewhere);
    EXPECT_EQ(s.FormsFolder, install.path(QStringLiteral("shared/forms")));
    EXPECT_EQ(s.ParcelStoreVersion, 18);
    EXPECT_EQ(result.seeded.size(), 8); // the seeded files were missing there
}
