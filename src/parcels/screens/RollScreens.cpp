#include "parcels/screens/RollScreens.h"

#include "common/Files.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "parcels/ParcelService.h"
#include "parcels/RpsFields.h"
#include "parcels/RpsRoll.h"
#include "parcels/SblSync.h"
#include "parcels/screens/ParcelListModel.h"
#include "parcels/screens/ParcelLocator.h"
#include "store/Recordset.h"
#include "store/SqlSubset.h"
#include "ui/TaskFrm.h"
#include "ui/XPButton.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QProgressBar>
#include <QScreen>
#include <QTimer>
#include <QTreeView>
#include <QVBoxLayout>
#include <cmath>

namespace pvardo::parcels {

namespace {

std::function<void()>& storeChangedListener()
{
    static std::function<void()> listener;
    return listener;
}

// The roll of the session, opened on first use and kept for the run.
std::unique_ptr<RpsRoll>& keptRoll()
{
    static std::unique_ptr<RpsRoll> roll;
    return roll;
}

RpsRoll& rps()
{
    std::unique_ptr<RpsRoll>& roll = keptRoll();
    const QString path = RpsRoll::rollPathIn(session().DatabaseFolder);
    if (!roll || roll->rollPath() != path) {
        roll = std::make_unique<RpsRoll>(path);
    }
    return *roll;
}

ParcelProgress taskProgress(const QString& title)
{
    return [title, opened = false](double percent) mutable {
        if (!opened) {
            ui::TaskFrm::open(title);
            ui::TaskFrm::setRange(100);
            opened = true;
        }
        ui::TaskFrm::step(static_cast<int>(percent));
        return true;
    };
}

} // namespace

// The import form ------------------------------------------------------------

RpsFrm::RpsFrm(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("rps"));
    setWindowTitle(QStringLiteral(" Import Tax Parcels"));
    auto* layout = new QVBoxLayout(this);
    auto* about = new QLabel(
        QStringLiteral("Import Tax Parcels is a very specific utility designed to read NYS RPS converted "
                       "text file. This file "
                       "usually identifiable with names like RPS995T1 and usually comes on a CD."),
        this);
    about->setWordWrap(true);
    layout->addWidget(about);
    auto* target = new QHBoxLayout;
    target->addWidget(new QLabel(QStringLiteral("Target SWIS (leave blank for all)"), this));
    m_target = new QLineEdit(this);
    m_target->setObjectName(QStringLiteral("txtTarget"));
    m_target->setMaxLength(6);
    target->addWidget(m_target);
    layout->addLayout(target);
    auto* custom = new QLabel(QStringLiteral("If you are not served by the NYS RPS converted text file, you "
                                             "will need to use the custom import."),
        this);
    custom->setWordWrap(true);
    layout->addWidget(custom);
    auto* buttons = new QHBoxLayout;
    auto* import = new ui::XPButton(
        QStringLiteral("iImport"), QStringLiteral("&Import.."), QStringLiteral(" Import an RPS file "), this);
    auto* own = new ui::XPButton(QStringLiteral("iCustom"), QStringLiteral("C&ustom Import.."),
        QStringLiteral(" Custom import "), this);
    auto* cancel = new ui::XPButton(
        QStringLiteral("ICancel"), QStringLiteral("&Cancel"), QStringLiteral(" Cancel "), this);
    buttons->addWidget(import);
    buttons->addWidget(own);
    buttons->addStretch();
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    connect(import, &QPushButton::clicked, this, &RpsFrm::iImport);
    connect(own, &QPushButton::clicked, this, &RpsFrm::iCustom);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void RpsFrm::iImport()
{
    QFileDialog files(this, QStringLiteral("Find Import File"));
    files.setObjectName(QStringLiteral("FindImportFile"));
    files.setNameFilter(QStringLiteral("All Files (*)"));
    files.setFileMode(QFileDialog::ExistingFile);
    files.setLabelText(QFileDialog::FileName, QStringLiteral("Locate your import file"));
    if (prompts().exec(files) != QDialog::Accepted || files.selectedFiles().isEmpty()) {
        return;
    }
    RpsImportFrm preview(files.selectedFiles().constFirst(), m_target->text().trimmed(), this);
    preview.analyse();
    // The preview ends the import either way: cancelling it is not a step
    // back to this form, which would need a second Cancel.
    if (prompts().exec(preview) == QDialog::Accepted) {
        accept();
    } else {
        reject();
    }
}

void RpsFrm::iCustom()
{
    const QString program = QDir(session().ProgramFolder).filePath(QStringLiteral("custom"));
    if (!QFileInfo(program).isExecutable()) {
        showMessage(QStringLiteral("There is no custom import module in your Vardo program.\n")
            + QStringLiteral("Contact Vardo if you need a custom import solution."));
        return;
    }
    QProcess::startDetached(program, {}, session().ProgramFolder);
}

// The preview -----------------------------------------------------------------

RpsImportFrm::RpsImportFrm(const QString& filePath, const QString& targetSwis, QWidget* parent)
    : QDialog(parent)
    , m_import(filePath, targetSwis)
{
    setObjectName(QStringLiteral("rpsimport"));
    setWindowTitle(QStringLiteral("Data Preview"));
    auto* layout = new QVBoxLayout(this);
    auto* counts = new QFormLayout;
    auto* file = new QLabel(filePath, this);
    file->setObjectName(QStringLiteral("lblFile"));
    counts->addRow(QStringLiteral("File:"), file);
    m_read = new QLabel(QStringLiteral("0"), this);
    m_read->setObjectName(QStringLiteral("lblRead"));
    counts->addRow(QStringLiteral("Records Read:"), m_read);
    m_processed = new QLabel(QStringLiteral("0"), this);
    m_processed->setObjectName(QStringLiteral("lblProcessed"));
    counts->addRow(QStringLiteral("Total Records Processed:"), m_processed);
    auto* confidence = new QHBoxLayout;
    m_confidenceBar = new QProgressBar(this);
    m_confidenceBar->setObjectName(QStringLiteral("barConfidence"));
    m_confidenceBar->setRange(0, 100);
    m_confidenceBar->setTextVisible(false);
    m_confidence = new QLabel(this);
    m_confidence->setObjectName(QStringLiteral("lblConfidence"));
    confidence->addWidget(m_confidenceBar, 1);
    confidence->addWidget(m_confidence);
    counts->addRow(QStringLiteral("Confidence Level:"), confidence);
    layout->addLayout(counts);

    auto* record = new QFormLayout;
    const char* fields[][2] = {{"txtSBL", "SBL"}, {"txtAssociation", "Association:"},
        {"txtLocation", "Location:"}, {"txtAddress", "Contact Address:"}, {"txtEast", "GRID EAST"},
        {"txtNorth", "GRID NORTH"}, {"txtSWIS", "SWIS"}};
    for (int i = 0; i < 7; ++i) {
        m_fields[i] = new QLineEdit(this);
        m_fields[i]->setObjectName(QLatin1String(fields[i][0]));
        m_fields[i]->setReadOnly(true);
        record->addRow(QString::fromLatin1(fields[i][1]), m_fields[i]);
    }
    layout->addLayout(record);
    m_onlyTarget = new QCheckBox(QStringLiteral("Import ONLY this SWIS"), this);
    m_onlyTarget->setObjectName(QStringLiteral("chkTarget"));
    m_onlyTarget->setEnabled(false);
    if (!targetSwis.isEmpty()) {
        m_onlyTarget->setChecked(true);
        m_onlyTarget->setText(QStringLiteral("Target SWIS ") + targetSwis);
    }
    layout->addWidget(m_onlyTarget);
    auto* warning = new QLabel(warningText(), this);
    warning->setWordWrap(true);
    layout->addWidget(warning);
    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("barProgress"));
    m_progress->setRange(0, 100);
    m_progress->setValue(0);
    layout->addWidget(m_progress);

