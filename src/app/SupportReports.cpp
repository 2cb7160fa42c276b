#include "app/SupportReports.h"

#include "common/Session.h"
#include "common/SettingStore.h"
#include "common/TextFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QProcess>
#include <QStorageInfo>
#include <QSysInfo>
#include <sqlite3.h>

namespace pvardo::app {

namespace {

const QString kRule = QString(42, QLatin1Char('='));

// The installed SANE library, as the package system knows it.
QString saneVersion()
{
    QProcess query;
    query.start(QStringLiteral("dpkg-query"),
        {QStringLiteral("-W"), QStringLiteral("-f=${Version}"), QStringLiteral("libsane1")});
    if (!query.waitForFinished(5000) || query.exitStatus() != QProcess::NormalExit || query.exitCode() != 0) {
        return QStringLiteral("not installed");
    }
    const QString version = QString::fromUtf8(query.readAllStandardOutput()).trimmed();
    return version.isEmpty() ? QStringLiteral("not installed") : version;
}

QString folderLine(const QString& label, const QString& folder)
{
    if (folder.trimmed().isEmpty()) {
        return label + QStringLiteral(": (none)");
    }
    const QString shown = QDir::toNativeSeparators(folder);
    if (!QFileInfo(folder).isDir()) {
        return label + QStringLiteral(": ") + shown + QStringLiteral(" (not there)");
    }
    const QStorageInfo storage(folder);
    const QLocale c = QLocale::c();
    return label + QStringLiteral(": ") + shown
        + QStringLiteral(" (%1 MB free of %2 MB, %3%4)")
              .arg(c.toString(storage.bytesAvailable() / (1024 * 1024)),
                  c.toString(storage.bytesTotal() / (1024 * 1024)),
                  QString::fromUtf8(storage.fileSystemType()),
                  QFileInfo(folder).isWritable() ? QString() : QStringLiteral(", read-only"));
}

} // namespace

QStringList applicationInfoLines(const QString& versionBuilt)
{
    const Session& state = session();
    const QString none = QStringLiteral("NI");
    return {
        state.MunicipalityName,
        QStringLiteral("Application executable ")
            + SettingGet(QStringLiteral("Settings"), QStringLiteral("AE"), none),
        QStringLiteral("Path where executable resides ")
            + SettingGet(QStringLiteral("Settings"), QStringLiteral("EP"), none),
        QStringLiteral("Version Installed ")
            + SettingGet(QStringLiteral("Settings"), QStringLiteral("VERSION"), none),
        QStringLiteral("Version Built ") + versionBuilt,
        QStringLiteral("Base directory for Databases ") + state.DatabaseFolder,
        QStringLiteral("Base directory for     Forms ") + state.FormsFolder,
        QStringLiteral("Current User ") + state.CurrentUser,
        kRule,
        QStringLiteral("For support, call the administrator of this installation"),
        QStringLiteral("with this page and the diagnostics report (debug2.txt) at hand."),
        kRule,
    };
}

QString writeApplicationInfo(const QString& versionBuilt, QString* error)
{
    const QString path = joinPath(session().ProgramFolder, QStringLiteral("\\appinfo.txt"));
    if (!replaceTextLines(path, applicationInfoLines(versionBuilt), error)) {
        return {};
    }
    return path;
}

QStringList diagnosticsLines(const QString& versionBuilt)
{
    const Session& state = session();
    QStringList lines = applicationInfoLines(versionBuilt);
    lines << QString() << QStringLiteral("System: ") + QSysInfo::prettyProductName()
          << QStringLiteral("Kernel: ") + QSysInfo::kernelType() + QLatin1Char(' ')
            + QSysInfo::kernelVersion() + QLatin1Char(' ') + QSysInfo::currentCpuArchitecture()
          << QStringLiteral("Computer: ") + QSysInfo::machineHostName()
          << QStringLiteral("Qt: ") + QString::fromLatin1(qVersion())
          << QStringLiteral("SQLite: ") + QString::fromLatin1(sqlite3_libversion())
          << QStringLiteral("SANE: ") + saneVersion() << QString()
          << folderLine(QStringLiteral("Program folder"), state.ProgramFolder)
          << folderLine(QStringLiteral("Database folder"), state.DatabaseFolder)
          << folderLine(QStringLiteral("Forms folder"), state.FormsFolder)
          << folderLine(QStringLiteral("Backup folder"), state.BackupFolder)
          << folderLine(QStringLiteral("Temporary folder"),
                 state.TempFolder.isEmpty() ? QDir::tempPath() : state.TempFolder);
    return lines;
}

QString writeDiagnosticsReport(const QString& versionBuilt, QString* error)
{
    if (writeApplicationInfo(versionBuilt, error).isEmpty()) {
        return {};
    }
    const QString path = joinPath(session().ProgramFolder, QStringLiteral("\\debug2.txt"));
    if (!replaceTextLines(path, diagnosticsLines(versionBuilt), error)) {
        return {};
    }
    return path;
}

} // namespace pvardo::app
