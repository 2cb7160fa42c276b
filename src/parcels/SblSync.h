#pragma once

#include "parcels/ParcelService.h"
#include "parcels/RpsRoll.h"

#include <QString>

namespace pvardo {
struct Session;
}

namespace pvardo::parcels {

// The dashboard's "Synchronize SBL Repository": an older parcel store is
// first converted to the newer generation, with the user's consent, and put
// in place; then the roll is carried into the store.
class SblSync
{
public:
    // The question asked before an older store is converted.
    static QString oldSBLText();
    static QString oldSBLTitle();

    struct Outcome
    {
        bool ran = false; // the roll was carried into the store
        bool converted = false; // an older store was converted first
        int carried = 0; // roll rows carried
        store::StoreStatus status;
    };

    // Asks through the prompt service when the store is of the older
    // generation; "No" stops with nothing done.
    static Outcome syncSBL(ParcelService& parcels, RpsRoll& roll, Session& session,
        const ParcelProgress& conversionProgress = {}, const ParcelProgress& syncProgress = {});

    // Puts a converted store in place: sbl18.db of the program folder over
    // sbl.db there and in the database folder. The service is closed first so
    // no file stays open, and opened again after.
    static store::StoreStatus installConvertedStore(ParcelService& parcels, Session& session);
};

} // namespace pvardo::parcels
