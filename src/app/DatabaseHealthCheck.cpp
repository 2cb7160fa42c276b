#include "app/DatabaseHealthCheck.h"

#include "store/DatabaseCheck.h"

#include <QThread>

namespace pvardo::app {

DatabaseHealthCheck::DatabaseHealthCheck(QString databaseFolder, QObject* parent)
    : QObject(parent)
    , m_folder(std::move(databaseFolder))
{
}

DatabaseHealthCheck::~DatabaseHealthCheck()
{
    if (m_thread) {
        m_thread->wait();
        delete m_thread;
    }
}

void DatabaseHealthCheck::start()
{
    if (m_thread) {
        return;
    }
    const QString folder = m_folder;
    m_thread = QThread::create([this, folder] {
        const QList<store::FileVerdict> verdicts = store::verifyDatabaseFolder(folder);
        QStringList notices;
        for (const store::FileVerdict& verdict : verdicts) {
            notices << verdict.notices;
        }
        QStringList messages{store::damagedFilesMessage(verdicts), store::keyIndexMessage(notices)};
        messages.removeAll(QString());
        m_result = messages.join(QStringLiteral("\n\n"));
    });
    connect(m_thread, &QThread::finished, this, [this] {
        m_message = m_result;
        m_finished = true;
        emit finished();
    });
    m_thread->start(QThread::LowPriority);
}

} // namespace pvardo::app
