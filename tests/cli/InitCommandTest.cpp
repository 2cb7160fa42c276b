#include "admin/Installation.h"
#include "admin/UserList.h"
#include "app/Startup.h"
#include "common/ProgramEnd.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "parcels/RpsImport.h"
#include "store/Catalogue.h"
#include "store/Recordset.h"
#include "support/AdminTool.h"
#include "support/ScriptedPrompts.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace pvardo;
using pvardo::test::AdminRun;
using pvardo::test::runAdmin;

namespace {

class QuietHost final : public app::StartupHost
{
public:
    void showSplash() override { }
    void closeSplash() override { }
    bool logOn() override
    {
        session().LoggedIn = true;
        return true;
    }
    void showWaitNotice() override { }
    void closeWaitNotice() override { }
    void showMainWindow() override { mainWindowShown = true; }
    void bringToFront() override { }
    bool mainWindowShown = false;
};

} // namespace

TEST(InitCommand, MakesACompleteInstallationThatStarts)
{
    QTemporaryDir dir;
    const QString home = dir.filePath(QStringLiteral("planning"));
    const AdminRun run = runAdmin({QStringLiteral("--home"), home, QStringLiteral("init")});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.contains(QLatin1String("Log on as ADMIN with the password PLANNING")));

    const auto settings = readTextLines(home + QStringLiteral("/PVardo.ini"));
    ASSERT_TRUE(settings.has_value());
    EXPECT_EQ(*settings, admin::Installation::defaultSettingsLines(home + QStringLiteral("/databases")));
    ASSERT_EQ(settings->size(), 14);
    // The repair tool and the updater are linked in from beside the tool
    // that made the installation, where the program starts them.
    for (const char* name : {"dbMender", "Updater"}) {
        const QString tool = QString::fromLatin1(name);
        const QFileInfo link(home + QLatin1Char('/') + tool);
        EXPECT_TRUE(link.isSymLink()) << tool.toStdString();
        EXPECT_EQ(link.symLinkTarget(), QStringLiteral(PVARDO_BINARY_DIR "/") + tool);
        EXPECT_TRUE(link.isExecutable()) << tool.toStdString();
    }

    const auto users = admin::UserList::read(home + QStringLiteral("/Users.Set"));
    ASSERT_TRUE(users.has_value());
    ASSERT_EQ(users->entries.size(), 1);
    EXPECT_EQ(users->entries.first().name, QStringLiteral("ADMIN"));
    EXPECT_EQ(users->entries.first().level, QStringLiteral("ADMIN"));
    EXPECT_TRUE(users->entries.first().accepts(QStringLiteral("planning")));

    // Every database file, empty, with its table.
    for (const store::TableDef& table : store::allTables()) {
        const QString file = QString::fromLatin1(table.fileName);
        // sbl.db holds the parcel table of the current format.
        const bool inDatabases
            = table.id != store::Table::SBL18 && (store::databaseFileNames().contains(file) || table.seeded);
        if (inDatabases) {
            store::StoreStatus status;
            const auto rows = store::openRecordsetAt(home + QStringLiteral("/databases/") + file,
                QStringLiteral("Select * from ") + QLatin1String(table.tableName), &status);
            ASSERT_TRUE(rows) << file.toStdString() << ": " << status.description.toStdString();
            EXPECT_EQ(rows->RecordCount(), 0) << file.toStdString();
        }
        if (table.seeded) {
            EXPECT_TRUE(QFile::exists(home + QStringLiteral("/wrk/") + file)) << file.toStdString();
        }
    }
    EXPECT_FALSE(QFile::exists(home + QStringLiteral("/databases/sbl18.db")));
    EXPECT_EQ(
        QDir(home + QStringLiteral("/databases")).entryList({QStringLiteral("*.db")}, QDir::Files).size(),
        store::databaseFileNames().size() + 3);
    QFile header(home + QStringLiteral("/forms/gTitle.rtf"));
    ASSERT_TRUE(header.open(QIODevice::ReadOnly));
    EXPECT_TRUE(header.readAll().startsWith("{\\rtf1"));
    EXPECT_TRUE(QFileInfo(home + QStringLiteral("/labels")).isDir());
    EXPECT_TRUE(QFileInfo(home + QStringLiteral("/settings")).isDir());
    EXPECT_EQ(
        readTextLines(home + QStringLiteral("/def.txt"))->value(0), home + QStringLiteral("/databases"));
    // The map look-up points at the page the installation got.
    EXPECT_TRUE(QFile::exists(home + QStringLiteral("/map/gps.htm")));
    EXPECT_EQ(readTextLines(home + QStringLiteral("/settings/MAPHOST"))->value(0),
        QStringLiteral("file://") + home + QStringLiteral("/map/"));

    // The program starts on it without a word about missing databases.
    const QString workingFolder = QDir::currentPath();
    QuietHost host;
    app::Startup startup(host, home);
    EXPECT_TRUE(startup.run());
    QDir::setCurrent(workingFolder);
    EXPECT_TRUE(host.mainWindowShown);
    EXPECT_TRUE(test::scriptedPrompts().shown().isEmpty());
    EXPECT_EQ(session().DatabaseFolder, home + QStringLiteral("/databases"));
    EXPECT_EQ(session().ParcelStoreVersion, 18); // sync-sbl needs no conversion first
    // An older store's conversion is named in the help.
    EXPECT_TRUE(runAdmin({QStringLiteral("--help")}).out.contains(QLatin1String("sync-sbl [--convert]")));
}

