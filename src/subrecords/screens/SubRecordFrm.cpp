#include "subrecords/screens/SubRecordFrm.h"

#include "cases/screens/CaseForm.h"
#include "cases/screens/ZPermits.h"
#include "common/PromptService.h"
#include "common/ScreenOpen.h"
#include "common/Session.h"
#include "common/Waiting.h"
#include "documents/FormDefinitions.h"
#include "documents/Merge.h"
#include "documents/screens/Letters.h"
#include "store/DatabaseLocation.h"
#include "subrecords/Money.h"
#include "ui/DelconfirmDialog.h"
#include "ui/NotAvailable.h"
#include "ui/TaskFrm.h"
#include "ui/XPButton.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace pvardo::subrecords {

using ui::RecordMode;

namespace {

constexpr int CaseNumberBox = 1;
constexpr int CaseProjectNameBox = 69;
constexpr int FirstSubRecordEntry = 3;
constexpr int LastSubRecordEntry = 14;

// The case screen's left pane, whose buttons the sub-record screens switch.
const char* const LeftPaneButtons[] = {"ifees", "iMeetings", "iReview", "iSEQRA", "iBonds", "iActions",
                                       "iMaps", "iWetlands", "iAdjacents", "iIssues", "iContinue"};

const QStringList EntryCommands{QStringLiteral("delr"), QStringLiteral("INew"), QStringLiteral("IAdd"),
                                QStringLiteral("IEdit"), QStringLiteral("ISave")};

QString voidedPrefix()
{
    return QStringLiteral("** VOIDED ** ");
}

QString leftPaneButtonOf(const QString& screenName)
{
    static const QHash<QString, QString> buttons{
        {QStringLiteral("feesfrm"), QStringLiteral("ifees")},       {QStringLiteral("meetingsfrm"), QStringLiteral("iMeetings")},
        {QStringLiteral("Agencyfrm"), QStringLiteral("iReview")},   {QStringLiteral("SEQRAfrm"), QStringLiteral("iSEQRA")},
        {QStringLiteral("bondsfrm"), QStringLiteral("iBonds")},     {QStringLiteral("actionfrm"), QStringLiteral("iActions")},
        {QStringLiteral("mapsfrm"), QStringLiteral("iMaps")},       {QStringLiteral("wetlfrm"), QStringLiteral("iWetlands")},
        {QStringLiteral("adjfrm"), QStringLiteral("iAdjacents")},   {QStringLiteral("issuesfrm"), QStringLiteral("iIssues")},
    };
    return buttons.value(screenName);
}

} // namespace

QString& SubRecordFrm::lastBoundCase()
{
    static QString bound;
    return bound;
}

SubRecordFrm::SubRecordFrm(const SubRecordSettings& settings, cases::ZPermits& caseScreen, QWidget* parent)
    : QMainWindow(parent)
    , m_settings(settings)
    , m_caseScreen(&caseScreen)
{
    setObjectName(settings.screenName);
    setWindowTitle(settings.caption);
    setAttribute(Qt::WA_DeleteOnClose, false);
    documents::registerPlugVars(settings.screenCode, [this](QTextDocument& buffer) { PlugVars(buffer); });
    // The screen follows the case screen the moment it shows another case.
    connect(&caseScreen, &cases::ZPermits::caseChanged, this, [this](const QString& shown) { followCase(shown); });
}

SubRecordFrm::~SubRecordFrm()
{
    documents::unregisterPlugVars(m_settings.screenCode);
    setScreenOpen(m_settings.screenCode, false);
}

ui::XPButton* SubRecordFrm::addButton(const QString& name, const QString& caption, const QString& toolTip, QWidget* parent)
{
    auto* command = new ui::XPButton(name, caption, toolTip, parent);
    m_buttons.insert(name, command);
    return command;
}

