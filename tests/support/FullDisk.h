#pragma once

#include <QtGlobal>

#include <functional>

namespace pvardo::test {

// Runs a piece of work in a child process in which no file may grow past the
// given number of bytes, which is how a full disk looks to a program: a write
// past the limit fails. Gives what the work returned; false when the child
// did not finish normally.
bool onFullDisk(qint64 fileSizeLimit, const std::function<bool()>& work);

} // namespace pvardo::test
