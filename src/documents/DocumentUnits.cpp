#include "documents/DocumentUnits.h"

#include <QtGui/qtguiglobal.h>

// Qt's own idea of the screen resolution, the one its text layout scales
// document lengths by when it draws on a printer.
Q_GUI_EXPORT int qt_defaultDpiY();

namespace pvardo::documents {

namespace {

qreal unitsPerInch()
{
    const int dpi = qt_defaultDpiY();
    return dpi > 0 ? qreal(dpi) : 96.0;
}

} // namespace

qreal twipsToUnits(qreal twips)
{
    return twips * unitsPerInch() / 1440.0;
}

qreal unitsToTwips(qreal units)
{
    return units * 1440.0 / unitsPerInch();
}

} // namespace pvardo::documents
