#include "ui/RecordMode.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace pvardo::ui {

void setInputLocked(QWidget* input, bool locked)
{
    if (auto* line = qobject_cast<QLineEdit*>(input)) {
        line->setReadOnly(locked);
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(input)) {
        plain->setReadOnly(locked);
    } else if (auto* rich = qobject_cast<QTextEdit*>(input)) {
        rich->setReadOnly(locked);
    } else if (auto* date = qobject_cast<QDateTimeEdit*>(input)) {
        date->setReadOnly(locked);
        date->setCalendarPopup(!locked);
    } else if (input) {
        input->setEnabled(!locked);
    }
}

QString RecordModeCommands::Entry::name() const
{
    if (button) {
        return button->objectName();
    }
    if (menu) {
        return menu->objectName();
    }
    return action ? action->objectName() : QString();
}

void RecordModeCommands::addButton(QWidget* button, QList<RecordMode> modes)
{
    m_entries.append(Entry{button, nullptr, nullptr, std::move(modes)});
}

void RecordModeCommands::addMenu(QMenu* menu, QList<RecordMode> modes)
{
    m_entries.append(Entry{nullptr, menu, nullptr, std::move(modes)});
}

void RecordModeCommands::addAction(QAction* action, QList<RecordMode> modes)
{
    m_entries.append(Entry{nullptr, nullptr, action, std::move(modes)});
}

void RecordModeCommands::forbid(const QString& objectName, bool forbidden)
{
    m_forbidden.removeAll(objectName);
    if (forbidden) {
        m_forbidden.append(objectName);
    }
}

void RecordModeCommands::apply(RecordMode mode) const
{
    for (const Entry& entry : m_entries) {
        const bool forbidden = m_forbidden.contains(entry.name());
        const bool on = !forbidden && entry.modes.contains(mode);
        if (entry.button) {
            entry.button->setEnabled(on);
            if (forbidden) {
                entry.button->hide();
            }
        } else if (entry.menu) {
            entry.menu->setEnabled(on);
            entry.menu->menuAction()->setEnabled(on);
        } else if (entry.action) {
            entry.action->setEnabled(on);
        }
    }
}

} // namespace pvardo::ui
