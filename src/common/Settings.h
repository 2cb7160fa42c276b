#pragma once

#include <QString>
#include <QStringList>
#include <functional>

namespace pvardo {

struct Session;

// The settings of an installation: PVardo.ini in the program folder, fourteen
// lines read by their position, and the small files around it (def.txt, the
// report header, imported.txt). Reading fills the session.
class Settings
{
public:
    static constexpr int lineCount = 14;

    // The fourteen lines of a new settings file.
    static QStringList defaultLines(const QString& databaseFolder, bool shareParcelStore);

    // Line 9 as the file keeps it, and as it is read: only "TRUE" in any case
    // of letters counts as true.
    static QString booleanText(bool value);
    static bool readBoolean(const QString& line);

    // The fatal message when the report header cannot be read.
    static QString fatalMessage();

    // The question of a new settings file when the sibling inspection program
    // is installed: share its parcel store or not. The program installs the
    // dialog hasVARDO; without one the store is not shared.
    using ShareQuestion = std::function<bool()>;
    static ShareQuestion setShareQuestion(ShareQuestion question);
};

// Reads the settings file at `path` into the session (whose ProgramFolder must
// be set): the master database folder, which is also the database folder until
// the check of the databases, the forms folder, the municipality, the backup
// policy, the parcel store's sharing, the editor font; then the report header,
// def.txt, whether a roll can be imported, and the parcel store's path.
//
// A missing file, one that is too short or whose first line is empty is
// written anew with the defaults (its other lines are lost) and read again. A
// damaged file (bytes no text file holds, as a failing disk leaves them) is
// kept beside it as PVardo.ini.damaged-DATE and written anew the same way,
// and the user is told so. A file that cannot be read at all sends the reading to the program folder's
// own settings file. When the report header cannot be read, or no settings
// file can be read at all, the user is told and the program ends: the result
// is then false and the caller returns at once.
bool ReadSettings(const QString& path);

// The parcel store's path, after the settings and after the preferences are
// saved: the sibling program's store when it is installed and the settings
// say to share it, else the one of the database folder (and, without the
// sibling program, never shared).
void ChooseParcelStore(Session& state);

} // namespace pvardo
