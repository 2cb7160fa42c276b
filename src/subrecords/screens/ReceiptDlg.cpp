#include "subrecords/screens/ReceiptDlg.h"

#include "cases/screens/CaseForm.h"
#include "cases/screens/ZPermits.h"
#include "common/Clock.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "common/Waiting.h"
#include "documents/Merge.h"
#include "documents/PrintState.h"
#include "documents/RtfWriter.h"
#include "documents/screens/Editor.h"
#include "documents/screens/Letters.h"
#include "subrecords/Money.h"
#include "ui/TaskFrm.h"
#include "ui/XPButton.h"

#include <QCheckBox>
#include <QDir>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace pvardo::subrecords {

namespace {

// The case screen's inputs the receipt reads.
constexpr int ApplicantNameBox = 8;
constexpr int ApplicantAddressBox = 9;
constexpr int ContactEmailBox = 57;
constexpr int CaseNumberBox = 1;

} // namespace

QString receiptAmount(const QString& typed)
{
    if (typed.trimmed().isEmpty()) {
        return QString();
    }
    // What is no amount stays as typed, for the clerk to see and mend.
    const std::optional<Cents> cents = typedCents(typed);
    return cents ? maskedAmount(*cents) : typed;
}

ReceiptInputs caseReceipt(const cases::ZPermits& caseScreen)
{
    const cases::CaseForm& form = caseScreen.form();
    ReceiptInputs inputs;
    inputs.receivedFrom = form.boxText(ApplicantNameBox).trimmed();
    inputs.address = form.boxText(ApplicantAddressBox).trimmed();
    // The case screen has no amount of its own: the contact e-mail input
    // stands in, and normally comes up empty for the clerk to type.
    inputs.amount = receiptAmount(form.boxText(ContactEmailBox));
    const QString number = form.boxText(CaseNumberBox).trimmed();
    inputs.forText = QStringLiteral("PLANNING BOARD CASE # ") + number;
    inputs.reference = number;
    return inputs;
}

ReceiptDlg::ReceiptDlg(const ReceiptInputs& inputs, int screenCode, QWidget* parent)
    : QDialog(parent)
    , m_screenCode(screenCode)
{
    setObjectName(QStringLiteral("receipt"));
    setWindowTitle(QStringLiteral("   General Receipt"));
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    const char* captions[] = {nullptr, "Received From:", "Address:", "Amount:", "For:", "Number of Copies:", "Date:", nullptr};
    const QString values[] = {QString(), inputs.receivedFrom, inputs.address, inputs.amount, inputs.forText,
                              QStringLiteral("1"), todaysDate().toString(QStringLiteral("MM/dd/yyyy")), inputs.reference};
    for (int i = 1; i <= 7; ++i) {
        m_text[i] = new QLineEdit(values[i], this);
        m_text[i]->setObjectName(QStringLiteral("Text") + QString::number(i));
        if (captions[i]) {
            form->addRow(QString::fromLatin1(captions[i]), m_text[i]);
        } else {
            form->addRow(QString(), m_text[i]);
        }
    }
    layout->addLayout(form);
    m_edit = new QCheckBox(QStringLiteral("Allow me to view and edit receipt"), this);
    m_edit->setObjectName(QStringLiteral("Check1"));
    layout->addWidget(m_edit);
    auto* buttons = new QHBoxLayout;
    auto* print = new ui::XPButton(QStringLiteral("iPrint"), QStringLiteral("&Print"), QStringLiteral(" Print"), this);
    auto* cancel = new ui::XPButton(QStringLiteral("iCancel"), QStringLiteral("&Cancel"), QStringLiteral(" Cancel"), this);
    buttons->addStretch();
    buttons->addWidget(print);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    connect(print, &QPushButton::clicked, this, &ReceiptDlg::iPrint);
    connect(cancel, &QPushButton::clicked, this, &ReceiptDlg::iCancel);
    // The amount keeps its mask when the clerk leaves it.
    connect(m_text[3], &QLineEdit::editingFinished, this,
            [this] { m_text[3]->setText(receiptAmount(m_text[3]->text())); });
}

void ReceiptDlg::iPrint()
{
    m_text[3]->setText(receiptAmount(m_text[3]->text()));
    if (!typedCents(m_text[3]->text())) {
        showMessage(QStringLiteral("Amount: \"") + m_text[3]->text().trimmed()
                        + QStringLiteral("\" is not an amount of money.\nType it as 1250, 1,250.00 or $1,250.00."),
                    QStringLiteral(" Not an Amount"), PromptButtons::Ok, PromptIcon::Critical);
        m_text[3]->setFocus();
        return;
    }
    documents::PrintState& state = documents::printState();
    state.receiptSlots.fill(QString());
    state.receiptSlots[1] = m_text[6]->text().trimmed();
    state.receiptSlots[2] = m_text[3]->text().trimmed();
    state.receiptSlots[3] = m_text[4]->text().trimmed();
    state.receiptSlots[4] = m_text[7]->text().trimmed();
    printreceipt(m_edit->isChecked());
    accept();
}

void ReceiptDlg::iCancel()
{
    reject();
}

void ReceiptDlg::printreceipt(bool editMark)
{
    ui::TaskFrm::open(QStringLiteral("Printing to default printer..."));
    WaitSeconds(2);
    documents::Editor& editor = documents::Editor::instance();
    editor.clearBuffers();
    editor.setOrigin(QString());
    editor.setTitle(documents::caseReportTitle(QStringLiteral("Receipt")));
    const documents::FormLoad load = documents::mergeTemplate(
        editor.ReportBuffer(), QDir(session().FormsFolder).filePath(QStringLiteral("receipt.rtf")), m_screenCode,
        documents::SplitAddress(m_text[1]->text().trimmed(), m_text[2]->text().trimmed()));
    ui::TaskFrm::close();
    if (!load.ok) {
        showMessage(load.message, documents::formFileMessageTitle(), PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    if (editMark) {
        // The clerk sees and may mend the receipt as it will print.
        documents::ExpandPrintTokens(editor.ReportBuffer());
        documents::printState().preview = true;
        documents::showBuiltReport();
    } else {
        const int copies = static_cast<int>(leadingCents(m_text[5]->text()) / 100);
        // The copies go to the printer as one job, or into one PDF file.
        if (copies >= 1) {
            editor.printCopies(copies);
        }
    }
    QString folder = session().TempFolder.isEmpty() ? QDir::tempPath() : session().TempFolder;
    replaceFile(QDir(folder).filePath(QStringLiteral("tmp.rtf")), documents::writeRtf(editor.ReportBuffer()));
}

void openReceipt(const ReceiptInputs& inputs, int screenCode, QWidget* parent)
{
    ReceiptDlg dialog(inputs, screenCode, parent);
    prompts().exec(dialog);
}

} // namespace pvardo::subrecords
