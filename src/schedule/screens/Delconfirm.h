#pragma once

#include <QDialog>

namespace pvardo::schedule {

// The confirmation before a record leaves the database for good. "Yes"
// clears the session's StopFlag and accepts; the other button, and closing
// the box, set it.
class Delconfirm : public QDialog
{
    Q_OBJECT

public:
    explicit Delconfirm(QWidget* parent = nullptr);

    // The warning the box shows.
    static QString warningText();

    // Runs the box through the prompt service; true when the user said Yes.
    static bool confirm(QWidget* parent);

    void done(int result) override;
};

} // namespace pvardo::schedule
