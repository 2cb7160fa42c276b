#include "DocumentFixtures.h"

#include "documents/RtfReader.h"

#include <QTextCursor>
#include <QTextDocument>

#include <gtest/gtest.h>

using namespace pvardo::documents;
using pvardo::test::displayedText;
using pvardo::test::readFixtureBytes;

namespace {

QString readText(const QByteArray& rtf, RtfReadResult* result = nullptr)
{
    QTextDocument document;
    const RtfReadResult read = readRtf(rtf, document);
    if (result) {
        *result = read;
    }
    return displayedText(document);
}

bool isBoldAt(const QByteArray& rtf, const QString& text)
{
    QTextDocument document;
    readRtf(rtf, document);
    const QTextCursor found = document.find(text);
    if (found.isNull()) {
        return false;
    }
    QTextCursor at(&document);
    at.setPosition(found.selectionStart() + 1);
    return at.charFormat().fontWeight() == QFont::Bold;
}

} // namespace

// "\*" marks only the word right behind it. Inside a group that is skipped
// anyway that word is never looked at, and the mark must not stay behind to
// make the next word of the document (and with it the rest of the document)
// a skipped destination.
TEST(RtfForeignDocument, anIgnorableMarkNeverOutlivesItsGroup)
{
    EXPECT_EQ(readText("{\\rtf1\\ansi{\\info{\\*\\company ACME}}\\b Hello world\\par}"), QStringLiteral("Hello world"));
    EXPECT_TRUE(isBoldAt("{\\rtf1\\ansi{\\info{\\*\\company ACME}}\\b Hello world\\par}", QStringLiteral("Hello")));

    struct Case {
        const char* rtf;
        const char* shown;
    };
    const Case cases[] = {
        // the mark before a group mark or text rather than a word
        {"{\\rtf1{\\info{\\*{\\company ACME}}}Shown\\par}", "Shown"},
        {"{\\rtf1{\\header{\\*}}Shown\\par}", "Shown"},
        // in the font and colour tables, in a picture, in a field
        {"{\\rtf1{\\fonttbl{\\f0\\fswiss{\\*\\panose 020b0604}{\\*\\falt Arial}Helvetica;}}\\f0 Shown\\par}", "Shown"},
        {"{\\rtf1{\\colortbl;\\red1\\green2\\blue3;{\\*\\expandedcolortbl;;}}Shown\\par}", "Shown"},
        {"{\\rtf1{\\field{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt Shown}}\\par}", "Shown"},
        // a known word after a skipped one, and a star destination in running text
        {"{\\rtf1 Before {\\*\\bkmkstart a}{\\*\\bkmkend a}after\\par}", "Before after"},
        {"{\\rtf1{\\*\\generator Riched20 10.0.19041}\\viewkind4\\uc1\\pard Shown\\par}", "Shown"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(readText(c.rtf), QString::fromUtf8(c.shown)) << c.rtf;
    }
}

// Groups a word processor nests deeper than the reader keeps apart are read
// all the same; nothing recursive can run out of stack on them.
TEST(RtfForeignDocument, deepNestingKeepsItsText)
{
    // 2,714 deep, as a real file nests: read exactly, formatting and all.
    const int depth = 2714;
    const QByteArray deep = "{\\rtf1 Start " + QByteArray(depth, '{') + "\\b Deep" + QByteArray(depth, '}') + " End\\par}";
    RtfReadResult result;
    EXPECT_EQ(readText(deep, &result), QStringLiteral("Start Deep End"));
    EXPECT_FALSE(result.damaged) << result.problem.toStdString();
    EXPECT_TRUE(isBoldAt(deep, QStringLiteral("Deep")));
    EXPECT_FALSE(isBoldAt(deep, QStringLiteral("End")));

    // Far past the limit the text is still there and the closing groups
    // find their way back out.
    const int absurd = RtfLimits::maxGroupDepth * 3;
    const QByteArray past = "{\\rtf1 Start " + QByteArray(absurd, '{') + "Deeper" + QByteArray(absurd, '}') + " End\\par}";
    EXPECT_EQ(readText(past, &result), QStringLiteral("Start Deeper End"));
    EXPECT_FALSE(result.damaged) << result.problem.toStdString();
}

// East Asian and Mac documents: every byte of their code pages comes out as
// the character it stands for, never as "?".
TEST(RtfForeignDocument, decodesDoubleByteAndMacCodePages)
{
    struct Case {
        const char* what;
        QByteArray rtf;
        const char* shown;
    };
    const Case cases[] = {
        {"Japanese document", "{\\rtf1\\ansi\\ansicpg932\\deff0{\\fonttbl{\\f0\\fcharset128 MS Mincho;}}\\f0 \\'82\\'b1\\'82\\'ea\\'82\\'cd\\par}",
         "これは"},
        {"Japanese font in a Western document",
         "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset128 MS Gothic;}}\\f0 Caf\\'e9 \\f1 \\'83\\'65\\'83\\'58\\'83\\'67\\par}",
         "Café テスト"},
        {"simplified Chinese", "{\\rtf1\\ansi\\ansicpg936{\\fonttbl{\\f1\\fcharset134 SimSun;}}\\f1 \\'d6\\'d0\\'ce\\'c4\\par}", "中文"},
        {"Korean", "{\\rtf1\\ansi\\ansicpg949{\\fonttbl{\\f0\\fcharset129 Gulim;}}\\f0 \\'c7\\'d1\\'b1\\'db\\par}", "한글"},
        {"traditional Chinese", "{\\rtf1\\ansi\\ansicpg950{\\fonttbl{\\f0\\fcharset136 MingLiU;}}\\f0 \\'a4\\'a4\\'a4\\'e5\\par}", "中文"},
        // a trail byte written as plain text, as Word does for bytes below 0x80
        {"trail byte as text", "{\\rtf1\\ansi\\ansicpg932{\\fonttbl{\\f0\\fcharset128 MS Mincho;}}\\f0 \\'81f\\par}", "’"},
        // the code page of the font table entry: \cpg wins over \fcharset
        {"font code page", "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset0\\cpg936 SimSun;}}\\f0 \\'d6\\'d0\\par}", "中"},
        {"Mac Roman", "{\\rtf1\\mac\\deff0{\\fonttbl{\\f0 Helvetica;}}\\f0 Caf\\'8e \\'d2quoted\\'d3\\par}", "Café “quoted”"},
        {"Mac Roman by number", "{\\rtf1\\ansi\\ansicpg10000 na\\'95ve\\par}", "naïve"},
        {"Mac Japanese", "{\\rtf1\\mac\\ansicpg10001{\\fonttbl\\f0\\fnil\\fcharset78 HiraKakuPro-W3;}\\f0 \\'82\\'a8\\'93\\'c7\\par}", "お読"},
        {"DOS code page", "{\\rtf1\\pc\\deff0 Gr\\'81\\'e1e\\par}", "Grüße"},
        {"Thai", "{\\rtf1\\ansi\\ansicpg874 \\'c1\\'d2\\par}", "มา"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(readText(c.rtf), QString::fromUtf8(c.shown)) << c.what;
    }

    // Font names in the font's own code page are decoded too.
    QTextDocument document;
    readRtf("{\\rtf1\\ansi\\ansicpg932{\\fonttbl{\\f0\\fcharset128 \\'82\\'6c\\'82\\'72 \\'96\\'be\\'92\\'a9;}}\\f0 x\\par}",
            document);
    QTextCursor at(&document);
    at.setPosition(1);
    ASSERT_FALSE(at.charFormat().fontFamilies().toStringList().isEmpty());
    EXPECT_EQ(at.charFormat().fontFamilies().toStringList().constFirst(), QStringLiteral("ＭＳ 明朝"));
}

// A lead byte whose trail byte never comes (a control word, a group or the
// end of the file in between) costs that one character, not the text after.
TEST(RtfForeignDocument, aBrokenDoubleByteCharacterLosesOnlyItself)
{
    const QString cut = readText("{\\rtf1\\ansi\\ansicpg932{\\fonttbl{\\f0\\fcharset128 MS Mincho;}}\\f0 \\'82\\par after "
                                 "{\\'82}\\'82\\'b1\\par}");
    EXPECT_TRUE(cut.contains(QStringLiteral("after"))) << cut.toStdString();
    EXPECT_TRUE(cut.endsWith(QStringLiteral("こ"))) << cut.toStdString();
    EXPECT_FALSE(cut.contains(QLatin1Char('?'))) << cut.toStdString();

    // A surrogate pair written without fallback characters (the blank after
    // it is the second half's fallback, as a word processor reads it too).
    EXPECT_EQ(readText("{\\rtf1\\ansi This text has \\u55357 \\u56835  emojis}"),
              QStringLiteral("This text has \U0001F603emojis"));

    // Unicode with a double-byte fallback: the fallback bytes are skipped.
    EXPECT_EQ(readText("{\\rtf1\\ansi\\ansicpg932\\uc2{\\fonttbl{\\f0\\fcharset128 MS Mincho;}}\\f0 "
                       "\\u12371\\'82\\'b1\\u12398\\'82\\'cc\\par}"),
              QStringLiteral("この"));
}

// Tables inside table cells keep every word of every cell; the plain-text
// copy a word processor writes for readers without nested tables is not
// shown a second time.
TEST(RtfForeignDocument, nestedTablesKeepTheirText)
{
    const QByteArray rtf = "{\\rtf1\\ansi\n\\trowd\\cellx5000\n"
                           "\\pard\\intbl\\itap2 Level two before\\par\n"
                           "\\pard\\intbl\\itap3 Deep A\\nestcell Deep B\\nestcell\n"
                           "{\\*\\nesttableprops\\trowd\\cellx2000\\cellx4000\\nestrow}\n"
                           "{\\nonesttables NESTED FALLBACK\\par}\n"
                           "\\pard\\intbl\\itap2 Level two after\\nestcell\n"
                           "{\\*\\nesttableprops\\trowd\\cellx4000\\nestrow}\n"
                           "{\\nonesttables PARENT FALLBACK\\par}\n"
                           "\\pard\\intbl\\itap1 Outer after\\cell\n\\row\n"
                           "\\pard\\itap0 Outside table\\par\n}";
    RtfReadResult result;
    const QString text = readText(rtf, &result);
    EXPECT_FALSE(result.damaged) << result.problem.toStdString();
    for (const char* word : {"Level two before", "Deep A", "Deep B", "Level two after", "Outer after", "Outside table"}) {
        EXPECT_TRUE(text.contains(QString::fromUtf8(word))) << word << " in " << text.toStdString();
    }
    EXPECT_FALSE(text.contains(QStringLiteral("FALLBACK"))) << text.toStdString();
}

namespace {

// Little-endian records, as Windows writes them.
struct Writer {
    QByteArray bytes;
    Writer& u16(int v)
    {
        bytes.append(char(v & 0xFF)).append(char((v >> 8) & 0xFF));
        return *this;
    }
    Writer& u32(qint64 v)
    {
        return u16(int(v & 0xFFFF)).u16(int((v >> 16) & 0xFFFF));
    }
};

// A Windows metafile that fills its 100 by 100 window with red and draws a
// blue square in the middle, as a logo would.
QByteArray redWmf()
{
    Writer w;
    w.u16(1).u16(9).u16(0x0300).u32(0).u16(2).u32(0).u16(0); // header
    auto record = [&](int function, std::initializer_list<int> params) {
        w.u32(3 + qint64(params.size())).u16(function);
        for (const int p : params) {
            w.u16(p);
        }
    };
    record(0x020B, {0, 0});                       // window origin
    record(0x020C, {100, 100});                   // window extent (y, x)
    record(0x02FC, {0, 0x00FF, 0x0000, 0});       // solid red brush
    record(0x012D, {0});                          // select it
    record(0x02FA, {5, 0, 0, 0, 0});              // null pen
    record(0x012D, {1});                          // select it
    record(0x041B, {100, 100, 0, 0});             // rectangle (bottom, right, top, left)
    record(0x02FC, {0, 0x0000, 0x00FF, 0});       // solid blue brush
    record(0x012D, {2});
    record(0x041B, {60, 60, 40, 40});
    record(0x0000, {});                           // end
    return w.bytes;
}

// An enhanced metafile of the same picture, 10 mm square on a device of ten
// pixels to the millimetre.
QByteArray redEmf()
{
    Writer w;
    w.u32(1).u32(88);                                   // header record
    w.u32(0).u32(0).u32(99).u32(99);                    // bounds in device pixels
    w.u32(0).u32(0).u32(1000).u32(1000);                // frame in hundredths of a millimetre
    w.u32(0x464D4520).u32(0x10000).u32(0).u32(0);       // " EMF", version, bytes, records
    w.u16(3).u16(0).u32(0).u32(0).u32(0);               // handles, reserved, description, palette
    w.u32(1000).u32(1000).u32(100).u32(100);            // device pixels and millimetres
    w.u32(39).u32(24).u32(1).u32(0).u32(0x0000FF).u32(0); // brush 1: solid red
    w.u32(37).u32(12).u32(1);                           // select it
    w.u32(37).u32(12).u32(0x80000008);                  // the stock null pen
    w.u32(43).u32(24).u32(0).u32(0).u32(100).u32(100);  // rectangle
    w.u32(14).u32(20).u32(0).u32(16).u32(20);           // end
    return w.bytes;
}

// A packed 2 by 2 bitmap of green pixels.
QByteArray greenDib()
{
    Writer w;
    w.u32(40).u32(2).u32(2).u16(1).u16(24).u32(0).u32(16).u32(2835).u32(2835).u32(0).u32(0);
    for (int row = 0; row < 2; ++row) {
        w.bytes.append(QByteArray::fromHex("00ff0000ff00")); // blue, green, red per pixel
        w.bytes.append(QByteArray(2, '\0'));                 // row padding to 4 bytes
    }
    return w.bytes;
}

QImage firstPicture(const QByteArray& rtf, RtfReadResult* result = nullptr)
{
    QTextDocument document;
    const RtfReadResult read = readRtf(rtf, document);
    if (result) {
        *result = read;
    }
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat format = it.fragment().charFormat();
            if (format.isImageFormat()) {
                return document.resource(QTextDocument::ImageResource, QUrl(format.toImageFormat().name())).value<QImage>();
            }
        }
    }
    return {};
}

QColor colorAt(const QImage& image, qreal fx, qreal fy)
{
    return image.pixelColor(int(image.width() * fx), int(image.height() * fy));
}

} // namespace

