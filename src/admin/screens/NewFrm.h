#pragma once

#include "admin/UserList.h"

#include <QDialog>

class QComboBox;
class QLineEdit;

namespace pvardo::admin {

// Adds a user to the list of the user manager: a name no entry has yet (in
// capitals), a first password and the access level.
class NewFrm final : public QDialog
{
    Q_OBJECT
public:
    // `rows` is the manager's list; an accepted screen has appended the new user.
    NewFrm(QList<UserEntry>& rows, QWidget* parent = nullptr);

    static QString duplicateTitle() { return QStringLiteral(" Duplicate User"); }
    static QString duplicateText()
    {
        return QStringLiteral("A user with that name already exist. Please use a different name.");
    }

    void Command1_Click();
    void Command2_Click();

private:
    QList<UserEntry>& m_rows;
    QLineEdit* m_name;
    QLineEdit* m_password;
    QComboBox* m_level;
};

} // namespace pvardo::admin
