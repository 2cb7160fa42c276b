#include "DocumentFixtures.h"

#include "documents/DocumentPaper.h"
#include "documents/DocumentSections.h"
#include "documents/DocumentUnits.h"
#include "documents/RtfReader.h"
#include "documents/RtfWriter.h"

#include <QDir>
#include <QColor>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

using namespace pvardo::documents;
using pvardo::test::displayedText;
using pvardo::test::readFixtureBytes;
using pvardo::test::rtfFixturePath;

namespace {

QString twipsText(qreal units)
{
    return QString::number(std::lround(unitsToTwips(units)));
}

QString describe(const QTextCharFormat& format)
{
    if (format.isImageFormat()) {
        const QTextImageFormat image = format.toImageFormat();
        return QStringLiteral("picture %1x%2").arg(twipsText(image.width()), twipsText(image.height()));
    }
    return QStringList{format.fontFamilies().toStringList().value(0),
                       QString::number(format.fontPointSize()),
                       QString::number(format.fontWeight()),
                       QString::number(format.fontItalic()),
                       QString::number(format.underlineStyle()),
                       QString::number(format.fontStrikeOut()),
                       QString::number(format.fontCapitalization()),
                       QString::number(format.verticalAlignment()),
                       format.foreground().style() == Qt::NoBrush ? QString() : format.foreground().color().name(),
                       format.background().style() == Qt::NoBrush ? QString() : format.background().color().name()}
        .join(QLatin1Char('|'));
}

QString describe(const QTextBlockFormat& format)
{
    QStringList tabs;
    for (const QTextOption::Tab& tab : format.tabPositions()) {
        tabs.append(QStringLiteral("%1:%2").arg(twipsText(tab.position)).arg(int(tab.type)));
    }
    return QStringList{QString::number(int(format.alignment() & Qt::AlignHorizontal_Mask)),
                       twipsText(format.leftMargin()),
                       twipsText(format.rightMargin()),
                       twipsText(format.textIndent()),
                       twipsText(format.topMargin()),
                       twipsText(format.bottomMargin()),
                       QString::number(format.lineHeightType()),
                       QString::number(std::lround(format.lineHeight())),
                       tabs.join(QLatin1Char(',')),
                       QString::number(int(format.pageBreakPolicy()))}
        .join(QLatin1Char('|'));
}

// Paragraph by paragraph: its format, then each run of text with its format.
QStringList describe(const QTextDocument& document)
{
    QStringList lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QTextCursor cursor(block);
        lines.append(QStringLiteral("P %1%2").arg(describe(block.blockFormat()),
                                                  cursor.currentTable() ? QStringLiteral(" in table") : QString()));
        for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
            lines.append(QStringLiteral("  [%1] %2").arg(it.fragment().text(), describe(it.fragment().charFormat())));
        }
    }
    for (QTextFrame* frame : document.rootFrame()->childFrames()) {
        if (auto* table = qobject_cast<QTextTable*>(frame)) {
            lines.append(QStringLiteral("T %1x%2").arg(table->rows()).arg(table->columns()));
            for (int row = 0; row < table->rows(); ++row) {
                for (int column = 0; column < table->columns(); ++column) {
                    const QTextTableCell cell = table->cellAt(row, column);
                    const QTextTableCellFormat format = cell.format().toTableCellFormat();
                    lines.append(QStringLiteral("  C %1,%2 span %3x%4 borders %5 %6 %7 %8 bg %9 pad %10 %11")
                                     .arg(row)
                                     .arg(column)
                                     .arg(cell.rowSpan())
                                     .arg(cell.columnSpan())
                                     .arg(twipsText(format.topBorder()), twipsText(format.leftBorder()),
                                          twipsText(format.bottomBorder()), twipsText(format.rightBorder()),
                                          format.background().style() == Qt::NoBrush
                                              ? QString()
                                              : format.background().color().name())
                                     .arg(twipsText(format.topPadding()), twipsText(format.leftPadding())));
                }
            }
        }
    }
    return lines;
}

} // namespace

// Reading, writing and reading again changes neither text nor formats.
class RoundTrip : public ::testing::TestWithParam<QString>
{
};

TEST_P(RoundTrip, keepsTextAndFormats)
{
    const QString name = GetParam();
    QTextDocument first;
    ASSERT_FALSE(readRtf(readFixtureBytes(rtfFixturePath(name + QStringLiteral(".rtf"))), first).damaged);
    const QByteArray written = writeRtf(first);
    QTextDocument second;
    const RtfReadResult result = readRtf(written, second);
    ASSERT_FALSE(result.damaged) << result.problem.toStdString();
    EXPECT_EQ(displayedText(second), displayedText(first));
    const QStringList expected = describe(first);
    const QStringList actual = describe(second);
    for (qsizetype i = 0; i < std::min(expected.size(), actual.size()); ++i) {
        ASSERT_EQ(actual.at(i), expected.at(i)) << name.toStdString() << " entry " << i;
    }
    EXPECT_EQ(actual.size(), expected.size());
    const DocumentPaper paper = documentPaper(first);
    const DocumentPaper again = documentPaper(second);
    EXPECT_EQ(again.stated, paper.stated);
    EXPECT_EQ(again.widthTwips, paper.widthTwips);
    EXPECT_EQ(again.leftTwips, paper.leftTwips);
    // Writing what was read back gives the same bytes: nothing drifts.
    EXPECT_EQ(writeRtf(second), written);
}

