#pragma once

#include <QDialog>
#include <QTextDocument>

class QCheckBox;
class QLineEdit;
class QPushButton;
class QTextEdit;

namespace pvardo::documents {

// "Search & Replace" over one rich-text box: find from the start, find again
// from behind the selection, replace the found text, replace all. The
// outcome shows in the window's title.
class SearchFrm : public QDialog
{
    Q_OBJECT

public:
    // Opened with text selected in the box, that text is the one to find.
    explicit SearchFrm(QTextEdit& edit, QWidget* parent = nullptr);

    void Find();
    void FindAgain();
    void Replace();
    void ReplaceAll();

private:
    QTextDocument::FindFlags options() const;
    // Looks from `from` on and selects the match; false when there is none.
    bool findFrom(int from);
    bool selectionMatches() const;
    void setFound(bool found);

    QTextEdit& m_edit;
    QLineEdit* m_find = nullptr;
    QLineEdit* m_replace = nullptr;
    QCheckBox* m_caseSensitive = nullptr;
    QCheckBox* m_wholeWord = nullptr;
    QPushButton* m_findAgain = nullptr;
    QPushButton* m_replaceButton = nullptr;
    QPushButton* m_replaceAll = nullptr;
};

} // namespace pvardo::documents
