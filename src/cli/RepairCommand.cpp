// pvardo-admin --home DIR repair [--table NAME]: SQLite's integrity check of
// each database file (or of the one holding NAME). A damaged file is
// recovered into a new one with every row SQLite can still read; the damaged
// file stays beside it under a dated name, and the rows before and after are
// reported. Refused while the program is open on the installation.
#include "app/InstanceGuard.h"
#include "cli/AdminCommand.h"
#include "cli/InstallationFolders.h"
#include "store/Catalogue.h"
#include "store/DatabaseRepair.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

namespace pvardo::cli {

namespace {

constexpr const char* usage = "usage: pvardo-admin --home DIR repair [--table NAME]";

QString rowsText(qint64 rows)
{
    return rows < 0 ? QStringLiteral("rows that cannot be counted") : QString::number(rows) + QStringLiteral(" rows");
}

// The tables of a file, to count a whole file's rows.
QString tableOf(const QString& fileName)
{
    for (const store::TableDef& table : store::allTables()) {
        if (QString::fromLatin1(table.fileName).compare(fileName, Qt::CaseInsensitive) == 0) {
            return QString::fromLatin1(table.tableName);
        }
    }
    return {};
}

int runRepair(CommandContext& context)
{
    QStringList args = context.args;
    QString wantedTable;
    if (args.size() == 2 && args.first() == QLatin1String("--table")) {
        wantedTable = args.at(1);
        args.clear();
    }
    if (!args.isEmpty()) {
        context.err << usage << Qt::endl;
        return ExitCode::BadUsage;
    }
    const QString databases = usableDatabaseFolder(context, "repair");
    if (databases.isEmpty()) {
        return ExitCode::Failed;
    }
    QStringList files;
    if (!wantedTable.isEmpty()) {
        for (const store::TableDef& table : store::allTables()) {
            if (QString::fromLatin1(table.tableName).compare(wantedTable, Qt::CaseInsensitive) == 0) {
                files << QString::fromLatin1(table.fileName);
            }
        }
        if (files.isEmpty()) {
            context.err << "pvardo-admin repair: no table is named " << wantedTable << Qt::endl;
            return ExitCode::BadUsage;
        }
    } else {
        files = QDir(databases).entryList({QStringLiteral("*.db")}, QDir::Files, QDir::Name);
        if (files.isEmpty()) {
            context.err << "pvardo-admin repair: the database folder " << QDir::toNativeSeparators(databases)
                        << " holds no database file" << Qt::endl;
            return ExitCode::Failed;
        }
    }

    // While the repair runs it holds the program's own lock, so the program
    // cannot start on this installation meanwhile.
    app::InstanceGuard guard(context.home);
    if (!guard.acquire()) {
        context.err << "pvardo-admin repair: the program is open on this installation; close it first. "
                       "Nothing was changed."
                    << Qt::endl;
        return ExitCode::Failed;
    }

    int code = ExitCode::Ok;
    const QDateTime now = QDateTime::currentDateTime();
    for (const QString& name : std::as_const(files)) {
        const QString file = QDir(databases).filePath(name);
        if (!QFileInfo(file).isFile()) {
            context.err << name << ": missing" << Qt::endl;
            code = ExitCode::Failed;
            continue;
        }
        const QString problems = store::integrityProblems(file);
        if (problems.isEmpty()) {
            const QString table = tableOf(name);
            context.out << name << ": whole"
                        << (table.isEmpty() ? QString() : QStringLiteral(", ") + rowsText(store::countRows(file, table)))
                        << Qt::endl;
            continue;
        }
        const store::RecoveryResult result = store::recoverDatabaseFile(file, now);
        if (!result.done) {
            context.err << name << ": damaged (" << problems << ") and not recovered: " << result.error
                        << "; the file is as it was" << Qt::endl;
            code = ExitCode::Failed;
            continue;
        }
        context.out << name << ": damaged (" << problems.left(200) << "); " << rowsText(result.rowsBefore)
                    << " before, " << result.rowsAfter << " rows recovered into a new file";
        if (result.rowsRefused > 0) {
            context.out << " (" << result.rowsRefused << " repeated keys left out)";
        }
        context.out << "; the damaged file is kept as " << QFileInfo(result.keptAs).fileName() << Qt::endl;
    }
    return code;
}

const CommandRegistration registration{{"repair", "repair [--table NAME]",
    "check each database file and recover a damaged one into a new file", true, &runRepair}};

} // namespace

} // namespace pvardo::cli
