#include "ui/WidgetPromptService.h"

#include <QApplication>
#include <QDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

namespace pvardo::ui {

namespace {

QMessageBox::StandardButton standardButton(PromptAnswer answer)
{
    switch (answer) {
    case PromptAnswer::Ok:
        return QMessageBox::Ok;
    case PromptAnswer::Cancel:
        return QMessageBox::Cancel;
    case PromptAnswer::Yes:
        return QMessageBox::Yes;
    case PromptAnswer::No:
        return QMessageBox::No;
    case PromptAnswer::Retry:
        return QMessageBox::Retry;
    case PromptAnswer::Abort:
        return QMessageBox::Abort;
    case PromptAnswer::Ignore:
        return QMessageBox::Ignore;
    }
    return QMessageBox::Ok;
}

QMessageBox::StandardButtons standardButtons(PromptButtons buttons)
{
    switch (buttons) {
    case PromptButtons::Ok:
        return QMessageBox::Ok;
    case PromptButtons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case PromptButtons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case PromptButtons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case PromptButtons::RetryCancel:
        return QMessageBox::Retry | QMessageBox::Cancel;
    case PromptButtons::AbortRetryIgnore:
        return QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore;
    }
    return QMessageBox::Ok;
}

PromptAnswer answerOf(int button)
{
    switch (button) {
    case QMessageBox::Cancel:
        return PromptAnswer::Cancel;
    case QMessageBox::Yes:
        return PromptAnswer::Yes;
    case QMessageBox::No:
        return PromptAnswer::No;
    case QMessageBox::Retry:
        return PromptAnswer::Retry;
    case QMessageBox::Abort:
        return PromptAnswer::Abort;
    case QMessageBox::Ignore:
        return PromptAnswer::Ignore;
    default:
        return PromptAnswer::Ok;
    }
}

QMessageBox::Icon iconOf(PromptIcon icon)
{
    switch (icon) {
    case PromptIcon::None:
        return QMessageBox::NoIcon;
    case PromptIcon::Information:
        return QMessageBox::Information;
    case PromptIcon::Question:
        return QMessageBox::Question;
    case PromptIcon::Exclamation:
        return QMessageBox::Warning;
    case PromptIcon::Critical:
        return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

} // namespace

PromptAnswer WidgetPromptService::message(const Prompt& prompt)
{
    // A box without a title shows the program's name, as the office's boxes did.
    const QString title = prompt.title.isEmpty() ? QApplication::applicationDisplayName() : prompt.title;
    QMessageBox box(iconOf(prompt.icon), title, prompt.text, standardButtons(prompt.buttons),
                    QApplication::activeWindow());
    box.setObjectName(QStringLiteral("promptBox"));
    box.setDefaultButton(standardButton(defaultAnswerOf(prompt)));
    return answerOf(box.exec());
}

int WidgetPromptService::exec(QDialog& dialog)
{
    return dialog.exec();
}

QString WidgetPromptService::input(const QString& title, const QString& label, const QString& initial)
{
    bool ok = false;
    const QString text = QInputDialog::getText(QApplication::activeWindow(), title, label, QLineEdit::Normal,
                                               initial, &ok);
    return ok ? text : QString();
}

} // namespace pvardo::ui
