#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

namespace pvardo::admin {

class pswhelp;

// The log-on screen between the splash and the main window. A user of the
// list logs on with name and password in any mix of capitals; a wrong
// password or an unknown name gets the same answer and the screen stays, with
// no limit on attempts. Accepted once the session is logged on; Cancel leaves
// the session logged off and the program then ends.
class PswFrm final : public QDialog
{
    Q_OBJECT
public:
    explicit PswFrm(QWidget* parent = nullptr);
    ~PswFrm() override;

    static QString invalidPasswordText() { return QStringLiteral("Invalid Password, try again!"); }

    // The commands behind the buttons and the picture, for the tests too.
    void cmdOK_Click();
    void cmdCancel_Click();
    void image6_Click();
    pswhelp* helpBox() const;

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLineEdit* m_text1;
    QLineEdit* m_text2;
    QLabel* m_image6;
    QPushButton* m_ok;
    QPushButton* m_cancel;
    pswhelp* m_help = nullptr;
};

// Runs the log-on screen through the prompt service. True when logged on.
bool runLogOn(QWidget* parent = nullptr);

} // namespace pvardo::admin
