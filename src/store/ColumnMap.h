#pragma once

#include "store/Catalogue.h"
#include "store/Recordset.h"

#include <QString>

#include <array>
#include <functional>

namespace pvardo::store {

// The descriptor of the table of the screen in front: for each place from 1 on
// the column name, the entry box that shows it and its longest value. A screen
// fills it each time it comes to the front; the walks below use it to fill the
// boxes from a row and a row from the boxes.
class ColumnMap
{
public:
    static constexpr int MaxPlaces = 200;
    static constexpr int NoLimit = 65535;

    struct Place {
        QString name;
        int box = 0;
        int longest = 0;
    };

    // Fills the map for one of the eleven tables that have one. Places past the
    // new count keep what they held and are not walked.
    void fill(Table table);

    int count() const { return m_count; }
    // Place 1 to count().
    const Place& place(int index) const { return m_places.at(static_cast<size_t>(index)); }

    // Cuts a text from an entry box to the longest value of its place: the
    // whole text for 0 or 65535.
    static QString cut(const QString& text, int longest);

private:
    std::array<Place, MaxPlaces + 1> m_places{};
    int m_count = 0;
};

// Access to a screen's entry boxes by index, without the screen.
using BoxReader = std::function<QString(int box)>;
using BoxWriter = std::function<void(int box, const QString& text)>;

// Puts each boxed column's value, a null read as empty, into its box.
void getdata(const ColumnMap& map, const Recordset& rows, const BoxWriter& setBox);

// Writes each boxed column from its box, trimmed and cut to its longest value;
// columns without a box are the screen's own. Does not stamp or write the row.
StoreStatus movefieldsintodb(const ColumnMap& map, Recordset& rows, const BoxReader& box);

// Sets the two stamps every write of a screen ends with: BYUSER, the first 18
// characters of the user, and TSTAMP, now.
StoreStatus stampRow(Recordset& rows, const QString& currentUser);

// True when the cursor stands on an empty result (before the first and after
// the last row at once).
bool dbisempty(const Recordset& rows);

} // namespace pvardo::store