void SubRecordFrm::build()
{
    auto* central = new QWidget(this);
    auto* outer = new QVBoxLayout(central);

    auto* top = new QHBoxLayout;
    m_heading = new QLabel(central);
    m_heading->setObjectName(QStringLiteral("lblHeading"));
    m_heading->setStyleSheet(QStringLiteral("QLabel { font-weight: bold; font-size: 12pt; }"));
    m_caseLabel = new QLabel(central);
    m_caseLabel->setObjectName(QStringLiteral("lblCase"));
    m_void = new QLabel(QStringLiteral("V  O  I  D"), central);
    m_void->setObjectName(QStringLiteral("lblVoid"));
    m_void->setStyleSheet(QStringLiteral("QLabel { color: #c00000; font-size: 16pt; font-weight: bold; }"));
    m_void->hide();
    top->addWidget(m_heading, 1);
    top->addWidget(m_void);
    top->addWidget(m_caseLabel);
    outer->addLayout(top);

    auto* middle = new QHBoxLayout;
    auto* detail = new QWidget(central);
    detail->setObjectName(QStringLiteral("fraDetail"));
    buildDetail(detail);
    middle->addWidget(detail);

    m_list = new QTreeWidget(central);
    m_list->setObjectName(QStringLiteral("ListView1"));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAlternatingRowColors(true);
    QStringList headings{QStringLiteral("SEQ")};
    for (const ListColumn& column : m_settings.listColumns) {
        headings << column.heading;
    }
    m_list->setHeaderLabels(headings);
    m_list->setColumnWidth(0, 1);
    for (int i = 0; i < m_settings.listColumns.size(); ++i) {
        m_list->setColumnWidth(i + 1, m_settings.listColumns.at(i).width / 15);
        if (m_settings.listColumns.at(i).money) {
            m_list->headerItem()->setTextAlignment(i + 1, Qt::AlignRight);
        }
    }
    connect(m_list, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) { pickFromList(item); });
    middle->addWidget(m_list, 1);
    outer->addLayout(middle, 1);

    auto* bar = new QWidget(central);
    bar->setObjectName(QStringLiteral("fraCommands"));
    buildCommands(bar);
    outer->addWidget(bar);
    setCentralWidget(central);
    buildMenus();
    registerModes();

    // The administrator's hidden command: Control+U brings it into view.
    m_delete.attach(*this, m_buttons.value(QStringLiteral("iDelete")));
    m_record = std::make_unique<ui::RecordCommands>(*this, &m_nav, m_settings.caption,
        ui::RecordHooks{
            [this] { return m_mode; },
            [this] { return rowReadable(); },
            [this](bool locked) { lock(locked); },
            [this](RecordMode mode) { enterMode(mode); },
            [this] { IAdd(); },
            [this] { ISave(); },
            [this] { ICancel(); },
            [this] {
                return (m_mode == RecordMode::New ? QStringLiteral("The new record of case ")
                                                  : QStringLiteral("The record of case "))
                    + m_ownerCase;
            },
        });
    auto* info = new QShortcut(QKeySequence(QStringLiteral("Ctrl+I")), this);
    connect(info, &QShortcut::activated, this, &SubRecordFrm::recinfod);

    resize(1000, 560);
    session().ScreenCode = m_settings.screenCode;
    m_map.fill(m_settings.table);
    bind();
}

