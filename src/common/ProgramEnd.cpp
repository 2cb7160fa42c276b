#include "common/ProgramEnd.h"

#include <cstdio>
#include <cstdlib>

namespace pvardo {

namespace {

void endAtOnce(int exitCode)
{
    std::fflush(nullptr);
    std::_Exit(exitCode);
}

ProgramEndHandler& currentHandler()
{
    static ProgramEndHandler handler = endAtOnce;
    return handler;
}

} // namespace

void EndProgram(int exitCode)
{
    currentHandler()(exitCode);
}

ProgramEndHandler setProgramEndHandler(ProgramEndHandler handler)
{
    ProgramEndHandler previous = std::move(currentHandler());
    currentHandler() = handler ? std::move(handler) : ProgramEndHandler(endAtOnce);
    return previous;
}

} // namespace pvardo
