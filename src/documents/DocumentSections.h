#pragma once

#include <QByteArray>
#include <QList>
#include <QTextFormat>

class QTextDocument;

namespace pvardo::documents {

// A section of a document as the file describes it: where it begins, the
// paper it is printed on, and what prints above and below its text. Sizes are
// in twips; 0 or -1 stand for the document's own paper (DocumentPaper).
struct DocumentSection {
    bool newPage = true; // the section begins on a new page; a continuous one runs on
    int widthTwips = 0;
    int heightTwips = 0;
    bool landscape = false;
    int leftTwips = -1;
    int topTwips = -1;
    int rightTwips = -1;
    int bottomTwips = -1;
    int headerY = 720; // the header's top, from the paper's top edge
    int footerY = 720; // the footer's bottom, from the paper's bottom edge
    bool titlePage = false; // the first page has headers and footers of its own
    // Headers and footers, each a small RTF document of its own; empty where
    // the section has none.
    QByteArray header;
    QByteArray headerFirst;
    QByteArray headerLeft;
    QByteArray headerRight;
    QByteArray footer;
    QByteArray footerFirst;
    QByteArray footerLeft;
    QByteArray footerRight;

    // The header or footer of page `pageInSection` (from 1) with the page
    // number `page`: the title page's own, else left on even and right on odd
    // pages when the document faces its pages, else the plain one.
    QByteArray headerFor(int pageInSection, int page, bool facingPages) const;
    QByteArray footerFor(int pageInSection, int page, bool facingPages) const;
};

// The block format property of the paragraph (or first table cell) that
// begins a section: its index in documentSections().
constexpr int sectionProperty = QTextFormat::UserProperty + 2;

// The character format property of a footnote's mark in the text: the
// number of its note in documentNotes(), from 1.
constexpr int noteReferenceProperty = QTextFormat::UserProperty + 4;

// Sections, notes and the facing-pages flag live on the document object, as
// the paper does; a document without them has one section of its paper.
QList<DocumentSection> documentSections(const QTextDocument& document);
void setDocumentSections(QTextDocument& document, const QList<DocumentSection>& sections);
bool documentFacingPages(const QTextDocument& document);
void setDocumentFacingPages(QTextDocument& document, bool facing);

// The footnotes of a document in their order, each an RTF document that
// begins with its number.
QList<QByteArray> documentNotes(const QTextDocument& document);
void setDocumentNotes(QTextDocument& document, const QList<QByteArray>& notes);

// Replaces the page-number fields of a header or footer with "##", which the
// print-time pass fills with the page counter.
QByteArray pageFieldsAsCounter(const QByteArray& rtf);

// Replaces each control word \`word` (not a longer word that begins the
// same) with `text`.
QByteArray replaceControlWord(const QByteArray& rtf, const QByteArray& word, const QByteArray& text);

} // namespace pvardo::documents
