// The roll import and the synchronisation when things go wrong: a full disk,
// a second workstation at the same time, odd bytes in the extract.
#include "parcels/ParcelService.h"
#include "parcels/RpsFields.h"
#include "parcels/RpsImport.h"
#include "parcels/RpsRoll.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "store/Recordset.h"
#include "support/FullDisk.h"
#include "support/InstallationTest.h"
#include "support/Text.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::parcels;
using pvardo::test::q;

namespace {

// One record of the extract's layout, 460 bytes ending in the type; the
// columns are counted in bytes, as the state writes them.
QByteArray recordBytes(const QByteArray& sbl, const QByteArray& owner = "OWNER ONE",
    const QByteArray& street = "MAIN ST")
{
    QByteArray line(460, ' ');
    auto put = [&line](int column, int width, const QByteArray& bytes) {
        line.replace(column - 1, width, bytes.leftJustified(width, ' ', true));
    };
    put(1, 6, "134201");
    put(65, 25, sbl);
    put(90, 7, "1234567");
    put(97, 7, "7654321");
    put(108, 25, street);
    put(133, 9, "12");
    put(277, 25, owner);
    put(302, 25, "SECOND LINE");
    put(352, 25, "PO BOX 1");
    put(402, 25, "TOWN NY");
    put(427, 9, "12345");
    line.replace(458, 2, "14");
    return line;
}

QByteArray rollOf(int parcels, int first = 0)
{
    QByteArray bytes;
    for (int i = first; i < first + parcels; ++i) {
        bytes += recordBytes("12.34-1-" + QByteArray::number(i)) + '\n';
    }
    return bytes;
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

qint64 countRows(const QString& path, const char* sql)
{
    sqlite3* db = nullptr;
    qint64 count = -1;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) == SQLITE_OK && sqlite3_step(statement) == SQLITE_ROW) {
            count = sqlite3_column_int64(statement, 0);
        }
        sqlite3_finalize(statement);
    }
    sqlite3_close(db);
    return count;
}

class RollSafetyTest : public test::InstallationTest
{
protected:
    QString rollPath() const { return RpsRoll::rollPathIn(installation.databaseFolder()); }
    QString importedStamp() const { return joinPath(installation.databaseFolder(), q("\\imported.txt")); }
};

} // namespace

TEST(RpsFields, CutsColumnsInBytesThenDecodesEachField)
{
    // "MÜLLER" takes seven bytes in UTF-8: the fields after it stay in place.
    const QByteArray utf8 = recordBytes("1-2-3", "M\xc3\x9cLLER J\xc3\x96RG", "CAF\xc3\x89 ST");
    EXPECT_EQ(RpsFields::getOwner(utf8), QString::fromUtf8("MÜLLER JÖRG SECOND LINE"));
    EXPECT_EQ(RpsFields::getLoc(utf8), QString::fromUtf8("12 CAFÉ ST"));
    EXPECT_EQ(RpsFields::getMailing(utf8), q("PO BOX 1  , TOWN NY 12345"));
    EXPECT_TRUE(RpsFields::isParcelRecord(utf8));

    // A field that is not UTF-8 is read as Windows-1252, alone.
    const QByteArray cp1252 = recordBytes("1-2-3", "M\xdcLLER \x93JR\x94", "CAF\xc3\x89 ST");
    EXPECT_EQ(RpsFields::getOwner(cp1252), QString::fromUtf8("MÜLLER “JR” SECOND LINE"));
    EXPECT_EQ(RpsFields::getLoc(cp1252), QString::fromUtf8("12 CAFÉ ST"));
    EXPECT_EQ(RpsFields::getSBL(cp1252), q("1-2-3"));
}

