#include "common/DriveKind.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

namespace pvardo {

namespace {

// Mount table fields escape blanks and a few other characters as \ooo.
QString unescapeMountField(const QString& field)
{
    QString result;
    result.reserve(field.size());
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (field.at(i) == QLatin1Char('\\') && i + 3 < field.size()) {
            bool ok = false;
            const int code = field.mid(i + 1, 3).toInt(&ok, 8);
            if (ok) {
                result.append(QChar(code));
                i += 3;
                continue;
            }
        }
        result.append(field.at(i));
    }
    return result;
}

bool fallsUnder(const QString& path, const QString& mountPoint)
{
    if (mountPoint == QLatin1String("/")) {
        return path.startsWith(QLatin1Char('/'));
    }
    return path == mountPoint || path.startsWith(mountPoint + QLatin1Char('/'));
}

QString readSysFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QString::fromLatin1(file.readAll()).trimmed();
}

// A block device the kernel calls removable (card readers, most sticks), or
// one that hangs on USB (sticks and disks that say they are fixed).
bool blockDeviceIsRemovable(const QString& device)
{
    if (!device.startsWith(QLatin1String("/dev/"))) {
        return false;
    }
    const QString name = QFileInfo(QFileInfo(device).canonicalFilePath()).fileName();
    if (name.isEmpty()) {
        return false;
    }
    const QString classPath = QStringLiteral("/sys/class/block/") + name;
    const QString sysPath = QFileInfo(classPath).canonicalFilePath();
    if (sysPath.isEmpty()) {
        return false;
    }
    if (sysPath.contains(QLatin1String("/usb"))) {
        return true;
    }
    // A partition carries no flag of its own; its disk is the folder above.
    QString flag = readSysFile(sysPath + QStringLiteral("/removable"));
    if (flag.isEmpty()) {
        flag = readSysFile(QFileInfo(sysPath).absolutePath() + QStringLiteral("/removable"));
    }
    return flag == QLatin1String("1");
}

enum class Kind { Unknown, Removable, Fixed, Network, Optical, Ram };

Kind kindOf(
    const QString& device, const QString& type, const std::function<bool(const QString&)>& isRemovable)
{
    static const QStringList network = {QStringLiteral("nfs"), QStringLiteral("nfs4"), QStringLiteral("cifs"),
        QStringLiteral("smb3"), QStringLiteral("smbfs"), QStringLiteral("ncpfs"), QStringLiteral("afs"),
        QStringLiteral("ceph"), QStringLiteral("glusterfs"), QStringLiteral("9p"),
        QStringLiteral("fuse.sshfs"), QStringLiteral("fuse.glusterfs"), QStringLiteral("davfs"),
        QStringLiteral("fuse.davfs"), QStringLiteral("fuse.rclone"), QStringLiteral("fuse.s3fs")};
    static const QStringList pseudo = {QStringLiteral("proc"), QStringLiteral("sysfs"),
        QStringLiteral("devpts"), QStringLiteral("cgroup"), QStringLiteral("cgroup2"),
        QStringLiteral("securityfs"), QStringLiteral("debugfs"), QStringLiteral("tracefs"),
        QStringLiteral("mqueue"), QStringLiteral("pstore"), QStringLiteral("bpf"), QStringLiteral("configfs"),
        QStringLiteral("fusectl"), QStringLiteral("hugetlbfs"), QStringLiteral("autofs"),
        QStringLiteral("binfmt_misc"), QStringLiteral("efivarfs"), QStringLiteral("nsfs")};
    if (network.contains(type)) {
        return Kind::Network;
    }
    if (type == QLatin1String("iso9660") || type == QLatin1String("udf")) {
        return Kind::Optical;
    }
    if (type == QLatin1String("tmpfs") || type == QLatin1String("ramfs")) {
        return Kind::Ram;
    }
    if (pseudo.contains(type)) {
        return Kind::Unknown;
    }
    if (isRemovable && isRemovable(device)) {
        return Kind::Removable;
    }
    return Kind::Fixed;
}

QString wordOf(Kind kind)
{
    switch (kind) {
    case Kind::Removable:
        return QStringLiteral("Removable ");
    case Kind::Fixed:
        return QStringLiteral("Fixed ");
    case Kind::Network:
        return QStringLiteral("Network/Remote ");
    case Kind::Optical:
        return QStringLiteral("CDROM ");
    case Kind::Ram:
        return QStringLiteral("RAMdisk ");
    case Kind::Unknown:
        break;
    }
    return QStringLiteral("UNKNOWN ");
}

} // namespace

namespace detail {

QString driveKindText(const QString& absolutePath, const QString& mountTable,
    const std::function<bool(const QString& device)>& isRemovable)
{
    if (absolutePath.isEmpty()) {
        return wordOf(Kind::Unknown);
    }
    QString bestMount;
    QString bestDevice;
    QString bestType;
    // The last mount of a place hides the earlier ones, so later lines win ties.
    const QStringList lines = mountTable.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QStringList fields = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (fields.size() < 3) {
            continue;
        }
        const QString mountPoint = unescapeMountField(fields.at(1));
        if (!fallsUnder(absolutePath, mountPoint)) {
            continue;
        }
        if (bestMount.isEmpty() || mountPoint.size() >= bestMount.size()) {
            bestMount = mountPoint;
            bestDevice = unescapeMountField(fields.at(0));
            bestType = fields.at(2);
        }
    }
    if (bestMount.isEmpty()) {
        // Without a mount table the place is the first part of the path.
        const qsizetype second = absolutePath.indexOf(QLatin1Char('/'), 1);
        return wordOf(Kind::Unknown) + (second < 0 ? absolutePath : absolutePath.left(second));
    }
    return wordOf(kindOf(bestDevice, bestType, isRemovable)) + bestMount;
}

} // namespace detail

QString DriveKindText(const QString& path)
{
    const QString trimmed = path.trimmed();
    if (trimmed.isEmpty()) {
        return QStringLiteral("UNKNOWN ");
    }
    // Follow links of the part of the path that exists, so a link into a
    // mounted share counts as the share.
    QString absolute = QDir::cleanPath(QDir(trimmed).absolutePath());
    QString existing = absolute;
    QString rest;
    while (!existing.isEmpty() && !QFileInfo::exists(existing) && existing != QLatin1String("/")) {
        const qsizetype cut = existing.lastIndexOf(QLatin1Char('/'));
        rest = existing.mid(cut) + rest;
        existing = cut <= 0 ? QStringLiteral("/") : existing.left(cut);
    }
    const QString canonical = QFileInfo(existing).canonicalFilePath();
    if (!canonical.isEmpty()) {
        absolute = QDir::cleanPath(canonical + rest);
    }
    QFile mounts(QStringLiteral("/proc/self/mounts"));
    QString table;
    if (mounts.open(QIODevice::ReadOnly)) {
        table = QString::fromUtf8(mounts.readAll());
    }
    return detail::driveKindText(absolute, table, blockDeviceIsRemovable);
}

} // namespace pvardo
