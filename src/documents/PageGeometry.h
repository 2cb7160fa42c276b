#pragma once

#include <QRect>

class QPagedPaintDevice;

namespace pvardo::documents {

// Where the text of a page may go, in twips (1440 to the inch), measured from
// the corner of the printable area, which is where a printer's drawing begins.
struct PageGeometry {
    int offsetX = 0;    // printable area's offset from the paper's left edge
    int offsetY = 0;    // and from its top edge
    int leftEdge = 0;   // left margin minus offset x, never below 0
    int topEdge = 0;    // top margin minus offset y, never below 0
    int rightEdge = 0;  // page width minus right margin minus offset x
    int bottomEdge = 0; // page height minus bottom margin minus offset y
    QRect pageRect;     // 0, 0 and the printable area's size
    int dotsPerInchX = 1200;
    int dotsPerInchY = 1200;

    // Twips to the device's pixels.
    qreal toDeviceX(qreal twips) const { return twips * dotsPerInchX / 1440.0; }
    qreal toDeviceY(qreal twips) const { return twips * dotsPerInchY / 1440.0; }
};

// Computes the page geometry of `device` for margins in twips. Margins that
// leave no room are narrowed so that a column of at least half an inch
// remains: a page is always printable.
PageGeometry SetupPage(const QPagedPaintDevice& device, int left, int top, int right, int bottom);

} // namespace pvardo::documents
