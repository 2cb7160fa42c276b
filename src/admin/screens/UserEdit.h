#pragma once

#include "admin/UserList.h"

#include <QDialog>

class QComboBox;
class QLineEdit;

namespace pvardo::admin {

// Edits one user of the list: name and access, shown in capitals, and a new
// password (the one the user has is never shown; an empty box keeps it).
// The administrator's own row keeps its name and access; a user reached from
// Change Password, and the levels that may not change the access list, cannot
// change the access.
class UserEdit final : public QDialog
{
    Q_OBJECT
public:
    // `editorLevel` is the level of the user working the screen.
    UserEdit(const UserEntry& entry, const QString& editorLevel, bool fromChangePassword,
        QWidget* parent = nullptr);

    static QString missingPasswordTitle() { return QStringLiteral(" Missing user password"); }
    static QString missingPasswordText()
    {
        return QStringLiteral("You must assign an initial password for the user to log on.");
    }

    // The values to hand back (valid after OK; StopFlag says which button).
    UserEntry values() const;

    void Command1_Click();
    void Command2_Click();

private:
    QLineEdit* m_name;
    UserEntry m_entry;
    QLineEdit* m_password;
    QComboBox* m_level;
};

} // namespace pvardo::admin
