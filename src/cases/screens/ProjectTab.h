#pragma once

#include <QWidget>

class QComboBox;
class QLabel;

namespace pvardo::cases {

class CaseForm;

// The "Project" tab: what is proposed, its cost and value, the lot's figures
// with their calculator, the studies asked for, and the map look-up.
class ProjectTab : public QWidget
{
    Q_OBJECT

public:
    ProjectTab(CaseForm& form, QWidget* parent = nullptr);

    // Fills the four calculated lot figures from the others (Image5).
    void calculateLot();
    QComboBox* mapProviders() const { return m_providers; }
    // Shows the case's stored coordinates beside the map button.
    void showStoredPair(const QString& pair);

signals:
    // Image7 was pressed: the screen asks for coordinates.
    void mapRequested();

private:
    CaseForm& m_form;
    QComboBox* m_providers = nullptr;
    QLabel* m_pair = nullptr;
};

} // namespace pvardo::cases