    auto* buttons = new QHBoxLayout;
    auto* go = new ui::XPButton(QStringLiteral("iContinue"), QStringLiteral("&Import"),
        QStringLiteral(" Import these records "), this);
    auto* stop = new ui::XPButton(
        QStringLiteral("iStop"), QStringLiteral("&Stop"), QStringLiteral(" Stop the import "), this);
    auto* cancel = new ui::XPButton(
        QStringLiteral("ICancel"), QStringLiteral("&Cancel"), QStringLiteral(" Cancel "), this);
    stop->setEnabled(false);
    buttons->addStretch();
    buttons->addWidget(go);
    buttons->addWidget(stop);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    connect(go, &QPushButton::clicked, this, &RpsImportFrm::iContinue);
    connect(stop, &QPushButton::clicked, this, &RpsImportFrm::iStop);
    connect(cancel, &QPushButton::clicked, this, &RpsImportFrm::ICancel);
    showPreview({});
}

RpsImportFrm::~RpsImportFrm() = default;

QString RpsImportFrm::warningText()
{
    return QStringLiteral(
        "Vardo has analyzed the file you have selected and has displayed the last record it could construct "
        "sensibly. The confidence level is also displayed. A zero confidence level means that Vardo does not "
        "believe that the file is in the correct format. We do not recommend importing a file with a "
        "confidence "
        "level below 30%.");
}

