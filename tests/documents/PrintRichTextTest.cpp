#include "DocumentFixtures.h"
#include "PdfPages.h"

#include "documents/DocumentPaper.h"
#include "documents/DocumentUnits.h"
#include "documents/PageGeometry.h"
#include "documents/PrintRichText.h"
#include "documents/RichTextLayout.h"
#include "documents/RtfReader.h"
#include "documents/RtfWriter.h"

#include <QTemporaryDir>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>

#include <gtest/gtest.h>

using namespace pvardo::documents;
using namespace pvardo::test;

namespace {

// The margins a fixture was laid out with by its word processor.
PrintSettings settingsOfPaper(const QTextDocument& document)
{
    const DocumentPaper paper = documentPaper(document);
    PrintSettings settings;
    settings.leftMargin = paper.leftTwips / 1440.0;
    settings.topMargin = paper.topTwips / 1440.0;
    settings.rightMargin = paper.rightTwips / 1440.0;
    settings.bottomMargin = paper.bottomTwips / 1440.0;
    return settings;
}

bool loadFixture(const QString& name, QTextDocument& document)
{
    return !readRtf(readFixtureBytes(rtfFixturePath(name + QStringLiteral(".rtf"))), document).damaged;
}

// A document of `lines` one-line paragraphs in 12-point type.
void fillLines(QTextDocument& document, int lines, int emptyAtEnd = 0)
{
    document.clear();
    QTextCursor cursor(&document);
    QTextCharFormat format;
    format.setFontFamilies({QStringLiteral("Liberation Serif")});
    format.setFontPointSize(12);
    for (int i = 0; i < lines + emptyAtEnd; ++i) {
        if (i > 0) {
            cursor.insertBlock();
        }
        if (i < lines) {
            cursor.insertText(QStringLiteral("Line %1").arg(i + 1), format);
        }
    }
}

class PrintTest : public ::testing::Test
{
protected:
    QString pdf(const QString& name) const { return m_dir.filePath(name); }
    QTemporaryDir m_dir;
};

} // namespace

// Every fixture prints with the page count of its word processor, give or
// take one page.
class FixturePages : public ::testing::TestWithParam<QString>
{
};

TEST_P(FixturePages, matchTheWordProcessorWithinOne)
{
    QTemporaryDir dir;
    const QString name = GetParam();
    QTextDocument document;
    ASSERT_TRUE(loadFixture(name, document));
    const QString path = dir.filePath(name + QStringLiteral(".pdf"));
    const PrintOutcome outcome = printToPdf(document, path, settingsOfPaper(document));
    ASSERT_TRUE(outcome.ok) << outcome.error.toStdString();
    const int reference = pdfPageCount(rtfFixturePath(name + QStringLiteral(".pdf")));
    ASSERT_GT(reference, 0);
    EXPECT_EQ(pdfPageCount(path), outcome.pages);
    EXPECT_LE(std::abs(outcome.pages - reference), 1) << name.toStdString() << ": " << outcome.pages << " pages";
}

INSTANTIATE_TEST_SUITE_P(Fixtures, FixturePages, ::testing::ValuesIn(fixtureNames()),
                         [](const ::testing::TestParamInfo<QString>& param) {
                             QString name = param.param;
                             return name.remove(QLatin1Char('-')).toStdString();
                         });

TEST_F(PrintTest, multipageBreaksBeforeTheAppendixAndKeepsEveryPageCounter)
{
    QTextDocument document;
    ASSERT_TRUE(loadFixture(QStringLiteral("multipage"), document));
    PrintSettings settings = settingsOfPaper(document);
    settings.expandPrintTokens = [](QTextDocument&) {}; // leave "##" where it stands
    const PrintOutcome outcome = printToPdf(document, pdf(QStringLiteral("multipage.pdf")), settings);
    ASSERT_TRUE(outcome.ok);
    EXPECT_EQ(outcome.pages, 4);
    const QStringList pages = pdfPageTexts(pdf(QStringLiteral("multipage.pdf")));
    ASSERT_EQ(pages.size(), outcome.pages);
    int counters = 0;
    std::string perPage;
    for (const QString& page : pages) {
        counters += int(page.count(QStringLiteral("##")));
        perPage += std::to_string(page.count(QStringLiteral("##"))) + ' ';
    }
    EXPECT_EQ(counters, 7) << perPage << pages.join(QStringLiteral("\n=====\n")).toStdString();
    EXPECT_TRUE(pages.last().trimmed().startsWith(QStringLiteral("Appendix A"))) << pages.last().toStdString();
    EXPECT_EQ(pages.last().count(QStringLiteral("##")), 2);
}

