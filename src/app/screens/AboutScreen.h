#pragma once

#include <QDialog>

namespace pvardo::app {

// The splash and about screen frmAbout: the program's name and version.
// At start-up it shows without its close button while the program gets ready.
class AboutScreen : public QDialog
{
    Q_OBJECT

public:
    explicit AboutScreen(QWidget* parent = nullptr);

    // Hides the close button, as at start-up.
    void setSplash(bool splash);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace pvardo::app
