#include "admin/screens/hasVARDO.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace pvardo::admin {

hasVARDO::hasVARDO(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("hasVARDO"));
    setWindowTitle(QStringLiteral("  Vardo Installation Detected"));
    auto* text = new QLabel(questionText(), this);
    text->setObjectName(QStringLiteral("Label1"));
    text->setWordWrap(true);
    text->setMinimumWidth(360);
    auto* go = new QPushButton(QStringLiteral("&Continue"), this);
    go->setObjectName(QStringLiteral("iContinue"));
    go->setDefault(true);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("iCancel"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(go);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addLayout(buttons);
    connect(go, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

} // namespace pvardo::admin
