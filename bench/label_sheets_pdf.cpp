// A run of 3,000 mailing labels, 100 full sheets of 30, printed to a PDF file:
// for each label the shipped template is filled for its addressee and laid
// into its cell. Target: under 3 s.
//   build/bench/bench_label_sheets_pdf
#include "documents/Labels.h"
#include "documents/Merge.h"
#include "documents/RtfReader.h"

#include <QFile>
#include <QGuiApplication>
#include <QPageSize>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <QTextDocument>
#include <benchmark/benchmark.h>

namespace {

using namespace pvardo;

QByteArray shippedTemplate()
{
    QFile file(QStringLiteral(":/shipped/labels/lab.rtf"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : documents::defaultLabelRtf();
}

void threeThousandLabels(benchmark::State& state)
{
    QTemporaryDir dir;
    QTextDocument labelTemplate;
    documents::readRtf(shippedTemplate(), labelTemplate);
    QList<documents::Addressee> addressees;
    for (int i = 1; i <= 3000; ++i) {
        addressees.append(documents::SplitAddress(QStringLiteral("Parcel Owner Number %1").arg(i),
            QStringLiteral("%1 Orchard Road, Elmbrook NY 12999").arg(i)));
    }
    documents::LabelSheet sheet;
    sheet.width = 2.625;
    sheet.topOffset = 0.5;
    sheet.leftOffset = 0.1875;
    int pages = 0;
    for (auto _ : state) {
        documents::LabelRunState run;
        run.sheet = sheet;
        run.topOffset = sheet.topOffset;
        run.leftOffset = sheet.leftOffset;
        QPdfWriter writer(dir.filePath(QStringLiteral("labels.pdf")));
        writer.setPageSize(QPageSize(QPageSize::Letter));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        writer.setResolution(1200);
        pages = documents::PrintLabels(labelTemplate, addressees, run, writer).pages;
    }
    state.counters["pages"] = pages;
    state.counters["PDF MiB"]
        = double(QFile(dir.filePath(QStringLiteral("labels.pdf"))).size()) / (1024 * 1024);
}
BENCHMARK(threeThousandLabels)->Unit(benchmark::kMillisecond)->Iterations(3);

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
