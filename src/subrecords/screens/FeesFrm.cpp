#include "subrecords/screens/FeesFrm.h"

#include "cases/screens/ZPermits.h"
#include "common/Clock.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "common/Waiting.h"
#include "documents/Merge.h"
#include "documents/Labels.h"
#include "documents/screens/Editor.h"
#include "documents/screens/LabelFrm.h"
#include "documents/screens/Letters.h"
#include "store/DatabaseLocation.h"
#include "subrecords/screens/ReceiptDlg.h"
#include "ui/DateInput.h"
#include "ui/MonthSelect.h"
#include "ui/TaskFrm.h"

#include <QComboBox>
#include <QDir>
#include <QEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRadioButton>
#include <QVBoxLayout>

namespace pvardo::subrecords {

namespace {

enum Box { Description = 1, Charged = 2, Paid = 3, Balance = 4, PayId = 5, Name = 6, Address = 7, Phone = 8, Email = 9 };

// The parties of the case screen, each name, address, phone and e-mail.
const char* const Parties[4][4] = {
    {"PBAPPNAME1", "PBAPPADDR1", "PBAPPTEL", "PBAPPEMAIL"},
    {"PBOWNRNAME1", "PBOWNRADDR1", "PBOWNTEL", "PBOWNEMAIL"},
    {"PBPROXYNAME1", "PBPROXYADDR1", "PBPROXYTEL", "PBPROXYEMAIL"},
    {"PBCONTACTNAME1", "PBCONTACTADDR1", "PBCONTACTTEL", "PBCONTACTEMAIL"},
};

QString feeFolderFile(const char* name)
{
    return QDir(session().FormsFolder).filePath(QString::fromLatin1(name));
}

} // namespace

FeesFrm::FeesFrm(cases::ZPermits& caseScreen, QWidget* parent)
    : SubRecordFrm(feesSettings(), caseScreen, parent)
{
    build();
    QMenu* reports = reportsMenu();
    auto add = [this, reports](const char* name, const char* caption, std::function<void()> run) {
        QAction* action = reports->addAction(QString::fromLatin1(caption));
        action->setObjectName(QString::fromLatin1(name));
        if (run) {
            connect(action, &QAction::triggered, this, run);
        }
    };
    add("monthlynumber", "Fees by Month", [this] { printMonth(false); });
    add("monthlyAllnumber", "Fees by Month (All Projects)", [this] { printMonth(true); });
    add("exppermits", "Report of Receivables..", [this] { printListing(); });
    add("lettersofexppermits", "Receivables (All Projects)", [this] { printReceivables(); });
    add("expiringsoon", "Expiring Soon", {});
    add("reportfu", "Follow Up", {});
}

void FeesFrm::buildDetail(QWidget* area)
{
    auto* layout = new QVBoxLayout(area);
    auto* form = new QFormLayout;
    auto box = [this, area](int number, int longest) {
        auto* input = new QLineEdit(area);
        input->setObjectName(QStringLiteral("Text1_") + QString::number(number));
        if (longest > 0) {
            input->setMaxLength(longest);
        }
        input->installEventFilter(this);
        addBox(number, input);
        return input;
    };
    form->addRow(QStringLiteral("Purpose/Description of Payment:"), box(Description, 35));
    form->addRow(QStringLiteral("Amount Charged:"), box(Charged, 0));
    form->addRow(QStringLiteral("Amount Paid:"), box(Paid, 0));
    QLineEdit* balance = box(Balance, 0);
    form->addRow(QStringLiteral("Balance Due:"), balance);
    connect(balance, &QLineEdit::textEdited, this, [this](const QString& text) {
        m_balanceTyped = !text.trimmed().isEmpty();
        if (!m_balanceTyped) {
            calculateBalance();
        }
    });
    m_method = new QComboBox(area);
    m_method->setObjectName(QStringLiteral("Combo11"));
    m_method->setEditable(true);
    m_method->addItems({QStringLiteral("Check"), QStringLiteral("Credit/Debit Card"), QStringLiteral("Cash"),
                        QStringLiteral("Money Order"), QStringLiteral("Bank Check"), QStringLiteral("Draft"),
                        QStringLiteral("Invoice")});
    m_method->installEventFilter(this);
    addInput(m_method);
    form->addRow(QStringLiteral("Method of Payment:"), m_method);
    form->addRow(QStringLiteral("Payment ID (e.g. check #)"), box(PayId, 14));
    auto date = [this, area](const char* name) {
        auto* input = new ui::DateInput(todaysDate(), area);
        input->setObjectName(QString::fromLatin1(name));
        input->installEventFilter(this);
        addInput(input);
        return input;
    };
    m_fileDate = date("DTPicker1");
    m_paidDate = date("DTPicker2");
    m_dueDate = date("DTPicker4");
    form->addRow(QStringLiteral("Date Entered:"), m_fileDate);
    form->addRow(QStringLiteral("Date Paid:"), m_paidDate);
    form->addRow(QStringLiteral("Date Due:"), m_dueDate);
    layout->addLayout(form);

    auto* party = new QGroupBox(QStringLiteral(" Responsible Party "), area);
    party->setObjectName(QStringLiteral("fraParty"));
    auto* partyForm = new QFormLayout(party);
    partyForm->addRow(QStringLiteral("Name:"), box(Name, 40));
    partyForm->addRow(QStringLiteral("Address:"), box(Address, 80));
    partyForm->addRow(QStringLiteral("Phone:"), box(Phone, 20));
    partyForm->addRow(QStringLiteral("E-mail:"), box(Email, 40));
    auto* sameAsRow = new QHBoxLayout;
    sameAsRow->addWidget(new QLabel(QStringLiteral("Same As (from Case Tab):"), party));
    const char* captions[] = {"Applicant", "Owner", "Proxy/Attorney", "Contact"};
    for (int i = 0; i < 4; ++i) {
        auto* option = new QRadioButton(QString::fromLatin1(captions[i]), party);
        option->setObjectName(QStringLiteral("Option1_") + QString::number(i));
        addInput(option);
        connect(option, &QRadioButton::clicked, this, [this, i] { sameAs(i); });
        sameAsRow->addWidget(option);
    }
    partyForm->addRow(sameAsRow);
    layout->addWidget(party);

    m_totalLine = new QLabel(area);
    m_totalLine->setObjectName(QStringLiteral("lblTotals"));
    m_totalLine->setFont(QFont(QStringLiteral("Courier New")));
    layout->addWidget(m_totalLine);
    layout->addStretch();
}

bool FeesFrm::eventFilter(QObject* watched, QEvent* event)
{
    // Leaving any input of the detail works the balance out again.
    if (event->type() == QEvent::FocusOut) {
        calculateBalance();
    }
    return SubRecordFrm::eventFilter(watched, event);
}

void FeesFrm::calculateBalance()
{
    if (mode() != ui::RecordMode::New && mode() != ui::RecordMode::Edit) {
        return;
    }
    const std::optional<Cents> charged = typedCents(boxText(Charged));
    const std::optional<Cents> paid = typedCents(boxText(Paid));
    const std::optional<Cents> worked =
        charged && paid ? std::optional<Cents>(*charged - *paid) : std::nullopt;
    // A balance the clerk typed over stands until the clerk empties it; the
    // tip says what charged less paid would give.
    if (!m_balanceTyped && worked) {
        setBoxText(Balance, plainAmount(*worked));
    }
    showBalanceTip(worked);
}

void FeesFrm::showBalanceTip(std::optional<Cents> worked)
{
    QString tip;
    if (!m_balanceTyped) {
        tip = QStringLiteral("Amount Charged less Amount Paid, worked out as you leave each input.\n"
                             "Type over it to set the balance yourself.");
    } else {
        tip = QStringLiteral("Typed over: kept as typed.\n");
        if (worked) {
            tip += QStringLiteral("Amount Charged less Amount Paid would be ") + plainAmount(*worked)
                + QStringLiteral(".\n");
        }
        tip += QStringLiteral("Empty it to have it worked out again.");
    }
    in(Balance)->setToolTip(tip);
}

QLineEdit* FeesFrm::in(int box) const
{
    return findChild<QLineEdit*>(QStringLiteral("Text1_") + QString::number(box));
}

void FeesFrm::inputsFinished()
{
    calculateBalance();
}

void FeesFrm::sameAs(int party)
{
    if (party < 0 || party > 3 || (mode() != ui::RecordMode::New && mode() != ui::RecordMode::Edit)) {
        return;
    }
    const int boxes[4] = {Name, Address, Phone, Email};
    for (int i = 0; i < 4; ++i) {
        setBoxText(boxes[i], caseColumnText(QString::fromLatin1(Parties[party][i])).trimmed());
    }
}

store::StoreStatus FeesFrm::writeOwnColumns(store::Recordset& row)
{
    FeeFixedValues values;
    values.ownerCase = ownerCase();
    values.projectName = headingLabel()->text();
    values.fileDate = m_fileDate->date();
    // Nothing paid has no date of payment.
    values.paidDate = typedCents(boxText(Paid)).value_or(0) != 0 ? m_paidDate->date() : QDate();
    values.dueDate = m_dueDate->date();
    values.payMethod = m_method->currentText();
    values.user = session().CurrentUser;
    return writeFeeFixedColumns(row, values);
}

void FeesFrm::showOwnColumns(const store::Recordset& row)
{
    m_method->setEditText(row.text(QStringLiteral("PBFPAYMETHOD")));
    // A stored balance that is not charged less paid was typed over once and
    // stays so on an edit.
    const Cents worked = centsOf(row.value(QStringLiteral("PBFAMOUNT"))) - centsOf(row.value(QStringLiteral("PBFPAID")));
    m_balanceTyped = centsOf(row.value(QStringLiteral("PBFBALDUE"))) != worked;
    showBalanceTip(worked);
    const std::pair<ui::DateInput*, const char*> dates[] = {
        {m_fileDate, "PBFFILEDATE"}, {m_paidDate, "PBFPAIDDATE"}, {m_dueDate, "PBFDUEDATE"}};
    for (const auto& [input, column] : dates) {
        const QDate date = row.value(QString::fromLatin1(column)).toDate();
        input->setDate(date.isValid() ? date : QDate());
    }
}

void FeesFrm::clearOwnInputs()
{
    m_balanceTyped = false;
    showBalanceTip(std::nullopt);
    // No party is chosen for a new record until the clerk picks one.
    for (QRadioButton* option : findChildren<QRadioButton*>()) {
        option->setAutoExclusive(false);
        option->setChecked(false);
        option->setAutoExclusive(true);
    }
    m_method->setCurrentIndex(-1);
    m_method->setEditText(QString());
    for (ui::DateInput* input : {m_fileDate, m_paidDate, m_dueDate}) {
        input->setDate(todaysDate());
    }
}

void FeesFrm::listStarted()
{
    m_totals = FeeTotals{};
}

void FeesFrm::listRowAdded(const store::Recordset& row)
{
    m_totals.add(row);
}

void FeesFrm::listFinished(int count)
{
    m_totalLine->setText(count > 0 ? grandTotalLine(m_totals) : QString());
}

void FeesFrm::PlugVars(QTextDocument& buffer)
{
    documents::FixedWords words;
    words.caseNumber = ownerCase();
    if (caseScreen()) {
        words.sbl = caseScreen()->published().sblShort;
    }
    documents::plugFixedWords(buffer, documents::ScreenCodes::Fees, words);
    SubRecordFrm::PlugVars(buffer);
}

void FeesFrm::printChoice(const QString& code)
{
    const documents::Addressee party = documents::SplitAddress(boxText(Name).trimmed(), boxText(Address).trimmed());
    if (code == QLatin1String("LIS")) {
        printListing();
    } else if (code == QLatin1String("REC")) {
        printreceipt();
    } else if (code == QLatin1String("BIL")) {
        documents::printState().reportHeading = feesTitle(headingLabel()->text(), ownerCase());
        documents::mergeAndPrint(feeFolderFile("feesd.rtf"), feesSettings().screenCode, party,
                                QStringLiteral("applicant"), QStringLiteral("Billing Letter"));
    } else if (code == QLatin1String("LAB")) {
        if (party.name.trimmed().isEmpty()) {
            showMessage(documents::noAddresseeMessage(ownerCase(), QStringLiteral("responsible party")),
                        documents::noAddresseeTitle(), PromptButtons::Ok, PromptIcon::Exclamation);
            return;
        }
        documents::labelState().single = false;
        documents::printMailingLabels({party}, this);
    }
}

void FeesFrm::printListing()
{
    FeeReportHead head;
    head.kind = FeeReport::Case;
    head.title = feesTitle(headingLabel()->text(), ownerCase());
    head.emptyLine = QStringLiteral("NO FEES FOUND FOR PROJECT ") + headingLabel()->text() + QLatin1Char('(')
        + ownerCase() + QLatin1Char(')');
    printReport(feesSettings().fullQuery(ownerCase()), head, documents::caseReportTitle(QStringLiteral("Listing of Fees")));
}

void FeesFrm::printMonth(bool allCases)
{
    const ui::MonthChoice chosen = ui::chooseMonth(this);
    if (!chosen.chosen) {
        return;
    }
    FeeReportHead head;
    if (allCases) {
        head.kind = FeeReport::AllCases;
        head.title = QStringLiteral("ALL FEES FOR ") + ui::monthTitle(chosen.month, chosen.year);
    } else {
        head.kind = FeeReport::CaseMonths;
        head.title = feesTitle(headingLabel()->text(), ownerCase()) + QStringLiteral(" FOR ")
            + ui::monthTitle(chosen.month, chosen.year);
    }
    printReport(feesByMonthQuery(allCases ? QString() : ownerCase(), chosen.month, chosen.year), head,
                allCases ? QStringLiteral("Fees by Month (All Projects) ") + ui::monthTitle(chosen.month, chosen.year)
                         : documents::caseReportTitle(QStringLiteral("Fees by Month ")
                                                      + ui::monthTitle(chosen.month, chosen.year)));
}

void FeesFrm::printReceivables()
{
    FeeReportHead head;
    head.kind = FeeReport::Receivables;
    head.title = QStringLiteral("ALL PROJECTS RECEIVABLES AS OF ") + todaysDate().toString(QStringLiteral("MM/dd/yyyy"));
    printReport(QStringLiteral("Select * from PBFEES WHERE [PBFBALDUE] <> 0 order by SEQ"), head,
                QStringLiteral("Receivables (All Projects)"));
}

void FeesFrm::printReport(const QString& query, const FeeReportHead& given, const QString& name)
{
    FeeReportHead head = given;
    head.headPath = feeFolderFile("feeshead.rtf");
    head.fontSize = documents::printState().reportFontSize;
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(store::databaseFile(session().DatabaseFolder, feesSettings().databaseFile),
                                       query, &status);
    if (!rows) {
        showMessage(status.description, feesSettings().caption, PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    if (rows->RecordCount() == 0 && head.kind != FeeReport::Case) {
        showMessage(QStringLiteral("No records meet the criteria."), QStringLiteral(" Record(s) not Found"),
                    PromptButtons::Ok, PromptIcon::Information);
        return;
    }
    ui::TaskFrm::open(QStringLiteral("Printing to default printer..."));
    WaitSeconds(2);
    documents::Editor& editor = documents::Editor::instance();
    editor.clearBuffers();
    editor.setOrigin(QString());
    editor.setTitle(name);
    buildFeeReport(editor.ReportBuffer(), *rows, head);
    ui::TaskFrm::close();
    documents::showBuiltReport();
}

void FeesFrm::printreceipt()
{
    ReceiptInputs inputs;
    inputs.receivedFrom = boxText(Name).trimmed();
    inputs.address = boxText(Address).trimmed();
    inputs.amount = receiptAmount(boxText(Paid));
    inputs.forText = boxText(Description).trimmed();
    inputs.reference = ownerCase() + QLatin1Char(' ') + boxText(PayId).trimmed();
    openReceipt(inputs, feesSettings().screenCode, this);
}

} // namespace pvardo::subrecords
