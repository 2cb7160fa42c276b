#include "common/TextFiles.h"
#include "documents/Labels.h"
#include "documents/PdfPages.h"
#include "support/AdminTool.h"
#include "support/Text.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QMap>
#include <QTemporaryDir>
#include <poppler-qt6.h>
#include <gtest/gtest.h>

using namespace pvardo;
using pvardo::test::AdminRun;
using pvardo::test::q;
using pvardo::test::runAdmin;

namespace {

class LabelsCommand : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        folder = new QTemporaryDir;
        home = folder->filePath(q("planning"));
        const AdminRun run = runAdmin({q("--home"), home, q("init")});
        ASSERT_EQ(run.code, 0) << run.err.toStdString();
    }
    static void TearDownTestSuite()
    {
        delete folder;
        folder = nullptr;
    }
    static AdminRun labels(const QStringList& arguments, const QByteArray& csv)
    {
        return runAdmin(QStringList{q("--home"), home, q("labels")} + arguments, csv);
    }
    static QString out(const char* name) { return folder->filePath(q(name)); }

    static inline QTemporaryDir* folder = nullptr;
    static inline QString home;
};

} // namespace

TEST_F(LabelsCommand, initShipsTheCommonSheetsWithPicturesAndKeepsTheOfficesOwn)
{
    const QString labelsFolder = home + q("/labels");
    const documents::LabelCatalog catalog = documents::readLabelCatalog(labelsFolder);
    ASSERT_TRUE(catalog.readable);
    QList<int> counts;
    for (const documents::LabelSheetEntry& entry : catalog.sheets) {
        const documents::LabelSheet sheet = documents::readLabelSheet(labelsFolder + q("/") + entry.fileName);
        counts << sheet.perSheet();
        const QImage picture(documents::labelPicturePath(labelsFolder, sheet));
        EXPECT_FALSE(picture.isNull()) << entry.fileName.toStdString();
    }
    EXPECT_EQ(counts, (QList<int>{30, 20, 14}));
    EXPECT_TRUE(QFile::exists(labelsFolder + q("/lab.rtf")));

    // An office's own catalogue and template stay as they are.
    ASSERT_TRUE(replaceTextLines(labelsFolder + q("/catalog.txt"), {q("1"), q("Ours"), q("av5161.txt")}));
    QFile::remove(labelsFolder + q("/av5161.bmp"));
    const AdminRun again = runAdmin({q("--home"), home, q("init")});
    ASSERT_EQ(again.code, 0) << again.err.toStdString();
    EXPECT_EQ(documents::readLabelCatalog(labelsFolder).sheets.first().caption, q("Ours"));
    EXPECT_TRUE(again.err.contains(q("kept labels/catalog.txt")));
    EXPECT_TRUE(again.err.contains(q("made labels/av5161.bmp")));
}

TEST_F(LabelsCommand, printsTheGoodRowsFromTheStartCellAndNamesTheBadOnes)
{
    const QByteArray csv = "Name,Address\r\n"
                           "Ann Owner,\"12 Elm St, Delmar NY 12054\"\r\n"
                           "Bob Extra,1 Oak Rd,Albany,NY\r\n"
                           "\r\n"
                           "Cy Nohome,\r\n"
                           "\"Dee\nTwo Lines\",\"9 Pine Ave, Troy NY 12180\"\r\n"
                           "Bad \xff\xfe,5 Main St\r\n"
                           ",\r\n"
                           "Eve Last,\"3 Ash Ct, Colonie NY 12205\"\r\n";
    const QString pdf = out("labels.pdf");
    const AdminRun run
        = labels({q("--sheet"), q("av5160.txt"), q("--start"), q("3,10"), q("--pdf"), pdf}, csv);
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(q("line 3 has 4 fields where the header has 2; skipped")))
        << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(q("line 8 is not UTF-8 text; skipped")));
    EXPECT_TRUE(run.err.contains(q("line 9 has neither a name nor an address; skipped")));
    EXPECT_FALSE(run.err.contains(q("line 4")));
    EXPECT_TRUE(run.out.contains(q("4 labels printed; 3 rows skipped"))) << run.out.toStdString();

    // The last cell of the first sheet, then the second sheet from its first cell.
    const QStringList pages = pvardo::test::pdfPageTexts(pdf);
    ASSERT_EQ(pages.size(), 2);
    EXPECT_TRUE(pages.at(0).contains(q("Ann Owner")));
    EXPECT_TRUE(pages.at(0).contains(q("Delmar NY 12054")));
    EXPECT_TRUE(pages.at(1).contains(q("Cy Nohome")));
    // A row without an address prints the name alone, and is named.
    EXPECT_FALSE(pages.at(1).contains(q("<no")));
    EXPECT_TRUE(run.err.contains(q("line 5 (Cy Nohome) has no city, state and ZIP")));
    EXPECT_TRUE(pages.at(1).contains(q("Eve Last")));
}

