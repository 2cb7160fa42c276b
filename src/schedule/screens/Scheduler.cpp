#include "schedule/screens/Scheduler.h"

#include "common/Clock.h"
#include "common/ExitApp.h"
#include "common/MousePointer.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "common/Waiting.h"
#include "documents/Merge.h"
#include "documents/PrintState.h"
#include "documents/screens/Letters.h"
#include "documents/screens/Editor.h"
#include "schedule/CalendarMath.h"
#include "schedule/MeetingRecord.h"
#include "schedule/MeetingValidation.h"
#include "schedule/SchedulerPlugVars.h"
#include "schedule/screens/Calendar.h"
#include "schedule/screens/MeetingEditor.h"
#include "schedule/screens/MonthMarks.h"
#include "schedule/screens/ScheduledEvents.h"
#include "schedule/screens/SchedulerMenus.h"
#include "store/Recordset.h"
#include "ui/DateRangeDialog.h"
#include "ui/DelconfirmDialog.h"
#include "ui/TaskFrm.h"
#include "ui/XPButton.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QShowEvent>
#include <QStatusBar>
#include <QTextEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace pvardo::schedule {

namespace {

constexpr int TwipsPerPixel = 15;

// A command button of the dashboard: its object name, caption and tip.
struct CommandText
{
    const char* name;
    const char* caption;
    const char* tip;
};

QPushButton* commandButton(QWidget* parent, const CommandText& command)
{
    auto* button = new ui::XPButton(QLatin1String(command.name), QString::fromUtf8(command.caption),
        QString::fromUtf8(command.tip), parent);
    button->setAutoDefault(false);
    return button;
}

// The dashboard's look: a light page, white cards with a thin border, the
// month in large type and a list that reads like a table.
const char* const StyleSheet = R"(
QMainWindow#scheduler { background: #f3f5f8; }
QWidget#leftPane, QWidget#editorPane { background: #f3f5f8; }
QLabel#Label2 { font-size: 17pt; font-weight: 600; color: #1f3a5f; }
QLabel#Label1 { font-weight: 600; color: #33475b; }
QTreeWidget#ListView1 { background: white; alternate-background-color: #f2f6fb; border: 1px solid #cfd8e3;
    border-radius: 4px; }
QTreeWidget#ListView1::item { padding-top: 4px; padding-bottom: 4px; border: none; }
QTreeWidget#ListView1::item:selected { background: #2f6db5; color: white; }
QHeaderView::section { background: #e6ecf3; color: #33475b; border: none; border-bottom: 1px solid #cfd8e3;
    padding: 5px 4px; font-weight: 600; }
QGroupBox#MeetingEditor { background: white; border: 1px solid #cfd8e3; border-radius: 6px; margin-top: 14px;
    padding: 10px 8px 8px 8px; font-weight: 600; color: #1f3a5f; }
QGroupBox#MeetingEditor::title { subcontrol-origin: margin; left: 10px; padding: 0 4px; }
QGroupBox#Frame1 { font-weight: normal; color: #33475b; border: 1px solid #dde4ec; border-radius: 4px;
    margin-top: 12px; padding-top: 8px; }
