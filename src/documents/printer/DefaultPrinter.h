#pragma once

#include "documents/PrintRichText.h"

#include <QString>

class QTextDocument;

namespace pvardo::documents {

// What printing on the office's printer came to.
struct PrinterOutcome {
    bool ok = false;
    int pages = 0;
    QString printerName; // the printer used, empty when the pages went to a file
    QString pdfPath;     // the file the pages went to when there was no printer
    QString error;
};

// The name of the default printer of the system, empty when there is none.
QString defaultPrinterName();

// Where the pages of a report go when the workstation has no printer: the
// user's documents folder (made when it is missing; the home folder when it
// cannot be), or `folder` when one is given, under the report's title made
// fit for a file name. An earlier file is never replaced: "Title.pdf", then
// "Title (2).pdf", "Title (3).pdf" and on.
QString outputPdfPath(const QString& title, const QString& folder = QString());

// Prints `document` with PrintRichText on the default printer, Letter paper
// unless the printer says otherwise. When the workstation has no printer the
// pages go to a PDF file at `fallbackPdfPath`, whose path the caller shows to
// the user.
PrinterOutcome printOnDefaultPrinter(QTextDocument& document, const PrintSettings& settings,
                                     const QString& fallbackPdfPath, const QString& title = QString());

// The same for any printing job: the one way to the office's printer, or to
// the PDF file when there is none.
PrinterOutcome printOnDefaultPrinter(const PageJob& job, const QString& fallbackPdfPath,
                                     const QString& title = QString());

} // namespace pvardo::documents
