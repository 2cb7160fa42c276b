#include "common/PromptService.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "documents/Labels.h"
#include "documents/screens/LabelFrm.h"
#include "support/ScriptedPrompts.h"
#include "support/Text.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

using namespace pvardo;
using namespace pvardo::documents;
using pvardo::test::q;
using pvardo::test::scriptedPrompts;

namespace {

class LabelScreen : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(home.isValid());
        session().ProgramFolder = home.path();
        session().StopFlag = false;
        resetLabelState();
    }
    void TearDown() override { resetLabelState(); }

    void write(const QString& name, const QStringList& lines)
    {
        QDir().mkpath(home.filePath(q("labels")));
        ASSERT_TRUE(replaceTextLines(home.filePath(q("labels/")) + name, lines));
    }
    template <typename T> T* child(QWidget& parent, const char* name)
    {
        T* widget = parent.findChild<T*>(q(name));
        EXPECT_TRUE(widget) << name;
        return widget;
    }
    QString text(QWidget& window, const char* box) { return child<QLineEdit>(window, box)->text(); }
    // Types into a box and leaves it, as a user would.
    QString type(QWidget& window, const char* box, const char* typed)
    {
        auto* edit = child<QLineEdit>(window, box);
        edit->clear();
        QTest::keyClicks(edit, q(typed));
        QTest::keyClick(edit, Qt::Key_Return);
        return edit->text();
    }

    QTemporaryDir home;
};

} // namespace

TEST_F(LabelScreen, withoutACatalogueTheDefaultSheetIsOfferedAfterAMessage)
{
    LabelFrm window;
    EXPECT_EQ(window.windowTitle(), q(" Labels"));
    ASSERT_EQ(scriptedPrompts().shown().size(), 1);
    EXPECT_EQ(scriptedPrompts().shown().first().text,
        q("Label definition file not found. A default label will be created."));
    auto* list = child<QListWidget>(window, "List1");
    ASSERT_EQ(list->count(), 1);
    EXPECT_EQ(list->item(0)->text(), q("Avery® 5160"));
    EXPECT_EQ(child<QLabel>(window, "Label1")->text(), q("Avery® 5160\n3 across,10 down,1 x 2.63"));
    EXPECT_EQ(text(window, "Text1"), q("1"));
    EXPECT_EQ(text(window, "Text2"), q("1"));
    EXPECT_EQ(text(window, "Text4"), q("0.6"));
    EXPECT_EQ(text(window, "Text3"), q("0.2"));

    // Cancel: nothing is to print.
    child<QPushButton>(window, "command2")->click();
    EXPECT_TRUE(session().StopFlag);
    EXPECT_FALSE(labelState().running);
}