// The pictures Word and WordPad write for logos and objects: metafiles and
// bitmaps are drawn, not dropped.
TEST(RtfForeignDocument, drawsMetafilesAndBitmaps)
{
    const QByteArray wmf = redWmf().toHex();
    RtfReadResult result;
    QImage image = firstPicture("{\\rtf1 Logo:{\\pict\\wmetafile8\\picw2540\\pich2540\\picwgoal1440\\pichgoal1440 " + wmf
                                    + "} after\\par}",
                                &result);
    ASSERT_FALSE(image.isNull());
    EXPECT_FALSE(result.damaged) << result.problem.toStdString();
    EXPECT_EQ(image.size(), QSize(150, 150)); // an inch at 150 dots to the inch
    EXPECT_EQ(colorAt(image, 0.1, 0.1), QColor(Qt::red));
    EXPECT_EQ(colorAt(image, 0.5, 0.5), QColor(Qt::blue));
    EXPECT_EQ(colorAt(image, 0.9, 0.9), QColor(Qt::red));

    // The picture of an embedded object's result, as WordPad writes it.
    image = firstPicture("{\\rtf1{\\object\\objemb{\\*\\objclass Paint.Picture}{\\*\\objdata 0105}{\\result{\\pict"
                         "\\wmetafile8\\picwgoal720\\pichgoal720 "
                         + wmf + "}}}\\par}");
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(colorAt(image, 0.5, 0.5), QColor(Qt::blue));

    // An enhanced metafile takes its size from its own frame: 10 mm.
    image = firstPicture("{\\rtf1{\\*\\shppict{\\pict\\emfblip " + redEmf().toHex() + "}}\\par}", &result);
    ASSERT_FALSE(image.isNull());
    EXPECT_FALSE(result.damaged) << result.problem.toStdString();
    EXPECT_NEAR(image.width(), 59, 1);
    EXPECT_EQ(colorAt(image, 0.5, 0.5), QColor(Qt::red));

    image = firstPicture("{\\rtf1{\\pict\\dibitmap0\\picw2\\pich2 " + greenDib().toHex() + "}\\par}");
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.size(), QSize(2, 2));
    EXPECT_EQ(colorAt(image, 0, 0), QColor(Qt::green));

    // A device-dependent monochrome bitmap: 8 pixels, alternately white and black.
    image = firstPicture("{\\rtf1{\\pict\\wbitmap0\\picw8\\pich1\\wbmbitspixel1\\wbmplanes1\\wbmwidthbytes2 aa00}\\par}");
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(1, 0), QColor(Qt::black));

    // A bar WordPad wrote as a metafile around a 16-colour bitmap, with the
    // colour its palette gives it.
    image = firstPicture(readFixtureBytes(QStringLiteral(PVARDO_TEST_DATA_DIR "/rtf-corpus/rtfpipe-wordpad-metafiles.rtf")),
                         &result);
    ASSERT_FALSE(image.isNull());
    EXPECT_FALSE(result.damaged) << result.problem.toStdString();
    EXPECT_EQ(colorAt(image, 0.25, 0.5), QColor(255, 0, 51));
}

