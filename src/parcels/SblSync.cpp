#include "parcels/SblSync.h"

#include "common/PromptService.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "parcels/StoreFiles.h"

namespace pvardo::parcels {

using store::StoreStatus;

QString SblSync::oldSBLText()
{
    return QStringLiteral(
        "You have an older version SBL Repository. In order to synchronize the database, your "
        "older SBL Repository needs to be converted.\n"
        "Would you like to convert your SBL Repository to a newer version?");
}

QString SblSync::oldSBLTitle()
{
    return QStringLiteral(" SBL Repository");
}

StoreStatus SblSync::installConvertedStore(ParcelService& parcels, Session& session)
{
    parcels.unload();
    const QString converted = joinPath(session.ProgramFolder, QStringLiteral("\\sbl18.db"));
    const QString programCopy = joinPath(session.ProgramFolder, QStringLiteral("\\sbl.db"));
    const QString databaseCopy = joinPath(session.DatabaseFolder, QStringLiteral("\\sbl.db"));
    QString error;
    StoreStatus status;
    if (!copyFileReplacing(converted, programCopy, &error)
        || !copyFileReplacing(programCopy, databaseCopy, &error)) {
        status = StoreStatus::failure(store::StoreErrorNumber::WriteFailed, error);
    }
    const StoreStatus reopened = parcels.resetsbl();
    if (reopened.ok()) {
        session.ParcelStoreVersion = parcels.columnCount();
    }
    return status.ok() ? reopened : status;
}

SblSync::Outcome SblSync::syncSBL(ParcelService& parcels, RpsRoll& roll, Session& session,
    const ParcelProgress& conversionProgress, const ParcelProgress& syncProgress)
{
    Outcome outcome;
    if (!parcels.isOpen() && !(outcome.status = parcels.resetsbl()).ok()) {
        return outcome;
    }
    if (parcels.columnCount() < 18) {
        const PromptAnswer answer = prompts().message(
            Prompt{oldSBLTitle(), oldSBLText(), PromptButtons::YesNo, PromptIcon::Question, {}});
        if (answer != PromptAnswer::Yes) {
            return outcome;
        }
        outcome.status = parcels.convertOldSBLtoSBL18(session.ProgramFolder, conversionProgress);
        if (!outcome.status.ok()) {
            return outcome;
        }
        outcome.status = installConvertedStore(parcels, session);
        if (!outcome.status.ok()) {
            return outcome;
        }
        outcome.converted = true;
    }
    outcome.carried = roll.syncSBL(parcels, &outcome.status, syncProgress);
    outcome.ran = outcome.carried >= 0;
    return outcome;
}

} // namespace pvardo::parcels
