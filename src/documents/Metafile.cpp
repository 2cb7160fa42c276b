// A small player for the Windows metafiles and bitmaps that letters carry as
// pictures: logos, letterheads, signatures, the pictures of embedded objects.
// Only what such pictures use is drawn; the rest is passed over, and nothing
// a file says can make the player read past its data or loop without end.
#include "documents/Metafile.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QHash>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace pvardo::documents {

namespace {

constexpr int maxRecords = 200'000;  // more than any letter's logo has
constexpr int maxObjects = 4096;     // the object table of one metafile
constexpr int maxPoints = 1'000'000; // points of one record
constexpr int maxImageSide = 8000;   // pixels of a bitmap inside a metafile

// Little-endian reading that never runs past the data: a read past the end
// gives 0 and marks the reader as exhausted.
class Bytes
{
public:
    Bytes(const QByteArray& data, qsizetype start, qsizetype end)
        : m_data(data), m_pos(start), m_end(std::min(end, data.size()))
    {
    }

    bool ok() const { return !m_short; }
    qsizetype position() const { return m_pos; }
    qsizetype remaining() const { return m_end > m_pos ? m_end - m_pos : 0; }
    void skip(qsizetype n) { m_pos = n > remaining() ? (m_short = true, m_end) : m_pos + n; }

    quint8 u8() { return quint8(take(1) ? m_data.at(m_pos - 1) : 0); }
    quint16 u16() { return take(2) ? qFromLittleEndian<quint16>(m_data.constData() + m_pos - 2) : 0; }
    qint16 s16() { return qint16(u16()); }
    quint32 u32() { return take(4) ? qFromLittleEndian<quint32>(m_data.constData() + m_pos - 4) : 0; }
    qint32 s32() { return qint32(u32()); }
    float f32()
    {
        const quint32 bits = u32();
        float value = 0;
        static_assert(sizeof(value) == sizeof(bits));
        std::memcpy(&value, &bits, sizeof(value));
        return std::isfinite(value) ? value : 0.0f;
    }
    QByteArray bytes(qsizetype n)
    {
        if (n < 0 || n > remaining()) {
            m_short = true;
            n = remaining();
        }
        const QByteArray out = m_data.mid(m_pos, n);
        m_pos += n;
        return out;
    }

private:
    bool take(qsizetype n)
    {
        if (n > remaining()) {
            m_short = true;
            m_pos = m_end;
            return false;
        }
        m_pos += n;
        return true;
    }

    const QByteArray& m_data;
    qsizetype m_pos;
    qsizetype m_end;
    bool m_short = false;
};

QColor colorRef(quint32 value)
{
    return QColor(int(value & 0xFF), int((value >> 8) & 0xFF), int((value >> 16) & 0xFF));
}

// The pens, brushes and fonts a metafile makes and selects.
struct GdiObject {
    enum class Kind { None, Pen, Brush, Font, Other } kind = Kind::None; // Other: palettes, regions
    QPen pen;
    QBrush brush;
    QFont font;
    qreal fontHeight = 0; // logical units; negative is the character height
    int escapement = 0;   // tenths of a degree
};

QPen makePen(int style, qreal width, const QColor& color)
{
    if ((style & 0x0F) == 5) { // PS_NULL
        return QPen(Qt::NoPen);
    }
    QPen pen(color);
    pen.setWidthF(std::max<qreal>(width, 0));
    pen.setCosmetic(width <= 1); // a width of 0 or 1 is one device pixel
    switch (style & 0x0F) {
    case 1:
        pen.setStyle(Qt::DashLine);
        break;
    case 2:
        pen.setStyle(Qt::DotLine);
        break;
    case 3:
        pen.setStyle(Qt::DashDotLine);
        break;
    case 4:
        pen.setStyle(Qt::DashDotDotLine);
        break;
    default:
        pen.setStyle(Qt::SolidLine);
        break;
    }
    pen.setJoinStyle(Qt::MiterJoin);
    return pen;
}

QBrush makeBrush(int style, const QColor& color, int hatch)
{
    switch (style) {
    case 1: // BS_NULL
        return QBrush(Qt::NoBrush);
    case 2: { // BS_HATCHED
        static const Qt::BrushStyle hatches[] = {Qt::HorPattern,   Qt::VerPattern,   Qt::FDiagPattern,
                                                 Qt::BDiagPattern, Qt::CrossPattern, Qt::DiagCrossPattern};
        return QBrush(color, hatches[std::clamp(hatch, 0, 5)]);
    }
    default:
        return QBrush(color);
    }
}

// The drawing state of a device context, saved and restored as a whole.
struct DeviceContext {
    QPen pen = QPen(Qt::black, 0);
    QBrush brush = QBrush(Qt::white);
    GdiObject font;
    QColor textColor = Qt::black;
    QColor backgroundColor = Qt::white;
    bool opaqueBackground = true;
    Qt::FillRule fillRule = Qt::OddEvenFill;
    int textAlign = 0;
    QPointF position;
    QPointF windowOrigin;
    QSizeF windowExtent;
    QPointF viewportOrigin;
    QSizeF viewportExtent;
    int mapMode = 1; // MM_TEXT
    QTransform world;
};

// What WMF and EMF have in common: the state, the object table and the
// drawing of shapes, text and bitmaps in logical coordinates.
class Player
{
public:
    // A metafile whose window is its frame maps logical coordinates straight
    // onto the frame (WMF); otherwise the window and viewport come between (EMF).
    Player(QImage& image, const QRectF& frame, bool windowIsFrame)
        : m_image(image), m_painter(&image), m_frame(frame), m_windowIsFrame(windowIsFrame)
    {
        m_painter.setRenderHint(QPainter::Antialiasing);
        m_painter.setRenderHint(QPainter::TextAntialiasing);
        m_painter.setRenderHint(QPainter::SmoothPixmapTransform);
        m_dc.font.font.setFamily(QStringLiteral("Liberation Sans"));
        updateTransform();
    }

protected:
    // Logical coordinates to the image: the world transform, then window to
    // viewport, then the picture's frame (in device units) onto the image.
    void updateTransform()
    {
        QTransform logicalToDevice;
        if (m_windowIsFrame) {
            QTransform frameToImage;
            if (m_frame.width() != 0 && m_frame.height() != 0) {
                frameToImage.scale(m_image.width() / m_frame.width(), m_image.height() / m_frame.height());
                frameToImage.translate(-m_frame.left(), -m_frame.top());
            }
            m_painter.setTransform(frameToImage);
            return;
        }
        const QSizeF window = m_dc.windowExtent;
        const QSizeF viewport = m_dc.viewportExtent;
        const bool scaled = (m_dc.mapMode == 7 || m_dc.mapMode == 8) && window.width() != 0 && window.height() != 0
                            && viewport.width() != 0 && viewport.height() != 0;
        qreal sx = scaled ? viewport.width() / window.width() : 1.0;
        qreal sy = scaled ? viewport.height() / window.height() : 1.0;
        if (m_dc.mapMode == 7 && scaled) { // MM_ISOTROPIC keeps the aspect
            const qreal s = std::min(std::abs(sx), std::abs(sy));
            sx = std::copysign(s, sx);
            sy = std::copysign(s, sy);
        }
        logicalToDevice.translate(m_dc.viewportOrigin.x(), m_dc.viewportOrigin.y());
        logicalToDevice.scale(sx, sy);
        logicalToDevice.translate(-m_dc.windowOrigin.x(), -m_dc.windowOrigin.y());
        QTransform deviceToImage;
        if (m_frame.width() != 0 && m_frame.height() != 0) {
            deviceToImage.scale(m_image.width() / m_frame.width(), m_image.height() / m_frame.height());
            deviceToImage.translate(-m_frame.left(), -m_frame.top());
        }
        m_painter.setTransform(m_dc.world * logicalToDevice * deviceToImage);
    }

