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
#include <QTextDocument>
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

        const QPointF corner = labelCellOrigin(state.sheet, state.topOffset, state.leftOffset, column, row);
        const qreal left = geometry.toDeviceX(corner.x() + geometry.leftEdge);
        const qreal top = geometry.toDeviceY(corner.y() + geometry.topEdge);
        const qreal right = geometry.toDeviceX(geometry.rightEdge);
        const qreal bottom = geometry.toDeviceY(geometry.bottomEdge);
        if (right > left && bottom > top) {
            const RichTextLayout layout(std::move(label), &device, right - left);
            layout.formatRange(&painter, 0, QRectF(QPointF(left, top), QPointF(right, bottom)));
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
