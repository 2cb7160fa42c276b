#pragma once

#include <QString>

namespace pvardo::app {

// The installation folder: the folder named by PVARDO_HOME when it is set,
// else the folder of the running program.
QString programFolder();

} // namespace pvardo::app
