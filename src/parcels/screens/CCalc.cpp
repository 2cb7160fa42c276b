#include "parcels/screens/CCalc.h"

#include "common/OutsidePrograms.h"
#include "common/PromptService.h"
#include "parcels/Coordinates.h"
#include "ui/XPButton.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace pvardo::parcels {

CCalc::CCalc(const QString& latitude, const QString& longitude, bool canStore, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("ccalc"));
    setWindowTitle(QStringLiteral(" Coordinates"));
    auto* layout = new QVBoxLayout(this);
    auto* intro = new QLabel(
        QStringLiteral(
            "To look up a parcel, please enter the latitude and longitude in decimal format. If you only "
            "have "
            "sexagecimal info (i.e. Degrees, Minutes, and Seconds, use the tool below to convert it."),
        this);
    intro->setWordWrap(true);
    layout->addWidget(intro);

    auto* decimal = new QGridLayout;
    m_latitude = new QLineEdit(latitude, this);
    m_latitude->setObjectName(QStringLiteral("txtLatitude"));
    m_longitude = new QLineEdit(longitude, this);
    m_longitude->setObjectName(QStringLiteral("txtLongitude"));
    decimal->addWidget(new QLabel(QStringLiteral("Decimal Latitude:"), this), 0, 0);
    decimal->addWidget(m_latitude, 0, 1);
    decimal->addWidget(new QLabel(QStringLiteral("(negative if South)"), this), 0, 2);
    decimal->addWidget(new QLabel(QStringLiteral("Decimal Longitude:"), this), 1, 0);
    decimal->addWidget(m_longitude, 1, 1);
    decimal->addWidget(new QLabel(QStringLiteral("(negative if West)"), this), 1, 2);
    layout->addLayout(decimal);
    auto* note = new QLabel(
        QStringLiteral(
            "Note: United States longitudes are in negative numbers since it is west of the meridian."),
        this);
    note->setWordWrap(true);
    layout->addWidget(note);

    auto* dms = new QGridLayout;
    const char* names[] = {"txtLatDeg", "txtLatMin", "txtLatSec", "txtLongDeg", "txtLongMin", "txtLongSec"};
    const char* headings[] = {"Degrees", "Minutes", "Seconds"};
    for (int i = 0; i < 3; ++i) {
        dms->addWidget(new QLabel(QString::fromLatin1(headings[i]), this), 0, i + 1);
    }
    dms->addWidget(new QLabel(QStringLiteral("Latitude"), this), 1, 0);
    dms->addWidget(new QLabel(QStringLiteral("Longitude"), this), 2, 0);
    for (int i = 0; i < 6; ++i) {
        m_dms[i] = new QLineEdit(this);
        m_dms[i]->setObjectName(QLatin1String(names[i]));
        m_dms[i]->installEventFilter(this);
        dms->addWidget(m_dms[i], 1 + i / 3, 1 + i % 3);
    }
    auto* convert = new ui::XPButton(
        QStringLiteral("Command1"), QStringLiteral("Convert"), QStringLiteral(" Convert to decimal "), this);
    dms->addWidget(convert, 1, 4, 2, 1);
    layout->addLayout(dms);

    auto* buttons = new QHBoxLayout;
    auto* store = new ui::XPButton(QStringLiteral("Command2"), QStringLiteral("&Store"),
        QStringLiteral(" Store these coordinates "), this);
    auto* lookUp = new ui::XPButton(
        QStringLiteral("Command3"), QStringLiteral("&Look up"), QStringLiteral(" Show on the map "), this);
    auto* cancel = new ui::XPButton(
        QStringLiteral("ICancel"), QStringLiteral("&Cancel"), QStringLiteral(" Cancel "), this);
    store->setVisible(canStore);
    buttons->addStretch();
    buttons->addWidget(store);
    buttons->addWidget(lookUp);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    connect(convert, &QPushButton::clicked, this, &CCalc::Command1);
    connect(store, &QPushButton::clicked, this, &CCalc::Command2);
    connect(lookUp, &QPushButton::clicked, this, &CCalc::Command3);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

bool CCalc::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const QString text = key->text();
        // Keys that type nothing (moves, backspace, tab) go through; of the
        // typed characters only digits and the minus sign.
        if (!text.isEmpty() && key->key() != Qt::Key_Backspace && key->key() != Qt::Key_Tab
            && key->key() != Qt::Key_Backtab) {
            const QChar c = text.at(0);
            if (text.size() != 1
                || !(c == QLatin1Char('-') || (c >= QLatin1Char('0') && c <= QLatin1Char('9')))) {
                return true;
            }
        }
    }
    return QDialog::eventFilter(watched, event);
}

void CCalc::Command1()
{
    const Coordinates::Converted converted = Coordinates::convert({m_dms[0]->text(), m_dms[1]->text(),
        m_dms[2]->text(), m_dms[3]->text(), m_dms[4]->text(), m_dms[5]->text()});
    if (!converted.faults.isEmpty()) {
        showMessage(converted.faults.join(QLatin1Char('\n')), windowTitle(), PromptButtons::Ok,
            PromptIcon::Exclamation);
        return;
    }
    m_latitude->setText(converted.latitude);
    m_longitude->setText(converted.longitude);
}

void CCalc::Command2()
{
    const QStringList faults = Coordinates::storeFaults(m_latitude->text(), m_longitude->text());
    if (!faults.isEmpty()) {
        showMessage(
            faults.join(QLatin1Char('\n')), windowTitle(), PromptButtons::Ok, PromptIcon::Exclamation);
        return;
    }
    m_outcome = Store;
    accept();
}

void CCalc::Command3()
{
    const QStringList faults = Coordinates::lookupFaults(m_latitude->text(), m_longitude->text());
    if (!faults.isEmpty()) {
        showMessage(
            faults.join(QLatin1Char('\n')), windowTitle(), PromptButtons::Ok, PromptIcon::Exclamation);
        return;
    }
    m_outcome = LookUp;
    accept();
}

QString CCalc::latitude() const
{
    return m_outcome == Store ? m_latitude->text().trimmed() : m_latitude->text();
}

QString CCalc::longitude() const
{
    return m_outcome == Store ? m_longitude->text().trimmed() : m_longitude->text();
}

CoordinateChoice askCoordinates(const QString& storedPair, bool canStore, QWidget* parent)
{
    const auto [latitude, longitude]
        = storedPair.isEmpty() ? std::pair<QString, QString>() : Coordinates::splitPair(storedPair);
    CCalc dialog(latitude, longitude, canStore, parent);
    CoordinateChoice choice;
    if (prompts().exec(dialog) != QDialog::Accepted) {
        return choice;
    }
    choice = {dialog.outcome(), dialog.latitude(), dialog.longitude()};
    if (choice.outcome == CCalc::LookUp) {
        // The browser opens behind the program or not at all: the clerk is
        // told which. A failure has been told by OpenLink, with the address.
        const QString address
            = Coordinates::mapAddress(Coordinates::mapHost(), choice.latitude, choice.longitude);
        if (OpenLink(address)) {
            showMessage(QStringLiteral("The map was opened in your web browser at\n") + address,
                QStringLiteral(" Coordinates"), PromptButtons::Ok, PromptIcon::Information);
        }
    }
    return choice;
}

void maplookup(QWidget* parent)
{
    askCoordinates(QString(), false, parent);
}

} // namespace pvardo::parcels
