#include "admin/screens/PrefFrm.h"

#include "admin/UserLogon.h"
#include "cases/CaseNumbering.h"
#include "common/DriveKind.h"
#include "parcels/ParcelService.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "common/SettingStore.h"
#include "common/Settings.h"
#include "documents/screens/HeaderFrm.h"
#include "store/DatabaseLocation.h"
#include "ui/BrowseForFolder.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace pvardo::admin {

namespace {

const QString kBr = QStringLiteral("\n");

template <typename T> T* named(T* widget, const char* name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QLineEdit* lineEdit(QWidget* parent, const char* name)
{
    return named(new QLineEdit(parent), name);
}

QPushButton* button(QWidget* parent, const char* name, const QString& caption, const QString& tip = {})
{
    auto* b = named(new QPushButton(caption, parent), name);
    b->setAutoDefault(false);
    if (!tip.isEmpty()) {
        b->setToolTip(tip);
    }
    return b;
}

QChar driveLetter(const QString& folder)
{
    const QString kind = DriveKindText(folder);
    return kind.isEmpty() ? QChar() : kind.at(0);
}

} // namespace

PrefFrm::PrefFrm(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("PrefFrm"));
    setWindowTitle(QStringLiteral(" Preferences"));
    m_tabs = named(new QTabWidget(this), "SSTab1");

    // The municipality.
    auto* town = new QWidget;
    auto* townForm = new QFormLayout(town);
    const char* townNames[6] = {"Text1", "Text3", "Text4", "Text5", "Text6", "Text7"};
    const char* townCaptions[6] = {"Municipality:", "Address:", "City:", "State:", "ZIP", "Telephone #:"};
    for (int i = 0; i < 6; ++i) {
        m_municipality[i] = lineEdit(town, townNames[i]);
        townForm->addRow(QString::fromLatin1(townCaptions[i]), m_municipality[i]);
    }
    m_tabs->addTab(town, QStringLiteral("Municipality"));

    // The databases and their backup.
    auto* dataTab = new QWidget;
    auto* dataLayout = new QVBoxLayout(dataTab);
    dataLayout->addWidget(new QLabel(QStringLiteral("Location of directory for databases:"), dataTab));
    m_databaseFolder = lineEdit(dataTab, "Text9");
    auto* browseData = button(dataTab, "Command3", QStringLiteral("..."),
        QStringLiteral(" Browse to select location of master database"));
    auto* dataRow = new QHBoxLayout;
    dataRow->addWidget(m_databaseFolder);
    dataRow->addWidget(browseData);
    dataLayout->addLayout(dataRow);
    m_share = named(
        new QCheckBox(
            QStringLiteral("Planning Board shares SBL Repository with VARDO (if installed)"), dataTab),
        "Check3");
    dataLayout->addWidget(m_share);
    auto* backupGroup = named(new QGroupBox(QStringLiteral(" Backup Option Upon Exit "), dataTab), "Frame1");
    auto* backupLayout = new QHBoxLayout(backupGroup);
    m_prompt = named(new QRadioButton(QStringLiteral("Prompt"), backupGroup), "Option2");
    m_automatic = named(new QRadioButton(QStringLiteral("Automatic on Exit"), backupGroup), "Option1");
    m_manual = named(new QRadioButton(QStringLiteral("Manual"), backupGroup), "Option3");
    backupLayout->addWidget(m_prompt);
    backupLayout->addWidget(m_automatic);
    backupLayout->addWidget(m_manual);
    dataLayout->addWidget(backupGroup);
    dataLayout->addWidget(new QLabel(QStringLiteral("Location for backup databases:"), dataTab));
    m_backupFolder = lineEdit(dataTab, "Text8");
    auto* browseBackup = button(dataTab, "Command5", QStringLiteral("..."),
        QStringLiteral(" Browse to set location of backup database"));
    auto* backupRow = new QHBoxLayout;
    backupRow->addWidget(m_backupFolder);
    backupRow->addWidget(browseBackup);
    dataLayout->addLayout(backupRow);
    dataLayout->addStretch();
    m_tabs->addTab(dataTab, QStringLiteral("Databases"));

