#pragma once

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;

namespace pvardo::ui {
class XPButton;
}

namespace pvardo::documents {

// The print dialog "  Print": the report type from the print state's
// ReportList, the four margins, the listing's type size and whether the report
// opens for editing first. Print leaves the choices in the print state and
// StopFlag off; Cancel leaves StopFlag set.
class PrintFrm : public QDialog
{
    Q_OBJECT

public:
    explicit PrintFrm(QWidget* parent = nullptr);

    // A margin as the dialog lets it stand when its box is left: below 0.5
    // is "0.5", above 3 is "3"; anything else as typed.
    static QString checkMargins(const QString& value);

    void iPrint();
    void iCancel();

private:
    void chosen(const QString& text);

    QComboBox* m_types = nullptr;
    QComboBox* m_fontSize = nullptr;
    QLineEdit* m_margins[4] = {};
    QCheckBox* m_preview = nullptr;
    QLabel* m_printer = nullptr;
};

} // namespace pvardo::documents
