#include "documents/Labels.h"

#include "PdfPages.h"
#include "common/TextFiles.h"
#include "documents/Merge.h"
#include "documents/RtfReader.h"
#include "support/Text.h"

#include <QDir>
#include <QHash>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <QTextDocument>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::documents;
using pvardo::test::q;

namespace {

// Where each word stands on each page of a PDF, in points from the paper's
// corner: the word's page and box.
struct WordPlace
{
    int page = -1;
    QRectF box;
};

QHash<QString, WordPlace> wordPlaces(const QString& path)
{
    QHash<QString, WordPlace> places;
    std::unique_ptr<Poppler::Document> pdf = Poppler::Document::load(path);
    if (!pdf) {
        return places;
    }
    for (int i = 0; i < pdf->numPages(); ++i) {
        std::unique_ptr<Poppler::Page> page = pdf->page(i);
        for (const std::unique_ptr<Poppler::TextBox>& box : page->textList()) {
            places.insert(box->text(), {i, box->boundingBox()});
        }
    }
    return places;
}

PrintOutcome printLabels(const QString& path, const QList<Addressee>& addressees, LabelRunState& run)
{
    QTextDocument labelTemplate;
    readRtf(defaultLabelRtf(), labelTemplate);
    QPdfWriter writer(path);
    writer.setPageSize(QPageSize(QPageSize::Letter));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setResolution(1200);
    return PrintLabels(labelTemplate, addressees, run, writer);
}

// The common US address sheets: 30, 20 and 14 to a page.
LabelSheet sheetOf(int across, int down, double height, double width, double top, double left, double gap)
{
    LabelSheet sheet;
    sheet.across = across;
    sheet.down = down;
    sheet.height = height;
    sheet.width = width;
    sheet.topOffset = top;
    sheet.leftOffset = left;
    sheet.horizontalGap = gap;
    sheet.verticalGap = 0;
    return sheet;
}

QList<Addressee> numbered(int count)
{
    QList<Addressee> addressees;
    for (int i = 1; i <= count; ++i) {
        addressees.append(
            SplitAddress(q("Name%1 Owner").arg(i), q("%1 Main Street, Albany NY 12207").arg(i)));
    }
    return addressees;
}

class Labels : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(folder.isValid());
        resetPrintState();
    }
    void write(const QString& name, const QStringList& lines)
    {
        ASSERT_TRUE(replaceTextLines(folder.filePath(name), lines));
    }
    QTemporaryDir folder;
};

} // namespace

TEST_F(Labels, catalogueOffersAtMostTenSheetsAndFallsBackToTheDefaultSheet)
{
    // Missing: not readable, the default sheet alone.
    LabelCatalog catalog = readLabelCatalog(folder.path());
    EXPECT_FALSE(catalog.readable);
    ASSERT_EQ(catalog.sheets.size(), 1);
    EXPECT_EQ(catalog.sheets.first().caption, q("Avery® 5160"));
    EXPECT_EQ(catalog.sheets.first().fileName, q("av5160.txt"));

    QStringList lines{q("12 sheets")};
    for (int i = 1; i <= 12; ++i) {
        lines << q("  Sheet %1  ").arg(i) << q("sheet%1.txt").arg(i);
    }
    write(q("catalog.txt"), lines);
    catalog = readLabelCatalog(folder.path());
    EXPECT_TRUE(catalog.readable);
    ASSERT_EQ(catalog.sheets.size(), 10);
    EXPECT_EQ(catalog.sheets.at(9).caption, q("Sheet 10"));
    EXPECT_EQ(catalog.sheets.at(9).fileName, q("sheet10.txt"));

    // A count larger than the entries there: the entries there.
    write(q("catalog.txt"), {q("4"), q("One"), q("one.txt"), q("Two")});
    catalog = readLabelCatalog(folder.path());
    ASSERT_EQ(catalog.sheets.size(), 1);
    EXPECT_EQ(catalog.sheets.first().caption, q("One"));
}

TEST_F(Labels, definitionFilesGiveTheirValuesAndTheDefaultsWhereTheyLackThem)
{
    const LabelSheet missing = readLabelSheet(folder.filePath(q("none.txt")));
    EXPECT_EQ(describeLabelSheet(missing), q("Avery® 5160\n3 across,10 down,1 x 2.63"));
    EXPECT_DOUBLE_EQ(missing.topOffset, 0.6);
    EXPECT_DOUBLE_EQ(missing.leftOffset, 0.2);
    EXPECT_DOUBLE_EQ(missing.horizontalGap, 0.125);
    EXPECT_TRUE(missing.picture.isEmpty());

    write(q("big.txt"),
        {q("Shipping 4 x 3-1/3"), q("big"), q("2 across"), q("3"), q("3.33\""), q("4 in"), q("0.5"),
            q("0.16"), q("0.19"), q("0")});
    const LabelSheet big = readLabelSheet(folder.filePath(q("big.txt")));
    EXPECT_EQ(describeLabelSheet(big), q("Shipping 4 x 3-1/3\n2 across,3 down,3.33 x 4"));
    EXPECT_EQ(labelPicturePath(folder.path(), big), folder.filePath(q("big.bmp")));
    EXPECT_DOUBLE_EQ(big.leftOffset, 0.16);
    EXPECT_DOUBLE_EQ(big.horizontalGap, 0.19);

    // A short file, and counts that are no numbers, keep the defaults of
    // those lines; a sheet never has zero columns to divide by.
    write(q("short.txt"), {q("Short"), q(""), q("none"), q("0")});
    const LabelSheet shortSheet = readLabelSheet(folder.filePath(q("short.txt")));
    EXPECT_EQ(describeLabelSheet(shortSheet), q("Short\n3 across,10 down,1 x 2.63"));
    EXPECT_TRUE(labelPicturePath(folder.path(), shortSheet).isEmpty());

    // What a definition is written as reads back the same.
    write(q("again.txt"), labelSheetLines(big));
    EXPECT_EQ(labelSheetLines(readLabelSheet(folder.filePath(q("again.txt")))), labelSheetLines(big));
}

