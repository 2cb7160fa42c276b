#pragma once

#include <QDate>
#include <QString>

#include <array>

namespace pvardo {

// The state of one session of the program. The office's program keeps it as
// one flat set of values that every screen reads and the entry routine fills;
// here it is one plain record with one instance per process (session()).
// Member names are the names the office's documentation uses.
struct Session {
    // Folders, all without a trailing separator.
    QString ProgramFolder;
    QString DatabaseFolder;
    QString FormsFolder;
    QString MasterDatabaseFolder;
    QString ParcelDatabasePath;
    QString WindowsFolder;
    QString TempFolder;

    bool ShareParcelStore = false;
    int ParcelStoreVersion = 13;
    bool ImportAvailable = false;
    bool FileBackedSettings = true;

    // Who is working.
    QString CurrentUser;
    QString UserLevel;
    bool LoggedIn = false;
    bool IsAdmin = false;
    bool ReadOnlyUser = false;
    int UserIndex = -1; // the logged-on user's entry in the user list, from 0

    // Outside programs.
    QString DefaultBrowser;
    bool DefaultBrowserFound = false;
    QString LocalGisLink;
    QString UseDefaultBrowser;

    // Screens.
    std::array<bool, 17> ScreenOpen{};
    int ScreenCode = 1;
    std::array<QString, 21> ScreenQuery;
    std::array<QString, 21> ScreenConnection;
    QString DatabaseLabel;
    QString CurrentCase;
    QString HopTarget;
    bool StopFlag = false;
    bool FirstPass = false;
    bool AtLogon = false;
    int LeavingMarker = 0;

    // Month names, entries 1 to 13; entry 13 is empty and entry 0 unused.
    std::array<QString, 14> MonthNames{};

    QDate Today;
    QString TodayMonth;
    QString TodayDay;
    QString TodayYear;

    // Fonts of paper and of the editors.
    QString ReportFontName = QStringLiteral("Times New Roman");
    double ReportFontSize = 12;
    QString EditorFontName = QStringLiteral("Times New Roman");
    double EditorFontSize = 12;

    // The municipality and the office's policies, from the settings file.
    QString MunicipalityName;
    QString MunicipalityAddress;
    QString MunicipalityCity;
    QString MunicipalityState;
    QString MunicipalityZip;
    QString MunicipalityPhone;
    int BackupMode = 0;
    QString BackupFolder;
    QString OnlineCodesLink;
    QString LocalCodesLink;
    // The report header of the letters, as the text of its RTF file.
    QString ReportHeaderRtf;
    // The sibling inspection program, from the named settings EP and AE.
    QString SiblingFolder;
    QString SiblingProgram;

    // Fills the constants: month names and today's parts.
    void fillConstants(const QDate& today);
};

// The one session of this process.
Session& session();

// Starts a fresh session, as at the start of a process. Tests call it
// between cases.
void resetSession();

} // namespace pvardo
