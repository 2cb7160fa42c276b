// The dashboard's maintenance entries as the office uses them: the hand-offs
// to the repair tool and the updater, the support reports, and the entries
// that stand in the menu with no command.
#include "StartupFixtures.h"
#include "app/screens/AboutScreen.h"
#include "app/screens/DashboardWiring.h"
#include "app/screens/MaintenanceCommands.h"
#include "common/ExitApp.h"
#include "common/TextFiles.h"
#include "documents/screens/Editor.h"
#include "schedule/screens/Scheduler.h"
#include "support/InstallationTest.h"
#include "support/ProgramEndRecorder.h"
#include "support/ScriptedPrompts.h"
#include "support/Text.h"

#include <QAction>
#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTextDocument>
#include <gtest/gtest.h>
#include <sqlite3.h>

using namespace pvardo;
using namespace pvardo::test;

namespace {

class MaintenanceMenuTest : public InstallationTest
{
protected:
    void SetUp() override
    {
        InstallationTest::SetUp();
        installation.createDatabase(store::Table::MEETING);
        Session& state = session();
        state.CurrentUser = q("clerk");
        state.UserLevel = q("ADMIN");
        state.IsAdmin = true;
        state.MunicipalityName = q("Town of Elmford");
        // A normal exit would copy the databases: the hand-offs must not.
        state.BackupMode = 1;
        m_previousBackup = setBackupDatabasesHandler([this](int) { ++backups; });
        dashboard = std::make_unique<schedule::Scheduler>();
        dashboard->load(QDate(2011, 3, 15));
        app::wireDashboard(*dashboard);
        dashboard->applyUserRights();
    }
    void TearDown() override { setBackupDatabasesHandler(m_previousBackup); }

    void trigger(const char* entry)
    {
        QAction* action = dashboard->findChild<QAction*>(q(entry));
        ASSERT_TRUE(action) << entry;
        action->trigger();
    }

    // A program of the program folder that leaves name.ran when it runs.
    QString placeProgram(const QString& name)
    {
        const QString path = installation.path(name);
        EXPECT_TRUE(replaceTextLines(path, {q("#!/bin/sh"), q("touch \"$0.ran\"")}));
        QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner);
        return path + q(".ran");
    }

    std::unique_ptr<schedule::Scheduler> dashboard;
    int backups = 0;

private:
    BackupDatabasesHandler m_previousBackup;
};

int clickInDialog(QDialog& dialog, const char* button)
{
    QPushButton* target = dialog.findChild<QPushButton*>(q(button));
    EXPECT_TRUE(target) << button;
    if (target) {
        target->click();
    }
    return dialog.result();
}

} // namespace

TEST_F(MaintenanceMenuTest, HandOffsStartTheirProgramAndEndWithoutTheExitsWork)
{
    const QString versionFile = installation.databaseFolder() + q("/sblversion.txt");
    ProgramEndRecorder end;

    // Without the tool the clerk is told and the session goes on.
    trigger("repair");
    ASSERT_EQ(scriptedPrompts().shownTexts().size(), 1);
    EXPECT_TRUE(scriptedPrompts().shownTexts()[0].contains(q("pvardo-admin repair")));
    EXPECT_EQ(end.calls(), 0);

    const QString mended = placeProgram(q("dbMender"));
    trigger("repair");
    EXPECT_EQ(end.calls(), 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(mended); }, 5000));

    // The update notice: Cancel starts nothing, Continue hands over.
    const QString updated = placeProgram(q("Updater"));
    QStringList texts;
    scriptedPrompts().onDialog(q("updatenotice"), [&texts](QDialog& notice) {
        for (const QLabel* label : notice.findChildren<QLabel*>()) {
            texts << label->text();
        }
        return clickInDialog(notice, "ICancel");
    });
    trigger("checkupdates");
    EXPECT_TRUE(session().StopFlag);
    EXPECT_EQ(end.calls(), 1);
    EXPECT_TRUE(texts.contains(q("If you are on a network, please make sure that no one else   has VARDOPB "
                                 "currently open/running.")))
        << texts.join(q(" | ")).toStdString();
    scriptedPrompts().onDialog(
        q("updatenotice"), [](QDialog& notice) { return clickInDialog(notice, "iContinue"); });
    trigger("checkupdates");
    EXPECT_FALSE(session().StopFlag);
    EXPECT_EQ(end.calls(), 2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(updated); }, 5000));

    // Neither hand-off copies the databases or writes the version.
    EXPECT_EQ(backups, 0);
    EXPECT_FALSE(QFile::exists(versionFile));

    // The entries kept empty do nothing at all.
    scriptedPrompts().clear();
    for (const char* entry : {"backr", "backupto", "hittheroad", "remotein", "convert"}) {
        trigger(entry);
    }
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());
    EXPECT_TRUE(scriptedPrompts().dialogsRun().isEmpty());
    EXPECT_EQ(end.calls(), 2);
    EXPECT_EQ(backups, 0);
}

