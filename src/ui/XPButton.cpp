#include "ui/XPButton.h"

#include <QDialog>
#include <QHBoxLayout>

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

QHBoxLayout* okCancelRow(QDialog& dialog, XPButton** ok)
{
    auto* row = new QHBoxLayout;
    *ok = new XPButton(QStringLiteral("cmdOK"), QStringLiteral("OK"), QString(), &dialog);
    auto* cancel = new XPButton(QStringLiteral("cmdCancel"), QStringLiteral("Cancel"), QString(), &dialog);
    (*ok)->setDefault(true);
    row->addStretch();
    row->addWidget(*ok);
    row->addWidget(cancel);
    QObject::connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    return row;
}

} // namespace pvardo::ui
