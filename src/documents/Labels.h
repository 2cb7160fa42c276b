#pragma once

#include "documents/PrintRichText.h"
#include "documents/PrintState.h"

#include <QImage>
#include <QList>
#include <QPointF>
#include <QString>
#include <QStringList>

class QPagedPaintDevice;
class QTextDocument;

namespace pvardo::documents {

// Mailing labels print on sheets of a known layout. Each sheet is described
// by a small text file in the "labels" folder of the installation, listed in
// that folder's catalog.txt, so an office adds a new sheet without a new
// program. One rich-text template, lab.rtf, is filled per addressee and laid
// into its cell.

// A sheet, as its definition file gives it: one value a line, numbers in
// inches read by their leading digits. A missing file gives these values.
struct LabelSheet
{
    QString description = QStringLiteral("Avery® 5160");
    QString picture; // base name of the sheet's picture in the labels folder, without ".bmp"
    int across = 3;
    int down = 10;
    double height = 1.0;
    double width = 2.63;
    double topOffset = 0.6;
    double leftOffset = 0.2;
    double horizontalGap = 0.125;
    double verticalGap = 0;

    int perSheet() const { return across * down; }
};

// A sheet the catalogue offers: the caption of the list and the definition
// file, relative to the labels folder.
struct LabelSheetEntry
{
    QString caption;
    QString fileName;
};

struct LabelCatalog
{
    bool readable = false;
    QList<LabelSheetEntry> sheets;
};

// The most sheets a catalogue offers; a count above is cut to it.
constexpr int MaxLabelSheets = 10;

inline QString labelCatalogName()
{
    return QStringLiteral("catalog.txt");
}
inline QString defaultLabelSheetFile()
{
    return QStringLiteral("av5160.txt");
}
inline QString labelTemplateName()
{
    return QStringLiteral("lab.rtf");
}
inline QString labelCatalogMessage()
{
    return QStringLiteral("Label definition file not found. A default label will be created.");
}

// The labels folder of an installation.
QString labelsFolder(const QString& programFolder);

// Reads `folder`/catalog.txt: a count, then a caption line and a file line
// per sheet, at most MaxLabelSheets. A catalogue that cannot be read, or
// names no sheet, is not readable and offers the default sheet alone.
LabelCatalog readLabelCatalog(const QString& folder);

// Reads a definition file. A missing file gives the default sheet; a short
// one the default values of the lines it lacks; a count across or down, a
// height or a width that is no positive number, the default of its line.
LabelSheet readLabelSheet(const QString& path);

// The lines of a definition file for `sheet`.
QStringList labelSheetLines(const LabelSheet& sheet);

// What the label window says of a sheet: the description, a line break, then
// "3 across,10 down,1 x 2.63".
QString describeLabelSheet(const LabelSheet& sheet);

// The picture file of a sheet, empty when the sheet names none.
QString labelPicturePath(const QString& folder, const LabelSheet& sheet);

// A picture of the sheet for the label window: the cells across the whole
// width, above a band of 170 twips that carries the sheet's count, as the
// window reads a click on it.
QImage drawLabelSheetPicture(const LabelSheet& sheet);

// The band at the foot of a sheet's picture that holds no cells, in twips.
constexpr int labelPictureBandTwips = 170;

// The cell a click on a picture of `pictureWidth` by `pictureHeight` pixels
// (15 twips a pixel) picks: the whole cells passed plus one, held to the
// sheet's columns and rows.
QPoint labelCellAt(const LabelSheet& sheet, QPointF click, qreal pictureWidth, qreal pictureHeight);

// The values a label run holds between the label window and the printing.
struct LabelRunState
{
    LabelSheet sheet;
    double topOffset = sheet.topOffset;
    double leftOffset = sheet.leftOffset;
    // The cell the next label goes into.
    int nextColumn = 1;
    int nextRow = 1;
    // Labels are printed one at a time from a screen's current record: the
    // label window keeps the next cell and takes no clicks on the picture.
    bool single = false;
    // The label run is on (the window was left with Print).
    bool running = false;
};

LabelRunState& labelState();
void resetLabelState();

// The corner of a cell from the sheet's corner, in twips: the offsets, then
// whole labels and gaps for each column and row before it. The column and row
// are not checked, so a column of 0 lies one cell left of the offset.
QPointF labelCellOrigin(const LabelSheet& sheet, double topOffset, double leftOffset, int column, int row);

// The cell after (`column`, `row`): the next column, past the last one the
// first column of the next row, past the last row the first cell of a new
// sheet. True when a new sheet begins.
bool advanceLabelCell(const LabelSheet& sheet, int& column, int& row);

// Prints a label per addressee on `device`, from the state's next cell on,
// with the state's sheet and offsets: each label is the template filled by
// the print-time pass for its addressee and laid out in its cell: a line too
// wide is set smaller (to three fifths at most) and then cut at the cell's
// edge, and lines below the cell are left out, so no label runs into the
// next one. A full sheet goes on on a new page. The state's next
// cell is where the run stopped.
PrintOutcome PrintLabels(const QTextDocument& labelTemplate, const QList<Addressee>& addressees,
    LabelRunState& state, QPagedPaintDevice& device);

// The label template of the labels folder, or the stand-in with "%nm", "%ad",
// "%zp" and an empty line when it is missing or no RTF file. True when the
// folder's own template was loaded.
bool loadLabelTemplate(QTextDocument& buffer, const QString& programFolder);

} // namespace pvardo::documents
