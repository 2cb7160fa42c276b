#include "parcels/ParcelSearch.h"

#include "parcels/ParcelService.h"
#include "store/Recordset.h"
#include "store/SqlSubset.h"

namespace pvardo::parcels {

namespace {

QString likeAnywhere(const char* column, const QString& text)
{
    return QLatin1String(column) + QStringLiteral(" like ")
        + store::quotedText(QLatin1Char('%') + text + QLatin1Char('%'));
}

int flagValue(const QVariant& value)
{
    if (value.isNull() || !value.isValid()) {
        return 0;
    }
    bool ok = false;
    const double number = value.toDouble(&ok);
    return ok ? static_cast<int>(number) : 0;
}

} // namespace

namespace ParcelQueries {

QString all()
{
    return QStringLiteral("Select * from SBL order by [SBLF]");
}

QString locate(ParcelService& parcels, const ParcelSearchFields& fields)
{
    QString where;
    if (ParcelService::SBLfilled(fields.boxes)) {
        const QString trimmed = ParcelService::TrimSBL(parcels.MakeSBL(fields.boxes));
        where += likeAnywhere("[SBLF]", trimmed) + QStringLiteral(" AND ");
    }
    if (!fields.owner.trimmed().isEmpty()) {
        where += likeAnywhere("[ASSOC]", fields.owner.trimmed()) + QStringLiteral(" AND ");
    }
    if (!fields.permit.trimmed().isEmpty()) {
        where += likeAnywhere("[PERMIT]", fields.permit.trimmed()) + QStringLiteral(" AND ");
    }
    if (!fields.location.trimmed().isEmpty()) {
        where += likeAnywhere("[LOCN1]", fields.location.trimmed()) + QStringLiteral(" AND ");
    }
    if (!fields.notes.trimmed().isEmpty()) {
        where += likeAnywhere("[NOTES]", fields.notes) + QStringLiteral(" OR ")
            + likeAnywhere("[HISTORICAL]", fields.notes) + QStringLiteral(" AND ");
    }
    if (where.isEmpty()) {
        return {};
    }
    where.chop(5); // the last " AND "
    return QStringLiteral("Select * from SBL where ") + where + QStringLiteral(" order by [SBLF]");
}

QString crossReference(double east, double north)
{
    const auto n = [](double value) { return QString::number(value, 'g', 15); };
    return QStringLiteral(
               "Select * from SBL where [NORTHCOORD] > 0 AND [EASTCOORD] > 0 AND (([NORTHCOORD] > ")
        + n(north - 500) + QStringLiteral(" AND [NORTHCOORD] < ") + n(north + 500)
        + QStringLiteral(") AND ([EASTCOORD] > ") + n(east - 500) + QStringLiteral(" AND [EASTCOORD] < ")
        + n(east + 500) + QStringLiteral("))  order by [SBLF]");
}

QString sblLocator(ParcelService& parcels, const SblBoxes& boxes)
{
    const QString trimmed = ParcelService::TrimSBL(parcels.MakeSBL(boxes));
    return QStringLiteral("Select * from SBL where ") + likeAnywhere("[SBLF]", trimmed)
        + QStringLiteral(" order by [SBLF]");
}

QString addressLocator(const QString& text)
{
    return QStringLiteral("Select * from SBL where ") + likeAnywhere("[LOCN1]", text)
        + QStringLiteral("  order by [SBLF]");
}

} // namespace ParcelQueries

ParcelMark parcelMarkOf(const QVariant& other, const QVariant& failed, const QVariant& viol)
{
    ParcelMark mark = ParcelMark::None;
    if (flagValue(other) == 1) {
        mark = ParcelMark::Other;
    }
    if (flagValue(failed) == 1) {
        mark = ParcelMark::Failed;
    }
    if (flagValue(failed) == 2) {
        mark = ParcelMark::Complaint;
    }
    if (flagValue(viol) == 1) {
        mark = ParcelMark::Violation;
    }
    return mark;
}

ParcelMark parcelMarkOf(const store::Recordset& row)
{
    return parcelMarkOf(row.value(QStringLiteral("OTHER")), row.value(QStringLiteral("FAILED")),
        row.value(QStringLiteral("VIOL")));
}

QString parcelMarkText(ParcelMark mark)
{
    switch (mark) {
    case ParcelMark::Other:
        return QStringLiteral("Other");
    case ParcelMark::Failed:
        return QStringLiteral("Failed");
    case ParcelMark::Complaint:
        return QStringLiteral("Complaint");
    case ParcelMark::Violation:
        return QStringLiteral("Violation");
    case ParcelMark::None:
        break;
    }
    return {};
}

QString trailLines(const QString& trail)
{
    QString lines;
    for (qsizetype i = 0; i < trail.size(); ++i) {
        if (trail.at(i) == QLatin1Char('*')) {
            if (i > 0) {
                lines += QLatin1Char('\n');
            }
        } else {
            lines += trail.at(i);
        }
    }
    return lines;
}

QString listText(const QVariant& value)
{
    if (value.isNull() || !value.isValid()) {
        return QStringLiteral("--");
    }
    return value.toString();
}

} // namespace pvardo::parcels