void SubRecordFrm::buildCommands(QWidget* bar)
{
    // Two rows, so that the screen fits a 1366-pixel-wide display: the record
    // commands, then the moves, the position and the rest.
    auto* rows = new QVBoxLayout(bar);
    auto* records = new QHBoxLayout;
    auto* layout = new QHBoxLayout;
    rows->addLayout(records);
    rows->addLayout(layout);
    struct Command {
        const char* name;
        const char* caption;
        const char* tip;
        void (SubRecordFrm::*run)();
    };
    const Command commands[] = {
        {"INew", "&New", " Add a New Record to the Database", &SubRecordFrm::INew},
        {"IAdd", "&Add", " Add the current screen to the database ", &SubRecordFrm::IAdd},
        {"IEdit", "&Edit", " Edit the current record ", &SubRecordFrm::IEdit},
        {"ISave", "&Save", " Save Changes to this record ", &SubRecordFrm::ISave},
        {"ICancel", "&Cancel", " Cancel ", &SubRecordFrm::ICancel},
        {"ILocate", "&Locate", " Find a certain Record ", nullptr},
        {"IMoveFirst", "|<", "", &SubRecordFrm::moveFirst},
        {"IMovePrev", "<", "", &SubRecordFrm::movePrevious},
        {"IMoveNext", ">", "", &SubRecordFrm::moveNext},
        {"IMoveLast", ">|", "", &SubRecordFrm::moveLast},
        {"iReset", "Reset", " Reread the entire database", &SubRecordFrm::iReset},
        {"iPrint", "&Print", " Print Current Record ", &SubRecordFrm::doprint},
        {"IDoc", "Docs", "", nullptr},
        {"IPic", "Pics", "", nullptr},
        {"recinfod", "Info", "", &SubRecordFrm::recinfod},
        {"iDelete", "Delete", " Delete ", &SubRecordFrm::iDelete},
        {"mexit", "E&xit", " Exit", &SubRecordFrm::mexit},
    };
    int placed = 0;
    for (const Command& command : commands) {
        auto* button = addButton(QString::fromLatin1(command.name), QString::fromLatin1(command.caption),
                                 QString::fromLatin1(command.tip), bar);
        (placed++ < 6 ? records : layout)->addWidget(button);
        if (command.run) {
            connect(button, &QPushButton::clicked, this, command.run);
        }
    }
    // The picture and document library of a record opens with the library viewer.
    for (const char* name : {"IDoc", "IPic"}) {
        connect(m_buttons.value(QString::fromLatin1(name)), &QPushButton::clicked, this,
                [] { ui::showNotAvailable(QStringLiteral("The library")); });
    }
    m_buttons.value(QStringLiteral("iReset"))->hide();
    m_position = new QLabel(bar);
    m_position->setObjectName(QStringLiteral("lblPosition"));
    records->addStretch();
    layout->insertWidget(4, m_position);
}

void SubRecordFrm::buildMenus()
{
    m_fileMenu = menuBar()->addMenu(QStringLiteral("&File"));
    m_fileMenu->setObjectName(QStringLiteral("mnuFile"));
    auto add = [this](QMenu* menu, const char* name, const QString& caption, auto run) {
        QAction* action = menu->addAction(caption);
        action->setObjectName(QString::fromLatin1(name));
        connect(action, &QAction::triggered, this, run);
        m_actions.insert(QString::fromLatin1(name), action);
        return action;
    };
    add(m_fileMenu, "delr", QStringLiteral("Void Record"), [this] { voidRecord(); });
    add(m_fileMenu, "doprint", QStringLiteral("&Print.."), [this] { doprint(); });
    add(m_fileMenu, "printreceipt", QStringLiteral("Print Receipt"), [this] {
        if (m_mode == RecordMode::Browse && rowReadable()) {
            printreceipt();
        }
    });
    m_fileMenu->addSeparator();
    add(m_fileMenu, "Quit", QStringLiteral("Quit"), [this] { mexit(); });
    m_reportsMenu = menuBar()->addMenu(QStringLiteral("&Reports"));
    m_reportsMenu->setObjectName(QStringLiteral("mnuReports"));
}

void SubRecordFrm::registerModes()
{
    const QList<RecordMode> browse{RecordMode::Browse};
    const QList<RecordMode> browseOrEmpty{RecordMode::Browse, RecordMode::Empty};
    m_commands.addButton(m_buttons.value(QStringLiteral("INew")), browseOrEmpty);
    m_commands.addButton(m_buttons.value(QStringLiteral("IEdit")), browse);
    m_commands.addButton(m_buttons.value(QStringLiteral("IAdd")), {RecordMode::New});
    m_commands.addButton(m_buttons.value(QStringLiteral("ISave")), {RecordMode::Edit});
    m_commands.addButton(m_buttons.value(QStringLiteral("ICancel")), {RecordMode::New, RecordMode::Edit});
    for (const char* name : {"iPrint", "recinfod", "IDoc", "IPic"}) {
        m_commands.addButton(m_buttons.value(QString::fromLatin1(name)), browse);
    }
    m_commands.addButton(m_buttons.value(QStringLiteral("mexit")), browseOrEmpty);
    m_commands.addMenu(m_fileMenu, browseOrEmpty);
    m_commands.addMenu(m_reportsMenu, browseOrEmpty);
    for (const char* name : {"delr", "printreceipt"}) {
        m_commands.addAction(m_actions.value(QString::fromLatin1(name)), browse);
    }
    // A listing of a case without rows says so on paper.
    m_commands.addAction(m_actions.value(QStringLiteral("doprint")), browseOrEmpty);
    m_commands.addAction(m_actions.value(QStringLiteral("Quit")), browseOrEmpty);
}

