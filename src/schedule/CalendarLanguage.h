#pragma once

#include <QString>
#include <QStringList>

namespace pvardo::schedule {

// The words of the month calendar in its languages: eight comma-separated
// lists (weekdays, info words, months, quarters, seasons, moon phases, moon
// phrases, zodiac signs) for each built-in language, and the check of a set
// of lists an office supplies itself.
class CalendarLanguage
{
public:
    enum Language { English, Dutch, French, Italian, Spanish, External };

    enum List {
        DayNames, // 7, Sunday first
        Miscellaneous, // 5: "Day # in: ", "Week: ", "Begin of calendar!", "End of calendar!", "Today:"
        MonthNames, // 12
        QuarterNames, // 4
        SeasonNames, // 4
        MoonPhaseNames, // 4
        MoonPhaseText, // 5
        ZodiacNames, // 12
    };
    static constexpr int ListCount = 8;

    // The list's name, as a check's message gives it, and its number of items.
    static QString listName(int list);
    static int itemCount(int list);

    // A built-in list, split into its items; English for External.
    static QStringList builtIn(Language language, int list);

    // The message for an external list with the wrong number of items, such as
    // "DayNames = 6) needs: 7 items!"; empty when the list is right.
    static QString checkList(int list, const QString& text);
    // The message for an external set that is not eight lines; empty when it is.
    static QString checkLines(const QStringList& lines);
};

} // namespace pvardo::schedule
