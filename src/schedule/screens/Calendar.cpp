#include "schedule/screens/Calendar.h"

#include "common/Clock.h"
#include "schedule/CalendarMath.h"

#include <QKeyEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWheelEvent>
#include <algorithm>

namespace pvardo::schedule {

namespace {

constexpr int Margin = 8;
constexpr int Weeks = 6;
constexpr int CellCount = Weeks * 7;

// Sunday is 1, as the office's lists count weekdays.
int weekdayOf(const QDate& date)
{
    return date.dayOfWeek() % 7 + 1;
}

QColor mixed(const QColor& a, const QColor& b, double share)
{
    return QColor::fromRgbF(static_cast<float>(a.redF() * (1 - share) + b.redF() * share),
        static_cast<float>(a.greenF() * (1 - share) + b.greenF() * share),
        static_cast<float>(a.blueF() * (1 - share) + b.blueF() * share));
}

QColor withAlpha(QColor color, int alpha)
{
    color.setAlpha(alpha);
    return color;
}

} // namespace

Calendar::Calendar(QWidget* parent)
    : QWidget(parent)
    , m_date(todaysDate())
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_Hover);
    // Mark colours by index: clear, strong colours that stay readable as a
    // light tint behind a day's number. Index 5 is the meetings' orange.
    m_markColors = {QColor(0xc9, 0x2a, 0x2a), QColor(0xd6, 0x33, 0x6c), QColor(0x2f, 0x9e, 0x44),
        QColor(0x19, 0x71, 0xc2), QColor(0x70, 0x48, 0xe8), QColor(0xe8, 0x59, 0x0c),
        QColor(0x0c, 0x85, 0x99), QColor(0x5c, 0x94, 0x0d)};
    while (m_markColors.size() < MarkColorCount) {
        m_markColors.append(m_markColors.at(m_markColors.size() % 8));
    }
}

// The date ----------------------------------------------------------------

bool Calendar::setDate(const QDate& date)
{
    if (!date.isValid() || date < QDate(FirstCalendarYear, 1, 1)) {
        showInfoMessage(miscellaneous(2));
        return false;
    }
    if (date > QDate(LastCalendarYear, 12, 31)) {
        showInfoMessage(miscellaneous(3));
        return false;
    }
    m_message.clear();
    if (date == m_date) {
        update();
        return true;
    }
    const bool newMonth = date.year() != m_date.year() || date.month() != m_date.month();
    m_date = date;
    if (newMonth) {
        m_marks = {};
        m_selected = {};
    }
    update();
    emit dateChanged(m_date.year(), m_date.month(), m_date.day());
    if (newMonth) {
        emit monthChanged(m_date.year(), m_date.month());
    }
    return true;
}

void Calendar::setCalDay(int day)
{
    const int last = schedule::GetMonthDays(CalMonth(), CalYear());
    setDate(QDate(CalYear(), CalMonth(), std::clamp(day, 1, last)));
}

void Calendar::setCalMonth(int month)
{
    if (month < 1 || month > 12) {
        return;
    }
    const int last = schedule::GetMonthDays(month, CalYear());
    setDate(QDate(CalYear(), month, std::min(CalDay(), last)));
}

void Calendar::setCalYear(int year)
{
    if (year < FirstCalendarYear) {
        showInfoMessage(miscellaneous(2));
        return;
    }
    if (year > LastCalendarYear) {
        showInfoMessage(miscellaneous(3));
        return;
    }
    const int last = schedule::GetMonthDays(CalMonth(), year);
    setDate(QDate(year, CalMonth(), std::min(CalDay(), last)));
}

void Calendar::moveMonths(int months)
{
    const QDate target = m_date.addMonths(months);
    setDate(target);
}

QDate Calendar::today() const
{
    return m_today.isValid() ? m_today : todaysDate();
}

void Calendar::setToday(const QDate& todayDate)
{
    m_today = todayDate;
    update();
}

// Properties ----------------------------------------------------------------

void Calendar::setFirstWeekDay(int weekday)
{
    m_firstWeekDay = std::clamp(weekday, 1, 7);
    update();
}

