#include "cases/CaseNumbering.h"

#include "common/Session.h"
#include "common/TextFiles.h"
#include "store/Catalogue.h"
#include "store/Recordset.h"
#include "support/InstallationTest.h"

#include <QFile>
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::cases;

namespace {

using pvardo::test::q;

class CaseNumberingTest : public test::InstallationTest
{
protected:
    void SetUp() override
    {
        InstallationTest::SetUp();
        casePath = installation.createDatabase(store::Table::PBPROJ);
        numbering
            = std::make_unique<CaseNumbering>(installation.databaseFolder(), casePath, QDate(2026, 1, 5));
    }

    void addCase(const QString& number)
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(casePath, q("Select * from PBPROJ"), &status);
        rows->AddNew();
        rows->setValue(q("PBCASE"), number);
        ASSERT_TRUE(rows->Update().ok()) << number.toStdString();
    }

    QString fileLine(const char* name)
    {
        const auto lines = readTextLines(joinPath(installation.databaseFolder(), QString::fromLatin1(name)));
        return lines && !lines->isEmpty() ? lines->first() : q("<none>");
    }

    void writeLine(const char* name, const QString& line)
    {
        ASSERT_TRUE(
            replaceTextLines(joinPath(installation.databaseFolder(), QString::fromLatin1(name)), {line}));
    }

    QString casePath;
    std::unique_ptr<CaseNumbering> numbering;
};

} // namespace

TEST_F(CaseNumberingTest, NewInstallationStartsAt200)
{
    numbering->load();
    EXPECT_EQ(fileLine("pnb.txt"), q("-1"));
    EXPECT_EQ(fileLine("zhi.txt"), q("200"));
    EXPECT_EQ(numbering->proposeNumber(), q("26-200"));
    EXPECT_TRUE(session().StopFlag);
}

TEST_F(CaseNumberingTest, EitherFileMissingRewritesBoth)
{
    writeLine("pnb.txt", q("500"));
    numbering->load();
    EXPECT_EQ(numbering->PermitBase, q("-1"));
    EXPECT_EQ(numbering->PermitSeqStored, q("200"));

    writeLine("zhi.txt", q("350"));
    writeLine("pnb.txt", q("-1"));
    numbering->load();
    EXPECT_EQ(numbering->PermitSeqStored, q("350"));
}

TEST_F(CaseNumberingTest, ProposalClimbsPastTakenNumbersAndKeepsTheClimb)
{
    writeLine("pnb.txt", q("-1"));
    writeLine("zhi.txt", q("207"));
    numbering->load();
    addCase(q("26-207"));
    addCase(q("26-208"));
    EXPECT_EQ(numbering->proposeNumber(), q("26-209"));
    EXPECT_EQ(numbering->PermitSeq, q("209"));
    EXPECT_EQ(fileLine("zhi.txt"), q("209"));
    // A number proposed and then cancelled is not used up.
    EXPECT_EQ(numbering->proposeNumber(), q("26-209"));
    numbering->advanceAfterInsert();
    EXPECT_EQ(numbering->PermitSeq, q("210"));
    EXPECT_EQ(fileLine("zhi.txt"), q("210"));
}

TEST_F(CaseNumberingTest, BeginNumberingWithStartsTheSequenceAndKeepsTheCounterInPnb)
{
    writeLine("pnb.txt", q("500"));
    writeLine("zhi.txt", q("200"));
    numbering->load();
    addCase(q("26-500"));
    EXPECT_EQ(numbering->proposeNumber(), q("26-501"));
    EXPECT_EQ(fileLine("pnb.txt"), q("501"));
    EXPECT_EQ(fileLine("zhi.txt"), q("200"));
    EXPECT_EQ(numbering->PermitBase, q("501"));
}

TEST_F(CaseNumberingTest, EmptyOrNonNumericCounter)
{
    writeLine("pnb.txt", q("-1"));
    writeLine("zhi.txt", q(""));
    numbering->load();
    EXPECT_EQ(numbering->proposeNumber(), q("26-"));
    numbering->advanceAfterInsert();
    EXPECT_EQ(numbering->PermitSeq, q("1"));

    CaseNumbering other(installation.databaseFolder(), casePath, QDate(2026, 1, 5));
    writeLine("zhi.txt", q("abc"));
    other.load();
    addCase(q("26-abc"));
    EXPECT_EQ(other.proposeNumber(), q("26-1"));
}

