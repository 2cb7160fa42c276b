#include "documents/PrintState.h"

namespace pvardo::documents {

namespace {
PrintState& theState()
{
    static PrintState state;
    return state;
}
} // namespace

PrintState& printState()
{
    return theState();
}

void resetPrintState()
{
    theState() = PrintState();
}

} // namespace pvardo::documents
