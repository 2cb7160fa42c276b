#include "parcels/screens/SblFrm.h"

#include "common/DateText.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "documents/Listing.h"
#include "documents/PrintState.h"
#include "documents/screens/Editor.h"
#include "documents/screens/Letters.h"
#include "parcels/ParcelSearch.h"
#include "parcels/ParcelService.h"
#include "parcels/screens/ParcelEditors.h"
#include "parcels/screens/ParcelListModel.h"
#include "parcels/screens/RollScreens.h"
#include "parcels/screens/SblBoxInputs.h"
#include "store/Recordset.h"
#include "ui/DelconfirmDialog.h"
#include "ui/PostitDialog.h"
#include "ui/XPButton.h"

#include <QAction>
#include <QDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QTimer>
#include <QTreeView>
#include <QVBoxLayout>

namespace pvardo::parcels {

namespace {

enum Flag { FlagOther, FlagFailed, FlagViol, FlagComplaint };

// A column of the printed list: the text cut to leave one blank before the next.
QString padded(const QString& text, int width)
{
    return PadColumn(text, width - 1) + QLatin1Char(' ');
}

QString selectFirstMessage()
{
    return QStringLiteral("You must click and highlight a parcel\nfirst before you can edit it.");
}

} // namespace

SblFrm::SblFrm(QWidget* parent)
    : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("sblfrm"));
    setWindowTitle(QStringLiteral(" S-B-L Repository"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    auto* layout = new QVBoxLayout(this);

    auto* search = new QGridLayout;
    m_boxes = new SblBoxInputs(this);
    search->addWidget(m_boxes, 0, 0, 1, 4);
    auto field = [&](const char* name, const char* caption, int row, int column) {
        auto* input = new QLineEdit(this);
        input->setObjectName(QLatin1String(name));
        search->addWidget(new QLabel(QString::fromLatin1(caption), this), row, column);
        search->addWidget(input, row, column + 1);
        connect(input, &QLineEdit::returnPressed, this, &SblFrm::ILocate);
        return input;
    };
    m_owner = field("txtOwner", "Owner:", 1, 0);
    m_notes = field("txtNotes", "Notes/Historical:", 1, 2);
    m_permit = field("txtPermit", "Permit:", 2, 0);
    m_location = field("txtLocation", "Location:", 2, 2);
    connect(m_boxes, &SblBoxInputs::returnPressed, this, &SblFrm::ILocate);
    layout->addLayout(search);

    m_model = new ParcelListModel(ParcelListModel::browserColumns(), this);
    // Said after the list has drawn, once a listing.
    m_model->setUnreadableHandler([this](const QString& description) {
        QTimer::singleShot(0, this, [this, description] {
            showMessage(description, windowTitle(), PromptButtons::Ok, PromptIcon::Critical);
        });
    });
    m_list = new QTreeView(this);
    m_list->setObjectName(QStringLiteral("ListView1"));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAlternatingRowColors(true);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setModel(m_model);
    m_list->header()->setStretchLastSection(true);
    // Widths for what the columns hold (a store of any size is never
    // measured row by row): the written S-B-L, a name, an address, a permit.
    const int widths[] = {140, 230, 260, 90};
    for (int column = 0; column < 4; ++column) {
        m_list->setColumnWidth(column, widths[column]);
    }
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    layout->addWidget(m_list, 1);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &SblFrm::rowSelected);
    connect(m_list, &QTreeView::doubleClicked, this, &SblFrm::iEdit);

    auto* count = new QHBoxLayout;
    count->addWidget(new QLabel(QStringLiteral("Total SBL's:"), this));
    m_total = new QLabel(this);
    m_total->setObjectName(QStringLiteral("lblTotal"));
    count->addWidget(m_total);
    count->addStretch();
    layout->addLayout(count);

    auto* bar = new QHBoxLayout;
    struct Command
    {
        const char* name;
        const char* caption;
        const char* tip;
        void (SblFrm::*run)();
    };
    const Command commands[] = {
        {"ILocate", "&Locate", " Find a certain Record ", &SblFrm::ILocate},
        {"iLook", "&New Search", " Find Specific SBL  : empties the search boxes for a new search ",
            &SblFrm::iLook},
        {"iReset", "&All", "Full Database Set", &SblFrm::iReset},
        {"IAdd", "A&dd", " Add a new S-B-L  ", &SblFrm::IAdd},
        {"iEdit", "&Edit", " Add a new S-B-L  ", &SblFrm::iEdit},
        {"iDelete", "Delete", " Delete ", &SblFrm::iDelete},
        {"iNote", "&Note", " Notepad ", &SblFrm::iNote},
        {"iXREF", "&X-Ref", " SBL Cross Referencer ", &SblFrm::iXREF},
        {"iPrint", "&Print", " Print ", &SblFrm::iPrint},
        {"Import", "&Import", " Import ", nullptr},
        {"recinfod", "&Info", " Record Info ", &SblFrm::recinfod},
        {"iContinue", "E&xit", " Exit S-B-L Repository ", &SblFrm::iContinue},
    };
    for (const Command& command : commands) {
        auto* button = new ui::XPButton(QLatin1String(command.name), QString::fromLatin1(command.caption),
            QString::fromLatin1(command.tip), this);
        bar->addWidget(button);
        m_buttons.insert(QLatin1String(command.name), button);
        if (command.run) {
            connect(button, &QPushButton::clicked, this, command.run);
        }
    }
    connect(m_buttons.value(QStringLiteral("Import")), &QPushButton::clicked, this, [this] {
        updateparcel(this);
        resetdb();
    });
    bar->addStretch();
    layout->addLayout(bar);
    const Session& state = session();
    m_buttons.value(QStringLiteral("iDelete"))
        ->setVisible(state.IsAdmin || state.UserLevel == QLatin1String("ADMIN"));

    m_rowMenu = new QMenu(this);
    m_rowMenu->setObjectName(QStringLiteral("maction"));
    const Command menu[] = {
        {"fother", "Flag Other", "", &SblFrm::fother},
        {"ffailed", "Flag Failed", "", &SblFrm::ffailed},
        {"fViol", "Flag Violation", "", &SblFrm::fViol},
        {"fcomplaint", "Flag Complaint", "", &SblFrm::fcomplaint},
        {"clearit", "Clear Flag", "", &SblFrm::clearit},
        {"Command1", "Change SBL", "", &SblFrm::iEdit},
        {"hprint", "Print", "", &SblFrm::hprint},
    };
    for (const Command& entry : menu) {
        QAction* action = m_rowMenu->addAction(QString::fromLatin1(entry.caption));
        action->setObjectName(QLatin1String(entry.name));
        connect(action, &QAction::triggered, this, entry.run);
    }
    connect(m_list, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        if (m_list->indexAt(at).isValid()) {
            m_rowMenu->popup(m_list->viewport()->mapToGlobal(at));
        }
    });

    resize(960, 560);
    resetdb();
}

