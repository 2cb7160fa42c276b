#include "cases/CaseRecord.h"

#include "cases/CaseChangeLog.h"
#include "cases/CaseNumbering.h"
#include "cases/CaseStatus.h"
#include "common/Clock.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "parcels/ParcelService.h"
#include "store/Catalogue.h"
#include "store/ColumnMap.h"
#include "store/Recordset.h"
#include "support/InstallationTest.h"
#include "support/ScriptedPrompts.h"
#include "support/Text.h"

#include <QFile>
#include <QMap>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::cases;

namespace {

using pvardo::test::q;

class CaseRecordTest : public test::InstallationTest
{
protected:
    void SetUp() override
    {
        InstallationTest::SetUp();
        session().CurrentUser = q("clerk");
        casePath = installation.createDatabase(store::Table::PBPROJ);
        const QString storePath = installation.databaseFolder() + q("/sbl.db");
        ASSERT_TRUE(store::createDatabaseFile(storePath, store::tableDef(store::Table::SBL18)).ok());
        parcels = std::make_unique<parcels::ParcelService>(storePath, casePath);
        ASSERT_TRUE(parcels->resetsbl().ok());
        numbering
            = std::make_unique<CaseNumbering>(installation.databaseFolder(), casePath, QDate(2012, 3, 1));
        numbering->load();
        map.fill(store::Table::PBPROJ);
        store::StoreStatus status;
        cases = store::openRecordsetAt(casePath, q("Select * from PBPROJ order by PBCASE"), &status);
        ASSERT_TRUE(cases);
    }

    CaseInputs inputs(const char* number) const
    {
        CaseInputs in;
        in.caseNumber = q(number);
        in.fileDate = q("02/03/12");
        in.statusText = q("Pending");
        in.sbl = parcels::SblBoxes{q("12.3"), q("1"), q("5"), q(""), q("")};
        in.ownerName = q("OWNER OF THE PARCEL WITH A LONG NAME");
        in.siteLocation = q("10 MAIN ST");
        return in;
    }

    // The screen's write: the boxes as typed, through the map.
    CaseRecord::RowFiller filler()
    {
        return [this](store::Recordset& row, const CaseInputs& in) {
            boxes[1] = in.caseNumber;
            boxes[2] = in.sbl.section;
            boxes[3] = in.sbl.block;
            boxes[4] = in.sbl.lot;
            boxes[7] = in.siteLocation;
            boxes[12] = in.ownerName;
            return CaseRecord::movefieldsintodb(
                map, row, [this](int box) { return boxes.value(box); }, in, session());
        };
    }

    store::StoreStatus insert(CaseInputs in)
    {
        EXPECT_TRUE(CaseRecord::PostCaseToParcel(*parcels, in, true).ok());
        return CaseRecord::insertCase(*cases, *numbering, in, filler(), {});
    }

    std::unique_ptr<store::Recordset> caseRow(const QString& number)
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(
            casePath, q("Select * from PBPROJ where [PBCASE] = '") + number + q("'"), &status);
        EXPECT_TRUE(rows && !rows->Eof()) << number.toStdString();
        return rows;
    }

    QString parcelText(const char* sbl, const char* column)
    {
        EXPECT_TRUE(parcels->SBLExists(q(sbl))) << sbl;
        return parcels->recordset()->text(QString::fromLatin1(column));
    }

    QString casePath;
    std::unique_ptr<parcels::ParcelService> parcels;
    std::unique_ptr<CaseNumbering> numbering;
    std::unique_ptr<store::Recordset> cases;
    store::ColumnMap map;
    QMap<int, QString> boxes;
};

} // namespace

TEST(CaseStatus, WordsOfTheLetters)
{
    const std::pair<const char*, const char*> cases[] = {
        {"I", "Initial Application"},
        {"P", "Pending"},
        {"O", "On Appeal"},
        {"A", "Approved"},
        {"D", "Denied"},
        {"C", "Canceled"},
        {"V", "Voided"},
        {"T", "Tabled"},
        {"", ""},
        {"X", "X"},
        {"i", "i"},
    };
    for (const auto& [letter, word] : cases) {
        EXPECT_EQ(CaseStatus::statusVerbose(q(letter)), q(word)) << letter;
    }
    EXPECT_EQ(CaseStatus::statusListTexts().size(), 7);
    EXPECT_EQ(CaseStatus::letterOf(q("Initial Submission")), q("I"));
    EXPECT_TRUE(CaseStatus::isActive(q("O")));
    EXPECT_FALSE(CaseStatus::isActive(q("T")));
}

