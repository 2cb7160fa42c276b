#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace pvardo::documents {

// Pictures of the kinds Windows word processors put into RTF besides PNG and
// JPEG: Windows metafiles (WMF, what Word and WordPad write for logos and
// embedded objects), enhanced metafiles (EMF) and device-independent bitmaps.
//
// The metafile players draw the records letters use (lines, shapes,
// polygons, paths, text and the bitmaps inside) onto an image of `pixels`;
// records they do not know are passed over. A damaged metafile draws what
// came before the damage. An empty image means nothing could be drawn.

// A Windows metafile, with or without the "placeable" header.
QImage renderWindowsMetafile(const QByteArray& data, QSize pixels);

// An enhanced metafile.
QImage renderEnhancedMetafile(const QByteArray& data, QSize pixels);

// The size a metafile asks for in 1/1440 inch (twips), or an invalid size
// when it does not say.
QSize windowsMetafileTwips(const QByteArray& data);
QSize enhancedMetafileTwips(const QByteArray& data);

// A packed device-independent bitmap (BITMAPINFOHEADER, colour table, bits),
// as \dibitmap and the bitmap records of metafiles hold it.
QImage decodeDeviceIndependentBitmap(const QByteArray& data);

// A device-dependent bitmap of \wbitmap: rows of `widthBytes` bytes with
// `bitsPerPixel` bits a pixel (1 is black and white, 24 and 32 are colour).
QImage decodeDeviceDependentBitmap(const QByteArray& data, int width, int height, int widthBytes, int bitsPerPixel);

} // namespace pvardo::documents
