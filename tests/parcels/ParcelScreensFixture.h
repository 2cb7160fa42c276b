#pragma once

#include "common/Session.h"
#include "parcels/ParcelService.h"
#include "store/Catalogue.h"
#include "store/Recordset.h"
#include "support/InstallationTest.h"
#include "support/ScriptedPrompts.h"
#include "support/Text.h"

#include <QPushButton>
#include <gtest/gtest.h>
#include <map>

namespace pvardo::test {

// The parcel screens over a real parcel store in a temporary installation.
class ParcelScreensTest : public InstallationTest
{
protected:
    void SetUp() override
    {
        InstallationTest::SetUp();
        session().CurrentUser = q("clerk");
        session().UserLevel = q("MEMBER");
        session().IsAdmin = false;
        storePath = installation.databaseFolder() + q("/sbl.db");
        ASSERT_TRUE(store::createDatabaseFile(storePath, store::tableDef(store::Table::SBL18)).ok());
        parcels::unloadMdb();
    }

    void TearDown() override { parcels::unloadMdb(); }

    // A parcel written straight into the file; a column given as "NULL" is left unwritten.
    void seedParcel(const QString& sbl, std::map<QString, QVariant> values = {})
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(storePath, q("Select * from SBL"), &status);
        ASSERT_TRUE(rows);
        rows->AddNew();
        rows->setValue(q("SBLF"), sbl);
        std::map<QString, QVariant> all{{q("ASSOC"), q("SOMEONE")}, {q("LOCN1"), q("1 MAIN ST")},
            {q("PERMIT"), q("")}, {q("OTHER"), 0}, {q("FAILED"), 0}, {q("VIOL"), 0}, {q("NOTES"), q("")},
            {q("HISTORICAL"), q("")}};
        for (const auto& [column, value] : values) {
            all[column] = value;
        }
        for (const auto& [column, value] : all) {
            if (value != QVariant(q("NULL"))) {
                rows->setValue(column, value);
            }
        }
        ASSERT_TRUE(rows->Update().ok()) << sbl.toStdString();
    }

    std::unique_ptr<store::Recordset> parcelOnDisk(const QString& sbl)
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(
            storePath, q("Select * from SBL where [SBLF] = '") + sbl + q("'"), &status);
        return rows && !rows->Eof() ? std::move(rows) : nullptr;
    }

    static void clickIn(QWidget& parent, const char* name)
    {
        auto* button = parent.findChild<QPushButton*>(q(name));
        ASSERT_TRUE(button) << name;
        ASSERT_TRUE(button->isEnabled()) << name;
        button->click();
    }

    ScriptedPrompts& prompts() { return scriptedPrompts(); }
    QString lastText() { return prompts().shown().isEmpty() ? QString() : prompts().shown().last().text; }

    QString storePath;
};

} // namespace pvardo::test
