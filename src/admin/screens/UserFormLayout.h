#pragma once

#include <QString>

class QComboBox;
class QDialog;
class QLineEdit;
class QPushButton;

namespace pvardo::admin {

// The OK and Cancel buttons of a user entry screen.
struct UserFormButtons
{
    QPushButton* ok = nullptr;
    QPushButton* cancel = nullptr;
};

// Lays out the inputs NewFrm and UserEdit share: the name under its caption,
// the password and the access level, with OK (Command1, the default) and
// Cancel (Command2) below on the right. The screen connects the buttons.
UserFormButtons layOutUserForm(
    QDialog* dialog, const QString& nameCaption, QLineEdit* name, QLineEdit* password, QComboBox* level);

} // namespace pvardo::admin
