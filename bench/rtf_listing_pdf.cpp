// A listing of 40 pages (padded columns in Courier New, as the built-in
// listings make them) printed to a PDF file with PrintRichText, and the
// memory it takes. Targets: under 1 s, under 50 MiB.
//   build/bench/bench_rtf_listing_pdf
#include "documents/PrintRichText.h"

#include <QFile>
#include <QGuiApplication>
#include <QPageSize>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <QTextCursor>
#include <QTextDocument>

#include <benchmark/benchmark.h>

namespace {

// Kilobytes of a line of /proc/self/status ("VmRSS:", "VmHWM:").
double statusKiB(const char* key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(key)) {
            return line.mid(qstrlen(key)).trimmed().split(' ').value(0).toDouble();
        }
    }
    return 0;
}

QString padded(const QString& text, int width)
{
    return text.left(width).leftJustified(width, QLatin1Char(' '));
}

// About 57 lines a page at 10 points with 0.8-inch margins: 2300 lines make 40 pages.
void buildListing(QTextDocument& document, int lines)
{
    QTextCursor cursor(&document);
    QTextCharFormat format;
    format.setFontFamilies({QStringLiteral("Courier New")});
    format.setFontStyleHint(QFont::TypeWriter);
    format.setFontPointSize(10);
    cursor.insertText(QStringLiteral("PLANNING BOARD APPLICATIONS FOR 2024\n\n"), format);
    for (int i = 0; i < lines; ++i) {
        cursor.insertText(padded(QStringLiteral("2024-%1").arg(i + 1), 12) + padded(QStringLiteral("2024"), 12)
                              + padded(QStringLiteral("Site plan for a garden centre, lot %1").arg(i), 30)
                              + padded(QStringLiteral("PENDING"), 10) + padded(QStringLiteral("Quarrington, O."), 20)
                              + QStringLiteral("\n"),
                          format);
    }
    cursor.insertText(QStringLiteral("TOTAL = %1\n").arg(lines), format);
}

void printListingOf40Pages(benchmark::State& state)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("listing.pdf"));
    const double rssBefore = statusKiB("VmRSS:");
    double rssDuring = rssBefore;
    int pages = 0;
    for (auto _ : state) {
        state.PauseTiming();
        QTextDocument document;
        buildListing(document, 2300);
        state.ResumeTiming();
        {
            QPdfWriter writer(path);
            writer.setPageSize(QPageSize(QPageSize::Letter));
            writer.setPageMargins(QMarginsF(0, 0, 0, 0));
            writer.setResolution(1200);
            pvardo::documents::PrintSettings settings;
            settings.footer = true;
            settings.footerRtf = QStringLiteral("{\\rtf1\\ansi\\qc Page ##\\par}");
            pages = pvardo::documents::PrintRichText(document, writer, settings).pages;
            rssDuring = std::max(rssDuring, statusKiB("VmRSS:"));
        }
    }
    state.counters["pages"] = pages;
    state.counters["rss_growth_MiB"] = (rssDuring - rssBefore) / 1024.0;
    state.counters["peak_rss_MiB"] = statusKiB("VmHWM:") / 1024.0;
}
BENCHMARK(printListingOf40Pages)->Unit(benchmark::kMillisecond)->Iterations(5);

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
