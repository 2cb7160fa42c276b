#pragma once

#include "parcels/SblBoxes.h"

#include <QString>
#include <QVariant>

namespace pvardo::store {
class Recordset;
}

namespace pvardo::parcels {

class ParcelService;

// The search fields of the parcel browser: the five S-B-L boxes and the
// owner, notes (searched in the note and the trail), permit and location.
struct ParcelSearchFields
{
    SblBoxes boxes;
    QString owner;
    QString notes;
    QString permit;
    QString location;
};

// The query texts of the parcel browser and its two locators. Typed values go
// in through store::quotedText, so an owner such as O'Brien is searched for
// as typed.
namespace ParcelQueries {

// The whole store in S-B-L order.
QString all();

// The browser's search: each filled field adds its condition. A partial
// S-B-L finds the parcels whose section begins with the section typed, whose
// block begins with the block typed, and so on for each filled box. The notes
// condition comes last and asks for the note OR the trail without brackets,
// so a match in the trail alone is enough whatever the other fields say; the
// office has always searched that way. Empty when nothing is filled: there
// is nothing to search for.
QString locate(const ParcelSearchFields& fields);

// Parcels whose coordinates lie within 500 units of the given ones, bounds
// excluded. Only parcels with both coordinates above zero take part.
QString crossReference(double east, double north);

// The S-B-L locator's search on the boxes, partial as the browser's (the
// whole store when the boxes are blank), and the address locator's on the
// location.
QString sblLocator(const SblBoxes& boxes);
QString addressLocator(const QString& text);

} // namespace ParcelQueries

// How a parcel of a list is marked by its flags. The flags are tested in
// the order other, failed, complaint, violation, and the last one set gives
// the mark.
enum class ParcelMark { None, Other, Failed, Complaint, Violation };
ParcelMark parcelMarkOf(const QVariant& other, const QVariant& failed, const QVariant& viol);
ParcelMark parcelMarkOf(const store::Recordset& row);
// The words of a mark, for its tool tip and the printed list.
QString parcelMarkText(ParcelMark mark);

// A parcel's trail of case numbers, one a line: each "*" starts a line, the
// one at the very start is dropped.
QString trailLines(const QString& trail);

// The text of a parcel value in a list: a null reads "--".
QString listText(const QVariant& value);
// The permit of a parcel as shown: the "?" the store writes for a parcel no
// case gave a permit to reads as nothing.
QString permitText(const QVariant& value);

} // namespace pvardo::parcels