TEST_F(LabelScreen, aClerkPicksASheetAStartCellAndOffsetsAndPrints)
{
    QStringList catalog{q("12")};
    for (int i = 1; i <= 12; ++i) {
        catalog << q("Sheet %1").arg(i) << q("sheet%1.txt").arg(i);
    }
    write(q("catalog.txt"), catalog);
    write(q("sheet1.txt"),
        {q("Shipping"), q("sheet1"), q("2"), q("5"), q("2"), q("4"), q("0.5"), q("0.25"), q("0.19"), q("0")});
    // sheet2.txt is missing: the default values, without a message.
    LabelFrm window;
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());
    auto* list = child<QListWidget>(window, "List1");
    ASSERT_EQ(list->count(), 10);
    EXPECT_EQ(child<QLabel>(window, "Label1")->text(), q("Shipping\n2 across,5 down,2 x 4"));
    list->setCurrentRow(1);
    EXPECT_EQ(child<QLabel>(window, "Label1")->text(), q("Avery® 5160\n3 across,10 down,1 x 2.63"));
    list->setCurrentRow(0);
    EXPECT_EQ(text(window, "Text3"), q("0.25"));

    // A click on the picture's bottom right edge is the last cell; one near
    // the top left corner the first.
    auto* picture = child<QWidget>(window, "Picture1");
    QTest::mouseClick(picture, Qt::LeftButton, {}, QPoint(picture->width() - 1, picture->height() - 1));
    EXPECT_EQ(text(window, "Text1"), q("2"));
    EXPECT_EQ(text(window, "Text2"), q("5"));
    QTest::mouseClick(picture, Qt::LeftButton, {}, QPoint(picture->width() / 2 + 2, 1));
    EXPECT_EQ(text(window, "Text1"), q("2"));
    EXPECT_EQ(text(window, "Text2"), q("1"));

    // The boxes take only what they are for, and the offsets keep to their
    // bounds when left.
    EXPECT_EQ(type(window, "Text2", "a4.x"), q("4"));
    EXPECT_EQ(type(window, "Text3", "0.1"), q("0.4"));
    EXPECT_EQ(type(window, "Text4", "3.5"), q("3"));
    EXPECT_EQ(type(window, "Text4", "0,75in"), q("3")); // "075": the comma and letters refused
    EXPECT_EQ(type(window, "Text4", "0.75"), q("0.75"));

    child<QPushButton>(window, "command3")->click();
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_FALSE(session().StopFlag);
    const LabelRunState& state = labelState();
    EXPECT_TRUE(state.running);
    EXPECT_EQ(state.sheet.description, q("Shipping"));
    EXPECT_EQ(QPoint(state.nextColumn, state.nextRow), QPoint(2, 4));
    EXPECT_DOUBLE_EQ(state.topOffset, 0.75);
    EXPECT_DOUBLE_EQ(state.leftOffset, 0.4);
}

TEST_F(LabelScreen, singleLabelsGoOnFromTheHeldCellAndThePictureTakesNoClicks)
{
    labelState().single = true;
    labelState().nextColumn = 3;
    labelState().nextRow = 7;
    LabelFrm window;
    EXPECT_EQ(text(window, "Text1"), q("3"));
    EXPECT_EQ(text(window, "Text2"), q("7"));
    QTest::mouseClick(child<QWidget>(window, "Picture1"), Qt::LeftButton, {}, QPoint(2, 2));
    EXPECT_EQ(text(window, "Text1"), q("3"));
    EXPECT_EQ(text(window, "Text2"), q("7"));
}

// Draws the label window over the sheets a new installation gets, for the
// documentation; with PVARDO_SCREENSHOT_DIR set it is written there as
// label-window.png.
TEST_F(LabelScreen, Screenshot)
{
    QDir().mkpath(home.filePath(q("labels")));
    for (const char* name : {"catalog.txt", "av5160.txt", "av5161.txt", "av5162.txt"}) {
        QFile shipped(q(":/shipped/labels/") + q(name));
        ASSERT_TRUE(shipped.open(QIODevice::ReadOnly)) << name;
        ASSERT_TRUE(replaceFile(home.filePath(q("labels/")) + q(name), shipped.readAll()));
    }
    const QString folder = labelsFolder(home.path());
    const LabelSheet sheet = readLabelSheet(folder + q("/av5160.txt"));
    ASSERT_TRUE(drawLabelSheetPicture(sheet).save(labelPicturePath(folder, sheet), "BMP"));
    LabelFrm window;
    EXPECT_EQ(child<QListWidget>(window, "List1")->count(), 3);
    auto* picture = child<QWidget>(window, "Picture1");
    QTest::mouseClick(picture, Qt::LeftButton, {}, QPoint(picture->width() / 2, picture->height() / 3));
    EXPECT_EQ(text(window, "Text1"), q("2"));
    EXPECT_EQ(text(window, "Text2"), q("4"));
    window.show();
    QCoreApplication::processEvents();
    const QImage image = window.grab().toImage();
    ASSERT_FALSE(image.isNull());
    const QString target = qEnvironmentVariable("PVARDO_SCREENSHOT_DIR");
    if (!target.isEmpty()) {
        QDir().mkpath(target);
        EXPECT_TRUE(image.save(target + q("/label-window.png")));
    }
}
