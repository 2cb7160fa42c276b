#include "parcels/ParcelService.h"

#include "common/Session.h"
#include "parcels/RpsRoll.h"
#include "parcels/SblSync.h"
#include "store/Catalogue.h"
#include "store/Recordset.h"
#include "support/ScriptedPrompts.h"
#include "support/InstallationTest.h"

#include <QFile>
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::parcels;

namespace {

using pvardo::test::q;

class ParcelServiceTest : public test::InstallationTest
{
protected:
    void SetUp() override
    {
        InstallationTest::SetUp();
        makeStore(store::Table::SBL18);
    }

    void makeStore(store::Table generation)
    {
        QFile::remove(storePath());
        ASSERT_TRUE(store::createDatabaseFile(storePath(), store::tableDef(generation)).ok());
        service
            = std::make_unique<ParcelService>(storePath(), installation.databaseFolder() + q("/pbproj.db"));
        ASSERT_TRUE(service->resetsbl().ok());
    }

    QString storePath() const { return installation.databaseFolder() + q("/sbl.db"); }

    // A fresh look at a parcel row, as another workstation would see it.
    std::unique_ptr<store::Recordset> row(const QString& sbl)
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(
            storePath(), q("Select * from SBL where [SBLF] = '") + sbl + q("'"), &status);
        EXPECT_TRUE(rows && !rows->Eof()) << sbl.toStdString();
        return rows;
    }

    int rowCount()
    {
        store::StoreStatus status;
        return store::openRecordsetAt(storePath(), q("Select * from SBL"), &status)->RecordCount();
    }

    std::unique_ptr<ParcelService> service;
};

} // namespace

TEST_F(ParcelServiceTest, GenerationsHaveTheirColumnCounts)
{
    EXPECT_EQ(service->columnCount(), 18);
    makeStore(store::Table::SBL);
    EXPECT_EQ(service->columnCount(), 13);
}

TEST_F(ParcelServiceTest, SeedsOfBothGenerations)
{
    const std::pair<const char*, int> seeds[] = {{"wrk/sbl.db", 13}, {"wrk/sbl18.db", 18}};
    for (const auto& [seed, columns] : seeds) {
        ParcelService seeded(installation.path(QString::fromLatin1(seed)), QString());
        ASSERT_TRUE(seeded.resetsbl().ok()) << seed;
        EXPECT_EQ(seeded.columnCount(), columns) << seed;
        EXPECT_FALSE(seeded.SBLExists(q("0-0-0-0-0-0-0-0")));
    }
}

TEST_F(ParcelServiceTest, ExistsFindsAnyCaseAndFillsTheFoundValues)
{
    EXPECT_FALSE(service->SBLExists(q("12-34-0-1-5-0-0-0")));
    ASSERT_TRUE(service
                    ->SBLAdd18(q("43-0-0-12-24-c-0-0"), q("12-207"), q("SMITH"), q(""), q("1 MAIN ST"),
                        q("JOHN SMITH"), q("PO BOX 1"))
                    .ok());
    ASSERT_TRUE(
        service->SBLAdd18(
                   q("12-34-0-1-5-0-0-0"), q("12-208"), q("JONES"), q(""), q("2 MAIN ST"), q(""), q(""))
            .ok());
    // A short form with a lower-case letter is stored upper case and found by either.
    EXPECT_TRUE(service->SBLExists(q("43-0-0-12-24-c-0-0")));
    EXPECT_EQ(service->found().permit, q("12-207"));
    EXPECT_EQ(service->found().association, q("SMITH"));
    EXPECT_EQ(service->found().location, q("1 MAIN ST"));
    EXPECT_EQ(service->found().mailing, q("PO BOX 1"));
    EXPECT_EQ(row(q("43-0-0-12-24-C-0-0"))->text(q("SBLF")), q("43-0-0-12-24-C-0-0"));
    EXPECT_TRUE(service->SBLExists(q("12-34-0-1-5-0-0-0")));
    EXPECT_EQ(service->found().permit, q("12-208"));
    EXPECT_FALSE(service->SBLExists(q("12-34-0-1-6-0-0-0")));
    // A key the criteria cannot hold finds nothing and harms nothing.
    EXPECT_FALSE(service->SBLExists(q("O'BRIEN")));
}

