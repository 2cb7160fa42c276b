#include "admin/screens/AdminScreens.h"
#include "app/ProgramFolder.h"
#include "app/Startup.h"
#include "app/screens/WidgetStartupHost.h"
#include "common/DatabaseBackup.h"
#include "common/PromptService.h"
#include "common/Settings.h"
#include "ui/BrowseForFolder.h"
#include "ui/DateInput.h"
#include "ui/WidgetPromptService.h"

#include <QApplication>
#include <QLocale>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pvardo"));
    QApplication::setApplicationDisplayName(QStringLiteral("Vardo"));
    QApplication::setApplicationVersion(QStringLiteral(PVARDO_VERSION));
    // The office's calendar everywhere: US names, weeks from Sunday.
    QLocale::setDefault(pvardo::ui::DateInput::officeLocale());
    // The program ends through ExitApp, never because its last window closed.
    QApplication::setQuitOnLastWindowClosed(false);
    pvardo::installPromptService(std::make_unique<pvardo::ui::WidgetPromptService>());
    // The backup asks for its destination with the folder picker.
    pvardo::setBackupFolderPicker([](const QString& title) { return pvardo::ui::BrowseForFolder(title); });
    // A new settings file on a computer with the sibling inspection program
    // asks whether to share its parcel store.
    pvardo::Settings::setShareQuestion([] { return pvardo::admin::askShareParcelStore(nullptr); });

    pvardo::app::WidgetStartupHost host;
    pvardo::app::Startup startup(host, pvardo::app::programFolder());
    if (!startup.run()) {
        return 0;
    }
    return QApplication::exec();
}
