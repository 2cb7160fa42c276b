#include "app/screens/WaitNotice.h"

#include <QLabel>
#include <QVBoxLayout>

namespace pvardo::app {

WaitNotice::WaitNotice(QWidget* parent)
    : QWidget(parent, Qt::Dialog | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("waitfrm"));
    setWindowTitle(QStringLiteral("Vardo"));
    auto* layout = new QVBoxLayout(this);
    auto* text = new QLabel(QStringLiteral("One moment please.."), this);
    text->setObjectName(QStringLiteral("Label1"));
    text->setAlignment(Qt::AlignCenter);
    layout->addWidget(text);
    resize(320, 90);
}

} // namespace pvardo::app
