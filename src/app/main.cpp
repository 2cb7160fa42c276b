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

#include <cstdio>
#include <cstring>

namespace {

// The text of --help, which is also the source of the manual page.
constexpr const char* helpText = R"(Usage: pvardo [--help] [--version] [Qt options such as -platform NAME]

The planning board's desktop program: cases tied to tax parcels by their
Section-Block-Lot, with fees, bonds, meetings, reviews and the surrounding
parcels, the board's calendar, a parcel store filled from the assessment
rolls, and letters and listings printed from the office's RTF templates.

The program works on one installation folder: the settings file PVardo.ini,
the user list Users.Set, the seeds wrk/ and by default the databases in
databases/ and the templates in forms/. It is the folder PVARDO_HOME names;
else, when the program is installed under /usr (from the package), pvardo/ in
the user's data folder ($XDG_DATA_HOME, by default ~/.local/share), made with
the administrator ADMIN, password PLANNING, on the first start; else the
folder of the program itself. pvardo-admin administers the same folder.

Options:
  --help       show this text and leave
  --version    show the version and leave
)";

} // namespace

int main(int argc, char** argv)
{
    // Answered before any window system is needed, so that both work on a
    // terminal without a display.
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::fputs(helpText, stdout);
            return 0;
        }
        if (std::strcmp(argv[i], "--version") == 0) {
            std::fputs("pvardo " PVARDO_VERSION "\n", stdout);
            return 0;
        }
    }
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

    const pvardo::app::ProgramFolderChoice folder = pvardo::app::programFolderChoice();
    if (!pvardo::app::prepareProgramFolder(folder)) {
        return 1;
    }
    pvardo::app::WidgetStartupHost host;
    pvardo::app::Startup startup(host, folder.folder);
    if (!startup.run()) {
        return 0;
    }
    return QApplication::exec();
}
