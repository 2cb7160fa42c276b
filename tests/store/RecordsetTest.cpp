#include "store/Catalogue.h"
#include "store/ColumnMap.h"
#include "store/DatabaseLocation.h"
#include "store/Recordset.h"

#include "support/TestInstallation.h"

#include <QFile>

#include <gtest/gtest.h>

#include <thread>

using namespace pvardo;
using namespace pvardo::store;

namespace {

class RecordsetTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_cases = m_install.createDatabase(Table::PBPROJ);
        m_fees = m_install.createDatabase(Table::PBFEES);
    }

    std::unique_ptr<Recordset> open(const QString& path, const QString& query)
    {
        StoreStatus status;
        auto rows = openRecordsetAt(path, query, &status);
        EXPECT_TRUE(status.ok()) << status.description.toStdString();
        return rows;
    }

    void addCase(Recordset& rows, const QString& number, const QString& month = QStringLiteral("01"))
    {
        rows.AddNew();
        ASSERT_TRUE(rows.setValue(QStringLiteral("PBCASE"), number).ok());
        ASSERT_TRUE(rows.setValue(QStringLiteral("FILEMONTH"), month).ok());
        ASSERT_TRUE(rows.setValue(QStringLiteral("PBFILEDATE"), QDate(2012, 2, 3)).ok());
        const StoreStatus status = rows.Update();
        ASSERT_TRUE(status.ok()) << status.description.toStdString();
    }

    test::TestInstallation m_install;
    QString m_cases;
    QString m_fees;
};

} // namespace

TEST_F(RecordsetTest, EmptyResultIsBeforeTheFirstAndAfterTheLastRow)
{
    auto rows = open(m_cases, QStringLiteral("Select * from PBPROJ order by PBCASE"));
    ASSERT_TRUE(rows);
    EXPECT_EQ(rows->RecordCount(), 0);
    EXPECT_TRUE(rows->Bof());
    EXPECT_TRUE(rows->Eof());
    EXPECT_TRUE(dbisempty(*rows));
    EXPECT_EQ(rows->text(QStringLiteral("PBCASE")), QString());
    EXPECT_EQ(rows->fieldCount(), 105); // 104 places without the repeated notes, and PRMFOR
}

TEST_F(RecordsetTest, OpenFailuresCarryTheirNumbers)
{
    StoreStatus status;
    EXPECT_FALSE(openRecordsetAt(m_install.path(QStringLiteral("databases/nothere.db")),
                                 QStringLiteral("Select * from PBPROJ"), &status));
    EXPECT_EQ(status.number, StoreErrorNumber::DatabaseNotFound);

    EXPECT_FALSE(openRecordsetAt(m_cases, QStringLiteral("Select * from PBPROJ where [PBCASE] = 'O'Brien'"), &status));
    EXPECT_EQ(status.number, StoreErrorNumber::BadSql);

    EXPECT_FALSE(openRecordsetAt(m_cases, QStringLiteral("Select * from SBL"), &status));
    EXPECT_EQ(status.number, StoreErrorNumber::UnknownTable);

    EXPECT_FALSE(openRecordsetAt(m_cases, QStringLiteral("Select * from PBPROJ order by NOSUCH"), &status));
    EXPECT_EQ(status.number, StoreErrorNumber::UnknownField);

    const QString text = m_install.path(QStringLiteral("databases/notes.db"));
    QFile file(text);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(4096, 'x'));
    file.close();
    EXPECT_FALSE(openRecordsetAt(text, QStringLiteral("Select * from PBPROJ"), &status));
    EXPECT_EQ(status.number, StoreErrorNumber::NotADatabase);

    EXPECT_FALSE(openRecordset(QStringLiteral("PROVIDER=x;"), QStringLiteral("Select * from PBPROJ"), &status));
    EXPECT_EQ(status.number, StoreErrorNumber::DatabaseNotFound);
}

