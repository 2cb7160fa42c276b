// pvardo-admin: the administration tool of an installation. It links the
// program's libraries and never shows a window.
#include "app/ProgramFolder.h"
#include "cli/AdminCommand.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>

#include <algorithm>

namespace pvardo::cli {

namespace {

QList<AdminCommand>& commands()
{
    static QList<AdminCommand> list;
    return list;
}

void printHelp(QTextStream& out)
{
    out << "Usage: pvardo-admin [--home DIR] [--quiet] COMMAND [ARGUMENTS]\n\n"
        << "Administers a pvardo installation folder without opening a window.\n\n"
        << "Options:\n"
        << "  --home DIR   the installation folder (default: $PVARDO_HOME, else\n"
        << "               ~/.local/share/pvardo when the tool is installed under /usr)\n"
        << "  --quiet      no progress on standard error\n"
        << "  --help       this text\n"
        << "  --version    the version of the tool\n\n"
        << "Commands:\n";
    QList<AdminCommand> sorted = commands();
    std::sort(sorted.begin(), sorted.end(),
              [](const AdminCommand& a, const AdminCommand& b) { return qstrcmp(a.usage, b.usage) < 0; });
    constexpr int usageWidth = 40;
    for (const AdminCommand& command : sorted) {
        const QString usage = QString::fromUtf8(command.usage);
        const QString summary = QString::fromUtf8(command.summary);
        if (usage.size() < usageWidth) {
            out << "  " << usage.leftJustified(usageWidth) << ' ' << summary << '\n';
        } else {
            out << "  " << usage << '\n' << QString(usageWidth + 3, QLatin1Char(' ')) << summary << '\n';
        }
    }
    out.flush();
}

} // namespace

CommandRegistration::CommandRegistration(const AdminCommand& command)
{
    commands().append(command);
}

const QList<AdminCommand>& registeredCommands()
{
    return commands();
}

int run(const QStringList& arguments)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    // PVARDO_HOME, or the user's own installation of the program installed
    // from the package; a tool in a build or office folder needs --home.
    const app::ProgramFolderChoice choice = app::programFolderChoice();
    QString home = choice.origin == app::FolderOrigin::ProgramsOwn ? QString() : choice.folder;
    bool quiet = false;
    QStringList rest;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (!rest.isEmpty()) {
            rest.append(argument);
        } else if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            printHelp(out);
            return ExitCode::Ok;
        } else if (argument == QLatin1String("--version")) {
            out << "pvardo-admin " << PVARDO_VERSION << Qt::endl;
            return ExitCode::Ok;
        } else if (argument == QLatin1String("--quiet")) {
            quiet = true;
        } else if (argument == QLatin1String("--home")) {
            if (i + 1 >= arguments.size()) {
                err << "pvardo-admin: --home needs a folder" << Qt::endl;
                return ExitCode::BadUsage;
            }
            home = arguments.at(++i);
        } else if (argument.startsWith(QLatin1String("--home="))) {
            home = argument.mid(7);
        } else if (argument.startsWith(QLatin1Char('-'))) {
            err << "pvardo-admin: unknown option " << argument << "\nTry pvardo-admin --help." << Qt::endl;
            return ExitCode::BadUsage;
        } else {
            rest.append(argument);
        }
    }
    if (rest.isEmpty()) {
        printHelp(err);
        return ExitCode::BadUsage;
    }
    // A command may take --quiet after its name too.
    if (rest.removeAll(QStringLiteral("--quiet")) > 0) {
        quiet = true;
    }
    const QString name = rest.takeFirst();
    for (const AdminCommand& command : commands()) {
        if (name == QLatin1String(command.name)) {
            if (command.needsHome && home.isEmpty()) {
                err << "pvardo-admin: " << name << " needs the installation folder: --home DIR" << Qt::endl;
                return ExitCode::BadUsage;
            }
            if (!home.isEmpty()) {
                home = QDir::cleanPath(QFileInfo(home).absoluteFilePath());
            }
            CommandContext context{home, quiet, rest, out, err};
            const int code = command.run(context);
            out.flush();
            err.flush();
            return code;
        }
    }
    err << "pvardo-admin: unknown command " << name << "\nTry pvardo-admin --help." << Qt::endl;
    return ExitCode::BadUsage;
}

} // namespace pvardo::cli

int main(int argc, char** argv)
{
    // Fonts and page layout need a GUI application; no display is needed.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    // Run from a service or cron there is no session runtime folder; Qt only
    // wants one to exist, so a private one in the temporary folder will do.
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        const QString runtime = QDir::tempPath() + QStringLiteral("/pvardo-admin-runtime-") + qEnvironmentVariable("USER", QStringLiteral("user"));
        QDir().mkpath(runtime);
        QFile::setPermissions(runtime, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime));
    }
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("pvardo-admin"));
    QStringList arguments = QGuiApplication::arguments();
    arguments.removeFirst();
    return pvardo::cli::run(arguments);
}