    void save() { m_saved.push_back(m_dc); }
    void restore(int which)
    {
        // A negative number counts back from the last save, a positive one is
        // the instance to go back to.
        if (m_saved.empty()) {
            return;
        }
        qsizetype index = which < 0 ? qsizetype(m_saved.size()) + which : which - 1;
        index = std::clamp<qsizetype>(index, 0, qsizetype(m_saved.size()) - 1);
        m_dc = m_saved.at(size_t(index));
        m_saved.resize(size_t(index));
        updateTransform();
    }

    // The WMF object table takes the lowest free slot; EMF names its slot.
    int addObject(const GdiObject& object, int slot = -1)
    {
        if (slot < 0) {
            slot = 0;
            while (slot < int(m_objects.size()) && m_objects.at(size_t(slot)).kind != GdiObject::Kind::None) {
                ++slot;
            }
        }
        if (slot >= maxObjects) {
            return -1;
        }
        if (slot >= int(m_objects.size())) {
            m_objects.resize(size_t(slot) + 1);
        }
        m_objects[size_t(slot)] = object;
        return slot;
    }

    void selectObject(int slot)
    {
        if (slot < 0 || slot >= int(m_objects.size())) {
            return;
        }
        const GdiObject& object = m_objects.at(size_t(slot));
        switch (object.kind) {
        case GdiObject::Kind::Pen:
            m_dc.pen = object.pen;
            break;
        case GdiObject::Kind::Brush:
            m_dc.brush = object.brush;
            break;
        case GdiObject::Kind::Font:
            m_dc.font = object;
            break;
        case GdiObject::Kind::None:
        case GdiObject::Kind::Other:
            break;
        }
    }

    void deleteObject(int slot)
    {
        if (slot >= 0 && slot < int(m_objects.size())) {
            m_objects[size_t(slot)] = GdiObject();
        }
    }

    void usePenAndBrush(bool fill)
    {
        m_painter.setPen(m_dc.pen);
        m_painter.setBrush(fill ? m_dc.brush : QBrush(Qt::NoBrush));
    }

    void drawPath(const QPainterPath& path, bool fill, bool stroke)
    {
        QPainterPath filled = path;
        filled.setFillRule(m_dc.fillRule);
        m_painter.setPen(stroke ? m_dc.pen : QPen(Qt::NoPen));
        m_painter.setBrush(fill ? m_dc.brush : QBrush(Qt::NoBrush));
        m_painter.drawPath(filled);
    }

    void polygon(const QPolygonF& points, bool closed)
    {
        if (points.size() < 2) {
            return;
        }
        if (closed) {
            usePenAndBrush(true);
            m_painter.drawPolygon(points, m_dc.fillRule);
        } else {
            usePenAndBrush(false);
            m_painter.drawPolyline(points);
        }
    }

    void rectangle(const QRectF& rect, qreal radiusX = 0, qreal radiusY = 0)
    {
        usePenAndBrush(true);
        if (radiusX > 0 && radiusY > 0) {
            m_painter.drawRoundedRect(rect.normalized(), radiusX / 2, radiusY / 2);
        } else {
            m_painter.drawRect(rect.normalized());
        }
    }

    void ellipse(const QRectF& rect)
    {
        usePenAndBrush(true);
        m_painter.drawEllipse(rect.normalized());
    }

    void lineTo(const QPointF& to)
    {
        m_painter.setPen(m_dc.pen);
        m_painter.drawLine(m_dc.position, to);
        m_dc.position = to;
    }