void SubRecordFrm::addBox(int box, QLineEdit* input)
{
    m_boxes.insert(box, input);
}

QString SubRecordFrm::boxText(int box) const
{
    const QLineEdit* input = m_boxes.value(box);
    return input ? input->text() : QString();
}

void SubRecordFrm::setBoxText(int box, const QString& text)
{
    if (QLineEdit* input = m_boxes.value(box)) {
        input->setText(text);
    }
}

QString SubRecordFrm::caseColumnText(const QString& column) const
{
    if (!m_caseScreen) {
        return {};
    }
    for (const store::ColumnDef& place : store::tableDef(store::Table::PBPROJ).places) {
        if (column == QLatin1String(place.name) && place.box > 0) {
            return m_caseScreen->form().boxText(place.box);
        }
    }
    return {};
}

QString SubRecordFrm::projectName() const
{
    return m_caseScreen ? m_caseScreen->form().boxText(CaseProjectNameBox).trimmed() : QString();
}

// --- binding ----------------------------------------------------------------

void SubRecordFrm::bind()
{
    m_ownerCase = m_caseScreen ? m_caseScreen->form().boxText(CaseNumberBox).trimmed() : QString();
    lastBoundCase() = m_ownerCase;
    clearOwnInputs();
    m_path = store::databaseFile(session().DatabaseFolder, m_settings.databaseFile);
    m_query = m_settings.fullQuery(m_ownerCase);
    session().ScreenConnection[size_t(m_settings.screenCode)] = store::BuildConnectionString(m_path);
    session().ScreenQuery[size_t(m_settings.screenCode)] = m_query;
    session().DatabaseLabel = m_path;
    readRows();
    lock(true);
    m_heading->setText(projectName());
    m_caseLabel->setText(QStringLiteral("Case # ") + m_ownerCase);
}

void SubRecordFrm::activateScreen()
{
    m_saving = false;
    setScreenOpen(m_settings.screenCode, true);
    m_map.fill(m_settings.table);
    leftPaneOnly(true);
    applyUserRights();
    ui::TaskFrm::close();
    session().ScreenCode = m_settings.screenCode;
    m_heading->setText(projectName());
    m_caseLabel->setText(QStringLiteral("Case # ") + m_ownerCase);
    session().CurrentCase = m_ownerCase;
    followCase(m_caseScreen ? m_caseScreen->form().boxText(CaseNumberBox).trimmed() : m_ownerCase);
}

void SubRecordFrm::followCase(const QString& shown)
{
    if (shown.isEmpty() || (shown == m_ownerCase && lastBoundCase() == m_ownerCase)) {
        return;
    }
    if (m_mode == RecordMode::New || m_mode == RecordMode::Edit) {
        // What was typed belongs to the case it was begun for.
        const PromptAnswer answer = showMessage(
            QStringLiteral("The record you are entering for case ") + m_ownerCase
                + QStringLiteral(" is not saved yet.\nSave it to case ") + m_ownerCase
                + QStringLiteral(" before showing case ") + shown + QStringLiteral("?"),
            m_settings.caption, PromptButtons::YesNo, PromptIcon::Question);
        if (answer == PromptAnswer::Yes) {
            if (m_mode == RecordMode::New) {
                IAdd();
            } else {
                ISave();
            }
            if (m_mode == RecordMode::New || m_mode == RecordMode::Edit) {
                return; // refused: it stays on its case for the clerk to finish
            }
        } else {
            ICancel();
        }
    }
    bind();
}

void SubRecordFrm::leftPaneOnly(bool ownOnly)
{
    if (!m_caseScreen) {
        return;
    }
    const QString own = leftPaneButtonOf(m_settings.screenName);
    for (const char* name : LeftPaneButtons) {
        if (auto* button = m_caseScreen->findChild<QPushButton*>(QString::fromLatin1(name))) {
            button->setEnabled(!ownOnly || own == QLatin1String(name));
        }
    }
}

