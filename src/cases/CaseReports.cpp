#include "cases/CaseReports.h"

#include "cases/CaseStatus.h"
#include "common/DateText.h"
#include "common/Session.h"
#include "documents/Listing.h"
#include "documents/Merge.h"
#include "documents/PrintState.h"
#include "parcels/SblParts.h"
#include "store/Recordset.h"
#include "store/SqlSubset.h"

namespace pvardo::cases {

namespace {

QString shortDate(const QDate& date)
{
    return date.toString(QStringLiteral("MM/dd/yy"));
}

QString column(const store::Recordset& row, const char* name)
{
    return row.text(QString::fromLatin1(name)).trimmed();
}

QString sblOf(const store::Recordset& row)
{
    parcels::SblParts parts;
    return parts.mysbl2SBL(parcels::SblParts::currentSBL(row));
}

QString statusWordOf(const store::Recordset& row)
{
    return CaseStatus::statusVerbose(column(row, "PBSTATUS"));
}

} // namespace

QString applicationsByMonthQuery(int month, int year)
{
    const QString yy = QString::number(year % 100);
    if (month < 1) {
        return QStringLiteral("Select * from PBPROJ where [FILEYEAR] = ") + yy + QStringLiteral(" order by [FILEDATE]");
    }
    return QStringLiteral("Select * from PBPROJ where [FILEMONTH] = ") + QString::number(month)
        + QStringLiteral(" and [FILEYEAR] = ") + yy + QStringLiteral(" order by [FILEDATE]");
}

QString applicationsByMonthTitle(int month, int year)
{
    QString when = QString::number(year);
    if (month >= 1 && month <= 12) {
        when = session().MonthNames.at(size_t(month)) + QLatin1Char(' ') + when;
    }
    return QStringLiteral("PLANNING BOARD APPLICATIONS FOR ") + when.toUpper();
}

QString projectStatusQuery(const QDate& start, const QDate& end, const QString& permitType)
{
    // A span from a start date to an end date holds both days.
    QString query = QStringLiteral("Select * from PBPROJ where [PBFILEDATE] >= #") + shortDate(start)
        + QStringLiteral("# and [PBFILEDATE] <= #") + shortDate(end) + QStringLiteral("# ");
    if (const QString type = permitType.trimmed(); !type.isEmpty()) {
        // The case screen files the permit type as the case's type; a type
        // set from outside the screen is still found.
        const QString quoted = store::quotedText(type);
        query += QStringLiteral(" and ([PBTYPE] = ") + quoted + QStringLiteral(" or [PRMFOR] = ") + quoted
            + QStringLiteral(") ");
    }
    return query + QStringLiteral(" order by [PBFILEDATE]");
}

QString projectStatusTitle(const QDate& start, const QDate& end)
{
    return QStringLiteral("CASES STATUS FROM ") + shortDate(start) + QStringLiteral(" THROUGH ") + shortDate(end);
}

QString activeApplicationsQuery()
{
    return QStringLiteral("Select * from PBPROJ where [PBSTATUS] = 'P' or [PBSTATUS] = 'I' or [PBSTATUS] = 'O'")
        + QStringLiteral(" order by [PBFILEDATE]");
}

QString activeApplicationsTitle(const QDate& today)
{
    // Every case still open is listed, whenever it was filed.
    return QStringLiteral("ACTIVE CASES (PENDING, INITIAL APPLICATION, ON APPEAL) AS OF ") + shortDate(today);
}

QList<documents::Addressee> caseOwners(store::Recordset& rows)
{
    QList<documents::Addressee> owners;
    if (rows.RecordCount() <= 0) {
        return owners;
    }
    for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) {
        if (!CaseStatus::isVoided(rows)) {
            owners << documents::SplitAddress(column(rows, "PBOWNRNAME1"), column(rows, "PBOWNRADDR1"));
        }
    }
    return owners;
}

QString applicationLines(const store::Recordset& row)
{
    const QString filed = FixDateText(column(row, "FILEMONTH") + QLatin1Char('/') + column(row, "FILEDATE")
                                      + QLatin1Char('/') + column(row, "FILEYEAR").right(2));
    QString description = column(row, "PBPROJDESC");
    if (description.isEmpty()) {
        description = QStringLiteral("--");
    }
    return PadColumn(column(row, "PBCASE"), 12) + PadColumn(filed, 12) + PadWordsColumn(description, 30)
        + QStringLiteral("  ") + statusWordOf(row) + QLatin1Char('\n') + PadColumn(sblOf(row), 25)
        + PadColumn(column(row, "PBAPPNAME1"), 26) + PadColumn(column(row, "PBLOCN1"), 26) + QLatin1Char('\n')
        + QString(77, QLatin1Char('-')) + QLatin1Char('\n');
}

QString statusLine(const store::Recordset& row)
{
    const QDate filed = row.value(QStringLiteral("PBFILEDATE")).toDate();
    return PadColumn(column(row, "PBCASE"), 13) + PadColumn(sblOf(row), 20)
        + PadColumn(filed.isValid() ? filed.toString(QStringLiteral("MM/dd/yyyy")) : QString(), 20)
        + PadColumn(statusWordOf(row), 20) + PadColumn(column(row, "PBOWNRNAME1"), 33)
        + PadColumn(column(row, "PBLOCN1"), 45) + QLatin1Char('\n');
}

int buildCaseReport(QTextDocument& report, store::Recordset& rows, const CaseReportHead& head,
                    const std::function<QString(const store::Recordset&)>& lines,
                    const std::function<void(int)>& progress)
{
    documents::Listing listing(report, head.fontSize);
    listing.appendHeadFile(head.headPath);
    documents::printState().reportHeading = head.title;
    documents::plugFixedWords(report, documents::ScreenCodes::Case, documents::FixedWords{});
    documents::printState().reportHeading.clear();
    int written = 0;
    int read = 0;
    QString batch;
    if (rows.RecordCount() > 0) {
        for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) {
            if (progress) {
                progress(++read);
            }
            if (CaseStatus::isVoided(rows)) {
                continue;
            }
            batch += lines(rows);
            ++written;
            // The buffer takes long texts in pieces faster than line by line.
            if (batch.size() > 64 * 1024) {
                listing.append(batch);
                batch.clear();
            }
        }
    }
    listing.append(batch + QStringLiteral("TOTAL = ") + QString::number(written) + QLatin1Char('\n'));
    return written;
}

} // namespace pvardo::cases
