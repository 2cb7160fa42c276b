#pragma once

#include <QDialog>

namespace pvardo::app {

// The notice before the update hand-off: the two warnings, " Cancel " and
// "Continue with update ". Cancel sets StopFlag, Continue clears it.
class UpdateNotice final : public QDialog
{
    Q_OBJECT

public:
    explicit UpdateNotice(QWidget* parent = nullptr);

    void ICancel();
    void iContinue();
};

// The Options menu's repair: the repair tool dbMender of the program folder
// works on closed databases, so it is started and the program ends at once,
// with no backup and no version written. Without the tool the user is told
// and the session goes on.
void repairAttempt();

// The Admin menu's update hand-off: the notice, then on Continue the updater
// of the program folder is started and the program ends at once. An updater
// that is not there or does not start is said, and the session goes on.
void checkUpdates(QWidget* parent);

// The Options menu's Application Info: appinfo.txt written and shown in the
// report window.
void showApplicationInfo();

// The about screen's hidden door for support: appinfo.txt and the
// diagnostics report debug2.txt written, the report shown in the report
// window.
void showDiagnosticsReport();

} // namespace pvardo::app
