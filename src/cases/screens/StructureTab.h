#pragma once

#include <QWidget>

namespace pvardo::cases {

class CaseForm;

// The "Structure" tab: the building, its setbacks, parking and sign, its
// utilities with their Public/Private sources, the districts and alarms.
class StructureTab : public QWidget
{
    Q_OBJECT

public:
    StructureTab(CaseForm& form, QWidget* parent = nullptr);
};

} // namespace pvardo::cases
