#include "ui/DateRangeDialog.h"

#include "common/Clock.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "ui/DateInput.h"
#include "ui/XPButton.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace pvardo::ui {

DateRangeDialog::DateRangeDialog(QWidget* parent, bool permitType)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("dtrange"));
    setWindowTitle(QStringLiteral(" Date Range"));
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    const QDate today = todaysDate();
    m_start = new DateInput(QDate(today.year(), 1, 1), this);
    m_start->setObjectName(QStringLiteral("DTPicker1"));
    m_end = new DateInput(today, this);
    m_end->setObjectName(QStringLiteral("DTPicker2"));
    m_type = new QLineEdit(this);
    m_type->setObjectName(QStringLiteral("Text1"));
    m_type->setMaxLength(30);
    form->addRow(QStringLiteral("Start Date:"), m_start);
    form->addRow(QStringLiteral("End Date:"), m_end);
    if (permitType) {
        auto* typeRow = new QHBoxLayout;
        typeRow->addWidget(m_type);
        typeRow->addWidget(new QLabel(QStringLiteral("(leave blank for all)"), this));
        form->addRow(QStringLiteral("Permit type:"), typeRow);
    } else {
        m_type->hide();
    }
    layout->addLayout(form);
    XPButton* ok = nullptr;
    layout->addLayout(okCancelRow(*this, &ok));
    connect(ok, &QPushButton::clicked, this, &DateRangeDialog::confirm);
}

void DateRangeDialog::confirm()
{
    if (m_end->date() < m_start->date()) {
        showMessage(QStringLiteral("Date before cannot be prior to date after."), QStringLiteral("Invalid Dates"),
                    PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    accept();
}

DateRange DateRangeDialog::range() const
{
    return DateRange{true, m_start->date(), m_end->date(), m_type->text().trimmed()};
}

DateRange chooseDateRange(QWidget* parent, bool permitType)
{
    DateRangeDialog dialog(parent, permitType);
    if (prompts().exec(dialog) != QDialog::Accepted) {
        session().StopFlag = true;
        return {};
    }
    session().StopFlag = false;
    return dialog.range();
}

} // namespace pvardo::ui
