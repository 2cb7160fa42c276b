#include "admin/Installation.h"

#include "admin/UserList.h"
#include "common/Settings.h"
#include "common/TextFiles.h"
#include "documents/Labels.h"
#include "store/Catalogue.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QUrl>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryFile>

namespace pvardo::admin {

namespace {

// The table of a database file name: the tables of the databases folder
// first (sbl.db is the older parcel table's name), then the seeds.
const store::TableDef* tableOfFile(const QString& fileName)
{
    for (const store::TableDef& table : store::allTables()) {
        if (table.id != store::Table::SBL18
            && fileName.compare(QString::fromLatin1(table.fileName), Qt::CaseInsensitive) == 0) {
            return &table;
        }
    }
    return store::seedTableFor(fileName);
}

} // namespace

Installation::Installation(QString programFolder)
    : m_folder(QDir::cleanPath(std::move(programFolder)))
{
}

QString Installation::path(const QString& relative) const
{
    return relative.isEmpty() ? m_folder : m_folder + QLatin1Char('/') + relative;
}

QStringList Installation::defaultSettingsLines(const QString& databaseFolder)
{
    // Backup asked on exit, the parcel store not shared.
    return Settings::defaultLines(databaseFolder, false);
}

QStringList Installation::shippedFiles(const QString& folder)
{
    QStringList files;
    QDirIterator it(QStringLiteral(":/shipped/") + folder, QDir::Files);
    while (it.hasNext()) {
        files << it.next();
    }
    files.sort();
    return files;
}

void Installation::copyShipped(const QString& folder, const QString& into)
{
    for (const QString& resource : shippedFiles(folder)) {
        QFile file(resource);
        if (!file.open(QIODevice::ReadOnly)) {
            m_failures << resource + QStringLiteral(": the program's own copy cannot be read");
            continue;
        }
        makeFile(into + QLatin1Char('/') + QFileInfo(resource).fileName(), file.readAll());
    }
}

namespace {

// Text for an RTF file: the three special characters escaped, anything past
// ASCII as a Unicode escape.
QByteArray rtfText(const QString& text)
{
    QByteArray out;
    for (const QChar c : text) {
        if (c == QLatin1Char('\\') || c == QLatin1Char('{') || c == QLatin1Char('}')) {
            out += '\\';
            out += char(c.unicode());
        } else if (c.unicode() < 0x80 && c.isPrint()) {
            out += char(c.unicode());
        } else if (c.isPrint()) {
            out += "\\u" + QByteArray::number(qint16(c.unicode())) + '?';
        }
    }
    return out;
}

} // namespace

QByteArray Installation::namedForm(const QString& fileName, const QByteArray& shipped, const QStringList& lines)
{
    const QString name = lines.value(0).trimmed();
    if (name.isEmpty()) {
        return shipped;
    }
    QStringList place;
    if (const QString street = lines.value(1).trimmed(); !street.isEmpty()) {
        place << street;
    }
    const QString city = lines.value(2).trimmed();
    const QString stateZip = (lines.value(3).trimmed() + QLatin1Char(' ') + lines.value(4).trimmed()).trimmed();
    if (!city.isEmpty() || !stateZip.isEmpty()) {
        place << (city.isEmpty() ? stateZip : stateZip.isEmpty() ? city : city + QStringLiteral(", ") + stateZip);
    }
    if (const QString phone = lines.value(5).trimmed(); !phone.isEmpty()) {
        place << QStringLiteral("Telephone ") + phone;
    }
    QByteArray named = shipped;
    if (fileName.compare(QLatin1String("gTitle.rtf"), Qt::CaseInsensitive) == 0) {
        named.replace("\\b PLANNING BOARD\\b0", "\\b " + rtfText(name.toUpper()) + "\\line PLANNING BOARD\\b0");
        if (!place.isEmpty()) {
            named.replace("Office of the Planning Board Clerk\\par",
                          "Office of the Planning Board Clerk\\line " + rtfText(place.join(QStringLiteral(" - ")))
                              + "\\par");
        }
    } else if (fileName.compare(QLatin1String("receipt.rtf"), Qt::CaseInsensitive) == 0) {
        named.replace("\\b RECEIPT\\b0",
                      "\\b " + rtfText(name.toUpper()) + "\\line PLANNING BOARD\\line RECEIPT\\b0");
        named.replace("\\tab Planning Board Clerk\\par",
                      "\\tab Planning Board Clerk\\line\\tab " + rtfText(name) + "\\par");
    }
    return named;
}

void Installation::nameShippedForms()
{
    const std::optional<QStringList> settings = readTextLines(path(QStringLiteral("PVardo.ini")));
    if (!settings || settings->size() < 7) {
        return;
    }
    const QStringList municipality = settings->mid(1, 6);
    for (const char* name : {"gTitle.rtf", "receipt.rtf"}) {
        const QString fileName = QString::fromLatin1(name);
        QFile resource(QStringLiteral(":/shipped/forms/") + fileName);
        QFile installed(path(QStringLiteral("forms/") + fileName));
        if (!resource.open(QIODevice::ReadOnly) || !installed.open(QIODevice::ReadOnly)) {
            continue;
        }
        const QByteArray shipped = resource.readAll();
        if (installed.readAll() != shipped) {
            continue; // the office's own, or named already
        }
        installed.close();
        const QByteArray named = namedForm(fileName, shipped, municipality);
        QString error;
        if (named != shipped && !replaceFile(installed.fileName(), named, &error)) {
            m_failures << QStringLiteral("forms/") + fileName + QStringLiteral(": ") + error;
        }
    }
}

bool Installation::looksLikeInstallation() const
{
    for (const char* marker : {"PVardo.ini", "Users.Set", "wrk", "databases"}) {
        if (QFileInfo::exists(path(QString::fromLatin1(marker)))) {
            return true;
        }
    }
    return false;
}

QString Installation::unusableReason() const
{
    const QFileInfo info(m_folder);
    if (m_folder.isEmpty()) {
        return QStringLiteral("No installation folder was named.");
    }
    if (info.exists() && !info.isDir()) {
        return QStringLiteral("The installation folder ") + m_folder
            + QStringLiteral(" is a file, not a folder.");
    }
    if (info.isDir() && !QDir(m_folder).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden)
        && !looksLikeInstallation()) {
        return QStringLiteral("The folder ") + m_folder
            + QStringLiteral(" is not empty and holds no pvardo installation. Name a new or empty folder.");
    }
    // The nearest folder that exists must take new files.
    QString existing = m_folder;
    while (!QFileInfo(existing).isDir()) {
        const QString parent = QFileInfo(existing).absolutePath();
        if (parent == existing) {
            break;
        }
        existing = parent;
    }
    QTemporaryFile probe(existing + QStringLiteral("/.pvardo-write-test-XXXXXX"));
    if (!probe.open()) {
        return QStringLiteral("The folder ") + existing + QStringLiteral(" cannot be written: ")
            + probe.errorString();
    }
    return {};
}

