#pragma once

#include <QDialog>
#include <QProcess>
#include <QString>
#include <QTimer>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace pvardo::app {

// The window of the repair tool dbMender, which the program starts from its
// folder before it ends: it waits until the program is closed on this
// installation (for this user; other workstations are the office's to close,
// and pvardo-admin repair refuses while it can see one), then runs
// `pvardo-admin --home FOLDER repair` and shows its report.
class MenderWindow final : public QDialog
{
    Q_OBJECT

public:
    // `adminProgram` is the path of pvardo-admin.
    MenderWindow(QString programFolder, QString adminProgram, QWidget* parent = nullptr);
    ~MenderWindow() override;

    // Begins waiting for the program to close; the repair follows on its own.
    void start();

    enum class Stage { NotStarted, Waiting, Repairing, Done };
    Stage stage() const { return m_stage; }
    // The exit status of the repair, once done (-1 when it could not run).
    int exitCode() const { return m_exitCode; }

    // pvardo-admin beside the running program, else the one on the PATH;
    // empty when there is none.
    static QString findAdminProgram();

private:
    void poll();
    void runRepair();
    void finished(int exitCode, QProcess::ExitStatus status);
    void failedToRun(const QString& why);

    QString m_folder;
    QString m_admin;
    QLabel* m_status = nullptr;
    QPlainTextEdit* m_report = nullptr;
    QPushButton* m_close = nullptr;
    QTimer m_poll;
    QProcess m_process;
    Stage m_stage = Stage::NotStarted;
    int m_exitCode = -1;
};

// The window of Updater, which the Admin menu's "Check for updates.." starts:
// the program comes as a Debian package, so it tells the version installed
// and how the office installs a newer one; it changes nothing itself.
class UpdaterWindow final : public QDialog
{
    Q_OBJECT

public:
    UpdaterWindow(const QString& version, const QString& programFolder, QWidget* parent = nullptr);

    // The text shown, for the version and installation folder given.
    static QString updateText(const QString& version, const QString& programFolder);
};

// The program folder the tools work on: `--home DIR` among the arguments,
// else PVARDO_HOME, else the current folder (the program starts them there).
QString toolProgramFolder(const QStringList& arguments);

} // namespace pvardo::app
