#include "documents/RtfWriter.h"

#include "documents/CodePages.h"
#include "documents/DocumentPaper.h"
#include "documents/DocumentSections.h"
#include "documents/RtfReader.h"
#include "documents/DocumentUnits.h"
#include "documents/RichTextLayout.h"

#include <QBuffer>
#include <QColor>
#include <QHash>
#include <QImage>
#include <QPixmap>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>
#include <QUrl>

#include <cmath>
#include <utility>

namespace pvardo::documents {

namespace {

int twips(qreal units)
{
    return int(std::lround(unitsToTwips(units)));
}

QString familyOf(const QTextCharFormat& format, const QString& fallback)
{
    const QStringList families = format.fontFamilies().toStringList();
    if (!families.isEmpty() && !families.first().isEmpty()) {
        return families.first();
    }
    return fallback;
}

class RtfWriter
{
public:
    explicit RtfWriter(const QTextDocument& document) : m_document(&document)
    {
        m_defaultFamily = document.defaultFont().family();
        m_fonts.append(m_defaultFamily);
        m_fontHints.append(document.defaultFont().styleHint());
    }

    QByteArray write();

private:
    // Tables of the header
    int fontIndex(const QTextCharFormat& format);
    int colorIndex(const QColor& color);
    void collect(QTextFrame* frame);
    void collectBlock(const QTextBlock& block);

    // Body
    void writeFrame(QTextFrame* frame, bool inTable);
    void writeTable(QTextTable* table);
    void writeBlock(const QTextBlock& block, bool inTable, const char* end);
    void writeParagraphFormat(const QTextBlockFormat& format, bool inTable);
    void writeCharFormat(const QTextCharFormat& format);
    void writeText(const QString& text);
    void writeImage(const QTextImageFormat& format);
    void writeBorder(const char* side, qreal width, QTextFrameFormat::BorderStyle style, const QBrush& brush,
                     const char* prefix = "\\clbrdr");

    // Sections, headers, footers and notes
    void beginSection(int index);
    QByteArray piece(const QByteArray& rtf, int note);
    void writeNote(const QTextCharFormat& format, int note);

