#include "schedule/MeetingTable.h"

#include "common/Session.h"
#include "common/TextFiles.h"
#include "schedule/MonthEvents.h"
#include "store/DatabaseLocation.h"
#include "store/SqlSubset.h"

namespace pvardo::schedule {

MeetingTable::MeetingTable(QString databaseFolder, QString programFolder)
    : m_path(meetingFile(databaseFolder))
    , m_programFolder(std::move(programFolder))
{
}

QString MeetingTable::meetingFile(const QString& folder)
{
    return store::databaseFile(folder, QStringLiteral("\\meeting.mdb"));
}

QString MeetingTable::fallbackQuery(const QString& year)
{
    return QStringLiteral("Select * from MEETING where [MYEAR] = '") + year
        + QStringLiteral("' order by [MJUL]");
}

store::StoreStatus MeetingTable::open(const QString& year)
{
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(m_path, MonthEvents::monthQuery(year), &status);
    if (!rows && status.number == store::StoreErrorNumber::DatabaseNotFound) {
        const QString fallback = meetingFile(joinPath(m_programFolder, QStringLiteral("\\databases")));
        session().DatabaseLabel = fallback;
        rows = store::openRecordsetAt(fallback, fallbackQuery(year), &status);
        if (rows) {
            m_path = fallback;
            m_fellBack = true;
        }
    }
    if (!rows) {
        return status;
    }
    m_rows = std::move(rows);
    return store::StoreStatus::success();
}

store::StoreStatus MeetingTable::requery()
{
    if (!m_rows) {
        return store::StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound,
            QStringLiteral("DB ") + m_path + QStringLiteral(" not found."));
    }
    return m_rows->Requery();
}

bool MeetingTable::findKey(const QString& key)
{
    if (!m_rows || key.trimmed().isEmpty()) {
        return false;
    }
    if (m_rows->RecordCount() == 0) {
        return false;
    }
    if (!m_rows->MoveFirst().ok()) {
        return false;
    }
    const store::StoreStatus status = m_rows->Find(QStringLiteral("[RECNO] = ") + store::quotedText(key));
    return status.ok() && !m_rows->Eof();
}

store::StoreStatus MeetingTable::notFound(const QString& key) const
{
    return store::StoreStatus::failure(store::StoreErrorNumber::NoCurrentRecord,
        QStringLiteral("The meeting %1 is no longer in %2.").arg(key, m_path));
}

store::StoreStatus MeetingTable::add(const MeetingForm& form, int calYear, int calMonth, int calDay,
    const QString& currentUser, QString* newKey, MeetingRow* written)
{
    if (!m_rows) {
        return store::StoreStatus::failure(store::StoreErrorNumber::DatabaseNotFound,
            QStringLiteral("DB ") + m_path + QStringLiteral(" not found."));
    }
    m_rows->AddNew();
    const store::StoreStatus status = writeRow(form, calYear, calMonth, calDay, currentUser, written);
    if (!status.ok()) {
        return status;
    }
    if (newKey) {
        *newKey = m_rows->text(QStringLiteral("RECNO"));
    }
    return status;
}

store::StoreStatus MeetingTable::save(const QString& key, const MeetingForm& form, int calYear, int calMonth,
    int calDay, const QString& currentUser, MeetingRow* written)
{
    if (!findKey(key)) {
        return notFound(key);
    }
    return writeRow(form, calYear, calMonth, calDay, currentUser, written);
}

store::StoreStatus MeetingTable::writeRow(const MeetingForm& form, int calYear, int calMonth, int calDay,
    const QString& currentUser, MeetingRow* written)
{
    store::StoreStatus status
        = movefieldsintodb(form, calYear, calMonth, calDay, *m_rows, currentUser, written);
    if (status.ok()) {
        status = m_rows->Update();
    }
    if (!status.ok()) {
        m_rows->CancelUpdate();
    }
    return status;
}

store::StoreStatus MeetingTable::remove(const QString& key)
{
    if (!findKey(key)) {
        return notFound(key);
    }
    const store::StoreStatus status = m_rows->Delete();
    if (!status.ok()) {
        return status;
    }
    m_rows->MoveNext();
    return store::StoreStatus::success();
}

} // namespace pvardo::schedule
