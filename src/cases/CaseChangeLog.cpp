#include "cases/CaseChangeLog.h"

#include "common/Clock.h"
#include "common/Session.h"
#include "common/TextFiles.h"

#include <QDateTime>
#include <QLocale>

namespace pvardo::cases {

QString CaseChangeLog::logTime()
{
    return QLocale::c().toString(presentTime(), QStringLiteral("MM/dd/yyyy hh:mm:ss AP"));
}

bool CaseChangeLog::LogCaseChange(const Session& session, const QString& code, const QString& keyName,
    const QString& caseNumber, QString* error)
{
    if (session.ShareParcelStore) {
        return true;
    }
    const QString now = logTime();
    // Fixed columns: the reader takes the number from its 25 places.
    const QString line = code + keyName + caseNumber.leftJustified(25, QLatin1Char(' ')) + now;
    if (!appendTextLine(joinPath(session.DatabaseFolder, QStringLiteral("\\changed.txt")), line, error)) {
        return false;
    }
    return replaceTextLines(joinPath(session.ProgramFolder, QStringLiteral("\\homebound.txt")), {now}, error);
}

} // namespace pvardo::cases
