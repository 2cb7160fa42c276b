#pragma once

// Writes large state RPS extracts for the roll benchmarks: fixed-column
// records of 460 characters ending in type "14", with a record of another type
// now and then, as the county's files have them. Every record has its own
// parcel, so a first import adds every row and a second one updates them all.

#include <QByteArray>
#include <QFile>
#include <QString>

namespace pvardo::bench {

inline QByteArray rpsRecord(int i)
{
    QByteArray line(460, ' ');
    auto put = [&line](int column, int width, const QByteArray& text) {
        line.replace(column - 1, width, text.leftJustified(width, ' ', true));
    };
    static const char* const streets[]
        = {"MAIN ST", "OAK LN", "RIVER RD", "HILLSIDE AVE", "ORCHARD WAY", "MILL ST"};
    static const char* const owners[]
        = {"SMITH JOHN", "JONES MARY", "GARCIA ANA", "MILLER ROBERT", "LEE DAVID"};
    static const char* const towns[] = {"KINGSTON NY", "NEW PALTZ NY", "SAUGERTIES NY", "WOODSTOCK NY"};
    // Section, subsection, block and lot make 200,000 distinct parcels; some
    // have a sublot, and the roll writes a few with its slashes.
    const int section = 1 + i / 20000;
    const int subsection = 1 + (i / 400) % 50;
    const int block = 1 + (i / 20) % 20;
    const int lot = 1 + i % 20;
    QByteArray sbl = QByteArray::number(section) + (i % 7 == 0 ? "/" : ".") + QByteArray::number(subsection)
        + "-" + QByteArray::number(block) + "-" + QByteArray::number(lot);
    if (i % 5 == 0) {
        sbl += "." + QByteArray::number(i % 3 + 1);
    }
    put(1, 6, i % 2 == 0 ? "134201" : "134289");
    put(65, 25, sbl);
    put(90, 7, i % 11 == 0 ? QByteArray() : QByteArray::number(500000 + i % 400000).rightJustified(7, '0'));
    put(97, 7, QByteArray::number(700000 + (i * 7) % 200000));
    put(108, 25, streets[i % 6]);
    put(133, 9, QByteArray::number(1 + i % 9000).rightJustified(9, ' '));
    put(277, 25, owners[i % 5]);
    put(302, 25, i % 3 == 0 ? QByteArray("ESTATE OF") : QByteArray());
    put(352, 25, "PO BOX " + QByteArray::number(i % 999 + 1));
    put(402, 25, towns[i % 4]);
    put(427, 9, QByteArray::number(12401 + i % 90));
    line.replace(458, 2, "14");
    return line;
}

// A record of another type, which the import passes over.
inline QByteArray otherRecord(int i)
{
    QByteArray line(120, 'X');
    line.replace(0, 6, "134201");
    line.replace(118, 2, i % 2 ? "11" : "21");
    return line;
}

// Writes an extract of `records` parcel records (and one other line for each
// fifty) with LF endings. Gives false when the file could not be written.
inline bool writeRpsExtract(const QString& path, int records)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    for (int i = 0; i < records; ++i) {
        if (i % 50 == 49) {
            file.write(otherRecord(i) + '\n');
        }
        if (file.write(rpsRecord(i) + '\n') < 0) {
            return false;
        }
    }
    return file.flush();
}

} // namespace pvardo::bench
