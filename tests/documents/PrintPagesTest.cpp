// What a foreign document asks of the page: sections, its own paper and
// margins, headers and footers, footnotes, tables wider than the paper, and
// long texts of any shape. Each case prints to a PDF file and reads it back.
#include "PdfPages.h"

#include "documents/DocumentSections.h"
#include "documents/PrintRichText.h"
#include "documents/RtfReader.h"
#include "support/Text.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextCursor>
#include <QTextDocument>

#include <gtest/gtest.h>

using namespace pvardo::documents;
using namespace pvardo::test;

namespace {

class PrintPages : public ::testing::Test
{
protected:
    // Reads `rtf` and prints it as the print command does: on the document's
    // own paper and margins.
    QStringList print(const QByteArray& rtf, PrintSettings settings = {}, const QString& name = q("out.pdf"))
    {
        QTextDocument document;
        EXPECT_FALSE(readRtf(rtf, document).damaged);
        return printDocument(document, settings, name);
    }
    QStringList printDocument(QTextDocument& document, PrintSettings settings = {}, const QString& name = q("out.pdf"))
    {
        settings.documentPaper = true;
        settings.documentMargins = true;
        m_path = m_dir.filePath(name);
        const PrintOutcome outcome = printToPdf(document, m_path, settings);
        EXPECT_TRUE(outcome.ok) << outcome.error.toStdString();
        const QStringList pages = pdfPageTexts(m_path);
        EXPECT_EQ(pages.size(), outcome.pages);
        return pages;
    }
    // The size of a page in points, and where a word stands on it.
    QSizeF pageSize(int index) const
    {
        std::unique_ptr<Poppler::Document> pdf = Poppler::Document::load(m_path);
        std::unique_ptr<Poppler::Page> page = pdf ? pdf->page(index) : nullptr;
        return page ? page->pageSizeF() : QSizeF();
    }
    QRectF wordBox(int index, const QString& word) const
    {
        std::unique_ptr<Poppler::Document> pdf = Poppler::Document::load(m_path);
        std::unique_ptr<Poppler::Page> page = pdf ? pdf->page(index) : nullptr;
        if (page) {
            for (const std::unique_ptr<Poppler::TextBox>& box : page->textList()) {
                if (box->text() == word) {
                    return box->boundingBox();
                }
            }
        }
        return {};
    }

    QTemporaryDir m_dir;
    QString m_path;
};

const QByteArray fonts = "{\\fonttbl{\\f0\\froman Liberation Serif;}}\\f0\\fs24 ";

} // namespace

TEST_F(PrintPages, sectionsBeginANewPageUnlessTheyRunOn)
{
    QStringList pages = print("{\\rtf1\\ansi" + fonts + "First section\\par\\sect\\sectd Second section\\par"
                              "\\sect\\sectd\\sbknone Third runs on\\par}");
    ASSERT_EQ(pages.size(), 2) << pages.join(q("\n=====\n")).toStdString();
    EXPECT_TRUE(pages.at(0).contains(q("First section")));
    EXPECT_FALSE(pages.at(0).contains(q("Second")));
    EXPECT_TRUE(pages.at(1).contains(q("Second section")));
    EXPECT_TRUE(pages.at(1).contains(q("Third runs on")));

    // A break at the very end opens no empty page; a section that begins
    // with a table starts its page with the table.
    pages = print("{\\rtf1\\ansi" + fonts + "Only text\\par\\sect}");
    EXPECT_EQ(pages.size(), 1);
    pages = print("{\\rtf1\\ansi" + fonts + "Before\\par\\sect\\sectd"
                  "\\trowd\\cellx3000\\cellx6000\\intbl Cell one\\cell Cell two\\cell\\row\\pard After\\par}");
    ASSERT_EQ(pages.size(), 2);
    EXPECT_FALSE(pages.at(0).contains(q("Cell one")));
    EXPECT_TRUE(pages.at(1).contains(q("Cell one")));
    EXPECT_TRUE(pages.at(1).contains(q("After")));
}

