#include "documents/PrintRichText.h"

#include "documents/DocumentPaper.h"
#include "documents/DocumentPassages.h"
#include "documents/DocumentSections.h"
#include "documents/Listing.h"
#include "documents/PageGeometry.h"
#include "documents/Placeholders.h"
#include "documents/RichTextLayout.h"
#include "documents/RtfReader.h"

#include <QFontMetricsF>
#include <QHash>
#include <QPageLayout>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>

#include <algorithm>
#include <cmath>
#include <memory>

namespace pvardo::documents {

namespace {

constexpr int footerReserve = 300; // twips kept free above the bottom edge for the footer band
constexpr int footerAbove = 100;   // the band begins this far above the bottom edge
constexpr int footerBelow = 160;   // and ends this far below it
// Characters laid out at a time: a letter or a listing of a few dozen pages
// is one passage; a longer text is printed passage by passage.
constexpr int passageCharacters = 60000;

int inchesToTwips(double inches)
{
    if (!std::isfinite(inches)) {
        return 0;
    }
    return int(std::lround(std::clamp(inches, 0.0, 22.0) * 1440.0));
}

QRectF deviceRect(const PageGeometry& geometry, qreal left, qreal top, qreal right, qreal bottom)
{
    return QRectF(QPointF(geometry.toDeviceX(left), geometry.toDeviceY(top)),
                  QPointF(geometry.toDeviceX(right), geometry.toDeviceY(bottom)));
}

// The notes one below the other under a short rule.
std::unique_ptr<QTextDocument> notesDocument(const QList<QByteArray>& notes, const QTextDocument& body)
{
    auto document = std::make_unique<QTextDocument>();
    document->setUndoRedoEnabled(false);
    document->setDefaultFont(body.defaultFont());
    QTextCursor cursor(document.get());
    QTextBlockFormat rule;
    rule.setTopMargin(12);
    rule.setProperty(QTextFormat::BlockTrailingHorizontalRulerWidth, QTextLength(QTextLength::PercentageLength, 30));
    cursor.setBlockFormat(rule);
    for (const QByteArray& note : notes) {
        QTextDocument text;
        readRtf(note, text);
        cursor.insertBlock(QTextBlockFormat());
        cursor.insertFragment(QTextDocumentFragment(&text));
    }
    return document;
}

// A listing's rows are never broken: the paper is turned and the type made
// smaller until its widest line fits between the margins (the rule is
// fitListing's). Gives the size to print it at, or 0 for any other document,
// which prints as it stands.
double fitListingToDevice(const QTextDocument& buffer, QPagedPaintDevice& device, const PrintSettings& settings)
{
    if (!isListing(buffer)) {
        return 0;
    }
    QTextCursor first(const_cast<QTextDocument*>(&buffer));
    first.movePosition(QTextCursor::NextCharacter);
    QFont font = first.charFormat().font();
    const double size = font.pointSizeF() > 0 ? font.pointSizeF() : buffer.defaultFont().pointSizeF();
    font.setPointSizeF(10);
    const QFontMetricsF metrics(font, &device);
    const double characterWidth = metrics.horizontalAdvance(QLatin1Char('M')) / 10 * 72 / device.logicalDpiX();
    const QSizeF paper = device.pageLayout().fullRectPoints().size();
    const double margins = (std::clamp(settings.leftMargin, 0.0, 22.0) + std::clamp(settings.rightMargin, 0.0, 22.0)) * 72;
    const ListingPaper fit = fitListing(widestLine(buffer), size, characterWidth,
                                        std::min(paper.width(), paper.height()) - margins,
                                        std::max(paper.width(), paper.height()) - margins);
    QPageLayout layout = device.pageLayout();
    layout.setOrientation(fit.landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    device.setPageLayout(layout);
    return fit.fontSize;
}

void setListingSize(QTextDocument& passage, double size)
{
    QFont font = passage.defaultFont();
    font.setPointSizeF(size);
    passage.setDefaultFont(font);
    QTextCursor all(&passage);
    all.select(QTextCursor::Document);
    QTextCharFormat format;
    format.setFontPointSize(size);
    all.mergeCharFormat(format);
}

// A passage holds text other than empty paragraphs.
bool holdsText(const QTextDocument& document)
{
    return document.characterCount() > document.blockCount();
}

} // namespace

PrintOutcome PrintRichText(QTextDocument& buffer, QPagedPaintDevice& device, const PrintSettings& settings)
{
    PrintOutcome outcome;
    int ownCounter = 1;
    int& counter = settings.pageCounter ? *settings.pageCounter : ownCounter;
    if (counter < 1) {
        counter = 1;
    }
    auto expand = [&](QTextDocument& document) {
        if (settings.expandPrintTokens) {
            settings.expandPrintTokens(document);
        } else {
            ReplaceLiteral(document, QStringLiteral("##"), QString::number(counter));
        }
    };

    // 1. The print-time placeholders of the body.
    expand(buffer);

    // 2. The text in passages, the notes behind it.
    const DocumentPaper paper = documentPaper(buffer);
    const QList<DocumentSection> sections = documentSections(buffer);
    const bool facingPages = documentFacingPages(buffer);
    const double listingSize = fitListingToDevice(buffer, device, settings);
    // Each copy lays out passages of its own: a layout takes its passage.
    auto makePassages = [&] {
        std::vector<DocumentPassage> made = cutIntoPassages(buffer, passageCharacters);
        if (listingSize > 0) {
            for (DocumentPassage& passage : made) {
                setListingSize(*passage.document, listingSize);
            }
        }
        if (const QList<QByteArray> notes = documentNotes(buffer); !notes.isEmpty()) {
            const std::unique_ptr<QTextDocument> notesText = notesDocument(notes, buffer);
            for (DocumentPassage& passage : cutIntoPassages(*notesText, passageCharacters)) {
                passage.section = -1;
                made.push_back(std::move(passage));
            }
        }
        return made;
    };
    std::vector<DocumentPassage> passages = makePassages();
    std::vector<bool> textFollows(passages.size(), false);
    for (size_t i = passages.size(); i-- > 1;) {
        textFollows[i - 1] = textFollows[i] || holdsText(*passages[i].document);
    }

    // 3. The page of a section.
    auto sectionAt = [&](int index) {
        return index >= 0 && index < sections.size() ? sections.at(index) : DocumentSection();
    };
    auto usePaperOf = [&](const DocumentSection& section) {
        if (!settings.documentPaper || (!paper.stated && section.widthTwips <= 0 && !section.landscape)) {
            return;
        }
        int width = section.widthTwips > 0 ? section.widthTwips : paper.widthTwips;
        int height = section.heightTwips > 0 ? section.heightTwips : paper.heightTwips;
        if (section.landscape && width < height) {
            std::swap(width, height);
        }
        QPageLayout layout = device.pageLayout();
        layout.setOrientation(QPageLayout::Portrait);
        layout.setPageSize(QPageSize(QSizeF(std::min(width, height) / 20.0, std::max(width, height) / 20.0),
                                     QPageSize::Point, QString(), QPageSize::ExactMatch),
                           layout.margins());
        layout.setOrientation(width > height ? QPageLayout::Landscape : QPageLayout::Portrait);
        device.setPageLayout(layout);
    };
    auto geometryOf = [&](const DocumentSection& section) {
        int left = inchesToTwips(settings.leftMargin);
        int top = inchesToTwips(settings.topMargin);
        int right = inchesToTwips(settings.rightMargin);
        int bottom = inchesToTwips(settings.bottomMargin);
        if (settings.documentMargins) {
            auto stated = [&](int own, int document, int fallback) {
                return own >= 0 ? own : paper.stated ? document : fallback;
            };
            left = stated(section.leftTwips, paper.leftTwips, left);
            top = stated(section.topTwips, paper.topTwips, top);
            right = stated(section.rightTwips, paper.rightTwips, right);
            bottom = stated(section.bottomTwips, paper.bottomTwips, bottom);
        }
        return SetupPage(device, left, top, right, bottom);
    };

    DocumentSection section = passages.empty() ? DocumentSection() : sectionAt(passages.front().section);
    usePaperOf(section);
    PageGeometry geometry = geometryOf(section);
    QPainter painter;
    if (!painter.begin(&device)) {
        outcome.error = QStringLiteral("Error The printer could not be opened.");
        return outcome;
    }
    painter.setRenderHint(QPainter::Antialiasing);

    QTextDocument footerSource;
    if (!settings.footerRtf.isEmpty()) {
        readRtf(settings.footerRtf.toUtf8(), footerSource);
    }
    QHash<QByteArray, std::shared_ptr<QTextDocument>> bands;
    // A header (at its distance from the paper's top) or a document footer
    // (its last line at its distance from the paper's bottom).
    auto printBand = [&](const QByteArray& rtf, bool header) {
        if (rtf.isEmpty()) {
            return;
        }
        std::shared_ptr<QTextDocument>& source = bands[rtf];
        if (!source) {
            source = std::make_shared<QTextDocument>();
            readRtf(rtf, *source);
        }
        std::unique_ptr<QTextDocument> band(source->clone());
        expand(*band);
        const RichTextLayout layout(*band, &device, geometry.toDeviceX(geometry.rightEdge - geometry.leftEdge));
        const qreal paperHeight = device.pageLayout().fullRectPoints().height() * 20;
        const qreal top = header ? geometry.toDeviceY(section.headerY - geometry.offsetY)
                                 : geometry.toDeviceY(paperHeight - section.footerY - geometry.offsetY)
                                       - layout.height();
        const QRectF target(geometry.toDeviceX(geometry.leftEdge), top,
                            geometry.toDeviceX(geometry.rightEdge - geometry.leftEdge),
                            std::max(layout.height() + 1, geometry.toDeviceY(720)));
        layout.formatRange(&painter, 0, target);
    };
    int pageInSection = 1;
    auto finishPage = [&] {
        printBand(section.headerFor(pageInSection, counter, facingPages), true);
        printBand(section.footerFor(pageInSection, counter, facingPages), false);
        if (counter < 1) {
            counter = 1;
        }
        if (settings.footer) {
            std::unique_ptr<QTextDocument> footer(footerSource.clone());
            expand(*footer);
            const qreal left = geometry.leftEdge;
            const qreal right = geometry.rightEdge;
            const RichTextLayout band(*footer, &device, geometry.toDeviceX(right - left));
            band.formatRange(&painter, 0,
                             deviceRect(geometry, left, geometry.bottomEdge - footerAbove, right,
                                        geometry.bottomEdge + footerBelow));
        }
        ++counter;
        ++outcome.pages;
    };

    // 4. The pages: each passage goes on where the one before it ended.
    qreal y = geometry.toDeviceY(settings.startY < 1 ? geometry.topEdge : settings.startY);
    bool pageHoldsText = false;
    qreal trailing = 0; // the space below the last paragraph printed
    auto newPage = [&](const DocumentSection* next) {
        finishPage();
        if (next) {
            section = *next;
            pageInSection = 0;
            usePaperOf(section);
        }
        if (!device.newPage()) {
            return false;
        }
        geometry = geometryOf(section);
        ++pageInSection;
        y = geometry.toDeviceY(geometry.topEdge);
        pageHoldsText = false;
        trailing = 0;
        return true;
    };
    auto refused = [&] {
        painter.end();
        outcome.error = QStringLiteral("Error The printer refused a new page.");
        return outcome;
    };

    const int firstPage = counter;
    const DocumentSection firstSection = section;
    for (int copy = 0; copy < std::max(1, settings.copies); ++copy) {
        if (copy > 0) {
            // Each copy begins on a page of its own and counts its pages anew.
            counter = firstPage;
            section = firstSection;
            pageInSection = 1;
            usePaperOf(section);
            if (!device.newPage()) {
                return refused();
            }
            geometry = geometryOf(section);
            y = geometry.toDeviceY(settings.startY < 1 ? geometry.topEdge : settings.startY);
            pageHoldsText = false;
            trailing = 0;
            passages = makePassages();
        }
        for (size_t index = 0; index < passages.size(); ++index) {
            DocumentPassage& passage = passages[index];
            if (index > 0 && passage.section >= 0) {
                const DocumentSection next = sectionAt(passage.section);
                if (next.newPage && pageHoldsText) {
                    if (!newPage(&next)) {
                        return refused();
                    }
                } else {
                    // A section that runs on: its margins from here, its paper
                    // and headers from the next page.
                    section = next;
                    geometry = geometryOf(section);
                }
            }
            RichTextLayout layout(std::move(passage.document), &device,
                                        geometry.toDeviceX(geometry.rightEdge - geometry.leftEdge));
            layout.setTextFollows(textFollows[index]);
            if (layout.breaksBefore() && pageHoldsText && !newPage(nullptr)) {
                return refused();
            }
            int position = 0;
            while (position < layout.textLength()) {
                qreal top = y;
                if (pageHoldsText && position == 0) {
                    top = y + std::max(trailing, layout.leadingSpace()) - layout.leadingSpace();
                }
                const qreal bottom = geometry.toDeviceY(geometry.bottomEdge - (settings.footer ? footerReserve : 0));
                const QRectF target(QPointF(geometry.toDeviceX(geometry.leftEdge), top),
                                    QPointF(geometry.toDeviceX(geometry.rightEdge), std::max(bottom, top)));
                qreal used = 0;
                const int next = layout.formatRange(&painter, position, target, pageHoldsText, &used);
                if (next == position) {
                    if (!newPage(nullptr)) {
                        return refused();
                    }
                    continue;
                }
                if (used > 0 || next < layout.textLength()) {
                    pageHoldsText = true;
                    y = top + used;
                }
                position = next;
                if (position < layout.textLength() && !newPage(nullptr)) {
                    return refused();
                }
            }
            trailing = layout.trailingSpace();
        }
        finishPage();
    }
    if (!painter.end()) {
        outcome.error = QStringLiteral("Error The printer could not finish the document.");
        return outcome;
    }
    outcome.ok = true;
    return outcome;
}

} // namespace pvardo::documents
