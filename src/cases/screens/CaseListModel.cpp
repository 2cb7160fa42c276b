#include "cases/screens/CaseListModel.h"

#include "cases/CaseStatus.h"
#include "store/Recordset.h"

#include <QColor>
#include <QDate>

namespace pvardo::cases {

CaseListRow CaseListRow::fromRow(const store::Recordset& row)
{
    CaseListRow line;
    if (!row.rowStatus().ok()) {
        line.unreadable = true;
        line.project = CaseListModel::unreadableText();
        return line;
    }
    line.caseNumber = row.text(QStringLiteral("PBCASE"));
    const QDate filed = row.value(QStringLiteral("PBFILEDATE")).toDate();
    line.date = filed.isValid() ? filed.toString(QStringLiteral("MM/dd/yy")) : QString();
    line.project = row.text(QStringLiteral("PBPROJNAME"));
    line.applicant = row.text(QStringLiteral("PBAPPNAME1"));
    line.phone = row.text(QStringLiteral("PBAPPTEL"));
    line.status = CaseStatus::statusVerbose(row.text(QStringLiteral("PBSTATUS")));
    return line;
}

int CaseListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int CaseListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant CaseListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const CaseListRow& row = m_rows.at(static_cast<size_t>(index.row()));
    if (row.unreadable && role == Qt::ForegroundRole) {
        return QColor(0xc0, 0, 0);
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    if (row.unreadable && index.column() == Case) {
        return QStringLiteral("?");
    }
    switch (index.column()) {
    case Seq:
    case Case:
        return row.caseNumber;
    case Date:
        return row.date;
    case Project:
        return row.project;
    case Applicant:
        return row.applicant;
    case Phone:
        return row.phone;
    case Status:
        return row.status;
    default:
        return {};
    }
}

QString CaseListModel::unreadableText()
{
    return QStringLiteral("(cannot be read: the case file is damaged)");
}

QString CaseListModel::heading(int column)
{
    switch (column) {
    case Seq:
        return QStringLiteral("SEQ");
    case Case:
        return QStringLiteral(" Case ");
    case Date:
        return QStringLiteral(" Date ");
    case Project:
        return QStringLiteral(" Project ");
    case Applicant:
        return QStringLiteral(" Applicant ");
    case Phone:
        return QStringLiteral(" Phone ");
    case Status:
        return QStringLiteral(" Status ");
    default:
        return {};
    }
}

int CaseListModel::widthTwips(int column)
{
    static const int widths[] = {10, 1400, 1200, 2000, 2200, 1500, 1600};
    return column >= 0 && column < ColumnCount ? widths[column] : 0;
}

QVariant CaseListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole) {
        return heading(section);
    }
    return QAbstractTableModel::headerData(section, orientation, role);
}

void CaseListModel::setRows(std::vector<CaseListRow> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

void CaseListModel::appendRow(const CaseListRow& row)
{
    const int at = rowCount();
    beginInsertRows({}, at, at);
    m_rows.push_back(row);
    endInsertRows();
}

void CaseListModel::replaceRow(int row, const CaseListRow& line)
{
    if (row < 0 || row >= rowCount()) {
        return;
    }
    m_rows[static_cast<size_t>(row)] = line;
    emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

} // namespace pvardo::cases