TEST_F(PrintPages, paperSizeOrientationAndMarginsComeFromTheDocument)
{
    // A4 with 2-inch left margin; a landscape section after it.
    print("{\\rtf1\\ansi\\paperw11906\\paperh16838\\margl2880\\margr1440\\margt1440\\margb1440" + fonts
          + "Portrait\\par\\sect\\sectd\\lndscpsxn\\pgwsxn16838\\pghsxn11906 Landscape\\par}");
    ASSERT_EQ(pdfPageCount(m_path), 2);
    EXPECT_NEAR(pageSize(0).width(), 595.3, 1);
    EXPECT_NEAR(pageSize(0).height(), 841.9, 1);
    EXPECT_NEAR(pageSize(1).width(), 841.9, 1);
    EXPECT_NEAR(pageSize(1).height(), 595.3, 1);
    EXPECT_NEAR(wordBox(0, q("Portrait")).left(), 144, 1.5);
    EXPECT_NEAR(wordBox(0, q("Portrait")).top(), 72, 6);

    // \landscape with the sizes given portrait-wise still turns the paper.
    print("{\\rtf1\\ansi\\paperw12240\\paperh15840\\landscape" + fonts + "Wide\\par}");
    EXPECT_NEAR(pageSize(0).width(), 792, 1);
    EXPECT_NEAR(pageSize(0).height(), 612, 1);

    // The office's own margins win over the document's when it gives them.
    PrintSettings office;
    office.leftMargin = 0.5;
    QTextDocument document;
    readRtf("{\\rtf1\\ansi\\margl2880" + fonts + "Office\\par}", document);
    office.documentPaper = true;
    office.documentMargins = false;
    m_path = m_dir.filePath(q("office.pdf"));
    ASSERT_TRUE(printToPdf(document, m_path, office).ok);
    EXPECT_NEAR(wordBox(0, q("Office")).left(), 36, 1.5);
}

TEST_F(PrintPages, headersAndFootersPrintOnEveryPageWithThePageNumber)
{
    QByteArray body;
    for (int i = 1; i <= 80; ++i) {
        body += "Body line " + QByteArray::number(i) + "\\par ";
    }
    const QStringList pages
        = print("{\\rtf1\\ansi" + fonts + "\\sectd\\headery720\\footery720"
                "{\\header \\pard\\qc Planning Board Header\\par}"
                "{\\footer \\pard\\qc Page {\\field{\\*\\fldinst { PAGE }}{\\fldrslt {1}}} of the minutes\\par}"
                + body + "}");
    ASSERT_EQ(pages.size(), 2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(pages.at(i).contains(q("Planning Board Header"))) << i;
        EXPECT_TRUE(pages.at(i).contains(q("Page %1 of the minutes").arg(i + 1))) << pages.at(i).toStdString();
        // The header sits half an inch from the top, the footer's last line
        // ends half an inch from the bottom, the text between the margins.
        EXPECT_NEAR(wordBox(i, q("Header")).top(), 36, 3);
        EXPECT_NEAR(wordBox(i, q("minutes")).bottom(), 792 - 36, 4);
    }
    EXPECT_GE(wordBox(0, q("Body")).top(), 57);
    EXPECT_TRUE(pages.at(1).contains(q("Body line 80")));

    // A title page has its own header (here none); the other pages the plain one.
    const QStringList titled = print("{\\rtf1\\ansi" + fonts + "\\titlepg{\\headerf \\pard Title page head\\par}"
                                     "{\\header \\pard Running head\\par}Cover\\page Inside\\par}");
    ASSERT_EQ(titled.size(), 2);
    EXPECT_TRUE(titled.at(0).contains(q("Title page head")));
    EXPECT_FALSE(titled.at(0).contains(q("Running head")));
    EXPECT_TRUE(titled.at(1).contains(q("Running head")));
}

TEST_F(PrintPages, programFooterBandAndDocumentFooterBothPrint)
{
    PrintSettings settings;
    settings.footer = true;
    settings.footerRtf = q("{\\rtf1\\ansi\\qc Folio ##\\par}");
    const QStringList pages
        = print("{\\rtf1\\ansi" + fonts + "{\\footer \\pard Document footer\\par}Text\\par}", settings);
    ASSERT_EQ(pages.size(), 1);
    EXPECT_TRUE(pages.at(0).contains(q("Folio 1")));
    EXPECT_TRUE(pages.at(0).contains(q("Document footer")));
}

TEST_F(PrintPages, footnotesAreNumberedAndPrintedAfterTheText)
{
    const QStringList pages = print(
        "{\\rtf1\\ansi" + fonts
        + "The board met{\\super \\chftn}{\\footnote \\pard {\\super \\chftn} On March 7, 2024.} and voted"
          "{\\super \\chftn}{\\footnote \\pard {\\super \\chftn} Four in favour.}.\\par Last paragraph.\\par}");
    ASSERT_EQ(pages.size(), 1);
    const QString text = pages.at(0);
    EXPECT_TRUE(text.contains(q("met1"))) << text.toStdString();
    EXPECT_TRUE(text.contains(q("voted2"))) << text.toStdString();
    const qsizetype last = text.indexOf(q("Last paragraph."));
    const qsizetype first = text.indexOf(q("On March 7, 2024."));
    const qsizetype second = text.indexOf(q("Four in favour."));
    ASSERT_GE(last, 0);
    EXPECT_GT(first, last);
    EXPECT_GT(second, first);
    // Each note begins with its number.
    EXPECT_EQ(text.lastIndexOf(q("1"), first), text.indexOf(q("1"), last)) << text.toStdString();
}

