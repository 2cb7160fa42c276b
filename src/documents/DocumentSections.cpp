#include "documents/DocumentSections.h"

#include <QTextDocument>
#include <QVariant>

namespace pvardo::documents {

namespace {

constexpr const char* sectionsProperty = "pvardoSections";
constexpr const char* notesProperty = "pvardoNotes";
constexpr const char* facingProperty = "pvardoFacingPages";

QByteArray pick(int pageInSection, int page, bool facingPages, bool titlePage, const QByteArray& first,
                const QByteArray& left, const QByteArray& right, const QByteArray& plain)
{
    if (titlePage && pageInSection == 1) {
        return first;
    }
    if (facingPages) {
        const QByteArray& side = page % 2 == 0 ? left : right;
        if (!side.isEmpty()) {
            return side;
        }
    }
    if (!plain.isEmpty()) {
        return plain;
    }
    // Some writers give only the right-hand (odd) pages' one without facing pages.
    return right.isEmpty() ? left : right;
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// The index of the brace that closes the group opened at `open`, or -1.
qsizetype closingBrace(const QByteArray& rtf, qsizetype open)
{
    int depth = 0;
    for (qsizetype i = open; i < rtf.size(); ++i) {
        const char c = rtf.at(i);
        if (c == '\\') {
            ++i; // an escaped brace or backslash is text
        } else if (c == '{') {
            ++depth;
        } else if (c == '}' && --depth == 0) {
            return i;
        }
    }
    return -1;
}

// The text of an RTF piece without its control words and braces.
QByteArray plainText(const QByteArray& rtf)
{
    QByteArray text;
    for (qsizetype i = 0; i < rtf.size(); ++i) {
        const char c = rtf.at(i);
        if (c == '\\') {
            ++i;
            if (i < rtf.size() && isLetter(rtf.at(i))) {
                while (i < rtf.size() && (isLetter(rtf.at(i)) || rtf.at(i) == '-' || (rtf.at(i) >= '0' && rtf.at(i) <= '9'))) {
                    ++i;
                }
                if (i < rtf.size() && rtf.at(i) != ' ') {
                    --i; // the delimiter is not part of the word
                }
            }
        } else if (c != '{' && c != '}' && c != '\r' && c != '\n') {
            text += c;
        }
    }
    return text.simplified();
}

} // namespace

QByteArray DocumentSection::headerFor(int pageInSection, int page, bool facingPages) const
{
    return pick(pageInSection, page, facingPages, titlePage, headerFirst, headerLeft, headerRight, header);
}

QByteArray DocumentSection::footerFor(int pageInSection, int page, bool facingPages) const
{
    return pick(pageInSection, page, facingPages, titlePage, footerFirst, footerLeft, footerRight, footer);
}

QList<DocumentSection> documentSections(const QTextDocument& document)
{
    return document.property(sectionsProperty).value<QList<DocumentSection>>();
}

void setDocumentSections(QTextDocument& document, const QList<DocumentSection>& sections)
{
    document.setProperty(sectionsProperty, sections.isEmpty() ? QVariant() : QVariant::fromValue(sections));
}

bool documentFacingPages(const QTextDocument& document)
{
    return document.property(facingProperty).toBool();
}

void setDocumentFacingPages(QTextDocument& document, bool facing)
{
    document.setProperty(facingProperty, facing ? QVariant(true) : QVariant());
}

QList<QByteArray> documentNotes(const QTextDocument& document)
{
    return document.property(notesProperty).value<QList<QByteArray>>();
}

void setDocumentNotes(QTextDocument& document, const QList<QByteArray>& notes)
{
    document.setProperty(notesProperty, notes.isEmpty() ? QVariant() : QVariant::fromValue(notes));
}

QByteArray pageFieldsAsCounter(const QByteArray& rtf)
{
    QByteArray out;
    qsizetype from = 0;
    for (;;) {
        qsizetype at = rtf.indexOf("{\\field", from);
        while (at >= 0 && at + 7 < rtf.size() && isLetter(rtf.at(at + 7))) {
            at = rtf.indexOf("{\\field", at + 1);
        }
        if (at < 0) {
            break;
        }
        const qsizetype end = closingBrace(rtf, at);
        if (end < 0) {
            break;
        }
        const qsizetype instruction = rtf.indexOf("\\fldinst", at);
        qsizetype result = rtf.indexOf("\\fldrslt", at);
        if (result < 0 || result > end) {
            result = end;
        }
        bool page = false;
        if (instruction >= 0 && instruction < result) {
            const QByteArray words = plainText(rtf.mid(instruction, result - instruction)).toUpper();
            page = words == "PAGE" || words.startsWith("PAGE ");
        }
        out += rtf.mid(from, at - from);
        if (page) {
            out += "##";
            from = end + 1;
        } else {
            out += '{';
            from = at + 1; // a page field may be nested in this one
        }
    }
    out += rtf.mid(from);
    return out;
}

QByteArray replaceControlWord(const QByteArray& rtf, const QByteArray& word, const QByteArray& text)
{
    const QByteArray needle = '\\' + word;
    QByteArray out;
    qsizetype from = 0;
    for (qsizetype at = rtf.indexOf(needle); at >= 0; at = rtf.indexOf(needle, at + 1)) {
        qsizetype end = at + needle.size();
        if (end < rtf.size() && isLetter(rtf.at(end))) {
            continue;
        }
        if (at > 0 && rtf.at(at - 1) == '\\') {
            continue; // an escaped backslash followed by letters
        }
        if (end < rtf.size() && rtf.at(end) == ' ') {
            ++end;
        }
        out += rtf.mid(from, at - from);
        out += text;
        from = end;
    }
    out += rtf.mid(from);
    return out;
}

} // namespace pvardo::documents
