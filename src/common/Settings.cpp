#include "common/Settings.h"

#include "common/NumberText.h"
#include "common/ProgramEnd.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "common/SettingStore.h"
#include "common/TextDamage.h"
#include "common/TextFiles.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace pvardo {

namespace {

Settings::ShareQuestion& shareQuestion()
{
    static Settings::ShareQuestion question;
    return question;
}

// The store lives in the database folder as sbl.db; the sibling program keeps
// its own in the databases folder of its installation.
QString parcelStoreIn(const QString& databaseFolder)
{
    return joinPath(databaseFolder, QStringLiteral("\\sbl.db"));
}

// The forms go with the database folder, one level up.
QString formsFolderOf(const QString& databaseFolder, const QString& programFolder)
{
    const qsizetype cut = databaseFolder.lastIndexOf(QLatin1Char('/'));
    if (cut < 0) {
        return joinPath(programFolder, QStringLiteral("\\forms"));
    }
    return databaseFolder.left(cut) + QStringLiteral("/forms");
}

bool holdsDatabases(const QString& folder)
{
    return !folder.isEmpty() && !QDir(folder).entryList({QStringLiteral("*.db")}, QDir::Files).isEmpty();
}

enum class Failure { None, NotFound, PastEnd, Damaged, Other };

struct Attempt
{
    Failure failure = Failure::None;
    QString reason;
};

// Reads the fourteen lines; the session is changed only by a complete file.
Attempt readLines(const QString& path, Session& state)
{
    if (!QFileInfo::exists(path)) {
        return {Failure::NotFound, {}};
    }
    bool damaged = false;
    const std::optional<QStringList> read = readCheckedTextLines(path, &damaged);
    if (damaged) {
        return {Failure::Damaged, {}};
    }
    if (!read) {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        return {Failure::Other, file.errorString()};
    }
    const QStringList& lines = *read;
    if (lines.isEmpty() || lines.first().trimmed().isEmpty()) {
        return {Failure::NotFound, {}};
    }
    if (lines.size() < Settings::lineCount) {
        return {Failure::PastEnd, {}};
    }
    state.MasterDatabaseFolder = lines.at(0);
    state.DatabaseFolder = state.MasterDatabaseFolder;
    state.FormsFolder = formsFolderOf(state.DatabaseFolder, state.ProgramFolder);
    state.MunicipalityName = lines.at(1);
    state.MunicipalityAddress = lines.at(2);
    state.MunicipalityCity = lines.at(3);
    state.MunicipalityState = lines.at(4);
    state.MunicipalityZip = lines.at(5);
    state.MunicipalityPhone = lines.at(6);
    state.BackupMode = LeadingWholeNumber(lines.at(7));
    state.ShareParcelStore = Settings::readBoolean(lines.at(8));
    state.EditorFontSize = LeadingNumber(lines.at(9));
    state.EditorFontName = lines.at(10);
    // Lines 12 to 14 (the titles of two code books and a number) must be
    // there, and nothing reads them.
    return {};
}

// A new settings file: the parcel store shared only when the sibling program
// is installed and the office says so.
void writeNewSettings(const QString& path, Session& state)
{
    state.MasterDatabaseFolder = joinPath(state.ProgramFolder, QStringLiteral("\\databases"));
    state.DatabaseFolder = state.MasterDatabaseFolder;
    if (ReadSiblingInfo() && shareQuestion() && shareQuestion()()) {
        state.ParcelDatabasePath = joinPath(state.SiblingFolder, QStringLiteral("\\databases\\sbl.db"));
        state.ShareParcelStore = true;
    } else {
        state.ParcelDatabasePath = parcelStoreIn(state.DatabaseFolder);
        state.ShareParcelStore = false;
    }
    QString error;
    if (!replaceTextLines(
            path, Settings::defaultLines(state.MasterDatabaseFolder, state.ShareParcelStore), &error)) {
        showMessage(QStringLiteral("The settings file ") + QDir::toNativeSeparators(path)
                + QStringLiteral(" could not be written: ") + error
                + QStringLiteral("\n\nThe program goes on with the default settings."),
            QStringLiteral(" Settings"), PromptButtons::Ok, PromptIcon::Exclamation);
    }
}

void applyDefaults(Session& state)
{
    const QStringList lines = Settings::defaultLines(
        joinPath(state.ProgramFolder, QStringLiteral("\\databases")), state.ShareParcelStore);
    state.MasterDatabaseFolder = lines.at(0);
    state.DatabaseFolder = state.MasterDatabaseFolder;
    state.FormsFolder = formsFolderOf(state.DatabaseFolder, state.ProgramFolder);
    state.MunicipalityName.clear();
    state.MunicipalityAddress.clear();
    state.MunicipalityCity.clear();
    state.MunicipalityState.clear();
    state.MunicipalityZip.clear();
    state.MunicipalityPhone.clear();
    state.BackupMode = 0;
    state.EditorFontSize = 12;
    state.EditorFontName = lines.at(10);
}

// The report header; a database folder that holds no database yet (the check
// that follows moves to the program's own) has its header in the program's
// forms folder.
bool readReportHeader(Session& state)
{
    QStringList candidates{joinPath(state.FormsFolder, QStringLiteral("\\gTitle.rtf"))};
    if (!holdsDatabases(state.DatabaseFolder)) {
        candidates << joinPath(state.ProgramFolder, QStringLiteral("\\forms\\gTitle.rtf"));
    }
    for (const QString& candidate : candidates) {
        QFile file(candidate);
        if (file.open(QIODevice::ReadOnly)) {
            state.ReportHeaderRtf = decodeText(file.readAll());
            return true;
        }
    }
    return false;
}

void readDefFile(Session& state)
{
    state.BackupFolder.clear();
    state.OnlineCodesLink.clear();
    state.LocalCodesLink.clear();
    const std::optional<QStringList> lines
        = readTextLines(joinPath(state.ProgramFolder, QStringLiteral("\\def.txt")));
    if (!lines) {
        return;
    }
    // Line 1 named the database folder once; the settings file names it now.
    state.BackupFolder = lines->value(1).trimmed();
    state.OnlineCodesLink = lines->value(2);
    state.LocalCodesLink = lines->value(3);
}

} // namespace