SblFrm::~SblFrm() = default;

ParcelSearchFields SblFrm::searchFields() const
{
    return {m_boxes->boxes(), m_owner->text(), m_notes->text(), m_permit->text(), m_location->text()};
}

bool SblFrm::showQuery(const QString& query)
{
    ParcelService& parcels = mdb();
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(parcels.parcelStorePath(), query, &status);
    if (!rows) {
        showMessage(status.description, windowTitle(), PromptButtons::Ok, PromptIcon::Critical);
        return false;
    }
    m_model->setRows(std::move(rows));
    showCount();
    return true;
}

void SblFrm::showCount()
{
    m_total->setText(QString::number(m_model->rowCount()));
}

void SblFrm::resetdb()
{
    showQuery(ParcelQueries::all());
}

QString SblFrm::selectedSbl() const
{
    const QModelIndex current = m_list->currentIndex();
    if (!current.isValid() || !m_list->selectionModel()->isRowSelected(current.row(), {})) {
        return {};
    }
    return m_model->sblAt(current.row());
}

void SblFrm::rowSelected()
{
    const QString sbl = selectedSbl();
    if (!sbl.isEmpty()) {
        m_boxes->setBoxes(mdb().ExtractSBL(sbl));
    }
}

void SblFrm::ILocate()
{
    const QString query = ParcelQueries::locate(searchFields());
    if (query.isEmpty()) {
        return;
    }
    showQuery(query);
}

void SblFrm::iLook()
{
    m_boxes->clear();
    for (QLineEdit* field : {m_owner, m_notes, m_permit, m_location}) {
        field->clear();
    }
    m_boxes->box(2)->setFocus();
}

void SblFrm::iReset()
{
    resetdb();
}

void SblFrm::IAdd()
{
    Scan handler(this);
    prompts().exec(handler);
    resetdb();
}

