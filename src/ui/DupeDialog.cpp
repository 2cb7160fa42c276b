#include "ui/DupeDialog.h"

#include "common/PromptService.h"
#include "ui/XPButton.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace pvardo::ui {

DupeDialog::DupeDialog(const QString& title, const QString& text, const QString& advice,
    const QString& checkBoxText, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("dupe"));
    setWindowTitle(title);
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    auto* label1 = new QLabel(text, this);
    label1->setObjectName(QStringLiteral("Label1"));
    label1->setWordWrap(true);
    auto* label2 = new QLabel(advice, this);
    label2->setObjectName(QStringLiteral("Label2"));
    label2->setWordWrap(true);
    m_check = new QCheckBox(checkBoxText, this);
    m_check->setObjectName(QStringLiteral("Check1"));
    auto* buttons = new QHBoxLayout;
    auto* go = new XPButton(QStringLiteral("iContinue"), QStringLiteral("Continue"), QString(), this);
    auto* stop = new XPButton(QStringLiteral("iCancel"), QStringLiteral("Cancel"), QString(), this);
    go->setDefault(true);
    buttons->addStretch();
    buttons->addWidget(go);
    buttons->addWidget(stop);
    layout->addWidget(label1);
    layout->addWidget(label2);
    layout->addWidget(m_check);
    layout->addLayout(buttons);
    connect(go, &QPushButton::clicked, this, &QDialog::accept);
    connect(stop, &QPushButton::clicked, this, &QDialog::reject);
    setMinimumWidth(420);
}

bool askDupe(const QString& title, const QString& text, const QString& advice, const QString& checkBoxText,
    QWidget* parent)
{
    DupeDialog dialog(title, text, advice, checkBoxText, parent);
    const int result = prompts().exec(dialog);
    return result == QDialog::Accepted && dialog.checkBox()->isChecked();
}

} // namespace pvardo::ui
