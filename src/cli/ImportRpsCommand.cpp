// pvardo-admin --home DIR import-rps FILE [--swis CODE] [--analyse-only]:
// reads a state RPS extract into the roll of the installation, as "Import Tax
// Parcels.." does: pass 1 analyses the file and shows the last record it could
// read with the confidence; pass 2 imports it.
#include "cli/AdminCommand.h"
#include "common/Session.h"
#include "parcels/ParcelFolders.h"
#include "parcels/RpsImport.h"
#include "parcels/RpsRoll.h"

#include <QDir>
#include <QFileInfo>

namespace pvardo::cli {

namespace {

// Progress on standard error, one line for each tenth of the file.
parcels::RpsImportCallback progressPrinter(CommandContext& context)
{
    if (context.quiet) {
        return {};
    }
    return [&context, lastTenth = -1, lastPass = 0](const parcels::RpsImportProgress& where) mutable {
        if (where.pass != lastPass) {
            lastPass = where.pass;
            lastTenth = -1;
            context.err << (where.pass == 1 ? "Analyzing File.." : "Importing Data..") << Qt::endl;
        }
        const int tenth = static_cast<int>(where.percent / 10);
        if (tenth != lastTenth) {
            lastTenth = tenth;
            context.err << "  " << tenth * 10 << "%  " << where.processed << " records" << Qt::endl;
        }
        return true;
    };
}

void printPreview(
    CommandContext& context, const parcels::RpsImport& import, const parcels::RpsImportResult& result)
{
    const parcels::RpsPreview& preview = result.preview;
    QTextStream& out = context.out;
    out << "File: " << QDir::toNativeSeparators(import.filePath()) << '\n'
        << "Records Read: " << result.processed << '\n'
        << "Total Records Processed: " << result.processed << '\n'
        << "Confidence Level: "
        << parcels::RpsImport::ConfidenceText(parcels::RpsImport::shownConfidence(result.confidence)) << '\n'
        << "SBL: " << preview.sbl << '\n'
        << "Association: " << preview.owner << '\n'
        << "Location: " << preview.location << '\n'
        << "Contact Address: " << preview.mailing << '\n'
        << "GRID EAST: " << preview.east << '\n'
        << "GRID NORTH: " << preview.north << '\n'
        << "SWIS: " << preview.swis << '\n';
    if (!import.targetSwis().isEmpty()) {
        out << "Target SWIS " << import.targetSwis() << '\n';
    }
    out << "Lines: " << result.lines << ", other record types: " << result.skippedOtherType
        << ", other SWIS: " << result.skippedOtherSwis << ", invalid SBL: " << result.invalidSbl << '\n';
    out.flush();
}

int runImportRps(CommandContext& context)
{
    QString file;
    QString target;
    bool analyseOnly = false;
    for (qsizetype i = 0; i < context.args.size(); ++i) {
        const QString& argument = context.args.at(i);
        if (argument == QLatin1String("--analyse-only") || argument == QLatin1String("--analyze-only")) {
            analyseOnly = true;
        } else if (argument == QLatin1String("--swis")) {
            if (i + 1 >= context.args.size()) {
                context.err << "pvardo-admin import-rps: --swis needs a code" << Qt::endl;
                return ExitCode::BadUsage;
            }
            target = context.args.at(++i).trimmed();
        } else if (argument.startsWith(QLatin1String("--swis="))) {
            target = argument.mid(7).trimmed();
        } else if (file.isEmpty() && !argument.startsWith(QLatin1String("--"))) {
            file = argument;
        } else {
            context.err << "usage: pvardo-admin --home DIR import-rps FILE [--swis CODE] [--analyse-only]"
                        << Qt::endl;
            return ExitCode::BadUsage;
        }
    }
    if (file.isEmpty()) {
        context.err << "usage: pvardo-admin --home DIR import-rps FILE [--swis CODE] [--analyse-only]"
                    << Qt::endl;
        return ExitCode::BadUsage;
    }
    const QFileInfo info(file);
    if (!info.isFile() || !info.isReadable()) {
        context.err << "pvardo-admin import-rps: " << QDir::toNativeSeparators(file)
                    << (info.exists() ? " is not a readable file." : " does not exist.") << Qt::endl;
        return ExitCode::BadUsage;
    }
    Session& state = session();
    QString error;
    if (!parcels::useInstallationFolders(context.home, state, &error)) {
        context.err << "pvardo-admin import-rps: " << error << Qt::endl;
        return ExitCode::BadUsage;
    }

    parcels::RpsImport import(info.absoluteFilePath(), target);
    const parcels::RpsImportCallback progress = progressPrinter(context);
    const parcels::RpsImportResult analysis = import.ImportIn(1, nullptr, progress);
    if (!analysis.message.isEmpty()) {
        context.err << analysis.message << Qt::endl;
        return ExitCode::Failed;
    }
    printPreview(context, import, analysis);
    for (const QString& note : analysis.notes) {
        context.err << note << Qt::endl;
    }
    if (analysis.processed == 0) {
        context.err << "The confidence level is zero: this does not look like an NYS RPS converted text file"
                    << (target.isEmpty() ? QString() : QStringLiteral(" with records of SWIS ") + target)
                    << ". Nothing was imported." << Qt::endl;
        return ExitCode::Failed;
    }
    if (analysis.confidence < 30) {
        context.err << "We do not recommend importing a file with a confidence level below 30%." << Qt::endl;
    }
    if (analyseOnly) {
        return ExitCode::Ok;
    }

    parcels::RpsRoll roll(parcels::RpsRoll::rollPathIn(state.DatabaseFolder));
    const parcels::RpsImport::Completion completion = import.iContinue(roll, state.DatabaseFolder, progress);
    for (const QString& message : completion.messages) {
        (completion.completed ? context.out : context.err) << message << '\n';
    }
    context.out.flush();
    context.err.flush();
    return completion.completed && completion.result.status.ok() ? ExitCode::Ok : ExitCode::Failed;
}

const CommandRegistration registration{{"import-rps", "import-rps FILE [--swis CODE] [--analyse-only]",
    "imports an NYS RPS extract into the tax parcel roll", true, &runImportRps}};

} // namespace

} // namespace pvardo::cli
