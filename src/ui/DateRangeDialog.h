#pragma once

#include <QDate>
#include <QDialog>

class QLineEdit;

namespace pvardo::ui {

class DateInput;

// The span of a status listing and the permit type it keeps to; `chosen` is
// false when the clerk cancelled.
struct DateRange {
    bool chosen = false;
    QDate start;
    QDate end;
    QString permitType; // empty: every type
};

// `dtrange`: "Start Date:", "End Date:" and "Permit type:". An end before
// the start is refused with "Invalid Dates" and the dialog stays; Cancel
// sets the session's StopFlag.
class DateRangeDialog : public QDialog
{
    Q_OBJECT

public:
    // Without `permitType` the dialog asks for the dates alone.
    explicit DateRangeDialog(QWidget* parent = nullptr, bool permitType = true);

    DateRange range() const;

private:
    void confirm();

    DateInput* m_start = nullptr;
    DateInput* m_end = nullptr;
    QLineEdit* m_type = nullptr;
};

// Runs `dtrange` through the prompt service.
DateRange chooseDateRange(QWidget* parent = nullptr, bool permitType = true);

} // namespace pvardo::ui
