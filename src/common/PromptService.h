#pragma once

#include <QString>

#include <memory>
#include <optional>

class QDialog;

namespace pvardo {

// Every message box and every modal dialog of the program goes through the one
// prompt service. The program installs a service that shows real dialogs; the
// admin tool one that writes to the terminal; tests one that answers by title
// or object name.

enum class PromptButtons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel, AbortRetryIgnore };
enum class PromptIcon { None, Information, Question, Exclamation, Critical };
enum class PromptAnswer { Ok, Cancel, Yes, No, Retry, Abort, Ignore };

struct Prompt {
    QString title; // shown as it stands: the office's titles begin with a blank
    QString text;
    PromptButtons buttons = PromptButtons::Ok;
    PromptIcon icon = PromptIcon::None;
    // Which answer Enter gives. Unset means the first button.
    std::optional<PromptAnswer> defaultAnswer;
};

class PromptService
{
public:
    virtual ~PromptService() = default;

    // Shows a message box and gives the button pressed.
    virtual PromptAnswer message(const Prompt& prompt) = 0;

    // Runs a modal dialog and gives its result (QDialog::Accepted or Rejected).
    virtual int exec(QDialog& dialog) = 0;

    // Asks for one line of text, as an input box does; empty on cancel.
    virtual QString input(const QString& title, const QString& label, const QString& initial) = 0;
};

// The service in use. Until one is installed, a service that writes messages to
// standard error and gives each box its default answer.
PromptService& prompts();

// Installs a service and gives back the one it replaces.
std::unique_ptr<PromptService> installPromptService(std::unique_ptr<PromptService> service);

// Shorthands for the common boxes.
PromptAnswer showMessage(const QString& text, const QString& title = QString(),
                         PromptButtons buttons = PromptButtons::Ok, PromptIcon icon = PromptIcon::None);

// The answer a box gives when nobody is there to press a button: its default,
// else its first button.
PromptAnswer defaultAnswerOf(const Prompt& prompt);

} // namespace pvardo
