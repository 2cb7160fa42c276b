#pragma once

#include <QMainWindow>

namespace pvardo::app {

// The main window until the dashboard takes its place: titled "Vardo", with
// Quit as the way out. Quitting, and closing the window, go through ExitApp.
class StandInWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit StandInWindow(QWidget* parent = nullptr);

protected:
    void closeEvent(QCloseEvent* event) override;
};

} // namespace pvardo::app