void Calendar::setLanguage(int language)
{
    m_language = std::clamp(
        language, static_cast<int>(CalendarLanguage::English), static_cast<int>(CalendarLanguage::External));
    update();
}

void Calendar::setShowInfoBar(bool show)
{
    m_showInfoBar = show;
    updateGeometry();
    update();
}

void Calendar::setShowNavigationBar(bool show)
{
    m_showNavigationBar = show;
    updateGeometry();
    update();
}

void Calendar::setCellOtherMonthView(bool show)
{
    m_otherMonthView = show;
    update();
}

void Calendar::setSelectionType(int type)
{
    m_selectionType = type == MultipleSelection ? MultipleSelection : SingleSelection;
    update();
}

void Calendar::setDateFormat(const QString& format)
{
    m_dateFormat = format;
    update();
}

// Arithmetic and names ------------------------------------------------------

int Calendar::DaysBetween(const QDate& from, const QDate& to) const
{
    return schedule::DaysBetween(from, to);
}

int Calendar::DayOfYear(int day, int month, int year) const
{
    return schedule::DayOfYear(day, month, year);
}

int Calendar::GetMonthDays(int month, int year) const
{
    return schedule::GetMonthDays(month, year);
}

long Calendar::GetJulianDay(int year, int month, int day) const
{
    return schedule::GetJulianDay(year, month, day);
}

double Calendar::GetMoonPhaseExact(double julianDay) const
{
    return schedule::GetMoonPhaseExact(julianDay);
}

QStringList Calendar::languageList(int list) const
{
    if (m_language == CalendarLanguage::External) {
        if (!m_external[static_cast<size_t>(list)].isEmpty()) {
            return m_external[static_cast<size_t>(list)];
        }
        // Without the office's own words, the system's names of months and days.
        const QLocale system = QLocale::system();
        if (list == CalendarLanguage::MonthNames) {
            QStringList names;
            for (int month = 1; month <= 12; ++month) {
                names.append(system.standaloneMonthName(month, QLocale::LongFormat));
            }
            return names;
        }
        if (list == CalendarLanguage::DayNames) {
            QStringList names;
            for (int weekday = 1; weekday <= 7; ++weekday) {
                names.append(system.standaloneDayName(weekday == 1 ? 7 : weekday - 1, QLocale::LongFormat));
            }
            return names;
        }
    }
    return CalendarLanguage::builtIn(static_cast<CalendarLanguage::Language>(m_language), list);
}

CalendarAlmanac Calendar::almanac() const
{
    // An office's own lists name days and months; the almanac stays English.
    const auto language = m_language == CalendarLanguage::External
        ? CalendarLanguage::English
        : static_cast<CalendarLanguage::Language>(m_language);
    return CalendarAlmanac(language, static_cast<CalendarAlmanac::Hemisphere>(m_hemisphere));
}

QString Calendar::miscellaneous(int item) const
{
    return languageList(CalendarLanguage::Miscellaneous).value(item);
}

QString Calendar::GetMonthName(int month) const
{
    return languageList(CalendarLanguage::MonthNames).value(month - 1);
}

QString Calendar::GetWeekdayName(int weekday) const
{
    return languageList(CalendarLanguage::DayNames).value(weekday - 1);
}

QString Calendar::FillExternalLanguage(int list, const QString& text)
{
    if (list < 0 || list >= CalendarLanguage::ListCount) {
        return CalendarLanguage::checkLines({});
    }
    const QString problem = CalendarLanguage::checkList(list, text);
    if (problem.isEmpty()) {
        m_external[static_cast<size_t>(list)] = text.split(QLatin1Char(','));
        update();
    }
    return problem;
}

// Marks and selection -------------------------------------------------------

void Calendar::DayMarking(int day, int colorIndex, bool on)
{
    if (day < 1 || day > 31) {
        return;
    }
    m_marks[static_cast<size_t>(day)] = on ? std::max(colorIndex, 0) + 1 : 0;
}

void Calendar::clearMarks()
{
    m_marks = {};
}

int Calendar::dayMark(int day) const
{
    return day >= 1 && day <= 31 ? std::max(m_marks[static_cast<size_t>(day)] - 1, 0) : 0;
}

