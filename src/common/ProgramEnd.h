#pragma once

#include <functional>

namespace pvardo {

// Some routines end the program on the spot: a link that cannot be opened, a
// missing browser, the way out of the session. They all go through EndProgram,
// so that the one way of ending is in one place.
//
// The default ends the process at once, after flushing the standard streams:
// open screens are not asked, as the office expects. Every database write is
// already committed when it returns, so nothing written is lost.
//
// Callers must return right after calling it: a handler installed by a test
// records the request and returns.
void EndProgram(int exitCode = 0);

using ProgramEndHandler = std::function<void(int exitCode)>;

// Installs a handler in place of the default and gives back the previous one.
// An empty handler restores the default.
ProgramEndHandler setProgramEndHandler(ProgramEndHandler handler);

} // namespace pvardo