    const QTextDocument* m_document; // the document being written: the main one, or a header, footer or note
    QByteArray m_out;
    QList<DocumentSection> m_sections;
    QList<QByteArray> m_notes;
    bool m_inPiece = false;    // writing a header, footer or note
    bool m_pageCounter = false; // "##" in the text is the page number (headers and footers)
    int m_noteNumber = 0;      // the number of the note being written, whose mark begins it
    qsizetype m_lastEnd = -1;  // where the last paragraph of the body ended with \par
    QString m_defaultFamily;
    QStringList m_fonts;
    QList<QFont::StyleHint> m_fontHints;
    QList<QColor> m_colors;
};

int RtfWriter::fontIndex(const QTextCharFormat& format)
{
    const QString family = familyOf(format, m_defaultFamily);
    const qsizetype index = m_fonts.indexOf(family);
    if (index >= 0) {
        return int(index);
    }
    m_fonts.append(family);
    m_fontHints.append(format.hasProperty(QTextFormat::FontStyleHint) ? format.fontStyleHint() : QFont::AnyStyle);
    return int(m_fonts.size() - 1);
}

int RtfWriter::colorIndex(const QColor& color)
{
    const QColor plain = color.toRgb();
    for (qsizetype i = 0; i < m_colors.size(); ++i) {
        if (m_colors.at(i).rgb() == plain.rgb()) {
            return int(i) + 1; // entry 0 is "auto"
        }
    }
    m_colors.append(plain);
    return int(m_colors.size());
}

void RtfWriter::collectBlock(const QTextBlock& block)
{
    for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
        const QTextCharFormat format = it.fragment().charFormat();
        fontIndex(format);
        if (format.hasProperty(QTextFormat::ForegroundBrush) && format.foreground().style() != Qt::NoBrush) {
            colorIndex(format.foreground().color());
        }
        if (format.hasProperty(QTextFormat::BackgroundBrush) && format.background().style() != Qt::NoBrush) {
            colorIndex(format.background().color());
        }
    }
}

void RtfWriter::collect(QTextFrame* frame)
{
    for (QTextFrame::iterator it = frame->begin(); !it.atEnd(); ++it) {
        if (QTextFrame* child = it.currentFrame()) {
            if (auto* table = qobject_cast<QTextTable*>(child)) {
                colorIndex(table->format().borderBrush().color());
                for (int row = 0; row < table->rows(); ++row) {
                    for (int column = 0; column < table->columns(); ++column) {
                        const QTextTableCellFormat format = table->cellAt(row, column).format().toTableCellFormat();
                        colorIndex(format.topBorderBrush().color());
                        colorIndex(format.leftBorderBrush().color());
                        colorIndex(format.bottomBorderBrush().color());
                        colorIndex(format.rightBorderBrush().color());
                        if (format.background().style() != Qt::NoBrush) {
                            colorIndex(format.background().color());
                        }
                    }
                }
            }
            collect(child);
        } else {
            collectBlock(it.currentBlock());
        }
    }
}

QByteArray RtfWriter::write()
{
    // The body first: it fills the font and colour tables.
    m_sections = documentSections(*m_document);
    m_notes = documentNotes(*m_document);
    collect(m_document->rootFrame());
    writeFrame(m_document->rootFrame(), false);
    const QByteArray body = m_out;
    m_out.clear();

    m_out += "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\n{\\fonttbl";
    for (qsizetype i = 0; i < m_fonts.size(); ++i) {
        m_out += "{\\f" + QByteArray::number(i);
        switch (m_fontHints.at(i)) {
        case QFont::Serif:
            m_out += "\\froman";
            break;
        case QFont::SansSerif:
            m_out += "\\fswiss";
            break;
        case QFont::TypeWriter:
            m_out += "\\fmodern";
            break;
        case QFont::Cursive:
            m_out += "\\fscript";
            break;
        case QFont::Decorative:
            m_out += "\\fdecor";
            break;
        default:
            m_out += "\\fnil";
            break;
        }
        m_out += "\\fcharset0 ";
        writeText(m_fonts.at(i));
        m_out += ";}";
    }
    m_out += "}\n{\\colortbl;";
    for (const QColor& color : std::as_const(m_colors)) {
        m_out += "\\red" + QByteArray::number(color.red()) + "\\green" + QByteArray::number(color.green()) + "\\blue"
                 + QByteArray::number(color.blue()) + ';';
    }
    m_out += "}\n";
    const DocumentPaper paper = documentPaper(*m_document);
    if (paper.stated) {
        m_out += "\\paperw" + QByteArray::number(paper.widthTwips) + "\\paperh" + QByteArray::number(paper.heightTwips)
                 + "\\margl" + QByteArray::number(paper.leftTwips) + "\\margr" + QByteArray::number(paper.rightTwips)
                 + "\\margt" + QByteArray::number(paper.topTwips) + "\\margb" + QByteArray::number(paper.bottomTwips)
                 + '\n';
    }
    if (documentFacingPages(*m_document)) {
        m_out += "\\facingp\n";
    }
    m_out += body;
    m_out += "}\n";
    return m_out;
}

void RtfWriter::writeFrame(QTextFrame* frame, bool inTable)
{
    bool previousWasTable = false;
    for (QTextFrame::iterator it = frame->begin(); !it.atEnd(); ++it) {
        if (QTextFrame* child = it.currentFrame()) {
            auto* table = qobject_cast<QTextTable*>(child);
            previousWasTable = table != nullptr;
            if (table && !inTable) {
                if (!m_inPiece && table->rows() > 0 && table->columns() > 0) {
                    const QTextBlock first = table->cellAt(0, 0).firstCursorPosition().block();
                    if (first.blockFormat().hasProperty(sectionProperty)) {
                        beginSection(first.blockFormat().intProperty(sectionProperty));
                    }
                }
                m_lastEnd = -1;
                writeTable(table);
            } else {
                writeFrame(child, inTable); // a frame, or a table in a cell: its paragraphs
            }
            continue;
        }
        const QTextBlock block = it.currentBlock();
        if (!block.isValid()) {
            continue;
        }
        // The empty block that holds a table's start is not a paragraph of
        // its own: the layout gives it no line, and the reader makes it again.
        // Nor is the empty block right behind a table, to which the layout
        // gives no line either.
        QTextFrame::iterator next = it;
        ++next;
        if (block.length() == 1 && !next.atEnd() && qobject_cast<QTextTable*>(next.currentFrame())) {
            continue;
        }
        if (block.length() == 1 && previousWasTable && !next.atEnd()) {
            previousWasTable = false;
            continue;
        }
        // The empty block that ends a document behind a table is not a
        // paragraph either: without a mark it makes none when read again.
        const bool endBehindTable = block.length() == 1 && previousWasTable && next.atEnd() && !inTable;
        previousWasTable = false;
        const bool body = !m_inPiece && !inTable;
        if (body && block.blockFormat().hasProperty(sectionProperty)) {
            beginSection(block.blockFormat().intProperty(sectionProperty));
        }
        if (endBehindTable) {
            writeBlock(block, inTable, "");
            continue;
        }
        writeBlock(block, inTable, "\\par");
        if (body) {
            m_lastEnd = m_out.size() - 5; // the \par and its line end
        }
    }
}

// The words that describe section `index`, with its headers and footers,
// before its first paragraph. A section after the first is set off from the
// one before by \sect, which ends that one's last paragraph.
void RtfWriter::beginSection(int index)
{
    if (index < 0 || index >= m_sections.size()) {
        return;
    }
    if (index > 0) {
        if (m_lastEnd >= 0 && m_out.mid(m_lastEnd, 4) == "\\par") {
            m_out.replace(m_lastEnd, 4, "\\sect");
        } else {
            m_out += "\\sect\n";
        }
    }
    m_lastEnd = -1;
    const DocumentSection& section = m_sections.at(index);
    m_out += "\\sectd";
    if (!section.newPage) {
        m_out += "\\sbknone";
    }
    auto number = [this](const char* word, int value) { m_out += word + QByteArray::number(value); };
    if (section.widthTwips > 0) {
        number("\\pgwsxn", section.widthTwips);
    }
    if (section.heightTwips > 0) {
        number("\\pghsxn", section.heightTwips);
    }
    if (section.landscape) {
        m_out += "\\lndscpsxn";
    }
    const std::pair<const char*, int> margins[] = {{"\\marglsxn", section.leftTwips},
        {"\\margrsxn", section.rightTwips}, {"\\margtsxn", section.topTwips}, {"\\margbsxn", section.bottomTwips}};
    for (const auto& [word, value] : margins) {
        if (value >= 0) {
            number(word, value);
        }
    }
    number("\\headery", section.headerY);
    number("\\footery", section.footerY);
    if (section.titlePage) {
        m_out += "\\titlepg";
    }
    m_out += '\n';
    const std::pair<const char*, const QByteArray*> pieces[] = {{"header", &section.header},
        {"headerf", &section.headerFirst}, {"headerl", &section.headerLeft}, {"headerr", &section.headerRight},
        {"footer", &section.footer}, {"footerf", &section.footerFirst}, {"footerl", &section.footerLeft},
        {"footerr", &section.footerRight}};
    for (const auto& [word, rtf] : pieces) {
        if (!rtf->isEmpty()) {
            const QByteArray text = piece(*rtf, 0);
            // No space after the destination's word: the piece begins with a
            // control word, and a space would be read as the piece's first text.
            m_out += "{\\";
            m_out += word;
            m_out += text + "}\n";
        }
    }
}

// A header, footer or note, kept as an RTF document of its own, written as
// paragraphs in this file's font and colour tables.
QByteArray RtfWriter::piece(const QByteArray& rtf, int note)
{
    QTextDocument document;
    readRtf(rtf, document);
    const QTextDocument* main = m_document;
    const QByteArray out = std::exchange(m_out, QByteArray());
    const bool wasInPiece = std::exchange(m_inPiece, true);
    m_document = &document;
    m_pageCounter = note == 0;
    m_noteNumber = note;
    collect(document.rootFrame());
    writeFrame(document.rootFrame(), false);
    // The last paragraph's mark would add an empty paragraph where the group ends.
    if (m_out.endsWith("\\par\n")) {
        m_out.chop(5);
    }
    m_document = main;
    m_inPiece = wasInPiece;
    m_pageCounter = false;
    m_noteNumber = 0;
    return std::exchange(m_out, out);
}

// A footnote's mark and the note itself, as word processors write them.
void RtfWriter::writeNote(const QTextCharFormat& format, int note)
{
    m_out += '{';
    writeCharFormat(format);
    m_out += "\\chftn}";
    if (note >= 1 && note <= m_notes.size()) {
        m_out += "{\\footnote" + piece(m_notes.at(note - 1), note) + '}';
    }
}

void RtfWriter::writeBorder(const char* side, qreal width, QTextFrameFormat::BorderStyle style, const QBrush& brush,
                            const char* prefix)
{
    if (width <= 0 || style == QTextFrameFormat::BorderStyle_None) {
        return;
    }
    m_out += prefix;
    m_out += side;
    switch (style) {
    case QTextFrameFormat::BorderStyle_Dotted:
        m_out += "\\brdrdot";
        break;
    case QTextFrameFormat::BorderStyle_Dashed:
        m_out += "\\brdrdash";
        break;
    case QTextFrameFormat::BorderStyle_Double:
        m_out += "\\brdrdb";
        break;
    case QTextFrameFormat::BorderStyle_Outset:
        m_out += "\\brdroutset";
        break;
    case QTextFrameFormat::BorderStyle_Inset:
        m_out += "\\brdrinset";
        break;
    default:
        m_out += "\\brdrs";
        break;
    }
    m_out += "\\brdrw" + QByteArray::number(std::max(1, twips(width)));
    m_out += "\\brdrcf" + QByteArray::number(colorIndex(brush.color()));
}

void RtfWriter::writeTable(QTextTable* table)
{
    const QTextTableFormat tableFormat = table->format();
    // A cell's padding on one side: its own, else the table's.
    auto cellPadding = [&tableFormat](const QTextTableCellFormat& format, int side) {
        return format.hasProperty(side) ? format.doubleProperty(side) : tableFormat.cellPadding();
    };
    const int columns = table->columns();

    // Right edges of the cells in twips from the column widths; widths the
    // table leaves open share what remains of a 6.5-inch line.
    const QList<QTextLength> constraints = tableFormat.columnWidthConstraints();
    constexpr qreal line = 9360;
    qreal fixed = 0;
    int open = 0;
    for (int column = 0; column < columns; ++column) {
        const QTextLength length = constraints.value(column);
        if (length.type() == QTextLength::FixedLength) {
            fixed += unitsToTwips(length.rawValue());
        } else if (length.type() == QTextLength::PercentageLength) {
            fixed += line * length.rawValue() / 100.0;
        } else {
            ++open;
        }
    }
    const qreal share = open > 0 ? std::max<qreal>((line - fixed) / open, 720) : 0;
    QList<int> rightEdges;
    // The row's left edge is where the first cell's text begins, less its
    // padding and border: the reader sets the table that much to the left.
    int left = tableFormat.hasProperty(QTextFormat::FrameLeftMargin) ? twips(tableFormat.leftMargin()) : 0;
    if (table->rows() > 0 && columns > 0 && !(tableFormat.alignment() & (Qt::AlignHCenter | Qt::AlignRight))) {
        const QTextTableCellFormat first = table->cellAt(0, 0).format().toTableCellFormat();
        left += twips(cellPadding(first, QTextFormat::TableCellLeftPadding));
        if (first.leftBorder() > 0 && first.leftBorderStyle() != QTextFrameFormat::BorderStyle_None) {
            left += std::max(1, twips(first.leftBorder()));
        }
    }
    qreal edge = left;
    for (int column = 0; column < columns; ++column) {
        const QTextLength length = constraints.value(column);
        if (length.type() == QTextLength::FixedLength) {
            edge += unitsToTwips(length.rawValue());
        } else if (length.type() == QTextLength::PercentageLength) {
            edge += line * length.rawValue() / 100.0;
        } else {
            edge += share;
        }
        rightEdges.append(int(std::lround(edge)));
    }
    // The room the reader takes from the last column for Qt's offset of a
    // table with collapsed borders goes back into the file's cell edges.
    if (!rightEdges.isEmpty() && table->rows() > 0) {
        const QTextTableCellFormat first = table->cellAt(0, 0).format().toTableCellFormat();
        const QTextTableCellFormat last = table->cellAt(0, columns - 1).format().toTableCellFormat();
        const qreal border = std::max(first.leftBorder(), last.rightBorder());
        rightEdges.last() += 2 * (twips(first.leftPadding()) + twips(border));
    }

    for (int row = 0; row < table->rows(); ++row) {
        m_out += "\\trowd";
        const QTextTableCellFormat first = table->cellAt(row, 0).format().toTableCellFormat();
        const qreal padding = first.hasProperty(QTextFormat::TableCellLeftPadding) ? first.leftPadding()
                                                                                   : tableFormat.cellPadding();
        m_out += "\\trgaph" + QByteArray::number(std::max(0, twips(padding)));
        m_out += "\\trleft" + QByteArray::number(left);
        const Qt::Alignment alignment = tableFormat.alignment() & Qt::AlignHorizontal_Mask;
        if (alignment == Qt::AlignHCenter) {
            m_out += "\\trqc";
        } else if (alignment == Qt::AlignRight) {
            m_out += "\\trqr";
        }
        if (row < tableFormat.headerRowCount()) {
            m_out += "\\trhdr";
        }
        // The table's own border; a table whose cells are framed apart has
        // lines between its cells as well.
        const qreal border = tableFormat.border();
        const QTextFrameFormat::BorderStyle borderStyle = tableFormat.borderStyle();
        const QBrush borderBrush = tableFormat.borderBrush();
        for (const char* side : {"t", "l", "b", "r"}) {
            writeBorder(side, border, borderStyle, borderBrush, "\\trbrdr");
        }
        if (!tableFormat.borderCollapse()) {
            writeBorder("h", border, borderStyle, borderBrush, "\\trbrdr");
            writeBorder("v", border, borderStyle, borderBrush, "\\trbrdr");
        }
        for (int column = 0; column < columns; ++column) {
            const QTextTableCell cell = table->cellAt(row, column);
            if (cell.row() != row) {
                m_out += "\\clvmrg";
            } else if (cell.rowSpan() > 1) {
                m_out += "\\clvmgf";
            }
            if (cell.column() != column) {
                m_out += "\\clmrg";
            } else if (cell.columnSpan() > 1) {
                m_out += "\\clmgf";
            }
            const QTextTableCellFormat format = cell.format().toTableCellFormat();
            const QTextCharFormat::VerticalAlignment vertical = format.verticalAlignment();
            if (vertical == QTextCharFormat::AlignMiddle) {
                m_out += "\\clvertalc";
            } else if (vertical == QTextCharFormat::AlignBottom) {
                m_out += "\\clvertalb";
            }
            m_out += "\\clpadt" + QByteArray::number(twips(cellPadding(format, QTextFormat::TableCellTopPadding)))
                     + "\\clpadft3\\clpadl"
                     + QByteArray::number(twips(cellPadding(format, QTextFormat::TableCellLeftPadding)))
                     + "\\clpadfl3\\clpadb"
                     + QByteArray::number(twips(cellPadding(format, QTextFormat::TableCellBottomPadding)))
                     + "\\clpadfb3\\clpadr"
                     + QByteArray::number(twips(cellPadding(format, QTextFormat::TableCellRightPadding)))
                     + "\\clpadfr3";
            writeBorder("t", format.topBorder(), format.topBorderStyle(), format.topBorderBrush());
            writeBorder("l", format.leftBorder(), format.leftBorderStyle(), format.leftBorderBrush());
            writeBorder("b", format.bottomBorder(), format.bottomBorderStyle(), format.bottomBorderBrush());
            writeBorder("r", format.rightBorder(), format.rightBorderStyle(), format.rightBorderBrush());
            if (format.background().style() != Qt::NoBrush) {
                m_out += "\\clcbpat" + QByteArray::number(colorIndex(format.background().color()));
            }
            m_out += "\\cellx" + QByteArray::number(rightEdges.at(column));
        }
        m_out += '\n';
        for (int column = 0; column < columns; ++column) {
            const QTextTableCell cell = table->cellAt(row, column);
            if (cell.row() != row || cell.column() != column) {
                m_out += "\\pard\\intbl\\cell\n"; // covered by a merged cell
                continue;
            }
            // The cell's paragraphs; the last one ends with the cell mark.
            QList<QTextBlock> blocks;
            for (QTextFrame::iterator it = cell.begin(); !it.atEnd(); ++it) {
                if (it.currentFrame()) {
                    // A table in a cell: its paragraphs, one after another.
                    const QTextFrame* inner = it.currentFrame();
                    for (QTextBlock block = m_document->findBlock(inner->firstPosition());
                         block.isValid() && block.position() < inner->lastPosition(); block = block.next()) {
                        blocks.append(block);
                    }
                } else if (it.currentBlock().isValid()) {
                    blocks.append(it.currentBlock());
                }
            }
            if (blocks.isEmpty()) {
                m_out += "\\pard\\intbl\\cell\n";
                continue;
            }
            for (qsizetype i = 0; i < blocks.size(); ++i) {
                writeBlock(blocks.at(i), true, i + 1 == blocks.size() ? "\\cell" : "\\par");
            }
        }
        m_out += "\\row\n";
    }
}

void RtfWriter::writeParagraphFormat(const QTextBlockFormat& format, bool inTable)
{
    m_out += "\\pard\\plain";
    if (inTable) {
        m_out += "\\intbl";
    }
    const Qt::Alignment alignment = format.alignment() & Qt::AlignHorizontal_Mask;
    if (alignment == Qt::AlignHCenter) {
        m_out += "\\qc";
    } else if (alignment == Qt::AlignRight) {
        m_out += "\\qr";
    } else if (alignment == Qt::AlignJustify) {
        m_out += "\\qj";
    }
    auto length = [this](const char* word, qreal units) {
        const int value = twips(units);
        if (value != 0) {
            m_out += word + QByteArray::number(value);
        }
    };
    length("\\li", format.leftMargin());
    length("\\ri", format.rightMargin());
    length("\\fi", format.textIndent());
    length("\\sb", format.topMargin());
    length("\\sa", format.bottomMargin());
    switch (format.lineHeightType()) {
    case QTextBlockFormat::ProportionalHeight:
        if (format.lineHeight() != 100) {
            m_out += "\\sl" + QByteArray::number(qRound(format.lineHeight() * 240.0 / 100.0)) + "\\slmult1";
        }
        break;
    case QTextBlockFormat::MinimumHeight:
        m_out += "\\sl" + QByteArray::number(twips(format.lineHeight())) + "\\slmult0";
        break;
    case QTextBlockFormat::FixedHeight:
        m_out += "\\sl-" + QByteArray::number(twips(format.lineHeight())) + "\\slmult0";
        break;
    default:
        break;
    }
    // Qt's tab stops count from the first line's start, RTF's from the text's
    // left edge.
    const int lineStart = twips(format.leftMargin()) + twips(format.textIndent());
    const QList<QTextOption::Tab> tabs = format.tabPositions();
    for (const QTextOption::Tab& tab : tabs) {
        if (tab.type == QTextOption::RightTab) {
            m_out += "\\tqr";
        } else if (tab.type == QTextOption::CenterTab) {
            m_out += "\\tqc";
        } else if (tab.type == QTextOption::DelimiterTab) {
            m_out += "\\tqdec";
        }
        m_out += "\\tx" + QByteArray::number(std::max(0, twips(tab.position) + lineStart));
    }
    if (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore) {
        m_out += "\\pagebb";
    }
    if (format.boolProperty(RichTextLayout::keepWithNextProperty)) {
        m_out += "\\keepn";
    }
    m_out += ' ';
}

void RtfWriter::writeCharFormat(const QTextCharFormat& format)
{
    m_out += "\\f" + QByteArray::number(fontIndex(format));
    const qreal size = format.hasProperty(QTextFormat::FontPointSize) ? format.fontPointSize()
                                                                       : m_document->defaultFont().pointSizeF();
    m_out += "\\fs" + QByteArray::number(qRound(std::max<qreal>(size, 1) * 2));
    if (format.fontWeight() >= QFont::DemiBold) {
        m_out += "\\b";
    }
    if (format.fontItalic()) {
        m_out += "\\i";
    }
    switch (format.underlineStyle()) {
    case QTextCharFormat::NoUnderline:
        break;
    case QTextCharFormat::DotLine:
        m_out += "\\uld";
        break;
    case QTextCharFormat::DashUnderline:
        m_out += "\\uldash";
        break;
    case QTextCharFormat::WaveUnderline:
        m_out += "\\ulwave";
        break;
    default:
        m_out += "\\ul";
        break;
    }
    if (format.fontStrikeOut()) {
        m_out += "\\strike";
    }
    if (format.fontCapitalization() == QFont::SmallCaps) {
        m_out += "\\scaps";
    } else if (format.fontCapitalization() == QFont::AllUppercase) {
        m_out += "\\caps";
    }
    if (format.verticalAlignment() == QTextCharFormat::AlignSuperScript) {
        m_out += "\\super";
    } else if (format.verticalAlignment() == QTextCharFormat::AlignSubScript) {
        m_out += "\\sub";
    }
    if (format.hasProperty(QTextFormat::ForegroundBrush) && format.foreground().style() != Qt::NoBrush) {
        m_out += "\\cf" + QByteArray::number(colorIndex(format.foreground().color()));
    }
    if (format.hasProperty(QTextFormat::BackgroundBrush) && format.background().style() != Qt::NoBrush) {
        m_out += "\\highlight" + QByteArray::number(colorIndex(format.background().color()));
    }
    m_out += ' ';
}

void RtfWriter::writeText(const QString& text)
{
    const char16_t* cp1252 = codePageUpperHalf(1252);
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        switch (u) {
        case u'\\':
            m_out += "\\\\";
            continue;
        case u'{':
            m_out += "\\{";
            continue;
        case u'}':
            m_out += "\\}";
            continue;
        case u'\t':
            m_out += "\\tab ";
            continue;
        case u'\n':
        case u'\r':
        case QChar::LineSeparator:
            m_out += "\\line ";
            continue;
        case u'\u00A0':
            m_out += "\\~";
            continue;
        case u'\u00AD':
            m_out += "\\-";
            continue;
        case u'\u2011':
            m_out += "\\_";
            continue;
        default:
            break;
        }
        if (u >= 0x20 && u < 0x80) {
            m_out += char(u);
            continue;
        }
        if (u < 0x20) {
            continue;
        }
        // \uN (signed, as old readers expect) and one fallback byte.
        const int signedValue = u > 32767 ? int(u) - 65536 : int(u);
        char fallback = '?';
        for (int i = 0; i < 128; ++i) {
            if (cp1252[i] == u) {
                fallback = char(0x80 + i);
                break;
            }
        }
        if (u >= 0xA0 && u <= 0xFF) {
            fallback = char(u);
        }
        m_out += "\\u" + QByteArray::number(signedValue) + "\\'"
                 + QByteArray::number(uchar(fallback), 16).rightJustified(2, '0');
    }
}

