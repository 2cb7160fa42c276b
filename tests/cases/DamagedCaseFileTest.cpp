#include "CaseScreenFixture.h"

#include "cases/screens/CaseListModel.h"
#include "cases/screens/CaseListView.h"
#include "support/DamagedPage.h"
#include "ui/DateInput.h"

#include <QTest>
#include <QTreeView>

using namespace pvardo;
using namespace pvardo::test;

TEST_F(CaseScreenTest, ACaseOnADamagedPageIsReportedNotShownBlank)
{
    for (int i = 0; i < 36; ++i) {
        seedCase(QStringLiteral("12-%1").arg(100 + i),
            {{q("PBLOCN1"), QStringLiteral("%1 MAIN ST").arg(i)}, {q("PBGENNOTES"), QString(2500, QLatin1Char('n'))}});
    }
    zeroFirstLeafPage(casePath, "PBPROJ");

    open();
    ASSERT_FALSE(prompts().shown().isEmpty());
    EXPECT_EQ(lastTitle(), q(" Projects"));
    EXPECT_TRUE(lastText().contains(q("damaged"))) << lastText().toStdString();
    EXPECT_TRUE(lastText().contains(casePath)) << lastText().toStdString();
    EXPECT_TRUE(lastText().contains(q("restore the file from the last backup")));

    // The message names the file once.
    EXPECT_EQ(lastText().count(casePath), 1) << lastText().toStdString();
    // The unreadable case is shown as such: nothing on the inputs, nothing to change.
    EXPECT_EQ(label("recpos"), q("Record 1 of 36 cannot be read"));
    EXPECT_EQ(text(1), q(""));
    EXPECT_EQ(find<ui::DateInput>("DTPicker3")->text(), q(""));
    EXPECT_FALSE(on("IEdit"));
    EXPECT_FALSE(find<QAction>("delr")->isEnabled());
    EXPECT_FALSE(find<QAction>("printreceipt")->isEnabled());

    // The cases on sound pages still show.
    prompts().clear();
    click("IMoveLast");
    EXPECT_EQ(text(1), q("12-135"));
    EXPECT_EQ(text(7), q("35 MAIN ST"));
    EXPECT_TRUE(prompts().shown().isEmpty()) << lastText().toStdString();
    EXPECT_TRUE(on("IEdit"));

    // Stepping back onto it: another case's values do not stay behind.
    click("IMoveFirst");
    click("IMoveNext");
    EXPECT_EQ(text(1), q("12-101"));
    click("IMovePrev");
    EXPECT_EQ(lastTitle(), q(" Projects"));
    EXPECT_EQ(text(1), q(""));
    EXPECT_EQ(text(7), q(""));
    EXPECT_EQ(find<ui::DateInput>("DTPicker3")->text(), q(""));
    EXPECT_FALSE(on("IEdit"));
    screen->IEdit();
    EXPECT_EQ(screen->mode(), ui::RecordMode::Browse);

    // In the list its line says it cannot be read, and opening it opens no
    // other case.
    screen->resize(1366, 900);
    screen->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(screen.get()));
    click("IMoveLast");
    click("iBrowse");
    auto* view = find<QTreeView>("ListView1");
    const QModelIndex first = view->model()->index(0, cases::CaseListModel::Project);
    EXPECT_EQ(first.data().toString(), cases::CaseListModel::unreadableText());
    prompts().clear();
    view->scrollToTop();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, view->visualRect(first).center());
    EXPECT_TRUE(lastText().contains(q("cannot be read"))) << lastText().toStdString();
    EXPECT_EQ(text(1), q("12-135"));
    prompts().clear();
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, view->visualRect(first).center());
    EXPECT_TRUE(lastText().contains(q("cannot be read"))) << lastText().toStdString();
    EXPECT_EQ(text(1), q("12-135"));
    EXPECT_EQ(find<QPushButton>("iBrowse")->text(), q("Detail")); // still the list
}

TEST_F(CaseScreenTest, ADamagedListFileIsNamedAndTheBuiltInListOffered)
{
    const QString types = installation.databaseFolder() + q("/zpt.txt");
    {
        QFile file(types);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("Pool\n\x01\x8f\x00\x00garbage\x02\n");
    }
    open();
    QStringList told;
    for (const Prompt& prompt : prompts().shown()) {
        told << prompt.text;
    }
    ASSERT_EQ(told.filter(types).size(), 1) << told.join(q(" | ")).toStdString();
    EXPECT_TRUE(told.filter(types).first().contains(q("The list built into the program is offered meanwhile.")));
    auto* combo = find<QComboBox>("Combo1");
    EXPECT_GE(combo->findText(q("Addition")), 0);
    EXPECT_LT(combo->findText(q("Pool")), 0);
    for (int i = 0; i < combo->count(); ++i) {
        EXPECT_FALSE(combo->itemText(i).contains(q("garbage"))) << i;
    }
}