bool Calendar::isDaySelected(int day) const
{
    if (day < 1 || day > 31) {
        return false;
    }
    return m_selected[static_cast<size_t>(day)] || (m_selectionType == SingleSelection && day == CalDay());
}

bool Calendar::IsDaySel(int day) const
{
    return (day >= 1 && day <= 31 && m_marks[static_cast<size_t>(day)] != 0) || isDaySelected(day);
}

void Calendar::DaySelect(int day, bool on)
{
    if (day < 1 || day > schedule::GetMonthDays(CalMonth(), CalYear())) {
        return;
    }
    if (m_selected[static_cast<size_t>(day)] == on) {
        return;
    }
    m_selected[static_cast<size_t>(day)] = on;
    update();
    emit selectionChanged();
}

void Calendar::SetMarkColors(const QList<QColor>& colors)
{
    for (int index = 0; index < std::min<int>(static_cast<int>(colors.size()), MarkColorCount); ++index) {
        m_markColors[index] = colors.at(index);
    }
    update();
}

QColor Calendar::markColor(int colorIndex) const
{
    return m_markColors.value(std::clamp(colorIndex, 0, MarkColorCount - 1));
}

void Calendar::Refresh()
{
    update();
}

void Calendar::showInfoMessage(const QString& text)
{
    m_message = text;
    update();
}

QString Calendar::infoText() const
{
    if (!m_message.isEmpty()) {
        return m_message;
    }
    QString dayIn = miscellaneous(0);
    dayIn.replace(QLatin1Char('#'), QString::number(DayOfYear(CalDay(), CalMonth(), CalYear())));
    return dayIn + QString::number(CalYear()) + QStringLiteral("    ") + miscellaneous(1)
        + QString::number(weekOfYear(CalDay(), CalMonth(), CalYear()));
}

// Geometry ------------------------------------------------------------------

Calendar::Geometry Calendar::geometry() const
{
    Geometry g;
    const int line = fontMetrics().height();
    const QRect inner = rect().adjusted(Margin, Margin, -Margin, -Margin);
    int top = inner.top();
    if (m_showNavigationBar) {
        const int height = std::max(36, line * 2 + 6);
        g.navigation = QRect(inner.left(), top, inner.width(), height);
        const int button = height - 8;
        g.next = QRect(g.navigation.right() - button, top + 4, button, button);
        g.previous = g.next.translated(-button - 4, 0);
        g.title = QRect(inner.left() + 6, top, g.previous.left() - inner.left() - 10, height);
        top += height + 2;
    }
    int bottom = inner.bottom();
    if (m_showInfoBar) {
        const int height = line + 12;
        g.info = QRect(inner.left(), bottom - height + 1, inner.width(), height);
        const QString todayText = miscellaneous(4) + QLatin1Char(' ') + today().toString(m_dateFormat);
        const int width = fontMetrics().horizontalAdvance(todayText) + 12;
        g.today = QRect(g.info.right() - width, g.info.top(), width, g.info.height());
        bottom -= height + 2;
    }
    const int headerHeight = line + 10;
    g.header = QRect(inner.left(), top, inner.width(), headerHeight);
    top += headerHeight;
    g.grid = QRect(inner.left(), top, inner.width(), std::max(bottom - top + 1, Weeks));
    g.cellWidth = g.grid.width() / 7;
    g.cellHeight = g.grid.height() / Weeks;
    // Centre the cells in the grid when it does not divide evenly.
    g.grid.setLeft(g.grid.left() + (g.grid.width() - g.cellWidth * 7) / 2);
    return g;
}

QDate Calendar::firstCellDate() const
{
    const QDate first(CalYear(), CalMonth(), 1);
    const int offset = (weekdayOf(first) - m_firstWeekDay + 7) % 7;
    return first.addDays(-offset);
}

QRect Calendar::cellRect(int index) const
{
    const Geometry g = geometry();
    return QRect(g.grid.left() + (index % 7) * g.cellWidth, g.grid.top() + (index / 7) * g.cellHeight,
        g.cellWidth, g.cellHeight);
}

