#include "documents/Labels.h"

#include "common/NumberText.h"
#include "common/TextFiles.h"
#include "documents/Merge.h"
#include "documents/PageGeometry.h"
#include "documents/RichTextLayout.h"
#include "documents/RtfReader.h"

#include <QDir>
#include <QFont>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <memory>

namespace pvardo::documents {

namespace {

constexpr int twipsPerPixel = 15;

QString numberText(double value)
{
    return QString::number(value, 'g', 6);
}

// A line may be set this much smaller to fit its label; beyond that it is cut
// at the label's edge.
constexpr qreal smallestLineScale = 0.6;

void layOut(QTextDocument& label, QPaintDevice* device, qreal width)
{
    label.documentLayout()->setPaintDevice(device);
    label.setTextWidth(width);
    label.documentLayout()->documentSize();
}

// Keeps every line of a label within `width` (device pixels): a line too wide
// is set smaller until it fits, or as small as it may be, and what still does
// not fit is cut off, so the label never wraps into lines it has no room for.
void fitLinesToWidth(QTextDocument& label, QPaintDevice* device, qreal width)
{
    layOut(label, device, width);
    // The scales are found before any is applied: a change of format lays the
    // lines out again.
    QList<QPair<int, qreal>> scales;
    for (QTextBlock block = label.begin(); block.isValid(); block = block.next()) {
        const QTextLayout* layout = block.layout();
        if (!layout || layout->lineCount() < 2) {
            continue;
        }
        // The line's width unbroken: its pieces and a little for each break.
        qreal natural = 0;
        for (int i = 0; i < layout->lineCount(); ++i) {
            natural += layout->lineAt(i).naturalTextWidth();
        }
        natural *= 1.03;
        scales.append({block.blockNumber(), std::max(layout->lineAt(0).width() / natural, smallestLineScale)});
    }
    if (scales.isEmpty()) {
        return;
    }
    struct Piece {
        int from;
        int to;
        QFont font;
    };
    QList<Piece> pieces;
    for (const auto& [number, scale] : std::as_const(scales)) {
        const QTextBlock block = label.findBlockByNumber(number);
        for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (!fragment.isValid()) {
                continue;
            }
            QFont font = fragment.charFormat().font();
            if (font.pointSizeF() > 0) {
                font.setPointSizeF(font.pointSizeF() * scale);
            } else if (font.pixelSize() > 0) {
                font.setPixelSize(std::max(1, int(font.pixelSize() * scale)));
            }
            pieces.append({fragment.position(), fragment.position() + fragment.length(), font});
        }
    }
    for (const Piece& piece : std::as_const(pieces)) {
        QTextCharFormat smaller;
        smaller.setFont(piece.font, QTextCharFormat::FontPropertiesSpecifiedOnly);
        QTextCursor part(&label);
        part.setPosition(piece.from);
        part.setPosition(piece.to, QTextCursor::KeepAnchor);
        part.mergeCharFormat(smaller);
    }
    layOut(label, device, width);
    // What does not fit on the first line is cut; the cuts are found first
    // and made from the last up, so each one's place still holds.
    QList<QPair<int, int>> cuts;
    for (QTextBlock block = label.begin(); block.isValid(); block = block.next()) {
        const QTextLayout* layout = block.layout();
        if (layout && layout->lineCount() > 1) {
            cuts.append({block.position() + layout->lineAt(0).textLength(), block.position() + block.length() - 1});
        }
    }
    for (qsizetype i = cuts.size() - 1; i >= 0; --i) {
        QTextCursor rest(&label);
        rest.setPosition(cuts.at(i).first);
        rest.setPosition(cuts.at(i).second, QTextCursor::KeepAnchor);
        rest.removeSelectedText();
    }
    layOut(label, device, width);
}

} // namespace

QString labelsFolder(const QString& programFolder)
{
    return QDir::cleanPath(programFolder + QStringLiteral("/labels"));
}

LabelCatalog readLabelCatalog(const QString& folder)
{
    LabelCatalog catalog;
    const std::optional<QStringList> lines = readTextLines(QDir(folder).filePath(labelCatalogName()));
    if (lines && !lines->isEmpty()) {
        const int count = std::min(LeadingWholeNumber(lines->first().trimmed()), MaxLabelSheets);
        for (int i = 0; i < count && 2 + 2 * i < lines->size(); ++i) {
            catalog.sheets.append({lines->at(1 + 2 * i).trimmed(), lines->at(2 + 2 * i).trimmed()});
        }
    }
    catalog.readable = !catalog.sheets.isEmpty();
    if (!catalog.readable) {
        catalog.sheets = {{LabelSheet().description, defaultLabelSheetFile()}};
    }
    return catalog;
}

