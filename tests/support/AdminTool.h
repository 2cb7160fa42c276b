#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

class QProcess;

namespace pvardo::test {

// How a run of the admin tool ended: its exit code (-1 when it did not
// finish in time, -2 when it crashed) and what it wrote.
struct AdminRun
{
    int code = -1;
    QString out;
    QString err;
};

// Runs the built pvardo-admin offscreen, without PVARDO_HOME, with the given
// standard input, as a script would.
AdminRun runAdmin(const QStringList& arguments, const QByteArray& input = {});

// The same with no file of the run allowed to grow past the given number of
// bytes, as on a disk that is full: a write past it fails (the signal the
// system would send is ignored, so the program sees the error).
AdminRun runAdminOnFullDisk(const QStringList& arguments, qint64 fileSizeLimit, const QByteArray& input = {});

// Starts the admin tool and returns at once, so that two runs can work on one
// installation at the same time, as two workstations would; finishAdmin waits
// for one.
std::unique_ptr<QProcess> startAdmin(const QStringList& arguments);
AdminRun finishAdmin(QProcess& process);

} // namespace pvardo::test
