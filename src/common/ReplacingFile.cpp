#include "common/ReplacingFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pvardo {

namespace {

// The umask, read without changing it (another thread may be creating a
// file); the kernel reports it in /proc since 4.7.
mode_t currentUmask()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : status.readAll().split('\n')) {
            if (line.startsWith("Umask:")) {
                bool ok = false;
                const uint mask = line.mid(6).trimmed().toUInt(&ok, 8);
                if (ok) {
                    return static_cast<mode_t>(mask);
                }
            }
        }
    }
    const mode_t mask = ::umask(022);
    ::umask(mask);
    return mask;
}

bool syncFolderOf(const QString& path)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    const int fd = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) {
        return false;
    }
    // Some file systems (network shares) refuse fsync on a folder; the rename
    // itself has been made, so that is not a failure.
    ::fsync(fd);
    ::close(fd);
    return true;
}

} // namespace

int newFileMode()
{
    return 0666 & ~static_cast<int>(currentUmask());
}

int newFolderMode()
{
    return 0777 & ~static_cast<int>(currentUmask());
}

QString writeFailureText(int systemError)
{
    switch (systemError) {
    case ENOSPC:
    case EDQUOT:
        return QStringLiteral("the disk is full");
    case EFBIG:
        return QStringLiteral("the file is larger than this disk or account allows");
    case EROFS:
        return QStringLiteral("the disk is read-only");
    case EACCES:
    case EPERM:
        return QStringLiteral("permission denied");
    case EIO:
        return QStringLiteral("the disk reported an input/output error");
    default:
        return QString::fromLocal8Bit(std::strerror(systemError));
    }
}

ReplacingFile::ReplacingFile(const QString& path, QObject* parent)
    : QIODevice(parent)
    , m_path(path)
{
}

ReplacingFile::~ReplacingFile()
{
    discard();
}

bool ReplacingFile::open(OpenMode mode)
{
    if (isOpen() || !mode.testFlag(QIODevice::WriteOnly) || mode.testFlag(QIODevice::ReadOnly)
        || mode.testFlag(QIODevice::Append)) {
        m_error = QStringLiteral("%1 can only be opened once, for writing").arg(QDir::toNativeSeparators(m_path));
        return false;
    }
    m_error.clear();
    const QFileInfo target(m_path);
    QByteArray name = QFile::encodeName(target.absolutePath() + QStringLiteral("/.") + target.fileName()
        + QStringLiteral(".new-XXXXXX"));
    m_fd = ::mkostemp(name.data(), O_CLOEXEC);
    if (m_fd < 0) {
        failWith(errno, "cannot write");
        return false;
    }
    m_temporary = QFile::decodeName(name);
    // mkostemp makes the file private; give it the modes a file made by open()
    // would have had, or those of the file it replaces.
    struct stat old = {};
    const QByteArray targetName = QFile::encodeName(m_path);
    if (::stat(targetName.constData(), &old) == 0) {
        ::fchmod(m_fd, old.st_mode & 07777);
        // Keeps the group of a shared file when the user may.
        if (::fchown(m_fd, static_cast<uid_t>(-1), old.st_gid) != 0) {
            // Not a member of that group: the folder's group stands.
        }
    } else {
        ::fchmod(m_fd, static_cast<mode_t>(newFileMode()));
    }
    return QIODevice::open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

bool ReplacingFile::seek(qint64 position)
{
    if (m_fd < 0 || ::lseek(m_fd, static_cast<off_t>(position), SEEK_SET) < 0) {
        return false;
    }
    return QIODevice::seek(position);
}

qint64 ReplacingFile::size() const
{
    struct stat info = {};
    return m_fd >= 0 && ::fstat(m_fd, &info) == 0 ? static_cast<qint64>(info.st_size) : 0;
}

qint64 ReplacingFile::readData(char*, qint64)
{
    return -1;
}

qint64 ReplacingFile::writeData(const char* data, qint64 size)
{
    if (m_fd < 0 || !m_error.isEmpty()) {
        return -1;
    }
    qint64 done = 0;
    while (done < size) {
        const ssize_t wrote = ::write(m_fd, data + done, static_cast<size_t>(size - done));
        if (wrote < 0) {
            if (errno == EINTR) {
                continue;
            }
            failWith(errno, "cannot write");
            return -1;
        }
        if (wrote == 0) {
            failWith(ENOSPC, "cannot write");
            return -1;
        }
        done += wrote;
    }
    return done;
}

void ReplacingFile::failWith(int systemError, const char* what)
{
    if (m_error.isEmpty()) {
        m_error = QStringLiteral("%1 %2: %3")
                      .arg(QLatin1String(what), QDir::toNativeSeparators(m_path), writeFailureText(systemError));
        setErrorString(m_error);
    }
}

bool ReplacingFile::commit()
{
    if (m_fd < 0) {
        if (m_error.isEmpty()) {
            m_error = QStringLiteral("%1 was not opened for writing").arg(QDir::toNativeSeparators(m_path));
        }
        discard();
        return false;
    }
    // Bytes the kernel accepted may still fail on their way to the disk
    // (a network share, a quota counted at write-back): fsync reports it.
    if (m_error.isEmpty() && ::fsync(m_fd) != 0 && errno != EINVAL) {
        failWith(errno, "cannot write");
    }
    const int fd = m_fd;
    m_fd = -1;
    if (::close(fd) != 0 && m_error.isEmpty()) {
        failWith(errno, "cannot write");
    }
    QIODevice::close();
    if (!m_error.isEmpty()) {
        discard();
        m_error += QStringLiteral("; the old file is kept");
        return false;
    }
    if (::rename(QFile::encodeName(m_temporary).constData(), QFile::encodeName(m_path).constData()) != 0) {
        failWith(errno, "cannot put in place");
        discard();
        return false;
    }
    m_temporary.clear();
    syncFolderOf(m_path);
    return true;
}

void ReplacingFile::cancel()
{
    discard();
}

void ReplacingFile::discard()
{
    if (m_fd >= 0) {
        ::close(m_fd);
        m_fd = -1;
    }
    if (isOpen()) {
        QIODevice::close();
    }
    if (!m_temporary.isEmpty()) {
        ::unlink(QFile::encodeName(m_temporary).constData());
        m_temporary.clear();
    }
}

} // namespace pvardo
