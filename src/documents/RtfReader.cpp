#include "documents/RtfReader.h"

#include "documents/CodePages.h"
#include "documents/DocumentPaper.h"
#include "documents/DocumentSections.h"
#include "documents/DocumentUnits.h"
#include "documents/Metafile.h"
#include "documents/RichTextLayout.h"

#include <QBuffer>
#include <QColor>
#include <QHash>
#include <QImage>
#include <QImageReader>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>
#include <QUrl>

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace pvardo::documents {

namespace {

// ---------------------------------------------------------------------------
// Tokens

enum class TokenKind { End, OpenGroup, CloseGroup, ControlWord, ControlSymbol, Text, HexByte, Binary };

struct Token {
    TokenKind kind = TokenKind::End;
    QByteArray word;         // control word, without the backslash
    bool hasParameter = false;
    qint64 parameter = 0;    // clamped to 32 bits
    char symbol = 0;         // control symbol or text byte
    uchar byte = 0;          // \'xx
    qsizetype binaryStart = 0;
    qsizetype binaryLength = 0;
};

// Splits RTF into tokens. Never reads past the end and never loops in place:
// every call consumes at least one byte or returns End.
class Tokenizer
{
public:
    explicit Tokenizer(const QByteArray& data) : m_data(data) { }

    bool badHex() const { return m_badHex; }
    bool hugeNumber() const { return m_hugeNumber; }
    qsizetype position() const { return m_pos; }

    Token next()
    {
        Token token;
        const qsizetype size = m_data.size();
        const char* data = m_data.constData();
        while (m_pos < size) {
            const char c = data[m_pos];
            if (c == '\r' || c == '\n' || c == '\0') {
                ++m_pos; // line ends in the source are never text
                continue;
            }
            if (c == '{') {
                ++m_pos;
                token.kind = TokenKind::OpenGroup;
                return token;
            }
            if (c == '}') {
                ++m_pos;
                token.kind = TokenKind::CloseGroup;
                return token;
            }
            if (c == '\\') {
                return controlToken();
            }
            ++m_pos;
            token.kind = TokenKind::Text;
            token.symbol = c;
            return token;
        }
        token.kind = TokenKind::End;
        return token;
    }

    // Takes `length` raw bytes after \binN (as many as there are).
    Token binary(qint64 length)
    {
        Token token;
        token.kind = TokenKind::Binary;
        token.binaryStart = m_pos;
        const qint64 available = m_data.size() - m_pos;
        token.binaryLength = qsizetype(std::clamp<qint64>(length, 0, available));
        m_pos += token.binaryLength;
        return token;
    }

private:
    static bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }
    static int hexValue(char c)
    {
        if (c >= '0' && c <= '9') {
            return c - '0';
        }
        if (c >= 'a' && c <= 'f') {
            return c - 'a' + 10;
        }
        if (c >= 'A' && c <= 'F') {
            return c - 'A' + 10;
        }
        return -1;
    }

    Token controlToken()
    {
        Token token;
        const qsizetype size = m_data.size();
        const char* data = m_data.constData();
        ++m_pos; // the backslash
        if (m_pos >= size) {
            token.kind = TokenKind::End;
            return token;
        }
        const char c = data[m_pos];
        if (isLetter(c)) {
            const qsizetype start = m_pos;
            while (m_pos < size && isLetter(data[m_pos]) && m_pos - start < 32) {
                ++m_pos;
            }
            // An overlong word is nonsense; swallow the rest of its letters.
            while (m_pos < size && isLetter(data[m_pos])) {
                ++m_pos;
            }
            token.kind = TokenKind::ControlWord;
            token.word = QByteArray(data + start, std::min<qsizetype>(m_pos - start, 32));
            bool negative = false;
            if (m_pos < size && data[m_pos] == '-' && m_pos + 1 < size && isDigit(data[m_pos + 1])) {
                negative = true;
                ++m_pos;
            }
            if (m_pos < size && isDigit(data[m_pos])) {
                qint64 value = 0;
                int digits = 0;
                while (m_pos < size && isDigit(data[m_pos])) {
                    if (digits < 12) {
                        value = value * 10 + (data[m_pos] - '0');
                    }
                    ++digits;
                    ++m_pos;
                }
                if (digits > 11) {
                    m_hugeNumber = true;
                }
                value = std::min<qint64>(value, 2147483647LL);
                token.hasParameter = true;
                token.parameter = negative ? -value : value;
            }
            if (m_pos < size && data[m_pos] == ' ') {
                ++m_pos; // the delimiter belongs to the word
            }
            return token;
        }
        ++m_pos;
        if (c == '\'') {
            const int high = m_pos < size ? hexValue(data[m_pos]) : -1;
            const int low = m_pos + 1 < size ? hexValue(data[m_pos + 1]) : -1;
            if (high < 0 || low < 0) {
                m_badHex = true;
                token.kind = TokenKind::ControlSymbol;
                token.symbol = '?';
                return token;
            }
            m_pos += 2;
            token.kind = TokenKind::HexByte;
            token.byte = uchar(high * 16 + low);
            return token;
        }
        if (c == '\r' || c == '\n') {
            // A backslash before a line end is a paragraph mark.
            token.kind = TokenKind::ControlWord;
            token.word = QByteArrayLiteral("par");
            return token;
        }
        token.kind = TokenKind::ControlSymbol;
        token.symbol = c;
        return token;
    }

    const QByteArray& m_data;
    qsizetype m_pos = 0;
    bool m_badHex = false;
    bool m_hugeNumber = false;
};

// ---------------------------------------------------------------------------
// Reader state

enum class Destination {
    Normal,
    Skip,
    FontTable,
    ColorTable,
    Picture,
    StyleSheet,
    Numbering, // {\*\pn ...}: the old paragraph numbering of Word 6 and WordPad
    ListTable, // {\*\listtable ...} and {\*\listoverridetable ...}: how list paragraphs are numbered
};

// A level of a list of the list table: how its paragraphs are numbered.
struct ListLevel {
    int format = 0; // \levelnfc: 0 decimal, 1 2 roman, 3 4 letters, 22 two digits, 23 bullet, 255 none
    int start = 1;
    int follow = 0; // what follows the number: 0 a tab, 1 a space, 2 nothing
    // \leveltext without its length: characters 0 to 8 stand for the numbers
    // of those levels, the rest is printed as it stands.
    QString text;
    bool textEnded = false;
    // {\*\levelmarker}: the marker as text editors on the Mac describe it,
    // "{disc}", "{decimal}." and the like.
    QString marker;
};

struct ListDefinition {
    QList<ListLevel> levels;
};

// The old paragraph numbering (\pn): numbers or a bullet that the reader
// puts before the paragraph's text, as word processors draw them, unless
// the file gives the text itself (\pntext).
struct LegacyNumbering {
    enum class Kind { None, Decimal, UpperLetter, LowerLetter, UpperRoman, LowerRoman, Bullet } kind = Kind::None;
    int start = 1;
    QString before;
    QString after;

    bool operator==(const LegacyNumbering&) const = default;
};

// A style of the stylesheet: the formatting words of its entry, replayed
// where a paragraph names the style (before the paragraph's own words, which
// win), and the style it is based on.
struct StyleEntry {
    struct Word {
        QByteArray word;
        bool hasParameter = false;
        int parameter = 0;
    };
    QList<Word> words;
    int basedOn = -1;
};

struct CharState {
    int font = -1; // -1: the document's default font
    int halfPoints = 24;
    bool bold = false;
    bool italic = false;
    bool strike = false;
    bool smallCaps = false;
    bool allCaps = false;
    bool hidden = false;
    QTextCharFormat::UnderlineStyle underline = QTextCharFormat::NoUnderline;
    int foreground = 0; // colour table index; 0 is "auto"
    int background = 0; // colour table index; 0 is none
    int vertical = 0;   // 1 superscript, -1 subscript
};

struct ParaState {
    Qt::Alignment alignment = Qt::AlignLeft;
    int left = 0;
    int right = 0;
    int first = 0;
    int before = 0;
    int after = 0;
    int lineSpacing = 0;
    bool lineMultiple = false;
    QList<QTextOption::Tab> tabs;
    QTextOption::TabType pendingTabType = QTextOption::LeftTab;
    bool pendingDecimal = false;
    bool inTable = false;
    bool pageBreakBefore = false;
    bool keepWithNext = false;
    LegacyNumbering numbering;
    int list = 0;  // \ls: the list override the paragraph belongs to
    int level = 0; // \ilvl
};

enum class BorderSide { None, Top, Left, Bottom, Right, Paragraph, TableOutside, TableInside };

struct CellBorder {
    qreal widthTwips = 0;
    int color = 0;
    bool present = false;
    QTextFrameFormat::BorderStyle style = QTextFrameFormat::BorderStyle_Solid;
};

struct CellDef {
    int rightTwips = 0;
    CellBorder borders[4]; // top, left, bottom, right
    int shading = 0;
    int verticalAlign = 0; // 0 top, 1 middle, 2 bottom
    bool mergeFirst = false;
    bool mergeNext = false;
    bool vmergeFirst = false;
    bool vmergeNext = false;
    bool vertical = false; // text turned a quarter: kept on one line, never broken inside a word
    int padding[4] = {-1, -1, -1, -1}; // top, left, bottom, right in twips; -1: the row's gap
};

struct RowDef {
    QList<CellDef> cells;
    // Space inside the cells at their sides: half the gap between cells
    // (\trgaph, Word's usual 108 when the row does not say), unless the row
    // gives its cells' padding (\trpaddl, \trpaddr).
    int gapTwips = 108;
    int padLeft = -1;
    int padRight = -1;
    int sidePadding(int side) const // 1 left, 3 right
    {
        const int pad = side == 1 ? padLeft : padRight;
        return pad >= 0 ? pad : gapTwips;
    }
    int leftTwips = 0;
    Qt::Alignment alignment = Qt::AlignLeft;
    bool header = false;
    int heightTwips = 0; // above 0 the row's least height, below 0 its exact height
    // The table's own border around the row (\trbrdrt ...), and its lines
    // between the cells (\trbrdrh, \trbrdrv).
    CellBorder outside;
    CellBorder inside;
};

struct Group {
    CharState chars;
    ParaState para;
    Destination destination = Destination::Normal;
    int unicodeSkip = 1;
    bool pictureOwner = false; // this group opened the picture
    int numberingText = 0;     // in \pn: 1 in its text before the number (\pntxtb), 2 after (\pntxta)
    // In the list table: 1 a level's text, 2 its marker, 3 text of no use.
    int listText = 0;
    int listOwner = 0; // in the list table: 1 this group opened a list, 2 a list override
    qsizetype openedAt = 0;    // where the group's brace stands in the file
    // A header, footer or footnote kept whole as RTF of its own, from here to
    // the group's end.
    QByteArray capture;
    qsizetype captureFrom = 0;
};

struct FontEntry {
    QString name;
    int charset = 0;
    int codePage = -1; // \cpg, which wins over the character set
    QFont::StyleHint hint = QFont::AnyStyle;
};

struct PictureState {
    // Wmf and Emf are metafiles; Dib a packed bitmap with its header; Ddb the
    // bare rows of \wbitmap; Other what this reader cannot draw (QuickDraw,
    // OS/2 metafiles).
    enum class Kind { None, Png, Jpeg, Wmf, Emf, Dib, Ddb, Other } kind = Kind::None;
    QByteArray bytes;
    int pendingNibble = -1;
    qint64 widthPx = 0;
    qint64 heightPx = 0;
    qint64 goalWidth = 0;
    qint64 goalHeight = 0;
    qint64 scaleX = 100;
    qint64 scaleY = 100;
    int bitsPerPixel = 1;  // \wbmbitspixel
    int widthBytes = 0;    // \wbmwidthbytes
    bool overflow = false;
};

int codePageForCharset(int charset, int ansiCodePage)
{
    switch (charset) {
    case 0:
        // An "ANSI" font cannot hold double-byte text: in a Japanese or
        // Chinese document it is a Western font.
        return isDoubleByteCodePage(ansiCodePage) ? 1252 : ansiCodePage;
    case 1:
        return ansiCodePage;
    case 2:
        return 0; // symbol fonts
    case 77:
        return 10000;
    case 78:
        return 10001;
    case 79:
        return 10003;
    case 80:
        return 10008;
    case 81:
        return 10002;
    case 85:
        return 10006;
    case 86:
        return 10081;
    case 88:
        return 10029;
    case 89:
        return 10007;
    case 128:
        return 932;
    case 129:
        return 949;
    case 134:
        return 936;
    case 136:
        return 950;
    case 161:
        return 1253;
    case 162:
        return 1254;
    case 163:
        return 1258;
    case 177:
        return 1255;
    case 178:
        return 1256;
    case 186:
        return 1257;
    case 204:
        return 1251;
    case 222:
        return 874;
    case 238:
        return 1250;
    case 254:
        return 437;
    default:
        return ansiCodePage;
    }
}

bool isSkippedDestination(const QByteArray& word)
{
    static const QList<QByteArray> words{
        "info", "header", "headerl", "headerr", "headerf", "footer", "footerl", "footerr",
        "footerf", "footnote", "annotation", "atnid", "atnauthor", "atndate", "atnref", "nonshppict", "fldinst",
        "objdata", "objclass", "objname", "listtable", "listoverridetable", "revtbl", "rsidtbl", "generator",
        "xmlnstbl", "datafield", "themedata", "colorschememapping", "latentstyles", "datastore", "docvar",
        "pgdsctbl", "filetbl", "ftnsep", "ftnsepc", "aftnsep", "aftnsepc", "pnseclvl", "pn", "bkmkstart",
        "bkmkend", "template", "userprops", "keywords", "subject", "title", "author", "operator", "comment",
        "doccomm", "private", "shpinst", "sp", "sn", "sv", "do", "xe", "tc", "txe", "rxe", "picprop",
        "blipuid", "listpicture", "background", "fchars", "lchars", "pgptbl", "protusertbl", "mmathPr",
        "wgrffmtfilter", "falt", "nonesttables", "panose", "fname", "leveltext", "levelnumbers", "formfield", "ud",
    };
    return words.contains(word);
}

// Decoders of pictures of one bit a pixel fill each row's whole bytes only:
// the bits past the picture's right edge in the last byte keep what the
// memory held before. Written again as PNG, the same picture would then give
// other bytes from one save to the next, so they are cleared.
void clearRowPadding(QImage& image)
{
    if (image.isNull() || image.depth() >= 8) {
        return;
    }
    const qint64 usedBits = qint64(image.width()) * image.depth();
    const qsizetype fullBytes = qsizetype(usedBits / 8);
    const int restBits = int(usedBits % 8);
    const bool leastFirst = image.format() == QImage::Format_MonoLSB;
    for (int y = 0; y < image.height(); ++y) {
        uchar* line = image.scanLine(y);
        qsizetype from = fullBytes;
        if (restBits > 0) {
            line[fullBytes] &= leastFirst ? uchar((1u << restBits) - 1) : uchar(0xFFu << (8 - restBits));
            ++from;
        }
        std::memset(line + from, 0, size_t(image.bytesPerLine() - from));
    }
}

// ---------------------------------------------------------------------------

class RtfReader
{
public:
    RtfReader(const QByteArray& data, QTextDocument& document)
        : m_data(data), m_document(document), m_tokenizer(data), m_cursor(&document)
    {
    }

    RtfReadResult read();

private:
    // Problems
    void damage(const QString& problem)
    {
        if (!m_result.damaged) {
            m_result.damaged = true;
            m_result.problem = problem;
        }
    }

    Group& group() { return m_groups.back(); }
    // The current paragraph belongs in a table (unless the file has used up
    // its tables).
    bool inTable() const { return group().para.inTable && !m_tablesExhausted; }
    const Group& group() const { return m_groups.back(); }

    void handleControlWord(const Token& token);
    void handleControlSymbol(char symbol);
    void handleDestinationWord(const QByteArray& word);
    bool handleCharacterWord(const QByteArray& word, bool has, int value);
    bool handleParagraphWord(const QByteArray& word, bool has, int value);
    bool handleTableWord(const QByteArray& word, bool has, int value);
    bool handleDocumentWord(const QByteArray& word, int value);
    bool handlePictureWord(const QByteArray& word, int value);

    void openGroup();
    void closeGroup();
    void applyStyle(int number, int depth);

    // Text
    void textByte(uchar byte);
    void emitChar(char16_t c);
    void flushRun();
    QTextCharFormat currentCharFormat();
    QTextBlockFormat currentBlockFormat() const;
    void endParagraph(bool pageBreakAfter = false);
    void prepareContent();

    // Tables
    void enterTableCell();
    void endCell();
    void endRow();
    void closeTable();
    void applyRowFormats(int row, const RowDef& def);

    // Pictures
    void pictureHex(char c);
    void finishPicture();

    // Font and colour tables
    void fontTableText(char16_t c);
    int currentCodePage() const;
    DoubleByteDecoder* doubleByteDecoder(int codePage);
    void resetDoubleByte();

    // Sections, headers, footers and notes
    bool handleSectionWord(const QByteArray& word, int value);
    bool startCapture(const QByteArray& word);
    void finishCapture(const Group& closing);
    void stampSection();
    void handleNumberingWord(const QByteArray& word, int value);
    void handleListWord(const QByteArray& word, int value);
    void listTableText(char16_t c);
    QString nextListLabel(const ParaState& para, QChar* follow);

    QColor color(int index) const
    {
        if (index <= 0 || index >= m_colors.size()) {
            return {};
        }
        return m_colors.at(index);
    }

    const QByteArray& m_data;
    QTextDocument& m_document;
    Tokenizer m_tokenizer;
    QTextCursor m_cursor;
    RtfReadResult m_result;

    std::vector<Group> m_groups;
    int m_flattenedDepth = 0; // groups opened past the depth limit, read in the deepest kept group
    int m_pendingSkip = 0;    // fallback characters still to drop after \uN
    bool m_nextIsDestination = false; // the token just read was "\*"
    bool m_afterStar = false;         // the token being handled came right after "\*"


    QHash<int, FontEntry> m_fonts;
    QHash<int, StyleEntry> m_styles;
    int m_styleEntry = -1;
    int m_defaultFont = 0;
    int m_ansiCodePage = 1252;
    std::map<int, std::unique_ptr<DoubleByteDecoder>> m_doubleByteDecoders;
    DoubleByteDecoder* m_doubleBytePending = nullptr; // holds a lead byte that waits for its trail byte
    int m_fontEntry = -1;
    QString m_fontName;
    QList<QColor> m_colors;
    int m_red = 0;
    int m_green = 0;
    int m_blue = 0;
    bool m_colorSeen = false;

    QString m_run;
    QTextCharFormat m_runFormat;
    bool m_formatDirty = true;
    QTextCharFormat m_cachedFormat;
    bool m_blockHasContent = false;
    // Old paragraph numbering: the \pn group being read, whether the file
    // gave the next paragraph's number as text, and the list counted so far.
    LegacyNumbering m_numberingDraft;
    bool m_numberTextGiven = false;
    LegacyNumbering m_lastNumbering;
    int m_lastNumber = 0;
    void numberParagraph();
    // The list table: lists by their id, the id each list override (\ls)
    // stands for, the list or override being read, and the number each level
    // of a list has reached (0: not begun).
    QHash<int, ListDefinition> m_lists;
    QHash<int, int> m_listOverrides;
    ListDefinition m_listDraft;
    bool m_listDraftOpen = false;
    int m_listDraftId = 0;
    int m_overrideDraftList = 0;
    int m_overrideDraftNumber = 0;
    QHash<int, std::array<int, 9>> m_listCounters;
    bool m_listTextGiven = false; // the paragraph's marker came as text (\listtext)
    bool m_listCounted = false;   // the paragraph's number has been counted
    bool m_pageBreakPending = false;
    bool m_paragraphEnded = false; // the last thing was a paragraph mark

    // Tables
    RowDef m_rowDef;
    RowDef m_previousRowDef; // the last row definition that had cells
    CellDef m_cellDef;
    BorderSide m_borderSide = BorderSide::None;
    QTextTable* m_table = nullptr;
    int m_tableRow = -1;
    int m_tableCol = 0;
    bool m_rowPending = true;  // the next cell content opens a new row
    bool m_cellAdvance = false; // a cell mark was met: the next content goes to the next cell
    std::vector<RowDef> m_tableRows;
    int m_cellCount = 0;
    int m_tableCount = 0;
    bool m_tablesExhausted = false;

    // Pictures
    PictureState m_picture;
    qsizetype m_allPictureBytes = 0;
    qint64 m_allPicturePixels = 0;
    int m_pictureCount = 0;

    DocumentPaper m_paper;

    // Sections: the one being described, those already begun, and whether
    // its first paragraph has been met.
    DocumentSection m_section;
    QList<DocumentSection> m_sections;
    bool m_sectionBegun = false;
    int m_sectionsBegun = 0;
    bool m_sectionsUsed = false; // the file divides itself or has headers: mark where sections begin
    bool m_landscape = false;
    bool m_facingPages = false;
    QByteArray m_tableBytes; // the font, colour and style tables, for the headers' own documents
    QList<QByteArray> m_notes;
    qsizetype m_keptBytes = 0;
};

RtfReadResult RtfReader::read()
{
    m_document.clear();
    m_document.setUndoRedoEnabled(false);
    m_cursor = QTextCursor(&m_document);

    // The file must open with "{\rtf"; leading blanks and line ends are tolerated.
    qsizetype start = 0;
    while (start < m_data.size() && (m_data.at(start) == ' ' || m_data.at(start) == '\r' || m_data.at(start) == '\n'
                                     || m_data.at(start) == '\t')) {
        ++start;
    }
    if (!m_data.mid(start, 5).startsWith("{\\rtf")) {
        m_result.notRtf = true;
        m_result.problem = QStringLiteral("The file is not an RTF document.");
        return m_result;
    }

    // One edit block for the whole file: inside it Qt neither lays out nor
    // measures the paragraph after each insertion, which would make a long
    // paragraph of many short runs cost the square of its length.
    QTextCursor editBlock(&m_document);
    editBlock.beginEditBlock();

    m_colors.append(QColor()); // entry 0 stays "auto" until the table says otherwise
    bool started = false;
    bool finished = false;
    bool closed = false;
    while (!finished) {
        Token token = m_tokenizer.next();
        // "\*" marks only the control word right behind it; whatever comes
        // next (a group mark, text, another word) ends that, so the mark can
        // never outlive the group it stood in.
        m_afterStar = std::exchange(m_nextIsDestination, false);
        switch (token.kind) {
        case TokenKind::End:
            finished = true;
            break;
        case TokenKind::OpenGroup:
            if (!started) {
                started = true;
                m_groups.emplace_back();
                break;
            }
            openGroup();
            break;
        case TokenKind::CloseGroup:
            if (m_flattenedDepth > 0) {
                --m_flattenedDepth;
                break;
            }
            if (m_groups.size() <= 1) {
                finished = true; // the document's own group has closed; what follows is not read
                closed = true;
                break;
            }
            closeGroup();
            break;
        case TokenKind::ControlWord:
            if (token.word == "bin") {
                const qint64 length = token.hasParameter ? token.parameter : 0;
                const Token binary = m_tokenizer.binary(length);
                if (binary.binaryLength < length) {
                    damage(QStringLiteral("The file ends inside binary data."));
                }
                if (group().destination == Destination::Picture && !m_picture.overflow) {
                    if (m_picture.bytes.size() + binary.binaryLength > RtfLimits::maxPictureBytes) {
                        m_picture.overflow = true;
                    } else {
                        m_picture.bytes.append(m_data.constData() + binary.binaryStart, binary.binaryLength);
                    }
                }
                if (m_pendingSkip > 0) {
                    --m_pendingSkip;
                }
                break;
            }
            handleControlWord(token);
            break;
        case TokenKind::ControlSymbol:
            handleControlSymbol(token.symbol);
            break;
        case TokenKind::HexByte:
            if (m_pendingSkip > 0) {
                --m_pendingSkip;
                break;
            }
            textByte(token.byte);
            break;
        case TokenKind::Text:
            if (group().destination == Destination::Picture) {
                pictureHex(token.symbol);
                break;
            }
            if (token.symbol == '\t') {
                handleControlWord(Token{TokenKind::ControlWord, QByteArrayLiteral("tab")});
                break;
            }
            if (m_pendingSkip > 0) {
                --m_pendingSkip;
                break;
            }
            textByte(uchar(token.symbol));
            break;
        case TokenKind::Binary:
            break;
        }
    }

    if (m_groups.empty()) {
        m_groups.emplace_back(); // "{\rtf" and nothing more
    }
    if (!closed || m_flattenedDepth > 0) {
        damage(QStringLiteral("The file ends before the document does; it may have been cut short."));
        // Close what is open so that a picture or table in progress is kept.
        while (m_groups.size() > 1) {
            closeGroup();
        }
    }
    if (m_tokenizer.badHex()) {
        damage(QStringLiteral("The file holds a broken character code."));
    }
    if (m_tokenizer.hugeNumber()) {
        damage(QStringLiteral("The file holds a number far out of range."));
    }

    // The last paragraph.
    flushRun();
    if (m_table) {
        if (m_blockHasContent) {
            m_cursor.setBlockFormat(currentBlockFormat());
            stampSection();
        }
        closeTable();
    } else {
        m_cursor.setBlockFormat(currentBlockFormat());
        if (m_blockHasContent) {
            stampSection();
        }
    }
    // A paragraph mark ends the paragraph before it: it does not open an empty
    // one at the end of the document.
    if (m_paragraphEnded && !m_blockHasContent) {
        QTextBlock last = m_document.lastBlock();
        if (last.length() == 1 && last.previous().isValid() && !m_cursor.currentTable()) {
            QTextCursor cursor(last);
            if (!cursor.currentFrame() || cursor.currentFrame() == m_document.rootFrame()) {
                const QTextBlock previous = last.previous();
                QTextCursor previousCursor(previous);
                if (!previousCursor.currentTable()) {
                    cursor.deletePreviousChar();
                }
            }
        }
    }
    editBlock.endEditBlock();
    if (m_landscape && m_paper.widthTwips < m_paper.heightTwips) {
        std::swap(m_paper.widthTwips, m_paper.heightTwips);
        m_paper.stated = true;
    }
    setDocumentPaper(m_document, m_paper);
    setDocumentSections(m_document, m_sections);
    setDocumentNotes(m_document, m_notes);
    setDocumentFacingPages(m_document, m_facingPages);
    m_document.setUndoRedoEnabled(true);
    m_document.setModified(false);
    return m_result;
}

void RtfReader::openGroup()
{
    m_pendingSkip = 0;
    resetDoubleByte();
    if (int(m_groups.size()) >= RtfLimits::maxGroupDepth) {
        // Past the limit groups share the state of the deepest one kept: their
        // text is read all the same, in that group's formatting.
        ++m_flattenedDepth;
        return;
    }
    Group copy = group();
    copy.pictureOwner = false;
    copy.listOwner = 0;
    copy.openedAt = m_tokenizer.position() - 1;
    copy.capture.clear();
    m_groups.push_back(copy);
}

void RtfReader::closeGroup()
{
    m_pendingSkip = 0;
    resetDoubleByte();
    const Group closing = group();
    m_groups.pop_back();
    if (!closing.capture.isEmpty()) {
        finishCapture(closing);
    }
    if ((closing.destination == Destination::FontTable || closing.destination == Destination::ColorTable
         || closing.destination == Destination::StyleSheet || closing.destination == Destination::ListTable)
        && group().destination != closing.destination && m_tableBytes.size() < 4 * 1024 * 1024) {
        m_tableBytes += m_data.mid(closing.openedAt, m_tokenizer.position() - closing.openedAt);
    }
    if (closing.destination == Destination::Numbering && group().destination == Destination::Normal) {
        group().para.numbering = m_numberingDraft;
    }
    if (closing.destination == Destination::Picture && closing.pictureOwner) {
        finishPicture();
    }
    if (closing.listOwner == 1 && m_listDraftOpen) {
        m_listDraftOpen = false;
        if (m_lists.size() < 1000) {
            m_lists.insert(m_listDraftId, std::move(m_listDraft));
        }
        m_listDraft = ListDefinition();
    } else if (closing.listOwner == 2 && m_overrideDraftNumber > 0 && m_listOverrides.size() < 10000) {
        m_listOverrides.insert(m_overrideDraftNumber, m_overrideDraftList);
    }
    if (closing.destination == Destination::FontTable && group().destination != Destination::FontTable) {
        m_fontEntry = -1;
    }
    if (closing.destination == Destination::FontTable && m_fontEntry >= 0 && !m_fontName.isEmpty()) {
        // An entry without its closing ';'.
        m_fonts[m_fontEntry].name = m_fontName.trimmed();
        m_fontName.clear();
    }
    m_formatDirty = true;
}

// ---------------------------------------------------------------------------
// Control words

void RtfReader::applyStyle(int number, int depth)
{
    const auto it = m_styles.constFind(number);
    if (it == m_styles.constEnd() || depth > 8) {
        return;
    }
    const StyleEntry style = *it;
    if (style.basedOn >= 0 && style.basedOn != number) {
        applyStyle(style.basedOn, depth + 1);
    }
    for (const StyleEntry::Word& word : style.words) {
        // Only formatting: a style cannot end a paragraph or open a table.
        if (word.word == "par" || word.word == "sect" || word.word == "page" || word.word == "intbl"
            || word.word == "pard" || word.word == "plain") {
            continue;
        }
        if (!handleCharacterWord(word.word, word.hasParameter, word.parameter)) {
            handleParagraphWord(word.word, word.hasParameter, word.parameter);
        }
    }
}

void RtfReader::handleControlWord(const Token& token)
{
    const QByteArray& word = token.word;
    const int value = int(token.parameter);
    const bool has = token.hasParameter;
    resetDoubleByte(); // a double-byte character is never split by a control word

    if (m_pendingSkip > 0) {
        if (word != "u") {
            --m_pendingSkip;
            return;
        }
        // A Unicode character is never the fallback of another: the pair of
        // an emoji written without fallbacks is read whole.
        m_pendingSkip = 0;
    }

    const Destination destination = group().destination;
    if (destination == Destination::Skip) {
        if (word == "uc") {
            group().unicodeSkip = std::clamp(value, 0, 10);
        }
        return;
    }

    if (m_afterStar) {
        // "{\*\word": a destination this reader may not know. Known ones are
        // handled; anything else is skipped whole.
        if (word == "shppict" || word == "fldrslt") {
            return;
        }
        if (word == "pict") {
            handleDestinationWord(word);
            return;
        }
        if ((word == "listtable" || word == "listoverridetable") && destination == Destination::Normal) {
            group().destination = Destination::ListTable;
            return;
        }
        if (word == "levelmarker" && destination == Destination::ListTable) {
            group().listText = 2;
            return;
        }
        if (word == "pn" && destination == Destination::Normal) {
            group().destination = Destination::Numbering;
            m_numberingDraft = LegacyNumbering();
            m_numberingDraft.kind = LegacyNumbering::Kind::Decimal;
            return;
        }
        group().destination = Destination::Skip;
        return;
    }
    if (destination == Destination::Numbering) {
        handleNumberingWord(word, value);
        return;
    }
    if (destination == Destination::ListTable) {
        handleListWord(word, value);
        return;
    }

    if (destination == Destination::Picture) {
        handlePictureWord(word, value);
        return;
    }
    if (destination == Destination::StyleSheet) {
        if (word == "s" || word == "cs" || word == "ds" || word == "ts") {
            m_styleEntry = word == "s" || word == "cs" ? std::clamp(value, 0, 4095) : -1;
            if (m_styleEntry >= 0 && m_styles.size() < 1000) {
                m_styles[m_styleEntry] = StyleEntry();
            } else {
                m_styleEntry = -1;
            }
        } else if (m_styleEntry >= 0 && m_styles.contains(m_styleEntry)) {
            StyleEntry& style = m_styles[m_styleEntry];
            if (word == "sbasedon") {
                style.basedOn = value;
            } else if (word != "snext" && word != "slink" && word != "additive" && style.words.size() < 100) {
                style.words.append({word, has, value});
            }
        }
        return;
    }
    if (destination == Destination::FontTable) {
        if (word == "f") {
            m_fontEntry = std::clamp(value, -1, 1 << 20);
            m_fontName.clear();
            m_fonts[m_fontEntry];
        } else if (word == "fcharset" && m_fontEntry >= 0) {
            m_fonts[m_fontEntry].charset = value;
        } else if (word == "cpg" && m_fontEntry >= 0) {
            m_fonts[m_fontEntry].codePage = value;
        } else if (m_fontEntry >= 0 && word.startsWith('f') && word.size() > 1) {
            if (word == "froman") {
                m_fonts[m_fontEntry].hint = QFont::Serif;
            } else if (word == "fswiss") {
                m_fonts[m_fontEntry].hint = QFont::SansSerif;
            } else if (word == "fmodern") {
                m_fonts[m_fontEntry].hint = QFont::TypeWriter;
            } else if (word == "fscript") {
                m_fonts[m_fontEntry].hint = QFont::Cursive;
            } else if (word == "fdecor") {
                m_fonts[m_fontEntry].hint = QFont::Decorative;
            }
        } else if (word == "u") {
            fontTableText(char16_t(value < 0 ? value + 65536 : value));
            m_pendingSkip = group().unicodeSkip;
        } else if (isSkippedDestination(word)) {
            group().destination = Destination::Skip;
        }
        return;
    }
    if (destination == Destination::ColorTable) {
        if (word == "red") {
            m_red = std::clamp(value, 0, 255);
            m_colorSeen = true;
        } else if (word == "green") {
            m_green = std::clamp(value, 0, 255);
            m_colorSeen = true;
        } else if (word == "blue") {
            m_blue = std::clamp(value, 0, 255);
            m_colorSeen = true;
        }
        return;
    }

    if (word == "s" || word == "cs") {
        applyStyle(value, 0);
        return;
    }
    if (handleCharacterWord(word, has, value) || handleParagraphWord(word, has, value)
        || handleTableWord(word, has, value) || handleDocumentWord(word, value) || handleSectionWord(word, value)) {
        return;
    }
    handleDestinationWord(word);
}

void RtfReader::handleDestinationWord(const QByteArray& word)
{
    if (word == "pntext" || word == "listtext") {
        m_numberTextGiven = true; // the number as the file's writer drew it: its text follows
        return;
    }
    if (word == "stylesheet") {
        group().destination = Destination::StyleSheet;
        m_styleEntry = -1;
    } else if (word == "fonttbl") {
        group().destination = Destination::FontTable;
        m_fontEntry = -1;
        m_fontName.clear();
    } else if (word == "colortbl") {
        group().destination = Destination::ColorTable;
        m_colors.clear();
        m_red = m_green = m_blue = 0;
        m_colorSeen = false;
    } else if (word == "pict") {
        flushRun();
        group().destination = Destination::Picture;
        group().pictureOwner = true;
        m_picture = PictureState();
    } else if (startCapture(word)) {
        group().destination = Destination::Skip;
    } else if (isSkippedDestination(word)) {
        group().destination = Destination::Skip;
    }
    // Any other word is a property this reader does not use.
}

bool RtfReader::handleCharacterWord(const QByteArray& word, bool has, int value)
{
    CharState& chars = group().chars;
    const bool on = !has || value != 0;
    auto changed = [this] {
        m_formatDirty = true;
        return true;
    };
    if (word == "plain") {
        chars = CharState();
        return changed();
    }
    if (word == "f") {
        chars.font = value;
        return changed();
    }
    if (word == "fs") {
        // Sizes outside 1 to 1638 points are nonsense; a size of thousands of
        // points would make the layout allocate huge glyphs.
        chars.halfPoints = has ? std::clamp(value, 2, 3276) : 24;
        return changed();
    }
    if (word == "b") {
        chars.bold = on;
        return changed();
    }
    if (word == "i") {
        chars.italic = on;
        return changed();
    }
    if (word == "strike" || word == "striked") {
        chars.strike = on;
        return changed();
    }
    if (word == "scaps") {
        chars.smallCaps = on;
        return changed();
    }
    if (word == "caps") {
        chars.allCaps = on;
        return changed();
    }
    if (word == "v") {
        chars.hidden = on;
        return changed();
    }
    if (word == "ul" || word == "ulw") {
        chars.underline = on ? QTextCharFormat::SingleUnderline : QTextCharFormat::NoUnderline;
        return changed();
    }
    if (word == "uld" || word == "uldb" || word == "ulth" || word == "ulhair" || word == "ulthd") {
        chars.underline = on ? (word == "uld" || word == "ulthd" ? QTextCharFormat::DotLine
                                                                  : QTextCharFormat::SingleUnderline)
                             : QTextCharFormat::NoUnderline;
        return changed();
    }
    if (word == "uldash" || word == "ulthdash" || word == "ulldash") {
        chars.underline = on ? QTextCharFormat::DashUnderline : QTextCharFormat::NoUnderline;
        return changed();
    }
    if (word == "ulwave" || word == "ulhwave" || word == "ululdbwave") {
        chars.underline = on ? QTextCharFormat::WaveUnderline : QTextCharFormat::NoUnderline;
        return changed();
    }
    if (word == "ulnone") {
        chars.underline = QTextCharFormat::NoUnderline;
        return changed();
    }
    if (word == "cf") {
        chars.foreground = std::max(0, value);
        return changed();
    }
    if (word == "cb" || word == "highlight" || word == "chcbpat") {
        chars.background = std::max(0, value);
        return changed();
    }
    if (word == "super") {
        chars.vertical = 1;
        return changed();
    }
    if (word == "sub") {
        chars.vertical = -1;
        return changed();
    }
    if (word == "nosupersub") {
        chars.vertical = 0;
        return changed();
    }
    if (word == "up") {
        chars.vertical = (has && value == 0) ? 0 : 1;
        return changed();
    }
    if (word == "dn") {
        chars.vertical = (has && value == 0) ? 0 : -1;
        return changed();
    }
    if (word == "uc") {
        group().unicodeSkip = std::clamp(value, 0, 10);
        return true;
    }
    return false;
}

bool RtfReader::handleParagraphWord(const QByteArray& word, bool has, int value)
{
    ParaState& para = group().para;
    // Indents and spacing of more than 22 inches cannot be on any paper.
    const int length = std::clamp(value, -31680, 31680);
    if (word == "pard") {
        para = ParaState();
        return true;
    }
    if (word == "ls") {
        para.list = std::max(0, value);
        return true;
    }
    if (word == "ilvl") {
        para.level = std::clamp(value, 0, 8);
        return true;
    }
    if (word == "ql") {
        para.alignment = Qt::AlignLeft;
        return true;
    }
    if (word == "qc") {
        para.alignment = Qt::AlignHCenter;
        return true;
    }
    if (word == "qr") {
        para.alignment = Qt::AlignRight;
        return true;
    }
    if (word == "qj" || word == "qd") {
        para.alignment = Qt::AlignJustify;
        return true;
    }
    if (word == "li" || word == "lin") {
        para.left = length;
        return true;
    }
    if (word == "ri" || word == "rin") {
        para.right = length;
        return true;
    }
    if (word == "fi") {
        para.first = length;
        return true;
    }
    if (word == "sb") {
        para.before = std::max(0, length);
        return true;
    }
    if (word == "sa") {
        para.after = std::max(0, length);
        return true;
    }
    if (word == "sl") {
        para.lineSpacing = has ? length : 0;
        return true;
    }
    if (word == "slmult") {
        para.lineMultiple = has && value == 1;
        return true;
    }
    if (word == "tqr") {
        para.pendingTabType = QTextOption::RightTab;
        return true;
    }
    if (word == "tqc") {
        para.pendingTabType = QTextOption::CenterTab;
        return true;
    }
    if (word == "tqdec") {
        para.pendingTabType = QTextOption::DelimiterTab;
        para.pendingDecimal = true;
        return true;
    }
    if (word == "tx" || word == "tb") {
        if (para.tabs.size() < RtfLimits::maxTabStops && value >= 0) {
            // Kept in twips from the text's left edge until the paragraph is
            // made; see currentBlockFormat.
            QTextOption::Tab tab(std::min(value, 31680), para.pendingTabType,
                                 para.pendingDecimal ? QChar(u'.') : QChar());
            para.tabs.append(tab);
        }
        para.pendingTabType = QTextOption::LeftTab;
        para.pendingDecimal = false;
        return true;
    }
    if (word == "intbl") {
        para.inTable = true;
        return true;
    }
    if (word == "pagebb") {
        para.pageBreakBefore = true;
        return true;
    }
    if (word == "keepn") {
        para.keepWithNext = true;
        return true;
    }
    if (word == "brdrt" || word == "brdrb" || word == "brdrl" || word == "brdrr" || word == "box"
        || word == "brdrbar") {
        m_borderSide = BorderSide::Paragraph;
        return true;
    }
    if (word == "par") {
        if (inTable()) {
            enterTableCell(); // an empty paragraph in a table opens its cell all the same
        } else if (m_table) {
            closeTable();
            if (!m_blockHasContent && m_run.isEmpty()) {
                // Qt gives the empty block right behind a table no line, so an
                // empty paragraph there needs a block of its own to show.
                m_cursor.insertBlock();
            }
        }
        endParagraph();
        return true;
    }
    if (word == "sect") {
        if (!inTable() && m_table) {
            closeTable();
        }
        endParagraph();
        // The next paragraph begins a section; the words that follow describe it.
        m_sectionBegun = false;
        m_sectionsUsed = true;
        return true;
    }
    if (word == "page") {
        if (!inTable() && m_table) {
            closeTable();
        }
        if (m_blockHasContent || !m_run.isEmpty()) {
            endParagraph(true);
        } else {
            m_pageBreakPending = true;
        }
        return true;
    }
    return false;
}

bool RtfReader::handleTableWord(const QByteArray& word, bool has, int value)
{
    Q_UNUSED(has)
    const int length = std::clamp(value, -63360, 63360);
    if (word == "trowd") {
        if (!m_rowDef.cells.isEmpty()) {
            m_previousRowDef = m_rowDef;
        }
        m_rowDef = RowDef();
        m_cellDef = CellDef();
        m_borderSide = BorderSide::None;
        return true;
    }
    if (word == "trgaph") {
        m_rowDef.gapTwips = std::clamp(value, 0, 1440);
        return true;
    }
    if (word == "trpaddl" || word == "trpaddr") {
        (word == "trpaddl" ? m_rowDef.padLeft : m_rowDef.padRight) = std::clamp(value, 0, 1440);
        return true;
    }
    if (word == "trleft") {
        m_rowDef.leftTwips = length;
        return true;
    }
    if (word == "trqc") {
        m_rowDef.alignment = Qt::AlignHCenter;
        return true;
    }
    if (word == "trqr") {
        m_rowDef.alignment = Qt::AlignRight;
        return true;
    }
    if (word == "trql") {
        m_rowDef.alignment = Qt::AlignLeft;
        return true;
    }
    if (word == "trhdr") {
        m_rowDef.header = true;
        return true;
    }
    if (word == "trrh") {
        m_rowDef.heightTwips = std::clamp(value, -31680, 31680);
        return true;
    }
    if (word == "cltxbtlr" || word == "cltxtbrl" || word == "cltxbtlrv" || word == "cltxtbrlv") {
        m_cellDef.vertical = true;
        return true;
    }
    if (word == "trbrdrt" || word == "trbrdrl" || word == "trbrdrb" || word == "trbrdrr") {
        m_borderSide = BorderSide::TableOutside;
        m_rowDef.outside.present = true;
        return true;
    }
    if (word == "trbrdrh" || word == "trbrdrv") {
        m_borderSide = BorderSide::TableInside;
        m_rowDef.inside.present = true;
        return true;
    }
    if (word == "clbrdrt") {
        m_borderSide = BorderSide::Top;
        m_cellDef.borders[0].present = true;
        return true;
    }
    if (word == "clbrdrl") {
        m_borderSide = BorderSide::Left;
        m_cellDef.borders[1].present = true;
        return true;
    }
    if (word == "clbrdrb") {
        m_borderSide = BorderSide::Bottom;
        m_cellDef.borders[2].present = true;
        return true;
    }
    if (word == "clbrdrr") {
        m_borderSide = BorderSide::Right;
        m_cellDef.borders[3].present = true;
        return true;
    }
    CellBorder* border = nullptr;
    switch (m_borderSide) {
    case BorderSide::Top:
        border = &m_cellDef.borders[0];
        break;
    case BorderSide::Left:
        border = &m_cellDef.borders[1];
        break;
    case BorderSide::Bottom:
        border = &m_cellDef.borders[2];
        break;
    case BorderSide::Right:
        border = &m_cellDef.borders[3];
        break;
    case BorderSide::TableOutside:
        border = &m_rowDef.outside;
        break;
    case BorderSide::TableInside:
        border = &m_rowDef.inside;
        break;
    default:
        break;
    }
    if (word.startsWith("brdr")) {
        if (border) {
            if (word == "brdrw") {
                border->widthTwips = std::clamp(value, 0, 300);
            } else if (word == "brdrcf") {
                border->color = std::max(0, value);
            } else if (word == "brdrnone" || word == "brdrnil" || word == "brdrtbl") {
                border->present = false;
            } else if (word == "brdrdot") {
                border->style = QTextFrameFormat::BorderStyle_Dotted;
            } else if (word == "brdrdash") {
                border->style = QTextFrameFormat::BorderStyle_Dashed;
            } else if (word == "brdrdb") {
                border->style = QTextFrameFormat::BorderStyle_Double;
            } else if (word == "brdroutset") {
                border->style = QTextFrameFormat::BorderStyle_Outset;
            } else if (word == "brdrinset") {
                border->style = QTextFrameFormat::BorderStyle_Inset;
            } else {
                border->style = QTextFrameFormat::BorderStyle_Solid;
            }
        }
        return true;
    }
    if (word == "clpadt" || word == "clpadl" || word == "clpadb" || word == "clpadr") {
        const int side = word == "clpadt" ? 0 : word == "clpadl" ? 1 : word == "clpadb" ? 2 : 3;
        m_cellDef.padding[side] = std::clamp(value, 0, 1440);
        return true;
    }
    if (word == "clcbpat") {
        m_cellDef.shading = std::max(0, value);
        return true;
    }
    if (word == "clvertalt") {
        m_cellDef.verticalAlign = 0;
        return true;
    }
    if (word == "clvertalc") {
        m_cellDef.verticalAlign = 1;
        return true;
    }
    if (word == "clvertalb") {
        m_cellDef.verticalAlign = 2;
        return true;
    }
    if (word == "clmgf") {
        m_cellDef.mergeFirst = true;
        return true;
    }
    if (word == "clmrg") {
        m_cellDef.mergeNext = true;
        return true;
    }
    if (word == "clvmgf") {
        m_cellDef.vmergeFirst = true;
        return true;
    }
    if (word == "clvmrg") {
        m_cellDef.vmergeNext = true;
        return true;
    }
    if (word == "cellx") {
        if (m_rowDef.cells.size() < RtfLimits::maxTableColumns) {
            m_cellDef.rightTwips = length;
            m_rowDef.cells.append(m_cellDef);
        } else {
            damage(QStringLiteral("A table has more columns than can be shown."));
        }
        m_cellDef = CellDef();
        m_borderSide = BorderSide::None;
        return true;
    }
    if (word == "cell" || word == "nestcell") {
        if (word == "nestcell" || !inTable()) {
            // A cell of a table inside a cell, or a cell mark outside any
            // table: its text stays, set off by a tab.
            emitChar(u'\t');
            return true;
        }
        endCell();
        return true;
    }
    if (word == "row" || word == "nestrow") {
        // A row mark ends the row of an open table even after \pard: word
        // processors write "\cell\pard \row".
        if (word == "nestrow" || !m_table || m_tablesExhausted) {
            if (word == "nestrow") {
                emitChar(QChar::LineSeparator);
            } else {
                endParagraph();
            }
            return true;
        }
        endRow();
        return true;
    }
    return false;
}

bool RtfReader::handleDocumentWord(const QByteArray& word, int value)
{
    const int length = std::clamp(value, 0, 31680 * 2);
    if (word == "ansicpg") {
        if (isKnownCodePage(value)) {
            m_ansiCodePage = value;
        }
        return true;
    }
    // The character set of the document, which \ansicpg may refine.
    if (word == "ansi" || word == "mac" || word == "pc" || word == "pca") {
        m_ansiCodePage = word == "ansi" ? 1252 : word == "mac" ? 10000 : word == "pc" ? 437 : 850;
        return true;
    }
    if (word == "deff") {
        m_defaultFont = value;
        return true;
    }
    if (word == "paperw") {
        m_paper.widthTwips = std::max(length, 720);
        m_paper.stated = true;
        return true;
    }
    if (word == "paperh") {
        m_paper.heightTwips = std::max(length, 720);
        m_paper.stated = true;
        return true;
    }
    if (word == "margl") {
        m_paper.leftTwips = length;
        m_paper.stated = true;
        return true;
    }
    if (word == "margr") {
        m_paper.rightTwips = length;
        m_paper.stated = true;
        return true;
    }
    if (word == "margt") {
        m_paper.topTwips = length;
        m_paper.stated = true;
        return true;
    }
    if (word == "margb") {
        m_paper.bottomTwips = length;
        m_paper.stated = true;
        return true;
    }
    if (word == "u") {
        emitChar(char16_t(value < 0 ? value + 65536 : value & 0xFFFF));
        m_pendingSkip = group().unicodeSkip;
        return true;
    }
    if (word == "tab") {
        emitChar(u'\t');
        return true;
    }
    if (word == "line") {
        emitChar(QChar::LineSeparator);
        return true;
    }
    struct Named {
        const char* word;
        char16_t character;
    };
    static constexpr Named named[] = {
        {"emdash", u'\u2014'},  {"endash", u'\u2013'},    {"lquote", u'\u2018'},    {"rquote", u'\u2019'},
        {"ldblquote", u'\u201C'}, {"rdblquote", u'\u201D'}, {"bullet", u'\u2022'},  {"emspace", u'\u2003'},
        {"enspace", u'\u2002'}, {"qmspace", u'\u2005'},   {"zwj", u'\u200D'},       {"zwnj", u'\u200C'},
        {"zwbo", u'\u200B'},    {"ltrmark", u'\u200E'},   {"rtlmark", u'\u200F'},
    };
    for (const Named& entry : named) {
        if (word == entry.word) {
            emitChar(entry.character);
            return true;
        }
    }
    return false;
}

bool RtfReader::handlePictureWord(const QByteArray& word, int value)
{
    const qint64 length = std::clamp<qint64>(value, 0, 1'000'000);
    if (word == "pngblip") {
        m_picture.kind = PictureState::Kind::Png;
    } else if (word == "jpegblip") {
        m_picture.kind = PictureState::Kind::Jpeg;
    } else if (word == "wmetafile") {
        m_picture.kind = PictureState::Kind::Wmf;
    } else if (word == "emfblip") {
        m_picture.kind = PictureState::Kind::Emf;
    } else if (word == "dibitmap") {
        m_picture.kind = PictureState::Kind::Dib;
    } else if (word == "wbitmap") {
        m_picture.kind = PictureState::Kind::Ddb;
    } else if (word == "wbmbitspixel") {
        m_picture.bitsPerPixel = int(std::clamp<qint64>(value, 1, 32));
    } else if (word == "wbmwidthbytes") {
        m_picture.widthBytes = int(std::clamp<qint64>(value, 0, 1'000'000));
    } else if (word == "macpict" || word == "pmmetafile") {
        m_picture.kind = PictureState::Kind::Other;
    } else if (word == "picw") {
        m_picture.widthPx = length;
    } else if (word == "pich") {
        m_picture.heightPx = length;
    } else if (word == "picwgoal") {
        m_picture.goalWidth = length;
    } else if (word == "pichgoal") {
        m_picture.goalHeight = length;
    } else if (word == "picscalex") {
        m_picture.scaleX = std::clamp<qint64>(value, 1, 1000);
    } else if (word == "picscaley") {
        m_picture.scaleY = std::clamp<qint64>(value, 1, 1000);
    } else if (isSkippedDestination(word)) {
        // {\*\picprop ...} and the like inside the picture: their words are
        // read as picture words, which is harmless, and their text is not hex
        // of the picture only when it is in a skipped group.
        group().destination = Destination::Skip;
    }
    return true;
}

void RtfReader::handleControlSymbol(char symbol)
{
    if (symbol == '*') {
        m_nextIsDestination = true;
        return;
    }
    if (m_pendingSkip > 0) {
        --m_pendingSkip;
        return;
    }
    const Destination destination = group().destination;
    if (destination == Destination::Skip || destination == Destination::Picture
        || destination == Destination::ColorTable) {
        return;
    }
    switch (symbol) {
    case '\\':
    case '{':
    case '}':
        if (destination == Destination::FontTable) {
            fontTableText(char16_t(uchar(symbol)));
        } else {
            emitChar(char16_t(uchar(symbol)));
        }
        break;
    case '~':
        emitChar(u'\u00A0');
        break;
    case '-':
        emitChar(u'\u00AD');
        break;
    case '_':
        emitChar(u'\u2011');
        break;
    case '?':
        break; // a broken \'xx
    default:
        break; // \| \: and the like are of no use here
    }
}

// ---------------------------------------------------------------------------
// Text

int RtfReader::currentCodePage() const
{
    int font = group().chars.font;
    if (group().destination == Destination::FontTable) {
        font = m_fontEntry; // a font's name is in the font's own code page
    } else if (font < 0) {
        font = m_defaultFont;
    }
    const auto it = m_fonts.constFind(font);
    if (it == m_fonts.constEnd()) {
        return m_ansiCodePage;
    }
    if (it->codePage > 0 && isKnownCodePage(it->codePage)) {
        return it->codePage;
    }
    return codePageForCharset(it->charset, m_ansiCodePage);
}

DoubleByteDecoder* RtfReader::doubleByteDecoder(int codePage)
{
    auto found = m_doubleByteDecoders.find(codePage);
    if (found == m_doubleByteDecoders.end()) {
        found = m_doubleByteDecoders.emplace(codePage, std::make_unique<DoubleByteDecoder>(codePage)).first;
    }
    return found->second->isValid() ? found->second.get() : nullptr;
}

void RtfReader::resetDoubleByte()
{
    if (m_doubleBytePending) {
        m_doubleBytePending->reset();
        m_doubleBytePending = nullptr;
    }
}

void RtfReader::textByte(uchar byte)
{
    const Destination destination = group().destination;
    if (destination == Destination::Skip) {
        return;
    }
    if (destination == Destination::ColorTable) {
        if (byte == ';') {
            m_colors.append(m_colorSeen ? QColor(m_red, m_green, m_blue) : QColor());
            m_red = m_green = m_blue = 0;
            m_colorSeen = false;
        }
        return;
    }
    if (byte >= 0x80 || m_doubleBytePending) {
        const int codePage = currentCodePage();
        if (isDoubleByteCodePage(codePage)) {
            if (DoubleByteDecoder* decoder = doubleByteDecoder(codePage)) {
                if (m_doubleBytePending && m_doubleBytePending != decoder) {
                    resetDoubleByte(); // the font changed between lead and trail byte
                }
                QString decoded;
                decoder->feed(byte, decoded);
                m_doubleBytePending = decoder->pending() ? decoder : nullptr;
                for (const QChar c : std::as_const(decoded)) {
                    if (destination == Destination::ListTable) {
                        listTableText(c.unicode());
                    } else if (destination == Destination::FontTable) {
                        fontTableText(c.unicode());
                    } else if (c.unicode() >= 0x20) {
                        emitChar(c.unicode());
                    }
                }
                return;
            }
        }
        resetDoubleByte();
    }
    char16_t c = byte;
    if (byte >= 0x80) {
        const int codePage = currentCodePage();
        if (const char16_t* table = codePageUpperHalf(codePage)) {
            c = table[byte - 0x80];
            if (c == 0xFFFD) {
                c = byte; // an unassigned byte keeps its own value, as Windows does
            }
        } else if (codePage == 0) {
            c = byte == 0xB7 ? u'\u2022' : char16_t(byte); // symbol font bullet
        }
    } else if (byte < 0x20 && destination != Destination::ListTable) {
        return; // (in a level's text, characters 0 to 8 stand for numbers)
    }
    if (destination == Destination::FontTable) {
        fontTableText(c);
        return;
    }
    emitChar(c);
}

void RtfReader::fontTableText(char16_t c)
{
    if (c == u';') {
        if (m_fontEntry >= 0) {
            FontEntry& entry = m_fonts[m_fontEntry];
            entry.name = m_fontName.trimmed();
        }
        m_fontName.clear();
        return;
    }
    if (m_fontName.size() < 200) {
        m_fontName.append(QChar(c));
    }
}

void RtfReader::prepareContent()
{
    if (inTable()) {
        enterTableCell();
    } else if (m_table) {
        closeTable();
    }
}

void RtfReader::emitChar(char16_t c)
{
    const Destination destination = group().destination;
    if (destination == Destination::ListTable) {
        listTableText(c);
        return;
    }
    if (destination == Destination::Numbering) {
        if (group().numberingText == 1 && m_numberingDraft.before.size() < 32) {
            m_numberingDraft.before.append(QChar(c));
        } else if (group().numberingText == 2 && m_numberingDraft.after.size() < 32) {
            m_numberingDraft.after.append(QChar(c));
        }
        return;
    }
    if (destination != Destination::Normal) {
        return;
    }
    if (group().chars.hidden) {
        return;
    }
    prepareContent();
    if (!m_blockHasContent) {
        numberParagraph();
    }
    // While the format is unchanged the run's format is the cached one, so
    // formats are compared only after a formatting word.
    if (m_formatDirty || m_run.isEmpty()) {
        const QTextCharFormat format = currentCharFormat();
        if (!m_run.isEmpty() && format != m_runFormat) {
            flushRun();
        }
        if (m_run.isEmpty()) {
            m_runFormat = format;
        }
    }
    m_run.append(QChar(c));
    m_blockHasContent = true;
    m_paragraphEnded = false;
}

void RtfReader::flushRun()
{
    if (m_run.isEmpty()) {
        return;
    }
    m_cursor.insertText(m_run, m_runFormat);
    m_run.clear();
}

QTextCharFormat RtfReader::currentCharFormat()
{
    if (!m_formatDirty) {
        return m_cachedFormat;
    }
    const CharState& chars = group().chars;
    QTextCharFormat format;
    int fontIndex = chars.font < 0 ? m_defaultFont : chars.font;
    auto it = m_fonts.constFind(fontIndex);
    if (it == m_fonts.constEnd()) {
        it = m_fonts.constFind(m_defaultFont);
    }
    if (it != m_fonts.constEnd() && !it->name.isEmpty()) {
        format.setFontFamilies(QStringList{it->name});
        if (it->hint != QFont::AnyStyle) {
            format.setFontStyleHint(it->hint);
        }
    }
    format.setFontPointSize(chars.halfPoints / 2.0);
    if (chars.bold) {
        format.setFontWeight(QFont::Bold);
    }
    if (chars.italic) {
        format.setFontItalic(true);
    }
    if (chars.underline != QTextCharFormat::NoUnderline) {
        format.setUnderlineStyle(chars.underline);
    }
    if (chars.strike) {
        format.setFontStrikeOut(true);
    }
    if (chars.smallCaps) {
        format.setFontCapitalization(QFont::SmallCaps);
    } else if (chars.allCaps) {
        format.setFontCapitalization(QFont::AllUppercase);
    }
    const QColor foreground = color(chars.foreground);
    if (foreground.isValid()) {
        format.setForeground(foreground);
    }
    const QColor background = color(chars.background);
    if (background.isValid()) {
        format.setBackground(background);
    }
    if (chars.vertical > 0) {
        format.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
    } else if (chars.vertical < 0) {
        format.setVerticalAlignment(QTextCharFormat::AlignSubScript);
    }
    m_cachedFormat = format;
    m_formatDirty = false;
    return format;
}

QTextBlockFormat RtfReader::currentBlockFormat() const
{
    const ParaState& para = group().para;
    QTextBlockFormat format;
    format.setAlignment(para.alignment);
    if (para.left != 0) {
        format.setLeftMargin(twipsToUnits(para.left));
    }
    if (para.right != 0) {
        format.setRightMargin(twipsToUnits(para.right));
    }
    if (para.first != 0) {
        format.setTextIndent(twipsToUnits(para.first));
    }
    if (para.before != 0) {
        format.setTopMargin(twipsToUnits(para.before));
    }
    if (para.after != 0) {
        format.setBottomMargin(twipsToUnits(para.after));
    }
    if (para.lineSpacing != 0) {
        if (para.lineMultiple) {
            format.setLineHeight(std::clamp(para.lineSpacing * 100.0 / 240.0, 10.0, 1000.0),
                                 QTextBlockFormat::ProportionalHeight);
        } else if (para.lineSpacing > 0) {
            format.setLineHeight(twipsToUnits(para.lineSpacing), QTextBlockFormat::MinimumHeight);
        } else {
            format.setLineHeight(twipsToUnits(-para.lineSpacing), QTextBlockFormat::FixedHeight);
        }
    }
    // RTF measures tab stops from the text's left edge, Qt from where the
    // paragraph's first line begins. A hanging indent is a tab stop of its
    // own when no stop comes before it, which is what puts a list item's text
    // after its number.
    const int lineStart = para.left + para.first;
    QList<QTextOption::Tab> tabs;
    bool stopBeforeIndent = false;
    for (const QTextOption::Tab& tab : para.tabs) {
        const int position = int(tab.position);
        if (position > lineStart && position <= para.left) {
            stopBeforeIndent = true;
        }
        if (position > lineStart) {
            tabs.append(QTextOption::Tab(twipsToUnits(position - lineStart), tab.type, tab.delimiter));
        }
    }
    if (para.first < 0 && !stopBeforeIndent) {
        tabs.append(QTextOption::Tab(twipsToUnits(-para.first), QTextOption::LeftTab));
        std::sort(tabs.begin(), tabs.end(),
                  [](const QTextOption::Tab& a, const QTextOption::Tab& b) { return a.position < b.position; });
    }
    if (!tabs.isEmpty()) {
        format.setTabPositions(tabs);
    }
    if (para.keepWithNext) {
        format.setProperty(RichTextLayout::keepWithNextProperty, true);
    }
    if (para.pageBreakBefore || m_pageBreakPending) {
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    }
    return format;
}

void RtfReader::endParagraph(bool pageBreakAfter)
{
    if (group().destination != Destination::Normal) {
        return;
    }
    flushRun();
    m_cursor.setBlockFormat(currentBlockFormat());
    stampSection();
    m_pageBreakPending = pageBreakAfter;
    m_cursor.insertBlock(QTextBlockFormat(), m_runFormat);
    m_blockHasContent = false;
    m_paragraphEnded = true;
    // A list paragraph whose marker the file wrote out still counts, so that
    // a paragraph after it without one gets the next number.
    if (!m_listCounted && m_listTextGiven && group().para.list > 0) {
        QChar follow;
        nextListLabel(group().para, &follow);
    }
    m_listCounted = false;
    m_listTextGiven = false;
}

// ---------------------------------------------------------------------------
// Tables

void RtfReader::enterTableCell()
{
    if (group().destination != Destination::Normal) {
        return;
    }
    if (m_table && !m_rowPending) {
        if (!m_cellAdvance) {
            return; // already in the cell
        }
        flushRun();
        m_cellAdvance = false;
        if (m_tableCol + 1 >= m_table->columns()) {
            if (m_table->columns() >= RtfLimits::maxTableColumns) {
                // Too many cells: what follows goes into the last cell, set off by a tab.
                // (The cursor is at the end of that cell already.)
                damage(QStringLiteral("A table has more columns than can be shown."));
                m_cursor.insertText(QStringLiteral("\t"));
                return;
            }
            m_table->appendColumns(1);
            m_cellCount += m_table->rows();
        }
        ++m_tableCol;
        m_cursor = m_table->cellAt(m_tableRow, m_tableCol).firstCursorPosition();
        m_blockHasContent = false;
        return;
    }
    flushRun();
    if (m_cellCount >= RtfLimits::maxTableCells) {
        damage(QStringLiteral("A table has more cells than can be shown."));
        return;
    }
    const int columns = std::clamp(int(m_rowDef.cells.size()), 1, RtfLimits::maxTableColumns);
    if (m_table && m_tableRow + 1 >= m_table->rows()) {
        // Rows are made in growing batches: each insertion of rows costs a
        // pass over the whole document. Rows left over are removed when the
        // table closes; a very long table goes on as a table of its own.
        if (m_table->rows() >= RtfLimits::rowsPerTable) {
            closeTable();
        } else {
            m_table->appendRows(std::min(m_table->rows(), RtfLimits::rowsPerTable - m_table->rows()));
        }
    }
    if (!m_table && m_tableCount >= RtfLimits::maxTables) {
        damage(QStringLiteral("The file has more tables than can be shown; the rest are shown as lines."));
        m_tablesExhausted = true;
        return;
    }
    if (!m_table) {
        ++m_tableCount;
        QTextTableFormat format;
        format.setBorder(0);
        format.setBorderCollapse(true);
        const CellBorder& outside = m_rowDef.outside;
        if (outside.present && outside.widthTwips > 0) {
            // The table's own border. Lines between the cells that no cell
            // draws itself come from the table as well: each cell is then
            // framed apart, as the notepad makes a table with a grid.
            format.setBorder(std::max(twipsToUnits(outside.widthTwips), 0.5));
            format.setBorderStyle(outside.style);
            format.setBorderBrush(color(outside.color).isValid() ? color(outside.color) : QColor(Qt::black));
            const bool cellsHaveBorders = std::any_of(m_rowDef.cells.begin(), m_rowDef.cells.end(),
                [](const CellDef& cell) {
                    return std::any_of(std::begin(cell.borders), std::end(cell.borders),
                                       [](const CellBorder& b) { return b.present; });
                });
            if (m_rowDef.inside.present && m_rowDef.inside.widthTwips > 0 && !cellsHaveBorders) {
                format.setBorderCollapse(false);
            }
        }
        format.setCellSpacing(0);
        format.setCellPadding(0);
        format.setAlignment(m_rowDef.alignment);
        m_cursor.setBlockFormat(QTextBlockFormat());
        m_table = m_cursor.insertTable(4, columns, format);
        m_tableRow = 0;
        m_tableRows.clear();
    } else {
        ++m_tableRow;
        if (m_table->columns() < columns) {
            m_table->appendColumns(columns - m_table->columns());
        }
    }
    m_cellCount += m_table->columns();
    m_tableCol = 0;
    m_rowPending = false;
    m_cellAdvance = false;
    m_cursor = m_table->cellAt(m_tableRow, 0).firstCursorPosition();
    m_blockHasContent = false;
}

void RtfReader::endCell()
{
    enterTableCell();
    if (!m_table) {
        return;
    }
    flushRun();
    m_cursor.setBlockFormat(currentBlockFormat());
    stampSection();
    m_cellAdvance = true;
}

void RtfReader::endRow()
{
    if (!m_table || m_rowPending) {
        // A row mark with no cell content (an empty row): make the row all the same.
        enterTableCell();
        if (!m_table) {
            return;
        }
    }
    flushRun();
    // "\trowd \row" after the cells: the row is the one the cells were
    // defined for.
    const RowDef& def = m_rowDef.cells.isEmpty() ? m_previousRowDef : m_rowDef;
    applyRowFormats(m_tableRow, def);
    m_tableRows.push_back(def);
    m_rowPending = true;
    m_cellAdvance = false;
    m_blockHasContent = false;
}

void RtfReader::applyRowFormats(int row, const RowDef& def)
{
    if (!m_table || row < 0 || row >= m_table->rows()) {
        return;
    }
    const int count = std::min(int(def.cells.size()), m_table->columns());
    for (int column = 0; column < count; ++column) {
        const CellDef& cellDef = def.cells.at(column);
        QTextTableCell cell = m_table->cellAt(row, column);
        if (!cell.isValid()) {
            continue;
        }
        QTextTableCellFormat format = cell.format().toTableCellFormat();
        auto padding = [&](int side, int fallback) {
            return twipsToUnits(cellDef.padding[side] >= 0 ? cellDef.padding[side] : fallback);
        };
        format.setTopPadding(padding(0, 0));
        format.setLeftPadding(padding(1, def.sidePadding(1)));
        format.setBottomPadding(padding(2, 0));
        format.setRightPadding(padding(3, def.sidePadding(3)));
        for (int side = 0; side < 4; ++side) {
            const CellBorder& border = cellDef.borders[side];
            const qreal width = border.present ? std::max(twipsToUnits(border.widthTwips), 0.5) : 0.0;
            const QColor borderColor = color(border.color).isValid() ? color(border.color) : QColor(Qt::black);
            const QTextFrameFormat::BorderStyle style
                = border.present ? border.style : QTextFrameFormat::BorderStyle_None;
            switch (side) {
            case 0:
                format.setTopBorder(width);
                format.setTopBorderStyle(style);
                format.setTopBorderBrush(borderColor);
                break;
            case 1:
                format.setLeftBorder(width);
                format.setLeftBorderStyle(style);
                format.setLeftBorderBrush(borderColor);
                break;
            case 2:
                format.setBottomBorder(width);
                format.setBottomBorderStyle(style);
                format.setBottomBorderBrush(borderColor);
                break;
            default:
                format.setRightBorder(width);
                format.setRightBorderStyle(style);
                format.setRightBorderBrush(borderColor);
                break;
            }
        }
        const QColor shading = color(cellDef.shading);
        if (shading.isValid()) {
            format.setBackground(shading);
        }
        if (cellDef.verticalAlign == 1) {
            format.setVerticalAlignment(QTextCharFormat::AlignMiddle);
        } else if (cellDef.verticalAlign == 2) {
            format.setVerticalAlignment(QTextCharFormat::AlignBottom);
        }
        if (def.heightTwips != 0) {
            format.setProperty(RichTextLayout::rowHeightProperty, std::abs(def.heightTwips));
        }
        cell.setFormat(format);
        if (cellDef.vertical) {
            for (QTextFrame::iterator it = cell.begin(); !it.atEnd(); ++it) {
                const QTextBlock block = it.currentBlock();
                if (block.isValid()) {
                    QTextBlockFormat blockFormat = block.blockFormat();
                    blockFormat.setNonBreakableLines(true);
                    QTextCursor(block).setBlockFormat(blockFormat);
                }
            }
        }
    }
}

void RtfReader::closeTable()
{
    if (!m_table) {
        return;
    }
    flushRun();
    QTextTable* table = m_table;
    m_table = nullptr;
    const int usedRows = std::max(1, m_tableRow + 1);
    if (table->rows() > usedRows) {
        table->removeRows(usedRows, table->rows() - usedRows);
    }
    m_rowPending = true;
    m_cellAdvance = false;

    // Column widths from the row with the most cells.
    const RowDef* widest = nullptr;
    for (const RowDef& def : m_tableRows) {
        if (!widest || def.cells.size() > widest->cells.size()) {
            widest = &def;
        }
    }
    QTextTableFormat format = table->format();
    if (widest && !widest->cells.isEmpty()) {
        QList<QTextLength> widths;
        int left = widest->leftTwips;
        for (const CellDef& cell : widest->cells) {
            const int width = std::max(cell.rightTwips - left, 60);
            widths.append(QTextLength(QTextLength::FixedLength, twipsToUnits(width)));
            left = cell.rightTwips;
        }
        // Qt sets a table with collapsed borders off by its first cell's
        // padding and border (and a centred one by that much again); the last
        // column gives that room back so that the table ends within the text's
        // right edge as it does in the file.
        if (!widths.isEmpty()) {
            const CellDef& first = widest->cells.constFirst();
            const int shift = 2 * ((first.padding[1] >= 0 ? first.padding[1] : widest->sidePadding(1))
                                   + int(std::max(first.borders[1].widthTwips,
                                                  widest->cells.constLast().borders[3].widthTwips)));
            QTextLength& last = widths.last();
            last = QTextLength(QTextLength::FixedLength,
                               std::max(last.rawValue() - twipsToUnits(shift), twipsToUnits(60)));
        }
        while (widths.size() < table->columns()) {
            widths.append(QTextLength(QTextLength::VariableLength, 0));
        }
        widths.resize(table->columns());
        format.setColumnWidthConstraints(widths);
        format.setAlignment(widest->alignment);
        // Word processors start a cell's text at the cell's left edge as the
        // row gives it (\trleft, \cellx), its padding reaching out to the
        // left; Qt puts the padding and border inside. The table moves left
        // by them so that its text stands where theirs does.
        if (widest->alignment == Qt::AlignLeft && !widest->cells.isEmpty()) {
            const CellDef& first = widest->cells.constFirst();
            const int inside = (first.padding[1] >= 0 ? first.padding[1] : widest->sidePadding(1))
                               + int(first.borders[1].present ? first.borders[1].widthTwips : 0);
            const int margin = widest->leftTwips - inside;
            if (margin != 0) {
                format.setLeftMargin(twipsToUnits(margin));
            }
        }
    }
    int headerRows = 0;
    while (headerRows < int(m_tableRows.size()) && m_tableRows.at(size_t(headerRows)).header) {
        ++headerRows;
    }
    format.setHeaderRowCount(headerRows);
    table->setFormat(format);

    // Merged cells, as far as the rows say so consistently.
    const int rows = std::min(int(m_tableRows.size()), table->rows());
    for (int row = 0; row < rows; ++row) {
        const RowDef& def = m_tableRows.at(size_t(row));
        for (int column = 0; column < int(def.cells.size()) && column < table->columns(); ++column) {
            if (!def.cells.at(column).mergeFirst) {
                continue;
            }
            int span = 1;
            while (column + span < int(def.cells.size()) && column + span < table->columns()
                   && def.cells.at(column + span).mergeNext) {
                ++span;
            }
            if (span > 1) {
                table->mergeCells(row, column, 1, span);
            }
        }
    }
    for (int column = 0; column < table->columns(); ++column) {
        for (int row = 0; row < rows; ++row) {
            const RowDef& def = m_tableRows.at(size_t(row));
            if (column >= def.cells.size() || !def.cells.at(column).vmergeFirst) {
                continue;
            }
            int span = 1;
            while (row + span < rows) {
                const RowDef& below = m_tableRows.at(size_t(row + span));
                if (column >= below.cells.size() || !below.cells.at(column).vmergeNext) {
                    break;
                }
                ++span;
            }
            if (span > 1 && table->cellAt(row, column).columnSpan() == 1) {
                table->mergeCells(row, column, span, 1);
            }
        }
    }
    m_tableRows.clear();

    // Text goes on after the table.
    m_cursor = table->lastCursorPosition();
    m_cursor.movePosition(QTextCursor::NextBlock);
    m_blockHasContent = false;
}

// ---------------------------------------------------------------------------
// Pictures

void RtfReader::pictureHex(char c)
{
    int value = -1;
    if (c >= '0' && c <= '9') {
        value = c - '0';
    } else if (c >= 'a' && c <= 'f') {
        value = c - 'a' + 10;
    } else if (c >= 'A' && c <= 'F') {
        value = c - 'A' + 10;
    }
    if (value < 0 || m_picture.overflow) {
        return;
    }
    if (m_picture.kind == PictureState::Kind::Other) {
        return; // pictures this reader cannot draw: no need to keep them
    }
    if (m_picture.pendingNibble < 0) {
        m_picture.pendingNibble = value;
        return;
    }
    if (m_picture.bytes.size() >= RtfLimits::maxPictureBytes) {
        m_picture.overflow = true;
        m_picture.bytes.clear();
        return;
    }
    m_picture.bytes.append(char(m_picture.pendingNibble * 16 + value));
    m_picture.pendingNibble = -1;
}

void RtfReader::finishPicture()
{
    PictureState picture = std::move(m_picture);
    m_picture = PictureState();
    if (picture.overflow) {
        damage(QStringLiteral("A picture is too large to be shown."));
        return;
    }
    if (picture.kind == PictureState::Kind::None || picture.kind == PictureState::Kind::Other
        || picture.bytes.isEmpty()) {
        return;
    }
    if (m_allPictureBytes + picture.bytes.size() > RtfLimits::maxAllPictureBytes) {
        damage(QStringLiteral("The pictures of the file are too large to be shown."));
        return;
    }
    m_allPictureBytes += picture.bytes.size();

    // The shown size in twips: the goal size times the scale, when the file
    // gives one.
    QSizeF shownTwips;
    if (picture.goalWidth > 0 && picture.goalHeight > 0) {
        shownTwips = QSizeF(qreal(picture.goalWidth) * picture.scaleX / 100.0,
                            qreal(picture.goalHeight) * picture.scaleY / 100.0);
    }

    // Some generators label a PNG or JPEG as a metafile; the bytes say what
    // the picture is.
    if (picture.bytes.startsWith("\x89PNG\r\n\x1a\n")) {
        picture.kind = PictureState::Kind::Png;
    } else if (picture.bytes.startsWith("\xff\xd8\xff")) {
        picture.kind = PictureState::Kind::Jpeg;
    }

    QImage image;
    switch (picture.kind) {
    case PictureState::Kind::Png:
    case PictureState::Kind::Jpeg: {
        QBuffer buffer(&picture.bytes);
        buffer.open(QIODevice::ReadOnly);
        QImageReader reader(&buffer, picture.kind == PictureState::Kind::Png ? "png" : "jpeg");
        reader.setAllocationLimit(int(RtfLimits::maxPicturePixels * 4 / (1024 * 1024)) + 1);
        const QSize size = reader.size();
        if (!size.isValid() || size.width() > RtfLimits::maxPictureSide || size.height() > RtfLimits::maxPictureSide
            || qint64(size.width()) * size.height() > RtfLimits::maxPicturePixels) {
            damage(size.isValid() ? QStringLiteral("A picture is too large to be shown.")
                                  : QStringLiteral("A picture of the file is damaged."));
            return;
        }
        if (!reader.read(&image)) {
            image = QImage();
        }
        break;
    }
    case PictureState::Kind::Wmf:
    case PictureState::Kind::Emf: {
        // A metafile is drawn at 150 dots to the inch of the size it is shown
        // at: sharp on paper, and small enough to lay out quickly.
        const bool windows = picture.kind == PictureState::Kind::Wmf;
        if (!shownTwips.isValid() || shownTwips.isEmpty()) {
            const QSize own = windows ? windowsMetafileTwips(picture.bytes) : enhancedMetafileTwips(picture.bytes);
            if (own.isValid() && !own.isEmpty()) {
                shownTwips = QSizeF(own) * (picture.scaleX / 100.0);
            } else if (windows && picture.widthPx > 0 && picture.heightPx > 0) {
                // \picw and \pich of a metafile are in hundredths of a millimetre.
                shownTwips = QSizeF(picture.widthPx * 1440.0 / 2540.0, picture.heightPx * 1440.0 / 2540.0);
            } else {
                shownTwips = QSizeF(1440, 1440);
            }
        }
        const QSize pixels(std::clamp(int(shownTwips.width() * 150 / 1440), 1, 2400),
                           std::clamp(int(shownTwips.height() * 150 / 1440), 1, 2400));
        image = windows ? renderWindowsMetafile(picture.bytes, pixels) : renderEnhancedMetafile(picture.bytes, pixels);
        break;
    }
    case PictureState::Kind::Dib:
        image = decodeDeviceIndependentBitmap(picture.bytes);
        break;
    case PictureState::Kind::Ddb:
        image = decodeDeviceDependentBitmap(picture.bytes, int(picture.widthPx), int(picture.heightPx),
                                            picture.widthBytes, picture.bitsPerPixel);
        break;
    case PictureState::Kind::None:
    case PictureState::Kind::Other:
        return;
    }
    if (image.isNull()) {
        damage(QStringLiteral("A picture of the file is damaged."));
        return;
    }
    clearRowPadding(image);
    if (image.width() > RtfLimits::maxPictureSide || image.height() > RtfLimits::maxPictureSide
        || qint64(image.width()) * image.height() > RtfLimits::maxPicturePixels) {
        damage(QStringLiteral("A picture is too large to be shown."));
        return;
    }
    if (m_allPicturePixels + qint64(image.width()) * image.height() > RtfLimits::maxAllPicturePixels) {
        damage(QStringLiteral("The pictures of the file are too large to be shown."));
        return;
    }
    m_allPicturePixels += qint64(image.width()) * image.height();

    // Shown size: the goal size in twips times the scale, else the picture's
    // own pixels at the screen's resolution.
    qreal widthUnits = image.width();
    qreal heightUnits = image.height();
    if (shownTwips.isValid() && !shownTwips.isEmpty()) {
        widthUnits = twipsToUnits(shownTwips.width());
        heightUnits = twipsToUnits(shownTwips.height());
    } else {
        widthUnits = widthUnits * picture.scaleX / 100.0;
        heightUnits = heightUnits * picture.scaleY / 100.0;
    }
    // No picture is larger than the largest paper.
    const qreal largest = twipsToUnits(31680);
    widthUnits = std::clamp(widthUnits, 1.0, largest);
    heightUnits = std::clamp(heightUnits, 1.0, largest);

    const QString name = QStringLiteral("rtfpicture%1.png").arg(++m_pictureCount);
    m_document.addResource(QTextDocument::ImageResource, QUrl(name), image);
    QTextImageFormat format;
    format.setName(name);
    format.setWidth(widthUnits);
    format.setHeight(heightUnits);
    prepareContent();
    flushRun();
    m_cursor.insertImage(format);
    m_blockHasContent = true;
    m_paragraphEnded = false;
}

// ---------------------------------------------------------------------------
// Sections, headers, footers and notes

bool RtfReader::handleSectionWord(const QByteArray& word, int value)
{
    const int length = std::clamp(value, 0, 31680 * 2);
    if (word == "chftn") {
        // A footnote's mark: the number of the note that follows (inside a
        // note it is filled in when the note is kept), marked as such so that
        // the note can be written back where it belongs.
        if (group().destination == Destination::Normal && !group().chars.hidden) {
            flushRun();
            prepareContent();
            QTextCharFormat format = currentCharFormat();
            format.setProperty(noteReferenceProperty, int(m_notes.size() + 1));
            m_cursor.insertText(QString::number(m_notes.size() + 1), format);
            m_blockHasContent = true;
            m_paragraphEnded = false;
        }
        return true;
    }
    if (word == "landscape") {
        m_landscape = true;
        return true;
    }
    if (word == "facingp") {
        m_facingPages = true;
        return true;
    }
    if (!word.startsWith("s") && !word.endsWith("sxn") && !word.startsWith("header") && !word.startsWith("footer")
        && word != "titlepg" && word != "lndscpsxn") {
        return false;
    }
    DocumentSection& section = m_section;
    if (word == "sectd") {
        section.newPage = true;
        section.widthTwips = section.heightTwips = 0;
        section.landscape = false;
        section.leftTwips = section.topTwips = section.rightTwips = section.bottomTwips = -1;
        section.headerY = section.footerY = 720;
        section.titlePage = false;
    } else if (word == "sbknone") {
        section.newPage = false;
    } else if (word == "sbkpage" || word == "sbkodd" || word == "sbkeven" || word == "sbkcol") {
        section.newPage = true;
    } else if (word == "pgwsxn") {
        section.widthTwips = std::max(length, 720);
    } else if (word == "pghsxn") {
        section.heightTwips = std::max(length, 720);
    } else if (word == "lndscpsxn") {
        section.landscape = true;
    } else if (word == "marglsxn") {
        section.leftTwips = length;
    } else if (word == "margrsxn") {
        section.rightTwips = length;
    } else if (word == "margtsxn") {
        section.topTwips = length;
    } else if (word == "margbsxn") {
        section.bottomTwips = length;
    } else if (word == "headery") {
        section.headerY = length;
    } else if (word == "footery") {
        section.footerY = length;
    } else if (word == "titlepg") {
        section.titlePage = true;
    } else {
        return false;
    }
    m_sectionsUsed = true;
    return true;
}

bool RtfReader::startCapture(const QByteArray& word)
{
    static const QList<QByteArray> words{"header",  "headerl", "headerr", "headerf", "footer",
                                         "footerl", "footerr", "footerf", "footnote"};
    if (!words.contains(word)) {
        return false;
    }
    flushRun();
    group().capture = word;
    group().captureFrom = m_tokenizer.position();
    if (word != "footnote") {
        m_sectionsUsed = true;
    }
    return true;
}

void RtfReader::finishCapture(const Group& closing)
{
    constexpr qsizetype largest = 1024 * 1024;
    const qsizetype end = m_tokenizer.position() - 1; // the group's closing brace
    if (end <= closing.captureFrom || end - closing.captureFrom > largest) {
        return;
    }
    QByteArray rtf = "{\\rtf1\\ansi\\ansicpg" + QByteArray::number(m_ansiCodePage) + "\\deff"
                     + QByteArray::number(m_defaultFont) + (m_tableBytes.isEmpty() ? " " : m_tableBytes)
                     + m_data.mid(closing.captureFrom, end - closing.captureFrom) + "}";
    m_keptBytes += rtf.size();
    if (m_keptBytes > RtfLimits::maxKeptBytes) {
        damage(QStringLiteral("The file has more headers, footers or notes than can be printed."));
        return;
    }
    const QByteArray& word = closing.capture;
    if (word == "footnote") {
        if (m_notes.size() < 10000) {
            m_notes.append(replaceControlWord(rtf, "chftn", '{' + QByteArray::number(m_notes.size() + 1) + '}'));
        }
        return;
    }
    rtf = pageFieldsAsCounter(rtf);
    DocumentSection& section = m_section;
    QByteArray* target = word == "header"    ? &section.header
                         : word == "headerl" ? &section.headerLeft
                         : word == "headerr" ? &section.headerRight
                         : word == "headerf" ? &section.headerFirst
                         : word == "footer"  ? &section.footer
                         : word == "footerl" ? &section.footerLeft
                         : word == "footerr" ? &section.footerRight
                                             : &section.footerFirst;
    *target = rtf;
}

// ---------------------------------------------------------------------------
// Old paragraph numbering

void RtfReader::handleNumberingWord(const QByteArray& word, int value)
{
    using Kind = LegacyNumbering::Kind;
    LegacyNumbering& n = m_numberingDraft;
    if (word == "pntxtb") {
        group().numberingText = 1;
    } else if (word == "pntxta") {
        group().numberingText = 2;
    } else if (word == "pnlvlblt") {
        n.kind = Kind::Bullet;
    } else if (word == "pnlvlcont") {
        n.kind = Kind::None; // a paragraph that goes on in the item above, without a number
    } else if (word == "pndec" || word == "pnord" || word == "pncard" || word == "pnordt" || word == "pncardt") {
        n.kind = Kind::Decimal;
    } else if (word == "pnucltr") {
        n.kind = Kind::UpperLetter;
    } else if (word == "pnlcltr") {
        n.kind = Kind::LowerLetter;
    } else if (word == "pnucrm") {
        n.kind = Kind::UpperRoman;
    } else if (word == "pnlcrm") {
        n.kind = Kind::LowerRoman;
    } else if (word == "pnstart") {
        n.start = std::clamp(value, 0, 32767);
    }
}

// ---------------------------------------------------------------------------
// The list table

void RtfReader::handleListWord(const QByteArray& word, int value)
{
    ListLevel* level = m_listDraftOpen && !m_listDraft.levels.isEmpty() ? &m_listDraft.levels.last() : nullptr;
    if (word == "list") {
        group().listOwner = 1;
        m_listDraft = ListDefinition();
        m_listDraftOpen = true;
        m_listDraftId = 0;
    } else if (word == "listoverride") {
        group().listOwner = 2;
        m_listDraftOpen = false;
        m_overrideDraftList = 0;
        m_overrideDraftNumber = 0;
    } else if (word == "listlevel") {
        if (m_listDraftOpen && m_listDraft.levels.size() < 9) {
            m_listDraft.levels.append(ListLevel());
        } else {
            group().destination = Destination::Skip; // a tenth level, or a level of an override
        }
    } else if (word == "listid") {
        if (m_listDraftOpen) {
            m_listDraftId = value;
        } else {
            m_overrideDraftList = value;
        }
    } else if (word == "ls") {
        m_overrideDraftNumber = value;
    } else if (word == "leveltext") {
        group().listText = 1;
    } else if (word == "levelnumbers" || word == "listname") {
        group().listText = 3;
    } else if (level && (word == "levelnfc" || word == "levelnfcn")) {
        level->format = value;
    } else if (level && word == "levelstartat") {
        level->start = std::clamp(value, 0, 32767);
    } else if (level && word == "levelfollow") {
        level->follow = value;
    } else if (word == "u") {
        listTableText(char16_t(value < 0 ? value + 65536 : value & 0xFFFF));
        m_pendingSkip = group().unicodeSkip;
    } else if (word == "uc") {
        group().unicodeSkip = std::clamp(value, 0, 10);
    } else if (word == "tab") {
        listTableText(u'\t');
    } else if (word == "bullet") {
        listTableText(u'\u2022');
    } else if (word == "listpicture" || word == "levelpicture") {
        group().destination = Destination::Skip;
    }
}

void RtfReader::listTableText(char16_t c)
{
    if (!m_listDraftOpen || m_listDraft.levels.isEmpty()) {
        return;
    }
    ListLevel& level = m_listDraft.levels.last();
    if (group().listText == 1 && !level.textEnded) {
        if (c == u';') {
            level.textEnded = true;
        } else if (level.text.size() < 64) {
            level.text.append(QChar(c));
        }
    } else if (group().listText == 2 && level.marker.size() < 64) {
        level.marker.append(QChar(c));
    }
}

namespace {

QString letters(int number, char16_t first);
QString roman(int number, bool upper);

// A number as a level of a list writes it.
QString listNumber(int number, int format)
{
    switch (format) {
    case 1:
        return roman(number, true);
    case 2:
        return roman(number, false);
    case 3:
        return letters(number, u'A');
    case 4:
        return letters(number, u'a');
    case 22:
        return QString::number(number).rightJustified(2, QLatin1Char('0'));
    case 23:
    case 255:
        return {};
    default:
        return QString::number(number);
    }
}

// A bullet of a symbol font (Symbol, Wingdings) stands in the private area
// of Unicode, where ordinary fonts have nothing: it prints as a plain bullet.
QString plainBullet(QString text)
{
    for (QChar& c : text) {
        if (c.unicode() >= 0xF000 && c.unicode() <= 0xF0FF) {
            c = QChar(0x2022);
        }
    }
    return text;
}

} // namespace

// The marker of the next paragraph of the list and level `para` names (the
// numbers of the deeper levels begin again after it), and what follows it.
QString RtfReader::nextListLabel(const ParaState& para, QChar* follow)
{
    const auto override = m_listOverrides.constFind(para.list);
    const int listId = override != m_listOverrides.constEnd() ? *override : -1;
    const auto list = m_lists.constFind(listId);
    if (list == m_lists.constEnd() || list->levels.isEmpty()) {
        *follow = QChar();
        return {};
    }
    const int levelIndex = std::min<int>(para.level, int(list->levels.size()) - 1);
    std::array<int, 9>& counters = m_listCounters[listId];
    const ListLevel& level = list->levels.at(levelIndex);
    counters[levelIndex] = counters[levelIndex] > 0 ? counters[levelIndex] + 1 : std::max(level.start, 0) + 1;
    std::fill(counters.begin() + levelIndex + 1, counters.end(), 0);
    // Counters hold the number plus one, so that 0 means "not begun".
    const auto numberOf = [&](int index) {
        const int stored = counters[index];
        const ListLevel& other = list->levels.at(std::min<int>(index, int(list->levels.size()) - 1));
        return listNumber(stored > 0 ? stored - 1 : std::max(other.start, 0), other.format);
    };

    *follow = level.follow == 1 ? QChar(u' ') : level.follow == 2 ? QChar() : QChar(u'\t');
    if (!level.marker.isEmpty()) {
        static const std::pair<const char*, const char16_t*> bullets[] = {{"{disc}", u"\u2022"},
            {"{circle}", u"\u25E6"}, {"{square}", u"\u25AA"}, {"{hyphen}", u"\u2043"}, {"{check}", u"\u2713"},
            {"{diamond}", u"\u25C6"}, {"{box}", u"\u2610"}};
        QString text = level.marker;
        for (const auto& [name, bullet] : bullets) {
            text.replace(QLatin1String(name), QString::fromUtf16(bullet));
        }
        static const std::pair<const char*, int> numbers[] = {{"{decimal}", 0}, {"{decimal-leading-zero}", 22},
            {"{upper-roman}", 1}, {"{lower-roman}", 2}, {"{upper-alpha}", 3}, {"{upper-latin}", 3},
            {"{lower-alpha}", 4}, {"{lower-latin}", 4}};
        for (const auto& [name, format] : numbers) {
            text.replace(QLatin1String(name), listNumber(counters[levelIndex] - 1, format));
        }
        return text;
    }
    if (level.format == 23) {
        QString text;
        for (const QChar c : level.text.mid(1)) {
            if (c.unicode() > 8) {
                text += c;
            }
        }
        return text.isEmpty() ? QStringLiteral("\u2022") : plainBullet(text);
    }
    if (level.text.isEmpty()) {
        return numberOf(levelIndex) + QLatin1Char('.');
    }
    QString text;
    for (const QChar c : level.text.mid(1)) { // the first character is the text's length
        if (c.unicode() <= 8) {
            if (c.unicode() <= levelIndex) {
                text += numberOf(c.unicode());
            }
        } else {
            text += c;
        }
    }
    return plainBullet(text);
}

namespace {

QString letters(int number, char16_t first)
{
    // 1 a, 26 z, 27 aa, 28 bb, as word processors count.
    if (number <= 0) {
        return QString::number(number);
    }
    const int repeat = (number - 1) / 26 + 1;
    return QString(std::min(repeat, 10), QChar(char16_t(first + (number - 1) % 26)));
}

QString roman(int number, bool upper)
{
    if (number <= 0 || number >= 4000) {
        return QString::number(number);
    }
    static const std::pair<int, const char*> parts[] = {{1000, "m"}, {900, "cm"}, {500, "d"}, {400, "cd"},
        {100, "c"}, {90, "xc"}, {50, "l"}, {40, "xl"}, {10, "x"}, {9, "ix"}, {5, "v"}, {4, "iv"}, {1, "i"}};
    QString text;
    for (const auto& [value, digits] : parts) {
        while (number >= value) {
            text += QLatin1String(digits);
            number -= value;
        }
    }
    return upper ? text.toUpper() : text;
}

} // namespace

// Puts the old-style number or bullet before the text of a paragraph that
// has one, unless the file wrote it out itself. Paragraphs numbered alike
// count on from the one before; another kind of numbering starts again.
void RtfReader::numberParagraph()
{
    using Kind = LegacyNumbering::Kind;
    const LegacyNumbering& numbering = group().para.numbering;
    const bool given = std::exchange(m_numberTextGiven, false);
    m_listTextGiven = m_listTextGiven || given;
    if (!given && group().para.list > 0 && !m_listCounted) {
        // A paragraph of the list table without its marker's text (text
        // editors on the Mac leave it out): the list says what it is.
        m_listCounted = true;
        QChar follow;
        const QString label = nextListLabel(group().para, &follow);
        if (!label.isEmpty() || !follow.isNull()) {
            flushRun();
            m_cursor.insertText(follow.isNull() ? label : label + follow, currentCharFormat());
        }
        return;
    }
    if (given || numbering.kind == Kind::None) {
        return;
    }
    int number = numbering.start;
    if (numbering == m_lastNumbering) {
        number = m_lastNumber + 1;
    }
    m_lastNumbering = numbering;
    m_lastNumber = number;
    QString label;
    switch (numbering.kind) {
    case Kind::Decimal:
        label = QString::number(number);
        break;
    case Kind::UpperLetter:
        label = letters(number, u'A');
        break;
    case Kind::LowerLetter:
        label = letters(number, u'a');
        break;
    case Kind::UpperRoman:
        label = roman(number, true);
        break;
    case Kind::LowerRoman:
        label = roman(number, false);
        break;
    default:
        break;
    }
    flushRun();
    m_cursor.insertText(numbering.before + label + numbering.after + QLatin1Char('\t'), currentCharFormat());
}

void RtfReader::stampSection()
{
    if (m_sectionBegun || group().destination != Destination::Normal) {
        return;
    }
    m_sectionBegun = true;
    ++m_sectionsBegun;
    if (!m_sectionsUsed) {
        return; // a plain document: nothing to mark
    }
    if (m_sections.size() >= RtfLimits::maxSections) {
        damage(QStringLiteral("The file has more sections than can be printed; the last ones run on."));
        return;
    }
    QTextBlockFormat format;
    format.setProperty(sectionProperty, int(m_sections.size()));
    if (m_sectionsBegun > 1 && m_section.newPage) {
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    }
    m_sections.append(m_section);
    m_cursor.mergeBlockFormat(format);
}

} // namespace

RtfReadResult readRtf(const QByteArray& rtf, QTextDocument& document)
{
    RtfReader reader(rtf, document);
    return reader.read();
}

} // namespace pvardo::documents