    // Text at a reference point, aligned as the metafile says. It is drawn
    // upright in device space whichever way the logical axes point.
    void text(QPointF at, const QString& string)
    {
        if (string.isEmpty()) {
            return;
        }
        const bool updateCurrent = m_dc.textAlign & 1;
        if (updateCurrent) {
            at = m_dc.position;
        }
        const QTransform transform = m_painter.transform();
        const QPointF device = transform.map(at);
        const qreal scaleY = std::hypot(transform.m21(), transform.m22());
        qreal height = std::abs(m_dc.font.fontHeight) * scaleY;
        if (height <= 0) {
            height = 12 * scaleY;
        }
        if (m_dc.font.fontHeight > 0) {
            height *= 0.8; // a cell height: the character is about four fifths of it
        }
        QFont font = m_dc.font.font;
        font.setPixelSize(std::max(1, int(std::lround(std::min<qreal>(height, 4000)))));
        const QFontMetricsF metrics(font);
        const qreal width = metrics.horizontalAdvance(string);
        qreal x = 0;
        switch (m_dc.textAlign & 6) {
        case 2: // TA_RIGHT
            x = -width;
            break;
        case 6: // TA_CENTER
            x = -width / 2;
            break;
        default:
            break;
        }
        qreal y = metrics.ascent(); // TA_TOP
        if ((m_dc.textAlign & 24) == 24) {
            y = 0; // TA_BASELINE
        } else if (m_dc.textAlign & 8) {
            y = -metrics.descent(); // TA_BOTTOM
        }
        m_painter.save();
        m_painter.resetTransform();
        m_painter.translate(device);
        if (m_dc.font.escapement != 0) {
            m_painter.rotate(-m_dc.font.escapement / 10.0);
        }
        m_painter.setFont(font);
        m_painter.setPen(m_dc.textColor);
        m_painter.drawText(QPointF(x, y), string);
        m_painter.restore();
        if (updateCurrent) {
            m_dc.position = transform.inverted().map(device + QPointF(width, 0));
        }
    }

    void bitmap(const QRectF& target, const QImage& image, const QRectF& source)
    {
        if (image.isNull() || target.isEmpty()) {
            return;
        }
        const QRectF from = source.isValid() && !source.isEmpty() ? source : QRectF(image.rect());
        m_painter.drawImage(target, image, from);
    }

    QImage& m_image;
    QPainter m_painter;
    QRectF m_frame;
    bool m_windowIsFrame;
    DeviceContext m_dc;
    std::vector<DeviceContext> m_saved;
    std::vector<GdiObject> m_objects;
};

QImage emptyImage(QSize pixels)
{
    if (pixels.width() <= 0 || pixels.height() <= 0) {
        return {};
    }
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        return {};
    }
    image.fill(Qt::transparent);
    return image;
}

// ---------------------------------------------------------------------------
// WMF

class WmfPlayer : public Player
{
public:
    using Player::Player;

    void play(const QByteArray& data, qsizetype start)
    {
        Bytes header(data, start, data.size());
        header.skip(18); // the metafile header
        qsizetype pos = header.position();
        for (int count = 0; count < maxRecords && pos + 6 <= data.size(); ++count) {
            Bytes head(data, pos, data.size());
            const quint32 words = head.u32();
            const quint16 function = head.u16();
            if (words < 3 || qint64(words) * 2 > data.size() - pos) {
                return; // damaged: what came before stays drawn
            }
            Bytes params(data, pos + 6, pos + qsizetype(words) * 2);
            if (function == 0x0000) {
                return; // META_EOF
            }
            record(function, params);
            pos += qsizetype(words) * 2;
        }
    }

private:
    static QPointF point(Bytes& in)
    {
        const qint16 y = in.s16(); // WMF stores y before x
        const qint16 x = in.s16();
        return QPointF(x, y);
    }

    static QRectF rectFromParams(Bytes& in)
    {
        const qint16 bottom = in.s16();
        const qint16 right = in.s16();
        const qint16 top = in.s16();
        const qint16 left = in.s16();
        return QRectF(QPointF(left, top), QPointF(right, bottom));
    }

    static QPolygonF points(Bytes& in, int count)
    {
        QPolygonF polygon;
        count = std::clamp(count, 0, int(std::min<qsizetype>(maxPoints, in.remaining() / 4)));
        polygon.reserve(count);
        for (int i = 0; i < count; ++i) {
            const qint16 x = in.s16();
            const qint16 y = in.s16();
            polygon.append(QPointF(x, y));
        }
        return polygon;
    }

