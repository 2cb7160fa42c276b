#include "common/Session.h"

#include "common/Clock.h"

namespace pvardo {

void Session::fillConstants(const QDate& today)
{
    static const char* const names[] = {"January", "February", "March", "April", "May", "June", "July",
                                        "August", "September", "October", "November", "December"};
    for (int month = 1; month <= 12; ++month) {
        MonthNames[month] = QString::fromLatin1(names[month - 1]);
    }
    MonthNames[13].clear();
    Today = today;
    TodayMonth = today.toString(QStringLiteral("MM"));
    TodayDay = today.toString(QStringLiteral("dd"));
    TodayYear = today.toString(QStringLiteral("yyyy"));
}

namespace {
Session& instance()
{
    static Session theSession = [] {
        Session fresh;
        fresh.fillConstants(todaysDate());
        return fresh;
    }();
    return theSession;
}
} // namespace

Session& session()
{
    return instance();
}

void resetSession()
{
    instance() = Session{};
    instance().fillConstants(todaysDate());
}

} // namespace pvardo