TEST_F(PrintPages, aTableWiderThanThePageShrinksToIt)
{
    // Eight columns of 1.2 inches on a page 6.5 inches wide.
    QByteArray row = "\\trowd";
    for (int i = 1; i <= 8; ++i) {
        row += "\\cellx" + QByteArray::number(i * 1728);
    }
    row += "\\intbl ";
    for (int i = 1; i <= 8; ++i) {
        row += "Col" + QByteArray::number(i) + "\\cell ";
    }
    row += "\\row ";
    const QStringList pages = print("{\\rtf1\\ansi\\margl1440\\margr1440" + fonts + row + "\\pard\\par}");
    ASSERT_EQ(pages.size(), 1);
    for (int i = 1; i <= 8; ++i) {
        const QRectF box = wordBox(0, q("Col%1").arg(i));
        ASSERT_TRUE(box.isValid()) << i;
        EXPECT_LE(box.right(), 612 - 72 + 2) << i;
    }
    EXPECT_LT(wordBox(0, q("Col1")).left(), wordBox(0, q("Col2")).left());

    // The same table on a landscape page needs no shrinking.
    print("{\\rtf1\\ansi\\paperw15840\\paperh12240\\landscape\\margl720\\margr720" + fonts + row + "\\pard\\par}");
    EXPECT_NEAR(wordBox(0, q("Col2")).left() - wordBox(0, q("Col1")).left(), 86.4, 2);
}

// Long texts are laid out a passage at a time; the pages must break where
// one layout of the whole text would break them.
TEST_F(PrintPages, longTextsKeepEveryLineAndFullPages)
{
    QTextDocument document;
    QTextCursor cursor(&document);
    QTextCharFormat format;
    format.setFontFamilies({q("Liberation Serif")});
    format.setFontPointSize(12);
    const int lines = 12000; // about 130,000 characters, several passages
    for (int i = 1; i <= lines; ++i) {
        if (i > 1) {
            cursor.insertBlock();
        }
        cursor.insertText(q("Line %1").arg(i), format);
    }
    const QStringList pages = printDocument(document);
    ASSERT_GT(pages.size(), 100);
    const int perPage = int(pages.at(0).count(q("Line ")));
    ASSERT_GT(perPage, 30);
    for (int i = 0; i < pages.size(); ++i) {
        const int expected = i + 1 < pages.size() ? perPage : lines - perPage * (pages.size() - 1);
        ASSERT_EQ(pages.at(i).count(q("Line ")), expected) << "page " << i + 1;
        ASSERT_TRUE(pages.at(i).contains(q("Line %1\n").arg(i * perPage + 1))) << "page " << i + 1;
    }

    // One paragraph of 30,000 words: every word on paper, in order.
    QByteArray words = "{\\rtf1\\ansi" + fonts;
    for (int i = 0; i < 30000; ++i) {
        words += "w" + QByteArray::number(i) + ' ';
    }
    const QStringList paragraph = print(words + "\\par}");
    const QStringList printed = paragraph.join(q(" ")).split(QRegularExpression(q("\\s+")), Qt::SkipEmptyParts);
    ASSERT_EQ(printed.size(), 30000);
    for (int i = 0; i < 30000; i += 997) {
        ASSERT_EQ(printed.at(i), q("w%1").arg(i));
    }
}

TEST_F(PrintPages, rowHeightsAndVerticalTextInTables)
{
    // A row of at least an inch and one of exactly half an inch, each with
    // one short line; the rows below start that far down.
    print("{\\rtf1\\ansi" + fonts
          + "\\trowd\\trrh1440\\cellx3000\\intbl Tall\\cell\\row"
            "\\trowd\\trrh-720\\cellx3000\\intbl Exact\\cell\\row"
            "\\trowd\\cellx3000\\intbl Plain\\cell\\row\\pard After\\par}");
    EXPECT_NEAR(wordBox(0, q("Exact")).top() - wordBox(0, q("Tall")).top(), 72, 2);
    EXPECT_NEAR(wordBox(0, q("Plain")).top() - wordBox(0, q("Exact")).top(), 36, 2);

    // Text turned a quarter in a narrow column keeps its words whole.
    const QStringList pages = print("{\\rtf1\\ansi" + fonts
                                    + "\\trowd\\cltxbtlr\\cellx500\\cellx5000\\intbl Approved unanimously\\cell "
                                      "Site plan\\cell\\row\\pard\\par}");
    ASSERT_EQ(pages.size(), 1);
    EXPECT_TRUE(wordBox(0, q("Approved")).isValid()) << pages.at(0).toStdString();
    EXPECT_TRUE(wordBox(0, q("unanimously")).isValid()) << pages.at(0).toStdString();
}