    void record(quint16 function, Bytes& in)
    {
        switch (function) {
        // The window a metafile sets is what the picture's frame shows; without
        // one, the placeable header's box is.
        case 0x020B: // SETWINDOWORG
            m_windowOrigin = point(in);
            m_frame.moveTopLeft(m_windowOrigin);
            updateTransform();
            break;
        case 0x020C: { // SETWINDOWEXT
            const QPointF extent = point(in);
            if (extent.x() != 0 && extent.y() != 0) {
                m_frame = QRectF(m_windowOrigin, QSizeF(extent.x(), extent.y()));
                updateTransform();
            }
            break;
        }
        case 0x0103: // SETMAPMODE: a metafile's window is its frame whatever the mode
            break;
        case 0x0102: // SETBKMODE
            m_dc.opaqueBackground = in.u16() == 2;
            break;
        case 0x0201: // SETBKCOLOR
            m_dc.backgroundColor = colorRef(in.u32());
            break;
        case 0x0209: // SETTEXTCOLOR
            m_dc.textColor = colorRef(in.u32());
            break;
        case 0x0106: // SETPOLYFILLMODE
            m_dc.fillRule = in.u16() == 2 ? Qt::WindingFill : Qt::OddEvenFill;
            break;
        case 0x012E: // SETTEXTALIGN
            m_dc.textAlign = in.u16();
            break;
        case 0x001E: // SAVEDC
            save();
            break;
        case 0x0127: // RESTOREDC
            restore(in.s16());
            break;
        case 0x02FA: { // CREATEPENINDIRECT
            GdiObject pen;
            pen.kind = GdiObject::Kind::Pen;
            const int style = in.u16();
            const qint16 width = in.s16();
            in.s16();
            pen.pen = makePen(style, width, colorRef(in.u32()));
            addObject(pen);
            break;
        }
        case 0x02FC: { // CREATEBRUSHINDIRECT
            GdiObject brush;
            brush.kind = GdiObject::Kind::Brush;
            const int style = in.u16();
            const QColor color = colorRef(in.u32());
            brush.brush = makeBrush(style, color, in.u16());
            addObject(brush);
            break;
        }
        case 0x0142: // DIBCREATEPATTERNBRUSH: drawn as a grey fill
        case 0x01F9: { // CREATEPATTERNBRUSH
            GdiObject brush;
            brush.kind = GdiObject::Kind::Brush;
            brush.brush = QBrush(Qt::lightGray);
            addObject(brush);
            break;
        }
        case 0x02FB: { // CREATEFONTINDIRECT
            GdiObject font;
            font.kind = GdiObject::Kind::Font;
            font.fontHeight = in.s16();
            in.s16(); // width
            font.escapement = in.s16();
            in.s16(); // orientation
            const int weight = in.s16();
            const bool italic = in.u8();
            const bool underline = in.u8();
            const bool strikeOut = in.u8();
            in.skip(5); // charset, precisions, quality, pitch and family
            QByteArray face = in.bytes(std::min<qsizetype>(32, in.remaining()));
            face.truncate(face.indexOf('\0') >= 0 ? face.indexOf('\0') : face.size());
            font.font.setFamily(face.isEmpty() ? QStringLiteral("Liberation Sans") : QString::fromLatin1(face));
            font.font.setWeight(weight >= 600 ? QFont::Bold : QFont::Normal);
            font.font.setItalic(italic);
            font.font.setUnderline(underline);
            font.font.setStrikeOut(strikeOut);
            addObject(font);
            break;
        }
        case 0x00F7: // CREATEPALETTE
        case 0x06FF: { // CREATEREGION: they take a slot, so later numbers stay right
            GdiObject other;
            other.kind = GdiObject::Kind::Other;
            addObject(other);
            break;
        }
        case 0x012D: // SELECTOBJECT
            selectObject(in.u16());
            break;
        case 0x01F0: // DELETEOBJECT
            deleteObject(in.u16());
            break;
        case 0x0214: // MOVETO
            m_dc.position = point(in);
            break;
        case 0x0213: // LINETO
            lineTo(point(in));
            break;
        case 0x041B: // RECTANGLE
            rectangle(rectFromParams(in));
            break;
        case 0x061C: { // ROUNDRECT
            const qint16 height = in.s16();
            const qint16 width = in.s16();
            rectangle(rectFromParams(in), width, height);
            break;
        }
        case 0x0418: // ELLIPSE
            ellipse(rectFromParams(in));
            break;
        case 0x0324: // POLYGON
        case 0x0325: { // POLYLINE
            const int count = in.s16();
            polygon(points(in, count), function == 0x0324);
            break;
        }
        case 0x0538: { // POLYPOLYGON
            const int polygons = std::clamp<int>(in.u16(), 0, int(in.remaining() / 2));
            std::vector<int> counts;
            for (int i = 0; i < polygons; ++i) {
                counts.push_back(in.u16());
            }
            QPainterPath path;
            for (const int count : counts) {
                const QPolygonF part = points(in, count);
                if (part.size() > 1) {
                    path.addPolygon(part);
                    path.closeSubpath();
                }
            }
            drawPath(path, true, true);
            break;
        }
        case 0x0521: { // TEXTOUT
            const int length = in.s16();
            const QByteArray string = in.bytes(std::clamp(length, 0, int(in.remaining())));
            if (length & 1) {
                in.skip(1);
            }
            const QPointF at = point(in);
            text(at, QString::fromLatin1(string));
            break;
        }
        case 0x0A32: { // EXTTEXTOUT
            const QPointF at = point(in);
            const int length = in.s16();
            const int options = in.u16();
            if (options & 0x0006) { // ETO_OPAQUE or ETO_CLIPPED: a rectangle follows
                in.skip(8);
            }
            const QByteArray string = in.bytes(std::clamp(length, 0, int(in.remaining())));
            text(at, QString::fromLatin1(string));
            break;
        }
        case 0x0F43: { // STRETCHDIB
            in.u32(); // raster operation
            in.u16(); // colour usage
            const qint16 srcHeight = in.s16();
            const qint16 srcWidth = in.s16();
            const qint16 ySrc = in.s16();
            const qint16 xSrc = in.s16();
            const qint16 destHeight = in.s16();
            const qint16 destWidth = in.s16();
            const qint16 yDest = in.s16();
            const qint16 xDest = in.s16();
            const QImage image = decodeDeviceIndependentBitmap(in.bytes(in.remaining()));
            bitmap(QRectF(xDest, yDest, destWidth, destHeight), image, QRectF(xSrc, ySrc, srcWidth, srcHeight));
            break;
        }
        case 0x0B41: // DIBSTRETCHBLT
        case 0x0940: { // DIBBITBLT
            const bool stretch = function == 0x0B41;
            in.u32(); // raster operation
            qint16 srcHeight = 0;
            qint16 srcWidth = 0;
            if (stretch) {
                srcHeight = in.s16();
                srcWidth = in.s16();
            }
            const qint16 ySrc = in.s16();
            const qint16 xSrc = in.s16();
            if (in.remaining() < 8 + 40) {
                break; // the form without a bitmap: a fill, not a picture
            }
            const qint16 destHeight = in.s16();
            const qint16 destWidth = in.s16();
            const qint16 yDest = in.s16();
            const qint16 xDest = in.s16();
            if (!stretch) {
                srcHeight = destHeight;
                srcWidth = destWidth;
            }
            const QImage image = decodeDeviceIndependentBitmap(in.bytes(in.remaining()));
            bitmap(QRectF(xDest, yDest, destWidth, destHeight), image, QRectF(xSrc, ySrc, srcWidth, srcHeight));
            break;
        }
        default:
            break; // clipping, palettes, escapes and the like change nothing a letter needs
        }
    }

    QPointF m_windowOrigin;
};

// ---------------------------------------------------------------------------
// EMF