QRect Calendar::dayRect(int day) const
{
    if (day < 1 || day > schedule::GetMonthDays(CalMonth(), CalYear())) {
        return {};
    }
    return cellRect(static_cast<int>(firstCellDate().daysTo(QDate(CalYear(), CalMonth(), day))));
}

QDate Calendar::dateAt(const QPoint& point) const
{
    const Geometry g = geometry();
    if (!g.grid.contains(point) || g.cellWidth <= 0 || g.cellHeight <= 0) {
        return {};
    }
    const int column = (point.x() - g.grid.left()) / g.cellWidth;
    const int row = (point.y() - g.grid.top()) / g.cellHeight;
    if (column < 0 || column > 6 || row < 0 || row >= Weeks) {
        return {};
    }
    const QDate date = firstCellDate().addDays(row * 7 + column);
    if (!m_otherMonthView && date.month() != CalMonth()) {
        return {};
    }
    return date;
}

QSize Calendar::sizeHint() const
{
    const int line = fontMetrics().height();
    const int cell = std::max(44, line * 2 + 12);
    int height = 2 * Margin + line + 10 + Weeks * (cell - 4);
    if (m_showNavigationBar) {
        height += std::max(36, line * 2 + 6) + 2;
    }
    if (m_showInfoBar) {
        height += line + 14;
    }
    return {2 * Margin + 7 * cell, height};
}

QSize Calendar::minimumSizeHint() const
{
    const QSize hint = sizeHint();
    return {hint.width() * 3 / 4, hint.height() * 3 / 4};
}

// Drawing -------------------------------------------------------------------

void Calendar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette& pal = palette();
    const Geometry g = geometry();

    painter.fillRect(rect(), pal.color(QPalette::Window));
    const QColor border = mixed(pal.color(QPalette::Base), pal.color(QPalette::Text), 0.16);
    painter.setPen(QPen(hasFocus() ? withAlpha(pal.color(QPalette::Highlight), 160) : border, 1));
    painter.setBrush(pal.color(QPalette::Base));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 10, 10);

    if (m_showNavigationBar) {
        paintNavigation(painter, g);
    }

    // Weekday names, shortened, the weekend's in the accent colour.
    QFont small = font();
    small.setPointSizeF(font().pointSizeF() * 0.85);
    small.setBold(true);
    painter.setFont(small);
    for (int column = 0; column < 7; ++column) {
        const int weekday = (m_firstWeekDay - 1 + column) % 7 + 1;
        const bool weekend = weekday == 1 || weekday == 7;
        painter.setPen(weekend ? mixed(pal.color(QPalette::Highlight), pal.color(QPalette::Text), 0.25)
                               : mixed(pal.color(QPalette::Base), pal.color(QPalette::Text), 0.55));
        const QRect cell(
            g.grid.left() + column * g.cellWidth, g.header.top(), g.cellWidth, g.header.height());
        painter.drawText(cell, Qt::AlignCenter, GetWeekdayName(weekday).left(3).toUpper());
    }
    painter.setPen(border);
    painter.drawLine(g.header.bottomLeft() + QPoint(4, 0), g.header.bottomRight() - QPoint(4, 0));

    painter.setFont(font());
    const QDate first = firstCellDate();
    for (int index = 0; index < CellCount; ++index) {
        const QDate day = first.addDays(index);
        if (!m_otherMonthView && day.month() != CalMonth()) {
            continue;
        }
        paintCell(painter, cellRect(index), day);
    }

    if (m_showInfoBar) {
        paintInfo(painter, g);
    }
}

