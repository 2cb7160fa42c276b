#include "schedule/CalendarLanguage.h"

#include <array>

namespace pvardo::schedule {

namespace {

using Lists = std::array<const char*, CalendarLanguage::ListCount>;

// The English row keeps its words exactly as the calendar always showed
// them, "Thirth quarter" included: offices match on them in their own lists.
constexpr std::array<Lists, 5> kLanguages{{
    {"Sunday,Monday,Tuesday,Wednesday,Thursday,Friday,Saturday",
        "Day # in: ,Week: ,Begin of calendar!,End of calendar!,Today:",
        "January,February,March,April,May,June,July,August,September,October,November,December",
        "First quarter,Second quarter,Thirth quarter,Fourth quarter", "Spring,Summer,Autumn,Winter",
        "New moon,First quarter,Full moon,Last quarter",
        "# day before,# day after,# days before,# days after,the",
        "Ram,Bull,Twins,Crab,Lion,Virgin,Scales,Scorpion,Archer,Goat,Water Carrier,Fishes"},
    {"Zondag,Maandag,Dinsdag,Woensdag,Donderdag,Vrijdag,Zaterdag",
        "Dag # in: ,Week: ,Begin van de kalender!,Einde van de kalender!,Vandaag:",
        "Januari,Februari,Maart,April,Mei,Juni,Juli,Augustus,September,Oktober,November,December",
        "Eerste kwartaal,Tweede kwartaal,Derde kwartaal,Vierde kwartaal", "Lente,Zomer,Herfst,Winter",
        "Nieuwe maan,Eerste kwartier,Volle maan,Laatste kwartier",
        "# dag voor,# dag na,# dagen voor,# dagen na,de",
        "Ram,Stier,Tweelingen,Kreeft,Leeuw,Maagd,Weegschaal,Schorpioen,Boogschutter,Steenbok,Waterman,"
        "Vissen"},
    {"Dimanche,Lundi,Mardi,Mercredi,Jeudi,Vendredi,Samedi",
        "Jour # en: ,Semaine: ,D\u00e9but du calendrier!,Fin du calendrier!,Aujourd'hui:",
        "Janvier,F\u00e9vrier,Mars,Avril,Mai,Juin,Juillet,Ao\u00fbt,Septembre,Octobre,Novembre,D\u00e9cembre",
        "Premier trimestre,Deuxi\u00e8me trimestre,Troisi\u00e8me trimestre,Quatri\u00e8me trimestre",
        "Printemps,\u00c9t\u00e9,Automne,Hiver",
        "Nouvelle lune,Premier quartier,Pleine lune,Dernier quartier",
        "# jour avant,# jour apr\u00e8s,# jours avant,# jours apr\u00e8s,la",
        "B\u00e9lier,Taureau,G\u00e9meaux,Cancer,Lion,Vierge,Balance,Scorpion,Sagittaire,Capricorne,Verseau,"
        "Poissons"},
    {"Domenica,Luned\u00ec,Marted\u00ec,Mercoled\u00ec,Gioved\u00ec,Venerd\u00ec,Sabato",
        "Giorno # in: ,Settimana: ,Inizio del calendario!,Fine del calendario!,Oggi:",
        "Gennaio,Febbraio,Marzo,Aprile,Maggio,Giugno,Luglio,Agosto,Settembre,Ottobre,Novembre,Dicembre",
        "Primo trimestre,Secondo trimestre,Terzo trimestre,Quarto trimestre",
        "Primavera,Estate,Autunno,Inverno", "Luna nuova,Primo quarto,Luna piena,Ultimo quarto",
        "# giorno prima,# giorno dopo,# giorni prima,# giorni dopo,la",
        "Ariete,Toro,Gemelli,Cancro,Leone,Vergine,Bilancia,Scorpione,Sagittario,Capricorno,Acquario,Pesci"},
    {"Domingo,Lunes,Martes,Mi\u00e9rcoles,Jueves,Viernes,S\u00e1bado",
        "D\u00eda # en: ,Semana: ,\u00a1Inicio del calendario!,\u00a1Fin del calendario!,Hoy:",
        "Enero,Febrero,Marzo,Abril,Mayo,Junio,Julio,Agosto,Septiembre,Octubre,Noviembre,Diciembre",
        "Primer trimestre,Segundo trimestre,Tercer trimestre,Cuarto trimestre",
        "Primavera,Verano,Oto\u00f1o,Invierno", "Luna nueva,Cuarto creciente,Luna llena,Cuarto menguante",
        "# d\u00eda antes,# d\u00eda despu\u00e9s,# d\u00edas antes,# d\u00edas despu\u00e9s,la",
        "Aries,Tauro,G\u00e9minis,C\u00e1ncer,Leo,Virgo,Libra,Escorpio,Sagitario,Capricornio,Acuario,Piscis"},
}};

constexpr std::array<const char*, CalendarLanguage::ListCount> kListNames{"DayNames", "Miscellaneous",
    "MonthNames", "QuarterNames", "SeasonNames", "MoonPhaseNames", "MoonPhaseText", "ZodiacNames"};
constexpr std::array<int, CalendarLanguage::ListCount> kItemCounts{7, 5, 12, 4, 4, 4, 5, 12};

} // namespace

QString CalendarLanguage::listName(int list)
{
    return list >= 0 && list < ListCount ? QString::fromLatin1(kListNames[static_cast<size_t>(list)])
                                         : QString();
}

int CalendarLanguage::itemCount(int list)
{
    return list >= 0 && list < ListCount ? kItemCounts[static_cast<size_t>(list)] : 0;
}

QStringList CalendarLanguage::builtIn(Language language, int list)
{
    if (list < 0 || list >= ListCount) {
        return {};
    }
    const size_t row = language >= English && language <= Spanish ? static_cast<size_t>(language) : 0;
    return QString::fromUtf8(kLanguages[row][static_cast<size_t>(list)]).split(QLatin1Char(','));
}

QString CalendarLanguage::checkList(int list, const QString& text)
{
    const int count = static_cast<int>(text.split(QLatin1Char(',')).size());
    if (count == itemCount(list)) {
        return {};
    }
    return listName(list) + QStringLiteral(" = ") + QString::number(count) + QStringLiteral(") needs: ")
        + QString::number(itemCount(list)) + QStringLiteral(" items!");
}

QString CalendarLanguage::checkLines(const QStringList& lines)
{
    if (lines.size() == ListCount) {
        return {};
    }
    return QStringLiteral("NewLanguageText(") + QString::number(lines.size())
        + QStringLiteral(") array must have 8 lines! (0 to 7)");
}

} // namespace pvardo::schedule
