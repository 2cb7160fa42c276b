#include "parcels/RpsRoll.h"

#include "parcels/TextCuts.h"
#include "store/Catalogue.h"
#include "store/DatabaseLocation.h"
#include "store/SqlSubset.h"

#include <QElapsedTimer>
#include <QFileInfo>

namespace pvardo::parcels {

using store::StoreStatus;

namespace {

QString questionWhenEmpty(const QString& text)
{
    return text.isEmpty() ? QStringLiteral("?") : text;
}

} // namespace

RpsRoll::RpsRoll(QString rollPath)
    : m_path(std::move(rollPath))
{
}

QString RpsRoll::rollPathIn(const QString& databaseFolder)
{
    return store::databaseFile(databaseFolder, QStringLiteral("rps.mdb"));
}

bool RpsRoll::rollExists() const
{
    return QFileInfo::exists(m_path);
}

StoreStatus RpsRoll::open(bool createWhenMissing)
{
    m_rows.reset();
    if (!rollExists()) {
        if (!createWhenMissing) {
            return StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound,
                QStringLiteral("There is no tax parcel import file: %1").arg(m_path));
        }
        StoreStatus created = store::createDatabaseFile(m_path, store::tableDef(store::Table::RPS));
        // Another workstation may have made it in the same moment.
        if (!created.ok() && !rollExists()) {
            return created;
        }
    }
    StoreStatus status;
    m_rows = store::openRecordsetAt(m_path, QStringLiteral("Select * from RPS"), &status);
    return status;
}

StoreStatus RpsRoll::resetRPSsbl()
{
    StoreStatus status = open(true);
    m_rollDate = QDateTime::currentDateTime();
    if (m_rows && m_rows->RecordCount() > 0) {
        m_rows->MoveFirst();
        const QDateTime stamp = m_rows->value(QStringLiteral("TSTAMP")).toDateTime();
        if (stamp.isValid()) {
            m_rollDate = stamp;
        }
    }
    return status;
}

StoreStatus RpsRoll::resetRPS()
{
    return open(false);
}

bool RpsRoll::locate(const QString& fullForm)
{
    if (!m_rows) {
        return false;
    }
    // Bound, and seeing rows another workstation wrote since the roll was
    // opened: two imports at once end in an update, never a second row.
    return m_rows->FindKey(QStringLiteral("RSBLF"), fullForm.toUpper()).ok() && !m_rows->Eof();
}

bool RpsRoll::RPSSBLExists(const QString& fullForm)
{
    if (!locate(fullForm)) {
        return false;
    }
    auto text = [this](const char* column) { return m_rows->text(QString::fromLatin1(column)); };
    m_found = RpsRow{text("RSBLF"), text("RSSBL"), text("RCONTACT"), text("RASSOC"), text("RLOCN1"),
        text("RCOORD1"), text("RCOORD2"), text("RADDR1"), text("RMAP"), text("RPRICE"), text("RNOTES"),
        text("FLAG")};
    return true;
}

QDateTime RpsRoll::writeTime()
{
    if (!m_writeTimeAge.isValid() || m_writeTimeAge.elapsed() >= 250) {
        m_writeTime = QDateTime::currentDateTime();
        m_writeTimeAge.start();
    }
    return m_writeTime;
}

StoreStatus RpsRoll::writeRow(const RpsRow& row)
{
    const std::pair<const char*, QVariant> values[] = {
        {"RSBLF", cutText(row.fullForm.toUpper(), 40)},
        {"RSSBL", cutText(row.shortForm.toUpper(), 20)},
        {"RASSOC", cutText(questionWhenEmpty(row.association), 30)},
        {"RCONTACT", cutText(questionWhenEmpty(row.contact), 30)},
        {"RLOCN1", cutText(questionWhenEmpty(row.location), 80)},
        {"RADDR1", cutText(row.mailing, 80)},
        {"RCOORD1", cutText(row.east, 20)},
        {"RCOORD2", cutText(row.north, 20)},
        {"RMAP", cutText(row.map, 20)},
        {"RPRICE", cutText(row.price, 20)},
        {"RNOTES", row.notes},
        {"TSTAMP", writeTime()},
        {"FLAG", cutText(row.flag, 10)},
    };
    for (const auto& [column, value] : values) {
        StoreStatus status = m_rows->setValue(QString::fromLatin1(column), value);
        if (!status.ok()) {
            m_rows->CancelUpdate();
            return status;
        }
    }
    StoreStatus status = m_rows->Update();
    if (!status.ok()) {
        m_rows->CancelUpdate();
    }
    return status;
}

