#include "parcels/ParcelService.h"

#include "common/NumberText.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "parcels/StoreFiles.h"
#include "parcels/TextCuts.h"
#include "store/DatabaseLocation.h"
#include "store/SqlSubset.h"

#include <QFileInfo>

namespace pvardo::parcels {

using store::StoreStatus;

namespace {

QString questionWhenEmpty(const QString& text)
{
    return text.isEmpty() ? QStringLiteral("?") : text;
}

QString notOpen()
{
    return QStringLiteral("The SBL Repository is not open.");
}

} // namespace

ParcelService::ParcelService(QString parcelStorePath, QString caseDatabasePath)
    : m_storePath(std::move(parcelStorePath))
    , m_casePath(std::move(caseDatabasePath))
{
}

QString ParcelService::parcelStorePathOf(const Session& session)
{
    QString path = session.ParcelDatabasePath;
    if (path.isEmpty()) {
        return store::databaseFile(session.DatabaseFolder, QStringLiteral("sbl.mdb"));
    }
    // The setting may still name the office's file: sbl.mdb is sbl.db here.
    if (path.endsWith(QLatin1String(".mdb"), Qt::CaseInsensitive)) {
        path.chop(4);
        path += QLatin1String(".db");
    }
    return path;
}

QString ParcelService::caseDatabasePathOf(const Session& session)
{
    return store::databaseFile(session.DatabaseFolder, QStringLiteral("pbproj.mdb"));
}

StoreStatus ParcelService::resetsbl()
{
    m_store.reset();
    m_columnCount = 0;
    StoreStatus status;
    m_store = store::openRecordsetAt(m_storePath, QStringLiteral("Select * from SBL"), &status);
    if (m_store) {
        m_columnCount = m_store->fieldCount();
    }
    return status;
}

void ParcelService::unload()
{
    m_store.reset();
    m_cases.reset();
    m_columnCount = 0;
}

void ParcelService::moveLastThenFirst()
{
    m_store->MoveLast();
    m_store->MoveFirst();
}

bool ParcelService::SBLLocate(const QString& sbl)
{
    if (!m_store) {
        return false;
    }
    // Bound, so a number with an apostrophe is found again; and a parcel
    // another workstation added since the store was opened is found too.
    return m_store->FindKey(QStringLiteral("SBLF"), sbl.toUpper()).ok() && !m_store->Eof();
}

bool ParcelService::SBLExists(const QString& sbl)
{
    if (!SBLLocate(sbl)) {
        return false;
    }
    m_found.permit = m_store->text(QStringLiteral("PERMIT"));
    m_found.association = m_store->text(QStringLiteral("ASSOC"));
    m_found.location = m_store->text(QStringLiteral("LOCN1"));
    m_found.mailing
        = m_store->hasField(QStringLiteral("MAILING")) ? m_store->text(QStringLiteral("MAILING")) : QString();
    return true;
}

StoreStatus ParcelService::write(const char* column, const QVariant& value)
{
    return m_store->setValue(QString::fromLatin1(column), value);
}

StoreStatus ParcelService::SBLAdd(const QString& sbl, const QString& permit, const QString& association,
    const QString& notes, const QString& location)
{
    if (!m_store) {
        return StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound, notOpen());
    }
    const QString cutPermit = cutText(permit, 20);
    const std::pair<const char*, QVariant> values[] = {
        {"SBLF", cutText(sbl.toUpper(), 40)},
        {"ASSOC", cutText(association, 20)},
        {"LOCN1", cutText(location, 70)},
        {"PERMIT", cutPermit},
        {"HISTORICAL", QString(QLatin1Char('*') + cutPermit)},
        {"OTHER", 0},
        {"FAILED", 0},
        {"VIOL", 0},
        {"NOTES", notes},
    };
    return addRow(values, false);
}

StoreStatus ParcelService::SBLAdd18(const QString& sbl, const QString& permit, const QString& association,
    const QString& notes, const QString& location, const QString& contact, const QString& mailing)
{
    if (!m_store) {
        return StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound, notOpen());
    }
    const QString cutPermit = cutText(permit, 20);
    const std::pair<const char*, QVariant> values[] = {
        {"SBLF", cutText(sbl.toUpper(), 40)},
        {"ASSOC", cutText(association, 30)},
        {"LOCN1", cutText(location, 80)},
        {"PERMIT", cutPermit},
        {"HISTORICAL", QString(QLatin1Char('*') + cutPermit)},
        {"OTHER", 0},
        {"FAILED", 0},
        {"VIOL", 0},
        {"NOTES", notes},
        {"CONTACT", cutText(contact, 30)},
        {"MAILING", cutText(mailing, 80)},
    };
    // An older store has no contact or mailing: the parcel still goes in.
    return addRow(values, true);
}

