#include "parcels/RpsImport.h"

#include "common/Session.h"
#include "common/TextFiles.h"
#include "parcels/RpsFields.h"
#include "parcels/RpsRoll.h"
#include "store/Recordset.h"
#include "support/InstallationTest.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QThread>
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::parcels;

namespace {

using pvardo::test::q;

QString fixturePath(const char* name)
{
    return QStringLiteral(PVARDO_TEST_DATA_DIR "/rps/") + QString::fromLatin1(name);
}

QJsonObject expectedRuns()
{
    QFile file(fixturePath("small.expected.json"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QJsonDocument::fromJson(file.readAll()).object();
}

const char* const kRollColumns[]
    = {"RSBLF", "RSSBL", "RASSOC", "RCONTACT", "RLOCN1", "RADDR1", "RCOORD1", "RCOORD2"};

// The roll as rows of the eight compared columns, in the order of the file.
QList<QStringList> rollRows(const QString& path, QList<QDateTime>* stamps = nullptr)
{
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(path, QStringLiteral("Select * from RPS"), &status);
    EXPECT_TRUE(rows) << status.description.toStdString();
    QList<QStringList> result;
    for (; rows && !rows->Eof(); rows->MoveNext()) {
        QStringList row;
        for (const char* column : kRollColumns) {
            row.append(rows->text(QString::fromLatin1(column)));
        }
        result.append(row);
        if (stamps) {
            stamps->append(rows->value(QStringLiteral("TSTAMP")).toDateTime());
        }
    }
    return result;
}

QList<QStringList> expectedRows(const QJsonObject& run)
{
    QList<QStringList> result;
    for (const QJsonValue& value : run.value(QStringLiteral("rows")).toArray()) {
        QStringList row;
        for (const char* column : kRollColumns) {
            row.append(value.toObject().value(QString::fromLatin1(column)).toString());
        }
        result.append(row);
    }
    return result;
}

// One record of the extract's layout, 460 characters ending in the type.
QString rpsLine(const QString& swis, const QString& sbl, const QString& owner1 = q("OWNER ONE"),
    const QString& east = q("1234567"), const QString& type = q("14"))
{
    QString line(460, QLatin1Char(' '));
    auto put = [&line](int column, int width, const QString& text) {
        line.replace(column - 1, width, text.leftJustified(width, QLatin1Char(' '), true));
    };
    put(1, 6, swis);
    put(65, 25, sbl);
    put(90, 7, east);
    put(97, 7, q("7654321"));
    put(108, 25, q("MAIN ST"));
    put(133, 9, q("12"));
    put(277, 25, owner1);
    put(302, 25, q("SECOND LINE"));
    put(352, 25, q("PO BOX 1"));
    put(402, 25, q("TOWN NY"));
    put(427, 9, q("12345"));
    line.replace(458, 2, type);
    return line;
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

class RpsImportTest : public test::InstallationTest
{
protected:
    QString rollPath() const { return RpsRoll::rollPathIn(installation.databaseFolder()); }
};

} // namespace

TEST(RpsFields, ReadsTheColumnsOfARecord)
{
    const QString line = rpsLine(q("134201"), q(" 12/34-1-5 "), q("  SMITH JOHN "), q(""));
    EXPECT_EQ(RpsFields::getSwis(line), q("134201"));
    EXPECT_EQ(RpsFields::getSBL(line), q("12.34-1-5"));
    EXPECT_EQ(RpsFields::getEGrid(line), q("0"));
    EXPECT_EQ(RpsFields::getNGrid(line), q("7654321"));
    EXPECT_EQ(RpsFields::getLoc(line), q("12 MAIN ST"));
    EXPECT_EQ(RpsFields::getOwner(line), q("SMITH JOHN SECOND LINE"));
    // An empty second mailing line leaves two blanks before the comma.
    EXPECT_EQ(RpsFields::getMailing(line), q("PO BOX 1  , TOWN NY 12345"));
    EXPECT_TRUE(RpsFields::isParcelRecord(line));
    // A short line reads its missing columns as empty.
    EXPECT_EQ(RpsFields::getOwner(q("134201 14")), QString());
    EXPECT_EQ(RpsFields::getMailing(q("14")), q(","));
}

TEST(RpsFields, CleanSblRepairsTheRollsMarks)
{
    const std::pair<const char*, const char*> cases[] = {
        {"12/34-1-5", "12.34-1-5"},
        {"12.-34--1", "12-34-1"},
        {"269.78-6-142.12./8", "269.78-6-142.12.8"},
        {"54.-7-41", "54-7-41"},
        {"168.88-3--22.9", "168.88-3-22.9"},
        {"1----2", "1-2"},
        {"1-2-3-4-5-6-7-8-9", "1-2-3-4-5-6-7-8"},
        {"354/39", "354.39"},
    };
    for (const auto& [raw, cleaned] : cases) {
        QString sbl = q(raw);
        RpsFields::cleanSBL(sbl);
        EXPECT_EQ(sbl, q(cleaned)) << raw;
    }
}

TEST(RpsFields, CustomLayoutHelpers)
{
    EXPECT_EQ(RpsFields::StripNonNum(q("$1,234.50")), q("1234.50"));
    EXPECT_EQ(RpsFields::StripNonNum(q("none")), q("0"));
    EXPECT_EQ(RpsFields::StripMe(q("\"SMITH\"")), q("SMITH"));
    EXPECT_EQ(RpsFields::StripMe(q("  ")), q("  "));
    EXPECT_EQ(RpsFields::makeName(q("JOHN Q SMITH")), q("SMITH JOHN Q"));
    EXPECT_EQ(RpsFields::makeName(q("SMITH")), q("SMITH"));
}

TEST(RpsImport, ConfidenceText)
{
    const std::pair<double, const char*> cases[] = {
        {188.58876637312218, "188.59 %"},
        {0, ".00 %"},
        {2.0 * 460 / 461 * 100, "199.57 %"},
        {98.0389254791682, "98.04 %"},
        {0.5, ".50 %"},
        {0.005, ".01 %"},
        {99.995, "100.00 %"},
        {12.344999999999, "12.34 %"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(RpsImport::ConfidenceText(value), q(text)) << value;
    }
}

TEST_F(RpsImportTest, ImportsTheFixtureExactly)
{
    const QJsonObject expected = expectedRuns();
    for (const QJsonValue& value : expected.value(QStringLiteral("runs")).toArray()) {
        const QJsonObject run = value.toObject();
        const QString target = run.value(QStringLiteral("target_swis")).toString();
        SCOPED_TRACE(target.toStdString());
        QFile::remove(rollPath());

        RpsImport import(fixturePath("small.txt"), target);
        const RpsImportResult analysis = import.ImportIn(1);
        EXPECT_EQ(analysis.processed, run.value(QStringLiteral("processed")).toInt());
        EXPECT_EQ(analysis.lines, run.value(QStringLiteral("lines")).toInt());
        EXPECT_EQ(analysis.skippedOtherType, run.value(QStringLiteral("skipped_other_type")).toInt());
        EXPECT_EQ(analysis.skippedOtherSwis, run.value(QStringLiteral("skipped_other_swis")).toInt());
        EXPECT_EQ(analysis.invalidSbl, run.value(QStringLiteral("invalid_sbl")).toInt());
        EXPECT_EQ(analysis.confidenceSum, run.value(QStringLiteral("confidence_sum")).toInteger());
        EXPECT_EQ(analysis.fileBytes, run.value(QStringLiteral("file_bytes")).toInteger());
        EXPECT_DOUBLE_EQ(analysis.confidence, run.value(QStringLiteral("confidence")).toDouble());
        EXPECT_EQ(RpsImport::ConfidenceText(analysis.confidence),
            run.value(QStringLiteral("confidence_text")).toString());
        const QJsonObject preview = run.value(QStringLiteral("preview")).toObject();
        EXPECT_EQ(analysis.preview.swis, preview.value(QStringLiteral("swis")).toString());
        EXPECT_EQ(analysis.preview.sbl, preview.value(QStringLiteral("sbl")).toString());
        EXPECT_EQ(analysis.preview.owner, preview.value(QStringLiteral("owner")).toString());
        EXPECT_EQ(analysis.preview.east, preview.value(QStringLiteral("east")).toString());
        EXPECT_EQ(analysis.preview.north, preview.value(QStringLiteral("north")).toString());
        EXPECT_EQ(analysis.preview.location, preview.value(QStringLiteral("location")).toString());
        EXPECT_EQ(analysis.preview.mailing, preview.value(QStringLiteral("mailing")).toString());
        // Pass 1 writes nothing.
        EXPECT_FALSE(QFile::exists(rollPath()));

        RpsRoll roll(rollPath());
        const RpsImport::Completion completion = import.iContinue(roll, installation.databaseFolder());
        EXPECT_TRUE(completion.completed);
        EXPECT_EQ(completion.result.processed, analysis.processed);
        EXPECT_EQ(session().StopFlag, run.value(QStringLiteral("stop_flag")).toBool());
        EXPECT_EQ(rollRows(rollPath()), expectedRows(run));
        EXPECT_EQ(completion.messages.last(),
            QStringLiteral("Completed. %1 records processed.").arg(analysis.processed));
        const auto imported = readTextLines(joinPath(installation.databaseFolder(), q("\\imported.txt")));
        ASSERT_TRUE(imported.has_value());
        ASSERT_EQ(imported->size(), 2);
        EXPECT_EQ(imported->at(1), QString::number(analysis.processed));
    }
    EXPECT_TRUE(session().ImportAvailable);
}

TEST_F(RpsImportTest, SecondImportRewritesEveryRowWithANewStamp)
{
    RpsImport import(fixturePath("small.txt"));
    RpsRoll roll(rollPath());
    ASSERT_TRUE(import.iContinue(roll, installation.databaseFolder()).completed);
    QList<QDateTime> firstStamps;
    const QList<QStringList> first = rollRows(rollPath(), &firstStamps);

    QThread::msleep(1100);
    const RpsImport::Completion again = import.iContinue(roll, installation.databaseFolder());
    ASSERT_TRUE(again.completed);
    EXPECT_TRUE(again.messages.first().startsWith(q("Completed. Previous update was ")));
    QList<QDateTime> secondStamps;
    EXPECT_EQ(rollRows(rollPath(), &secondStamps), first);
    ASSERT_EQ(secondStamps.size(), firstStamps.size());
    for (qsizetype i = 0; i < firstStamps.size(); ++i) {
        EXPECT_GT(secondStamps.at(i), firstStamps.at(i));
    }
}

TEST_F(RpsImportTest, CrlfLinesGiveTheSameRoll)
{
    QFile original(fixturePath("small.txt"));
    ASSERT_TRUE(original.open(QIODevice::ReadOnly));
    QByteArray bytes = original.readAll();
    bytes.replace("\n", "\r\n");
    const QString crlf = installation.path(q("crlf.txt"));
    writeFile(crlf, bytes);

    RpsImport import(crlf);
    const RpsImportResult analysis = import.ImportIn(1);
    EXPECT_EQ(analysis.processed, 277);
    EXPECT_EQ(analysis.confidenceSum, 254840);
    EXPECT_EQ(analysis.fileBytes, bytes.size());
    RpsRoll roll(rollPath());
    ASSERT_TRUE(import.iContinue(roll, installation.databaseFolder()).completed);
    EXPECT_EQ(rollRows(rollPath()), expectedRows(expectedRuns().value(q("runs")).toArray().at(0).toObject()));
}

TEST_F(RpsImportTest, BadFilesImportNothing)
{
    QByteArray binary(20000, '\0');
    for (char& c : binary) {
        c = static_cast<char>(QRandomGenerator::global()->bounded(256));
    }
    // Even a binary line that happens to end in "14" is no record.
    binary
        += QByteArray(200, '\0') + "134201" + QByteArray(60, ' ') + "1-2-3" + QByteArray(380, 'x') + "14\n";
    QByteArray csv;
    for (int i = 0; i < 100; ++i) {
        csv += "134201,12.34-1-" + QByteArray::number(i) + ",SMITH JOHN,MAIN ST\n";
    }
    const std::pair<const char*, QByteArray> files[] = {
        {"empty.txt", QByteArray()},
        {"binary.bin", binary},
        {"layout.csv", csv},
        {"short.txt", "134201 12-1-2 14\n"},
    };
    for (const auto& [name, bytes] : files) {
        SCOPED_TRACE(name);
        const QString path = installation.path(QString::fromLatin1(name));
        writeFile(path, bytes);
        RpsImport import(path);
        const RpsImportResult analysis = import.ImportIn(1);
        EXPECT_TRUE(analysis.message.isEmpty());
        EXPECT_EQ(analysis.processed, 0);
        EXPECT_EQ(RpsImport::ConfidenceText(analysis.confidence), q(".00 %"));
        EXPECT_FALSE(analysis.preview.read && analysis.processed > 0);

        RpsRoll roll(rollPath());
        const RpsImport::Completion completion = import.iContinue(roll, installation.databaseFolder());
        EXPECT_FALSE(completion.completed);
        EXPECT_TRUE(session().StopFlag);
        EXPECT_TRUE(rollRows(rollPath()).isEmpty());
    }
    EXPECT_FALSE(QFile::exists(joinPath(installation.databaseFolder(), q("\\imported.txt"))));
}

TEST_F(RpsImportTest, OverlongLinesAndALastLineWithoutItsEnd)
{
    // A "line" of 100 KiB ending in 14 is passed over without being held; the
    // record after it and a last record without a line end are read.
    const QByteArray overlong = QByteArray(100 * 1024, 'A') + "14\n";
    const QByteArray bytes = overlong + rpsLine(q("134201"), q("1-2-3")).toLatin1() + "\r\n"
        + rpsLine(q("134201"), q("4-5-6")).toLatin1();
    const QString path = installation.path(q("long.txt"));
    writeFile(path, bytes);
    const RpsImportResult analysis = RpsImport(path).ImportIn(1);
    EXPECT_EQ(analysis.lines, 3);
    EXPECT_EQ(analysis.skippedOtherType, 1);
    EXPECT_EQ(analysis.processed, 2);
    EXPECT_EQ(analysis.bytesRead, bytes.size() - 3);
    EXPECT_EQ(analysis.preview.sbl, q("4-5-6"));
}

TEST_F(RpsImportTest, MissingFileGivesAMessage)
{
    RpsImport import(installation.path(q("no-such-file.txt")));
    const RpsImportResult analysis = import.ImportIn(1);
    EXPECT_FALSE(analysis.message.isEmpty());
    EXPECT_EQ(analysis.processed, 0);
    RpsImport folder(installation.programFolder());
    EXPECT_FALSE(folder.ImportIn(1).message.isEmpty());
}

TEST_F(RpsImportTest, PreviewTargetAndOverlongValues)
{
    const QString longOwner = q("ABCDEFGHIJKLMNOPQRSTUVWXY");
    const QString lines = rpsLine(q("134201"), q("12.34-1-5"), longOwner) + QLatin1Char('\n')
        + rpsLine(q("134201"), q("9-9-9"), q("NOT A RECORD"), q("1"), q("11")) + QLatin1Char('\n')
        + rpsLine(q("134289"), q("7-7-7"), q("OTHER TOWN")) + QLatin1Char('\n');
    const QString path = installation.path(q("mixed.txt"));
    writeFile(path, lines.toLatin1());

    RpsImport all(path);
    RpsImportResult analysis = all.ImportIn(1);
    EXPECT_EQ(analysis.processed, 2);
    EXPECT_EQ(analysis.skippedOtherType, 1);
    EXPECT_EQ(analysis.preview.owner, q("OTHER TOWN SECOND LINE"));

    // A record of another SWIS is not read into the preview.
    RpsImport targeted(path, q(" 134201 "));
    analysis = targeted.ImportIn(1);
    EXPECT_EQ(analysis.processed, 1);
    EXPECT_EQ(analysis.skippedOtherSwis, 1);
    EXPECT_EQ(analysis.preview.sbl, q("12.34-1-5"));

    RpsRoll roll(rollPath());
    ASSERT_TRUE(targeted.iContinue(roll, installation.databaseFolder()).completed);
    const QList<QStringList> rows = rollRows(rollPath());
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows.at(0).at(0), q("12-34-0-1-5-0-0-0"));
    // The owner of 25 + 1 + 11 characters is cut to its column's 30.
    EXPECT_EQ(rows.at(0).at(2), (longOwner + q(" SECOND LINE")).left(30));
    EXPECT_EQ(rows.at(0).at(2), rows.at(0).at(3));
}

TEST_F(RpsImportTest, OnlyRecordsShowAbout200PercentAndOtherLinesCountForProgress)
{
    QByteArray records;
    for (int i = 0; i < 50; ++i) {
        records += rpsLine(q("134201"), QStringLiteral("%1-1-1").arg(i + 1)).toLatin1() + '\n';
    }
    const QString path = installation.path(q("records.txt"));
    writeFile(path, records);
    RpsImportResult analysis = RpsImport(path).ImportIn(1);
    // The doubled length is not capped.
    EXPECT_EQ(RpsImport::ConfidenceText(analysis.confidence), q("199.57 %"));

    const QByteArray other = QByteArray(300, 'X') + "11\n";
    writeFile(path, records + other);
    QList<double> percents;
    analysis = RpsImport(path).ImportIn(1, nullptr, [&percents](const RpsImportProgress& where) {
        percents.append(where.percent);
        return true;
    });
    EXPECT_EQ(analysis.processed, 50);
    EXPECT_EQ(analysis.skippedOtherType, 1);
    ASSERT_EQ(percents.size(), 51);
    // Line ends are not counted, so progress stays a little short of 100.
    EXPECT_DOUBLE_EQ(
        percents.last(), 100.0 * (records.size() + other.size() - 51) / (records.size() + other.size()));
    EXPECT_GT(percents.last(), percents.at(49));
}

TEST_F(RpsImportTest, PreviewBeforeAnyRecordCouldNotObtain)
{
    const QString path = installation.path(q("none.txt"));
    writeFile(path, "no records here\n");
    const RpsImportResult analysis = RpsImport(path).ImportIn(1);
    EXPECT_FALSE(analysis.preview.read);
    EXPECT_EQ(analysis.preview.sbl, RpsImport::couldNotObtain());
    EXPECT_EQ(analysis.preview.location, q("Could not obtain"));
}

TEST_F(RpsImportTest, StoppedImportKeepsWholeRowsAndCompletesWhenRunAgain)
{
    RpsImport import(fixturePath("small.txt"));
    RpsRoll roll(rollPath());
    ASSERT_TRUE(roll.resetRPSsbl().ok());
    int lines = 0;
    const RpsImportResult stopped
        = import.ImportIn(2, &roll, [&lines](const RpsImportProgress&) { return ++lines < 120; });
    EXPECT_TRUE(stopped.stopped);
    EXPECT_GT(stopped.processed, 0);
    const QList<QStringList> partial = rollRows(rollPath());
    EXPECT_GT(partial.size(), 0);
    EXPECT_LE(partial.size(), stopped.processed);
    for (const QStringList& row : partial) {
        EXPECT_FALSE(row.at(0).isEmpty());
        EXPECT_FALSE(row.at(2).isEmpty());
    }

    const RpsImportResult rest = import.ImportIn(2, &roll);
    EXPECT_TRUE(rest.fileRead);
    EXPECT_EQ(rollRows(rollPath()), expectedRows(expectedRuns().value(q("runs")).toArray().at(0).toObject()));
}
