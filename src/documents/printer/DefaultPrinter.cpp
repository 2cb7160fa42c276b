#include "documents/printer/DefaultPrinter.h"

#include <QPageSize>
#include <QPdfWriter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QTextDocument>

namespace pvardo::documents {

QString defaultPrinterName()
{
    return QPrinterInfo::defaultPrinter().printerName();
}

PrinterOutcome printOnDefaultPrinter(QTextDocument& document, const PrintSettings& settings,
                                     const QString& fallbackPdfPath, const QString& title)
{
    return printOnDefaultPrinter(
        [&](QPagedPaintDevice& device) { return PrintRichText(document, device, settings); }, fallbackPdfPath,
        title);
}

PrinterOutcome printOnDefaultPrinter(const PageJob& job, const QString& fallbackPdfPath, const QString& title)
{
    PrinterOutcome outcome;
    const QPrinterInfo info = QPrinterInfo::defaultPrinter();
    if (!info.isNull()) {
        QPrinter printer(info, QPrinter::HighResolution);
        printer.setFullPage(false);
        if (!info.supportedPageSizes().isEmpty() && !info.defaultPageSize().isValid()) {
            printer.setPageSize(QPageSize(QPageSize::Letter));
        }
        if (!title.isEmpty()) {
            printer.setDocName(title);
        }
        const PrintOutcome printed = job(printer);
        outcome.ok = printed.ok;
        outcome.pages = printed.pages;
        outcome.error = printed.error;
        outcome.printerName = info.printerName();
        return outcome;
    }

    // No printer on this workstation: the pages go to a PDF file on Letter paper.
    QPdfWriter writer(fallbackPdfPath);
    writer.setPageSize(QPageSize(QPageSize::Letter));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setResolution(1200);
    if (!title.isEmpty()) {
        writer.setTitle(title);
    }
    const PrintOutcome printed = job(writer);
    outcome.ok = printed.ok;
    outcome.pages = printed.pages;
    outcome.error = printed.error;
    outcome.pdfPath = fallbackPdfPath;
    return outcome;
}

} // namespace pvardo::documents
