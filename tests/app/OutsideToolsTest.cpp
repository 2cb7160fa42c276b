// The repair tool and the updater the program starts from its folder, run on
// a real installation with a damaged database file.
#include "app/InstanceGuard.h"
#include "app/screens/OutsideTools.h"
#include "store/Catalogue.h"
#include "store/DatabaseRepair.h"
#include "support/DamagedPage.h"
#include "support/TestInstallation.h"
#include "support/Text.h"

#include <QDir>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>
#include <sqlite3.h>

using namespace pvardo;
using namespace pvardo::test;

namespace {

void fillCases(const QString& file, int rows)
{
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(file).constData(), &db), SQLITE_OK);
    const QByteArray sql = QByteArray("WITH RECURSIVE n(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM n WHERE x < ")
        + QByteArray::number(rows)
        + ") INSERT INTO PBPROJ (PBCASE, PBAPPNAME1) SELECT printf('26-%d', x), hex(randomblob(150)) FROM n;";
    EXPECT_EQ(sqlite3_exec(db, sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
    sqlite3_close(db);
}

template <typename T> T* child(QWidget& window, const char* name)
{
    T* found = window.findChild<T*>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
}

bool waitUntilDone(const app::MenderWindow& window)
{
    for (int i = 0; i < 600 && window.stage() != app::MenderWindow::Stage::Done; ++i) {
        QTest::qWait(100);
    }
    return window.stage() == app::MenderWindow::Stage::Done;
}

} // namespace

TEST(DbMender, WaitsForTheProgramToCloseThenRepairsAndShowsTheReport)
{
    TestInstallation installation;
    const QString cases = installation.createDatabase(store::Table::PBPROJ);
    fillCases(cases, 400);
    zeroFirstLeafPage(cases, "PBPROJ");
    ASSERT_FALSE(store::integrityProblems(cases).isEmpty());

    // The program is still open on the installation.
    auto program = std::make_unique<app::InstanceGuard>(installation.programFolder());
    ASSERT_TRUE(program->acquire());
    app::MenderWindow window(installation.programFolder(), q(PVARDO_BINARY_DIR "/pvardo-admin"));
    window.start();
    QTest::qWait(1500);
    EXPECT_EQ(window.stage(), app::MenderWindow::Stage::Waiting);
    EXPECT_TRUE(child<QLabel>(window, "Label1")->text().startsWith(q("Waiting for the program to close")));
    EXPECT_EQ(QDir(installation.databaseFolder()).entryList(QDir::Files), QStringList{q("pbproj.db")});

    program.reset();
    ASSERT_TRUE(waitUntilDone(window));
    EXPECT_EQ(window.exitCode(), 0);
    const QString report = child<QPlainTextEdit>(window, "Report")->toPlainText();
    EXPECT_TRUE(report.contains(q("pbproj.db: damaged"))) << report.toStdString();
    EXPECT_TRUE(report.contains(q("rows recovered into a new file"))) << report.toStdString();
    EXPECT_TRUE(child<QLabel>(window, "Label1")->text().startsWith(q("The repair is done")));
    EXPECT_TRUE(store::integrityProblems(cases).isEmpty());
    EXPECT_EQ(QDir(installation.databaseFolder()).entryList({q("pbproj.db.damaged-*")}).size(), 1);
    // The repair let go of the lock: the program can start again.
    EXPECT_TRUE(app::InstanceGuard(installation.programFolder()).acquire());
    QTest::mouseClick(child<QPushButton>(window, "cmdClose"), Qt::LeftButton);
    EXPECT_EQ(window.result(), QDialog::Accepted);
}

TEST(DbMender, WithoutTheAdminToolNothingIsChangedAndTheUpdaterOnlyTells)
{
    TestInstallation installation;
    const QString cases = installation.createDatabase(store::Table::PBPROJ);
    fillCases(cases, 50);
    zeroFirstLeafPage(cases, "PBPROJ");
    app::MenderWindow window(installation.programFolder(), installation.path(q("no-such-tool")));
    window.start();
    EXPECT_EQ(window.stage(), app::MenderWindow::Stage::Done);
    EXPECT_EQ(window.exitCode(), -1);
    EXPECT_TRUE(child<QLabel>(window, "Label1")->text().endsWith(q("Nothing was changed.")));
    EXPECT_TRUE(child<QPushButton>(window, "cmdClose")->isEnabled());
    EXPECT_EQ(QDir(installation.databaseFolder()).entryList(QDir::Files), QStringList{q("pbproj.db")});

    app::UpdaterWindow updater(q("1.2.3"), installation.programFolder());
    const QString text = child<QLabel>(updater, "Label1")->text();
    EXPECT_TRUE(text.startsWith(q("Version 1.2.3 of the program is installed."))) << text.toStdString();
    EXPECT_TRUE(text.contains(q("sudo apt-get install ./pvardo_VERSION_amd64.deb")));
    EXPECT_TRUE(text.contains(installation.programFolder()));
}
