#pragma once

#include "app/DatabaseHealthCheck.h"
#include "app/InstanceGuard.h"
#include "app/StartupHost.h"

#include <QString>
#include <memory>

namespace pvardo::app {

// The entry routine: takes the process from nothing to the main window, in a
// fixed order of steps. Only the instance check and the log-on can end it on
// the way (through EndProgram); everything after the main window is driven by
// user events.
//
// The object lives as long as the process: the first instance keeps its lock
// and listens for later starts through it.
class Startup
{
public:
    Startup(StartupHost& host, QString programFolder);

    // Runs every step. Gives true when the main window is up, false when the
    // program was ended on the way.
    bool run();

    // What the steps found, for the screens that come later and for tests.
    struct Findings
    {
        bool secondInstance = false;
        bool settingsInFilesAsked = false; // w7.txt asked for settings kept in files
        bool updaterReplaced = false;
        QString damagedDatabases; // what the check of the database files found, once it has
    };
    const Findings& findings() const { return m_findings; }

    // The steps, in the order run() takes them.
    void clearSessionFlags();
    bool checkSingleInstance();
    void removeSessionLog();
    void readW7();
    void enterProgramFolder();
    void clearScreenFlags();
    // False when the program was ended on the way (no settings, no users).
    bool SetDefaults();
    void replaceUpdater();
    void removeUpdatedFlag();
    bool logOn();
    void readParcelStoreVersion();
    void readBrowserFile();
    // Starts the check of the database files in the background; a damaged
    // file is named in a message once the main window is up.
    void checkDatabaseFiles();
    // The running check, for tests that wait for it.
    DatabaseHealthCheck* databaseCheck() const { return m_databaseCheck.get(); }

    // True when the first line of w7.txt in a folder, trimmed, is "1".
    static bool w7AsksForSettingsInFiles(const QString& programFolder);

private:
    QString path(const QString& officePath) const;
    void reportDamagedDatabases();

    StartupHost& m_host;
    QString m_programFolder;
    std::unique_ptr<InstanceGuard> m_guard;
    Findings m_findings;
    std::unique_ptr<DatabaseHealthCheck> m_databaseCheck;
    bool m_mainWindowShown = false;
    bool m_damageReported = false;
};

} // namespace pvardo::app
