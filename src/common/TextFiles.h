#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace pvardo {

// The office's settings and list files are plain text written by hand in any
// editor: read as UTF-8, or as Windows-1252 when the bytes are not valid UTF-8,
// with CRLF or LF endings. The program writes UTF-8 with LF.

// Decodes bytes as UTF-8, falling back to Windows-1252.
QString decodeText(const QByteArray& bytes);

// The lines of a text: split at line feeds, a carriage return before one
// dropped, no empty line for a final line feed.
QStringList textLines(const QString& text);

// The lines of a text file without their line ends; nullopt when the file
// cannot be read. A last line without a line end counts; an empty file has no
// lines.
std::optional<QStringList> readTextLines(const QString& path);

// Replaces a file whole: the bytes go to a temporary file beside it, which is
// then renamed over the old one, so the file is either the old or the new one,
// never a part. Gives false, with a reason, when that failed; the old file is
// then untouched.
bool replaceFile(const QString& path, const QByteArray& bytes, QString* error = nullptr);

// replaceFile of lines, each ended by LF, in UTF-8.
bool replaceTextLines(const QString& path, const QStringList& lines, QString* error = nullptr);

// Appends one line, ended by LF, in UTF-8.
bool appendTextLine(const QString& path, const QString& line, QString* error = nullptr);

// Joins a folder and a path of the office's form, which begins with "\" and
// may use "\" between its parts: joinPath("/srv/app", "\\wrk\\sbl.db").
QString joinPath(const QString& folder, const QString& officePath);

} // namespace pvardo
