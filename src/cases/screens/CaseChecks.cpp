#include "cases/screens/CaseChecks.h"

#include "cases/CaseNumbering.h"
#include "cases/CaseStatus.h"
#include "cases/CaseRecord.h"
#include "cases/screens/CaseForm.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "parcels/ParcelService.h"
#include "ui/DupeDialog.h"
#include "ui/PostitDialog.h"
#include "ui/TaskFrm.h"

namespace pvardo::cases {

namespace {
constexpr int CaseNumberBox = 1;
}

CaseChecks::CaseChecks(CaseForm& form, QWidget* parent)
    : m_form(form)
    , m_parent(parent)
{
}

DupeChoice CaseChecks::askDupe() const
{
    return ui::askDupe(CaseRecord::dupeTitle(), CaseRecord::dupeText(), CaseRecord::dupeAdvice(),
               CaseRecord::dupeCheckBoxText(), m_parent)
        ? DupeChoice::ResolveAutomatically
        : DupeChoice::Cancel;
}

void CaseChecks::ValidateCaseInput(bool saving) const
{
    session().StopFlag = false;
    CaseInputs in = m_form.inputs();
    QString missing;
    const QString line = QStringLiteral("\n");
    if (in.caseNumber.trimmed().isEmpty()) {
        missing += QStringLiteral("--Case Number") + line;
    }
    if (m_form.boxText(8).trimmed().isEmpty()) {
        missing += QStringLiteral("--Applicant") + line;
    }
    if (m_form.boxText(9).trimmed().isEmpty()) {
        missing += QStringLiteral("--Applicant Address") + line;
    }
    if (in.siteLocation.trimmed().isEmpty()) {
        missing += QStringLiteral("--Property Location") + line;
    }
    // A case restored without a known status shows an empty list: that is no
    // status either.
    // Nor is a word of no status: its first letter would be stored as one.
    if (in.statusText.trimmed().isEmpty() || in.statusText.startsWith(QLatin1Char('<'))
        || (!CaseStatus::statusListTexts().contains(in.statusText)
            && CaseStatus::statusVerbose(CaseStatus::letterOf(in.statusText)) != in.statusText)) {
        missing += QStringLiteral("--Application Status") + line;
    }
    if (in.sbl.section.trimmed().isEmpty() || in.sbl.block.trimmed().isEmpty()
        || in.sbl.lot.trimmed().isEmpty()) {
        missing += QStringLiteral("--S-B-L") + line;
    }
    if (!missing.isEmpty()) {
        session().StopFlag = true;
        ui::TaskFrm::close();
        showMessage(QStringLiteral("Missing: ") + missing + line + QStringLiteral("Please ensure required")
                + line + QStringLiteral("fields are filled in correctly."),
            QStringLiteral(" Missing Information"), PromptButtons::Ok, PromptIcon::Critical);
        return;
    }

    ui::TaskFrm::open();
    parcels::ParcelService& parcels = parcels::mdb();
    const QString sbl = parcels.MakeSBL(in.sbl);
    const bool exists = parcels.SBLExists(sbl);
    if (exists && parcels.SBLHasViol(sbl)) {
        const QString note = parcels.recordset()->text(QStringLiteral("NOTES"));
        ui::PostitDialog postit(note, parcels::SblParts::writtenForm(sbl), m_form.boxText(8), m_parent);
        ui::TaskFrm::close();
        if (prompts().exec(postit) != QDialog::Accepted) {
            session().StopFlag = true;
            return;
        }
        session().StopFlag = false;
        if (postit.noteChanged()) {
            parcels.currentNote = postit.note();
            parcels.SBLUpdateColumns({{QStringLiteral("NOTES"), postit.note()}});
        }
    }

    if (saving) {
        if (exists) {
            CaseRecord::PostCaseToParcel(parcels, in, false);
        }
        return;
    }

    auto ask = [this] { return askDupe(); };
    QString number = in.caseNumber;
    if (!caseNumbering().resolveDuplicate(number, ask)) {
        ui::TaskFrm::close();
        return;
    }
    m_form.setBoxText(CaseNumberBox, number);
    in.caseNumber = number;
    ui::TaskFrm::close();
    if (exists) {
        CaseRecord::PostCaseToParcel(parcels, in, true);
        session().StopFlag = false;
        return;
    }
    const PromptAnswer answer
        = showMessage(QStringLiteral("The Section, Block and Lot info cannot be found.\n")
                + QStringLiteral("If this is a new S-B-L, click 'Yes' to add this as a new record."),
            QStringLiteral(" SBL not found"), PromptButtons::YesNo, PromptIcon::Critical);
    if (answer != PromptAnswer::Yes) {
        session().StopFlag = true;
        return;
    }
    const store::StoreStatus added = parcels.SBLAdd18(sbl, QStringLiteral("PB") + number, m_form.boxText(8),
        QString(), in.siteLocation, in.ownerName, m_form.boxText(13));
    if (!added.ok()) {
        session().StopFlag = true;
        showMessage(
            added.description, QStringLiteral(" SBL not found"), PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    CaseRecord::PostCaseToParcel(parcels, in, true);
    session().StopFlag = false;
}

void CaseChecks::iNote() const
{
    parcels::ParcelService& parcels = parcels::mdb();
    const QString sbl = parcels.MakeSBL(m_form.inputs().sbl);
    if (!parcels.SBLExists(sbl)) {
        session().StopFlag = true;
        showMessage(QStringLiteral("The Section, Block and Lot info cannot be found.\n")
                + QStringLiteral("Please ensure the S-B-L format is followed"),
            QStringLiteral(" SBL not found"), PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    // Each test leaves the parcel's note behind when its flag is set.
    parcels.SBLHasNotes(sbl);
    parcels.SBLHasComplaint(sbl);
    parcels.SBLHasFailed(sbl);
    parcels.SBLHasOther(sbl);
    parcels.SBLHasViol(sbl);
    const QString note = parcels.recordset()->text(QStringLiteral("NOTES"));
    ui::PostitDialog postit(note, parcels::SblParts::writtenForm(sbl), m_form.boxText(8), m_parent);
    if (note.isEmpty()) {
        postit.startEditing();
    }
    if (prompts().exec(postit) == QDialog::Accepted && postit.noteChanged()) {
        parcels.currentNote = postit.note();
        parcels.SBLUpdateColumns({{QStringLiteral("NOTES"), postit.note()}});
    }
}

} // namespace pvardo::cases
