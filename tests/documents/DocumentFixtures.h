#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTextBlock>
#include <QTextDocument>

#include <ostream>

// Helpers shared by the rich-text tests: the word-processor fixtures of
// tests/data/rtf and the text a document shows.
namespace pvardo::test {

inline QString rtfFixturePath(const QString& name)
{
    return QStringLiteral(PVARDO_TEST_DATA_DIR "/rtf/") + name;
}

inline QByteArray readFixtureBytes(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return file.readAll();
}

// The text of a document as it is shown: one paragraph (or table cell) a
// line, a soft line break as a line end, pictures and frame marks left out.
inline QString displayedText(const QTextDocument& document)
{
    QStringList lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QString text = block.text();
        text.replace(QChar::LineSeparator, QLatin1Char('\n'));
        text.remove(QChar(0xFDD0));
        text.remove(QChar(0xFDD1));
        text.remove(QChar::ObjectReplacementCharacter);
        lines.append(text);
    }
    return lines.join(QLatin1Char('\n'));
}

// Lines compared the way the reference texts are meant: blank lines and
// blanks or tabs at either end of a line aside, and a run of blanks and tabs
// inside a line counted as one blank (a list label's tab is a blank in the
// word processor's own text).
inline QStringList comparableLines(const QString& text)
{
    QStringList result;
    QString content = text;
    if (content.startsWith(QChar(0xFEFF))) {
        content.remove(0, 1);
    }
    const QStringList lines = content.split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        QString collapsed;
        bool inBlank = false;
        for (const QChar c : line) {
            if (c == QLatin1Char(' ') || c == QLatin1Char('\t')) {
                inBlank = true;
                continue;
            }
            if (inBlank && !collapsed.isEmpty()) {
                collapsed.append(QLatin1Char(' '));
            }
            inBlank = false;
            collapsed.append(c);
        }
        if (!collapsed.isEmpty()) {
            result.append(collapsed);
        }
    }
    return result;
}

inline QStringList fixtureNames()
{
    return {QStringLiteral("heading"), QStringLiteral("label"),     QStringLiteral("letter"),
            QStringLiteral("logo"),    QStringLiteral("minimal-wordpad"), QStringLiteral("multipage"),
            QStringLiteral("table"),   QStringLiteral("unicode")};
}

} // namespace pvardo::test

// Readable QStrings in test failures.
QT_BEGIN_NAMESPACE
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}
QT_END_NAMESPACE