void SubRecordFrm::applyUserRights()
{
    const bool readOnly = session().UserLevel == QLatin1String("USER") || session().ReadOnlyUser;
    for (const QString& name : EntryCommands) {
        m_commands.forbid(name, readOnly);
        if (QAction* action = m_actions.value(name)) {
            action->setVisible(!readOnly);
        }
    }
    // The mode's commands, and what the row shown allows of them.
    redrawPosition();
}

void SubRecordFrm::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        activateScreen();
    }
}

void SubRecordFrm::closeEvent(QCloseEvent* event)
{
    if (!m_record->settleUnsaved()) {
        event->ignore();
        return;
    }
    m_delete.conceal();
    if (m_rows && m_rows->isEditing()) {
        m_rows->CancelUpdate();
    }
    setScreenOpen(m_settings.screenCode, false);
    event->accept();
    bool anyOpen = false;
    for (int entry = FirstSubRecordEntry; entry <= LastSubRecordEntry; ++entry) {
        anyOpen = anyOpen || isScreenOpen(entry);
    }
    if (!anyOpen) {
        leftPaneOnly(false);
    }
    if (m_caseScreen) {
        m_caseScreen->activateScreen();
    }
}

void SubRecordFrm::mexit()
{
    close();
}

// --- reading ----------------------------------------------------------------

bool SubRecordFrm::hasRow() const
{
    return m_nav.hasRow();
}

bool SubRecordFrm::rowReadable() const
{
    return hasRow() && m_rows->rowStatus().ok();
}

bool SubRecordFrm::isVoided() const
{
    return hasRow() && m_rows->text(m_settings.statusColumn) == QLatin1String("V");
}

bool SubRecordFrm::readRows()
{
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(m_path, m_query, &status);
    if (!rows) {
        handleStoreError(status);
        return false;
    }
    m_rows = std::move(rows);
    session().ScreenQuery[size_t(m_settings.screenCode)] = m_query;
    fillList();
    if (m_rows->RecordCount() > 0) {
        m_rows->MoveFirst();
    } else {
        clearInputs();
    }
    showRow();
    enterMode(hasRow() ? RecordMode::Browse : RecordMode::Empty);
    return true;
}

void SubRecordFrm::handleStoreError(const store::StoreStatus& status)
{
    m_rows.reset();
    m_list->clear();
    clearInputs();
    listStarted();
    listFinished(0);
    if (status.number == store::StoreErrorNumber::DatabaseNotFound) {
        showMessage(QStringLiteral("DB ") + m_path + QStringLiteral(" not found."));
    } else if (status.number == store::StoreErrorNumber::BadSql) {
        showMessage(QStringLiteral("Bad SQL"));
    } else {
        showMessage(status.description + QStringLiteral("\n") + m_path, m_settings.caption, PromptButtons::Ok,
                    PromptIcon::Critical);
    }
    enterMode(RecordMode::Empty);
}

void SubRecordFrm::setListRow(QTreeWidgetItem* item, const store::Recordset& row) const
{
    item->setText(0, row.text(QStringLiteral("SEQ")));
    const bool voided = row.text(m_settings.statusColumn) == QLatin1String("V");
    for (int i = 0; i < m_settings.listColumns.size(); ++i) {
        const ListColumn& column = m_settings.listColumns.at(i);
        QString text;
        if (column.money) {
            const QString stored = row.text(column.column);
            text = stored.trimmed().isEmpty() ? QStringLiteral("--").rightJustified(10, QLatin1Char(' '))
                                              : moneyText(centsOf(row.value(column.column)), 10);
            item->setTextAlignment(i + 1, Qt::AlignRight | Qt::AlignVCenter);
        } else {
            const QVariant value = row.value(column.column);
            text = value.typeId() == QMetaType::QDate ? value.toDate().toString(QStringLiteral("MM/dd/yyyy"))
                                                      : row.text(column.column);
        }
        if (voided && column.column == m_settings.descriptionColumn) {
            text = voidedPrefix() + text;
        }
        item->setText(i + 1, text);
    }
}

