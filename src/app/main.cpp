#include "app/ProgramFolder.h"

#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pvardo"));
    QApplication::setApplicationDisplayName(QStringLiteral("Vardo"));
    QMainWindow window;
    window.show();
    return QApplication::exec();
}