TEST_F(ParcelServiceTest, TheThreeAddsWriteTheirOwnColumns)
{
    const QString long40 = QString(45, QLatin1Char('A'));
    const QString long90 = QString(90, QLatin1Char('L'));
    ASSERT_TRUE(service->SBLAdd(q("1-0-0-1-1-0-0-0"), q("12-1"), long40, q("a note"), long90).ok());
    ASSERT_TRUE(
        service->SBLAdd18(q("2-0-0-1-1-0-0-0"), q("12-2"), long40, q(""), long90, long40, long90).ok());
    ASSERT_TRUE(
        service->SBLAddExtended(q("3-0-0-1-1-0-0-0"), q(""), q(""), q(""), q("0559622"), q(""), q("PO 1"))
            .ok());

    auto older = row(q("1-0-0-1-1-0-0-0"));
    EXPECT_EQ(older->text(q("ASSOC")).size(), 20);
    EXPECT_EQ(older->text(q("LOCN1")).size(), 70);
    EXPECT_EQ(older->text(q("HISTORICAL")), q("*12-1"));
    EXPECT_EQ(older->text(q("NOTES")), q("a note"));
    EXPECT_EQ(older->value(q("FAILED")).toInt(), 0);
    EXPECT_TRUE(older->value(q("CONTACT")).isNull());

    auto newer = row(q("2-0-0-1-1-0-0-0"));
    EXPECT_EQ(newer->text(q("ASSOC")).size(), 30);
    EXPECT_EQ(newer->text(q("LOCN1")).size(), 80);
    EXPECT_EQ(newer->text(q("CONTACT")).size(), 30);
    EXPECT_EQ(newer->text(q("MAILING")).size(), 80);
    EXPECT_EQ(newer->text(q("PERMIT")), q("12-2"));

    auto extended = row(q("3-0-0-1-1-0-0-0"));
    EXPECT_EQ(extended->text(q("ASSOC")), q("?"));
    EXPECT_EQ(extended->text(q("LOCN1")), q("?"));
    EXPECT_EQ(extended->text(q("CONTACT")), q("?"));
    EXPECT_EQ(extended->text(q("MAILING")), q("PO 1"));
    EXPECT_DOUBLE_EQ(extended->value(q("EASTCOORD")).toDouble(), 559622);
    EXPECT_DOUBLE_EQ(extended->value(q("NORTHCOORD")).toDouble(), 0);
    EXPECT_TRUE(extended->value(q("PERMIT")).isNull());
    EXPECT_TRUE(extended->value(q("HISTORICAL")).isNull());
    EXPECT_TRUE(extended->value(q("FAILED")).isNull());
}

TEST_F(ParcelServiceTest, OlderStoreTakesAddsWithoutTheNewerColumns)
{
    makeStore(store::Table::SBL);
    EXPECT_TRUE(
        service->SBLAdd18(q("2-0-0-1-1-0-0-0"), q("12-2"), q("A"), q(""), q("L"), q("C"), q("M")).ok());
    EXPECT_TRUE(
        service->SBLAddExtended(q("3-0-0-1-1-0-0-0"), q("C"), q("A"), q("L"), q("1"), q("2"), q("M")).ok());
    EXPECT_EQ(rowCount(), 2);
    EXPECT_TRUE(service->SBLExists(q("3-0-0-1-1-0-0-0")));
    EXPECT_TRUE(
        service->SBLUpdateExtended(q("3-0-0-1-1-0-0-0"), q("C"), q("B"), q("L"), q("1"), q("2"), q("M"))
            .ok());
    EXPECT_EQ(row(q("3-0-0-1-1-0-0-0"))->text(q("ASSOC")), q("B"));
}

