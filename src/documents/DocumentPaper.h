#pragma once

class QTextDocument;

namespace pvardo::documents {

// The paper a document was written for, in twips, as an RTF file states it
// (\paperw, \paperh, \margl ...). A QTextDocument has no place for it, so the
// reader keeps it on the document object and the writer writes it back; the
// printer uses the margins when it is given none. The defaults are RTF's own:
// US Letter with 1.25-inch side and 1-inch top and bottom margins.
struct DocumentPaper {
    int widthTwips = 12240;
    int heightTwips = 15840;
    int leftTwips = 1800;
    int topTwips = 1440;
    int rightTwips = 1800;
    int bottomTwips = 1440;
    bool stated = false; // the file named its paper or margins
};

DocumentPaper documentPaper(const QTextDocument& document);
void setDocumentPaper(QTextDocument& document, const DocumentPaper& paper);

} // namespace pvardo::documents
