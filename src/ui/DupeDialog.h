#pragma once

#include <QDialog>

class QCheckBox;

namespace pvardo::ui {

// The dialog `dupe`: a record number is already taken. iContinue with the box
// ticked lets the program bump the number itself for the rest of the run;
// iContinue with the box clear, and iCancel, abandon the insert. The texts are
// the record's own, so any numbered record can use it.
class DupeDialog : public QDialog
{
    Q_OBJECT

public:
    DupeDialog(const QString& title, const QString& text, const QString& advice, const QString& checkBoxText,
        QWidget* parent = nullptr);

    QCheckBox* checkBox() const { return m_check; }

private:
    QCheckBox* m_check = nullptr;
};

// Runs `dupe` through the prompt service; true when the numbers are to be
// resolved automatically from now on.
bool askDupe(const QString& title, const QString& text, const QString& advice, const QString& checkBoxText,
    QWidget* parent = nullptr);

} // namespace pvardo::ui
