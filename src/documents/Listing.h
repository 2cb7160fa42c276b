#pragma once

#include <QList>
#include <QString>
#include <QTextCharFormat>
#include <QTextFormat>

#include <functional>

class QTextDocument;

namespace pvardo::store {
class Recordset;
}

namespace pvardo::documents {

// One column of a listing's body: a column of the record cut or filled to a
// width of characters. Money columns are right-aligned to the width and print
// "--" when empty; dates come as "mm/dd/yyyy", times as "hh:mm AMPM".
struct ListingColumn {
    QString name;
    int width = 0;
    bool money = false;
};

// A listing built in the report buffer: the words of a head file, then one
// line of fixed-width columns per record, all in a fixed-pitch face so that
// the columns line up on paper.
class Listing
{
public:
    // Empties `report` and sets its face ("Courier New") and size.
    Listing(QTextDocument& report, double fontSize);

    // Appends text in the listing's face; an empty text does nothing.
    void append(const QString& text);

    // Appends the plain text of a head file and a line break: a head file
    // gives words, not fonts. False when the file could not be read as RTF;
    // nothing is appended then.
    bool appendHeadFile(const QString& path);

    // One record's line (without its line break).
    static QString rowText(const store::Recordset& row, const QList<ListingColumn>& columns);

    // Appends a line for every record of `rows` from the first on, whatever
    // their number. `keep` chooses the records to print (all when empty);
    // `progress` hears of each record read. Gives the number of lines
    // appended. The cursor is left after the last record.
    int appendRows(store::Recordset& rows, const QList<ListingColumn>& columns,
                   const std::function<bool(const store::Recordset&)>& keep = {},
                   const std::function<void(int)>& progress = {});

    QTextDocument& report() { return m_report; }

private:
    QTextDocument& m_report;
    QTextCharFormat m_format;
};

// The face listings are laid out in.
inline QString listingFontFamily() { return QStringLiteral("Courier New"); }

// The characters of a listing carry this mark in their format, so the print
// path knows a listing from a letter loaded into the same buffer later.
constexpr int listingMarkProperty = QTextFormat::UserProperty + 5;

// The document was built as a listing (its first character carries the mark).
bool isListing(const QTextDocument& document);

// The longest line of a document, in characters.
int widestLine(const QTextDocument& document);

// How a listing is set on paper. A row of a listing is never broken in two:
// a credit's "-" on one line and its amount on the next reads as money due.
struct ListingPaper {
    double fontSize = 10;
    bool landscape = false;
};

// The one rule for every listing: its widest line of `characters` must fit
// between the margins. The listing's own size on portrait paper when it fits;
// smaller on portrait down to smallestPortraitListingSize; otherwise landscape
// at the listing's size or, when even that is too wide, the largest size that
// fits, however small. `characterWidth` is the width of one character at one
// point of size; the widths between the margins are in the same unit.
ListingPaper fitListing(int characters, double fontSize, double characterWidth, double portraitWidth,
                        double landscapeWidth);

constexpr double smallestPortraitListingSize = 8;

} // namespace pvardo::documents
