#pragma once

#include <functional>

class QWidget;

namespace pvardo::schedule {
class Scheduler;
}

namespace pvardo::app {

// Gives the dashboard the screens of the rest of the program that it opens
// from its buttons and menus: the case screen, the about window, the user
// screens. Entries whose screens are not part of the program yet stay off.
void wireDashboard(schedule::Scheduler& dashboard);

// How the case screen ZPermits is made for the dashboard, which owns it. An
// empty function would leave iPlaning and "Planning Board" off.
std::function<QWidget*()> caseScreenFactory();

} // namespace pvardo::app