TEST_F(MaintenanceMenuTest, SupportReportsAreWrittenAndShown)
{
    QCoreApplication::setApplicationVersion(q("9.8.7"));
    documents::Editor& editor = documents::Editor::instance();

    trigger("doappinfo");
    const QStringList info = readTextLines(installation.path(q("appinfo.txt"))).value_or(QStringList());
    ASSERT_EQ(info.size(), 12) << info.join(q("\n")).toStdString();
    EXPECT_EQ(info[0], q("Town of Elmford"));
    EXPECT_EQ(info[1], q("Application executable NI"));
    EXPECT_EQ(info[4], q("Version Built 9.8.7"));
    EXPECT_EQ(info[5], q("Base directory for Databases ") + installation.databaseFolder());
    EXPECT_EQ(info[7], q("Current User clerk"));
    EXPECT_EQ(info[8], QString(42, QLatin1Char('=')));
    EXPECT_EQ(info[11], info[8]);
    // A missing setting is stored with its default, as the settings always do.
    EXPECT_EQ(
        readTextLines(installation.path(q("settings/AE"))).value_or(QStringList()), QStringList{q("NI")});
    EXPECT_TRUE(editor.isVisible());
    EXPECT_EQ(editor.ReportBuffer().toPlainText(), info.join(QLatin1Char('\n')));

    // The about screen's hidden door writes the diagnostics report beside it.
    editor.hide();
    app::AboutScreen about;
    about.show();
    QLabel* label = about.findChild<QLabel*>(q("Label4"));
    ASSERT_TRUE(label);
    QTest::mouseClick(label, Qt::LeftButton);
    EXPECT_FALSE(QFile::exists(installation.path(q("debug2.txt"))));
    QTest::mouseClick(label, Qt::RightButton);
    const QString report = QString::fromUtf8(readAllOf(installation.path(q("debug2.txt"))));
    EXPECT_TRUE(report.startsWith(q("Town of Elmford\n"))) << report.toStdString();
    EXPECT_TRUE(report.contains(q("SQLite: ") + QString::fromLatin1(sqlite3_libversion())));
    EXPECT_TRUE(report.contains(q("Database folder: ") + installation.databaseFolder() + q(" (")))
        << report.toStdString();
    EXPECT_TRUE(editor.isVisible());
    EXPECT_TRUE(editor.ReportBuffer().toPlainText().contains(q("Qt: ") + QString::fromLatin1(qVersion())));
}

TEST(UpdateNotice, Screenshot)
{
    app::UpdateNotice notice;
    notice.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&notice));
    const QImage image = notice.grab().toImage();
    ASSERT_FALSE(image.isNull());
    if (const QString folder = qEnvironmentVariable("PVARDO_SCREENSHOT_DIR"); !folder.isEmpty()) {
        QDir().mkpath(folder);
        EXPECT_TRUE(image.save(folder + q("/updatenotice.png")));
    }
}
