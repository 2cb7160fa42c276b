#pragma once

#include <QPushButton>

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

} // namespace pvardo::ui
