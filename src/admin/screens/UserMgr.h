#pragma once

#include "admin/UserList.h"

#include <QDialog>

class QPushButton;
class QTreeWidget;

namespace pvardo::admin {

// The user list of this computer, for administrators: users, whether each
// has a password (never the password itself) and their access. Done writes the list whole; Cancel
// leaves the file as it was. A row of access "ADMIN" (and the row named
// "ADMIN") cannot be removed, and the list cannot grow past 20 users.
class UserMgr final : public QDialog
{
    Q_OBJECT
public:
    // Reads the user file of the program folder afresh; loaded() says whether
    // that worked, and the caller tells the user when it did not.
    explicit UserMgr(const QString& programFolder, QWidget* parent = nullptr);

    bool loaded() const { return m_loaded; }
    QString loadError() const { return m_loadError; }
    // Lines of the file that could not be read; a write leaves them out.
    const QStringList& unreadableLines() const { return m_unreadable; }
    // What was read in another form than stored (levels taken as USER, users
    // without a password); a write stores it in that form.
    const QStringList& readingNotes() const { return m_notes; }
    // What the list shows in the password column for a row.
    static QString passwordState(const UserEntry& row);
    const QList<UserEntry>& rows() const { return m_rows; }

    // The commands of the buttons.
    void Command1_Click(); // Add
    void Command2_Click(); // Remove
    void Command3_Click(); // Done
    void Command4_Click(); // Cancel
    void Command5_Click(); // Edit

    // The edit of one row, as Edit runs it and as Change Password runs it
    // without showing the list. Writes into the row only when the user pressed OK.
    void editRow(int row, bool fromChangePassword);
    // Writes the file; false, after telling the user, when it could not be written.
    bool writeList();

private:
    void fillList();
    void updateButtons();
    int selectedRow() const;

    QString m_programFolder;
    QList<UserEntry> m_rows;
    // Users past the 20 on screen: not shown, written back as they were.
    QList<UserEntry> m_beyondScreen;
    QStringList m_unreadable;
    QStringList m_notes;
    bool m_loaded = false;
    QString m_loadError;
    QTreeWidget* m_list;
    QPushButton* m_add;
    QPushButton* m_remove;
    QPushButton* m_done;
    QPushButton* m_cancel;
    QPushButton* m_edit;
};

} // namespace pvardo::admin