TEST_F(PrintTest, tablesAndPicturesReachThePaper)
{
    QTextDocument table;
    ASSERT_TRUE(loadFixture(QStringLiteral("table"), table));
    ASSERT_TRUE(printToPdf(table, pdf(QStringLiteral("table.pdf")), settingsOfPaper(table)).ok);
    const QString text = pdfPageTexts(pdf(QStringLiteral("table.pdf"))).value(0);
    for (const char* cell : {"Description", "Amount", "Engineering review escrow", "TOTAL", "%$12"}) {
        EXPECT_TRUE(text.contains(QLatin1String(cell))) << cell;
    }
    // The table's header row comes before its totals row.
    EXPECT_LT(text.indexOf(QStringLiteral("Description")), text.indexOf(QStringLiteral("TOTAL")));

    QTextDocument logo;
    ASSERT_TRUE(loadFixture(QStringLiteral("logo"), logo));
    ASSERT_TRUE(printToPdf(logo, pdf(QStringLiteral("logo.pdf")), settingsOfPaper(logo)).ok);
    // The town's name in small capitals keeps its small letters on paper.
    EXPECT_TRUE(pdfPageTexts(pdf(QStringLiteral("logo.pdf"))).value(0).contains(QStringLiteral("TOWN OF ELMBROOK")));
    const QImage page = renderPdfPage(pdf(QStringLiteral("logo.pdf")), 0, 40);
    ASSERT_FALSE(page.isNull());
    int green = 0;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            const QColor pixel = page.pixelColor(x, y);
            if (pixel.green() > pixel.red() + 40 && pixel.green() > pixel.blue() + 40) {
                ++green;
            }
        }
    }
    EXPECT_GT(green, 50); // the seal's tree, about an inch wide
}

TEST_F(PrintTest, textEndingExactlyAtThePageFootLeavesNoBlankPage)
{
    // Find the number of lines that just fills one page.
    QTextDocument document;
    int lines = 20;
    for (;; ++lines) {
        fillLines(document, lines);
        const PrintOutcome outcome = printToPdf(document, pdf(QStringLiteral("probe.pdf")));
        ASSERT_TRUE(outcome.ok);
        if (outcome.pages == 2) {
            break;
        }
        ASSERT_LT(lines, 200);
    }
    const int fullPage = lines - 1;

    struct Case {
        const char* what;
        int lines;
        int emptyAtEnd;
        int pages;
    };
    const Case cases[] = {
        {"a page exactly full", fullPage, 0, 1},
        {"a full page and empty paragraphs after it", fullPage, 3, 1},
        {"one line more", fullPage + 1, 0, 2},
        {"exactly two pages", 2 * fullPage, 0, 2},
    };
    for (const Case& c : cases) {
        fillLines(document, c.lines, c.emptyAtEnd);
        int counter = 1;
        PrintSettings settings;
        settings.pageCounter = &counter;
        const PrintOutcome outcome = printToPdf(document, pdf(QStringLiteral("case.pdf")), settings);
        EXPECT_EQ(outcome.pages, c.pages) << c.what;
        EXPECT_EQ(pdfPageCount(pdf(QStringLiteral("case.pdf"))), c.pages) << c.what;
        EXPECT_EQ(counter, c.pages + 1) << c.what; // the footer band counts each page once
        const QStringList texts = pdfPageTexts(pdf(QStringLiteral("case.pdf")));
        EXPECT_TRUE(texts.last().contains(QStringLiteral("Line %1").arg(c.lines))) << c.what;
    }

    // A heading kept with its next paragraph does not stay behind alone at the
    // foot of a page; without the keep it would.
    for (const bool keep : {true, false}) {
        fillLines(document, fullPage + 5);
        QTextCursor heading(document.findBlockByNumber(fullPage - 1));
        QTextBlockFormat format = heading.blockFormat();
        format.setProperty(RichTextLayout::keepWithNextProperty, keep);
        heading.setBlockFormat(format);
        ASSERT_TRUE(printToPdf(document, pdf(QStringLiteral("keep.pdf"))).ok);
        const QStringList texts = pdfPageTexts(pdf(QStringLiteral("keep.pdf")));
        ASSERT_EQ(texts.size(), 2);
        const QString headingText = QStringLiteral("Line %1\n").arg(fullPage);
        EXPECT_EQ(texts.at(1).contains(headingText), keep) << texts.at(1).toStdString();
        EXPECT_EQ(texts.at(0).contains(headingText), !keep);
    }

    // The footer band takes its room from the page.
    fillLines(document, fullPage);
    PrintSettings withFooter;
    withFooter.footer = true;
    EXPECT_EQ(printToPdf(document, pdf(QStringLiteral("footer.pdf")), withFooter).pages, 2);

    // A first line further down leaves less room on the first page only.
    PrintSettings lower;
    lower.startY = int(0.8 * 1440) + 1440;
    EXPECT_EQ(printToPdf(document, pdf(QStringLiteral("lower.pdf")), lower).pages, 2);
    fillLines(document, 2 * fullPage - 6);
    EXPECT_EQ(printToPdf(document, pdf(QStringLiteral("lower2.pdf")), lower).pages, 2);
}

