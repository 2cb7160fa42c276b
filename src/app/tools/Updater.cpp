// Updater: what the Admin menu's "Check for updates.." starts. The program is
// updated as a Debian package, so this tells the version installed and how.
#include "app/screens/OutsideTools.h"

#include <QApplication>

#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0) {
            std::fputs("Usage: Updater [--home DIR]\n\n"
                       "Shows the version installed and how the office installs a newer package.\n",
                stdout);
            return 0;
        }
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Updater"));
    pvardo::app::UpdaterWindow window(QStringLiteral(PVARDO_VERSION),
        pvardo::app::toolProgramFolder(QApplication::arguments()));
    window.show();
    return window.exec() >= 0 ? 0 : 1;
}