void RpsImportFrm::showPreview(const RpsPreview& preview)
{
    const QString none = RpsImport::couldNotObtain();
    m_fields[0]->setText(preview.read ? preview.sbl : none);
    m_fields[1]->setText(preview.read ? preview.owner : none);
    m_fields[2]->setText(preview.read ? preview.location : none);
    m_fields[3]->setText(preview.read ? RpsFields::writtenZip(preview.mailing) : none);
    m_fields[4]->setText(preview.east);
    m_fields[5]->setText(preview.north);
    m_fields[6]->setText(preview.swis);
}

bool RpsImportFrm::showProgress(const RpsImportProgress& progress)
{
    // The screen is brought up to date, and the user's Stop heard, every few
    // hundred records: painting each one would cost more than the import.
    if (++m_steps % 256 == 0) {
        m_read->setText(QString::number(progress.recordsRead));
        m_processed->setText(QString::number(progress.processed));
        m_progress->setValue(static_cast<int>(progress.percent));
        if (progress.pass == 2) {
            ui::TaskFrm::step(static_cast<int>(progress.percent));
        }
        QCoreApplication::processEvents();
    }
    if (m_observer) {
        m_observer(progress);
    }
    return !m_stopAsked;
}

void RpsImportFrm::analyse()
{
    ui::TaskFrm::open(QStringLiteral("Analyzing File.."));
    m_running = true;
    m_result = m_import.ImportIn(
        1, nullptr, [this](const RpsImportProgress& progress) { return showProgress(progress); });
    m_running = false;
    ui::TaskFrm::close();
    m_read->setText(QString::number(m_result.processed));
    m_processed->setText(QString::number(m_result.processed));
    // Line ends are not counted as read, so a file read to its end is 100
    // only by saying so.
    m_progress->setValue(m_result.stopped ? static_cast<int>(std::floor(
                             m_result.fileBytes > 0 ? 100.0 * m_result.bytesRead / m_result.fileBytes : 0))
                                          : 100);
    m_confidence->setText(RpsImport::ConfidenceText(RpsImport::shownConfidence(m_result.confidence)));
    m_confidenceBar->setValue(static_cast<int>(std::min(100.0, m_result.confidence)));
    showPreview(m_result.preview);
    if (!m_result.message.isEmpty()) {
        showMessage(m_result.message, windowTitle(), PromptButtons::Ok, PromptIcon::Critical);
    }
    findChild<QPushButton*>(QStringLiteral("iContinue"))->setVisible(m_result.processed > 0);
}

