#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

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

} // namespace pvardo::test
