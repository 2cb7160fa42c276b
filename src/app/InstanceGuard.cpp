#include "app/InstanceGuard.h"

#include "common/NetworkUser.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>

namespace pvardo::app {

namespace {

const QByteArray raiseRequest = QByteArrayLiteral("raise\n");

} // namespace

InstanceGuard::InstanceGuard(const QString& programFolder, QObject* parent)
    : QObject(parent)
    , m_key(keyFor(programFolder))
{
}

InstanceGuard::~InstanceGuard()
{
    if (m_server) {
        m_server->close();
    }
    if (m_lock) {
        m_lock->unlock();
    }
}

QString InstanceGuard::keyFor(const QString& programFolder)
{
    const QString folder = QDir::cleanPath(QDir(programFolder).absolutePath());
    const QByteArray hash
        = QCryptographicHash::hash(folder.toUtf8(), QCryptographicHash::Sha1).toHex().left(16);
    QString user = GetNetworkUser();
    user.replace(QLatin1Char('/'), QLatin1Char('_'));
    return QStringLiteral("pvardo-") + user + QLatin1Char('-') + QString::fromLatin1(hash);
}

QString InstanceGuard::lockFilePath() const
{
    return QDir::tempPath() + QLatin1Char('/') + m_key + QStringLiteral(".lock");
}

bool InstanceGuard::acquire()
{
    if (m_first) {
        return true;
    }
    m_lock = std::make_unique<QLockFile>(lockFilePath());
    // Only a lock whose process is gone is stale, however old it is.
    m_lock->setStaleLockTime(0);
    if (!m_lock->tryLock(0)) {
        const bool heldByAnother = m_lock->error() == QLockFile::LockFailedError;
        m_lock.reset();
        if (heldByAnother) {
            return false;
        }
        // The lock cannot be made at all (a full or read-only temp folder):
        // nobody else can hold it either, so this start goes on, unguarded.
        m_first = true;
        return true;
    }
    m_first = true;
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    // A socket left by a program that died is in the way; the lock says it is ours now.
    QLocalServer::removeServer(m_key);
    connect(m_server, &QLocalServer::newConnection, this, &InstanceGuard::onNewConnection);
    m_server->listen(m_key);
    return true;
}

bool InstanceGuard::activateFirstInstance()
{
    QLocalSocket socket;
    socket.connectToServer(m_key);
    if (!socket.waitForConnected(2000)) {
        return false;
    }
    socket.write(raiseRequest);
    const bool sent = socket.waitForBytesWritten(2000);
    socket.disconnectFromServer();
    if (socket.state() != QLocalSocket::UnconnectedState) {
        socket.waitForDisconnected(1000);
    }
    return sent;
}

void InstanceGuard::onNewConnection()
{
    while (QLocalSocket* socket = m_server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            if (socket->readAll().contains("raise")) {
                emit activationRequested();
            }
        });
        if (socket->bytesAvailable() > 0 && socket->readAll().contains("raise")) {
            emit activationRequested();
        }
    }
}

} // namespace pvardo::app
