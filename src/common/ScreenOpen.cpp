#include "common/ScreenOpen.h"

#include "common/Session.h"

namespace pvardo {

void setScreenOpen(int entry, bool open)
{
    if (entry >= 0 && entry < static_cast<int>(session().ScreenOpen.size())) {
        session().ScreenOpen[static_cast<std::size_t>(entry)] = open;
    }
}

bool isScreenOpen(int entry)
{
    return entry >= 0 && entry < static_cast<int>(session().ScreenOpen.size())
        && session().ScreenOpen[static_cast<std::size_t>(entry)];
}

bool AnyScreenOpen()
{
    for (int entry = 1; entry <= 16; ++entry) {
        if (isScreenOpen(entry)) {
            return true;
        }
    }
    return false;
}

bool ReleaseCaseCommands(const std::function<void()>& enableCaseCommands)
{
    for (int entry = 2; entry <= 14; ++entry) {
        if (isScreenOpen(entry)) {
            return false;
        }
    }
    if (enableCaseCommands) {
        enableCaseCommands();
    }
    return true;
}

} // namespace pvardo
