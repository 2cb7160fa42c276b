#include "documents/RichTextLayout.h"

#include "documents/DocumentUnits.h"

#include <QAbstractTextDocumentLayout>
#include <QPaintDevice>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextLayout>
#include <QTextTable>

#include <algorithm>

namespace pvardo::documents {

namespace {

// Qt's PDF output drops the small letters of text in small capitals (the
// smaller face is never embedded). The copy that is printed gets them as
// capitals of a smaller size instead, which is what small capitals are; one
// character stays one character, so positions do not move.
void spellOutSmallCapitals(QTextDocument& document)
{
    struct Run {
        int position;
        QString text;
        QTextCharFormat format;
    };
    std::vector<Run> runs;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (fragment.charFormat().fontCapitalization() == QFont::SmallCaps) {
                runs.push_back({fragment.position(), fragment.text(), fragment.charFormat()});
            }
        }
    }
    QTextCursor cursor(&document);
    for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
        const qreal size = run->format.fontPointSize() > 0 ? run->format.fontPointSize()
                                                            : document.defaultFont().pointSizeF();
        qsizetype start = 0;
        while (start < run->text.size()) {
            const bool lower = run->text.at(start).isLower();
            qsizetype end = start + 1;
            while (end < run->text.size() && run->text.at(end).isLower() == lower) {
                ++end;
            }
            QString piece = run->text.mid(start, end - start);
            QTextCharFormat format = run->format;
            format.setFontCapitalization(QFont::MixedCase);
            if (lower) {
                for (QChar& c : piece) {
                    c = c.toUpper();
                }
                format.setFontPointSize(std::max<qreal>(size * 0.8, 1));
            }
            cursor.setPosition(run->position + int(start));
            cursor.setPosition(run->position + int(end), QTextCursor::KeepAnchor);
            cursor.insertText(piece, format);
            start = end;
        }
    }
}

// Qt's layout scales most document lengths to the printer's resolution (space
// above and below, tab stops, table widths, pictures) but not a paragraph's
// side margins and first-line indent, which would shrink to nothing at 1200
// dots to the inch. The printed copy gets them in the device's pixels.
void scaleParagraphIndents(QTextDocument& document, qreal scale)
{
    if (qFuzzyCompare(scale, 1.0)) {
        return;
    }
    QTextCursor cursor(&document);
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QTextBlockFormat format = block.blockFormat();
        if (format.leftMargin() == 0 && format.rightMargin() == 0 && format.textIndent() == 0) {
            continue;
        }
        format.setLeftMargin(format.leftMargin() * scale);
        format.setRightMargin(format.rightMargin() * scale);
        format.setTextIndent(format.textIndent() * scale);
        cursor.setPosition(block.position());
        cursor.setBlockFormat(format);
    }
}

// A table whose columns are wider than the text is made narrower, every
// column in proportion, so that no column is lost beyond the paper's edge.
// Widths are in the document's units; `width` is the text's.
void fitTablesToWidth(QTextDocument& document, qreal width)
{
    QTextFrame* root = document.rootFrame();
    for (QTextFrame* frame : root->childFrames()) {
        auto* table = qobject_cast<QTextTable*>(frame);
        if (!table) {
            continue;
        }
        QTextTableFormat format = table->format();
        QList<QTextLength> widths = format.columnWidthConstraints();
        qreal fixed = 0;
        for (const QTextLength& length : widths) {
            if (length.type() == QTextLength::FixedLength) {
                fixed += length.rawValue();
            }
        }
        const qreal available = width - format.leftMargin() - format.rightMargin();
        if (fixed <= available || fixed <= 0 || available <= 0) {
            continue;
        }
        const qreal factor = available / fixed;
        for (QTextLength& length : widths) {
            if (length.type() == QTextLength::FixedLength) {
                length = QTextLength(QTextLength::FixedLength, length.rawValue() * factor);
            }
        }
        format.setColumnWidthConstraints(widths);
        table->setFormat(format);
    }
}

