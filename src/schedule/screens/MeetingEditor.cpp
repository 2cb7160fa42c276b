#include "schedule/screens/MeetingEditor.h"

#include "schedule/MeetingRules.h"
#include "store/Catalogue.h"
#include "store/ColumnMap.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QTimeEdit>
#include <QVBoxLayout>

namespace pvardo::schedule {

namespace {

// A text input that takes no more than its column holds: typing stops there.
QLineEdit* lineEdit(QWidget* parent, const char* name, const char* column)
{
    auto* box = new QLineEdit(parent);
    box->setObjectName(QLatin1String(name));
    for (const store::ColumnDef& def : store::tableDef(store::Table::MEETING).places) {
        if (qstrcmp(def.name, column) == 0 && def.longest > 0 && def.longest < store::ColumnMap::NoLimit) {
            box->setMaxLength(def.longest);
        }
    }
    return box;
}

QComboBox* comboBox(QWidget* parent, const char* name, const QStringList& items, bool editable)
{
    auto* box = new QComboBox(parent);
    box->setObjectName(QLatin1String(name));
    box->setEditable(editable);
    box->addItems(items);
    box->setCurrentIndex(-1);
    return box;
}

// Shows a list's entry, or nothing when the text is not one of its entries
// (an editable list keeps a typed text as it is).
void showInCombo(QComboBox* box, const QString& text)
{
    const int index = text.isEmpty() ? -1 : box->findText(text);
    box->setCurrentIndex(index);
    if (box->isEditable()) {
        box->setEditText(text);
    }
}

} // namespace

MeetingEditor::MeetingEditor(QWidget* parent)
    : QGroupBox(QStringLiteral("Manage Meetings"), parent)
{
    setObjectName(QStringLiteral("MeetingEditor"));
    m_text2 = lineEdit(this, "Text2", "MNAME");
    m_text3 = lineEdit(this, "Text3", "MLOC");
    m_text1 = lineEdit(this, "Text1", "MRMID");
    m_text4 = lineEdit(this, "Text4", "MDUR");
    m_text4->setMaximumWidth(80);
    // The duration is a number of hours: digits, and a fraction after a point.
    m_text4->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("\\d{0,4}(\\.\\d{0,2})?")), m_text4));
    m_text5 = lineEdit(this, "Text5", "MBY");
    m_text6 = lineEdit(this, "Text6", "MRECNO");
    m_text7 = new QPlainTextEdit(this);
    m_text7->setObjectName(QStringLiteral("Text7"));
    m_text7->setTabChangesFocus(true);
    m_time = new QTimeEdit(this);
    m_time->setObjectName(QStringLiteral("DTPicker1"));
    m_time->setDisplayFormat(QStringLiteral("hh:mm AP"));

    m_option1 = new QRadioButton(QStringLiteral("Once Only, on currently selected date"), this);
    m_option1->setObjectName(QStringLiteral("Option1"));
    m_option2 = new QRadioButton(QStringLiteral("On a recurring basis"), this);
    m_option2->setObjectName(QStringLiteral("Option2"));
    m_options = new QButtonGroup(this);
    m_options->addButton(m_option1);
    m_options->addButton(m_option2);
    m_combo1 = comboBox(this, "Combo1", occurrenceNames(), false);
    m_combo2 = comboBox(this, "Combo2", weekdayNames(), false);
    m_combo3 = comboBox(this, "Combo3", intervalNames(), true);

    auto* fields = new QFormLayout;
    // Labels above their boxes keep the pane narrow beside the calendar.
    fields->setRowWrapPolicy(QFormLayout::WrapAllRows);
    fields->setVerticalSpacing(4);
    fields->addRow(QStringLiteral("Purpose / Meeting Name:"), m_text2);
    fields->addRow(QStringLiteral("Location:"), m_text3);
    fields->addRow(QStringLiteral("Meeting / Room Number:"), m_text1);
    auto* timeRow = new QHBoxLayout;
    timeRow->addWidget(m_time);
    timeRow->addSpacing(16);
    timeRow->addWidget(new QLabel(QStringLiteral("Anticipated duration:"), this));
    timeRow->addWidget(m_text4);
    timeRow->addStretch();
    fields->addRow(QStringLiteral("Time:"), timeRow);
    fields->addRow(QStringLiteral("Booked by:"), m_text5);
    fields->addRow(QStringLiteral("Associated Case Number (if any):"), m_text6);

    auto* schedule = new QGroupBox(QStringLiteral("This meeting is scheduled on the following basis:"), this);
    schedule->setObjectName(QStringLiteral("Frame1"));
    auto* scheduleLayout = new QVBoxLayout(schedule);
    scheduleLayout->addWidget(m_option1);
    scheduleLayout->addWidget(m_option2);
    auto* ruleRow = new QHBoxLayout;
    ruleRow->addSpacing(24);
    ruleRow->addWidget(m_combo1);
    ruleRow->addWidget(m_combo2);
    ruleRow->addWidget(new QLabel(QStringLiteral("of the month"), schedule));
    ruleRow->addStretch();
    scheduleLayout->addLayout(ruleRow);
    auto* intervalRow = new QHBoxLayout;
    intervalRow->addSpacing(24);
    intervalRow->addWidget(new QLabel(QStringLiteral("every"), schedule));
    intervalRow->addWidget(m_combo3);
    intervalRow->addWidget(new QLabel(QStringLiteral("(Quarterly, Annually)"), schedule));
    intervalRow->addStretch();
    scheduleLayout->addLayout(intervalRow);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addWidget(schedule);
    layout->addWidget(new QLabel(QStringLiteral("Remarks:"), this));
    layout->addWidget(m_text7, 1);

    clearToDefaults();
    setLocked(true);
}

