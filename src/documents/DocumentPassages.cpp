#include "documents/DocumentPassages.h"

#include "documents/DocumentSections.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocumentFragment>
#include <QTextFrame>
#include <QTextTable>
#include <QUrl>

#include <algorithm>

namespace pvardo::documents {

namespace {

// A long table is printed in runs of rows of at most this many cells: Qt
// looks each cell up among all the cells of its table many times while it
// lays the cell out and draws it, so short runs are laid out and drawn
// faster (each run costs a small document of its own).
constexpr int rowsPassageCells = 250;

// A paragraph or a table of the document's top level.
struct Item {
    int start = 0;
    int end = 0; // one past the last character, the paragraph mark left out
    int section = -1;
    bool table = false;
    bool empty = false;
    QTextTable* frame = nullptr;
};

int sectionOf(const QTextBlock& block)
{
    const QVariant value = block.blockFormat().property(sectionProperty);
    return value.isValid() ? value.toInt() : -1;
}

std::unique_ptr<QTextDocument> emptyLike(const QTextDocument& source)
{
    auto document = std::make_unique<QTextDocument>();
    document->setUndoRedoEnabled(false);
    document->setDefaultFont(source.defaultFont());
    document->setDefaultTextOption(source.defaultTextOption());
    document->setIndentWidth(source.indentWidth());
    document->setDocumentMargin(source.documentMargin());
    return document;
}

// The pictures the passage shows, from the source's resources.
void copyPictures(const QTextDocument& source, QTextDocument& passage)
{
    for (QTextBlock block = passage.begin(); block.isValid(); block = block.next()) {
        for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat format = it.fragment().charFormat();
            if (!format.isImageFormat()) {
                continue;
            }
            const QUrl name(format.toImageFormat().name());
            if (passage.resource(QTextDocument::ImageResource, name).isNull()) {
                passage.addResource(QTextDocument::ImageResource, name,
                                    source.resource(QTextDocument::ImageResource, name));
            }
        }
    }
}

// The source's characters from `start` to `end` as a passage; the first
// paragraph takes `firstFormat`.
DocumentPassage makePassage(const QTextDocument& source, int start, int end, const QTextBlock& firstBlock,
                            const QTextBlockFormat& firstFormat, int section)
{
    DocumentPassage passage;
    passage.document = emptyLike(source);
    passage.section = section;
    QTextCursor selection(const_cast<QTextDocument*>(&source));
    selection.setPosition(start);
    selection.setPosition(end, QTextCursor::KeepAnchor);
    QTextCursor cursor(passage.document.get());
    cursor.beginEditBlock();
    cursor.setBlockFormat(firstFormat);
    cursor.setBlockCharFormat(firstBlock.charFormat());
    cursor.insertFragment(selection.selection());
    QTextCursor first(passage.document.get());
    first.setBlockFormat(firstFormat);
    cursor.endEditBlock();
    copyPictures(source, *passage.document);
    return passage;
}

// The text of a table cell into the empty cell at `into`, paragraph by
// paragraph and run by run with their formats. A cell that holds a table of
// its own is copied by Qt's fragments, which costs a document of its own for
// each cell and is kept for that rare case.
void copyCellText(const QTextDocument& source, const QTextTableCell& cell, QTextCursor& into)
{
    bool holdsTable = false;
    for (QTextFrame::iterator it = cell.begin(); !it.atEnd(); ++it) {
        if (it.currentFrame()) {
            holdsTable = true;
            break;
        }
    }
    if (holdsTable) {
        into.setBlockFormat(source.findBlock(cell.firstPosition()).blockFormat());
        QTextCursor selection(const_cast<QTextDocument*>(&source));
        selection.setPosition(cell.firstPosition());
        selection.setPosition(cell.lastPosition(), QTextCursor::KeepAnchor);
        into.insertFragment(selection.selection());
        return;
    }
    bool first = true;
    for (QTextFrame::iterator it = cell.begin(); !it.atEnd(); ++it) {
        const QTextBlock block = it.currentBlock();
        if (!block.isValid()) {
            continue;
        }
        if (first) {
            into.setBlockFormat(block.blockFormat());
            first = false;
        } else {
            into.insertBlock(block.blockFormat(), block.charFormat());
        }
        for (QTextBlock::iterator run = block.begin(); !run.atEnd(); ++run) {
            const QTextFragment fragment = run.fragment();
            into.insertText(fragment.text(), fragment.charFormat());
        }
    }
}

// Rows `firstRow` to `firstRow + rows` of a long table as a passage of their
// own, with the table's columns and each cell's format, text and spans (a span
// reaching past the last row ends there). The empty paragraph that must stand
// before a table takes no room.
DocumentPassage makeRowsPassage(const QTextDocument& source, QTextTable* table, int firstRow, int rows, int section)
{
    DocumentPassage passage;
    passage.document = emptyLike(source);
    passage.section = firstRow == 0 ? section : -1;
    QTextDocument& document = *passage.document;
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    QTextBlockFormat noRoom;
    noRoom.setLineHeight(0, QTextBlockFormat::FixedHeight);
    QTextCharFormat tiny;
    tiny.setFontPointSize(1);
    cursor.setBlockFormat(noRoom);
    cursor.setBlockCharFormat(tiny);
    QTextTableFormat format = table->format();
    if (firstRow > 0) {
        format.setHeaderRowCount(0);
    }
    QTextTable* copy = cursor.insertTable(rows, table->columns(), format);
    struct Span {
        int row;
        int column;
        int rows;
        int columns;
    };
    std::vector<Span> spans;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < table->columns(); ++column) {
            const QTextTableCell cell = table->cellAt(firstRow + row, column);
            if (!cell.isValid() || cell.row() != firstRow + row || cell.column() != column) {
                continue; // covered by a cell merged from above or from the left
            }
            QTextTableCell target = copy->cellAt(row, column);
            target.setFormat(cell.format());
            QTextCursor into = target.firstCursorPosition();
            copyCellText(source, cell, into);
            if (cell.rowSpan() > 1 || cell.columnSpan() > 1) {
                spans.push_back({row, column, std::min(cell.rowSpan(), rows - row), cell.columnSpan()});
            }
        }
    }
    for (const Span& span : spans) {
        copy->mergeCells(span.row, span.column, span.rows, span.columns);
    }
    cursor.endEditBlock();
    copyPictures(source, document);
    return passage;
}

} // namespace