// A table without a line anywhere (most tables of letters and listings) is
// laid out and drawn the same whether its cells share their borders or not,
// but Qt works out shared borders from each cell's neighbours, which costs
// more than the rest of the table's layout and drawing together. The printed
// copy of such a table keeps its cells' borders apart.
void separateBorderlessTables(QTextDocument& document)
{
    const auto drawn = [](qreal width, QTextFrameFormat::BorderStyle style) {
        return width > 0 && style != QTextFrameFormat::BorderStyle_None;
    };
    for (QTextFrame* frame : document.rootFrame()->childFrames()) {
        auto* table = qobject_cast<QTextTable*>(frame);
        if (!table) {
            continue;
        }
        QTextTableFormat format = table->format();
        if (!format.borderCollapse() || drawn(format.border(), format.borderStyle())) {
            continue;
        }
        bool lines = false;
        for (int row = 0; row < table->rows() && !lines; ++row) {
            for (int column = 0; column < table->columns() && !lines; ++column) {
                const QTextTableCellFormat cell = table->cellAt(row, column).format().toTableCellFormat();
                lines = drawn(cell.topBorder(), cell.topBorderStyle()) || drawn(cell.leftBorder(), cell.leftBorderStyle())
                        || drawn(cell.bottomBorder(), cell.bottomBorderStyle())
                        || drawn(cell.rightBorder(), cell.rightBorderStyle());
            }
        }
        if (!lines) {
            format.setBorderCollapse(false);
            format.setCellSpacing(0);
            table->setFormat(format);
        }
    }
}

// The top of each row of `table` as laid out, and the table's bottom, in
// device pixels.
std::vector<qreal> rowTops(const QTextDocument& document, QTextTable* table)
{
    QAbstractTextDocumentLayout* layout = document.documentLayout();
    const QRectF frameRect = layout->frameBoundingRect(table);
    std::vector<qreal> tops(size_t(table->rows()) + 1, frameRect.bottom());
    for (int row = 0; row < table->rows(); ++row) {
        for (int column = 0; column < table->columns(); ++column) {
            const QTextTableCell cell = table->cellAt(row, column);
            if (!cell.isValid() || cell.row() != row) {
                continue;
            }
            const QTextTableCellFormat format = cell.format().toTableCellFormat();
            const QTextBlock first = document.findBlock(cell.firstPosition());
            tops[size_t(row)] = std::min(tops[size_t(row)], layout->blockBoundingRect(first).top() - format.topPadding()
                                                                 - format.topBorder());
        }
    }
    tops[0] = std::min(tops[0], frameRect.top());
    for (size_t row = tops.size() - 1; row-- > 0;) {
        tops[row] = std::min(tops[row], tops[row + 1]); // a row wholly covered by merged cells
    }
    return tops;
}

// Rows lower than the height the document gives them grow to it: each cell
// of the row gets the difference as space below its text. All of a table's
// rows change in one edit, so the table is laid out once more, not once a row.
void growRowsToTheirHeight(QTextDocument& document, qreal scale)
{
    for (QTextFrame* frame : document.rootFrame()->childFrames()) {
        auto* table = qobject_cast<QTextTable*>(frame);
        if (!table) {
            continue;
        }
        std::vector<qreal> tops;
        QTextCursor edit(&document);
        bool editing = false;
        for (int row = 0; row < table->rows(); ++row) {
            const QTextTableCell first = table->cellAt(row, 0);
            const int twips = first.format().intProperty(RichTextLayout::rowHeightProperty);
            if (twips <= 0) {
                continue;
            }
            if (tops.empty()) {
                tops = rowTops(document, table);
            }
            const qreal wanted = twipsToUnits(twips) * scale;
            const qreal deficit = wanted - (tops[size_t(row) + 1] - tops[size_t(row)]);
            if (deficit < 1) {
                continue;
            }
            if (!editing) {
                edit.beginEditBlock();
                editing = true;
            }
            for (int column = 0; column < table->columns(); ++column) {
                QTextTableCell cell = table->cellAt(row, column);
                if (!cell.isValid() || cell.row() != row || cell.column() != column || cell.rowSpan() > 1) {
                    continue;
                }
                QTextTableCellFormat format = cell.format().toTableCellFormat();
                format.setBottomPadding(format.bottomPadding() + deficit / scale);
                cell.setFormat(format);
            }
        }
        if (editing) {
            edit.endEditBlock();
        }
    }
}

} // namespace

RichTextLayout::RichTextLayout(const QTextDocument& document, QPaintDevice* device, qreal width)
    : RichTextLayout(std::unique_ptr<QTextDocument>(document.clone()), device, width)
{
}

