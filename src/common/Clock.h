#pragma once

#include <QDate>
#include <QDateTime>

namespace pvardo {

// The program's clock. Whatever takes today's date as a default or reads a
// two-digit year against it asks here, so that a run can be set to another
// day (a test of the years to come, a demonstration).
QDate todaysDate();
QDateTime presentTime();

// Sets the clock to a fixed day (the present time keeps the system's time of
// day); an invalid date gives the system clock back.
void setClockDay(const QDate& day);

// Sets the clock for the life of the object, then gives the system clock back.
class ScopedClockDay
{
public:
    explicit ScopedClockDay(const QDate& day) { setClockDay(day); }
    ~ScopedClockDay() { setClockDay({}); }
    ScopedClockDay(const ScopedClockDay&) = delete;
    ScopedClockDay& operator=(const ScopedClockDay&) = delete;
};

} // namespace pvardo
