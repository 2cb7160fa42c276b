#include "store/DatabaseLocation.h"

#include "common/Files.h"
#include "common/PromptService.h"
#include "common/ReplacingFile.h"
#include "common/Session.h"
#include "common/TextFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace pvardo::store {

namespace {

const QString kProvider = QStringLiteral("PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=");

// The seeded files in the order they are checked.
const char* const kSeededInOrder[] = {"meeting.db", "pbseqra.db", "pbagency.db", "pbreview.db",
                                      "db5.db",     "db6.db",     "db7.db",      "sbl.db"};

// Copies a seed into place whole: first under a temporary name, then renamed.
bool copySeed(const QString& seed, const QString& target, QString* reason)
{
    if (!QFileInfo::exists(seed)) {
        *reason = QStringLiteral("the seed %1 is missing").arg(seed);
        return false;
    }
    const QString partial = target + QStringLiteral(".part");
    QFile::remove(partial);
    if (!QFile::copy(seed, partial)) {
        *reason = QStringLiteral("cannot write %1").arg(partial);
        return false;
    }
    // The seed's own modes may be read-only; the copy gets those of a new
    // file, so the office's group can write it when the umask allows.
    ::chmod(QFile::encodeName(partial).constData(), static_cast<mode_t>(newFileMode()));
    if (!QFile::rename(partial, target)) {
        QFile::remove(partial);
        *reason = QStringLiteral("cannot put %1 in place").arg(target);
        return false;
    }
    return true;
}

} // namespace

bool holdsAnyDatabase(const QString& folder)
{
    if (folder.trimmed().isEmpty()) {
        return false;
    }
    const QDir dir(folder);
    return dir.exists() && !dir.entryList({QStringLiteral("*.db")}, QDir::Files).isEmpty();
}

DatabaseFolderChoice chooseDatabaseFolder(const QString& programFolder)
{
    DatabaseFolderChoice choice;
    const QString fallback = joinPath(programFolder, QStringLiteral("\\databases"));
    choice.named = fallback;
    if (const auto lines = readTextLines(joinPath(programFolder, QStringLiteral("\\PVardo.ini")));
        lines && !lines->isEmpty() && !lines->constFirst().trimmed().isEmpty()) {
        choice.named = lines->constFirst();
    }
    choice.folder = choice.named;
    if (!holdsAnyDatabase(choice.named)) {
        choice.namedIsMissing = !QFileInfo(choice.named).isDir();
        choice.namedIsEmpty = !choice.namedIsMissing;
        choice.folder = fallback;
    }
    choice.holdsDatabases = holdsAnyDatabase(choice.folder);
    return choice;
}

QString databaseFolderProblem(const DatabaseFolderChoice& choice)
{
    const QString named = QDir::toNativeSeparators(choice.named);
    const QString folder = QDir::toNativeSeparators(choice.folder);
    if (!choice.holdsDatabases) {
        if (QDir::cleanPath(choice.named) != QDir::cleanPath(choice.folder)) {
            return QStringLiteral("The database folder %1 named in PVardo.ini %2, and the installation's own "
                                  "folder %3 holds no database either. If the databases are on a shared folder, "
                                  "make sure it is connected. Nothing was written.")
                .arg(named,
                     choice.namedIsMissing ? QStringLiteral("is not there") : QStringLiteral("holds no database"),
                     folder);
        }
        return QStringLiteral("The database folder %1 %2. If the databases are on a shared folder, make sure it "
                              "is connected; a new installation is made with init. Nothing was written.")
            .arg(named, choice.namedIsMissing ? QStringLiteral("is not there") : QStringLiteral("holds no database"));
    }
    return {};
}

QString BuildConnectionString(const QString& path)
{
    return kProvider + path + QLatin1Char(';');
}

