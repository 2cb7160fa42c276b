#pragma once

#include <QString>
#include <functional>

namespace pvardo {

// What kind of storage a path is on, as a word and the place it names:
// "Removable ", "Fixed ", "Network/Remote ", "CDROM ", "RAMdisk " or
// "UNKNOWN ", followed by the mount point that holds the path ("Removable
// /media/clerk/STICK", "Fixed /"). Screens look only at the first letter, so a
// RAM disk counts as removable there.
//
// The kind comes from the system's mount table: network file systems (NFS,
// SMB/CIFS, sshfs and the like), optical media (iso9660, udf), RAM (tmpfs,
// ramfs), block devices the kernel marks removable or that hang on USB, and
// fixed for the rest. Pseudo file systems (/proc, /sys) and an empty path are
// UNKNOWN. A path that does not exist yet is judged by the mount point its
// name falls under.
QString DriveKindText(const QString& path);

namespace detail {
// DriveKindText over a given mount table (the text of /proc/self/mounts) and a
// test of whether a block device (e.g. "/dev/sdb1") is removable.
QString driveKindText(const QString& absolutePath, const QString& mountTable,
    const std::function<bool(const QString& device)>& isRemovable);
} // namespace detail

} // namespace pvardo
