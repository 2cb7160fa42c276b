#include "common/MousePointer.h"

#include <QCursor>
#include <QGuiApplication>

namespace pvardo {

namespace {

bool haveWindowSystem()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

} // namespace

void setHourglass()
{
    if (haveWindowSystem() && !isHourglass()) {
        QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    }
}

void setNormalPointer()
{
    if (!haveWindowSystem()) {
        return;
    }
    while (QGuiApplication::overrideCursor() != nullptr) {
        QGuiApplication::restoreOverrideCursor();
    }
}

bool isHourglass()
{
    return haveWindowSystem() && QGuiApplication::overrideCursor() != nullptr
        && QGuiApplication::overrideCursor()->shape() == Qt::WaitCursor;
}

} // namespace pvardo
