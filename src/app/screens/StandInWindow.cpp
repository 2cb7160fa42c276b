#include "app/screens/StandInWindow.h"

#include "app/ExitApp.h"
#include "common/Session.h"

#include <QAction>
#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>

namespace pvardo::app {

StandInWindow::StandInWindow(QWidget* parent)
    : QMainWindow(parent)
{
    setObjectName(QStringLiteral("scheduler"));
    setWindowTitle(QStringLiteral("Vardo"));
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    QAction* quit = file->addAction(QStringLiteral("&Quit"));
    quit->setObjectName(QStringLiteral("Quit"));
    connect(quit, &QAction::triggered, this, [] { ExitApp(); });
    auto* who = new QLabel(this);
    who->setObjectName(QStringLiteral("lblUser"));
    who->setAlignment(Qt::AlignCenter);
    who->setText(QStringLiteral("Logged on: ") + session().CurrentUser + QStringLiteral("\nDatabases: ")
        + session().DatabaseFolder);
    setCentralWidget(who);
    resize(640, 420);
}

void StandInWindow::closeEvent(QCloseEvent* event)
{
    // Closing the main window leaves the program, as Quit does.
    session().LeavingMarker = 99;
    event->ignore();
    ExitApp();
}

} // namespace pvardo::app