TEST_F(RecordsetTest, MovesCountAndPositions)
{
    auto rows = open(m_cases, QStringLiteral("Select * from PBPROJ order by PBCASE"));
    for (const char* number : {"12-3", "12-1", "12-2"}) {
        addCase(*rows, QString::fromLatin1(number));
    }
    EXPECT_EQ(rows->RecordCount(), 3);
    ASSERT_TRUE(rows->Requery().ok());
    EXPECT_EQ(rows->text(QStringLiteral("PBCASE")), QStringLiteral("12-1"));
    EXPECT_EQ(rows->AbsolutePosition(), 1);
    rows->MoveLast();
    EXPECT_EQ(rows->text(QStringLiteral("PBCASE")), QStringLiteral("12-3"));
    const Bookmark last = rows->bookmark();
    rows->MoveNext();
    EXPECT_TRUE(rows->Eof());
    EXPECT_FALSE(rows->Bof());
    EXPECT_EQ(rows->AbsolutePosition(), Position::AfterLast);
    EXPECT_EQ(rows->MoveNext().number, StoreErrorNumber::NoCurrentRecord);
    rows->MoveFirst();
    rows->MovePrevious();
    EXPECT_TRUE(rows->Bof());
    rows->Move(2);
    EXPECT_EQ(rows->text(QStringLiteral("PBCASE")), QStringLiteral("12-2"));
    EXPECT_TRUE(rows->setBookmark(last));
    EXPECT_EQ(rows->AbsolutePosition(), 3);
}

TEST_F(RecordsetTest, AnOpenCursorHoldsNoLockBetweenCalls)
{
    auto reader = open(m_cases, QStringLiteral("Select * from PBPROJ order by PBCASE"));
    auto writer = open(m_cases, QStringLiteral("Select * from PBPROJ"));
    addCase(*writer, QStringLiteral("12-1"));
    ASSERT_TRUE(reader->Requery().ok());
    EXPECT_EQ(reader->text(QStringLiteral("PBCASE")), QStringLiteral("12-1"));
    addCase(*writer, QStringLiteral("12-2")); // while the reader stands on a row
    EXPECT_EQ(reader->RecordCount(), 1);
    ASSERT_TRUE(reader->Requery().ok());
    EXPECT_EQ(reader->RecordCount(), 2);
}

TEST_F(RecordsetTest, ASecondCaseNumberIsRefusedByTheUniqueIndex)
{
    auto rows = open(m_cases, QStringLiteral("Select * from PBPROJ order by PBCASE"));
    addCase(*rows, QStringLiteral("12-A"));
    rows->AddNew();
    rows->setValue(QStringLiteral("PBCASE"), QStringLiteral("12-a"));
    const StoreStatus status = rows->Update();
    EXPECT_EQ(status.number, StoreErrorNumber::DuplicateKey);
    EXPECT_EQ(status.number, 0x80004005);
    rows->CancelUpdate();
    EXPECT_EQ(rows->RecordCount(), 1);
    EXPECT_EQ(rows->text(QStringLiteral("PBCASE")), QStringLiteral("12-A"));
}

TEST_F(RecordsetTest, ComparisonsBehaveAsTheOfficeExpects)
{
    auto rows = open(m_cases, QStringLiteral("Select * from PBPROJ"));
    addCase(*rows, QStringLiteral("12-1"), QStringLiteral("02"));
    addCase(*rows, QStringLiteral("12-2"), QStringLiteral("11"));
    addCase(*rows, QStringLiteral("12-3"), QStringLiteral("x"));
    rows->setValue(QStringLiteral("PBAPPNAME1"), QStringLiteral("Mary O'Hara"));
    rows->setValue(QStringLiteral("PBFILEDATE"), QStringLiteral("12/25/11"));
    ASSERT_TRUE(rows->Update().ok());

    struct Case {
        const char* where;
        int count;
    } cases[] = {
        {"[FILEMONTH] = 2", 1},          // a number finds "02"
        {"[FILEMONTH] > 1", 2},          // "x" holds no number and never matches
        {"[PBCASE] = '12-1'", 1},
        {"[pbcase] <> '12-1'", 2},
        {"[PBAPPNAME1] like '%HARA%'", 1}, // like ignores case
        {"[PBFILEDATE] > #02/01/12#", 2},
        {"[PBFILEDATE] < #1/1/2012#", 1},
        {"([PBFILEDATE] > #1/1/2012# and [FILEMONTH] = '11') or [PBCASE] = '12-3'", 2},
        {"[PBAPPNAME1] = ''", 0},
    };
    for (const Case& c : cases) {
        StoreStatus status;
        auto found = openRecordsetAt(m_cases, QStringLiteral("Select * from PBPROJ where ") + QString::fromUtf8(c.where), &status);
        ASSERT_TRUE(found) << c.where << ": " << status.description.toStdString();
        EXPECT_EQ(found->RecordCount(), c.count) << c.where;
    }
    StoreStatus status;
    EXPECT_FALSE(openRecordsetAt(m_fees, QStringLiteral("Select * from PBFEES where [PBFBALDUE] <> 'none'"), &status));
    EXPECT_EQ(status.number, StoreErrorNumber::TypeMismatch);
}

