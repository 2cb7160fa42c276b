#pragma once

#include <QWidget>

class QSortFilterProxyModel;
class QTreeView;

namespace pvardo::store {
class Recordset;
}

namespace pvardo::cases {

class CaseListModel;
struct CaseListRow;

// The list of the case screen: one line per case of the result set. A click
// on a heading sorts by that column, flipping between ascending and
// descending; from then on the list's order is not the result set's, which the
// screen must know (sorted()).
class CaseListView : public QWidget
{
    Q_OBJECT

public:
    explicit CaseListView(QWidget* parent = nullptr);

    // Reads every row of the result set into the list and returns the cursor
    // to the row it stood on. Shows TaskFrm's bar by row count.
    void fill(store::Recordset& rows);
    void appendRow(const CaseListRow& row);
    // Rewrites the line of the result set's position (1-based).
    void replaceRow(int position, const CaseListRow& row);
    // Scrolls the line of a position into view and selects it.
    void showPosition(int position);
    // Back to the order of the result set.
    void restoreOrder();
    bool isSorted() const { return m_sorted; }

    CaseListModel* model() const { return m_model; }
    QTreeView* view() const { return m_view; }
    int lineCount() const;

signals:
    // A line was picked: its case number.
    void picked(const QString& caseNumber);
    // A line was double-clicked: the case is to be shown in detail.
    void opened(const QString& caseNumber);
    void sorted();

private:
    void sortBy(int column);

    CaseListModel* m_model = nullptr;
    QSortFilterProxyModel* m_proxy = nullptr;
    QTreeView* m_view = nullptr;
    bool m_sorted = false;
    bool m_columnSort = false; // negated at each heading click: true sorts ascending
};

} // namespace pvardo::cases
