#include "DocumentFixtures.h"
#include "PdfPages.h"

#include "documents/RtfReader.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextDocument>

#include <gtest/gtest.h>

using namespace pvardo::documents;
using namespace pvardo::test;

namespace {

QString corpusPath(const QString& name = QString())
{
    return QStringLiteral(PVARDO_TEST_DATA_DIR "/rtf-corpus/") + name;
}

QStringList corpusFiles()
{
    return QDir(corpusPath()).entryList({QStringLiteral("*.rtf")}, QDir::Files, QDir::Name);
}

} // namespace

// Documents written by many word processors and generators (their sources
// in tests/data/rtf-corpus/SOURCES.md): each reads as RTF, shows its words
// and prints, with the words on the printed pages. How close the pages come
// to a word processor's is measured by scripts/rtf-compare.
class CorpusDocument : public ::testing::TestWithParam<QString>
{
};

TEST_P(CorpusDocument, readsAndPrintsWithItsText)
{
    const QString name = GetParam();
    const QByteArray bytes = readFixtureBytes(corpusPath(name));
    ASSERT_FALSE(bytes.isEmpty());
    QTextDocument document;
    const RtfReadResult result = readRtf(bytes, document);
    EXPECT_FALSE(result.notRtf);
    const QString text = displayedText(document);
    const QRegularExpression word(QStringLiteral("\\w{2,}|[\\x{3000}-\\x{9fff}\\x{ac00}-\\x{d7af}]"),
                                  QRegularExpression::UseUnicodePropertiesOption);
    const QRegularExpressionMatch first = word.match(text);
    // A document of pictures alone shows them instead.
    EXPECT_TRUE(first.hasMatch() || text.contains(QRegularExpression(QStringLiteral("\\S")))
                || document.toRawText().contains(QChar::ObjectReplacementCharacter))
        << "no text shown";
    EXPECT_FALSE(text.contains(QStringLiteral("\\'"))) << "control words shown as text: " << text.toStdString();

    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("out.pdf"));
    ASSERT_TRUE(printToPdf(document, pdf).ok);
    // The first word of the document is on the printed pages (set in
    // capitals or with ligatures, perhaps).
    const QString printed = pdfPageTexts(pdf).join(QLatin1Char('\n')).normalized(QString::NormalizationForm_KC);
    if (first.hasMatch()) {
        EXPECT_TRUE(printed.contains(first.captured(), Qt::CaseInsensitive)) << first.captured().toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(RtfCorpus, CorpusDocument, ::testing::ValuesIn(corpusFiles()),
                         [](const ::testing::TestParamInfo<QString>& param) {
                             QString name = param.param;
                             name.chop(4);
                             name.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9]")), QStringLiteral("_"));
                             return name.toStdString();
                         });

// The corpus is what the comparison and the fuzzer start from: it must stay
// large and varied.
TEST(RtfCorpus, isLargeAndHasItsSources)
{
    const QStringList files = corpusFiles();
    EXPECT_GE(files.size(), 60);
    const QString sources = QString::fromUtf8(readFixtureBytes(corpusPath(QStringLiteral("SOURCES.md"))));
    for (const QString& file : files) {
        EXPECT_TRUE(sources.contains(QLatin1Char('`') + file + QLatin1Char('`'))) << file.toStdString() << " has no source";
    }
}
