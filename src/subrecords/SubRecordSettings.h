#pragma once

#include "store/Catalogue.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace pvardo::subrecords {

// One column of a sub-record screen's list: its heading, its width in twips,
// the column it shows and whether that column is money.
struct ListColumn {
    QString heading;
    int width = 0;
    QString column;
    bool money = false;
};

// An input a write cannot go without: its box and the name the missing list
// gives it ("Description" becomes "--Description").
struct RequiredInput {
    int box = 0;
    QString name;
};

// Everything that tells one kind of sub-record from another for the shared
// frame: a new kind of record is one more of these and its own few rules.
struct SubRecordSettings {
    QString screenName;   // the screen's object name, "feesfrm"
    QString caption;      // "Fees Management"
    int screenCode = 0;   // its entry in the session's shared arrays
    QString databaseFile; // the office's name of its file, "\\pbfees.mdb"
    store::Table table = store::Table::PBFEES;
    QString keyColumn;    // the case key, "PBFCASE"
    QString libraryCode;  // first two characters of its library files, "03"
    QString statusColumn; // "V" marks a voided row
    QString descriptionColumn; // what the list prefixes with "** VOIDED ** "
    QList<ListColumn> listColumns; // after the hidden SEQ
    QList<RequiredInput> required;  // in the order they are checked
    QStringList reportTypes;        // the print dialog's own entries

    QString tableName() const { return QString::fromLatin1(store::tableDef(table).tableName); }
    // The screen's query over the rows of one case: the case joined in as it
    // stands, as the office's screens always built it.
    QString fullQuery(const QString& caseNumber) const;
};

// The settings of the fees screen.
const SubRecordSettings& feesSettings();

} // namespace pvardo::subrecords
