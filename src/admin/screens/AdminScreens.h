#pragma once

class QWidget;

namespace pvardo::admin {

// The doors of the main window to the user screens.

// The Admin menu's user list (usermanage): the list of this computer's users,
// written when the administrator presses Done.
void showUserManager(QWidget* parent);

// The Options menu's Change Password (changepsw), for every level: the edit
// screen on the logged-on user's own entry, written at once on OK.
void showChangePassword(QWidget* parent);

// The Admin menu's defaults: the preferences screen, modal.
void showPreferences(QWidget* parent);

// The question of a new settings file when the sibling program is installed;
// true to share its parcel store.
bool askShareParcelStore(QWidget* parent);

} // namespace pvardo::admin
