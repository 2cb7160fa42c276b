#pragma once

#include "common/ExitApp.h"
#include "app/StartupHost.h"
#include "common/Session.h"
#include "support/ProgramEndRecorder.h"

#include <QDir>
#include <QFile>
#include <QStringList>

namespace pvardo::test {

// Records the screens the start-up asks for, in order.
class RecordingHost final : public app::StartupHost
{
public:
    bool acceptLogOn = true;
    QStringList calls;

    void showSplash() override { calls << QStringLiteral("splash"); }
    void closeSplash() override { calls << QStringLiteral("close splash"); }
    bool logOn() override
    {
        calls << QStringLiteral("log-on");
        session().LoggedIn = acceptLogOn;
        return acceptLogOn;
    }
    void showWaitNotice() override { calls << QStringLiteral("wait notice"); }
    void closeWaitNotice() override { calls << QStringLiteral("close wait notice"); }
    void showMainWindow() override { calls << QStringLiteral("main window"); }
    void bringToFront() override { calls << QStringLiteral("front"); }
};

// Keeps the working folder of the test program, which the start-up changes.
class WorkingFolderKeeper
{
public:
    WorkingFolderKeeper()
        : m_folder(QDir::currentPath())
    {
    }
    ~WorkingFolderKeeper() { QDir::setCurrent(m_folder); }

private:
    QString m_folder;
};

inline void writeLines(const QString& path, const QStringList& lines)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    for (const QString& line : lines) {
        file.write(line.toUtf8() + '\n');
    }
}

inline QByteArray readAllOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace pvardo::test