TEST_F(CaseRecordTest, DerivedColumnsAreWrittenWhateverWasTyped)
{
    session().CurrentUser = q("a-user-name-of-19c");
    session().CurrentUser += q("x");
    CaseInputs in = inputs("12-207");
    in.privateWater = true;
    in.privateGas = true;
    boxes[8] = QString(100, QLatin1Char('N')); // applicant name, cut to its 40
    ASSERT_TRUE(insert(in).ok());
    auto row = caseRow(q("12-207"));
    EXPECT_EQ(row->text(q("FILEMONTH")), q("02"));
    EXPECT_EQ(row->text(q("FILEDATE")), q("03"));
    EXPECT_EQ(row->text(q("FILEYEAR")), q("12"));
    EXPECT_EQ(row->value(q("PBFILEDATE")).toDate(), QDate(2012, 2, 3));
    EXPECT_EQ(row->text(q("BLDGPERMYY")), q("12"));
    EXPECT_EQ(row->text(q("BLDGPRM")), q("207"));
    EXPECT_EQ(row->text(q("PBSTATUS")), q("P"));
    EXPECT_EQ(row->text(q("SEC")), q("12"));
    EXPECT_EQ(row->text(q("SUD")), q("3"));
    EXPECT_EQ(row->text(q("PBFW")), q("1"));
    EXPECT_EQ(row->text(q("PBFS")), q("0"));
    EXPECT_EQ(row->text(q("PBFG")), q("1"));
    EXPECT_EQ(row->text(q("PBAPPNAME1")).size(), 40);
    EXPECT_EQ(row->text(q("BYUSER")), q("a-user-name-of-19c"));
    EXPECT_TRUE(row->value(q("TSTAMP")).toDateTime().isValid());
    EXPECT_EQ(parcels::SblParts::currentSBL(*row), q("12-3-0-1-5-0-0-0"));

    // A two-digit year is read against today: in 2026, 78 is of the 1900s.
    ScopedClockDay clock(QDate(2026, 11, 23));
    in = inputs("ABC");
    in.fileDate = q("02/03/78");
    in.sbl.section = q("12.0");
    ASSERT_TRUE(insert(in).ok());
    row = caseRow(q("ABC"));
    EXPECT_EQ(row->text(q("BLDGPERMYY")), q("AB"));
    EXPECT_EQ(row->text(q("BLDGPRM")), QString());
    EXPECT_EQ(row->value(q("PBFILEDATE")).toDate(), QDate(1978, 2, 3));
    EXPECT_EQ(row->text(q("SUD")), q("0"));
}

TEST_F(CaseRecordTest, AnEmptyFileDateLeavesTheDateColumnsAlone)
{
    ASSERT_TRUE(insert(inputs("12-1")).ok());
    CaseInputs in = inputs("12-1");
    in.fileDate.clear();
    cases->Requery();
    ASSERT_TRUE(cases->Find(q("[PBCASE] = '12-1'")).ok());
    ASSERT_TRUE(CaseRecord::saveCase(*cases, in, filler()).ok());
    EXPECT_EQ(caseRow(q("12-1"))->text(q("FILEMONTH")), q("02"));
}