INSTANTIATE_TEST_SUITE_P(Fixtures, RoundTrip, ::testing::ValuesIn(pvardo::test::fixtureNames()),
                         [](const ::testing::TestParamInfo<QString>& param) {
                             QString name = param.param;
                             return name.remove(QLatin1Char('-')).toStdString();
                         });

TEST(RtfWriter, escapesWhatRtfReserves)
{
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(QStringLiteral("a\\b {c} \u00E9\u20AC\u0394 \U0001D400\tx\u00A0y\u00ADz"));
    const QByteArray rtf = writeRtf(document);
    EXPECT_TRUE(rtf.contains("a\\\\b \\{c\\} \\u233\\'e9\\u8364\\'80\\u916\\'3f \\u-10187\\'3f\\u-9216\\'3f\\tab x\\~y\\-z"))
        << rtf.toStdString();
    QTextDocument again;
    ASSERT_FALSE(readRtf(rtf, again).damaged);
    EXPECT_EQ(again.toRawText(), document.toRawText());
}

TEST(RtfWriter, keepsMergedCellsAndPageBreaks)
{
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(QStringLiteral("Before"));
    QTextTableFormat format;
    format.setBorderCollapse(true);
    QTextTable* table = cursor.insertTable(3, 3, format);
    table->cellAt(0, 0).firstCursorPosition().insertText(QStringLiteral("wide"));
    table->mergeCells(0, 0, 1, 2);
    table->cellAt(1, 2).firstCursorPosition().insertText(QStringLiteral("tall"));
    table->mergeCells(1, 2, 2, 1);
    QTextCursor after = table->lastCursorPosition();
    after.movePosition(QTextCursor::NextBlock);
    QTextBlockFormat breakBefore;
    breakBefore.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    after.setBlockFormat(breakBefore);
    after.insertText(QStringLiteral("Next page"));

    QTextDocument again;
    ASSERT_FALSE(readRtf(writeRtf(document), again).damaged);
    QTextTable* read = nullptr;
    for (QTextFrame* frame : again.rootFrame()->childFrames()) {
        read = qobject_cast<QTextTable*>(frame);
    }
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->rows(), 3);
    EXPECT_EQ(read->columns(), 3);
    EXPECT_EQ(read->cellAt(0, 0).columnSpan(), 2);
    EXPECT_EQ(read->cellAt(1, 2).rowSpan(), 2);
    EXPECT_EQ(read->cellAt(1, 2).firstCursorPosition().block().text(), QStringLiteral("tall"));
    const QTextBlock next = again.find(QStringLiteral("Next page")).block();
    EXPECT_TRUE(next.blockFormat().pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore);
    EXPECT_EQ(pvardo::test::comparableLines(displayedText(again)),
              pvardo::test::comparableLines(displayedText(document)));
}

// A table's own border (around it, and between its cells when they are
// framed apart) is kept: width, line, colour and whether the cells share
// their lines. A table without one gains none.
TEST(RtfWriter, keepsTheBorderOfATable)
{
    QTextDocument document;
    QTextCursor cursor(&document);
    QTextTableFormat shared;
    shared.setBorderCollapse(true);
    shared.setBorder(2);
    shared.setBorderStyle(QTextFrameFormat::BorderStyle_Dashed);
    shared.setBorderBrush(QColor(200, 0, 0));
    cursor.insertTable(2, 2, shared)->cellAt(0, 0).firstCursorPosition().insertText(QStringLiteral("shared"));
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(QStringLiteral("Between"));
    cursor.insertBlock();
    QTextTableFormat apart; // as a table pasted from a web page comes
    apart.setBorderCollapse(false);
    apart.setBorder(1);
    apart.setCellSpacing(0);
    cursor.insertTable(2, 2, apart)->cellAt(0, 0).firstCursorPosition().insertText(QStringLiteral("apart"));
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(QStringLiteral("Between"));
    cursor.insertBlock();
    QTextTableFormat none;
    none.setBorderCollapse(true);
    none.setBorder(0);
    cursor.insertTable(1, 2, none)->cellAt(0, 0).firstCursorPosition().insertText(QStringLiteral("none"));

    const QByteArray written = writeRtf(document);
    QTextDocument again;
    ASSERT_FALSE(readRtf(written, again).damaged);
    QList<QTextTable*> tables;
    for (QTextFrame* frame : again.rootFrame()->childFrames()) {
        if (auto* table = qobject_cast<QTextTable*>(frame)) {
            tables.append(table);
        }
    }
    ASSERT_EQ(tables.size(), 3) << written.toStdString();
    const auto describeBorder = [](const QTextTableFormat& format) {
        return QStringLiteral("%1 %2 %3 %4")
            .arg(twipsText(format.border()))
            .arg(format.border() > 0 ? int(format.borderStyle()) : -1)
            .arg(format.border() > 0 ? format.borderBrush().color().name() : QString())
            .arg(format.borderCollapse());
    };
    EXPECT_EQ(describeBorder(tables.at(0)->format()), describeBorder(shared));
    EXPECT_EQ(describeBorder(tables.at(1)->format()), describeBorder(apart));
    EXPECT_EQ(describeBorder(tables.at(2)->format()), describeBorder(none));
    EXPECT_EQ(tables.at(1)->cellAt(0, 0).firstCursorPosition().block().text(), QStringLiteral("apart"));
    EXPECT_EQ(writeRtf(again), written);
}

