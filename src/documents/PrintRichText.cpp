#include "documents/PrintRichText.h"

#include "documents/PageGeometry.h"
#include "documents/Placeholders.h"
#include "documents/RichTextLayout.h"
#include "documents/RtfReader.h"

#include <QPagedPaintDevice>
#include <QPainter>
#include <QTextDocument>

#include <cmath>
#include <memory>

namespace pvardo::documents {

namespace {

constexpr int footerReserve = 300; // twips kept free above the bottom edge for the footer band
constexpr int footerAbove = 100;   // the band begins this far above the bottom edge
constexpr int footerBelow = 160;   // and ends this far below it

int inchesToTwips(double inches)
{
    if (!std::isfinite(inches)) {
        return 0;
    }
    return int(std::lround(std::clamp(inches, 0.0, 22.0) * 1440.0));
}

QRectF deviceRect(const PageGeometry& geometry, qreal left, qreal top, qreal right, qreal bottom)
{
    return QRectF(QPointF(geometry.toDeviceX(left), geometry.toDeviceY(top)),
                  QPointF(geometry.toDeviceX(right), geometry.toDeviceY(bottom)));
}

} // namespace

PrintOutcome PrintRichText(QTextDocument& buffer, QPagedPaintDevice& device, const PrintSettings& settings)
{
    PrintOutcome outcome;
    int ownCounter = 1;
    int& counter = settings.pageCounter ? *settings.pageCounter : ownCounter;
    if (counter < 1) {
        counter = 1;
    }
    auto expand = [&](QTextDocument& document) {
        if (settings.expandPrintTokens) {
            settings.expandPrintTokens(document);
        } else {
            ReplaceLiteral(document, QStringLiteral("##"), QString::number(counter));
        }
    };

    // 1. The print-time placeholders of the body.
    expand(buffer);

    // 2. The page.
    const PageGeometry geometry
        = SetupPage(device, inchesToTwips(settings.leftMargin), inchesToTwips(settings.topMargin),
                    inchesToTwips(settings.rightMargin), inchesToTwips(settings.bottomMargin));
    QPainter painter;
    if (!painter.begin(&device)) {
        outcome.error = QStringLiteral("Error The printer could not be opened.");
        return outcome;
    }
    painter.setRenderHint(QPainter::Antialiasing);

    const qreal columnWidth = geometry.toDeviceX(geometry.rightEdge - geometry.leftEdge);
    const RichTextLayout body(buffer, &device, columnWidth);

    QTextDocument footerSource;
    if (!settings.footerRtf.isEmpty()) {
        readRtf(settings.footerRtf.toUtf8(), footerSource);
    }
    auto printFooterBand = [&] {
        if (counter < 1) {
            counter = 1;
        }
        if (settings.footer) {
            std::unique_ptr<QTextDocument> footer(footerSource.clone());
            expand(*footer);
            const qreal left = geometry.leftEdge;
            const qreal right = geometry.rightEdge;
            const RichTextLayout band(*footer, &device, geometry.toDeviceX(right - left));
            band.formatRange(&painter, 0,
                             deviceRect(geometry, left, geometry.bottomEdge - footerAbove, right,
                                        geometry.bottomEdge + footerBelow));
        }
        ++counter;
    };

    // 3. and 4.
    qreal top = settings.startY < 1 ? geometry.topEdge : settings.startY;
    const int textLength = body.textLength();
    int firstChar = 0;
    const qreal bottom = geometry.bottomEdge - (settings.footer ? footerReserve : 0);
    for (;;) {
        // 5.
        const QRectF target = deviceRect(geometry, geometry.leftEdge, top, geometry.rightEdge, bottom);
        firstChar = body.formatRange(&painter, firstChar, target);
        ++outcome.pages;
        // 6.
        if (firstChar >= textLength) {
            break;
        }
        printFooterBand();
        if (!device.newPage()) {
            painter.end();
            outcome.error = QStringLiteral("Error The printer refused a new page.");
            return outcome;
        }
        top = geometry.topEdge;
    }
    // 7.
    printFooterBand();
    if (!painter.end()) {
        outcome.error = QStringLiteral("Error The printer could not finish the document.");
        return outcome;
    }
    outcome.ok = true;
    return outcome;
}

} // namespace pvardo::documents
