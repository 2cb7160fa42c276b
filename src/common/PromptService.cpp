#include "common/PromptService.h"

#include <QTextStream>

namespace pvardo {

namespace {

// Writes each message to standard error and answers it with the cautious
// button (Cancel, No, Abort): with nobody there, nothing is retried forever
// and nothing is done that was not asked for.
class ConsolePromptService final : public PromptService
{
public:
    PromptAnswer message(const Prompt& prompt) override
    {
        QTextStream err(stderr);
        const QString title = prompt.title.trimmed();
        if (!title.isEmpty()) {
            err << title << ": ";
        }
        err << prompt.text << Qt::endl;
        switch (prompt.buttons) {
        case PromptButtons::Ok:
            return PromptAnswer::Ok;
        case PromptButtons::OkCancel:
        case PromptButtons::RetryCancel:
        case PromptButtons::YesNoCancel:
            return PromptAnswer::Cancel;
        case PromptButtons::YesNo:
            return PromptAnswer::No;
        case PromptButtons::AbortRetryIgnore:
            return PromptAnswer::Abort;
        }
        return PromptAnswer::Ok;
    }

    int exec(QDialog&) override { return 0; }

    QString input(const QString&, const QString&, const QString&) override { return {}; }
};

std::unique_ptr<PromptService>& current()
{
    static std::unique_ptr<PromptService> service = std::make_unique<ConsolePromptService>();
    return service;
}

} // namespace

PromptService& prompts()
{
    return *current();
}

std::unique_ptr<PromptService> installPromptService(std::unique_ptr<PromptService> service)
{
    std::unique_ptr<PromptService> previous = std::move(current());
    current() = service ? std::move(service) : std::make_unique<ConsolePromptService>();
    return previous;
}

PromptAnswer showMessage(const QString& text, const QString& title, PromptButtons buttons, PromptIcon icon)
{
    return prompts().message(Prompt{title, text, buttons, icon, std::nullopt});
}

PromptAnswer defaultAnswerOf(const Prompt& prompt)
{
    if (prompt.defaultAnswer) {
        return *prompt.defaultAnswer;
    }
    switch (prompt.buttons) {
    case PromptButtons::Ok:
    case PromptButtons::OkCancel:
        return PromptAnswer::Ok;
    case PromptButtons::YesNo:
    case PromptButtons::YesNoCancel:
        return PromptAnswer::Yes;
    case PromptButtons::RetryCancel:
        return PromptAnswer::Retry;
    case PromptButtons::AbortRetryIgnore:
        return PromptAnswer::Abort;
    }
    return PromptAnswer::Ok;
}

} // namespace pvardo
