#include "parcels/SblParts.h"

#include "parcels/TextCuts.h"
#include "store/Recordset.h"
#include "store/SqlSubset.h"

namespace pvardo::parcels {

namespace {

const QLatin1Char kDash('-');
const QLatin1Char kPoint('.');

QString zeroWhenEmpty(const QString& text)
{
    return text.isEmpty() ? QStringLiteral("0") : text;
}

bool isZeroOrEmpty(const QString& text)
{
    return text.isEmpty() || text == QLatin1String("0");
}

// Cuts a string at its last dash, once, when it holds more than seven: a full
// form has exactly seven.
QString cutSurplusDash(const QString& text)
{
    if (text.count(kDash) > 7) {
        return text.left(text.lastIndexOf(kDash));
    }
    return text;
}

} // namespace

QString invalidSBL()
{
    return QStringLiteral("invalid SBL");
}

QString SblParts::currentSBL(const store::Recordset& caseRow)
{
    auto part = [&caseRow](const char* column) {
        const QString name = QString::fromLatin1(column);
        // A case table without the column reads as "0", as a null does.
        if (!caseRow.hasField(name) || caseRow.Bof() || caseRow.Eof()) {
            return QStringLiteral("0");
        }
        return zeroWhenEmpty(caseRow.text(name));
    };
    const QStringList inOrder = {part("SEC"), part("SUD"), part("SECA"), part("BLK"), part("LOT"),
        part("LOD"), part("SUB"), part("SED")};
    return inOrder.join(kDash).toUpper();
}

QString SblParts::MakeSBL(const SblBoxes& boxes)
{
    parts[3] = QStringLiteral("0");
    parts[8] = QStringLiteral("0");
    // A box of blanks stands for "0"; otherwise the text goes in as typed.
    auto typed = [&boxes](int index) {
        const QString& text = boxes.box(index);
        return trimBlanks(text).isEmpty() ? QStringLiteral("0") : text;
    };
    const QString section = typed(2);
    const qsizetype point = section.indexOf(kPoint);
    if (point >= 0) {
        parts[1] = section.left(point);
        parts[2] = section.mid(point + 1);
    } else {
        parts[1] = section;
        parts[2] = QStringLiteral("0");
    }
    parts[4] = typed(3);
    parts[5] = typed(4);
    parts[6] = typed(5);
    parts[7] = typed(6);
    QStringList inOrder;
    for (int i = 1; i <= 8; ++i) {
        inOrder.append(parts[static_cast<size_t>(i)]);
    }
    return inOrder.join(kDash).toUpper();
}

SblParts::Reading SblParts::readSixPlaceParts(const QString& text, int first, int last, int& position)
{
    for (int slot = first; slot <= last; ++slot) {
        if (text.indexOf(kDash, position - 1) < 0) {
            return Reading::RanOut;
        }
        // A part ends at the first dash one to six places on; a longer part is
        // not read, and the reader stays where it is.
        for (int distance = 1; distance <= 6; ++distance) {
            if (midText(text, position + distance, 1) == QLatin1String("-")) {
                parts[static_cast<size_t>(slot)] = midText(text, position, distance);
                position += distance + 1;
                break;
            }
        }
    }
    return Reading::Complete;
}

SblBoxes SblParts::ExtractSBL(const QString& fullForm)
{
    SblBoxes boxes;
    const QString text = fullForm.toUpper();
    if (!text.contains(kDash)) {
        return boxes;
    }
    for (int i = 1; i <= 7; ++i) {
        parts[static_cast<size_t>(i)].clear();
    }
    int position = 1;
    readSixPlaceParts(text, 1, 7, position);
    QString section = parts[1];
    if (!isZeroOrEmpty(parts[2])) {
        section = parts[1] + kPoint + parts[2];
    }
    // The third piece is read and dropped: the boxes have no place for it.
    auto shown = [](const QString& part) {
        const QString trimmed = trimBlanks(part);
        return isZeroOrEmpty(trimmed) ? QString() : trimmed;
    };
    boxes.section = shown(section);
    boxes.block = shown(parts[4]);
    boxes.lot = shown(parts[5]);
    boxes.sublot1 = shown(parts[6]);
    boxes.sublot2 = shown(parts[7]);
    return boxes;
}

QString SblParts::TrimSBL(const QString& fullForm)
{
    // Five pairs at most, so the empty parcel trims to "0-0-0".
    QString trimmed = fullForm;
    for (int i = 0; i < 5; ++i) {
        if (trimmed.endsWith(QLatin1String("-0"))) {
            trimmed.chop(2);
        }
    }
    return trimmed;
}

bool SblParts::SBLfilled(const SblBoxes& boxes)
{
    for (int index = 2; index <= 6; ++index) {
        if (!trimBlanks(boxes.box(index)).isEmpty()) {
            return true;
        }
    }
    return false;
}

QString SblParts::SBL2SQL(const SblBoxes& boxes)
{
    if (!SBLfilled(boxes)) {
        return QStringLiteral("[SEC] = '0' AND [BLK] = '0' AND");
    }
    const QString sectionText = trimBlanks(boxes.section);
    QString section = sectionText;
    QString subsection;
    const qsizetype point = sectionText.indexOf(kPoint);
    if (point >= 0) {
        section = sectionText.left(point);
        subsection = sectionText.mid(point + 1);
    }
    QString criteria;
    auto term = [&criteria](const char* column, const QString& value) {
        if (!value.isEmpty()) {
            criteria += QLatin1Char('[') + QLatin1String(column) + QLatin1String("] = ")
                + store::quotedText(value) + QLatin1String(" AND");
        }
    };
    term("SEC", section);
    term("SUD", subsection);
    term("BLK", trimBlanks(boxes.block));
    term("LOT", trimBlanks(boxes.lot));
    term("LOD", trimBlanks(boxes.sublot1));
    term("SUB", trimBlanks(boxes.sublot2));
    return criteria;
}

QString SblParts::mysbl2SBL(const QString& fullForm)
{
    const QString text = fullForm.toUpper();
    int position = 1;
    if (readSixPlaceParts(text, 1, 7, position) == Reading::RanOut) {
        return invalidSBL();
    }
    parts[8] = midText(text, position);
    if (parts[8] == QLatin1String("0-0")) {
        parts[8].clear();
    }
    QString section = parts[1];
    if (!isZeroOrEmpty(parts[2])) {
        section = parts[1] + kPoint + parts[2];
    }
    QString result = section + kDash;
    if (parts[3] != QLatin1String("0")) {
        result += parts[3] + kDash;
    }
    result += parts[4] + kDash + parts[5];
    if (parts[6] != QLatin1String("0")) {
        result += kPoint + parts[6];
    }
    if (parts[7] != QLatin1String("0")) {
        result += kPoint + parts[7];
    }
    if (!isZeroOrEmpty(parts[8])) {
        result += kPoint + parts[8];
    }
    return result;
}

QString SblParts::writtenForm(const QString& fullForm)
{
    const QString written = SblParts().mysbl2SBL(fullForm);
    return written == invalidSBL() ? fullForm : written;
}

QString SblParts::myssbl2SBL(const QString& shortText)
{
    shortForm = shortText.toUpper();
    const QString& text = shortForm;
    const qsizetype firstDash = text.indexOf(kDash);
    // Sections and blocks of more than nine places are not parcel numbers.
    if (firstDash < 0 || firstDash > 9) {
        return invalidSBL();
    }
    const QString sectionText = text.left(firstDash);
    const qsizetype point = sectionText.indexOf(kPoint);
    if (point >= 0) {
        parts[1] = sectionText.left(point);
        parts[2] = sectionText.mid(point + 1);
    } else {
        parts[1] = sectionText;
        parts[2] = QStringLiteral("0");
    }
    parts[3] = QStringLiteral("0");
    const qsizetype secondDash = text.indexOf(kDash, firstDash + 1);
    if (secondDash < 0) {
        // The block is read from the fifth character whatever the length of
        // the section: "1234-5" gives the block "-5". Kept as the office's
        // parcel numbers have always been converted.
        parts[4] = midText(text, 5);
        parts[5] = parts[6] = parts[7] = QStringLiteral("0");
    } else {
        if (secondDash - firstDash - 1 > 9) {
            return invalidSBL();
        }
        parts[4] = text.mid(firstDash + 1, secondDash - firstDash - 1);
        const QString lotText = text.mid(secondDash + 1);
        const qsizetype lotPoint = lotText.indexOf(kPoint);
        if (lotPoint >= 0) {
            parts[5] = lotText.left(lotPoint);
            const QString rest = lotText.mid(lotPoint + 1);
            const qsizetype restPoint = rest.indexOf(kPoint);
            if (restPoint >= 0) {
                parts[6] = rest.left(restPoint);
                parts[7] = rest.mid(restPoint + 1);
            } else {
                parts[6] = rest;
                parts[7] = QStringLiteral("0");
            }
        } else {
            parts[5] = lotText;
            parts[6] = parts[7] = QStringLiteral("0");
        }
    }
    parts[8] = QStringLiteral("0");
    QStringList inOrder;
    for (int i = 1; i <= 8; ++i) {
        inOrder.append(parts[static_cast<size_t>(i)]);
    }
    return cutSurplusDash(inOrder.join(kDash));
}

} // namespace pvardo::parcels
