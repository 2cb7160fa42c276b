#include "app/Startup.h"
#include "store/DatabaseCheck.h"

#include "StartupFixtures.h"
#include "support/AdminTool.h"
#include "support/ScriptedPrompts.h"
#include "support/TestInstallation.h"

#include <QTest>
#include <sqlite3.h>
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

// A case file of an older release whose rows without a number kept it from
// taking its unique index: the program and check-databases both say so.
TEST(DatabaseCheckAtStart, SaysWhenBlankKeysLeaveATableWithoutItsUniqueIndex)
{
    TestInstallation installation;
    writeLines(installation.path(QStringLiteral("PVardo.ini")), settingsFor(installation.databaseFolder()));
    const QString cases = installation.createDatabase(store::Table::PBPROJ);
    {
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open(QFile::encodeName(cases).constData(), &db), SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(db,
                      "DROP INDEX PBPROJ_PBCASE_key; INSERT INTO PBPROJ (PBCASE) VALUES ('24-001'), (''), (NULL);",
                      nullptr, nullptr, nullptr),
            SQLITE_OK);
        sqlite3_close(db);
    }
    // Opening the file cannot make the index; the start says it once.
    const QList<Prompt> messages = checkMessagesOfAStart(installation);
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages.first().text.contains(QStringLiteral("2 rows of the table PBPROJ have no PBCASE")))
        << messages.first().text.toStdString();
    EXPECT_TRUE(messages.first().text.contains(cases));
    EXPECT_FALSE(messages.first().text.contains(QStringLiteral("damaged")));

    const AdminRun run = runAdmin({QStringLiteral("--home"), installation.programFolder(), QStringLiteral("check-databases")});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.contains(QStringLiteral("2 rows of the table PBPROJ have no PBCASE"))) << run.err.toStdString();

    // With one blank key left the file takes its index and nothing is said.
    {
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open(QFile::encodeName(cases).constData(), &db), SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(db, "DELETE FROM PBPROJ WHERE PBCASE IS NULL", nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(db);
    }
    scriptedPrompts().clear();
    EXPECT_TRUE(checkMessagesOfAStart(installation).isEmpty());
    EXPECT_TRUE(store::keyIndexNotices(installation.databaseFolder()).isEmpty());
}
