#pragma once

#include "common/ProgramEnd.h"

namespace pvardo::test {

// Records EndProgram instead of ending the test program, and puts the
// previous handler back when it goes.
class ProgramEndRecorder
{
public:
    ProgramEndRecorder()
    {
        m_previous = setProgramEndHandler([this](int) { ++m_calls; });
    }
    ~ProgramEndRecorder() { setProgramEndHandler(m_previous); }
    int calls() const { return m_calls; }

private:
    ProgramEndHandler m_previous;
    int m_calls = 0;
};

} // namespace pvardo::test