void SblFrm::iEdit()
{
    const QString sbl = selectedSbl();
    if (sbl.isEmpty()) {
        showMessage(selectFirstMessage(), windowTitle(), PromptButtons::Ok, PromptIcon::Exclamation);
        return;
    }
    SBLEdit editor(sbl, this);
    if (!editor.loaded()) {
        showMessage(QStringLiteral("That S-B-L cannot be located."), windowTitle(), PromptButtons::Ok,
            PromptIcon::Critical);
        return;
    }
    if (prompts().exec(editor) == QDialog::Accepted) {
        m_model->refresh();
        showCount();
    }
}

// Why a parcel may not be deleted: the cases filed on it, or a case file
// that cannot be read; empty when nothing refers to it.
static QString keptBecause(ParcelService& parcels, const QString& sbl)
{
    const QString parcel = QStringLiteral("Parcel ") + SblParts::writtenForm(sbl);
    QStringList cases;
    const store::StoreStatus read = parcels.casesOnParcel(sbl, cases);
    if (!read.ok()) {
        return parcel + QStringLiteral(" is not deleted: the cases filed on it could not be read.\n")
            + read.description;
    }
    if (cases.isEmpty()) {
        return {};
    }
    // A parcel with a long history is named by its first cases and a count.
    constexpr int named = 20;
    QString numbers = cases.mid(0, named).join(QStringLiteral(", "));
    if (cases.size() > named) {
        numbers += QStringLiteral(" and ") + QString::number(cases.size() - named) + QStringLiteral(" more");
    }
    return parcel + QStringLiteral(" cannot be deleted: ")
        + (cases.size() == 1 ? QStringLiteral("case ") + numbers + QStringLiteral(" is filed on it.")
                             : QStringLiteral("cases ") + numbers + QStringLiteral(" are filed on it."))
        + QStringLiteral("\nA parcel stays in the SBL Repository while a case refers to it.");
}

void SblFrm::iDelete()
{
    const QString sbl = selectedSbl();
    if (sbl.isEmpty()) {
        showMessage(selectFirstMessage(), windowTitle(), PromptButtons::Ok, PromptIcon::Exclamation);
        return;
    }
    ParcelService& parcels = mdb();
    if (const QString kept = keptBecause(parcels, sbl); !kept.isEmpty()) {
        showMessage(kept, windowTitle(), PromptButtons::Ok, PromptIcon::Exclamation);
        return;
    }
    if (!ui::Delconfirm(this)) {
        return;
    }
    if (parcels.SBLExists(sbl)) {
        const store::StoreStatus status = parcels.recordset()->Delete();
        if (!status.ok()) {
            showMessage(status.description, windowTitle(), PromptButtons::Ok, PromptIcon::Critical);
        }
    }
    // The list the clerk searched for stays, less the parcel.
    m_model->refresh();
    showCount();
}