    // Links.
    auto* links = new QWidget;
    auto* linksLayout = new QVBoxLayout(links);
    m_onlineCodes = lineEdit(links, "Text19");
    m_localCodes = lineEdit(links, "Text21");
    m_gis = lineEdit(links, "Text20");
    m_defaultBrowser = named(new QCheckBox(QStringLiteral("Use my default Browser"), links), "Check9");
    linksLayout->addWidget(new QLabel(QStringLiteral("If available, link to online codes site:"), links));
    linksLayout->addWidget(m_onlineCodes);
    linksLayout->addWidget(new QLabel(QStringLiteral("Link to local codes site:"), links));
    linksLayout->addWidget(m_localCodes);
    linksLayout->addWidget(new QLabel(QStringLiteral("Default local GIS server"), links));
    linksLayout->addWidget(m_gis);
    linksLayout->addWidget(m_defaultBrowser);
    linksLayout->addStretch();
    m_tabs->addTab(links, QStringLiteral("Links"));

    // Cases and the board.
    auto* board = new QWidget;
    auto* boardLayout = new QVBoxLayout(board);
    boardLayout->addWidget(new QLabel(QStringLiteral("CASES:"), board));
    m_computerDecides = named(new QCheckBox(QStringLiteral("Let computer decide"), board), "Check1");
    boardLayout->addWidget(m_computerDecides);
    auto* numbering = new QFormLayout;
    m_beginNumbering = lineEdit(board, "Text12");
    numbering->addRow(QStringLiteral("Begin Numbering with:"), m_beginNumbering);
    boardLayout->addLayout(numbering);
    boardLayout->addWidget(new QLabel(QStringLiteral("Planning Board Members:"), board));
    m_members = named(new QListWidget(board), "List4");
    boardLayout->addWidget(m_members);
    boardLayout->addWidget(new QLabel(QStringLiteral("Add new members:"), board));
    m_newMember = lineEdit(board, "Text15");
    auto* add = button(
        board, "Command7", QStringLiteral("Add"), QStringLiteral(" Click here to add this inspector's name"));
    auto* remove = button(board, "Command9", QStringLiteral("Del"),
        QStringLiteral(" Click here to delete the highlighted inspector"));
    auto* memberRow = new QHBoxLayout;
    memberRow->addWidget(m_newMember);
    memberRow->addWidget(add);
    memberRow->addWidget(remove);
    boardLayout->addLayout(memberRow);
    m_tabs->addTab(board, QStringLiteral("Cases"));

    // The editor's font and the report header.
    auto* fonts = new QWidget;
    auto* fontsLayout = new QVBoxLayout(fonts);
    auto* fontForm = new QFormLayout;
    m_fontName = named(new QComboBox(fonts), "Combo1");
    m_fontName->addItems(QFontDatabase::families());
    m_fontSize = named(new QComboBox(fonts), "Combo2");
    for (int size : {8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 26, 28, 36, 48, 72}) {
        m_fontSize->addItem(QString::number(size));
    }
    fontForm->addRow(QStringLiteral("Default Editor Font:"), m_fontName);
    fontForm->addRow(QStringLiteral("Size:"), m_fontSize);
    fontsLayout->addLayout(fontForm);
    auto* sampleFrame = named(new QGroupBox(QStringLiteral("Sample"), fonts), "Frame2");
    auto* sampleLayout = new QVBoxLayout(sampleFrame);
    m_sample = lineEdit(sampleFrame, "Text10");
    m_sample->setText(sampleText());
    sampleLayout->addWidget(m_sample);
    fontsLayout->addWidget(sampleFrame);
    auto* header = button(fonts, "XPButton1", QStringLiteral(" Set default report header"));
    fontsLayout->addWidget(header);
    fontsLayout->addStretch();
    m_tabs->addTab(fonts, QStringLiteral("Fonts && Header"));

