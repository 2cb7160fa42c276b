#include "app/Startup.h"

#include "StartupFixtures.h"
#include "support/ScriptedPrompts.h"
#include "support/TestInstallation.h"

#include <QTest>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::test;

namespace {

QStringList settingsFor(const QString& databaseFolder)
{
    return {databaseFolder, QString(), QString(), QString(), QString(), QString(), QString(), QStringLiteral("0"),
        QStringLiteral("False"), QStringLiteral("12"), QStringLiteral("Times New Roman"),
        QStringLiteral("NYS Fire Prevention & Bldg Code"), QStringLiteral("Building and Zoning Codes"),
        QStringLiteral("0")};
}

// Starts the program on an installation and waits for the background check.
QList<Prompt> checkMessagesOfAStart(const TestInstallation& installation)
{
    WorkingFolderKeeper keeper;
    RecordingHost host;
    app::Startup startup(host, installation.programFolder());
    EXPECT_TRUE(startup.run());
    EXPECT_TRUE(startup.databaseCheck() != nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return startup.databaseCheck()->isFinished(); }, 30000));
    QCoreApplication::processEvents();
    QList<Prompt> found;
    for (const Prompt& prompt : scriptedPrompts().shown()) {
        if (prompt.title == QStringLiteral(" Database Check")) {
            found << prompt;
        }
    }
    return found;
}

} // namespace

TEST(DatabaseCheckAtStart, NamesADamagedFileOnceTheMainWindowIsUp)
{
    TestInstallation installation;
    writeLines(installation.path(QStringLiteral("PVardo.ini")), settingsFor(installation.databaseFolder()));
    installation.createDatabase(store::Table::PBPROJ);
    EXPECT_TRUE(checkMessagesOfAStart(installation).isEmpty());

    // The second page of the meeting file, overwritten.
    scriptedPrompts().clear();
    const QString meetings = installation.databaseFolder() + QStringLiteral("/meeting.db");
    {
        QFile file(meetings);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.seek(4096));
        file.write(QByteArray(4096, '\x7f'));
    }
    const QList<Prompt> messages = checkMessagesOfAStart(installation);
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages.first().text.contains(meetings)) << messages.first().text.toStdString();
    EXPECT_TRUE(messages.first().text.contains(QStringLiteral("restore these files from the last backup")));
    EXPECT_FALSE(messages.first().text.contains(QStringLiteral("pbproj.db")));
}