StoreStatus ParcelService::SBLAddExtended(const QString& sbl, const QString& contact,
    const QString& association, const QString& location, const QString& east, const QString& north,
    const QString& mailing, const QString&, const QString&, const QString&, const QString&)
{
    if (!m_store) {
        return StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound, notOpen());
    }
    moveLastThenFirst();
    m_store->AddNew();
    StoreStatus status = writeExtended(sbl, contact, association, location, east, north, mailing);
    if (status.ok()) {
        status = m_store->Update();
    }
    if (!status.ok()) {
        m_store->CancelUpdate();
    }
    return status;
}

StoreStatus ParcelService::addRow(std::span<const std::pair<const char*, QVariant>> values, bool skipMissing)
{
    moveLastThenFirst();
    m_store->AddNew();
    for (const auto& [column, value] : values) {
        if (skipMissing && !m_store->hasField(QString::fromLatin1(column))) {
            continue;
        }
        StoreStatus status = write(column, value);
        if (!status.ok()) {
            m_store->CancelUpdate();
            return status;
        }
    }
    StoreStatus status = m_store->Update();
    if (!status.ok()) {
        m_store->CancelUpdate();
    }
    return status;
}

StoreStatus ParcelService::writeExtended(const QString& sbl, const QString& contact,
    const QString& association, const QString& location, const QString& east, const QString& north,
    const QString& mailing)
{
    StoreStatus status = write("SBLF", cutText(sbl.toUpper(), 40));
    if (status.ok()) {
        status = write("ASSOC", questionWhenEmpty(cutText(association, 30)));
    }
    if (status.ok()) {
        status = write("LOCN1", questionWhenEmpty(cutText(location, 80)));
    }
    if (status.ok() && hasExtendedColumns()) {
        write("CONTACT", questionWhenEmpty(cutText(contact, 30)));
        write("MAILING", cutText(mailing, 80));
        write("EASTCOORD", LeadingNumber(cutText(east, 20)));
        write("NORTHCOORD", LeadingNumber(cutText(north, 20)));
    }
    return status;
}

StoreStatus ParcelService::saveAndReread()
{
    StoreStatus status = m_store->Update();
    if (!status.ok()) {
        m_store->CancelUpdate();
        return status;
    }
    m_store->MovePrevious();
    m_store->MoveNext();
    return status;
}

StoreStatus ParcelService::SBLUpdate2(const QString& sbl, const QString& permit, const QString& association,
    const QString&, const QString& location)
{
    if (!m_store) {
        return StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound, notOpen());
    }
    // A failing step is passed over and the next one runs.
    write("SBLF", cutText(sbl.toUpper(), 40));
    write("ASSOC", cutText(association, 20));
    write("LOCN1", cutText(location, 70));
    const QString cutPermit = cutText(permit, 20);
    if (!trimBlanks(cutPermit).isEmpty()) {
        // The newest case goes in front of the trail here.
        const QString trail = m_store->text(QStringLiteral("HISTORICAL"));
        write("PERMIT", cutPermit);
        write("HISTORICAL", QString(QLatin1Char('*') + cutPermit + trail));
    }
    return saveAndReread();
}

StoreStatus ParcelService::SBLUpdateExtended(const QString& sbl, const QString& contact,
    const QString& association, const QString& location, const QString& east, const QString& north,
    const QString& mailing, const QString&, const QString&, const QString&, const QString&)
{
    if (!m_store) {
        return StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound, notOpen());
    }
    StoreStatus status = writeExtended(sbl, contact, association, location, east, north, mailing);
    if (!status.ok()) {
        m_store->CancelUpdate();
        return status;
    }
    return saveAndReread();
}

StoreStatus ParcelService::SBLUpdate(const QString&, const QString& association, const QString& notes)
{
    if (!m_store) {
        return StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound, notOpen());
    }
    write("ASSOC", association.isEmpty() ? QStringLiteral("UNK") : cutText(association, 20));
    write("NOTES", notes);
    return saveAndReread();
}

StoreStatus ParcelService::SBLHistoryUpdate(const QString& trail)
{
    if (!m_store) {
        return StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound, notOpen());
    }
    StoreStatus status = write("HISTORICAL", trail);
    if (!status.ok()) {
        return status;
    }
    return saveAndReread();
}

bool ParcelService::testFlag(const char* column, int value)
{
    if (!m_store || m_store->Bof() || m_store->Eof()) {
        return false;
    }
    const QVariant flag = m_store->value(QString::fromLatin1(column));
    // A null flag is not set.
    if (flag.isNull() || LeadingNumber(flag.toString()) != value) {
        return false;
    }
    currentNote = m_store->text(QStringLiteral("NOTES"));
    return true;
}

bool ParcelService::SBLHasOther(const QString&)
{
    return testFlag("OTHER", 1);
}

