#pragma once

#include "admin/UserList.h"

#include <QString>

namespace pvardo::admin {

// The user list on screen holds at most this many users.
constexpr int maxUsersOnScreen = 20;

// The user file of a program folder.
QString usersFile(const QString& programFolder);

// The users this session logs on against, loaded at start-up.
UserList& sessionUsers();

// Loads the session's users from the program folder's Users.Set. Gives false,
// with the message for the user, when the file is missing or unreadable; the
// session then has no users and nobody can log on.
bool loadSessionUsers(const QString& programFolder, QString* message);

// What to tell the office when the user file is not there: the file, and how
// to make it with the administration tool.
QString missingUsersMessage(const QString& programFolder);

// Looks the typed name up among the users, in capitals, and stops at the first
// entry of that name: with the password equal in capitals the session is
// logged on; either way the session's UserLevel becomes the entry's level and
// UserIndex its place. A name that no entry holds leaves the session as it was.
// A blank name is nobody's, and an entry without a password never logs on.
void ValidateUser(const UserList& users, const QString& name, const QString& password);
// The same against the session's users.
void ValidateUser(const QString& name, const QString& password);

// Sets the rights of the logged-on level: IsAdmin for exactly "ADMIN",
// ReadOnlyUser for "USER" and for any level the program does not know (a
// damaged or hand-edited one gives no more than USER). Never clears a flag. The screens read the flags when they are
// shown: the main window shows its Admin menu to administrators only, the
// record screens turn their entry commands off for read-only users, and only
// administrators reveal the delete command with Control+U.
void ApplyUserLevel();

} // namespace pvardo::admin