    auto* save = button(this, "Command1", QStringLiteral(" Save selected settings"));
    auto* cancel = button(this, "Command2", QStringLiteral(" cancel changes"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(save);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    layout->addLayout(buttons);

    connect(browseData, &QPushButton::clicked, this, &PrefFrm::Command3);
    connect(browseBackup, &QPushButton::clicked, this, &PrefFrm::Command5);
    connect(add, &QPushButton::clicked, this, &PrefFrm::Command7);
    connect(remove, &QPushButton::clicked, this, &PrefFrm::Command9);
    connect(save, &QPushButton::clicked, this, &PrefFrm::Command1);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_fontName, &QComboBox::currentTextChanged, this, &PrefFrm::showSample);
    connect(m_fontSize, &QComboBox::currentTextChanged, this, &PrefFrm::showSample);
    connect(header, &QPushButton::clicked, this, [this] {
        documents::HeaderFrm headerScreen(this);
        headerScreen.Loadheader();
        prompts().exec(headerScreen);
    });

    const Preferences loaded = loadPreferences(session());
    fill(loaded);
    m_damagedFiles = loaded.damagedFiles;
    m_tabs->setCurrentIndex(0);
    if (!loaded.damagedFiles.isEmpty()) {
        showMessage(damagedSettingsMessage(loaded.damagedFiles), QStringLiteral(" Preferences"), PromptButtons::Ok,
            PromptIcon::Exclamation);
    }
}

void PrefFrm::fill(const Preferences& p)
{
    const QString town[6] = {p.municipalityName, p.municipalityAddress, p.municipalityCity,
        p.municipalityState, p.municipalityZip, p.municipalityPhone};
    for (int i = 0; i < 6; ++i) {
        m_municipality[i]->setText(town[i]);
    }
    m_databaseFolder->setText(p.masterDatabaseFolder);
    m_share->setChecked(p.shareParcelStore);
    (p.backupMode == 1 ? m_automatic : p.backupMode == 2 ? m_manual : m_prompt)->setChecked(true);
    m_backupFolder->setText(p.backupFolder);
    m_onlineCodes->setText(p.onlineCodesLink);
    m_localCodes->setText(p.localCodesLink);
    m_gis->setText(p.localGisLink);
    m_defaultBrowser->setChecked(p.useDefaultBrowser);
    m_computerDecides->setChecked(p.letComputerDecide);
    m_beginNumbering->setText(p.beginNumbering);
    m_members->addItems(p.boardMembers);
    // A font the computer does not have is still offered, so a save keeps it.
    if (m_fontName->findText(p.editorFontName) < 0) {
        m_fontName->addItem(p.editorFontName);
    }
    m_fontName->setCurrentText(p.editorFontName);
    if (m_fontSize->findText(p.editorFontSize) < 0) {
        m_fontSize->addItem(p.editorFontSize);
    }
    m_fontSize->setCurrentText(p.editorFontSize);
    showSample();
}

void PrefFrm::showSample()
{
    if (m_sample->text().isEmpty()) {
        return;
    }
    QFont font = m_sample->font();
    if (!m_fontName->currentText().isEmpty()) {
        font.setFamily(m_fontName->currentText());
    }
    const double size = m_fontSize->currentText().toDouble();
    if (size > 0) {
        font.setPointSizeF(size);
    }
    m_sample->setFont(font);
}

Preferences PrefFrm::current() const
{
    Preferences p;
    QString* town[6] = {&p.municipalityName, &p.municipalityAddress, &p.municipalityCity,
        &p.municipalityState, &p.municipalityZip, &p.municipalityPhone};
    for (int i = 0; i < 6; ++i) {
        *town[i] = m_municipality[i]->text();
    }
    p.masterDatabaseFolder = m_databaseFolder->text();
    p.shareParcelStore = m_share->isChecked();
    p.backupMode = m_automatic->isChecked() ? 1 : m_manual->isChecked() ? 2 : 0;
    p.backupFolder = m_backupFolder->text();
    p.onlineCodesLink = m_onlineCodes->text();
    p.localCodesLink = m_localCodes->text();
    p.localGisLink = m_gis->text();
    p.useDefaultBrowser = m_defaultBrowser->isChecked();
    p.letComputerDecide = m_computerDecides->isChecked();
    p.beginNumbering = m_beginNumbering->text();
    for (int i = 0; i < m_members->count(); ++i) {
        p.boardMembers.append(m_members->item(i)->text());
    }
    p.editorFontName = m_fontName->currentText();
    p.editorFontSize = m_fontSize->currentText();
    p.damagedFiles = m_damagedFiles;
    return p;
}

void PrefFrm::Command3()
{
    const QString chosen
        = ui::BrowseForFolder(QStringLiteral("Locate the drive and directory containing the database files."),
            m_databaseFolder->text());
    if (chosen.isEmpty()) {
        return;
    }
    QString alert;
    switch (driveLetter(chosen).unicode()) {
    case 'R':
        alert = QStringLiteral("The drive you have selected is a removable drive.");
        break;
    case 'C':
        alert = QStringLiteral("The drive you have selected is a CD/DVD drive and ") + kBr
            + QStringLiteral("may not be writable at all times.");
        break;
    case 'N':
        alert = QStringLiteral("The drive you have selected is a remote/network drive ") + kBr
            + QStringLiteral("and may not be available at all times.");
        break;
    default:
        break;
    }
    if (!alert.isEmpty()) {
        alert += kBr + QStringLiteral("Since the program needs continuous access to the ") + kBr
            + QStringLiteral("database, we strongly recommend that you do not") + kBr
            + QStringLiteral("use this drive as the location of the databases.") + kBr
            + QStringLiteral("Do you still want to proceed with this choice? ");
        if (showMessage(alert, QStringLiteral(" Alert"), PromptButtons::YesNo, PromptIcon::Question)
            != PromptAnswer::Yes) {
            return;
        }
    }
    m_databaseFolder->setText(chosen);
}

void PrefFrm::Command5()
{
    const QString chosen
        = ui::BrowseForFolder(QStringLiteral("Locate the drive and directory to store the backup databases."),
            m_backupFolder->text());
    if (chosen.isEmpty()) {
        return;
    }
    QString note;
    switch (driveLetter(chosen).unicode()) {
    case 'R':
        note = QStringLiteral("The drive you have selected is a removable drive and ") + kBr
            + QStringLiteral("may not be available during the backup operation.");
        break;
    case 'C':
        note = QStringLiteral("The drive you have selected is a CD/DVD drive and ") + kBr
            + QStringLiteral("may not be writable during the backup operation.");
        break;
    case 'N':
        note = QStringLiteral("The drive you have selected is a remote/network drive ") + kBr
            + QStringLiteral("and may not be available during the backup operation.");
        break;
    default:
        break;
    }
    if (!note.isEmpty()) {
        if (m_automatic->isChecked()) {
            note += kBr + QStringLiteral("In addition, you have selected automatic backup upon ") + kBr
                + QStringLiteral("exit. Because of this, you need to ensure that the ") + kBr
                + QStringLiteral("target you have selected is available on exit.");
        }
        showMessage(note, QStringLiteral(" Note"), PromptButtons::Ok, PromptIcon::Information);
    }
    m_backupFolder->setText(chosen);
}

void PrefFrm::Command7()
{
    if (m_newMember->text().isEmpty()) {
        showMessage(QStringLiteral("Type the Member's name prior to clicking the 'Add' button."));
        return;
    }
    m_members->addItem(m_newMember->text());
    m_newMember->clear();
}

void PrefFrm::Command9()
{
    QListWidgetItem* item = m_members->currentItem();
    if (!item || !item->isSelected()) {
        showMessage(QStringLiteral("Highlight the name to remove before clicking the 'Del' button."));
        return;
    }
    delete item;
    m_newMember->clear();
}

bool PrefFrm::closeScreensOfOldFolder()
{
    // Every window but the dashboard (which reads the new folder at once)
    // and this screen shows records of the old folder: they are closed
    // before the switch rather than left showing, and saving into, the old
    // databases.
    const QWidget* dashboard = parentWidget() ? parentWidget()->window() : nullptr;
    QList<QPointer<QWidget>> open;
    QStringList names;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (window == this || window == dashboard || !window->isVisible() || window->isAncestorOf(this)) {
            continue;
        }
        open << window;
        names << QStringLiteral("  ")
                + (window->windowTitle().trimmed().isEmpty() ? window->objectName() : window->windowTitle().trimmed());
    }
    if (open.isEmpty()) {
        return true;
    }
    const QString question
        = QStringLiteral("These screens show the databases of the present location and are closed before the "
                         "switch; a change not yet saved in them is lost:")
        + kBr + names.join(kBr) + kBr + kBr + QStringLiteral("Close them and switch now? If not, nothing is changed.");
    if (showMessage(question, QStringLiteral(" Change Master Database Location"), PromptButtons::YesNo,
            PromptIcon::Question)
        != PromptAnswer::Yes) {
        return false;
    }
    for (const QPointer<QWidget>& window : std::as_const(open)) {
        if (window && !window->close()) {
            showMessage(QStringLiteral("%1 stays open, so the database location was not changed. No settings "
                                       "were changed.")
                            .arg(window->windowTitle().trimmed()),
                QStringLiteral(" Change Master Database Location"), PromptButtons::Ok, PromptIcon::Exclamation);
            return false;
        }
    }
    return true;
}

