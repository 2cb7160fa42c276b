#pragma once

#include "parcels/SblParts.h"
#include "store/Recordset.h"

#include <QList>
#include <QPair>
#include <QString>
#include <functional>
#include <memory>
#include <span>
#include <utility>

namespace pvardo {
struct Session;
}

namespace pvardo::parcels {

// Progress of a long run of the parcel service: percent done. Gives false to
// stop; what was written until then stays, whole rows only.
using ParcelProgress = std::function<bool(double percent)>;

// The values of the parcel row SBLExists found last, null read as "". The
// case and parcel screens read them right after the call.
struct ParcelFound
{
    QString permit;
    QString association;
    QString location;
    QString mailing;
};

// The parcel service: the one way to the parcel store (table SBL, the "SBL
// Repository") and the owner of the S-B-L conversions. It lives for the whole
// run with one cursor open on the store, so a look-up costs no connection.
//
// SBLExists places the cursor on a parcel; the flag, update and history
// operations then work on that row and take no key, so every caller pairs
// them with a preceding SBLExists. Store errors never reach the user from
// here: operations give false or a status, and the screens go on.
class ParcelService
{
public:
    // A service on the parcel store file and the case file of a session; the
    // store is not open until resetsbl().
    ParcelService(QString parcelStorePath, QString caseDatabasePath);
    // The service of a session's folders.
    static QString parcelStorePathOf(const Session& session);
    static QString caseDatabasePathOf(const Session& session);

    QString parcelStorePath() const { return m_storePath; }

    // Opens the store with "Select * from SBL" and records its column count.
    store::StoreStatus resetsbl();
    // Closes both cursors, so the store file can be replaced.
    void unload();
    // The column count of the open table: 13 for the older generation, 18 for
    // the newer one, 0 when the store is not open.
    int columnCount() const { return m_columnCount; }
    bool isOpen() const { return m_store != nullptr; }
    store::Recordset* recordset() { return m_store.get(); }

    // The conversions, on the service's working record.
    SblParts& parts() { return m_parts; }
    static QString currentSBL(const store::Recordset& caseRow) { return SblParts::currentSBL(caseRow); }
    QString MakeSBL(const SblBoxes& boxes) { return m_parts.MakeSBL(boxes); }
    SblBoxes ExtractSBL(const QString& fullForm) { return m_parts.ExtractSBL(fullForm); }
    static QString TrimSBL(const QString& fullForm) { return SblParts::TrimSBL(fullForm); }
    static bool SBLfilled(const SblBoxes& boxes) { return SblParts::SBLfilled(boxes); }
    static QString SBL2SQL(const SblBoxes& boxes) { return SblParts::SBL2SQL(boxes); }
    QString mysbl2SBL(const QString& fullForm) { return m_parts.mysbl2SBL(fullForm); }
    QString myssbl2SBL(const QString& shortForm) { return m_parts.myssbl2SBL(shortForm); }

    // True when the store holds the parcel; the cursor then stands on its row
    // and found() holds its values.
    bool SBLExists(const QString& sbl);
    const ParcelFound& found() const { return m_found; }
    // SBLExists without reading the row's values, for long runs that only
    // need the cursor on the row.
    bool SBLLocate(const QString& sbl);

    // The three adds. SBLAdd and SBLAdd18 start the trail with "*" and the
    // permit; SBLAddExtended, the roll's, writes neither permit nor trail nor
    // flags. The last four values of SBLAddExtended are not used.
    store::StoreStatus SBLAdd(const QString& sbl, const QString& permit, const QString& association,
        const QString& notes, const QString& location);
    store::StoreStatus SBLAdd18(const QString& sbl, const QString& permit, const QString& association,
        const QString& notes, const QString& location, const QString& contact, const QString& mailing);
    store::StoreStatus SBLAddExtended(const QString& sbl, const QString& contact, const QString& association,
        const QString& location, const QString& east, const QString& north, const QString& mailing,
        const QString& unused1 = {}, const QString& unused2 = {}, const QString& unused3 = {},
        const QString& unused4 = {});