QRectF emfFrame(const QByteArray& data)
{
    Bytes in(data, 8, data.size());
    const qint32 boundsLeft = in.s32();
    const qint32 boundsTop = in.s32();
    const qint32 boundsRight = in.s32();
    const qint32 boundsBottom = in.s32();
    const qint32 frameLeft = in.s32();
    const qint32 frameTop = in.s32();
    const qint32 frameRight = in.s32();
    const qint32 frameBottom = in.s32();
    in.skip(4 + 4 + 4 + 4 + 2 + 2 + 4 + 4 + 4); // signature, version, bytes, records, handles, reserved, description, palette
    const qint32 devicePixelsX = in.s32();
    const qint32 devicePixelsY = in.s32();
    const qint32 deviceMillimetresX = in.s32();
    const qint32 deviceMillimetresY = in.s32();
    if (in.ok() && devicePixelsX > 0 && devicePixelsY > 0 && deviceMillimetresX > 0 && deviceMillimetresY > 0
        && frameRight > frameLeft && frameBottom > frameTop) {
        // The frame is in hundredths of a millimetre; the records draw in the
        // pixels of the reference device.
        const qreal perX = qreal(devicePixelsX) / (deviceMillimetresX * 100.0);
        const qreal perY = qreal(devicePixelsY) / (deviceMillimetresY * 100.0);
        return QRectF(QPointF(frameLeft * perX, frameTop * perY), QPointF(frameRight * perX, frameBottom * perY));
    }
    if (boundsRight > boundsLeft && boundsBottom > boundsTop) {
        return QRectF(QPointF(boundsLeft, boundsTop), QPointF(boundsRight + 1, boundsBottom + 1));
    }
    return {};
}

class EmfPlayer : public Player
{
public:
    using Player::Player;

    void play(const QByteArray& data)
    {
        qsizetype pos = 0;
        for (int count = 0; count < maxRecords && pos + 8 <= data.size(); ++count) {
            Bytes head(data, pos, data.size());
            const quint32 type = head.u32();
            const quint32 size = head.u32();
            if (size < 8 || (size & 3) || qint64(size) > data.size() - pos) {
                return;
            }
            Bytes params(data, pos + 8, pos + qsizetype(size));
            if (type == 14) {
                return; // EMR_EOF
            }
            record(type, params, data, pos, qsizetype(size));
            pos += qsizetype(size);
        }
    }

private:
    static QPointF point32(Bytes& in)
    {
        const qint32 x = in.s32();
        const qint32 y = in.s32();
        return QPointF(x, y);
    }

    static QRectF rect32(Bytes& in)
    {
        const qint32 left = in.s32();
        const qint32 top = in.s32();
        const qint32 right = in.s32();
        const qint32 bottom = in.s32();
        return QRectF(QPointF(left, top), QPointF(right, bottom));
    }

    static QPolygonF points(Bytes& in, quint32 count, bool sixteen)
    {
        QPolygonF polygon;
        const qsizetype each = sixteen ? 4 : 8;
        const qsizetype fits = std::min<qsizetype>(maxPoints, in.remaining() / each);
        const qsizetype n = std::min<qsizetype>(count, fits);
        polygon.reserve(n);
        for (qsizetype i = 0; i < n; ++i) {
            if (sixteen) {
                const qint16 x = in.s16();
                const qint16 y = in.s16();
                polygon.append(QPointF(x, y));
            } else {
                polygon.append(point32(in));
            }
        }
        return polygon;
    }

    static QTransform xform(Bytes& in)
    {
        const qreal m11 = in.f32();
        const qreal m12 = in.f32();
        const qreal m21 = in.f32();
        const qreal m22 = in.f32();
        const qreal dx = in.f32();
        const qreal dy = in.f32();
        return QTransform(m11, m12, m21, m22, dx, dy);
    }

    // A bitmap record's DIB: its header and bits at offsets from the record.
    static QImage recordBitmap(const QByteArray& data, qsizetype record, qsizetype size, quint32 headerOffset,
                               quint32 headerSize, quint32 bitsOffset, quint32 bitsSize)
    {
        if (headerSize == 0 || headerOffset + qint64(headerSize) > size || bitsOffset + qint64(bitsSize) > size) {
            return {};
        }
        QByteArray dib = data.mid(record + headerOffset, headerSize);
        dib.append(data.mid(record + bitsOffset, bitsSize));
        return decodeDeviceIndependentBitmap(dib);
    }

    void addToPathOrDraw(const QPolygonF& polygon, bool closed, bool bezier, bool fromCurrent)
    {
        QPolygonF all = polygon;
        if (fromCurrent) {
            all.prepend(m_dc.position);
        }
        if (all.isEmpty()) {
            return;
        }
        QPainterPath part;
        part.moveTo(all.first());
        if (bezier) {
            for (qsizetype i = 1; i + 2 < all.size(); i += 3) {
                part.cubicTo(all.at(i), all.at(i + 1), all.at(i + 2));
            }
        } else {
            for (qsizetype i = 1; i < all.size(); ++i) {
                part.lineTo(all.at(i));
            }
        }
        if (closed) {
            part.closeSubpath();
        }
        m_dc.position = all.last();
        if (m_inPath) {
            if (fromCurrent && !m_path.isEmpty()) {
                m_path.connectPath(part);
            } else {
                m_path.addPath(part);
            }
            return;
        }
        drawPath(part, closed, true);
    }

