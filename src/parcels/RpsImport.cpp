#include "parcels/RpsImport.h"

#include "common/Session.h"
#include "common/TextFiles.h"
#include "parcels/RpsFields.h"
#include "parcels/SblParts.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <cmath>
#include <cstdio>

namespace pvardo::parcels {

namespace {

// A parcel record is 460 characters; a "line" longer than this is no record,
// and is passed over without being held.
constexpr qint64 LongestLine = 8192;
// Roll rows are committed in groups: each commit waits for the disk, and
// other workstations wait while a group is open, so a group is closed after
// half a second or this many rows.
constexpr int RowsPerTransaction = 50000;
constexpr qint64 TransactionMs = 500;

// Reads a file one line at a time, without its line end (LF or CR LF).
class LineReader
{
public:
    explicit LineReader(QFile& file)
        : m_file(file)
        , m_buffer(LongestLine + 2, '\0')
    {
    }

    // The next line; false at the end of the file. A line too long to be a
    // record gives `tooLong` and only its length.
    bool next(QByteArray& line, qint64& length, bool& tooLong)
    {
        tooLong = false;
        qint64 got = m_file.readLine(m_buffer.data(), m_buffer.size());
        if (got <= 0) {
            return false;
        }
        length = got;
        bool ended = m_buffer.at(got - 1) == '\n';
        if (!ended && !m_file.atEnd()) {
            // Too long: read on to its end without keeping it.
            tooLong = true;
            while (!ended) {
                got = m_file.readLine(m_buffer.data(), m_buffer.size());
                if (got <= 0) {
                    break;
                }
                length += got;
                ended = m_buffer.at(got - 1) == '\n';
            }
            if (ended) {
                --length;
            }
            line.clear();
            return true;
        }
        if (ended) {
            --length;
        }
        line = QByteArray(m_buffer.constData(), length);
        if (line.endsWith('\r')) {
            line.chop(1);
            --length;
        }
        return true;
    }

