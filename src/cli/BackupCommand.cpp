// pvardo-admin --home DIR backup DEST [--keep N]: a copy of the database folder
// into a new dated folder of DEST, for a nightly timer. Each database file is
// copied through SQLite's online backup, so a copy taken while workstations
// write is consistent file by file. With --keep N only the newest N dated
// copies stay. One line says what happened; the exit status says whether.
#include "cli/AdminCommand.h"
#include "cli/InstallationFolders.h"
#include "common/ShellCopy.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace pvardo::cli {

namespace {

constexpr const char* usage = "usage: pvardo-admin --home DIR backup DEST [--keep N]";

const QRegularExpression& datedName()
{
    static const QRegularExpression pattern(QStringLiteral("^pvardo-\\d{4}-\\d\\d-\\d\\d-\\d{6}(-\\d+)?$"));
    return pattern;
}

// A new dated folder in the destination; empty with a reason when it cannot be made.
QString makeDatedFolder(const QString& destination, QString* why)
{
    const QString stamp
        = QStringLiteral("pvardo-") + QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd-HHmmss"));
    QDir folder(destination);
    // A second copy of the same second comes after every one made before it
    // ("-2", "-3"), even when an earlier one has been removed meanwhile.
    int last = 0;
    const QStringList sameSecond = folder.entryList({stamp + QLatin1Char('*')}, QDir::Dirs);
    for (const QString& name : sameSecond) {
        bool number = false;
        const int n = name == stamp ? 1 : name.mid(stamp.size() + 1).toInt(&number);
        if (name == stamp || number) {
            last = std::max(last, n);
        }
    }
    const QString name = last == 0 ? stamp : stamp + QLatin1Char('-') + QString::number(last + 1);
    if (!folder.mkdir(name)) {
        *why = QStringLiteral("a folder cannot be made in ") + QDir::toNativeSeparators(destination);
        return {};
    }
    return folder.filePath(name);
}

// Removes all but the newest `keep` dated copies; the names order by date.
QStringList removeOldCopies(const QString& destination, int keep)
{
    QStringList dated;
    const QStringList names = QDir(destination).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& name : names) {
        if (datedName().match(name).hasMatch()) {
            dated << name;
        }
    }
    // Same second copies ("-2") sort after their first, as they were made.
    std::sort(dated.begin(), dated.end(), [](const QString& a, const QString& b) {
        const QString dayA = a.left(24);
        const QString dayB = b.left(24);
        if (dayA != dayB) {
            return dayA < dayB;
        }
        return a.size() != b.size() ? a.size() < b.size() : a < b;
    });
    QStringList removed;
    while (dated.size() > keep) {
        const QString name = dated.takeFirst();
        if (QDir(QDir(destination).filePath(name)).removeRecursively()) {
            removed << name;
        }
    }
    return removed;
}

int runBackup(CommandContext& context)
{
    QStringList args = context.args;
    int keep = 0;
    const qsizetype keepAt = args.indexOf(QStringLiteral("--keep"));
    if (keepAt >= 0) {
        bool number = false;
        keep = keepAt + 1 < args.size() ? args.at(keepAt + 1).toInt(&number) : 0;
        if (!number || keep < 1) {
            context.err << "pvardo-admin backup: --keep needs a number of copies, 1 or more" << Qt::endl;
            return ExitCode::BadUsage;
        }
        args.remove(keepAt, 2);
    }
    if (args.size() != 1 || args.first().startsWith(QLatin1String("--"))) {
        context.err << usage << Qt::endl;
        return ExitCode::BadUsage;
    }
    const QString destination = QDir::cleanPath(QFileInfo(args.first()).absoluteFilePath());
    const QString databases = usableDatabaseFolder(context, "backup");
    if (databases.isEmpty()) {
        return ExitCode::Failed;
    }
    const auto fail = [&context](const QString& why) {
        context.err << "pvardo-admin backup: failed: " << why << Qt::endl;
        return ExitCode::Failed;
    };

    const QStringList files = QDir(databases).entryList({QStringLiteral("*.db")}, QDir::Files);
    if (files.isEmpty()) {
        return fail(QStringLiteral("the database folder ") + QDir::toNativeSeparators(databases)
            + QStringLiteral(" holds no database file; nothing was copied"));
    }
    const QFileInfo target(destination);
    if (!target.exists()) {
        return fail(QStringLiteral("the destination ") + QDir::toNativeSeparators(destination)
            + QStringLiteral(" does not exist (is its drive mounted?)"));
    }
    if (!target.isDir()) {
        return fail(QStringLiteral("the destination ") + QDir::toNativeSeparators(destination)
            + QStringLiteral(" is a file, not a folder"));
    }
    QString why;
    const QString dated = makeDatedFolder(destination, &why);
    if (dated.isEmpty()) {
        return fail(why + QStringLiteral(" (is it read-only?)"));
    }
    const QString copy = dated + QStringLiteral("/databases");
    const int result = ShellCopy(ShellOperation::Copy, databases, copy,
        ShellFlags::NoConfirmation | ShellFlags::NoConfirmMkdir, &why);
    if (result != ShellResult::Success) {
        // A copy with a file missing is no copy: it must not count among those kept.
        QDir(dated).removeRecursively();
        return fail(why.isEmpty() ? QStringLiteral("the copy did not complete") : why);
    }
    QString line = QStringLiteral("Copied ") + QString::number(files.size())
        + QStringLiteral(" database files to ") + QDir::toNativeSeparators(copy);
    if (keep > 0) {
        const QStringList removed = removeOldCopies(destination, keep);
        line += QStringLiteral("; kept the newest ") + QString::number(keep) + QStringLiteral(", removed ")
            + QString::number(removed.size());
    }
    context.out << line << Qt::endl;
    return ExitCode::Ok;
}

const CommandRegistration registration{{"backup", "backup DEST [--keep N]",
    "copy the databases, consistently, into a new dated folder of DEST", true, &runBackup}};

} // namespace

} // namespace pvardo::cli
