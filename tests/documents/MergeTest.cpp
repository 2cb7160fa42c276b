#include "DocumentFixtures.h"

#include "documents/FormDefinitions.h"
#include "documents/Listing.h"
#include "documents/Merge.h"
#include "documents/PrintState.h"
#include "documents/RtfReader.h"

#include "common/DateText.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "store/Catalogue.h"
#include "store/Recordset.h"
#include "support/InstallationTest.h"
#include "support/Text.h"

#include <QDate>
#include <QDir>
#include <QImage>
#include <QTextDocument>

#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::documents;
using pvardo::test::displayedText;
using pvardo::test::q;

namespace {

// A letter in RTF where "%" and the rest of each placeholder stand in
// different fonts, as a secretary's letter head often has them.
QByteArray splitLetter()
{
    return QByteArrayLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0 Times New Roman;}{\\f1 Arial;}}"
                             "\\f1\\b %\\b0\\f0 PBCASE for {\\f1 %}{\\i nm}.\\par}");
}

class MergeTest : public test::InstallationTest
{
protected:
    void SetUp() override
    {
        InstallationTest::SetUp();
        resetPrintState();
        session().Today = QDate(2024, 3, 3);
        session().ReportHeaderRtf.clear();
        casePath = installation.createDatabase(store::Table::PBPROJ);
    }
    void TearDown() override
    {
        unregisterPlugVars(ScreenCodes::Case);
        unregisterPlugVars(ScreenCodes::Fees);
        unregisterLetterContact();
        resetPrintState();
    }

    std::unique_ptr<store::Recordset> addCase(const std::map<QString, QVariant>& values)
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(casePath, q("Select * from PBPROJ"), &status);
        EXPECT_TRUE(rows);
        rows->AddNew();
        for (const auto& [column, value] : values) {
            rows->setValue(column, value);
        }
        EXPECT_TRUE(rows->Update().ok());
        auto row = store::openRecordsetAt(
            casePath, q("Select * from PBPROJ where [PBCASE] = '") + values.at(q("PBCASE")).toString() + q("'"),
            &status);
        EXPECT_TRUE(row && !row->Eof());
        return row;
    }

    void plugCase(QTextDocument& letter, const store::Recordset& row)
    {
        plugColumns(letter, columnValuesOf(row, store::tableDef(store::Table::PBPROJ).places, 91));
    }

    QString casePath;
};

} // namespace

TEST_F(MergeTest, columnsInEveryFormFromARealCaseRow)
{
    auto row = addCase({{q("PBCASE"), q("24-017")},
                        {q("PBCOST"), 1234.5},
                        {q("PBFILEDATE"), QDate(2011, 6, 13)},
                        {q("PBLOCN1"), q("12 Mill Rd")},
                        {q("PBPROJNAME"), QVariant()}});
    QTextDocument letter;
    letter.setPlainText(q("Case %PBCASE / %pbcase at %PBLOCN1. Cost %$PBCOST, filed %PBFILEDATE, "
                          "the %@PBFILEDATE. Project [%PBPROJNAME]. Kept: %NOSUCHWORD, %PBSCHOOLDIST."));
    plugCase(letter, *row);
    EXPECT_EQ(letter.toPlainText(),
              q("Case 24-017 / 24-017 at 12 Mill Rd. Cost $1,234.50, filed 06/13/2011, the 13rd day of June, 2011. "
                "Project []. Kept: %NOSUCHWORD, %PBSCHOOLDIST."));
}

TEST_F(MergeTest, numericDateOfATextDateAndLegalDateOfNoDate)
{
    // "&" reads the leading number of 06/15/2011, 6, as a day count; "@" of a
    // value that is no date prints today.
    QTextDocument letter;
    letter.setPlainText(q("[%&FILED] [%@NOTE] [%$EMPTY]"));
    plugColumns(letter, {{q("FILED"), q("06/15/2011")}, {q("NOTE"), q("pending")}, {q("EMPTY"), QString()}});
    EXPECT_EQ(letter.toPlainText(), q("[01/05/1900] [") + LongDateText(q("pending")) + q("] []"));
}

TEST_F(MergeTest, placeholderSplitOverFontsAndValueHoldingAPlaceholder)
{
    QTextDocument letter;
    ASSERT_FALSE(readRtf(splitLetter(), letter).notRtf);
    printState().addressee = SplitAddress(q("Dora %nm Diaz"), q("1 Elm St, Troy NY 12180"));
    plugFixedWords(letter, ScreenCodes::Case, {});
    plugColumns(letter, {{q("PBCASE"), q("24-%PBCASE-1")}});
    // The value's own placeholder is not taken again.
    EXPECT_EQ(displayedText(letter).trimmed(), q("24-%PBCASE-1 for Dora %nm Diaz."));
}

