// The tax parcel roll: importing a 200,000-record RPS extract into an empty
// roll and again over a full one, and carrying the roll into an empty parcel
// store, each beside the sqlite3 tool's .import of the same rows as CSV into
// a table of the same columns.
//
//   bench_rps_import                      runs the benchmarks
//   bench_rps_import --generate FILE [N]  writes an extract of N records
//
// PVARDO_BENCH_RPS_RECORDS changes the record count (200,000).
#include "RpsExtractGenerator.h"
#include "parcels/ParcelService.h"
#include "parcels/RpsFields.h"
#include "parcels/RpsImport.h"
#include "parcels/RpsRoll.h"
#include "parcels/SblParts.h"
#include "parcels/TextCuts.h"
#include "store/Catalogue.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <sys/resource.h>

using namespace pvardo;
using namespace pvardo::parcels;

namespace {

int recordCount()
{
    const int count = qEnvironmentVariableIntValue("PVARDO_BENCH_RPS_RECORDS");
    return count > 0 ? count : 200000;
}

QTemporaryDir& workFolder()
{
    static QTemporaryDir dir;
    return dir;
}

QString work(const char* name)
{
    return workFolder().filePath(QString::fromLatin1(name));
}

QByteArray csvField(const QString& text)
{
    QByteArray bytes = text.toUtf8();
    bytes.replace('"', "\"\"");
    return '"' + bytes + '"';
}

// The extract, and the same rows as the import writes them as CSV, for the
// roll and for the parcel store: made once.
struct Files
{
    QString extract;
    QString rollCsv;
    QString storeCsv;
};

const Files& files()
{
    static const Files made = [] {
        Files f{work("RPS995T1.txt"), work("roll.csv"), work("store.csv")};
        if (!bench::writeRpsExtract(f.extract, recordCount())) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(f.extract));
            std::exit(1);
        }
        QFile roll(f.rollCsv);
        QFile parcelStore(f.storeCsv);
        if (!roll.open(QIODevice::WriteOnly) || !parcelStore.open(QIODevice::WriteOnly)) {
            std::exit(1);
        }
        SblParts conversions;
        const QString stamp = QDateTime::currentDateTime().toString(Qt::ISODate);
        for (int i = 0; i < recordCount(); ++i) {
            const QString line = QString::fromLatin1(bench::rpsRecord(i));
            const QString sbl = RpsFields::getSBL(line);
            const QString full = conversions.myssbl2SBL(sbl);
            const QString owner = cutText(RpsFields::getOwner(line), 30);
            const QString location = cutText(RpsFields::getLoc(line), 80);
            const QString mailing = cutText(RpsFields::getMailing(line), 80);
            const QString east = RpsFields::getEGrid(line);
            const QString north = RpsFields::getNGrid(line);
            const QList<QByteArray> rollRow = {csvField(full), csvField(sbl), csvField(owner),
                csvField(owner), csvField(location), csvField(mailing), csvField(east), csvField(north),
                "\"\"", "\"\"", "\"\"", "\"\"", csvField(stamp)};
            roll.write(rollRow.join(',') + '\n');
            const QList<QByteArray> storeRow = {csvField(full), csvField(owner), csvField(location), "", "",
                "", "", "", "", "", "", "", "", csvField(owner), csvField(mailing), "",
                QByteArray::number(east.toDouble()), QByteArray::number(north.toDouble())};
            parcelStore.write(storeRow.join(',') + '\n');
        }
        return f;
    }();
    return made;
}

void freshDatabase(const QString& path, store::Table table)
{
    QFile::remove(path);
    QFile::remove(path + QStringLiteral("-journal"));
    if (!store::createDatabaseFile(path, store::tableDef(table)).ok()) {
        std::fprintf(stderr, "cannot make %s\n", qPrintable(path));
        std::exit(1);
    }
}

