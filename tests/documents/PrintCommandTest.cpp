#include "DocumentFixtures.h"
#include "PdfPages.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace pvardo::test;

namespace {

struct AdminRun {
    int code = -1;
    QString out;
    QString err;
};

AdminRun admin(const QStringList& arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(PVARDO_BINARY_DIR "/pvardo-admin"), arguments);
    AdminRun run;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

} // namespace

TEST(PrintCommand, printsAFixtureToPdfWithTheFooter)
{
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("multipage.pdf"));
    const AdminRun run = admin({QStringLiteral("print"), rtfFixturePath(QStringLiteral("multipage.rtf")),
                           QStringLiteral("--pdf"), pdf, QStringLiteral("--footer")});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    const QStringList pages = pdfPageTexts(pdf);
    ASSERT_GE(pages.size(), 3);
    EXPECT_TRUE(run.out.contains(QStringLiteral("Printed %1 pages to").arg(pages.size()))) << run.out.toStdString();
    for (int i = 0; i < pages.size(); ++i) {
        EXPECT_TRUE(pages.at(i).contains(QStringLiteral("Page %1").arg(i + 1))) << "page " << i + 1;
    }

    // Wider margins make more pages.
    const QString wide = dir.filePath(QStringLiteral("wide.pdf"));
    ASSERT_EQ(admin({QStringLiteral("print"), rtfFixturePath(QStringLiteral("multipage.rtf")),
                     QStringLiteral("--pdf"), wide, QStringLiteral("--margins"), QStringLiteral("2.5,2,2.5,2")})
                  .code,
              0);
    EXPECT_GT(pdfPageCount(wide), pages.size());
}

TEST(PrintCommand, refusesBadArgumentsAndBadFiles)
{
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("out.pdf"));
    const QString letter = rtfFixturePath(QStringLiteral("letter.rtf"));
    QFile plain(dir.filePath(QStringLiteral("plain.rtf")));
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
    plain.write("Just words, no RTF.");
    plain.close();
    QFile torn(dir.filePath(QStringLiteral("torn.rtf")));
    ASSERT_TRUE(torn.open(QIODevice::WriteOnly));
    torn.write(readFixtureBytes(letter).left(6000));
    torn.close();

    struct Case {
        QStringList arguments;
        int code;
        const char* message;
    };
    const QList<Case> cases = {
        {{QStringLiteral("print")}, 2, "usage"},
        {{QStringLiteral("print"), dir.filePath(QStringLiteral("missing.rtf")), QStringLiteral("--pdf"), pdf}, 2,
         "cannot read"},
        {{QStringLiteral("print"), letter, QStringLiteral("--margins"), QStringLiteral("1,1,1"), QStringLiteral("--pdf"),
          pdf},
         2,
         "--margins"},
        {{QStringLiteral("print"), letter, QStringLiteral("--colour")}, 2, "unexpected"},
        {{QStringLiteral("print"), plain.fileName(), QStringLiteral("--pdf"), pdf}, 1, "not an RTF document"},
        {{QStringLiteral("print"), letter, QStringLiteral("--pdf"), dir.filePath(QStringLiteral("no/such/dir/x.pdf"))},
         1,
         "cannot write"},
    };
    for (const Case& c : cases) {
        const AdminRun run = admin(c.arguments);
        EXPECT_EQ(run.code, c.code) << c.arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_TRUE(run.err.contains(QLatin1String(c.message))) << run.err.toStdString();
    }
    EXPECT_FALSE(QFile::exists(pdf)); // nothing half-written was left

    // A torn file prints what could be read, says what was wrong, and counts
    // as printed; so does a letter whose picture had to be left out.
    const AdminRun run = admin({QStringLiteral("print"), torn.fileName(), QStringLiteral("--pdf"), pdf});
    EXPECT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(QStringLiteral("warning"))) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(QStringLiteral("cut short"))) << run.err.toStdString();
    EXPECT_TRUE(pdfPageTexts(pdf).value(0).contains(QStringLiteral("ELMBROOK")));

    QFile badPicture(dir.filePath(QStringLiteral("picture.rtf")));
    ASSERT_TRUE(badPicture.open(QIODevice::WriteOnly));
    badPicture.write("{\\rtf1\\ansi Dear neighbour,\\par{\\pict\\pngblip 89504e470d0a1a0a0000}\\par Signed\\par}");
    badPicture.close();
    const QString picturePdf = dir.filePath(QStringLiteral("picture.pdf"));
    const AdminRun repaired = admin({QStringLiteral("print"), badPicture.fileName(), QStringLiteral("--pdf"), picturePdf});
    EXPECT_EQ(repaired.code, 0) << repaired.err.toStdString();
    EXPECT_TRUE(repaired.err.contains(QStringLiteral("picture"))) << repaired.err.toStdString();
    EXPECT_TRUE(pdfPageTexts(picturePdf).value(0).contains(QStringLiteral("Signed")));

    // A damaged file of which nothing could be read prints nothing and fails.
    QFile empty(dir.filePath(QStringLiteral("empty.rtf")));
    ASSERT_TRUE(empty.open(QIODevice::WriteOnly));
    empty.write("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}");
    empty.close();
    const QString emptyPdf = dir.filePath(QStringLiteral("empty.pdf"));
    const AdminRun nothing = admin({QStringLiteral("print"), empty.fileName(), QStringLiteral("--pdf"), emptyPdf});
    EXPECT_EQ(nothing.code, 1);
    EXPECT_TRUE(nothing.err.contains(QStringLiteral("Nothing of it could be read"))) << nothing.err.toStdString();
    EXPECT_FALSE(QFile::exists(emptyPdf));
}

// A document's own paper, turned, and its margins, unless the office gives
// its own margins.
TEST(PrintCommand, printsOnTheDocumentsPaperWithItsMarginsUnlessGivenOthers)
{
    QTemporaryDir dir;
    const QString rtf = dir.filePath(QStringLiteral("wide.rtf"));
    QFile file(rtf);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{\\rtf1\\ansi{\\fonttbl{\\f0 Liberation Serif;}}\\paperw12240\\paperh15840\\landscape"
               "\\margl2160\\margr720\\margt720\\margb720\\f0 Landscape\\par}");
    file.close();

    const QString own = dir.filePath(QStringLiteral("own.pdf"));
    ASSERT_EQ(admin({QStringLiteral("print"), rtf, QStringLiteral("--pdf"), own}).code, 0);
    std::unique_ptr<Poppler::Document> pdf = Poppler::Document::load(own);
    ASSERT_TRUE(pdf && pdf->numPages() == 1);
    EXPECT_NEAR(pdf->page(0)->pageSizeF().width(), 792, 1);
    EXPECT_NEAR(pdf->page(0)->pageSizeF().height(), 612, 1);
    EXPECT_NEAR(pdfWordBox(own, QStringLiteral("Landscape")).left(), 108, 1.5);

    const QString office = dir.filePath(QStringLiteral("office.pdf"));
    ASSERT_EQ(admin({QStringLiteral("print"), rtf, QStringLiteral("--pdf"), office, QStringLiteral("--margins"),
                     QStringLiteral("0.5,0.5,0.5,0.5")})
                  .code,
              0);
    EXPECT_NEAR(pdfWordBox(office, QStringLiteral("Landscape")).left(), 36, 1.5);
    pdf = Poppler::Document::load(office);
    ASSERT_TRUE(pdf && pdf->numPages() == 1);
    EXPECT_NEAR(pdf->page(0)->pageSizeF().width(), 792, 1);
}