TEST_F(RecordsetTest, FindLooksForwardFromTheCurrentRow)
{
    auto rows = open(m_cases, QStringLiteral("Select * from PBPROJ order by PBCASE"));
    for (const char* number : {"12-1", "12-2", "12-3"}) {
        addCase(*rows, QString::fromLatin1(number));
    }
    rows->Requery();
    rows->MoveFirst();
    ASSERT_TRUE(rows->Find(QStringLiteral("[PBCASE] = '12-3'")).ok());
    EXPECT_EQ(rows->AbsolutePosition(), 3);
    rows->MoveLast();
    rows->Find(QStringLiteral("[PBCASE] = '12-1'"));
    EXPECT_TRUE(rows->Eof()); // forward only: not found after the current row
    rows->MoveFirst();
    rows->Find(QStringLiteral("[PBCASE] = '12-9'"));
    EXPECT_TRUE(rows->Eof());
    rows->MoveFirst();
    ASSERT_TRUE(rows->Find(QStringLiteral("[pbcase]='12-2'")).ok()); // keys compare without regard to case
    EXPECT_EQ(rows->AbsolutePosition(), 2);
    rows->MoveFirst();
    rows->Find(QStringLiteral("[PBCASE] = '12-2' or [PBCASE] = '12-3'"));
    EXPECT_EQ(rows->AbsolutePosition(), 2);
    EXPECT_EQ(rows->Find(QStringLiteral("[PBCASE] = 'O'Brien'")).number, StoreErrorNumber::BadSql);

    auto fees = open(m_fees, QStringLiteral("Select * from PBFEES order by SEQ"));
    for (int i = 0; i < 3; ++i) {
        fees->AddNew();
        fees->setValue(QStringLiteral("PBFCASE"), QStringLiteral("12-1"));
        fees->setValue(QStringLiteral("PBFAMOUNT"), 10.5 * i);
        ASSERT_TRUE(fees->Update().ok());
    }
    fees->MoveFirst();
    ASSERT_TRUE(fees->Find(QStringLiteral("[SEQ] = 2")).ok());
    EXPECT_EQ(fees->value(QStringLiteral("PBFAMOUNT")).toDouble(), 10.5);
    EXPECT_EQ(fees->text(QStringLiteral("SEQ")), QStringLiteral("2"));
}

TEST_F(RecordsetTest, NullsReadAsEmptyTextAndValuesKeepTheirKinds)
{
    auto rows = open(m_fees, QStringLiteral("Select * from PBFEES order by SEQ"));
    rows->AddNew();
    rows->setValue(QStringLiteral("PBFCASE"), QStringLiteral("12-1"));
    rows->setValue(QStringLiteral("PBFAMOUNT"), QStringLiteral("125.50"));
    rows->setValue(QStringLiteral("PBFPAIDDATE"), QStringLiteral("3/7/12"));
    rows->setValue(QStringLiteral("TSTAMP"), QDateTime(QDate(2012, 3, 7), QTime(14, 5)));
    ASSERT_TRUE(rows->Update().ok());
    EXPECT_TRUE(rows->value(QStringLiteral("PBFPAID")).isNull());
    EXPECT_EQ(rows->text(QStringLiteral("PBFPAID")), QString());
    EXPECT_EQ(rows->value(QStringLiteral("PBFAMOUNT")).toDouble(), 125.5);
    EXPECT_EQ(rows->value(QStringLiteral("PBFPAIDDATE")).toDate(), QDate(2012, 3, 7));
    EXPECT_EQ(rows->text(QStringLiteral("PBFPAIDDATE")), QStringLiteral("03/07/2012"));
    EXPECT_EQ(rows->value(QStringLiteral("TSTAMP")).toDateTime(), QDateTime(QDate(2012, 3, 7), QTime(14, 5)));
    EXPECT_EQ(rows->setValue(QStringLiteral("PBFAMOUNT"), QStringLiteral("lots")).number, 3421);
    EXPECT_EQ(rows->setValue(QStringLiteral("SEQ"), 7).number, 3164);
    EXPECT_EQ(rows->setValue(QStringLiteral("NOSUCH"), 7).number, StoreErrorNumber::UnknownField);
}