TEST_F(PrintPages, aLongTablePrintsEveryRowOnceInOrder)
{
    QByteArray rtf = "{\\rtf1\\ansi" + fonts;
    const int rows = 3000; // several passages of rows
    for (int i = 1; i <= rows; ++i) {
        // Every 250th row has a second paragraph in a bold run in its
        // second cell: rows are copied into their passages run by run. (Such
        // a row ending a run of rows at a page's foot once had the next
        // row's text printed on both pages.)
        rtf += "\\trowd\\cellx2000\\cellx6000\\intbl R" + QByteArray::number(i) + "\\cell Parcel number "
               + QByteArray::number(i) + (i % 250 == 0 ? "\\par {\\b L" + QByteArray::number(i) + "}" : "")
               + "\\cell\\row\n";
    }
    const QStringList pages = print(rtf + "\\pard End\\par}");
    const QStringList words = pages.join(q(" ")).split(QRegularExpression(q("\\s+")), Qt::SkipEmptyParts);
    QStringList marks;
    for (const QString& word : words) {
        if (word.startsWith(QLatin1Char('R')) || word.startsWith(QLatin1Char('L'))) {
            marks.append(word);
        }
    }
    QStringList expected;
    for (int i = 1; i <= rows; ++i) {
        expected.append(q("R%1").arg(i));
        if (i % 250 == 0) {
            expected.append(q("L%1").arg(i));
        }
    }
    ASSERT_EQ(marks.size(), expected.size());
    for (qsizetype i = 0; i < marks.size(); ++i) {
        ASSERT_EQ(marks.at(i), expected.at(i));
    }
    // Pages are full but for the last: no page ends early where the rows
    // were cut.
    const int perPage = int(pages.at(0).count(q("Parcel")));
    for (int i = 0; i + 1 < pages.size(); ++i) {
        EXPECT_GE(pages.at(i).count(q("Parcel")), perPage - 1) << "page " << i + 1;
    }
    EXPECT_TRUE(pages.last().contains(q("End")));
}

TEST(DocumentSections, pageFieldsBecomeTheCounterAndOtherFieldsStay)
{
    struct Case {
        const char* rtf;
        const char* expected;
    };
    const Case cases[] = {
        {"Page {\\field{\\*\\fldinst { PAGE }}{\\fldrslt {3}}} end", "Page ## end"},
        {"{\\field{\\*\\fldinst PAGE \\\\* MERGEFORMAT}{\\fldrslt 1}}", "##"},
        {"{\\field{\\*\\fldinst NUMPAGES}{\\fldrslt 9}}", "{\\field{\\*\\fldinst NUMPAGES}{\\fldrslt 9}}"},
        {"{\\field{\\*\\fldinst PAGEREF x}{\\fldrslt 2}}", "{\\field{\\*\\fldinst PAGEREF x}{\\fldrslt 2}}"},
        // A page field inside another field's result, and an escaped brace.
        {"{\\fieldx}{\\field{\\*\\fldinst IF}{\\fldrslt \\{ {\\field{\\*\\fldinst PAGE}{\\fldrslt 4}}}}",
         "{\\fieldx}{\\field{\\*\\fldinst IF}{\\fldrslt \\{ ##}}"},
        {"{\\field{\\*\\fldinst PAGE}", "{\\field{\\*\\fldinst PAGE}"}, // cut short: left as it is
    };
    for (const Case& c : cases) {
        EXPECT_EQ(pageFieldsAsCounter(c.rtf), QByteArray(c.expected)) << c.rtf;
    }
    EXPECT_EQ(replaceControlWord("{\\super \\chftn}\\chftnsep \\chftn x", "chftn", "{7}"),
              QByteArray("{\\super {7}}\\chftnsep {7}x"));
}

// A file of very many sections, each with its own header, over a large font
// table: the reader keeps a bounded amount, says so, and loses no text.
TEST(DocumentSections, manySectionsWithHeadersAreBounded)
{
    QByteArray fontTable = "{\\fonttbl";
    for (int i = 0; i < 600; ++i) {
        fontTable += "{\\f" + QByteArray::number(i) + "\\fswiss Font number " + QByteArray::number(i) + ";}";
    }
    fontTable += "}";
    QByteArray rtf = "{\\rtf1\\ansi" + fontTable;
    for (int i = 1; i <= 1500; ++i) {
        rtf += "\\sectd{\\header \\pard Head " + QByteArray::number(i) + "\\par}Section " + QByteArray::number(i)
               + "\\par\\sect\n";
    }
    rtf += "}";
    QTextDocument document;
    const RtfReadResult result = readRtf(rtf, document);
    EXPECT_TRUE(result.damaged);
    EXPECT_LE(documentSections(document).size(), RtfLimits::maxSections);
    const QString text = document.toPlainText();
    EXPECT_TRUE(text.contains(q("Section 1\n")));
    EXPECT_TRUE(text.contains(q("Section 1500")));
}
