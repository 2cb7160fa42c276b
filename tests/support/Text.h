#pragma once

#include <QString>

namespace pvardo::test {

// A text of the tests, written as a plain literal: q("12-207").
inline QString q(const char* text)
{
    return QString::fromUtf8(text);
}

} // namespace pvardo::test
