#include "documents/printer/DefaultPrinter.h"

#include <QDir>
#include <QFileInfo>
#include <QPageSize>
#include <QPdfWriter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QStandardPaths>
#include <QTextDocument>

namespace pvardo::documents {

QString outputPdfPath(const QString& title, const QString& folder)
{
    QString where = folder;
    if (where.isEmpty()) {
        where = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
        if (where.isEmpty() || !QDir().mkpath(where)) {
            where = QDir::homePath();
        }
    }
    QString name;
    for (const QChar c : title.simplified()) {
        name += c.isPrint() && !QStringLiteral("/\\:*?\"<>|").contains(c) ? c : QLatin1Char('-');
    }
    name = name.left(120).trimmed();
    while (name.startsWith(QLatin1Char('.'))) {
        name.remove(0, 1);
    }
    if (name.isEmpty()) {
        name = QStringLiteral("Report");
    }
    const QDir dir(where);
    QString path = dir.absoluteFilePath(name + QStringLiteral(".pdf"));
    for (int n = 2; QFileInfo::exists(path) && n < 100000; ++n) {
        path = dir.absoluteFilePath(QStringLiteral("%1 (%2).pdf").arg(name).arg(n));
    }
    return path;
}

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
