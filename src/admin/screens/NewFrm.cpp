#include "admin/screens/NewFrm.h"

#include "admin/UserLogon.h"
#include "admin/screens/UserEdit.h"
#include "admin/screens/UserFormLayout.h"
#include "common/PromptService.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

namespace pvardo::admin {

NewFrm::NewFrm(QList<UserEntry>& rows, QWidget* parent)
    : QDialog(parent)
    , m_rows(rows)
    , m_name(new QLineEdit(this))
    , m_password(new QLineEdit(this))
    , m_level(new QComboBox(this))
{
    setObjectName(QStringLiteral("NewFrm"));
    setWindowTitle(QStringLiteral("New User"));
    m_name->setObjectName(QStringLiteral("Text1"));
    m_name->setToolTip(QStringLiteral(" New user name"));
    m_password->setObjectName(QStringLiteral("Text2"));
    m_password->setToolTip(QStringLiteral(" Default password"));
    m_password->setEchoMode(QLineEdit::Password);
    m_level->setObjectName(QStringLiteral("Combo1"));
    m_level->setToolTip(QStringLiteral(" Access rights"));
    m_level->addItems(UserLevels::offered());
    m_level->setCurrentText(UserLevels::member());

    const UserFormButtons buttons
        = layOutUserForm(this, QStringLiteral("User name:"), m_name, m_password, m_level);
    connect(buttons.ok, &QPushButton::clicked, this, &NewFrm::Command1_Click);
    connect(buttons.cancel, &QPushButton::clicked, this, &NewFrm::Command2_Click);
}

void NewFrm::Command1_Click()
{
    UserEntry entry;
    entry.name = m_name->text().trimmed();
    entry.password = m_password->text().trimmed();
    entry.level = m_level->currentText();
    if (entry.name.isEmpty()) {
        showMessage(
            QStringLiteral("Type the name the user will log on with."), QStringLiteral(" Missing user name"));
        m_name->setFocus();
        return;
    }
    const QString wanted = entry.name.toUpper();
    for (const UserEntry& row : m_rows) {
        if (row.name.toUpper() == wanted) {
            showMessage(duplicateText(), duplicateTitle());
            return;
        }
    }
    if (entry.password.isEmpty()) {
        showMessage(UserEdit::missingPasswordText(), QStringLiteral(" Missing user password"));
        m_password->setFocus();
        return;
    }
    m_rows.append(entry);
    accept();
}

void NewFrm::Command2_Click()
{
    reject();
}

} // namespace pvardo::admin
