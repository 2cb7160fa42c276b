#pragma once

#include "store/Recordset.h"
#include "subrecords/Money.h"

#include <QDate>
#include <QString>

class QTextDocument;

namespace pvardo::subrecords {

// The running sums of the fees list and listings, in cents. A voided row adds
// nothing.
struct FeeTotals {
    Cents charged = 0;
    Cents paid = 0;
    Cents balance = 0;
    int rows = 0; // rows added, voided ones left out

    void add(const store::Recordset& row);
};

bool isVoidedFee(const store::Recordset& row);

// The foot line under the fees list: "  Grand Total $1.00   $0.50        Bal Due $0.50".
QString grandTotalLine(const FeeTotals& totals);

// The columns a fee row writes itself, besides its inputs: the case, status
// "A" (so that saving a voided row restores it), the three dates, the month
// and year texts of the paid and due dates, the project name and the stamps.
struct FeeFixedValues {
    QString ownerCase;
    QString projectName;
    QDate fileDate;
    QDate paidDate;
    QDate dueDate;
    QString payMethod;
    QString user;
};
store::StoreStatus writeFeeFixedColumns(store::Recordset& row, const FeeFixedValues& values);

// The fee reports, which share one builder.
enum class FeeReport {
    Case,        // the listing of one case
    CaseMonths,  // a month or year of one case
    AllCases,    // a month or year of every case
    Receivables, // every row with a balance
};

struct FeeReportHead {
    FeeReport kind = FeeReport::Case;
    QString title;    // "%sh": "FEES FOR PROJECT ..." and the like
    QString headPath; // feeshead.rtf
    QString emptyLine; // the line when no row is listed (the case listing's)
    double fontSize = 10;
};

// Builds a fee report in `report` from every row of `rows`: the head file,
// one fixed-width line per row that is not voided, and the foot with the
// totals. Gives the totals.
FeeTotals buildFeeReport(QTextDocument& report, store::Recordset& rows, const FeeReportHead& head);

// The title of a case's fees: "FEES FOR PROJECT " + project + "(" + case + ")".
QString feesTitle(const QString& project, const QString& caseNumber);

// The month and year queries of the fee reports, over the fees entered in
// the month (month 0: the year), paid or not.
QString feesByMonthQuery(const QString& caseNumber, int month, int year);

} // namespace pvardo::subrecords
