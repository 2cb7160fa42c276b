#include "cases/screens/ZPermits.h"

#include "cases/CaseLetters.h"
#include "cases/CaseLists.h"
#include "cases/CaseNumbering.h"
#include "cases/CaseQuery.h"
#include "cases/CaseRecord.h"
#include "cases/CaseReports.h"
#include "cases/CaseStatus.h"
#include "cases/ParcelFlags.h"
#include "cases/screens/CaseChecks.h"
#include "cases/screens/CaseForm.h"
#include "cases/screens/CaseListModel.h"
#include "cases/screens/CaseListView.h"
#include "cases/screens/CaseTab.h"
#include "cases/screens/ProjectTab.h"
#include "cases/screens/StructureTab.h"
#include "common/Clock.h"
#include "common/ProgramEnd.h"
#include "documents/NotepadTexts.h"
#include "documents/FormDefinitions.h"
#include "documents/PrintState.h"
#include "documents/screens/Editor.h"
#include "documents/screens/LabelFrm.h"
#include "documents/screens/Letters.h"
#include "common/PromptService.h"
#include "common/ScreenOpen.h"
#include "common/Session.h"
#include "common/Waiting.h"
#include "parcels/Coordinates.h"
#include "parcels/ParcelService.h"
#include "parcels/screens/CCalc.h"
#include "store/DatabaseLocation.h"
#include "store/SqlSubset.h"
#include "ui/DateRangeDialog.h"
#include "ui/DelconfirmDialog.h"
#include "ui/DupeDialog.h"
#include "ui/MonthSelect.h"
#include "ui/NotAvailable.h"
#include "ui/PostitDialog.h"
#include "ui/TaskFrm.h"
#include "ui/XPButton.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QShortcut>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTextDocument>
#include <QVBoxLayout>