LabelSheet readLabelSheet(const QString& path)
{
    LabelSheet sheet;
    const std::optional<QStringList> read = readTextLines(path);
    if (!read) {
        return sheet;
    }
    QStringList lines;
    for (const QString& line : *read) {
        lines.append(line.trimmed());
    }
    auto has = [&](int line) { return line <= lines.size(); };
    auto number = [&](int line, double fallback, bool positive) {
        if (!has(line)) {
            return fallback;
        }
        const double value = LeadingNumber(lines.at(line - 1));
        return positive && !(value > 0) ? fallback : value;
    };
    if (has(1)) {
        sheet.description = lines.at(0);
    }
    if (has(2)) {
        sheet.picture = lines.at(1);
    }
    // A sheet holds at least one label and never more than a few hundred.
    sheet.across = std::min(int(number(3, sheet.across, true)), 100);
    sheet.down = std::min(int(number(4, sheet.down, true)), 200);
    if (sheet.across < 1) {
        sheet.across = LabelSheet().across;
    }
    if (sheet.down < 1) {
        sheet.down = LabelSheet().down;
    }
    sheet.height = number(5, sheet.height, true);
    sheet.width = number(6, sheet.width, true);
    sheet.topOffset = number(7, sheet.topOffset, false);
    sheet.leftOffset = number(8, sheet.leftOffset, false);
    sheet.horizontalGap = number(9, sheet.horizontalGap, false);
    sheet.verticalGap = number(10, sheet.verticalGap, false);
    return sheet;
}

QStringList labelSheetLines(const LabelSheet& sheet)
{
    return {sheet.description, sheet.picture, QString::number(sheet.across), QString::number(sheet.down),
        numberText(sheet.height), numberText(sheet.width), numberText(sheet.topOffset),
        numberText(sheet.leftOffset), numberText(sheet.horizontalGap), numberText(sheet.verticalGap)};
}

QString describeLabelSheet(const LabelSheet& sheet)
{
    return sheet.description + QLatin1Char('\n') + QString::number(sheet.across) + QStringLiteral(" across,")
        + QString::number(sheet.down) + QStringLiteral(" down,") + numberText(sheet.height)
        + QStringLiteral(" x ") + numberText(sheet.width);
}

QString labelPicturePath(const QString& folder, const LabelSheet& sheet)
{
    if (sheet.picture.trimmed().isEmpty()) {
        return {};
    }
    return QDir(folder).filePath(sheet.picture.trimmed() + QStringLiteral(".bmp"));
}

QImage drawLabelSheetPicture(const LabelSheet& sheet)
{
    // A letter sheet at 24 pixels to the inch, with the band below it.
    const int width = 204;
    const int cellsHeight = 264;
    const int band = int(std::ceil(double(labelPictureBandTwips) / twipsPerPixel));
    QImage image(width, cellsHeight + band, QImage::Format_RGB32);
    image.fill(QColor(0xf4, 0xf4, 0xf0));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal cellWidth = qreal(width) / sheet.across;
    const qreal cellHeight = qreal(cellsHeight) / sheet.down;
    painter.setPen(QPen(QColor(0x70, 0x80, 0x90), 1));
    painter.setBrush(Qt::white);
    const qreal inset = std::min({2.0, cellWidth / 6, cellHeight / 6});
    for (int row = 0; row < sheet.down; ++row) {
        for (int column = 0; column < sheet.across; ++column) {
            const QRectF cell(column * cellWidth, row * cellHeight, cellWidth, cellHeight);
            painter.drawRoundedRect(cell.adjusted(inset, inset, -inset, -inset), 3, 3);
        }
    }
    painter.fillRect(QRect(0, cellsHeight, width, band), QColor(0xdd, 0xe2, 0xe8));
    QFont font = painter.font();
    font.setPixelSize(std::max(band - 3, 6));
    painter.setFont(font);
    painter.setPen(QColor(0x30, 0x30, 0x30));
    painter.drawText(QRect(0, cellsHeight, width, band), Qt::AlignCenter,
        QString::number(sheet.perSheet()) + QStringLiteral(" to a sheet"));
    painter.end();
    return image;
}

