#include "DocumentFixtures.h"

#include "documents/Placeholders.h"
#include "documents/RtfReader.h"

#include <QDate>
#include <QTextCursor>
#include <QTextDocument>

#include <gtest/gtest.h>

using namespace pvardo::documents;
using pvardo::test::displayedText;
using pvardo::test::readFixtureBytes;
using pvardo::test::rtfFixturePath;

namespace {

void loadFixture(const QString& name, QTextDocument& document)
{
    ASSERT_FALSE(readRtf(readFixtureBytes(rtfFixturePath(name + QStringLiteral(".rtf"))), document).damaged);
}

QTextCharFormat formatAt(QTextDocument& document, const QString& text)
{
    const QTextCursor found = document.find(text, 0, QTextDocument::FindCaseSensitively);
    EXPECT_FALSE(found.isNull()) << text.toStdString();
    QTextCursor at(&document);
    at.setPosition(found.selectionStart() + 1);
    return at.charFormat();
}

} // namespace

TEST(Placeholders, findsAPlaceholderSplitOverTwoFormats)
{
    // In the letter head "%" is bold Arial and "nm" plain Times; in the simple
    // editor's letter the bold is switched off between them.
    for (const char* name : {"letter", "minimal-wordpad"}) {
        QTextDocument document;
        loadFixture(QString::fromLatin1(name), document);
        EXPECT_FALSE(findPlaceholder(document, QStringLiteral("%nm")).isNull()) << name;
        EXPECT_EQ(ReplaceToken(document, QStringLiteral("%nm"), QStringLiteral("Ophelia Quarrington")), 1) << name;
        EXPECT_TRUE(displayedText(document).contains(QStringLiteral("\nOphelia Quarrington\n"))) << name;
        // The value takes the format of the match's first character.
        EXPECT_EQ(formatAt(document, QStringLiteral("Ophelia")).fontWeight(), QFont::Bold) << name;
        EXPECT_EQ(formatAt(document, QStringLiteral("Quarrington")).fontWeight(), QFont::Bold) << name;
    }
}

TEST(Placeholders, searchIgnoresCaseAndWholeWords)
{
    QTextDocument document;
    document.setPlainText(QStringLiteral("%PBCASE and %pbcase; %ADDRESS; %unknown; %ad."));
    EXPECT_EQ(ReplaceToken(document, QStringLiteral("%PBCASE"), QStringLiteral("2024-17")), 2);
    EXPECT_EQ(ReplaceToken(document, QStringLiteral("%ad"), QStringLiteral("12 Elm St")), 2);
    EXPECT_EQ(document.toPlainText(), QStringLiteral("2024-17 and 2024-17; 12 Elm StDRESS; %unknown; 12 Elm St."));
}

TEST(Placeholders, aValueHoldingItsOwnPlaceholderEnds)
{
    QTextDocument document;
    document.setPlainText(QStringLiteral("Dear %nm, dear %nm."));
    EXPECT_EQ(ReplaceToken(document, QStringLiteral("%nm"), QStringLiteral("x%NMx")), 2);
    EXPECT_EQ(document.toPlainText(), QStringLiteral("Dear x%NMx, dear x%NMx."));
    // A value without it: the search goes on one position behind the match.
    EXPECT_EQ(ReplaceToken(document, QStringLiteral("%nm"), QString()), 2);
    EXPECT_EQ(document.toPlainText(), QStringLiteral("Dear xx, dear xx."));
}

TEST(Placeholders, secondCharacterChoosesTheForm)
{
    const QString today = QDate::currentDate().toString(QStringLiteral("d"));
    struct Case {
        const char* token;
        const char* value;
        const char* text;     // the document
        QString expected;
    };
    const QList<Case> cases = {
        {"%$PBCOST", "1234.5", "Cost %$PBCOST.", QStringLiteral("Cost $1,234.50.")},
        {"%$PBCOST", "", "Cost %$PBCOST.", QStringLiteral("Cost .")},
        {"%$PBCOST", "0.5", "%$PBCOST/%$PBCOST", QStringLiteral("$0.50/$0.50")}, // formatting twice changes nothing
        {"%@PBFILEDATE", "06/13/2011", "On the %@PBFILEDATE", QStringLiteral("On the 13rd day of June, 2011")},
        {"%@PBFILEDATE", "06/21/2011", "%@PBFILEDATE", QStringLiteral("21st day of June, 2011")},
        {"%&PBFILEDATE", "06/15/2011", "%&PBFILEDATE and %&PBFILEDATE",
         QStringLiteral("01/05/1900 and 12/31/1899")}, // the second match reads the first result's 1
        {"%~MTIME", "14:05", "at %~MTIME", QStringLiteral("at 02:05 PM")},
        {"%PBSTATUS", "Approved", "%PBSTATUS", QStringLiteral("Approved")},
    };
    for (const Case& c : cases) {
        QTextDocument document;
        document.setPlainText(QString::fromLatin1(c.text));
        ReplaceToken(document, QString::fromLatin1(c.token), QString::fromLatin1(c.value));
        EXPECT_EQ(document.toPlainText(), c.expected) << c.token << " " << c.value;
    }

    // "%@" met twice: the second match sees "13rd day of June, 2011", no date,
    // and prints today.
    QTextDocument twice;
    twice.setPlainText(QStringLiteral("%@D / %@D"));
    ReplaceToken(twice, QStringLiteral("%@D"), QStringLiteral("06/13/2011"));
    EXPECT_TRUE(twice.toPlainText().startsWith(QStringLiteral("13rd day of June, 2011 / ")));
    EXPECT_TRUE(twice.toPlainText().contains(QStringLiteral(" / %1").arg(today))) << twice.toPlainText().toStdString();

    // Mode 2 is the long date.
    QTextDocument longDate;
    longDate.setPlainText(QStringLiteral("%dl"));
    ReplaceLiteral(longDate, QStringLiteral("%dl"), QStringLiteral("03/07/2024"), 2);
    EXPECT_EQ(longDate.toPlainText(), QStringLiteral("March 07, 2024"));
}

TEST(Placeholders, fillsCellsAndTextBesideSpecialCharacters)
{
    QTextDocument table;
    loadFixture(QStringLiteral("table"), table);
    EXPECT_EQ(ReplaceToken(table, QStringLiteral("%$05"), QStringLiteral("250")), 1);
    EXPECT_EQ(ReplaceToken(table, QStringLiteral("%$PBFAMOUNT"), QStringLiteral("1250")), 1);
    const QString text = displayedText(table);
    EXPECT_TRUE(text.contains(QStringLiteral("\n$250.00\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\n$1,250.00\n")));

    QTextDocument unicode;
    loadFixture(QStringLiteral("unicode"), unicode);
    ReplaceToken(unicode, QStringLiteral("%PBCASE"), QStringLiteral("2024-17"));
    ReplaceToken(unicode, QStringLiteral("%PBAPPNAME1"), QStringLiteral("Ortu\u00F1o"));
    const QString shown = displayedText(unicode);
    EXPECT_TRUE(shown.contains(QStringLiteral("\u00AB2024-17\u00BB\u2014%sbl")));
    EXPECT_TRUE(shown.contains(QStringLiteral("Ortu\u00F1o\u2019s")));
}
