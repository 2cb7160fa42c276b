#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace pvardo::cli {

// A list of addressees in CSV (UTF-8, a header line): the columns headed
// "name" and "address" (any case), or the first two columns when the header
// names neither.
struct AddressRow
{
    int line = 0; // the line the row begins on
    QString name;
    QString address;
};

struct AddressProblem
{
    int line = 0;
    QString reason;
};

struct AddressList
{
    QList<AddressRow> rows;
    QList<AddressProblem> problems; // rows that were skipped, and why
    QString error; // the whole list is unusable (no header, no columns)
};

// Reads the list. A row whose count of fields differs from the header's, that
// is no UTF-8 or that holds neither a name nor an address is a problem and is
// left out; blank lines are passed over.
AddressList readAddressCsv(const QByteArray& bytes);

} // namespace pvardo::cli