RichTextLayout::RichTextLayout(std::unique_ptr<QTextDocument> document, QPaintDevice* device, qreal width)
    : m_document(std::move(document)), m_width(std::max<qreal>(width, 1))
{
    m_document->setUndoRedoEnabled(false);
    spellOutSmallCapitals(*m_document);
    const qreal scale = device ? device->logicalDpiX() / twipsToUnits(1440) : 1.0;
    if (device) {
        scaleParagraphIndents(*m_document, scale);
    }
    fitTablesToWidth(*m_document, m_width / scale);
    separateBorderlessTables(*m_document);
    // Each of the settings below lays the whole document out again once a
    // layout exists (for a long table, a pass over all its rows); with no
    // page size the layout waits, so the text is laid out once, at the end.
    m_document->setDocumentMargin(0);
    m_document->setPageSize(QSizeF(0, 0));
    m_document->documentLayout()->setPaintDevice(device);
    m_document->setTextWidth(m_width);
    m_document->documentLayout()->documentSize();
    growRowsToTheirHeight(*m_document, scale);
    m_textLength = std::max(0, m_document->characterCount() - 1);
    collectUnits();
}

RichTextLayout::~RichTextLayout() = default;

void RichTextLayout::collectUnits()
{
    QAbstractTextDocumentLayout* layout = m_document->documentLayout();
    layout->documentSize(); // finishes the layout
    bool breakNext = false;

    auto addBlockLines = [&](const QTextBlock& block) {
        const QTextLayout* textLayout = block.layout();
        const QTextBlockFormat format = block.blockFormat();
        const QPointF origin = layout->blockBoundingRect(block).topLeft();
        const bool empty = block.length() <= 1;
        const int lines = textLayout ? textLayout->lineCount() : 0;
        bool breakBefore = breakNext || (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore);
        breakNext = format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysAfter;
        const size_t blockStart = m_units.size();
        const bool keep = format.boolProperty(keepWithNextProperty);
        if (lines == 0) {
            const QRectF rect = layout->blockBoundingRect(block);
            m_units.push_back({rect.top(), rect.bottom(), block.position(), breakBefore, empty, keep, blockStart});
            return;
        }
        for (int i = 0; i < lines; ++i) {
            const QTextLine line = textLayout->lineAt(i);
            const qreal top = origin.y() + line.y();
            m_units.push_back({top, top + line.height(), block.position() + line.textStart(), breakBefore, empty,
                               keep && i + 1 == lines, blockStart});
            breakBefore = false;
        }
    };

    QTextFrame* root = m_document->rootFrame();
    for (QTextFrame::iterator it = root->begin(); !it.atEnd(); ++it) {
        if (QTextFrame* frame = it.currentFrame()) {
            const QRectF frameRect = layout->frameBoundingRect(frame);
            const bool breakBefore
                = breakNext || (frame->frameFormat().pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore);
            breakNext = false;
            auto* table = qobject_cast<QTextTable*>(frame);
            if (!table) {
                m_units.push_back(
                    {frameRect.top(), frameRect.bottom(), frame->firstPosition(), breakBefore, false, false, m_units.size()});
                continue;
            }
            // Table rows are never split; each row is one unit, from its top to
            // the next row's top.
            const size_t firstRowUnit = m_units.size();
            for (int row = 0; row < table->rows(); ++row) {
                qreal top = frameRect.bottom();
                int position = -1;
                for (int column = 0; column < table->columns(); ++column) {
                    const QTextTableCell cell = table->cellAt(row, column);
                    if (!cell.isValid() || cell.row() != row) {
                        continue;
                    }
                    const QTextBlock first = m_document->findBlock(cell.firstPosition());
                    const QTextTableCellFormat cellFormat = cell.format().toTableCellFormat();
                    const qreal inset = cellFormat.topPadding() + cellFormat.topBorder();
                    top = std::min(top, layout->blockBoundingRect(first).top() - inset);
                    if (position < 0 || cell.firstPosition() < position) {
                        position = cell.firstPosition();
                    }
                }
                if (position < 0) {
                    continue; // a row wholly covered by cells merged from above
                }
                if (row == 0) {
                    top = std::min(top, frameRect.top());
                }
                m_units.push_back({top, top, position, row == 0 && breakBefore, false, false, m_units.size()});
            }
            for (size_t i = firstRowUnit; i < m_units.size(); ++i) {
                m_units[i].bottom = i + 1 < m_units.size() ? m_units[i + 1].top : frameRect.bottom();
                m_units[i].bottom = std::max(m_units[i].bottom, m_units[i].top);
            }
            continue;
        }
        const QTextBlock block = it.currentBlock();
        if (block.isValid()) {
            addBlockLines(block);
        }
    }

    m_trailing = m_units.empty() ? 0 : std::max<qreal>(0, layout->documentSize().height() - m_units.back().bottom);
    m_onlyEmptyFrom.assign(m_units.size() + 1, true);
    for (size_t i = m_units.size(); i-- > 0;) {
        m_onlyEmptyFrom[i] = m_units[i].empty && m_onlyEmptyFrom[i + 1];
    }
}

