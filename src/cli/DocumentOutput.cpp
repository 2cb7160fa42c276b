#include "cli/DocumentOutput.h"

#include "common/ReplacingFile.h"
#include "documents/printer/DefaultPrinter.h"

#include <QDir>
#include <QFileInfo>
#include <QPageSize>
#include <QPdfWriter>
#include <QTextDocument>

namespace pvardo::cli {

namespace {

const char* pagesWord(int pages)
{
    return pages == 1 ? " page" : " pages";
}

int printToPdf(CommandContext& context, const char* command, const documents::PageJob& job, const QString& title,
    const QString& pdf)
{
    ReplacingFile out(pdf);
    if (!out.open(QIODevice::WriteOnly)) {
        context.err << "pvardo-admin " << command << ": " << out.errorText() << Qt::endl;
        return ExitCode::Failed;
    }
    documents::PrintOutcome outcome;
    {
        QPdfWriter writer(&out);
        writer.setPageSize(QPageSize(QPageSize::Letter));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        writer.setResolution(1200);
        writer.setTitle(title);
        writer.setCreator(QStringLiteral("pvardo"));
        outcome = job(writer);
    }
    if (!outcome.ok) {
        out.cancel();
        context.err << "pvardo-admin " << command << ": cannot write " << QDir::toNativeSeparators(pdf) << ": "
                    << outcome.error << Qt::endl;
        return ExitCode::Failed;
    }
    if (!out.commit()) {
        context.err << "pvardo-admin " << command << ": " << out.errorText() << Qt::endl;
        return ExitCode::Failed;
    }
    if (!context.quiet) {
        context.out << "Printed " << outcome.pages << pagesWord(outcome.pages) << " to "
                    << QDir::toNativeSeparators(pdf) << '\n';
    }
    return ExitCode::Ok;
}

} // namespace

int printDocument(CommandContext& context, const char* command, QTextDocument& document,
    const documents::PrintSettings& settings, const QString& title, const QString& pdf)
{
    return printPages(
        context, command,
        [&](QPagedPaintDevice& device) { return documents::PrintRichText(document, device, settings); }, title,
        pdf);
}

int printPages(CommandContext& context, const char* command, const documents::PageJob& job, const QString& title,
    const QString& pdf)
{
    if (!pdf.isEmpty()) {
        return printToPdf(context, command, job, title, pdf);
    }
    const documents::PrinterOutcome outcome
        = documents::printOnDefaultPrinter(job, documents::outputPdfPath(title), title);
    if (!outcome.ok) {
        context.err << "pvardo-admin " << command << ": " << outcome.error << Qt::endl;
        return ExitCode::Failed;
    }
    if (!outcome.pdfPath.isEmpty()) {
        context.out << "No printer is set up on this computer; the " << outcome.pages
                    << (outcome.pages == 1 ? " page went" : " pages went") << " to "
                    << QDir::toNativeSeparators(outcome.pdfPath) << '\n';
    } else if (!context.quiet) {
        context.out << "Printed " << outcome.pages << pagesWord(outcome.pages) << " on " << outcome.printerName
                    << '\n';
    }
    return ExitCode::Ok;
}

} // namespace pvardo::cli
