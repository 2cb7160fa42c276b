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
    , m_entry(entry)
    , m_password(new QLineEdit(this))
    , m_level(new QComboBox(this))
{
    setObjectName(QStringLiteral("UserEdit"));
    setWindowTitle(fromChangePassword ? QStringLiteral("Change Password") : QStringLiteral("Edit User"));
    m_name->setObjectName(QStringLiteral("Text1"));
    m_name->setToolTip(QStringLiteral(" User ID used to log in"));
    m_password->setObjectName(QStringLiteral("Text2"));
    m_password->setToolTip(QStringLiteral(" Default user password"));
    // The password is never shown: a new one typed here replaces it, and an
    // empty box keeps the one the user has.
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setPlaceholderText(entry.hasPassword() ? QStringLiteral("(unchanged)") : QString());
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
    UserEntry result = m_entry;
    result.name = m_name->text().trimmed();
    result.level = m_level->currentText();
    const QString typed = m_password->text().trimmed();
    if (!typed.isEmpty()) {
        result.password = typed;
        result.passwordHash.clear();
    }
    return result;
}

void UserEdit::Command1_Click()
{
    if (m_password->text().trimmed().isEmpty() && !m_entry.hasPassword()) {
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
    session().StopFlag = false;
    accept();
}

void UserEdit::Command2_Click()
{
    session().StopFlag = true;
    reject();
}

} // namespace pvardo::admin
