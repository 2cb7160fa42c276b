#include "cases/screens/CaseTab.h"

#include "cases/CaseStatus.h"
#include "cases/ParcelFlags.h"
#include "cases/screens/CaseForm.h"
#include "common/PromptService.h"
#include "parcels/Coordinates.h"
#include "parcels/ParcelService.h"
#include "parcels/screens/ParcelLocator.h"
#include "parcels/screens/RollScreens.h"
#include "ui/DateInput.h"
#include "ui/XPButton.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace pvardo::cases {

namespace {

// The first box of each party: name, address, telephone, e-mail follow as
// the office numbered them.
struct PartyBoxes
{
    int name, address, telephone, email;
};
constexpr PartyBoxes Applicant{8, 9, 10, 11};
constexpr PartyBoxes Owner{12, 13, 14, 15};
constexpr PartyBoxes Proxy{16, 17, 18, 19};
constexpr PartyBoxes Contact{20, 21, 25, 57};

PartyBoxes partyOf(int first)
{
    switch (first) {
    case 8:
        return Applicant;
    case 12:
        return Owner;
    case 16:
        return Proxy;
    default:
        return Contact;
    }
}

QString partyName(int first)
{
    switch (first) {
    case 8:
        return QStringLiteral("the applicant");
    case 12:
        return QStringLiteral("the owner");
    case 16:
        return QStringLiteral("the proxy / attorney");
    default:
        return QStringLiteral("the main contact");
    }
}

} // namespace

CaseTab::CaseTab(CaseForm& form, QWidget* parent)
    : QWidget(parent)
    , m_form(form)
{
    setObjectName(QStringLiteral("tabCase"));
    auto* layout = new QVBoxLayout(this);

    // Case number, date and status.
    auto* top = new QGridLayout;
    auto* number = form.makeBox(1, this);
    number->setToolTip(ParcelFlag::caseNumberTip());
    top->addWidget(CaseForm::makeCaption(QStringLiteral(" Case # "), this), 0, 0);
    top->addWidget(number, 0, 1);
    top->addWidget(CaseForm::makeCaption(QStringLiteral(" Filing Date"), this), 0, 2);
    top->addWidget(form.makeFileDate(this), 0, 3);
    QStringList statuses = CaseStatus::statusListTexts();
    top->addWidget(CaseForm::makeCaption(QStringLiteral(" Current Status "), this), 0, 4);
    QComboBox* status = form.makeList(QStringLiteral("Combo10"), QString(), statuses, this);
    CaseForm::keepToItems(status); // its first letter is what is stored
    top->addWidget(status, 0, 5);
    top->addWidget(form.makeFileDateMark(this), 1, 2, 1, 4);
    top->setColumnStretch(1, 1);
    top->setColumnStretch(5, 1);
    layout->addLayout(top);

    // The parcel.
    auto* parcel = new QGroupBox(QStringLiteral(" Property "), this);
    auto* grid = new QGridLayout(parcel);
    const char* sblCaptions[] = {" Section", " Block", " Lot", " Sublot 1", " Sublot 2"};
    for (int i = 0; i < 5; ++i) {
        grid->addWidget(new QLabel(QString::fromLatin1(sblCaptions[i]), parcel), 0, i);
        grid->addWidget(form.makeBox(2 + i, parcel), 1, i);
    }
    auto* sblLoc = new ui::XPButton(
        QStringLiteral("iSBLLoc"), QStringLiteral("..."), QStringLiteral(" Find specific SBL "), parcel);
    auto* finda = new ui::XPButton(
        QStringLiteral("finda"), QStringLiteral("Find"), QStringLiteral(" Find Specific SBL  "), parcel);
    auto* rollLook = new ui::XPButton(QStringLiteral("rpslook"), QStringLiteral("Roll"),
        QStringLiteral(" Find in the imported tax roll "), parcel);
    grid->addWidget(sblLoc, 1, 5);
    grid->addWidget(finda, 1, 6);
    grid->addWidget(rollLook, 1, 7);
    // The finders fill the parcel, owner and location of the case being
    // written, so they are off while the case is only shown.
    form.addLockable(sblLoc);
    form.addLockable(finda);
    form.addLockable(rollLook);
    connect(sblLoc, &QPushButton::clicked, this, [this] { findParcel(parcels::ParcelLocator::Kind::BySbl); });
    connect(
        finda, &QPushButton::clicked, this, [this] { findParcel(parcels::ParcelLocator::Kind::ByAddress); });
    connect(rollLook, &QPushButton::clicked, this, [this] {
        if (const auto picked = parcels::RpsLoc::pick(window())) {
            fillParcel(*picked);
        }
    });
    grid->addWidget(CaseForm::makeCaption(QStringLiteral("Property Location:"), parcel), 2, 0);
    grid->addWidget(form.makeBox(7, parcel), 2, 1, 1, 7);
    grid->addWidget(CaseForm::makeCaption(QStringLiteral("Subdivision:"), parcel), 3, 0);
    grid->addWidget(form.makeBox(60, parcel), 3, 1, 1, 7);
    layout->addWidget(parcel);

    // The parties, two by two.
    auto* parties = new QGridLayout;
    struct PartyFrame
    {
        const char* title;
        int first;
        const char* copyName;
        const char* copyCaption;
        int copyFrom;
    };
    const PartyFrame frames[] = {
        {" Applicant ", 8, "Check7", "Same as Owner below", 12},
        {" Owner ", 12, "Check1", "Same as Applicant info above", 8},
        {" Proxy / Attorney ", 16, "Check2", "Same as Applicant info above", 8},
        {" Project Main Contact ", 20, "Check6", "Same as Applicant info above", 8},
    };
    int index = 0;
    for (const PartyFrame& frame : frames) {
        auto* group = new QGroupBox(QString::fromLatin1(frame.title), this);
        auto* partyGrid = new QGridLayout(group);
        const PartyBoxes boxes = partyOf(frame.first);
        partyGrid->addWidget(CaseForm::makeCaption(QStringLiteral("Name:"), group), 0, 0);
        partyGrid->addWidget(form.makeBox(boxes.name, group), 0, 1, 1, 3);
        partyGrid->addWidget(CaseForm::makeCaption(QStringLiteral("Address:"), group), 1, 0);
        partyGrid->addWidget(form.makeBox(boxes.address, group), 1, 1, 1, 3);
        partyGrid->addWidget(CaseForm::makeCaption(QStringLiteral("Telephone:"), group), 2, 0);
        partyGrid->addWidget(form.makeBox(boxes.telephone, group), 2, 1);
        partyGrid->addWidget(CaseForm::makeCaption(QStringLiteral("E-mail:"), group), 2, 2);
        partyGrid->addWidget(form.makeBox(boxes.email, group), 2, 3);
        partyGrid->addWidget(makeCopy(QString::fromLatin1(frame.copyName),
                                 QString::fromLatin1(frame.copyCaption), frame.copyFrom, frame.first),
            3, 1, 1, 3);
        partyGrid->setColumnStretch(1, 1);
        partyGrid->setColumnStretch(3, 1);
        parties->addWidget(group, index / 2, index % 2);
        ++index;
    }
    layout->addLayout(parties);
    layout->addStretch();
}

