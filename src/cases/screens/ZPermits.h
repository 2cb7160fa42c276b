#pragma once

#include "cases/CaseReports.h"
#include "store/ColumnMap.h"
#include "store/Recordset.h"
#include "ui/RecordCommands.h"
#include "ui/RecordMode.h"
#include "ui/RecordNavigation.h"

#include <QHash>
#include <QMainWindow>
#include <QPoint>
#include <functional>
#include <memory>
#include <optional>

class QAction;
class QLabel;
class QMenu;
class QStackedWidget;
class QTabWidget;
class QTextDocument;

namespace pvardo::ui {
class XPButton;
}

namespace pvardo::cases {

class CaseForm;
class CaseListView;
class CaseTab;
class ProjectTab;
class StructureTab;
struct CaseInputs;

// What the case screen tells the other screens and the letters about the case
// it shows.
struct CasePublished
{
    QString caseNumber;
    QString statusWord;
    QString sbl; // full form
    QString sblShort; // short form
    QString sblAndLocation; // short form, a blank, the site location
    QString ownerAndAddress; // owner name, ", ", owner address
    QString description;
};

// The case screen " Projects": one case at a time on three tabs, or the whole
// result set as a list, and the only place where a case is created, changed,
// voided or deleted. Its left pane opens the sub-record screens of the case
// shown. The rules of the record are in CaseRecord and CaseNumbering; this
// class runs the commands in the office's order and keeps the modes.
class ZPermits : public QMainWindow
{
    Q_OBJECT

public:
    explicit ZPermits(QWidget* parent = nullptr);
    ~ZPermits() override;

    // The commands, as their buttons and menus run them.
    void INew();
    void IAdd();
    void IEdit();
    void ISave();
    void ICancel();
    void ILocate();
    void iReset();
    void iBrowse();
    void iDelete();
    void iNote();
    void recinfod();
    void voidRecord(); // the File menu's "&Void Record"
    // Prints the case shown: its detail page, addressed to the applicant.
    void printApplicationDetail();
    // The File menu's "&Print..": the detail page or a letter of 0custom.txt;
    // `preselected` is the caption the print dialog opens on.
    void doprint(const QString& preselected = QString());
    // The Print button: the detail page at once, or, when the office keeps
    // letters of its own in 0custom.txt, the print dialog that offers them.
    void printCurrentProject();
    // The Reports menu's listings: a month or year of applications, the
    // status of the cases filed in a span, the active cases.
    void applicationsByMonth();
    void projectStatus();
    void activeApplications();
    // Labels for the owners of the cases filed over a span.
    void labexpexpired();
    void moveFirst() { step(ui::RecordNavigation::Step::First); }
    void movePrevious() { step(ui::RecordNavigation::Step::Previous); }
    void moveNext() { step(ui::RecordNavigation::Step::Next); }
    void moveLast() { step(ui::RecordNavigation::Step::Last); }

    // Checks the inputs before a write; leaves the session's StopFlag set to
    // stop. Adds or ties the parcel on the way.
    void ValidateCaseInput(bool saving);

    // What the screen does each time it comes to the front: its screen code,
    // its map, the user's rights, a hop another screen asked for.
    void activateScreen();

    ui::RecordMode mode() const { return m_mode; }
    // A case typed and not written is saved, dropped or kept, as the clerk
    // says; true when the screen may close.
    bool settleUnsaved() { return m_record->settleUnsaved(); }
    const CasePublished& published() const { return m_published; }
    QString currentQuery() const { return m_query; }
    // The query the last search by example built, kept for the reports.
    QString lastBuiltQuery() const { return m_lastBuilt; }
    store::Recordset* rows() const { return m_rows.get(); }
    CaseForm& form() const { return *m_form; }

