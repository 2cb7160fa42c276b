#pragma once

#include <QFrame>

namespace pvardo::admin {

// The hint box of the log-on screen: one sentence, gone at any click or key.
class pswhelp final : public QFrame
{
    Q_OBJECT
public:
    explicit pswhelp(QWidget* parent = nullptr);

    static QString hintText()
    {
        return QStringLiteral("Enter the user name and password which have been assigned to you by "
                              "your system administrator.");
    }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace pvardo::admin