void RpsImportFrm::iContinue()
{
    if (m_running) {
        return;
    }
    m_running = true;
    m_stopAsked = false;
    m_steps = 0;
    findChild<QPushButton*>(QStringLiteral("iContinue"))->setEnabled(false);
    findChild<QPushButton*>(QStringLiteral("ICancel"))->setEnabled(false);
    findChild<QPushButton*>(QStringLiteral("iStop"))->setEnabled(true);
    m_progress->setValue(0);
    ui::TaskFrm::open(QStringLiteral("Importing Data.."));
    ui::TaskFrm::setRange(100);
    const RpsImport::Completion completion = m_import.iContinue(rps(), session().DatabaseFolder,
        [this](const RpsImportProgress& progress) { return showProgress(progress); });
    ui::TaskFrm::close();
    m_running = false;
    m_result = completion.result;
    m_read->setText(QString::number(m_result.processed));
    m_processed->setText(QString::number(m_result.processed));
    findChild<QPushButton*>(QStringLiteral("iStop"))->setEnabled(false);
    findChild<QPushButton*>(QStringLiteral("ICancel"))->setEnabled(true);
    // Line ends are not counted as read: a whole file is 100 by saying so.
    if (completion.completed) {
        m_progress->setValue(100);
    }
    QStringList messages = completion.messages;
    if (m_result.stopped) {
        messages.prepend(QStringLiteral("Stopped. ") + QString::number(m_result.processed)
            + QStringLiteral(" records were imported; the rest of the file was not read."));
    }
    for (const QString& message : std::as_const(messages)) {
        showMessage(message, windowTitle());
    }
    if (completion.completed) {
        accept();
        return;
    }
    findChild<QPushButton*>(QStringLiteral("iContinue"))->setEnabled(true);
}

void RpsImportFrm::iStop()
{
    m_stopAsked = true;
}

void RpsImportFrm::ICancel()
{
    reject();
}

void RpsImportFrm::reject()
{
    // Closing the window, or Escape, while records go in is a Stop: the
    // rows written until then stay whole and the clerk is told how many.
    if (m_running) {
        iStop();
        return;
    }
    session().StopFlag = true;
    QDialog::reject();
}

// The roll viewer -------------------------------------------------------------

