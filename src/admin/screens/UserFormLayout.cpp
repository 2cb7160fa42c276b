#include "admin/screens/UserFormLayout.h"

#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace pvardo::admin {

UserFormButtons layOutUserForm(
    QDialog* dialog, const QString& nameCaption, QLineEdit* name, QLineEdit* password, QComboBox* level)
{
    UserFormButtons buttons;
    buttons.ok = new QPushButton(QStringLiteral("&OK"), dialog);
    buttons.ok->setObjectName(QStringLiteral("Command1"));
    buttons.ok->setDefault(true);
    buttons.cancel = new QPushButton(QStringLiteral("Cancel"), dialog);
    buttons.cancel->setObjectName(QStringLiteral("Command2"));

    auto* form = new QFormLayout;
    form->addRow(nameCaption, name);
    form->addRow(QStringLiteral("Password:"), password);
    form->addRow(QStringLiteral("Access:"), level);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(buttons.ok);
    row->addWidget(buttons.cancel);
    auto* layout = new QVBoxLayout(dialog);
    layout->addLayout(form);
    layout->addLayout(row);
    return buttons;
}

} // namespace pvardo::admin