QCheckBox* CaseTab::makeCopy(const QString& name, const QString& caption, int from, int to)
{
    auto* check = new QCheckBox(caption, this);
    check->setObjectName(name);
    m_copies.append(check);
    m_form.addLockable(check);
    // A one-shot copy of what stands there now; clearing the box copies
    // nothing back and later edits are not followed.
    connect(check, &QCheckBox::toggled, this, [this, check, from, to](bool on) {
        if (!on) {
            return;
        }
        const PartyBoxes source = partyOf(from);
        const PartyBoxes target = partyOf(to);
        const std::pair<int, int> boxes[] = {{source.name, target.name}, {source.address, target.address},
            {source.email, target.email}, {source.telephone, target.telephone}};
        // Only what stands there is copied: a blank box never erases what
        // was typed on the other side, and with nothing at all to copy the
        // clerk is told so.
        bool copied = false;
        for (const auto& [sourceBox, targetBox] : boxes) {
            const QString text = m_form.boxText(sourceBox);
            if (!text.trimmed().isEmpty()) {
                m_form.setBoxText(targetBox, text);
                copied = true;
            }
        }
        if (!copied) {
            showMessage(QStringLiteral("There is nothing to copy: the boxes of ") + partyName(from)
                    + QStringLiteral(" are empty."),
                QStringLiteral(" Same as"), PromptButtons::Ok, PromptIcon::Information);
            const QSignalBlocker block(check);
            check->setChecked(false);
        }
    });
    return check;
}

void CaseTab::findParcel(parcels::ParcelLocator::Kind kind)
{
    if (const auto picked = parcels::ParcelLocator::pick(kind, window())) {
        fillParcel(*picked);
    }
}

void CaseTab::fillParcel(const parcels::PickedParcel& picked)
{
    // The store writes "?" for a value it was never given.
    const auto valueOf
        = [](const QString& text) { return text.trimmed() == QLatin1String("?") ? QString() : text; };
    parcels::ParcelService& store = parcels::mdb();
    parcels::SblBoxes shown;
    for (int box = 2; box <= 6; ++box) {
        shown.box(box) = m_form.boxText(box);
    }
    const bool sameParcel = store.MakeSBL(shown) == picked.sbl.toUpper();
    const QString owner = valueOf(picked.association);
    const bool sameOwner
        = owner.trimmed().compare(m_form.boxText(Owner.name).trimmed(), Qt::CaseInsensitive) == 0;

    const parcels::SblBoxes boxes = store.ExtractSBL(picked.sbl);
    for (int box = 2; box <= 6; ++box) {
        m_form.setBoxText(box, boxes.box(box));
    }
    m_form.setBoxText(7, valueOf(picked.location));
    m_form.setBoxText(Owner.name, owner);
    // What belonged to the parcel or the owner shown before goes with them:
    // a new owner gets the parcel's mailing address or none, never the
    // previous owner's address, telephone or e-mail; another parcel drops
    // the subdivision. The same owner keeps what was typed for them.
    const QString mailing = valueOf(picked.mailing);
    if (!sameOwner || !mailing.trimmed().isEmpty()) {
        m_form.setBoxText(Owner.address, mailing);
    }
    if (!sameOwner) {
        m_form.setBoxText(Owner.telephone, QString());
        m_form.setBoxText(Owner.email, QString());
    }
    if (!sameParcel) {
        m_form.setBoxText(60, QString());
        const auto [latitude, longitude] = parcels::Coordinates::splitPair(valueOf(picked.gisLink).trimmed());
        emit parcelReplaced(latitude.isEmpty() && longitude.isEmpty()
                ? QString()
                : parcels::Coordinates::storedPair(latitude.trimmed(), longitude.trimmed()));
    }
}

void CaseTab::resetCopies()
{
    for (QCheckBox* check : std::as_const(m_copies)) {
        const QSignalBlocker block(check);
        check->setChecked(false);
    }
}

} // namespace pvardo::cases
