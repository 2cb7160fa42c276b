#include "ui/TaskFrm.h"

#include <QApplication>
#include <QDateTime>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QScreen>
#include <QVBoxLayout>

namespace pvardo::ui {

namespace {

QPointer<TaskFrm>& theWindow()
{
    static QPointer<TaskFrm> window;
    return window;
}

// Repaints at most this often while a loop steps the bar.
constexpr qint64 PaintEveryMs = 100;

} // namespace

TaskFrm::TaskFrm()
    : QWidget(nullptr, Qt::Tool | Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("TaskFrm"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    auto* layout = new QVBoxLayout(this);
    m_text = new QLabel(defaultText(), this);
    m_text->setObjectName(QStringLiteral("lblTask"));
    m_text->setAlignment(Qt::AlignCenter);
    m_bar = new QProgressBar(this);
    m_bar->setObjectName(QStringLiteral("ProgressBar1"));
    m_bar->setTextVisible(false);
    m_bar->hide();
    layout->addWidget(m_text);
    layout->addWidget(m_bar);
    setFrameStyle();
    resize(300, 70);
}

void TaskFrm::setFrameStyle()
{
    setStyleSheet(QStringLiteral(
        "pvardo--ui--TaskFrm { border: 1px solid palette(dark); background: palette(window); }"));
}

TaskFrm& TaskFrm::instance()
{
    QPointer<TaskFrm>& window = theWindow();
    if (!window) {
        window = new TaskFrm();
    }
    return *window;
}

void TaskFrm::open(const QString& text)
{
    TaskFrm& window = instance();
    window.m_text->setText(text);
    window.m_bar->hide();
    window.m_bar->setValue(0);
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        window.move(screen->availableGeometry().center() - window.rect().center());
    }
    window.show();
    window.raise();
    window.m_lastPaint = QDateTime::currentMSecsSinceEpoch();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void TaskFrm::setRange(int maximum)
{
    TaskFrm& window = instance();
    window.m_bar->setRange(0, std::max(1, maximum));
    window.m_bar->show();
}

void TaskFrm::step(int value)
{
    TaskFrm& window = instance();
    window.m_bar->setValue(std::min(value, window.m_bar->maximum()));
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (now - window.m_lastPaint >= PaintEveryMs) {
        window.m_lastPaint = now;
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
}

void TaskFrm::close()
{
    if (theWindow()) {
        theWindow()->hide();
    }
}

bool TaskFrm::isOpen()
{
    return theWindow() && theWindow()->isVisible();
}

QString TaskFrm::text()
{
    return theWindow() ? theWindow()->m_text->text() : QString();
}

} // namespace pvardo::ui
