#include "parcels/screens/RollScreens.h"

#include "common/Files.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "parcels/ParcelService.h"
#include "parcels/RpsRoll.h"
#include "parcels/SblSync.h"
#include "parcels/screens/ParcelListModel.h"
#include "store/Recordset.h"
#include "ui/TaskFrm.h"
#include "ui/XPButton.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QProgressBar>
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
RpsRoll& rps()
{
    static std::unique_ptr<RpsRoll> roll;
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
    if (prompts().exec(preview) == QDialog::Accepted) {
        accept();
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
    m_fields[3]->setText(preview.read ? preview.mailing : none);
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
    m_progress->setValue(static_cast<int>(
        std::floor(m_result.fileBytes > 0 ? 100.0 * m_result.bytesRead / m_result.fileBytes : 0)));
    m_confidence->setText(RpsImport::ConfidenceText(m_result.confidence));
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
    if (m_running) {
        return;
    }
    session().StopFlag = true;
    reject();
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
                                      {QStringLiteral(" Address "), QStringLiteral("RADDR1")}},
        this);
    auto* list = new QTreeView(this);
    list->setObjectName(QStringLiteral("ListView1"));
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setModel(m_model);
    list->header()->setStretchLastSection(true);
    layout->addWidget(list, 1);
    m_count = new QLabel(this);
    m_count->setObjectName(QStringLiteral("lblCount"));
    layout->addWidget(m_count);
    auto* close = new ui::XPButton(
        QStringLiteral("iContinue"), QStringLiteral("&Close"), QStringLiteral(" Close "), this);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    layout->addWidget(close, 0, Qt::AlignRight);
    resize(820, 480);

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
    Q_UNUSED(parent);
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
    const SblSync::Outcome outcome
        = SblSync::syncSBL(mdb(), roll, session(), taskProgress(QStringLiteral("Converting SBL info..")),
            taskProgress(QStringLiteral("Synchronizing SBL info..")));
    ui::TaskFrm::close();
    if (!outcome.status.ok()) {
        showMessage(outcome.status.description, QStringLiteral(" Synchronize SBL Repository"),
            PromptButtons::Ok, PromptIcon::Critical);
    } else if (outcome.ran) {
        showMessage(QStringLiteral("Completed. ") + QString::number(outcome.carried)
                + QStringLiteral(" records processed."),
            QStringLiteral(" Synchronize SBL Repository"));
    }
    if (storeChangedListener()) {
        storeChangedListener()();
    }
}

void setParcelStoreChanged(std::function<void()> listener)
{
    storeChangedListener() = std::move(listener);
}

} // namespace pvardo::parcels
