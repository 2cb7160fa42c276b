#include "schedule/CalendarAlmanac.h"

#include "schedule/CalendarMath.h"

#include <array>
#include <cmath>

namespace pvardo::schedule {

namespace {

constexpr double SynodicMonth = 29.530588;

// The steps of the moon's age, and for each the phase it is measured from
// (after) or towards (before).
constexpr std::array<double, 7> kStepEnds{0.125, 0.25, 0.375, 0.5, 0.626, 0.75, 0.875};

struct Step
{
    int phase; // index into the phase names
    bool before; // counting towards the phase, not from it
    double at; // the age of that phase
};

constexpr std::array<Step, 8> kSteps{{
    {0, false, 0.0},
    {1, true, 0.25},
    {1, false, 0.25},
    {2, true, 0.5},
    {2, false, 0.5},
    {3, true, 0.75},
    {3, false, 0.75},
    {0, true, 1.0},
}};

int stepOf(double age)
{
    int step = 0;
    while (step < static_cast<int>(kStepEnds.size()) && age >= kStepEnds[static_cast<size_t>(step)]) {
        ++step;
    }
    return step;
}

} // namespace

CalendarAlmanac::CalendarAlmanac(CalendarLanguage::Language language, Hemisphere hemisphere)
    : m_language(language)
    , m_hemisphere(hemisphere)
{
}

QStringList CalendarAlmanac::list(int which) const
{
    return CalendarLanguage::builtIn(m_language, which);
}

QString CalendarAlmanac::GetQuarterInfo(int month) const
{
    return month >= 1 && month <= 12 ? list(CalendarLanguage::QuarterNames).value((month - 1) / 3)
                                     : QString();
}

QString CalendarAlmanac::GetSeasonInfo(int day, int month) const
{
    const int key = month * 100 + day;
    int season = 3; // winter
    if (key >= 321 && key < 621) {
        season = 0;
    } else if (key >= 621 && key < 923) {
        season = 1;
    } else if (key >= 923 && key < 1221) {
        season = 2;
    }
    if (m_hemisphere == Southern) {
        season = (season + 2) % 4;
    }
    return list(CalendarLanguage::SeasonNames).value(season);
}

QString CalendarAlmanac::GetZodiacInfo(int day, int month) const
{
    // The first day of each sign, from the Ram on 21 March.
    static constexpr std::array<int, 12> kStarts{
        321, 420, 521, 621, 723, 823, 923, 1023, 1122, 1222, 120, 219};
    const int key = month * 100 + day;
    int sign = 9; // the Goat, across the year's end
    for (int index = 0; index < 9; ++index) {
        if (key >= kStarts[static_cast<size_t>(index)] && key < kStarts[static_cast<size_t>(index) + 1]) {
            sign = index;
        }
    }
    if (key >= 120 && key < 219) {
        sign = 10;
    } else if (key >= 219 && key < 321) {
        sign = 11;
    }
    return list(CalendarLanguage::ZodiacNames).value(sign);
}

int CalendarAlmanac::phaseIndex(double age)
{
    return kSteps[static_cast<size_t>(stepOf(age))].phase;
}

QString CalendarAlmanac::GetMoonPhaseInfo(double julianDay) const
{
    return list(CalendarLanguage::MoonPhaseNames).value(phaseIndex(GetMoonPhaseExact(julianDay)));
}

QString CalendarAlmanac::GetMoonPhaseDetail(double julianDay) const
{
    const double age = GetMoonPhaseExact(julianDay);
    const Step& step = kSteps[static_cast<size_t>(stepOf(age))];
    const QString name = list(CalendarLanguage::MoonPhaseNames).value(step.phase);
    const QStringList phrases = list(CalendarLanguage::MoonPhaseText);
    const int days = static_cast<int>(std::lround(std::abs(step.at - age) * SynodicMonth));
    if (days == 0) {
        return phrases.value(4) + QLatin1Char(' ') + name;
    }
    QString phrase = phrases.value((days == 1 ? 0 : 2) + (step.before ? 0 : 1));
    phrase.replace(QLatin1Char('#'), QString::number(days));
    return phrase + QLatin1Char(' ') + name;
}

} // namespace pvardo::schedule
