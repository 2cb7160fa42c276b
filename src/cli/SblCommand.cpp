// pvardo-admin sbl short|full|trim TEXT: converts one parcel number, as the
// screens and letters would write it.
#include "cli/AdminCommand.h"
#include "parcels/SblParts.h"

namespace pvardo::cli {

namespace {

int runSbl(CommandContext& context)
{
    if (context.args.size() != 2) {
        context.err << "usage: pvardo-admin sbl short|full|trim TEXT" << Qt::endl;
        return ExitCode::BadUsage;
    }
    const QString& form = context.args.at(0);
    const QString& text = context.args.at(1);
    parcels::SblParts conversions;
    QString result;
    if (form == QLatin1String("short")) {
        result = conversions.mysbl2SBL(text);
    } else if (form == QLatin1String("full")) {
        result = conversions.myssbl2SBL(text);
    } else if (form == QLatin1String("trim")) {
        // Only a full form can be trimmed; a text without a dash is no parcel.
        result = text.contains(QLatin1Char('-')) ? parcels::SblParts::TrimSBL(text) : parcels::invalidSBL();
    } else {
        context.err << "pvardo-admin sbl: unknown form " << form << " (short, full or trim)" << Qt::endl;
        return ExitCode::BadUsage;
    }
    context.out << result << '\n';
    return result == parcels::invalidSBL() ? ExitCode::Failed : ExitCode::Ok;
}

const CommandRegistration registration{{"sbl", "sbl short|full|trim TEXT",
    "converts a parcel number to its short, full or trimmed form", false, &runSbl}};

} // namespace

} // namespace pvardo::cli
