#pragma once

#include "parcels/ParcelService.h"
#include "store/Recordset.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QString>
#include <memory>

namespace pvardo::parcels {

// One parcel of the assessment roll, as the import writes it and the
// look-ups read it.
struct RpsRow
{
    QString fullForm; // RSBLF
    QString shortForm; // RSSBL, as cleaned from the file
    QString contact; // RCONTACT
    QString association; // RASSOC, the owner
    QString location; // RLOCN1
    QString east; // RCOORD1
    QString north; // RCOORD2
    QString mailing; // RADDR1
    QString map; // RMAP, reserved
    QString price; // RPRICE, reserved
    QString notes; // RNOTES, reserved
    QString flag; // FLAG, reserved
};

// The local copy of the assessment roll: table RPS in rps.db of the database
// folder. It keeps one cursor open for the run, as the parcel service does,
// and carries the roll into the parcel store (syncSBL).
class RpsRoll
{
public:
    explicit RpsRoll(QString rollPath);
    // The roll of a database folder: rps.db there.
    static QString rollPathIn(const QString& databaseFolder);

    QString rollPath() const { return m_path; }
    bool rollExists() const;

    // Opens "Select * from RPS", making the empty roll first when the file is
    // not there, and keeps the time stamp of the first row as the date of the
    // roll, or today for an empty roll.
    store::StoreStatus resetRPSsbl();
    // Opens the roll for the viewer; fails when there is no roll.
    store::StoreStatus resetRPS();
    QDateTime rollDate() const { return m_rollDate; }
    store::Recordset* recordset() { return m_rows.get(); }

    // True when the roll holds the parcel; the cursor then stands on its row
    // and found() holds the row's values.
    bool RPSSBLExists(const QString& fullForm);
    const RpsRow& found() const { return m_found; }
    // RPSSBLExists without reading the row's values: the import rewrites the
    // row whole and needs only the cursor on it.
    bool locate(const QString& fullForm);
    // Adds a roll row, or rewrites the row under the cursor, stamped now.
    // Values longer than their columns are cut; an empty owner, contact or
    // location is written "?".
    store::StoreStatus RPSSBLAdd(const RpsRow& row);
    store::StoreStatus RPSSBLUpdate2(const RpsRow& row);
    // The row of the parcel rewritten when the roll holds it, else added.
    store::StoreStatus RPSSBLWrite(const RpsRow& row);

    // Carries every roll row into the parcel store: owner, contact, location,
    // mailing address and coordinates are overwritten; flags, permit, trail
    // and notes stay. Gives the number of rows carried, or -1 on a failure,
    // with the status; rows written before a failure or a stop stay, whole.
    int syncSBL(
        ParcelService& parcels, store::StoreStatus* status = nullptr, const ParcelProgress& progress = {});

    // Groups the writes of an import into transactions of the roll file.
    store::StoreStatus beginBatch();
    store::StoreStatus commitBatch();
    void rollbackBatch();

private:
    store::StoreStatus open(bool createWhenMissing);
    store::StoreStatus writeRow(const RpsRow& row);
    // The time of this write; read from the clock four times a second, as a
    // roll import writes thousands of rows a second.
    QDateTime writeTime();

    QString m_path;
    std::unique_ptr<store::Recordset> m_rows;
    QDateTime m_rollDate;
    RpsRow m_found;
    QDateTime m_writeTime;
    QElapsedTimer m_writeTimeAge;
};

} // namespace pvardo::parcels
