#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class QAction;
class QMenu;
class QWidget;

namespace pvardo::ui {

// The modes of a record screen. Browse shows a row with the inputs locked;
// Empty is Browse over a result without rows; New and Edit unlock the inputs
// for a new or the shown row; Find unlocks them, cleared, for a search by
// example.
enum class RecordMode { Browse, Empty, New, Edit, Find };

// Locks or unlocks one input: texts become read-only (their text can still be
// selected and copied), lists, boxes and buttons are switched off.
void setInputLocked(QWidget* input, bool locked);

// Switches the commands of a record screen by mode. The screen names which of
// its buttons and menus each mode leaves on; apply() turns those on and every
// other registered command off. Commands the user's rights keep off stay off
// in every mode.
class RecordModeCommands
{
public:
    // Registers a command button; `modes` are the modes that leave it on.
    void addButton(QWidget* button, QList<RecordMode> modes);
    // Registers a menu or a menu item the same way.
    void addMenu(QMenu* menu, QList<RecordMode> modes);
    void addAction(QAction* action, QList<RecordMode> modes);
    // Keeps a registered command off whatever the mode; a button is hidden
    // too, a menu item only switched off.
    void forbid(const QString& objectName, bool forbidden);

    void apply(RecordMode mode) const;

private:
    struct Entry
    {
        QWidget* button = nullptr;
        QMenu* menu = nullptr;
        QAction* action = nullptr;
        QList<RecordMode> modes;
        QString name() const;
    };
    QList<Entry> m_entries;
    QStringList m_forbidden;
};

} // namespace pvardo::ui