std::vector<DocumentPassage> cutIntoPassages(const QTextDocument& document, int characters)
{
    characters = std::max(characters, 100);
    std::vector<Item> items;
    QTextFrame* root = document.rootFrame();
    for (QTextFrame::iterator it = root->begin(); !it.atEnd(); ++it) {
        if (QTextFrame* frame = it.currentFrame()) {
            Item item;
            item.start = frame->firstPosition() - 1;
            item.end = frame->lastPosition() + 1;
            item.table = true;
            item.frame = qobject_cast<QTextTable*>(frame);
            item.section = sectionOf(document.findBlock(frame->firstPosition()));
            items.push_back(item);
        } else if (const QTextBlock block = it.currentBlock(); block.isValid()) {
            items.push_back({block.position(), block.position() + block.length() - 1, sectionOf(block), false,
                             block.length() <= 1});
        }
    }

    std::vector<DocumentPassage> passages;
    size_t i = 0;
    while (i < items.size()) {
        const Item& head = items[i];
        const QTextBlock firstBlock = document.findBlock(head.start);
        if (head.table && head.end - head.start > characters && head.frame) {
            // A long table: runs of rows of about the size.
            QTextTable* table = head.frame;
            // The section may have begun with the empty paragraph before it.
            const int section = !passages.empty() && passages.back().section == head.section ? -1 : head.section;
            int firstRow = 0;
            int length = 0;
            int cells = 0;
            for (int row = 0; table && row < table->rows(); ++row) {
                for (int column = 0; column < table->columns(); ++column) {
                    const QTextTableCell cell = table->cellAt(row, column);
                    if (cell.row() == row && cell.column() == column) {
                        length += cell.lastPosition() - cell.firstPosition() + 1;
                        ++cells;
                    }
                }
                if (length > characters || cells >= rowsPassageCells || row + 1 == table->rows()) {
                    passages.push_back(makeRowsPassage(document, table, firstRow, row + 1 - firstRow, section));
                    firstRow = row + 1;
                    length = 0;
                    cells = 0;
                }
            }
            ++i;
            continue;
        }
        if (!head.table && head.end - head.start > characters) {
            // A paragraph too long for one passage: pieces that end between words.
            const QString text = firstBlock.text();
            const QTextBlockFormat format = firstBlock.blockFormat();
            int from = 0;
            while (from < text.size()) {
                int to = std::min<int>(int(text.size()), from + characters);
                if (to < text.size()) {
                    const qsizetype space = text.lastIndexOf(QLatin1Char(' '), to);
                    if (space > from + characters / 2) {
                        to = int(space) + 1;
                    }
                }
                QTextBlockFormat piece = format;
                if (from > 0) {
                    piece.setTopMargin(0);
                    piece.setTextIndent(0);
                    piece.setPageBreakPolicy(QTextFormat::PageBreak_Auto);
                    piece.clearProperty(sectionProperty);
                }
                if (to < text.size()) {
                    piece.setBottomMargin(0);
                }
                passages.push_back(makePassage(document, head.start + from, head.start + to, firstBlock, piece,
                                               from == 0 ? head.section : -1));
                from = to;
            }
            ++i;
            continue;
        }
        // Whole paragraphs and tables up to the size; a table, or a paragraph
        // that begins a section, begins a passage of its own only behind
        // a paragraph (Qt's documents begin with one).
        size_t j = i + 1;
        int length = head.end - head.start;
        while (j < items.size()) {
            const Item& item = items[j];
            if (!item.table && item.section >= 0) {
                break;
            }
            if (item.table && item.section >= 0 && j > i + 1 && items[j - 1].empty) {
                // The empty paragraph in front of the table goes with it.
                --j;
                break;
            }
            const int itemLength = item.end - item.start;
            if (item.table && itemLength > characters && item.frame) {
                break; // a long table is cut into passages of its own
            }
            if (!item.table && length + itemLength > characters) {
                break;
            }
            length += itemLength;
            ++j;
        }
        const Item& last = items[j - 1];
        int section = head.section;
        if (section < 0 && j > i + 1 && items[i + 1].table && head.empty) {
            section = items[i + 1].section;
        }
        passages.push_back(makePassage(document, head.start, last.end, firstBlock, firstBlock.blockFormat(), section));
        i = j;
    }
    return passages;
}

} // namespace pvardo::documents
