#pragma once

#include "common/PromptService.h"

namespace pvardo::ui {

// The prompt service of the program: real message boxes and dialogs, over the
// active window.
class WidgetPromptService final : public PromptService
{
public:
    PromptAnswer message(const Prompt& prompt) override;
    int exec(QDialog& dialog) override;
    QString input(const QString& title, const QString& label, const QString& initial) override;
};

} // namespace pvardo::ui
