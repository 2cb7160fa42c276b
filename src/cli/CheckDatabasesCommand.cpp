// pvardo-admin --home DIR check-databases: the check the program makes of its
// database folder at start-up, with a report of what it did.
#include "cli/AdminCommand.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "store/DatabaseLocation.h"

#include <QDir>
#include <QFileInfo>

namespace pvardo::cli {

namespace {

int runCheckDatabases(CommandContext& context)
{
    if (!context.args.isEmpty()) {
        context.err << "usage: pvardo-admin --home DIR check-databases" << Qt::endl;
        return ExitCode::BadUsage;
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
    state.MasterDatabaseFolder = joinPath(context.home, QStringLiteral("\\databases"));
    if (const auto lines = readTextLines(joinPath(context.home, QStringLiteral("\\PVardo.ini")));
        lines && !lines->isEmpty() && !lines->constFirst().trimmed().isEmpty()) {
        state.MasterDatabaseFolder = lines->constFirst();
    }
    state.DatabaseFolder = state.MasterDatabaseFolder;
    const QString named = state.DatabaseFolder;

    const store::CheckResult result = store::CheckDatabases(state);

    QTextStream& out = context.out;
    out << "Database folder: " << QDir::toNativeSeparators(state.DatabaseFolder) << '\n';
    if (result.fellBackToDefault && QDir::cleanPath(named) != QDir::cleanPath(state.DatabaseFolder)) {
        out << "The folder named in PVardo.ini (" << QDir::toNativeSeparators(named)
            << ") holds no database; the default folder was used.\n";
    }
    out << "Forms folder: " << QDir::toNativeSeparators(state.FormsFolder) << '\n';
    if (result.seeded.isEmpty()) {
        out << "No seeded database was missing.\n";
    } else {
        out << "Put an empty database in place of:\n";
        for (const QString& file : result.seeded) {
            out << "  " << file << '\n';
        }
    }
    out << "Parcel store version: " << state.ParcelStoreVersion << '\n';
    if (!result.failed.isEmpty()) {
        context.err << "These could not be put in place:" << Qt::endl;
        for (const QString& failure : result.failed) {
            context.err << "  " << failure << Qt::endl;
        }
        return ExitCode::Failed;
    }
    return ExitCode::Ok;
}

const CommandRegistration registration{{"check-databases", "check-databases",
    "check the database folder and replace missing seeded files", true, &runCheckDatabases}};

} // namespace

} // namespace pvardo::cli