    void record(quint32 type, Bytes& in, const QByteArray& data, qsizetype record, qsizetype size)
    {
        switch (type) {
        case 9: { // SETWINDOWEXTEX
            const qint32 cx = in.s32();
            const qint32 cy = in.s32();
            m_dc.windowExtent = QSizeF(cx, cy);
            updateTransform();
            break;
        }
        case 10: // SETWINDOWORGEX
            m_dc.windowOrigin = point32(in);
            updateTransform();
            break;
        case 11: { // SETVIEWPORTEXTEX
            const qint32 cx = in.s32();
            const qint32 cy = in.s32();
            m_dc.viewportExtent = QSizeF(cx, cy);
            updateTransform();
            break;
        }
        case 12: // SETVIEWPORTORGEX
            m_dc.viewportOrigin = point32(in);
            updateTransform();
            break;
        case 17: // SETMAPMODE
            m_dc.mapMode = int(in.u32());
            updateTransform();
            break;
        case 18: // SETBKMODE
            m_dc.opaqueBackground = in.u32() == 2;
            break;
        case 19: // SETPOLYFILLMODE
            m_dc.fillRule = in.u32() == 2 ? Qt::WindingFill : Qt::OddEvenFill;
            break;
        case 22: // SETTEXTALIGN
            m_dc.textAlign = int(in.u32());
            break;
        case 24: // SETTEXTCOLOR
            m_dc.textColor = colorRef(in.u32());
            break;
        case 25: // SETBKCOLOR
            m_dc.backgroundColor = colorRef(in.u32());
            break;
        case 27: // MOVETOEX
            m_dc.position = point32(in);
            if (m_inPath) {
                m_path.moveTo(m_dc.position);
            }
            break;
        case 54: { // LINETO
            const QPointF to = point32(in);
            if (m_inPath) {
                if (m_path.elementCount() == 0) {
                    m_path.moveTo(m_dc.position);
                }
                m_path.lineTo(to);
                m_dc.position = to;
            } else {
                lineTo(to);
            }
            break;
        }
        case 33: // SAVEDC
            save();
            break;
        case 34: // RESTOREDC
            restore(in.s32());
            break;
        case 35: // SETWORLDTRANSFORM
            m_dc.world = xform(in);
            updateTransform();
            break;
        case 36: { // MODIFYWORLDTRANSFORM
            const QTransform given = xform(in);
            const quint32 mode = in.u32();
            if (mode == 1) {
                m_dc.world = QTransform();
            } else if (mode == 2) {
                m_dc.world = given * m_dc.world;
            } else if (mode == 3) {
                m_dc.world = m_dc.world * given;
            } else if (mode == 4) {
                m_dc.world = given;
            }
            updateTransform();
            break;
        }
        case 37: { // SELECTOBJECT
            const quint32 slot = in.u32();
            if (slot & 0x80000000u) {
                selectStock(slot & 0x7FFFFFFFu);
            } else {
                selectObject(int(std::min<quint32>(slot, maxObjects)));
            }
            break;
        }
        case 38: { // CREATEPEN
            const quint32 slot = in.u32();
            const int style = int(in.u32());
            const qint32 width = in.s32();
            in.s32();
            GdiObject pen;
            pen.kind = GdiObject::Kind::Pen;
            pen.pen = makePen(style, width, colorRef(in.u32()));
            addObject(pen, int(std::min<quint32>(slot, maxObjects)));
            break;
        }
        case 95: { // EXTCREATEPEN
            const quint32 slot = in.u32();
            in.skip(16); // where a bitmap of the pen would be
            const int style = int(in.u32());
            const qint32 width = in.s32();
            in.u32(); // brush style
            GdiObject pen;
            pen.kind = GdiObject::Kind::Pen;
            pen.pen = makePen(style, width, colorRef(in.u32()));
            if ((style & 0xF00) == 0x100) {
                pen.pen.setCapStyle(Qt::SquareCap);
            } else if ((style & 0xF00) == 0x200) {
                pen.pen.setCapStyle(Qt::FlatCap);
            } else {
                pen.pen.setCapStyle(Qt::RoundCap);
            }
            addObject(pen, int(std::min<quint32>(slot, maxObjects)));
            break;
        }
        case 39: { // CREATEBRUSHINDIRECT
            const quint32 slot = in.u32();
            const int style = int(in.u32());
            const QColor color = colorRef(in.u32());
            GdiObject brush;
            brush.kind = GdiObject::Kind::Brush;
            brush.brush = makeBrush(style, color, int(in.u32()));
            addObject(brush, int(std::min<quint32>(slot, maxObjects)));
            break;
        }
        case 93: // CREATEMONOBRUSH
        case 94: { // CREATEDIBPATTERNBRUSHPT
            GdiObject brush;
            brush.kind = GdiObject::Kind::Brush;
            brush.brush = QBrush(Qt::lightGray);
            addObject(brush, int(std::min<quint32>(in.u32(), maxObjects)));
            break;
        }
        case 82: { // EXTCREATEFONTINDIRECTW
            const quint32 slot = in.u32();
            GdiObject font;
            font.kind = GdiObject::Kind::Font;
            font.fontHeight = in.s32();
            in.s32(); // width
            font.escapement = in.s32();
            in.s32(); // orientation
            const qint32 weight = in.s32();
            const bool italic = in.u8();
            const bool underline = in.u8();
            const bool strikeOut = in.u8();
            in.skip(5);
            QString face;
            for (int i = 0; i < 32 && in.remaining() >= 2; ++i) {
                const quint16 c = in.u16();
                if (c == 0) {
                    break;
                }
                face.append(QChar(c));
            }
            font.font.setFamily(face.isEmpty() ? QStringLiteral("Liberation Sans") : face);
            font.font.setWeight(weight >= 600 ? QFont::Bold : QFont::Normal);
            font.font.setItalic(italic);
            font.font.setUnderline(underline);
            font.font.setStrikeOut(strikeOut);
            addObject(font, int(std::min<quint32>(slot, maxObjects)));
            break;
        }
        case 40: // DELETEOBJECT
            deleteObject(int(std::min<quint32>(in.u32(), maxObjects)));
            break;
        case 42: // ELLIPSE
        case 43: { // RECTANGLE
            const QRectF box = rect32(in);
            if (m_inPath) {
                type == 42 ? m_path.addEllipse(box.normalized()) : m_path.addRect(box.normalized());
            } else if (type == 42) {
                ellipse(box);
            } else {
                rectangle(box);
            }
            break;
        }
        case 44: { // ROUNDRECT
            const QRectF box = rect32(in);
            const qint32 cx = in.s32();
            const qint32 cy = in.s32();
            rectangle(box, cx, cy);
            break;
        }
        case 2: // POLYBEZIER
        case 3: // POLYGON
        case 4: // POLYLINE
        case 5: // POLYBEZIERTO
        case 6: // POLYLINETO
        case 85: // POLYBEZIER16
        case 86: // POLYGON16
        case 87: // POLYLINE16
        case 88: // POLYBEZIERTO16
        case 89: { // POLYLINETO16
            in.skip(16); // bounds
            const quint32 count = in.u32();
            const bool sixteen = type >= 85;
            const quint32 kind = sixteen ? type - 83 : type; // 2 to 6
            const QPolygonF polygon = points(in, count, sixteen);
            addToPathOrDraw(polygon, kind == 3, kind == 2 || kind == 5, kind == 5 || kind == 6);
            break;
        }
        case 7: // POLYPOLYLINE
        case 8: // POLYPOLYGON
        case 90: // POLYPOLYLINE16
        case 91: { // POLYPOLYGON16
            in.skip(16);
            const quint32 polygons = std::min<quint32>(in.u32(), quint32(in.remaining() / 4));
            in.u32(); // all points
            std::vector<quint32> counts;
            for (quint32 i = 0; i < polygons; ++i) {
                counts.push_back(in.u32());
            }
            const bool sixteen = type >= 90;
            const bool closed = type == 8 || type == 91;
            QPainterPath path;
            for (const quint32 count : counts) {
                const QPolygonF part = points(in, count, sixteen);
                if (part.size() > 1) {
                    path.addPolygon(part);
                    if (closed) {
                        path.closeSubpath();
                    }
                }
            }
            if (m_inPath) {
                m_path.addPath(path);
            } else {
                drawPath(path, closed, true);
            }
            break;
        }
        case 59: // BEGINPATH
            m_inPath = true;
            m_path = QPainterPath();
            break;
        case 60: // ENDPATH
            m_inPath = false;
            break;
        case 61: // CLOSEFIGURE
            m_path.closeSubpath();
            break;
        case 62: // FILLPATH
        case 63: // STROKEANDFILLPATH
        case 64: // STROKEPATH
            m_inPath = false;
            drawPath(m_path, type != 64, type != 62);
            m_path = QPainterPath();
            break;
        case 84: { // EXTTEXTOUTW
            in.skip(16 + 4 + 4 + 4); // bounds, graphics mode, scales
            const QPointF reference = point32(in);
            const quint32 chars = in.u32();
            const quint32 offString = in.u32();
            if (chars == 0 || offString + qint64(chars) * 2 > size) {
                break;
            }
            QString string;
            string.reserve(qsizetype(chars));
            Bytes characters(data, record + offString, record + size);
            for (quint32 i = 0; i < chars; ++i) {
                string.append(QChar(characters.u16()));
            }
            text(reference, string);
            break;
        }
        case 81: { // STRETCHDIBITS
            in.skip(16); // bounds
            const qint32 xDest = in.s32();
            const qint32 yDest = in.s32();
            const qint32 xSrc = in.s32();
            const qint32 ySrc = in.s32();
            const qint32 cxSrc = in.s32();
            const qint32 cySrc = in.s32();
            const quint32 offBmi = in.u32();
            const quint32 cbBmi = in.u32();
            const quint32 offBits = in.u32();
            const quint32 cbBits = in.u32();
            in.u32(); // usage
            in.u32(); // raster operation
            const qint32 cxDest = in.s32();
            const qint32 cyDest = in.s32();
            const QImage image = recordBitmap(data, record, size, offBmi, cbBmi, offBits, cbBits);
            bitmap(QRectF(xDest, yDest, cxDest, cyDest), image, QRectF(xSrc, ySrc, cxSrc, cySrc));
            break;
        }
        case 76: // BITBLT
        case 77: { // STRETCHBLT
            in.skip(16);
            const qint32 xDest = in.s32();
            const qint32 yDest = in.s32();
            const qint32 cxDest = in.s32();
            const qint32 cyDest = in.s32();
            in.u32(); // raster operation
            const qint32 xSrc = in.s32();
            const qint32 ySrc = in.s32();
            in.skip(24 + 4 + 4); // source transform, background colour, usage
            const quint32 offBmi = in.u32();
            const quint32 cbBmi = in.u32();
            const quint32 offBits = in.u32();
            const quint32 cbBits = in.u32();
            qint32 cxSrc = cxDest;
            qint32 cySrc = cyDest;
            if (type == 77) {
                cxSrc = in.s32();
                cySrc = in.s32();
            }
            const QImage image = recordBitmap(data, record, size, offBmi, cbBmi, offBits, cbBits);
            bitmap(QRectF(xDest, yDest, cxDest, cyDest), image, QRectF(xSrc, ySrc, cxSrc, cySrc));
            break;
        }
        default:
            break; // comments (EMF+ among them), clipping, palettes
        }
    }