TEST_F(LabelsCommand, refusesWhatCannotBePrinted)
{
    const QByteArray one = "name,address\nAnn,1 Elm St\n";
    AdminRun run
        = labels({q("--sheet"), q("av5162.txt"), q("--start"), q("3,1"), q("--pdf"), out("x.pdf")}, one);
    EXPECT_EQ(run.code, 2);
    EXPECT_TRUE(run.err.contains(q("not on this sheet of 2 across and 7 down")));

    run = labels({q("--sheet"), q("nosuch.txt")}, one);
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.contains(q("no label sheet definition")));

    run = labels({q("--sheet"), q("av5161.txt"), q("--pdf"), out("none.pdf")}, "name,address\n,\n");
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.contains(q("no addressee to print")));
    EXPECT_FALSE(QFile::exists(out("none.pdf")));

    run = labels({q("--sheet"), q("av5161.txt"), q("--pdf"), out("empty.pdf")}, "");
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.contains(q("the address list cannot be used")));
}

TEST_F(LabelsCommand, theCityLineIsTheLastPartOrItsOwnColumnsAndEveryLineStaysInItsCell)
{
    // On the 30-up sheet: 0.2 in from the left, labels 2.63 in wide, 0.125 in apart.
    const qreal firstCellRight = (0.2 + 2.63) * 72;
    const QByteArray csv
        = "name,address\n"
          "Bartholomew Fitzwilliam-Montgomery and Associates Holding Trust,"
          "\"1 Long Boulevard of the Americas West, Suite 1200, Elmford NY 12000\"\n"
          "Ann Owner,\"12 Main St, Apt 3, Springfield NY 12345\"\n"
          "Bo Nocity,7 Elm St\n";
    const QString pdf = out("cities.pdf");
    AdminRun run = labels({q("--sheet"), q("av5160.txt"), q("--pdf"), pdf}, csv);
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(q("line 4 (Bo Nocity) has no city, state and ZIP"))) << run.err.toStdString();
    EXPECT_FALSE(run.err.contains(q("line 2")));
    EXPECT_FALSE(run.err.contains(q("line 3")));

    auto boxesOf = [](const QString& path) {
        QMap<QString, QRectF> at;
        QList<QRectF> all;
        std::unique_ptr<Poppler::Document> document = Poppler::Document::load(path);
        EXPECT_TRUE(document);
        if (document) {
            for (const std::unique_ptr<Poppler::TextBox>& box : document->page(0)->textList()) {
                at.insert(box->text(), box->boundingBox());
                all.append(box->boundingBox());
            }
        }
        return std::make_pair(at, all);
    };
    const auto [words, all] = boxesOf(pdf);
    EXPECT_FALSE(pvardo::test::pdfPageTexts(pdf).first().contains(q("<no")));
    // The street keeps its own comma; the city line is the part behind the last.
    EXPECT_NEAR(words.value(q("Apt")).top(), words.value(q("Main")).top(), 0.5);
    EXPECT_GT(words.value(q("Springfield")).top(), words.value(q("Apt")).top() + 4);
    EXPECT_NEAR(words.value(q("Suite")).top(), words.value(q("Boulevard")).top(), 0.5);
    // The long lines start in the first cell and end in it.
    EXPECT_TRUE(words.contains(q("Bartholomew")));
    EXPECT_TRUE(words.contains(q("Elmford")));
    for (const QRectF& box : all) {
        if (box.left() < firstCellRight) {
            EXPECT_LE(box.right(), firstCellRight + 0.5) << box.left();
        }
    }

    // City, state and ZIP in columns of their own, beside other columns.
    const QString columns = out("columns.pdf");
    run = labels({q("--sheet"), q("av5160.txt"), q("--pdf"), columns},
        "Name,Address,City,State,ZIP,Parcel\n"
        "Cy Columns,\"40 Oak Rd, Unit B\",Delmar,NY,12054,12.-1-3\n");
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.isEmpty()) << run.err.toStdString();
    const auto [columnWords, unused] = boxesOf(columns);
    EXPECT_NEAR(columnWords.value(q("Unit")).top(), columnWords.value(q("Oak")).top(), 0.5);
    EXPECT_GT(columnWords.value(q("Delmar")).top(), columnWords.value(q("Oak")).top() + 4);
    EXPECT_NEAR(columnWords.value(q("12054")).top(), columnWords.value(q("Delmar")).top(), 0.5);
    EXPECT_FALSE(columnWords.contains(q("12.-1-3")));
}
