#include "documents/screens/FormatToolbar.h"

#include "ui/TaskFrm.h"

#include <QAction>
#include <QComboBox>
#include <QFontDatabase>
#include <QLineEdit>
#include <QPainter>
#include <QPixmap>
#include <QSignalBlocker>
#include <QTextBlock>
#include <QTextEdit>

namespace pvardo::documents {

namespace {

// The fonts of the workstation, read once: reading them is slow on a machine
// with many fonts, and they do not change while the program runs.
const QStringList& fontFamilies()
{
    static QStringList families;
    static bool built = false;
    if (!built) {
        ui::TaskFrm::open(QStringLiteral("Building font list..."));
        families = QFontDatabase::families();
        ui::TaskFrm::close();
        built = true;
    }
    return families;
}

QIcon letterIcon(const QString& letter, bool bold, bool italic, bool underline)
{
    QPixmap picture(20, 20);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    QFont font(QStringLiteral("Serif"));
    font.setPixelSize(15);
    font.setBold(bold);
    font.setItalic(italic);
    font.setUnderline(underline);
    painter.setFont(font);
    painter.drawText(picture.rect(), Qt::AlignCenter, letter);
    return QIcon(picture);
}

QIcon justifyIcon(Qt::Alignment alignment)
{
    QPixmap picture(20, 20);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setPen(QPen(Qt::black, 1.5));
    const int widths[] = {16, 10, 14, 8};
    for (int i = 0; i < 4; ++i) {
        const int width = widths[i];
        int left = 2;
        if (alignment == Qt::AlignHCenter) {
            left = (20 - width) / 2;
        } else if (alignment == Qt::AlignRight) {
            left = 18 - width;
        }
        const int y = 4 + i * 4;
        painter.drawLine(left, y, left + width, y);
    }
    return QIcon(picture);
}

template <typename T> void keep(std::optional<T>& kept, bool& first, const T& value)
{
    if (first) {
        kept = value;
    } else if (kept && *kept != value) {
        kept.reset();
    }
}

} // namespace

FormatToolbar::FormatToolbar(QTextEdit& edit, QWidget* parent)
    : QToolBar(parent)
    , m_edit(edit)
{
    setObjectName(QStringLiteral("Toolbar1"));
    setMovable(false);

    m_fonts = new QComboBox(this);
    m_fonts->setObjectName(QStringLiteral("Combo1"));
    m_fonts->setEditable(true);
    m_fonts->setInsertPolicy(QComboBox::NoInsert);
    m_fonts->setMinimumWidth(180);
    m_fonts->setToolTip(QStringLiteral(" Font "));
    addWidget(m_fonts);
    m_sizes = new QComboBox(this);
    m_sizes->setObjectName(QStringLiteral("Combo2"));
    m_sizes->setEditable(true);
    m_sizes->setInsertPolicy(QComboBox::NoInsert);
    m_sizes->setMinimumWidth(60);
    m_sizes->setToolTip(QStringLiteral(" Size "));
    m_sizes->lineEdit()->setValidator(nullptr);
    addWidget(m_sizes);
    connect(m_fonts, &QComboBox::textActivated, this, &FormatToolbar::applyFamily);
    connect(m_sizes, &QComboBox::textActivated, this, &FormatToolbar::applySize);
    addSeparator();

    addButton(QStringLiteral("Bold"), QStringLiteral(" Bold "),
        letterIcon(QStringLiteral("B"), true, false, false));
    addButton(QStringLiteral("Italic"), QStringLiteral(" Italic "),
        letterIcon(QStringLiteral("I"), false, true, false));
    addButton(QStringLiteral("Underline"), QStringLiteral(" Underline "),
        letterIcon(QStringLiteral("U"), false, false, true));
    addSeparator();
    addButton(QStringLiteral("JustL"), QStringLiteral(" Left Justify "), justifyIcon(Qt::AlignLeft));
    addButton(QStringLiteral("JustC"), QStringLiteral(" Center Justify "), justifyIcon(Qt::AlignHCenter));
    addButton(QStringLiteral("JustR"), QStringLiteral(" Right Justify "), justifyIcon(Qt::AlignRight));

    connect(&m_edit, &QTextEdit::cursorPositionChanged, this, &FormatToolbar::SelChange);
    connect(&m_edit, &QTextEdit::selectionChanged, this, &FormatToolbar::SelChange);
    connect(&m_edit, &QTextEdit::currentCharFormatChanged, this, &FormatToolbar::SelChange);
}

QAction* FormatToolbar::addButton(const QString& key, const QString& tip, const QIcon& icon)
{
    QAction* action = addAction(icon, tip.trimmed());
    action->setObjectName(key);
    action->setToolTip(tip);
    action->setCheckable(true);
    connect(action, &QAction::triggered, this, [this, key] { tbrHandler(key); });
    return action;
}

void FormatToolbar::fillLists()
{
    if (m_fonts->count() == 0) {
        const QSignalBlocker blockFonts(m_fonts);
        m_fonts->addItems(fontFamilies());
    }
    if (m_sizes->count() == 0) {
        const QSignalBlocker blockSizes(m_sizes);
        for (int size : {8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 26, 28, 36, 48, 72}) {
            m_sizes->addItem(QString::number(size));
        }
    }
    SelChange();
}

void FormatToolbar::tbrHandler(const QString& key)
{
    const Selection now = selectionOf(m_edit);
    QTextCharFormat format;
    if (key == QLatin1String("Bold")) {
        format.setFontWeight(now.bold.value_or(false) ? QFont::Normal : QFont::Bold);
    } else if (key == QLatin1String("Italic")) {
        format.setFontItalic(!now.italic.value_or(false));
    } else if (key == QLatin1String("Underline")) {
        format.setFontUnderline(!now.underline.value_or(false));
    } else if (key == QLatin1String("JustL")) {
        m_edit.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
    } else if (key == QLatin1String("JustC")) {
        m_edit.setAlignment(Qt::AlignHCenter);
    } else if (key == QLatin1String("JustR")) {
        m_edit.setAlignment(Qt::AlignRight | Qt::AlignAbsolute);
    }
    if (format.propertyCount() > 0) {
        m_edit.mergeCurrentCharFormat(format);
    }
    SelChange();
    m_edit.setFocus();
}

FormatToolbar::Selection FormatToolbar::selectionOf(const QTextEdit& edit)
{
    Selection result;
    const QTextCursor cursor = edit.textCursor();
    const QFont base = edit.document()->defaultFont();
    auto fontOf = [&](const QTextCharFormat& format) { return format.font().resolve(base); };
    bool first = true;
    auto take = [&](const QTextCharFormat& format) {
        const QFont font = fontOf(format);
        keep(result.family, first, font.family());
        keep(result.size, first, font.pointSizeF());
        keep(result.bold, first, font.bold());
        keep(result.italic, first, font.italic());
        keep(result.underline, first, font.underline());
        keep(result.strikeOut, first, font.strikeOut());
        first = false;
    };
    if (!cursor.hasSelection()) {
        take(edit.currentCharFormat());
        return result;
    }
    const int start = cursor.selectionStart();
    const int end = cursor.selectionEnd();
    for (QTextBlock block = edit.document()->findBlock(start); block.isValid() && block.position() < end;
         block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (fragment.position() + fragment.length() <= start || fragment.position() >= end) {
                continue;
            }
            take(fragment.charFormat());
        }
    }
    if (first) {
        take(edit.currentCharFormat());
    }
    return result;
}

