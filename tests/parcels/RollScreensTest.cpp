#include "parcels/screens/RollScreens.h"

#include "ParcelScreensFixture.h"
#include "common/TextFiles.h"
#include "parcels/RpsFields.h"
#include "parcels/RpsRoll.h"
#include "parcels/screens/ParcelListModel.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QTreeView>

using namespace pvardo;
using namespace pvardo::parcels;
using namespace pvardo::test;

namespace {

// A parcel record of the extract's layout: 460 characters ending in "14".
QByteArray record(const char* swis, int i)
{
    QByteArray line(460, ' ');
    auto put = [&line](int column, int width, const QByteArray& text) {
        line.replace(column - 1, width, text.leftJustified(width, ' ', true));
    };
    put(1, 6, swis);
    put(65, 25,
        QByteArray::number(10 + i / 100) + "/" + QByteArray::number(i % 100) + "-1-" + QByteArray::number(i));
    put(90, 7, QByteArray::number(600000 + i));
    put(97, 7, QByteArray::number(1100000 + i));
    put(108, 25, "MILL POND RD");
    put(133, 9, QByteArray::number(i + 1));
    put(277, 25, "OWNER " + QByteArray::number(i));
    put(352, 25, "PO BOX " + QByteArray::number(i));
    put(402, 25, "ESOPUS NY");
    put(427, 9, "12429");
    line.replace(458, 2, "14");
    return line;
}

class RollScreensTest : public ParcelScreensTest
{
protected:
    // An extract of `count` records, every third of another SWIS, and a line of another type.
    QString writeExtract(int count)
    {
        const QString path = installation.path(q("RPS995T1.txt"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        for (int i = 0; i < count; ++i) {
            file.write(record(i % 3 == 2 ? "134289" : "134201", i) + "\r\n");
        }
        file.write(QByteArray(120, 'X') + "21\r\n");
        return path;
    }

    int rollRows()
    {
        store::StoreStatus status;
        auto rows = store::openRecordsetAt(
            RpsRoll::rollPathIn(installation.databaseFolder()), q("Select * from RPS"), &status);
        return rows ? rows->RecordCount() : -1;
    }

    // Runs "Import Tax Parcels..": the target typed, the file picked, and the
    // preview handed to `preview`.
    void runImport(const QString& file, const char* target, std::function<int(RpsImportFrm&)> preview)
    {
        prompts().onDialog(q("rps"), [=, this](QDialog& form) {
            form.findChild<QLineEdit*>(q("txtTarget"))->setText(q(target));
            prompts().onDialog(q("FindImportFile"), [=](QDialog& dialog) {
                EXPECT_EQ(dialog.windowTitle(), q("Find Import File"));
                static_cast<QFileDialog&>(dialog).selectFile(file);
                return int(QDialog::Accepted);
            });
            prompts().onDialog(
                q("rpsimport"), [=](QDialog& dialog) { return preview(static_cast<RpsImportFrm&>(dialog)); });
            clickIn(form, "iImport");
            return form.result();
        });
        updateparcel(nullptr);
    }

    static QString field(QDialog& dialog, const char* name)
    {
        if (auto* line = dialog.findChild<QLineEdit*>(q(name))) {
            return line->text();
        }
        return dialog.findChild<QLabel*>(q(name))->text();
    }
};

TEST_F(RollScreensTest, PreviewShowsTheLastRecordOfTheTargetAndImportsOnlyIt)
{
    const QString file = writeExtract(9);
    runImport(file, "134201", [&](RpsImportFrm& preview) {
        EXPECT_EQ(preview.windowTitle(), q("Data Preview"));
        EXPECT_EQ(preview.findChild<QCheckBox*>(q("chkTarget"))->text(), q("Target SWIS 134201"));
        EXPECT_TRUE(preview.findChild<QCheckBox*>(q("chkTarget"))->isChecked());
        // Records 0,1,3,4,6,7 are of the target; the last of them is 7.
        EXPECT_EQ(field(preview, "lblProcessed"), q("6"));
        EXPECT_EQ(field(preview, "txtSBL"), q("10.7-1-7"));
        EXPECT_EQ(field(preview, "txtAssociation"), q("OWNER 7"));
        EXPECT_EQ(field(preview, "txtSWIS"), q("134201"));
        EXPECT_EQ(field(preview, "lblConfidence"), q("100.00 %")) << "never more than the whole file";
        EXPECT_EQ(preview.findChild<QProgressBar*>(q("barProgress"))->value(), 100);
        EXPECT_EQ(rollRows(), -1) << "the analysis writes nothing";
        clickIn(preview, "iContinue");
        EXPECT_EQ(preview.findChild<QProgressBar*>(q("barProgress"))->value(), 100) << "done is 100";
        return preview.result();
    });
    EXPECT_EQ(rollRows(), 6);
    EXPECT_TRUE(prompts().shownTexts().contains(q("Completed. 6 records processed.")));
    EXPECT_EQ(readTextLines(installation.databaseFolder() + q("/imported.txt"))->value(1), q("6"));

    // The viewer counts what the roll holds.
    prompts().onDialog(q("viewRPS"), [](QDialog& dialog) {
        EXPECT_EQ(field(dialog, "lblCount"), q("6 entries."));
        EXPECT_EQ(static_cast<ViewRPS&>(dialog).model().rowCount(), 6);
        return int(QDialog::Accepted);
    });
    viewparcel(nullptr);

    // Carried into the parcel store from the dashboard.
    prompts().onDialog(q("syncSBL"), [](QDialog& dialog) {
        QCoreApplication::processEvents(); // the run starts once the window stands
        EXPECT_EQ(dialog.findChild<QProgressBar*>(q("barProgress"))->value(), 100);
        return dialog.result();
    });
    syncSBL(nullptr);
    ASSERT_TRUE(parcelOnDisk(q("10-7-0-1-7-0-0-0")));
    EXPECT_EQ(parcelOnDisk(q("10-7-0-1-7-0-0-0"))->text(q("ASSOC")), q("OWNER 7"));
    EXPECT_TRUE(prompts().shownTexts().contains(q("Completed. 6 records processed.")));
}

TEST_F(RollScreensTest, AFileOfAnotherFormHidesTheImportAndStoppingKeepsWholeRows)
{
    {
        QFile junk(installation.path(q("junk.txt")));
        ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
        junk.write("not a roll\nat all\n");
    }
    runImport(installation.path(q("junk.txt")), "", [](RpsImportFrm& preview) {
        EXPECT_EQ(field(preview, "txtSBL"), q("Could not obtain"));
        EXPECT_FALSE(preview.findChild<QPushButton*>(q("iContinue"))->isVisibleTo(&preview));
        clickIn(preview, "ICancel");
        return preview.result();
    });
    EXPECT_EQ(rollRows(), -1);

    const QString file = writeExtract(3000);
    runImport(file, "", [](RpsImportFrm& preview) {
        EXPECT_EQ(field(preview, "lblProcessed"), q("3000"));
        // The clerk presses Stop once a thousand records are in.
        preview.setProgressObserver([&preview](const RpsImportProgress& progress) {
            if (progress.pass == 2 && progress.processed == 1000) {
                preview.findChild<QPushButton*>(q("iStop"))->click();
            }
        });
        clickIn(preview, "iContinue");
        EXPECT_TRUE(preview.lastResult().stopped);
        EXPECT_EQ(preview.lastResult().processed, 1000);
        EXPECT_EQ(field(preview, "lblProcessed"), q("1000"));
        EXPECT_TRUE(preview.findChild<QPushButton*>(q("iContinue"))->isEnabled()) << "it can be run again";
        clickIn(preview, "ICancel");
        return preview.result();
    });
    EXPECT_EQ(rollRows(), 1000);
    EXPECT_TRUE(prompts().shownTexts().contains(
        q("Stopped. 1000 records were imported; the rest of the file was not read.")));
    EXPECT_FALSE(QFile::exists(installation.databaseFolder() + q("/imported.txt")))
        << "a stopped run is no import";
}

TEST_F(RollScreensTest, OneCancelEndsTheImportAndClosingMidRunIsAStop)
{
    const QString file = writeExtract(1500);
    // Each time: the clerk picks the file on the form, and the form is gone
    // once the preview is.
    auto importOnce = [&](std::function<void(RpsImportFrm&)> preview) {
        int formResult = -1;
        prompts().onDialog(q("rps"), [&](QDialog& form) {
            prompts().onDialog(q("FindImportFile"), [&](QDialog& dialog) {
                static_cast<QFileDialog&>(dialog).selectFile(file);
                return int(QDialog::Accepted);
            });
            prompts().onDialog(q("rpsimport"), [&](QDialog& dialog) {
                preview(static_cast<RpsImportFrm&>(dialog));
                return dialog.result();
            });
            form.setResult(-1);
            clickIn(form, "iImport");
            formResult = form.result();
            return formResult;
        });
        updateparcel(nullptr);
        return formResult;
    };
    EXPECT_EQ(importOnce([](RpsImportFrm& preview) { clickIn(preview, "ICancel"); }), int(QDialog::Rejected));
    EXPECT_EQ(rollRows(), -1);

    // Closing the window (or Escape) while records go in stops between two
    // records and keeps the preview; Cancel then ends it all.
    EXPECT_EQ(importOnce([](RpsImportFrm& preview) {
        preview.setProgressObserver([&preview](const RpsImportProgress& progress) {
            if (progress.pass == 2 && progress.processed == 400) {
                preview.reject();
            }
        });
        clickIn(preview, "iContinue");
        EXPECT_TRUE(preview.lastResult().stopped);
        EXPECT_EQ(preview.lastResult().processed, 400);
        clickIn(preview, "ICancel");
    }),
        int(QDialog::Rejected));
    EXPECT_EQ(rollRows(), 400);
}

TEST_F(RollScreensTest, ViewerWritesZipPlusFourAndItsColumnsShareTheWindow)
{
    EXPECT_EQ(RpsFields::writtenZip(q("PO BOX 9  , ALBANY NY 120541234")), q("PO BOX 9  , ALBANY NY 12054-1234"));
    EXPECT_EQ(RpsFields::writtenZip(q("PO BOX 9  , ALBANY NY 12054")), q("PO BOX 9  , ALBANY NY 12054"));
    EXPECT_EQ(RpsFields::writtenZip(q("ACCT 1120541234")), q("ACCT 1120541234")) << "ten digits: no ZIP";
    EXPECT_EQ(RpsFields::writtenZip(q("120541234")), q("120541234")) << "a number alone is no address";
    EXPECT_EQ(RpsFields::writtenZip(q("--")), q("--"));

    const QString path = installation.path(q("RPS995T1.txt"));
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        for (int i = 0; i < 2; ++i) {
            QByteArray line = record("134201", i);
            line.replace(276, 25, QByteArray("VAN DER BERGHE-WILLOUGHBY").leftJustified(25));
            line.replace(351, 25, QByteArray("C/O HUDSON VALLEY LAND TR").leftJustified(25));
            if (i == 1) {
                line.replace(426, 9, "124291234");
            }
            file.write(line + "\r\n");
        }
    }
    runImport(path, "", [](RpsImportFrm& preview) {
        EXPECT_TRUE(field(preview, "txtAddress").endsWith(q("ESOPUS NY 12429-1234")))
            << field(preview, "txtAddress").toStdString();
        clickIn(preview, "iContinue");
        return preview.result();
    });
    ASSERT_EQ(rollRows(), 2);
    prompts().onDialog(q("viewRPS"), [](QDialog& dialog) {
        ParcelListModel& model = static_cast<ViewRPS&>(dialog).model();
        const QString zipPlusFour = model.data(model.index(1, 4), Qt::DisplayRole).toString();
        EXPECT_TRUE(zipPlusFour.endsWith(q("ESOPUS NY 12429-1234"))) << zipPlusFour.toStdString();
        EXPECT_TRUE(model.data(model.index(0, 4), Qt::DisplayRole).toString().endsWith(q("ESOPUS NY 12429")));
        EXPECT_EQ(model.data(model.index(1, 4), Qt::ToolTipRole).toString(), zipPlusFour);
        // On a 1366-pixel screen every column stands within the list and
        // has room for a name.
        dialog.resize(1326, 600);
        dialog.show();
        QCoreApplication::processEvents();
        auto* list = dialog.findChild<QTreeView*>(q("ListView1"));
        int used = 0;
        for (int column = 0; column < model.columnCount(); ++column) {
            used += list->columnWidth(column);
            EXPECT_GE(list->columnWidth(column), column == 0 ? 120 : 200) << column;
        }
        EXPECT_LE(used, list->viewport()->width());
        dialog.hide();
        return int(QDialog::Accepted);
    });
    viewparcel(nullptr);
}

TEST_F(RollScreensTest, StoppingTheSynchronizationKeepsWholeRowsAndSaysHowMany)
{
    runImport(writeExtract(1200), "", [](RpsImportFrm& preview) {
        clickIn(preview, "iContinue");
        return preview.result();
    });
    ASSERT_EQ(rollRows(), 1200);
    // The clerk is told what will happen first, and may say no.
    prompts().answer(q("Synchronize SBL Repository"), PromptAnswer::No);
    syncSBL(nullptr);
    EXPECT_TRUE(
        prompts().shownTexts().last().startsWith(q("The 1200 parcels of the imported tax roll will be")));
    EXPECT_FALSE(prompts().dialogsRun().contains(q("syncSBL")));
    prompts().onDialog(q("syncSBL"), [](QDialog& dialog) {
        // The clerk presses Stop once 500 parcels are across.
        int rows = 0;
        static_cast<SyncFrm&>(dialog).setProgressObserver([&](double) {
            if (++rows == 500) {
                dialog.findChild<QPushButton*>(q("iStop"))->click();
            }
        });
        QCoreApplication::processEvents(); // the run starts once the window stands
        return dialog.result();
    });
    syncSBL(nullptr);
    EXPECT_TRUE(prompts().shownTexts().contains(
        q("Stopped. 500 records were carried into the SBL Repository; the rest of the roll was not.")))
        << prompts().shownTexts().join(q(" | ")).toStdString();
    store::StoreStatus status;
    auto rows = store::openRecordsetAt(storePath, q("Select * from SBL"), &status);
    ASSERT_TRUE(rows);
    EXPECT_EQ(rows->RecordCount(), 500);
    for (rows->MoveFirst(); !rows->Eof(); rows->MoveNext()) {
        EXPECT_TRUE(rows->text(q("ASSOC")).startsWith(q("OWNER "))) << rows->text(q("SBLF")).toStdString();
        EXPECT_TRUE(rows->text(q("MAILING")).startsWith(q("PO BOX "))) << rows->text(q("SBLF")).toStdString();
        EXPECT_NE(rows->value(q("NORTHCOORD")).toDouble(), 0.0);
    }

    // Run again to the end: the rest comes across, nothing twice.
    prompts().onDialog(q("syncSBL"), [](QDialog& dialog) {
        QCoreApplication::processEvents();
        return dialog.result();
    });
    syncSBL(nullptr);
    EXPECT_TRUE(prompts().shownTexts().contains(q("Completed. 1200 records processed.")));
    rows = store::openRecordsetAt(storePath, q("Select * from SBL"), &status);
    EXPECT_EQ(rows->RecordCount(), 1200);
}

} // namespace