QStringList Settings::defaultLines(const QString& databaseFolder, bool shareParcelStore)
{
    return {databaseFolder, QString(), QString(), QString(), QString(), QString(), QString(),
        QStringLiteral("0"), booleanText(shareParcelStore), QStringLiteral("12"),
        QStringLiteral("Times New Roman"), QStringLiteral("NYS Fire Prevention & Bldg Code"),
        QStringLiteral("Building and Zoning Codes"), QStringLiteral("0")};
}

QString Settings::booleanText(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

bool Settings::readBoolean(const QString& line)
{
    return line.toUpper() == QLatin1String("TRUE");
}

QString Settings::fatalMessage()
{
    return QStringLiteral(
        "Vardo encountered a fatal error and cannot continue. You may need to reinstall the application.");
}

Settings::ShareQuestion Settings::setShareQuestion(ShareQuestion question)
{
    ShareQuestion previous = std::move(shareQuestion());
    shareQuestion() = std::move(question);
    return previous;
}

bool ReadSettings(const QString& path)
{
    Session& state = session();
    QString file = path;
    bool guarded = true;
    bool rewritten = false;
    for (;;) {
        const Attempt attempt = readLines(file, state);
        if (attempt.failure == Failure::None) {
            break;
        }
        const bool damaged = attempt.failure == Failure::Damaged;
        const bool asNew
            = attempt.failure == Failure::NotFound || attempt.failure == Failure::PastEnd || damaged;
        if (asNew && !rewritten) {
            if (damaged) {
                // Bytes no settings file holds (a block zeroed by the disk):
                // the file is kept for the record and a new one written.
                const QString kept = file + QStringLiteral(".damaged-")
                    + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
                const bool keptAside = QFile::rename(file, kept);
                writeNewSettings(file, state);
                showMessage(QStringLiteral("The settings file %1 is damaged (error 3343): it holds bytes no settings "
                                           "file holds, as a failing disk leaves them.")
                                    .arg(QDir::toNativeSeparators(file))
                        + (keptAside ? QStringLiteral(" It is kept as %1.").arg(QDir::toNativeSeparators(kept))
                                     : QString())
                        + QStringLiteral("\n\nA new one with the default settings is in use: the databases in %1. If "
                                         "the office's databases are elsewhere (a shared folder), close the program "
                                         "and restore the settings file from the last backup, or set the database "
                                         "location, the municipality and the backup again in Preferences.")
                              .arg(QDir::toNativeSeparators(state.MasterDatabaseFolder)),
                    QStringLiteral(" Settings"), PromptButtons::Ok, PromptIcon::Exclamation);
                rewritten = true;
                if (readLines(file, state).failure != Failure::None) {
                    applyDefaults(state);
                }
                break;
            }
            // A file too short or without its first line is as good as none.
            writeNewSettings(file, state);
            rewritten = true;
            if (readLines(file, state).failure == Failure::None) {
                break;
            }
            // Not written (or not readable after all): the defaults serve.
            applyDefaults(state);
            break;
        }
        if (guarded) {
            // Unreadable: the program folder's own file, with the program
            // folder as the master folder until that file is read.
            guarded = false;
            file = joinPath(state.ProgramFolder, QStringLiteral("\\PVardo.ini"));
            state.MasterDatabaseFolder = state.ProgramFolder;
            rewritten = false;
            continue;
        }
        showMessage(QStringLiteral("The settings file ") + QDir::toNativeSeparators(file)
                + QStringLiteral(" cannot be read")
                + (attempt.reason.isEmpty() ? QString() : QStringLiteral(": ") + attempt.reason)
                + QStringLiteral(".\n\nMake it readable, or remove it so that the program writes a new one."),
            QStringLiteral(" Settings"), PromptButtons::Ok, PromptIcon::Critical);
        EndProgram(1);
        return false;
    }

    if (!readReportHeader(state)) {
        showMessage(Settings::fatalMessage(), QString(), PromptButtons::Ok, PromptIcon::Critical);
        EndProgram(1);
        return false;
    }
    readDefFile(state);
    state.ImportAvailable
        = QFileInfo::exists(joinPath(state.DatabaseFolder, QStringLiteral("\\imported.txt")))
        && QFileInfo::exists(joinPath(state.DatabaseFolder, QStringLiteral("\\rps.db")));
    ChooseParcelStore(state);
    return true;
}

void ChooseParcelStore(Session& state)
{
    const bool installed = ReadSiblingInfo();
    if (installed && state.ShareParcelStore) {
        state.ParcelDatabasePath = joinPath(state.SiblingFolder, QStringLiteral("\\databases\\sbl.db"));
        return;
    }
    state.ParcelDatabasePath = parcelStoreIn(state.DatabaseFolder);
    if (!installed) {
        state.ShareParcelStore = false;
    }
}

} // namespace pvardo
