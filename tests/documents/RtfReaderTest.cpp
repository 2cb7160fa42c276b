#include "DocumentFixtures.h"

#include "documents/DocumentPaper.h"
#include "documents/DocumentUnits.h"
#include "documents/RtfReader.h"

#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>

#include <gtest/gtest.h>

using namespace pvardo::documents;
using pvardo::test::comparableLines;
using pvardo::test::displayedText;
using pvardo::test::readFixtureBytes;
using pvardo::test::rtfFixturePath;

namespace {

QTextDocument* loadFixture(const QString& name, QTextDocument& document)
{
    const RtfReadResult result = readRtf(readFixtureBytes(rtfFixturePath(name + QStringLiteral(".rtf"))), document);
    EXPECT_FALSE(result.notRtf) << name.toStdString();
    EXPECT_FALSE(result.damaged) << name.toStdString() << ": " << result.problem.toStdString();
    return &document;
}

QTextTable* firstTable(const QTextDocument& document)
{
    for (QTextFrame* frame : document.rootFrame()->childFrames()) {
        if (auto* table = qobject_cast<QTextTable*>(frame)) {
            return table;
        }
    }
    return nullptr;
}

QTextCharFormat formatAt(const QTextDocument& document, const QString& text)
{
    QTextCursor found = document.find(text, 0, QTextDocument::FindCaseSensitively);
    EXPECT_FALSE(found.isNull()) << text.toStdString();
    QTextCursor at(const_cast<QTextDocument*>(&document));
    at.setPosition(found.selectionStart() + 1);
    return at.charFormat();
}

} // namespace

// Every fixture shows the text its word processor shows.
class FixtureText : public ::testing::TestWithParam<QString>
{
};

TEST_P(FixtureText, equalsTheWordProcessorsText)
{
    const QString name = GetParam();
    QTextDocument document;
    loadFixture(name, document);
    const QString reference
        = QString::fromUtf8(readFixtureBytes(rtfFixturePath(name + QStringLiteral(".txt"))));
    ASSERT_FALSE(reference.isEmpty());
    const QStringList expected = comparableLines(reference);
    const QStringList actual = comparableLines(displayedText(document));
    for (qsizetype i = 0; i < std::min(expected.size(), actual.size()); ++i) {
        ASSERT_EQ(actual.at(i).toStdString(), expected.at(i).toStdString()) << name.toStdString() << " line " << i;
    }
    EXPECT_EQ(actual.size(), expected.size()) << name.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Fixtures, FixtureText, ::testing::ValuesIn(pvardo::test::fixtureNames()),
                         [](const ::testing::TestParamInfo<QString>& param) {
                             QString name = param.param;
                             return name.remove(QLatin1Char('-')).toStdString();
                         });

TEST(RtfReader, keepsTabsAndSoftLineBreaks)
{
    QTextDocument document;
    loadFixture(QStringLiteral("letter"), document);
    const QString text = displayedText(document);
    EXPECT_TRUE(text.contains(QStringLiteral("Re:\tApplication %PBCASE \u2013 %proj\n\tTax map S-B-L %sbl")))
        << text.toStdString();
}

TEST(RtfReader, readsCharacterFormats)
{
    QTextDocument document;
    loadFixture(QStringLiteral("letter"), document);
    const QTextCharFormat town = formatAt(document, QStringLiteral("TOWN OF ELMBROOK"));
    EXPECT_EQ(town.fontWeight(), QFont::Bold);
    EXPECT_DOUBLE_EQ(town.fontPointSize(), 18.0);
    EXPECT_EQ(town.fontFamilies().toStringList().value(0), QStringLiteral("Times New Roman"));
    const QTextCharFormat hall = formatAt(document, QStringLiteral("Town Hall"));
    EXPECT_EQ(hall.fontFamilies().toStringList().value(0), QStringLiteral("Arial"));
    EXPECT_DOUBLE_EQ(hall.fontPointSize(), 9.0);
    EXPECT_NE(hall.fontWeight(), QFont::Bold);

    const QTextCharFormat percent = formatAt(document, QStringLiteral("%nm"));
    EXPECT_EQ(percent.fontWeight(), QFont::Bold); // the "%" of the split placeholder
    const QTextCharFormat proj = formatAt(document, QStringLiteral("%proj."));
    EXPECT_TRUE(proj.fontItalic());
}

TEST(RtfReader, readsParagraphFormats)
{
    QTextDocument document;
    loadFixture(QStringLiteral("letter"), document);
    EXPECT_EQ(document.find(QStringLiteral("TOWN OF ELMBROOK")).block().blockFormat().alignment() & Qt::AlignHorizontal_Mask,
              Qt::AlignHCenter);
    EXPECT_EQ(document.find(QStringLiteral("%dl")).block().blockFormat().alignment() & Qt::AlignHorizontal_Mask,
              Qt::AlignRight);

    QTextDocument table;
    loadFixture(QStringLiteral("table"), table);
    const QTextBlockFormat received = table.find(QStringLiteral("Received from:")).block().blockFormat();
    ASSERT_FALSE(received.tabPositions().isEmpty());
    EXPECT_NEAR(unitsToTwips(received.tabPositions().first().position), 2160, 1);

    QTextDocument multipage;
    loadFixture(QStringLiteral("multipage"), multipage);
    EXPECT_TRUE(multipage.find(QStringLiteral("Appendix A")).block().blockFormat().pageBreakPolicy()
                & QTextFormat::PageBreak_AlwaysBefore);
}

