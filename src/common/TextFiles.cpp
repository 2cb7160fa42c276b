#include "common/TextFiles.h"

#include "common/ReplacingFile.h"

#include <QFile>
#include <QStringDecoder>

namespace pvardo {

namespace {

// Windows-1252 differs from Latin-1 in 0x80..0x9F; the holes map to themselves.
constexpr char16_t cp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

QString decodeWindows1252(const QByteArray& bytes)
{
    QString text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80 && byte < 0xA0) {
            text.append(QChar(cp1252High[byte - 0x80]));
        } else {
            text.append(QChar(char16_t(byte)));
        }
    }
    return text;
}

} // namespace

QString decodeText(const QByteArray& bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(bytes);
    if (utf8.hasError()) {
        return decodeWindows1252(bytes);
    }
    if (text.startsWith(QChar(0xFEFF))) {
        text.remove(0, 1);
    }
    return text;
}

QStringList textLines(const QString& text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty()) {
        lines.removeLast();
    }
    for (QString& line : lines) {
        if (line.endsWith(QLatin1Char('\r'))) {
            line.chop(1);
        }
    }
    return lines;
}

std::optional<QStringList> readTextLines(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QString text = decodeText(file.readAll());
    if (file.error() != QFileDevice::NoError) {
        return std::nullopt;
    }
    return textLines(text);
}

bool replaceFile(const QString& path, const QByteArray& bytes, QString* error)
{
    ReplacingFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        if (error) {
            *error = file.errorText();
        }
        return false;
    }
    return true;
}

bool replaceTextLines(const QString& path, const QStringList& lines, QString* error)
{
    QByteArray bytes;
    for (const QString& line : lines) {
        bytes += line.toUtf8();
        bytes += '\n';
    }
    return replaceFile(path, bytes, error);
}

bool appendTextLine(const QString& path, const QString& line, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append)) {
        if (error) {
            *error = file.errorString();
        }
        return false;
    }
    const QByteArray bytes = line.toUtf8() + '\n';
    if (file.write(bytes) != bytes.size() || !file.flush()) {
        if (error) {
            *error = file.errorString();
        }
        return false;
    }
    return true;
}

QString joinPath(const QString& folder, const QString& officePath)
{
    QString tail = officePath;
    tail.replace(QLatin1Char('\\'), QLatin1Char('/'));
    while (tail.startsWith(QLatin1Char('/'))) {
        tail.remove(0, 1);
    }
    QString head = folder;
    while (head.size() > 1 && head.endsWith(QLatin1Char('/'))) {
        head.chop(1);
    }
    if (tail.isEmpty()) {
        return head;
    }
    if (head.isEmpty()) {
        return tail;
    }
    return head + QLatin1Char('/') + tail;
}

} // namespace pvardo
