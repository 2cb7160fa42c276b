// A move to another database folder from the preferences, driven through the
// dashboard as the clerk does it: afterwards nothing reads or writes the old
// folder, and the templates are found beside the new one.
#include "app/screens/WidgetStartupHost.h"
#include "cases/CaseNumbering.h"
#include "common/Session.h"
#include "parcels/ParcelService.h"
#include "schedule/screens/Scheduler.h"
#include "store/Catalogue.h"
#include "store/Recordset.h"
#include "support/ScriptedPrompts.h"
#include "support/TestInstallation.h"
#include "support/Text.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::test;

namespace {

void addRow(const QString& file, const char* table, const std::map<QString, QString>& values)
{
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(file, QStringLiteral("Select * from ") + QLatin1String(table), &status);
    ASSERT_TRUE(rows) << status.description.toStdString();
    rows->AddNew();
    for (const auto& [column, value] : values) {
        rows->setValue(column, value);
    }
    ASSERT_TRUE(rows->Update().ok());
}

// A database folder with one case and `parcels` parcels.
void fillFolder(const QString& folder, const QString& location, int parcels)
{
    QDir().mkpath(folder);
    for (store::Table table : {store::Table::PBPROJ, store::Table::MEETING}) {
        const store::TableDef& def = store::tableDef(table);
        ASSERT_TRUE(store::createDatabaseFile(folder + QLatin1Char('/') + QLatin1String(def.fileName), def).ok());
    }
    const QString sbl = folder + q("/sbl.db");
    ASSERT_TRUE(store::createDatabaseFile(sbl, store::tableDef(store::Table::SBL18)).ok());
    addRow(folder + q("/pbproj.db"), "PBPROJ", {{q("PBCASE"), q("24-201")}, {q("PBLOCN1"), location}});
    for (int i = 1; i <= parcels; ++i) {
        addRow(sbl, "SBL", {{q("SBLF"), QStringLiteral("%1-1-1-0-0-0-0-0").arg(i)}});
    }
}

QStringList casesIn(const QString& folder)
{
    QStringList numbers;
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(folder + q("/pbproj.db"), q("Select * from PBPROJ order by PBCASE"), &status);
    for (rows->MoveFirst(); rows && !rows->Eof(); rows->MoveNext()) {
        numbers << rows->text(q("PBCASE")) + q(" ") + rows->text(q("PBLOCN1"));
    }
    return numbers;
}

QWidget* window(const char* name)
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == QLatin1String(name) && widget->isVisible()) {
            return widget;
        }
    }
    return nullptr;
}

template <typename T> T* child(QWidget* parent, const char* name)
{
    T* found = parent ? parent->findChild<T*>(QString::fromLatin1(name)) : nullptr;
    EXPECT_NE(found, nullptr) << name;
    return found;
}

void click(QWidget* parent, const char* name)
{
    if (auto* button = child<QAbstractButton>(parent, name)) {
        QTest::mouseClick(button, Qt::LeftButton);
    }
}

} // namespace

TEST(DatabaseSwitch, AfterTheSwitchCasesParcelsAndTemplatesComeFromTheNewFolderOnly)
{
    TestInstallation installation;
    installation.applyTo(session());
    const QString old = installation.databaseFolder();
    fillFolder(old, q("OLD ST"), 2);
    QTemporaryDir elsewhere;
    const QString moved = elsewhere.filePath(q("databases"));
    fillFolder(moved, q("NEW ST"), 5);
    Session& state = session();
    state.MasterDatabaseFolder = old;
    state.ParcelDatabasePath = old + q("/sbl.db");
    state.CurrentUser = q("ADMIN");
    state.UserLevel = q("ADMIN");
    state.IsAdmin = true;
    state.Today = QDate(2024, 5, 1);
    parcels::unloadMdb();
    cases::resetCaseNumbering();

    app::WidgetStartupHost host;
    host.showMainWindow();
    schedule::Scheduler* dashboard = host.mainWindow();
    ASSERT_NE(dashboard, nullptr);
    auto action = [dashboard](const char* name) {
        auto* found = dashboard->findChild<QAction*>(QString::fromLatin1(name));
        ASSERT_NE(found, nullptr) << name;
        found->trigger();
    };

    // The case screen is kept by the dashboard between visits; the parcel
    // browser is open beside the dashboard at the switch.
    click(dashboard, "iPlaning");
    QWidget* cases = window("ZPermits");
    ASSERT_NE(cases, nullptr);
    EXPECT_EQ(child<QLineEdit>(cases, "Text1_7")->text(), q("OLD ST"));
    cases->close();
    action("dosbl");
    QWidget* browser = window("sblfrm");
    ASSERT_NE(browser, nullptr);
    EXPECT_EQ(child<QLabel>(browser, "lblTotal")->text(), q("2"));

    scriptedPrompts().onDialog(q("PrefFrm"), [moved](QDialog& screen) {
        auto* folder = screen.findChild<QLineEdit*>(q("Text9"));
        folder->setText(moved);
        QTest::mouseClick(screen.findChild<QAbstractButton*>(q("Command1")), Qt::LeftButton);
        return screen.result();
    });
    scriptedPrompts().answer(q("SWITCH"), PromptAnswer::Yes);
    scriptedPrompts().answer(q("closed before the switch"), PromptAnswer::Yes);
    action("defaults");
    ASSERT_EQ(state.DatabaseFolder, moved) << scriptedPrompts().shownTexts().join(q(" | ")).toStdString();
    EXPECT_EQ(window("sblfrm"), nullptr);

    // The templates are found beside the new folder.
    EXPECT_EQ(state.FormsFolder, elsewhere.filePath(q("forms")));
    EXPECT_TRUE(QFile::exists(state.FormsFolder + q("/gTitle.rtf")));

    // A case added on the case screen lands in the new folder, and the one
    // shown is the new folder's.
    click(dashboard, "iPlaning");
    cases = window("ZPermits");
    ASSERT_NE(cases, nullptr);
    EXPECT_EQ(child<QLineEdit>(cases, "Text1_7")->text(), q("NEW ST"));
    click(cases, "INew");
    const std::pair<int, const char*> inputs[] = {{2, "12"}, {3, "1"}, {4, "5"}, {7, "9 MOVED RD"},
        {8, "ANN APPLICANT"}, {9, "1 ELM RD"}, {12, "OWEN OWNER"}, {13, "2 OAK LN"}};
    for (const auto& [box, text] : inputs) {
        child<QLineEdit>(cases, QStringLiteral("Text1_%1").arg(box).toLatin1().constData())->setText(q(text));
    }
    child<QComboBox>(cases, "Combo10")->setEditText(q("Pending"));
    const QString number = child<QLineEdit>(cases, "Text1_1")->text();
    click(cases, "IAdd");
    EXPECT_TRUE(casesIn(moved).contains(number + q(" 9 MOVED RD")))
        << casesIn(moved).join(q(", ")).toStdString() << " | "
        << scriptedPrompts().shownTexts().join(q(" | ")).toStdString();
    EXPECT_EQ(casesIn(old), QStringList{q("24-201 OLD ST")});
    cases->close();

    action("dosbl");
    browser = window("sblfrm");
    ASSERT_NE(browser, nullptr);
    // The five of the new folder, and the parcel of the new case.
    EXPECT_EQ(child<QLabel>(browser, "lblTotal")->text(), q("6"));
    browser->close();
    parcels::unloadMdb();
    cases::resetCaseNumbering();
}
