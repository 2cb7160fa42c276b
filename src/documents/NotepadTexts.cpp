#include "documents/NotepadTexts.h"

#include "common/BoardMembers.h"
#include "common/Clock.h"
#include "common/DateText.h"

namespace pvardo::documents {

namespace {

CaseTextsFunction& caseTextsSource()
{
    static CaseTextsFunction source;
    return source;
}

} // namespace

void registerCaseTexts(CaseTextsFunction texts)
{
    caseTextsSource() = std::move(texts);
}

void unregisterCaseTexts()
{
    caseTextsSource() = nullptr;
}

CaseTexts currentCaseTexts()
{
    return caseTextsSource() ? caseTextsSource()() : CaseTexts{};
}

namespace NotepadTexts {

QString boardMembers(const QString& databaseFolder)
{
    QString text;
    for (const QString& name : BoardMembers::read(databaseFolder)) {
        const QString trimmed = name.trimmed();
        if (!trimmed.isEmpty()) {
            text += trimmed + QLatin1Char('\n');
        }
    }
    return text;
}

QString todaysDate()
{
    return pvardo::todaysDate().toString(QStringLiteral("MM/dd/yyyy"));
}

QString currentTime()
{
    return TimeText(presentTime().time());
}

} // namespace NotepadTexts

} // namespace pvardo::documents
