#include "admin/screens/UserEdit.h"

#include "admin/UserLogon.h"
#include "admin/screens/UserFormLayout.h"
#include "common/PromptService.h"
#include "common/Session.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

namespace pvardo::admin {

UserEdit::UserEdit(
    const UserEntry& entry, const QString& editorLevel, bool fromChangePassword, QWidget* parent)
    : QDialog(parent)
    , m_name(new QLineEdit(entry.name.toUpper(), this))
    , m_password(new QLineEdit(entry.password.toUpper(), this))
    , m_level(new QComboBox(this))
{
    setObjectName(QStringLiteral("UserEdit"));
    setWindowTitle(fromChangePassword ? QStringLiteral("Change Password") : QStringLiteral("Edit User"));
    m_name->setObjectName(QStringLiteral("Text1"));
    m_name->setToolTip(QStringLiteral(" User ID used to log in"));
    m_password->setObjectName(QStringLiteral("Text2"));
    m_password->setToolTip(QStringLiteral(" Default user password"));
    m_level->setObjectName(QStringLiteral("Combo1"));
    m_level->setToolTip(QStringLiteral(" Access level"));
    m_level->addItems(UserLevels::offered());
    const QString level = entry.level.toUpper();
    if (m_level->findText(level) < 0) {
        m_level->addItem(level);
    }
    m_level->setCurrentText(level);

    // The administrator's own row keeps its name and its access.
    if (editorLevel == UserLevels::admin() && entry.name.toUpper() == UserLevels::admin()) {
        m_name->setEnabled(false);
        m_level->setEnabled(false);
    }
    if (editorLevel == UserLevels::supervisor() || editorLevel == UserLevels::user() || fromChangePassword) {
        m_level->setEnabled(false);
    }

    const UserFormButtons buttons
        = layOutUserForm(this, QStringLiteral("User ID:"), m_name, m_password, m_level);
    connect(buttons.ok, &QPushButton::clicked, this, &UserEdit::Command1_Click);
    connect(buttons.cancel, &QPushButton::clicked, this, &UserEdit::Command2_Click);
}

UserEntry UserEdit::values() const
{
    return UserEntry{m_name->text().trimmed(), m_password->text().trimmed(), m_level->currentText()};
}

void UserEdit::Command1_Click()
{
    if (m_password->text().trimmed().isEmpty()) {
        showMessage(missingPasswordText(), missingPasswordTitle());
        m_password->setFocus();
        return;
    }
    if (m_name->text().trimmed().isEmpty()) {
        showMessage(
            QStringLiteral("Type the name the user will log on with."), QStringLiteral(" Missing user name"));
        m_name->setFocus();
        return;
    }
    UserList probe;
    probe.entries.append(values());
    QString why;
    if (probe.toBytes(&why).isEmpty()) {
        showMessage(why, QStringLiteral(" User list"));
        return;
    }
    session().StopFlag = false;
    accept();
}

void UserEdit::Command2_Click()
{
    session().StopFlag = true;
    reject();
}

} // namespace pvardo::admin
