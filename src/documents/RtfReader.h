#pragma once

#include <QByteArray>
#include <QString>

class QTextDocument;

namespace pvardo::documents {

// What reading an RTF file came to. A damaged file is still read as far as it
// goes: the document holds everything before the damage, so a letter with a
// torn end can still be printed or repaired by hand.
struct RtfReadResult {
    bool notRtf = false;  // the bytes do not begin as RTF; the document is left empty
    bool damaged = false; // the file broke off, or held something that had to be dropped
    QString problem;      // the first problem met, in words for the office
};

// Limits that keep a hostile or broken file from exhausting the workstation.
// Anything beyond them is dropped and the file reported damaged, except
// groups nested deeper than the limit: those are read as part of the deepest
// group kept, so their text is never lost (word processors write files that
// nest thousands deep).
namespace RtfLimits {
constexpr int maxGroupDepth = 10000;
constexpr qsizetype maxPictureBytes = 32 * 1024 * 1024;  // encoded bytes of one picture
constexpr qsizetype maxAllPictureBytes = 96 * 1024 * 1024; // of all pictures together
constexpr int maxPictureSide = 12000;                      // pixels
constexpr qint64 maxPicturePixels = 25'000'000;    // a letter page scanned at 300 dots to the inch is 8 million
constexpr qint64 maxAllPicturePixels = 50'000'000; // of all pictures together, about 200 MB once decoded
constexpr int maxTableColumns = 63;
constexpr int maxTableCells = 200'000;
// Every insertion of rows into a Qt table costs a pass over the whole document,
// so a very long table is built as a run of tables of this many rows, one
// below the other, and a file is allowed this many tables in all; past that,
// rows come out as lines of tab-separated cells.
constexpr int rowsPerTable = 4096;
constexpr int maxTables = 1000;
constexpr int maxTabStops = 64;
// Sections past this many run on in the last one; headers, footers and notes
// are kept as RTF of their own, with the font and colour tables, up to this
// many bytes in all.
constexpr int maxSections = 1000;
constexpr qsizetype maxKeptBytes = 32 * 1024 * 1024;
} // namespace RtfLimits

// Reads RTF, as word processors and simple editors write it, into `document`
// (which is cleared first). Fonts, colours, character and paragraph formats,
// tabs, line and page breaks, tables (nested ones set off inside their cell)
// and pictures (PNG, JPEG, Windows metafiles and bitmaps, the result picture
// of an embedded object) come across, in every code page the file names:
// Windows, DOS and Mac, East Asian double-byte ones among them. Headers,
// footers, field instructions, object data and unknown destinations are
// skipped without losing the text around them.
RtfReadResult readRtf(const QByteArray& rtf, QTextDocument& document);

} // namespace pvardo::documents