void SubRecordFrm::fillList()
{
    m_list->clear();
    listStarted();
    const int count = m_rows ? m_rows->RecordCount() : 0;
    if (count == 0) {
        listFinished(0);
        return;
    }
    ui::TaskFrm::open(QStringLiteral("Reading database.."));
    ui::TaskFrm::setRange(count);
    QList<QTreeWidgetItem*> items;
    items.reserve(count);
    int done = 0;
    for (m_rows->MoveFirst(); !m_rows->Eof(); m_rows->MoveNext()) {
        auto* item = new QTreeWidgetItem;
        setListRow(item, *m_rows);
        items.append(item);
        listRowAdded(*m_rows);
        ui::TaskFrm::step(++done);
    }
    m_list->addTopLevelItems(items);
    ui::TaskFrm::close();
    listFinished(count);
}

void SubRecordFrm::showRow()
{
    // Control+U's Delete is for the record it was pressed over.
    m_delete.conceal();
    if (hasRow()) {
        if (const store::StoreStatus read = m_rows->rowStatus(); !read.ok()) {
            // No value of the row shown before may stay as if it were this one's.
            clearInputs();
            redrawPosition();
            showMessage(read.description + QStringLiteral("\n") + m_path, m_settings.caption, PromptButtons::Ok,
                        PromptIcon::Critical);
            return;
        }
        store::getdata(m_map, *m_rows, [this](int box, const QString& text) { setBoxText(box, text); });
        showOwnColumns(*m_rows);
    }
    redrawPosition();
}

void SubRecordFrm::redrawPosition()
{
    // The mode's commands, which an unreadable row below may take away.
    m_commands.apply(m_mode);
    const bool any = hasRow();
    const int position = m_nav.position();
    m_position->setText(m_nav.positionText(m_mode == RecordMode::New));
    m_nav.enableMoves(m_buttons, m_mode == RecordMode::Browse);
    m_void->setVisible(m_mode != RecordMode::New && isVoided());
    // Nothing of a row the file cannot give back can be changed, voided,
    // printed or paid out on a receipt.
    if (m_mode == RecordMode::Browse && any && !rowReadable()) {
        for (const char* name : {"IEdit", "iDelete", "recinfod", "IDoc", "IPic", "iPrint"}) {
            m_buttons.value(QString::fromLatin1(name))->setEnabled(false);
        }
        for (const char* name : {"delr", "printreceipt"}) {
            m_actions.value(QString::fromLatin1(name))->setEnabled(false);
        }
        m_void->hide();
    }
    if (any && position >= 1 && position <= m_list->topLevelItemCount()) {
        QTreeWidgetItem* item = m_list->topLevelItem(position - 1);
        m_list->setCurrentItem(item);
        m_list->scrollToItem(item);
    }
}

void SubRecordFrm::enterMode(RecordMode mode)
{
    if (mode != RecordMode::Browse) {
        m_delete.conceal();
    }
    m_mode = mode;
    m_commands.apply(mode);
    redrawPosition();
}

void SubRecordFrm::lock(bool locked)
{
    for (QLineEdit* input : std::as_const(m_boxes)) {
        ui::setInputLocked(input, locked);
    }
    for (QWidget* input : std::as_const(m_otherInputs)) {
        ui::setInputLocked(input, locked);
    }
}

void SubRecordFrm::clearInputs()
{
    for (QLineEdit* input : std::as_const(m_boxes)) {
        input->clear();
    }
    clearOwnInputs();
}

void SubRecordFrm::pickFromList(QTreeWidgetItem* item)
{
    if (!item || !m_rows || m_mode == RecordMode::New || m_mode == RecordMode::Edit) {
        return;
    }
    m_rows->MoveFirst();
    if (!m_rows->Find(QStringLiteral("[SEQ] = ") + item->text(0)).ok() || m_rows->Eof()) {
        QApplication::beep();
        m_rows->MoveFirst();
    }
    showRow();
}

// --- writing ----------------------------------------------------------------

bool SubRecordFrm::check()
{
    session().StopFlag = false;
    QString missing;
    const QString line = QStringLiteral("\n");
    for (const RequiredInput& input : m_settings.required) {
        if (boxText(input.box).trimmed().isEmpty()) {
            missing += QStringLiteral("--") + input.name + line;
        }
    }
    if (missing.isEmpty()) {
        return moneyReadable();
    }
    session().StopFlag = true;
    ui::TaskFrm::close();
    showMessage(QStringLiteral("Missing: ") + missing + line + QStringLiteral("Please ensure required") + line
                    + QStringLiteral("fields are filled in correctly."),
                QStringLiteral(" Missing Information"), PromptButtons::Ok, PromptIcon::Critical);
    return false;
}