void reportMemory(benchmark::State& state)
{
    struct rusage usage
    {
    };
    getrusage(RUSAGE_SELF, &usage);
    state.counters["max_rss_MiB"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
}

double childrenCpuMs()
{
    struct rusage usage
    {
    };
    getrusage(RUSAGE_CHILDREN, &usage);
    return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1000.0
        + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1000.0;
}

// Runs the sqlite3 tool's .import; gives the CPU time the tool took.
double sqliteImport(const QString& database, const QString& csv, const char* table)
{
    const double before = childrenCpuMs();
    QProcess tool;
    tool.start(QStringLiteral("sqlite3"),
        {database, QStringLiteral(".mode csv"),
            QStringLiteral(".import %1 %2").arg(csv, QString::fromLatin1(table))});
    if (!tool.waitForFinished(600000) || tool.exitCode() != 0) {
        std::fprintf(stderr, "sqlite3 .import failed: %s\n", tool.readAllStandardError().constData());
        std::exit(1);
    }
    return childrenCpuMs() - before;
}

void AnalyseExtract(benchmark::State& state)
{
    const Files& f = files();
    for (auto _ : state) {
        const RpsImportResult result = RpsImport(f.extract).ImportIn(1);
        benchmark::DoNotOptimize(result.processed);
    }
    state.SetItemsProcessed(state.iterations() * recordCount());
}

void ImportIntoEmptyRoll(benchmark::State& state)
{
    const Files& f = files();
    const QString roll = work("rps.db");
    for (auto _ : state) {
        state.PauseTiming();
        freshDatabase(roll, store::Table::RPS);
        RpsRoll rows(roll);
        rows.resetRPSsbl();
        state.ResumeTiming();
        const RpsImportResult result = RpsImport(f.extract).ImportIn(2, &rows);
        if (result.processed != recordCount()) {
            state.SkipWithError("not every record was imported");
        }
    }
    state.SetItemsProcessed(state.iterations() * recordCount());
    reportMemory(state);
}

void ImportAgainOverFullRoll(benchmark::State& state)
{
    const Files& f = files();
    const QString roll = work("rps-full.db");
    freshDatabase(roll, store::Table::RPS);
    {
        RpsRoll rows(roll);
        rows.resetRPSsbl();
        RpsImport(f.extract).ImportIn(2, &rows);
    }
    for (auto _ : state) {
        RpsRoll rows(roll);
        rows.resetRPSsbl();
        const RpsImportResult result = RpsImport(f.extract).ImportIn(2, &rows);
        if (result.processed != recordCount()) {
            state.SkipWithError("not every record was imported");
        }
    }
    state.SetItemsProcessed(state.iterations() * recordCount());
    reportMemory(state);
}

void SqliteToolImportRoll(benchmark::State& state)
{
    const Files& f = files();
    const QString roll = work("rps-tool.db");
    double toolCpu = 0;
    for (auto _ : state) {
        state.PauseTiming();
        freshDatabase(roll, store::Table::RPS);
        state.ResumeTiming();
        toolCpu += sqliteImport(roll, f.rollCsv, "RPS");
    }
    state.counters["tool_cpu_ms"] = toolCpu / static_cast<double>(state.iterations());
    state.SetItemsProcessed(state.iterations() * recordCount());
}

void SyncIntoEmptyStore(benchmark::State& state)
{
    const Files& f = files();
    const QString roll = work("rps-sync.db");
    freshDatabase(roll, store::Table::RPS);
    {
        RpsRoll rows(roll);
        rows.resetRPSsbl();
        RpsImport(f.extract).ImportIn(2, &rows);
    }
    const QString parcels = work("sbl.db");
    for (auto _ : state) {
        state.PauseTiming();
        freshDatabase(parcels, store::Table::SBL18);
        ParcelService service(parcels, work("pbproj.db"));
        service.resetsbl();
        RpsRoll rows(roll);
        rows.resetRPSsbl();
        state.ResumeTiming();
        const int carried = rows.syncSBL(service);
        if (carried != recordCount()) {
            state.SkipWithError("not every roll row was carried");
        }
    }
    state.SetItemsProcessed(state.iterations() * recordCount());
    reportMemory(state);
}

void SqliteToolImportStore(benchmark::State& state)
{
    const Files& f = files();
    const QString parcels = work("sbl-tool.db");
    double toolCpu = 0;
    for (auto _ : state) {
        state.PauseTiming();
        freshDatabase(parcels, store::Table::SBL18);
        state.ResumeTiming();
        toolCpu += sqliteImport(parcels, f.storeCsv, "SBL");
    }
    state.counters["tool_cpu_ms"] = toolCpu / static_cast<double>(state.iterations());
    state.SetItemsProcessed(state.iterations() * recordCount());
}

} // namespace

BENCHMARK(AnalyseExtract)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3)->UseRealTime();
BENCHMARK(SqliteToolImportRoll)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3)->UseRealTime();
BENCHMARK(ImportIntoEmptyRoll)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3)->UseRealTime();
BENCHMARK(ImportAgainOverFullRoll)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(3)
    ->UseRealTime();
BENCHMARK(SqliteToolImportStore)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3)->UseRealTime();
BENCHMARK(SyncIntoEmptyStore)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3)->UseRealTime();

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (argc >= 3 && qstrcmp(argv[1], "--generate") == 0) {
        const int records = argc >= 4 ? std::atoi(argv[3]) : recordCount();
        if (records <= 0 || !bench::writeRpsExtract(QString::fromLocal8Bit(argv[2]), records)) {
            std::fprintf(stderr, "usage: %s --generate FILE [RECORDS]\n", argv[0]);
            return 2;
        }
        return 0;
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
