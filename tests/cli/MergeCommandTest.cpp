#include "admin/Installation.h"
#include "common/TextFiles.h"
#include "documents/PdfPages.h"
#include "store/Recordset.h"
#include "support/AdminTool.h"
#include "support/Text.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pvardo;
using pvardo::test::AdminRun;
using pvardo::test::q;
using pvardo::test::runAdmin;

namespace {

// One demonstration installation for the whole suite: made once, read only.
class MergeCommand : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        folder = new QTemporaryDir;
        home = folder->filePath(q("planning"));
        const AdminRun run = runAdmin({q("--home"), home, q("init"), q("--demo")});
        ASSERT_EQ(run.code, 0) << run.err.toStdString();
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(home + q("/databases/pbproj.db"),
                                           q("Select * from PBPROJ order by PBCASE"), &status);
        ASSERT_TRUE(rows && !rows->Eof());
        caseNumber = rows->text(q("PBCASE"));
        applicant = rows->text(q("PBAPPNAME1"));
        contact = rows->text(q("PBCONTACTNAME1"));
    }
    static void TearDownTestSuite()
    {
        delete folder;
        folder = nullptr;
    }

    static AdminRun merge(const QStringList& arguments)
    {
        return runAdmin(QStringList{q("--home"), home, q("merge")} + arguments);
    }

    static inline QTemporaryDir* folder = nullptr;
    static inline QString home;
    static inline QString caseNumber;
    static inline QString applicant;
    static inline QString contact;
};

} // namespace

TEST_F(MergeCommand, initShipsEveryTemplateAndKeepsTheOfficesOwn)
{
    for (const char* name : {"gTitle.rtf", "pbappd.rtf", "apphead.rtf", "exphead.rtf", "mtghead.rtf", "feesd.rtf",
                             "feeshead.rtf", "bondd.rtf", "bondshead.rtf", "meetingsd.rtf", "pbseqrad.rtf",
                             "revhead.rtf", "pbagencyad.rtf", "actionsd.rtf", "actionshead.rtf", "pbseqmap.rtf",
                             "maphead.rtf", "issuesd.rtf", "issueshead.rtf", "wethead.rtf", "checklist.rtf",
                             "receipt.rtf", "surrounding.rtf", "expired.rtf", "expiring.rtf", "zexpired.rtf",
                             "zexpiring.rtf", "0custom.txt", "hearing.rtf", "incomplete.rtf"}) {
        EXPECT_TRUE(QFile::exists(home + q("/forms/") + q(name))) << name;
    }
    // A second init over an office's edited letter keeps it.
    QTemporaryDir other;
    const QString second = other.filePath(q("office"));
    ASSERT_EQ(runAdmin({q("--home"), second, q("init")}).code, 0);
    EXPECT_FALSE(QFile::exists(second + q("/forms/0custom.txt"))); // the demonstration's alone
    const QByteArray edited("{\\rtf1\\ansi Our own detail page %PBCASE\\par}");
    ASSERT_TRUE(replaceFile(second + q("/forms/pbappd.rtf"), edited));
    const AdminRun again = runAdmin({q("--home"), second, q("init")});
    ASSERT_EQ(again.code, 0);
    EXPECT_TRUE(again.err.contains(q("kept forms/pbappd.rtf")));
    QFile kept(second + q("/forms/pbappd.rtf"));
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), edited);
}

TEST_F(MergeCommand, mergesALetterIntoAPdf)
{
    const QString pdf = folder->filePath(q("hearing.pdf"));
    const AdminRun run = merge({q("hearing.rtf"), q("--case"), caseNumber, q("--pdf"), pdf});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.contains(q("Printed 1 page")));
    const QStringList pages = test::pdfPageTexts(pdf);
    ASSERT_EQ(pages.size(), 1);
    EXPECT_TRUE(pages.first().contains(caseNumber));
    EXPECT_TRUE(pages.first().contains(contact.section(q(" "), 0, 0))) << pages.first().toStdString();
    EXPECT_FALSE(pages.first().contains(q("%PB")));
    EXPECT_FALSE(pages.first().contains(q("%nm")));
    // The letterhead names the municipality of the settings.
    EXPECT_TRUE(pages.first().contains(q("TOWN OF HOLLIS FERRY"))) << pages.first().toStdString();

    const QString receipt = folder->filePath(q("receipt.pdf"));
    ASSERT_EQ(merge({q("receipt.rtf"), q("--case"), caseNumber, q("--pdf"), receipt}).code, 0);
    const QString receiptText = test::pdfPageTexts(receipt).join(q("\n"));
    EXPECT_TRUE(receiptText.contains(q("TOWN OF HOLLIS FERRY"))) << receiptText.toStdString();
    EXPECT_TRUE(receiptText.contains(q("Town of Hollis Ferry")));
}

TEST_F(MergeCommand, writesTheMergedRtf)
{
    const QString rtf = folder->filePath(q("detail.rtf"));
    const AdminRun run = merge({home + q("/forms/pbappd.rtf"), q("--case"), caseNumber, q("--rtf"), rtf});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    QFile written(rtf);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    const QString text = QString::fromLatin1(written.readAll());
    EXPECT_TRUE(text.startsWith(q("{\\rtf1")));
    EXPECT_TRUE(text.contains(caseNumber));
    EXPECT_FALSE(text.contains(q("%PBCASE")));
}

