#pragma once

namespace pvardo::app {

// The screens the start-up shows, one after the other. The program's host
// shows real windows (app/screens); tests record the calls.
class StartupHost
{
public:
    virtual ~StartupHost() = default;

    // The splash screen frmAbout, shown without blocking and without its
    // close button, and its unloading.
    virtual void showSplash() = 0;
    virtual void closeSplash() = 0;

    // The log-on. Gives true when the user logged on; the session's LoggedIn
    // and CurrentUser are then set.
    virtual bool logOn() = 0;

    // The notice waitfrm while the parcel store is opened.
    virtual void showWaitNotice() = 0;
    virtual void closeWaitNotice() = 0;

    // The main window, shown without blocking; from then on user events drive
    // the program.
    virtual void showMainWindow() = 0;

    // A later start of the program asked this one to come to the front.
    virtual void bringToFront() = 0;
};

} // namespace pvardo::app
