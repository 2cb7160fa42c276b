#pragma once

#include <QDialog>

class QCheckBox;
class QLineEdit;

namespace pvardo::cases {
class ZPermits;
}

namespace pvardo::subrecords {

// What the receipt dialog opens with.
struct ReceiptInputs {
    QString receivedFrom; // Text1
    QString address;      // Text2
    QString amount;       // Text3, already through the amount mask
    QString forText;      // Text4
    QString reference;    // Text7
};

// The amount mask "#######.#0" over a typed text; an empty text stays empty.
QString receiptAmount(const QString& typed);

// The receipt of the case screen: the applicant, the amount the clerk types.
ReceiptInputs caseReceipt(const cases::ZPermits& caseScreen);

// "   General Receipt": a money receipt printed from receipt.rtf through the
// numbered slots. It writes nothing to any table: no number is issued and
// nothing is logged.
class ReceiptDlg : public QDialog
{
    Q_OBJECT

public:
    ReceiptDlg(const ReceiptInputs& inputs, int screenCode, QWidget* parent = nullptr);

    void iPrint();
    void iCancel();

private:
    void printreceipt(bool editMark);

    int m_screenCode;
    QLineEdit* m_text[8] = {};
    QCheckBox* m_edit = nullptr;
};

// Opens the dialog through the prompt service.
void openReceipt(const ReceiptInputs& inputs, int screenCode, QWidget* parent);

} // namespace pvardo::subrecords
