// pvardo-admin [--home DIR] labels --sheet FILE [--start COL,ROW] [--pdf OUT.pdf] < addresses.csv:
// prints a mailing label for each name and address of a CSV list on a label
// sheet, as the screens do.
#include "cli/AddressCsv.h"
#include "cli/AdminCommand.h"
#include "cli/DocumentOutput.h"
#include "common/Session.h"
#include "documents/Labels.h"
#include "documents/Merge.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextDocument>
#include <cstdio>

namespace pvardo::cli {

namespace {

const char* const usage
    = "usage: pvardo-admin [--home DIR] labels --sheet FILE [--start COL,ROW] [--pdf OUT.pdf] < "
      "addresses.csv\n"
      "  --sheet FILE       the label sheet's definition file; a bare name is looked for in the\n"
      "                     installation's labels folder\n"
      "  --start COL,ROW    the cell of the first label (default 1,1)\n"
      "  --pdf OUT.pdf      print to a PDF file instead of the default printer\n"
      "  addresses.csv      UTF-8 with a header line naming a \"name\" and an \"address\" column;\n"
      "                     the city, state and ZIP stand either in the address behind its last\n"
      "                     comma (\"12 Main St, Apt 3, Springfield NY 12345\") or in columns of\n"
      "                     their own: \"city\", \"state\" and \"zip\", or one \"city state zip\";\n"
      "                     other columns are passed over. A row without a city line is printed\n"
      "                     as it stands and named on the error output";

QString sheetPath(const QString& name, const QString& home)
{
    if (home.isEmpty() || QFileInfo(name).isFile() || name.contains(QLatin1Char('/'))) {
        return name;
    }
    return QDir(documents::labelsFolder(home)).filePath(name);
}

bool parseStart(const QString& text, int& column, int& row)
{
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 2) {
        return false;
    }
    bool columnOk = false;
    bool rowOk = false;
    column = parts.at(0).trimmed().toInt(&columnOk);
    row = parts.at(1).trimmed().toInt(&rowOk);
    return columnOk && rowOk;
}

QByteArray readStandardInput()
{
    QFile in;
    if (!in.open(stdin, QIODevice::ReadOnly)) {
        return {};
    }
    return in.readAll();
}

int runLabels(CommandContext& context)
{
    QString sheetName;
    QString start = QStringLiteral("1,1");
    QString pdf;
    const QStringList& args = context.args;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args.at(i);
        if (arg == QLatin1String("--sheet") && i + 1 < args.size()) {
            sheetName = args.at(++i);
        } else if (arg == QLatin1String("--start") && i + 1 < args.size()) {
            start = args.at(++i);
        } else if (arg == QLatin1String("--pdf") && i + 1 < args.size()) {
            pdf = args.at(++i);
        } else {
            context.err << "pvardo-admin labels: unexpected " << arg << '\n' << usage << Qt::endl;
            return ExitCode::BadUsage;
        }
    }
    if (sheetName.isEmpty()) {
        context.err << usage << Qt::endl;
        return ExitCode::BadUsage;
    }

    const QString path = sheetPath(sheetName, context.home);
    if (!QFileInfo(path).isFile()) {
        context.err << "pvardo-admin labels: there is no label sheet definition "
                    << QDir::toNativeSeparators(path) << Qt::endl;
        return ExitCode::Failed;
    }
    documents::LabelRunState run;
    run.sheet = documents::readLabelSheet(path);
    run.topOffset = run.sheet.topOffset;
    run.leftOffset = run.sheet.leftOffset;
    if (!parseStart(start, run.nextColumn, run.nextRow) || run.nextColumn < 1 || run.nextRow < 1
        || run.nextColumn > run.sheet.across || run.nextRow > run.sheet.down) {
        context.err << "pvardo-admin labels: the start cell " << start << " is not on this sheet of "
                    << run.sheet.across << " across and " << run.sheet.down << " down (give COL,ROW from 1,1)"
                    << Qt::endl;
        return ExitCode::BadUsage;
    }

    const AddressList list = readAddressCsv(readStandardInput());
    if (!list.error.isEmpty()) {
        context.err << "pvardo-admin labels: the address list cannot be used: " << list.error << Qt::endl;
        return ExitCode::Failed;
    }
    for (const AddressProblem& problem : list.problems) {
        context.err << "pvardo-admin labels: line " << problem.line << " " << problem.reason << "; skipped"
                    << Qt::endl;
    }
    if (list.rows.isEmpty()) {
        context.err << "pvardo-admin labels: no addressee to print" << Qt::endl;
        return ExitCode::Failed;
    }
    QList<documents::Addressee> addressees;
    addressees.reserve(list.rows.size());
    for (const AddressRow& row : list.rows) {
        documents::Addressee addressee;
        bool cityFound = true;
        if (list.cityColumns) {
            addressee.name = row.name.trimmed();
            addressee.street = row.address.trimmed();
            addressee.city = row.cityLine;
            cityFound = !row.cityLine.isEmpty();
        } else {
            addressee = documents::SplitAddress(row.name, row.address);
            cityFound = row.address.contains(QLatin1Char(',')) && !addressee.city.isEmpty();
            if (row.address.trimmed().isEmpty()) {
                addressee.street.clear();
            }
        }
        if (!cityFound) {
            // The label carries what the row gives, with no stand-in words
            // on the envelope; the clerk is told which row to look at.
            addressee.city.clear();
            context.err << "pvardo-admin labels: line " << row.line << " ("
                        << (row.name.trimmed().isEmpty() ? QStringLiteral("no name") : row.name.simplified())
                        << ") has no city, state and ZIP"
                        << (list.cityColumns ? " in its city columns" : " behind a comma in its address")
                        << "; printed without them" << Qt::endl;
        }
        addressees.append(addressee);
    }

    if (!context.home.isEmpty()) {
        session().ProgramFolder = context.home;
        session().MasterDatabaseFolder = context.home;
    }
    QTextDocument labelTemplate;
    documents::loadLabelTemplate(labelTemplate, context.home);
    const int result = printPages(
        context, "labels",
        [&](QPagedPaintDevice& device) {
            return documents::PrintLabels(labelTemplate, addressees, run, device);
        },
        QStringLiteral("Labels"), pdf);
    if (result == ExitCode::Ok && !context.quiet) {
        context.out << addressees.size() << (addressees.size() == 1 ? " label" : " labels") << " printed";
        if (!list.problems.isEmpty()) {
            context.out << "; " << list.problems.size() << (list.problems.size() == 1 ? " row" : " rows")
                        << " skipped";
        }
        context.out << '\n';
    }
    return result;
}

const CommandRegistration registration{
    {"labels", "labels --sheet FILE [--start COL,ROW] [--pdf OUT.pdf] < addresses.csv",
        "print mailing labels for the names and addresses of a CSV list", false, &runLabels}};

} // namespace

} // namespace pvardo::cli
