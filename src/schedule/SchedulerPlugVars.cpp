#include "schedule/SchedulerPlugVars.h"

#include "common/Session.h"

#include <QLocale>

namespace pvardo::schedule {

QList<QPair<QString, QString>> schedulerPlugValues(int year, int month)
{
    QString monthName;
    if (month >= 1 && month <= 12) {
        monthName = session().MonthNames[static_cast<size_t>(month)];
        if (monthName.isEmpty()) {
            monthName = QLocale(QLocale::English).standaloneMonthName(month, QLocale::LongFormat);
        }
    }
    return {{QStringLiteral("%mm"), monthName}, {QStringLiteral("%yy"), QString::number(year)}};
}

} // namespace pvardo::schedule