void Installation::makeFolder(const QString& relative)
{
    if (QFileInfo(path(relative)).isDir()) {
        return;
    }
    if (QDir().mkpath(path(relative))) {
        m_created << relative + QLatin1Char('/');
    } else {
        m_failures << relative + QStringLiteral("/: the folder cannot be made");
    }
}

void Installation::makeFile(const QString& relative, const QByteArray& bytes)
{
    if (QFileInfo::exists(path(relative))) {
        m_kept << relative;
        return;
    }
    QString error;
    if (replaceFile(path(relative), bytes, &error)) {
        m_created << relative;
    } else {
        m_failures << relative + QStringLiteral(": ") + error;
    }
}

void Installation::makeDatabase(const QString& relative, const QString& fileName)
{
    if (QFileInfo::exists(path(relative))) {
        m_kept << relative;
        return;
    }
    const store::TableDef* table = tableOfFile(fileName);
    // A new installation's parcel store is of the current format, so that the
    // roll can be synchronised without a conversion first; wrk/sbl.db stays
    // the older table that a conversion starts from.
    if (table && table->id == store::Table::SBL && relative.startsWith(QLatin1String("databases/"))) {
        table = &store::tableDef(store::Table::SBL18);
    }
    if (!table) {
        m_failures << relative + QStringLiteral(": no table is known for this file");
        return;
    }
    const store::StoreStatus status = store::createDatabaseFile(path(relative), *table);
    if (status.ok()) {
        m_created << relative;
    } else {
        m_failures << relative + QStringLiteral(": ") + status.description;
    }
}

