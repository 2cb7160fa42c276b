#include "app/screens/AboutScreen.h"

#include "app/screens/MaintenanceCommands.h"

#include <QCoreApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace pvardo::app {

AboutScreen::AboutScreen(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About Vardo"));
    auto* layout = new QVBoxLayout(this);
    auto* name = new QLabel(QStringLiteral("Vardo"), this);
    name->setObjectName(QStringLiteral("lblTitle"));
    QFont big = name->font();
    big.setPointSizeF(big.pointSizeF() * 2);
    big.setBold(true);
    name->setFont(big);
    name->setAlignment(Qt::AlignCenter);
    layout->addWidget(name);
    auto* purpose = new QLabel(QStringLiteral("Planning board case management"), this);
    // A right-button press here writes the reports a support call asks for.
    purpose->setObjectName(QStringLiteral("Label4"));
    purpose->installEventFilter(this);
    purpose->setAlignment(Qt::AlignCenter);
    layout->addWidget(purpose);
    auto* version = new QLabel(QStringLiteral("Version ") + QCoreApplication::applicationVersion(), this);
    version->setObjectName(QStringLiteral("lblVersion"));
    version->setAlignment(Qt::AlignCenter);
    layout->addWidget(version);
    auto* close = new QPushButton(QStringLiteral("OK"), this);
    close->setObjectName(QStringLiteral("cmdOK"));
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    layout->addWidget(close, 0, Qt::AlignCenter);
}

bool AboutScreen::eventFilter(QObject* watched, QEvent* event)
{
    if (watched->objectName() == QLatin1String("Label4") && event->type() == QEvent::MouseButtonPress
        && static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) {
        showDiagnosticsReport();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void AboutScreen::setSplash(bool splash)
{
    if (auto* close = findChild<QPushButton*>(QStringLiteral("cmdOK"))) {
        close->setVisible(!splash);
    }
    setWindowFlag(Qt::SplashScreen, splash);
}

} // namespace pvardo::app
