#pragma once

#include <QString>
#include <QStringList>

namespace pvardo::admin {

// Makes or completes an installation folder: the settings file with its
// defaults, def.txt, the user list with one administrator, the seeds of wrk/,
// the databases folder with every database file, forms/ with the report
// header and the templates of the letters and listings, labels/ with the
// label sheets, their pictures and the label template, settings/, and links to
// the repair tool dbMender and the updater Updater when they lie beside the
// running program. Files already there are never replaced, so
// running it on an existing installation only adds what is missing.
class Installation
{
public:
    explicit Installation(QString programFolder);

    // The administrator of a new user list.
    static QString defaultAdminName() { return QStringLiteral("ADMIN"); }
    static QString defaultAdminPassword() { return QStringLiteral("PLANNING"); }

    // Why the folder cannot take an installation (not a folder, not empty and
    // not an installation, not writable); empty when it can.
    QString unusableReason() const;

    // True when the folder holds what only an installation holds.
    bool looksLikeInstallation() const;

    // Makes what is missing. False when something could not be made; what was
    // made stays, and failures() says what failed.
    bool make(const QString& adminPassword = defaultAdminPassword());

    const QStringList& created() const { return m_created; }
    const QStringList& kept() const { return m_kept; }
    const QStringList& failures() const { return m_failures; }

    // The fourteen lines of a new PVardo.ini for a databases folder.
    static QStringList defaultSettingsLines(const QString& databaseFolder);
    // The resource paths of the files the program ships in a folder of its
    // own ("forms" for every installation, "demo" for the demonstration).
    static QStringList shippedFiles(const QString& folder);

    // The letterhead (forms/gTitle.rtf) and the receipt (forms/receipt.rtf)
    // name the municipality of the settings (PVardo.ini, lines 2 to 7) above
    // "PLANNING BOARD". Only files still as the program ships them are
    // changed: an office's own letterhead is never touched. The settings
    // naming no municipality leave them as shipped.
    void nameShippedForms();
    // A shipped form as it reads for a municipality: `lines` are the six
    // municipality settings (name, street, city, state, ZIP, telephone).
    static QByteArray namedForm(const QString& fileName, const QByteArray& shipped, const QStringList& lines);

private:
    // Copies the shipped files of `folder` into the installation's folder
    // `into`, keeping any that is there.
    void copyShipped(const QString& folder, const QString& into);
    // Draws the picture of each sheet of the labels catalogue that names one
    // and has none yet.
    void makeLabelPictures();
    // Links the repair tool and the updater that lie beside the running
    // program into the installation, where the program starts them.
    void linkOutsidePrograms();
    void makeFolder(const QString& relative);
    void makeFile(const QString& relative, const QByteArray& bytes);
    void makeDatabase(const QString& relative, const QString& fileName);
    QString path(const QString& relative) const;

    QString m_folder;
    QStringList m_created;
    QStringList m_kept;
    QStringList m_failures;
};

} // namespace pvardo::admin
