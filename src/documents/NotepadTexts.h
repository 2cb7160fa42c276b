#pragma once

#include <QString>
#include <functional>

namespace pvardo::documents {

// What the case screen tells the notepad about the case it shows, made when
// the case was shown: the parcel and site, the owner with the address, the
// project's description.
struct CaseTexts
{
    QString property;
    QString owner;
    QString project;
};

// The case screen registers where its texts come from while it is open;
// without one the case texts are empty.
using CaseTextsFunction = std::function<CaseTexts()>;
void registerCaseTexts(CaseTextsFunction texts);
void unregisterCaseTexts();
CaseTexts currentCaseTexts();

// The texts of the notepad's insert commands.
namespace NotepadTexts {
// The board members of the database folder, each trimmed, one a line, each
// with its line break.
QString boardMembers(const QString& databaseFolder);
// Today's date as "mm/dd/yyyy".
QString todaysDate();
// The time as "hh:mm AMPM".
QString currentTime();
} // namespace NotepadTexts

} // namespace pvardo::documents
