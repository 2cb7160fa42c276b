#include "common/ShellCopy.h"

#include "common/PromptService.h"
#include "common/ReplacingFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <sqlite3.h>
#include <sys/stat.h>

namespace pvardo {

namespace {

// How long a copy waits for another workstation that holds a database busy.
constexpr qint64 busyPatienceMs = 15000;

struct CopyRun
{
    int flags = 0;
    int result = ShellResult::Success;
    QString error;
    bool cancelled = false;

    void fail(int number, const QString& reason)
    {
        if (result == ShellResult::Success) {
            result = number;
            error = reason;
        }
    }
};

bool isDatabaseFile(const QString& path)
{
    return path.endsWith(QLatin1String(".db"), Qt::CaseInsensitive);
}

bool isJournalOfDatabase(const QFileInfo& info)
{
    const QString name = info.fileName();
    for (const char* ending : {"-journal", "-wal", "-shm"}) {
        const QString end = QString::fromLatin1(ending);
        if (name.endsWith(end, Qt::CaseInsensitive)) {
            const QString base = name.left(name.size() - end.size());
            return isDatabaseFile(base);
        }
    }
    return false;
}

bool copyPlainFile(const QString& from, const QString& to, QString* error)
{
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly)) {
        if (error) {
            *error = from + QStringLiteral(": ") + source.errorString();
        }
        return false;
    }
    ReplacingFile target(to);
    if (!target.open(QIODevice::WriteOnly)) {
        if (error) {
            *error = target.errorText();
        }
        return false;
    }
    char buffer[64 * 1024];
    for (;;) {
        const qint64 got = source.read(buffer, sizeof buffer);
        if (got < 0) {
            if (error) {
                *error = from + QStringLiteral(": ") + source.errorString();
            }
            target.cancel();
            return false;
        }
        if (got == 0) {
            break;
        }
        if (target.write(buffer, got) != got) {
            if (error) {
                *error = target.errorText();
            }
            target.cancel();
            return false;
        }
    }
    if (!target.commit()) {
        if (error) {
            *error = target.errorText();
        }
        return false;
    }
    return true;
}

bool askToReplace(const QString& target)
{
    Prompt prompt;
    prompt.title = QStringLiteral(" Confirm File Replace");
    prompt.text = QStringLiteral("This folder already contains a file named '") + QFileInfo(target).fileName()
        + QStringLiteral("'. Would you like to replace the existing file?");
    prompt.buttons = PromptButtons::YesNoCancel;
    prompt.icon = PromptIcon::Question;
    const PromptAnswer answer = prompts().message(prompt);
    return answer == PromptAnswer::Yes;
}

void copyOneFile(const QString& from, const QString& to, CopyRun& run)
{
    if (run.cancelled) {
        return;
    }
    if (QFileInfo::exists(to) && !(run.flags & ShellFlags::NoConfirmation)) {
        if (!askToReplace(to)) {
            run.cancelled = true;
            run.fail(ShellResult::Cancelled, QStringLiteral("Not replaced: ") + to);
            return;
        }
    }
    QString reason;
    bool ok = false;
    if (isDatabaseFile(from)) {
        ok = copyDatabaseFile(from, to, &reason);
        if (!ok && reason.startsWith(QLatin1String("not a database"))) {
            // A damaged file is still the office's: keep it in the copy as it is.
            ok = copyPlainFile(from, to, &reason);
        }
    } else {
        ok = copyPlainFile(from, to, &reason);
    }
    if (!ok) {
        run.fail(ShellResult::CopyFailed, reason);
    }
}

void copyFolder(const QString& from, const QString& to, CopyRun& run)
{
    if (!QDir().mkpath(to)) {
        run.fail(ShellResult::BadDestination, QStringLiteral("Cannot make the folder ") + to);
        return;
    }
    const QDir source(from);
    const QFileInfoList entries
        = source.entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
            QDir::Name | QDir::DirsFirst);
    for (const QFileInfo& entry : entries) {
        if (run.cancelled) {
            return;
        }
        const QString target = to + QLatin1Char('/') + entry.fileName();
        if (entry.isDir() && !entry.isSymLink()) {
            copyFolder(entry.absoluteFilePath(), target, run);
        } else if (entry.isFile()) {
            if (isJournalOfDatabase(entry)) {
                continue;
            }
            copyOneFile(entry.absoluteFilePath(), target, run);
        }
    }
}

struct DatabaseHandle
{
    sqlite3* db = nullptr;
    ~DatabaseHandle()
    {
        if (db) {
            sqlite3_close_v2(db);
        }
    }
};

} // namespace

