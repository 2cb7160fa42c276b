#include "admin/UserLogon.h"

#include "common/Session.h"
#include "common/TextFiles.h"

#include <QDir>
#include <QFileInfo>

namespace pvardo::admin {

QString usersFile(const QString& programFolder)
{
    return joinPath(programFolder, QStringLiteral("\\Users.Set"));
}

UserList& sessionUsers()
{
    static UserList users;
    return users;
}

QString missingUsersMessage(const QString& programFolder)
{
    const QString folder = QDir::toNativeSeparators(programFolder);
    return QStringLiteral("The user list ") + QDir::toNativeSeparators(usersFile(programFolder))
        + QStringLiteral(" is missing, so nobody can log on.\n\n"
                         "Make it with the administration tool, for example:\n"
                         "    pvardo-admin --home ")
        + folder
        + QStringLiteral(" users add ADMIN ADMIN\n"
                         "which asks for the administrator's password, or\n"
                         "    pvardo-admin --home ")
        + folder + QStringLiteral(" init\nwhich makes a missing user list with the administrator ADMIN.");
}

bool loadSessionUsers(const QString& programFolder, QString* message)
{
    sessionUsers() = UserList();
    const QString file = usersFile(programFolder);
    if (!QFileInfo::exists(file)) {
        if (message) {
            *message = missingUsersMessage(programFolder);
        }
        return false;
    }
    QString error;
    std::optional<UserList> users = UserList::read(file, &error);
    if (!users) {
        if (message) {
            *message = QStringLiteral("The user list cannot be read (") + error
                + QStringLiteral("), so nobody can log on. Make it anew with pvardo-admin --home ")
                + QDir::toNativeSeparators(programFolder) + QStringLiteral(" users add NAME LEVEL.");
        }
        return false;
    }
    sessionUsers() = std::move(*users);
    return true;
}

void ValidateUser(const UserList& users, const QString& name, const QString& password)
{
    Session& state = session();
    const QString wantedName = name.toUpper();
    if (name.trimmed().isEmpty()) {
        return;
    }
    for (qsizetype i = 0; i < users.entries.size(); ++i) {
        const UserEntry& entry = users.entries.at(i);
        if (entry.name.toUpper() != wantedName) {
            continue;
        }
        state.LoggedIn = entry.accepts(password);
        state.UserLevel = entry.level;
        state.UserIndex = static_cast<int>(i);
        return;
    }
}

void ValidateUser(const QString& name, const QString& password)
{
    ValidateUser(sessionUsers(), name, password);
}

void ApplyUserLevel()
{
    Session& state = session();
    if (state.UserLevel == UserLevels::admin()) {
        state.IsAdmin = true;
    }
    const QString& level = state.UserLevel;
    if (level == UserLevels::user() || !UserLevels::isKnown(level)) {
        state.ReadOnlyUser = true;
    }
}

} // namespace pvardo::admin
