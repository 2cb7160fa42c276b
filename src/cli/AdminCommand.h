#pragma once

#include <QString>
#include <QStringList>
#include <QTextStream>

namespace pvardo::cli {

// What a command of pvardo-admin is given.
struct CommandContext {
    QString home;      // the installation folder named by --home (or PVARDO_HOME); may be empty
    bool quiet = false; // --quiet: no progress on standard error
    QStringList args;  // the words after the command's name
    QTextStream& out;
    QTextStream& err;
};

// Exit codes of the admin tool.
namespace ExitCode {
constexpr int Ok = 0;
constexpr int Failed = 1;   // the command ran and failed
constexpr int BadUsage = 2; // a bad argument or an unusable folder
} // namespace ExitCode

using CommandFunction = int (*)(CommandContext&);

struct AdminCommand {
    const char* name;     // first word, e.g. "init" or "users"
    const char* usage;    // e.g. "init [--demo]"
    const char* summary;  // one line for --help
    bool needsHome;       // refuses to run without --home or PVARDO_HOME
    CommandFunction run;
};

// Each command registers itself from its own source file:
//   static const pvardo::cli::CommandRegistration registration{{"init", ...}};
struct CommandRegistration {
    explicit CommandRegistration(const AdminCommand& command);
};

const QList<AdminCommand>& registeredCommands();

} // namespace pvardo::cli