TEST_F(CaseRecordTest, ParcelPostingOnInsertAndSave)
{
    ASSERT_TRUE(
        parcels->SBLAdd18(q("12-3-0-1-5-0-0-0"), q("11-1"), q("OLD"), q(""), q("OLD ST"), q(""), q("")).ok());
    ASSERT_TRUE(insert(inputs("12-207")).ok());
    EXPECT_EQ(parcelText("12-3-0-1-5-0-0-0", "HISTORICAL"), q("*11-1*Z12-207"));
    EXPECT_EQ(parcelText("12-3-0-1-5-0-0-0", "ASSOC"), q("OWNER OF THE PARCEL "));
    EXPECT_EQ(parcelText("12-3-0-1-5-0-0-0", "LOCN1"), q("10 MAIN ST"));
    EXPECT_EQ(parcelText("12-3-0-1-5-0-0-0", "PERMIT"), q("11-1"));

    // A save moves owner and location along, and leaves the trail.
    CaseInputs in = inputs("12-207");
    in.siteLocation = q("12 MAIN ST");
    ASSERT_TRUE(CaseRecord::PostCaseToParcel(*parcels, in, false).ok());
    EXPECT_EQ(parcelText("12-3-0-1-5-0-0-0", "HISTORICAL"), q("*11-1*Z12-207"));
    EXPECT_EQ(parcelText("12-3-0-1-5-0-0-0", "LOCN1"), q("12 MAIN ST"));

    // A parcel the store does not hold is added with the token.
    in = inputs("12-208");
    in.sbl = parcels::SblBoxes{q("7"), q("2"), q("9"), q("a"), q("")};
    ASSERT_TRUE(insert(in).ok());
    EXPECT_EQ(parcelText("7-0-0-2-9-A-0-0", "HISTORICAL"), q("*Z12-208"));
    EXPECT_EQ(parcelText("7-0-0-2-9-A-0-0", "PERMIT"), q("?"));
    EXPECT_EQ(parcels->recordset()->value(q("FAILED")).toInt(), 0);

    // No parcel given: a row of the empty parcel, without a token.
    in = inputs("12-209");
    in.sbl = parcels::SblBoxes{};
    ASSERT_TRUE(CaseRecord::PostCaseToParcel(*parcels, in, true).ok());
    EXPECT_EQ(parcelText("0-0-0-0-0-0-0-0", "HISTORICAL"), QString());
    EXPECT_EQ(parcelText("0-0-0-0-0-0-0-0", "ASSOC"), q("OWNER OF THE PARCEL "));
}

TEST_F(CaseRecordTest, InsertRaceIsBumpedWithResolveDupesAuto)
{
    // Another workstation took 12-207 after this one checked it.
    ASSERT_TRUE(insert(inputs("12-207")).ok());
    numbering->ResolveDupesAuto = true;
    CaseInputs in = inputs("12-207");
    ASSERT_TRUE(CaseRecord::insertCase(*cases, *numbering, in, filler(), {}).ok());
    EXPECT_EQ(in.caseNumber, q("12-208"));
    EXPECT_EQ(numbering->PermitSeq, q("209"));
    EXPECT_EQ(caseRow(q("12-208"))->text(q("BLDGPRM")), q("208"));
}

TEST_F(CaseRecordTest, InsertRaceAsksAndStops)
{
    ASSERT_TRUE(insert(inputs("12-207")).ok());
    CaseInputs in = inputs("12-207");
    int asked = 0;
    const store::StoreStatus status = CaseRecord::insertCase(*cases, *numbering, in, filler(), [&asked] {
        ++asked;
        return DupeChoice::Cancel;
    });
    EXPECT_EQ(status.number, store::StoreErrorNumber::DuplicateKey);
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(session().StopFlag);
    EXPECT_EQ(in.caseNumber, q("12-207"));
    cases->Requery();
    EXPECT_EQ(cases->RecordCount(), 1);
}

TEST_F(CaseRecordTest, SavingOntoAnotherCasesNumberIsRefused)
{
    ASSERT_TRUE(insert(inputs("12-207")).ok());
    ASSERT_TRUE(insert(inputs("12-208")).ok());
    cases->Requery();
    ASSERT_TRUE(cases->Find(q("[PBCASE] = '12-208'")).ok());
    test::scriptedPrompts().clear();
    const store::StoreStatus status = CaseRecord::saveCase(*cases, inputs("12-207"), filler());
    EXPECT_EQ(status.number, store::StoreErrorNumber::DuplicateKey);
    EXPECT_TRUE(session().StopFlag);
    ASSERT_EQ(test::scriptedPrompts().shown().size(), 1);
    EXPECT_EQ(test::scriptedPrompts().shown().at(0).title, q(" Duplicate Permit"));
    EXPECT_EQ(test::scriptedPrompts().shown().at(0).icon, PromptIcon::Critical);
    caseRow(q("12-208"));
}

