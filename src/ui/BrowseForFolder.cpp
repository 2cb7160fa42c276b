#include "ui/BrowseForFolder.h"

#include "common/PromptService.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>

namespace pvardo::ui {

QString BrowseForFolder(const QString& title, const QString& startFolder)
{
    QFileDialog dialog(QApplication::activeWindow(), title, startFolder);
    dialog.setObjectName(QStringLiteral("BrowseForFolder"));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly, true);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    if (prompts().exec(dialog) != QDialog::Accepted) {
        return {};
    }
    const QStringList chosen = dialog.selectedFiles();
    if (chosen.isEmpty()) {
        return {};
    }
    return QDir::cleanPath(chosen.constFirst());
}

} // namespace pvardo::ui