TEST(InitCommand, CompletesAnInstallationWithoutReplacingItsFiles)
{
    QTemporaryDir dir;
    const QString home = dir.path();
    ASSERT_EQ(runAdmin({QStringLiteral("--home"), home, QStringLiteral("init")}).code, 0);
    QStringList settings = *readTextLines(home + QStringLiteral("/PVardo.ini"));
    settings[1] = QStringLiteral("Town of Example");
    ASSERT_TRUE(replaceTextLines(home + QStringLiteral("/PVardo.ini"), settings));
    QFile::remove(home + QStringLiteral("/databases/bonds.db"));
    QDir(home + QStringLiteral("/labels")).removeRecursively();

    const AdminRun run
        = runAdmin({QStringLiteral("--home"), home, QStringLiteral("init"), QStringLiteral("--demo")});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.startsWith(QLatin1String("Completed the installation")));
    EXPECT_FALSE(run.out.contains(QLatin1String("password")));
    EXPECT_EQ(
        readTextLines(home + QStringLiteral("/PVardo.ini"))->value(1), QStringLiteral("Town of Example"));
    EXPECT_TRUE(QFile::exists(home + QStringLiteral("/databases/bonds.db")));
    EXPECT_TRUE(QFileInfo(home + QStringLiteral("/labels")).isDir());
    // The letterhead and receipt as shipped take the municipality's name; once
    // they are no longer as shipped they are the office's and stay.
    auto form = [&](const char* name) {
        QFile file(home + QStringLiteral("/forms/") + QLatin1String(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    EXPECT_TRUE(form("gTitle.rtf").contains("TOWN OF EXAMPLE\\line PLANNING BOARD"));
    EXPECT_TRUE(form("receipt.rtf").contains("Town of Example"));
    settings[1] = QStringLiteral("Town of Other");
    ASSERT_TRUE(replaceTextLines(home + QStringLiteral("/PVardo.ini"), settings));
    ASSERT_EQ(runAdmin({QStringLiteral("--home"), home, QStringLiteral("init")}).code, 0);
    EXPECT_TRUE(form("gTitle.rtf").contains("TOWN OF EXAMPLE"));
    EXPECT_FALSE(form("receipt.rtf").contains("Other"));

    // The roll extract of the demonstration reads whole, and its target
    // SWIS narrows it.
    parcels::RpsImport extract(home + QStringLiteral("/demo/RPS995T1"));
    const parcels::RpsImportResult analysed = extract.ImportIn(1, nullptr, {});
    EXPECT_TRUE(analysed.fileRead);
    EXPECT_GE(analysed.processed, 250);
    EXPECT_EQ(analysed.invalidSbl, 0);
    EXPECT_GT(analysed.confidence, 150) << "the doubled confidence of a well-formed file";
    EXPECT_EQ(parcels::RpsImport(home + QStringLiteral("/demo/RPS995T1"), QStringLiteral("134289"))
                  .ImportIn(1, nullptr, {})
                  .processed,
        4 * 8) << "four cases lie in the other SWIS";

    // A third of the demonstration cases owe fees, some settled and some not.
    const QString fees = home + QStringLiteral("/databases/pbfees.db");
    auto count = [&](const char* where) {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(fees, QStringLiteral("Select * from PBFEES") + QString::fromLatin1(where), &status);
        return rows ? rows->RecordCount() : -1;
    };
    EXPECT_GT(count(""), 0);
    EXPECT_GT(count(" where [PBFBALDUE] = 0"), 0);
    EXPECT_GT(count(" where [PBFBALDUE] <> 0 and [PBFPAID] > 0"), 0);
    EXPECT_GT(count(" where [PBFPAID] = 0"), 0);
}

TEST(InitCommand, RefusesFoldersItCannotUse)
{
    QTemporaryDir dir;
    QFile other(dir.filePath(QStringLiteral("letter.txt")));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    other.close();
    const struct
    {
        QStringList arguments;
        const char* says;
    } cases[] = {
        {{QStringLiteral("--home"), dir.path(), QStringLiteral("init")}, "is not empty"},
        {{QStringLiteral("--home"), dir.filePath(QStringLiteral("letter.txt")), QStringLiteral("init")},
            "is a file"},
        {{QStringLiteral("--home"), QStringLiteral("/proc/pvardo-test"), QStringLiteral("init")},
            "cannot be written"},
        {{QStringLiteral("--home"), dir.filePath(QStringLiteral("new")), QStringLiteral("init"),
             QStringLiteral("--bogus")},
            "usage"},
        {{QStringLiteral("init")}, "needs the installation folder"},
    };
    for (const auto& c : cases) {
        const AdminRun run = runAdmin(c.arguments);
        EXPECT_EQ(run.code, 2) << c.arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_TRUE(run.err.contains(QLatin1String(c.says))) << run.err.toStdString();
    }
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
        QStringList{QStringLiteral("letter.txt")});
}

TEST(CheckDatabasesCommand, ReportsWhatItPutInPlace)
{
    QTemporaryDir dir;
    const QString home = dir.path();
    ASSERT_EQ(runAdmin({QStringLiteral("--home"), home, QStringLiteral("init")}).code, 0);
    // The version is the column count of the store init made, whatever the
    // last session wrote; a store that cannot be read says where the number
    // came from.
    AdminRun version = runAdmin({QStringLiteral("--home"), home, QStringLiteral("check-databases")});
    EXPECT_TRUE(version.out.contains(QLatin1String("Parcel store version: 18\n"))) << version.out.toStdString();
    ASSERT_TRUE(replaceTextLines(home + QStringLiteral("/databases/sblversion.txt"), {QStringLiteral("13")}));
    version = runAdmin({QStringLiteral("--home"), home, QStringLiteral("check-databases")});
    EXPECT_TRUE(version.out.contains(QLatin1String("Parcel store version: 18\n"))) << version.out.toStdString();
    {
        QFile store(home + QStringLiteral("/databases/sbl.db"));
        ASSERT_TRUE(store.open(QIODevice::WriteOnly | QIODevice::Truncate));
        store.write(QByteArray(4096, 'x'));
    }
    version = runAdmin({QStringLiteral("--home"), home, QStringLiteral("check-databases")});
    EXPECT_TRUE(version.out.contains(QLatin1String("Parcel store version: 13 (as sblversion.txt says; the parcel "
                                                   "store cannot be read")))
        << version.out.toStdString();

    QFile::remove(home + QStringLiteral("/databases/meeting.db"));
    QFile::remove(home + QStringLiteral("/databases/sbl.db"));

    AdminRun run = runAdmin({QStringLiteral("--home"), home, QStringLiteral("check-databases")});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.contains(QStringLiteral("Database folder: ") + home + QStringLiteral("/databases")));
    EXPECT_TRUE(run.out.contains(QLatin1String("  meeting.db\n  sbl.db\n"))) << run.out.toStdString();
    EXPECT_TRUE(QFile::exists(home + QStringLiteral("/databases/meeting.db")));

    run = runAdmin({QStringLiteral("--home"), home, QStringLiteral("check-databases")});
    EXPECT_EQ(run.code, 0);
    EXPECT_TRUE(run.out.contains(QLatin1String("No seeded database was missing.")));
    // A store put back from the seed is of the older, 13-column kind.
    EXPECT_TRUE(run.out.contains(QLatin1String("Parcel store version: 13\n"))) << run.out.toStdString();

    // A settings file that names an empty folder (a share that did not
    // connect): said, as the program says it, and nothing made anywhere.
    QStringList settings = *readTextLines(home + QStringLiteral("/PVardo.ini"));
    settings[0] = home + QStringLiteral("/elsewhere");
    QDir().mkpath(settings[0]);
    ASSERT_TRUE(replaceTextLines(home + QStringLiteral("/PVardo.ini"), settings));
    QFile::remove(home + QStringLiteral("/databases/meeting.db"));
    run = runAdmin({QStringLiteral("--home"), home, QStringLiteral("check-databases")});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.contains(settings[0] + QStringLiteral(", named in the program's settings, holds no database")))
        << run.err.toStdString();
    EXPECT_TRUE(QDir(settings[0]).isEmpty());
    EXPECT_FALSE(QFile::exists(home + QStringLiteral("/databases/meeting.db")));

    run = runAdmin({QStringLiteral("--home"), dir.filePath(QStringLiteral("elsewhere")),
        QStringLiteral("check-databases")});
    EXPECT_EQ(run.code, 2);
    EXPECT_TRUE(run.err.contains(QLatin1String("is not an installation")));
}
