#pragma once

#include <QRectF>
#include <QTextFormat>

#include <memory>
#include <vector>

class QPaintDevice;
class QPainter;
class QTextDocument;

namespace pvardo::documents {

// A rich-text buffer laid out once for one device and one column width, and
// then drawn a piece at a time: given a first character and a rectangle,
// formatRange draws the lines (and whole table rows) that fit and gives back
// the first character it did not draw. This is the page loop's single tool;
// the document given is copied, so an editor showing it is not disturbed.
class RichTextLayout
{
public:
    // A paragraph whose block format holds this property (true) stays on the
    // page of the paragraph after it, as headings do.
    static constexpr int keepWithNextProperty = QTextFormat::UserProperty + 1;
    // A table cell whose format holds this property (twips) stands in a row
    // at least that high.
    static constexpr int rowHeightProperty = QTextFormat::UserProperty + 3;

    // `width` is in the device's pixels.
    RichTextLayout(const QTextDocument& document, QPaintDevice* device, qreal width);
    // The same for a document of its own, which it changes and keeps.
    RichTextLayout(std::unique_ptr<QTextDocument> document, QPaintDevice* device, qreal width);
    ~RichTextLayout();
    RichTextLayout(const RichTextLayout&) = delete;
    RichTextLayout& operator=(const RichTextLayout&) = delete;

    // The position just behind the last character: formatRange returns it
    // when everything has been drawn.
    int textLength() const { return m_textLength; }

    // Draws from `firstChar` into `target` (device pixels) with `painter`, or
    // only measures when the painter is null. At least one line is taken even
    // when it does not fit, so that a loop over pages always ends. A forced
    // page break ends the range. When nothing but empty paragraphs would be
    // left, the text counts as finished, so the last page is never blank.
    int formatRange(QPainter* painter, int firstChar, const QRectF& target) const;
    // The same for a page that already holds text above `target`: then
    // nothing is taken when the first line does not fit (the first character
    // comes back). `used` receives the height drawn, in device pixels.
    int formatRange(QPainter* painter, int firstChar, const QRectF& target, bool pageHoldsText, qreal* used) const;

    // When more text follows this layout on the same pages, its trailing
    // empty paragraphs are printed like any others.
    void setTextFollows(bool follows) { m_textFollows = follows; }
    // The text begins with a forced page break.
    bool breaksBefore() const { return !m_units.empty() && m_units.front().breakBefore; }
    // The space above the first line (the first paragraph's space before)
    // and below the last one, in device pixels.
    qreal leadingSpace() const { return m_units.empty() ? 0 : m_units.front().top; }
    qreal trailingSpace() const { return m_trailing; }
    // From the top of the text to the bottom of its last line, in device pixels.
    qreal height() const { return m_units.empty() ? 0 : m_units.back().bottom; }

    QTextDocument& document() { return *m_document; }

private:
    struct Unit {
        qreal top = 0;
        qreal bottom = 0;
        int position = 0;
        bool breakBefore = false;
        bool empty = false;
        bool keepWithNext = false; // the last line of a paragraph kept with the next one
        size_t blockStart = 0;     // the unit of the paragraph's first line
    };
    void collectUnits();

    std::unique_ptr<QTextDocument> m_document;
    std::vector<Unit> m_units;
    std::vector<bool> m_onlyEmptyFrom; // from unit i on, all units are empty
    int m_textLength = 0;
    qreal m_width = 0;
    qreal m_trailing = 0;
    bool m_textFollows = false;
};

} // namespace pvardo::documents