TEST_F(CaseNumberingTest, ValidatePermitAndPermitExistHaveOppositeSenses)
{
    numbering->ValidatePermit(q("26-200")); // empty table
    EXPECT_TRUE(session().StopFlag);
    EXPECT_FALSE(numbering->PermitExists(q("26-200")));
    addCase(q("26-200"));
    EXPECT_TRUE(numbering->PermitExists(q("26-200")));
    numbering->ValidatePermit(q("26-200"));
    EXPECT_FALSE(session().StopFlag);
    EXPECT_FALSE(numbering->PermitExists(q("26-20")));
    // A missing case file counts as empty.
    CaseNumbering nowhere(installation.databaseFolder(), installation.path(q("none.db")), QDate(2026, 1, 5));
    nowhere.ValidatePermit(q("26-200"));
    EXPECT_TRUE(session().StopFlag);
}

TEST_F(CaseNumberingTest, BumpPermit)
{
    const std::pair<const char*, const char*> cases[] = {
        {"12-207", "12-208"},
        {"ABC", "AB-1"},
        {"12-", "12-1"},
        {"2026-5", "20-7"},
        {"12-9X", "12-10"},
    };
    for (const auto& [input, bumped] : cases) {
        EXPECT_EQ(numbering->BumpPermit(q(input)), q(bumped)) << input;
    }
    // None of them is of this year (26): the working sequence stays.
    EXPECT_EQ(numbering->PermitSeq, QString());
}

TEST_F(CaseNumberingTest, AResolvedNumberNeverPullsTheSequenceBack)
{
    writeLine("pnb.txt", q("250"));
    writeLine("zhi.txt", q("250"));
    numbering->load();
    addCase(q("24-201"));
    addCase(q("26-250"));
    EXPECT_EQ(numbering->proposeNumber(), q("26-251"));
    // The clerk types over the proposal with an old year's taken number.
    EXPECT_EQ(numbering->BumpPermit(q("24-201")), q("24-202"));
    EXPECT_EQ(numbering->PermitSeq, q("251"));
    addCase(q("24-202"));
    numbering->advanceAfterInsert();
    EXPECT_EQ(fileLine("pnb.txt"), q("252"));
    EXPECT_EQ(numbering->proposeNumber(), q("26-252"));
    // A number of this year behind the sequence does not pull it back;
    // one ahead of it moves it on.
    EXPECT_EQ(numbering->BumpPermit(q("26-210")), q("26-211"));
    EXPECT_EQ(numbering->PermitSeq, q("252"));
    EXPECT_EQ(numbering->BumpPermit(q("26-300")), q("26-301"));
    EXPECT_EQ(numbering->PermitSeq, q("301"));
}

TEST_F(CaseNumberingTest, DuplicateOnInsertIsBumpedOnlyWithConsent)
{
    numbering->load();
    addCase(q("12-207"));
    addCase(q("12-208"));
    int asked = 0;
    QString number = q("12-207");
    EXPECT_FALSE(numbering->resolveDuplicate(number, [&asked] {
        ++asked;
        return DupeChoice::Cancel;
    }));
    EXPECT_TRUE(session().StopFlag);
    EXPECT_EQ(number, q("12-207"));
    EXPECT_EQ(asked, 1);

    EXPECT_TRUE(numbering->resolveDuplicate(number, [&asked] {
        ++asked;
        return DupeChoice::ResolveAutomatically;
    }));
    EXPECT_EQ(number, q("12-209"));
    EXPECT_TRUE(numbering->ResolveDupesAuto);
    EXPECT_EQ(asked, 2);
    // From then on for the rest of the run without asking.
    number = q(" 12-208 ");
    EXPECT_TRUE(numbering->resolveDuplicate(number, {}));
    EXPECT_EQ(number, q("12-209"));
}

TEST_F(CaseNumberingTest, TheRunningNumberingReadsTheSessionsFolder)
{
    writeLine("pnb.txt", q("-1"));
    writeLine("zhi.txt", q("730"));
    session().Today = QDate(2031, 6, 1);
    resetCaseNumbering();
    EXPECT_EQ(caseNumbering().yearPart(), q("31"));
    EXPECT_EQ(caseNumbering().proposeNumber(), q("31-730"));
    caseNumbering().ResolveDupesAuto = true;
    EXPECT_TRUE(caseNumbering().ResolveDupesAuto);
    // A new run starts with the flag clear.
    resetCaseNumbering();
    EXPECT_FALSE(caseNumbering().ResolveDupesAuto);
    resetCaseNumbering();
}
