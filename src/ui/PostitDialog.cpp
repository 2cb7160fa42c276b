#include "ui/PostitDialog.h"

#include "ui/XPButton.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace pvardo::ui {

PostitDialog::PostitDialog(const QString& note, const QString& sbl, const QString& name, QWidget* parent)
    : QDialog(parent)
    , m_original(note)
{
    setObjectName(QStringLiteral("Postit"));
    setWindowTitle(QStringLiteral(" Note-it"));
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    auto* sblLabel = new QLabel(sbl, this);
    sblLabel->setObjectName(QStringLiteral("lblSBL"));
    auto* nameLabel = new QLabel(name, this);
    nameLabel->setObjectName(QStringLiteral("lblName"));
    form->addRow(QStringLiteral("S-B-L:"), sblLabel);
    form->addRow(QStringLiteral("Name:"), nameLabel);
    m_note = new QPlainTextEdit(note, this);
    m_note->setObjectName(QStringLiteral("txtNote"));
    m_note->setReadOnly(true);
    m_note->setStyleSheet(QStringLiteral("QPlainTextEdit { background: #fff8b0; }"));
    auto* buttons = new QHBoxLayout;
    auto* go = new XPButton(
        QStringLiteral("NoteOveride"), QStringLiteral(" Continue and write changes"), QString(), this);
    auto* stop
        = new XPButton(QStringLiteral("NoteCancel"), QStringLiteral(" Cancel changes"), QString(), this);
    auto* edit = new XPButton(QStringLiteral("noteEdit"), QStringLiteral(" Edit notes"), QString(), this);
    buttons->addWidget(edit);
    buttons->addStretch();
    buttons->addWidget(go);
    buttons->addWidget(stop);
    layout->addLayout(form);
    layout->addWidget(m_note);
    layout->addLayout(buttons);
    connect(go, &QPushButton::clicked, this, &QDialog::accept);
    connect(stop, &QPushButton::clicked, this, &QDialog::reject);
    connect(edit, &QPushButton::clicked, this, &PostitDialog::startEditing);
    resize(440, 300);
}

void PostitDialog::startEditing()
{
    m_note->setReadOnly(false);
    m_note->setFocus();
}

QString PostitDialog::note() const
{
    return m_note->toPlainText();
}

bool PostitDialog::noteChanged() const
{
    return note() != m_original;
}

} // namespace pvardo::ui
