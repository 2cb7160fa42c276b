#pragma once

#include <QDate>
#include <QMainWindow>
#include <QPointer>
#include <memory>

class QLabel;
class QTextEdit;

namespace pvardo::store {
class Recordset;
}

namespace pvardo::documents {

class FormatToolbar;
class SearchFrm;

// The notepad " Recorder Pad": the office's small word processor. Merged
// letters opened for editing, minutes and notes are written here and printed
// through the report pipeline. The document is held in the program's rich-text
// engine and saved as RTF (or as plain text under a ".txt" name), so what it
// saves it reads back the same.
class NotepadFrm : public QMainWindow
{
    Q_OBJECT

public:
    explicit NotepadFrm(QWidget* parent = nullptr);
    ~NotepadFrm() override;

    // The notepad the other screens open documents in; one for the program.
    static NotepadFrm& shared();

    // Loads a file as the current document, after asking about an unsaved
    // change of the one open; gives false when the clerk cancels or the file
    // cannot be read (the open document is then kept as it was).
    bool openDocument(const QString& path);
    // Opens a letter or listing built for editing before it is printed: the
    // file is only where it is kept meanwhile, so the print takes the
    // report's own title (such as "Application Detail 24-017") for the job
    // and for its PDF file.
    bool openReport(const QString& path, const QString& title);

    // Binds the notepad to a row of a table with a MINUTES column: a row that
    // holds minutes shows them, and Save writes the document back into the
    // row rather than into a file. The notepad keeps a cursor of its own on
    // that row, so the screen that handed it over may move on or close.
    bool externalLoad(const store::Recordset& row);
    // Opens the minutes of a meeting row for writing and shows the notepad:
    // the row's MINUTES, or, while it has none, the office's template for
    // new minutes (mins/04Template1.rtf of the database folder) or an empty
    // page; saving writes the minutes into the row, never into the template.
    // A recurring meeting is one row for many days: the minutes of the day
    // `day` are a file of their own (minutesFileOf), so one day's minutes
    // never take another's place. The status bar names the meeting and day.
    bool openMinutes(const store::Recordset& row, const QDate& day = QDate());
    // The file of the minutes of a recurring meeting on one day, in mins of
    // the database folder: "01", its RECNO, "~" and the day as yyyymmdd.
    static QString minutesFileOf(const QString& recno, const QDate& day);
    bool isBound() const { return m_bound != nullptr; }

    // Asks "Do you want to save the file?" when the document holds a change.
    // False when the clerk cancels (StopFlag is then set) or a save failed.
    bool askToSaveChanges();

    // The menu commands.
    void newdoc();
    void opendoc();
    bool savedoc();
    bool saveasdoc();
    void printdoc();
    void search();
    void undo();
    void cut();
    void copy();
    void paste();
    void chooseFont(); // the Format menu's "Font.."
    void leftjust();
    void centerjust();
    void rightjust();
    void insertboard();
    void insertprop();
    void insertown();
    void insertproj();
    void inserdate();
    void inserttime();

    QString currentDocument() const { return m_path; }
    bool changed() const { return m_changed; }
    bool saved() const { return m_saved; }
    QTextEdit& buffer() const { return *m_text; }
    FormatToolbar& toolbar() const { return *m_toolbar; }
    // The PDF file of the last print without a printer.
    QString lastPdf() const { return m_lastPdf; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void buildMenus();
    bool writeFile(const QString& path);
    void setCurrentDocument(const QString& path);
    void clearFlags();
    void insertText(const QString& text);
    QString chooseFile(bool saving);

    QTextEdit* m_text = nullptr;
    FormatToolbar* m_toolbar = nullptr;
    QLabel* m_pathPanel = nullptr;
    QPointer<SearchFrm> m_search;
    QString m_path;
    int m_exitQuestion = 0;
    QString m_reportTitle; // the report's title while the document is one
    QString m_lastPdf;
    bool m_changed = false;
    bool m_saved = false;
    bool m_loading = false;
    bool m_plainText = false; // the document came from a text file
    std::unique_ptr<store::Recordset> m_bound;
};

} // namespace pvardo::documents
