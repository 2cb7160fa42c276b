// pvardo-admin --home DIR merge TEMPLATE.rtf --case NUMBER [--pdf OUT.pdf | --rtf OUT.rtf]:
// merges a letter template for one case of the installation, as the case
// screen's print command does, and prints it, or writes the merged letter.
#include "cases/CaseLetters.h"
#include "cli/AdminCommand.h"
#include "cli/DocumentOutput.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "documents/Merge.h"
#include "documents/PrintRichText.h"
#include "documents/PrintState.h"
#include "documents/RtfWriter.h"
#include "parcels/ParcelFolders.h"
#include "store/DatabaseLocation.h"
#include "store/Recordset.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextDocument>

namespace pvardo::cli {

namespace {

const char* const usage = "usage: pvardo-admin --home DIR merge TEMPLATE.rtf --case NUMBER [--pdf OUT.pdf | --rtf OUT.rtf]\n"
                          "  TEMPLATE.rtf     a letter template; a bare name is looked for in the forms folder\n"
                          "  --case NUMBER    the case whose data fills the letter\n"
                          "  --pdf OUT.pdf    print the letter to a PDF file instead of the default printer\n"
                          "  --rtf OUT.rtf    write the merged letter as RTF";

// The forms folder of an installation: beside its database folder.
QString formsFolderOf(const Session& state)
{
    QDir databases(state.DatabaseFolder);
    if (databases.cdUp() && QFileInfo(databases.filePath(QStringLiteral("forms"))).isDir()) {
        return databases.filePath(QStringLiteral("forms"));
    }
    return QDir(state.ProgramFolder).filePath(QStringLiteral("forms"));
}

QString templatePath(const QString& name, const QString& formsFolder)
{
    if (QFileInfo(name).isFile() || name.contains(QLatin1Char('/'))) {
        return name;
    }
    return QDir(formsFolder).filePath(name);
}

int runMerge(CommandContext& context)
{
    QString input;
    QString caseNumber;
    QString pdf;
    QString rtf;
    const QStringList& args = context.args;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args.at(i);
        if (arg == QLatin1String("--case") && i + 1 < args.size()) {
            caseNumber = args.at(++i).trimmed();
        } else if (arg == QLatin1String("--pdf") && i + 1 < args.size()) {
            pdf = args.at(++i);
        } else if (arg == QLatin1String("--rtf") && i + 1 < args.size()) {
            rtf = args.at(++i);
        } else if (!arg.startsWith(QLatin1Char('-')) && input.isEmpty()) {
            input = arg;
        } else {
            context.err << "pvardo-admin merge: unexpected " << arg << '\n' << usage << Qt::endl;
            return ExitCode::BadUsage;
        }
    }
    if (input.isEmpty() || caseNumber.isEmpty() || (!pdf.isEmpty() && !rtf.isEmpty())) {
        context.err << usage << Qt::endl;
        return ExitCode::BadUsage;
    }

    Session& state = session();
    QString error;
    if (!parcels::useInstallationFolders(context.home, state, &error)) {
        context.err << "pvardo-admin merge: " << error << Qt::endl;
        return ExitCode::Failed;
    }
    state.FormsFolder = formsFolderOf(state);
    state.MasterDatabaseFolder = state.ProgramFolder;
    if (const auto header = readTextLines(QDir(state.FormsFolder).filePath(QStringLiteral("gTitle.rtf")))) {
        state.ReportHeaderRtf = header->join(QLatin1Char('\n'));
    }

    // A case number never holds a quote; one that does is no case of ours and
    // would break the query.
    if (caseNumber.contains(QLatin1Char('\'')) || caseNumber.size() > 20) {
        context.err << "pvardo-admin merge: there is no case " << caseNumber << Qt::endl;
        return ExitCode::Failed;
    }
    store::StoreStatus status;
    const QString caseFile = store::databaseFile(state.DatabaseFolder, QStringLiteral("pbproj.mdb"));
    std::unique_ptr<store::Recordset> row = store::openRecordsetAt(
        caseFile, QStringLiteral("Select * from PBPROJ where [PBCASE] = '") + caseNumber + QStringLiteral("'"),
        &status);
    if (!row) {
        context.err << "pvardo-admin merge: the case file " << QDir::toNativeSeparators(caseFile)
                    << " cannot be read: " << status.description << Qt::endl;
        return ExitCode::Failed;
    }
    if (row->RecordCount() <= 0 || row->Eof()) {
        context.err << "pvardo-admin merge: there is no case " << caseNumber << Qt::endl;
        return ExitCode::Failed;
    }

    const QString path = templatePath(input, state.FormsFolder);
    documents::registerPlugVars(documents::ScreenCodes::Case, [&row](QTextDocument& buffer) {
        cases::plugCaseValues(buffer, *row, cases::caseFixedWords(*row));
    });
    QTextDocument letter;
    const documents::FormLoad load
        = documents::mergeTemplate(letter, path, documents::ScreenCodes::Case, cases::caseContact(*row));
    documents::unregisterPlugVars(documents::ScreenCodes::Case);
    if (!load.ok) {
        context.err << "pvardo-admin merge: " << QDir::toNativeSeparators(path)
                    << " cannot be read as a letter template (missing, unreadable or not RTF)" << Qt::endl;
        return ExitCode::Failed;
    }

    if (!rtf.isEmpty()) {
        QString writeError;
        if (!replaceFile(rtf, documents::writeRtf(letter), &writeError)) {
            context.err << "pvardo-admin merge: cannot write " << QDir::toNativeSeparators(rtf) << ": " << writeError
                        << Qt::endl;
            return ExitCode::Failed;
        }
        if (!context.quiet) {
            context.out << "Wrote the letter for case " << caseNumber << " to " << QDir::toNativeSeparators(rtf)
                        << '\n';
        }
        return ExitCode::Ok;
    }

    documents::PrintState& print = documents::printState();
    documents::PrintSettings settings;
    settings.leftMargin = print.leftMargin;
    settings.topMargin = print.topMargin;
    settings.rightMargin = print.rightMargin;
    settings.bottomMargin = print.bottomMargin;
    settings.pageCounter = &print.pageCounter;
    settings.expandPrintTokens = [](QTextDocument& document) { documents::ExpandPrintTokens(document); };
    const QString title = QFileInfo(path).completeBaseName() + QLatin1Char(' ') + caseNumber;

    return printDocument(context, "merge", letter, settings, title, pdf);
}

const CommandRegistration registration{
    {"merge", "merge TEMPLATE.rtf --case NUMBER [--pdf OUT.pdf | --rtf OUT.rtf]",
     "merge a letter template for a case and print it, or write the merged RTF", true, &runMerge}};

} // namespace

} // namespace pvardo::cli
