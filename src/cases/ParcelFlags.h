#pragma once

#include <QColor>
#include <QString>
#include <optional>

namespace pvardo::parcels {
class ParcelService;
}

namespace pvardo::cases {

// How the case number input warns about the case's parcel: its colour and
// tool tip. A parcel with a note is green; within that, a failed inspection
// is yellow, a complaint magenta and a violation red, the last one found
// winning. A complaint shows the failed inspection's text: the office's
// clerks know the colours, and the text has always read that way.
struct ParcelFlag
{
    enum class Kind { Plain, Notes, Failed, Complaint, Violation };
    Kind kind = Kind::Plain;
    QColor colour; // invalid for Plain: the system's button colour
    QString toolTip;

    // Nothing when the parcel is not in the store.
    static std::optional<ParcelFlag> of(parcels::ParcelService& parcels, const QString& sbl);
    static QString caseNumberTip() { return QStringLiteral(" Case Number "); }
    // The tip of a case whose parcel is not in the parcel store.
    static QString notInStoreTip() { return QStringLiteral(" Case Number (its S-B-L is not in the parcel store) "); }
};

} // namespace pvardo::cases