QString SubRecordFrm::captionOf(const QLineEdit* input) const
{
    for (const QLabel* label : findChildren<QLabel*>()) {
        if (label->buddy() == input) {
            return label->text();
        }
    }
    return input->objectName();
}

bool SubRecordFrm::moneyReadable()
{
    for (const store::ColumnDef& place : store::tableDef(m_settings.table).places) {
        QLineEdit* input = place.box > 0 ? m_boxes.value(place.box) : nullptr;
        const bool amount = place.kind == store::FieldKind::Money || place.kind == store::FieldKind::Number;
        if (!input || !amount || typedCents(input->text())) {
            continue;
        }
        // Nothing is written rather than a 0 the clerk never meant.
        session().StopFlag = true;
        ui::TaskFrm::close();
        showMessage(captionOf(input) + QStringLiteral(" \"") + input->text().trimmed()
                        + QStringLiteral("\" is not an amount of money.\nType it as 1250, 1,250.00 or $1,250.00."),
                    QStringLiteral(" Not an Amount"), PromptButtons::Ok, PromptIcon::Critical);
        input->setFocus();
        input->selectAll();
        return false;
    }
    return true;
}

store::StoreStatus SubRecordFrm::movefieldsintodb(store::Recordset& row)
{
    m_map.fill(m_settings.table);
    for (int place = 1; place <= m_map.count(); ++place) {
        const store::ColumnMap::Place& entry = m_map.place(place);
        if (entry.box <= 0) {
            continue;
        }
        const QString text = boxText(entry.box).trimmed();
        const int index = row.fieldIndex(entry.name);
        const store::FieldKind kind = index >= 0 ? row.fieldKind(index) : store::FieldKind::Text;
        QVariant value;
        if (kind == store::FieldKind::Money || kind == store::FieldKind::Number) {
            value = storedAmount(typedCents(text).value_or(0));
        } else {
            value = store::ColumnMap::cut(text, entry.longest);
        }
        if (store::StoreStatus status = row.setValue(entry.name, value); !status.ok()) {
            return status;
        }
    }
    return writeOwnColumns(row);
}

void SubRecordFrm::INew()
{
    if (m_mode != RecordMode::Browse && m_mode != RecordMode::Empty) {
        return;
    }
    m_nav.remember();
    lock(false);
    clearInputs();
    enterMode(RecordMode::New);
    m_void->hide();
    if (QLineEdit* first = m_boxes.value(1)) {
        first->setFocus();
    }
    m_record->watchInputs();
}

void SubRecordFrm::IAdd()
{
    if (m_mode != RecordMode::New || !m_rows) {
        return;
    }
    m_saving = false;
    session().StopFlag = false;
    inputsFinished();
    ui::TaskFrm::open();
    if (!check()) {
        return;
    }
    m_rows->AddNew();
    store::StoreStatus status = movefieldsintodb(*m_rows);
    if (status.ok()) {
        status = m_rows->Update();
    }
    if (!status.ok()) {
        m_rows->CancelUpdate();
        ui::TaskFrm::close();
        session().StopFlag = true;
        showMessage(status.description + QStringLiteral("\n") + m_path, m_settings.caption, PromptButtons::Ok,
                    PromptIcon::Critical);
        return;
    }
    const store::Bookmark added = m_rows->bookmark();
    m_rows->Requery();
    lock(true);
    fillList();
    if (!m_rows->setBookmark(added)) {
        m_rows->MoveLast();
    }
    ui::TaskFrm::close();
    enterMode(RecordMode::Browse);
    showRow();
    m_list->scrollToBottom();
}

void SubRecordFrm::IEdit()
{
    m_record->edit();
}

