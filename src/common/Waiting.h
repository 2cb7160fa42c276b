#pragma once

namespace pvardo {

// Waits `seconds` by the clock of the day (seconds since midnight, in single
// precision), letting window events run meanwhile: a screen that is showing
// keeps painting and may get clicks during the wait, so code after a wait must
// not assume that nothing happened.
//
// The waits are part of how the program feels (the splash stays two seconds)
// and can be set to zero: WaitSeconds returns at once when the environment
// variable PVARDO_NO_WAIT is set or setWaitsEnabled(false) was called. Tests
// and headless runs use that.
//
// The clock restarts at midnight. A wait that crosses it ends when the new
// day's clock reaches what is left of the wait, so it never lasts a day.
void WaitSeconds(double seconds);

// Switches the waits on or off for this process. On by default; even when on,
// PVARDO_NO_WAIT still sets them to zero.
void setWaitsEnabled(bool enabled);

// True when WaitSeconds really waits.
bool waitsEnabled();

// The seconds asked of WaitSeconds since the process started, whether or not it
// really waited: lets a headless run check that a pause was asked for.
double secondsAskedToWait();

} // namespace pvardo