int RichTextLayout::formatRange(QPainter* painter, int firstChar, const QRectF& target) const
{
    return formatRange(painter, firstChar, target, false, nullptr);
}

int RichTextLayout::formatRange(QPainter* painter, int firstChar, const QRectF& target, bool pageHoldsText,
                                qreal* used) const
{
    if (used) {
        *used = 0;
    }
    if (firstChar >= m_textLength || m_units.empty()) {
        return m_textLength;
    }
    // The unit holding the first character.
    auto it = std::upper_bound(m_units.begin(), m_units.end(), firstChar,
                               [](int position, const Unit& unit) { return position < unit.position; });
    size_t first = it == m_units.begin() ? 0 : size_t(std::distance(m_units.begin(), it) - 1);
    if (m_onlyEmptyFrom[first] && !m_textFollows) {
        return m_textLength;
    }

    const qreal y0 = m_units[first].top;
    if (pageHoldsText && m_units[first].bottom - y0 > target.height()) {
        return firstChar;
    }
    size_t end = first + 1; // one past the last unit drawn; the first is always taken
    qreal bottom = m_units[first].bottom;
    while (end < m_units.size()) {
        const Unit& unit = m_units[end];
        if (unit.breakBefore || unit.bottom - y0 > target.height()) {
            break;
        }
        bottom = std::max(bottom, unit.bottom);
        ++end;
    }

    // A page that ends on a paragraph kept with the next one (a heading)
    // ends before that paragraph instead, unless it is all the page holds.
    if (end < m_units.size() && !m_units[end].breakBefore) {
        size_t kept = end;
        while (kept > first + 1 && m_units[kept - 1].keepWithNext && m_units[kept - 1].blockStart > first) {
            kept = m_units[kept - 1].blockStart;
        }
        if (kept != end) {
            end = kept;
            bottom = m_units[first].bottom;
            for (size_t i = first; i < end; ++i) {
                bottom = std::max(bottom, m_units[i].bottom);
            }
        }
    }

    if (used) {
        *used = bottom - y0;
    }
    // A range of nothing but empty paragraphs (the one before a table that
    // begins a passage) draws nothing: Qt would draw the edge of a table row
    // that touches it, and that row's text would stand on two pages.
    const bool drawsSomething
        = std::any_of(m_units.begin() + std::ptrdiff_t(first), m_units.begin() + std::ptrdiff_t(end),
                      [](const Unit& unit) { return !unit.empty; });
    if (painter && drawsSomething) {
        painter->save();
        painter->translate(target.left(), target.top() - y0);
        const QRectF clip(-1, y0, m_width + 2, bottom - y0);
        painter->setClipRect(clip, Qt::IntersectClip);
        // The layout draws every line that touches its clip; the lines just
        // above and below the range touch it at one edge, so its clip is a
        // hair narrower than the painter's. (A clipped line would still be in
        // the PDF's text, merely invisible.)
        //
        // Within a paragraph the layout also draws the one line just above
        // its clip; so the lines of a paragraph that began on the page before
        // are drawn here one by one, and the layout begins below them.
        qreal layoutTop = y0;
        const size_t blockStart = m_units[first].blockStart;
        if (first > blockStart) {
            const QTextBlock block = m_document->findBlock(m_units[first].position);
            const QTextLayout* lines = block.layout();
            painter->setPen(Qt::black);
            size_t i = first;
            for (; i < end && m_units[i].blockStart == blockStart; ++i) {
                lines->lineAt(int(i - blockStart)).draw(painter, lines->position());
            }
            layoutTop = i < end ? m_units[i].top : bottom;
        }
        if (layoutTop < bottom) {
            QAbstractTextDocumentLayout::PaintContext context;
            const qreal hair = std::min<qreal>(0.5, (bottom - layoutTop) / 4);
            context.clip = QRectF(-1, layoutTop, m_width + 2, bottom - layoutTop).adjusted(0, hair, 0, -hair);
            context.palette.setColor(QPalette::Text, Qt::black);
            m_document->documentLayout()->draw(painter, context);
        }
        painter->restore();
    }

    if (end >= m_units.size() || (m_onlyEmptyFrom[end] && !m_textFollows)) {
        return m_textLength;
    }
    return std::max(m_units[end].position, firstChar + 1);
}

} // namespace pvardo::documents
