#include "documents/screens/SearchFrm.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTextCursor>
#include <QTextEdit>
#include <QVBoxLayout>

namespace pvardo::documents {

namespace {

const QString kTitle = QStringLiteral("Search & Replace");

} // namespace

SearchFrm::SearchFrm(QTextEdit& edit, QWidget* parent)
    : QDialog(parent)
    , m_edit(edit)
{
    setObjectName(QStringLiteral("SearchFrm"));
    setWindowTitle(kTitle);
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    m_find = new QLineEdit(this);
    m_find->setObjectName(QStringLiteral("Text1"));
    m_find->setMinimumWidth(260);
    form->addRow(QStringLiteral("Find what"), m_find);
    m_replace = new QLineEdit(this);
    m_replace->setObjectName(QStringLiteral("Text2"));
    form->addRow(QStringLiteral("Replace with"), m_replace);
    layout->addLayout(form);
    m_caseSensitive = new QCheckBox(QStringLiteral("Case sensitive"), this);
    m_caseSensitive->setObjectName(QStringLiteral("Check1"));
    m_wholeWord = new QCheckBox(QStringLiteral("Whole word only"), this);
    m_wholeWord->setObjectName(QStringLiteral("Check2"));
    layout->addWidget(m_caseSensitive);
    layout->addWidget(m_wholeWord);

    auto* buttons = new QHBoxLayout;
    auto* find = new QPushButton(QStringLiteral("Find"), this);
    find->setObjectName(QStringLiteral("FindButton"));
    find->setDefault(true);
    m_findAgain = new QPushButton(QStringLiteral("Find Again"), this);
    m_findAgain->setObjectName(QStringLiteral("FindNextButton"));
    m_replaceButton = new QPushButton(QStringLiteral("Replace"), this);
    m_replaceButton->setObjectName(QStringLiteral("ReplaceButton"));
    m_replaceAll = new QPushButton(QStringLiteral("Replace All"), this);
    m_replaceAll->setObjectName(QStringLiteral("ReplaceAllButton"));
    for (QPushButton* button : {find, m_findAgain, m_replaceButton, m_replaceAll}) {
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    layout->addLayout(buttons);
    connect(find, &QPushButton::clicked, this, &SearchFrm::Find);
    connect(m_findAgain, &QPushButton::clicked, this, &SearchFrm::FindAgain);
    connect(m_replaceButton, &QPushButton::clicked, this, &SearchFrm::Replace);
    connect(m_replaceAll, &QPushButton::clicked, this, &SearchFrm::ReplaceAll);

    // Replace All needs no Find first; the other two follow a match.
    m_findAgain->setEnabled(false);
    m_replaceButton->setEnabled(false);
    connect(m_find, &QLineEdit::textChanged, this, [this] { m_replaceAll->setEnabled(true); });
    const QTextCursor cursor = m_edit.textCursor();
    if (cursor.hasSelection()) {
        m_find->setText(cursor.selectedText());
    }
}

QTextDocument::FindFlags SearchFrm::options() const
{
    QTextDocument::FindFlags flags;
    if (m_wholeWord->isChecked()) {
        flags |= QTextDocument::FindWholeWords;
    }
    if (m_caseSensitive->isChecked()) {
        flags |= QTextDocument::FindCaseSensitively;
    }
    return flags;
}

bool SearchFrm::findFrom(int from)
{
    if (m_find->text().isEmpty()) {
        return false;
    }
    const QTextCursor found = m_edit.document()->find(m_find->text(), from, options());
    if (found.isNull()) {
        return false;
    }
    m_edit.setTextCursor(found);
    m_edit.ensureCursorVisible();
    return true;
}

bool SearchFrm::selectionMatches() const
{
    const QTextCursor cursor = m_edit.textCursor();
    if (!cursor.hasSelection()) {
        return false;
    }
    const QTextCursor again = m_edit.document()->find(m_find->text(), cursor.selectionStart(), options());
    return !again.isNull() && again.selectionStart() == cursor.selectionStart()
        && again.selectionEnd() == cursor.selectionEnd();
}

void SearchFrm::setFound(bool found)
{
    m_findAgain->setEnabled(found);
    m_replaceButton->setEnabled(found);
    m_replaceAll->setEnabled(found);
}

void SearchFrm::Find()
{
    const bool found = findFrom(0);
    setFound(found);
    setWindowTitle(found ? kTitle : kTitle + QStringLiteral(": ") + QStringLiteral("Text not found."));
}

void SearchFrm::FindAgain()
{
    if (!findFrom(m_edit.textCursor().selectionEnd())) {
        setFound(false);
        setWindowTitle(kTitle + QStringLiteral(": No more matches"));
        return;
    }
    setFound(true);
    setWindowTitle(kTitle);
}

void SearchFrm::Replace()
{
    // Only a match is replaced: the clerk may have clicked elsewhere in the
    // text since it was found.
    if (selectionMatches()) {
        m_edit.textCursor().insertText(m_replace->text());
    }
    FindAgain();
}

void SearchFrm::ReplaceAll()
{
    int count = 0;
    if (selectionMatches() || findFrom(0)) {
        QTextCursor edit = m_edit.textCursor();
        edit.beginEditBlock(); // one Undo takes back the whole run
        do {
            QTextCursor match = m_edit.textCursor();
            match.insertText(m_replace->text());
            m_edit.setTextCursor(match);
            ++count;
        } while (findFrom(m_edit.textCursor().position()));
        edit.endEditBlock();
    }
    setFound(false);
    const QString outcome = count == 0 ? QStringLiteral("No replacement")
        : count == 1                   ? QStringLiteral("1 replacement")
                                       : QString::number(count) + QStringLiteral(" replacements");
    setWindowTitle(kTitle + QStringLiteral(": ") + outcome);
}

} // namespace pvardo::documents
