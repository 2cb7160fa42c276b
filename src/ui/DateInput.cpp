#include "ui/DateInput.h"

#include "common/Clock.h"
#include "common/DateText.h"
#include "common/PromptService.h"

#include <QAction>
#include <QCalendarWidget>
#include <QRegularExpressionValidator>
#include <QStyle>

namespace pvardo::ui {

namespace {

const QString DateFormat = QStringLiteral("MM/dd/yyyy");

// A typed date: month, day and a year of one to four digits, split by "/" or
// "-". Nothing else is a date here, so nothing is guessed.
QDate readTyped(const QString& text)
{
    static const QRegularExpression shape(QStringLiteral("^(\\d{1,2})[/-](\\d{1,2})[/-](\\d{1,4})$"));
    const QRegularExpressionMatch match = shape.match(text.trimmed());
    if (!match.hasMatch()) {
        return {};
    }
    const int month = match.captured(1).toInt();
    const int day = match.captured(2).toInt();
    const QString yearText = match.captured(3);
    if (yearText.size() == 3) {
        return {};
    }
    const int year = yearText.size() == 4 ? yearText.toInt() : FullYear(yearText.toInt(), todaysDate());
    return QDate(year, month, day);
}

} // namespace

DateInput::DateInput(const QDate& date, QWidget* parent)
    : QLineEdit(parent)
{
    setLocale(officeLocale());
    setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9/-]{0,10}")), this));
    setMaxLength(10);
    setPlaceholderText(QStringLiteral("mm/dd/yyyy"));
    QAction* drop = addAction(style()->standardIcon(QStyle::SP_ArrowDown), QLineEdit::TrailingPosition);
    drop->setObjectName(QStringLiteral("dropCalendar"));
    drop->setToolTip(QStringLiteral(" Pick the date from a calendar "));
    connect(drop, &QAction::triggered, this, &DateInput::showCalendar);
    connect(this, &QLineEdit::returnPressed, this, &DateInput::acceptTyped);
    setDate(date);
}

QLocale DateInput::officeLocale()
{
    return QLocale(QLocale::English, QLocale::UnitedStates);
}

void DateInput::setDate(const QDate& date)
{
    const QDate shown = date.isValid() ? date : QDate();
    setText(shown.isValid() ? shown.toString(DateFormat) : QString());
    if (shown == m_date) {
        return;
    }
    m_date = shown;
    emit dateChanged(m_date);
}

void DateInput::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    acceptTyped();
}

void DateInput::acceptTyped()
{
    if (isReadOnly()) {
        return;
    }
    const QString typed = text().trimmed();
    if (typed == (m_date.isValid() ? m_date.toString(DateFormat) : QString())) {
        return;
    }
    if (typed.isEmpty() && m_emptyAllowed) {
        setDate(QDate());
        return;
    }
    const QDate date = readTyped(typed);
    if (!date.isValid()) {
        // Back to what was there before the message, so that leaving the
        // input again does not ask twice.
        setText(m_date.isValid() ? m_date.toString(DateFormat) : QString());
        showMessage((typed.isEmpty() ? QStringLiteral("The date cannot be left empty. The date stays ")
                                     : typed + QStringLiteral(" is not a date. The date stays "))
                + (m_date.isValid() ? m_date.toString(DateFormat) : QStringLiteral("empty"))
                + QLatin1Char('.'),
            QStringLiteral(" Date"), PromptButtons::Ok, PromptIcon::Exclamation);
        return;
    }
    setDate(date);
}

void DateInput::showCalendar()
{
    if (isReadOnly() || !isEnabled()) {
        return;
    }
    acceptTyped();
    auto* calendar = new QCalendarWidget(this);
    calendar->setObjectName(QStringLiteral("calendarPopup"));
    calendar->setAttribute(Qt::WA_DeleteOnClose);
    calendar->setWindowFlags(Qt::Popup);
    calendar->setLocale(officeLocale());
    calendar->setFirstDayOfWeek(Qt::Sunday);
    calendar->setGridVisible(true);
    if (m_date.isValid()) {
        calendar->setSelectedDate(m_date);
    }
    connect(calendar, &QCalendarWidget::clicked, this, [this, calendar](const QDate& picked) {
        setDate(picked);
        calendar->close();
    });
    connect(calendar, &QCalendarWidget::activated, this, [this, calendar](const QDate& picked) {
        setDate(picked);
        calendar->close();
    });
    m_calendar = calendar;
    calendar->move(mapToGlobal(QPoint(0, height())));
    calendar->show();
}

} // namespace pvardo::ui
