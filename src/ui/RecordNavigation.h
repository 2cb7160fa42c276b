#pragma once

#include "store/ColumnMap.h"
#include "store/Recordset.h"

#include <QHash>
#include <QString>

#include <memory>

class QWidget;

namespace pvardo::ui {

class XPButton;

// The record moves of a screen over its rows, shared by the case screen and
// the sub-record screens: the steps that stay on the first or last row, the
// position line, the move buttons, the remembered place of an edit and the
// record information of the row shown. It reads the screen's rows where the
// screen keeps them, so a screen that reads its rows again needs nothing more.
class RecordNavigation
{
public:
    explicit RecordNavigation(const std::unique_ptr<store::Recordset>& rows)
        : m_rows(rows)
    {
    }

    enum class Step { First, Previous, Next, Last };

    // The rows stand on a row.
    bool hasRow() const;
    // Steps; at the beginning or end of the rows stays on the first or last.
    // False, and nothing moves, without a row.
    bool move(Step step);
    // The row's place from 1, and the number of rows; 0 without rows.
    int position() const;
    int count() const;

    // "Record 3 of 10", with " cannot be read" for an unreadable row; "enter
    // data" while a new row is typed; "empty database" without rows.
    QString positionText(bool entering, bool unreadable = false) const;
    // First and previous on from the second row, next and last up to the one
    // before the last, all off unless `moving`. The buttons are found by
    // their names IMoveFirst, IMovePrev, IMoveNext and IMoveLast.
    void enableMoves(const QHash<QString, XPButton*>& buttons, bool moving) const;

    // The place to come back to when an edit or a new row is cancelled.
    void remember();
    // Back to the remembered row, or the first when it is gone.
    void returnToRemembered();

    // The record information box of the row shown: who wrote it last and when.
    void showInfo(QWidget* parent) const;

private:
    const std::unique_ptr<store::Recordset>& m_rows;
    store::Bookmark m_mark;
    bool m_haveMark = false;
};

} // namespace pvardo::ui
