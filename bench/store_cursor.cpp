// The case cursor over a large case table: open with its count, a walk of
// MoveNext over every row, and Find of a key at the start and at the end.
#include "store/Catalogue.h"
#include "store/Recordset.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <sys/resource.h>

using namespace pvardo::store;

namespace {

constexpr int CaseCount = 100000;

QString caseNumber(int i)
{
    return QStringLiteral("%1-%2").arg(10 + i / 10000).arg(i % 10000, 4, 10, QLatin1Char('0'));
}

// One case table of CaseCount rows, made once for all benchmarks.
const QString& caseFile()
{
    static QTemporaryDir dir;
    static const QString path = [] {
        const QString file = dir.filePath(QStringLiteral("pbproj.db"));
        createDatabaseFile(file, tableDef(Table::PBPROJ));
        StoreStatus status;
        auto rows = openRecordsetAt(file, QStringLiteral("Select * from PBPROJ"), &status);
        rows->beginTransaction();
        for (int i = 0; i < CaseCount; ++i) {
            rows->AddNew();
            rows->setValue(QStringLiteral("PBCASE"), caseNumber(i));
            rows->setValue(QStringLiteral("PBLOCN1"), QStringLiteral("%1 Main Street").arg(i));
            rows->setValue(QStringLiteral("PBAPPNAME1"), QStringLiteral("Applicant %1").arg(i));
            rows->setValue(QStringLiteral("PBPROJDESC"), QStringLiteral("A two-storey addition with a garage and a deck, %1").arg(i));
            rows->setValue(QStringLiteral("PBFILEDATE"), QDate(2010, 1, 1).addDays(i % 4000));
            rows->Update();
        }
        rows->commitTransaction();
        return file;
    }();
    return path;
}

void OpenWithCount(benchmark::State& state)
{
    const QString& file = caseFile();
    for (auto _ : state) {
        StoreStatus status;
        auto rows = openRecordsetAt(file, QStringLiteral("Select * from PBPROJ order by PBCASE"), &status);
        benchmark::DoNotOptimize(rows->RecordCount());
    }
}

void WalkAllRows(benchmark::State& state)
{
    const QString& file = caseFile();
    StoreStatus status;
    auto rows = openRecordsetAt(file, QStringLiteral("Select * from PBPROJ order by PBCASE"), &status);
    for (auto _ : state) {
        rows->MoveFirst();
        qsizetype total = 0;
        while (!rows->Eof()) {
            total += rows->text(QStringLiteral("PBCASE")).size();
            rows->MoveNext();
        }
        benchmark::DoNotOptimize(total);
    }
    struct rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    state.counters["max_rss_MiB"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void FindKey(benchmark::State& state)
{
    const QString& file = caseFile();
    StoreStatus status;
    auto rows = openRecordsetAt(file, QStringLiteral("Select * from PBPROJ order by PBCASE"), &status);
    const QString key = caseNumber(state.range(0) == 0 ? 0 : CaseCount - 1);
    const QString criteria = QStringLiteral("[PBCASE] = '") + key + QLatin1Char('\'');
    rows->Find(criteria); // the first find builds the position table
    for (auto _ : state) {
        rows->MoveFirst();
        rows->Find(criteria);
        benchmark::DoNotOptimize(rows->AbsolutePosition());
    }
}

} // namespace

BENCHMARK(OpenWithCount)->Unit(benchmark::kMillisecond);
BENCHMARK(WalkAllRows)->Unit(benchmark::kMillisecond);
BENCHMARK(FindKey)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
