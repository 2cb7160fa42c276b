#include "schedule/screens/Delconfirm.h"

#include "common/PromptService.h"
#include "common/Session.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace pvardo::schedule {

Delconfirm::Delconfirm(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("Delconfirm"));
    setWindowTitle(QStringLiteral(" Delete Record"));
    setModal(true);
    auto* icon = new QLabel(this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(40, 40));
    icon->setAlignment(Qt::AlignTop);
    auto* text = new QLabel(warningText(), this);
    text->setObjectName(QStringLiteral("Label1"));
    text->setWordWrap(true);
    text->setMinimumWidth(320);
    auto* yes = new QPushButton(QStringLiteral("Yes"), this);
    yes->setObjectName(QStringLiteral("Yes"));
    auto* no = new QPushButton(QStringLiteral("No"), this);
    no->setObjectName(QStringLiteral("No"));
    // Enter must not delete by accident.
    no->setDefault(true);
    connect(yes, &QPushButton::clicked, this, &QDialog::accept);
    connect(no, &QPushButton::clicked, this, &QDialog::reject);

    auto* top = new QHBoxLayout;
    top->addWidget(icon);
    top->addWidget(text, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(yes);
    buttons->addWidget(no);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(buttons);
    // Closing the box counts as No until Yes is pressed.
    session().StopFlag = true;
}

QString Delconfirm::warningText()
{
    return QStringLiteral("from the database. This option cannot be reversed. Are you sure you want to delete "
                          "this record? (selecting \"Yes\"  removes the record permanently)");
}

void Delconfirm::done(int result)
{
    session().StopFlag = result != QDialog::Accepted;
    QDialog::done(result);
}

bool Delconfirm::confirm(QWidget* parent)
{
    Delconfirm box(parent);
    const int result = prompts().exec(box);
    session().StopFlag = result != QDialog::Accepted;
    return !session().StopFlag;
}

} // namespace pvardo::schedule
