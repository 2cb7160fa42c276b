#pragma once

#include "admin/Preferences.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QListWidget;
class QRadioButton;
class QTabWidget;

namespace pvardo::admin {

// The preferences of the installation, opened modally from the Admin menu:
// every setting on one set of tabs, written back all at once by " Save
// selected settings" or left as they were by " cancel changes".
class PrefFrm final : public QDialog
{
    Q_OBJECT

public:
    explicit PrefFrm(QWidget* parent = nullptr);

    // The browse buttons of the database and backup folders, with their
    // warnings about drives that may not always be there.
    void Command3();
    void Command5();
    // Adds the name typed in Text15 to the members; removes the highlighted one.
    void Command7();
    void Command9();
    // Saves every setting and closes; on a failed write the user is told,
    // nothing is changed and the screen stays open.
    void Command1();

    Preferences current() const;

    static QString sampleText() { return QStringLiteral("The Quick Brown Fox Jumped Over the Lazy Dog"); }

private:
    enum class FolderCopy { Copied, Declined, Failed };
    // Offers to copy the databases in use into a new location that holds none.
    FolderCopy offerDatabaseCopy(const QString& folder);
    // Before a switch of the database location: the other open screens,
    // named in a question, are closed. False when the user keeps them (or
    // one stays open): the switch must not happen.
    bool closeScreensOfOldFolder();
    void fill(const Preferences& preferences);
    void showSample();

    QTabWidget* m_tabs = nullptr;
    QLineEdit* m_municipality[6] = {};
    QLineEdit* m_databaseFolder = nullptr;
    QCheckBox* m_share = nullptr;
    QRadioButton* m_prompt = nullptr;
    QRadioButton* m_automatic = nullptr;
    QRadioButton* m_manual = nullptr;
    QLineEdit* m_backupFolder = nullptr;
    QLineEdit* m_onlineCodes = nullptr;
    QLineEdit* m_localCodes = nullptr;
    QLineEdit* m_gis = nullptr;
    QCheckBox* m_defaultBrowser = nullptr;
    QCheckBox* m_computerDecides = nullptr;
    QLineEdit* m_beginNumbering = nullptr;
    QStringList m_damagedFiles; // written anew by a save
    QListWidget* m_members = nullptr;
    QLineEdit* m_newMember = nullptr;
    QComboBox* m_fontName = nullptr;
    QComboBox* m_fontSize = nullptr;
    QLineEdit* m_sample = nullptr;
};

} // namespace pvardo::admin