QGroupBox#Frame1::title { subcontrol-origin: margin; left: 8px; padding: 0 3px; }
QGroupBox#MeetingEditor QLabel { font-weight: normal; color: #33475b; }
QLineEdit[readOnly="true"], QPlainTextEdit[readOnly="true"] { background: #f7f9fb; color: #22303e; }
QPushButton { padding: 5px 12px; border: 1px solid #b8c4d2; border-radius: 4px; background: #ffffff; }
QPushButton:hover { background: #eaf1f9; }
QPushButton:pressed { background: #d7e4f3; }
QPushButton:disabled { color: #9aa7b5; background: #f1f3f6; border-color: #d6dde5; }
QPushButton#iPlaning { background: #2f6db5; color: white; border-color: #2a5f9e; font-weight: 600; }
QPushButton#iPlaning:hover { background: #2a63a5; }
QPushButton#iPlaning:disabled { background: #9fb7d3; color: #eef3f9; }
)";

} // namespace

Scheduler::Scheduler(QWidget* parent)
    : QMainWindow(parent)
    , m_databaseFolder(session().DatabaseFolder)
    , m_table(session().DatabaseFolder, session().ProgramFolder)
{
    setObjectName(QStringLiteral("scheduler"));
    setWindowTitle(QStringLiteral(" Vardo Dashboard"));
    setStyleSheet(QString::fromUtf8(StyleSheet));
    buildWindow();
    connectMenus();
    // The hard delete is an administrator's hidden command (Control+U).
    m_delete.attach(*this, m_buttons.value(QStringLiteral("iDelete")));
    // A meeting typed and not written is asked for before the program ends.
    m_record = std::make_unique<ui::RecordCommands>(*this, nullptr, QStringLiteral("Manage Meetings"),
        ui::RecordHooks{
            [this] {
                return m_state == EditState::New ? ui::RecordMode::New
                    : m_state == EditState::Edit ? ui::RecordMode::Edit
                                                 : ui::RecordMode::Browse;
            },
            [this] { return !m_currentKey.isEmpty(); },
            [](bool) {},
            [](ui::RecordMode) {},
            [this] { IAdd(); },
            [this] { ISave(); },
            [this] { ICancel(); },
            [this] {
                const QString name = m_editor->findChild<QLineEdit*>(QStringLiteral("Text2"))->text().trimmed();
                const QString which = m_state == EditState::New ? QStringLiteral("The new meeting")
                                                                : QStringLiteral("The meeting");
                return name.isEmpty() ? which : which + QStringLiteral(" \"") + name + QLatin1Char('"');
            },
        });
    m_record->setInputsArea(m_editor);
    setEditState(EditState::Browse);
    iClose();

    // A letter printed from the dashboard gets the month in view.
    documents::registerPlugVars(documents::ScreenCodes::Dashboard, [this](QTextDocument& buffer) {
        documents::FixedWords words;
        const QList<QPair<QString, QString>> values = PlugVars();
        words.monthName = values.value(0).second;
        words.year = values.value(1).second;
        documents::plugFixedWords(buffer, documents::ScreenCodes::Dashboard, words);
    });
}

Scheduler::~Scheduler()
{
    documents::unregisterPlugVars(documents::ScreenCodes::Dashboard);
    delete m_caseScreen.data();
}

// The window ----------------------------------------------------------------

void Scheduler::buildWindow()
{
    buildSchedulerMenus(*menuBar());
    // Makes a command button, found later by its name.
    const auto addCommand = [this](QWidget* parent, const CommandText& command) {
        QPushButton* button = commandButton(parent, command);
        m_buttons.insert(QLatin1String(command.name), button);
        return button;
    };

    auto* central = new QWidget(this);
    central->setObjectName(QStringLiteral("centralWidget"));
    auto* columns = new QHBoxLayout(central);
    columns->setContentsMargins(10, 8, 10, 8);
    columns->setSpacing(12);

    // The month: its name and lists, the calendar beside the commands, the list.
    auto* left = new QWidget(central);
    left->setObjectName(QStringLiteral("leftPane"));
    auto* leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->setSpacing(8);

    auto* monthRow = new QHBoxLayout;
    m_label2 = new QLabel(left);
    m_label2->setObjectName(QStringLiteral("Label2"));
    m_cmbMonth = new QComboBox(left);
    m_cmbMonth->setObjectName(QStringLiteral("cmbMonth"));
    m_cmbMonth->setToolTip(QStringLiteral(" Month "));
    for (int month = 1; month <= 12; ++month) {
        m_cmbMonth->addItem(monthName(month));
    }
    m_cmbYear = new QComboBox(left);
    m_cmbYear->setObjectName(QStringLiteral("cmbYear"));
    m_cmbYear->setToolTip(QStringLiteral(" Year "));
    m_cmbYear->setEditable(true);
    m_cmbYear->setInsertPolicy(QComboBox::NoInsert);
    // Any four digits can be typed; a year outside the calendar is refused
    // by the calendar's own message when Enter is pressed.
    m_cmbYear->lineEdit()->setValidator(new QIntValidator(0, 9999, m_cmbYear));
    const int thisYear = todaysDate().year();
    for (int year = thisYear - 15; year <= thisYear + 15; ++year) {
        m_cmbYear->addItem(QString::number(year));
    }
    monthRow->addWidget(m_label2, 1);
    monthRow->addWidget(m_cmbMonth);
    monthRow->addWidget(m_cmbYear);
    leftLayout->addLayout(monthRow);

    auto* calendarRow = new QHBoxLayout;
    calendarRow->setSpacing(10);
    m_calendar = new Calendar(left);
    m_calendar->setObjectName(QStringLiteral("Calendar1"));
    calendarRow->addWidget(m_calendar, 1);
    auto* commands = new QVBoxLayout;
    commands->setSpacing(6);
    const CommandText leftCommands[] = {
        {"iPlaning", "Planning Board", " Open the Planning Board cases "},
        {"iManage", "Manage Meetings",
            " Add or change meetings; an administrator deletes one after Control+U brings Delete into view "},
        {"iMinutes", "Minutes", " Minutes of the selected meeting "},
        {"iPrint", "Print..", " Print the scheduled events "},
        {"iVardo", "Vardo", " Start Vardo "},
    };
    for (const CommandText& command : leftCommands) {
        commands->addWidget(addCommand(left, command));
    }
    commands->addStretch();
    commands->addWidget(addCommand(left, {"mexit", "Exit", " Exit"}));
    calendarRow->addLayout(commands);
    leftLayout->addLayout(calendarRow);

    auto* heading = new QLabel(QStringLiteral("This month's scheduled meetings:"), left);
    heading->setObjectName(QStringLiteral("Label1"));
    leftLayout->addWidget(heading);
    m_list = new QTreeWidget(left);
    m_list->setObjectName(QStringLiteral("ListView1"));
    m_list->setColumnCount(3);
    m_list->setHeaderLabels(
        {QStringLiteral(" Date "), QStringLiteral(" Time "), QStringLiteral(" Scheduled ")});
    m_list->setRootIsDecorated(false);
    m_list->setAlternatingRowColors(true);
    m_list->setUniformRowHeights(true);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setAllColumnsShowFocus(true);
    m_list->header()->setStretchLastSection(true);
    m_list->setColumnWidth(0, 100);
    m_list->setColumnWidth(1, 80);
    m_list->setMinimumHeight(150);
    leftLayout->addWidget(m_list, 1);
    left->setFixedWidth(NarrowTwips / TwipsPerPixel - 20);
    columns->addWidget(left);

    // The meeting editor, brought into view by iManage.
    m_editorPane = new QWidget(central);
    m_editorPane->setObjectName(QStringLiteral("editorPane"));
    auto* editorLayout = new QVBoxLayout(m_editorPane);
    editorLayout->setContentsMargins(0, 0, 0, 0);
    m_editor = new MeetingEditor(m_editorPane);
    editorLayout->addWidget(m_editor, 1);
    auto* editorCommands = new QGridLayout;
    editorCommands->setSpacing(6);
    const CommandText editCommands[] = {
        {"INew", "&New", " Add a New Record to the Database"},
        {"IAdd", "&Add", " Add the current screen to the database "},
        {"IEdit", "&Edit", " Edit the current record "},
        {"ISave", "&Save", " Save Changes to this record "},
        {"ICancel", "&Cancel", " Cancel "},
        {"iDelete", "&Delete", " Delete this meeting "},
        {"iClose", "Close", " Close the meeting editor "},
    };
    int index = 0;
    for (const CommandText& command : editCommands) {
        editorCommands->addWidget(addCommand(m_editorPane, command), index / 4, index % 4);
        ++index;
    }
    editorLayout->addLayout(editorCommands);
    columns->addWidget(m_editorPane, 1);
    setCentralWidget(central);

    connect(m_calendar, &Calendar::dateChanged, this, &Scheduler::calendarChanged);
    connect(m_cmbMonth, &QComboBox::activated, this, &Scheduler::monthChosen);
    connect(m_cmbYear, &QComboBox::activated, this, [this] { yearChosen(); });
    connect(m_cmbYear->lineEdit(), &QLineEdit::returnPressed, this, &Scheduler::yearChosen);
    connect(m_list, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) { listItemChosen(item); });
    connect(m_list, &QTreeWidget::currentItemChanged, this,
        [this](QTreeWidgetItem* item) { listItemChosen(item); });

    const std::pair<const char*, void (Scheduler::*)()> handlers[] = {
        {"INew", &Scheduler::INew},
        {"IAdd", &Scheduler::IAdd},
        {"IEdit", &Scheduler::IEdit},
        {"ISave", &Scheduler::ISave},
        {"ICancel", &Scheduler::ICancel},
        {"iDelete", &Scheduler::iDelete},
        {"iPlaning", &Scheduler::iPlaning},
        {"iManage", &Scheduler::iManage},
        {"iClose", &Scheduler::iClose},
        {"iVardo", &Scheduler::iVardo},
        {"iMinutes", &Scheduler::iMinutes},
        {"iPrint", &Scheduler::iPrint},
        {"mexit", &Scheduler::mexit},
    };
    for (const auto& [name, handler] : handlers) {
        connect(m_buttons.value(QLatin1String(name)), &QPushButton::clicked, this, handler);
    }
    // Minutes waits for a meeting and for the notepad that shows them.
    m_buttons.value(QStringLiteral("iMinutes"))->setEnabled(false);
    m_buttons.value(QStringLiteral("iPlaning"))->setEnabled(false);
}

void Scheduler::connectMenus()
{
    const auto action = [this](const char* name) { return findChild<QAction*>(QLatin1String(name)); };
    connect(action("planningb"), &QAction::triggered, this, &Scheduler::iPlaning);
    action("planningb")->setEnabled(false);
    connect(action("runvardo"), &QAction::triggered, this, &Scheduler::iVardo);
    connect(action("Quit"), &QAction::triggered, this, &Scheduler::mexit);
    connect(action("mcopy"), &QAction::triggered, this, &Scheduler::copyText);
    connect(action("mpaste"), &QAction::triggered, this, &Scheduler::pasteText);
    connect(action("loadp"), &QAction::triggered, this, &Scheduler::loadRemarks);
    connect(action("savep"), &QAction::triggered, this, &Scheduler::saveRemarks);
    connect(action("hlpKeys"), &QAction::triggered, this, [] {
        showMessage(QStringLiteral("Control+U\tbring the meeting editor's Delete button into view "
                                   "(administrators only)"),
            QStringLiteral(" Keys"), PromptButtons::Ok, PromptIcon::Information);
    });
    for (const QString& name : entriesCommandedFromOutside()) {
        QAction* entry = findChild<QAction*>(name);
        entry->setEnabled(false);
        connect(entry, &QAction::triggered, this, [this, name] {
            if (const auto command = m_menuCommands.value(name)) {
                command();
            }
        });
    }
    // The entries without a command stand in the menu and do nothing.
}

QString Scheduler::monthName(int month) const
{
    const Session& state = session();
    if (month >= 1 && month <= 12 && !state.MonthNames[static_cast<size_t>(month)].isEmpty()) {
        return state.MonthNames[static_cast<size_t>(month)];
    }
    return QLocale(QLocale::English).standaloneMonthName(month);
}

void Scheduler::setWindowWidthTwips(int twips)
{
    centralWidget()->layout()->invalidate();
    centralWidget()->layout()->activate();
    layout()->invalidate();
    layout()->activate();
    const int width = std::max(twips / TwipsPerPixel, minimumSizeHint().width());
    resize(width, std::max(height(), 640));
}

// Wiring ---------------------------------------------------------------------

void Scheduler::setCaseScreenFactory(std::function<QWidget*()> factory)
{
    m_caseScreenFactory = std::move(factory);
    const bool available = static_cast<bool>(m_caseScreenFactory);
    m_buttons.value(QStringLiteral("iPlaning"))->setEnabled(available);
    findChild<QAction*>(QStringLiteral("planningb"))->setEnabled(available);
}

void Scheduler::setMinutesOpener(MinutesOpener opener)
{
    m_minutesOpener = std::move(opener);
    setEditState(m_state);
}

void Scheduler::iMinutes()
{
    if (!m_minutesOpener || m_currentKey.isEmpty() || m_state != EditState::Browse) {
        return;
    }
    // The row is found again: another workstation may have changed it.
    if (!m_table.requery().ok() || !m_table.findKey(m_currentKey) || !m_table.rows()) {
        QApplication::beep();
        return;
    }
    m_minutesOpener(*m_table.rows(), m_shownDate);
}

void Scheduler::setMenuCommand(const QString& entry, std::function<void()> command)
{
    QAction* action = findChild<QAction*>(entry);
    if (!action || !entriesCommandedFromOutside().contains(entry)) {
        return;
    }
    action->setEnabled(static_cast<bool>(command));
    m_menuCommands.insert(entry, std::move(command));
}

void Scheduler::applyUserRights()
{
    const Session& state = session();
    // Only the level written exactly "ADMIN" is an administrator's: a level
    // in another case or with blanks around it is a damaged one.
    const bool admin = state.IsAdmin || state.UserLevel == QLatin1String("ADMIN");
    if (QMenu* report = findChild<QMenu*>(QStringLiteral("report"))) {
        report->menuAction()->setVisible(admin);
    }
    if (!admin) {
        m_delete.conceal();
    }
    setEditState(m_state);
}

QList<QPair<QString, QString>> Scheduler::PlugVars() const
{
    return schedulerPlugValues(m_calendar->CalYear(), m_calendar->CalMonth());
}

// Loading and moving in the calendar ----------------------------------------

void Scheduler::load(const QDate& today)
{
    applyUserRights();
    m_cmbYear->setEditText(today.toString(QStringLiteral("yyyy")));
    m_loaded = true;
    if (m_calendar->date() == today) {
        calendarChanged();
    } else {
        m_calendar->setDate(today);
    }
    setEditState(EditState::Browse);
}

void Scheduler::calendarChanged()
{
    if (!m_loaded) {
        return;
    }
    const int year = m_calendar->CalYear();
    const int month = m_calendar->CalMonth();
    const QString shown
        = monthName(month) + QLatin1Char(' ') + QStringLiteral("%1").arg(year, 4, 10, QLatin1Char('0'));
    m_label2->setText(shown);
    {
        const QSignalBlocker blockYear(m_cmbYear);
        const QSignalBlocker blockMonth(m_cmbMonth);
        const int yearIndex = m_cmbYear->findText(QString::number(year));
        m_cmbYear->setCurrentIndex(yearIndex);
        m_cmbYear->setEditText(QString::number(year));
        m_cmbMonth->setCurrentIndex(month - 1);
    }
    if (shown != m_shownMonth) {
        m_shownMonth = shown;
        reloadMonth();
    } else if (m_events && m_marksMonth == shown) {
        // Another day of the same month: the marks stay as they are, and a
        // day with meetings brings its first one into the editor, so that
        // Minutes is that day's.
        showMonthMarks(*m_calendar, m_events->marks());
        if (m_state == EditState::Browse) {
            for (const MonthEntry& entry : m_events->entries()) {
                if (entry.day == m_calendar->CalDay()) {
                    if (showRecord(entry.key, false)) {
                        selectInList(entry.key);
                        setEditState(EditState::Browse);
                    }
                    break;
                }
            }
        }
    }
}

void Scheduler::monthChosen(int index)
{
    m_calendar->setCalMonth(index + 1);
    setEditState(EditState::Browse);
    if (!m_currentKey.isEmpty()) {
        showRecord(m_currentKey, false);
    }
}

void Scheduler::yearChosen()
{
    bool ok = false;
    const int year = m_cmbYear->currentText().trimmed().toInt(&ok);
    if (!ok || year < FirstCalendarYear || year > LastCalendarYear) {
        QApplication::beep();
        if (ok) {
            m_calendar->setCalYear(year); // says "Begin of calendar!" or "End of calendar!"
        }
        const QSignalBlocker block(m_cmbYear);
        m_cmbYear->setEditText(QString::number(m_calendar->CalYear()));
        return;
    }
    if (year == m_calendar->CalYear()) {
        return; // the box shows the year in view again, after a refusal too
    }
    m_calendar->setCalYear(year);
    setEditState(EditState::Browse);
    if (!m_currentKey.isEmpty()) {
        showRecord(m_currentKey, false);
    }
}

void Scheduler::reloadMonth(bool afterChange)
{
    m_grid.build(m_calendar->CalYear(), m_calendar->CalMonth());
    // The preferences may have moved the databases since the last load: what
    // the list shows of the old folder goes with it.
    if (session().DatabaseFolder != m_databaseFolder) {
        m_databaseFolder = session().DatabaseFolder;
        m_table = MeetingTable(m_databaseFolder, session().ProgramFolder);
        m_events.reset();
        m_list->clear();
        m_calendar->clearMarks();
        m_marksMonth.clear();
        m_currentKey.clear();
        m_editor->clearToDefaults();
    }
    setHourglass();
    const store::StoreStatus opened = m_table.open(m_calendar->date().toString(QStringLiteral("yyyy")));
    if (!opened.ok()) {
        setNormalPointer();
        reportStoreFailure(opened, QStringLiteral("read"));
        return;
    }
    if (!m_events || m_events->databasePath() != m_table.path()) {
        m_events = std::make_unique<MonthEvents>(m_table.path());
    }
    const MonthEvents::Outcome outcome
        = m_events->GetMonthEvents(m_calendar->date().toString(QStringLiteral("MM/dd/yyyy")));
    setNormalPointer();
    switch (outcome) {
    case MonthEvents::Outcome::Superseded:
        return; // a newer month was loaded and shown meanwhile
    case MonthEvents::Outcome::NoRows:
        // The marks kept are another month's: they are not this month's.
        m_marksMonth.clear();
        // A year without meetings or rules: the list stays as it was, unless
        // the last meeting was just removed from it.
        if (afterChange) {
            m_list->clear();
            m_calendar->clearMarks();
            m_calendar->Refresh();
            m_currentKey.clear();
            m_editor->clearToDefaults();
        }
        break;
    case MonthEvents::Outcome::Failed:
        fillList();
        reportStoreFailure(m_events->lastStatus(), QStringLiteral("read"));
        break;
    case MonthEvents::Outcome::Loaded:
        fillList();
        m_marksMonth = m_shownMonth;
        showMonthMarks(*m_calendar, m_events->marks());
        if (QTreeWidgetItem* first = m_list->topLevelItem(0)) {
            selectInList(first->data(0, Qt::UserRole).toString());
            showRecord(first->data(0, Qt::UserRole).toString(), false);
        } else {
            m_currentKey.clear();
            m_editor->clearToDefaults();
        }
        break;
    }
    setEditState(EditState::Browse);
}

void Scheduler::fillList()
{
    const QSignalBlocker block(m_list);
    m_list->clear();
    if (!m_events) {
        return;
    }
    for (const MonthEntry& entry : m_events->entries()) {
        auto* item = new QTreeWidgetItem(m_list, {entry.date, entry.time, entry.name});
        item->setData(0, Qt::UserRole, entry.key);
    }
}

void Scheduler::selectInList(const QString& key)
{
    const QSignalBlocker block(m_list);
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        QTreeWidgetItem* item = m_list->topLevelItem(row);
        if (item->data(0, Qt::UserRole).toString() == key) {
            m_list->setCurrentItem(item);
            m_list->scrollToItem(item);
            return;
        }
    }
}

void Scheduler::listItemChosen(QTreeWidgetItem* item)
{
    if (!item) {
        return;
    }
    showRecord(item->data(0, Qt::UserRole).toString());
    setEditState(EditState::Browse);
}

bool Scheduler::showRecord(const QString& key, bool beepWhenMissing)
{
    if (!m_table.findKey(key)) {
        if (beepWhenMissing) {
            QApplication::beep();
        }
        return false;
    }
    if (key != m_currentKey) {
        m_delete.conceal(); // Control+U's Delete is for the meeting it was pressed over
    }
    const MeetingShown shown = GetRecord(*m_table.rows(), m_grid);
    m_editor->setForm(shown.form);
    m_currentKey = key;
    m_shownDate = shown.date;
    return true;
}

// Commands -------------------------------------------------------------------

void Scheduler::setEditState(EditState state)
{
    m_state = state;
    const bool browse = state == EditState::Browse;
    if (!browse) {
        m_delete.conceal();
    }
    const bool entry = !session().ReadOnlyUser;
    const bool current = !m_currentKey.isEmpty();
    m_editor->setLocked(browse);
    m_buttons.value(QStringLiteral("INew"))->setEnabled(browse && entry);
    m_buttons.value(QStringLiteral("IEdit"))->setEnabled(browse && entry && current);
    m_buttons.value(QStringLiteral("iDelete"))->setEnabled(browse && current);
    m_buttons.value(QStringLiteral("IAdd"))->setEnabled(state == EditState::New && entry);
    m_buttons.value(QStringLiteral("ISave"))->setEnabled(state == EditState::Edit && entry);
    m_buttons.value(QStringLiteral("ICancel"))->setEnabled(!browse);
    m_buttons.value(QStringLiteral("iMinutes"))->setEnabled(browse && current && m_minutesOpener);
    findChild<QAction*>(QStringLiteral("loadp"))->setEnabled(!browse);
}

void Scheduler::INew()
{
    if (session().ReadOnlyUser) {
        return;
    }
    m_editor->clearToDefaults();
    setEditState(EditState::New);
    m_editor->findChild<QLineEdit*>(QStringLiteral("Text2"))->setFocus();
    m_record->watchInputs();
}

void Scheduler::IAdd()
{
    if (m_state != EditState::New || session().ReadOnlyUser) {
        return;
    }
    const MeetingForm form = m_editor->form();
    if (!validateMeetingForm(form, MeetingCommand::Add)) {
        return;
    }
    QString key;
    MeetingRow written;
    const store::StoreStatus status = m_table.add(form, m_calendar->CalYear(), m_calendar->CalMonth(),
        m_calendar->CalDay(), session().CurrentUser, &key, &written);
    if (!status.ok()) {
        reportStoreFailure(status, QStringLiteral("added"));
        return;
    }
    m_currentKey = key;
    showWritten(key, written);
}

void Scheduler::IEdit()
{
    if (m_currentKey.isEmpty() || session().ReadOnlyUser) {
        return;
    }
    // A once-only meeting is saved on the calendar's day: start from its own.
    if (m_shownDate.isValid() && m_shownDate.year() == m_calendar->CalYear()
        && m_shownDate.month() == m_calendar->CalMonth()) {
        m_calendar->setDate(m_shownDate);
    }
    setEditState(EditState::Edit);
    m_editor->findChild<QLineEdit*>(QStringLiteral("Text2"))->setFocus();
    m_record->watchInputs();
}

void Scheduler::ISave()
{
    if (m_state != EditState::Edit || session().ReadOnlyUser) {
        return;
    }
    const MeetingForm form = m_editor->form();
    if (!validateMeetingForm(form, MeetingCommand::Save)) {
        return;
    }
    const QString key = m_currentKey;
    MeetingRow written;
    ui::TaskFrm::open();
    const store::StoreStatus status = m_table.save(key, form, m_calendar->CalYear(), m_calendar->CalMonth(),
        m_calendar->CalDay(), session().CurrentUser, &written);
    if (!status.ok()) {
        ui::TaskFrm::close();
        reportStoreFailure(status, QStringLiteral("saved"));
        return;
    }
    showWritten(key, written);
    ui::TaskFrm::close();
}

void Scheduler::showWritten(const QString& key, const MeetingRow& written)
{
    // A recurring meeting falls on its rule's day, which becomes the calendar's day.
    if (written.MDATE.isValid()) {
        m_calendar->setDate(written.MDATE);
    }
    reloadMonth(true);
    selectInList(key);
    showRecord(key, false);
    setEditState(EditState::Browse);
}

void Scheduler::ICancel()
{
    setEditState(EditState::Browse);
    if (m_currentKey.isEmpty() || !showRecord(m_currentKey, false)) {
        m_editor->clearToDefaults();
    }
    setEditState(EditState::Browse);
}

void Scheduler::iDelete()
{
    if (m_currentKey.isEmpty() || m_state != EditState::Browse) {
        return;
    }
    if (!ui::Delconfirm(this)) {
        return;
    }
    ui::TaskFrm::open();
    const store::StoreStatus status = m_table.remove(m_currentKey);
    if (!status.ok()) {
        ui::TaskFrm::close();
        reportStoreFailure(status, QStringLiteral("deleted"));
        return;
    }
    m_delete.conceal(); // Control+U grants one delete
    m_currentKey.clear();
    WaitSeconds(1);
    reloadMonth(true);
    ui::TaskFrm::close();
}

void Scheduler::iPlaning()
{
    if (!m_caseScreenFactory) {
        return;
    }
    ui::TaskFrm::close();
    if (!m_caseScreen) {
        QWidget* screen = m_caseScreenFactory();
        if (!screen) {
            return;
        }
        m_caseScreen = screen;
        screen->installEventFilter(this);
        if (screen->metaObject()->indexOfSignal("returnToDashboard()") >= 0) {
            connect(screen, SIGNAL(returnToDashboard()), this, SLOT(returnFromCaseScreen()));
        }
    }
    m_caseScreen->show();
    m_caseScreen->raise();
    m_caseScreen->activateWindow();
    hide();
}

void Scheduler::dropCaseScreen()
{
    if (m_caseScreen) {
        m_caseScreen->removeEventFilter(this);
        m_caseScreen->hide();
        delete m_caseScreen.data();
    }
}

void Scheduler::returnFromCaseScreen()
{
    if (isVisible()) {
        return;
    }
    show();
    raise();
    activateWindow();
}

bool Scheduler::eventFilter(QObject* watched, QEvent* event)
{
    // However the case screen goes away, the dashboard comes back.
    if (watched == m_caseScreen && (event->type() == QEvent::Hide || event->type() == QEvent::Close)) {
        returnFromCaseScreen();
    }
    return QMainWindow::eventFilter(watched, event);
}

void Scheduler::iManage()
{
    m_editorPane->show();
    setWindowWidthTwips(WideTwips);
}

void Scheduler::iClose()
{
    m_editorPane->hide();
    setWindowWidthTwips(NarrowTwips);
}

void Scheduler::iVardo()
{
    // The inspection program sits beside the databases.
    const QString program = joinPath(session().DatabaseFolder, QStringLiteral("\\Vardo"));
    const QFileInfo file(program);
    if (!file.isFile()) {
        showMessage(QStringLiteral("Vardo is not installed: there is no companion program to start."),
            QStringLiteral(" Vardo"), PromptButtons::Ok, PromptIcon::Information);
        return;
    }
    if (!file.isExecutable() || !QProcess::startDetached(program, {}, file.absolutePath())) {
        showMessage(QStringLiteral("Vardo could not be started from ") + program + QLatin1Char('.'),
            QStringLiteral(" Vardo"), PromptButtons::Ok, PromptIcon::Exclamation);
    }
}

void Scheduler::iPrint()
{
    const ui::DateRange range = ui::chooseDateRange(this, false);
    if (!range.chosen) {
        return;
    }
    ui::TaskFrm::open(QStringLiteral("Generating List..."));
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(
        m_table.path(), scheduledEventsQuery(range.start, range.end), &status);
    if (!rows) {
        ui::TaskFrm::close();
        reportStoreFailure(status, QStringLiteral("listed"));
        return;
    }
    documents::Editor& editor = documents::Editor::instance();
    editor.clearBuffers();
    editor.setOrigin(QString());
    editor.setTitle(QStringLiteral("Scheduled Events"));
    buildScheduledEvents(editor.ReportBuffer(), *rows, m_calendar->CalYear(), m_calendar->CalMonth(),
        QDir(session().FormsFolder).filePath(QStringLiteral("mtghead.rtf")),
        documents::printState().reportFontSize);
    rows.reset();
    ui::TaskFrm::close();
    documents::showBuiltReport();
}

void Scheduler::mexit()
{
    ExitApp();
}

void Scheduler::closeEvent(QCloseEvent* event)
{
    // The dashboard leaving is the end of the session, unless a window with
    // an unsaved document keeps it open.
    const int marker = session().LeavingMarker;
    session().LeavingMarker = 99;
    event->ignore();
    if (!ExitApp()) {
        session().LeavingMarker = marker;
    }
}

bool Scheduler::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate && m_loaded) {
        session().ScreenCode = 1;
        // The record shown is read again and the list takes the keys, unless
        // the clerk is typing a meeting (a message box was just answered).
        if (m_state == EditState::Browse) {
            if (!m_currentKey.isEmpty() && m_table.requery().ok()) {
                showRecord(m_currentKey, false);
            }
            m_list->setFocus();
        }
    }
    return QMainWindow::event(event);
}