bool ParcelService::SBLHasViol(const QString&)
{
    return testFlag("VIOL", 1);
}

bool ParcelService::SBLHasFailed(const QString&)
{
    return testFlag("FAILED", 1);
}

bool ParcelService::SBLHasComplaint(const QString&)
{
    return testFlag("FAILED", 2);
}

bool ParcelService::SBLHasNotes(const QString&)
{
    if (!m_store || m_store->Bof() || m_store->Eof()) {
        return false;
    }
    return !m_store->text(QStringLiteral("NOTES")).isEmpty();
}

StoreStatus ParcelService::setFlag(const char* column, int value, bool writeNote)
{
    if (!m_store) {
        return StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound, notOpen());
    }
    StoreStatus status = write(column, value);
    if (status.ok() && writeNote) {
        status = write("NOTES", currentNote);
    }
    if (!status.ok()) {
        m_store->CancelUpdate();
        return status;
    }
    return saveAndReread();
}

StoreStatus ParcelService::SBLSetOther()
{
    return setFlag("OTHER", 1, true);
}

StoreStatus ParcelService::SBLSetViol()
{
    return setFlag("VIOL", 1, true);
}

StoreStatus ParcelService::SBLSetFailed()
{
    return setFlag("FAILED", 1, true);
}

StoreStatus ParcelService::SBLSetComplaint()
{
    return setFlag("FAILED", 2, true);
}

StoreStatus ParcelService::SBLClearOther()
{
    return setFlag("OTHER", 0, false);
}

StoreStatus ParcelService::SBLClearViol()
{
    return setFlag("VIOL", 0, false);
}

StoreStatus ParcelService::SBLClearFailed()
{
    return setFlag("FAILED", 0, false);
}

StoreStatus ParcelService::SBLClearFlag()
{
    if (!m_store) {
        return StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound, notOpen());
    }
    for (const char* column : {"FAILED", "VIOL", "OTHER"}) {
        StoreStatus status = write(column, 0);
        if (!status.ok()) {
            m_store->CancelUpdate();
            return status;
        }
    }
    StoreStatus status = write("NOTES", QString());
    if (!status.ok()) {
        m_store->CancelUpdate();
        return status;
    }
    return saveAndReread();
}

StoreStatus ParcelService::SBLUpdateColumns(const ColumnValues& values)
{
    if (!m_store) {
        return StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound, notOpen());
    }
    for (const auto& [column, value] : values) {
        StoreStatus status = m_store->setValue(column, value);
        if (!status.ok()) {
            m_store->CancelUpdate();
            return status;
        }
    }
    return saveAndReread();
}

StoreStatus ParcelService::SBLAddColumns(const ColumnValues& values)
{
    if (!m_store) {
        return StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound, notOpen());
    }
    moveLastThenFirst();
    m_store->AddNew();
    for (const auto& [column, value] : values) {
        StoreStatus status = m_store->setValue(column, value);
        if (!status.ok()) {
            m_store->CancelUpdate();
            return status;
        }
    }
    StoreStatus status = m_store->Update();
    if (!status.ok()) {
        m_store->CancelUpdate();
    }
    return status;
}

void ParcelService::ValidatePermit(const QString& caseNumber)
{
    Session& state = session();
    // Reloaded before each test, so a case another workstation added counts.
    if (m_cases) {
        if (!m_cases->Requery().ok()) {
            m_cases.reset();
        }
    }
    if (!m_cases) {
        StoreStatus status;
        m_cases = store::openRecordsetAt(
            m_casePath, QStringLiteral("Select * from PBPROJ order by PBCASE"), &status);
    }
    if (!m_cases || m_cases->RecordCount() == 0) {
        state.StopFlag = true;
        return;
    }
    m_cases->MoveFirst();
    const StoreStatus status = m_cases->Find(QStringLiteral("[PBCASE] = ") + store::quotedText(caseNumber));
    state.StopFlag = !status.ok() || m_cases->Eof();
}

StoreStatus ParcelService::casesOnParcel(const QString& sbl, QStringList& numbers)
{
    numbers.clear();
    // The query narrows by the parts the S-B-L has; a part left out of it
    // (a blank sub-lot) is compared on the whole form below.
    QString where = SBL2SQL(ExtractSBL(sbl));
    where.chop(4); // " AND"
    StoreStatus status;
    auto cases = store::openRecordsetAt(m_casePath,
        QStringLiteral("Select * from PBPROJ where ") + where + QStringLiteral(" order by [PBCASE]"), &status);
    if (!cases) {
        return status;
    }
    const QString wanted = sbl.toUpper();
    while (!cases->Eof()) {
        // A row the file cannot give back is reported, not passed over: the
        // clerk would otherwise be told no case uses the parcel.
        if (status = cases->rowStatus(); !status.ok()) {
            return status;
        }
        if (currentSBL(*cases) == wanted) {
            numbers << cases->text(QStringLiteral("PBCASE"));
        }
        if (status = cases->MoveNext(); !status.ok()) {
            return status;
        }
    }
    return {};
}

