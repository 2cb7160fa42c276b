#pragma once

#include <QWidget>

#include <functional>

class QCheckBox;
class QLineEdit;
class QTextDocument;
class QTextEdit;

namespace pvardo::documents {

struct PrinterOutcome;

// The report window "  Report Preview": every letter and listing is built in
// its report buffer, shown here, and printed, written to a text file or
// dropped from here. One window for the whole program; it is shown again for
// each report, and a report stays in it as "Current report" until the next
// one is built, so labels or letters can follow a listing.
class Editor : public QWidget
{
    Q_OBJECT

public:
    static Editor& instance();

    // RichTextBox1, the report being built; RichTextBox2 the scratch buffer
    // head files pass through; RichTextBox3 the footer band.
    QTextDocument& ReportBuffer();
    QTextDocument& scratchBuffer();
    QTextDocument& footerBuffer();
    // Empties the three buffers.
    void clearBuffers();

    // The hidden tag of the report's origin: "SUR" marks the surrounding
    // parcels' list.
    void setOrigin(const QString& tag);

    // What the report is, such as "Application Detail 24-017": the printer's
    // name for the job, and the name of the PDF file when there is no
    // printer. Until a screen sets it, a report is named after the caption
    // last chosen in the print dialog and the current case ("Listing of Fees
    // 24-201"), and "Report" when there is none; emptying the buffers lets a
    // title set before go.
    void setTitle(const QString& title);
    QString title() const;

    // Shows the report locked, from its start.
    void showReport();

    // Print: the report on the default printer with 0.8-inch margins, the
    // window closing once it printed, or,
    // for a report of expiring cases or parcels, the print dialog first for
    // letters or labels to follow it, which the screen that built the report
    // prints.
    void iPrint();
    // The report as it stands, `copies` times in one job (a receipt's
    // copies): on the printer, or into one PDF file, a copy after another.
    void printCopies(int copies);
    // Writes the report as plain text to print.txt in the working folder.
    void iPrint2File();
    void iContinue();
    void iCancel();

    // Where the pages go when the workstation has no printer; by default the
    // user's documents folder (outputPdfPath).
    static void setPdfFolder(const QString& folder);
    // A free name for the next PDF file in that folder.
    static QString nextPdfPath();
    // A file of that folder no file has yet, named after the report:
    // `baseName`.pdf, or "`baseName` (2).pdf" and on (outputPdfPath).
    static QString unusedPdfPath(const QString& baseName);
    // Tells the clerk how a print ended: the printer's error, or where the
    // pages went when there was no printer (`what`: "report", "labels"...).
    // True when it printed.
    // Prints any document as this window prints its report (the print
    // dialog's margins and footer band, the print-time pass, `copies` in one
    // job) and tells the clerk how it ended (`what`: "The letters were").
    // True when it printed; `pdfPath` receives the PDF file when there was
    // no printer.
    static bool printDocument(QTextDocument& document, const QString& title, const QString& what, int copies = 1,
                              QString* pdfPath = nullptr);
    static bool tellPrintOutcome(const PrinterOutcome& outcome, const QString& what);
    // The PDF file of the last print without a printer, empty when it went to
    // a printer.
    QString lastPdf() const { return m_lastPdf; }

    // The screen that opened a report of letters or labels is told the choice
    // made in the print dialog.
    using FollowUp = std::function<void(const QString& reportChoice)>;
    void setFollowUp(FollowUp followUp) { m_followUp = std::move(followUp); }

private:
    Editor();
    void printReport(int copies);

    QTextEdit* m_report = nullptr;
    QTextEdit* m_scratch = nullptr;
    QTextEdit* m_footer = nullptr;
    QCheckBox* m_allowEdit = nullptr;
    QLineEdit* m_origin = nullptr;
    QString m_lastPdf;
    QString m_title;
    FollowUp m_followUp;
};

} // namespace pvardo::documents
