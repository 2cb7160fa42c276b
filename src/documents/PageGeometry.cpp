#include "documents/PageGeometry.h"

#include <QPageLayout>
#include <QPagedPaintDevice>

#include <algorithm>
#include <cmath>

namespace pvardo::documents {

PageGeometry SetupPage(const QPagedPaintDevice& device, int left, int top, int right, int bottom)
{
    PageGeometry geometry;
    geometry.dotsPerInchX = std::max(device.logicalDpiX(), 1);
    geometry.dotsPerInchY = std::max(device.logicalDpiY(), 1);

    const QPageLayout layout = device.pageLayout();
    const QRectF paper = layout.fullRectPoints(); // 20 twips to the point
    QRectF printable = layout.mode() == QPageLayout::FullPageMode ? paper : layout.paintRectPoints();
    if (printable.isEmpty()) {
        printable = paper;
    }
    const int pageWidth = int(std::lround(paper.width() * 20));
    const int pageHeight = int(std::lround(paper.height() * 20));
    geometry.offsetX = int(std::lround(printable.left() * 20));
    geometry.offsetY = int(std::lround(printable.top() * 20));
    geometry.pageRect = QRect(0, 0, int(std::lround(printable.width() * 20)), int(std::lround(printable.height() * 20)));

    geometry.leftEdge = std::max(0, left - geometry.offsetX);
    geometry.topEdge = std::max(0, top - geometry.offsetY);
    geometry.rightEdge = pageWidth - right - geometry.offsetX;
    geometry.bottomEdge = pageHeight - bottom - geometry.offsetY;

    constexpr int narrowest = 720;
    if (geometry.rightEdge - geometry.leftEdge < narrowest) {
        geometry.leftEdge = std::clamp(geometry.leftEdge, 0, std::max(0, pageWidth - narrowest));
        geometry.rightEdge = geometry.leftEdge + narrowest;
    }
    if (geometry.bottomEdge - geometry.topEdge < narrowest) {
        geometry.topEdge = std::clamp(geometry.topEdge, 0, std::max(0, pageHeight - narrowest));
        geometry.bottomEdge = geometry.topEdge + narrowest;
    }
    return geometry;
}

} // namespace pvardo::documents