void RtfWriter::writeImage(const QTextImageFormat& format)
{
    const QVariant resource = m_document->resource(QTextDocument::ImageResource, QUrl(format.name()));
    QImage image;
    if (resource.canConvert<QImage>()) {
        image = resource.value<QImage>();
    }
    if (image.isNull() && resource.canConvert<QPixmap>()) {
        image = resource.value<QPixmap>().toImage();
    }
    if (image.isNull() && resource.typeId() == QMetaType::QByteArray) {
        image.loadFromData(resource.toByteArray());
    }
    if (image.isNull()) {
        return;
    }
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    const qreal width = format.width() > 0 ? format.width() : image.width();
    const qreal height = format.height() > 0 ? format.height() : image.height();
    m_out += "{\\pict\\picw" + QByteArray::number(image.width()) + "\\pich" + QByteArray::number(image.height())
             + "\\picwgoal" + QByteArray::number(twips(width)) + "\\pichgoal" + QByteArray::number(twips(height))
             + "\\pngblip\n";
    const QByteArray hex = png.toHex();
    for (qsizetype i = 0; i < hex.size(); i += 128) {
        m_out += hex.mid(i, 128);
        m_out += '\n';
    }
    m_out += '}';
}

void RtfWriter::writeBlock(const QTextBlock& block, bool inTable, const char* end)
{
    writeParagraphFormat(block.blockFormat(), inTable);
    for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const QTextCharFormat format = fragment.charFormat();
        if (format.isImageFormat()) {
            // Equal pictures side by side share one fragment.
            for (qsizetype i = 0; i < fragment.length(); ++i) {
                writeImage(format.toImageFormat());
            }
            continue;
        }
        if (!m_inPiece && format.hasProperty(noteReferenceProperty)) {
            writeNote(format, format.intProperty(noteReferenceProperty));
            continue;
        }
        QString text = fragment.text();
        text.remove(QChar::ObjectReplacementCharacter);
        if (text.isEmpty()) {
            continue;
        }
        if (m_noteNumber > 0) {
            // A note begins with its own mark.
            const bool mark = text == QString::number(m_noteNumber);
            m_noteNumber = 0;
            if (mark) {
                m_out += '{';
                writeCharFormat(format);
                m_out += "\\chftn}";
                continue;
            }
        }
        m_out += '{';
        writeCharFormat(format);
        if (m_pageCounter) {
            // The page number, as a field word processors fill in.
            const QStringList parts = text.split(QStringLiteral("##"));
            for (qsizetype i = 0; i < parts.size(); ++i) {
                if (i > 0) {
                    m_out += "{\\field{\\*\\fldinst PAGE}{\\fldrslt 1}}";
                }
                writeText(parts.at(i));
            }
        } else {
            writeText(text);
        }
        m_out += '}';
    }
    m_out += end;
    m_out += '\n';
}

} // namespace

QByteArray writeRtf(const QTextDocument& document)
{
    RtfWriter writer(document);
    return writer.write();
}

} // namespace pvardo::documents
