#pragma once

namespace pvardo {

// The mouse pointer of the whole program, as one setting rather than a stack:
// the hourglass while something slow runs, the normal pointer after. Setting
// the hourglass twice needs one return to normal. Does nothing without a
// window system (the admin tool).
void setHourglass();
void setNormalPointer();
bool isHourglass();

} // namespace pvardo
