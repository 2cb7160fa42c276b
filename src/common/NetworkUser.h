#pragma once

#include <QString>

namespace pvardo {

// The name the user logged on to the computer with; proposed as the program's
// user until the log-on screen takes what the user types. Empty when the
// system cannot tell.
QString GetNetworkUser();

} // namespace pvardo
