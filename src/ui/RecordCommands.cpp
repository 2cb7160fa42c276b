#include "ui/RecordCommands.h"

#include "common/ExitApp.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "ui/RecordNavigation.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QKeySequence>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QSpinBox>
#include <QTextEdit>

namespace pvardo::ui {

namespace {

bool typing(RecordMode mode)
{
    return mode == RecordMode::New || mode == RecordMode::Edit;
}

} // namespace

RecordCommands::RecordCommands(QWidget& screen, RecordNavigation* nav, QString title, RecordHooks hooks)
    : m_screen(screen)
    , m_nav(nav)
    , m_title(std::move(title))
    , m_hooks(std::move(hooks))
{
    m_exitQuestion = addExitQuestion([this] { return settleUnsaved(); });
}

RecordCommands::~RecordCommands()
{
    removeExitQuestion(m_exitQuestion);
}

bool RecordCommands::edit()
{
    if (!m_nav || m_hooks.mode() != RecordMode::Browse || !m_hooks.rowEditable()) {
        return false;
    }
    m_nav->remember();
    m_hooks.lock(false);
    m_hooks.enterMode(RecordMode::Edit);
    watchInputs();
    return true;
}

QStringList RecordCommands::inputValues() const
{
    // Every input of the screen in a fixed order: what the clerk can change.
    QStringList values;
    const QWidget* area = m_area ? m_area.data() : &m_screen;
    for (const QWidget* input : area->findChildren<QWidget*>()) {
        if (const auto* line = qobject_cast<const QLineEdit*>(input)) {
            values << line->text();
        } else if (const auto* list = qobject_cast<const QComboBox*>(input)) {
            values << list->currentText();
        } else if (const auto* check = qobject_cast<const QAbstractButton*>(input); check && check->isCheckable()) {
            values << (check->isChecked() ? QStringLiteral("1") : QStringLiteral("0"));
        } else if (const auto* rich = qobject_cast<const QTextEdit*>(input)) {
            values << rich->toPlainText();
        } else if (const auto* plain = qobject_cast<const QPlainTextEdit*>(input)) {
            values << plain->toPlainText();
        } else if (const auto* when = qobject_cast<const QDateTimeEdit*>(input)) {
            values << when->dateTime().toString(Qt::ISODate);
        } else if (const auto* number = qobject_cast<const QAbstractSpinBox*>(input)) {
            values << number->text();
        }
    }
    return values;
}

void RecordCommands::watchInputs()
{
    m_watched = inputValues();
}

bool RecordCommands::hasUnsavedChange() const
{
    return typing(m_hooks.mode()) && inputValues() != m_watched;
}

bool RecordCommands::settleUnsaved()
{
    const RecordMode mode = m_hooks.mode();
    if (!hasUnsavedChange()) {
        // Nothing typed: an entry or a search begun is simply given up, so
        // the screen never stays behind in it.
        if (typing(mode) || mode == RecordMode::Find) {
            m_hooks.cancel();
        }
        return true;
    }
    m_screen.show();
    m_screen.raise();
    m_screen.activateWindow();
    Prompt question;
    question.title = m_title;
    question.text = m_hooks.describe() + QStringLiteral(" has changes that are not saved.\n")
        + QStringLiteral("Do you want to save them?\n")
        + QStringLiteral("(No drops them; Cancel goes back to the record.)");
    question.buttons = PromptButtons::YesNoCancel;
    question.icon = PromptIcon::Question;
    switch (prompts().message(question)) {
    case PromptAnswer::Yes:
        if (mode == RecordMode::New) {
            m_hooks.add();
        } else {
            m_hooks.save();
        }
        // A record the screen refused stays for the clerk to mend.
        return !typing(m_hooks.mode());
    case PromptAnswer::No:
        m_hooks.cancel();
        return true;
    default:
        session().StopFlag = true;
        return false;
    }
}

bool RecordCommands::confirmVoid(bool restoring)
{
    const PromptAnswer answer = restoring
        ? showMessage(QStringLiteral("This record is already voided. Do you want to reset it?\n")
                  + QStringLiteral("Clicking 'Yes' will restore/unvoid it"),
              QStringLiteral(" Record Void"), PromptButtons::YesNo, PromptIcon::Question)
        : showMessage(QStringLiteral("Are you sure you want to void this record?\n")
                  + QStringLiteral("Clicking 'Yes' will void the record."),
              QStringLiteral(" Void a Record"), PromptButtons::YesNo, PromptIcon::Question);
    return answer == PromptAnswer::Yes;
}

void HiddenDelete::attach(QWidget& screen, QWidget* button)
{
    m_button = button;
    conceal();
    auto* key = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_U), &screen);
    key->setContext(Qt::WindowShortcut);
    QObject::connect(key, &QShortcut::activated, &screen, [this] { reveal(); });
}

bool HiddenDelete::allowed()
{
    // Only the level written exactly "ADMIN" is an administrator's.
    return session().IsAdmin || session().UserLevel == QLatin1String("ADMIN");
}

void HiddenDelete::reveal()
{
    if (m_button && allowed()) {
        m_button->show();
    }
}

void HiddenDelete::conceal()
{
    if (m_button) {
        m_button->hide();
    }
}

bool HiddenDelete::revealed() const
{
    return m_button && !m_button->isHidden();
}

} // namespace pvardo::ui
