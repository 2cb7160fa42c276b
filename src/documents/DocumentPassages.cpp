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

// A paragraph or a table of the document's top level.
struct Item {
    int start = 0;
    int end = 0; // one past the last character, the paragraph mark left out
    int section = -1;
    bool table = false;
    bool empty = false;
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