void SubRecordFrm::ISave()
{
    if (m_mode != RecordMode::Edit || !hasRow()) {
        return;
    }
    const int position = m_rows->AbsolutePosition();
    inputsFinished();
    m_saving = true;
    const bool complete = check();
    m_saving = false;
    ui::TaskFrm::close();
    if (!complete) {
        return;
    }
    store::StoreStatus status = movefieldsintodb(*m_rows);
    if (status.ok()) {
        status = m_rows->Update();
    }
    if (!status.ok()) {
        m_rows->CancelUpdate();
        session().StopFlag = true;
        if (status.number == store::StoreErrorNumber::DuplicateKey) {
            showMessage(QStringLiteral("A record with this key already exists."), QStringLiteral(" Duplicate Permit"),
                        PromptButtons::Ok, PromptIcon::Critical);
        } else {
            showMessage(status.description + QStringLiteral("\n") + m_path, m_settings.caption, PromptButtons::Ok,
                        PromptIcon::Critical);
        }
        return; // still editing
    }
    lock(true);
    // The list and its totals are read again, so they show the saved row.
    fillList();
    m_rows->MoveFirst();
    m_rows->Move(position - 1);
    enterMode(RecordMode::Browse);
    showRow();
}

void SubRecordFrm::ICancel()
{
    if (m_mode != RecordMode::New && m_mode != RecordMode::Edit) {
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
        clearInputs();
        enterMode(RecordMode::Empty);
    }
}

void SubRecordFrm::voidRecord()
{
    if (m_mode != RecordMode::Browse || !rowReadable()) {
        return;
    }
    const bool restoring = isVoided();
    if (!ui::RecordCommands::confirmVoid(restoring)) {
        return;
    }
    const store::Bookmark mark = m_rows->bookmark();
    // A restored row is active again, as every write of the screen makes it.
    store::StoreStatus status
        = m_rows->setValue(m_settings.statusColumn, restoring ? QStringLiteral("A") : QStringLiteral("V"));
    if (status.ok()) {
        status = store::stampRow(*m_rows, session().CurrentUser);
    }
    if (status.ok()) {
        status = m_rows->Update();
    }
    if (!status.ok()) {
        m_rows->CancelUpdate();
        showMessage(status.description + QStringLiteral("\n") + m_path, m_settings.caption, PromptButtons::Ok,
                    PromptIcon::Critical);
        return;
    }
    fillList();
    if (!m_rows->setBookmark(mark)) {
        m_rows->MoveFirst();
    }
    showRow();
}

void SubRecordFrm::iDelete()
{
    if (m_mode != RecordMode::Browse || !hasRow() || !ui::Delconfirm(this)) {
        return;
    }
    ui::TaskFrm::open();
    const int position = m_rows->AbsolutePosition();
    const store::StoreStatus status = m_rows->Delete();
    if (!status.ok()) {
        ui::TaskFrm::close();
        showMessage(status.description + QStringLiteral("\n") + m_path, m_settings.caption, PromptButtons::Ok,
                    PromptIcon::Critical);
        return;
    }
    WaitSeconds(1);
    m_rows->Requery();
    fillList();
    if (m_rows->RecordCount() > 0) {
        m_rows->MoveFirst();
        m_rows->Move(std::min(position, m_rows->RecordCount()) - 1);
    } else {
        clearInputs();
    }
    ui::TaskFrm::close();
    enterMode(hasRow() ? RecordMode::Browse : RecordMode::Empty);
    showRow();
}

void SubRecordFrm::iReset()
{
    m_query = m_settings.fullQuery(m_ownerCase);
    readRows();
    lock(true);
    m_buttons.value(QStringLiteral("iReset"))->hide();
}

void SubRecordFrm::recinfod()
{
    if (rowReadable()) {
        m_nav.showInfo(this);
    }
}

void SubRecordFrm::doprint()
{
    if (m_mode != RecordMode::Browse && m_mode != RecordMode::Empty) {
        return;
    }
    session().ScreenCode = m_settings.screenCode;
    const documents::PrintChoice choice = documents::doprint(m_settings.screenCode, m_settings.reportTypes, this);
    if (!choice.chosen || !choice.customFile.isEmpty()) {
        return;
    }
    printChoice(documents::choiceCode(choice.choice));
}

void SubRecordFrm::PlugVars(QTextDocument& buffer)
{
    if (!hasRow()) {
        return;
    }
    documents::plugColumns(buffer, documents::columnValuesOf(*m_rows, store::tableDef(m_settings.table).places));
}

// --- moves ------------------------------------------------------------------

void SubRecordFrm::step(ui::RecordNavigation::Step step)
{
    if (m_nav.move(step)) {
        showRow();
    }
}

} // namespace pvardo::subrecords
