#pragma once

#include "parcels/SblBoxes.h"

#include <QString>
#include <array>

namespace pvardo::store {
class Recordset;
}

namespace pvardo::parcels {

// The text every conversion gives for a string it cannot read.
QString invalidSBL();

// The parcel identifier in its string forms, and the conversions between them.
//
// Full form: eight parts joined by "-" (SEC-SUD-SECA-BLK-LOT-LOD-SUB-SED), the
// key of the parcel store and of the roll. Short form: SEC.SUD-BLK-LOT.LOD.SUB,
// as people and the assessment roll write a parcel. Trimmed form: a full form
// less its trailing "-0" pairs, the prefix of a like search. Box form: the five
// entry boxes (SblBoxes).
//
// The object is the working record of the conversions: its slots keep the parts
// of the last conversion. The full-to-short reader reads parts of at most six
// places and leaves a slot as the previous conversion left it when a part is
// longer; the office relies on parcels never having such parts, and the
// behaviour is kept so that every letter and label reads the same as before.
class SblParts
{
public:
    // Slots 1 to 9 hold the parts; slot 0 is unused.
    std::array<QString, 10> parts;
    // A short form on its way to myssbl2SBL.
    QString shortForm;

    // Full form of the S-B-L columns of a case row; a missing, null or empty
    // column reads as "0".
    static QString currentSBL(const store::Recordset& caseRow);
    // Full form from the entry boxes.
    QString MakeSBL(const SblBoxes& boxes);
    // The entry boxes of a full form; parts of more than six places are not read.
    SblBoxes ExtractSBL(const QString& fullForm);
    // Full form less at most five trailing "-0" pairs.
    static QString TrimSBL(const QString& fullForm);
    // True when any box holds something other than blanks.
    static bool SBLfilled(const SblBoxes& boxes);
    // Criteria on the case columns from the boxes, left open on " AND" for the
    // caller to complete.
    static QString SBL2SQL(const SblBoxes& boxes);
    // Full form to short form, or invalidSBL().
    QString mysbl2SBL(const QString& fullForm);
    // Short form to full form, or invalidSBL().
    QString myssbl2SBL(const QString& shortText);

    // The parcel number as a clerk reads it (12.34-1-5.1) for a list or a
    // note, converted afresh so no part of another parcel is carried over;
    // a key that cannot be read is shown as it is stored.
    static QString writtenForm(const QString& fullForm);

private:
    enum class Reading { Complete, RanOut };
    // Reads parts first..last of at most six places each from 1-based position
    // `position`, which ends behind the last part read.
    Reading readSixPlaceParts(const QString& text, int first, int last, int& position);
};

} // namespace pvardo::parcels
