#include "support/ScriptedPrompts.h"

#include "common/Session.h"

#include <QApplication>

#include <gtest/gtest.h>

// Every test program runs with a real QApplication on the offscreen platform,
// the waits of the program set to zero and a scripted prompt service that the
// tests answer through.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("PVARDO_NO_WAIT", "1");
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pvardo-tests"));
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::AddGlobalTestEnvironment(new pvardo::test::ScriptedPromptsEnvironment);
    return RUN_ALL_TESTS();
}
