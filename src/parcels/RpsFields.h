#pragma once

#include <QByteArray>
#include <QString>

namespace pvardo::parcels {

// The fields of one line of the state's RPS extract, a fixed-column text file:
// SWIS code in columns 1-6, S-B-L in 65-89, grid east and north in 90-103,
// street and house number in 108-141, owner in 277-326, mailing address in
// 352-435, and the record type in the last two characters. Only type "14"
// lines are parcel records. A line shorter than a column reads it as empty.
// The columns count bytes of the line as read from the file; each field is
// then read as UTF-8, or as Windows-1252 when it is not valid UTF-8. A text
// given as a QString stands for its UTF-8 bytes.
class RpsFields
{
public:
    static QString getSwis(const QByteArray& line);
    static QString getSwis(const QString& line) { return getSwis(line.toUtf8()); }
    // The S-B-L in short form, trimmed and cleaned of the roll's marks.
    static QString getSBL(const QByteArray& line);
    static QString getSBL(const QString& line) { return getSBL(line.toUtf8()); }
    // Grid east and north, trimmed; empty reads "0".
    static QString getEGrid(const QByteArray& line);
    static QString getEGrid(const QString& line) { return getEGrid(line.toUtf8()); }
    static QString getNGrid(const QByteArray& line);
    static QString getNGrid(const QString& line) { return getNGrid(line.toUtf8()); }
    // House number, one blank, street.
    static QString getLoc(const QByteArray& line);
    static QString getLoc(const QString& line) { return getLoc(line.toUtf8()); }
    // First owner line, one blank, second owner line.
    static QString getOwner(const QByteArray& line);
    static QString getOwner(const QString& line) { return getOwner(line.toUtf8()); }
    // First and second mailing line, " , ", city and state, one blank, zip.
    static QString getMailing(const QByteArray& line);
    static QString getMailing(const QString& line) { return getMailing(line.toUtf8()); }
    // A mailing address as a clerk reads it: a ZIP+4 the roll wrote as nine
    // digits at the end ("ALBANY NY 120541234") gets its hyphen
    // ("ALBANY NY 12054-1234"); anything else is given back as it is.
    static QString writtenZip(const QString& mailing);
    // True for a parcel record: the line ends in "14".
    static bool isParcelRecord(const QByteArray& line);
    static bool isParcelRecord(const QString& line) { return isParcelRecord(line.toUtf8()); }

    // Repairs the roll's ways of writing an S-B-L: slashes for points, ".-",
    // "./", doubled dashes, and a surplus dash at the end.
    static void cleanSBL(QString& sbl);

    // Helpers for a custom file layout.
    // Digits and points only; nothing left reads "0".
    static QString StripNonNum(const QString& text);
    // One leading and one trailing double quote removed from a value that is
    // not blank.
    static QString StripMe(const QString& text);
    // "SMITH JOHN" from "JOHN SMITH": turned round at the last blank.
    static QString makeName(const QString& text);
};

} // namespace pvardo::parcels