TEST_F(CaseRecordTest, VoidRestoreDeleteAndRenameLeaveTheRestBehind)
{
    ASSERT_TRUE(insert(inputs("12-207")).ok());
    const QString fees = installation.createDatabase(store::Table::PBFEES);
    {
        store::StoreStatus status;
        auto feeRows = store::openRecordsetAt(fees, q("Select * from PBFEES"), &status);
        feeRows->AddNew();
        feeRows->setValue(q("PBFCASE"), q("12-207"));
        ASSERT_TRUE(feeRows->Update().ok());
    }
    auto feesOf = [&fees](const char* number) {
        store::StoreStatus status;
        return store::openRecordsetAt(
            fees, q("Select * from PBFEES where [PBFCASE] = '") + q(number) + q("'"), &status)
            ->RecordCount();
    };

    cases->Requery();
    ASSERT_TRUE(cases->Find(q("[PBCASE] = '12-207'")).ok());
    cases->setValue(q("PBSTATUS"), q("A"));
    ASSERT_TRUE(cases->Update().ok());
    ASSERT_TRUE(CaseRecord::voidCase(*cases, q("clerk"), session().DatabaseFolder).ok());
    EXPECT_TRUE(CaseStatus::isVoided(*cases));
    EXPECT_EQ(CaseRecord::statusBeforeVoid(session().DatabaseFolder, q("12-207")), q("A"));
    ASSERT_TRUE(CaseRecord::restoreCase(*cases, q("clerk"), q("A")).ok());
    EXPECT_FALSE(CaseStatus::isVoided(*cases));
    EXPECT_EQ(caseRow(q("12-207"))->text(q("PBSTATUS")), q("A"));

    // Rename: the fees stay under the old number, the parcel keeps its token.
    ASSERT_TRUE(CaseRecord::PostCaseToParcel(*parcels, inputs("12-300"), false).ok());
    ASSERT_TRUE(CaseRecord::saveCase(*cases, inputs("12-300"), filler()).ok());
    EXPECT_EQ(feesOf("12-300"), 0);
    EXPECT_EQ(feesOf("12-207"), 1);
    EXPECT_EQ(parcelText("12-3-0-1-5-0-0-0", "HISTORICAL"), q("*Z12-207"));

    // Delete: nothing cascades; the same number again picks the fees up.
    cases->Requery();
    ASSERT_TRUE(cases->Find(q("[PBCASE] = '12-300'")).ok());
    ASSERT_TRUE(CaseRecord::deleteCase(*cases).ok());
    cases->Requery();
    EXPECT_EQ(cases->RecordCount(), 0);
    EXPECT_EQ(parcelText("12-3-0-1-5-0-0-0", "HISTORICAL"), q("*Z12-207"));
    ASSERT_TRUE(insert(inputs("12-207")).ok());
    EXPECT_EQ(feesOf("12-207"), 1);
    EXPECT_EQ(parcelText("12-3-0-1-5-0-0-0", "HISTORICAL"), q("*Z12-207*Z12-207"));
}

TEST_F(CaseRecordTest, ChangeLogLinesAndTheSharedStore)
{
    ASSERT_TRUE(insert(inputs("12-207")).ok());
    const auto log = readTextLines(joinPath(installation.databaseFolder(), q("\\changed.txt")));
    ASSERT_TRUE(log && log->size() == 1);
    EXPECT_TRUE(log->first().startsWith(q("20PBCASE12-207") + QString(19, QLatin1Char(' '))))
        << log->first().toStdString();
    const auto homebound = readTextLines(installation.path(q("homebound.txt")));
    ASSERT_TRUE(homebound && homebound->size() == 1);
    EXPECT_TRUE(log->first().endsWith(homebound->first()));

    session().ShareParcelStore = true;
    ASSERT_TRUE(CaseChangeLog::LogCaseChange(session(), q("20"), q("PBCASE"), q("12-208")));
    EXPECT_EQ(readTextLines(joinPath(installation.databaseFolder(), q("\\changed.txt")))->size(), 1);
}