void FormatToolbar::SelChange()
{
    const Selection now = selectionOf(m_edit);
    now.bold.value_or(false) ? BoldDown() : BoldUp();
    now.italic.value_or(false) ? ItalicsDown() : ItalicsUp();
    now.underline.value_or(false) ? UnderlineDown() : UnderlineUp();
    const Qt::Alignment alignment = m_edit.alignment() & Qt::AlignHorizontal_Mask;
    (alignment & Qt::AlignHCenter) ? JustCDown() : JustCUp();
    (alignment & Qt::AlignRight) ? JustRDown() : JustRUp();
    (alignment & (Qt::AlignHCenter | Qt::AlignRight)) ? JustLUp() : JustLDown();

    const QSignalBlocker blockFonts(m_fonts);
    const QSignalBlocker blockSizes(m_sizes);
    m_fonts->setEditText(now.family.value_or(QString()));
    m_sizes->setEditText(now.size ? QString::number(*now.size) : QString());
}

void FormatToolbar::setDown(const QString& key, bool down)
{
    if (auto* action = findChild<QAction*>(key)) {
        const QSignalBlocker block(action);
        action->setChecked(down);
    }
}

void FormatToolbar::BoldDown()
{
    setDown(QStringLiteral("Bold"), true);
}
void FormatToolbar::BoldUp()
{
    setDown(QStringLiteral("Bold"), false);
}
void FormatToolbar::ItalicsDown()
{
    setDown(QStringLiteral("Italic"), true);
}
void FormatToolbar::ItalicsUp()
{
    setDown(QStringLiteral("Italic"), false);
}
void FormatToolbar::UnderlineDown()
{
    setDown(QStringLiteral("Underline"), true);
}
void FormatToolbar::UnderlineUp()
{
    setDown(QStringLiteral("Underline"), false);
}
void FormatToolbar::JustLDown()
{
    setDown(QStringLiteral("JustL"), true);
}
void FormatToolbar::JustLUp()
{
    setDown(QStringLiteral("JustL"), false);
}
void FormatToolbar::JustCDown()
{
    setDown(QStringLiteral("JustC"), true);
}
void FormatToolbar::JustCUp()
{
    setDown(QStringLiteral("JustC"), false);
}
void FormatToolbar::JustRDown()
{
    setDown(QStringLiteral("JustR"), true);
}
void FormatToolbar::JustRUp()
{
    setDown(QStringLiteral("JustR"), false);
}

void FormatToolbar::applyFamily(const QString& family)
{
    if (family.trimmed().isEmpty()) {
        return;
    }
    QTextCharFormat format;
    format.setFontFamilies({family.trimmed()});
    m_edit.mergeCurrentCharFormat(format);
    m_edit.setFocus();
}

void FormatToolbar::applySize(const QString& size)
{
    bool ok = false;
    const double points = size.trimmed().toDouble(&ok);
    // A size the printer cannot make is ignored rather than refused with a box.
    if (!ok || points < 1 || points > 1638) {
        SelChange();
        return;
    }
    QTextCharFormat format;
    format.setFontPointSize(points);
    m_edit.mergeCurrentCharFormat(format);
    m_edit.setFocus();
}

} // namespace pvardo::documents
