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