TEST_F(RecordsetTest, DeleteLeavesTheCursorBetweenRows)
{
    auto rows = open(m_cases, QStringLiteral("Select * from PBPROJ order by PBCASE"));
    for (const char* number : {"12-1", "12-2", "12-3"}) {
        addCase(*rows, QString::fromLatin1(number));
    }
    rows->Requery();
    rows->MoveNext();
    ASSERT_TRUE(rows->Delete().ok());
    EXPECT_EQ(rows->RecordCount(), 2);
    EXPECT_FALSE(rows->Eof());
    rows->MoveNext();
    EXPECT_EQ(rows->text(QStringLiteral("PBCASE")), QStringLiteral("12-3"));
    rows->Delete();
    rows->MoveNext();
    EXPECT_TRUE(rows->Eof());
    rows->MoveLast();
    EXPECT_EQ(rows->text(QStringLiteral("PBCASE")), QStringLiteral("12-1"));
}

TEST_F(RecordsetTest, ARowDeletedByAnotherWorkstationIsNotWrittenBack)
{
    auto mine = open(m_cases, QStringLiteral("Select * from PBPROJ order by PBCASE"));
    addCase(*mine, QStringLiteral("12-1"));
    auto theirs = open(m_cases, QStringLiteral("Select * from PBPROJ"));
    ASSERT_TRUE(theirs->Delete().ok());
    mine->setValue(QStringLiteral("PBLOCN1"), QStringLiteral("1 Main St"));
    EXPECT_EQ(mine->Update().number, StoreErrorNumber::RowDeleted);
}

TEST_F(RecordsetTest, TwoWritersAtOnceBothSucceedAndTheFileStaysWhole)
{
    constexpr int perWriter = 60;
    auto write = [this](const QString& prefix, StoreStatus* failure) {
        StoreStatus status;
        auto rows = openRecordsetAt(m_cases, QStringLiteral("Select * from PBPROJ"), &status);
        if (!rows) {
            *failure = status;
            return;
        }
        for (int i = 0; i < perWriter; ++i) {
            rows->AddNew();
            rows->setValue(QStringLiteral("PBCASE"), prefix + QString::number(i));
            status = rows->Update();
            if (!status.ok()) {
                *failure = status;
                return;
            }
        }
    };
    StoreStatus first;
    StoreStatus second;
    std::thread a(write, QStringLiteral("A-"), &first);
    std::thread b(write, QStringLiteral("B-"), &second);
    a.join();
    b.join();
    // Each writer either finished or stopped with a clear lock message.
    for (const StoreStatus* status : {&first, &second}) {
        EXPECT_TRUE(status->ok() || status->number == StoreErrorNumber::Locked) << status->description.toStdString();
    }
    auto rows = open(m_cases, QStringLiteral("Select * from PBPROJ"));
    const int expected = (first.ok() ? perWriter : 0) + (second.ok() ? perWriter : 0);
    if (first.ok() && second.ok()) {
        EXPECT_EQ(rows->RecordCount(), expected);
    }
}

TEST_F(RecordsetTest, ARolledBackGroupLeavesNothing)
{
    auto rows = open(m_cases, QStringLiteral("Select * from PBPROJ"));
    ASSERT_TRUE(rows->beginTransaction().ok());
    addCase(*rows, QStringLiteral("12-1"));
    addCase(*rows, QStringLiteral("12-2"));
    rows->rollbackTransaction();
    EXPECT_EQ(rows->RecordCount(), 0);
    ASSERT_TRUE(rows->beginTransaction().ok());
    addCase(*rows, QStringLiteral("12-3"));
    ASSERT_TRUE(rows->commitTransaction().ok());
    auto again = open(m_cases, QStringLiteral("Select * from PBPROJ"));
    EXPECT_EQ(again->RecordCount(), 1);
}

TEST_F(RecordsetTest, RequeryOfAFileThatWentAwaySaysTheConnectionIsLost)
{
    auto rows = open(m_cases, QStringLiteral("Select * from PBPROJ"));
    ASSERT_TRUE(QFile::remove(m_cases));
    EXPECT_EQ(rows->Requery().number, StoreErrorNumber::LostConnection);
}
