#include "parcels/screens/ParcelEditors.h"

#include "common/NumberText.h"
#include "common/PromptService.h"
#include "parcels/ParcelService.h"
#include "parcels/TextCuts.h"
#include "parcels/screens/SblBoxInputs.h"
#include "store/Recordset.h"
#include "ui/XPButton.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace pvardo::parcels {

namespace {

QString gisLinkRule()
{
    return QStringLiteral(
        "GISLINK must follow the format of Latitude coma Longitude. West longitude must be preceded with a "
        "negative sign. For example, a location in New York City might be 40.737104,-73.993113");
}

// A coordinate never given shows as nothing, so that saving the parcel
// leaves it unknown rather than writing 0.
QString coordinateText(const QVariant& value)
{
    return value.isNull() || !value.isValid() ? QString() : QString::number(value.toDouble(), 'g', 15);
}

} // namespace

SBLEdit::SBLEdit(const QString& sbl, QWidget* parent)
    : QDialog(parent)
    , m_sbl(sbl.toUpper())
{
    setObjectName(QStringLiteral("SBLEdit"));
    setWindowTitle(QStringLiteral(" SBL Repository Edit"));
    ParcelService& parcels = mdb();
    m_extended = parcels.columnCount() > 13;
    auto* layout = new QVBoxLayout(this);
    auto* warning = new QLabel(warningText(m_extended), this);
    warning->setObjectName(QStringLiteral("lblWarning"));
    warning->setWordWrap(true);
    layout->addWidget(warning);
    m_boxes = new SblBoxInputs(this);
    m_boxes->setReadOnly(true);
    layout->addWidget(m_boxes);

    auto* form = new QFormLayout;
    layout->addLayout(form);
    auto line = [&](const char* column, const char* caption, int longest) {
        auto* input = new QLineEdit(this);
        input->setObjectName(QStringLiteral("txt") + QLatin1String(column));
        if (longest > 0) {
            input->setMaxLength(longest);
        }
        m_lines.insert(QLatin1String(column), input);
        form->addRow(QString::fromLatin1(caption), input);
    };
    line("ASSOC", "Association:", 30);
    line("LOCN1", "Location:", 80);
    line("PERMIT", "Permit:", 20);
    m_trail = new QPlainTextEdit(this);
    m_trail->setObjectName(QStringLiteral("txtHISTORICAL"));
    m_trail->setMaximumHeight(60);
    form->addRow(QStringLiteral("Historical:"), m_trail);
    if (m_extended) {
        line("CONTACT", "Contact:", 30);
        line("MAILING", "Mailing:", 80);
        line("EASTCOORD", "East Grid Coordinates:", 20);
        line("NORTHCOORD", "North Grid Coordinates:", 20);
        line("GISLINK", "GISLINK (latitude,longitude):", 40);
    }
    m_notes = new QPlainTextEdit(this);
    m_notes->setObjectName(QStringLiteral("txtNOTES"));
    m_notes->setMaximumHeight(80);
    form->addRow(QStringLiteral("Notes:"), m_notes);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    auto* save = new ui::XPButton(
        QStringLiteral("ILocate"), QStringLiteral("&Save"), QStringLiteral(" Save "), this);
    auto* cancel = new ui::XPButton(
        QStringLiteral("ICancel"), QStringLiteral("&Cancel"), QStringLiteral(" Cancel "), this);
    buttons->addWidget(save);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    connect(save, &QPushButton::clicked, this, &SBLEdit::ILocate);
    connect(cancel, &QPushButton::clicked, this, &SBLEdit::ICancel);

    m_boxes->setBoxes(parcels.ExtractSBL(m_sbl));
    if (!parcels.SBLExists(m_sbl)) {
        return;
    }
    const store::Recordset& row = *parcels.recordset();
    for (auto it = m_lines.cbegin(); it != m_lines.cend(); ++it) {
        const bool coordinate = it.key().endsWith(QLatin1String("COORD"));
        QString text = coordinate ? coordinateText(row.value(it.key())) : row.text(it.key());
        if (text.trimmed() == QLatin1String("?")) {
            m_unset.insert(it.key());
            text.clear();
        }
        it.value()->setText(text);
    }
    m_trail->setPlainText(row.text(QStringLiteral("HISTORICAL")));
    m_notes->setPlainText(row.text(QStringLiteral("NOTES")));
    m_loaded = true;
}

QString SBLEdit::warningText(bool withGisLink)
{
    QString text = QStringLiteral(
        "The tax parcel information below should not be edited unless you are absolutely sure of the values "
        "required.");
    if (withGisLink) {
        text += QLatin1Char(' ') + gisLinkRule();
    }
    return text;
}

QString SBLEdit::gisLinkFault(const QString& text)
{
    const QString link = text.trimmed();
    if (link.isEmpty()) {
        return {};
    }
    const QStringList halves = link.split(QLatin1Char(','));
    bool latitudeOk = false;
    bool longitudeOk = false;
    if (halves.size() == 2) {
        const double latitude = halves.at(0).trimmed().toDouble(&latitudeOk);
        const double longitude = halves.at(1).trimmed().toDouble(&longitudeOk);
        latitudeOk = latitudeOk && latitude >= -90 && latitude <= 90;
        longitudeOk = longitudeOk && longitude >= -180 && longitude <= 180;
    }
    return latitudeOk && longitudeOk ? QString() : gisLinkRule();
}

