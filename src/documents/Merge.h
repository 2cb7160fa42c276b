#pragma once

#include "documents/PrintState.h"
#include "store/Catalogue.h"

#include <QList>
#include <QString>

#include <functional>
#include <span>

class QTextDocument;

namespace pvardo::store {
class Recordset;
}

namespace pvardo::documents {

// The merge of a letter: a template loaded into a rich-text buffer, and its
// placeholders replaced by the data of the case or sub-record on the screen.
// A placeholder is plain text, so the vocabularies below are the whole
// template language: fixed words ("%dl"), columns ("%PBCASE"), columns with
// a form given by the second character ("%$PBCOST", "%@PBFILEDATE",
// "%&PBFILEDATE", "%~MTIME") and the numbered slots ("%01", "%$01").

// The screen codes that name the screens which print.
namespace ScreenCodes {
constexpr int Case = 0;
constexpr int Dashboard = 1;
constexpr int Fees = 3;
constexpr int Meetings = 4;
constexpr int Agencies = 5;
constexpr int Bonds = 7;
constexpr int Actions = 8;
constexpr int Maps = 9;
constexpr int Wetlands = 11;
constexpr int Issues = 12;
constexpr int Reviews = 13;
constexpr int Surrounding = 14;
} // namespace ScreenCodes

// The name and the address of the contact made into the three addressee
// lines: the city line is what stands behind the last comma (behind the one
// before it when the last part holds only a state and ZIP, as in "Delmar, NY
// 12054"), the street what stands before it. Without a comma the address is
// the street line.
Addressee SplitAddress(const QString& name, const QString& address);

// One column's value, as its placeholders put it.
struct ColumnValue {
    QString name;
    QString value;
};

// The values of a row's columns for the column placeholders, in the order of
// `places` and at most `lastPlace` of them (all when negative). A null gives
// the empty text; dates come as "mm/dd/yyyy".
QList<ColumnValue> columnValuesOf(const store::Recordset& row, std::span<const store::ColumnDef> places,
                                  int lastPlace = -1);

// Replaces "%NAME", "%$NAME", "%@NAME" and "%&NAME" of each column in the
// order given (and "%~NAME" as well with `clockForm`). A name that begins a
// later one, and comes first, takes the longer placeholder's start.
void plugColumns(QTextDocument& buffer, const QList<ColumnValue>& columns, bool clockForm = false);

// What a screen knows for the fixed words of its letters.
struct FixedWords {
    QString caseNumber; // "%proj"
    QString statusWord; // "%stat", the case screen only
    QString sbl;        // "%sbl", in display form
    QString monthName;  // "%mm", the dashboard only
    QString year;       // "%yy", the dashboard only
};

// The fixed words a screen's letters get at merge time, each screen the words
// it has: the page counter "##", "%dl", "%ds", "%tm", the main heading "%mh",
// the report heading "%sh" everywhere; the addressee "%nm", "%ad", "%zp" and
// "%sbl" from the case, fees and bonds screens; "%proj" everywhere but the
// dashboard; "%stat" from the case screen; "%mm" and "%yy" from the dashboard.
void plugFixedWords(QTextDocument& buffer, int screenCode, const FixedWords& words);

// The print-time pass, run on the body and on each footer band as they reach
// the printer: the page counter, the dates and time, the headings and
// addressee still in the text, the pictures "%pi", "%si", "%lo", and the
// numbered slots, which vanish when no screen filled them.
void ExpandPrintTokens(QTextDocument& buffer);
// Its pictures alone, so that a window shows a letter as it will print.
void ExpandPictureTokens(QTextDocument& buffer);

// Each screen that prints registers its PlugVars: the operation that fills
// all the screen knows into a letter. The merge runs the screen's, then always
// the case screen's, so a letter from any screen is addressed to the case.
using PlugVarsFunction = std::function<void(QTextDocument&)>;
void registerPlugVars(int screenCode, PlugVarsFunction plugVars);
void unregisterPlugVars(int screenCode);
// Runs the PlugVars that `screenCode` selects, then the case screen's. Codes
// of screens that have none (2, 6, 10, 15, 16) run the case screen's alone.
void runPlugVars(int screenCode, QTextDocument& buffer);

// Where a letter is addressed: the case screen gives its contact's name and
// address. Without a case screen both are empty.
using ContactFunction = std::function<std::pair<QString, QString>()>;
void registerLetterContact(ContactFunction contact);
void unregisterLetterContact();

// The message when a form file is missing or no RTF file.
QString formFileMessage(const QString& path, int screenCode);
inline QString formFileMessageTitle() { return QStringLiteral(" Error Loading"); }

// A template file loaded into a buffer, or why not.
struct FormLoad {
    bool ok = false;
    QString path;
    QString message; // the message for the user when not ok
    // The template names its addressee ("%nm", "%ad", "%zp") and the party it
    // goes to has no name: no letter was made.
    bool noAddressee = false;
};

// True when the text of `buffer` holds "%nm", "%ad" or "%zp", in any case.
bool namesAddressee(const QTextDocument& buffer);

// The message when a letter that names its addressee goes to a party without
// a name: `party` is the word for it ("contact", "applicant").
QString noAddresseeMessage(const QString& caseNumber, const QString& party);
inline QString noAddresseeTitle() { return QStringLiteral(" No Addressee"); }

// Loads `path` into `buffer`, replacing what it held.
FormLoad loadFormFile(QTextDocument& buffer, const QString& path, int screenCode);

// The merge of a custom letter: loads `fileName` (relative to the forms
// folder) into `buffer`, addresses it to the case's contact and runs the
// PlugVars of `screenCode`, then of the case; the report heading is cleared.
// A letter that names its addressee is not made for a case without a
// contact (noAddressee).
FormLoad mergeFormFile(QTextDocument& buffer, const QString& fileName, int screenCode);

// The same with a template of the caller's and a given addressee, as the
// detail pages take the applicant; `party` names the addressee's role in the
// message when it has no name.
// A detail page (`lines` DropEmpty) loses each line whose placeholders all
// came out empty, label and all, so that a case without an agent prints no
// "Agent" line with nothing behind it.
enum class EmptyLines { Keep, DropEmpty };
FormLoad mergeTemplate(QTextDocument& buffer, const QString& path, int screenCode, const Addressee& addressee,
                       const QString& party = QString(), EmptyLines lines = EmptyLines::Keep);

// The label and notice template of the print state's template name, loaded
// from the program folder's "labels" ("lab..." names) or "forms" folder.
struct MemoForm {
    enum class Kind { Nothing, Roster, Loaded, DefaultLabel, Missing } kind = Kind::Nothing;
    QString path;
    QString message; // for Missing
};
MemoForm DoMemoForm(QTextDocument& buffer, const QString& templateName, const QString& programFolder);

// The default label when "lab.rtf" is missing: name, street and city lines in
// 10-point Arial and an empty line.
QByteArray defaultLabelRtf();

} // namespace pvardo::documents
