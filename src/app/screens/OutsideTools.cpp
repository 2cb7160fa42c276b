#include "app/screens/OutsideTools.h"

#include "app/InstanceGuard.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>

namespace pvardo::app {

namespace {

QString shown(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

QPushButton* closeButton(QDialog* dialog)
{
    auto* button = new QPushButton(QStringLiteral(" Close "), dialog);
    button->setObjectName(QStringLiteral("cmdClose"));
    QObject::connect(button, &QPushButton::clicked, dialog, &QDialog::accept);
    return button;
}

} // namespace

MenderWindow::MenderWindow(QString programFolder, QString adminProgram, QWidget* parent)
    : QDialog(parent)
    , m_folder(std::move(programFolder))
    , m_admin(std::move(adminProgram))
{
    setObjectName(QStringLiteral("dbMender"));
    setWindowTitle(QStringLiteral("Repair of the databases"));
    auto* layout = new QVBoxLayout(this);
    auto* folder = new QLabel(QStringLiteral("Installation: ") + shown(m_folder), this);
    folder->setObjectName(QStringLiteral("Label2"));
    folder->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(folder);
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("Label1"));
    m_status->setWordWrap(true);
    layout->addWidget(m_status);
    m_report = new QPlainTextEdit(this);
    m_report->setObjectName(QStringLiteral("Report"));
    m_report->setReadOnly(true);
    m_report->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    layout->addWidget(m_report, 1);
    auto* buttons = new QHBoxLayout;
    m_close = closeButton(this);
    buttons->addStretch();
    buttons->addWidget(m_close);
    layout->addLayout(buttons);
    resize(640, 360);

    m_poll.setInterval(500);
    connect(&m_poll, &QTimer::timeout, this, &MenderWindow::poll);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    connect(&m_process, &QProcess::finished, this, &MenderWindow::finished);
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            failedToRun(m_process.errorString());
        }
    });
}

MenderWindow::~MenderWindow()
{
    // Closed while the repair runs: the tool finishes its file, so that no
    // file is left half-recovered.
    if (m_process.state() != QProcess::NotRunning) {
        m_process.waitForFinished(-1);
    }
}

QString MenderWindow::findAdminProgram()
{
    const QString beside = QCoreApplication::applicationDirPath() + QStringLiteral("/pvardo-admin");
    if (QFileInfo(beside).isExecutable()) {
        return beside;
    }
    return QStandardPaths::findExecutable(QStringLiteral("pvardo-admin"));
}

void MenderWindow::start()
{
    if (m_admin.isEmpty() || !QFileInfo(m_admin).isExecutable()) {
        failedToRun(QStringLiteral("pvardo-admin cannot be found beside the repair tool or on the PATH"));
        return;
    }
    m_stage = Stage::Waiting;
    m_status->setText(QStringLiteral("Waiting for the program to close on this installation. Close it on "
                                     "every workstation that uses these databases."));
    poll();
    if (m_stage == Stage::Waiting) {
        m_poll.start();
    }
}

void MenderWindow::poll()
{
    {
        // The program holds this lock for as long as it runs; taken and let
        // go at once, it says the program is closed.
        InstanceGuard guard(m_folder);
        if (!guard.acquire()) {
            return;
        }
    }
    m_poll.stop();
    runRepair();
}

void MenderWindow::runRepair()
{
    m_stage = Stage::Repairing;
    m_status->setText(QStringLiteral("Checking and repairing the database files..."));
    m_close->setEnabled(false);
    m_process.start(m_admin, {QStringLiteral("--home"), m_folder, QStringLiteral("repair")});
}

void MenderWindow::finished(int exitCode, QProcess::ExitStatus status)
{
    m_stage = Stage::Done;
    m_exitCode = status == QProcess::NormalExit ? exitCode : -1;
    m_report->setPlainText(QString::fromUtf8(m_process.readAll()));
    m_close->setEnabled(true);
    if (m_exitCode == 0) {
        m_status->setText(QStringLiteral("The repair is done: every database file is whole. You can start the "
                                         "program again."));
    } else {
        m_status->setText(QStringLiteral("Not every file could be mended (see below). Restore the files named "
                                         "below from the last backup before you start the program again."));
    }
}

void MenderWindow::failedToRun(const QString& why)
{
    m_poll.stop();
    m_stage = Stage::Done;
    m_exitCode = -1;
    m_close->setEnabled(true);
    m_status->setText(QStringLiteral("The repair could not run: %1. Nothing was changed.").arg(why));
}

UpdaterWindow::UpdaterWindow(const QString& version, const QString& programFolder, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("Updater"));
    setWindowTitle(QStringLiteral("Updates"));
    auto* layout = new QVBoxLayout(this);
    auto* text = new QLabel(updateText(version, programFolder), this);
    text->setObjectName(QStringLiteral("Label1"));
    text->setWordWrap(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(text);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(closeButton(this));
    layout->addLayout(buttons);
    setFixedWidth(520);
}

QString UpdaterWindow::updateText(const QString& version, const QString& programFolder)
{
    return QStringLiteral("Version %1 of the program is installed.\n\n"
                          "Updates come as a Debian package, pvardo_VERSION_amd64.deb, from your office's IT. "
                          "To install one, close the program on every workstation, then on each computer run:\n\n"
                          "    sudo apt-get install ./pvardo_VERSION_amd64.deb\n\n"
                          "An update replaces the programs only: the databases, templates and settings in %2 "
                          "stay as they are. Take a backup first all the same (pvardo-admin backup).")
        .arg(version, shown(programFolder));
}

QString toolProgramFolder(const QStringList& arguments)
{
    const int home = arguments.indexOf(QStringLiteral("--home"));
    if (home >= 0 && home + 1 < arguments.size()) {
        return QDir::cleanPath(QFileInfo(arguments.at(home + 1)).absoluteFilePath());
    }
    const QString named = qEnvironmentVariable("PVARDO_HOME");
    if (!named.isEmpty()) {
        return QDir::cleanPath(QFileInfo(named).absoluteFilePath());
    }
    return QDir::currentPath();
}

} // namespace pvardo::app