TEST_F(PrintTest, footerBandPrintsThePageCounterOnEveryPage)
{
    QTextDocument document;
    ASSERT_TRUE(loadFixture(QStringLiteral("multipage"), document));
    int counter = 0; // below 1 counts as 1
    PrintSettings settings;
    settings.footer = true;
    settings.pageCounter = &counter;
    settings.footerRtf = QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\qc\\f0\\fs16 Folio ##\\par}");
    const PrintOutcome outcome = printToPdf(document, pdf(QStringLiteral("footer.pdf")), settings);
    ASSERT_TRUE(outcome.ok);
    EXPECT_EQ(counter, outcome.pages + 1);
    const QStringList pages = pdfPageTexts(pdf(QStringLiteral("footer.pdf")));
    ASSERT_EQ(pages.size(), outcome.pages);
    for (int i = 0; i < pages.size(); ++i) {
        EXPECT_TRUE(pages.at(i).contains(QStringLiteral("Folio %1").arg(i + 1))) << "page " << i + 1;
    }
    // Body placeholders "##" were filled before the layout, with the counter at 1.
    EXPECT_FALSE(pages.join(QString()).contains(QStringLiteral("##")));
}

TEST_F(PrintTest, marginsThatLeaveNoRoomStillPrint)
{
    QTextDocument document;
    fillLines(document, 5);
    PrintSettings settings;
    settings.leftMargin = 6;
    settings.rightMargin = 6;
    settings.topMargin = 10;
    settings.bottomMargin = 10;
    const PrintOutcome outcome = printToPdf(document, pdf(QStringLiteral("tight.pdf")), settings);
    EXPECT_TRUE(outcome.ok);
    EXPECT_GE(outcome.pages, 1);

    QTextDocument empty;
    EXPECT_EQ(printToPdf(empty, pdf(QStringLiteral("empty.pdf"))).pages, 1);
}

// Lengths of the document land on paper at their size in inches, whatever
// the printer's resolution.
TEST_F(PrintTest, indentsSpacingAndTabStopsKeepTheirSizeOnPaper)
{
    QTextDocument document;
    QTextCursor cursor(&document);
    QTextBlockFormat indented;
    indented.setLeftMargin(twipsToUnits(1440));
    cursor.setBlockFormat(indented);
    cursor.insertText(QStringLiteral("INDENTED"));
    QTextBlockFormat hanging;
    hanging.setLeftMargin(twipsToUnits(1440));
    hanging.setTextIndent(twipsToUnits(-720));
    cursor.insertBlock(hanging);
    cursor.insertText(QStringLiteral("HANGING"));
    QTextBlockFormat spaced;
    spaced.setTopMargin(twipsToUnits(1440));
    spaced.setTabPositions({QTextOption::Tab(twipsToUnits(2880), QTextOption::LeftTab)});
    cursor.insertBlock(spaced);
    cursor.insertText(QStringLiteral("SPACED\tTABBED"));

    PrintSettings settings;
    settings.leftMargin = 1;
    settings.topMargin = 1;
    const QString path = pdf(QStringLiteral("lengths.pdf"));
    ASSERT_TRUE(printToPdf(document, path, settings).ok);
    EXPECT_NEAR(pdfWordBox(path, QStringLiteral("INDENTED")).left(), 144, 1.5); // 1 in margin + 1 in indent
    EXPECT_NEAR(pdfWordBox(path, QStringLiteral("HANGING")).left(), 108, 1.5);
    EXPECT_NEAR(pdfWordBox(path, QStringLiteral("TABBED")).left(), 72 + 144, 1.5);
    const qreal hangingTop = pdfWordBox(path, QStringLiteral("HANGING")).top();
    EXPECT_NEAR(pdfWordBox(path, QStringLiteral("SPACED")).top() - hangingTop, 72 + 14, 6);

    // A numbered item as word processors write it: its text starts at the
    // hanging indent, behind its number, and a tab stop counts from the
    // text's left edge.
    QTextDocument list;
    ASSERT_FALSE(readRtf("{\\rtf1{\\listtext\\pard\\plain 1.\\tab}\\li720\\fi-360 ITEM\\par"
                         "\\pard\\li720\\tx2880 LEFT\\tab STOP\\par}",
                         list)
                     .damaged);
    const QString listPath = pdf(QStringLiteral("list.pdf"));
    ASSERT_TRUE(printToPdf(list, listPath, settings).ok);
    EXPECT_NEAR(pdfWordBox(listPath, QStringLiteral("1.")).left(), 72 + 18, 1.5);
    EXPECT_NEAR(pdfWordBox(listPath, QStringLiteral("ITEM")).left(), 72 + 36, 1.5);
    EXPECT_NEAR(pdfWordBox(listPath, QStringLiteral("STOP")).left(), 72 + 144, 1.5);
}

