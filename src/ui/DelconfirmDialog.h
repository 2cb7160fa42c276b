#pragma once

#include <QDialog>

namespace pvardo::ui {

// The dialog `Delconfirm` before an administrator's hard delete. "Yes" goes
// on; the other button, and closing the dialog, stop.
class DelconfirmDialog : public QDialog
{
    Q_OBJECT

public:
    // `detail`, when given, says under the warning what else the record
    // touches (the cases filed on a parcel, say).
    explicit DelconfirmDialog(QWidget* parent = nullptr, const QString& detail = {});
    // The first line names what goes; the warning continues its sentence.
    static QString leadText();
    static QString warningText();
};

// Runs `Delconfirm` through the prompt service and sets the session's
// StopFlag: false to delete, true to keep the record. Gives true to delete.
bool Delconfirm(QWidget* parent = nullptr, const QString& detail = {});

} // namespace pvardo::ui
