#include "ui/MonthSelect.h"

#include "common/Clock.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "ui/XPButton.h"

#include <QComboBox>
#include <QFormLayout>
#include <QSpinBox>
#include <QVBoxLayout>

namespace pvardo::ui {

MonthSelect::MonthSelect(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("MonthSelect"));
    setWindowTitle(QStringLiteral(" Select Month"));
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    m_month = new QComboBox(this);
    m_month->setObjectName(QStringLiteral("cboMonth"));
    m_month->addItem(wholeYearText(), 0);
    for (int month = 1; month <= 12; ++month) {
        m_month->addItem(session().MonthNames.at(size_t(month)), month);
    }
    const QDate today = todaysDate();
    m_month->setCurrentIndex(today.month());
    m_year = new QSpinBox(this);
    m_year->setObjectName(QStringLiteral("txtYear"));
    m_year->setRange(1900, 2099);
    m_year->setValue(today.year());
    form->addRow(QStringLiteral("Month:"), m_month);
    form->addRow(QStringLiteral("Year:"), m_year);
    layout->addLayout(form);
    XPButton* ok = nullptr;
    layout->addLayout(okCancelRow(*this, &ok));
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
}

MonthChoice MonthSelect::choice() const
{
    return MonthChoice{true, m_month->currentData().toInt(), m_year->value()};
}

MonthChoice chooseMonth(QWidget* parent)
{
    MonthSelect dialog(parent);
    if (prompts().exec(dialog) != QDialog::Accepted) {
        session().StopFlag = true;
        return {};
    }
    session().StopFlag = false;
    return dialog.choice();
}

QString monthTitle(int month, int year)
{
    const QString yearText = QString::number(year);
    if (month < 1 || month > 12) {
        return yearText;
    }
    return session().MonthNames.at(size_t(month)).toUpper() + QLatin1Char(' ') + yearText;
}

} // namespace pvardo::ui