QPoint labelCellAt(const LabelSheet& sheet, QPointF click, qreal pictureWidth, qreal pictureHeight)
{
    const qreal cellWidth = pictureWidth / sheet.across;
    const qreal cellHeight = (pictureHeight - qreal(labelPictureBandTwips) / twipsPerPixel) / sheet.down;
    auto cell = [](qreal at, qreal size, int count) {
        const int passed = size > 0 ? int(std::floor(std::max<qreal>(at, 0) / size)) : 0;
        return std::clamp(passed + 1, 1, count);
    };
    return {cell(click.x(), cellWidth, sheet.across), cell(click.y(), cellHeight, sheet.down)};
}

LabelRunState& labelState()
{
    static LabelRunState state;
    return state;
}

void resetLabelState()
{
    labelState() = LabelRunState();
}

QPointF labelCellOrigin(const LabelSheet& sheet, double topOffset, double leftOffset, int column, int row)
{
    const double x = leftOffset * 1440 + (column - 1) * (sheet.width * 1440)
        + (column - 1) * (sheet.horizontalGap * 1440);
    const double y
        = topOffset * 1440 + (row - 1) * (sheet.height * 1440) + (row - 1) * (sheet.verticalGap * 1440);
    return {x, y};
}

bool advanceLabelCell(const LabelSheet& sheet, int& column, int& row)
{
    ++column;
    if (column > sheet.across) {
        column = 1;
        ++row;
    }
    if (row > sheet.down) {
        column = 1;
        row = 1;
        return true;
    }
    return false;
}

PrintOutcome PrintLabels(const QTextDocument& labelTemplate, const QList<Addressee>& addressees,
    LabelRunState& state, QPagedPaintDevice& device)
{
    PrintOutcome outcome;
    if (addressees.isEmpty()) {
        outcome.ok = true;
        return outcome;
    }
    // The offsets are the margins, handed over in inches to a routine that
    // counts twips: the edges stay at the printable area's corner and the
    // cells are placed from there, as the offsets were always measured.
    auto geometryNow = [&] { return SetupPage(device, int(state.leftOffset), int(state.topOffset), 0, 0); };
    PageGeometry geometry = geometryNow();
    QPainter painter;
    if (!painter.begin(&device)) {
        outcome.error = QStringLiteral("Error The printer could not be opened.");
        return outcome;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    PrintState& print = printState();
    const Addressee before = print.addressee;
    int& column = state.nextColumn;
    int& row = state.nextRow;
    outcome.pages = 1;
    for (qsizetype i = 0; i < addressees.size(); ++i) {
        print.addressee = addressees.at(i);
        std::unique_ptr<QTextDocument> label(labelTemplate.clone());
        label->setUndoRedoEnabled(false);
        ExpandPrintTokens(*label);

        // A label stays in its own cell: a line too wide is set smaller or
        // cut at the cell's edge, and lines below the cell are left out, so
        // nothing runs into the neighbouring labels.
        const QPointF corner = labelCellOrigin(state.sheet, state.topOffset, state.leftOffset, column, row);
        const qreal left = geometry.toDeviceX(corner.x() + geometry.leftEdge);
        const qreal top = geometry.toDeviceY(corner.y() + geometry.topEdge);
        const qreal right = std::min(geometry.toDeviceX(geometry.rightEdge),
            geometry.toDeviceX(corner.x() + geometry.leftEdge + state.sheet.width * 1440));
        const qreal bottom = std::min(geometry.toDeviceY(geometry.bottomEdge),
            geometry.toDeviceY(corner.y() + geometry.topEdge + state.sheet.height * 1440));
        if (right > left && bottom > top) {
            fitLinesToWidth(*label, &device, right - left);
            const RichTextLayout layout(std::move(label), &device, right - left);
            const QRectF cell(QPointF(left, top), QPointF(right, bottom));
            painter.save();
            painter.setClipRect(cell);
            layout.formatRange(&painter, 0, cell);
            painter.restore();
        }

        if (advanceLabelCell(state.sheet, column, row) && i + 1 < addressees.size()) {
            if (!device.newPage()) {
                painter.end();
                print.addressee = before;
                outcome.error = QStringLiteral("Error The printer refused a new page.");
                return outcome;
            }
            geometry = geometryNow();
            ++outcome.pages;
        }
    }
    print.addressee = before;
    if (!painter.end()) {
        outcome.error = QStringLiteral("Error The printer could not finish the document.");
        return outcome;
    }
    outcome.ok = true;
    return outcome;
}

bool loadLabelTemplate(QTextDocument& buffer, const QString& programFolder)
{
    if (programFolder.isEmpty()) {
        buffer.clear();
        readRtf(defaultLabelRtf(), buffer);
        return false;
    }
    return DoMemoForm(buffer, labelTemplateName(), programFolder).kind == MemoForm::Kind::Loaded;
}

} // namespace pvardo::documents