StoreStatus RpsRoll::RPSSBLAdd(const RpsRow& row)
{
    if (!m_rows) {
        return StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound,
            QStringLiteral("The tax parcel import file is not open."));
    }
    m_rows->AddNew();
    return writeRow(row);
}

StoreStatus RpsRoll::RPSSBLWrite(const RpsRow& row)
{
    if (locate(row.fullForm)) {
        return RPSSBLUpdate2(row);
    }
    StoreStatus status = RPSSBLAdd(row);
    // Another workstation's import added it in the meantime: the unique key
    // refused a second row, and the one there is updated.
    if (status.number == store::StoreErrorNumber::DuplicateKey && locate(row.fullForm)) {
        status = RPSSBLUpdate2(row);
    }
    return status;
}

StoreStatus RpsRoll::RPSSBLUpdate2(const RpsRow& row)
{
    if (!m_rows) {
        return StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound,
            QStringLiteral("The tax parcel import file is not open."));
    }
    return writeRow(row);
}

int RpsRoll::syncSBL(ParcelService& parcels, StoreStatus* status, const ParcelProgress& progress)
{
    StoreStatus result;
    auto finish = [&](int count) {
        if (status) {
            *status = result;
        }
        return count;
    };
    if (!m_rows && !(result = resetRPSsbl()).ok()) {
        return finish(-1);
    }
    if (!parcels.isOpen() && !(result = parcels.resetsbl()).ok()) {
        return finish(-1);
    }
    m_rows->MoveFirst();
    if (m_rows->Eof()) {
        return finish(0);
    }
    const double step = 100.0 / m_rows->RecordCount();
    double done = 0;
    int carried = 0;
    // Committed in groups of half a second at most: a run stopped half-way
    // leaves whole rows, and other workstations wait for one group at most.
    constexpr int RowsPerTransaction = 50000;
    constexpr qint64 TransactionMs = 500;
    QElapsedTimer group;
    int inGroup = 0;
    result = parcels.beginBatch();
    group.start();
    while (result.ok() && !m_rows->Eof()) {
        auto text = [this](const char* column) { return m_rows->text(QString::fromLatin1(column)); };
        const QString full = text("RSBLF");
        const QString contact = text("RCONTACT");
        const QString association = text("RASSOC");
        const QString location = text("RLOCN1");
        const QString east = text("RCOORD1");
        const QString north = text("RCOORD2");
        const QString mailing = text("RADDR1");
        const QString map = text("RMAP");
        const QString price = text("RPRICE");
        const QString notes = text("RNOTES");
        const QString flag = text("FLAG");
        const bool known = parcels.SBLLocate(full);
        if (!known) {
            result = parcels.SBLAddExtended(
                full, contact, association, location, east, north, mailing, map, price, notes, flag);
        }
        // Added by another workstation in the meantime: the unique key refused
        // a second row, and the row there is brought up to date instead.
        if (known
            || (result.number == store::StoreErrorNumber::DuplicateKey && parcels.SBLLocate(full))) {
            result = parcels.SBLUpdateExtended(
                full, contact, association, location, east, north, mailing, map, price, notes, flag);
        }
        if (!result.ok()) {
            break;
        }
        ++carried;
        if (++inGroup == RowsPerTransaction || group.elapsed() >= TransactionMs) {
            inGroup = 0;
            result = parcels.commitBatch();
            if (result.ok()) {
                result = parcels.beginBatch();
                group.start();
            }
        }
        m_rows->MoveNext();
        done += step;
        if (progress && !progress(done)) {
            break;
        }
    }
    if (!result.ok()) {
        parcels.rollbackBatch();
        return finish(-1);
    }
    result = parcels.commitBatch();
    return finish(result.ok() ? carried : -1);
}

StoreStatus RpsRoll::beginBatch()
{
    return m_rows ? m_rows->beginTransaction() : StoreStatus::success();
}

StoreStatus RpsRoll::commitBatch()
{
    return m_rows ? m_rows->commitTransaction() : StoreStatus::success();
}

void RpsRoll::rollbackBatch()
{
    if (m_rows) {
        m_rows->rollbackTransaction();
    }
}

} // namespace pvardo::parcels
