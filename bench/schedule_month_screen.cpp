// The board's calendar over a large meeting table: ten years of a busy board
// (19,800 single meetings) and 200 recurring rules, 20,000 rows in all.
// Loading a month selects the year's rows and every rule, works out the
// rules' days in the month, and gives the month's list and its day marks;
// the second benchmark also puts the marks on the calendar and draws it, as
// the dashboard does on a change of month.
#include "common/Waiting.h"
#include "schedule/MeetingRecord.h"
#include "schedule/MeetingRules.h"
#include "schedule/MonthEvents.h"
#include "schedule/screens/Calendar.h"
#include "schedule/screens/MonthMarks.h"
#include "store/Catalogue.h"
#include "store/Recordset.h"

#include <QApplication>
#include <QImage>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

using namespace pvardo;
using namespace pvardo::schedule;

namespace {

constexpr int FirstYear = 2010;
constexpr int Years = 10;
constexpr int SingleMeetings = 19800;
constexpr int Rules = 200;

// One meeting table, made once for all benchmarks.
const QString& meetingFile()
{
    static QTemporaryDir dir;
    static const QString path = [] {
        const QString file = dir.filePath(QStringLiteral("meeting.db"));
        store::createDatabaseFile(file, store::tableDef(store::Table::MEETING));
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(file, QStringLiteral("Select * from MEETING"), &status);
        rows->beginTransaction();
        MeetingForm form;
        form.Text3 = QStringLiteral("Town Hall, Meeting Room B");
        form.Text5 = QStringLiteral("Clerk");
        form.Text7 = QStringLiteral("Agenda posted a week ahead.");
        form.DTPicker1 = QTime(19, 0);
        form.Option1 = true;
        const QDate first(FirstYear, 1, 1);
        const int days = static_cast<int>(first.daysTo(QDate(FirstYear + Years, 1, 1)));
        for (int i = 0; i < SingleMeetings; ++i) {
            const QDate date = first.addDays(static_cast<qint64>(i) * days / SingleMeetings);
            form.Text2 = QStringLiteral("Site plan review %1").arg(i);
            form.Text6 = QStringLiteral("%1-%2").arg(date.year() % 100).arg(i % 500, 3, 10, QLatin1Char('0'));
            rows->AddNew();
            movefieldsintodb(form, date.year(), date.month(), date.day(), *rows, QStringLiteral("clerk"));
            rows->Update();
        }
        form.Option1 = false;
        form.Option2 = true;
        for (int i = 0; i < Rules; ++i) {
            form.Text2 = QStringLiteral("Standing meeting %1").arg(i);
            form.Combo1 = occurrenceNames().at(i % 5);
            form.Combo2 = weekdayNames().at(i % 7);
            form.Combo3 = i % 4 == 0 ? QString() : intervalNames().at(i % 3);
            rows->AddNew();
            movefieldsintodb(form, FirstYear + i % Years, i % 12 + 1, 1, *rows, QStringLiteral("clerk"));
            rows->Update();
        }
        rows->commitTransaction();
        return file;
    }();
    return path;
}

// A month change: each round loads another month, so the grid is rebuilt too.
void LoadMonth(benchmark::State& state)
{
    MonthEvents events(meetingFile());
    int month = 0;
    qsizetype listed = 0;
    for (auto _ : state) {
        month = month % 12 + 1;
        const QString date
            = QStringLiteral("%1/01/%2").arg(month, 2, 10, QLatin1Char('0')).arg(FirstYear + 5);
        if (events.GetMonthEvents(date) != MonthEvents::Outcome::Loaded) {
            state.SkipWithError("the month did not load");
            break;
        }
        listed = events.entries().size();
        benchmark::DoNotOptimize(events.marks());
    }
    store::StoreStatus status;
    state.counters["table_rows"] = static_cast<double>(
        store::openRecordsetAt(meetingFile(), QStringLiteral("Select * from MEETING"), &status)
            ->RecordCount());
    state.counters["rows_read"] = static_cast<double>(store::openRecordsetAt(
        meetingFile(), MonthEvents::monthQuery(QString::number(FirstYear + 5)), &status)
                                                          ->RecordCount());
    state.counters["listed"] = static_cast<double>(listed);
}

// A month change on the dashboard: load, put the marks on the calendar, draw it.
void LoadMonthAndDraw(benchmark::State& state)
{
    MonthEvents events(meetingFile());
    Calendar calendar;
    calendar.resize(360, 340);
    int month = 0;
    for (auto _ : state) {
        month = month % 12 + 1;
        calendar.setDate(QDate(FirstYear + 5, month, 1));
        const QString date
            = QStringLiteral("%1/01/%2").arg(month, 2, 10, QLatin1Char('0')).arg(FirstYear + 5);
        if (events.GetMonthEvents(date) != MonthEvents::Outcome::Loaded) {
            state.SkipWithError("the month did not load");
            break;
        }
        showMonthMarks(calendar, events.marks());
        const QImage drawn = calendar.grab().toImage();
        benchmark::DoNotOptimize(drawn.constBits());
    }
}

} // namespace

BENCHMARK(LoadMonth)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadMonthAndDraw)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    // The load's pause for other workstations is not part of the work measured.
    setWaitsEnabled(false);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
