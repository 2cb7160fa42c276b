#include "common/OutsidePrograms.h"

#include "common/DateText.h"
#include "common/Files.h"
#include "common/MousePointer.h"
#include "common/ProgramEnd.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "common/TextFiles.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>

namespace pvardo {

namespace {

// The first word of an Exec line, with the quoting of desktop entries.
QString firstExecWord(const QString& exec)
{
    const QString line = exec.trimmed();
    if (line.isEmpty()) {
        return {};
    }
    if (line.startsWith(QLatin1Char('"'))) {
        QString word;
        for (qsizetype i = 1; i < line.size(); ++i) {
            const QChar c = line.at(i);
            if (c == QLatin1Char('\\') && i + 1 < line.size()) {
                word.append(line.at(++i));
            } else if (c == QLatin1Char('"')) {
                return word;
            } else {
                word.append(c);
            }
        }
        return word;
    }
    const qsizetype blank = line.indexOf(QLatin1Char(' '));
    return blank < 0 ? line : line.left(blank);
}

QString fullProgramPath(const QString& program)
{
    if (program.isEmpty()) {
        return {};
    }
    if (program.contains(QLatin1Char('/'))) {
        const QFileInfo info(program);
        return info.isFile() && info.isExecutable() ? info.absoluteFilePath() : QString();
    }
    return QStandardPaths::findExecutable(program);
}

QString desktopEntryFromXdgMime(const QString& mimeType)
{
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("xdg-mime"));
    if (tool.isEmpty()) {
        return {};
    }
    QProcess process;
    process.start(tool, {QStringLiteral("query"), QStringLiteral("default"), mimeType});
    if (!process.waitForFinished(3000)) {
        process.kill();
        process.waitForFinished(1000);
        return {};
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        return {};
    }
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QString programOfDesktopId(const QString& desktopId)
{
    if (desktopId.isEmpty()) {
        return {};
    }
    const QString file = QStandardPaths::locate(QStandardPaths::ApplicationsLocation, desktopId);
    return file.isEmpty() ? QString() : detail::programOfDesktopEntry(file);
}

// Web pages may at least go to the system's chosen browser.
QString systemBrowser()
{
    for (const char* name : {"x-www-browser", "sensible-browser"}) {
        const QString found = QStandardPaths::findExecutable(QString::fromLatin1(name));
        if (!found.isEmpty()) {
            return found;
        }
    }
    return {};
}

QUrl urlOfLink(const QString& link)
{
    const QString trimmed = link.trimmed();
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]+:"));
    if (scheme.match(trimmed).hasMatch()) {
        return QUrl(trimmed, QUrl::TolerantMode);
    }
    if (trimmed.startsWith(QLatin1Char('/')) || trimmed.startsWith(QLatin1Char('.'))
        || QFileInfo::exists(trimmed)) {
        return QUrl::fromLocalFile(QFileInfo(trimmed).absoluteFilePath());
    }
    return QUrl::fromUserInput(trimmed);
}

QString quoted(const QString& text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

// Why a target could not be opened, in the office's numbers.
int failureNumberOf(const QString& target, const QString& program)
{
    if (!target.left(4).toUpper().startsWith(QLatin1String("HTTP"))
        && !target.contains(QLatin1String("://"))) {
        const QFileInfo info(target);
        if (!QFileInfo(info.absolutePath()).isDir()) {
            return 76;
        }
        if (!info.exists()) {
            return 53;
        }
        if (!info.isReadable()) {
            return 75;
        }
    }
    // No program knows this kind of file.
    return program.isEmpty() ? 31 : 2;
}

} // namespace

namespace detail {

QString programOfDesktopEntry(const QString& desktopFilePath)
{
    const std::optional<QStringList> lines = readTextLines(desktopFilePath);
    if (!lines) {
        return {};
    }
    bool inEntry = false;
    for (const QString& raw : *lines) {
        const QString line = raw.trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            inEntry = line == QLatin1String("[Desktop Entry]");
            continue;
        }
        if (inEntry && line.startsWith(QLatin1String("Exec="))) {
            return fullProgramPath(firstExecWord(line.mid(5)));
        }
    }
    return {};
}

QString defaultDesktopEntryFromLists(const QString& mimeType)
{
    QStringList files;
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation)) {
        files << folder + QStringLiteral("/mimeapps.list");
    }
    const QStringList applicationFolders
        = QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
    for (const QString& folder : applicationFolders) {
        files << folder + QStringLiteral("/mimeapps.list");
    }
    for (const QString& folder : applicationFolders) {
        files << folder + QStringLiteral("/defaults.list");
    }
    for (const QString& file : files) {
        const std::optional<QStringList> lines = readTextLines(file);
        if (!lines) {
            continue;
        }
        bool inDefaults = false;
        for (const QString& raw : *lines) {
            const QString line = raw.trimmed();
            if (line.startsWith(QLatin1Char('['))) {
                inDefaults = line == QLatin1String("[Default Applications]");
                continue;
            }
            if (!inDefaults || !line.startsWith(mimeType + QLatin1Char('='))) {
                continue;
            }
            const QStringList ids = line.mid(mimeType.size() + 1).split(QLatin1Char(';'), Qt::SkipEmptyParts);
            for (const QString& id : ids) {
                if (!programOfDesktopId(id.trimmed()).isEmpty()) {
                    return id.trimmed();
                }
            }
        }
    }
    return {};
}

} // namespace detail

