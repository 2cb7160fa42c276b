#include "ui/RecordNavigation.h"

#include "ui/RecordInfoBox.h"
#include "ui/XPButton.h"

namespace pvardo::ui {

bool RecordNavigation::hasRow() const
{
    return m_rows && !store::dbisempty(*m_rows) && !m_rows->Bof() && !m_rows->Eof();
}

bool RecordNavigation::move(Step step)
{
    if (!hasRow()) {
        return false;
    }
    switch (step) {
    case Step::First:
        m_rows->MoveFirst();
        break;
    case Step::Previous:
        m_rows->MovePrevious();
        if (m_rows->Bof()) {
            m_rows->MoveFirst();
        }
        break;
    case Step::Next:
        m_rows->MoveNext();
        if (m_rows->Eof()) {
            m_rows->MoveLast();
        }
        break;
    case Step::Last:
        m_rows->MoveLast();
        break;
    }
    return true;
}

int RecordNavigation::position() const
{
    return hasRow() ? m_rows->AbsolutePosition() : 0;
}

int RecordNavigation::count() const
{
    return m_rows ? m_rows->RecordCount() : 0;
}

QString RecordNavigation::positionText(bool entering, bool unreadable) const
{
    if (entering) {
        return QStringLiteral("enter data");
    }
    if (!hasRow() || count() <= 0) {
        return QStringLiteral("empty database");
    }
    return QStringLiteral("Record ") + QString::number(position()) + QStringLiteral(" of ") + QString::number(count())
        + (unreadable ? QStringLiteral(" cannot be read") : QString());
}

void RecordNavigation::enableMoves(const QHash<QString, XPButton*>& buttons, bool moving) const
{
    moving = moving && hasRow();
    const int at = position();
    const int last = count();
    const std::pair<const char*, bool> states[] = {{"IMoveFirst", moving && at > 1},
                                                   {"IMovePrev", moving && at > 1},
                                                   {"IMoveNext", moving && at < last},
                                                   {"IMoveLast", moving && at < last}};
    for (const auto& [name, on] : states) {
        if (XPButton* button = buttons.value(QString::fromLatin1(name))) {
            button->setEnabled(on);
        }
    }
}

void RecordNavigation::remember()
{
    m_haveMark = hasRow();
    if (m_haveMark) {
        m_mark = m_rows->bookmark();
    }
}

void RecordNavigation::returnToRemembered()
{
    if (!m_rows || m_rows->RecordCount() == 0) {
        return;
    }
    if (!m_haveMark || !m_rows->setBookmark(m_mark)) {
        m_rows->MoveFirst();
    }
}

void RecordNavigation::showInfo(QWidget* parent) const
{
    if (!hasRow()) {
        return;
    }
    showRecordInfo(m_rows->text(QStringLiteral("BYUSER")), m_rows->value(QStringLiteral("TSTAMP")).toDateTime(),
                   parent);
}

} // namespace pvardo::ui
