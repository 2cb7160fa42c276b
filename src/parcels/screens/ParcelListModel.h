#pragma once

#include "parcels/ParcelSearch.h"
#include "parcels/SblParts.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QStringList>
#include <functional>
#include <memory>

namespace pvardo::store {
class Recordset;
}

namespace pvardo::parcels {

// A list of parcels read straight from a cursor: a row of the list is read
// from the store only when the view shows it, so a store of any size opens
// at once. The first column holds SBLF and carries the parcel's flag mark.
class ParcelListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    // What a column shows: a column of the row, the parcel number as a
    // clerk writes it, the grid coordinates, or a mailing address with its
    // ZIP+4 written out.
    enum class Shows { Field, WrittenSbl, Grid, Mailing };
    struct Column
    {
        QString heading;
        QString field; // for Shows::Field
        Shows shows = Shows::Field;
    };
    // The browser's columns, and those of the two locators.
    static QList<Column> browserColumns();
    static QList<Column> locatorColumns();

    explicit ParcelListModel(QList<Column> columns, QObject* parent = nullptr);
    ~ParcelListModel() override;

    // Shows the rows of a cursor, which the model keeps; nullptr empties the list.
    void setRows(std::unique_ptr<store::Recordset> rows);

    // A row a damaged file cannot give back is listed as such, never as a
    // parcel with blank values; the first one of a listing is told here with
    // the store's description, so the screen can say it once.
    static QString unreadableText() { return QStringLiteral("(cannot be read)"); }
    void setUnreadableHandler(std::function<void(const QString& description)> handler)
    {
        m_onUnreadable = std::move(handler);
    }
    store::Recordset* rows() const { return m_rows.get(); }

    // The column that holds a row's full form: SBLF in the parcel store,
    // RSBLF in the roll.
    void setKeyField(const QString& field) { m_keyField = field; }
    // The full form of a row, "" outside the list.
    QString sblAt(int row) const;
    ParcelMark markAt(int row) const;
    // Reads the rows again from the store, keeping the query.
    void refresh();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::function<void(const QString&)> m_onUnreadable;
    mutable bool m_unreadableTold = false;

    struct RowTexts
    {
        QString sbl;
        QStringList texts;
        ParcelMark mark = ParcelMark::None;
    };
    const RowTexts* rowTexts(int row) const;

    QList<Column> m_columns;
    QString m_keyField = QStringLiteral("SBLF");
    std::unique_ptr<store::Recordset> m_rows;
    int m_count = 0;
    mutable QHash<int, RowTexts> m_cache;
};

} // namespace pvardo::parcels
