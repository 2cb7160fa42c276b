#include "common/TextFiles.h"
#include "documents/Labels.h"
#include "documents/PdfPages.h"
#include "support/AdminTool.h"
#include "support/Text.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
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
    EXPECT_TRUE(pages.at(1).contains(q("<no address>")));
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
