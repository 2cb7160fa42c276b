#pragma once

#include "subrecords/FeeRules.h"
#include "subrecords/screens/SubRecordFrm.h"

class QComboBox;
class QLineEdit;

namespace pvardo::ui {
class DateInput;
}

namespace pvardo::subrecords {

// "Fees Management": what a case was charged and what has been paid, one
// row per charge with its payment on the same row. The shared frame with the
// fee inputs, the balance that follows charged and paid, the responsible
// party copied from the case, the totals under the list and the fee reports.
class FeesFrm final : public SubRecordFrm
{
    Q_OBJECT

public:
    explicit FeesFrm(cases::ZPermits& caseScreen, QWidget* parent = nullptr);

    // Sets the balance to charged minus paid, as plain text.
    void calculateBalance();
    // Copies one party of the case screen into the responsible party:
    // 0 applicant, 1 owner, 2 proxy/attorney, 3 contact.
    void sameAs(int party);
    // The fee reports of the Reports menu.
    void printListing();
    void printReceivables();
    // "Fees by Month" of this case or of all cases, by the paid date.
    void printMonth(bool allCases);
    void printreceipt() override;

    const FeeTotals& totals() const { return m_totals; }

protected:
    void buildDetail(QWidget* area) override;
    store::StoreStatus writeOwnColumns(store::Recordset& row) override;
    void showOwnColumns(const store::Recordset& row) override;
    void clearOwnInputs() override;
    void listStarted() override;
    void listRowAdded(const store::Recordset& row) override;
    void listFinished(int count) override;
    void printChoice(const QString& code) override;
    void PlugVars(QTextDocument& buffer) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void inputsFinished() override;

private:
    void showBalanceTip(std::optional<Cents> worked);
    QLineEdit* in(int box) const;
    // `name` names the report for the printer and its PDF file.
    void printReport(const QString& query, const FeeReportHead& head, const QString& name);

    FeeTotals m_totals;
    bool m_balanceTyped = false; // the clerk typed the balance over
    QLabel* m_totalLine = nullptr;
    QComboBox* m_method = nullptr;
    ui::DateInput* m_fileDate = nullptr;
    ui::DateInput* m_paidDate = nullptr;
    ui::DateInput* m_dueDate = nullptr;
};

} // namespace pvardo::subrecords
