#include "admin/screens/pswhelp.h"

#include <QLabel>
#include <QVBoxLayout>

namespace pvardo::admin {

pswhelp::pswhelp(QWidget* parent)
    : QFrame(parent, Qt::Tool | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("pswhelp"));
    setFrameShape(QFrame::Box);
    setAttribute(Qt::WA_DeleteOnClose, false);
    setFocusPolicy(Qt::StrongFocus);
    auto* text = new QLabel(hintText(), this);
    text->setObjectName(QStringLiteral("Label1"));
    text->setWordWrap(true);
    text->setFixedWidth(220);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addWidget(text);
    setAutoFillBackground(true);
    QPalette colours = palette();
    colours.setColor(QPalette::Window, QColor(255, 255, 225));
    setPalette(colours);
}

void pswhelp::mousePressEvent(QMouseEvent* event)
{
    QFrame::mousePressEvent(event);
    close();
}

void pswhelp::keyPressEvent(QKeyEvent* event)
{
    QFrame::keyPressEvent(event);
    close();
}

} // namespace pvardo::admin
