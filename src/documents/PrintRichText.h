#pragma once

#include <QString>

#include <functional>

class QPagedPaintDevice;
class QTextDocument;

namespace pvardo::documents {

// The shared print state that PrintRichText reads, with the office's defaults.
struct PrintSettings {
    // Margins in inches.
    double leftMargin = 0.8;
    double topMargin = 0.8;
    double rightMargin = 0.8;
    double bottomMargin = 0.8;
    // The first line's place on the first page in twips from the printable
    // area's top; below 1 the first page starts at the top margin like the rest.
    int startY = -1;
    // Reserves the footer band at the foot of each page and prints it.
    bool footer = false;
    // RTF for the footer band; empty prints an empty band.
    QString footerRtf;
    // The page counter, counted up after each page. When null a counter of
    // the call's own, starting at 1, is used.
    int* pageCounter = nullptr;
    // Print on the paper each section of the document states (size and
    // orientation: a landscape table prints on a landscape page). Off, the
    // device's paper is kept.
    bool documentPaper = false;
    // Take the margins the document and its sections state in place of the
    // four above, where it states them.
    bool documentMargins = false;
    // The print-time pass over placeholders: run once on the body before it is
    // laid out, and on the footer before each page. When empty, only "##"
    // (the page counter) is filled.
    std::function<void(QTextDocument&)> expandPrintTokens;
    // Copies in one job, each from a new page and with its own page numbers.
    int copies = 1;
};

struct PrintOutcome {
    bool ok = false;
    int pages = 0;
    QString error; // "Error " and what went wrong, for the " Printer error" message
};

// Prints `buffer` on `device` page by page: each page takes the lines that fit
// between the margins (less 300 twips for the footer band when it is on),
// then the document's own header and footer, then the footer band, from 100
// twips above the bottom edge to 160 below it, with the page counter; a new
// page follows only while text remains, so text that ends exactly at the foot
// of a page leaves no blank page. A section that begins on a new page does
// so; the document's footnotes follow its text, numbered. A listing (see
// Listing.h) is turned and set smaller so that no row breaks. The buffer
// itself is changed only by the print-time placeholder pass.
PrintOutcome PrintRichText(QTextDocument& buffer, QPagedPaintDevice& device, const PrintSettings& settings);

// What is printed on a device, whichever device the output goes to: a
// document through PrintRichText, or a sheet of labels.
using PageJob = std::function<PrintOutcome(QPagedPaintDevice& device)>;

} // namespace pvardo::documents
