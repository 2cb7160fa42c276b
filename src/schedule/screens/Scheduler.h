#pragma once

#include "schedule/MeetingTable.h"
#include "schedule/MonthEvents.h"
#include "ui/RecordCommands.h"

#include <QDate>
#include <QHash>
#include <QMainWindow>
#include <QPair>
#include <QPointer>
#include <functional>
#include <memory>

class QComboBox;
class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace pvardo::schedule {

class Calendar;
class MeetingEditor;

// The dashboard, the main window of the program ("scheduler"): the board's
// month calendar with the month's meetings, an editor for one meeting that
// slides in beside them (iManage, iClose), and the menus from which the rest
// of the program is reached. It stays open for the whole session; leaving it
// in any way ends the program through ExitApp.
class Scheduler : public QMainWindow
{
    Q_OBJECT

public:
    enum class EditState { Browse, New, Edit };

    // The window's widths without and with the meeting editor, in twips.
    static constexpr int NarrowTwips = 7980;
    static constexpr int WideTwips = 12960;

    explicit Scheduler(QWidget* parent = nullptr);
    ~Scheduler() override;

    // Re-reads the year's rows and lists the month in view. After a change of
    // the table an empty year empties the list, so that it agrees with the
    // table; a plain move to an empty year keeps the list as it was. Moved to
    // another database folder, nothing of the old one stays listed.
    void reloadMonth(bool afterChange = false);

    // Opens the calendar on a day (today when the program starts) and loads
    // its month, with the logged-on user's rights.
    void load(const QDate& today = QDate::currentDate());

    // How the case screen ZPermits is made when iPlaning or the Planning
    // Board entry asks for it. The dashboard owns the screen it gets, shows
    // it in its place, and comes back when that screen emits
    // returnToDashboard() or is closed or hidden. Without a factory both
    // commands are off.
    void setCaseScreenFactory(std::function<QWidget*()> factory);

    // After a move to another database folder: the case screen kept for the
    // next iPlaning (with its sub-record screens) holds the old folder's
    // records, so it goes, and the next one is made on the new folder.
    void dropCaseScreen();

    // How Minutes opens the minutes of the meeting in the editor: the
    // notepad, bound to the meeting's row. Minutes is on while a meeting is
    // shown and not being typed, and only with an opener.
    // `day` is the day the meeting is shown on: a recurring meeting has
    // minutes for each of its days.
    using MinutesOpener = std::function<void(const store::Recordset& meeting, const QDate& day)>;
    void setMinutesOpener(MinutesOpener opener);

    // Gives a menu entry whose screen lives elsewhere in the program (About,
    // User Management...) its command and turns it on.
    void setMenuCommand(const QString& entry, std::function<void()> command);

    // Shows or hides the Admin menu and the entry commands for the session's
    // user: the Admin menu for an administrator only, no entry for a
    // read-only user.
    void applyUserRights();

    // The dashboard's placeholders of a merged letter: "%mm" and "%yy" of the
    // month in view.
    QList<QPair<QString, QString>> PlugVars() const;

    EditState editState() const { return m_state; }
    // The key (RECNO) of the meeting in the editor; empty when none.
    QString currentKey() const { return m_currentKey; }
    QString databasePath() const { return m_table.path(); }
    Calendar* calendar() const { return m_calendar; }

public slots:
    void INew();
    void IAdd();
    void IEdit();
    void ISave();
    void ICancel();
    void iDelete();
    void iPlaning();
    void iManage();
    void iClose();
    void iVardo();
    void iMinutes();
    // The scheduled events of a span of dates, through the report window.
    void iPrint();
    void mexit();

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void returnFromCaseScreen();

private:
    void buildWindow();
    void connectMenus();
    void calendarChanged();
    void monthChosen(int index);
    void yearChosen();
    void fillList();
    void selectInList(const QString& key);
    void listItemChosen(QTreeWidgetItem* item);
    // Moves to a meeting by its key and shows it; false (and a beep when
    // asked) when it is not among the year's rows.
    bool showRecord(const QString& key, bool beepWhenMissing = true);
    // After an add or a save: the calendar moves to the day the row was
    // written for, the month is listed again and the meeting shown in browse.
    void showWritten(const QString& key, const MeetingRow& written);
    void setEditState(EditState state);
    void copyText();
    void pasteText();
    void loadRemarks();
    void saveRemarks();
    void reportStoreFailure(const store::StoreStatus& status, const QString& what);
    QString monthName(int month) const;
    void setWindowWidthTwips(int twips);

    QString m_databaseFolder; // the session's database folder the table was made for
    MeetingTable m_table;
    std::unique_ptr<MonthEvents> m_events;
    MonthGrid m_grid;
    EditState m_state = EditState::Browse;
    QString m_currentKey;
    QDate m_shownDate;
    QString m_shownMonth; // Label2's text when the month was last loaded
    QString m_marksMonth; // the month whose day marks the loaded events hold; empty for none
    bool m_loaded = false;

    Calendar* m_calendar = nullptr;
    QComboBox* m_cmbMonth = nullptr;
    QComboBox* m_cmbYear = nullptr;
    QLabel* m_label2 = nullptr;
    QTreeWidget* m_list = nullptr;
    QWidget* m_editorPane = nullptr;
    MeetingEditor* m_editor = nullptr;
    QHash<QString, QPushButton*> m_buttons;
    ui::HiddenDelete m_delete;
    std::unique_ptr<ui::RecordCommands> m_record;

    std::function<QWidget*()> m_caseScreenFactory;
    MinutesOpener m_minutesOpener;
    QPointer<QWidget> m_caseScreen;
    QHash<QString, std::function<void()>> m_menuCommands;
};

} // namespace pvardo::schedule