    void selectStock(quint32 which)
    {
        switch (which) {
        case 0: // WHITE_BRUSH
            m_dc.brush = QBrush(Qt::white);
            break;
        case 1: // LTGRAY_BRUSH
            m_dc.brush = QBrush(QColor(192, 192, 192));
            break;
        case 2: // GRAY_BRUSH
            m_dc.brush = QBrush(QColor(128, 128, 128));
            break;
        case 3: // DKGRAY_BRUSH
            m_dc.brush = QBrush(QColor(64, 64, 64));
            break;
        case 4: // BLACK_BRUSH
            m_dc.brush = QBrush(Qt::black);
            break;
        case 5: // NULL_BRUSH
            m_dc.brush = QBrush(Qt::NoBrush);
            break;
        case 6: // WHITE_PEN
            m_dc.pen = QPen(Qt::white, 0);
            break;
        case 7: // BLACK_PEN
            m_dc.pen = QPen(Qt::black, 0);
            break;
        case 8: // NULL_PEN
            m_dc.pen = QPen(Qt::NoPen);
            break;
        default:
            break; // stock fonts and palettes: the current font stays
        }
    }

    bool m_inPath = false;
    QPainterPath m_path;
};

} // namespace

QSize windowsMetafileTwips(const QByteArray& data)
{
    Bytes in(data, 0, data.size());
    if (in.u32() != 0x9AC6CDD7u) {
        return {};
    }
    in.u16();
    const qint16 left = in.s16();
    const qint16 top = in.s16();
    const qint16 right = in.s16();
    const qint16 bottom = in.s16();
    const int unitsPerInch = in.u16();
    if (!in.ok() || unitsPerInch <= 0 || right == left || bottom == top) {
        return {};
    }
    return QSize(int(std::abs(right - left) * 1440LL / unitsPerInch), int(std::abs(bottom - top) * 1440LL / unitsPerInch));
}

