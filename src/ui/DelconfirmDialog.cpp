#include "ui/DelconfirmDialog.h"

#include "common/PromptService.h"
#include "common/Session.h"
#include "ui/XPButton.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QVBoxLayout>

namespace pvardo::ui {

QString DelconfirmDialog::warningText()
{
    return QStringLiteral(
        "from the database. This option cannot be reversed. Are you sure you want to delete "
        "this record? (selecting \"Yes\"  removes the record permanently)");
}

QString DelconfirmDialog::leadText()
{
    return QStringLiteral("You are about to remove this record");
}

DelconfirmDialog::DelconfirmDialog(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("Delconfirm"));
    setWindowTitle(QStringLiteral(" Delete Record"));
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    auto* row = new QHBoxLayout;
    auto* icon = new QLabel(this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(32, 32));
    // The warning continues the sentence of the line above it.
    auto* lead = new QLabel(leadText(), this);
    lead->setObjectName(QStringLiteral("Label2"));
    auto* text = new QLabel(warningText(), this);
    text->setObjectName(QStringLiteral("Label1"));
    text->setWordWrap(true);
    auto* texts = new QVBoxLayout;
    texts->addWidget(lead);
    texts->addWidget(text);
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addLayout(texts, 1);
    auto* buttons = new QHBoxLayout;
    auto* yes = new XPButton(QStringLiteral("cmdYes"), QStringLiteral("Yes"), QString(), this);
    auto* no = new XPButton(QStringLiteral("cmdNo"), QStringLiteral("No"), QString(), this);
    no->setDefault(true);
    buttons->addStretch();
    buttons->addWidget(yes);
    buttons->addWidget(no);
    layout->addLayout(row);
    layout->addLayout(buttons);
    connect(yes, &QPushButton::clicked, this, &QDialog::accept);
    connect(no, &QPushButton::clicked, this, &QDialog::reject);
    setMinimumWidth(380);
}

bool Delconfirm(QWidget* parent)
{
    DelconfirmDialog dialog(parent);
    const bool go = prompts().exec(dialog) == QDialog::Accepted;
    session().StopFlag = !go;
    return go;
}

} // namespace pvardo::ui