ViewRPS::ViewRPS(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("viewRPS"));
    setWindowTitle(QStringLiteral(" View Tax Parcel Import File"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Tax Parcel Database Contents"), this));
    m_model = new ParcelListModel({{QStringLiteral(" S-B-L "), QStringLiteral("RSSBL")},
                                      {QStringLiteral(" Name "), QStringLiteral("RASSOC")},
                                      {QStringLiteral(" Site "), QStringLiteral("RLOCN1")},
                                      {QStringLiteral(" Contact "), QStringLiteral("RCONTACT")},
                                      {QStringLiteral(" Address "), QStringLiteral("RADDR1"),
                                          ParcelListModel::Shows::Mailing}},
        this);
    auto* list = new QTreeView(this);
    list->setObjectName(QStringLiteral("ListView1"));
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setModel(m_model);
    // The S-B-L keeps the room of its longest form; the four texts share the
    // rest, so none runs off the window's edge and a cut one reads whole in
    // its tip.
    QHeaderView* header = list->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(QHeaderView::Stretch);
    header->setSectionResizeMode(0, QHeaderView::Interactive);
    list->setColumnWidth(0, list->fontMetrics().horizontalAdvance(QStringLiteral("0000.000-00-00.000/0000")));
    layout->addWidget(list, 1);
    m_count = new QLabel(this);
    m_count->setObjectName(QStringLiteral("lblCount"));
    layout->addWidget(m_count);
    auto* close = new ui::XPButton(
        QStringLiteral("iContinue"), QStringLiteral("&Close"), QStringLiteral(" Close "), this);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    layout->addWidget(close, 0, Qt::AlignRight);
    // Wide enough for an owner and an address side by side, within the screen.
    QSize wanted(1240, 560);
    if (const QScreen* shown = parent ? parent->screen() : QGuiApplication::primaryScreen()) {
        wanted = wanted.boundedTo(shown->availableGeometry().size() - QSize(40, 60));
    }
    resize(wanted);

    RpsRoll& roll = rps();
    store::StoreStatus status;
    std::unique_ptr<store::Recordset> rows;
    if (roll.rollExists()) {
        rows = store::openRecordsetAt(roll.rollPath(), QStringLiteral("Select * from RPS"), &status);
    }
    const int count = rows ? rows->RecordCount() : 0;
    m_count->setText(QString::number(count) + QStringLiteral(" records"));
    m_model->setRows(std::move(rows));
    m_count->setText(QString::number(count) + QStringLiteral(" entries."));
    if (!status.ok()) {
        showMessage(status.description, windowTitle(), PromptButtons::Ok, PromptIcon::Critical);
    }
}

ViewRPS::~ViewRPS() = default;

// The roll look-up -------------------------------------------------------------

RpsLoc::RpsLoc(QWidget* parent)
    // The parcel as the roll writes it, where it lies and whose it is.
    : LocatorDialog({{QStringLiteral(" S-B-L "), QStringLiteral("RSSBL")},
                        {QStringLiteral(" Location "), QStringLiteral("RLOCN1")},
                        {QStringLiteral(" Association "), QStringLiteral("RCONTACT")}},
        parent)
{
    setObjectName(QStringLiteral("rpsloc"));
    setWindowTitle(QStringLiteral(" Tax Parcel Import Locator"));
    auto* layout = new QVBoxLayout(this);
    auto* fields = new QFormLayout;
    m_location = new QLineEdit(this);
    m_location->setObjectName(QStringLiteral("txtLocation"));
    m_contact = new QLineEdit(this);
    m_contact->setObjectName(QStringLiteral("txtContact"));
    fields->addRow(QStringLiteral("Location:"), m_location);
    fields->addRow(QStringLiteral("Contact:"), m_contact);
    layout->addLayout(fields);
    connect(m_location, &QLineEdit::returnPressed, this, &RpsLoc::iLook);
    connect(m_contact, &QLineEdit::returnPressed, this, &RpsLoc::iLook);
    auto* hint = new QLabel(ParcelLocator::addressHint(), this);
    hint->setObjectName(QStringLiteral("lblHint"));
    hint->setWordWrap(true);
    layout->addWidget(hint);
    model().setKeyField(QStringLiteral("RSBLF"));
    addListAndCommands(*layout);
    resize(640, 460);
    showQuery(rps().rollPath(), QStringLiteral("Select * from RPS order by [RSBLF]"));
}

RpsLoc::~RpsLoc() = default;

void RpsLoc::iLook()
{
    QString where;
    const QString location = m_location->text().trimmed();
    const QString contact = m_contact->text().trimmed();
    if (!location.isEmpty()) {
        where += QStringLiteral("[RLOCN1] like ")
            + store::quotedText(QLatin1Char('%') + location + QLatin1Char('%')) + QStringLiteral(" AND ");
    }
    if (!contact.isEmpty()) {
        where += QStringLiteral("[RASSOC] like ")
            + store::quotedText(QLatin1Char('%') + contact + QLatin1Char('%')) + QStringLiteral(" AND ");
    }
    where.chop(5);
    const QString query = QStringLiteral("Select * from RPS")
        + (where.isEmpty() ? QString() : QStringLiteral(" where ") + where)
        + QStringLiteral(" order by [RSBLF]");
    if (showQuery(rps().rollPath(), query) && model().rowCount() == 0) {
        showMessage(
            QStringLiteral("No matches found."), windowTitle(), PromptButtons::Ok, PromptIcon::Information);
    }
}

void RpsLoc::choose(int row)
{
    const QString sbl = model().sblAt(row);
    RpsRoll& roll = rps();
    if (!roll.recordset() && !roll.resetRPSsbl().ok()) {
        return;
    }
    if (sbl.isEmpty() || !roll.RPSSBLExists(sbl)) {
        return;
    }
    const RpsRow& found = roll.found();
    // The roll writes "?" for what the county's file did not give, and
    // carries no latitude and longitude: the parcel comes without a place.
    const auto valueOf = [](const QString& text) { return text == QLatin1String("?") ? QString() : text; };
    m_picked = {found.fullForm, valueOf(found.association), valueOf(found.location), valueOf(found.mailing),
        QString()};
    accept();
}

std::optional<PickedParcel> RpsLoc::pick(QWidget* parent)
{
    if (!rps().rollExists()) {
        showMessage(QStringLiteral("There are no imported tax parcels to look in. Import the roll first "
                                   "(Import Tax Parcels.. on the main screen)."),
            QStringLiteral(" Tax Parcel Import Locator"));
        return std::nullopt;
    }
    RpsLoc locator(parent);
    return run(locator);
}

// The synchronisation -----------------------------------------------------------

SyncFrm::SyncFrm(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("syncSBL"));
    setWindowTitle(QStringLiteral(" Synchronize SBL Repository"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Synchronizing SBL info.."), this));
    m_bar = new QProgressBar(this);
    m_bar->setObjectName(QStringLiteral("barProgress"));
    m_bar->setRange(0, 100);
    m_bar->setValue(0);
    layout->addWidget(m_bar);
    auto* buttons = new QHBoxLayout;
    auto* stop = new ui::XPButton(
        QStringLiteral("iStop"), QStringLiteral("&Stop"), QStringLiteral(" Stop the synchronization "), this);
    buttons->addStretch();
    buttons->addWidget(stop);
    layout->addLayout(buttons);
    connect(stop, &QPushButton::clicked, this, &SyncFrm::iStop);
    resize(420, 120);
    // The run starts as soon as the window stands.
    QTimer::singleShot(0, this, &SyncFrm::iContinue);
}

bool SyncFrm::showProgress(double percent)
{
    // Brought up to date, and the Stop heard, every few hundred rows.
    if (++m_steps % 256 == 0) {
        m_bar->setValue(static_cast<int>(percent));
        QCoreApplication::processEvents();
    }
    if (m_observer) {
        m_observer(percent);
    }
    return !m_stopAsked;
}

void SyncFrm::iContinue()
{
    if (m_running || m_done) {
        return;
    }
    m_running = true;
    RpsRoll& roll = rps();
    const int total = roll.recordset() ? roll.recordset()->RecordCount() : 0;
    const SblSync::Outcome outcome
        = SblSync::syncSBL(mdb(), roll, session(), taskProgress(QStringLiteral("Converting SBL info..")),
            [this](double percent) { return showProgress(percent); });
    ui::TaskFrm::close();
    m_running = false;
    m_done = true;
    const QString title = windowTitle();
    if (!outcome.status.ok()) {
        showMessage(outcome.status.description, title, PromptButtons::Ok, PromptIcon::Critical);
    } else if (outcome.ran && m_stopAsked && outcome.carried < total) {
        showMessage(QStringLiteral("Stopped. ") + QString::number(outcome.carried)
                + QStringLiteral(
                    " records were carried into the SBL Repository; the rest of the roll was not."),
            title);
    } else if (outcome.ran) {
        m_bar->setValue(100);
        showMessage(QStringLiteral("Completed. ") + QString::number(outcome.carried)
                + QStringLiteral(" records processed."),
            title);
    }
    if (storeChangedListener()) {
        storeChangedListener()();
    }
    accept();
}

void SyncFrm::iStop()
{
    m_stopAsked = true;
}

void SyncFrm::reject()
{
    if (m_running) {
        iStop();
        return;
    }
    QDialog::reject();
}

// Dashboard commands ----------------------------------------------------------

void updateparcel(QWidget* parent)
{
    RpsFrm form(parent);
    prompts().exec(form);
}

void viewparcel(QWidget* parent)
{
    ViewRPS viewer(parent);
    prompts().exec(viewer);
}

void syncSBL(QWidget* parent)
{
    RpsRoll& roll = rps();
    if (!roll.rollExists()) {
        showMessage(QStringLiteral("There are no imported tax parcels to synchronize."),
            QStringLiteral(" Synchronize SBL Repository"));
        return;
    }
    if (!roll.recordset()) {
        const store::StoreStatus opened = roll.resetRPSsbl();
        if (!opened.ok()) {
            showMessage(opened.description, QStringLiteral(" Synchronize SBL Repository"), PromptButtons::Ok,
                PromptIcon::Critical);
            return;
        }
    }
    // Owners and addresses of the whole store are about to be replaced: the
    // clerk is told what happens and can still say no.
    const int parcelsInRoll = roll.recordset()->RecordCount();
    const PromptAnswer answer = showMessage(QStringLiteral("The ") + QString::number(parcelsInRoll)
            + QStringLiteral(
                " parcels of the imported tax roll will be carried into the SBL Repository: owners, "
                "contacts, locations, mailing addresses and grid coordinates there are replaced by "
                "the roll's, and parcels not there yet are added. Flags, permits, history and notes "
                "stay as they are.\n\nSynchronize now?"),
        QStringLiteral(" Synchronize SBL Repository"), PromptButtons::YesNo, PromptIcon::Question);
    if (answer != PromptAnswer::Yes) {
        return;
    }
    SyncFrm progress(parent);
    prompts().exec(progress);
}

void releaseRoll()
{
    keptRoll().reset();
}

void setParcelStoreChanged(std::function<void()> listener)
{
    storeChangedListener() = std::move(listener);
}

} // namespace pvardo::parcels