// A metafile cut short or full of nonsense draws what it can, or says the
// picture is damaged; the text around it stays.
TEST(RtfForeignDocument, damagedMetafilesKeepTheText)
{
    const QByteArray wmf = redWmf();
    const QByteArray cases[] = {
        wmf.left(40), wmf.left(19), QByteArray(64, '\xff'), redEmf().left(100), QByteArray::fromHex("01000000ffffff7f"),
    };
    for (const QByteArray& broken : cases) {
        for (const char* kind : {"\\wmetafile8", "\\emfblip", "\\dibitmap0"}) {
            QTextDocument document;
            readRtf("{\\rtf1 before{\\pict" + QByteArray(kind) + "\\picwgoal1440\\pichgoal1440 " + broken.toHex()
                        + "}after\\par}",
                    document);
            EXPECT_EQ(displayedText(document), QStringLiteral("beforeafter")) << kind << broken.toHex().constData();
        }
    }
}

// The old paragraph numbering of Word 6 and WordPad (\pn) puts numbers or
// bullets before the paragraphs, as word processors show them: counted on
// while the numbering stays the same, started again when it changes, never
// twice where the file wrote the number out itself (\pntext), and not on a
// paragraph that goes on in the item above (\pnlvlcont) or after \pard.
TEST(RtfForeignDocument, printsOldParagraphNumbersAndBullets)
{
    const QByteArray rtf = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}{\\f1 Symbol;}}"
                           "\\pard\\fi-283\\li283{\\*\\pn\\pnlvlbody\\pndec\\pnstart1{\\pntxta .}}{Alpha\\par Beta\\par}"
                           "\\pard\\fi-283\\li283{\\*\\pn\\pnlvlblt\\pnf1\\pnstart1{\\pntxtb \\'b7}}{Gamma\\par}"
                           "\\pard{\\*\\pn\\pnlvlbody\\pnlcltr\\pnstart1{\\pntxta )}}Delta\\par"
                           "\\pard{\\*\\pn\\pnlvlbody\\pnlcltr\\pnstart1{\\pntxta )}}Epsilon\\par"
                           "\\pard{\\*\\pn\\pnlvlcont}Still epsilon\\par"
                           "\\pard{\\*\\pn\\pnlvlbody\\pnucrm\\pnstart4{\\pntxtb (}{\\pntxta )}}Zeta\\par"
                           "\\pard{\\pntext\\f0 7.\\tab}{\\*\\pn\\pnlvlbody\\pndec\\pnstart7{\\pntxta .}}Eta\\par"
                           "\\pard Plain\\par}";
    EXPECT_EQ(readText(rtf).split(QLatin1Char('\n'), Qt::SkipEmptyParts),
              (QStringList{QStringLiteral("1.\tAlpha"), QStringLiteral("2.\tBeta"), QStringLiteral("\u00B7\tGamma"),
                           QStringLiteral("a)\tDelta"), QStringLiteral("b)\tEpsilon"), QStringLiteral("Still epsilon"),
                           QStringLiteral("(IV)\tZeta"), QStringLiteral("7.\tEta"), QStringLiteral("Plain")}));
}

