#include "ui/BrowseForFolder.h"

#include "support/ScriptedPrompts.h"

#include <QFileDialog>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pvardo;
using pvardo::test::scriptedPrompts;

TEST(BrowseForFolder, GivesTheChosenFolderOrNothingOnCancel)
{
    QTemporaryDir dir;
    const QString title = QStringLiteral("Locate the drive and directory to store the backup databases.");
    scriptedPrompts().onDialog(QStringLiteral("BrowseForFolder"), [&](QDialog& dialog) {
        auto& picker = static_cast<QFileDialog&>(dialog);
        EXPECT_EQ(picker.windowTitle(), title);
        EXPECT_EQ(picker.fileMode(), QFileDialog::Directory);
        EXPECT_TRUE(picker.testOption(QFileDialog::ShowDirsOnly));
        picker.setDirectory(dir.path());
        picker.selectFile(dir.path());
        return int(QDialog::Accepted);
    });
    EXPECT_EQ(ui::BrowseForFolder(title), QDir::cleanPath(dir.path()));
    EXPECT_EQ(ui::BrowseForFolder(title), QString());
    EXPECT_EQ(scriptedPrompts().dialogsRun(),
        QStringList({QStringLiteral("BrowseForFolder"), QStringLiteral("BrowseForFolder")}));
}
