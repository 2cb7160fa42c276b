#include "cases/screens/CaseListView.h"

#include "cases/CaseStatus.h"
#include "cases/screens/CaseListModel.h"
#include "store/Recordset.h"
#include "ui/TaskFrm.h"

#include <QHeaderView>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <QVBoxLayout>

namespace pvardo::cases {

namespace {
constexpr int TwipsPerPixel = 15;
}

CaseListView::CaseListView(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("fraList"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_model = new CaseListModel(this);
    m_proxy = new QSortFilterProxyModel(this);
    m_proxy->setSourceModel(m_model);
    m_proxy->setSortCaseSensitivity(Qt::CaseInsensitive);
    m_view = new QTreeView(this);
    m_view->setObjectName(QStringLiteral("ListView1"));
    m_view->setModel(m_proxy);
    m_view->setRootIsDecorated(false);
    m_view->setUniformRowHeights(true);
    m_view->setAlternatingRowColors(true);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setSortingEnabled(false);
    QHeaderView* header = m_view->header();
    header->setSectionsClickable(true);
    header->setStretchLastSection(false);
    header->setMinimumSectionSize(1);
    for (int column = 0; column < CaseListModel::ColumnCount; ++column) {
        m_view->setColumnWidth(column, std::max(1, CaseListModel::widthTwips(column) / TwipsPerPixel));
    }
    // The status words are never cut ("Initial Application" is the longest).
    int statusWidth = m_view->fontMetrics().horizontalAdvance(CaseListModel::heading(CaseListModel::Status));
    for (const QString& word : CaseStatus::statusListTexts()) {
        statusWidth = std::max(statusWidth, m_view->fontMetrics().horizontalAdvance(word));
    }
    m_view->setColumnWidth(CaseListModel::Status,
        std::max(m_view->columnWidth(CaseListModel::Status), statusWidth + 2 * m_view->fontMetrics().averageCharWidth() + 8));
    // The project's name is the longest text: it takes whatever width the
    // other columns leave, so it is not cut while the list has room.
    header->setSectionResizeMode(CaseListModel::Project, QHeaderView::Stretch);
    layout->addWidget(m_view);
    connect(header, &QHeaderView::sectionClicked, this, &CaseListView::sortBy);
    auto pick = [this](const QModelIndex& index) {
        if (index.isValid()) {
            emit picked(m_proxy->index(index.row(), CaseListModel::Seq).data().toString());
        }
    };
    connect(m_view, &QTreeView::clicked, this, pick);
    connect(m_view, &QTreeView::activated, this, pick);
    connect(m_view, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) {
        if (index.isValid()) {
            emit opened(m_proxy->index(index.row(), CaseListModel::Seq).data().toString());
        }
    });
}

int CaseListView::lineCount() const
{
    return m_model->rowCount();
}

void CaseListView::fill(store::Recordset& rows)
{
    ui::TaskFrm::open(QStringLiteral("Reading database.."));
    const store::Bookmark mark = rows.bookmark();
    const bool hadRow = !rows.Bof() && !rows.Eof();
    std::vector<CaseListRow> lines;
    const int count = rows.RecordCount();
    lines.reserve(static_cast<size_t>(std::max(0, count)));
    ui::TaskFrm::setRange(count);
    if (count > 0) {
        rows.MoveFirst();
        int done = 0;
        while (!rows.Eof()) {
            lines.push_back(CaseListRow::fromRow(rows));
            if ((++done & 255) == 0) {
                ui::TaskFrm::step(done);
            }
            if (!rows.MoveNext().ok()) {
                break;
            }
        }
    }
    restoreOrder();
    m_model->setRows(std::move(lines));
    if (hadRow) {
        rows.setBookmark(mark);
    }
    ui::TaskFrm::close();
}

void CaseListView::appendRow(const CaseListRow& row)
{
    m_model->appendRow(row);
}

void CaseListView::replaceRow(int position, const CaseListRow& row)
{
    m_model->replaceRow(position - 1, row);
}

void CaseListView::showPosition(int position)
{
    if (position < 1 || position > m_model->rowCount()) {
        return;
    }
    const QModelIndex index = m_proxy->mapFromSource(m_model->index(position - 1, CaseListModel::Case));
    m_view->setCurrentIndex(index);
    m_view->scrollTo(index);
}

void CaseListView::sortBy(int column)
{
    m_columnSort = !m_columnSort;
    m_proxy->sort(column, m_columnSort ? Qt::AscendingOrder : Qt::DescendingOrder);
    m_view->header()->setSortIndicatorShown(true);
    m_view->header()->setSortIndicator(column, m_columnSort ? Qt::AscendingOrder : Qt::DescendingOrder);
    m_sorted = true;
    emit sorted();
}

void CaseListView::restoreOrder()
{
    m_proxy->sort(-1);
    m_view->header()->setSortIndicatorShown(false);
    m_sorted = false;
}

} // namespace pvardo::cases
