#include "parcels/ParcelSearch.h"

#include "parcels/ParcelService.h"
#include "store/Recordset.h"
#include "store/SqlSubset.h"

#include <QStringList>
#include <array>

namespace pvardo::parcels {

namespace {

QString likeAnywhere(const char* column, const QString& text)
{
    return QLatin1String(column) + QStringLiteral(" like ")
        + store::quotedText(QLatin1Char('%') + text + QLatin1Char('%'));
}

// The condition of a partial S-B-L: each filled box must begin its own part
// of the key, so section 1 finds 1-..., 12-... and 15.2-..., never 31-...;
// a point in the section asks for that section exactly and a subsection
// beginning with what follows the point. Every key has its eight parts, so
// the pattern's seven dashes fall on the key's seven. The leading part also
// bounds the key from both sides, which lets the store read only those
// sections through its index rather than every parcel.
QString sblBeginsWith(const SblBoxes& boxes)
{
    std::array<QString, 8> parts;
    QString section = boxes.section.trimmed().toUpper();
    bool sectionExact = false;
    if (const qsizetype point = section.indexOf(QLatin1Char('.')); point >= 0) {
        parts[1] = section.mid(point + 1).trimmed();
        section = section.left(point).trimmed();
        sectionExact = !section.isEmpty();
    }
    parts[0] = section;
    parts[3] = boxes.block.trimmed().toUpper();
    parts[4] = boxes.lot.trimmed().toUpper();
    parts[5] = boxes.sublot1.trimmed().toUpper();
    parts[6] = boxes.sublot2.trimmed().toUpper();

    QStringList pattern;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i == 0 && sectionExact) {
            pattern << parts[i];
        } else {
            pattern << parts[i] + QLatin1Char('%');
        }
    }
    QString condition = QStringLiteral("[SBLF] like ") + store::quotedText(pattern.join(QLatin1Char('-')));

    // Texts compare without regard to case: the bounds are taken in lower
    // case, so a letter's successor is a lower-case one too.
    QString prefix = sectionExact ? parts[0] + QLatin1Char('-') + parts[1] : parts[0];
    prefix = prefix.toLower();
    if (!prefix.isEmpty() && prefix.back().unicode() < 0xFFFF) {
        QString upper = prefix;
        upper.back() = QChar(static_cast<char16_t>(upper.back().unicode() + 1));
        condition = QStringLiteral("[SBLF] >= ") + store::quotedText(prefix)
            + QStringLiteral(" AND [SBLF] < ") + store::quotedText(upper) + QStringLiteral(" AND ")
            + condition;
    }
    return condition;
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

QString locate(const ParcelSearchFields& fields)
{
    QString where;
    if (ParcelService::SBLfilled(fields.boxes)) {
        where += sblBeginsWith(fields.boxes) + QStringLiteral(" AND ");
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

QString sblLocator(const SblBoxes& boxes)
{
    if (!ParcelService::SBLfilled(boxes)) {
        return all();
    }
    return QStringLiteral("Select * from SBL where ") + sblBeginsWith(boxes)
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

QString permitText(const QVariant& value)
{
    const QString text = listText(value);
    return text.trimmed() == QLatin1String("?") ? QString() : text;
}

QString listText(const QVariant& value)
{
    if (value.isNull() || !value.isValid()) {
        return QStringLiteral("--");
    }
    return value.toString();
}

} // namespace pvardo::parcels