QString dataSourceOf(const QString& connectionString)
{
    const QString key = QStringLiteral("Data Source=");
    const qsizetype at = connectionString.indexOf(key, 0, Qt::CaseInsensitive);
    if (at < 0) {
        return {};
    }
    const qsizetype start = at + key.size();
    const qsizetype end = connectionString.indexOf(QLatin1Char(';'), start);
    return connectionString.mid(start, end < 0 ? -1 : end - start).trimmed();
}

QString databaseFile(const QString& folder, const QString& officeName)
{
    QString name = officeName;
    if (name.endsWith(QLatin1String(".mdb"), Qt::CaseInsensitive)) {
        name.chop(4);
        name += QStringLiteral(".db");
    }
    return joinPath(folder, name);
}

QString formsFolderFor(const QString& databaseFolder, const QString& programFolder)
{
    const qsizetype cut = databaseFolder.lastIndexOf(QLatin1Char('/'));
    if (cut < 0) {
        return joinPath(programFolder, QStringLiteral("forms"));
    }
    return databaseFolder.left(cut) + QStringLiteral("/forms");
}

QString unreachableFolderMessage(const QString& namedFolder, const QString& programFolder)
{
    const QString own = joinPath(programFolder, QStringLiteral("\\databases"));
    if (namedFolder.trimmed().isEmpty() || QDir::cleanPath(namedFolder) == QDir::cleanPath(own)
        || holdsAnyDatabase(namedFolder)) {
        return {};
    }
    const bool missing = !QFileInfo(namedFolder).isDir();
    return QStringLiteral("The database folder %1, named in the program's settings, %2.\n\n"
                          "If the databases are on a shared folder, make sure it is connected, then start the "
                          "program again. The program does not use its own folder %3 instead, so that no work goes "
                          "into databases the other workstations do not see. Nothing was written.")
        .arg(QDir::toNativeSeparators(namedFolder),
             missing ? QStringLiteral("is not there") : QStringLiteral("holds no database"),
             QDir::toNativeSeparators(own));
}

QString missingDatabasesMessage()
{
    return QStringLiteral("One or more database pointed by your preferences cannot be located. The program will use "
                          "the default location, or will set an empty database in its place instead. No further "
                          "action on your part is necessary.")
           + QStringLiteral("\n\n") + QStringLiteral("You should set your database location in Preferences from the Admin menu.");
}

CheckResult CheckDatabases(Session& session)
{
    CheckResult result;
    if (!holdsAnyDatabase(session.DatabaseFolder)) {
        session.DatabaseFolder = joinPath(session.ProgramFolder, QStringLiteral("databases"));
        QDir().mkpath(session.DatabaseFolder);
        result.missing = true;
        result.fellBackToDefault = true;
    }
    const QString seeds = joinPath(session.ProgramFolder, QStringLiteral("wrk"));
    for (const char* file : kSeededInOrder) {
        const QString name = QString::fromLatin1(file);
        const QString target = joinPath(session.DatabaseFolder, name);
        if (FileExists(target)) {
            continue;
        }
        result.missing = true;
        QString reason;
        if (copySeed(joinPath(seeds, name), target, &reason)) {
            result.seeded.append(name);
        } else {
            result.failed.append(name + QStringLiteral(": ") + reason);
        }
    }

    session.ParcelStoreVersion = 13;
    if (const auto lines = readTextLines(joinPath(session.DatabaseFolder, QStringLiteral("sblversion.txt")));
        lines && !lines->isEmpty()) {
        // The first item of the line, read as a number; no number reads as 0.
        const QString item = lines->first().trimmed().section(QLatin1Char(','), 0, 0).trimmed();
        bool ok = false;
        const int version = item.toInt(&ok);
        session.ParcelStoreVersion = ok ? version : 0;
    }

    if (result.missing) {
        showMessage(missingDatabasesMessage());
    }
    session.FormsFolder = formsFolderFor(session.DatabaseFolder, session.ProgramFolder);
    return result;
}

} // namespace pvardo::store
