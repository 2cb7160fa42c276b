#include "documents/screens/PrintFrm.h"

#include "documents/PrintState.h"
#include "documents/printer/DefaultPrinter.h"
#include "documents/screens/HeaderFrm.h"

#include "common/PromptService.h"
#include "common/Session.h"
#include "ui/XPButton.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

namespace pvardo::documents {

namespace {

QString marginText(double inches)
{
    return QString::number(inches, 'g', 4).trimmed();
}

double readMargin(const QString& text, double fallback)
{
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    return ok ? value : fallback;
}

} // namespace

PrintFrm::PrintFrm(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("PrintFrm"));
    setWindowTitle(QStringLiteral("  Print"));
    PrintState& state = printState();

    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    layout->addLayout(form);

    m_types = new QComboBox(this);
    m_types->setObjectName(QStringLiteral("Combo2"));
    m_types->addItems(state.ReportList);
    m_types->setCurrentIndex(state.ReportList.size() == 1 ? 0 : -1);
    m_types->setMinimumWidth(320);
    form->addRow(QStringLiteral(" Select printout type"), m_types);
    connect(m_types, &QComboBox::currentTextChanged, this, &PrintFrm::chosen);

    const QString printer = defaultPrinterName();
    m_printer = new QLabel(printer.isEmpty() ? QStringLiteral("No printer: the pages go to a PDF file") : printer, this);
    m_printer->setObjectName(QStringLiteral("Label1"));
    form->addRow(QStringLiteral("Printer:"), m_printer);

    // Side margins left at next to nothing, and a top or bottom one that
    // would cut into a printer's unprintable band, start from the office's
    // usual ones.
    if (state.leftMargin < 0.2) {
        state.leftMargin = 0.8;
    }
    if (state.rightMargin < 0.2) {
        state.rightMargin = 0.8;
    }
    if (state.topMargin < 0.67) {
        state.topMargin = 0.67;
    }
    if (state.bottomMargin < 0.67) {
        state.bottomMargin = 0.67;
    }
    const double values[4] = {state.leftMargin, state.topMargin, state.rightMargin, state.bottomMargin};
    const char* names[4] = {"Text3", "Text4", "Text5", "Text6"};
    const char* captions[4] = {" Left margin in inches", " Top margin in inches", " Right margin in inches",
                               " Bottom margin in inches"};
    // Digits and the decimal point only.
    const QRegularExpression number(QStringLiteral("[0-9.]*"));
    for (int i = 0; i < 4; ++i) {
        auto* box = new QLineEdit(marginText(values[i]), this);
        box->setObjectName(QString::fromLatin1(names[i]));
        box->setValidator(new QRegularExpressionValidator(number, box));
        box->setMaximumWidth(80);
        connect(box, &QLineEdit::editingFinished, box, [box] { box->setText(checkMargins(box->text())); });
        form->addRow(QString::fromLatin1(captions[i]), box);
        m_margins[i] = box;
    }

    m_fontSize = new QComboBox(this);
    m_fontSize->setObjectName(QStringLiteral("Combo1"));
    for (int size : {9, 10, 11, 12, 14, 16, 18, 20, 24}) {
        m_fontSize->addItem(QString::number(size));
    }
    const int current = m_fontSize->findText(QString::number(qRound(state.reportFontSize)));
    m_fontSize->setCurrentIndex(current >= 0 ? current : 1);
    form->addRow(QStringLiteral("Default Font Size:"), m_fontSize);

    m_preview = new QCheckBox(QStringLiteral("Allow view /edit before printing"), this);
    m_preview->setObjectName(QStringLiteral("Check1"));
    m_preview->setChecked(state.preview);
    layout->addWidget(m_preview);

    auto* header = new ui::XPButton(QStringLiteral("XPButton1"), QStringLiteral(" Set report default header"),
                                    QString(), this);
    connect(header, &QPushButton::clicked, this, [this] {
        HeaderFrm letterhead(this);
        prompts().exec(letterhead);
    });
    layout->addWidget(header);

    auto* buttons = new QHBoxLayout;
    auto* print = new ui::XPButton(QStringLiteral("iPrint"), QStringLiteral(" Print"), QString(), this);
    auto* cancel = new ui::XPButton(QStringLiteral("iCancel"), QStringLiteral(" Cancel"), QString(), this);
    print->setDefault(true);
    buttons->addStretch();
    buttons->addWidget(print);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    connect(print, &QPushButton::clicked, this, &PrintFrm::iPrint);
    connect(cancel, &QPushButton::clicked, this, &PrintFrm::iCancel);

    session().StopFlag = true;
    chosen(m_types->currentText());
}

QString PrintFrm::checkMargins(const QString& value)
{
    const double inches = readMargin(value, 0);
    if (inches < 0.5) {
        return QStringLiteral("0.5");
    }
    if (inches > 3) {
        return QStringLiteral("3");
    }
    return value.trimmed();
}

void PrintFrm::chosen(const QString& text)
{
    const bool fixedForm = text.startsWith(QLatin1String("ID "));
    for (QLineEdit* box : m_margins) {
        box->setEnabled(!fixedForm);
    }
    m_fontSize->setEnabled(!fixedForm);
    if (text.left(3) == QLatin1String("Ros")) {
        printState().templateName = QStringLiteral("roster");
    }
}

void PrintFrm::iPrint()
{
    const QString choice = m_types->currentText().trimmed();
    if (choice.isEmpty()) {
        session().StopFlag = true;
        showMessage(QStringLiteral("You must select a report type from the pop down list prior to proceeding."),
                    QStringLiteral(" Print"), PromptButtons::Ok, PromptIcon::Exclamation);
        return;
    }
    PrintState& state = printState();
    session().StopFlag = false;
    state.footer = true;
    state.preview = m_preview->isChecked();
    state.ReportChoice = choice.toUpper();
    state.reportCaption = choice;
    // A box still being typed in is checked as if it had been left.
    double* targets[4] = {&state.leftMargin, &state.topMargin, &state.rightMargin, &state.bottomMargin};
    for (int i = 0; i < 4; ++i) {
        *targets[i] = readMargin(checkMargins(m_margins[i]->text()), *targets[i]);
    }
    state.reportFontSize = m_fontSize->currentText().toDouble();
    accept();
}

void PrintFrm::iCancel()
{
    session().StopFlag = true;
    reject();
}

} // namespace pvardo::documents
