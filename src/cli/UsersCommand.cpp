// pvardo-admin --home DIR users list | add NAME LEVEL | passwd NAME | remove NAME:
// the user list of an installation (Users.Set), with the rules of the user
// screens: at most 20 users, names compared in capitals, the administrator's
// row kept. Passwords are asked twice on the terminal without echo, or read as
// one line from standard input with --password-stdin, and stored as hashes.
#include "admin/UserList.h"
#include "admin/UserLogon.h"
#include "cli/AdminCommand.h"

#include <QDir>
#include <QFileInfo>
#include <cstdio>
#include <iostream>
#include <string>
#include <termios.h>
#include <unistd.h>

namespace pvardo::cli {

namespace {

constexpr const char* usage = "usage: pvardo-admin --home DIR users list\n"
                              "       pvardo-admin --home DIR users add NAME LEVEL [--password-stdin]\n"
                              "       pvardo-admin --home DIR users passwd NAME [--password-stdin]\n"
                              "       pvardo-admin --home DIR users remove NAME\n"
                              "LEVEL is ADMIN, MEMBER or USER.";

std::optional<QString> readLineFromStdin()
{
    std::string line;
    if (!std::getline(std::cin, line)) {
        return std::nullopt;
    }
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return QString::fromLocal8Bit(line.c_str());
}

// One line typed on the terminal with the echo off.
std::optional<QString> askHidden(QTextStream& err, const char* prompt)
{
    err << prompt << Qt::flush;
    termios saved{};
    const bool terminal = tcgetattr(STDIN_FILENO, &saved) == 0;
    if (terminal) {
        termios quiet = saved;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSANOW, &quiet);
    }
    std::optional<QString> line = readLineFromStdin();
    if (terminal) {
        tcsetattr(STDIN_FILENO, TCSANOW, &saved);
    }
    err << Qt::endl;
    return line;
}

// The new password: from standard input, or typed twice. Empty on failure,
// after saying why.
QString newPassword(CommandContext& context, bool fromStdin)
{
    QString password;
    if (fromStdin) {
        password = readLineFromStdin().value_or(QString());
    } else {
        if (!isatty(STDIN_FILENO)) {
            context.err
                << "pvardo-admin users: no terminal to ask the password on; give it with --password-stdin"
                << Qt::endl;
            return {};
        }
        const std::optional<QString> first = askHidden(context.err, "Password: ");
        const std::optional<QString> second = askHidden(context.err, "Password again: ");
        if (!first || !second || *first != *second) {
            context.err << "pvardo-admin users: the two passwords differ; nothing was changed" << Qt::endl;
            return {};
        }
        password = *first;
    }
    password = password.trimmed();
    if (password.isEmpty()) {
        context.err << "pvardo-admin users: a user needs a password to log on; nothing was changed"
                    << Qt::endl;
    }
    return password;
}

// The list of the installation. For a change, a file that is not there gives
// an empty list, and one with lines that cannot be read (which a rewrite would
// lose) stops the command; a listing shows what can be read.
std::optional<admin::UserList> readList(CommandContext& context, const QString& file, bool forChange)
{
    if (!QFileInfo::exists(file)) {
        if (forChange) {
            return admin::UserList();
        }
        context.err << "pvardo-admin users: there is no user list " << QDir::toNativeSeparators(file)
                    << "; make one with: pvardo-admin --home " << QDir::toNativeSeparators(context.home)
                    << " users add NAME LEVEL" << Qt::endl;
        return std::nullopt;
    }
    QString error;
    QStringList problems;
    QStringList notes;
    std::optional<admin::UserList> list = admin::UserList::read(file, &error, &problems, &notes);
    if (!list) {
        context.err << "pvardo-admin users: " << error << Qt::endl;
        return std::nullopt;
    }
    // Taken in another form than stored: said, and written so by a change.
    for (const QString& note : std::as_const(notes)) {
        context.err << "pvardo-admin users: " << note << Qt::endl;
    }
    if (!problems.isEmpty()) {
        context.err << "pvardo-admin users: the user list " << QDir::toNativeSeparators(file)
                    << " is damaged:" << Qt::endl;
        for (const QString& problem : std::as_const(problems)) {
            context.err << "  " << problem << Qt::endl;
        }
        if (!forChange) {
            return list;
        }
        context.err << "Nothing was changed, so that no user is lost; repair or remove the file first."
                    << Qt::endl;
        return std::nullopt;
    }
    return list;
}

int writeList(CommandContext& context, const admin::UserList& list, const QString& file)
{
    QString error;
    if (!list.write(file, &error)) {
        context.err << "pvardo-admin users: the user list was not written and is as it was: " << error
                    << Qt::endl;
        return ExitCode::Failed;
    }
    return ExitCode::Ok;
}

int runUsers(CommandContext& context)
{
    QStringList args = context.args;
    const bool fromStdin = args.removeAll(QStringLiteral("--password-stdin")) > 0;
    if (args.isEmpty()) {
        context.err << usage << Qt::endl;
        return ExitCode::BadUsage;
    }
    const QString action = args.takeFirst();
    const QString file = admin::usersFile(context.home);
    const QString adminLevel = admin::UserLevels::admin();

    if (action == QLatin1String("list") && args.isEmpty()) {
        const std::optional<admin::UserList> list = readList(context, file, false);
        if (!list) {
            return ExitCode::Failed;
        }
        for (const admin::UserEntry& entry : list->entries) {
            context.out << entry.name << '\t' << entry.level << '\n';
        }
        return ExitCode::Ok;
    }

    if (action == QLatin1String("add") && args.size() == 2) {
        const QString name = args.at(0).trimmed();
        const QString level = args.at(1).trimmed().toUpper();
        if (name.isEmpty() || !admin::UserLevels::offered().contains(level)) {
            context.err << usage << Qt::endl;
            return ExitCode::BadUsage;
        }
        std::optional<admin::UserList> list = readList(context, file, true);
        if (!list) {
            return ExitCode::Failed;
        }
        if (list->indexOf(name) >= 0) {
            context.err << "pvardo-admin users: a user with that name already exists: " << name << Qt::endl;
            return ExitCode::Failed;
        }
        if (list->entries.size() >= admin::maxUsersOnScreen) {
            context.err << "pvardo-admin users: the list already holds " << admin::maxUsersOnScreen
                        << " users, the most it can; remove one first" << Qt::endl;
            return ExitCode::Failed;
        }
        const QString password = newPassword(context, fromStdin);
        if (password.isEmpty()) {
            return ExitCode::Failed;
        }
        admin::UserEntry entry;
        entry.name = name;
        entry.password = password;
        entry.level = level;
        list->entries.append(entry);
        const int code = writeList(context, *list, file);
        if (code == ExitCode::Ok && !context.quiet) {
            context.err << "Added " << name << " (" << level << ")." << Qt::endl;
        }
        return code;
    }

    if ((action == QLatin1String("passwd") || action == QLatin1String("remove")) && args.size() == 1) {
        const QString name = args.at(0).trimmed();
        std::optional<admin::UserList> list = readList(context, file, true);
        if (!list) {
            return ExitCode::Failed;
        }
        const int index = list->indexOf(name);
        if (index < 0) {
            context.err << "pvardo-admin users: no user is named " << name << Qt::endl;
            return ExitCode::Failed;
        }
        const QString shownName = list->entries.at(index).name;
        if (action == QLatin1String("remove")) {
            const admin::UserEntry& entry = list->entries.at(index);
            if (entry.name.toUpper() == adminLevel || entry.level == adminLevel) {
                context.err << "pvardo-admin users: " << entry.name
                            << " is an administrator and cannot be removed" << Qt::endl;
                return ExitCode::Failed;
            }
            list->entries.removeAt(index);
        } else {
            const QString password = newPassword(context, fromStdin);
            if (password.isEmpty()) {
                return ExitCode::Failed;
            }
            list->entries[index].password = password;
            list->entries[index].passwordHash.clear();
        }
        const int code = writeList(context, *list, file);
        if (code == ExitCode::Ok && !context.quiet) {
            context.err << (action == QLatin1String("remove") ? "Removed " : "Changed the password of ") << shownName
                        << "." << Qt::endl;
        }
        return code;
    }

    context.err << usage << Qt::endl;
    return ExitCode::BadUsage;
}

const CommandRegistration registration{{"users", "users list|add NAME LEVEL|passwd NAME|remove NAME",
    "the users who may log on, their levels and passwords", true, &runUsers}};

} // namespace

} // namespace pvardo::cli
