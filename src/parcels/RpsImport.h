#pragma once

#include "parcels/RpsRoll.h"
#include "store/StoreError.h"

#include <QString>
#include <QStringList>
#include <functional>

namespace pvardo::parcels {

// What the preview shows: the values of the last record read (of the target
// SWIS when there is one), whether or not its S-B-L then converted.
struct RpsPreview
{
    bool read = false; // false until a record has been read
    QString swis;
    QString sbl; // short form, cleaned
    QString owner;
    QString east;
    QString north;
    QString location;
    QString mailing;
};

// Where an import stands, for the progress bar and the counters of the preview.
struct RpsImportProgress
{
    int pass = 1;
    double percent = 0; // bytes read over the file's length
    int recordsRead = 0; // "Records Read:": the count before the record at hand
    int processed = 0; // "Total Records Processed:"
    double confidence = 0;
};

// Called after each line; gives false to stop. On pass 2 the rows written
// until then stay, whole.
using RpsImportCallback = std::function<bool(const RpsImportProgress&)>;

struct RpsImportResult
{
    int pass = 1;
    bool fileRead = false; // the whole file was read
    bool stopped = false; // stopped through the callback
    QString message; // why the file could not be read or written, else empty
    store::StoreStatus status;

    qint64 fileBytes = 0;
    qint64 bytesRead = 0;
    int lines = 0;
    int skippedOtherType = 0;
    int binaryLines = 0; // lines holding a NUL byte
    bool changedSinceAnalysis = false; // pass 2: the file is not the one pass 1 read
    QStringList notes; // what the run's summary must say besides the counts
    int skippedOtherSwis = 0;
    int invalidSbl = 0;
    int processed = 0;
    qint64 confidenceSum = 0;
    double confidence = 0;
    RpsPreview preview;
    // True after pass 2 when nothing was processed.
    bool stopFlag = false;
};

// The import of a state RPS extract into the roll, in two passes over the
// file: pass 1 reads it and tells how much of it looks like parcel records
// (the confidence), pass 2 writes each record to the roll. The file is read
// one line at a time, so a roll of any size takes the same memory.
class RpsImport
{
public:
    // An empty target imports every SWIS.
    explicit RpsImport(QString filePath, QString targetSwis = {});

    QString filePath() const { return m_path; }
    QString targetSwis() const { return m_target; }

    // The preview's text for a value not yet read.
    static QString couldNotObtain();
    // The confidence as the preview shows it: "##.#0" and " %", so 188.59 %
    // and .00 %.
    static QString ConfidenceText(double confidence);
    // The confidence a clerk is shown: the measure counts each record's
    // length twice, so a sound file comes near 200; past 100 it says no
    // more than that the whole file reads as records.
    static double shownConfidence(double confidence) { return confidence > 100 ? 100 : confidence; }

    // One pass. Pass 2 writes to the roll (and needs it), and sets the
    // session's StopFlag: true when nothing was processed.
    RpsImportResult ImportIn(int pass, RpsRoll* roll = nullptr, const RpsImportCallback& progress = {});

    // What iContinue of the preview does: pass 2, then the record of the
    // import in \imported.txt of the database folder. Gives the messages to
    // show, in order.
    struct Completion
    {
        bool completed = false;
        QStringList messages;
        RpsImportResult result;
    };
    Completion iContinue(
        RpsRoll& roll, const QString& databaseFolder, const RpsImportCallback& progress = {});

private:
    QString m_path;
    QString m_target;
    qint64 m_analysedBytes = -1; // the file's length when pass 1 read it
};

} // namespace pvardo::parcels