StoreStatus ParcelService::convertOldSBLtoSBL18(const QString& programFolder, const ParcelProgress& progress)
{
    const QString seed = joinPath(programFolder, QStringLiteral("\\wrk\\sbl18.db"));
    const QString target = joinPath(programFolder, QStringLiteral("\\sbl18.db"));
    QString error;
    if (!copyFileReplacing(seed, target, &error)) {
        return StoreStatus::failure(store::StoreErrorNumber::WriteFailed, error);
    }
    if (!m_store) {
        StoreStatus status = resetsbl();
        if (!status.ok()) {
            return status;
        }
    }
    StoreStatus status;
    std::unique_ptr<store::Recordset> newer
        = store::openRecordsetAt(target, QStringLiteral("Select * from SBL"), &status);
    if (!newer) {
        return status;
    }
    if (m_store->RecordCount() == 0) {
        return StoreStatus::success();
    }
    const double step = 100.0 / m_store->RecordCount();
    double done = 0;
    constexpr int RowsPerTransaction = 2000;
    int inTransaction = 0;
    m_store->MoveFirst();
    status = newer->beginTransaction();
    while (status.ok() && !m_store->Eof()) {
        auto read = [this](const char* column) {
            const QString name = QString::fromLatin1(column);
            return m_store->hasField(name) ? m_store->text(name) : QString();
        };
        // The contact starts as the association and the mailing address as the
        // location; an empty association, contact or location reads "?".
        const QString association = questionWhenEmpty(cutText(read("ASSOC"), 30));
        const QString location = questionWhenEmpty(cutText(read("LOCN1"), 80));
        const QString mailing = cutText(read("LOCN1"), 80);
        auto flag = [&read](const char* column) {
            const QString text = read(column);
            return text.isEmpty() ? 0.0 : LeadingNumber(text);
        };
        // The trail is read but not carried over: a converted parcel starts
        // with no history, as conversions always have.
        const std::pair<const char*, QVariant> values[] = {
            {"SBLF", cutText(read("SBLF"), 40)},
            {"ASSOC", association},
            {"LOCN1", location},
            {"OTHER", flag("OTHER")},
            {"FAILED", flag("FAILED")},
            {"VIOL", flag("VIOL")},
            {"PERMIT", cutText(read("PERMIT"), 20)},
            {"CITY", read("CITY")},
            {"STATE", read("STATE")},
            {"ZIP", read("ZIP")},
            {"NOTES", read("NOTES")},
            {"GISLINK", QString()},
            {"CONTACT", association},
            {"MAILING", mailing},
            {"EASTCOORD", 0.0},
            {"NORTHCOORD", 0.0},
        };
        newer->AddNew();
        for (const auto& [column, value] : values) {
            if (!(status = newer->setValue(QString::fromLatin1(column), value)).ok()) {
                break;
            }
        }
        if (status.ok()) {
            status = newer->Update();
        }
        if (!status.ok()) {
            break;
        }
        if (++inTransaction == RowsPerTransaction) {
            inTransaction = 0;
            status = newer->commitTransaction();
            if (status.ok()) {
                status = newer->beginTransaction();
            }
        }
        m_store->MoveNext();
        done += step;
        if (progress && !progress(done)) {
            status = StoreStatus::failure(store::StoreErrorNumber::WriteFailed,
                QStringLiteral("The conversion was stopped; the SBL Repository is unchanged."));
        }
    }
    if (!status.ok()) {
        newer->rollbackTransaction();
        return status;
    }
    return newer->commitTransaction();
}

StoreStatus ParcelService::beginBatch()
{
    return m_store ? m_store->beginTransaction() : StoreStatus::success();
}

StoreStatus ParcelService::commitBatch()
{
    return m_store ? m_store->commitTransaction() : StoreStatus::success();
}

void ParcelService::rollbackBatch()
{
    if (m_store) {
        m_store->rollbackTransaction();
    }
}

namespace {

std::unique_ptr<ParcelService>& loadedService()
{
    static std::unique_ptr<ParcelService> service;
    return service;
}

} // namespace

ParcelService& mdb()
{
    std::unique_ptr<ParcelService>& service = loadedService();
    if (!service) {
        Session& state = session();
        service = std::make_unique<ParcelService>(
            ParcelService::parcelStorePathOf(state), ParcelService::caseDatabasePathOf(state));
        if (service->resetsbl().ok()) {
            state.ParcelStoreVersion = service->columnCount();
        }
    }
    return *service;
}

void unloadMdb()
{
    loadedService().reset();
}

} // namespace pvardo::parcels