void Calendar::paintNavigation(QPainter& painter, const Geometry& g) const
{
    const QPalette& pal = palette();
    QFont title = font();
    title.setPointSizeF(font().pointSizeF() * 1.25);
    title.setBold(true);
    painter.setFont(title);
    painter.setPen(pal.color(QPalette::Text));
    painter.drawText(g.title, Qt::AlignVCenter | Qt::AlignLeft,
        GetMonthName(CalMonth()) + QLatin1Char(' ') + QString::number(CalYear()));

    // Two round buttons with chevrons.
    for (const QRect& button : {g.previous, g.next}) {
        const bool hovered = button.contains(mapFromGlobal(QCursor::pos())) && underMouse();
        painter.setPen(Qt::NoPen);
        painter.setBrush(hovered ? withAlpha(pal.color(QPalette::Highlight), 40)
                                 : mixed(pal.color(QPalette::Base), pal.color(QPalette::Text), 0.06));
        painter.drawEllipse(QRectF(button).adjusted(1, 1, -1, -1));
        const QPointF centre = QRectF(button).center();
        const double size = button.height() * 0.16;
        const double direction = button == g.previous ? 1.0 : -1.0;
        QPainterPath chevron;
        chevron.moveTo(centre + QPointF(direction * size * 0.6, -size * 1.2));
        chevron.lineTo(centre + QPointF(-direction * size * 0.6, 0));
        chevron.lineTo(centre + QPointF(direction * size * 0.6, size * 1.2));
        painter.setPen(QPen(pal.color(QPalette::Text), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(chevron);
    }
    painter.setFont(font());
}

void Calendar::paintCell(QPainter& painter, const QRect& rect, const QDate& day) const
{
    const QPalette& pal = palette();
    const QColor accent = pal.color(QPalette::Highlight);
    const QColor text = pal.color(QPalette::Text);
    const bool inMonth = day.month() == CalMonth() && day.year() == CalYear();
    const int number = day.day();
    const bool current = inMonth && day == m_date;
    const bool flagged = inMonth && m_selected[static_cast<size_t>(number)];
    const int mark = inMonth ? m_marks[static_cast<size_t>(number)] : 0;
    const bool isToday = day == today();

    // The badge: a circle for the number, room below it for the mark's dot.
    const double side = std::max(8.0, std::min(rect.width() - 6.0, rect.height() - 12.0));
    const QRectF badge(rect.center().x() + 0.5 - side / 2, rect.top() + 3.0, side, side);

    QFont numberFont = font();
    numberFont.setBold(current || isToday || mark != 0);
    painter.setFont(numberFont);

    QColor numberColor = inMonth ? text : withAlpha(mixed(pal.color(QPalette::Base), text, 0.45), 255);
    painter.setPen(Qt::NoPen);
    if (current) {
        painter.setBrush(accent);
        painter.drawEllipse(badge);
        numberColor = pal.color(QPalette::HighlightedText);
    } else if (flagged) {
        painter.setBrush(withAlpha(accent, 70));
        painter.drawEllipse(badge);
    } else if (mark != 0) {
        painter.setBrush(withAlpha(markColor(mark - 1), 48));
        painter.drawEllipse(badge);
        numberColor = mixed(markColor(mark - 1), text, 0.35);
    } else if (day == m_hover) {
        painter.setBrush(withAlpha(text, 20));
        painter.drawEllipse(badge);
    }
    if (isToday) {
        // Today keeps a ring of its own, outside the selection's fill.
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(current ? accent : withAlpha(accent, 230), 2));
        painter.drawEllipse(current ? badge.adjusted(-2.5, -2.5, 2.5, 2.5) : badge.adjusted(1, 1, -1, -1));
        if (!current && !mark) {
            numberColor = accent;
        }
    }
    painter.setPen(numberColor);
    painter.drawText(badge, Qt::AlignCenter, QString::number(number));

    if (mark != 0) {
        const double radius = std::clamp(side / 12.0, 2.0, 3.5);
        const QPointF centre(
            badge.center().x(), std::min(badge.bottom() + radius + 2.5, rect.bottom() - radius));
        painter.setPen(Qt::NoPen);
        painter.setBrush(markColor(mark - 1));
        painter.drawEllipse(centre, radius, radius);
    }
    if (current && m_selectedDayMark > 0 && !mark) {
        const double radius = std::clamp(side / 12.0, 2.0, 3.5);
        painter.setPen(Qt::NoPen);
        painter.setBrush(markColor(m_selectedDayMark));
        painter.drawEllipse(QPointF(badge.center().x(), badge.bottom() + radius + 2.5), radius, radius);
    }
}

void Calendar::paintInfo(QPainter& painter, const Geometry& g) const
{
    const QPalette& pal = palette();
    const QColor border = mixed(pal.color(QPalette::Base), pal.color(QPalette::Text), 0.16);
    painter.setPen(border);
    painter.drawLine(g.info.topLeft() + QPoint(4, 0), g.info.topRight() - QPoint(4, 0));
    QFont small = font();
    small.setPointSizeF(font().pointSizeF() * 0.9);
    painter.setFont(small);
    const QRect textRect = g.info.adjusted(6, 1, -g.today.width(), 0);
    if (!m_message.isEmpty()) {
        painter.setPen(QColor(0xc9, 0x2a, 0x2a));
    } else {
        painter.setPen(mixed(pal.color(QPalette::Base), pal.color(QPalette::Text), 0.6));
    }
    painter.drawText(textRect, Qt::AlignVCenter | Qt::AlignLeft, infoText());
    small.setBold(true);
    painter.setFont(small);
    painter.setPen(pal.color(QPalette::Highlight));
    painter.drawText(g.today.adjusted(0, 1, -6, 0), Qt::AlignVCenter | Qt::AlignRight,
        miscellaneous(4) + QLatin1Char(' ') + today().toString(m_dateFormat));
    painter.setFont(font());
}

// Input ---------------------------------------------------------------------

void Calendar::keyPressEvent(QKeyEvent* event)
{
    const bool control = event->modifiers().testFlag(Qt::ControlModifier);
    switch (event->key()) {
    case Qt::Key_Left:
        setDate(m_date.addDays(-1));
        break;
    case Qt::Key_Right:
        setDate(m_date.addDays(1));
        break;
    case Qt::Key_Up:
        setDate(m_date.addDays(-7));
        break;
    case Qt::Key_Down:
        setDate(m_date.addDays(7));
        break;
    case Qt::Key_PageUp:
        moveMonths(control ? -12 : -1);
        break;
    case Qt::Key_PageDown:
        moveMonths(control ? 12 : 1);
        break;
    case Qt::Key_Home:
        setCalDay(1);
        break;
    case Qt::Key_End:
        setCalDay(schedule::GetMonthDays(CalMonth(), CalYear()));
        break;
    case Qt::Key_Space:
        if (m_selectionType == MultipleSelection) {
            DaySelect(CalDay(), !m_selected[static_cast<size_t>(CalDay())]);
            break;
        }
        QWidget::keyPressEvent(event);
        return;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    event->accept();
}

void Calendar::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    const QPoint point = event->position().toPoint();
    const Geometry g = geometry();
    if (m_showNavigationBar && g.previous.contains(point)) {
        moveMonths(-1);
    } else if (m_showNavigationBar && g.next.contains(point)) {
        moveMonths(1);
    } else if (m_showInfoBar && g.today.contains(point)) {
        setDate(today());
    } else if (const QDate date = dateAt(point); date.isValid()) {
        const bool sameMonth = date.month() == CalMonth() && date.year() == CalYear();
        setDate(date);
        if (sameMonth && m_selectionType == MultipleSelection
            && event->modifiers().testFlag(Qt::ControlModifier)) {
            DaySelect(date.day(), !m_selected[static_cast<size_t>(date.day())]);
        }
    }
    event->accept();
}

void Calendar::mouseMoveEvent(QMouseEvent* event)
{
    const QDate hover = dateAt(event->position().toPoint());
    if (hover != m_hover) {
        m_hover = hover;
        update();
    } else if (m_showNavigationBar) {
        update(geometry().navigation);
    }
    QWidget::mouseMoveEvent(event);
}

void Calendar::leaveEvent(QEvent* event)
{
    m_hover = QDate();
    update();
    QWidget::leaveEvent(event);
}

void Calendar::wheelEvent(QWheelEvent* event)
{
    const int steps = event->angleDelta().y() / 120;
    if (steps != 0) {
        moveMonths(-steps);
    }
    event->accept();
}

void Calendar::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) {
        updateGeometry();
        update();
    }
    QWidget::changeEvent(event);
}

} // namespace pvardo::schedule
