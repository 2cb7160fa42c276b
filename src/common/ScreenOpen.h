#pragma once

#include <functional>

namespace pvardo {

// Which sub-record screens are up. Each screen sets its own entry of the
// session's ScreenOpen (0 to 16) when it opens and clears it when it closes;
// the case screen keeps its commands off while one of its sub-record screens
// is up.

// Sets or clears one entry; entries outside 0 to 16 are ignored.
void setScreenOpen(int entry, bool open);
bool isScreenOpen(int entry);

// True when any of the entries 1 to 16 is set.
bool AnyScreenOpen();

// When none of the entries 2 to 14 is set, turns the case screen's command
// buttons on again through `enableCaseCommands` and gives true; otherwise does
// nothing and gives false.
bool ReleaseCaseCommands(const std::function<void()>& enableCaseCommands);

} // namespace pvardo
