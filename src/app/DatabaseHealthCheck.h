#pragma once

#include <QObject>
#include <QString>

class QThread;

namespace pvardo::app {

// Reads every database file of a folder for damage (SQLite's quick check and
// the catalogue's table and columns) in a thread of its own, so that a start
// on a large parcel store is not held up. finished() comes in the thread that
// made the object.
class DatabaseHealthCheck : public QObject
{
    Q_OBJECT

public:
    explicit DatabaseHealthCheck(QString databaseFolder, QObject* parent = nullptr);
    // Waits for the check when it still runs.
    ~DatabaseHealthCheck() override;

    void start();
    bool isFinished() const { return m_finished; }
    // The message naming the damaged files and what to do; empty when every
    // file is sound.
    QString message() const { return m_message; }

signals:
    void finished();

private:
    QString m_folder;
    QThread* m_thread = nullptr;
    QString m_result; // written by the thread, read once it has ended
    QString m_message;
    bool m_finished = false;
};

} // namespace pvardo::app