TEST(RtfReader, readsTablesWithBordersAndShading)
{
    QTextDocument document;
    loadFixture(QStringLiteral("table"), document);
    QTextTable* table = firstTable(document);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->columns(), 4);
    EXPECT_EQ(table->rows(), 6);
    EXPECT_EQ(table->cellAt(0, 0).firstCursorPosition().block().text(), QStringLiteral("Description"));
    EXPECT_EQ(table->cellAt(5, 3).firstCursorPosition().block().text(), QStringLiteral("%$12"));
    const QTextTableCellFormat header = table->cellAt(0, 1).format().toTableCellFormat();
    EXPECT_GT(header.topBorder(), 0.0);
    EXPECT_EQ(header.topBorderStyle(), QTextFrameFormat::BorderStyle_Solid);
    EXPECT_TRUE(header.background().style() != Qt::NoBrush);
    EXPECT_EQ(table->format().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
}

TEST(RtfReader, readsPictureAtItsShownSize)
{
    QTextDocument document;
    loadFixture(QStringLiteral("logo"), document);
    QTextImageFormat image;
    for (QTextBlock block = document.begin(); block.isValid() && image.name().isEmpty(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            if (it.fragment().charFormat().isImageFormat()) {
                image = it.fragment().charFormat().toImageFormat();
                break;
            }
        }
    }
    ASSERT_TRUE(image.isValid());
    EXPECT_NEAR(unitsToTwips(image.width()), 1440, 2); // 4500 twips at 32 %
    EXPECT_NEAR(unitsToTwips(image.height()), 1440, 2);
    const QImage picture = document.resource(QTextDocument::ImageResource, QUrl(image.name())).value<QImage>();
    EXPECT_EQ(picture.size(), QSize(300, 300));
}

TEST(RtfReader, decodesCharactersBeyondAscii)
{
    QTextDocument unicode;
    loadFixture(QStringLiteral("unicode"), unicode);
    const QString text = displayedText(unicode);
    EXPECT_TRUE(text.contains(QStringLiteral("\U0001D400"))); // written as a surrogate pair
    EXPECT_TRUE(text.contains(QChar(0xFB01)));                // above 32767
    EXPECT_TRUE(text.contains(QStringLiteral("\u00AB%PBCASE\u00BB\u2014%sbl\u2014\u00E9t\u00E9")));

    QTextDocument wordpad;
    loadFixture(QStringLiteral("minimal-wordpad"), wordpad);
    const QString simple = displayedText(wordpad);
    EXPECT_TRUE(simple.contains(QStringLiteral("\u0394\u03AE\u03BC\u03BF\u03C2"))); // Greek through \fcharset161
    EXPECT_TRUE(simple.contains(QStringLiteral("\u2713 checked")));
    EXPECT_TRUE(simple.contains(QStringLiteral("Elmbrook \u2013 Planning"))); // one delimiter, one blank
    EXPECT_TRUE(simple.contains(QStringLiteral("\u20AC 50")));
}

TEST(RtfReader, keepsThePaperOfTheFile)
{
    QTextDocument label;
    loadFixture(QStringLiteral("label"), label);
    const DocumentPaper paper = documentPaper(label);
    EXPECT_TRUE(paper.stated);
    EXPECT_EQ(paper.widthTwips, 3787);
    EXPECT_EQ(paper.heightTwips, 1440);

    QTextDocument wordpad;
    loadFixture(QStringLiteral("minimal-wordpad"), wordpad);
    EXPECT_FALSE(documentPaper(wordpad).stated);
    EXPECT_EQ(documentPaper(wordpad).widthTwips, 12240);
}

// Some editors leave a paragraph's look to its style: the style's words apply
// first and the paragraph's own words win.
TEST(RtfReader, appliesSimpleStyles)
{
    const QByteArray rtf = "{\\rtf1\\ansi{\\fonttbl{\\f0 Times New Roman;}{\\f1 Arial;}}"
                           "{\\stylesheet{\\s0\\f0\\fs24 Normal;}{\\s1\\sbasedon0\\qc\\sb240\\keepn\\f1\\fs32\\b Heading;}"
                           "{\\s2\\sbasedon1\\i Subheading;}}"
                           "\\pard\\s1 Heading\\par"
                           "\\pard\\s1\\ql\\b0 Plain left\\par"
                           "\\pard\\s2 Sub\\par"
                           "\\pard\\s0 Body\\par}";
    QTextDocument document;
    ASSERT_FALSE(readRtf(rtf, document).damaged);
    EXPECT_EQ(displayedText(document), QStringLiteral("Heading\nPlain left\nSub\nBody"));

    const QTextBlock heading = document.findBlockByNumber(0);
    EXPECT_EQ(heading.blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
    EXPECT_NEAR(unitsToTwips(heading.blockFormat().topMargin()), 240, 1);
    EXPECT_EQ(formatAt(document, QStringLiteral("Heading")).fontWeight(), QFont::Bold);
    EXPECT_DOUBLE_EQ(formatAt(document, QStringLiteral("Heading")).fontPointSize(), 16.0);
    EXPECT_EQ(formatAt(document, QStringLiteral("Heading")).fontFamilies().toStringList().value(0),
              QStringLiteral("Arial"));

    EXPECT_EQ(document.findBlockByNumber(1).blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignLeft);
    EXPECT_NE(formatAt(document, QStringLiteral("Plain left")).fontWeight(), QFont::Bold);

    const QTextCharFormat sub = formatAt(document, QStringLiteral("Sub"));
    EXPECT_TRUE(sub.fontItalic());
    EXPECT_EQ(sub.fontWeight(), QFont::Bold); // from the style it is based on

    EXPECT_DOUBLE_EQ(formatAt(document, QStringLiteral("Body")).fontPointSize(), 12.0);
}
