#pragma once

#include "documents/PrintRichText.h"

#include <QImage>
#include <QPageSize>
#include <QPdfWriter>
#include <QString>
#include <QStringList>

#include <memory>
#include <poppler-qt6.h>

// Printing to a real PDF file and reading it back with Poppler.
namespace pvardo::test {

inline documents::PrintOutcome printToPdf(QTextDocument& document, const QString& path,
                                          const documents::PrintSettings& settings = {})
{
    QPdfWriter writer(path);
    writer.setPageSize(QPageSize(QPageSize::Letter));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setResolution(1200);
    return documents::PrintRichText(document, writer, settings);
}

// The text of each page of a PDF file; empty when the file cannot be read.
inline QStringList pdfPageTexts(const QString& path)
{
    QStringList pages;
    std::unique_ptr<Poppler::Document> pdf = Poppler::Document::load(path);
    if (!pdf || pdf->isLocked()) {
        return pages;
    }
    for (int i = 0; i < pdf->numPages(); ++i) {
        std::unique_ptr<Poppler::Page> page = pdf->page(i);
        pages.append(page ? page->text(QRectF()) : QString());
    }
    return pages;
}

inline int pdfPageCount(const QString& path)
{
    std::unique_ptr<Poppler::Document> pdf = Poppler::Document::load(path);
    return pdf ? pdf->numPages() : -1;
}

inline QImage renderPdfPage(const QString& path, int index, double dpi = 40)
{
    std::unique_ptr<Poppler::Document> pdf = Poppler::Document::load(path);
    if (!pdf || index >= pdf->numPages()) {
        return {};
    }
    std::unique_ptr<Poppler::Page> page = pdf->page(index);
    return page ? page->renderToImage(dpi, dpi) : QImage();
}

} // namespace pvardo::test

namespace pvardo::test {

// Where a word stands on the first page, in points from the paper's corner.
inline QRectF pdfWordBox(const QString& path, const QString& word)
{
    std::unique_ptr<Poppler::Document> pdf = Poppler::Document::load(path);
    if (!pdf || pdf->numPages() < 1) {
        return {};
    }
    std::unique_ptr<Poppler::Page> page = pdf->page(0);
    for (const std::unique_ptr<Poppler::TextBox>& box : page->textList()) {
        if (box->text() == word) {
            return box->boundingBox();
        }
    }
    return {};
}

} // namespace pvardo::test

namespace pvardo::test {

// The words of a page of a PDF file with where they stand, in points from the
// paper's corner, and the paper's size.
struct PdfWord {
    QString text;
    QRectF box;
};
inline QList<PdfWord> pdfWords(const QString& path, int index, QSizeF* paper = nullptr)
{
    QList<PdfWord> words;
    std::unique_ptr<Poppler::Document> pdf = Poppler::Document::load(path);
    if (!pdf || index >= pdf->numPages()) {
        return words;
    }
    std::unique_ptr<Poppler::Page> page = pdf->page(index);
    if (paper) {
        *paper = page->pageSizeF();
    }
    for (const std::unique_ptr<Poppler::TextBox>& box : page->textList()) {
        words.append({box->text(), box->boundingBox()});
    }
    return words;
}

// The words that stand on the line of the first word `word`, left to right.
inline QStringList pdfLineOf(const QList<PdfWord>& words, const QString& word)
{
    QStringList line;
    for (const PdfWord& anchor : words) {
        if (anchor.text != word) {
            continue;
        }
        for (const PdfWord& other : words) {
            if (qAbs(other.box.bottom() - anchor.box.bottom()) < 1) {
                line << other.text;
            }
        }
        break;
    }
    return line;
}

} // namespace pvardo::test