TEST_F(Labels, splitAddressMakesTheThreeLinesOfALabel)
{
    Addressee a = SplitAddress(q("  Mary Ellen O'Brien "), q(" 14 Elm Street , Delmar, NY 12054 "));
    EXPECT_EQ(a.name, q("Mary Ellen O'Brien"));
    EXPECT_EQ(a.street, q("14 Elm Street"));
    EXPECT_EQ(a.city, q("Delmar, NY 12054"));

    a = SplitAddress(q("Town of Bethlehem"), q("PO Box 47"));
    EXPECT_EQ(a.street, q("PO Box 47"));
    EXPECT_EQ(a.city, q("<no city state zip>"));

    a = SplitAddress(q("Nobody"), q("   "));
    EXPECT_EQ(a.street, q("<no address>"));
    EXPECT_EQ(a.city, q("<no city state zip>"));
}

TEST_F(Labels, eachLabelStartsWhereTheSheetAndOffsetsPutItsCell)
{
    const double tolerance = 72.0 / 32; // points
    struct Case
    {
        const char* name;
        LabelSheet sheet;
        int column;
        int row;
    };
    const Case cases[] = {
        {"30 up", sheetOf(3, 10, 1.0, 2.625, 0.5, 0.1875, 0.125), 1, 1},
        {"20 up", sheetOf(2, 10, 1.0, 4.0, 0.5, 0.15625, 0.1875), 1, 1},
        {"14 up", sheetOf(2, 7, 1.3333, 4.0, 0.8333, 0.15625, 0.1875), 1, 1},
        {"30 up from the middle", sheetOf(3, 10, 1.0, 2.625, 0.5, 0.1875, 0.125), 2, 4},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        LabelRunState run;
        run.sheet = c.sheet;
        run.topOffset = c.sheet.topOffset;
        run.leftOffset = c.sheet.leftOffset;
        run.nextColumn = c.column;
        run.nextRow = c.row;
        const int first = (c.row - 1) * c.sheet.across + c.column;
        const int count = c.sheet.perSheet() - first + 1 + c.sheet.across; // the rest and a row of the next
        const QString path = folder.filePath(q("%1.pdf").arg(q(c.name)));
        const PrintOutcome outcome = printLabels(path, numbered(count), run);
        ASSERT_TRUE(outcome.ok) << outcome.error.toStdString();
        EXPECT_EQ(outcome.pages, 2);
        EXPECT_EQ(pvardo::test::pdfPageCount(path), 2);
        EXPECT_EQ(QPoint(run.nextColumn, run.nextRow), QPoint(1, 2));

        const QHash<QString, WordPlace> places = wordPlaces(path);
        int column = c.column;
        int row = c.row;
        for (int i = 1; i <= count; ++i) {
            const WordPlace place = places.value(q("Name%1").arg(i));
            const QPointF cell
                = labelCellOrigin(c.sheet, c.sheet.topOffset, c.sheet.leftOffset, column, row) / 20;
            const QRectF cellBox(cell, QSizeF(c.sheet.width * 72, c.sheet.height * 72));
            EXPECT_EQ(place.page, i > c.sheet.perSheet() - first + 1 ? 1 : 0) << i;
            EXPECT_NEAR(place.box.left(), cell.x(), tolerance) << i;
            EXPECT_NEAR(place.box.top(), cell.y(), tolerance) << i;
            EXPECT_TRUE(cellBox.contains(place.box)) << i;
            advanceLabelCell(c.sheet, column, row);
        }
    }
}

TEST_F(Labels, aRunGoesOnOnANewSheetAndAnEmptyAddressSaysSo)
{
    // From the last cell: one label, then the next goes to the first cell of
    // a new page.
    LabelRunState run;
    run.nextColumn = 3;
    run.nextRow = 10;
    QList<Addressee> two = numbered(2);
    two[1] = SplitAddress(q("Lastname"), QString());
    const QString path = folder.filePath(q("last.pdf"));
    const PrintOutcome outcome = printLabels(path, two, run);
    ASSERT_TRUE(outcome.ok);
    EXPECT_EQ(outcome.pages, 2);
    const QStringList pages = pvardo::test::pdfPageTexts(path);
    ASSERT_EQ(pages.size(), 2);
    EXPECT_TRUE(pages.at(0).contains(q("Name1 Owner")));
    EXPECT_TRUE(pages.at(1).contains(q("<no address>")));
    EXPECT_TRUE(pages.at(1).contains(q("<no city state zip>")));
    const QHash<QString, WordPlace> places = wordPlaces(path);
    EXPECT_NEAR(places.value(q("Lastname")).box.left(), 0.2 * 72, 72.0 / 32);
    EXPECT_EQ(QPoint(run.nextColumn, run.nextRow), QPoint(2, 1));

    // A full sheet exactly: one page, and the next label would start a new one.
    run = LabelRunState();
    EXPECT_EQ(printLabels(folder.filePath(q("full.pdf")), numbered(30), run).pages, 1);
    EXPECT_EQ(pvardo::test::pdfPageCount(folder.filePath(q("full.pdf"))), 1);
    EXPECT_EQ(QPoint(run.nextColumn, run.nextRow), QPoint(1, 1));
}
