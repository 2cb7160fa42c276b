#include "store/ColumnMap.h"

#include "common/Clock.h"

#include <QDateTime>

namespace pvardo::store {

void ColumnMap::fill(Table table)
{
    const TableDef& def = tableDef(table);
    int place = 0;
    for (const ColumnDef& column : def.places) {
        if (++place > MaxPlaces) {
            break;
        }
        Place& entry = m_places[static_cast<size_t>(place)];
        entry.name = QString::fromLatin1(column.name);
        entry.box = column.box;
        entry.longest = column.longest == 0 ? NoLimit : column.longest;
    }
    m_count = place;
}

QString ColumnMap::cut(const QString& text, int longest)
{
    if (longest == 0 || longest == NoLimit) {
        return text;
    }
    return text.left(longest);
}

void getdata(const ColumnMap& map, const Recordset& rows, const BoxWriter& setBox)
{
    for (int place = 1; place <= map.count(); ++place) {
        const ColumnMap::Place& entry = map.place(place);
        if (entry.box > 0) {
            setBox(entry.box, rows.text(entry.name));
        }
    }
}

StoreStatus movefieldsintodb(const ColumnMap& map, Recordset& rows, const BoxReader& box)
{
    for (int place = 1; place <= map.count(); ++place) {
        const ColumnMap::Place& entry = map.place(place);
        if (entry.box <= 0) {
            continue;
        }
        const QString text = ColumnMap::cut(box(entry.box).trimmed(), entry.longest);
        StoreStatus status = rows.setValue(entry.name, text);
        if (!status.ok()) {
            return status;
        }
    }
    return StoreStatus::success();
}

StoreStatus stampRow(Recordset& rows, const QString& currentUser)
{
    StoreStatus status = rows.setValue(QStringLiteral("BYUSER"), currentUser.left(18));
    if (!status.ok()) {
        return status;
    }
    return rows.setValue(QStringLiteral("TSTAMP"), presentTime());
}

bool dbisempty(const Recordset& rows)
{
    return rows.Bof() && rows.Eof();
}

} // namespace pvardo::store