QSize enhancedMetafileTwips(const QByteArray& data)
{
    Bytes in(data, 24, data.size());
    const qint32 left = in.s32();
    const qint32 top = in.s32();
    const qint32 right = in.s32();
    const qint32 bottom = in.s32();
    if (!in.ok() || right <= left || bottom <= top) {
        return {};
    }
    // Hundredths of a millimetre to twips.
    return QSize(int((qint64(right) - left) * 1440 / 2540), int((qint64(bottom) - top) * 1440 / 2540));
}

QImage renderWindowsMetafile(const QByteArray& data, QSize pixels)
{
    QImage image = emptyImage(pixels);
    if (image.isNull() || data.size() < 18) {
        return {};
    }
    qsizetype start = 0;
    QRectF frame;
    Bytes in(data, 0, data.size());
    if (in.u32() == 0x9AC6CDD7u) {
        in.u16();
        const qint16 left = in.s16();
        const qint16 top = in.s16();
        const qint16 right = in.s16();
        const qint16 bottom = in.s16();
        frame = QRectF(QPointF(left, top), QPointF(right, bottom));
        start = 22;
    }
    Bytes header(data, start, data.size());
    const quint16 type = header.u16();
    const quint16 headerWords = header.u16();
    if ((type != 1 && type != 2) || headerWords != 9) {
        return {};
    }
    {
        WmfPlayer player(image, frame, true);
        player.play(data, start);
    }
    return image;
}

QImage renderEnhancedMetafile(const QByteArray& data, QSize pixels)
{
    Bytes in(data, 0, data.size());
    const quint32 type = in.u32();
    in.u32();
    Bytes signature(data, 40, data.size());
    if (type != 1 || signature.u32() != 0x464D4520u) { // " EMF"
        return {};
    }
    QImage image = emptyImage(pixels);
    if (image.isNull()) {
        return {};
    }
    {
        EmfPlayer player(image, emfFrame(data), false);
        player.play(data);
    }
    return image;
}

QImage decodeDeviceIndependentBitmap(const QByteArray& data)
{
    Bytes in(data, 0, data.size());
    const quint32 headerSize = in.u32();
    if (!in.ok() || (headerSize != 12 && headerSize < 40) || headerSize > quint32(data.size())) {
        return {};
    }
    qint64 width = 0;
    qint64 height = 0;
    int bitCount = 0;
    quint32 compression = 0;
    quint32 colorsUsed = 0;
    if (headerSize == 12) {
        width = in.u16();
        height = in.s16();
        in.u16();
        bitCount = in.u16();
    } else {
        width = in.s32();
        height = in.s32();
        in.u16();
        bitCount = in.u16();
        compression = in.u32();
        in.skip(12);
        colorsUsed = in.u32();
    }
    if (width <= 0 || height == 0 || width > maxImageSide || std::abs(height) > maxImageSide) {
        return {};
    }
    quint32 paletteEntries = bitCount <= 8 ? (colorsUsed ? colorsUsed : (1u << bitCount)) : colorsUsed;
    paletteEntries = std::min<quint32>(paletteEntries, 256);
    qint64 paletteBytes = qint64(paletteEntries) * (headerSize == 12 ? 3 : 4);
    if (headerSize == 40 && (compression == 3 || compression == 6)) {
        paletteBytes += compression == 3 ? 12 : 16; // the colour masks
    }
    // A file header in front makes it a BMP file Qt reads.
    QByteArray file("BM");
    const quint32 fileSize = quint32(14 + data.size());
    const quint32 offset = quint32(std::min<qint64>(14 + headerSize + paletteBytes, fileSize));
    char numbers[12];
    qToLittleEndian<quint32>(fileSize, numbers);
    qToLittleEndian<quint32>(0, numbers + 4);
    qToLittleEndian<quint32>(offset, numbers + 8);
    file.append(numbers, 12);
    file.append(data);
    QBuffer buffer(&file);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "bmp");
    QImage image;
    if (!reader.read(&image)) {
        return {};
    }
    return image;
}

QImage decodeDeviceDependentBitmap(const QByteArray& data, int width, int height, int widthBytes, int bitsPerPixel)
{
    if (width <= 0 || height <= 0 || width > maxImageSide || height > maxImageSide) {
        return {};
    }
    const int minimum = (width * bitsPerPixel + 7) / 8;
    if (widthBytes < minimum) {
        widthBytes = ((minimum + 1) / 2) * 2; // rows are padded to whole words
    }
    if (qint64(widthBytes) * height > data.size()) {
        return {};
    }
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        const auto* row = reinterpret_cast<const uchar*>(data.constData()) + qsizetype(y) * widthBytes;
        auto* out = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            switch (bitsPerPixel) {
            case 1:
                out[x] = (row[x / 8] >> (7 - x % 8)) & 1 ? qRgb(255, 255, 255) : qRgb(0, 0, 0);
                break;
            case 24:
                out[x] = qRgb(row[x * 3 + 2], row[x * 3 + 1], row[x * 3]);
                break;
            case 32:
                out[x] = qRgb(row[x * 4 + 2], row[x * 4 + 1], row[x * 4]);
                break;
            default: { // 4 or 8 bits of grey levels: there is no palette to say otherwise
                const int bits = std::clamp(bitsPerPixel, 1, 8);
                const int perByte = 8 / bits;
                const int shift = (perByte - 1 - x % perByte) * bits;
                const int value = (row[x / perByte] >> shift) & ((1 << bits) - 1);
                const int grey = value * 255 / ((1 << bits) - 1);
                out[x] = qRgb(grey, grey, grey);
                break;
            }
            }
        }
    }
    return image;
}

} // namespace pvardo::documents
