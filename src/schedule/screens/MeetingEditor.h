#pragma once

#include "schedule/MeetingForm.h"

#include <QGroupBox>

class QButtonGroup;
class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QRadioButton;
class QTimeEdit;

namespace pvardo::schedule {

// The dashboard's editor of one meeting ("Manage Meetings"): the boxes
// Text1 to Text7, the time DTPicker1, the schedule options Option1 and
// Option2 and the rule's lists Combo1 to Combo3. It only shows and hands
// over values; the dashboard checks and stores them.
class MeetingEditor : public QGroupBox
{
    Q_OBJECT

public:
    explicit MeetingEditor(QWidget* parent = nullptr);

    MeetingForm form() const;
    void setForm(const MeetingForm& form);
    // The values after INew: empty boxes, a duration of 1, neither option,
    // "First" "Monday" every month.
    void clearToDefaults();

    // A locked editor shows its values and takes no input.
    void setLocked(bool locked);
    bool isLocked() const { return m_locked; }

    // The remarks box, which the Edit menu fills from and saves to a file.
    QPlainTextEdit* remarks() const { return m_text7; }

private:
    QLineEdit* m_text1;
    QLineEdit* m_text2;
    QLineEdit* m_text3;
    QLineEdit* m_text4;
    QLineEdit* m_text5;
    QLineEdit* m_text6;
    QPlainTextEdit* m_text7;
    QTimeEdit* m_time;
    QRadioButton* m_option1;
    QRadioButton* m_option2;
    QButtonGroup* m_options;
    QComboBox* m_combo1;
    QComboBox* m_combo2;
    QComboBox* m_combo3;
    bool m_locked = false;
};

} // namespace pvardo::schedule