TEST_F(MergeTest, aColumnThatBeginsALaterOneTakesItsPlaceholder)
{
    // In the meetings' order MREC comes before MRECNO, and the fees' PBFPAID
    // before PBFPAIDMM: the shorter name eats the longer placeholder.
    QTextDocument letter;
    letter.setPlainText(q("%MRECNO | %PBFPAIDMM | %PBFPAIDDATE"));
    plugColumns(letter, {{q("PBFPAIDDATE"), q("01/02/2024")}, {q("MREC"), q("R")}, {q("PBFPAID"), q("50")},
                         {q("MRECNO"), q("77")}, {q("PBFPAIDMM"), q("01")}});
    EXPECT_EQ(letter.toPlainText(), q("RNO | 50MM | 01/02/2024"));
    // The fixed words go first, so "%ad" takes the start of "%ADDRESS".
    QTextDocument words;
    words.setPlainText(q("%ADDRESS"));
    printState().addressee = SplitAddress(q("A"), q("9 Oak Ln"));
    plugFixedWords(words, ScreenCodes::Case, {});
    EXPECT_EQ(words.toPlainText(), q("9 Oak LnDRESS"));
}

TEST_F(MergeTest, splitAddress)
{
    // The city line is the last part; a street keeps its own commas, and a
    // city keeps the comma before its state.
    const Addressee two = SplitAddress(q("  Ann Lee "), q("5 Main St, Apt 2, Hudson NY"));
    EXPECT_EQ(two.name, q("Ann Lee"));
    EXPECT_EQ(two.street, q("5 Main St, Apt 2"));
    EXPECT_EQ(two.city, q("Hudson NY"));
    const Addressee state = SplitAddress(q("Ann"), q("5 Main St, Apt 2, Hudson, NY 12534-1234"));
    EXPECT_EQ(state.street, q("5 Main St, Apt 2"));
    EXPECT_EQ(state.city, q("Hudson, NY 12534-1234"));
    const Addressee none = SplitAddress(q("Ann"), q("   "));
    EXPECT_EQ(none.street, q("<no address>"));
    EXPECT_EQ(none.city, q("<no city state zip>"));
    const Addressee noComma = SplitAddress(q("Ann"), q("RR 2 Box 9"));
    EXPECT_EQ(noComma.street, q("RR 2 Box 9"));
    EXPECT_EQ(noComma.city, q("<no city state zip>"));
}

TEST_F(MergeTest, fixedWordsByScreen)
{
    FixedWords words;
    words.caseNumber = q("24-1");
    words.statusWord = q("Approved");
    words.sbl = q("12.-1-5");
    words.monthName = q("March");
    words.year = q("2024");
    const QString all = q("%dl|%proj|%stat|%sbl|%mm %yy|%nm|##");
    auto filled = [&](int code) {
        QTextDocument letter;
        letter.setPlainText(all);
        printState().addressee = SplitAddress(q("Ann"), q(""));
        plugFixedWords(letter, code, words);
        return letter.toPlainText();
    };
    EXPECT_EQ(filled(ScreenCodes::Case), q("March 03, 2024|24-1|Approved|12.-1-5|%mm %yy|Ann|1"));
    EXPECT_EQ(filled(ScreenCodes::Fees), q("March 03, 2024|24-1|%stat|12.-1-5|%mm %yy|Ann|1"));
    EXPECT_EQ(filled(ScreenCodes::Dashboard), q("March 03, 2024|%proj|%stat|%sbl|March 2024|%nm|1"));
    EXPECT_EQ(filled(ScreenCodes::Meetings), q("March 03, 2024|24-1|%stat|%sbl|%mm %yy|%nm|1"));
}

TEST_F(MergeTest, mainHeadingKeepsItsFonts)
{
    session().ReportHeaderRtf = q("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\b\\fs32 TOWN OF ELM\\par}");
    QTextDocument letter;
    letter.setPlainText(q("%mh\nDear all"));
    plugFixedWords(letter, ScreenCodes::Case, {});
    EXPECT_TRUE(letter.toPlainText().startsWith(q("TOWN OF ELM"))) << letter.toPlainText().toStdString();
    const QTextCursor found = letter.find(q("TOWN"));
    ASSERT_FALSE(found.isNull());
    EXPECT_EQ(found.charFormat().fontWeight(), QFont::Bold);
}