TEST_F(RollSafetyTest, SummarySaysWhatWasNotReadAndWhenTheFileChanged)
{
    const QString path = installation.path(q("roll.txt"));
    QByteArray bytes = rollOf(3);
    QByteArray withNul = recordBytes("9-9-9");
    withNul[200] = '\0';
    bytes += withNul + '\n';
    writeFile(path, bytes);

    RpsImport import(path);
    const RpsImportResult analysis = import.ImportIn(1);
    EXPECT_EQ(analysis.processed, 3);
    EXPECT_EQ(analysis.binaryLines, 1);
    EXPECT_EQ(analysis.skippedOtherType, 0);
    ASSERT_EQ(analysis.notes.size(), 1);
    EXPECT_TRUE(analysis.notes.first().contains(q("1 line of the file held a NUL byte")));

    // The file grows between the analysis and the import.
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write(rollOf(2, 100));
    }
    RpsRoll roll(rollPath());
    const RpsImport::Completion completion = import.iContinue(roll, installation.databaseFolder());
    EXPECT_TRUE(completion.completed);
    EXPECT_EQ(completion.result.processed, 5);
    EXPECT_TRUE(completion.result.changedSinceAnalysis);
    EXPECT_TRUE(completion.messages.join(q("\n")).contains(q("changed after it was analysed")))
        << completion.messages.join(q("\n")).toStdString();
    EXPECT_TRUE(completion.messages.join(q("\n")).contains(q("held a NUL byte")));
}

TEST_F(RollSafetyTest, ParcelNumbersWithAnApostropheAreFoundAgain)
{
    const QString path = installation.path(q("roll.txt"));
    writeFile(path, recordBytes("12.34-1-5'A") + '\n' + recordBytes("12.34-1-6") + '\n');
    for (int run = 0; run < 3; ++run) {
        RpsImport import(path);
        RpsRoll roll(rollPath());
        ASSERT_TRUE(import.iContinue(roll, installation.databaseFolder()).completed);
    }
    EXPECT_EQ(countRows(rollPath(), "SELECT count(*) FROM RPS"), 2);

    // Carried into the parcel store twice: still one row a parcel there.
    ParcelService service(joinPath(installation.databaseFolder(), q("\\sbl.db")),
        joinPath(installation.databaseFolder(), q("\\pbproj.db")));
    QFile::copy(installation.path(q("wrk/sbl18.db")), service.parcelStorePath());
    for (int run = 0; run < 2; ++run) {
        RpsRoll roll(rollPath());
        store::StoreStatus status;
        ASSERT_TRUE(service.resetsbl().ok());
        EXPECT_EQ(roll.syncSBL(service, &status), 2) << status.description.toStdString();
    }
    EXPECT_EQ(countRows(service.parcelStorePath(), "SELECT count(*) FROM SBL"), 2);
    EXPECT_EQ(countRows(service.parcelStorePath(), "SELECT count(*) FROM SBL WHERE SBLF LIKE '%''%'"), 1);
}

TEST_F(RollSafetyTest, AFullDiskStopsTheImportAndReportsWhatWasSaved)
{
    const QString path = installation.path(q("roll.txt"));
    writeFile(path, rollOf(40000));
    ASSERT_TRUE(replaceTextLines(importedStamp(), {q("01/02/2020 10:00:00 AM"), q("17")}));

    // Groups are committed every half second; the disk fills in the middle of
    // the file, whichever group that is.
    const QString report = installation.path(q("outcome.txt"));
    const bool finished = test::onFullDisk(3 * 1024 * 1024, [&] {
        RpsImport import(path);
        RpsRoll roll(rollPath());
        const RpsImport::Completion completion = import.iContinue(roll, installation.databaseFolder());
        QFile out(report);
        out.open(QIODevice::WriteOnly);
        out.write(QByteArray::number(completion.result.processed) + ' '
            + (completion.completed ? "completed" : "failed") + '\n'
            + completion.messages.join(q("\n")).toUtf8());
        return out.error() == QFile::NoError;
    });
    ASSERT_TRUE(finished);
    QFile in(report);
    ASSERT_TRUE(in.open(QIODevice::ReadOnly));
    const QList<QByteArray> words = in.readLine().trimmed().split(' ');
    const QString messages = QString::fromUtf8(in.readAll());
    ASSERT_EQ(words.size(), 2);
    EXPECT_EQ(words.at(1), QByteArray("failed")) << messages.toStdString();
    EXPECT_TRUE(messages.contains(q("The import stopped"))) << messages.toStdString();
    EXPECT_FALSE(messages.contains(q("Completed")));
    // What it says was saved is what the roll holds, and the stamp of the
    // last whole import stands.
    EXPECT_EQ(countRows(rollPath(), "SELECT count(*) FROM RPS"), words.at(0).toLongLong());
    EXPECT_LT(words.at(0).toInt(), 40000);
    EXPECT_EQ(readTextLines(importedStamp())->value(1), q("17"));
}
