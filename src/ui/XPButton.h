#pragma once

#include <QPushButton>

class QDialog;
class QHBoxLayout;

namespace pvardo::ui {

// The command button of the record screens: a flat button that lights up under
// the pointer, with its object name, caption and tool tip set at once.
class XPButton : public QPushButton
{
    Q_OBJECT

public:
    explicit XPButton(QWidget* parent = nullptr);
    XPButton(
        const QString& objectName, const QString& caption, const QString& toolTip, QWidget* parent = nullptr);
};

// The "OK" (cmdOK, the default) and "Cancel" (cmdCancel) buttons of a small
// dialog, right-aligned in a row. Cancel rejects the dialog; what OK does is
// the dialog's to connect.
QHBoxLayout* okCancelRow(QDialog& dialog, XPButton** ok);

} // namespace pvardo::ui
