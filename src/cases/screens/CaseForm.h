#pragma once

#include "cases/CaseRecord.h"
#include "store/ColumnMap.h"

#include <QMap>
#include <QObject>
#include <QPalette>
#include <QString>

class QCheckBox;
class QComboBox;
class QLabel;
class QRadioButton;
class QWidget;

namespace pvardo::store {
class Recordset;
}

namespace pvardo::ui {
class DateInput;
}

namespace pvardo::cases {

// The inputs of the case screen, whichever tab holds them: the numbered text
// inputs Text1(n), the lists, the check boxes, the four Public/Private
// groups and the filing date. The tabs make the inputs through it; the screen
// fills them from a row, clears and locks them, and reads them back for the
// record's rules and the search.
class CaseForm : public QObject
{
    Q_OBJECT

public:
    explicit CaseForm(const store::ColumnMap& map, QObject* parent = nullptr);

    // Makes the text input Text1(number), its longest value from the map.
    QWidget* makeBox(int number, QWidget* parent, bool multiLine = false);
    // Makes a list with its placeholder and items; the text can be typed too,
    // up to the column's width.
    // Keeps a list to its own items: typing that leads to none of them is
    // refused, and a part of an item typed is completed when the clerk
    // leaves the list (or put back to "<select>" when it fits none or many).
    static void keepToItems(QComboBox* list);
    QComboBox* makeList(
        const QString& objectName, const QString& column, const QStringList& items, QWidget* parent);
    // Makes a check box stored as "1" or "0" in its column.
    QCheckBox* makeCheck(
        const QString& objectName, const QString& caption, const QString& column, QWidget* parent);
    // Makes a Public/Private pair; the column holds "1" for Private.
    QWidget* makeSource(const QString& name, const QString& column, QWidget* parent);
    ui::DateInput* makeFileDate(QWidget* parent);
    // The line beside the filing date that says, during a search, that the
    // search also looks for that date (the mark below is set).
    QLabel* makeFileDateMark(QWidget* parent);
    // The screen is in Find mode or not: the line above shows only in it.
    void setSearching(bool searching);
    // Makes the caption of an input, set right against it.
    static QLabel* makeCaption(const QString& text, QWidget* parent);
    void setVoidLabel(QLabel* label) { m_void = label; }
    // An input that is stored nowhere but locks with the others.
    void addLockable(QWidget* input) { m_lockables.append(input); }

    QWidget* box(int number) const { return m_boxes.value(number); }
    QComboBox* list(const QString& objectName) const { return m_lists.value(objectName); }

    QString boxText(int number) const;
    void setBoxText(int number, const QString& text);

    // Shows a row: each boxed column in its input (the section with its
    // subsection), the filing date, the lists, the boxes and the sources.
    void showRow(const store::Recordset& row);
    // Empties every input: lists to "<select>", boxes off, sources Public,
    // the date to today, "V  O  I  D" hidden.
    void clear();
    void setLocked(bool locked);
    // Leaves the filing date empty (a row that cannot be read has none).
    void blankFileDate();
    // Gives the text inputs and the filing date the window's colour, so that
    // a clerk who may only read sees at once that nothing can be typed.
    void setReadOnlyLook(bool readOnly);
    // The palette a text input has when nothing marks it: the program's, or
    // the read-only one.
    QPalette plainPalette() const;

    // The inputs the record's rules read.
    CaseInputs inputs() const;
    // Writes the columns the map does not carry: the lists and the boxes.
    store::StoreStatus writeOwnColumns(store::Recordset& row) const;
    // The search-by-example inputs; `fileDateMarked` is the sticky mark.
    QList<QPair<QString, QString>> searchLists() const;
    QDate fileDate() const;
    // The search carries the filing date: the mark is on and the input holds
    // a date.
    bool searchesFileDate() const;

    // Set once the clerk changes the filing date; it stays for the run, and
    // every later search starts from that date and carries it, until the
    // clerk empties the date input of a search.
    static bool fileDateMarked();
    static void clearFileDateMark(); // a new run, as in tests

private:
    const store::ColumnMap& m_map;
    QMap<int, int> m_longest;
    QMap<int, QWidget*> m_boxes;
    QMap<QString, QComboBox*> m_lists;
    QMap<QString, QString> m_listColumns;
    QMap<QString, QCheckBox*> m_checks; // by column
    QMap<QString, QRadioButton*> m_private; // by column
    QMap<QString, QRadioButton*> m_public;
    ui::DateInput* m_date = nullptr;
    QLabel* m_dateMark = nullptr;
    bool m_searching = false;
    void showDateMark();
    QString m_fileDateText;
    QLabel* m_void = nullptr;
    QList<QWidget*> m_lockables;
    bool m_filling = false;
    bool m_readOnlyLook = false;
};

} // namespace pvardo::cases