    bool failed() const { return m_file.error() != QFileDevice::NoError; }

private:
    QFile& m_file;
    QByteArray m_buffer;
};

QString importedStamp(const QDateTime& when)
{
    return QLocale::c().toString(when, QStringLiteral("MM/dd/yyyy hh:mm:ss AP"));
}

} // namespace

RpsImport::RpsImport(QString filePath, QString targetSwis)
    : m_path(std::move(filePath))
    , m_target(targetSwis.trimmed())
{
}

QString RpsImport::couldNotObtain()
{
    return QStringLiteral("Could not obtain");
}

QString RpsImport::ConfidenceText(double confidence)
{
    if (!std::isfinite(confidence) || confidence < 0) {
        confidence = 0;
    }
    // The value as written to 15 significant digits, then rounded half away
    // from zero to two decimals on those digits.
    char written[64];
    std::snprintf(written, sizeof written, "%.14e", confidence);
    const QByteArray text(written);
    const qsizetype e = text.indexOf('e');
    const int exponent = text.mid(e + 1).toInt();
    QByteArray digits = text.left(e);
    digits.remove(1, 1); // the point after the first digit
    // digits[i] has the weight 10^(exponent - i); keep down to 10^-2.
    const int keep = exponent + 3;
    QByteArray kept;
    bool roundUp = false;
    if (keep <= 0) {
        roundUp = keep == 0 && digits.at(0) >= '5';
        kept = "0";
    } else {
        kept = keep <= digits.size() ? digits.left(keep) : digits + QByteArray(keep - digits.size(), '0');
        roundUp = keep < digits.size() && digits.at(keep) >= '5';
    }
    // Whole hundredths as a digit string; add one when rounding up.
    if (roundUp) {
        qsizetype i = kept.size() - 1;
        while (i >= 0 && kept.at(i) == '9') {
            kept[i] = '0';
            --i;
        }
        if (i < 0) {
            kept.prepend('1');
        } else {
            kept[i] = static_cast<char>(kept.at(i) + 1);
        }
    }
    while (kept.size() < 3) {
        kept.prepend('0');
    }
    QByteArray whole = kept.left(kept.size() - 2);
    while (whole.startsWith('0')) {
        whole.remove(0, 1);
    }
    return QString::fromLatin1(whole + '.' + kept.right(2)) + QStringLiteral(" %");
}

RpsImportResult RpsImport::ImportIn(int pass, RpsRoll* roll, const RpsImportCallback& progress)
{
    RpsImportResult result;
    result.pass = pass;
    result.preview.sbl = result.preview.owner = result.preview.location = result.preview.mailing
        = couldNotObtain();
    if (pass == 2) {
        session().StopFlag = true;
        result.stopFlag = true;
    }

    QFile file(m_path);
    const QFileInfo info(m_path);
    if (info.isDir() || !file.open(QIODevice::ReadOnly)) {
        result.message = QStringLiteral("The file %1 cannot be read: %2")
                             .arg(QDir::toNativeSeparators(m_path),
                                 info.isDir() ? QStringLiteral("it is a folder") : file.errorString());
        return result;
    }
    result.fileBytes = file.size();
    if (pass == 2 && (!roll || !roll->recordset())) {
        result.message = QStringLiteral("The tax parcel import file is not open.");
        return result;
    }

    RpsImportProgress where;
    where.pass = pass;
    SblParts conversions;
    LineReader reader(file);
    QByteArray bytes;
    qint64 length = 0;
    bool tooLong = false;
    int committed = 0; // records of the groups already committed
    store::StoreStatus status;
    QElapsedTimer group;
    if (pass == 2) {
        status = roll->beginBatch();
        group.start();
    }
    while (status.ok() && reader.next(bytes, length, tooLong)) {
        ++result.lines;
        result.bytesRead += length;
        where.percent = result.fileBytes > 0
            ? 100.0 * static_cast<double>(result.bytesRead) / static_cast<double>(result.fileBytes)
            : 0;
        // Binary data is no record, whatever its last two bytes.
        if (tooLong) {
            ++result.skippedOtherType;
        } else if (bytes.contains('\0')) {
            ++result.binaryLines;
        } else {
            const QByteArray& line = bytes;
            if (!RpsFields::isParcelRecord(line)) {
                ++result.skippedOtherType;
            } else if (!m_target.isEmpty() && RpsFields::getSwis(line) != m_target) {
                ++result.skippedOtherSwis;
            } else {
                where.recordsRead = result.processed;
                RpsPreview& preview = result.preview;
                preview.read = true;
                preview.swis = RpsFields::getSwis(line);
                preview.sbl = RpsFields::getSBL(line);
                preview.owner = RpsFields::getOwner(line);
                preview.east = RpsFields::getEGrid(line);
                preview.north = RpsFields::getNGrid(line);
                preview.location = RpsFields::getLoc(line);
                preview.mailing = RpsFields::getMailing(line);
                const QString full = conversions.myssbl2SBL(preview.sbl);
                if (full == invalidSBL()) {
                    // Not a parcel number: neither counted nor stored.
                    ++result.invalidSbl;
                } else {
                    ++result.processed;
                    if (pass == 1) {
                        // Twice the line: a file of nothing but records shows
                        // about 200 %, as the office has always read it.
                        result.confidenceSum += 2 * line.size();
                        result.confidence = result.fileBytes > 0
                            ? 100.0 * static_cast<double>(result.confidenceSum)
                                / static_cast<double>(result.fileBytes)
                            : 0;
                    } else {
                        const RpsRow row{full, preview.sbl, preview.owner, preview.owner, preview.location,
                            preview.east, preview.north, preview.mailing, QString(), QString(), QString(),
                            QString()};
                        status = roll->RPSSBLWrite(row);
                        if (status.ok()
                            && (result.processed - committed == RowsPerTransaction
                                || group.elapsed() >= TransactionMs)) {
                            status = roll->commitBatch();
                            if (status.ok()) {
                                committed = result.processed;
                                status = roll->beginBatch();
                                group.start();
                            }
                        }
                        if (!status.ok()) {
                            break;
                        }
                    }
                }
            }
        }
        where.processed = result.processed;
        where.confidence = result.confidence;
        if (progress && !progress(where)) {
            result.stopped = true;
            break;
        }
    }
    result.fileRead = !result.stopped && status.ok() && !reader.failed();
    if (pass == 1) {
        m_analysedBytes = result.fileBytes;
    } else if (m_analysedBytes >= 0) {
        const qint64 now = QFileInfo(m_path).size();
        if (now != m_analysedBytes || result.fileBytes != m_analysedBytes) {
            result.changedSinceAnalysis = true;
            result.notes.append(QStringLiteral("The file %1 changed after it was analysed (%2 bytes then, %3 bytes "
                                               "now): the records imported are those of the file as it was read "
                                               "now, and the analysis does not describe them.")
                                    .arg(QDir::toNativeSeparators(m_path))
                                    .arg(m_analysedBytes)
                                    .arg(now));
        }
    }
    if (result.binaryLines > 0) {
        result.notes.append(QStringLiteral("%1 %2 of the file held a NUL byte (binary data, not text) and %3 not "
                                           "read as records.")
                                .arg(result.binaryLines)
                                .arg(result.binaryLines == 1 ? QStringLiteral("line") : QStringLiteral("lines"))
                                .arg(result.binaryLines == 1 ? QStringLiteral("was") : QStringLiteral("were")));
    }
    if (reader.failed() && status.ok()) {
        result.message = QStringLiteral("The file %1 could not be read to its end: %2")
                             .arg(QDir::toNativeSeparators(m_path), file.errorString());
    }
    if (pass == 2) {
        if (status.ok()) {
            status = roll->commitBatch();
        }
        if (!status.ok()) {
            // The open group is lost whole; the groups before it stay.
            roll->rollbackBatch();
            result.processed = committed;
            result.status = status;
            result.message = QStringLiteral("The tax parcel import file could not be written: %1\n\nThe import "
                                            "stopped. %2 records were saved before the failure; the rest of the "
                                            "file was not imported. Import the file again when the cause is "
                                            "mended.")
                                 .arg(status.description)
                                 .arg(committed);
        }
        result.stopFlag = result.processed == 0;
        session().StopFlag = result.stopFlag;
    }
    return result;
}

RpsImport::Completion RpsImport::iContinue(
    RpsRoll& roll, const QString& databaseFolder, const RpsImportCallback& progress)
{
    Completion completion;
    if (!roll.recordset()) {
        const store::StoreStatus opened = roll.resetRPSsbl();
        if (!opened.ok()) {
            completion.messages.append(opened.description);
            session().StopFlag = true;
            return completion;
        }
    }
    completion.result = ImportIn(2, &roll, progress);
    if (!completion.result.message.isEmpty()) {
        completion.messages.append(completion.result.message);
    }
    completion.messages.append(completion.result.notes);
    // A run that failed or was stopped is not the import of the file: the
    // stamp of the last import stays as it was.
    if (completion.result.stopFlag || !completion.result.status.ok() || !completion.result.fileRead) {
        return completion;
    }
    const QString imported = joinPath(databaseFolder, QStringLiteral("\\imported.txt"));
    if (QFileInfo::exists(imported)) {
        const auto lines = readTextLines(imported);
        const QString previous = lines && !lines->isEmpty() ? lines->first() : QString();
        completion.messages.append(QStringLiteral("Completed. Previous update was ") + previous);
    }
    const QString count = QString::number(completion.result.processed);
    QString error;
    if (!replaceTextLines(imported, {importedStamp(QDateTime::currentDateTime()), count}, &error)) {
        completion.messages.append(error);
    }
    completion.messages.append(QStringLiteral("Completed. ") + count + QStringLiteral(" records processed."));
    session().ImportAvailable = true;
    completion.completed = true;
    return completion;
}

} // namespace pvardo::parcels