void Installation::makeLabelPictures()
{
    const QString folder = documents::labelsFolder(m_folder);
    for (const documents::LabelSheetEntry& entry : documents::readLabelCatalog(folder).sheets) {
        const QString definition = QDir(folder).filePath(entry.fileName);
        if (!QFileInfo(definition).isFile()) {
            continue;
        }
        const documents::LabelSheet sheet = documents::readLabelSheet(definition);
        const QString picture = documents::labelPicturePath(folder, sheet);
        if (picture.isEmpty() || QFileInfo(picture).dir() != QDir(folder)) {
            continue;
        }
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        if (!documents::drawLabelSheetPicture(sheet).save(&buffer, "BMP")) {
            m_failures << QStringLiteral("labels/") + QFileInfo(picture).fileName()
                              + QStringLiteral(": the picture cannot be drawn");
            continue;
        }
        makeFile(QStringLiteral("labels/") + QFileInfo(picture).fileName(), bytes);
    }
}

void Installation::linkOutsidePrograms()
{
    if (!QCoreApplication::instance()) {
        return;
    }
    const QString programs = QCoreApplication::applicationDirPath();
    for (const char* name : {"dbMender", "Updater"}) {
        const QString relative = QString::fromLatin1(name);
        const QString tool = programs + QLatin1Char('/') + relative;
        const QFileInfo target(path(relative));
        if (target.exists()) {
            m_kept << relative;
            continue;
        }
        if (!QFileInfo(tool).isExecutable()) {
            continue; // a build without the tools: the menu entries say so
        }
        if (target.isSymLink()) {
            // Left by a package that was removed or moved.
            QFile::remove(target.filePath());
        }
        // A link, so that an update of the package updates the tools too.
        if (QFile::link(tool, target.filePath())) {
            m_created << relative;
        } else {
            m_failures << relative + QStringLiteral(": the link to %1 cannot be made").arg(tool);
        }
    }
}

bool Installation::make(const QString& adminPassword)
{
    m_created.clear();
    m_kept.clear();
    m_failures.clear();
    if (!QDir().mkpath(m_folder)) {
        m_failures << m_folder + QStringLiteral(": the folder cannot be made");
        return false;
    }
    const QString databases = path(QStringLiteral("databases"));
    for (const char* folder : {"wrk", "databases", "forms", "labels", "settings", "map"}) {
        makeFolder(QString::fromLatin1(folder));
    }
    linkOutsidePrograms();

    QByteArray settings;
    for (const QString& line : defaultSettingsLines(databases)) {
        settings += line.toUtf8() + '\n';
    }
    makeFile(QStringLiteral("PVardo.ini"), settings);
    // Databases folder, backup folder (chosen in the preferences), the two
    // links to the codes.
    makeFile(QStringLiteral("def.txt"), databases.toUtf8() + "\n\n\n\n");

    if (QFileInfo::exists(path(QStringLiteral("Users.Set")))) {
        m_kept << QStringLiteral("Users.Set");
    } else {
        UserList users;
        UserEntry administrator;
        administrator.name = defaultAdminName();
        administrator.password = adminPassword.toUpper();
        administrator.level = UserLevels::admin();
        users.entries.append(administrator);
        QString error;
        const QByteArray bytes = users.toBytes(&error);
        if (bytes.isEmpty()) {
            m_failures << QStringLiteral("Users.Set: ") + error;
        } else {
            makeFile(QStringLiteral("Users.Set"), bytes);
        }
    }

    for (const QString& seed : store::seedFileNames()) {
        makeDatabase(QStringLiteral("wrk/") + seed, seed);
    }
    QStringList databaseFiles = store::databaseFileNames();
    // The seeded files the start-up would put in place (those of the sibling
    // inspection program among them); the newer parcel table waits in wrk/
    // for the parcel store's upgrade.
    for (const QString& seed : store::seedFileNames()) {
        const store::TableDef* table = store::seedTableFor(seed);
        if (table && table->id != store::Table::SBL18 && !databaseFiles.contains(seed, Qt::CaseInsensitive)) {
            databaseFiles << seed;
        }
    }
    for (const QString& file : databaseFiles) {
        makeDatabase(QStringLiteral("databases/") + file, file);
    }
    // The header, detail pages, heads of listings and letters of the office.
    copyShipped(QStringLiteral("forms"), QStringLiteral("forms"));
    nameShippedForms();
    // The label sheets, their template and the pictures of the sheets, drawn
    // from the definitions in place (the office's own included).
    copyShipped(QStringLiteral("labels"), QStringLiteral("labels"));
    makeLabelPictures();
    // The map page the coordinates look-up opens, and the setting that
    // points the look-up at it; an office may point it elsewhere.
    copyShipped(QStringLiteral("map"), QStringLiteral("map"));
    makeFile(QStringLiteral("settings/MAPHOST"),
        QUrl::fromLocalFile(path(QStringLiteral("map"))).toString().toUtf8() + "/\n");
    return m_failures.isEmpty();
}

} // namespace pvardo::admin
