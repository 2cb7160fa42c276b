#pragma once

#include <QAbstractTableModel>
#include <QString>
#include <vector>

namespace pvardo::store {
class Recordset;
}

namespace pvardo::cases {

// One line of the case list.
struct CaseListRow
{
    QString caseNumber;
    QString date; // "mm/dd/yy"
    QString project;
    QString applicant;
    QString phone;
    QString status; // the status word
    // The row cannot be read from the file (a damaged page): the line says
    // so and holds no case number, so that nothing opens another case.
    bool unreadable = false;

    // The line of the row the cursor stands on.
    static CaseListRow fromRow(const store::Recordset& row);
};

// The lines of the case list in the order of the result set: a hidden first
// column that holds the case number, then Case, Date, Project, Applicant,
// Phone and Status.
class CaseListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    enum Column { Seq, Case, Date, Project, Applicant, Phone, Status, ColumnCount };

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void setRows(std::vector<CaseListRow> rows);
    void appendRow(const CaseListRow& row);
    void replaceRow(int row, const CaseListRow& line);
    const CaseListRow& line(int row) const { return m_rows.at(static_cast<size_t>(row)); }

    static QString heading(int column);
    // What the line of an unreadable row says.
    static QString unreadableText();
    // Widths in the office's units (twips).
    static int widthTwips(int column);

private:
    std::vector<CaseListRow> m_rows;
};

} // namespace pvardo::cases
