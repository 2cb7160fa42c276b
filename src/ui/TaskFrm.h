#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;

namespace pvardo::ui {

// The one small window that covers every slow command: a line of text and,
// for long loops, a bar. There is one for the whole program; commands open
// it, step it and close it through the static calls, and closing it when it
// is not open does nothing.
class TaskFrm : public QWidget
{
    Q_OBJECT

public:
    static QString defaultText() { return QStringLiteral("One moment please.."); }

    // Shows the window with a text; the bar is hidden until a range is set.
    static void open(const QString& text = defaultText());
    // Sets the bar's range and shows it.
    static void setRange(int maximum);
    // Moves the bar; lets the window repaint now and then, not on every step.
    static void step(int value);
    static void close();
    static bool isOpen();
    static QString text();
    // The window itself, made on first use.
    static TaskFrm& instance();

private:
    TaskFrm();

    QLabel* m_text = nullptr;
    QProgressBar* m_bar = nullptr;
    void setFrameStyle();

    qint64 m_lastPaint = 0;
};

} // namespace pvardo::ui
