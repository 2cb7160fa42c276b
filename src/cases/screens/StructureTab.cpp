#include "cases/screens/StructureTab.h"

#include "cases/CaseLists.h"
#include "cases/screens/CaseForm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

namespace pvardo::cases {

namespace {

// Rows of captioned boxes, two to a line.
void addBoxes(CaseForm& form, QGridLayout* grid, QWidget* parent,
    std::initializer_list<std::pair<const char*, int>> boxes, int firstRow = 0)
{
    int index = 0;
    for (const auto& [text, number] : boxes) {
        const int row = firstRow + index / 2;
        const int column = (index % 2) * 2;
        grid->addWidget(CaseForm::makeCaption(QString::fromLatin1(text), parent), row, column);
        grid->addWidget(form.makeBox(number, parent), row, column + 1);
        ++index;
    }
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
}

} // namespace

StructureTab::StructureTab(CaseForm& form, QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("tabStructure"));
    auto* layout = new QGridLayout(this);

    auto* building = new QGroupBox(QStringLiteral(" Structure "), this);
    auto* buildingGrid = new QGridLayout(building);
    buildingGrid->addWidget(CaseForm::makeCaption(QStringLiteral("Structure Type:"), building), 0, 0);
    buildingGrid->addWidget(form.makeList(QStringLiteral("Combo6"), QStringLiteral("PBSTRUCTYPE"),
                                CaseLists::structureTypeItems(), building),
        0, 1);
    addBoxes(form, buildingGrid, building,
        {{"Height:", 61}, {"Stories:", 35}, {"Usable sq. ft.:", 36}, {"Floor Load:", 38}, {"Units:", 37},
            {"Bedrooms:", 40}, {"Bathrooms:", 41}, {"Footer Depth:", 42}},
        1);
    buildingGrid->addWidget(CaseForm::makeCaption(QStringLiteral(" Exterior Material "), building), 5, 0);
    buildingGrid->addWidget(form.makeList(QStringLiteral("Combo7"), QStringLiteral("PBFOOTTYPE"),
                                CaseLists::exteriorMaterialItems(), building),
        5, 1);
    buildingGrid->addWidget(CaseForm::makeCaption(QStringLiteral(" Exterior Color "), building), 5, 2);
    buildingGrid->addWidget(form.makeList(QStringLiteral("Combo8"), QStringLiteral("PBFOOTERMAT"),
                                CaseLists::exteriorColorItems(), building),
        5, 3);
    buildingGrid->setRowStretch(6, 1);
    layout->addWidget(building, 0, 0);

    auto* site = new QGroupBox(QStringLiteral(" Setbacks and Parking "), this);
    auto* siteGrid = new QGridLayout(site);
    addBoxes(form, siteGrid, site,
        {{"Front:", 44}, {"Rear:", 45}, {"Left:", 47}, {"Right:", 46}, {"Driveway Width:", 55},
            {"Off-street Parking:", 53}, {"Off-street Loading:", 54}, {"Sign Dimensions:", 39}});
    siteGrid->addWidget(form.makeCheck(QStringLiteral("Check11"), QStringLiteral("Lighted Sign"),
                            QStringLiteral("PBSIGNLIGHTED"), site),
        4, 1);
    siteGrid->addWidget(CaseForm::makeCaption(QStringLiteral("Setback Notes:"), site), 5, 0);
    siteGrid->addWidget(form.makeBox(48, site, true), 5, 1, 1, 3);
    layout->addWidget(site, 0, 1);

    auto* utilities = new QGroupBox(QStringLiteral(" Utilities "), this);
    auto* utilityGrid = new QGridLayout(utilities);
    struct Utility
    {
        const char* caption;
        const char* name;
        int box;
        const char* column;
    };
    const Utility sources[] = {
        {"Water:", "Water", 49, "PBFW"},
        {"Sewage:", "Sewage", 50, "PBFS"},
        {"Electric:", "Electric", 51, "PBFE"},
        {"Gas:", "Gas", 52, "PBFG"},
    };
    int row = 0;
    for (const Utility& utility : sources) {
        utilityGrid->addWidget(
            CaseForm::makeCaption(QString::fromLatin1(utility.caption), utilities), row, 0);
        utilityGrid->addWidget(form.makeSource(QString::fromLatin1(utility.name),
                                   QString::fromLatin1(utility.column), utilities),
            row, 1);
        utilityGrid->addWidget(form.makeBox(utility.box, utilities), row, 2);
        ++row;
    }
    utilityGrid->addWidget(CaseForm::makeCaption(QStringLiteral("Notes:"), utilities), row, 0);
    utilityGrid->addWidget(form.makeBox(56, utilities, true), row, 1, 1, 2);
    utilityGrid->setColumnStretch(2, 1);
    layout->addWidget(utilities, 1, 0);

    auto* districts = new QGroupBox(QStringLiteral(" Districts and Alarms "), this);
    auto* districtGrid = new QGridLayout(districts);
    addBoxes(form, districtGrid, districts,
        {{"School:", 63}, {"Ambulance:", 67}, {"Fire:", 64}, {"Light:", 66}, {"Water:", 65}, {"Sewer:", 68},
            {"Call Center:", 43}, {"Knox Box:", 70}, {"Alarm Company:", 71}});
    auto* alarms = new QWidget(districts);
    auto* alarmRow = new QHBoxLayout(alarms);
    alarmRow->setContentsMargins(0, 0, 0, 0);
    alarmRow->addWidget(
        form.makeCheck(QStringLiteral("Check8"), QStringLiteral("Fire"), QStringLiteral("PBFALARM"), alarms));
    alarmRow->addWidget(form.makeCheck(
        QStringLiteral("Check9"), QStringLiteral("Burglar"), QStringLiteral("PBBALARM"), alarms));
    alarmRow->addWidget(form.makeCheck(QStringLiteral("Check10"), QStringLiteral("None / Not Applicable"),
        QStringLiteral("PBSALARM"), alarms));
    alarmRow->addStretch();
    districtGrid->addWidget(alarms, 5, 0, 1, 4);
    districtGrid->setRowStretch(6, 1);
    layout->addWidget(districts, 1, 1);
    layout->setRowStretch(2, 1);
}

} // namespace pvardo::cases