// Text editors on the Mac (and some converters) leave out the marker's text
// of a list paragraph (\listtext): the list table says what it is. Numbers
// count on per list, a deeper level begins again under each new item, a
// marker the file writes out still counts, and a bullet of a symbol font
// prints as a plain bullet.
TEST(RtfForeignDocument, numbersListParagraphsAsTheListTableSays)
{
    const QByteArray rtf
        = "{\\rtf1\\ansi{\\fonttbl{\\f0 Helvetica;}}"
          "{\\*\\listtable"
          "{\\list\\listtemplateid1\\listhybrid{\\listlevel\\levelnfc23\\levelstartat1{\\*\\levelmarker \\{disc\\}}"
          "{\\leveltext\\leveltemplateid1\\'01\\uc0\\u8226 ;}{\\levelnumbers;}}{\\listname ;}\\listid1}"
          "{\\list\\listtemplateid2{\\listlevel\\levelnfc23{\\leveltext\\'01\\u-3913 ?;}{\\levelnumbers;}}\\listid7}"
          "{\\list{\\listlevel\\levelnfc0\\levelstartat3\\levelfollow1{\\leveltext\\'02\\'00.;}{\\levelnumbers\\'01;}}"
          "{\\listlevel\\levelnfc4{\\leveltext\\'04\\'00.\\'01);}{\\levelnumbers\\'01\\'03;}}\\listid42}}"
          "{\\*\\listoverridetable{\\listoverride\\listid1\\listoverridecount0\\ls1}"
          "{\\listoverride\\listid42\\listoverridecount0\\ls2}{\\listoverride\\listid7\\ls3}}"
          "\\pard\\ls1\\ilvl0 Apples\\par Pears\\par"
          "\\pard\\ls2\\ilvl0 Roads\\par\\ls2\\ilvl1 Paving\\par Drains\\par"
          "\\pard{\\listtext 4. }\\ls2\\ilvl0 Parks\\par"
          "\\pard\\ls2\\ilvl0 Schools\\par\\ilvl1 Roofs\\par"
          "\\pard\\ls3 Symbol\\par"
          "\\pard\\ls9 Unknown list\\par"
          "\\pard Plain\\par}";
    EXPECT_EQ(readText(rtf).split(QLatin1Char('\n'), Qt::SkipEmptyParts),
              (QStringList{QStringLiteral("\u2022\tApples"), QStringLiteral("\u2022\tPears"),
                           QStringLiteral("3. Roads"), QStringLiteral("3.a)\tPaving"), QStringLiteral("3.b)\tDrains"),
                           QStringLiteral("4. Parks"), QStringLiteral("5. Schools"), QStringLiteral("5.a)\tRoofs"),
                           QStringLiteral("\u2022\tSymbol"), QStringLiteral("Unknown list"), QStringLiteral("Plain")}));

    // A real letter from the Mac: its one list paragraph gets its bullet.
    const QString mac = readText(readFixtureBytes(QStringLiteral(PVARDO_TEST_DATA_DIR
                                                                 "/rtf-corpus/rtfparserkit-test10001Encoding.rtf")));
    EXPECT_TRUE(mac.startsWith(QStringLiteral("\u2022\t"))) << mac.toStdString();
}