TEST_F(ParcelServiceTest, FailedAndComplaintShareOneColumn)
{
    ASSERT_TRUE(service->SBLAdd18(q("1-0-0-1-1-0-0-0"), q("12-1"), q("A"), q(""), q("L"), q(""), q("")).ok());
    ASSERT_TRUE(service->SBLExists(q("1-0-0-1-1-0-0-0")));
    service->currentNote = q("open complaint");
    ASSERT_TRUE(service->SBLSetComplaint().ok());
    EXPECT_FALSE(service->SBLHasFailed());
    EXPECT_TRUE(service->SBLHasComplaint());
    ASSERT_TRUE(service->SBLSetFailed().ok());
    EXPECT_FALSE(service->SBLHasComplaint());
    EXPECT_TRUE(service->SBLHasFailed());
    EXPECT_EQ(row(q("1-0-0-1-1-0-0-0"))->value(q("FAILED")).toInt(), 1);
    // Clearing one flag keeps the note; clearing all empties it.
    ASSERT_TRUE(service->SBLSetOther().ok());
    ASSERT_TRUE(service->SBLClearOther().ok());
    EXPECT_FALSE(service->SBLHasOther());
    EXPECT_TRUE(service->SBLHasNotes());
    EXPECT_EQ(row(q("1-0-0-1-1-0-0-0"))->text(q("NOTES")), q("open complaint"));
    ASSERT_TRUE(service->SBLSetViol().ok());
    ASSERT_TRUE(service->SBLClearFlag().ok());
    EXPECT_FALSE(service->SBLHasViol());
    EXPECT_FALSE(service->SBLHasFailed());
    EXPECT_FALSE(service->SBLHasNotes());
    EXPECT_EQ(row(q("1-0-0-1-1-0-0-0"))->text(q("NOTES")), QString());
}

TEST_F(ParcelServiceTest, FlagTestsCopyTheNoteAndReadNullAsClear)
{
    ASSERT_TRUE(
        service->SBLAddExtended(q("1-0-0-1-1-0-0-0"), q(""), q("A"), q("L"), q("0"), q("0"), q("")).ok());
    ASSERT_TRUE(service->SBLExists(q("1-0-0-1-1-0-0-0")));
    EXPECT_FALSE(service->SBLHasOther());
    EXPECT_FALSE(service->SBLHasFailed());
    EXPECT_FALSE(service->SBLHasNotes());
    service->currentNote = q("fence too high");
    ASSERT_TRUE(service->SBLSetViol().ok());
    service->currentNote.clear();
    ASSERT_TRUE(service->SBLExists(q("1-0-0-1-1-0-0-0")));
    EXPECT_TRUE(service->SBLHasViol());
    EXPECT_EQ(service->currentNote, q("fence too high"));
}

TEST_F(ParcelServiceTest, UpdatesOfTheRowUnderTheCursor)
{
    ASSERT_TRUE(service->SBLAdd18(q("1-0-0-1-1-0-0-0"), q("12-1"), q("A"), q(""), q("L"), q(""), q("")).ok());
    ASSERT_TRUE(service->SBLExists(q("1-0-0-1-1-0-0-0")));
    ASSERT_TRUE(service
                    ->SBLUpdate2(q("1-0-0-1-1-0-0-0"), q("12-9"), QString(25, QLatin1Char('B')), q("x"),
                        QString(75, QLatin1Char('M')))
                    .ok());
    auto updated = row(q("1-0-0-1-1-0-0-0"));
    EXPECT_EQ(updated->text(q("PERMIT")), q("12-9"));
    // The newest case goes in front of the trail.
    EXPECT_EQ(updated->text(q("HISTORICAL")), q("*12-9*12-1"));
    EXPECT_EQ(updated->text(q("ASSOC")).size(), 20);
    EXPECT_EQ(updated->text(q("LOCN1")).size(), 70);

    ASSERT_TRUE(service->SBLUpdate2(q("1-0-0-1-1-0-0-0"), q("  "), q("C"), q("x"), q("N")).ok());
    EXPECT_EQ(row(q("1-0-0-1-1-0-0-0"))->text(q("HISTORICAL")), q("*12-9*12-1"));
    EXPECT_EQ(row(q("1-0-0-1-1-0-0-0"))->text(q("PERMIT")), q("12-9"));

    ASSERT_TRUE(service->SBLUpdate(q("x"), q(""), q("note")).ok());
    EXPECT_EQ(row(q("1-0-0-1-1-0-0-0"))->text(q("ASSOC")), q("UNK"));
    ASSERT_TRUE(service->SBLHistoryUpdate(q("*Z12-1")).ok());
    EXPECT_EQ(row(q("1-0-0-1-1-0-0-0"))->text(q("HISTORICAL")), q("*Z12-1"));
    // The cursor still stands on the row after each update.
    EXPECT_EQ(service->recordset()->text(q("SBLF")), q("1-0-0-1-1-0-0-0"));
}

