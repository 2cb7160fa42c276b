#include "CaseScreenFixture.h"
#include "documents/screens/NotepadFrm.h"

#include <QAction>
#include <QTextEdit>

namespace pvardo::test {

// The notepad's insert commands take the case the case screen shows, and
// nothing once no case screen is open.
TEST_F(CaseScreenTest, notepadInsertsTheCaseShown)
{
    seedCase(q("24-031"),
        {{q("SEC"), q("12")}, {q("BLK"), q("1")}, {q("LOT"), q("5")}, {q("PBLOCN1"), q("14 Mill Pond Road")},
            {q("PBOWNRNAME1"), q("Anne Whitcomb")},
            {q("PBOWNRADDR1"), q("14 Mill Pond Road, Esopus NY 12429")},
            {q("PBPROJDESC"), q("A two-car detached garage.")}});
    open();
    documents::NotepadFrm pad;
    QTextEdit& text = pad.buffer();
    auto insert = [&](const char* command) {
        pad.findChild<QAction*>(q(command))->trigger();
        text.insertPlainText(q("|"));
    };
    insert("insertprop");
    insert("insertown");
    insert("insertproj");
    const QStringList parts = text.toPlainText().split(q("|"));
    ASSERT_EQ(parts.size(), 4);
    EXPECT_TRUE(parts[0].startsWith(q("12"))) << parts[0].toStdString();
    EXPECT_TRUE(parts[0].endsWith(q(" 14 Mill Pond Road"))) << parts[0].toStdString();
    EXPECT_EQ(parts[1], q("Anne Whitcomb, 14 Mill Pond Road, Esopus NY 12429"));
    EXPECT_EQ(parts[2], q("A two-car detached garage."));
    EXPECT_TRUE(pad.changed());

    screen.reset();
    scriptedPrompts().answer(q("Save Changes"), PromptAnswer::No);
    pad.newdoc();
    pad.findChild<QAction*>(q("insertown"))->trigger();
    EXPECT_EQ(text.toPlainText(), QString());
}

} // namespace pvardo::test
