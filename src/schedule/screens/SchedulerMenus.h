#pragma once

#include <QString>
#include <QStringList>

class QMenuBar;

namespace pvardo::schedule {

// The menu tree of the whole program, as the dashboard carries it: File,
// Options, Help, Admin (object "report") and Edit (object "medit"). Every
// menu and entry has its object name; the dashboard connects the entries.
void buildSchedulerMenus(QMenuBar& bar);

// The entries whose screens or commands live elsewhere in the program and
// are given to the dashboard through Scheduler::setMenuCommand; until then they
// stand in the menu disabled.
const QStringList& entriesCommandedFromOutside();

} // namespace pvardo::schedule