TEST_F(ParcelServiceTest, ValidatePermitSetsStopFlagWhenTheCaseIsFree)
{
    session().StopFlag = false;
    service->ValidatePermit(q("12-207")); // no case file at all
    EXPECT_TRUE(session().StopFlag);
    const QString cases = installation.createDatabase(store::Table::PBPROJ);
    service->ValidatePermit(q("12-207")); // an empty case table
    EXPECT_TRUE(session().StopFlag);
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(cases, q("Select * from PBPROJ"), &status);
        rows->AddNew();
        rows->setValue(q("PBCASE"), q("12-207"));
        ASSERT_TRUE(rows->Update().ok());
    }
    service->ValidatePermit(q("12-207"));
    EXPECT_FALSE(session().StopFlag);
    service->ValidatePermit(q("12-208"));
    EXPECT_TRUE(session().StopFlag);
}

TEST_F(ParcelServiceTest, RollSynchronisationOverwritesOwnerAndKeepsTheRest)
{
    RpsRoll roll(RpsRoll::rollPathIn(installation.databaseFolder()));
    ASSERT_TRUE(roll.resetRPSsbl().ok());
    RpsRow parcel{q("12-34-0-1-5-0-0-0"), q("12.34-1-5"), q("NEW OWNER"), q("NEW OWNER"), q("9 OAK LN"),
        q("0559622"), q("674404"), q("PO BOX 9  , TOWN NY 12345"), {}, {}, {}, {}};
    ASSERT_TRUE(roll.RPSSBLAdd(parcel).ok());
    parcel.fullForm = q("7-0-0-1-1-0-0-0");
    ASSERT_TRUE(roll.RPSSBLAdd(parcel).ok());

    ASSERT_TRUE(service
                    ->SBLAdd18(q("12-34-0-1-5-0-0-0"), q("12-207"), q("OLD OWNER"), q("a note"), q("OLD ST"),
                        q("OLD"), q("OLD MAIL"))
                    .ok());
    ASSERT_TRUE(service->SBLExists(q("12-34-0-1-5-0-0-0")));
    service->currentNote = q("a note");
    ASSERT_TRUE(service->SBLSetViol().ok());

    store::StoreStatus status;
    EXPECT_EQ(roll.syncSBL(*service, &status), 2);
    EXPECT_TRUE(status.ok()) << status.description.toStdString();
    auto synced = row(q("12-34-0-1-5-0-0-0"));
    EXPECT_EQ(synced->text(q("ASSOC")), q("NEW OWNER"));
    EXPECT_EQ(synced->text(q("LOCN1")), q("9 OAK LN"));
    EXPECT_EQ(synced->text(q("MAILING")), q("PO BOX 9  , TOWN NY 12345"));
    EXPECT_DOUBLE_EQ(synced->value(q("NORTHCOORD")).toDouble(), 674404);
    EXPECT_EQ(synced->text(q("PERMIT")), q("12-207"));
    EXPECT_EQ(synced->text(q("HISTORICAL")), q("*12-207"));
    EXPECT_EQ(synced->text(q("NOTES")), q("a note"));
    EXPECT_EQ(synced->value(q("VIOL")).toInt(), 1);
    EXPECT_EQ(rowCount(), 2);
    // A second run adds nothing.
    EXPECT_EQ(roll.syncSBL(*service, &status), 2);
    EXPECT_EQ(rowCount(), 2);
}