TEST(SetupPage, measuresFromThePrintableArea)
{
    QTemporaryDir dir;
    QPdfWriter writer(dir.filePath(QStringLiteral("x.pdf")));
    writer.setPageSize(QPageSize(QPageSize::Letter));
    writer.setPageMargins(QMarginsF(18, 36, 18, 36), QPageLayout::Point); // printable area 0.25 in, 0.5 in in
    const PageGeometry geometry = SetupPage(writer, 1440, 1440, 1440, 1440);
    EXPECT_EQ(geometry.offsetX, 360);
    EXPECT_EQ(geometry.offsetY, 720);
    EXPECT_EQ(geometry.leftEdge, 1080);
    EXPECT_EQ(geometry.topEdge, 720);
    EXPECT_EQ(geometry.rightEdge, 12240 - 1440 - 360);
    EXPECT_EQ(geometry.bottomEdge, 15840 - 1440 - 720);
    EXPECT_EQ(geometry.pageRect, QRect(0, 0, 12240 - 720, 15840 - 1440));

    const PageGeometry small = SetupPage(writer, 100, 100, 100, 100);
    EXPECT_EQ(small.leftEdge, 0); // a margin inside the unprintable edge becomes 0
    EXPECT_EQ(small.topEdge, 0);
}

// A cell's text begins where the row puts the cell's edge (\trleft, \cellx),
// its padding and border reaching out to the left, as word processors print
// it; a table saved by the notepad and read again stays where it was.
TEST_F(PrintTest, tableTextStandsAtTheCellsEdge)
{
    struct Case {
        const char* row;
        qreal shift; // points from the text's left edge
    };
    const Case cases[] = {{"\\trgaph108\\trleft0", 0},
                          {"\\trgaph108\\trleft-108", -5.4},
                          {"\\trgaph108\\trleft360", 18},
                          {"\\trgaph108\\trleft0\\clbrdrl\\brdrs\\brdrw10", 0}};
    for (const Case& c : cases) {
        const QByteArray rtf = QByteArray("{\\rtf1\\ansi\\margl1440{\\fonttbl{\\f0 Liberation Serif;}}\\f0\\fs24 Body\\par"
                                          "\\trowd")
                               + c.row
                               + "\\cellx4000\\cellx8000\\pard\\intbl Cellone\\cell Celltwo\\cell\\row\\pard After\\par}";
        QTextDocument document;
        ASSERT_FALSE(readRtf(rtf, document).damaged);
        const QString path = pdf(QStringLiteral("cells.pdf"));
        ASSERT_TRUE(printToPdf(document, path, settingsOfPaper(document)).ok);
        const qreal body = pdfWordBox(path, QStringLiteral("Body")).left();
        EXPECT_NEAR(pdfWordBox(path, QStringLiteral("Cellone")).left() - body, c.shift, 0.3) << c.row;
        EXPECT_NEAR(pdfWordBox(path, QStringLiteral("Celltwo")).left() - body, 200, 0.3) << c.row;

        QTextDocument again;
        ASSERT_FALSE(readRtf(writeRtf(document), again).damaged);
        ASSERT_TRUE(printToPdf(again, path, settingsOfPaper(again)).ok);
        EXPECT_NEAR(pdfWordBox(path, QStringLiteral("Cellone")).left() - body, c.shift, 0.3) << c.row << " saved";
    }

    // A table made in the notepad keeps its place when saved and read again.
    QTextDocument made;
    QTextCursor cursor(&made);
    cursor.insertText(QStringLiteral("Body"));
    QTextTableFormat format;
    format.setBorderCollapse(true);
    format.setCellPadding(6);
    format.setBorder(0);
    cursor.insertTable(1, 2, format)->cellAt(0, 0).firstCursorPosition().insertText(QStringLiteral("Cellone"));
    const QString path = pdf(QStringLiteral("made.pdf"));
    ASSERT_TRUE(printToPdf(made, path, settingsOfPaper(made)).ok);
    const qreal before = pdfWordBox(path, QStringLiteral("Cellone")).left();
    QTextDocument reread;
    ASSERT_FALSE(readRtf(writeRtf(made), reread).damaged);
    ASSERT_TRUE(printToPdf(reread, path, settingsOfPaper(reread)).ok);
    EXPECT_NEAR(pdfWordBox(path, QStringLiteral("Cellone")).left(), before, 0.5);
}