    // Updates of the row under the cursor.
    store::StoreStatus SBLUpdate2(const QString& sbl, const QString& permit, const QString& association,
        const QString& unused, const QString& location);
    store::StoreStatus SBLUpdateExtended(const QString& sbl, const QString& contact,
        const QString& association, const QString& location, const QString& east, const QString& north,
        const QString& mailing, const QString& unused1 = {}, const QString& unused2 = {},
        const QString& unused3 = {}, const QString& unused4 = {});
    store::StoreStatus SBLUpdate(const QString& unused, const QString& association, const QString& notes);
    store::StoreStatus SBLHistoryUpdate(const QString& trail);

    // Flags of the row under the cursor. A set flag copies NOTES to the
    // current note; the key is not used.
    bool SBLHasOther(const QString& sbl = {});
    bool SBLHasViol(const QString& sbl = {});
    bool SBLHasFailed(const QString& sbl = {});
    bool SBLHasComplaint(const QString& sbl = {});
    bool SBLHasNotes(const QString& sbl = {});
    // The note that goes with the flags: filled by the tests, written by the sets.
    QString currentNote;

    // Sets write the current note to NOTES. Failed and complaint share the one
    // column FAILED (1 failed, 2 complaint), so setting one clears the other.
    store::StoreStatus SBLSetOther();
    store::StoreStatus SBLSetViol();
    store::StoreStatus SBLSetFailed();
    store::StoreStatus SBLSetComplaint();
    // Clears leave NOTES; SBLClearFlag clears all three flags and the note.
    store::StoreStatus SBLClearOther();
    store::StoreStatus SBLClearViol();
    store::StoreStatus SBLClearFailed();
    store::StoreStatus SBLClearFlag();

    // General writes for the case record's rules: columns of the row under the
    // cursor, saved and re-read; or a new row of the given columns. Values go
    // in as given: the callers cut them.
    using ColumnValues = QList<QPair<QString, QVariant>>;
    store::StoreStatus SBLUpdateColumns(const ColumnValues& values);
    store::StoreStatus SBLAddColumns(const ColumnValues& values);

    // Sets the session's StopFlag: false when the case exists, true otherwise
    // (also on an empty or missing case table).
    void ValidatePermit(const QString& caseNumber);
    // The numbers of the cases filed on the parcel, in number order, into
    // `numbers`; a case file that cannot be read gives its status.
    store::StoreStatus casesOnParcel(const QString& sbl, QStringList& numbers);

    // Copies the older store's rows into a new 18-column store, sbl18.db in
    // the program folder, made from the seed wrk/sbl18.db. The trail is not
    // carried over.
    store::StoreStatus convertOldSBLtoSBL18(
        const QString& programFolder, const ParcelProgress& progress = {});

    // Groups the writes of a long run into transactions of the store file.
    store::StoreStatus beginBatch();
    store::StoreStatus commitBatch();
    void rollbackBatch();

private:
    // Last row then first, so that the record count is exact, as every
    // look-up and add starts.
    void moveLastThenFirst();
    store::StoreStatus write(const char* column, const QVariant& value);
    store::StoreStatus saveAndReread();
    // Adds a row with the columns in order and stores it; a refused step
    // gives the row up. With skipMissing, a column an older store lacks is
    // passed over.
    store::StoreStatus addRow(std::span<const std::pair<const char*, QVariant>> values, bool skipMissing);
    // The columns the extended add and update share: parcel, association and
    // location, then, on a store that has them, contact, mailing address and
    // coordinates, each written as best it can be.
    store::StoreStatus writeExtended(const QString& sbl, const QString& contact, const QString& association,
        const QString& location, const QString& east, const QString& north, const QString& mailing);
    store::StoreStatus setFlag(const char* column, int value, bool writeNote);
    bool testFlag(const char* column, int value);
    bool hasExtendedColumns() const { return m_columnCount > 13; }

    QString m_storePath;
    QString m_casePath;
    std::unique_ptr<store::Recordset> m_store;
    std::unique_ptr<store::Recordset> m_cases;
    int m_columnCount = 0;
    SblParts m_parts;
    ParcelFound m_found;
};

// The service of the running program, made on first use from the session and
// loaded (resetsbl) then.
ParcelService& mdb();
// Drops the service so that no file stays open; the next mdb() loads it again.
void unloadMdb();

} // namespace pvardo::parcels