bool copyDatabaseFile(const QString& from, const QString& to, QString* error)
{
    const auto setError = [error](const QString& text) {
        if (error) {
            *error = text;
        }
    };
    if (!QFileInfo(from).isFile()) {
        setError(from + QStringLiteral(": no such file"));
        return false;
    }
    DatabaseHandle source;
    // Opened for writing as any reader of the office is: a journal left by a
    // workstation that stopped half-way through a write is rolled back first,
    // so the copy holds the last committed state.
    if (sqlite3_open_v2(QFile::encodeName(from).constData(), &source.db, SQLITE_OPEN_READWRITE, nullptr)
        != SQLITE_OK) {
        setError(from + QStringLiteral(": ") + QString::fromUtf8(sqlite3_errmsg(source.db)));
        return false;
    }
    sqlite3_busy_timeout(source.db, 2000);

    // The copy goes to a temporary file beside the target and is renamed over
    // it only when complete.
    const QFileInfo targetInfo(to);
    const QString temporary = targetInfo.absolutePath() + QStringLiteral("/.") + targetInfo.fileName()
        + QStringLiteral(".copy-") + QString::number(QCoreApplication::applicationPid());
    QFile::remove(temporary);
    bool done = false;
    {
        DatabaseHandle target;
        if (sqlite3_open_v2(QFile::encodeName(temporary).constData(), &target.db,
                SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr)
            != SQLITE_OK) {
            setError(to + QStringLiteral(": ") + QString::fromUtf8(sqlite3_errmsg(target.db)));
            QFile::remove(temporary);
            return false;
        }
        sqlite3_backup* backup = sqlite3_backup_init(target.db, "main", source.db, "main");
        if (!backup) {
            setError(to + QStringLiteral(": ") + QString::fromUtf8(sqlite3_errmsg(target.db)));
            sqlite3_close_v2(target.db);
            target.db = nullptr;
            QFile::remove(temporary);
            return false;
        }
        QElapsedTimer patience;
        patience.start();
        int rc = SQLITE_OK;
        for (;;) {
            // All pages in one step: the copy is one consistent reading.
            rc = sqlite3_backup_step(backup, -1);
            if ((rc == SQLITE_BUSY || rc == SQLITE_LOCKED) && patience.elapsed() < busyPatienceMs) {
                QThread::msleep(50);
                continue;
            }
            break;
        }
        sqlite3_backup_finish(backup);
        if (rc == SQLITE_DONE) {
            done = true;
        } else if (rc == SQLITE_NOTADB) {
            setError(QStringLiteral("not a database: ") + from);
        } else if (rc == SQLITE_BUSY || rc == SQLITE_LOCKED) {
            setError(from + QStringLiteral(": another workstation keeps the file busy"));
        } else {
            setError(from + QStringLiteral(": ") + QString::fromUtf8(sqlite3_errstr(rc)));
        }
    }
    if (!done) {
        QFile::remove(temporary);
        return false;
    }
    if (QFileInfo::exists(to) && !QFile::remove(to)) {
        setError(to + QStringLiteral(": cannot be replaced"));
        QFile::remove(temporary);
        return false;
    }
    // SQLite makes a new file readable by all and writable by its owner only;
    // a copy in a shared folder must be writable by the office's group too.
    ::chmod(QFile::encodeName(temporary).constData(), static_cast<mode_t>(newFileMode()));
    if (!QFile::rename(temporary, to)) {
        setError(to + QStringLiteral(": cannot be written"));
        QFile::remove(temporary);
        return false;
    }
    return true;
}

int ShellCopy(ShellOperation operation, const QString& from, const QString& to, int flags, QString* error)
{
    CopyRun run;
    run.flags = flags;
    if (operation != ShellOperation::Copy) {
        run.fail(ShellResult::Unsupported, QStringLiteral("Only copying is supported."));
    } else if (from.isEmpty() || !QFileInfo::exists(from)) {
        run.fail(ShellResult::SourceMissing, QStringLiteral("Nothing to copy at ") + from);
    } else if (to.isEmpty()) {
        run.fail(ShellResult::BadDestination, QStringLiteral("No destination"));
    } else {
        const QFileInfo source(from);
        const QFileInfo destination(to);
        QString target = to;
        if (destination.isDir()) {
            target = QDir(to).filePath(source.fileName());
        } else if (!QDir().mkpath(destination.absolutePath())) {
            run.fail(ShellResult::BadDestination,
                QStringLiteral("Cannot make the folder ") + destination.absolutePath());
        }
        if (run.result == ShellResult::Success) {
            if (QDir::cleanPath(source.absoluteFilePath())
                    == QDir::cleanPath(QFileInfo(target).absoluteFilePath())
                || (source.isDir()
                    && QDir::cleanPath(QFileInfo(target).absoluteFilePath())
                           .startsWith(QDir::cleanPath(source.absoluteFilePath()) + QLatin1Char('/')))) {
                run.fail(
                    ShellResult::BadDestination, QStringLiteral("The destination is inside the source."));
            } else if (source.isDir()) {
                copyFolder(source.absoluteFilePath(), target, run);
            } else {
                copyOneFile(source.absoluteFilePath(), target, run);
            }
        }
    }
    if (error) {
        *error = run.error;
    }
    return run.result;
}

} // namespace pvardo
