#include "parcels/RpsFields.h"

#include "parcels/TextCuts.h"

namespace pvardo::parcels {

namespace {

QString field(const QString& line, int first, int width)
{
    return trimBlanks(midText(line, first, width));
}

void replaceUntilGone(QString& text, QLatin1String from, QLatin1String to)
{
    while (text.contains(from)) {
        text.replace(from, to);
    }
}

} // namespace

QString RpsFields::getSwis(const QString& line)
{
    return field(line, 1, 6);
}

QString RpsFields::getSBL(const QString& line)
{
    QString sbl = field(line, 65, 25);
    cleanSBL(sbl);
    return sbl;
}

QString RpsFields::getEGrid(const QString& line)
{
    const QString east = field(line, 90, 7);
    return east.isEmpty() ? QStringLiteral("0") : east;
}

QString RpsFields::getNGrid(const QString& line)
{
    const QString north = field(line, 97, 7);
    return north.isEmpty() ? QStringLiteral("0") : north;
}

QString RpsFields::getLoc(const QString& line)
{
    return trimBlanks(field(line, 133, 9) + QLatin1Char(' ') + field(line, 108, 25));
}

QString RpsFields::getOwner(const QString& line)
{
    return trimBlanks(field(line, 277, 25) + QLatin1Char(' ') + field(line, 302, 25));
}

QString RpsFields::getMailing(const QString& line)
{
    // An empty second line leaves two blanks before the comma, and the zip
    // keeps its own blanks: the office's labels have always looked so.
    return trimBlanks(field(line, 352, 25) + QLatin1Char(' ') + field(line, 377, 25) + QLatin1String(" , ")
        + field(line, 402, 25) + QLatin1Char(' ') + midText(line, 427, 9));
}

bool RpsFields::isParcelRecord(const QString& line)
{
    return line.endsWith(QLatin1String("14"));
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
