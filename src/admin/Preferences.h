#pragma once

#include <QString>
#include <QStringList>

namespace pvardo {
struct Session;
}

namespace pvardo::admin {

// Everything the preferences screen shows and writes back: PVardo.ini, the
// backup and code links of def.txt, the GIS link of browser.txt, the case
// numbering of pnb.txt and the board members of Inspectors.txt.
struct Preferences
{
    QString masterDatabaseFolder;
    QString municipalityName;
    QString municipalityAddress;
    QString municipalityCity;
    QString municipalityState;
    QString municipalityZip;
    QString municipalityPhone;
    int backupMode = 0; // 0 prompt, 1 automatic, 2 manual
    bool shareParcelStore = false;
    QString editorFontName;
    QString editorFontSize;
    QString backupFolder;
    QString onlineCodesLink;
    QString localCodesLink;
    QString localGisLink;
    bool useDefaultBrowser = false;
    bool letComputerDecide = true; // pnb.txt holds "-1"
    QString beginNumbering;
    QStringList boardMembers;
    // The settings files read that are damaged (a zeroed block, bytes no text
    // file holds): their settings are the defaults here, and a save writes
    // them anew.
    QStringList damagedFiles;
};

// What the screen says about damaged settings files, naming each and what to
// do; empty when there are none.
QString damagedSettingsMessage(const QStringList& files);

// The preferences as the session has them, with def.txt, browser.txt, pnb.txt
// and Inspectors.txt read anew. An empty backup folder is proposed as backup
// under the root of the program's drive.
Preferences loadPreferences(const Session& state);

// The fourteen lines of PVardo.ini for these preferences.
QStringList settingsFileLines(const Preferences& preferences);

// Where the databases will be after a save: the new folder when the user
// switches to it and it holds databases, else the installation's own
// databases folder; without a switch the session's folder stays.
QString databaseFolderAfterSave(const Session& state, const Preferences& preferences, bool switchFolder);

// Copies what a database folder holds (the database files through SQLite's
// online backup, so a copy taken while workstations write is whole, and the
// lists, numbers and libraries beside them) into another folder, made when it
// is not there, before the installation moves to it. A copy that fails takes
// away what it made and gives false with the reason. The target must not lie
// inside the folder copied.
bool copyDatabaseFolder(const QString& from, const QString& to, QString* error = nullptr);

// The forms folder goes with the database folder, one level up: before a
// switch to a folder whose forms folder is not there yet (or lacks the
// report header), the templates in use are copied into it, every file and
// subfolder of `from` that `to` lacks; nothing there is replaced. Gives
// false, with the reason, when a file could not be copied; what was copied
// stays (it is only missing files).
bool copyMissingForms(const QString& from, const QString& to, QString* error = nullptr);

// Writes every settings file at once: PVardo.ini and def.txt in the program
// folder (def.txt names the folder the databases will be in), pnb.txt and
// Inspectors.txt in `listsFolder`, the database folder whose lists the screen
// showed (empty: the session's), browser.txt only when a GIS link is given
// or the file read was damaged.
// All are written beside their names first and put in place only when every
// one was written whole; a file put in place before a later one failed is put
// back. Gives false, with the reason, when the files are as they were before.
bool writePreferences(const Session& state, const Preferences& preferences,
    const QString& databaseFolderAfter, const QString& listsFolder = QString(), QString* error = nullptr);

} // namespace pvardo::admin