TEST_F(MergeTest, printTimePassFillsSlotsAndPicturesAndLetsUnknownWordsVanish)
{
    printState().receiptSlots[1] = q("03/01/2024");
    printState().receiptSlots[2] = q("250");
    printState().pageCounter = 0;
    QDir(session().MasterDatabaseFolder).mkpath(q("memos"));
    QImage logo(40, 20, QImage::Format_RGB32);
    logo.fill(Qt::blue);
    ASSERT_TRUE(logo.save(session().MasterDatabaseFolder + q("/memos/logo.bmp"), "BMP"));
    QTextDocument letter;
    letter.setPlainText(q("%lo Page ## on %01: %$02 [%03][%$03][%ln%id] %si"));
    ExpandPrintTokens(letter);
    // The logo is a picture now; the signature is missing and stays as written.
    // The signature the office has not chosen leaves no trace.
    EXPECT_EQ(letter.toPlainText(), QString(QChar::ObjectReplacementCharacter) + q(" Page 1 on 03/01/2024: $250.00 [][][] "));
    EXPECT_EQ(printState().pageCounter, 1);
}

TEST_F(MergeTest, plugVarsOfTheScreenThenAlwaysOfTheCase)
{
    // A letter from the fees screen: the fee's own columns first, then the
    // case's, so %PBCASE comes from the case and %SEQ from the fee.
    QStringList order;
    registerPlugVars(ScreenCodes::Fees, [&](QTextDocument& letter) {
        order << q("fees");
        plugColumns(letter, {{q("SEQ"), q("7")}, {q("PBFCASE"), q("from the fee")}});
    });
    registerPlugVars(ScreenCodes::Case, [&](QTextDocument& letter) {
        order << q("case");
        plugColumns(letter, {{q("PBCASE"), q("24-017")}, {q("SEQ"), q("case seq")}});
    });
    QTextDocument letter;
    letter.setPlainText(q("%SEQ %PBCASE"));
    runPlugVars(ScreenCodes::Fees, letter);
    EXPECT_EQ(letter.toPlainText(), q("7 24-017"));
    EXPECT_EQ(order, (QStringList{q("fees"), q("case")}));
    order.clear();
    runPlugVars(10, letter); // a code with no screen's own: the case's alone
    runPlugVars(ScreenCodes::Case, letter);
    EXPECT_EQ(order, (QStringList{q("case"), q("case")}));
}

TEST_F(MergeTest, mergeFormFileAddressesTheContactOrSaysWhatIsMissing)
{
    ASSERT_TRUE(replaceFile(session().FormsFolder + q("/hello.rtf"), splitLetter()));
    ASSERT_TRUE(replaceFile(session().FormsFolder + q("/plain.rtf"), QByteArrayLiteral("Dear %nm")));
    registerLetterContact([] { return std::make_pair(q("Carla Contact"), q("4 Pine St, Elm NY 12000")); });
    registerPlugVars(ScreenCodes::Case, [](QTextDocument& letter) {
        plugFixedWords(letter, ScreenCodes::Case, {});
        plugColumns(letter, {{q("PBCASE"), q("24-3")}});
    });
    printState().reportHeading = q("HEADING");
    QTextDocument letter;
    const FormLoad load = mergeFormFile(letter, q("\\hello.rtf"), ScreenCodes::Case);
    ASSERT_TRUE(load.ok);
    EXPECT_EQ(displayedText(letter).trimmed(), q("24-3 for Carla Contact."));
    EXPECT_EQ(printState().addressee.city, q("Elm NY 12000"));
    EXPECT_TRUE(printState().reportHeading.isEmpty());

    for (const char* name : {"missing.rtf", "plain.rtf"}) {
        const FormLoad failed = mergeFormFile(letter, q(name), ScreenCodes::Fees);
        EXPECT_FALSE(failed.ok);
        EXPECT_TRUE(failed.message.startsWith(q("The form file ")));
        EXPECT_TRUE(failed.message.contains(q(name)));
        EXPECT_TRUE(failed.message.contains(q(" or not an RTF file. Please check your form definition file 3custom.txt\n")));
    }
}