namespace pvardo::cases {

using ui::RecordMode;

namespace {

constexpr int CaseScreenCode = 0;
constexpr int CaseNumberBox = 1;

const QList<RecordMode> Browse{RecordMode::Browse};

// The left pane: button, caption, screen it opens.
struct LeftPaneEntry
{
    const char* button;
    const char* caption;
    const char* screen;
};
constexpr LeftPaneEntry LeftPane[] = {
    {"ifees", "Fees", "feesfrm"},
    {"iMeetings", "Meetings", "meetingsfrm"},
    {"iReview", "Agencies", "Agencyfrm"},
    {"iSEQRA", "Reviews", "SEQRAfrm"},
    {"iBonds", "Bonds", "bondsfrm"},
    {"iActions", "Actions", "actionfrm"},
    {"iMaps", "Maps", "mapsfrm"},
    {"iWetlands", "Wetlands", "wetlfrm"},
    {"iAdjacents", "Surrounding Parcels", "adjfrm"},
    {"iIssues", "Issues", "issuesfrm"},
    {"iContinue", "Checklist", "checklist"},
    {"iParcel", "Parcel", ""},
};

// The commands a read-only user never has.
const QStringList EntryCommands{QStringLiteral("newr"), QStringLiteral("addr"), QStringLiteral("saver"),
    QStringLiteral("delr"), QStringLiteral("INew"), QStringLiteral("IAdd"), QStringLiteral("IEdit"),
    QStringLiteral("ISave")};

// The commands the list hides while it shows.
const QStringList DetailCommands{QStringLiteral("ILocate"), QStringLiteral("INew"), QStringLiteral("ISave"),
    QStringLiteral("IAdd"), QStringLiteral("IEdit"), QStringLiteral("iNote"), QStringLiteral("recinfod"),
    QStringLiteral("ICancel"), QStringLiteral("IMoveFirst"), QStringLiteral("IMovePrev"),
    QStringLiteral("IMoveNext"), QStringLiteral("IMoveLast")};

QString caseDeleteHint()
{
    return QStringLiteral(" Void this case. An administrator deletes a case for good with the Delete "
                          "button that Control+U brings into view ");
}

QString caseScreenKeys()
{
    return QStringLiteral("Control+F\tfind the parcel by its S-B-L\n"
                          "Control+I\tthe record's information: who wrote it last, and when\n"
                          "Control+G\tread the list of map providers again\n"
                          "Control+U\tbring the Delete button into view (administrators only); "
                          "everybody else voids a case from the File menu");
}

QString caseDatabasePath()
{
    return store::databaseFile(session().DatabaseFolder, QStringLiteral("\\pbproj.mdb"));
}

} // namespace

ZPermits::ZPermits(QWidget* parent)
    : QMainWindow(parent)
{
    setObjectName(QStringLiteral("ZPermits"));
    setWindowTitle(QStringLiteral(" Projects"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    session().ScreenCode = CaseScreenCode;
    m_map.fill(store::Table::PBPROJ);
    m_form = new CaseForm(m_map, this);

    auto* central = new QWidget(this);
    auto* outer = new QHBoxLayout(central);
    outer->addWidget(buildLeftPane());

    auto* right = new QVBoxLayout;
    m_tabs = new QTabWidget(central);
    m_tabs->setObjectName(QStringLiteral("SSTab1"));
    m_caseTab = new CaseTab(*m_form, m_tabs);
    m_projectTab = new ProjectTab(*m_form, m_tabs);
    m_structureTab = new StructureTab(*m_form, m_tabs);
    connect(m_projectTab, &ProjectTab::mapRequested, this, &ZPermits::showMap);
    // Another parcel brings its own place, or none: never the previous one's.
    connect(m_caseTab, &CaseTab::parcelReplaced, this, [this](const QString& pair) {
        m_pendingPair = pair;
        m_projectTab->showStoredPair(pair);
    });
    m_tabs->addTab(m_caseTab, QStringLiteral("Case"));
    m_tabs->addTab(m_projectTab, QStringLiteral("Project"));
    m_tabs->addTab(m_structureTab, QStringLiteral("Structure"));
    m_list = new CaseListView(central);
    m_stack = new QStackedWidget(central);
    m_stack->setObjectName(QStringLiteral("stkDetail"));
    m_stack->addWidget(m_tabs);
    m_stack->addWidget(m_list);

    auto* banner = new QHBoxLayout;
    m_void = new QLabel(QStringLiteral("V  O  I  D"), central);
    m_void->setObjectName(QStringLiteral("lblVoid"));
    m_void->setStyleSheet(QStringLiteral("QLabel { color: #c00000; font-size: 18pt; font-weight: bold; }"));
    // The banner keeps its room when hidden: nothing below it moves.
    QSizePolicy bannerPolicy = m_void->sizePolicy();
    bannerPolicy.setRetainSizeWhenHidden(true);
    m_void->setSizePolicy(bannerPolicy);
    m_void->hide();
    m_form->setVoidLabel(m_void);
    banner->addStretch();
    banner->addWidget(m_void);
    right->addLayout(banner);
    right->addWidget(m_stack, 1);

    auto* bar = new QWidget(central);
    bar->setObjectName(QStringLiteral("fraCommands"));
    buildCommands(bar);
    right->addWidget(bar);
    outer->addLayout(right, 1);
    setCentralWidget(central);

    buildMenus();
    buildKeys();
    registerModes();
    // The administrator's hidden command: Control+U brings it into view.
    m_delete.attach(*this, button(QStringLiteral("iDelete")));
    m_record = std::make_unique<ui::RecordCommands>(*this, &m_nav, windowTitle(),
        ui::RecordHooks{
            [this] { return m_mode; },
            [this] { return hasRow() && !rowUnreadable(); },
            [this](bool locked) { lock(locked); },
            [this](RecordMode mode) { enterMode(mode); },
            [this] { IAdd(); },
            [this] { ISave(); },
            [this] { ICancel(); },
            [this] {
                const QString number = m_form->boxText(CaseNumberBox).trimmed();
                return m_mode == RecordMode::New ? QStringLiteral("The new case ") + number
                                                 : QStringLiteral("Case ") + number;
            },
        });

    connect(m_tabs, &QTabWidget::currentChanged, this,
        [this](int index) { setCommandShown(QStringLiteral("iBrowse"), index == 0); });
    connect(m_list, &CaseListView::picked, this, &ZPermits::pickFromList);
    connect(m_list, &CaseListView::opened, this, [this](const QString& caseNumber) {
        pickFromList(caseNumber);
        if (m_listShowing && !caseNumber.isEmpty()) {
            iBrowse();
        }
    });
    connect(m_list, &CaseListView::sorted, this, &ZPermits::listSorted);

    resize(1040, 740);
    loadMapProviders();
    openTable();
    applyUserRights();

    // Every letter, from whatever screen, is filled last from the case shown
    // and goes to the case's contact.
    documents::registerPlugVars(documents::ScreenCodes::Case, [this](QTextDocument& buffer) { PlugVars(buffer); });
    documents::registerLetterContact([this] {
        return std::make_pair(boxOfColumn(QStringLiteral("PBCONTACTNAME1")),
                              boxOfColumn(QStringLiteral("PBCONTACTADDR1")));
    });
    // The notepad's insert commands take the case shown.
    documents::registerCaseTexts([this] {
        if (!hasRow()) {
            return documents::CaseTexts{};
        }
        return documents::CaseTexts{m_published.sblAndLocation, m_published.ownerAndAddress,
                                    m_published.description};
    });
}

QString ZPermits::boxOfColumn(const QString& column) const
{
    for (int i = 1; i <= m_map.count(); ++i) {
        if (m_map.place(i).name == column && m_map.place(i).box > 0) {
            return m_form->boxText(m_map.place(i).box);
        }
    }
    return {};
}

void ZPermits::PlugVars(QTextDocument& buffer)
{
    documents::FixedWords words;
    if (hasRow()) {
        words = caseFixedWords(*m_rows);
    }
    words.caseNumber = m_form->boxText(CaseNumberBox).trimmed();
    words.statusWord = m_published.statusWord;
    if (!hasRow()) {
        documents::plugFixedWords(buffer, documents::ScreenCodes::Case, words);
        return;
    }
    plugCaseValues(buffer, *m_rows, words);
}

void ZPermits::printApplicationDetail()
{
    if (!hasRow() || rowUnreadable()) {
        return;
    }
    documents::mergeAndPrint(QDir(session().FormsFolder).filePath(caseDetailTemplate()), CaseScreenCode,
                            documents::SplitAddress(boxOfColumn(QStringLiteral("PBAPPNAME1")),
                                                    boxOfColumn(QStringLiteral("PBAPPADDR1"))),
                            QStringLiteral("applicant"), QStringLiteral("Application Detail"),
                            documents::EmptyLines::DropEmpty);
}

namespace {

const QStringList& caseReportTypes()
{
    static const QStringList types{QStringLiteral("Application Detail"), QStringLiteral("Label for Mailing")};
    return types;
}

// The captions of the letters of 0custom.txt that the print dialog offers.
QStringList officeLetters(int screenCode)
{
    const documents::FormDefinitions custom = documents::readFormDefinitions(
        QDir(session().FormsFolder).filePath(documents::customFileName(screenCode)));
    return documents::makeReportList(caseReportTypes(), custom.entries).mid(caseReportTypes().size());
}

} // namespace

void ZPermits::printCurrentProject()
{
    if (officeLetters(CaseScreenCode).isEmpty()) {
        printApplicationDetail();
    } else {
        doprint(QStringLiteral("Application Detail"));
    }
}

void ZPermits::doprint(const QString& preselected)
{
    if (!hasRow() || rowUnreadable()) {
        return;
    }
    session().ScreenCode = CaseScreenCode;
    const documents::PrintChoice choice = documents::doprint(CaseScreenCode, caseReportTypes(), this, preselected);
    if (!choice.chosen || !choice.customFile.isEmpty()) {
        return;
    }
    const QString code = documents::choiceCode(choice.choice);
    if (code == QLatin1String("APP")) {
        printApplicationDetail();
    } else if (code == QLatin1String("LAB")) {
        // The mailing label goes to the owner of the parcel.
        documents::labelState().single = false;
        documents::printMailingLabels({documents::SplitAddress(boxOfColumn(QStringLiteral("PBOWNRNAME1")),
                                                               boxOfColumn(QStringLiteral("PBOWNRADDR1")))},
                                      this);
    }
}

void ZPermits::refreshLetterEntries()
{
    for (QAction* entry : std::as_const(m_letterEntries)) {
        m_reportsMenu->removeAction(entry);
        delete entry;
    }
    m_letterEntries.clear();
    const QStringList letters = officeLetters(CaseScreenCode);
    if (letters.isEmpty()) {
        return;
    }
    m_letterEntries << m_reportsMenu->addSeparator();
    for (qsizetype i = 0; i < letters.size(); ++i) {
        const QString caption = letters.at(i);
        QAction* entry = m_reportsMenu->addAction(caption);
        entry->setObjectName(QStringLiteral("customLetter%1").arg(i + 1));
        connect(entry, &QAction::triggered, this, [this, caption] { doprint(caption); });
        m_letterEntries << entry;
    }
}

ZPermits::~ZPermits()
{
    documents::unregisterPlugVars(documents::ScreenCodes::Case);
    documents::unregisterLetterContact();
    documents::unregisterCaseTexts();
}

ui::XPButton* ZPermits::addButton(
    const QString& name, const QString& caption, const QString& toolTip, QWidget* parent)
{
    auto* command = new ui::XPButton(name, caption, toolTip, parent);
    m_buttons.insert(name, command);
    return command;
}

QWidget* ZPermits::buildLeftPane()
{
    auto* pane = new QWidget(this);
    pane->setObjectName(QStringLiteral("fraLeft"));
    auto* layout = new QVBoxLayout(pane);
    layout->setContentsMargins(0, 0, 0, 0);
    for (const LeftPaneEntry& entry : LeftPane) {
        const QString screen = QString::fromLatin1(entry.screen);
        const QString caption = QString::fromLatin1(entry.caption);
        auto* command = addButton(QString::fromLatin1(entry.button), caption, QString(), pane);
        layout->addWidget(command);
        connect(command, &QPushButton::clicked, this,
            [this, screen, caption] { leftPaneButton(screen, caption); });
    }
    layout->addStretch();
    auto* erase
        = addButton(QStringLiteral("iDelete"), QStringLiteral("Delete"), QStringLiteral(" Delete "), pane);
    layout->addWidget(erase);
    connect(erase, &QPushButton::clicked, this, &ZPermits::iDelete);
    pane->setFixedWidth(140);
    return pane;
}

void ZPermits::buildCommands(QWidget* bar)
{
    auto* layout = new QVBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* moves = new QHBoxLayout;
    auto* first
        = addButton(QStringLiteral("IMoveFirst"), QStringLiteral("|<"), QStringLiteral(" First "), bar);
    auto* previous
        = addButton(QStringLiteral("IMovePrev"), QStringLiteral("<"), QStringLiteral(" Previous "), bar);
    m_position = new QLabel(bar);
    m_position->setObjectName(QStringLiteral("recpos"));
    m_position->setAlignment(Qt::AlignCenter);
    m_position->setMinimumWidth(180);
    auto* next = addButton(QStringLiteral("IMoveNext"), QStringLiteral(">"), QStringLiteral(" Next "), bar);
    auto* last = addButton(QStringLiteral("IMoveLast"), QStringLiteral(">|"), QStringLiteral(" Last "), bar);
    moves->addStretch();
    for (QWidget* widget : {static_cast<QWidget*>(first), static_cast<QWidget*>(previous),
             static_cast<QWidget*>(m_position), static_cast<QWidget*>(next), static_cast<QWidget*>(last)}) {
        moves->addWidget(widget);
    }
    moves->addStretch();
    connect(first, &QPushButton::clicked, this, &ZPermits::moveFirst);
    connect(previous, &QPushButton::clicked, this, &ZPermits::movePrevious);
    connect(next, &QPushButton::clicked, this, &ZPermits::moveNext);
    connect(last, &QPushButton::clicked, this, &ZPermits::moveLast);

    struct Command
    {
        const char* name;
        const char* caption;
        const char* tip;
        void (ZPermits::*run)();
    };
    const Command commands[] = {
        {"INew", "New", " Add a New Record to the Database", &ZPermits::INew},
        {"IAdd", "Add", " Add the current screen to the database ", &ZPermits::IAdd},
        {"IEdit", "Edit", " Edit the current record ", &ZPermits::IEdit},
        {"ISave", "Save", " Save Changes to this record ", &ZPermits::ISave},
        {"ICancel", "Cancel", " Cancel ", &ZPermits::ICancel},
        {"ILocate", "&Locate", " Find a certain Record ", &ZPermits::ILocate},
        {"iBrowse", "List", " List / Detail ", &ZPermits::iBrowse},
        {"iReset", "Reset", " Reread the entire database", &ZPermits::iReset},
        {"iNote", "Notes", " Notepad", &ZPermits::iNote},
        {"recinfod", "Info", " Record Info ", &ZPermits::recinfod},
        {"iPrint", "Print", " Print Current Project", &ZPermits::printCurrentProject},
        {"IDoc", "Docs", " Documents ", nullptr},
        {"IPic", "Pictures", " Pictures ", nullptr},
        {"mexit", "Exit", " Exit", nullptr},
    };
    auto* row = new QHBoxLayout;
    for (const Command& command : commands) {
        auto* widget = addButton(QString::fromLatin1(command.name), QString::fromLatin1(command.caption),
            QString::fromLatin1(command.tip), bar);
        row->addWidget(widget);
        if (command.run) {
            connect(widget, &QPushButton::clicked, this, command.run);
        }
    }
    // A hidden command keeps its place, so that the others never move when
    // the mode, the list or the user's rights hide some.
    for (QWidget* widget : bar->findChildren<QWidget*>()) {
        QSizePolicy policy = widget->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        widget->setSizePolicy(policy);
    }
    button(QStringLiteral("iReset"))->hide();
    connect(button(QStringLiteral("mexit")), &QPushButton::clicked, this, &QWidget::close);
    // The documents and the pictures come with their own screens.
    connect(button(QStringLiteral("IDoc")), &QPushButton::clicked, this,
        [] { ui::showNotAvailable(QStringLiteral("Documents")); });
    connect(button(QStringLiteral("IPic")), &QPushButton::clicked, this,
        [] { ui::showNotAvailable(QStringLiteral("Pictures")); });
    layout->addLayout(moves);
    layout->addLayout(row);
}

void ZPermits::buildMenus()
{
    auto addAction = [this](QMenu* menu, const char* name, const char* caption) {
        QAction* action = menu->addAction(QString::fromLatin1(caption));
        action->setObjectName(QString::fromLatin1(name));
        m_actions.insert(action->objectName(), action);
        return action;
    };
    m_fileMenu = menuBar()->addMenu(QStringLiteral("&File"));
    m_fileMenu->setObjectName(QStringLiteral("mnuFile"));
    connect(addAction(m_fileMenu, "newr", "&New Record"), &QAction::triggered, this, &ZPermits::INew);
    connect(addAction(m_fileMenu, "addr", "&Add Record"), &QAction::triggered, this, &ZPermits::IAdd);
    connect(addAction(m_fileMenu, "saver", "&Save Changes"), &QAction::triggered, this, &ZPermits::ISave);
    connect(addAction(m_fileMenu, "find", "&Locate - Search"), &QAction::triggered, this, &ZPermits::ILocate);
    m_fileMenu->addSeparator();
    QAction* voiding = addAction(m_fileMenu, "delr", "&Void Record");
    voiding->setToolTip(caseDeleteHint());
    m_fileMenu->setToolTipsVisible(true);
    connect(voiding, &QAction::triggered, this, &ZPermits::voidRecord);
    connect(addAction(m_fileMenu, "doprint", "&Print.."), &QAction::triggered, this, [this] { doprint(); });
    // The money receipt opens through the same opener as the sub-record screens.
    connect(addAction(m_fileMenu, "printreceipt", "Print Receipt"), &QAction::triggered, this, [this] {
        if (rowUnreadable()) {
            return;
        }
        if (m_opener) {
            m_opener(QStringLiteral("receipt"), *this);
        } else {
            ui::showNotAvailable(QStringLiteral("Print Receipt"));
        }
    });
    m_fileMenu->addSeparator();
    connect(addAction(m_fileMenu, "Quit", "&Exit Cases"), &QAction::triggered, this, &QWidget::close);

    // The listings of the office; they print from the report window.
    m_reportsMenu = menuBar()->addMenu(QStringLiteral("&Reports"));
    m_reportsMenu->setObjectName(QStringLiteral("mnuReports"));
    connect(addAction(m_reportsMenu, "monthlynumber", "Application by Month"), &QAction::triggered, this,
        &ZPermits::applicationsByMonth);
    connect(addAction(m_reportsMenu, "exppermits", "Report of Project Status.."), &QAction::triggered, this,
        &ZPermits::projectStatus);
    connect(addAction(m_reportsMenu, "expiringsoon", "Report of Active Application"), &QAction::triggered, this,
        &ZPermits::activeApplications);
    connect(addAction(m_reportsMenu, "lettersofexppermits", "Print Labels for Anticipated Expiring Zoning Permits"),
        &QAction::triggered, this, &ZPermits::labexpexpired);
    connect(addAction(m_reportsMenu, "reportfu", "Report of Application Status"), &QAction::triggered, this,
        [] { ui::showNotAvailable(QStringLiteral("Report of Application Status")); });
    // One case: its detail page and the office's letters, as from the Print
    // button.
    m_reportsMenu->addSeparator();
    connect(addAction(m_reportsMenu, "rptprint", "&Print Current Project.."), &QAction::triggered, this,
        [this] { doprint(); });
    connect(m_reportsMenu, &QMenu::aboutToShow, this, &ZPermits::refreshLetterEntries);
    refreshLetterEntries();

    m_helpMenu = menuBar()->addMenu(QStringLiteral("&Help"));
    m_helpMenu->setObjectName(QStringLiteral("mnuHelp"));
    connect(addAction(m_helpMenu, "hlpContents", "&Contents"), &QAction::triggered, this,
        [] { ui::showNotAvailable(QStringLiteral("Help")); });
    connect(addAction(m_helpMenu, "hlpKeys", "&Keys"), &QAction::triggered, this, [] {
        showMessage(caseScreenKeys(), QStringLiteral(" Keys"), PromptButtons::Ok, PromptIcon::Information);
    });
}

void ZPermits::applicationsByMonth()
{
    const ui::MonthChoice chosen = ui::chooseMonth(this);
    if (!chosen.chosen) {
        return;
    }
    runReport(applicationsByMonthQuery(chosen.month, chosen.year), QStringLiteral("Application by Month"),
        CaseReportHead{applicationsByMonthTitle(chosen.month, chosen.year), applicationsHead()}, applicationLines);
}

void ZPermits::projectStatus()
{
    const ui::DateRange range = ui::chooseDateRange(this);
    if (!range.chosen) {
        return;
    }
    runReport(projectStatusQuery(range.start, range.end, range.permitType), QStringLiteral("Project Status"),
        CaseReportHead{projectStatusTitle(range.start, range.end), statusHead()}, statusLine);
}

void ZPermits::activeApplications()
{
    runReport(activeApplicationsQuery(), QStringLiteral("Active Applications"),
        CaseReportHead{activeApplicationsTitle(todaysDate()), statusHead()}, statusLine);
}

void ZPermits::labexpexpired()
{
    if (m_mode != RecordMode::Browse && m_mode != RecordMode::Empty) {
        return;
    }
    const ui::DateRange range = ui::chooseDateRange(this);
    if (!range.chosen) {
        return;
    }
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(m_path, projectStatusQuery(range.start, range.end, range.permitType), &status);
    if (!rows) {
        showMessage(status.description + QStringLiteral("\n") + m_path, QStringLiteral(" Projects"),
            PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    const QList<documents::Addressee> owners = caseOwners(*rows);
    rows.reset();
    if (owners.isEmpty()) {
        showMessage(QStringLiteral("No records meet the criteria."), QStringLiteral(" Record(s) not Found"),
            PromptButtons::Ok, PromptIcon::Information);
        return;
    }
    documents::labelState().single = false;
    documents::printState().reportCaption = QStringLiteral("Expiring Permit Labels");
    documents::printMailingLabels(owners, this);
    documents::printState().reportCaption.clear();
}

void ZPermits::runReport(const QString& query, const QString& caption, CaseReportHead head,
    const std::function<QString(const store::Recordset&)>& lines)
{
    if (m_mode != RecordMode::Browse && m_mode != RecordMode::Empty) {
        return;
    }
    // The screen's own query and place, to come back to whatever happens.
    const QString ownQuery = m_query;
    const int position = hasRow() ? m_rows->AbsolutePosition() : 0;
    auto putBack = [this, ownQuery, position] {
        m_query = ownQuery;
        session().ScreenQuery[CaseScreenCode] = ownQuery;
        if (!readRows() || position <= 0 || !m_rows || m_rows->RecordCount() == 0) {
            return;
        }
        m_rows->MoveFirst();
        m_rows->Move(std::min(position, m_rows->RecordCount()) - 1);
        showRow();
    };
    ui::TaskFrm::open();
    session().ScreenQuery[CaseScreenCode] = query;
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(m_path, query, &status);
    if (!rows || rows->RecordCount() == 0) {
        session().ScreenQuery[CaseScreenCode] = ownQuery;
        ui::TaskFrm::close();
        if (!rows) {
            showMessage(status.description + QStringLiteral("\n") + m_path, QStringLiteral(" Projects"),
                PromptButtons::Ok, PromptIcon::Critical);
        } else {
            showMessage(QStringLiteral("No records meet the criteria."), QStringLiteral(" Record(s) not Found"),
                PromptButtons::Ok, PromptIcon::Information);
        }
        return;
    }
    documents::Editor& editor = documents::Editor::instance();
    editor.clearBuffers();
    editor.setOrigin(QString());
    editor.setTitle(caption);
    head.headPath = QDir(session().FormsFolder).filePath(head.headPath);
    head.fontSize = documents::printState().reportFontSize;
    ui::TaskFrm::setRange(rows->RecordCount());
    buildCaseReport(editor.ReportBuffer(), *rows, head, lines, [](int read) { ui::TaskFrm::step(read); });
    rows.reset();
    putBack();
    ui::TaskFrm::close();
    documents::showBuiltReport();
}

void ZPermits::buildKeys()
{
    auto key = [this](const QKeySequence& sequence, auto slot) {
        auto* shortcut = new QShortcut(sequence, this);
        shortcut->setContext(Qt::WindowShortcut);
        connect(shortcut, &QShortcut::activated, this, slot);
    };
    key(QKeySequence(Qt::CTRL | Qt::Key_F), [this] {
        if (auto* finder = findChild<QPushButton*>(QStringLiteral("finda"))) {
            finder->click();
        }
    });
    key(QKeySequence(Qt::CTRL | Qt::Key_I), [this] { recinfod(); });
    key(QKeySequence(Qt::CTRL | Qt::Key_G), [this] { loadMapProviders(); });
}

void ZPermits::registerModes()
{
    const QList<RecordMode> browseOnly{RecordMode::Browse};
    for (const char* name : {"INew"}) {
        m_commands.addButton(button(QString::fromLatin1(name)), {RecordMode::Browse, RecordMode::Empty});
    }
    m_commands.addButton(button(QStringLiteral("ILocate")), {RecordMode::Browse, RecordMode::Find});
    m_commands.addButton(button(QStringLiteral("iBrowse")), {RecordMode::Browse, RecordMode::Find});
    for (const char* name : {"IEdit", "iDelete", "IDoc", "IPic", "iNote", "recinfod", "iPrint"}) {
        m_commands.addButton(button(QString::fromLatin1(name)), browseOnly);
    }
    m_commands.addButton(button(QStringLiteral("IAdd")), {RecordMode::New});
    m_commands.addButton(button(QStringLiteral("ISave")), {RecordMode::Edit});
    m_commands.addButton(
        button(QStringLiteral("ICancel")), {RecordMode::New, RecordMode::Edit, RecordMode::Find});
    // Leaving is for a case at rest: an entry or a search ends by Add, Save
    // or Cancel first (closing the window asks about what was typed).
    m_commands.addButton(button(QStringLiteral("mexit")), {RecordMode::Browse, RecordMode::Empty});

    m_commands.addMenu(m_fileMenu, {RecordMode::Browse, RecordMode::Empty});
    m_commands.addMenu(m_reportsMenu, browseOnly);
    m_commands.addMenu(m_helpMenu, {RecordMode::Browse, RecordMode::Empty, RecordMode::Find});
    m_commands.addAction(m_actions.value(QStringLiteral("newr")), {RecordMode::Browse, RecordMode::Empty});
    m_commands.addAction(m_actions.value(QStringLiteral("Quit")), {RecordMode::Browse, RecordMode::Empty});
    m_commands.addAction(m_actions.value(QStringLiteral("addr")), {});
    m_commands.addAction(m_actions.value(QStringLiteral("saver")), {});
    for (const char* name : {"find", "delr", "doprint", "printreceipt"}) {
        m_commands.addAction(m_actions.value(QString::fromLatin1(name)), browseOnly);
    }
}

bool ZPermits::hasRow() const
{
    return m_nav.hasRow();
}

bool ZPermits::rowUnreadable() const
{
    return hasRow() && !m_rows->rowStatus().ok();
}

// Binds the screen to the case file over the whole table.
void ZPermits::openTable()
{
    session().ScreenCode = CaseScreenCode;
    m_path = caseDatabasePath();
    m_query = CaseQuery::fullQuery();
    session().DatabaseLabel = m_path;
    session().ScreenConnection[CaseScreenCode] = store::BuildConnectionString(m_path);
    session().ScreenQuery[CaseScreenCode] = m_query;
    readRows();
    lock(true);
    WaitSeconds(1);
    m_tabs->setCurrentIndex(0);
}

bool ZPermits::readRows()
{
    ui::TaskFrm::open();
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(m_path, m_query, &status);
    if (!rows) {
        ui::TaskFrm::close();
        handleStoreError(status);
        return false;
    }
    m_rows = std::move(rows);
    session().ScreenQuery[CaseScreenCode] = m_query;
    QString& hop = session().HopTarget;
    if (!hop.isEmpty()) {
        const QString target = hop;
        bool found = false;
        if (m_rows->RecordCount() > 0) {
            m_rows->MoveLast();
            m_rows->MoveFirst();
            found = m_rows->Find(QStringLiteral("[PBCASE] = ") + store::quotedText(target)).ok()
                && !m_rows->Eof();
        }
        hop.clear();
        if (!found) {
            ui::TaskFrm::close();
            showMessage(QStringLiteral("Case ") + target + QStringLiteral(" to hop, is not found.\n")
                    + QStringLiteral("Entire recordset will be displayed."),
                QStringLiteral(" Record(s) not Found"), PromptButtons::Ok, PromptIcon::Information);
            iReset();
            return true;
        }
        setCommandShown(QStringLiteral("iReset"), true);
    } else if (m_rows->RecordCount() > 0) {
        m_rows->MoveFirst();
    }
    m_list->fill(*m_rows);
    if (m_rows->RecordCount() == 0) {
        m_form->clear();
    }
    ui::TaskFrm::close();
    showRow();
    lock(true);
    enterMode(hasRow() ? RecordMode::Browse : RecordMode::Empty);
    session().StopFlag = true;
    return true;
}

void ZPermits::handleStoreError(const store::StoreStatus& status)
{
    const auto number = status.number;
    if (number == store::StoreErrorNumber::DatabaseNotFound) {
        showMessage(QStringLiteral("DB ") + session().DatabaseLabel + QStringLiteral(" not found."));
        m_rows.reset();
        m_form->clear();
        m_list->model()->setRows({});
        enterMode(RecordMode::Empty);
        redrawPosition();
        if (session().StopFlag) {
            EndProgram();
        }
        return;
    }
    if (number == store::StoreErrorNumber::BadSql || number == store::StoreErrorNumber::LostConnection) {
        if (number == store::StoreErrorNumber::BadSql) {
            showMessage(QStringLiteral("Bad SQL"));
        }
        if (m_resetting) {
            return;
        }
        m_path = caseDatabasePath();
        session().DatabaseLabel = m_path;
        session().ScreenConnection[CaseScreenCode] = store::BuildConnectionString(m_path);
        iReset();
        return;
    }
    // Anything else (a file of another program, one another workstation
    // holds too long, a full disk): say what and keep the screen as it is.
    showMessage(status.description + QStringLiteral("\n") + session().DatabaseLabel,
        QStringLiteral(" Projects"), PromptButtons::Ok, PromptIcon::Critical);
    if (!m_rows) {
        m_form->clear();
        m_list->model()->setRows({});
        enterMode(RecordMode::Empty);
    }
}

void ZPermits::showRow()
{
    // Control+U's Delete is for the case it was pressed over.
    m_delete.conceal();
    m_pendingPair.reset();
    m_projectTab->showStoredPair(hasRow() ? m_rows->text(QStringLiteral("PBGISCOORD")) : QString());
    if (hasRow()) {
        // A row the file cannot give back is damage to report, not an empty
        // case, and none of another case's values may stay on the inputs.
        if (const store::StoreStatus read = m_rows->rowStatus(); !read.ok()) {
            m_form->clear();
            m_form->blankFileDate();
            m_published = CasePublished{};
            session().CurrentCase.clear();
            redrawPosition();
            showMessage(read.description.contains(session().DatabaseLabel)
                    ? read.description
                    : read.description + QStringLiteral("\n") + session().DatabaseLabel,
                QStringLiteral(" Projects"), PromptButtons::Ok, PromptIcon::Critical);
            tellCaseChanged();
            return;
        }
        m_form->showRow(*m_rows);
        m_caseTab->resetCopies();
        // What the other screens and the letters read about this case.
        parcels::ParcelService& parcels = parcels::mdb();
        const CaseInputs in = m_form->inputs();
        m_published.caseNumber = in.caseNumber;
        m_published.statusWord = CaseStatus::statusVerbose(m_rows->text(QStringLiteral("PBSTATUS")));
        m_published.sbl = parcels.MakeSBL(in.sbl);
        m_published.sblShort = parcels.mysbl2SBL(m_published.sbl);
        m_published.sblAndLocation = (m_published.sblShort + QLatin1Char(' ') + in.siteLocation).trimmed();
        m_published.ownerAndAddress = (in.ownerName + QStringLiteral(", ") + m_form->boxText(13)).trimmed();
        m_published.description = m_form->boxText(24).trimmed();
        session().CurrentCase = in.caseNumber;
    }
    redrawPosition();
    tellCaseChanged();
}

void ZPermits::tellCaseChanged()
{
    const QString shown = m_form->boxText(CaseNumberBox).trimmed();
    if (shown != m_caseShown) {
        m_caseShown = shown;
        emit caseChanged(shown);
    }
}

void ZPermits::redrawPosition()
{
    // The mode's commands, which an unreadable row below may take away.
    m_commands.apply(m_mode);
    const bool entering = m_mode == RecordMode::New || m_mode == RecordMode::Find;
    const bool any = hasRow();
    const int position = m_nav.position();
    const bool unreadable = !entering && rowUnreadable();
    m_position->setText(m_nav.positionText(entering, unreadable));
    m_nav.enableMoves(m_buttons, m_mode == RecordMode::Browse && !m_list->isSorted());
    if (entering) {
        return;
    }
    // Nothing of an unreadable row can be changed, voided, printed or opened.
    for (const char* name : {"IEdit", "iDelete", "iNote", "recinfod", "IDoc", "IPic", "iPrint"}) {
        if (ui::XPButton* command = button(QString::fromLatin1(name)); command && unreadable) {
            command->setEnabled(false);
        }
    }
    for (const char* name : {"delr", "doprint", "printreceipt"}) {
        if (QAction* action = m_actions.value(QString::fromLatin1(name)); action && unreadable) {
            action->setEnabled(false);
        }
    }
    if (unreadable) {
        m_void->hide();
        m_list->showPosition(position);
        return;
    }
    m_void->setVisible(any && CaseStatus::isVoided(*m_rows));
    if (any) {
        m_list->showPosition(position);
        showParcelFlags();
    }
}

void ZPermits::showParcelFlags()
{
    auto* number = qobject_cast<QLineEdit*>(m_form->box(CaseNumberBox));
    if (!number) {
        return;
    }
    const auto flag = ParcelFlag::of(parcels::mdb(), parcels::mdb().MakeSBL(m_form->inputs().sbl));
    QPalette palette = m_form->plainPalette();
    if (!flag) {
        // Nothing of the case shown before may stay: its parcel's colour
        // would be read as this one's.
        number->setPalette(palette);
        number->setToolTip(ParcelFlag::notInStoreTip());
        return;
    }
    palette.setColor(QPalette::Base,
        flag->colour.isValid() ? flag->colour : QApplication::palette().color(QPalette::Button));
    number->setPalette(palette);
    number->setToolTip(flag->toolTip);
}

void ZPermits::enterMode(RecordMode mode)
{
    if (mode != RecordMode::Browse) {
        m_delete.conceal();
    }
    m_mode = mode;
    m_commands.apply(mode);
    m_form->setSearching(mode == RecordMode::Find);
    auto* locate = button(QStringLiteral("ILocate"));
    locate->setText(mode == RecordMode::Find ? QStringLiteral("Find") : QStringLiteral("&Locate"));
    locate->setDefault(mode == RecordMode::Find);
    redrawPosition();
}

void ZPermits::lock(bool locked)
{
    m_form->setLocked(locked);
    // Locked inputs of a clerk who may only read never open: they look it.
    m_form->setReadOnlyLook(locked && session().ReadOnlyUser);
}

void ZPermits::setCommandShown(const QString& name, bool shown)
{
    if (ui::XPButton* command = button(name)) {
        const bool forbidden = session().ReadOnlyUser && EntryCommands.contains(name);
        command->setVisible(shown && !forbidden);
    }
}

void ZPermits::applyUserRights()
{
    const bool readOnly = session().ReadOnlyUser;
    for (const QString& name : EntryCommands) {
        m_commands.forbid(name, readOnly);
        if (!readOnly && button(name) && !m_listShowing) {
            button(name)->show();
        }
        if (QAction* action = m_actions.value(name); action && !readOnly) {
            action->setVisible(true);
        }
    }
    m_commands.apply(m_mode);
    m_form->setReadOnlyLook(readOnly && (m_mode == RecordMode::Browse || m_mode == RecordMode::Empty));
    redrawPosition();
}

void ZPermits::activateScreen()
{
    session().ScreenCode = CaseScreenCode;
    m_map.fill(store::Table::PBPROJ);
    session().ScreenQuery[CaseScreenCode] = m_query;
    applyUserRights();
    // No sub-record screen open: the left pane is on again.
    ReleaseCaseCommands([this] {
        for (const LeftPaneEntry& entry : LeftPane) {
            button(QString::fromLatin1(entry.button))->setEnabled(true);
        }
    });
    if (!session().HopTarget.isEmpty() && m_mode != RecordMode::New && m_mode != RecordMode::Edit) {
        readRows();
    }
}

void ZPermits::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    activateScreen();
}

void ZPermits::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        activateScreen();
    }
}

void ZPermits::closeEvent(QCloseEvent* event)
{
    if (!m_record->settleUnsaved()) {
        event->ignore();
        return;
    }
    m_delete.conceal();
    event->accept();
    emit returnToDashboard();
}

// --- commands ---------------------------------------------------------------

void ZPermits::INew()
{
    if (!button(QStringLiteral("INew"))->isEnabled()) {
        return;
    }
    showDetail();
    m_nav.remember();
    lock(false);
    m_form->clear();
    m_caseTab->resetCopies();
    m_pendingPair.reset();
    m_projectTab->showStoredPair(QString());
    if (auto* number = qobject_cast<QLineEdit*>(m_form->box(CaseNumberBox))) {
        number->setPalette(m_form->plainPalette());
        number->setToolTip(ParcelFlag::caseNumberTip());
    }
    enterMode(RecordMode::New);
    m_form->setBoxText(CaseNumberBox, caseNumbering().proposeNumber());
    m_tabs->setCurrentIndex(0);
    m_form->box(CaseNumberBox)->setFocus();
    m_record->watchInputs();
}

store::StoreStatus ZPermits::fillRow(store::Recordset& row, const CaseInputs& inputs)
{
    m_form->setBoxText(CaseNumberBox, inputs.caseNumber);
    store::StoreStatus status = m_form->writeOwnColumns(row);
    if (!status.ok()) {
        return status;
    }
    if (m_pendingPair) {
        status = row.setValue(QStringLiteral("PBGISCOORD"), *m_pendingPair);
        if (!status.ok()) {
            return status;
        }
    }
    return CaseRecord::movefieldsintodb(
        m_map, row, [this](int box) { return m_form->boxText(box); }, inputs, session());
}

void ZPermits::ValidateCaseInput(bool saving)
{
    CaseChecks(*m_form, this).ValidateCaseInput(saving);
}

void ZPermits::IAdd()
{
    if (m_mode != RecordMode::New) {
        return;
    }
    if (!m_rows) {
        showMessage(QStringLiteral("DB ") + session().DatabaseLabel + QStringLiteral(" not found."));
        return;
    }
    ui::TaskFrm::open();
    ValidateCaseInput(false);
    if (session().StopFlag) {
        ui::TaskFrm::close();
        return;
    }
    CaseInputs in = m_form->inputs();
    const CaseChecks checks(*m_form, this);
    auto askDupe = [&checks] { return checks.askDupe(); };
    const store::StoreStatus status = CaseRecord::insertCase(
        *m_rows, caseNumbering(), in,
        [this](store::Recordset& row, const CaseInputs& inputs) { return fillRow(row, inputs); }, askDupe);
    ui::TaskFrm::close();
    if (!status.ok()) {
        if (status.number != store::StoreErrorNumber::DuplicateKey) {
            showMessage(
                status.description, QStringLiteral(" Projects"), PromptButtons::Ok, PromptIcon::Critical);
        }
        return;
    }
    lock(true);
    m_list->appendRow(CaseListRow::fromRow(*m_rows));
    enterMode(RecordMode::Browse);
    showRow();
}

void ZPermits::IEdit()
{
    m_record->edit();
}

void ZPermits::ISave()
{
    if (m_mode != RecordMode::Edit || !hasRow()) {
        return;
    }
    const int position = m_rows->AbsolutePosition();
    ValidateCaseInput(true);
    if (session().StopFlag) {
        ui::TaskFrm::close();
        return;
    }
    // Fees, maps and the other records are filed under the case's number:
    // a new number would leave them behind, reachable from no case.
    const QString storedNumber = m_rows->text(QStringLiteral("PBCASE"));
    if (m_form->inputs().caseNumber.trimmed() != storedNumber) {
        const QStringList filed = CaseRecord::recordsFiledUnder(session().DatabaseFolder, storedNumber);
        if (!filed.isEmpty()) {
            ui::TaskFrm::close();
            showMessage(CaseRecord::renameRefusedText(storedNumber, filed), QStringLiteral(" Projects"),
                PromptButtons::Ok, PromptIcon::Exclamation);
            return; // still editing
        }
    }
    // Voided through the status list: its earlier status is noted as the
    // File menu's void notes it, so that restoring brings it back.
    if (CaseStatus::letterOf(m_form->inputs().statusText) == QLatin1String("V")) {
        const store::StoreStatus noted = CaseRecord::rememberStatusBeforeVoid(session().DatabaseFolder,
            m_rows->text(QStringLiteral("PBCASE")), m_rows->text(QStringLiteral("PBSTATUS")));
        if (!noted.ok()) {
            ui::TaskFrm::close();
            showMessage(noted.description, QStringLiteral(" Projects"), PromptButtons::Ok, PromptIcon::Critical);
            return; // still editing
        }
    }
    const store::StoreStatus status = CaseRecord::saveCase(*m_rows, m_form->inputs(),
        [this](store::Recordset& row, const CaseInputs& inputs) { return fillRow(row, inputs); });
    if (!status.ok()) {
        ui::TaskFrm::close();
        if (status.number != store::StoreErrorNumber::DuplicateKey) {
            showMessage(
                status.description, QStringLiteral(" Projects"), PromptButtons::Ok, PromptIcon::Critical);
        }
        return; // still editing
    }
    m_list->replaceRow(position, CaseListRow::fromRow(*m_rows));
    lock(true);
    enterMode(RecordMode::Browse);
    showRow();
    ui::TaskFrm::close();
}

void ZPermits::ICancel()
{
    if (m_mode != RecordMode::New && m_mode != RecordMode::Edit && m_mode != RecordMode::Find) {
        return;
    }
    if (m_rows && m_rows->isEditing()) {
        m_rows->CancelUpdate();
    }
    lock(true);
    m_nav.returnToRemembered();
    if (hasRow()) {
        enterMode(RecordMode::Browse);
        showRow();
    } else {
        m_form->clear();
        enterMode(RecordMode::Empty);
    }
}

void ZPermits::ILocate()
{
    if (m_mode == RecordMode::Find) {
        session().StopFlag = false;
        CaseExample example;
        example.caseNumber = m_form->boxText(CaseNumberBox);
        example.box = [this](int box) { return m_form->boxText(box); };
        example.lists = m_form->searchLists();
        example.fileDateMarked = m_form->searchesFileDate();
        example.fileDate = m_form->fileDate();
        const std::optional<QString> query = CaseQuery::build(m_map, example);
        if (!query) {
            session().StopFlag = true; // nothing to look for: stay in Find
            return;
        }
        session().HopTarget.clear();
        m_lastBuilt = *query;
        // Nothing found: say so over the search as it stands, then the full
        // set comes back; the screen never shows an empty file meanwhile.
        store::StoreStatus probeStatus;
        if (auto found = store::openRecordsetAt(m_path, *query, &probeStatus); found && found->RecordCount() == 0) {
            showMessage(QStringLiteral("Unable to locate a matching record.\n")
                    + QStringLiteral("Please check info for accuracy and try again."),
                QStringLiteral(" Record not Found"), PromptButtons::Ok, PromptIcon::Critical);
            iReset();
            return;
        }
        m_query = *query;
        if (!readRows()) {
            return;
        }
        if (!m_rows || m_rows->RecordCount() == 0) {
            showMessage(QStringLiteral("Unable to locate a matching record.\n")
                    + QStringLiteral("Please check info for accuracy and try again."),
                QStringLiteral(" Record not Found"), PromptButtons::Ok, PromptIcon::Critical);
            iReset();
            return;
        }
        setCommandShown(QStringLiteral("iReset"), true);
        return;
    }
    if (m_mode != RecordMode::Browse) {
        return;
    }
    showDetail();
    m_nav.remember();
    lock(false);
    m_form->clear();
    m_caseTab->resetCopies();
    enterMode(RecordMode::Find);
    m_form->box(CaseNumberBox)->setFocus();
}

void ZPermits::iReset()
{
    m_resetting = true;
    m_query = CaseQuery::fullQuery();
    m_list->restoreOrder();
    readRows();
    lock(true);
    setCommandShown(QStringLiteral("iReset"), false);
    m_resetting = false;
    redrawPosition();
}

void ZPermits::iBrowse()
{
    m_listShowing = !m_listShowing;
    m_stack->setCurrentIndex(m_listShowing ? 1 : 0);
    button(QStringLiteral("iBrowse"))
        ->setText(m_listShowing ? QStringLiteral("Detail") : QStringLiteral("List"));
    for (const QString& name : DetailCommands) {
        setCommandShown(name, !m_listShowing);
    }
    m_position->setVisible(!m_listShowing);
}

void ZPermits::showDetail()
{
    // The inputs of a new case or of a search are typed on the tabs, never
    // under the list where the commands to leave them are hidden.
    if (m_listShowing) {
        iBrowse();
    }
}

void ZPermits::step(ui::RecordNavigation::Step step)
{
    if (m_nav.move(step)) {
        showRow();
    }
}

void ZPermits::voidRecord()
{
    if (m_mode != RecordMode::Browse || !hasRow() || rowUnreadable()) {
        return;
    }
    store::StoreStatus status;
    if (CaseStatus::isVoided(*m_rows)) {
        if (!ui::RecordCommands::confirmVoid(true)) {
            return;
        }
        const QString before = CaseRecord::statusBeforeVoid(session().DatabaseFolder, m_rows->text(QStringLiteral("PBCASE")));
        if (before.isEmpty()) {
            // Nothing says what the case was before: the clerk chooses it, and
            // the case stays voided until Save writes the choice.
            IEdit();
            if (QComboBox* list = m_form->list(QStringLiteral("Combo10"))) {
                list->setEditText(CaseStatus::placeholder());
                list->setFocus();
            }
            showMessage(QStringLiteral("The status this case had before it was voided is not on record.\n")
                    + QStringLiteral("Choose its status in the list and press Save; Cancel leaves it voided."),
                QStringLiteral(" Record Void"), PromptButtons::Ok, PromptIcon::Information);
            return;
        }
        status = CaseRecord::restoreCase(*m_rows, session().CurrentUser, before);
    } else {
        if (!ui::RecordCommands::confirmVoid(false)) {
            return;
        }
        status = CaseRecord::voidCase(*m_rows, session().CurrentUser, session().DatabaseFolder);
    }
    if (!status.ok()) {
        if (m_rows->isEditing()) {
            m_rows->CancelUpdate();
        }
        showMessage(status.description, QStringLiteral(" Projects"), PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    m_list->replaceRow(m_rows->AbsolutePosition(), CaseListRow::fromRow(*m_rows));
    showRow();
}

void ZPermits::iDelete()
{
    if (m_mode != RecordMode::Browse || !hasRow() || rowUnreadable()) {
        return;
    }
    // Records of other tables left under a deleted number would belong to
    // the next case given that number: the case goes only when they have.
    const QString caseNumber = m_rows->text(QStringLiteral("PBCASE")).trimmed();
    const QStringList filed = CaseRecord::recordsFiledUnder(session().DatabaseFolder, caseNumber);
    if (!filed.isEmpty()) {
        showMessage(CaseRecord::filedRecordsText(caseNumber, filed), CaseRecord::filedRecordsTitle(),
            PromptButtons::Ok, PromptIcon::Exclamation);
        return;
    }
    if (!ui::Delconfirm(this)) {
        return;
    }
    ui::TaskFrm::open();
    const int position = m_rows->AbsolutePosition();
    const store::StoreStatus status = CaseRecord::deleteCase(*m_rows);
    WaitSeconds(1);
    if (!status.ok()) {
        ui::TaskFrm::close();
        showMessage(status.description, QStringLiteral(" Projects"), PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    if (readRows() && hasRow()) {
        m_rows->MoveFirst();
        m_rows->Move(std::min(position, m_rows->RecordCount()) - 1);
        showRow();
    }
    ui::TaskFrm::close();
}

void ZPermits::iNote()
{
    CaseChecks(*m_form, this).iNote();
}

void ZPermits::recinfod()
{
    if (!hasRow() || rowUnreadable()) {
        return;
    }
    m_nav.showInfo(this);
}

void ZPermits::leftPaneButton(const QString& screenName, const QString& caption)
{
    if (screenName.isEmpty()) {
        ui::showNotAvailable(caption); // the parcel browser
        return;
    }
    if (screenName != QLatin1String("checklist") && (!m_rows || store::dbisempty(*m_rows))) {
        showMessage(
            QStringLiteral("You have no case or no case selected. All selections on the left pane  \n")
                + QStringLiteral("are related to the currently displayed case record."),
            QStringLiteral(" No current case "), PromptButtons::Ok, PromptIcon::Critical);
        session().StopFlag = true;
        return;
    }
    ui::TaskFrm::close();
    if (m_opener) {
        m_opener(screenName, *this);
    } else {
        ui::showNotAvailable(caption);
    }
}

void ZPermits::pickFromList(const QString& caseNumber)
{
    if (!m_rows || m_rows->RecordCount() == 0) {
        return;
    }
    if (caseNumber.isEmpty()) {
        // A line the file could not give: there is no case to show.
        showMessage(QStringLiteral("This case cannot be read: ") + session().DatabaseLabel
                + QStringLiteral(" is damaged. Restore the file from the last backup."),
            QStringLiteral(" Projects"), PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    m_rows->MoveFirst();
    if (!m_rows->Find(QStringLiteral("[PBCASE] = ") + store::quotedText(caseNumber)).ok() || m_rows->Eof()) {
        QApplication::beep();
        m_rows->MoveFirst();
    }
    showRow();
}

void ZPermits::listSorted()
{
    setCommandShown(QStringLiteral("iReset"), true);
    redrawPosition();
}

void ZPermits::loadMapProviders()
{
    QComboBox* providers = m_projectTab->mapProviders();
    providers->clear();
    for (const CaseLists::MapProvider& provider : CaseLists::loadMapProviders(session().DatabaseFolder)) {
        providers->addItem(provider.name, provider.address);
    }
}

void ZPermits::showMap()
{
    const bool newCase = m_mode == ui::RecordMode::New;
    const QString stored = m_pendingPair ? *m_pendingPair
        : (hasRow() && !newCase) ? m_rows->text(QStringLiteral("PBGISCOORD"))
                                 : QString();
    const parcels::CoordinateChoice choice = parcels::askCoordinates(stored, true, this);
    if (choice.outcome != parcels::CCalc::Store) {
        return;
    }
    const QString pair = parcels::Coordinates::storedPair(choice.latitude, choice.longitude);
    m_projectTab->showStoredPair(pair);
    // A case on file takes the pair at once; a new one, or one being
    // edited, takes it with the rest of its inputs when it is written.
    if (!newCase && m_mode != ui::RecordMode::Edit && hasRow()) {
        store::StoreStatus status = m_rows->setValue(QStringLiteral("PBGISCOORD"), pair);
        if (status.ok()) {
            status = m_rows->Update();
        }
        if (!status.ok()) {
            m_rows->CancelUpdate();
            handleStoreError(status);
        }
        return;
    }
    m_pendingPair = pair;
}

} // namespace pvardo::cases
