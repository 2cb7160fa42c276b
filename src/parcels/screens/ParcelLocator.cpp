#include "parcels/screens/ParcelLocator.h"

#include "common/PromptService.h"
#include "parcels/ParcelSearch.h"
#include "parcels/ParcelService.h"
#include "parcels/screens/ParcelListModel.h"
#include "parcels/screens/SblBoxInputs.h"
#include "store/Recordset.h"
#include "ui/XPButton.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTreeView>
#include <QVBoxLayout>

namespace pvardo::parcels {

// The shared finder ------------------------------------------------------------

LocatorDialog::LocatorDialog(const QList<ParcelListModel::Column>& columns, QWidget* parent)
    : QDialog(parent)
{
    m_model = new ParcelListModel(columns, this);
    m_list = new QTreeView(this);
    m_list->setObjectName(QStringLiteral("ListView1"));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setModel(m_model);
    m_list->header()->setStretchLastSection(true);
    connect(
        m_list, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) { choose(index.row()); });
}

LocatorDialog::~LocatorDialog() = default;

void LocatorDialog::addListAndCommands(QVBoxLayout& layout)
{
    layout.addWidget(m_list, 1);
    auto* buttons = new QHBoxLayout;
    auto* look
        = new ui::XPButton(QStringLiteral("iLook"), QStringLiteral("&Find"), QStringLiteral(" Find "), this);
    auto* take = new ui::XPButton(
        QStringLiteral("iContinue"), QStringLiteral("&Select"), QStringLiteral(" Use this parcel "), this);
    auto* cancel = new ui::XPButton(
        QStringLiteral("ICancel"), QStringLiteral("&Cancel"), QStringLiteral(" Cancel "), this);
    buttons->addWidget(look);
    buttons->addStretch();
    buttons->addWidget(take);
    buttons->addWidget(cancel);
    layout.addLayout(buttons);
    connect(look, &QPushButton::clicked, this, [this] { iLook(); });
    connect(take, &QPushButton::clicked, this, &LocatorDialog::iContinue);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

bool LocatorDialog::showQuery(const QString& databasePath, const QString& query)
{
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(databasePath, query, &status);
    if (!rows) {
        showMessage(status.description, windowTitle(), PromptButtons::Ok, PromptIcon::Critical);
        return false;
    }
    m_model->setRows(std::move(rows));
    return true;
}

void LocatorDialog::iContinue()
{
    const QModelIndex current = m_list->currentIndex();
    if (current.isValid()) {
        choose(current.row());
    }
}

std::optional<PickedParcel> LocatorDialog::run(LocatorDialog& locator)
{
    if (prompts().exec(locator) != QDialog::Accepted) {
        return std::nullopt;
    }
    return locator.picked();
}

// The store's finders ---------------------------------------------------------

ParcelLocator::ParcelLocator(Kind kind, QWidget* parent)
    : LocatorDialog(ParcelListModel::locatorColumns(), parent)
    , m_kind(kind)
{
    const bool bySbl = kind == Kind::BySbl;
    setObjectName(bySbl ? QStringLiteral("sblloc") : QStringLiteral("adloc"));
    setWindowTitle(bySbl ? QStringLiteral(" S-B-L Locator") : QStringLiteral(" Address Locator"));
    auto* layout = new QVBoxLayout(this);
    QLabel* hint = nullptr;
    if (bySbl) {
        m_boxes = new SblBoxInputs(this);
        layout->addWidget(m_boxes);
        connect(m_boxes, &SblBoxInputs::returnPressed, this, &ParcelLocator::iLook);
        hint = new QLabel(QStringLiteral("Enter SBL to locate. The locator will accept partial searches. For "
                                         "example, an entry of 1 and 1 "
                                         "for Section and Block will list all parcels beginning with the "
                                         "number 1 on the Section and Block"),
            this);
    } else {
        auto* row = new QHBoxLayout;
        row->addWidget(new QLabel(QStringLiteral("Look for:"), this));
        m_lookFor = new QLineEdit(this);
        m_lookFor->setObjectName(QStringLiteral("txtLookFor"));
        row->addWidget(m_lookFor, 1);
        layout->addLayout(row);
        connect(m_lookFor, &QLineEdit::returnPressed, this, &ParcelLocator::iLook);
        hint = new QLabel(addressHint(), this);
    }
    hint->setObjectName(QStringLiteral("lblHint"));
    hint->setWordWrap(true);
    layout->addWidget(hint);
    list().setColumnWidth(0, 130);
    list().setColumnWidth(1, 220);
    list().setColumnWidth(2, 180);
    addListAndCommands(*layout);
    resize(640, 420);
    showQuery(mdb().parcelStorePath(), ParcelQueries::all());
}

ParcelLocator::~ParcelLocator() = default;

QString ParcelLocator::addressHint()
{
    return QStringLiteral(
        "It is recommended that you be as general as possible. For example, instead of entering \"Oak Lane\" "
        "simply enter \"Oak.\" This way, was the address entered slightly differently, the program still be "
        "able to give you choices with similar");
}

void ParcelLocator::iLook()
{
    const QString query = m_kind == Kind::BySbl ? ParcelQueries::sblLocator(m_boxes->boxes())
                                                : ParcelQueries::addressLocator(m_lookFor->text().trimmed());
    if (showQuery(mdb().parcelStorePath(), query) && model().rowCount() == 0) {
        showMessage(QStringLiteral("No matching SBL found."), windowTitle(), PromptButtons::Ok,
            PromptIcon::Information);
    }
}

void ParcelLocator::choose(int row)
{
    const QString sbl = model().sblAt(row);
    ParcelService& parcels = mdb();
    if (sbl.isEmpty() || !parcels.SBLExists(sbl)) {
        return;
    }
    m_picked = {parcels.recordset()->text(QStringLiteral("SBLF")), parcels.found().association,
        parcels.found().location, parcels.found().mailing, parcels.recordset()->text(QStringLiteral("GISLINK"))};
    accept();
}

std::optional<PickedParcel> ParcelLocator::pick(Kind kind, QWidget* parent)
{
    ParcelLocator locator(kind, parent);
    return run(locator);
}

} // namespace pvardo::parcels