void SblFrm::iNote()
{
    ParcelService& parcels = mdb();
    const QString sbl = parcels.MakeSBL(m_boxes->boxes());
    if (!parcels.SBLExists(sbl)) {
        showMessage(QStringLiteral("The Section, Block and Lot info cannot be found.\n")
                + QStringLiteral("Please ensure the S-B-L format is followed"),
            QStringLiteral(" SBL not found"), PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    const QString note = parcels.recordset()->text(QStringLiteral("NOTES"));
    ui::PostitDialog postit(note, SblParts::writtenForm(sbl), parcels.found().association, this);
    if (note.isEmpty()) {
        postit.startEditing();
    }
    if (prompts().exec(postit) == QDialog::Accepted && postit.noteChanged()) {
        parcels.currentNote = postit.note();
        parcels.SBLUpdateColumns({{QStringLiteral("NOTES"), postit.note()}});
    }
}

void SblFrm::setFlag(int which)
{
    const QString sbl = selectedSbl();
    if (sbl.isEmpty()) {
        return;
    }
    ParcelService& parcels = mdb();
    if (!parcels.SBLExists(sbl)) {
        showMessage(QStringLiteral("That S-B-L cannot be located."), windowTitle(), PromptButtons::Ok,
            PromptIcon::Critical);
        return;
    }
    // The set writes the current note: it must be this parcel's, not one
    // left behind by another parcel's test.
    const QString note = parcels.recordset()->text(QStringLiteral("NOTES"));
    parcels.currentNote = note;
    switch (which) {
    case FlagOther:
        parcels.SBLSetOther();
        break;
    case FlagFailed:
        parcels.SBLSetFailed();
        break;
    case FlagViol:
        parcels.SBLSetViol();
        break;
    default:
        parcels.SBLSetComplaint();
        break;
    }
    ui::PostitDialog postit(note, SblParts::writtenForm(sbl), parcels.found().association, this);
    postit.startEditing();
    if (prompts().exec(postit) == QDialog::Accepted && postit.noteChanged() && parcels.SBLExists(sbl)) {
        parcels.currentNote = postit.note();
        parcels.SBLUpdateColumns({{QStringLiteral("NOTES"), postit.note()}});
    }
    m_model->refresh();
    showCount();
}

void SblFrm::fother()
{
    setFlag(FlagOther);
}

void SblFrm::ffailed()
{
    setFlag(FlagFailed);
}

void SblFrm::fViol()
{
    setFlag(FlagViol);
}

void SblFrm::fcomplaint()
{
    setFlag(FlagComplaint);
}

void SblFrm::clearit()
{
    const QString sbl = selectedSbl();
    ParcelService& parcels = mdb();
    if (sbl.isEmpty() || !parcels.SBLExists(sbl)) {
        return;
    }
    parcels.SBLClearFlag();
    m_model->refresh();
    showCount();
}

void SblFrm::iXREF()
{
    const QString sbl = selectedSbl();
    ParcelService& parcels = mdb();
    if (sbl.isEmpty() || !parcels.SBLExists(sbl)) {
        return;
    }
    const store::Recordset& row = *parcels.recordset();
    const double east = row.value(QStringLiteral("EASTCOORD")).toDouble();
    const double north = row.value(QStringLiteral("NORTHCOORD")).toDouble();
    if (east == 0 && north == 0) {
        showMessage(QStringLiteral("Subject coordinates are zero."), windowTitle());
        return;
    }
    showQuery(ParcelQueries::crossReference(east, north));
}

void SblFrm::recinfod()
{
    const QString sbl = selectedSbl();
    ParcelService& parcels = mdb();
    if (sbl.isEmpty() || !parcels.SBLExists(sbl)) {
        showMessage(selectFirstMessage(), windowTitle(), PromptButtons::Ok, PromptIcon::Exclamation);
        return;
    }
    const store::Recordset& row = *parcels.recordset();
    const QString trail = trailLines(row.text(QStringLiteral("HISTORICAL")));
    const QString notes = row.text(QStringLiteral("NOTES")).trimmed();
    QString other = QStringLiteral("Associated Permits: \n")
        + (trail.isEmpty() ? QStringLiteral(" none ") : trail) + QStringLiteral("\nAssociated Notes: ")
        + (notes.isEmpty() ? QStringLiteral(" none ") : notes);
    const QString shortForm = SblParts::writtenForm(sbl);
    const QString association = listText(row.value(QStringLiteral("ASSOC")));
    const QString location = listText(row.value(QStringLiteral("LOCN1")));
    QStringList flags;
    if (parcels.SBLHasFailed(sbl)) {
        flags << QStringLiteral("Failed inspection");
    }
    if (parcels.SBLHasOther(sbl)) {
        flags << QStringLiteral("Other flag");
    }
    if (parcels.SBLHasViol(sbl)) {
        flags << QStringLiteral("Violation");
    }
    if (!flags.isEmpty()) {
        other += QStringLiteral("\nFlags: ") + flags.join(QStringLiteral(", "));
    }

    QDialog info(this);
    info.setObjectName(QStringLiteral("addrinfo"));
    info.setWindowTitle(QStringLiteral("Related Information"));
    auto* grid = new QGridLayout(&info);
    const QPair<const char*, QString> lines[] = {
        {"SBL:", shortForm}, {"Association:", association}, {"Location:", location}, {"Other info:", other}};
    int row_ = 0;
    for (const auto& [caption, value] : lines) {
        grid->addWidget(new QLabel(QString::fromLatin1(caption), &info), row_, 0, Qt::AlignTop);
        auto* text = new QLabel(value, &info);
        text->setObjectName(
            QStringLiteral("lbl") + QString::fromLatin1(caption).chopped(1).remove(QLatin1Char(' ')));
        text->setTextInteractionFlags(Qt::TextSelectableByMouse);
        grid->addWidget(text, row_++, 1);
    }
    auto* close = new ui::XPButton(QStringLiteral("iContinue"), QStringLiteral("&Close"), QString(), &info);
    connect(close, &QPushButton::clicked, &info, &QDialog::accept);
    grid->addWidget(close, row_, 1, Qt::AlignRight);
    prompts().exec(info);
}

void SblFrm::iPrint()
{
    // With no parcel picked out, the list as it stands is what is printed.
    if (selectedSbl().isEmpty()) {
        hprint();
        return;
    }
    ParcelService& parcels = mdb();
    const QString sbl = parcels.MakeSBL(parcels.ExtractSBL(selectedSbl()));
    if (!parcels.SBLExists(sbl)) {
        showMessage(QStringLiteral("That S-B-L cannot be located."), windowTitle(), PromptButtons::Ok,
            PromptIcon::Critical);
        return;
    }
    const QString shortForm = SblParts::writtenForm(sbl);
    if (shortForm == QLatin1String("0-0-0")) {
        showMessage(QStringLiteral("That S-B-L cannot be located."), windowTitle(), PromptButtons::Ok,
            PromptIcon::Critical);
        return;
    }
    const store::Recordset& row = *parcels.recordset();
    documents::Editor& editor = documents::Editor::instance();
    editor.clearBuffers();
    editor.setOrigin(QString());
    documents::Listing listing(editor.ReportBuffer(), 10);
    listing.append(QStringLiteral("S-B-L Repository\n\n"));
    const QPair<const char*, QString> lines[]
        = {{"S-B-L:", shortForm}, {"Owner:", listText(row.value(QStringLiteral("ASSOC")))},
            {"Location:", listText(row.value(QStringLiteral("LOCN1")))},
            {"Mailing:",
                row.hasField(QStringLiteral("MAILING")) ? listText(row.value(QStringLiteral("MAILING")))
                                                        : QStringLiteral("--")},
            {"Permit:", permitText(row.value(QStringLiteral("PERMIT")))},
            {"Flag:", parcelMarkText(parcelMarkOf(row))},
            {"Permits:",
                trailLines(row.text(QStringLiteral("HISTORICAL")))
                    .replace(QLatin1Char('\n'), QStringLiteral(", "))},
            {"Notes:", row.text(QStringLiteral("NOTES"))}};
    for (const auto& [caption, value] : lines) {
        listing.append(padded(QString::fromLatin1(caption), 12) + value + QLatin1Char('\n'));
    }
    documents::showBuiltReport();
}

void SblFrm::hprint()
{
    store::Recordset* rows = m_model->rows();
    if (!rows) {
        return;
    }
    documents::Editor& editor = documents::Editor::instance();
    editor.clearBuffers();
    editor.setOrigin(QString());
    documents::Listing listing(editor.ReportBuffer(), 8);
    listing.append(QStringLiteral("S-B-L Repository\n\n"));
    listing.append(padded(QStringLiteral("S-B-L"), 20) + padded(QStringLiteral("Name"), 31)
        + padded(QStringLiteral("Location"), 41) + padded(QStringLiteral("Permit"), 13)
        + QStringLiteral("Flag\n"));
    int count = 0;
    QString lines;
    for (rows->MoveFirst(); !rows->Eof(); rows->MoveNext()) {
        const QVariant sbl = rows->value(QStringLiteral("SBLF"));
        lines += padded(sbl.isNull() ? QStringLiteral("--") : SblParts::writtenForm(sbl.toString()), 20)
            + padded(listText(rows->value(QStringLiteral("ASSOC"))), 31)
            + padded(listText(rows->value(QStringLiteral("LOCN1"))), 41)
            + padded(permitText(rows->value(QStringLiteral("PERMIT"))), 13)
            + parcelMarkText(parcelMarkOf(*rows)) + QLatin1Char('\n');
        ++count;
    }
    listing.append(lines);
    listing.append(QStringLiteral("\nTOTAL = ") + QString::number(count) + QStringLiteral("\n"));
    documents::showBuiltReport();
}

void SblFrm::iContinue()
{
    close();
}

void showParcelBrowser(QWidget* parent)
{
    static QPointer<SblFrm> browser;
    if (!browser) {
        browser = new SblFrm(parent);
        browser->setAttribute(Qt::WA_DeleteOnClose);
        // A synchronisation from the dashboard shows in the open browser.
        setParcelStoreChanged([] {
            if (browser) {
                browser->resetdb();
            }
        });
    } else {
        browser->resetdb();
    }
    browser->show();
    browser->raise();
    browser->activateWindow();
}

} // namespace pvardo::parcels
