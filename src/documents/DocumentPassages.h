#pragma once

#include <QTextDocument>

#include <memory>
#include <vector>

namespace pvardo::documents {

// A piece of a document laid out on its own. Qt lays a document out whole,
// and its cost and its coordinates grow with the length of the text; a long
// document is printed as a run of passages of bounded size instead, so that
// printing takes time in proportion to the text whatever its shape.
struct DocumentPassage {
    std::unique_ptr<QTextDocument> document;
    int section = -1; // the section (sectionProperty) the passage begins, or -1
};

// Cuts `document` into passages of about `characters` characters: between
// paragraphs, never inside a table, always where a section begins, and a
// paragraph longer than that between two words. Formats and pictures come
// along; a paragraph cut in two keeps its space before and first-line indent
// on its first piece and its space after on its last.
std::vector<DocumentPassage> cutIntoPassages(const QTextDocument& document, int characters);

} // namespace pvardo::documents