TEST_F(MergeTest, formDefinitionsWithTheirLimits)
{
    const QString path = session().FormsFolder + q("/0custom.txt");
    QStringList lines{q("  24 letters  ")};
    for (int i = 1; i <= 24; ++i) {
        lines << q("  Letter %1 ").arg(i) << q("letter%1.rtf\r").arg(i);
    }
    lines[3] = q("Letter 1"); // two equal captions: the later one wins
    ASSERT_TRUE(replaceTextLines(path, lines));
    const FormDefinitions read = readFormDefinitions(path);
    ASSERT_TRUE(read.found);
    ASSERT_EQ(read.entries.size(), CustomFormLimit);
    EXPECT_EQ(read.entries.first().caption, q("Letter 1"));
    EXPECT_EQ(read.entries.last().fileName, q("letter20.rtf"));
    EXPECT_EQ(customFormFor(read.entries, q("LETTER 1")), q("letter2.rtf"));
    EXPECT_TRUE(customFormFor(read.entries, q("APPLICATION DETAIL")).isEmpty());

    const QStringList list = makeReportList({q("Application Detail"), q("Label for Mailing")}, read.entries);
    EXPECT_EQ(list.size(), ReportListLimit);
    EXPECT_EQ(list.first(), q("Application Detail"));
    EXPECT_EQ(list.at(2), q("Letter 1"));

    // A count larger than the lines that follow; a missing file.
    ASSERT_TRUE(replaceTextLines(path, {q("5"), q("Only one"), q("one.rtf")}));
    EXPECT_EQ(readFormDefinitions(path).entries.size(), 1);
    EXPECT_FALSE(readFormDefinitions(session().FormsFolder + q("/9custom.txt")).found);
    EXPECT_EQ(customFileName(3), q("3custom.txt"));
}

TEST_F(MergeTest, memoFormsFromLabelsOrFormsFolder)
{
    QTextDocument buffer;
    EXPECT_EQ(DoMemoForm(buffer, q("roster"), session().ProgramFolder).kind, MemoForm::Kind::Roster);
    EXPECT_EQ(DoMemoForm(buffer, QString(), session().ProgramFolder).kind, MemoForm::Kind::Nothing);
    const MemoForm label = DoMemoForm(buffer, q("lab.rtf"), session().ProgramFolder);
    EXPECT_EQ(label.kind, MemoForm::Kind::DefaultLabel);
    EXPECT_EQ(buffer.toPlainText().trimmed(), q("%nm\n%ad\n%zp"));
    const MemoForm missing = DoMemoForm(buffer, q("expired.rtf"), session().ProgramFolder);
    EXPECT_EQ(missing.kind, MemoForm::Kind::Missing);
    EXPECT_TRUE(missing.message.startsWith(q("Unable to locate ")));
    EXPECT_TRUE(missing.message.endsWith(q("/forms/expired.rtf. Unable to print.")));
}

TEST_F(MergeTest, listingRowsInFixedColumnsPastTheOldRowLimit)
{
    // Longer than the 16-bit row counter the office's listings once had.
    constexpr int caseCount = 33000;
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(casePath, q("Select * from PBPROJ"), &status);
        ASSERT_TRUE(rows->beginTransaction().ok());
        for (int i = 0; i < caseCount; ++i) {
            rows->AddNew();
            rows->setValue(q("PBCASE"), q("24-%1").arg(i, 5, 10, QLatin1Char('0')));
            rows->setValue(q("PBFILEDATE"), QDate(2024, 1, 2));
            rows->setValue(q("PBCOST"), i == 0 ? QVariant(1234.5) : QVariant());
            rows->setValue(q("PBAPPNAME1"), q("An applicant whose name runs far too long"));
            ASSERT_TRUE(rows->Update().ok());
        }
        ASSERT_TRUE(rows->commitTransaction().ok());
    }
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(casePath, q("Select * from PBPROJ order by PBCASE"), &status);
    QTextDocument report;
    Listing listing(report, 9);
    const QList<ListingColumn> columns{{q("PBCASE"), 10}, {q("PBFILEDATE"), 12}, {q("PBCOST"), 12, true},
                                       {q("PBAPPNAME1"), 20}};
    EXPECT_EQ(listing.appendRows(*rows, columns), caseCount);
    const QStringList lines = report.toPlainText().split(QLatin1Char('\n'));
    EXPECT_EQ(lines.size(), caseCount + 1);
    EXPECT_EQ(lines.first(), q("24-00000  ") + q("01/02/2024  ") + q("   $1,234.50") + q("An applicant whose n"));
    EXPECT_EQ(lines.at(caseCount - 1), q("24-32999  ") + q("01/02/2024  ") + q("          --") + q("An applicant whose n"));
    EXPECT_EQ(report.defaultFont().family(), listingFontFamily());
}
