#include "DocumentFixtures.h"
#include "PdfPages.h"

#include "documents/RtfReader.h"
#include "documents/printer/DefaultPrinter.h"

#include <QFile>
#include <QFileInfo>
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

// Without a printer a clerk finds the pages in the documents folder, under the
// report's name, and the next report never takes the place of the last one.
TEST(DefaultPrinter, theFallBackFileIsNamedAfterTheReportAndNeverReplacesOne)
{
    QTemporaryDir home;
    const QByteArray before = qgetenv("HOME");
    const bool hadConfig = qEnvironmentVariableIsSet("XDG_CONFIG_HOME");
    const QByteArray config = qgetenv("XDG_CONFIG_HOME");
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral(".config")).toUtf8());
    const QString first = outputPdfPath(QStringLiteral("Notice: Hearing 24/017"));
    qputenv("HOME", before);
    if (hadConfig) {
        qputenv("XDG_CONFIG_HOME", config);
    } else {
        qunsetenv("XDG_CONFIG_HOME");
    }
    // The documents folder is made when the account has none yet.
    EXPECT_EQ(first, home.filePath(QStringLiteral("Documents/Notice- Hearing 24-017.pdf")));
    EXPECT_TRUE(QFileInfo(home.filePath(QStringLiteral("Documents"))).isDir());

    QTemporaryDir dir;
    const QString detail = outputPdfPath(QStringLiteral("Application Detail 24-017"), dir.path());
    EXPECT_EQ(detail, dir.filePath(QStringLiteral("Application Detail 24-017.pdf")));
    QFile(detail).open(QIODevice::WriteOnly);
    EXPECT_EQ(outputPdfPath(QStringLiteral("Application Detail 24-017"), dir.path()),
              dir.filePath(QStringLiteral("Application Detail 24-017 (2).pdf")));
    EXPECT_EQ(outputPdfPath(QStringLiteral("../.."), dir.path()), dir.filePath(QStringLiteral("-...pdf")));
    EXPECT_EQ(outputPdfPath(QStringLiteral("  "), dir.path()), dir.filePath(QStringLiteral("Report.pdf")));
}