MeetingForm MeetingEditor::form() const
{
    MeetingForm form;
    form.Text1 = m_text1->text();
    form.Text2 = m_text2->text();
    form.Text3 = m_text3->text();
    form.Text4 = m_text4->text();
    form.Text5 = m_text5->text();
    form.Text6 = m_text6->text();
    form.Text7 = m_text7->toPlainText();
    form.DTPicker1 = m_time->time();
    form.Option1 = m_option1->isChecked();
    form.Option2 = m_option2->isChecked();
    form.Combo1 = m_combo1->currentIndex() >= 0 ? m_combo1->currentText() : QString();
    form.Combo2 = m_combo2->currentIndex() >= 0 ? m_combo2->currentText() : QString();
    form.Combo3 = m_combo3->currentText();
    return form;
}

void MeetingEditor::setForm(const MeetingForm& form)
{
    m_text1->setText(form.Text1);
    m_text2->setText(form.Text2);
    m_text3->setText(form.Text3);
    m_text4->setText(form.Text4);
    m_text5->setText(form.Text5);
    m_text6->setText(form.Text6);
    m_text7->setPlainText(form.Text7);
    m_time->setTime(form.DTPicker1.isValid() ? form.DTPicker1 : QTime(0, 0));
    // Neither option is chosen after INew, which an exclusive pair cannot
    // show; the pair is exclusive again as soon as one is chosen.
    m_options->setExclusive(false);
    m_option1->setChecked(form.Option1);
    m_option2->setChecked(form.Option2 && !form.Option1);
    m_options->setExclusive(true);
    showInCombo(m_combo1, form.Combo1);
    showInCombo(m_combo2, form.Combo2);
    showInCombo(m_combo3, form.Combo3);
}

void MeetingEditor::clearToDefaults()
{
    MeetingForm defaults;
    // The board meets in the evening.
    defaults.DTPicker1 = QTime(19, 0);
    setForm(defaults);
}

void MeetingEditor::setLocked(bool locked)
{
    m_locked = locked;
    for (QLineEdit* box : {m_text1, m_text2, m_text3, m_text4, m_text5, m_text6}) {
        box->setReadOnly(locked);
    }
    m_text7->setReadOnly(locked);
    m_time->setReadOnly(locked);
    for (QWidget* choice :
        std::initializer_list<QWidget*>{m_option1, m_option2, m_combo1, m_combo2, m_combo3}) {
        choice->setEnabled(!locked);
    }
}

} // namespace pvardo::schedule
