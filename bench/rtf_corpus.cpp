// Reading and printing every document of the RTF corpus (tests/data/rtf-corpus)
// to a PDF in memory, each timed on its own, as `pvardo-admin print` does once
// the program has started. Targets: the median document under 0.2 s, none
// over 2 s.
//   build/bench/bench_rtf_corpus [CORPUS-FOLDER]
#include "documents/PrintRichText.h"
#include "documents/RtfReader.h"

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPageSize>
#include <QPdfWriter>
#include <QTextDocument>

#include <algorithm>
#include <cstdio>
#include <vector>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    // The corpus folder: given, beside the source, or two folders above the
    // benchmark in a build folder of the source tree.
    QDir corpus(QFileInfo(QStringLiteral(__FILE__)).absolutePath() + QStringLiteral("/../tests/data/rtf-corpus"));
    if (argc > 1) {
        corpus.setPath(QString::fromLocal8Bit(argv[1]));
    } else if (!corpus.exists()) {
        corpus.setPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../../tests/data/rtf-corpus"));
    }
    const QStringList files = corpus.entryList({QStringLiteral("*.rtf")}, QDir::Files, QDir::Name);
    if (files.isEmpty()) {
        std::fprintf(stderr, "bench_rtf_corpus: no documents in %s\n", qPrintable(corpus.path()));
        return 1;
    }

    // One document printed before the clock starts: fonts are looked up once
    // for the whole program.
    auto print = [&](const QString& name) {
        QFile file(corpus.filePath(name));
        file.open(QIODevice::ReadOnly);
        QTextDocument document;
        pvardo::documents::readRtf(file.readAll(), document);
        QBuffer out;
        out.open(QIODevice::WriteOnly);
        QPdfWriter writer(&out);
        writer.setPageSize(QPageSize(QPageSize::Letter));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        writer.setResolution(1200);
        return pvardo::documents::PrintRichText(document, writer, pvardo::documents::PrintSettings()).pages;
    };
    print(files.constFirst());

    std::vector<double> seconds;
    for (const QString& name : files) {
        QElapsedTimer timer;
        timer.start();
        const int pages = print(name);
        seconds.push_back(timer.nsecsElapsed() / 1e9);
        std::printf("%-46s %3d pages %8.3f s\n", qPrintable(name), pages, seconds.back());
    }
    std::vector<double> sorted = seconds;
    std::sort(sorted.begin(), sorted.end());
    std::printf("\n%zu documents: median %.3f s, slowest %.3f s, all together %.2f s\n", sorted.size(),
                sorted.at(sorted.size() / 2), sorted.back(), [&] {
                    double sum = 0;
                    for (const double s : sorted) {
                        sum += s;
                    }
                    return sum;
                }());
    return 0;
}
