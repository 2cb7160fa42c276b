// pvardo-admin --home DIR merge TEMPLATE.rtf --case NUMBER [--to PARTY] [--pdf OUT.pdf | --rtf OUT.rtf]:
// merges a letter template for one case of the installation, as the case
// screen's print command does, and prints it, or writes the merged letter.
#include "cases/CaseLetters.h"
#include "cli/AdminCommand.h"
#include "cli/DocumentOutput.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "documents/FormDefinitions.h"
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

const char* const usage = "usage: pvardo-admin --home DIR merge TEMPLATE.rtf --case NUMBER [--to PARTY] [--pdf OUT.pdf | --rtf OUT.rtf]\n"
                          "  TEMPLATE.rtf     a letter template; a bare name is looked for in the forms folder\n"
                          "  --case NUMBER    the case whose data fills the letter\n"
                          "  --to PARTY       whom %nm, %ad and %zp address: contact (the default, as for the\n"
                          "                   office's letters), applicant (the default for pbappd.rtf, the\n"
                          "                   detail page) or owner\n"
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

// The parties a case's letter can go to: the name and address columns of each.
struct Party {
    const char* word;
    const char* nameColumn;
    const char* addressColumn;
};
constexpr Party parties[] = {
    {"contact", "PBCONTACTNAME1", "PBCONTACTADDR1"},
    {"applicant", "PBAPPNAME1", "PBAPPADDR1"},
    {"owner", "PBOWNRNAME1", "PBOWNRADDR1"},
};

const Party* partyNamed(const QString& word)
{
    for (const Party& party : parties) {
        if (word.compare(QLatin1String(party.word), Qt::CaseInsensitive) == 0) {
            return &party;
        }
    }
    return nullptr;
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
    QString to;
    const QStringList& args = context.args;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args.at(i);
        if (arg == QLatin1String("--case") && i + 1 < args.size()) {
            caseNumber = args.at(++i).trimmed();
        } else if (arg == QLatin1String("--pdf") && i + 1 < args.size()) {
            pdf = args.at(++i);
        } else if (arg == QLatin1String("--rtf") && i + 1 < args.size()) {
            rtf = args.at(++i);
        } else if (arg == QLatin1String("--to") && i + 1 < args.size()) {
            to = args.at(++i).trimmed();
            if (!partyNamed(to)) {
                context.err << "pvardo-admin merge: --to takes contact, applicant or owner, not " << to << '\n'
                            << usage << Qt::endl;
                return ExitCode::BadUsage;
            }
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
    // The detail page goes to the applicant and loses its empty lines, as
    // from the case screen; every other letter goes to the contact.
    const bool detailPage = QFileInfo(path).fileName().compare(cases::caseDetailTemplate(), Qt::CaseInsensitive) == 0;
    const Party& party = *partyNamed(!to.isEmpty() ? to : detailPage ? QStringLiteral("applicant") : QStringLiteral("contact"));
    state.CurrentCase = row->text(QStringLiteral("PBCASE")).trimmed();
    documents::registerPlugVars(documents::ScreenCodes::Case, [&row](QTextDocument& buffer) {
        cases::plugCaseValues(buffer, *row, cases::caseFixedWords(*row));
    });
    QTextDocument letter;
    const documents::FormLoad load = documents::mergeTemplate(
        letter, path, documents::ScreenCodes::Case,
        documents::SplitAddress(row->text(QLatin1String(party.nameColumn)),
                                row->text(QLatin1String(party.addressColumn))),
        QLatin1String(party.word), detailPage ? documents::EmptyLines::DropEmpty : documents::EmptyLines::Keep);
    documents::unregisterPlugVars(documents::ScreenCodes::Case);
    if (load.noAddressee) {
        context.err << "pvardo-admin merge: " << QDir::toNativeSeparators(path) << " is addressed to the "
                    << party.word << " (%nm, %ad, %zp), and case " << caseNumber << " has no " << party.word
                    << " name (" << party.nameColumn << " is empty). Fill it in, or address the letter to "
                    << "another party with --to contact|applicant|owner. Nothing was written." << Qt::endl;
        return ExitCode::Failed;
    }
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
    // Named as on the case screen: the caption the office gave the letter.
    QString caption = detailPage ? QStringLiteral("Application Detail") : QFileInfo(path).completeBaseName();
    const documents::FormDefinitions letters = documents::readFormDefinitions(
        QDir(state.FormsFolder).filePath(documents::customFileName(documents::ScreenCodes::Case)));
    for (const documents::FormEntry& entry : letters.entries) {
        if (QFileInfo(QString(entry.fileName).replace(QLatin1Char('\\'), QLatin1Char('/'))).fileName().compare(QFileInfo(path).fileName(), Qt::CaseInsensitive) == 0) {
            caption = entry.caption;
        }
    }
    const QString title = caption + QLatin1Char(' ') + state.CurrentCase;

    return printDocument(context, "merge", letter, settings, title, pdf);
}

const CommandRegistration registration{
    {"merge", "merge TEMPLATE.rtf --case NUMBER [--to contact|applicant|owner] [--pdf OUT.pdf | --rtf OUT.rtf]",
     "merge a letter template for a case and print it, or write the merged RTF", true, &runMerge}};

} // namespace

} // namespace pvardo::cli
