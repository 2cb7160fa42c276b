#include "support/ScriptedPrompts.h"

#include "common/Session.h"

#include <QApplication>
#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

// Every test program runs with a real QApplication on the offscreen platform,
// the waits of the program set to zero and a scripted prompt service that the
// tests answer through.
int main(int argc, char** argv)
{
    // Offscreen unless a platform is named: the screenshot script names xcb
    // to take the pictures in a real X server.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    qputenv("PVARDO_NO_WAIT", "1");
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        const QByteArray runtime = QDir::tempPath().toUtf8() + "/pvardo-tests-runtime";
        QDir().mkpath(QString::fromUtf8(runtime));
        QFile::setPermissions(QString::fromUtf8(runtime), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", runtime);
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pvardo-tests"));
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::AddGlobalTestEnvironment(new pvardo::test::ScriptedPromptsEnvironment);
    return RUN_ALL_TESTS();
}
