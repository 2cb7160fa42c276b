#include "DocumentFixtures.h"
#include "PdfPages.h"

#include "documents/RtfReader.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTextDocument>

#include <gtest/gtest.h>

using namespace pvardo::documents;
using namespace pvardo::test;

namespace {

QString fuzzDataPath(const QString& name = QString())
{
    return QStringLiteral(PVARDO_TEST_DATA_DIR "/rtf-fuzz/") + name;
}

} // namespace

// Inputs the fuzzer found or that were written to break the reader: each is
// read to its end, says what it is, keeps the text it has, and prints.
TEST(RtfRobustness, hostileInputsAreReadAndReported)
{
    struct Case {
        const char* file;
        bool notRtf;
        bool damaged;
        const char* keeps; // text the document must still show
        const char* drops; // text it must not show
    };
    const Case cases[] = {
        {"deep-nesting.rtf", false, true, "deep", nullptr}, // far past the depth limit, and never closed
        {"truncated.rtf", false, true, "Hello wor", nullptr},
        {"unbalanced-close.rtf", false, false, "Text", "more"},
        {"not-rtf.rtf", true, false, nullptr, "Hello"},
        {"huge-picture.rtf", false, true, nullptr, nullptr},
        {"broken-picture.rtf", false, true, "before after", nullptr},
        {"binary-overrun.rtf", false, true, "a", nullptr},
        {"many-cells.rtf", false, true, "after", nullptr},
        {"bad-hex.rtf", false, true, "caf", nullptr},
        {"absurd-numbers.rtf", false, true, "big", nullptr},
        {"unicode-skip.rtf", false, false, "\u20AC\u20AC\U0001F600", nullptr},
        {"table-without-row.rtf", false, false, "a", nullptr},
        {"merged-cells.rtf", false, false, "end", nullptr},
        {"star-destinations.rtf", false, false, "kept end", "head"},
    };
    QTemporaryDir dir;
    for (const Case& c : cases) {
        const QString name = QString::fromLatin1(c.file);
        const QByteArray bytes = readFixtureBytes(fuzzDataPath(name));
        ASSERT_FALSE(bytes.isEmpty()) << c.file;
        QTextDocument document;
        const RtfReadResult result = readRtf(bytes, document);
        EXPECT_EQ(result.notRtf, c.notRtf) << c.file;
        EXPECT_EQ(result.damaged, c.damaged) << c.file << ": " << result.problem.toStdString();
        EXPECT_EQ(result.problem.isEmpty(), !c.damaged && !c.notRtf) << c.file;
        const QString text = displayedText(document);
        if (c.keeps) {
            EXPECT_TRUE(text.contains(QString::fromUtf8(c.keeps))) << c.file << ": " << text.toStdString();
        }
        if (c.drops) {
            EXPECT_FALSE(text.contains(QString::fromUtf8(c.drops))) << c.file << ": " << text.toStdString();
        }
        EXPECT_TRUE(printToPdf(document, dir.filePath(name + QStringLiteral(".pdf"))).ok) << c.file;
    }
}

// Every input ever kept in the regression folder (the fuzzer's crashes
// among them) reads and prints without harm.
TEST(RtfRobustness, everyKeptInputStillReads)
{
    const QStringList files = QDir(fuzzDataPath()).entryList(QDir::Files);
    ASSERT_FALSE(files.isEmpty());
    QTemporaryDir dir;
    for (const QString& file : files) {
        const QByteArray bytes = readFixtureBytes(fuzzDataPath(file));
        QTextDocument document;
        const RtfReadResult result = readRtf(bytes, document);
        EXPECT_LE(displayedText(document).size(), bytes.size() + 1) << file.toStdString();
        if (!result.notRtf) {
            EXPECT_TRUE(printToPdf(document, dir.filePath(QStringLiteral("out.pdf"))).ok) << file.toStdString();
        }
    }
}

// A file cut short anywhere keeps what came before the cut and says it is
// damaged.
TEST(RtfRobustness, truncatedFixturesAreDamagedButKeepTheirStart)
{
    for (const QString& name : {QStringLiteral("letter"), QStringLiteral("table"), QStringLiteral("unicode")}) {
        const QByteArray whole = readFixtureBytes(rtfFixturePath(name + QStringLiteral(".rtf")));
        for (int step = 1; step < 40; ++step) {
            const qsizetype cut = whole.size() * step / 40;
            QTextDocument document;
            const RtfReadResult result = readRtf(whole.left(cut), document);
            EXPECT_FALSE(result.notRtf);
            EXPECT_TRUE(result.damaged) << name.toStdString() << " cut at " << cut;
        }
        QTextDocument full;
        readRtf(whole, full);
        QTextDocument cut;
        readRtf(whole.left(whole.size() * 3 / 4), cut);
        const QString firstLine = displayedText(full).section(QLatin1Char('\n'), 0, 0);
        ASSERT_FALSE(firstLine.isEmpty());
        EXPECT_TRUE(displayedText(cut).startsWith(firstLine)) << name.toStdString();
    }
}

// Large files built to make the reader's work grow faster than the file: one
// paragraph of many short runs, tens of thousands of rows, cells past the last
// column, a table for every line. Each reads to its end (a reader that went
// quadratic would run into the test's time limit).
TEST(RtfRobustness, largeRepetitiveFilesReadToTheirEnd)
{
    struct Case {
        const char* what;
        QByteArray body;
        int repeat;
        bool damaged;
    };
    const Case cases[] = {
        {"runs", QByteArrayLiteral("{\\b x}{\\i y}"), 30000, false},
        {"rows", QByteArrayLiteral("\\intbl x\\cell\\row"), 20000, false},
        {"cells", QByteArrayLiteral("\\intbl x\\cell"), 30000, true},
        {"tables", QByteArrayLiteral("\\intbl x\\cell\\row\\pard\\par "), 3000, true},
        {"paragraphs", QByteArrayLiteral("{\\b x}\\par "), 30000, false},
    };
    for (const Case& c : cases) {
        const QByteArray rtf = "{\\rtf1\\trowd\\cellx1000" + c.body.repeated(c.repeat) + '}';
        QTextDocument document;
        const RtfReadResult result = readRtf(rtf, document);
        EXPECT_EQ(result.damaged, c.damaged) << c.what << ": " << result.problem.toStdString();
        EXPECT_GE(displayedText(document).count(QLatin1Char('x')), std::min(c.repeat, 1000)) << c.what;
    }
}
