#pragma once

#include "app/StartupHost.h"

#include <QPointer>
#include <memory>

namespace pvardo::schedule {
class Scheduler;
}

namespace pvardo::app {

class AboutScreen;
class WaitNotice;

// The start-up's screens as real windows.
class WidgetStartupHost final : public StartupHost
{
public:
    WidgetStartupHost();
    ~WidgetStartupHost() override;

    void showSplash() override;
    void closeSplash() override;
    bool logOn() override;
    void showWaitNotice() override;
    void closeWaitNotice() override;
    void showMainWindow() override;
    void bringToFront() override;

    schedule::Scheduler* mainWindow() const { return m_main.get(); }

private:
    std::unique_ptr<AboutScreen> m_splash;
    std::unique_ptr<WaitNotice> m_wait;
    std::unique_ptr<schedule::Scheduler> m_main;
};

} // namespace pvardo::app
