#include "app/screens/WidgetStartupHost.h"

#include "admin/screens/PswFrm.h"
#include "app/screens/AboutScreen.h"
#include "app/screens/DashboardWiring.h"
#include "app/screens/WaitNotice.h"
#include "common/Session.h"
#include "schedule/screens/Scheduler.h"

#include <QApplication>
#include <QWidget>

namespace pvardo::app {

WidgetStartupHost::WidgetStartupHost() = default;
WidgetStartupHost::~WidgetStartupHost() = default;

void WidgetStartupHost::showSplash()
{
    m_splash = std::make_unique<AboutScreen>();
    m_splash->setSplash(true);
    m_splash->show();
    m_splash->repaint();
}

void WidgetStartupHost::closeSplash()
{
    m_splash.reset();
}

bool WidgetStartupHost::logOn()
{
    // PswFrm, modal until the user logs on or cancels.
    return admin::runLogOn();
}

void WidgetStartupHost::showWaitNotice()
{
    m_wait = std::make_unique<WaitNotice>();
    m_wait->show();
    m_wait->repaint();
}

void WidgetStartupHost::closeWaitNotice()
{
    m_wait.reset();
}

void WidgetStartupHost::showMainWindow()
{
    // The dashboard is the main window, on today's month; from here on user
    // events drive the program.
    m_main = std::make_unique<schedule::Scheduler>();
    wireDashboard(*m_main);
    m_main->load();
    m_main->show();
}

void WidgetStartupHost::bringToFront()
{
    // The window in front at this moment: the main window, or a screen of the
    // start-up.
    QWidget* window = QApplication::activeWindow();
    if (!window) {
        if (m_main) {
            window = m_main.get();
        } else if (m_wait) {
            window = m_wait.get();
        } else if (m_splash) {
            window = m_splash.get();
        }
    }
    if (!window) {
        return;
    }
    if (window->isMinimized()) {
        window->showNormal();
    }
    window->raise();
    window->activateWindow();
}

} // namespace pvardo::app
