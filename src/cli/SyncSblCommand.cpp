// pvardo-admin --home DIR sync-sbl: carries the tax parcel roll into the SBL
// Repository, as the dashboard's "Synchronize SBL Repository" does. An older
// repository is converted first when --convert says so.
#include "cli/AdminCommand.h"
#include "common/Session.h"
#include "parcels/ParcelFolders.h"
#include "parcels/ParcelService.h"
#include "parcels/RpsRoll.h"
#include "parcels/SblSync.h"

#include <QDir>

namespace pvardo::cli {

namespace {

parcels::ParcelProgress progressPrinter(CommandContext& context, const char* title)
{
    if (context.quiet) {
        return {};
    }
    return [&context, title, lastTenth = -1](double percent) mutable {
        if (lastTenth < 0) {
            context.err << title << Qt::endl;
        }
        const int tenth = static_cast<int>(percent / 10);
        if (tenth != lastTenth) {
            lastTenth = tenth;
            context.err << "  " << tenth * 10 << "%" << Qt::endl;
        }
        return true;
    };
}

int runSyncSbl(CommandContext& context)
{
    bool convert = false;
    for (const QString& argument : context.args) {
        if (argument == QLatin1String("--convert")) {
            convert = true;
        } else {
            context.err << "usage: pvardo-admin --home DIR sync-sbl [--convert]" << Qt::endl;
            return ExitCode::BadUsage;
        }
    }
    Session& state = session();
    QString error;
    if (!parcels::useInstallationFolders(context.home, state, &error)) {
        context.err << "pvardo-admin sync-sbl: " << error << Qt::endl;
        return ExitCode::BadUsage;
    }
    parcels::RpsRoll roll(parcels::RpsRoll::rollPathIn(state.DatabaseFolder));
    if (!roll.rollExists()) {
        context.err << "There is no tax parcel roll to synchronize: import one first (import-rps)."
                    << Qt::endl;
        return ExitCode::Failed;
    }
    store::StoreStatus status = roll.resetRPSsbl();
    if (!status.ok()) {
        context.err << "The tax parcel roll cannot be opened: " << status.description << Qt::endl;
        return ExitCode::Failed;
    }
    parcels::ParcelService service(
        parcels::ParcelService::parcelStorePathOf(state), parcels::ParcelService::caseDatabasePathOf(state));
    status = service.resetsbl();
    if (!status.ok()) {
        context.err << "The SBL Repository " << QDir::toNativeSeparators(service.parcelStorePath())
                    << " cannot be opened: " << status.description << Qt::endl;
        return ExitCode::Failed;
    }
    // The screens ask before converting an older repository; here the
    // administrator says so on the command line.
    if (service.columnCount() < 18) {
        if (!convert) {
            context.err
                << "The SBL Repository is of the older version (" << service.columnCount()
                << " columns) and must be converted before it can be synchronized: run sync-sbl --convert."
                << Qt::endl;
            return ExitCode::Failed;
        }
        status = service.convertOldSBLtoSBL18(
            state.ProgramFolder, progressPrinter(context, "Converting SBL info.."));
        if (status.ok()) {
            status = parcels::SblSync::installConvertedStore(service, state);
        }
        if (!status.ok()) {
            context.err << "The SBL Repository could not be converted: " << status.description << Qt::endl;
            return ExitCode::Failed;
        }
        context.out << "The SBL Repository was converted to the newer version.\n";
    }
    const parcels::SblSync::Outcome outcome
        = parcels::SblSync::syncSBL(service, roll, state, progressPrinter(context, "Converting SBL info.."),
            progressPrinter(context, "Synchronizing SBL info.."));
    if (!outcome.status.ok()) {
        context.err << "The SBL Repository was not synchronized: " << outcome.status.description << Qt::endl;
        return ExitCode::Failed;
    }
    if (!outcome.ran) {
        context.err << "The SBL Repository was not converted; nothing was synchronized." << Qt::endl;
        return ExitCode::Failed;
    }
    if (outcome.converted) {
        context.out << "The SBL Repository was converted to the newer version.\n";
    }
    context.out << "Synchronized " << outcome.carried << " parcels into the SBL Repository.\n";
    return ExitCode::Ok;
}

const CommandRegistration registration{
    {"sync-sbl", "sync-sbl [--convert]",
        "carries the tax parcel roll into the SBL Repository; --convert first converts a repository of the "
        "older version (13 columns)",
        true, &runSyncSbl}};

} // namespace

} // namespace pvardo::cli