PrefFrm::FolderCopy PrefFrm::offerDatabaseCopy(const QString& folder)
{
    const Session& state = session();
    const QString target = QDir::toNativeSeparators(folder);
    const QString kept = QStringLiteral("The database location stays %1.")
                             .arg(QDir::toNativeSeparators(state.MasterDatabaseFolder));
    const QString question
        = QStringLiteral("The folder %1 holds no databases, so the program could not start from it.")
              .arg(target)
        + kBr + kBr
        + QStringLiteral(
            "Do you want to copy the databases in use now into it, and SWITCH to them there? If not, ")
        + kept.at(0).toLower() + kept.mid(1);
    if (showMessage(question, QStringLiteral(" Change Master Database Location"), PromptButtons::YesNo,
            PromptIcon::Question)
        != PromptAnswer::Yes) {
        return FolderCopy::Declined;
    }
    if (!closeScreensOfOldFolder()) {
        return FolderCopy::Failed;
    }
    setCursor(Qt::WaitCursor);
    QString error;
    const bool copied = copyDatabaseFolder(state.DatabaseFolder, folder, &error);
    unsetCursor();
    if (!copied) {
        showMessage(QStringLiteral("The databases could not be copied to %1: %2.").arg(target, error) + kBr
                + kBr + kept + QStringLiteral(" No settings were changed."),
            QStringLiteral(" Preferences"), PromptButtons::Ok, PromptIcon::Critical);
        return FolderCopy::Failed;
    }
    return FolderCopy::Copied;
}

