// The case screen over a large case table: opening it with the list filled,
// moving to the next case, and a search by example.
#include "cases/CaseNumbering.h"
#include "cases/screens/CaseForm.h"
#include "cases/screens/ZPermits.h"
#include "common/Session.h"
#include "common/Waiting.h"
#include "parcels/ParcelService.h"
#include "store/Catalogue.h"
#include "store/Recordset.h"

#include <QApplication>
#include <QLineEdit>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

using namespace pvardo;

namespace {

constexpr int CaseCount = 100000;

QString caseNumber(int i)
{
    return QStringLiteral("%1-%2").arg(10 + i / 10000).arg(i % 10000, 4, 10, QLatin1Char('0'));
}

// A database folder with CaseCount cases on 1,000 parcels, made once.
void prepareFolder()
{
    static QTemporaryDir dir;
    static bool made = false;
    if (made) {
        return;
    }
    made = true;
    const QString folder = dir.path();
    store::createDatabaseFile(folder + QStringLiteral("/pbproj.db"), store::tableDef(store::Table::PBPROJ));
    store::createDatabaseFile(folder + QStringLiteral("/sbl.db"), store::tableDef(store::Table::SBL18));
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(
        folder + QStringLiteral("/pbproj.db"), QStringLiteral("Select * from PBPROJ"), &status);
    rows->beginTransaction();
    for (int i = 0; i < CaseCount; ++i) {
        rows->AddNew();
        rows->setValue(QStringLiteral("PBCASE"), caseNumber(i));
        rows->setValue(QStringLiteral("SEC"), QString::number(i % 100));
        rows->setValue(QStringLiteral("BLK"), QString::number(i % 10));
        rows->setValue(QStringLiteral("LOT"), QString::number(i % 7));
        rows->setValue(QStringLiteral("PBLOCN1"), QStringLiteral("%1 Main Street").arg(i));
        rows->setValue(QStringLiteral("PBAPPNAME1"), QStringLiteral("Applicant %1").arg(i));
        rows->setValue(
            QStringLiteral("PBAPPTEL"), QStringLiteral("555-%1").arg(i % 10000, 4, 10, QLatin1Char('0')));
        rows->setValue(QStringLiteral("PBPROJNAME"), QStringLiteral("Project %1").arg(i));
        rows->setValue(QStringLiteral("PBPROJDESC"),
            QStringLiteral("A two-storey addition with a garage and a deck, %1").arg(i));
        rows->setValue(QStringLiteral("PBSTATUS"), QStringLiteral("P"));
        rows->setValue(QStringLiteral("PBFILEDATE"), QDate(2010, 1, 1).addDays(i % 4000));
        rows->Update();
    }
    rows->commitTransaction();
    auto parcelRows = store::openRecordsetAt(
        folder + QStringLiteral("/sbl.db"), QStringLiteral("Select * from SBL"), &status);
    parcelRows->beginTransaction();
    for (int i = 0; i < 1000; ++i) {
        parcelRows->AddNew();
        parcelRows->setValue(
            QStringLiteral("SBLF"), QStringLiteral("%1-0-0-%2-%3-0-0-0").arg(i % 100).arg(i % 10).arg(i % 7));
        parcelRows->setValue(QStringLiteral("NOTES"), i % 3 == 0 ? QStringLiteral("a note") : QString());
        parcelRows->setValue(QStringLiteral("VIOL"), i % 5 == 0 ? 1 : 0);
        parcelRows->Update();
    }
    parcelRows->commitTransaction();
    Session& state = session();
    state.DatabaseFolder = folder;
    state.ParcelDatabasePath = folder + QStringLiteral("/sbl.db");
    state.CurrentUser = QStringLiteral("bench");
    state.UserLevel = QStringLiteral("MEMBER");
}

void OpenCaseScreen(benchmark::State& state)
{
    prepareFolder();
    for (auto _ : state) {
        cases::ZPermits screen;
        benchmark::DoNotOptimize(screen.rows()->RecordCount());
    }
}

void NextCase(benchmark::State& state)
{
    prepareFolder();
    cases::ZPermits screen;
    int position = 1;
    for (auto _ : state) {
        if (position == CaseCount) {
            state.PauseTiming();
            screen.moveFirst();
            position = 1;
            state.ResumeTiming();
        }
        screen.moveNext();
        ++position;
    }
}

// A search on the applicant's name that matches 11 of the cases, as a clerk
// types part of a name: every row is tested by the like.
void FindByExample(benchmark::State& state)
{
    prepareFolder();
    cases::ZPermits screen;
    for (auto _ : state) {
        state.PauseTiming();
        screen.ILocate();
        screen.form().setBoxText(8, QStringLiteral("Applicant 9999"));
        state.ResumeTiming();
        screen.ILocate();
        state.PauseTiming();
        if (screen.rows()->RecordCount() != 11) {
            state.SkipWithError("the search found the wrong cases");
        }
        screen.iReset();
        state.ResumeTiming();
    }
}

} // namespace

BENCHMARK(OpenCaseScreen)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(NextCase)->Unit(benchmark::kMicrosecond);
BENCHMARK(FindByExample)->Unit(benchmark::kMillisecond)->Iterations(10);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    setWaitsEnabled(false);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    parcels::unloadMdb();
    return 0;
}
