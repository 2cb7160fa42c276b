#include "admin/Preferences.h"

#include "common/BoardMembers.h"
#include "common/NumberText.h"
#include "common/ReplacingFile.h"
#include "common/Session.h"
#include "common/Settings.h"
#include "common/ShellCopy.h"
#include "common/TextDamage.h"
#include "common/TextFiles.h"
#include "store/DatabaseLocation.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <memory>
#include <optional>
#include <vector>

namespace pvardo::admin {

namespace {

QString numberText(double value)
{
    return QString::number(value, 'g', 6);
}

QByteArray linesBytes(const QStringList& lines)
{
    QByteArray bytes;
    for (const QString& line : lines) {
        bytes += line.toUtf8();
        bytes += '\n';
    }
    return bytes;
}

// One file of a save: its new bytes, and its old ones to put back.
struct Staged
{
    QString path;
    QByteArray bytes;
    bool existed = false;
    QByteArray before;
    std::unique_ptr<ReplacingFile> file;
};

void putBack(const Staged& staged)
{
    if (staged.existed) {
        replaceFile(staged.path, staged.before);
    } else {
        QFile::remove(staged.path);
    }
}

} // namespace

Preferences loadPreferences(const Session& state)
{
    Preferences p;
    p.masterDatabaseFolder = state.MasterDatabaseFolder;
    p.municipalityName = state.MunicipalityName;
    p.municipalityAddress = state.MunicipalityAddress;
    p.municipalityCity = state.MunicipalityCity;
    p.municipalityState = state.MunicipalityState;
    p.municipalityZip = state.MunicipalityZip;
    p.municipalityPhone = state.MunicipalityPhone;
    p.backupMode = state.BackupMode;
    p.shareParcelStore = state.ShareParcelStore;
    p.editorFontName = state.EditorFontName;
    // The session works at size 9 whatever the file says; the screen shows,
    // and a save keeps, the size the file holds.
    p.editorFontSize = numberText(state.EditorFontSize);
    // Each file is read whole once; a damaged one is named and gives nothing.
    auto read = [&p](const QString& path) -> std::optional<QStringList> {
        bool damaged = false;
        std::optional<QStringList> lines = readCheckedTextLines(path, &damaged);
        if (damaged) {
            p.damagedFiles << path;
        }
        return lines;
    };
    if (const auto ini = read(joinPath(state.ProgramFolder, QStringLiteral("\\PVardo.ini")));
        ini && ini->size() > 9 && LeadingNumber(ini->at(9)) > 0) {
        p.editorFontSize = numberText(LeadingNumber(ini->at(9)));
    }

    if (const auto def = read(joinPath(state.ProgramFolder, QStringLiteral("\\def.txt")))) {
        p.backupFolder = def->value(1).trimmed();
        p.onlineCodesLink = def->value(2);
        p.localCodesLink = def->value(3);
    }
    if (p.backupFolder.isEmpty()) {
        // The root of the program's drive: on this system the first folder
        // of its path, as a mounted disk usually is.
        const QString program = QDir::cleanPath(state.ProgramFolder);
        const qsizetype cut = program.indexOf(QLatin1Char('/'), 1);
        p.backupFolder = (cut < 0 ? QString() : program.left(cut)) + QStringLiteral("/backup");
    }
    const QString members = BoardMembers::fileOf(state.DatabaseFolder);
    read(members);
    if (!p.damagedFiles.contains(members)) {
        p.boardMembers = BoardMembers::read(state.DatabaseFolder);
    }
    const QString pnbFile = joinPath(state.DatabaseFolder, QStringLiteral("\\pnb.txt"));
    const auto pnb = read(pnbFile);
    const QString base = pnb && !pnb->isEmpty() ? pnb->constFirst() : QString();
    // A damaged file gives the default: the computer decides.
    p.letComputerDecide = p.damagedFiles.contains(pnbFile) || base.trimmed() == QLatin1String("-1");
    if (!p.letComputerDecide) {
        p.beginNumbering = base;
    }
    if (const auto browser = read(joinPath(state.ProgramFolder, QStringLiteral("\\browser.txt")))) {
        p.localGisLink = browser->value(0);
        p.useDefaultBrowser = browser->size() > 1 && browser->at(1) != QLatin1String("F");
    }
    return p;
}

QString damagedSettingsMessage(const QStringList& files)
{
    if (files.isEmpty()) {
        return {};
    }
    QStringList shown;
    for (const QString& file : files) {
        shown << QStringLiteral("  ") + QDir::toNativeSeparators(file);
    }
    return (files.size() == 1 ? QStringLiteral("This settings file is damaged (error 3343): it holds bytes no "
                                               "settings file holds, as a failing disk leaves them:\n")
                              : QStringLiteral("These settings files are damaged (error 3343): they hold bytes no "
                                               "settings file holds, as a failing disk leaves them:\n"))
        + shown.join(QLatin1Char('\n'))
        + QStringLiteral("\n\nTheir settings are shown as the defaults. Check every tab and click \" Save "
                         "selected settings\" to write the files anew, or close the program and restore them "
                         "from the last backup.");
}

QStringList settingsFileLines(const Preferences& p)
{
    QStringList lines = Settings::defaultLines(p.masterDatabaseFolder, p.shareParcelStore);
    lines[1] = p.municipalityName;
    lines[2] = p.municipalityAddress;
    lines[3] = p.municipalityCity;
    lines[4] = p.municipalityState;
    lines[5] = p.municipalityZip;
    lines[6] = p.municipalityPhone;
    lines[7] = QString::number(p.backupMode);
    lines[9] = p.editorFontSize;
    lines[10] = p.editorFontName;
    return lines;
}

QString databaseFolderAfterSave(const Session& state, const Preferences& preferences, bool switchFolder)
{
    if (!switchFolder) {
        return state.DatabaseFolder;
    }
    const QString wanted = preferences.masterDatabaseFolder.trimmed();
    if (store::holdsAnyDatabase(wanted)) {
        return wanted;
    }
    return joinPath(state.ProgramFolder, QStringLiteral("databases"));
}

bool copyDatabaseFolder(const QString& from, const QString& to, QString* error)
{
    const QString source = QDir::cleanPath(QFileInfo(from).absoluteFilePath());
    const QString target = QDir::cleanPath(QFileInfo(to).absoluteFilePath());
    auto fail = [error](const QString& reason) {
        if (error) {
            *error = reason;
        }
        return false;
    };
    if (target == source || target.startsWith(source + QLatin1Char('/'))) {
        return fail(QStringLiteral("%1 lies inside the database folder %2")
                        .arg(QDir::toNativeSeparators(target), QDir::toNativeSeparators(source)));
    }
    const bool made = !QFileInfo::exists(target);
    if (made && !QDir().mkpath(target)) {
        return fail(QStringLiteral("the folder %1 cannot be made").arg(QDir::toNativeSeparators(target)));
    }
    if (!QFileInfo(target).isDir()) {
        return fail(QStringLiteral("%1 is not a folder").arg(QDir::toNativeSeparators(target)));
    }
    QStringList copied;
    const QFileInfoList entries
        = QDir(source).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    for (const QFileInfo& entry : entries) {
        const QString name = entry.fileName();
        // The journals belong to the open files; the online backup needs none.
        if (name.endsWith(QLatin1String("-journal")) || name.endsWith(QLatin1String("-wal"))
            || name.endsWith(QLatin1String("-shm"))) {
            continue;
        }
        const QString into = target + QLatin1Char('/') + name;
        const bool isNew = !QFileInfo::exists(into);
        QString why;
        const int result = ShellCopy(ShellOperation::Copy, entry.filePath(), target,
            ShellFlags::NoConfirmation | ShellFlags::NoConfirmMkdir, &why);
        if (isNew) {
            copied << into;
        }
        if (result != ShellResult::Success) {
            if (made) {
                QDir(target).removeRecursively();
            } else {
                for (const QString& path : std::as_const(copied)) {
                    if (QFileInfo(path).isDir()) {
                        QDir(path).removeRecursively();
                    } else {
                        QFile::remove(path);
                    }
                }
            }
            return fail(why.isEmpty() ? QStringLiteral("%1 could not be copied").arg(name) : why);
        }
    }
    return true;
}

bool copyMissingForms(const QString& from, const QString& to, QString* error)
{
    const QDir source(from);
    if (!source.exists()) {
        if (error) {
            *error = QStringLiteral("the forms folder %1 is not there").arg(QDir::toNativeSeparators(from));
        }
        return false;
    }
    QDirIterator it(from, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString file = it.next();
        const QString target = QDir(to).filePath(source.relativeFilePath(file));
        if (QFileInfo::exists(target)) {
            continue;
        }
        if (!QDir().mkpath(QFileInfo(target).absolutePath()) || !QFile::copy(file, target)) {
            if (error) {
                *error = QStringLiteral("%1 could not be copied to %2")
                             .arg(QDir::toNativeSeparators(file), QDir::toNativeSeparators(target));
            }
            return false;
        }
    }
    return true;
}

bool writePreferences(const Session& state, const Preferences& p, const QString& databaseFolderAfter,
    const QString& listsFolder, QString* error)
{
    const QString lists = listsFolder.isEmpty() ? state.DatabaseFolder : listsFolder;
    std::vector<Staged> files;
    auto stage = [&files](const QString& path, const QStringList& lines) {
        Staged staged;
        staged.path = path;
        staged.bytes = linesBytes(lines);
        files.push_back(std::move(staged));
    };
    stage(joinPath(state.ProgramFolder, QStringLiteral("\\PVardo.ini")), settingsFileLines(p));
    stage(joinPath(lists, QStringLiteral("\\pnb.txt")),
        {p.letComputerDecide ? QStringLiteral("-1") : p.beginNumbering.trimmed()});
    stage(BoardMembers::fileOf(lists), p.boardMembers);
    stage(joinPath(state.ProgramFolder, QStringLiteral("\\def.txt")),
        {databaseFolderAfter, p.backupFolder.trimmed(), p.onlineCodesLink.trimmed(),
            p.localCodesLink.trimmed()});
    const QString browser = joinPath(state.ProgramFolder, QStringLiteral("\\browser.txt"));
    if (!p.localGisLink.trimmed().isEmpty() || p.damagedFiles.contains(browser)) {
        stage(browser,
            {p.localGisLink.trimmed(), p.useDefaultBrowser ? QStringLiteral("T") : QStringLiteral("F")});
    }

    auto fail = [error](const QString& reason) {
        if (error) {
            *error = reason + QStringLiteral(". No settings were changed.");
        }
        return false;
    };

    // Every file is written beside its name before any is put in place.
    for (Staged& staged : files) {
        QFile old(staged.path);
        staged.existed = old.exists();
        if (staged.existed) {
            if (!old.open(QIODevice::ReadOnly)) {
                return fail(QStringLiteral("%1 cannot be read: %2")
                                .arg(QDir::toNativeSeparators(staged.path), old.errorString()));
            }
            staged.before = old.readAll();
        }
        staged.file = std::make_unique<ReplacingFile>(staged.path);
        if (!staged.file->open(QIODevice::WriteOnly)
            || staged.file->write(staged.bytes) != staged.bytes.size()
            || !staged.file->errorText().isEmpty()) {
            const QString reason
                = staged.file->errorText().isEmpty() ? staged.file->errorString() : staged.file->errorText();
            return fail(reason);
        }
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!files[i].file->commit()) {
            const QString reason = files[i].file->errorText();
            for (std::size_t j = 0; j < i; ++j) {
                putBack(files[j]);
            }
            return fail(reason);
        }
    }
    return true;
}

} // namespace pvardo::admin
