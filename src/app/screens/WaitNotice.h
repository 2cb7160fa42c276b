#pragma once

#include <QWidget>

namespace pvardo::app {

// waitfrm: the notice that covers the last steps of the start-up, while the
// parcel store is opened.
class WaitNotice : public QWidget
{
    Q_OBJECT

public:
    explicit WaitNotice(QWidget* parent = nullptr);
};

} // namespace pvardo::app