TEST_F(ParcelServiceTest, OlderStoreIsConvertedOnlyWithConsent)
{
    makeStore(store::Table::SBL);
    ASSERT_TRUE(service->SBLAdd(q("1-0-0-1-1-0-0-0"), q("12-1"), q(""), q("note"), q("1 ELM ST")).ok());
    ASSERT_TRUE(service->SBLAdd(q("5-0-0-1-1-0-0-0"), q("12-5"), q("OWNER"), q(""), q("")).ok());
    ASSERT_TRUE(service->SBLExists(q("1-0-0-1-1-0-0-0")));
    service->currentNote = q("note");
    ASSERT_TRUE(service->SBLSetComplaint().ok());
    RpsRoll roll(RpsRoll::rollPathIn(installation.databaseFolder()));
    ASSERT_TRUE(roll.resetRPSsbl().ok());
    ASSERT_TRUE(roll.RPSSBLAdd(RpsRow{q("2-0-0-1-1-0-0-0"), q("2-1-1"), q("OWNER"), q("OWNER"), q("2 ELM ST"),
                                   q("1"), q("2"), q("MAIL"), {}, {}, {}, {}})
                    .ok());

    test::scriptedPrompts().answer(q("older version SBL Repository"), PromptAnswer::No);
    SblSync::Outcome outcome = SblSync::syncSBL(*service, roll, session());
    EXPECT_FALSE(outcome.ran);
    EXPECT_EQ(service->columnCount(), 13);
    EXPECT_EQ(rowCount(), 2);

    test::scriptedPrompts().answer(q("older version SBL Repository"), PromptAnswer::Yes);
    outcome = SblSync::syncSBL(*service, roll, session());
    EXPECT_TRUE(outcome.converted);
    EXPECT_TRUE(outcome.ran) << outcome.status.description.toStdString();
    EXPECT_EQ(outcome.carried, 1);
    EXPECT_EQ(rowCount(), 3);
    EXPECT_EQ(service->columnCount(), 18);
    EXPECT_EQ(session().ParcelStoreVersion, 18);
    EXPECT_TRUE(QFile::exists(installation.path(q("sbl.db"))));

    auto converted = row(q("1-0-0-1-1-0-0-0"));
    EXPECT_EQ(converted->fieldCount(), 18);
    EXPECT_EQ(converted->text(q("ASSOC")), q("?"));
    EXPECT_EQ(converted->text(q("CONTACT")), q("?"));
    EXPECT_EQ(converted->text(q("MAILING")), q("1 ELM ST"));
    EXPECT_EQ(converted->value(q("FAILED")).toInt(), 2);
    EXPECT_EQ(converted->text(q("NOTES")), q("note"));
    EXPECT_EQ(converted->text(q("PERMIT")), q("12-1"));
    // The trail does not survive the conversion.
    EXPECT_EQ(converted->text(q("HISTORICAL")), QString());
    EXPECT_EQ(row(q("2-0-0-1-1-0-0-0"))->text(q("ASSOC")), q("OWNER"));
    // The mailing address is the location as it was, before an empty one reads "?".
    auto noLocation = row(q("5-0-0-1-1-0-0-0"));
    EXPECT_EQ(noLocation->text(q("LOCN1")), q("?"));
    EXPECT_EQ(noLocation->text(q("MAILING")), QString());
    EXPECT_EQ(noLocation->text(q("CONTACT")), q("OWNER"));
}