    // Opens a sub-record screen by its name ("feesfrm", "checklist", ...).
    // None of those screens is in the program yet: without an opener a
    // button says after its checks that its screen is not available.
    using SubRecordOpener = std::function<void(const QString& screenName, ZPermits& caseScreen)>;
    void setSubRecordOpener(SubRecordOpener opener) { m_opener = std::move(opener); }
    // Where a sub-record screen opens: 1760 twips right of and 320 below the
    // case screen's corner.
    QPoint subRecordPlace() const { return pos() + QPoint(1760 / 15, 320 / 15); }

signals:
    // The screen closes: the dashboard shows itself again.
    void returnToDashboard();
    // The screen shows another case (or none): the sub-record screens follow.
    void caseChanged(const QString& caseNumber);

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void buildCommands(QWidget* bar);
    QWidget* buildLeftPane();
    void buildMenus();
    // The Reports menu's entries for the letters of 0custom.txt, read again
    // each time the menu opens.
    void refreshLetterEntries();
    void buildKeys();
    // Lists the cases of `query` in the report window through `lines`, then
    // puts the screen's own query and place back.
    void runReport(const QString& query, const QString& caption, CaseReportHead head,
        const std::function<QString(const store::Recordset&)>& lines);
    ui::XPButton* addButton(
        const QString& name, const QString& caption, const QString& toolTip, QWidget* parent);
    ui::XPButton* button(const QString& name) const { return m_buttons.value(name); }
    void registerModes();

    void openTable();
    bool readRows();
    void handleStoreError(const store::StoreStatus& status);
    void showRow();
    void tellCaseChanged();
    void redrawPosition();
    void showParcelFlags();
    void enterMode(ui::RecordMode mode);
    void lock(bool locked);
    void step(ui::RecordNavigation::Step step);
    void applyUserRights();
    void setCommandShown(const QString& name, bool shown);
    void leftPaneButton(const QString& screenName, const QString& caption);
    void pickFromList(const QString& caseNumber);
    void showDetail();
    void listSorted();
    void loadMapProviders();
    // Image7: the coordinates dialog on the case's stored pair.
    void showMap();
    bool hasRow() const;
    // The cursor stands on a row the file cannot give back (a damaged page).
    bool rowUnreadable() const;
    store::StoreStatus fillRow(store::Recordset& row, const CaseInputs& inputs);
    // What the case's letters get: the case screen's PlugVars.
    void PlugVars(QTextDocument& buffer);
    QString boxOfColumn(const QString& column) const;

    store::ColumnMap m_map;
    std::unique_ptr<store::Recordset> m_rows;
    ui::RecordNavigation m_nav{m_rows};
    QString m_path;
    QString m_query;
    QString m_lastBuilt;
    ui::RecordMode m_mode = ui::RecordMode::Empty;
    ui::RecordModeCommands m_commands;
    std::unique_ptr<ui::RecordCommands> m_record;
    ui::HiddenDelete m_delete;
    bool m_listShowing = false;
    bool m_resetting = false;
    CasePublished m_published;
    QString m_caseShown; // the number in the case input when last told
    // Coordinates chosen for a case not yet written; an empty pair clears them.
    std::optional<QString> m_pendingPair;
    SubRecordOpener m_opener;

    CaseForm* m_form = nullptr;
    QTabWidget* m_tabs = nullptr;
    QStackedWidget* m_stack = nullptr;
    CaseTab* m_caseTab = nullptr;
    ProjectTab* m_projectTab = nullptr;
    StructureTab* m_structureTab = nullptr;
    CaseListView* m_list = nullptr;
    QLabel* m_position = nullptr;
    QLabel* m_void = nullptr;
    QHash<QString, ui::XPButton*> m_buttons;
    QHash<QString, QAction*> m_actions;
    QMenu* m_fileMenu = nullptr;
    QMenu* m_reportsMenu = nullptr;
    QList<QAction*> m_letterEntries;
    QMenu* m_helpMenu = nullptr;
};

} // namespace pvardo::cases
