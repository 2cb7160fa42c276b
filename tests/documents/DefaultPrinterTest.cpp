#include "DocumentFixtures.h"
#include "PdfPages.h"

#include "documents/RtfReader.h"
#include "documents/printer/DefaultPrinter.h"

#include <QTemporaryDir>
#include <QTextDocument>

#include <gtest/gtest.h>

using namespace pvardo::documents;
using namespace pvardo::test;

// Without a printer the pages go to the PDF file the caller names, on Letter
// paper. (On a workstation with a printer this test would print, so it stops.)
TEST(DefaultPrinter, withoutAPrinterThePagesGoToAPdfFile)
{
    if (!defaultPrinterName().isEmpty()) {
        GTEST_SKIP() << "this computer has a default printer";
    }
    QTemporaryDir dir;
    QTextDocument document;
    ASSERT_FALSE(readRtf(readFixtureBytes(rtfFixturePath(QStringLiteral("multipage.rtf"))), document).damaged);
    PrintSettings settings;
    settings.footer = true;
    const QString path = dir.filePath(QStringLiteral("fallback.pdf"));
    const PrinterOutcome outcome = printOnDefaultPrinter(document, settings, path, QStringLiteral("Findings"));
    ASSERT_TRUE(outcome.ok) << outcome.error.toStdString();
    EXPECT_TRUE(outcome.printerName.isEmpty());
    EXPECT_EQ(outcome.pdfPath, path);
    EXPECT_EQ(pdfPageCount(path), outcome.pages);
    EXPECT_GE(outcome.pages, 3);
}
