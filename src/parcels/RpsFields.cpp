#include "parcels/RpsFields.h"

#include "common/TextFiles.h"
#include "parcels/TextCuts.h"

namespace pvardo::parcels {

namespace {

// The columns count bytes: a name written in UTF-8 takes two or three bytes
// for a letter, and the fields after it stay where the roll put them. Each
// field is decoded on its own.
QString rawField(const QByteArray& line, int first, int width)
{
    if (first < 1 || first > line.size()) {
        return QString();
    }
    const QByteArray bytes = line.mid(first - 1, width);
    for (const char c : bytes) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            return decodeText(bytes);
        }
    }
    return QString::fromLatin1(bytes);
}

QString field(const QByteArray& line, int first, int width)
{
    return trimBlanks(rawField(line, first, width));
}

void replaceUntilGone(QString& text, QLatin1String from, QLatin1String to)
{
    while (text.contains(from)) {
        text.replace(from, to);
    }
}

} // namespace

QString RpsFields::getSwis(const QByteArray& line)
{
    return field(line, 1, 6);
}

QString RpsFields::getSBL(const QByteArray& line)
{
    QString sbl = field(line, 65, 25);
    cleanSBL(sbl);
    return sbl;
}

QString RpsFields::getEGrid(const QByteArray& line)
{
    const QString east = field(line, 90, 7);
    return east.isEmpty() ? QStringLiteral("0") : east;
}

QString RpsFields::getNGrid(const QByteArray& line)
{
    const QString north = field(line, 97, 7);
    return north.isEmpty() ? QStringLiteral("0") : north;
}

QString RpsFields::getLoc(const QByteArray& line)
{
    return trimBlanks(field(line, 133, 9) + QLatin1Char(' ') + field(line, 108, 25));
}

QString RpsFields::getOwner(const QByteArray& line)
{
    return trimBlanks(field(line, 277, 25) + QLatin1Char(' ') + field(line, 302, 25));
}

QString RpsFields::getMailing(const QByteArray& line)
{
    // An empty second line leaves two blanks before the comma, and the zip
    // keeps its own blanks: the office's labels have always looked so.
    return trimBlanks(field(line, 352, 25) + QLatin1Char(' ') + field(line, 377, 25) + QLatin1String(" , ")
        + field(line, 402, 25) + QLatin1Char(' ') + rawField(line, 427, 9));
}

QString RpsFields::writtenZip(const QString& mailing)
{
    const QString text = trimBlanks(mailing);
    constexpr qsizetype zipPlusFour = 9;
    const qsizetype start = text.size() - zipPlusFour;
    if (start < 1 || text.at(start - 1) != QLatin1Char(' ')) {
        return mailing;
    }
    for (qsizetype i = start; i < text.size(); ++i) {
        if (!text.at(i).isDigit() || text.at(i).unicode() > '9') {
            return mailing;
        }
    }
    return text.left(start + 5) + QLatin1Char('-') + text.mid(start + 5);
}

bool RpsFields::isParcelRecord(const QByteArray& line)
{
    return line.endsWith("14");
}

void RpsFields::cleanSBL(QString& sbl)
{
    replaceUntilGone(sbl, QLatin1String(".-"), QLatin1String("-"));
    replaceUntilGone(sbl, QLatin1String("./"), QLatin1String("."));
    replaceUntilGone(sbl, QLatin1String("/"), QLatin1String("."));
    replaceUntilGone(sbl, QLatin1String("--"), QLatin1String("-"));
    if (sbl.count(QLatin1Char('-')) > 7) {
        sbl.truncate(sbl.lastIndexOf(QLatin1Char('-')));
    }
}

QString RpsFields::StripNonNum(const QString& text)
{
    QString kept;
    for (const QChar c : text) {
        if ((c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('.')) {
            kept.append(c);
        }
    }
    return kept.isEmpty() ? QStringLiteral("0") : kept;
}

QString RpsFields::StripMe(const QString& text)
{
    QString value = text;
    if (trimBlanks(value).isEmpty()) {
        return value;
    }
    if (value.startsWith(QLatin1Char('"'))) {
        value.remove(0, 1);
    }
    if (value.endsWith(QLatin1Char('"'))) {
        value.chop(1);
    }
    return value;
}

QString RpsFields::makeName(const QString& text)
{
    const qsizetype blank = text.lastIndexOf(QLatin1Char(' '));
    if (blank < 0) {
        return text;
    }
    return text.mid(blank + 1) + QLatin1Char(' ') + text.left(blank);
}

} // namespace pvardo::parcels
