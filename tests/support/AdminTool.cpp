#include "support/AdminTool.h"

#include <QProcess>
#include <QProcessEnvironment>

namespace pvardo::test {

AdminRun runAdmin(const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("PVARDO_HOME"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(PVARDO_BINARY_DIR "/pvardo-admin"), arguments);
    process.write(input);
    process.closeWriteChannel();
    AdminRun run;
    if (!process.waitForFinished(120000)) {
        process.kill();
        return run;
    }
    run.code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

} // namespace pvardo::test