TEST_F(MergeCommand, refusesWhatItCannotMerge)
{
    const AdminRun unknown = merge({q("pbappd.rtf"), q("--case"), q("99-999"), q("--rtf"), folder->filePath(q("x.rtf"))});
    EXPECT_EQ(unknown.code, 1);
    EXPECT_TRUE(unknown.err.contains(q("there is no case 99-999")));
    EXPECT_FALSE(QFile::exists(folder->filePath(q("x.rtf"))));

    const AdminRun quote = merge({q("pbappd.rtf"), q("--case"), q("24'1"), q("--rtf"), folder->filePath(q("x.rtf"))});
    EXPECT_EQ(quote.code, 1);

    const AdminRun missing = merge({q("nosuch.rtf"), q("--case"), caseNumber, q("--rtf"), folder->filePath(q("x.rtf"))});
    EXPECT_EQ(missing.code, 1);
    EXPECT_TRUE(missing.err.contains(q("nosuch.rtf")));

    const QString notRtf = folder->filePath(q("notes.rtf"));
    ASSERT_TRUE(replaceFile(notRtf, QByteArray("Dear %nm, this is plain text.")));
    const AdminRun unreadable = merge({notRtf, q("--case"), caseNumber, q("--pdf"), folder->filePath(q("x.pdf"))});
    EXPECT_EQ(unreadable.code, 1);
    EXPECT_TRUE(unreadable.err.contains(q("not RTF")));
    EXPECT_FALSE(QFile::exists(folder->filePath(q("x.pdf"))));

    EXPECT_EQ(merge({q("pbappd.rtf")}).code, 2); // no case named
}

TEST_F(MergeCommand, theDemonstrationsLettersFindTheirAddresseeOnEveryCase)
{
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(home + q("/databases/pbproj.db"), q("Select * from PBPROJ"), &status);
    ASSERT_TRUE(rows);
    int cases = 0;
    for (; !rows->Eof(); rows->MoveNext(), ++cases) {
        EXPECT_FALSE(rows->text(q("PBCONTACTNAME1")).trimmed().isEmpty()) << rows->text(q("PBCASE")).toStdString();
        EXPECT_TRUE(rows->text(q("PBCONTACTADDR1")).contains(q(","))) << rows->text(q("PBCASE")).toStdString();
    }
    EXPECT_GT(cases, 0);
}

TEST_F(MergeCommand, aLetterToAPartyWithoutANameIsRefusedAndAnotherPartyCanBeChosen)
{
    QTemporaryDir other;
    const QString office = other.filePath(q("office"));
    ASSERT_EQ(runAdmin({q("--home"), office, q("init")}).code, 0);
    ASSERT_TRUE(QFile::copy(home + q("/forms/hearing.rtf"), office + q("/forms/hearing.rtf")));
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(office + q("/databases/pbproj.db"), q("Select * from PBPROJ"), &status);
        ASSERT_TRUE(rows);
        rows->AddNew();
        rows->setValue(q("PBCASE"), q("26-201"));
        rows->setValue(q("PBAPPNAME1"), q("Ann Applicant"));
        rows->setValue(q("PBAPPADDR1"), q("1 Elm Rd, Elmford NY 12000"));
        ASSERT_TRUE(rows->Update().ok());
    }
    auto mergeAt = [&](const QStringList& words) { return runAdmin(QStringList{q("--home"), office, q("merge")} + words); };

    // The office's letter goes to the contact, and this case has none.
    const QString pdf = other.filePath(q("hearing.pdf"));
    AdminRun run = mergeAt({q("hearing.rtf"), q("--case"), q("26-201"), q("--pdf"), pdf});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.contains(q("has no contact name"))) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(q("--to"))) << run.err.toStdString();
    EXPECT_FALSE(QFile::exists(pdf));
    run = mergeAt({q("hearing.rtf"), q("--case"), q("26-201"), q("--to"), q("owner"), q("--rtf"), other.filePath(q("x.rtf"))});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.contains(q("has no owner name"))) << run.err.toStdString();
    EXPECT_EQ(mergeAt({q("hearing.rtf"), q("--case"), q("26-201"), q("--to"), q("neighbour")}).code, 2);

    run = mergeAt({q("hearing.rtf"), q("--case"), q("26-201"), q("--to"), q("applicant"), q("--pdf"), pdf});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    const QStringList pages = test::pdfPageTexts(pdf);
    ASSERT_EQ(pages.size(), 1);
    EXPECT_TRUE(pages.first().contains(q("Dear Ann Applicant:"))) << pages.first().toStdString();
    EXPECT_TRUE(pages.first().contains(q("Elmford NY 12000")));

    // The detail page names nobody by %nm: it prints, without the lines of
    // the parties the case lacks.
    run = mergeAt({q("pbappd.rtf"), q("--case"), q("26-201"), q("--pdf"), pdf});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    const QString detail = test::pdfPageTexts(pdf).join(q("\n"));
    EXPECT_TRUE(detail.contains(q("Ann Applicant")));
    EXPECT_FALSE(detail.contains(q("Agent"))) << detail.toStdString();
    EXPECT_FALSE(detail.contains(q("setback"))) << detail.toStdString();
}
