#pragma once

#include "cases/CaseNumbering.h"
#include "cases/screens/CaseForm.h"
#include "cases/screens/ZPermits.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "parcels/ParcelService.h"
#include "store/Catalogue.h"
#include "store/Recordset.h"
#include "support/ScriptedPrompts.h"
#include "support/InstallationTest.h"
#include "ui/TaskFrm.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <gtest/gtest.h>
#include <map>
#include <memory>

namespace pvardo::test {

inline QString q(const char* text)
{
    return QString::fromUtf8(text);
}

// A case screen over real case and parcel files in a temporary installation,
// driven through its object names.
class CaseScreenTest : public InstallationTest
{
protected:
    void SetUp() override
    {
        InstallationTest::SetUp();
        session().CurrentUser = q("clerk");
        session().UserLevel = q("MEMBER");
        session().Today = QDate(2012, 3, 1);
        casePath = installation.createDatabase(store::Table::PBPROJ);
        parcelPath = installation.databaseFolder() + q("/sbl.db");
        ASSERT_TRUE(store::createDatabaseFile(parcelPath, store::tableDef(store::Table::SBL18)).ok());
        parcels::unloadMdb();
        cases::resetCaseNumbering();
        cases::CaseForm::clearFileDateMark();
    }

    void TearDown() override
    {
        screen.reset();
        parcels::unloadMdb();
        cases::resetCaseNumbering();
        ui::TaskFrm::close();
    }

    cases::ZPermits& open()
    {
        screen = std::make_unique<cases::ZPermits>();
        return *screen;
    }

    // A case written straight into the file, as another workstation would.
    void seedCase(const QString& number, std::map<QString, QString> values = {})
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(casePath, q("Select * from PBPROJ"), &status);
        ASSERT_TRUE(rows);
        rows->AddNew();
        rows->setValue(q("PBCASE"), number);
        for (const auto& [column, value] : values) {
            rows->setValue(column, value);
        }
        ASSERT_TRUE(rows->Update().ok()) << number.toStdString();
    }

    void seedParcel(const QString& sbl, const QString& notes = {}, int viol = 0, int failed = 0)
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(parcelPath, q("Select * from SBL"), &status);
        ASSERT_TRUE(rows);
        rows->AddNew();
        rows->setValue(q("SBLF"), sbl);
        rows->setValue(q("ASSOC"), q("SOMEONE"));
        rows->setValue(q("NOTES"), notes);
        rows->setValue(q("VIOL"), viol);
        rows->setValue(q("FAILED"), failed);
        rows->setValue(q("OTHER"), 0);
        rows->setValue(q("HISTORICAL"), q(""));
        ASSERT_TRUE(rows->Update().ok());
    }

    // The row of a case on disk, or nullptr.
    std::unique_ptr<store::Recordset> caseOnDisk(const QString& number)
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(
            casePath, q("Select * from PBPROJ where [PBCASE] = '") + number + q("'"), &status);
        return rows && !rows->Eof() ? std::move(rows) : nullptr;
    }
    int casesOnDisk()
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(casePath, q("Select * from PBPROJ"), &status);
        return rows ? rows->RecordCount() : -1;
    }
    std::unique_ptr<store::Recordset> parcelOnDisk(const QString& sbl)
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(
            parcelPath, q("Select * from SBL where [SBLF] = '") + sbl + q("'"), &status);
        return rows && !rows->Eof() ? std::move(rows) : nullptr;
    }

    template <typename T = QWidget> T* find(const char* name)
    {
        T* widget = screen->findChild<T*>(q(name));
        EXPECT_TRUE(widget) << name;
        return widget;
    }
    void click(const char* name)
    {
        auto* button = find<QPushButton>(name);
        ASSERT_TRUE(button);
        ASSERT_TRUE(button->isEnabled()) << name << " is off";
        button->click();
    }
    void trigger(const char* name)
    {
        auto* action = find<QAction>(name);
        ASSERT_TRUE(action);
        action->trigger();
    }
    void type(int box, const QString& text)
    {
        auto* input = find<QLineEdit>(QStringLiteral("Text1_%1").arg(box).toLatin1().constData());
        ASSERT_TRUE(input);
        input->setText(text);
    }
    QString text(int box) { return screen->form().boxText(box); }
    void pick(const char* list, const char* item)
    {
        auto* combo = find<QComboBox>(list);
        ASSERT_TRUE(combo);
        combo->setEditText(q(item));
    }
    bool on(const char* name)
    {
        auto* widget = find<QWidget>(name);
        return widget && widget->isEnabled();
    }
    QString label(const char* name)
    {
        auto* widget = find<QLabel>(name);
        return widget ? widget->text() : QString();
    }

    // Fills every required input of a new case on parcel 12-1-5.
    void fillRequired()
    {
        type(2, q("12"));
        type(3, q("1"));
        type(4, q("5"));
        type(7, q("10 MAIN ST"));
        type(8, q("ANN APPLICANT"));
        type(9, q("1 ELM RD"));
        type(12, q("OWEN OWNER"));
        type(13, q("2 OAK LN"));
        pick("Combo10", "Pending");
    }

    ScriptedPrompts& prompts() { return scriptedPrompts(); }
    QString lastText() { return prompts().shown().isEmpty() ? QString() : prompts().shown().last().text; }
    QString lastTitle() { return prompts().shown().isEmpty() ? QString() : prompts().shown().last().title; }

    QString casePath;
    QString parcelPath;
    std::unique_ptr<cases::ZPermits> screen;
};

} // namespace pvardo::test
