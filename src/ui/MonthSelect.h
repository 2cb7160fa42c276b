#pragma once

#include <QDialog>

class QComboBox;
class QSpinBox;

namespace pvardo::ui {

// The month a listing covers: a month number (0 for the whole year) and a
// year. `chosen` is false when the clerk cancelled.
struct MonthChoice {
    bool chosen = false;
    int month = 0;
    int year = 0;
};

// `MonthSelect`: the month and year of a monthly listing, or a whole year.
// It opens on the month of today. Cancel sets the session's StopFlag.
class MonthSelect : public QDialog
{
    Q_OBJECT

public:
    explicit MonthSelect(QWidget* parent = nullptr);

    // What the inputs hold, as chosen.
    MonthChoice choice() const;
    // The month list's entry for the whole year, before January.
    static QString wholeYearText() { return QStringLiteral("(whole year)"); }

private:
    QComboBox* m_month = nullptr;
    QSpinBox* m_year = nullptr;
};

// Runs `MonthSelect` through the prompt service.
MonthChoice chooseMonth(QWidget* parent = nullptr);

// "MARCH 2012", or "2012" for the whole year.
QString monthTitle(int month, int year);

} // namespace pvardo::ui
