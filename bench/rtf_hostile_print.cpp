// Documents built to make printing grow faster than the text: a million
// characters as 75,000 short paragraphs, as one paragraph of words, and as a
// table of 20,000 rows, each read and printed to a PDF file as
// `pvardo-admin print --pdf` does. Target: under 5 s each, and twice the text
// takes about twice the time.
//   build/bench/bench_rtf_hostile_print
//   build/bench/bench_rtf_hostile_print --benchmark_filter=Paragraphs   # one shape
#include "documents/PrintRichText.h"
#include "documents/RtfReader.h"

#include <QGuiApplication>
#include <QPageSize>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <QTextDocument>

#include <benchmark/benchmark.h>

namespace {

// `count` paragraphs of about 13 characters.
QByteArray shortParagraphs(int count)
{
    QByteArray rtf = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Times New Roman;}}\\f0\\fs24\n";
    rtf.reserve(count * 20 + 100);
    for (int i = 0; i < count; ++i) {
        rtf += "Line ";
        rtf += QByteArray::number(100000 + i);
        rtf += "\\par\n";
    }
    rtf += "}";
    return rtf;
}

// One paragraph of `words` words of about five letters.
QByteArray oneParagraph(int words)
{
    static const char* const vocabulary[] = {"board", "parcel", "site", "plan", "lot", "review", "notice"};
    QByteArray rtf = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Times New Roman;}}\\f0\\fs24\n";
    rtf.reserve(words * 7 + 100);
    for (int i = 0; i < words; ++i) {
        rtf += vocabulary[i % 7];
        rtf += ' ';
        if (i % 12 == 11) {
            rtf += '\n';
        }
    }
    rtf += "\\par}";
    return rtf;
}

// `rows` rows of three cells.
QByteArray tableRows(int rows)
{
    QByteArray rtf = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Times New Roman;}}\\f0\\fs20\n";
    for (int i = 0; i < rows; ++i) {
        rtf += "\\trowd\\cellx2000\\cellx5000\\cellx9000\\intbl ";
        rtf += QByteArray::number(i);
        rtf += "\\cell Parcel 12.-3-";
        rtf += QByteArray::number(i);
        rtf += "\\cell Pending review\\cell\\row\n";
    }
    rtf += "\\pard\\par}";
    return rtf;
}

void printDocument(benchmark::State& state, const QByteArray& rtf)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.pdf"));
    int pages = 0;
    int characters = 0;
    for (auto _ : state) {
        QTextDocument document;
        pvardo::documents::readRtf(rtf, document);
        characters = document.characterCount();
        QPdfWriter writer(path);
        writer.setPageSize(QPageSize(QPageSize::Letter));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        writer.setResolution(1200);
        pages = pvardo::documents::PrintRichText(document, writer, {}).pages;
    }
    state.counters["pages"] = pages;
    state.counters["characters"] = characters;
}

void printShortParagraphs(benchmark::State& state)
{
    printDocument(state, shortParagraphs(int(state.range(0))));
}
BENCHMARK(printShortParagraphs)->Arg(37'500)->Arg(75'000)->Unit(benchmark::kMillisecond)->Iterations(1);

void printOneParagraph(benchmark::State& state)
{
    printDocument(state, oneParagraph(int(state.range(0))));
}
BENCHMARK(printOneParagraph)->Arg(80'000)->Arg(160'000)->Unit(benchmark::kMillisecond)->Iterations(1);

void printTableRows(benchmark::State& state)
{
    printDocument(state, tableRows(int(state.range(0))));
}
BENCHMARK(printTableRows)->Arg(10'000)->Arg(20'000)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
