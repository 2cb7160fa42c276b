// pvardo-admin --home DIR check-databases: the check the program makes of its
// database folder at start-up, with a report of what it did.
#include "cli/AdminCommand.h"
#include "cli/InstallationFolders.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "store/DatabaseCheck.h"
#include "store/DatabaseLocation.h"
#include "store/Recordset.h"

#include <QDir>
#include <QFileInfo>

namespace pvardo::cli {

namespace {

int runCheckDatabases(CommandContext& context)
{
    bool verify = false;
    for (const QString& argument : context.args) {
        if (argument == QLatin1String("--verify")) {
            verify = true;
        } else {
            context.err << "usage: pvardo-admin --home DIR check-databases [--verify]" << Qt::endl;
            return ExitCode::BadUsage;
        }
    }
    if (!QFileInfo(context.home).isDir()) {
        context.err << "pvardo-admin check-databases: there is no folder "
                    << QDir::toNativeSeparators(context.home) << Qt::endl;
        return ExitCode::BadUsage;
    }
    if (!QFileInfo(joinPath(context.home, QStringLiteral("\\wrk"))).isDir()) {
        context.err << "pvardo-admin check-databases: " << QDir::toNativeSeparators(context.home)
                    << " is not an installation (it has no wrk folder); make one with init" << Qt::endl;
        return ExitCode::BadUsage;
    }
    Session& state = session();
    state.ProgramFolder = context.home;
    // The folder the program would choose; nothing is made anywhere when the
    // folder the settings name holds no database (a share not connected), nor
    // when no folder holds one.
    const QString databases = usableDatabaseFolder(context, "check-databases");
    if (databases.isEmpty()) {
        return ExitCode::Failed;
    }
    state.MasterDatabaseFolder = databases;
    state.DatabaseFolder = state.MasterDatabaseFolder;

    const store::CheckResult result = store::CheckDatabases(state);

    QTextStream& out = context.out;
    out << "Database folder: " << QDir::toNativeSeparators(state.DatabaseFolder) << '\n';
    out << "Forms folder: " << QDir::toNativeSeparators(state.FormsFolder) << '\n';
    if (result.seeded.isEmpty()) {
        out << "No seeded database was missing.\n";
    } else {
        out << "Put an empty database in place of:\n";
        for (const QString& file : result.seeded) {
            out << "  " << file << '\n';
        }
    }
    // The parcel store's version is the number of its columns, as the
    // program counts them at log-on; sblversion.txt only keeps the count of
    // the last session for the time before that.
    const QString parcelStore = store::databaseFile(state.DatabaseFolder, QStringLiteral("sbl.mdb"));
    store::StoreStatus parcelStatus;
    const std::unique_ptr<store::Recordset> parcels
        = store::openRecordsetAt(parcelStore, QStringLiteral("Select * from SBL"), &parcelStatus);
    if (parcels) {
        state.ParcelStoreVersion = parcels->fieldCount();
        out << "Parcel store version: " << state.ParcelStoreVersion << '\n';
    } else {
        out << "Parcel store version: " << state.ParcelStoreVersion
            << " (as sblversion.txt says; the parcel store cannot be read: " << parcelStatus.description
            << ")\n";
    }
    int code = ExitCode::Ok;
    const QStringList keyNotices = store::keyIndexNotices(state.DatabaseFolder);
    for (const QString& notice : keyNotices) {
        context.err << notice << Qt::endl;
        code = ExitCode::Failed;
    }
    if (verify) {
        const QList<store::FileVerdict> verdicts = store::verifyDatabaseFolder(state.DatabaseFolder);
        int sound = 0;
        for (const store::FileVerdict& verdict : verdicts) {
            if (verdict.ok()) {
                ++sound;
                continue;
            }
            code = ExitCode::Failed;
            context.err << QDir::toNativeSeparators(verdict.path) << (verdict.damaged ? " is damaged:" : ":")
                        << Qt::endl;
            for (const QString& problem : verdict.problems) {
                context.err << "  " << problem << Qt::endl;
            }
        }
        out << "Verified " << verdicts.size() << " database files: " << sound << " sound, "
            << verdicts.size() - sound << " damaged or not as expected.\n";
        if (code != ExitCode::Ok) {
            context.err << "Ask everyone to close the program, then restore the files named above from the last "
                           "backup, or have them repaired."
                        << Qt::endl;
        }
    }
    if (!result.failed.isEmpty()) {
        context.err << "These could not be put in place:" << Qt::endl;
        for (const QString& failure : result.failed) {
            context.err << "  " << failure << Qt::endl;
        }
        return ExitCode::Failed;
    }
    return code;
}

const CommandRegistration registration{{"check-databases", "check-databases [--verify]",
    "check the database folder and replace missing seeded files; --verify reads every file for damage", true,
    &runCheckDatabases}};

} // namespace

} // namespace pvardo::cli
