#include "common/Clock.h"

namespace pvardo {

namespace {
QDate g_fixedDay;
}

QDate todaysDate()
{
    return g_fixedDay.isValid() ? g_fixedDay : QDate::currentDate();
}

QDateTime presentTime()
{
    const QDateTime now = QDateTime::currentDateTime();
    return g_fixedDay.isValid() ? QDateTime(g_fixedDay, now.time()) : now;
}

void setClockDay(const QDate& day)
{
    g_fixedDay = day;
}

} // namespace pvardo
