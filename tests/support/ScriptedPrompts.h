#pragma once

#include "common/PromptService.h"

#include <QList>
#include <QString>

#include <functional>

#include <gtest/gtest.h>

class QDialog;

namespace pvardo::test {

// The prompt service of the tests. Message boxes are recorded and answered
// from a script; an unscripted box gets its default answer. Modal dialogs are
// handed to a handler registered for their object name, which fills them as a
// user would and gives the result; an unhandled dialog is rejected.
class ScriptedPrompts final : public PromptService
{
public:
    using DialogHandler = std::function<int(QDialog&)>;

    PromptAnswer message(const Prompt& prompt) override;
    int exec(QDialog& dialog) override;
    QString input(const QString& title, const QString& label, const QString& initial) override;

    // Answers the next box whose title (trimmed) or text contains `match`.
    void answer(const QString& match, PromptAnswer answer);
    // Handles the next dialog with this object name.
    void onDialog(const QString& objectName, DialogHandler handler);
    // Runs `look` while the next box is up, to see the screen behind it.
    void whileShown(std::function<void(const Prompt&)> look) { m_look = std::move(look); }
    // Answers the next input box.
    void answerInput(const QString& text);

    const QList<Prompt>& shown() const { return m_shown; }
    QStringList shownTexts() const;
    QStringList dialogsRun() const { return m_dialogs; }
    void clear();

private:
    struct Scripted {
        QString match;
        PromptAnswer answer;
    };
    QList<Scripted> m_answers;
    QList<QPair<QString, DialogHandler>> m_handlers;
    QStringList m_inputs;
    QList<Prompt> m_shown;
    QStringList m_dialogs;
    std::function<void(const Prompt&)> m_look;
};

// The scripted service of the running test; installed fresh for every test.
ScriptedPrompts& scriptedPrompts();

class ScriptedPromptsEnvironment : public ::testing::Environment
{
public:
    void SetUp() override;
};

} // namespace pvardo::test
