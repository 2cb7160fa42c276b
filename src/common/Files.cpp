#include "common/Files.h"

#include "common/DateText.h"
#include "common/PromptService.h"
#include "common/Session.h"

#include <QDir>
#include <QFile>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace pvardo {

namespace {

int openForReading(const QByteArray& nativePath)
{
    // Non-blocking, so that a pipe or a device under the name never holds the
    // program.
    const int fd = ::open(nativePath.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0) {
        return errno;
    }
    ::close(fd);
    return 0;
}

} // namespace

FileError fileErrorOf(int systemError)
{
    switch (systemError) {
    case 0:
        return {0, QString()};
    case ENOENT:
        return {53, QStringLiteral("File not found")};
    case ENOTDIR:
    case ELOOP:
        return {76, QStringLiteral("Path not found")};
    case ENXIO:
    case ENODEV:
        return {68, QStringLiteral("Device unavailable")};
    case ETXTBSY:
    case EBUSY:
    case EAGAIN:
        return {70, QStringLiteral("Permission denied")};
    case EACCES:
    case EPERM:
        return {75, QStringLiteral("Path/File access error")};
    case ENOMEDIUM:
    case ESTALE:
    case ENOTCONN:
    case EHOSTDOWN:
    case EHOSTUNREACH:
    case ETIMEDOUT:
        return {71, QStringLiteral("Disk not ready")};
    case ENAMETOOLONG:
    case EILSEQ:
    case EINVAL:
        return {52, QStringLiteral("Bad file name or number")};
    case EIO:
        return {57, QStringLiteral("Device I/O error")};
    case EMFILE:
    case ENFILE:
        return {67, QStringLiteral("Too many files")};
    default:
        return {1000 + systemError, QString::fromLocal8Bit(std::strerror(systemError))};
    }
}

namespace detail {

bool FileExistsWith(const QString& path, const OpenProbe& probe)
{
    if (path.trimmed().isEmpty()) {
        return false;
    }
    for (;;) {
        // A NUL inside the name is a name the system cannot take.
        const int systemError = path.contains(QChar(u'\0')) ? EINVAL : probe(QFile::encodeName(path));
        if (systemError == 0) {
            return true;
        }
        const FileError error = fileErrorOf(systemError);
        Prompt prompt;
        prompt.title = QStringLiteral("Disk Error");
        prompt.icon = PromptIcon::Exclamation;
        prompt.buttons = PromptButtons::Ok;
        prompt.text = QStringLiteral("Unexpected error: ") + QString::number(error.number) + QLatin1Char(' ')
            + error.description;
        switch (error.number) {
        case 70:
        case 75:
            // There, but held or closed to us.
            return true;
        case 53:
        case 68:
        case 76:
            return false;
        case 71:
            prompt.text = QStringLiteral("Make sure the disk is in the drive.");
            prompt.buttons = PromptButtons::OkCancel;
            break;
        case 52:
            prompt.text
                = QStringLiteral("The name ") + CutAtNul(path) + QStringLiteral(" is not a valid name.");
            break;
        default:
            break;
        }
        const PromptAnswer answer = prompts().message(prompt);
        if (prompt.buttons == PromptButtons::OkCancel && answer == PromptAnswer::Ok) {
            continue;
        }
        session().StopFlag = true;
        return false;
    }
}

} // namespace detail

bool FileExists(const QString& path)
{
    return detail::FileExistsWith(path, openForReading);
}

void KillIfPresent(const QString& path)
{
    if (FileExists(path)) {
        QFile::remove(path);
    }
    WaitSeconds(1);
}

void RenameQuietly(const QString& from, const QString& to)
{
    if (from.isEmpty() || to.isEmpty()) {
        return;
    }
    // QFile::rename refuses an existing target, as the office's rename did.
    QFile::rename(from, to);
}

QString TempPath()
{
    QString path = CutAtNul(QDir::tempPath());
    while (path.size() > 1 && path.endsWith(QLatin1Char('/'))) {
        path.chop(1);
    }
    return path;
}

} // namespace pvardo
