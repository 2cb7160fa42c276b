#include "subrecords/FeeRules.h"

#include "common/Clock.h"
#include "documents/Listing.h"
#include "documents/Merge.h"
#include "store/SqlSubset.h"

#include <QTextDocument>

namespace pvardo::subrecords {

namespace {

QString column(const char* name)
{
    return QString::fromLatin1(name);
}

QString dateColumn(const store::Recordset& row, const char* name)
{
    const QVariant value = row.value(column(name));
    const QDate date = value.toDate();
    return date.isValid() ? date.toString(QStringLiteral("MM/dd/yyyy")) : row.text(column(name));
}

QString moneyCell(const store::Recordset& row, const char* name)
{
    const QVariant value = row.value(column(name));
    if (value.isNull() || row.text(column(name)).trimmed().isEmpty()) {
        return QStringLiteral("--").rightJustified(10, QLatin1Char(' '));
    }
    return moneyText(centsOf(value), 10);
}

QString pad(const QString& text, int width)
{
    return text.left(width).leftJustified(width, QLatin1Char(' '));
}

} // namespace

bool isVoidedFee(const store::Recordset& row)
{
    return row.text(QStringLiteral("PBFSTATUS")) == QLatin1String("V");
}

void FeeTotals::add(const store::Recordset& row)
{
    if (isVoidedFee(row)) {
        return;
    }
    charged += centsOf(row.value(column("PBFAMOUNT")));
    paid += centsOf(row.value(column("PBFPAID")));
    balance += centsOf(row.value(column("PBFBALDUE")));
    ++rows;
}

QString grandTotalLine(const FeeTotals& totals)
{
    return QStringLiteral("  Grand Total ") + moneyText(totals.charged) + QStringLiteral("   ")
        + moneyText(totals.paid) + QStringLiteral("        Bal Due ") + moneyText(totals.balance);
}

store::StoreStatus writeFeeFixedColumns(store::Recordset& row, const FeeFixedValues& values)
{
    auto monthText = [](const QDate& date) { return date.isValid() ? date.toString(QStringLiteral("MM")) : QString(); };
    auto yearText = [](const QDate& date) { return date.isValid() ? date.toString(QStringLiteral("yy")) : QString(); };
    auto dateValue = [](const QDate& date) { return date.isValid() ? QVariant(date) : QVariant(); };
    const QList<std::pair<const char*, QVariant>> writes{
        {"PBFCASE", values.ownerCase.left(20)},
        {"PBFSTATUS", QStringLiteral("A")},
        {"PBFFILEDATE", dateValue(values.fileDate)},
        {"PBFPAIDDATE", dateValue(values.paidDate)},
        {"PBFDUEDATE", dateValue(values.dueDate)},
        {"PBFPAYMETHOD", values.payMethod.trimmed().left(20)},
        {"PBFPROJNAME", values.projectName.trimmed().left(50)},
        {"PBFPAIDMM", monthText(values.paidDate)},
        {"PBFPAIDYY", yearText(values.paidDate)},
        {"PBFDUEMM", monthText(values.dueDate)},
        {"PBFDUEYY", yearText(values.dueDate)},
        {"BYUSER", values.user.left(18)},
        {"TSTAMP", presentTime()},
    };
    for (const auto& [name, value] : writes) {
        store::StoreStatus status = row.setValue(column(name), value);
        if (!status.ok()) {
            return status;
        }
    }
    return store::StoreStatus::success();
}

FeeTotals buildFeeReport(QTextDocument& report, store::Recordset& rows, const FeeReportHead& head)
{
    documents::Listing listing(report, head.fontSize);
    listing.appendHeadFile(head.headPath);
    documents::printState().reportHeading = head.title;
    documents::plugFixedWords(report, documents::ScreenCodes::Fees, documents::FixedWords{});
    documents::printState().reportHeading.clear();

    FeeTotals totals;
    const int dateWidth = head.kind == FeeReport::Case ? 12 : 11;
    QString lines;
    QString credits;
    Cents credited = 0;
    if (rows.RecordCount() > 0) {
        rows.MoveFirst();
    }
    for (; !rows.Eof() && rows.RecordCount() > 0; rows.MoveNext()) {
        if (isVoidedFee(rows)) {
            continue;
        }
        QString description = rows.text(column("PBFPAYDESC")).trimmed();
        if (head.kind == FeeReport::AllCases || head.kind == FeeReport::Receivables) {
            description = QLatin1Char('(') + rows.text(column("PBFCASE")).trimmed() + QStringLiteral(") ") + description;
        }
        const QString line = pad(dateColumn(rows, "PBFFILEDATE"), dateWidth) + pad(description, 35)
            + pad(dateColumn(rows, "PBFPAIDDATE"), 12) + moneyCell(rows, "PBFAMOUNT") + moneyCell(rows, "PBFPAID")
            + moneyCell(rows, "PBFBALDUE") + QLatin1Char('\n');
        // Paid over the charge is owed to the payer, not to the office: the
        // receivables list such fees apart and leave them out of what is due.
        const Cents balance = centsOf(rows.value(column("PBFBALDUE")));
        if (head.kind == FeeReport::Receivables && balance < 0) {
            credits += line;
            credited += balance;
        } else {
            lines += line;
        }
        totals.add(rows);
    }
    if (head.kind == FeeReport::Receivables) {
        totals.balance -= credited;
    }
    if (totals.rows == 0 && !head.emptyLine.isEmpty()) {
        lines += head.emptyLine + QLatin1Char('\n');
    }
    lines += QLatin1Char('\n');
    if (head.kind != FeeReport::Case && head.kind != FeeReport::Receivables) {
        lines += QStringLiteral("TOTAL = ") + QString::number(totals.rows) + QLatin1Char('\n');
    }
    if (head.kind != FeeReport::Receivables) {
        lines += QStringLiteral("TOTAL FEES: ") + moneyText(totals.charged) + QLatin1Char('\n');
        lines += QStringLiteral("TOTAL PAID: ") + moneyText(totals.paid) + QLatin1Char('\n');
    }
    lines += QStringLiteral("*TOTAL DUE: ") + moneyText(totals.balance) + QLatin1Char('\n');    if (!credits.isEmpty()) {
        lines += QStringLiteral("\nCREDITS (PAID OVER THE CHARGE)\n") + credits + QStringLiteral("TOTAL CREDITS: ")
            + moneyText(-credited) + QLatin1Char('\n');
    }
    listing.append(lines);
    return totals;
}

QString feesTitle(const QString& project, const QString& caseNumber)
{
    return QStringLiteral("FEES FOR PROJECT ") + project + QLatin1Char('(') + caseNumber + QLatin1Char(')');
}

QString feesByMonthQuery(const QString& caseNumber, int month, int year)
{
    // By the date each fee was entered: a fee not paid yet has no month of
    // payment, and it is what the office has to collect.
    const QDate from = month > 0 ? QDate(year, month, 1) : QDate(year, 1, 1);
    const QDate to = month > 0 ? from.addMonths(1) : from.addYears(1);
    auto dateText = [](const QDate& date) { return date.toString(QStringLiteral("MM/dd/yyyy")); };
    QString query = QStringLiteral("Select * from PBFEES WHERE ");
    if (!caseNumber.isNull()) {
        query += QStringLiteral("PBFCASE = ") + store::quotedText(caseNumber) + QStringLiteral(" and ");
    }
    return query + QStringLiteral("[PBFFILEDATE] >= #") + dateText(from) + QStringLiteral("# and [PBFFILEDATE] < #")
        + dateText(to) + QStringLiteral("# order by SEQ");
}

} // namespace pvardo::subrecords
