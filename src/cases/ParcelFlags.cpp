#include "cases/ParcelFlags.h"

#include "parcels/ParcelService.h"

namespace pvardo::cases {

std::optional<ParcelFlag> ParcelFlag::of(parcels::ParcelService& parcels, const QString& sbl)
{
    if (!parcels.SBLExists(sbl)) {
        return std::nullopt;
    }
    ParcelFlag flag;
    flag.toolTip = caseNumberTip();
    if (!parcels.SBLHasNotes(sbl)) {
        return flag;
    }
    flag = {Kind::Notes, QColor(0, 255, 0), QStringLiteral(" This property had note-it notes ")};
    const QString failedTip = QStringLiteral(" This property had a failed inspection ");
    if (parcels.SBLHasFailed(sbl)) {
        flag = {Kind::Failed, QColor(255, 255, 0), failedTip};
    }
    if (parcels.SBLHasComplaint(sbl)) {
        flag = {Kind::Complaint, QColor(255, 0, 255), failedTip};
    }
    if (parcels.SBLHasViol(sbl)) {
        flag = {Kind::Violation, QColor(255, 0, 0), QStringLiteral(" This property had a Violation ")};
    }
    return flag;
}

} // namespace pvardo::cases
