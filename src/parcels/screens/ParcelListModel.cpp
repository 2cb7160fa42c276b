#include "parcels/screens/ParcelListModel.h"

#include "parcels/RpsFields.h"
#include "store/Recordset.h"

#include <QColor>

namespace pvardo::parcels {

namespace {

// Rows kept read; past this the cache starts again. A screenful is a few
// dozen rows, so scrolling reads each row once.
constexpr int CachedRows = 2000;

QColor markColour(ParcelMark mark)
{
    switch (mark) {
    case ParcelMark::Other:
        return QColor(0, 160, 255);
    case ParcelMark::Failed:
        return QColor(255, 200, 0);
    case ParcelMark::Complaint:
        return QColor(255, 0, 255);
    case ParcelMark::Violation:
        return QColor(255, 0, 0);
    case ParcelMark::None:
        break;
    }
    return {};
}

// East and north, or nothing when the parcel has no place on the grid (an
// older store without the columns, or zeros for unknown).
QString gridText(const QVariant& east, const QVariant& north)
{
    const double e = east.toDouble();
    const double n = north.toDouble();
    if (e == 0 && n == 0) {
        return {};
    }
    return QString::number(e, 'g', 15) + QStringLiteral(", ") + QString::number(n, 'g', 15);
}

} // namespace

QList<ParcelListModel::Column> ParcelListModel::browserColumns()
{
    // The parcel as the tax map writes it, and its grid coordinates when
    // the roll gave them.
    return {{QStringLiteral(" S-B-L "), QString(), Shows::WrittenSbl},
        {QStringLiteral(" Name "), QStringLiteral("ASSOC")},
        {QStringLiteral(" Location "), QStringLiteral("LOCN1")},
        {QStringLiteral(" Permit "), QStringLiteral("PERMIT")},
        {QStringLiteral(" Grid "), QString(), Shows::Grid}};
}

QList<ParcelListModel::Column> ParcelListModel::locatorColumns()
{
    return {{QStringLiteral(" S-B-L "), QString(), Shows::WrittenSbl},
        {QStringLiteral(" Location "), QStringLiteral("LOCN1")},
        {QStringLiteral(" Association "), QStringLiteral("ASSOC")},
        {QStringLiteral(" Permit "), QStringLiteral("PERMIT")}};
}

ParcelListModel::ParcelListModel(QList<Column> columns, QObject* parent)
    : QAbstractTableModel(parent)
    , m_columns(std::move(columns))
{
}

ParcelListModel::~ParcelListModel() = default;

void ParcelListModel::setRows(std::unique_ptr<store::Recordset> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    m_count = m_rows ? std::max(0, m_rows->RecordCount()) : 0;
    m_cache.clear();
    m_unreadableTold = false;
    endResetModel();
}

void ParcelListModel::refresh()
{
    beginResetModel();
    if (m_rows) {
        m_rows->Requery();
        m_count = std::max(0, m_rows->RecordCount());
    }
    m_cache.clear();
    m_unreadableTold = false;
    endResetModel();
}

int ParcelListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_count;
}

int ParcelListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

const ParcelListModel::RowTexts* ParcelListModel::rowTexts(int row) const
{
    if (!m_rows || row < 0 || row >= m_count) {
        return nullptr;
    }
    if (auto found = m_cache.constFind(row); found != m_cache.cend()) {
        return &found.value();
    }
    const int position = m_rows->AbsolutePosition();
    if (position < 1) {
        if (!m_rows->MoveFirst().ok()) {
            return nullptr;
        }
        if (row > 0 && !m_rows->Move(row).ok()) {
            return nullptr;
        }
    } else if (position - 1 != row && !m_rows->Move(row - (position - 1)).ok()) {
        return nullptr;
    }
    if (m_rows->Eof() || m_rows->Bof()) {
        return nullptr;
    }
    if (m_cache.size() >= CachedRows) {
        m_cache.clear();
    }
    RowTexts texts;
    if (const store::StoreStatus read = m_rows->rowStatus(); !read.ok()) {
        for (qsizetype i = 0; i < qsizetype(m_columns.size()); ++i) {
            texts.texts << (i == 0 ? unreadableText() : QString());
        }
        if (!m_unreadableTold && m_onUnreadable) {
            m_unreadableTold = true;
            m_onUnreadable(read.description);
        }
        return &m_cache.insert(row, texts).value();
    }
    const QVariant sbl = m_rows->value(m_keyField);
    texts.sbl = sbl.toString();
    for (const Column& column : m_columns) {
        switch (column.shows) {
        case Shows::WrittenSbl:
            texts.texts << (sbl.isNull() ? QStringLiteral("--") : SblParts::writtenForm(sbl.toString()));
            break;
        case Shows::Grid:
            texts.texts << gridText(
                m_rows->value(QStringLiteral("EASTCOORD")), m_rows->value(QStringLiteral("NORTHCOORD")));
            break;
        case Shows::Mailing:
            texts.texts << RpsFields::writtenZip(listText(m_rows->value(column.field)));
            break;
        case Shows::Field:
            if (column.field == QLatin1String("PERMIT")) {
                texts.texts << permitText(m_rows->value(column.field));
            } else {
                texts.texts << listText(m_rows->value(column.field));
            }
            break;
        }
    }
    texts.mark = parcelMarkOf(*m_rows);
    return &m_cache.insert(row, texts).value();
}

QString ParcelListModel::sblAt(int row) const
{
    const RowTexts* texts = rowTexts(row);
    if (!texts) {
        return {};
    }
    return texts->sbl;
}

ParcelMark ParcelListModel::markAt(int row) const
{
    const RowTexts* texts = rowTexts(row);
    return texts ? texts->mark : ParcelMark::None;
}

QVariant ParcelListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const RowTexts* texts = rowTexts(index.row());
    if (!texts) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return texts->texts.value(index.column());
    case Qt::DecorationRole:
        if (index.column() == 0) {
            // Unmarked rows keep the mark's place, so the keys line up.
            return texts->mark == ParcelMark::None ? QColor(Qt::transparent) : markColour(texts->mark);
        }
        return {};
    case Qt::ToolTipRole:
        if (index.column() == 0) {
            return texts->mark != ParcelMark::None ? QVariant(parcelMarkText(texts->mark)) : QVariant();
        }
        // A long owner or address cut by its column reads whole under the pointer.
        return texts->texts.value(index.column());
    default:
        return {};
    }
}

QVariant ParcelListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0
        && section < m_columns.size()) {
        return m_columns.at(section).heading;
    }
    return QAbstractTableModel::headerData(section, orientation, role);
}

} // namespace pvardo::parcels
