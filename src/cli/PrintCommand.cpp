// pvardo-admin print FILE.rtf [--pdf OUT.pdf] [--margins L,T,R,B] [--footer]:
// prints an RTF document with the program's own page engine, on the default
// printer or into a PDF file. Offices use it for batch printing; it is also
// the way to look at the engine's pages from outside the program.
#include "cli/AdminCommand.h"
#include "cli/DocumentOutput.h"
#include "documents/PrintRichText.h"
#include "documents/RtfReader.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextDocument>

namespace pvardo::cli {

namespace {

constexpr qint64 largestDocument = 256LL * 1024 * 1024;

const char* const usage = "usage: pvardo-admin print FILE.rtf [--pdf OUT.pdf] [--margins L,T,R,B] [--footer]\n"
                          "  --pdf OUT.pdf       write the pages to a PDF file instead of the default printer\n"
                          "  --margins L,T,R,B   margins in inches (default: the document's own, else 0.8)\n"
                          "  --footer            print the footer band with the page number";

// The footer band of the command: the page number, centred, in small type.
const QString footerRtf = QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0\\fswiss Arial;}}\\pard\\qc\\f0\\fs16 Page ##\\par}");

bool parseMargins(const QString& text, documents::PrintSettings& settings)
{
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 4) {
        return false;
    }
    double values[4] = {};
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        values[i] = parts.at(i).trimmed().toDouble(&ok);
        if (!ok || values[i] < 0 || values[i] > 10) {
            return false;
        }
    }
    settings.leftMargin = values[0];
    settings.topMargin = values[1];
    settings.rightMargin = values[2];
    settings.bottomMargin = values[3];
    return true;
}

int runPrint(CommandContext& context)
{
    QString input;
    QString pdf;
    QString margins;
    bool footer = false;
    const QStringList& args = context.args;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args.at(i);
        if (arg == QLatin1String("--pdf") && i + 1 < args.size()) {
            pdf = args.at(++i);
        } else if (arg.startsWith(QLatin1String("--pdf="))) {
            pdf = arg.mid(6);
        } else if (arg == QLatin1String("--margins") && i + 1 < args.size()) {
            margins = args.at(++i);
        } else if (arg.startsWith(QLatin1String("--margins="))) {
            margins = arg.mid(10);
        } else if (arg == QLatin1String("--footer")) {
            footer = true;
        } else if (!arg.startsWith(QLatin1Char('-')) && input.isEmpty()) {
            input = arg;
        } else {
            context.err << "pvardo-admin print: unexpected " << arg << '\n' << usage << Qt::endl;
            return ExitCode::BadUsage;
        }
    }
    if (input.isEmpty()) {
        context.err << usage << Qt::endl;
        return ExitCode::BadUsage;
    }
    if (pdf.isEmpty() && args.contains(QStringLiteral("--pdf"))) {
        context.err << "pvardo-admin print: --pdf needs a file name" << Qt::endl;
        return ExitCode::BadUsage;
    }

    QFile file(input);
    const QFileInfo info(input);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
        context.err << "pvardo-admin print: cannot read " << QDir::toNativeSeparators(input) << Qt::endl;
        return ExitCode::BadUsage;
    }
    if (info.size() > largestDocument) {
        context.err << "pvardo-admin print: " << QDir::toNativeSeparators(input)
                    << " is too large to be a letter or a listing" << Qt::endl;
        return ExitCode::Failed;
    }
    const QByteArray bytes = file.readAll();

    QTextDocument document;
    const documents::RtfReadResult read = documents::readRtf(bytes, document);
    if (read.notRtf) {
        context.err << "pvardo-admin print: " << QDir::toNativeSeparators(input) << " is not an RTF document"
                    << Qt::endl;
        return ExitCode::Failed;
    }
    // A damaged file whose readable part holds nothing would print a blank
    // page: that is a failure. Anything else prints, and the warning names
    // what was repaired or left out so the clerk can look at the pages.
    if (read.damaged && document.isEmpty()) {
        context.err << "pvardo-admin print: " << QDir::toNativeSeparators(input) << " is damaged: " << read.problem
                    << " Nothing of it could be read; nothing was printed." << Qt::endl;
        return ExitCode::Failed;
    }
    if (read.damaged) {
        context.err << "pvardo-admin print: warning: " << QDir::toNativeSeparators(input)
                    << " is damaged: " << read.problem << " Printing what could be read." << Qt::endl;
    }

    // The document's own paper, and its margins unless the office gives its own.
    documents::PrintSettings settings;
    settings.documentPaper = true;
    settings.documentMargins = margins.isEmpty();
    if (!margins.isEmpty() && !parseMargins(margins, settings)) {
        context.err << "pvardo-admin print: --margins wants four numbers of inches from 0 to 10, as 1,0.8,1,0.8"
                    << Qt::endl;
        return ExitCode::BadUsage;
    }
    settings.footer = footer;
    if (footer) {
        settings.footerRtf = footerRtf;
    }
    const QString title = info.completeBaseName();

    const int printed = printDocument(context, "print", document, settings, title, pdf);
    return printed;
}

const CommandRegistration registration{{"print", "print FILE.rtf [--pdf OUT.pdf] [--margins L,T,R,B] [--footer]",
                                        "print an RTF document on the default printer or to a PDF file", false,
                                        &runPrint}};

} // namespace

} // namespace pvardo::cli