void Scheduler::showEvent(QShowEvent* event)
{
    // The log-on, or a change of user, may have changed the rights since the
    // dashboard was last shown.
    applyUserRights();
    QMainWindow::showEvent(event);
}

// The Edit menu ----------------------------------------------------------------

void Scheduler::copyText()
{
    QWidget* box = QApplication::focusWidget();
    if (auto* line = qobject_cast<QLineEdit*>(box)) {
        line->copy();
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(box)) {
        plain->copy();
    } else if (auto* rich = qobject_cast<QTextEdit*>(box)) {
        rich->copy();
    }
}

void Scheduler::pasteText()
{
    QWidget* box = QApplication::focusWidget();
    if (auto* line = qobject_cast<QLineEdit*>(box); line && !line->isReadOnly()) {
        line->paste();
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(box); plain && !plain->isReadOnly()) {
        plain->paste();
    } else if (auto* rich = qobject_cast<QTextEdit*>(box); rich && !rich->isReadOnly()) {
        rich->paste();
    }
}

void Scheduler::loadRemarks()
{
    if (m_state == EditState::Browse) {
        return;
    }
    QFileDialog dialog(this, QStringLiteral("Obtain from File.."));
    dialog.setObjectName(QStringLiteral("loadp"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setNameFilters({QStringLiteral("Text files (*.txt)"), QStringLiteral("All files (*)")});
    if (prompts().exec(dialog) != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return;
    }
    const QString file = dialog.selectedFiles().constFirst();
    const auto lines = readTextLines(file);
    if (!lines) {
        showMessage(QStringLiteral("The file ") + file + QStringLiteral(" could not be read."), QString(),
            PromptButtons::Ok, PromptIcon::Exclamation);
        return;
    }
    m_editor->remarks()->setPlainText(lines->join(QLatin1Char('\n')));
}

void Scheduler::saveRemarks()
{
    QFileDialog dialog(this, QStringLiteral("Save to File.."));
    dialog.setObjectName(QStringLiteral("savep"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters({QStringLiteral("Text files (*.txt)"), QStringLiteral("All files (*)")});
    if (prompts().exec(dialog) != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return;
    }
    const QString file = dialog.selectedFiles().constFirst();
    QString error;
    if (!replaceTextLines(file, m_editor->remarks()->toPlainText().split(QLatin1Char('\n')), &error)) {
        showMessage(
            QStringLiteral("The remarks could not be saved to ") + file + QStringLiteral(".\n") + error,
            QString(), PromptButtons::Ok, PromptIcon::Exclamation);
    }
}

void Scheduler::reportStoreFailure(const store::StoreStatus& status, const QString& what)
{
    QString text;
    if (status.number == store::StoreErrorNumber::DatabaseNotFound) {
        text = QStringLiteral("DB ") + m_table.path() + QStringLiteral(" not found.");
    } else if (status.number == store::StoreErrorNumber::BadSql) {
        text = QStringLiteral("Bad SQL");
    } else {
        text
            = QStringLiteral("The meeting could not be ") + what + QStringLiteral(".\n") + status.description;
    }
    showMessage(text, QString(), PromptButtons::Ok, PromptIcon::Exclamation);
}

} // namespace pvardo::schedule
