#include "schedule/CalendarMath.h"

#include <cmath>
#include <numbers>

namespace pvardo::schedule {

int GetMonthDays(int month, int year)
{
    if (month < 1 || month > 12) {
        return 0;
    }
    const QDate firstOfNext = month == 12 ? QDate(year + 1, 1, 1) : QDate(year, month + 1, 1);
    return firstOfNext.addDays(-1).day();
}

int DayOfYear(int day, int month, int year)
{
    return static_cast<int>(QDate(year, 1, 1).daysTo(QDate(year, month, day))) + 1;
}

int DaysBetween(const QDate& from, const QDate& to)
{
    return static_cast<int>(from.daysTo(to));
}

long GetJulianDay(int year, int month, int day)
{
    const bool gregorian = year > 1582 || (year == 1582 && (month > 10 || (month == 10 && day > 14)));
    double y = year;
    double m = month;
    if (m < 3) {
        y -= 1;
        m += 12;
    }
    double b = 0;
    if (gregorian) {
        const double a = std::trunc(y / 100.0);
        b = 2 - a + std::trunc(a / 4.0);
    }
    const double c = (y < 0 ? std::trunc(365.25 * y - 0.75) : std::trunc(365.25 * y)) - 694025;
    const double d = std::trunc(30.6001 * (m + 1));
    return static_cast<long>(b + c + d + day + 2415020);
}

namespace {

double norm(double degrees)
{
    const double folded = std::fmod(degrees, 360.0);
    return folded < 0 ? folded + 360.0 : folded;
}

double radians(double degrees)
{
    return degrees * std::numbers::pi / 180.0;
}

double sinDeg(double degrees)
{
    return std::sin(radians(degrees));
}

} // namespace

double GetMoonPhaseExact(double julianDay)
{
    const double n = julianDay - 2444238.5;
    // The sun.
    const double meanLongitude = norm(360.0 / 365.2422 * n);
    const double sunAnomaly = norm(meanLongitude - 3.76286299999998);
    const double trueAnomaly = 2.0
        * std::atan(std::sqrt(1.016718 / 0.983282) * std::tan(radians(sunAnomaly) / 2.0)) * 180.0
        / std::numbers::pi;
    const double sunLongitude = norm(trueAnomaly + 282.596403);
    // The moon.
    const double moonLongitude = norm(13.1763966 * n + 64.975464);
    const double moonAnomaly = norm(moonLongitude - 0.1114041 * n - 349.383063);
    const double evection = 1.2739 * sinDeg(2.0 * (moonLongitude - sunLongitude) - moonAnomaly);
    const double annual = 0.1858 * sinDeg(sunAnomaly);
    const double third = 0.37 * sinDeg(sunAnomaly);
    const double corrected = moonAnomaly + evection - annual - third;
    const double longitude
        = moonLongitude + evection + 6.2886 * sinDeg(corrected) - annual + 0.214 * sinDeg(2.0 * corrected);
    const double variation = 0.6583 * sinDeg(2.0 * (longitude - sunLongitude));
    const double trueLongitude = longitude + variation;
    return norm(trueLongitude - sunLongitude) / 360.0;
}

int weekOfYear(int day, int month, int year)
{
    return QDate(year, month, day).weekNumber();
}

} // namespace pvardo::schedule