namespace {

QString pieceText(const QByteArray& rtf)
{
    QTextDocument document;
    readRtf(rtf, document);
    return document.toPlainText().simplified();
}

// What a document holds outside its text: sections with their paper and
// headers and footers, footnotes, facing pages.
QStringList describeOutsideText(const QTextDocument& document)
{
    QStringList lines;
    const QList<DocumentSection> sections = documentSections(document);
    for (const DocumentSection& s : sections) {
        lines.append(QStringLiteral("S new %1 paper %2x%3 %4 margins %5 %6 %7 %8 at %9/%10 title %11")
                         .arg(s.newPage)
                         .arg(s.widthTwips)
                         .arg(s.heightTwips)
                         .arg(s.landscape)
                         .arg(s.leftTwips)
                         .arg(s.topTwips)
                         .arg(s.rightTwips)
                         .arg(s.bottomTwips)
                         .arg(s.headerY)
                         .arg(s.footerY)
                         .arg(s.titlePage));
        for (const QByteArray* piece : {&s.header, &s.headerFirst, &s.headerLeft, &s.headerRight, &s.footer,
                                        &s.footerFirst, &s.footerLeft, &s.footerRight}) {
            lines.append(QStringLiteral("  [%1]").arg(pieceText(*piece)));
        }
    }
    for (const QByteArray& note : documentNotes(document)) {
        lines.append(QStringLiteral("N [%1]").arg(pieceText(note)));
    }
    int marks = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QVariant section = block.blockFormat().property(sectionProperty);
        if (section.isValid()) {
            lines.append(QStringLiteral("S%1 begins at [%2]").arg(section.toInt()).arg(block.text().left(20)));
        }
        for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
            marks += it.fragment().charFormat().hasProperty(noteReferenceProperty) ? 1 : 0;
        }
    }
    lines.append(QStringLiteral("marks %1 facing %2").arg(marks).arg(documentFacingPages(document)));
    return lines;
}

} // namespace

// Documents from other word processors with sections, headers, footers or
// footnotes keep them when the notepad saves them: read, written and read
// again, they are the same document, and writing again gives the same bytes,
// pictures included (a one-bit picture in a header once gave other PNG bytes
// on each save).
TEST(RtfWriter, keepsSectionsHeadersFootersAndNotesOfForeignDocuments)
{
    int withSections = 0;
    int withHeaders = 0;
    int withNotes = 0;
    const QString folder = QStringLiteral(PVARDO_TEST_DATA_DIR "/rtf-corpus/");
    for (const QString& name : QDir(folder).entryList({QStringLiteral("*.rtf")}, QDir::Files, QDir::Name)) {
        QTextDocument first;
        readRtf(readFixtureBytes(folder + name), first);
        const QList<DocumentSection> sections = documentSections(first);
        if (sections.isEmpty() && documentNotes(first).isEmpty()) {
            continue;
        }
        withSections += sections.size() > 1 ? 1 : 0;
        withHeaders += std::any_of(sections.begin(), sections.end(), [](const DocumentSection& s) {
            return !s.header.isEmpty() || !s.footer.isEmpty() || !s.headerRight.isEmpty() || !s.footerRight.isEmpty();
        });
        withNotes += documentNotes(first).isEmpty() ? 0 : 1;

        const QByteArray written = writeRtf(first);
        QTextDocument second;
        const RtfReadResult result = readRtf(written, second);
        EXPECT_FALSE(result.damaged) << name.toStdString() << ": " << result.problem.toStdString();
        EXPECT_EQ(displayedText(second), displayedText(first)) << name.toStdString();
        EXPECT_EQ(describeOutsideText(second), describeOutsideText(first)) << name.toStdString();
        EXPECT_EQ(writeRtf(second).toStdString(), written.toStdString()) << name.toStdString();
    }
    EXPECT_GE(withSections, 1);
    EXPECT_GE(withHeaders, 3);
    EXPECT_GE(withNotes, 1);
}
