// The parcel browser over a store of 200,000 parcels, as a county's roll
// fills it: opening the browser with its count and a first screen of the
// list drawn, a search by part of an owner's name, and searches by part of
// the S-B-L.
#include "common/Session.h"
#include "parcels/ParcelService.h"
#include "parcels/screens/ParcelListModel.h"
#include "parcels/screens/SblFrm.h"
#include "store/Catalogue.h"
#include "store/Recordset.h"

#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTreeView>
#include <benchmark/benchmark.h>

using namespace pvardo;
using namespace pvardo::parcels;

namespace {

int parcelCount()
{
    const int wanted = qEnvironmentVariableIntValue("PVARDO_BENCH_PARCELS");
    return wanted > 0 ? wanted : 200000;
}

// One store in a temporary databases folder, made once for all benchmarks.
void makeStore()
{
    static QTemporaryDir dir;
    static bool made = false;
    if (made) {
        return;
    }
    made = true;
    const QString file = dir.filePath(QStringLiteral("sbl.db"));
    store::createDatabaseFile(file, store::tableDef(store::Table::SBL18));
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(file, QStringLiteral("Select * from SBL"), &status);
    rows->beginTransaction();
    const char* streets[] = {"MAIN ST", "OAK LANE", "RIVER RD", "MILL POND RD", "CHURCH ST", "ELM AVE"};
    const char* names[] = {"SMITH", "O'BRIEN", "KOWALSKI", "HART", "VAN WYCK", "LOWE", "DUBOIS", "GARCIA"};
    const int count = parcelCount();
    for (int i = 0; i < count; ++i) {
        rows->AddNew();
        rows->setValue(QStringLiteral("SBLF"),
            QStringLiteral("%1-%2-0-%3-%4-0-0-0")
                .arg(i / 4000 + 1)
                .arg(i % 7)
                .arg(i / 40 % 100 + 1)
                .arg(i % 40 + 1));
        rows->setValue(
            QStringLiteral("ASSOC"), QStringLiteral("%1 %2").arg(QLatin1String(names[i % 8])).arg(i));
        rows->setValue(QStringLiteral("LOCN1"),
            QStringLiteral("%1 %2").arg(i % 900 + 1).arg(QLatin1String(streets[i % 6])));
        rows->setValue(QStringLiteral("PERMIT"), i % 50 == 0 ? QStringLiteral("PB%1").arg(i) : QString());
        rows->setValue(QStringLiteral("OTHER"), 0);
        rows->setValue(QStringLiteral("FAILED"), i % 97 == 0 ? 1 : 0);
        rows->setValue(QStringLiteral("VIOL"), i % 101 == 0 ? 1 : 0);
        rows->setValue(QStringLiteral("NOTES"), QString());
        rows->setValue(QStringLiteral("HISTORICAL"), QString());
        rows->Update();
        if (i % 20000 == 19999) {
            rows->commitTransaction();
            rows->beginTransaction();
        }
    }
    rows->commitTransaction();
    session().DatabaseFolder = dir.path();
    session().ProgramFolder = dir.path();
    session().ParcelDatabasePath = file;
}

// Opening the browser: the whole store in S-B-L order, the count shown and
// the first screen of the list drawn.
void OpenBrowser(benchmark::State& state)
{
    makeStore();
    mdb();
    int listed = 0;
    for (auto _ : state) {
        SblFrm browser;
        browser.resize(820, 560);
        const QImage drawn = browser.grab().toImage();
        benchmark::DoNotOptimize(drawn.constBits());
        listed = browser.model().rowCount();
    }
    state.counters["parcels"] = listed;
}

// A search by part of an owner's name: a match anywhere in the name, over
// every parcel, and the first screen of the result drawn.
void SearchByOwner(benchmark::State& state)
{
    makeStore();
    SblFrm browser;
    browser.resize(820, 560);
    auto* owner = browser.findChild<QLineEdit*>(QStringLiteral("txtOwner"));
    int found = 0;
    for (auto _ : state) {
        owner->setText(QStringLiteral("o'brien 1"));
        browser.ILocate();
        const QImage drawn = browser.list().grab().toImage();
        benchmark::DoNotOptimize(drawn.constBits());
        found = browser.model().rowCount();
    }
    state.counters["found"] = found;
}

// A partial S-B-L: the parcels whose section begins with the section typed
// and whose block begins with the block typed, the first screen drawn. The
// section bounds the key, so the store reads those sections through its index.
void SearchByPartialSbl(benchmark::State& state, const char* section, const char* block)
{
    makeStore();
    SblFrm browser;
    browser.resize(820, 560);
    int found = 0;
    for (auto _ : state) {
        browser.iLook();
        browser.findChild<QLineEdit*>(QStringLiteral("Text1_2"))->setText(QLatin1String(section));
        browser.findChild<QLineEdit*>(QStringLiteral("Text1_3"))->setText(QLatin1String(block));
        browser.ILocate();
        const QImage drawn = browser.list().grab().toImage();
        benchmark::DoNotOptimize(drawn.constBits());
        found = browser.model().rowCount();
    }
    state.counters["found"] = found;
}

} // namespace

BENCHMARK(OpenBrowser)->Unit(benchmark::kMillisecond);
BENCHMARK(SearchByOwner)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SearchByPartialSbl, section_1, "1", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SearchByPartialSbl, section_4_block_1, "4", "1")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SearchByPartialSbl, block_1_only, "", "1")->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
