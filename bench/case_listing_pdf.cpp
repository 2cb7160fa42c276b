// The listing of cases from the case file to a PDF: the query, the head file,
// three fixed-width lines a case, "TOTAL = ", and every page printed with its
// footer band. 3,000 and 30,000 cases show that the cost grows with the rows
// alone. Targets for 30,000: under 3 s, memory growth under 100 MiB; for
// 5,000 (a busy year of "Application by Month"): under 2 s. The listing is
// built at the office's default size (10 pt) on upright Letter paper; the
// print path sets it on the paper its widest line fits, as for the clerk.
//   build/bench/bench_case_listing_pdf
#include "cases/CaseReports.h"
#include "common/Session.h"
#include "documents/Merge.h"
#include "documents/PrintRichText.h"
#include "documents/PrintState.h"
#include "store/Catalogue.h"
#include "store/Recordset.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPageSize>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <QTextDocument>

#include <benchmark/benchmark.h>

#include <map>
#include <memory>

namespace {

using namespace pvardo;

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

// A case file of `count` cases in a folder of its own, made once per size.
QString caseFile(int count)
{
    static std::map<int, std::unique_ptr<QTemporaryDir>> folders;
    auto& folder = folders[count];
    if (!folder) {
        folder = std::make_unique<QTemporaryDir>();
        const QString path = folder->filePath(QStringLiteral("pbproj.db"));
        store::createDatabaseFile(path, store::tableDef(store::Table::PBPROJ));
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(path, QStringLiteral("Select * from PBPROJ"), &status);
        rows->beginTransaction();
        for (int i = 0; i < count; ++i) {
            rows->AddNew();
            rows->setValue(QStringLiteral("PBCASE"), QStringLiteral("%1-%2").arg(10 + i % 15).arg(i, 5, 10, QLatin1Char('0')));
            rows->setValue(QStringLiteral("FILEYEAR"), QString::number(10 + i % 15));
            rows->setValue(QStringLiteral("PBPROJDESC"), QStringLiteral("Site plan for a garden centre, lot %1").arg(i));
            rows->setValue(QStringLiteral("PBSTATUS"), QStringLiteral("P"));
            rows->setValue(QStringLiteral("PBAPPNAME1"), QStringLiteral("Quarrington, Ophelia"));
            rows->setValue(QStringLiteral("PBLOCN1"), QStringLiteral("%1 Orchard Road").arg(i % 900 + 1));
            rows->Update();
        }
        rows->commitTransaction();
        QFile head(folder->filePath(QStringLiteral("apphead.rtf")));
        head.open(QIODevice::WriteOnly);
        head.write("{\\rtf1\\ansi %sh\\par printed %dl\\par\\par CASE        YEAR        DESCRIPTION\\par}");
    }
    return folder->filePath(QStringLiteral("pbproj.db"));
}

void listCasesToPdf(benchmark::State& state)
{
    const int count = int(state.range(0));
    const QString path = caseFile(count);
    const QString head = QFileInfo(path).dir().filePath(QStringLiteral("apphead.rtf"));
    const QString pdf = QFileInfo(path).dir().filePath(QStringLiteral("listing.pdf"));
    session().Today = QDate(2024, 3, 7);
    const double rssBefore = statusKiB("VmRSS:");
    double rssPeak = rssBefore;
    int pages = 0;
    for (auto _ : state) {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(path, QStringLiteral("Select * from PBPROJ order by PBCASE"), &status);
        QTextDocument report;
        cases::buildCaseReport(report, *rows,
                               cases::CaseReportHead{cases::applicationsByMonthTitle(0, 2024), head,
                                                      documents::printState().reportFontSize},
                               cases::applicationLines);
        rssPeak = std::max(rssPeak, statusKiB("VmRSS:"));
        QPdfWriter writer(pdf);
        writer.setPageSize(QPageSize(QPageSize::Letter));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        writer.setResolution(1200);
        documents::PrintSettings settings;
        settings.footer = true;
        settings.footerRtf = QStringLiteral("{\\rtf1\\ansi\\qc Page ##\\par}");
        settings.expandPrintTokens = [](QTextDocument& document) { documents::ExpandPrintTokens(document); };
        pages = documents::PrintRichText(report, writer, settings).pages;
        rssPeak = std::max(rssPeak, statusKiB("VmRSS:"));
    }
    state.counters["cases"] = count;
    state.counters["pages"] = pages;
    state.counters["rss_growth_MiB"] = (rssPeak - rssBefore) / 1024.0;
}
BENCHMARK(listCasesToPdf)->Arg(3000)->Arg(5000)->Arg(30000)->Unit(benchmark::kMillisecond)->Iterations(3);

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
