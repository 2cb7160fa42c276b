#include "cases/screens/ProjectTab.h"

#include "cases/CaseLists.h"
#include "cases/LotFigures.h"
#include "cases/screens/CaseForm.h"
#include "common/OutsidePrograms.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "ui/XPButton.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

namespace pvardo::cases {

ProjectTab::ProjectTab(CaseForm& form, QWidget* parent)
    : QWidget(parent)
    , m_form(form)
{
    setObjectName(QStringLiteral("tabProject"));
    const QString folder = session().DatabaseFolder;
    auto* layout = new QVBoxLayout(this);

    auto* project = new QGridLayout;
    project->addWidget(CaseForm::makeCaption(QStringLiteral("Project Name:"), this), 0, 0);
    project->addWidget(form.makeBox(69, this), 0, 1, 1, 3);
    // The office's pick lists, two to a row, each read from its file in the
    // database folder or made of the built-in items.
    const struct
    {
        const char* caption;
        const char* name;
        const char* column;
        const char* file;
        QStringList items;
    } lists[] = {
        {" Select Type ", "Combo1", "PBTYPE", "\\zpt.txt", CaseLists::typeItems()},
        {" Select Proposed Use", "Combo2", "PBUSE", "\\zpu.txt", CaseLists::useItems()},
        {" Select Accessory Structure ", "Combo3", "PBACC", "\\zps.txt", CaseLists::accessoryItems()},
        {" Select Current Zoning ", "Combo4", "PBCURZONE", "\\zpz.txt", CaseLists::zoningItems()},
    };
    int index = 0;
    for (const auto& list : lists) {
        const int row = 1 + index / 2;
        const int column = (index % 2) * 2;
        project->addWidget(CaseForm::makeCaption(QString::fromLatin1(list.caption), this), row, column);
        project->addWidget(form.makeList(QString::fromLatin1(list.name), QString::fromLatin1(list.column),
                               CaseLists::load(folder, QString::fromLatin1(list.file), list.items), this),
            row, column + 1);
        ++index;
    }
    project->addWidget(CaseForm::makeCaption(QStringLiteral("Project Description:"), this), 3, 0);
    project->addWidget(form.makeBox(24, this, true), 3, 1, 1, 3);
    project->addWidget(CaseForm::makeCaption(QStringLiteral("Estimated Cost:"), this), 4, 0);
    project->addWidget(form.makeBox(22, this), 4, 1);
    project->addWidget(CaseForm::makeCaption(QStringLiteral("Value:"), this), 4, 2);
    project->addWidget(form.makeBox(23, this), 4, 3);
    project->addWidget(CaseForm::makeCaption(QStringLiteral("Map #:"), this), 5, 0);
    project->addWidget(form.makeBox(59, this), 5, 1);
    project->setColumnStretch(1, 1);
    project->setColumnStretch(3, 1);
    layout->addLayout(project);

    // The lot's figures and their calculator.
    auto* lot = new QGroupBox(QStringLiteral(" Lot Info "), this);
    lot->setObjectName(QStringLiteral("fraLot"));
    auto* grid = new QGridLayout(lot);
    grid->addWidget(CaseForm::makeCaption(QStringLiteral("Lot Width:"), lot), 0, 0);
    grid->addWidget(form.makeBox(26, lot), 0, 1);
    grid->addWidget(CaseForm::makeCaption(QStringLiteral("Depth:"), lot), 0, 2);
    grid->addWidget(form.makeBox(27, lot), 0, 3);
    auto* footprint = new QGroupBox(QStringLiteral(" Footprint Area "), lot);
    auto* footprintLayout = new QGridLayout(footprint);
    footprintLayout->addWidget(
        new QLabel(QStringLiteral("Total area of buildings and accessory structures:"), footprint), 0, 0);
    footprintLayout->addWidget(form.makeBox(30, footprint), 0, 1);
    auto* improvement = new QGroupBox(QStringLiteral(" Improvement Area "), lot);
    auto* improvementLayout = new QGridLayout(improvement);
    improvementLayout->addWidget(
        new QLabel(QStringLiteral("Total area of all man-made improvements:"), improvement), 0, 0);
    improvementLayout->addWidget(form.makeBox(34, improvement), 0, 1);
    grid->addWidget(footprint, 1, 0, 1, 4);
    grid->addWidget(improvement, 2, 0, 1, 4);
    grid->addWidget(CaseForm::makeCaption(QStringLiteral("Lot Area:"), lot), 3, 0);
    grid->addWidget(form.makeBox(28, lot), 3, 1);
    grid->addWidget(CaseForm::makeCaption(QStringLiteral(" Lot Area in Acres "), lot), 3, 2);
    grid->addWidget(form.makeBox(29, lot), 3, 3);
    grid->addWidget(CaseForm::makeCaption(QStringLiteral(" % of Lot Coverage "), lot), 4, 0);
    grid->addWidget(form.makeBox(31, lot), 4, 1);
    grid->addWidget(CaseForm::makeCaption(QStringLiteral(" % of Improved Lot Coverage"), lot), 4, 2);
    grid->addWidget(form.makeBox(32, lot), 4, 3);
    auto* calculator = new ui::XPButton(QStringLiteral("Image5"), QStringLiteral("Calculate"),
        QStringLiteral(" Calculate values for me "), lot);
    auto* hint
        = new QLabel(QStringLiteral("If lot info was provided, these values can be auto calculated for you "
                                    "by clicking the Calculate button"),
            lot);
    hint->setWordWrap(true);
    grid->addWidget(calculator, 5, 0);
    grid->addWidget(hint, 5, 1, 1, 3);
    form.addLockable(calculator);
    connect(calculator, &QPushButton::clicked, this, &ProjectTab::calculateLot);
    layout->addWidget(lot);

    auto* studies = new QGroupBox(QStringLiteral(" Studies "), this);
    auto* studiesLayout = new QGridLayout(studies);
    studiesLayout->addWidget(
        form.makeCheck(QStringLiteral("Check3"), QStringLiteral("Plans / Drawings submitted and on file"),
            QStringLiteral("PBSITEPLAN"), studies),
        0, 0);
    studiesLayout->addWidget(
        form.makeCheck(QStringLiteral("Check4"), QStringLiteral("Environmental Studies Required"),
            QStringLiteral("PBENVIRONSTUDY"), studies),
        0, 1);
    studiesLayout->addWidget(
        form.makeCheck(QStringLiteral("Check5"), QStringLiteral("Traffic Studies Required"),
            QStringLiteral("PBTRAFFICSTUDY"), studies),
        0, 2);
    studiesLayout->addWidget(CaseForm::makeCaption(QStringLiteral("General Notes:"), studies), 1, 0);
    studiesLayout->addWidget(form.makeBox(58, studies, true), 2, 0, 1, 3);
    layout->addWidget(studies);

    auto* map = new QGridLayout;
    m_providers = new QComboBox(this);
    m_providers->setObjectName(QStringLiteral("Combo9"));
    m_providers->setPlaceholderText(QStringLiteral("<select GIS provider>"));
    map->addWidget(CaseForm::makeCaption(QStringLiteral("GIS Provider:"), this), 0, 0);
    map->addWidget(m_providers, 0, 1);
    auto* mapButton
        = new ui::XPButton(QStringLiteral("Image7"), QStringLiteral("Map"), QStringLiteral(" Map "), this);
    connect(mapButton, &QPushButton::clicked, this, &ProjectTab::mapRequested);
    map->addWidget(mapButton, 0, 2);
    m_pair = new QLabel(this);
    m_pair->setObjectName(QStringLiteral("lblGISCOORD"));
    map->addWidget(m_pair, 0, 3);
    // A provider's page opens as soon as it is picked; the combo then goes
    // back to its prompt, so the same provider can be picked again.
    connect(m_providers, &QComboBox::activated, this, [this](int picked) {
        const QString address = m_providers->itemData(picked).toString();
        m_providers->setCurrentIndex(-1);
        if (!address.trimmed().isEmpty()) {
            OpenLink(address);
        }
    });
    map->setColumnStretch(1, 1);
    layout->addLayout(map);
    layout->addStretch();
}

void ProjectTab::showStoredPair(const QString& pair)
{
    m_pair->setText(pair);
}

void ProjectTab::calculateLot()
{
    const auto results = LotFigures::calculate(
        {m_form.boxText(26), m_form.boxText(27), m_form.boxText(30), m_form.boxText(34)});
    if (!results) {
        showMessage(LotFigures::zeroAreaMessage());
        return;
    }
    m_form.setBoxText(28, results->area);
    m_form.setBoxText(29, results->acres);
    m_form.setBoxText(31, results->coverage);
    m_form.setBoxText(32, results->improvedCoverage);
}

} // namespace pvardo::cases
