#pragma once

#include "documents/PrintState.h"

#include <QDate>
#include <QList>
#include <QString>

#include <functional>

class QTextDocument;

namespace pvardo::store {
class Recordset;
}

namespace pvardo::cases {

// The listings of the case screen's Reports menu: their queries, titles,
// heading files and lines, and the one frame that writes any of them.

// "Application by Month": the cases filed in a month (0: the whole year) of
// a year, of which the last two digits are compared, in filing order.
QString applicationsByMonthQuery(int month, int year);
QString applicationsByMonthTitle(int month, int year);

// "Report of Project Status..": the cases filed from `start` through `end`,
// both days included, of one permit type (the case's type) or, empty, of any.
QString projectStatusQuery(const QDate& start, const QDate& end, const QString& permitType);
QString projectStatusTitle(const QDate& start, const QDate& end);

// "Report of Active Application": every case pending, initial or on
// appeal, whenever filed, under a title that says so.
QString activeApplicationsQuery();
QString activeApplicationsTitle(const QDate& today);

// The owners of the rows that are not voided, each with the address split
// into its street and city lines, for a run of mailing labels.
QList<documents::Addressee> caseOwners(store::Recordset& rows);

// The heading files in the forms folder.
inline QString applicationsHead() { return QStringLiteral("apphead.rtf"); }
inline QString statusHead() { return QStringLiteral("exphead.rtf"); }

// A case of the month listing, three lines: number (12), filing date (12),
// description or "--" (30), two blanks and the status word; the S-B-L (25),
// applicant (26) and site (26); 77 hyphens.
QString applicationLines(const store::Recordset& caseRow);
// A case of the status and active listings, one line: number (13), S-B-L
// (20), filing date (20), status word (20), owner (33), site (45).
QString statusLine(const store::Recordset& caseRow);

struct CaseReportHead {
    QString title;    // "%sh"
    QString headPath; // the heading file
    double fontSize = 10;
};

// Writes a listing into `report`: the heading file with the title put in,
// the lines of every case that is not voided, then "TOTAL = " and their
// number. `progress` hears of each row read. Gives the number listed.
int buildCaseReport(QTextDocument& report, store::Recordset& rows, const CaseReportHead& head,
                    const std::function<QString(const store::Recordset&)>& lines,
                    const std::function<void(int)>& progress = {});

} // namespace pvardo::cases
