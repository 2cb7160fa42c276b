#include "cases/CaseNumbering.h"

#include "common/Clock.h"
#include "common/NumberText.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "store/DatabaseLocation.h"
#include "store/SqlSubset.h"

#include <QFileInfo>
#include <cmath>

namespace pvardo::cases {

namespace {

// The numeric value of a sequence text, read by its leading digits; a text
// without any reads 0.
long long sequenceValue(const QString& text)
{
    const double value = LeadingNumber(text);
    return std::isfinite(value) ? static_cast<long long>(value) : 0;
}

QString firstLine(const QString& path)
{
    const auto lines = readTextLines(path);
    return lines && !lines->isEmpty() ? lines->first() : QString();
}

} // namespace

CaseNumbering::CaseNumbering(QString databaseFolder, QString caseDatabasePath, const QDate& startUpDate)
    : m_folder(std::move(databaseFolder))
    , m_casePath(std::move(caseDatabasePath))
{
    const QDate date = startUpDate.isValid() ? startUpDate : todaysDate();
    m_yearPart = QString::number(date.year()).right(2);
}

QString CaseNumbering::pnbPath() const
{
    return joinPath(m_folder, QStringLiteral("\\pnb.txt"));
}

QString CaseNumbering::zhiPath() const
{
    return joinPath(m_folder, QStringLiteral("\\zhi.txt"));
}

void CaseNumbering::load()
{
    if (!QFileInfo::exists(pnbPath()) || !QFileInfo::exists(zhiPath())) {
        // Only a missing file is repaired; both start over.
        replaceTextLines(pnbPath(), {QStringLiteral("-1")});
        replaceTextLines(zhiPath(), {QStringLiteral("200")});
    }
    // Any other read failure leaves the value empty.
    PermitBase = firstLine(pnbPath());
    PermitSeqStored = firstLine(zhiPath());
}

bool CaseNumbering::openCases()
{
    if (m_cases) {
        if (m_cases->Requery().ok()) {
            return true;
        }
        m_cases.reset();
    }
    store::StoreStatus status;
    m_cases
        = store::openRecordsetAt(m_casePath, QStringLiteral("Select * from PBPROJ order by PBCASE"), &status);
    return m_cases != nullptr;
}

bool CaseNumbering::PermitExists(const QString& caseNumber)
{
    if (!openCases() || m_cases->RecordCount() == 0) {
        return false;
    }
    m_cases->MoveFirst();
    const store::StoreStatus status
        = m_cases->Find(QStringLiteral("[PBCASE] = ") + store::quotedText(caseNumber));
    return status.ok() && !m_cases->Eof();
}

void CaseNumbering::ValidatePermit(const QString& caseNumber)
{
    // Reloaded before each test, so a case another workstation added counts.
    m_cases.reset();
    session().StopFlag = !PermitExists(caseNumber);
}

void CaseNumbering::PersistPermitSeq()
{
    PermitSeqStored = PermitSeq;
    if (sequenceValue(PermitBase) > 0) {
        // With a number to begin with, the counter goes to \pnb.txt, and
        // \zhi.txt stays behind: the next run climbs past the used numbers.
        PermitBase = PermitSeq;
        replaceTextLines(pnbPath(), {PermitSeq});
    } else {
        replaceTextLines(zhiPath(), {PermitSeq});
    }
}

QString CaseNumbering::startingSequence() const
{
    // A number the office set to begin with is where the sequence goes on:
    // \pnb.txt then keeps the counter (see PersistPermitSeq), and \zhi.txt,
    // which stays behind meanwhile, is used again only once the computer
    // decides.
    return sequenceValue(PermitBase) > 0 ? PermitBase.trimmed() : PermitSeqStored;
}

QString CaseNumbering::proposeNumber()
{
    for (;;) {
        if (sequenceValue(PermitSeq) < 1) {
            PermitSeq = startingSequence();
        }
        const QString number = m_yearPart + QLatin1Char('-') + PermitSeq;
        ValidatePermit(number);
        if (session().StopFlag) {
            return number;
        }
        PermitSeq = QString::number(sequenceValue(PermitSeq) + 1);
        PersistPermitSeq();
    }
}

void CaseNumbering::advanceAfterInsert()
{
    PermitSeq = QString::number(sequenceValue(PermitSeq) + 1);
    PersistPermitSeq();
}

QString CaseNumbering::BumpPermit(const QString& caseNumberInput)
{
    const int bumped = sequenceValue(caseNumberInput.mid(3)) + 1;
    // The working sequence only climbs, and only with a number of this
    // year: resolving a typed number of another year, or one behind the
    // sequence, must not pull the next proposals (and \pnb.txt) back to it.
    if (caseNumberInput.left(2) == m_yearPart && bumped > sequenceValue(PermitSeq)) {
        PermitSeq = QString::number(bumped);
    }
    return caseNumberInput.left(2) + QLatin1Char('-') + QString::number(bumped);
}

bool CaseNumbering::resolveDuplicate(QString& caseNumber, const DupeDialog& askDupe)
{
    caseNumber = caseNumber.trimmed();
    while (PermitExists(caseNumber)) {
        if (!ResolveDupesAuto) {
            if (!askDupe || askDupe() == DupeChoice::Cancel) {
                session().StopFlag = true;
                return false;
            }
            ResolveDupesAuto = true;
            session().StopFlag = false;
        }
        caseNumber = BumpPermit(caseNumber);
    }
    return true;
}

namespace {

std::unique_ptr<CaseNumbering>& runningNumbering()
{
    static std::unique_ptr<CaseNumbering> numbering;
    return numbering;
}

} // namespace

CaseNumbering& caseNumbering()
{
    std::unique_ptr<CaseNumbering>& numbering = runningNumbering();
    if (!numbering) {
        const Session& state = session();
        numbering = std::make_unique<CaseNumbering>(state.DatabaseFolder,
            store::databaseFile(state.DatabaseFolder, QStringLiteral("pbproj.mdb")), state.Today);
        numbering->load();
    }
    return *numbering;
}

void resetCaseNumbering()
{
    runningNumbering().reset();
}

void reloadCaseNumbering()
{
    std::unique_ptr<CaseNumbering>& numbering = runningNumbering();
    const bool resolveAutomatically = numbering && numbering->ResolveDupesAuto;
    numbering.reset();
    if (resolveAutomatically) {
        caseNumbering().ResolveDupesAuto = true;
    }
}

} // namespace pvardo::cases
