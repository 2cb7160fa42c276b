#include "admin/screens/PswFrm.h"

#include "admin/UserLogon.h"
#include "admin/screens/pswhelp.h"
#include "common/MousePointer.h"
#include "common/PromptService.h"
#include "common/Session.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QTimer>

namespace pvardo::admin {

// Twips to pixels, at 15 twips a pixel.
constexpr int helpOffset = 1300 / 15;

PswFrm::PswFrm(QWidget* parent)
    : QDialog(parent)
    , m_text1(new QLineEdit(this))
    , m_text2(new QLineEdit(this))
    , m_image6(new QLabel(this))
    , m_ok(new QPushButton(QStringLiteral("&OK"), this))
    , m_cancel(new QPushButton(QStringLiteral("&Cancel"), this))
{
    setObjectName(QStringLiteral("PswFrm"));
    setWindowTitle(QStringLiteral("Login"));
    setModal(true);

    m_text1->setObjectName(QStringLiteral("Text1"));
    m_text1->setToolTip(QStringLiteral(" Login name"));
    m_text2->setObjectName(QStringLiteral("Text2"));
    m_text2->setToolTip(QStringLiteral(" Login password"));
    m_text2->setEchoMode(QLineEdit::Password);
    m_ok->setObjectName(QStringLiteral("cmdOK"));
    m_ok->setToolTip(QStringLiteral(" Continue login"));
    m_ok->setDefault(true);
    m_cancel->setObjectName(QStringLiteral("cmdCancel"));
    m_cancel->setToolTip(QStringLiteral(" Cancel login"));
    m_image6->setObjectName(QStringLiteral("image6"));
    m_image6->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxQuestion).pixmap(32, 32));
    m_image6->setCursor(Qt::PointingHandCursor);
    m_image6->installEventFilter(this);

    auto* userLabel = new QLabel(QStringLiteral("User name:"), this);
    userLabel->setObjectName(QStringLiteral("Label1"));
    userLabel->setBuddy(m_text1);
    auto* passwordLabel = new QLabel(QStringLiteral("Password:"), this);
    passwordLabel->setObjectName(QStringLiteral("Label2"));
    passwordLabel->setBuddy(m_text2);

    auto* grid = new QGridLayout;
    grid->addWidget(m_image6, 0, 0, 2, 1, Qt::AlignTop);
    grid->addWidget(userLabel, 0, 1);
    grid->addWidget(m_text1, 0, 2);
    grid->addWidget(passwordLabel, 1, 1);
    grid->addWidget(m_text2, 1, 2);
    grid->setColumnMinimumWidth(2, 180);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(m_cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(buttons);

    connect(m_ok, &QPushButton::clicked, this, &PswFrm::cmdOK_Click);
    connect(m_cancel, &QPushButton::clicked, this, &PswFrm::cmdCancel_Click);
    m_text1->setText(session().CurrentUser);
}

PswFrm::~PswFrm() = default;

pswhelp* PswFrm::helpBox() const
{
    return m_help;
}

void PswFrm::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    setNormalPointer();
    m_text1->setFocus();
}

bool PswFrm::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_image6 && event->type() == QEvent::MouseButtonPress) {
        image6_Click();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void PswFrm::cmdOK_Click()
{
    ValidateUser(m_text1->text(), m_text2->text());
    if (session().LoggedIn) {
        // The name as the user list spells it, whatever case was typed: the
        // rows stamped by this user all carry the one name.
        const UserList& users = sessionUsers();
        const int index = session().UserIndex;
        session().CurrentUser = index >= 0 && index < users.entries.size()
            ? users.entries.at(index).name.trimmed()
            : m_text1->text().trimmed();
        accept();
        return;
    }
    showMessage(invalidPasswordText(), QStringLiteral("Login"));
    m_text2->setFocus();
    m_text2->selectAll();
}

void PswFrm::cmdCancel_Click()
{
    session().LoggedIn = false;
    reject();
}

void PswFrm::image6_Click()
{
    if (!m_help) {
        m_help = new pswhelp(this);
    }
    m_help->adjustSize();
    m_help->move(frameGeometry().topLeft() + QPoint(helpOffset, 0));
    m_help->show();
    m_help->raise();
    m_help->setFocus();
}

bool runLogOn(QWidget* parent)
{
    PswFrm screen(parent);
    prompts().exec(screen);
    return session().LoggedIn;
}

} // namespace pvardo::admin
