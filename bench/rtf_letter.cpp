// Reading the office's one-page letter, filling 30 placeholders and laying
// it out for the printer: what happens between "Print" and the first page of
// a custom letter. Target: under 20 ms.
//   build/bench/bench_rtf_letter
#include "documents/PrintRichText.h"
#include "documents/Placeholders.h"
#include "documents/RichTextLayout.h"
#include "documents/RtfReader.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPageSize>
#include <QPdfWriter>
#include <QTextDocument>

#include <benchmark/benchmark.h>

namespace {

QByteArray letterBytes()
{
    QFile file(QFileInfo(QStringLiteral(__FILE__)).absolutePath() + QStringLiteral("/../tests/data/rtf/letter.rtf"));
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

// What a case letter's merge asks for: the fixed words, the case's columns
// in their forms, and some the letter does not hold.
const QList<QPair<QString, QString>>& placeholders()
{
    static const QList<QPair<QString, QString>> list{
        {QStringLiteral("##"), QStringLiteral("1")},
        {QStringLiteral("%dl"), QStringLiteral("March 07, 2024")},
        {QStringLiteral("%ds"), QStringLiteral("3/7/2024")},
        {QStringLiteral("%tm"), QStringLiteral("10:15 AM")},
        {QStringLiteral("%mh"), QStringLiteral("April 2, 2024")},
        {QStringLiteral("%sh"), QString()},
        {QStringLiteral("%nm"), QStringLiteral("Ophelia Quarrington")},
        {QStringLiteral("%ad"), QStringLiteral("12 Orchard Road")},
        {QStringLiteral("%zp"), QStringLiteral("Elmbrook, NY 12999")},
        {QStringLiteral("%proj"), QStringLiteral("2024-17")},
        {QStringLiteral("%stat"), QStringLiteral("Pending")},
        {QStringLiteral("%sbl"), QStringLiteral("12.-3-45")},
        {QStringLiteral("%PBCASE"), QStringLiteral("2024-17")},
        {QStringLiteral("%$PBCASE"), QStringLiteral("2024-17")},
        {QStringLiteral("%@PBCASE"), QStringLiteral("2024-17")},
        {QStringLiteral("%&PBCASE"), QStringLiteral("2024-17")},
        {QStringLiteral("%PBLOCN1"), QStringLiteral("12 Orchard Road")},
        {QStringLiteral("%PBSTATUS"), QStringLiteral("Pending")},
        {QStringLiteral("%PBFILEDATE"), QStringLiteral("03/01/2024")},
        {QStringLiteral("%@PBFILEDATE"), QStringLiteral("03/01/2024")},
        {QStringLiteral("%&PBFILEDATE"), QStringLiteral("03/01/2024")},
        {QStringLiteral("%PBAPPNAME1"), QStringLiteral("Ophelia Quarrington")},
        {QStringLiteral("%PBAPPADDR1"), QStringLiteral("12 Orchard Road, Elmbrook")},
        {QStringLiteral("%PBPROJNAME"), QStringLiteral("Garden centre")},
        {QStringLiteral("%$PBFAMOUNT"), QStringLiteral("1250")},
        {QStringLiteral("%~MTIME"), QStringLiteral("19:30")},
        {QStringLiteral("%PBTYPE"), QStringLiteral("Site plan")},
        {QStringLiteral("%PBUSE"), QStringLiteral("Retail")},
        {QStringLiteral("%PBCURZONE"), QStringLiteral("NB")},
        {QStringLiteral("%PBMISCNOTES"), QString()},
    };
    return list;
}

void readMergeAndLayOutLetter(benchmark::State& state)
{
    const QByteArray bytes = letterBytes();
    QByteArray pdf;
    QBuffer sink(&pdf);
    sink.open(QIODevice::WriteOnly);
    QPdfWriter device(&sink);
    device.setPageSize(QPageSize(QPageSize::Letter));
    device.setResolution(1200);
    int pages = 0;
    for (auto _ : state) {
        QTextDocument document;
        pvardo::documents::readRtf(bytes, document);
        for (const auto& [token, value] : placeholders()) {
            pvardo::documents::ReplaceToken(document, token, value);
        }
        const pvardo::documents::RichTextLayout layout(document, &device, 6.9 * 1200);
        int first = 0;
        pages = 0;
        while (first < layout.textLength()) {
            first = layout.formatRange(nullptr, first, QRectF(0, 0, 6.9 * 1200, 9.4 * 1200));
            ++pages;
        }
        benchmark::DoNotOptimize(first);
    }
    state.counters["pages"] = pages;
    state.counters["placeholders"] = double(placeholders().size());
}
BENCHMARK(readMergeAndLayOutLetter)->Unit(benchmark::kMillisecond);

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
