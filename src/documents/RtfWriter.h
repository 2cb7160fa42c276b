#pragma once

#include <QByteArray>

class QTextDocument;

namespace pvardo::documents {

// Writes a QTextDocument as RTF that this program's reader and the office's
// word processors read back the same: font and colour tables, character and
// paragraph formats, tabs and tab stops, line and page breaks, tables with
// their widths, borders, shading and merged cells, and pictures as PNG. Text
// outside ASCII is written as \uN with a Windows-1252 fallback byte. The paper
// the document was read with is written back.
QByteArray writeRtf(const QTextDocument& document);

} // namespace pvardo::documents
