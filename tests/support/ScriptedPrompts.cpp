#include "support/ScriptedPrompts.h"

#include "common/Session.h"

#include <QDialog>

#include <utility>

namespace pvardo::test {

namespace {

ScriptedPrompts* g_current = nullptr;

// Puts a fresh service and a fresh session in place before each test.
class FreshStateListener : public ::testing::EmptyTestEventListener
{
public:
    void OnTestStart(const ::testing::TestInfo&) override
    {
        auto service = std::make_unique<ScriptedPrompts>();
        g_current = service.get();
        installPromptService(std::move(service));
        resetSession();
    }
};

} // namespace

PromptAnswer ScriptedPrompts::message(const Prompt& prompt)
{
    m_shown.append(prompt);
    if (m_look) {
        const auto look = std::exchange(m_look, nullptr);
        look(prompt);
    }
    for (qsizetype i = 0; i < m_answers.size(); ++i) {
        const Scripted& scripted = m_answers.at(i);
        if (prompt.title.trimmed().contains(scripted.match) || prompt.text.contains(scripted.match)) {
            const PromptAnswer answer = scripted.answer;
            m_answers.removeAt(i);
            return answer;
        }
    }
    return defaultAnswerOf(prompt);
}

int ScriptedPrompts::exec(QDialog& dialog)
{
    m_dialogs.append(dialog.objectName());
    for (qsizetype i = 0; i < m_handlers.size(); ++i) {
        if (m_handlers.at(i).first == dialog.objectName()) {
            const DialogHandler handler = m_handlers.at(i).second;
            m_handlers.removeAt(i);
            const int result = handler(dialog);
            dialog.setResult(result);
            return result;
        }
    }
    dialog.setResult(QDialog::Rejected);
    return QDialog::Rejected;
}

QString ScriptedPrompts::input(const QString& title, const QString& label, const QString&)
{
    m_shown.append(Prompt{title, label, PromptButtons::OkCancel, PromptIcon::None, std::nullopt});
    if (m_inputs.isEmpty()) {
        return {};
    }
    return m_inputs.takeFirst();
}

void ScriptedPrompts::answer(const QString& match, PromptAnswer answer)
{
    m_answers.append(Scripted{match, answer});
}

void ScriptedPrompts::onDialog(const QString& objectName, DialogHandler handler)
{
    m_handlers.append({objectName, std::move(handler)});
}

void ScriptedPrompts::answerInput(const QString& text)
{
    m_inputs.append(text);
}

QStringList ScriptedPrompts::shownTexts() const
{
    QStringList texts;
    for (const Prompt& prompt : m_shown) {
        texts.append(prompt.text);
    }
    return texts;
}

void ScriptedPrompts::clear()
{
    m_answers.clear();
    m_handlers.clear();
    m_inputs.clear();
    m_shown.clear();
    m_dialogs.clear();
    m_look = nullptr;
}

ScriptedPrompts& scriptedPrompts()
{
    return *g_current;
}

void ScriptedPromptsEnvironment::SetUp()
{
    ::testing::UnitTest::GetInstance()->listeners().Append(new FreshStateListener);
}

} // namespace pvardo::test
