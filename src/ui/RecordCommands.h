#pragma once

#include "ui/RecordMode.h"

#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>

namespace pvardo::ui {

class RecordNavigation;

// What the shared record commands need of the screen that runs them.
struct RecordHooks
{
    std::function<RecordMode()> mode;
    // The row shown can be read, and so changed.
    std::function<bool()> rowEditable;
    std::function<void(bool locked)> lock;
    std::function<void(RecordMode)> enterMode;
    // The screen's own Add, Save and Cancel; Add and Save leave the screen in
    // New or Edit when they refuse the record.
    std::function<void()> add;
    std::function<void()> save;
    std::function<void()> cancel;
    // The record being typed, as the question before it is lost names it
    // ("Case 12-200", "The new fee").
    std::function<QString()> describe;
};

// The record commands the case screen and the sub-record screens share:
// Edit, the void and restore questions, and the question before a record
// being typed is lost. That question is asked when the screen's window is
// closed and when the program ends (the screen registers it with ExitApp),
// so a typed change is never dropped without the clerk saying so.
class RecordCommands
{
public:
    // `nav` may be null for a screen without record moves, which then has no
    // edit().
    RecordCommands(QWidget& screen, RecordNavigation* nav, QString title, RecordHooks hooks);
    ~RecordCommands();
    RecordCommands(const RecordCommands&) = delete;
    RecordCommands& operator=(const RecordCommands&) = delete;

    // IEdit: the row shown is unlocked for changes. False, and nothing
    // changes, outside Browse or on a row the file cannot give back.
    bool edit();

    // Takes what the inputs hold now as the record's own values; what is
    // typed after this is a change. A screen calls it once a new record's
    // inputs are cleared and filled with their proposals.
    void watchInputs();
    // The part of the screen whose inputs hold the record; the whole screen
    // unless set.
    void setInputsArea(QWidget* area) { m_area = area; }
    // New or Edit with inputs that differ from what watchInputs() saw.
    bool hasUnsavedChange() const;

    // Before the screen or the program ends: a record typed and not written
    // is saved (Yes), dropped (No) or kept on screen (Cancel). True when the
    // screen may end: nothing was typed, or it was saved or dropped. A save
    // the screen refuses keeps it, with the screen's own message.
    bool settleUnsaved();

    // Asks before a record is voided or, when `restoring`, made active
    // again; true on Yes.
    static bool confirmVoid(bool restoring);

private:
    QStringList inputValues() const;

    QWidget& m_screen;
    RecordNavigation* m_nav = nullptr;
    QPointer<QWidget> m_area;
    QString m_title;
    RecordHooks m_hooks;
    QStringList m_watched;
    int m_exitQuestion = 0;
};

// The hidden hard delete of a record screen. Control+U brings the button into
// view for an administrator, for the record shown: showing another record,
// starting to type one, or closing the screen puts it out of sight again, so
// the key grants one deliberate delete and never a standing one.
class HiddenDelete
{
public:
    // Hides the button and makes Control+U on `screen` reveal it.
    void attach(QWidget& screen, QWidget* button);
    // The logged-on user is an administrator, for whom the key works.
    static bool allowed();
    void reveal();
    void conceal();
    bool revealed() const;

private:
    QPointer<QWidget> m_button;
};

} // namespace pvardo::ui
