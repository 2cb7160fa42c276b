#pragma once

#include <QToolBar>
#include <optional>

class QAction;
class QComboBox;
class QFont;
class QTextEdit;

namespace pvardo::documents {

// The formatting bar of the notepad and of the header window, "Toolbar1":
// bold, italic, underline and the three justifications as buttons that show
// the state of the selection, and the font and size lists. Its buttons act on
// the rich-text box it serves.
class FormatToolbar : public QToolBar
{
    Q_OBJECT

public:
    explicit FormatToolbar(QTextEdit& edit, QWidget* parent = nullptr);

    // The keys of the buttons: "Bold", "Italic", "Underline", "JustL",
    // "JustC", "JustR". Each button is a QAction of that object name.
    void tbrHandler(const QString& key);

    // Brings the buttons and the two lists in step with the selection. A
    // selection whose characters differ in a property shows that button up
    // and that list empty.
    void SelChange();

    // Fills the font list (once for the program, with "Building font list..."
    // while the fonts are read) and the size list.
    void fillLists();

    // A button's picture and state, pressed or released.
    void BoldDown();
    void BoldUp();
    void ItalicsDown();
    void ItalicsUp();
    void UnderlineDown();
    void UnderlineUp();
    void JustLDown();
    void JustLUp();
    void JustCDown();
    void JustCUp();
    void JustRDown();
    void JustRUp();

    // What the selection holds, each property unset when it is mixed.
    struct Selection
    {
        std::optional<QString> family;
        std::optional<double> size;
        std::optional<bool> bold;
        std::optional<bool> italic;
        std::optional<bool> underline;
        std::optional<bool> strikeOut;
    };
    static Selection selectionOf(const QTextEdit& edit);

private:
    QAction* addButton(const QString& key, const QString& tip, const QIcon& icon);
    void setDown(const QString& key, bool down);
    void applyFamily(const QString& family);
    void applySize(const QString& size);

    QTextEdit& m_edit;
    QComboBox* m_fonts = nullptr;
    QComboBox* m_sizes = nullptr;
};

} // namespace pvardo::documents
