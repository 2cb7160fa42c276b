#include "ui/NotAvailable.h"

#include "common/PromptService.h"

namespace pvardo::ui {

QString notAvailableText(const QString& what)
{
    return what.trimmed() + QStringLiteral(" is not available in this version.");
}

void showNotAvailable(const QString& what)
{
    showMessage(notAvailableText(what), QLatin1Char(' ') + what.trimmed() + QLatin1Char(' '),
        PromptButtons::Ok, PromptIcon::Information);
}

} // namespace pvardo::ui
