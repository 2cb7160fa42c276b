#include "common/Waiting.h"

#include <QCoreApplication>
#include <QThread>
#include <QTime>
#include <cmath>

namespace pvardo {

namespace {

bool g_waitsEnabled = true;
double g_secondsAsked = 0.0;

// The clock of the day, as a single-precision number of seconds.
float dayTimer()
{
    return static_cast<float>(QTime::currentTime().msecsSinceStartOfDay()) / 1000.0f;
}

constexpr float secondsPerDay = 86400.0f;

} // namespace

void WaitSeconds(double seconds)
{
    if (std::isfinite(seconds)) {
        g_secondsAsked += seconds;
    }
    if (!waitsEnabled() || !std::isfinite(seconds) || seconds <= 0.0) {
        return;
    }
    float target = dayTimer() + static_cast<float>(seconds);
    float previous = dayTimer();
    for (;;) {
        if (QCoreApplication::instance() != nullptr) {
            QCoreApplication::processEvents(QEventLoop::AllEvents);
        }
        const float now = dayTimer();
        if (now < previous) {
            // Midnight passed: the clock started again from zero.
            target -= secondsPerDay;
        }
        previous = now;
        if (now >= target) {
            return;
        }
        const float left = target - now;
        QThread::msleep(left > 0.01f ? 10 : 1);
    }
}

void setWaitsEnabled(bool enabled)
{
    g_waitsEnabled = enabled;
}

bool waitsEnabled()
{
    return g_waitsEnabled && qEnvironmentVariableIsEmpty("PVARDO_NO_WAIT");
}

double secondsAskedToWait()
{
    return g_secondsAsked;
}

} // namespace pvardo