void PrefFrm::Command1()
{
    m_tabs->setCurrentIndex(0);
    Session& state = session();

    // The questions come before anything is written, so that every file is
    // written at once for the answers given.
    Preferences chosen = current();
    const QString wanted = chosen.masterDatabaseFolder.trimmed();
    bool switchFolder = false;
    bool copied = false;
    if (wanted != state.MasterDatabaseFolder && !wanted.isEmpty() && !store::holdsAnyDatabase(wanted)) {
        // The program does not start on a named folder without databases, so
        // the new location gets the databases in use now, or is not taken.
        switch (offerDatabaseCopy(wanted)) {
        case FolderCopy::Copied:
            switchFolder = copied = true;
            break;
        case FolderCopy::Declined:
            chosen.masterDatabaseFolder = state.MasterDatabaseFolder;
            m_databaseFolder->setText(state.MasterDatabaseFolder);
            break;
        case FolderCopy::Failed:
            return;
        }
    } else if (wanted != state.MasterDatabaseFolder) {
        switchFolder
            = showMessage(QStringLiteral("You have changed the master database location. Do you want to "
                                         "SWITCH the database now to use the master database in the new "
                                         "location you have specified?"),
                  QStringLiteral(" Change Master Database Location"), PromptButtons::YesNo,
                  PromptIcon::Question)
            == PromptAnswer::Yes;
        if (switchFolder && !closeScreensOfOldFolder()) {
            return;
        }
    }
    const QString folderAfter = databaseFolderAfterSave(state, chosen, switchFolder);
    if (switchFolder) {
        // The templates are looked for beside the new database folder: it
        // gets those in use unless it has its own.
        const QString formsAfter = store::formsFolderFor(folderAfter, state.ProgramFolder);
        QString why;
        if (QDir::cleanPath(formsAfter) != QDir::cleanPath(state.FormsFolder)
            && !QFileInfo::exists(formsAfter + QStringLiteral("/gTitle.rtf"))
            && !copyMissingForms(state.FormsFolder, formsAfter, &why)) {
            showMessage(QStringLiteral("The letter and report templates could not be copied beside the new "
                                       "database location: %1.")
                                .arg(why)
                    + kBr + kBr + QStringLiteral("The database location stays %1. No settings were changed.")
                                     .arg(QDir::toNativeSeparators(state.MasterDatabaseFolder)),
                QStringLiteral(" Preferences"), PromptButtons::Ok, PromptIcon::Critical);
            return;
        }
    }
    // The board members and the numbering shown are those of the folder in
    // use: a folder switched to keeps its own, unless it was just made a copy
    // of this one.
    const QString listsFolder = copied ? folderAfter : state.DatabaseFolder;
    QString error;
    if (!writePreferences(state, chosen, folderAfter, listsFolder, &error)) {
        showMessage(error, QStringLiteral(" Preferences"), PromptButtons::Ok, PromptIcon::Critical);
        return;
    }

    state.MunicipalityName = chosen.municipalityName;
    state.MunicipalityAddress = chosen.municipalityAddress;
    state.MunicipalityCity = chosen.municipalityCity;
    state.MunicipalityState = chosen.municipalityState;
    state.MunicipalityZip = chosen.municipalityZip;
    state.MunicipalityPhone = chosen.municipalityPhone;
    state.BackupMode = chosen.backupMode;
    state.ShareParcelStore = chosen.shareParcelStore;
    state.EditorFontName = chosen.editorFontName;
    if (switchFolder) {
        state.MasterDatabaseFolder = chosen.masterDatabaseFolder.trimmed();
        state.DatabaseFolder = state.MasterDatabaseFolder;
        store::CheckDatabases(state);
    }
    state.FormsFolder = store::formsFolderFor(state.DatabaseFolder, state.ProgramFolder);
    ReadSiblingInfo();
    ChooseParcelStore(state);
    state.BackupFolder = chosen.backupFolder.trimmed();
    state.OnlineCodesLink = chosen.onlineCodesLink.trimmed();
    state.LocalCodesLink = chosen.localCodesLink.trimmed();
    ApplyUserLevel();
    // The next case number follows the numbering just saved, and the parcel
    // look-ups the store now chosen, in the folder now in use.
    cases::reloadCaseNumbering();
    parcels::unloadMdb();
    if (!chosen.localGisLink.trimmed().isEmpty()) {
        state.LocalGisLink = chosen.localGisLink.trimmed();
        state.UseDefaultBrowser = chosen.useDefaultBrowser ? QStringLiteral("T") : QStringLiteral("F");
    }
    accept();
}

} // namespace pvardo::admin
