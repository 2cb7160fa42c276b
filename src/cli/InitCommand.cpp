// pvardo-admin --home DIR init [--demo] [--admin-password PASSWORD]: makes a
// complete installation folder, or completes one that lacks some of its files.
#include "admin/DemoInstallation.h"
#include "admin/Installation.h"
#include "cli/AdminCommand.h"

#include <QDate>
#include <QDir>

namespace pvardo::cli {

namespace {

int runInit(CommandContext& context)
{
    bool demo = false;
    QString password = admin::Installation::defaultAdminPassword();
    for (qsizetype i = 0; i < context.args.size(); ++i) {
        const QString& argument = context.args.at(i);
        if (argument == QLatin1String("--demo")) {
            demo = true;
        } else if (argument == QLatin1String("--admin-password") && i + 1 < context.args.size()) {
            password = context.args.at(++i);
            if (password.trimmed().isEmpty()) {
                context.err << "pvardo-admin init: the administrator's password cannot be empty" << Qt::endl;
                return ExitCode::BadUsage;
            }
        } else {
            context.err << "usage: pvardo-admin --home DIR init [--demo] [--admin-password PASSWORD]"
                        << Qt::endl;
            return ExitCode::BadUsage;
        }
    }
    admin::Installation installation(context.home);
    const QString unusable = installation.unusableReason();
    if (!unusable.isEmpty()) {
        context.err << "pvardo-admin init: " << unusable << Qt::endl;
        return ExitCode::BadUsage;
    }
    const bool completing = installation.looksLikeInstallation();
    const bool made = installation.make(password);
    const QString home = QDir::toNativeSeparators(context.home);
    if (!context.quiet) {
        for (const QString& file : installation.created()) {
            context.err << "  made " << file << Qt::endl;
        }
        for (const QString& file : installation.kept()) {
            context.err << "  kept " << file << Qt::endl;
        }
    }
    if (!made) {
        context.err << "pvardo-admin init: the installation in " << home << " is not complete:" << Qt::endl;
        for (const QString& failure : installation.failures()) {
            context.err << "  " << failure << Qt::endl;
        }
        context.err << "What was made stays; run init again when the cause is removed." << Qt::endl;
        return ExitCode::Failed;
    }
    context.out << (completing ? "Completed the installation in " : "Made the installation in ") << home
                << '\n';
    if (installation.created().contains(QStringLiteral("Users.Set"))) {
        context.out << "Log on as " << admin::Installation::defaultAdminName() << " with the password "
                    << password.toUpper()
                    << " (names and passwords are not case-sensitive); change it under Options > Change "
                       "Password.\n";
    }
    if (demo) {
        admin::DemoInstallation records(context.home, QDate::currentDate());
        const bool filled = records.make();
        if (!context.quiet) {
            for (const QString& file : records.created()) {
                context.err << "  made " << file << Qt::endl;
            }
        }
        if (!filled) {
            context.err << "pvardo-admin init: the demonstration records were not all made:" << Qt::endl;
            for (const QString& failure : records.failures()) {
                context.err << "  " << failure << Qt::endl;
            }
            return ExitCode::Failed;
        }
        for (const QString& note : records.kept()) {
            context.out << "Kept " << note << ".\n";
        }
        if (records.caseCount() > 0) {
            context.out << "Added the demonstration records of an invented town: " << records.caseCount()
                        << " cases with their parcels and " << records.meetingCount()
                        << " meetings around today.\n";
        }
    }
    context.out << "Start the program with: PVARDO_HOME=" << home << " pvardo\n";
    return ExitCode::Ok;
}

const CommandRegistration registration{{"init", "init [--demo] [--admin-password PW]",
    "make (or complete) an installation folder", true, &runInit}};

} // namespace

} // namespace pvardo::cli
