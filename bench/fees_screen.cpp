// The fees screen on a case with 2,000 fees: opening it with its list and
// totals, an add that rebuilds the list, and the receivables of every case
// over 10,000 fee rows built in the report window.
#include "cases/screens/ZPermits.h"
#include "common/Session.h"
#include "common/Waiting.h"
#include "documents/screens/Editor.h"
#include "parcels/ParcelService.h"
#include "store/Catalogue.h"
#include "store/Recordset.h"
#include "subrecords/screens/FeesFrm.h"

#include <QApplication>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QTreeWidget>
#include <benchmark/benchmark.h>

using namespace pvardo;

namespace {

constexpr int CaseFees = 2000;
constexpr int OtherFees = 8000;

// A database folder with one case of 2,000 fees among 8,000 fees of other
// cases, a third of them with a balance, made once.
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
    store::createDatabaseFile(folder + QStringLiteral("/pbfees.db"), store::tableDef(store::Table::PBFEES));
    store::StoreStatus status;
    auto cases = store::openRecordsetAt(folder + QStringLiteral("/pbproj.db"), QStringLiteral("Select * from PBPROJ"),
                                        &status);
    cases->AddNew();
    cases->setValue(QStringLiteral("PBCASE"), QStringLiteral("24-017"));
    cases->setValue(QStringLiteral("PBPROJNAME"), QStringLiteral("Mill Pond Subdivision"));
    cases->Update();
    auto fees = store::openRecordsetAt(folder + QStringLiteral("/pbfees.db"), QStringLiteral("Select * from PBFEES"),
                                       &status);
    fees->beginTransaction();
    for (int i = 0; i < CaseFees + OtherFees; ++i) {
        fees->AddNew();
        fees->setValue(QStringLiteral("PBFCASE"),
                       i < CaseFees ? QStringLiteral("24-017") : QStringLiteral("23-%1").arg(i % 400, 3, 10, QLatin1Char('0')));
        fees->setValue(QStringLiteral("PBFSTATUS"), i % 50 == 0 ? QStringLiteral("V") : QStringLiteral("A"));
        fees->setValue(QStringLiteral("PBFPAYDESC"), QStringLiteral("Inspection visit %1").arg(i));
        fees->setValue(QStringLiteral("PBFAMOUNT"), 125.10);
        const double paid = i % 3 == 0 ? 100.0 : 125.10;
        fees->setValue(QStringLiteral("PBFPAID"), paid);
        fees->setValue(QStringLiteral("PBFBALDUE"), 125.10 - paid);
        fees->setValue(QStringLiteral("PBFFILEDATE"), QDate(2020, 1, 1).addDays(i % 1500));
        fees->setValue(QStringLiteral("PBFPAIDDATE"), QDate(2020, 2, 1).addDays(i % 1500));
        fees->setValue(QStringLiteral("PBFAPPNAME1"), QStringLiteral("Ann Applicant"));
        fees->Update();
    }
    fees->commitTransaction();
    Session& state = session();
    state.DatabaseFolder = folder;
    state.FormsFolder = folder;
    state.ParcelDatabasePath = folder + QStringLiteral("/sbl.db");
    state.CurrentUser = QStringLiteral("bench");
    state.UserLevel = QStringLiteral("MEMBER");
}

int listedRows(const subrecords::FeesFrm& fees)
{
    return fees.findChild<QTreeWidget*>(QStringLiteral("ListView1"))->topLevelItemCount();
}

void OpenFeesScreen(benchmark::State& state)
{
    prepareFolder();
    cases::ZPermits caseScreen;
    for (auto _ : state) {
        subrecords::FeesFrm fees(caseScreen);
        if (listedRows(fees) < CaseFees) {
            state.SkipWithError("the list is not full");
        }
    }
}

// Each add writes a row and rebuilds the list with every fee of the case.
void AddFee(benchmark::State& state)
{
    prepareFolder();
    cases::ZPermits caseScreen;
    subrecords::FeesFrm fees(caseScreen);
    for (auto _ : state) {
        state.PauseTiming();
        fees.INew();
        fees.setBoxText(1, QStringLiteral("Escrow top-up"));
        fees.setBoxText(2, QStringLiteral("$1,250.00"));
        fees.setBoxText(3, QStringLiteral("250"));
        state.ResumeTiming();
        fees.IAdd();
    }
    if (fees.mode() != ui::RecordMode::Browse) {
        state.SkipWithError("the add was refused");
    }
}

void Receivables(benchmark::State& state)
{
    prepareFolder();
    cases::ZPermits caseScreen;
    subrecords::FeesFrm fees(caseScreen);
    for (auto _ : state) {
        fees.printReceivables();
    }
    if (!documents::Editor::instance().ReportBuffer().toPlainText().contains(QStringLiteral("*TOTAL DUE"))) {
        state.SkipWithError("no report was built");
    }
    documents::Editor::instance().hide();
}

} // namespace

BENCHMARK(OpenFeesScreen)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(AddFee)->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(Receivables)->Unit(benchmark::kMillisecond)->Iterations(5);

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
