#pragma once

#include <QLockFile>
#include <QObject>
#include <QString>
#include <memory>

class QLocalServer;

namespace pvardo::app {

// One running program per user and installation folder. The first instance
// holds a lock file and listens on a local socket; a second start finds the
// lock held, asks the first one over the socket to come to the front, and
// ends. A lock left by a program that died is taken over (the lock file names
// the process that holds it).
//
// Another user on the same computer, or another installation folder, is a
// different program and may run beside it; a second workstation on the same
// database folder is not stopped here.
class InstanceGuard : public QObject
{
    Q_OBJECT

public:
    explicit InstanceGuard(const QString& programFolder, QObject* parent = nullptr);
    ~InstanceGuard() override;

    // Takes the lock and starts listening; false when another instance holds it.
    bool acquire();

    // From a second instance: asks the first one to come to the front. Gives
    // false when it did not answer.
    bool activateFirstInstance();

    // The name of the lock and the socket of an installation folder for the
    // user running the program.
    static QString keyFor(const QString& programFolder);
    QString lockFilePath() const;

signals:
    // A later start asked this instance to come to the front.
    void activationRequested();

private:
    void onNewConnection();

    QString m_key;
    std::unique_ptr<QLockFile> m_lock;
    QLocalServer* m_server = nullptr;
    bool m_first = false;
};

} // namespace pvardo::app
