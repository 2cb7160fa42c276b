#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace pvardo::cli {

// A list of addressees in CSV (UTF-8, a header line): the columns headed
// "name" and "address" (any case), or the first two columns when the header
// names neither. The city, state and ZIP may stand in the address behind its
// last comma, or in columns of their own: "city", "state" and "zip" (or "zip
// code"), or one column "city state zip"; blanks, underscores, commas and
// slashes in a heading count alike. Other columns are passed over.
struct AddressRow
{
    int line = 0; // the line the row begins on
    QString name;
    QString address;
    // From the city, state and ZIP columns, joined by blanks; empty when the
    // list has none or the row leaves them blank.
    QString cityLine;
};

struct AddressProblem
{
    int line = 0;
    QString reason;
};

struct AddressList
{
    QList<AddressRow> rows;
    bool cityColumns = false; // the city line comes from columns of its own
    QList<AddressProblem> problems; // rows that were skipped, and why
    QString error; // the whole list is unusable (no header, no columns)
};

// Reads the list. A row whose count of fields differs from the header's, that
// is no UTF-8 or that holds neither a name nor an address is a problem and is
// left out; blank lines are passed over.
AddressList readAddressCsv(const QByteArray& bytes);

} // namespace pvardo::cli
