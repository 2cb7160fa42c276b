#include "support/AdminTool.h"

#include <QProcess>
#include <QProcessEnvironment>

#include <csignal>
#include <sys/resource.h>

namespace pvardo::test {

namespace {

void prepare(QProcess& process)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("PVARDO_HOME"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(environment);
}

AdminRun runPrepared(QProcess& process, const QStringList& arguments, const QByteArray& input)
{
    process.start(QStringLiteral(PVARDO_BINARY_DIR "/pvardo-admin"), arguments);
    process.write(input);
    process.closeWriteChannel();
    return finishAdmin(process);
}

} // namespace

AdminRun finishAdmin(QProcess& process)
{
    AdminRun run;
    if (!process.waitForFinished(120000)) {
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

AdminRun runAdmin(const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    prepare(process);
    return runPrepared(process, arguments, input);
}

AdminRun runAdminOnFullDisk(const QStringList& arguments, qint64 fileSizeLimit, const QByteArray& input)
{
    QProcess process;
    prepare(process);
    process.setChildProcessModifier([fileSizeLimit] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{static_cast<rlim_t>(fileSizeLimit), static_cast<rlim_t>(fileSizeLimit)};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    });
    return runPrepared(process, arguments, input);
}

std::unique_ptr<QProcess> startAdmin(const QStringList& arguments)
{
    auto process = std::make_unique<QProcess>();
    prepare(*process);
    process->start(QStringLiteral(PVARDO_BINARY_DIR "/pvardo-admin"), arguments);
    process->closeWriteChannel();
    return process;
}

} // namespace pvardo::test
