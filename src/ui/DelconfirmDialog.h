#pragma once

#include <QDialog>

namespace pvardo::ui {

// The dialog `Delconfirm` before an administrator's hard delete. "Yes" goes
// on; the other button, and closing the dialog, stop.
class DelconfirmDialog : public QDialog
{
    Q_OBJECT

public:
    explicit DelconfirmDialog(QWidget* parent = nullptr);
    // The first line names what goes; the warning continues its sentence.
    static QString leadText();
    static QString warningText();
};

// Runs `Delconfirm` through the prompt service and sets the session's
// StopFlag: false to delete, true to keep the record. Gives true to delete.
bool Delconfirm(QWidget* parent = nullptr);

} // namespace pvardo::ui
