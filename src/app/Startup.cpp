#include "app/Startup.h"

#include "admin/UserLogon.h"
#include "common/Clock.h"
#include "common/DateText.h"
#include "common/Files.h"
#include "common/MousePointer.h"
#include "common/NetworkUser.h"
#include "common/NumberText.h"
#include "common/OutsidePrograms.h"
#include "common/ProgramEnd.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "common/Settings.h"
#include "common/TextFiles.h"
#include "store/DatabaseLocation.h"
#include "store/Recordset.h"

#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QFile>

namespace pvardo::app {

namespace {

void letEventsRun()
{
    if (QCoreApplication::instance() != nullptr) {
        QCoreApplication::processEvents();
    }
}

} // namespace

Startup::Startup(StartupHost& host, QString programFolder)
    : m_host(host)
    , m_programFolder(std::move(programFolder))
{
}

QString Startup::path(const QString& officePath) const
{
    return joinPath(m_programFolder, officePath);
}

bool Startup::run()
{
    clearSessionFlags();
    if (!checkSingleInstance()) {
        return false;
    }
    removeSessionLog();
    readW7();
    enterProgramFolder();
    clearScreenFlags();
    if (!SetDefaults()) {
        return false;
    }
    checkDatabaseFiles();
    setHourglass();
    FindDefaultBrowser();

    m_host.showSplash();
    WaitSeconds(2);
    replaceUpdater();
    removeUpdatedFlag();
    session().CurrentUser = GetNetworkUser();
    m_host.closeSplash();
    setNormalPointer();
    setHourglass();

    if (!logOn()) {
        return false;
    }

    setHourglass();
    letEventsRun();
    // The editors open at size 9 whatever the settings file holds; only the
    // preferences screen shows the stored size again.
    session().EditorFontSize = 9;
    m_host.showWaitNotice();
    WaitSeconds(1);
    readParcelStoreVersion();
    readBrowserFile();
    session().FirstPass = false;
    admin::ApplyUserLevel();

    m_host.closeWaitNotice();
    setNormalPointer();
    m_host.showMainWindow();
    m_mainWindowShown = true;
    reportDamagedDatabases();
    letEventsRun();
    letEventsRun();
    return true;
}

void Startup::checkDatabaseFiles()
{
    m_databaseCheck = std::make_unique<DatabaseHealthCheck>(session().DatabaseFolder);
    QObject::connect(m_databaseCheck.get(), &DatabaseHealthCheck::finished, m_databaseCheck.get(),
        [this] { reportDamagedDatabases(); });
    m_databaseCheck->start();
}

void Startup::reportDamagedDatabases()
{
    // Said once, over the main window: a message during the log-on would
    // stand between the user and the program.
    if (!m_databaseCheck || !m_databaseCheck->isFinished() || !m_mainWindowShown || m_damageReported) {
        return;
    }
    m_damageReported = true;
    m_findings.damagedDatabases = m_databaseCheck->message();
    if (!m_findings.damagedDatabases.isEmpty()) {
        showMessage(m_findings.damagedDatabases, QStringLiteral(" Database Check"), PromptButtons::Ok,
            PromptIcon::Exclamation);
    }
}

void Startup::clearSessionFlags()
{
    Session& state = session();
    state.StopFlag = false;
    state.LoggedIn = false;
    state.IsAdmin = false;
    state.ReadOnlyUser = false;
    state.AtLogon = false;
    state.LeavingMarker = 0;
    state.fillConstants(todaysDate());
    state.DefaultBrowser.clear();
    state.DefaultBrowserFound = false;
    state.LocalGisLink.clear();
    state.UseDefaultBrowser.clear();
    state.CurrentCase.clear();
    state.ProgramFolder = m_programFolder;
}

bool Startup::checkSingleInstance()
{
    m_guard = std::make_unique<InstanceGuard>(m_programFolder);
    if (m_guard->acquire()) {
        QObject::connect(m_guard.get(), &InstanceGuard::activationRequested, m_guard.get(),
            [this] { m_host.bringToFront(); });
        return true;
    }
    // Nothing else is touched: the running instance owns the folder's files.
    m_findings.secondInstance = true;
    showMessage(QStringLiteral("Vardo is already running."));
    m_guard->activateFirstInstance();
    letEventsRun();
    EndProgram(0);
    return false;
}

void Startup::removeSessionLog()
{
    // Nothing writes this file any more; a start always clears it away.
    KillIfPresent(path(QStringLiteral("\\session.log")));
}

bool Startup::w7AsksForSettingsInFiles(const QString& programFolder)
{
    const std::optional<QStringList> lines
        = readTextLines(joinPath(programFolder, QStringLiteral("\\w7.txt")));
    return lines && !lines->isEmpty() && lines->constFirst().trimmed() == QLatin1String("1");
}

void Startup::readW7()
{
    // The file chose between keeping the named settings in files or in the
    // system's registry. This program keeps them in files always, so the
    // answer is only noted.
    m_findings.settingsInFilesAsked = w7AsksForSettingsInFiles(m_programFolder);
    session().FileBackedSettings = true;
}

void Startup::enterProgramFolder()
{
    QDir::setCurrent(m_programFolder);
}

void Startup::clearScreenFlags()
{
    Session& state = session();
    for (std::size_t entry = 1; entry <= 7; ++entry) {
        state.ScreenOpen[entry] = false;
    }
    state.FirstPass = true;
}

bool Startup::SetDefaults()
{
    Session& state = session();
    state.ProgramFolder = m_programFolder;
    state.fillConstants(todaysDate());
    state.ReportFontName = QStringLiteral("Times New Roman");
    state.ReportFontSize = 12;
    // This system has no Windows folder; the temp folder loses the filler
    // blanks and NULs of the system's answer.
    state.WindowsFolder.clear();
    state.TempFolder = CutAtNul(TempPath()).trimmed();

    // The settings, then the users of this computer. Either can end the
    // program: a report header that cannot be read, or no user list at all.
    if (!ReadSettings(path(QStringLiteral("\\PVardo.ini")))) {
        return false;
    }
    QString usersProblem;
    if (!admin::loadSessionUsers(m_programFolder, &usersProblem)) {
        const bool missing = !QFile::exists(admin::usersFile(m_programFolder));
        showMessage(usersProblem, QStringLiteral(" Users"), PromptButtons::Ok,
            missing ? PromptIcon::Critical : PromptIcon::Exclamation);
        if (missing) {
            EndProgram(1);
            return false;
        }
        // A damaged list: nobody can log on, and Cancel leaves.
    }

    // A named folder that did not connect ends the start, as the admin
    // commands stop: nothing is made in it, nor in the installation's own.
    if (const QString unreachable = store::unreachableFolderMessage(state.DatabaseFolder, state.ProgramFolder);
        !unreachable.isEmpty()) {
        showMessage(unreachable, QStringLiteral(" Database Folder"), PromptButtons::Ok, PromptIcon::Critical);
        EndProgram(1);
        return false;
    }
    const store::CheckResult checked = store::CheckDatabases(state);
    if (checked.fellBackToDefault && !state.ShareParcelStore) {
        // The parcel store goes with the databases to the default folder.
        state.ParcelDatabasePath = store::databaseFile(state.DatabaseFolder, QStringLiteral("\\sbl.mdb"));
    }
    return true;
}

void Startup::replaceUpdater()
{
    // The updater cannot overwrite its own file while it runs, so it leaves
    // the new one as Updater1 and the next start puts it in place.
    const QString fresh = path(QStringLiteral("\\Updater1"));
    if (FileExists(fresh)) {
        const QString updater = path(QStringLiteral("\\Updater"));
        KillIfPresent(updater);
        RenameQuietly(fresh, updater);
        m_findings.updaterReplaced = !QFile::exists(fresh) && QFile::exists(updater);
    }
}

void Startup::removeUpdatedFlag()
{
    const QString flag = path(QStringLiteral("\\updated.fl"));
    if (FileExists(flag)) {
        KillIfPresent(flag);
    }
}

bool Startup::logOn()
{
    Session& state = session();
    state.AtLogon = true;
    setNormalPointer();
    m_host.logOn();
    state.AtLogon = false;
    if (!state.LoggedIn) {
        // Cancelling the log-on is the normal way out before the main window:
        // no backup question and no version written.
        EndProgram(0);
        return false;
    }
    return true;
}

void Startup::readParcelStoreVersion()
{
    // The parcel store's generation is the number of its columns. When the
    // store cannot be opened the number read from sblversion.txt stands, and
    // the parcel screens report the store when they open it.
    store::StoreStatus status;
    const std::unique_ptr<store::Recordset> parcels
        = store::openRecordsetAt(session().ParcelDatabasePath, QStringLiteral("Select * from SBL"), &status);
    if (parcels) {
        session().ParcelStoreVersion = parcels->fieldCount();
    }
}

void Startup::readBrowserFile()
{
    const QString file = path(QStringLiteral("\\browser.txt"));
    if (!FileExists(file)) {
        return;
    }
    const std::optional<QStringList> lines = readTextLines(file);
    if (!lines) {
        return;
    }
    Session& state = session();
    state.LocalGisLink = lines->value(0);
    state.UseDefaultBrowser
        = lines->value(1).trimmed() == QLatin1String("F") ? QStringLiteral("F") : QStringLiteral("T");
}

} // namespace pvardo::app
