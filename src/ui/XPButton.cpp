#include "ui/XPButton.h"

namespace pvardo::ui {

XPButton::XPButton(QWidget* parent)
    : QPushButton(parent)
{
    setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumHeight(26);
    setCursor(Qt::PointingHandCursor);
}

XPButton::XPButton(const QString& objectName, const QString& caption, const QString& toolTip, QWidget* parent)
    : XPButton(parent)
{
    setObjectName(objectName);
    setText(caption);
    setToolTip(toolTip);
}

} // namespace pvardo::ui