void SBLEdit::ILocate()
{
    ParcelService& parcels = mdb();
    // Another workstation may have removed the parcel meanwhile.
    if (!parcels.SBLExists(m_sbl)) {
        showMessage(QStringLiteral("That S-B-L cannot be located."), windowTitle(), PromptButtons::Ok,
            PromptIcon::Critical);
        return;
    }
    if (const auto link = m_lines.constFind(QStringLiteral("GISLINK")); link != m_lines.cend()) {
        const QString fault = gisLinkFault(link.value()->text());
        if (!fault.isEmpty()) {
            showMessage(fault, windowTitle(), PromptButtons::Ok, PromptIcon::Exclamation);
            link.value()->setFocus();
            return;
        }
    }
    ParcelService::ColumnValues values;
    for (auto it = m_lines.cbegin(); it != m_lines.cend(); ++it) {
        QString text = it.value()->text().trimmed();
        if (text.isEmpty() && m_unset.contains(it.key())) {
            text = QStringLiteral("?"); // left as the store had it
        }
        if (it.key().endsWith(QLatin1String("COORD"))) {
            values.append({it.key(), text.isEmpty() ? QVariant() : QVariant(LeadingNumber(text))});
        } else {
            values.append({it.key(), text});
        }
    }
    values.append({QStringLiteral("HISTORICAL"), m_trail->toPlainText().trimmed()});
    values.append({QStringLiteral("NOTES"), m_notes->toPlainText().trimmed()});
    const store::StoreStatus status = parcels.SBLUpdateColumns(values);
    if (!status.ok()) {
        showMessage(status.description, windowTitle(), PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    accept();
}

void SBLEdit::ICancel()
{
    reject();
}

Scan::Scan(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("Scan"));
    setWindowTitle(QStringLiteral(" Parcel Handler"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Add the following S-B-L to the repository:"), this));
    m_boxes = new SblBoxInputs(this);
    layout->addWidget(m_boxes);
    auto* form = new QFormLayout;
    layout->addLayout(form);
    auto line = [&](const char* name, const char* caption, int longest) {
        auto* input = new QLineEdit(this);
        input->setObjectName(QLatin1String(name));
        input->setMaxLength(longest);
        form->addRow(QString::fromLatin1(caption), input);
        return input;
    };
    m_owner = line("txtOwner", "Associated Owner / Legend:", 30);
    m_permit = line("txtPermit", "Assoc. Permit (if any):", 20);
    m_location = line("txtLocation", "Associated Location / address:", 80);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    auto* add = new ui::XPButton(
        QStringLiteral("IAdd"), QStringLiteral("&Add"), QStringLiteral(" Add this S-B-L "), this);
    auto* cancel = new ui::XPButton(
        QStringLiteral("ICancel"), QStringLiteral("&Cancel"), QStringLiteral(" Cancel "), this);
    buttons->addWidget(add);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    connect(add, &QPushButton::clicked, this, &Scan::IAdd);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void Scan::IAdd()
{
    const QString line = QStringLiteral("\n");
    QString missing;
    if (!ParcelService::SBLfilled(m_boxes->boxes())) {
        missing += QStringLiteral("--S-B-L") + line;
    }
    if (m_owner->text().trimmed().isEmpty()) {
        missing += QStringLiteral("--Association/Owner") + line;
    }
    if (m_location->text().trimmed().isEmpty()) {
        missing += QStringLiteral("--Property Location") + line;
    }
    if (!missing.isEmpty()) {
        showMessage(QStringLiteral("Missing ") + missing + line + QStringLiteral("Please ensure required")
                + line + QStringLiteral("fields are filled in correctly."),
            QStringLiteral(" Missing Information"), PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    ParcelService& parcels = mdb();
    const QString sbl = parcels.MakeSBL(m_boxes->boxes());
    if (sbl == QLatin1String("0-0-0-0-0-0-0-0")) {
        showMessage(QStringLiteral("Invalid SBL."), windowTitle(), PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    const QString owner = m_owner->text().trimmed();
    const QString permit = m_permit->text().trimmed();
    const QString location = m_location->text().trimmed();
    store::StoreStatus status;
    if (parcels.SBLExists(sbl)) {
        const PromptAnswer answer = showMessage(QStringLiteral("The Section, Block and Lot already exist.")
                + line + QStringLiteral("Do you want to UPDATE the information instead?"),
            QStringLiteral(" Duplicate SBL"), PromptButtons::YesNo, PromptIcon::Question);
        if (answer != PromptAnswer::Yes) {
            return;
        }
        status = parcels.SBLUpdate2(sbl, permit, owner, QString(), location);
    } else {
        status = parcels.SBLAdd18(sbl, permit, owner, QString(), location, QString(), QString());
    }
    if (!status.ok()) {
        showMessage(status.description, windowTitle(), PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    accept();
}

} // namespace pvardo::parcels