QString programForMimeType(const QString& mimeType)
{
    if (mimeType.isEmpty()) {
        return {};
    }
    QString program = programOfDesktopId(desktopEntryFromXdgMime(mimeType));
    if (program.isEmpty()) {
        program = programOfDesktopId(detail::defaultDesktopEntryFromLists(mimeType));
    }
    if (program.isEmpty()
        && (mimeType == QLatin1String("text/html") || mimeType == QLatin1String("x-scheme-handler/http")
            || mimeType == QLatin1String("x-scheme-handler/https"))) {
        program = systemBrowser();
    }
    return program;
}

QString programForFile(const QString& path)
{
    if (path.trimmed().isEmpty()) {
        return {};
    }
    const QMimeDatabase mimeTypes;
    return programForMimeType(mimeTypes.mimeTypeForFile(path).name());
}

QString FindDefaultBrowser()
{
    Session& state = session();
    // The desktop is asked about a real page, as it would be for any file.
    const QString page = TempPath() + QStringLiteral("/dummy.html");
    {
        QFile file(page);
        if (file.open(QIODevice::WriteOnly)) {
            file.close();
        }
    }
    QString mimeType = QMimeDatabase().mimeTypeForFile(page).name();
    if (mimeType.isEmpty() || mimeType == QLatin1String("application/octet-stream")) {
        // Without the system's MIME database a page is still a page.
        mimeType = QStringLiteral("text/html");
    }
    const QString program = CutAtNul(programForMimeType(mimeType));
    QFile::remove(page);
    state.DefaultBrowserFound = !program.isEmpty();
    state.DefaultBrowser = state.DefaultBrowserFound ? program + QLatin1Char(' ') : QString();
    return state.DefaultBrowser;
}

bool OpenLink(const QString& link)
{
    setHourglass();
    const QUrl url = urlOfLink(link);
    const bool opened = !link.trimmed().isEmpty() && url.isValid() && QDesktopServices::openUrl(url);
    setNormalPointer();
    if (!opened) {
        showMessage(QStringLiteral("Error Opening Link to ") + link + QStringLiteral("\n\n"));
    }
    return opened;
}

void OpenInBrowser(const QString& target)
{
    Session& state = session();
    // The browser's path is kept with a blank after it, ready for the target.
    if (!FileExists(state.DefaultBrowser.trimmed())) {
        showMessage(QStringLiteral(
            "The browser selected cannot be found on your computer. Please contact your administrator."));
        EndProgram(0);
        return;
    }
    if (!state.DefaultBrowserFound) {
        showMessage(
            QStringLiteral("Your default browser does not exists. Please contact your administrator."));
        EndProgram(0);
        return;
    }
    const QString program = programForFile(target);
    QString commandLine = program + QLatin1Char(' ') + quoted(target);
    if (target.left(4).toUpper() == QLatin1String("HTTP")) {
        commandLine = state.DefaultBrowser + quoted(target);
    }
    const QString ending = target.right(3).toUpper();
    if (ending == QLatin1String("EXE") || ending == QLatin1String("BAT") || ending == QLatin1String("COM")) {
        commandLine = target;
    }
    QStringList words = QProcess::splitCommand(commandLine);
    bool started = false;
    if (!words.isEmpty()) {
        const QString executable = words.takeFirst();
        // A file's program starts in the file's folder; anything else where we are.
        const QFileInfo targetFile(target);
        const QString folder = targetFile.isFile() ? targetFile.absolutePath() : QString();
        started = QProcess::startDetached(executable, words, folder);
    }
    if (started) {
        return;
    }
    const int number = failureNumberOf(target, program);
    switch (number) {
    case 76:
        showMessage(QStringLiteral("The path for ") + target
            + QStringLiteral(" cannot be found. Check parameter passed."));
        break;
    case 75:
        showMessage(QStringLiteral("You do not have permission to access ") + target
            + QStringLiteral(". It may be used or you have no executable rights."));
        break;
    case 53:
        showMessage(QStringLiteral("The file ") + target
            + QStringLiteral(" cannot be found. Check parameter passed."));
        break;
    default:
        showMessage(
            target + QStringLiteral(" generates error ") + QString::number(number) + QLatin1Char('.'));
        break;
    }
    EndProgram(0);
}

} // namespace pvardo
