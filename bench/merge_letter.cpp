// The merge of a one-page custom letter for one case, ready to print: the
// template read from the forms folder, addressed, every placeholder filled
// from a real case row by the case screen's PlugVars, and laid out for the
// page. The letter holds 60 placeholders of every kind. Target: under 20 ms.
//   build/bench/bench_merge_letter
#include "cases/CaseLetters.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "documents/Merge.h"
#include "documents/RichTextLayout.h"
#include "store/Catalogue.h"
#include "store/Recordset.h"

#include <QDate>
#include <QGuiApplication>
#include <QPageSize>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <QTextDocument>

#include <benchmark/benchmark.h>

namespace {

using namespace pvardo;

// 12 fixed words, 40 columns in their four forms, 8 numbered slots.
QByteArray letterTemplate()
{
    const QStringList words{QStringLiteral("##"),  QStringLiteral("%dl"),   QStringLiteral("%ds"),
                            QStringLiteral("%tm"), QStringLiteral("%mh"),   QStringLiteral("%sh"),
                            QStringLiteral("%nm"), QStringLiteral("%ad"),   QStringLiteral("%zp"),
                            QStringLiteral("%proj"), QStringLiteral("%stat"), QStringLiteral("%sbl")};
    const QStringList columns{QStringLiteral("PBCASE"),     QStringLiteral("PBLOCN1"),    QStringLiteral("PBSUBDIV"),
                              QStringLiteral("PBFILEDATE"), QStringLiteral("PBAPPNAME1"), QStringLiteral("PBAPPADDR1"),
                              QStringLiteral("PBOWNRNAME1"), QStringLiteral("PBPROJNAME"), QStringLiteral("PBPROJDESC"),
                              QStringLiteral("PBCOST")};
    QByteArray rtf("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\froman Times New Roman;}{\\f1\\fswiss Arial;}}\\f0\\fs24 ");
    for (const QString& word : words) {
        // The first character in another font, as letter heads often have it.
        rtf += "{\\f1\\b " + word.left(1).toLatin1() + "}" + word.mid(1).toLatin1() + " and more words\\par ";
    }
    for (const QString& column : columns) {
        for (const char* form : {"", "$", "@", "&"}) {
            rtf += "The value %" + QByteArray(form) + column.toLatin1() + " stands here. ";
        }
        rtf += "\\par ";
    }
    for (int i = 1; i <= 5; ++i) {
        rtf += QStringLiteral(" %%1").arg(i, 2, 10, QLatin1Char('0')).toLatin1();
    }
    for (int i = 1; i <= 3; ++i) {
        rtf += QStringLiteral(" %$%1").arg(i, 2, 10, QLatin1Char('0')).toLatin1();
    }
    return rtf + "\\par}";
}

void mergeOneLetter(benchmark::State& state)
{
    QTemporaryDir dir;
    session().FormsFolder = dir.path();
    session().Today = QDate(2024, 3, 7);
    session().ReportHeaderRtf
        = QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\qc\\f0\\b\\fs32 PLANNING BOARD\\par}");
    replaceFile(dir.filePath(QStringLiteral("letter.rtf")), letterTemplate());
    const QString casePath = dir.filePath(QStringLiteral("pbproj.db"));
    store::createDatabaseFile(casePath, store::tableDef(store::Table::PBPROJ));
    store::StoreStatus status;
    {
        auto rows = store::openRecordsetAt(casePath, QStringLiteral("Select * from PBPROJ"), &status);
        rows->AddNew();
        rows->setValue(QStringLiteral("PBCASE"), QStringLiteral("24-017"));
        rows->setValue(QStringLiteral("PBLOCN1"), QStringLiteral("12 Orchard Road"));
        rows->setValue(QStringLiteral("PBFILEDATE"), QDate(2024, 3, 1));
        rows->setValue(QStringLiteral("PBAPPNAME1"), QStringLiteral("Ophelia Quarrington"));
        rows->setValue(QStringLiteral("PBCONTACTNAME1"), QStringLiteral("Ophelia Quarrington"));
        rows->setValue(QStringLiteral("PBCONTACTADDR1"), QStringLiteral("12 Orchard Road, Elmbrook NY 12999"));
        rows->setValue(QStringLiteral("PBPROJNAME"), QStringLiteral("Garden centre"));
        rows->setValue(QStringLiteral("PBCOST"), 125000.5);
        rows->setValue(QStringLiteral("SEC"), QStringLiteral("12"));
        rows->setValue(QStringLiteral("BLK"), QStringLiteral("3"));
        rows->setValue(QStringLiteral("LOT"), QStringLiteral("45"));
        rows->Update();
    }
    auto row = store::openRecordsetAt(casePath, QStringLiteral("Select * from PBPROJ"), &status);
    documents::registerPlugVars(documents::ScreenCodes::Case, [&](QTextDocument& buffer) {
        cases::plugCaseValues(buffer, *row, cases::caseFixedWords(*row));
    });
    documents::registerLetterContact([&] {
        return std::make_pair(row->text(QStringLiteral("PBCONTACTNAME1")), row->text(QStringLiteral("PBCONTACTADDR1")));
    });
    QPdfWriter writer(dir.filePath(QStringLiteral("unused.pdf")));
    writer.setPageSize(QPageSize(QPageSize::Letter));
    writer.setResolution(1200);
    for (auto _ : state) {
        QTextDocument letter;
        documents::mergeFormFile(letter, QStringLiteral("letter.rtf"), documents::ScreenCodes::Case);
        const documents::RichTextLayout layout(letter, &writer, 6.9 * 1200);
        benchmark::DoNotOptimize(layout.textLength());
    }
}
BENCHMARK(mergeOneLetter)->Unit(benchmark::kMillisecond);

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
