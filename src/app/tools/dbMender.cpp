// dbMender: the repair tool the program starts from its folder ("Repair
// Attempt.."). It waits for the program to close, runs pvardo-admin repair on
// the installation and shows the report.
#include "app/screens/OutsideTools.h"

#include <QApplication>

#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0) {
            std::fputs("Usage: dbMender [--home DIR]\n\n"
                       "Waits until the program is closed on the installation (DIR, else PVARDO_HOME, else the\n"
                       "current folder), then runs pvardo-admin repair on it and shows the report.\n",
                stdout);
            return 0;
        }
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("dbMender"));
    pvardo::app::MenderWindow window(pvardo::app::toolProgramFolder(QApplication::arguments()),
        pvardo::app::MenderWindow::findAdminProgram());
    window.show();
    window.start();
    window.exec();
    return window.exitCode() == 0 ? 0 : 1;
}
