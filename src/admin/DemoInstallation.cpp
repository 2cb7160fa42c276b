#include "admin/DemoInstallation.h"

#include "admin/Installation.h"
#include "cases/CaseRecord.h"
#include "common/Settings.h"
#include "common/TextFiles.h"
#include "parcels/ParcelService.h"
#include "schedule/MeetingForm.h"
#include "schedule/MeetingRecord.h"
#include "store/Recordset.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace pvardo::admin {

namespace {

const char* const kStreets[] = {"Orchard Hill Road", "Mill Pond Lane", "Bramble Way", "Quarry Road",
    "Cider Press Lane", "Hemlock Ridge Road", "Old Post Road", "Kettle Brook Drive", "Larkspur Court",
    "Ferry Landing Road", "Stonewall Lane", "Beacon Hollow Road"};

const char* const kPeople[] = {"Marguerite Ostrander", "Delbert Vanacker", "Rosalind Quackenbush",
    "Tobias Wendelken", "Imogen Fairweather", "Cornelius Bleecker", "Henrietta Sayles", "Ambrose Tillotson",
    "Philippa Cranwell", "Jedediah Hallenbeck", "Winifred Ostrom", "Lucius Pettibone"};

const char* const kProjects[] = {"Two-lot subdivision", "Farm stand and parking", "Accessory apartment",
    "Lot line adjustment", "Veterinary clinic addition", "Self-storage buildings",
    "Barn conversion to studio", "Cell tower co-location", "Four-lot cluster subdivision",
    "Restaurant outdoor seating", "Solar array on pasture", "Day care in existing church"};

const char* const kTypes[] = {"Subdivision", "Site Plan", "Special Use Permit", "Lot Line Adjustment",
    "Site Plan", "Site Plan", "Special Use Permit", "Special Use Permit", "Subdivision", "Site Plan",
    "Special Use Permit", "Special Use Permit"};

const char* const kUses[] = {"Residential", "Agricultural", "Residential", "Residential", "Commercial",
    "Commercial", "Mixed", "Utility", "Residential", "Commercial", "Utility", "Institutional"};

const char* const kZones[]
    = {"R-1 Rural Residential", "AG Agricultural", "R-2 Hamlet Residential", "R-1 Rural Residential",
        "HC Highway Commercial", "LI Light Industrial", "AG Agricultural", "LI Light Industrial",
        "R-1 Rural Residential", "HB Hamlet Business", "AG Agricultural", "HB Hamlet Business"};

const char* const kStatus[] = {"Pending", "Initial Application", "Approved", "Approved", "Pending", "Denied",
    "Approved", "On Appeal", "Pending", "Canceled", "Approved", "Initial Application"};

constexpr int kCases = 36;
constexpr int kFirstSequence = 201;

} // namespace

DemoInstallation::DemoInstallation(QString programFolder, QDate today)
    : m_folder(QDir::cleanPath(std::move(programFolder)))
    , m_today(today)
{
}

QString DemoInstallation::databaseFolder() const
{
    return m_folder + QStringLiteral("/databases");
}

void DemoInstallation::writeListFile(const QString& fileName, const QStringList& lines)
{
    const QString path = databaseFolder() + QLatin1Char('/') + fileName;
    if (QFileInfo::exists(path)) {
        return;
    }
    QString error;
    if (replaceTextLines(path, lines, &error)) {
        m_created << QStringLiteral("databases/") + fileName;
    } else {
        m_failures << QStringLiteral("databases/") + fileName + QStringLiteral(": ") + error;
    }
}

// Two letters of the office's own, offered in the case screen's print
// dialog through forms/0custom.txt.
void DemoInstallation::writeLetters()
{
    for (const QString& resource : Installation::shippedFiles(QStringLiteral("demo"))) {
        const QString relative = QStringLiteral("forms/") + QFileInfo(resource).fileName();
        const QString path = m_folder + QLatin1Char('/') + relative;
        if (QFileInfo::exists(path)) {
            continue;
        }
        QFile file(resource);
        QString error;
        if (file.open(QIODevice::ReadOnly) && replaceFile(path, file.readAll(), &error)) {
            m_created << relative;
        } else {
            m_failures << relative + QStringLiteral(": ") + (error.isEmpty() ? file.errorString() : error);
        }
    }
}

void DemoInstallation::writeRollExtract()
{
    const QString relative = QStringLiteral("demo/RPS995T1");
    const QString path = m_folder + QLatin1Char('/') + relative;
    if (QFileInfo::exists(path)) {
        m_kept << relative;
        return;
    }
    // The roll's fixed columns: SWIS, S-B-L, grid east and north, street and
    // number, two owner lines, mailing, town, zip, and the record type last.
    auto record = [](const char* swis, const QString& sbl, int east, int north, int number,
                      const char* street, const char* owner, int box) {
        QByteArray line(460, ' ');
        auto put = [&line](int column, int width, const QByteArray& text) {
            line.replace(column - 1, width, text.leftJustified(width, ' ', true));
        };
        put(1, 6, swis);
        put(65, 25, sbl.toLatin1());
        put(90, 7, QByteArray::number(east));
        put(97, 7, QByteArray::number(north));
        put(108, 25, QByteArray(street).toUpper());
        put(133, 9, QByteArray::number(number));
        put(277, 25, QByteArray(owner).toUpper());
        put(352, 25, "PO BOX " + QByteArray::number(box));
        put(402, 25, "HOLLIS FERRY NY");
        put(427, 9, "12999");
        line.replace(458, 2, "14");
        return line;
    };
    QByteArray extract;
    int records = 0;
    // Each case's parcel, as the cases name it, and the lots around it on
    // its block, 80 feet of frontage apart.
    for (int i = 0; i < kCases; ++i) {
        const QString section
            = QString::number(10 + (i * 7) % 60) + (i % 5 == 0 ? QStringLiteral(".2") : QString());
        const int block = 1 + i % 4;
        const int lot = 3 + (i * 11) % 47;
        const int east = 612000 + (i * 7) % 60 * 900 + block * 200;
        const int north = 1104000 + (i * 13) % 40 * 700;
        for (int neighbour = -3; neighbour <= 4; ++neighbour) {
            const int thisLot = lot + neighbour;
            if (thisLot < 1) {
                continue;
            }
            QString sbl = section + QLatin1Char('-') + QString::number(block) + QLatin1Char('-')
                + QString::number(thisLot);
            if (neighbour == 0 && i % 6 == 0) {
                sbl += QStringLiteral(".1");
            }
            // The roll writes a subsection with a slash now and then.
            sbl.replace(QLatin1Char('.'), i % 2 ? QLatin1Char('/') : QLatin1Char('.'));
            const char* owner
                = neighbour == 0 ? kPeople[(i % 12 + i / 12) % 12] : kPeople[(i + 7 * neighbour + 24) % 12];
            extract += record(i % 9 == 8 ? "134289" : "134201", sbl, east + neighbour * 80,
                           north + neighbour * 15, 20 + i * 37 % 900 + neighbour * 4, kStreets[(i * 5) % 12],
                           owner, 100 + records)
                + "\r\n";
            ++records;
        }
        // A record of another type between the parcels, as the county's files have.
        extract += QByteArray(120, 'X') + "21\r\n";
    }
    QDir().mkpath(m_folder + QStringLiteral("/demo"));
    QString error;
    if (replaceFile(path, extract, &error)) {
        m_created << relative + QStringLiteral(": ") + QString::number(records)
                + QStringLiteral(" parcels to import");
    } else {
        m_failures << relative + QStringLiteral(": ") + error;
    }
}

void DemoInstallation::writeMunicipality()
{
    const QString path = m_folder + QStringLiteral("/PVardo.ini");
    std::optional<QStringList> lines = readTextLines(path);
    if (!lines || lines->size() < Settings::lineCount) {
        m_failures << QStringLiteral("PVardo.ini: not a complete settings file");
        return;
    }
    for (int line = 1; line <= 6; ++line) {
        if (!lines->at(line).trimmed().isEmpty()) {
            return; // the office's own municipality stays
        }
    }
    const QStringList municipality = {QStringLiteral("Town of Hollis Ferry"),
        QStringLiteral("14 Meetinghouse Road"), QStringLiteral("Hollis Ferry"), QStringLiteral("NY"),
        QStringLiteral("12999"), QStringLiteral("(518) 555-0142")};
    for (int line = 1; line <= 6; ++line) {
        (*lines)[line] = municipality.at(line - 1);
    }
    QString error;
    if (replaceTextLines(path, *lines, &error)) {
        m_created << QStringLiteral("PVardo.ini (municipality)");
        // The letterhead and the receipt as shipped take the name.
        Installation forms(m_folder);
        forms.nameShippedForms();
        m_failures << forms.failures();
    } else {
        m_failures << QStringLiteral("PVardo.ini: ") + error;
    }
}

bool DemoInstallation::writeCases()
{
    const QString casePath = databaseFolder() + QStringLiteral("/pbproj.db");
    store::StoreStatus status;
    std::unique_ptr<store::Recordset> cases
        = store::openRecordsetAt(casePath, QStringLiteral("Select * from PBPROJ order by PBCASE"), &status);
    if (!cases) {
        m_failures << QStringLiteral("databases/pbproj.db: ") + status.description;
        return false;
    }
    if (cases->RecordCount() > 0) {
        // The demonstration records go only into a new installation; an
        // installation that has them already is left as it is.
        m_kept << QStringLiteral("databases/pbproj.db already holds cases: no demonstration records added");
        return false;
    }
    parcels::ParcelService parcelStore(databaseFolder() + QStringLiteral("/sbl.db"), casePath);
    status = parcelStore.resetsbl();
    if (!status.ok()) {
        m_failures << QStringLiteral("databases/sbl.db: ") + status.description;
        return false;
    }

    // Cases filed about every three weeks, the newest a few days ago.
    for (int i = 0; i < kCases; ++i) {
        const int k = i % 12;
        const QDate filed = m_today.addDays(-4 - (kCases - 1 - i) * 20);
        cases::CaseInputs inputs;
        inputs.caseNumber
            = QString::number(filed.year()).right(2) + QLatin1Char('-') + QString::number(kFirstSequence + i);
        inputs.fileDate = filed.toString(QStringLiteral("MM/dd/yyyy"));
        // The older cases are decided; the newest are still before the board.
        inputs.statusText
            = QString::fromLatin1(i >= kCases - 6 ? (i % 2 ? "Pending" : "Initial Application") : kStatus[k]);
        inputs.sbl.section
            = QString::number(10 + (i * 7) % 60) + (i % 5 == 0 ? QStringLiteral(".2") : QString());
        inputs.sbl.block = QString::number(1 + i % 4);
        inputs.sbl.lot = QString::number(3 + (i * 11) % 47);
        inputs.sbl.sublot1 = i % 6 == 0 ? QStringLiteral("1") : QString();
        inputs.ownerName = QString::fromLatin1(kPeople[(k + i / 12) % 12]);
        inputs.siteLocation = QString::number(20 + i * 37 % 900) + QLatin1Char(' ')
            + QString::fromLatin1(kStreets[(i * 5) % 12]);
        inputs.privateWater = i % 3 != 0;
        inputs.privateSewage = i % 3 != 0;

        status = cases::CaseRecord::PostCaseToParcel(parcelStore, inputs, true);
        if (!status.ok()) {
            m_failures << QStringLiteral("databases/sbl.db: ") + status.description;
            return false;
        }
        cases->AddNew();
        const QString applicant = i % 2 ? QString::fromLatin1(kPeople[(k + 5) % 12]) : inputs.ownerName;
        const QString applicantAddress
            = QString::number(5 + i) + QStringLiteral(" Church Street, Hollis Ferry, NY 12999");
        // The letters of forms/0custom.txt go to the contact: an engineer
        // acts for every third applicant, the applicant for the others.
        const bool agent = i % 3 == 2;
        const QString contact = agent ? QStringLiteral("Kinderhook Survey & Engineering") : applicant;
        const QString contactAddress
            = agent ? QStringLiteral("14 Depot Street, Valatie, NY 12184") : applicantAddress;
        const QList<QPair<const char*, QString>> columns = {
            {"PBLOCN1", inputs.siteLocation},
            {"PBOWNRNAME1", inputs.ownerName},
            {"PBOWNRADDR1", inputs.siteLocation + QStringLiteral(", Hollis Ferry, NY 12999")},
            {"PBOWNTEL", QStringLiteral("(518) 555-") + QString::number(1100 + i * 13)},
            {"PBAPPNAME1", applicant},
            {"PBAPPADDR1", applicantAddress},
            {"PBAPPTEL", QStringLiteral("(518) 555-") + QString::number(2200 + i * 7)},
            {"PBPROXYNAME1", agent ? contact : QString()},
            {"PBPROXYADDR1", agent ? contactAddress : QString()},
            {"PBCONTACTNAME1", contact},
            {"PBCONTACTADDR1", contactAddress},
            {"PBPROJNAME", QString::fromLatin1(kProjects[k])},
            {"PBPROJDESC",
                QString::fromLatin1(kProjects[k]) + QStringLiteral(" at ") + inputs.siteLocation
                    + QStringLiteral(", as shown on the plans submitted with the application.")},
            {"PBTYPE", QString::fromLatin1(kTypes[k])},
            {"PBUSE", QString::fromLatin1(kUses[k])},
            {"PBCURZONE", QString::fromLatin1(kZones[k])},
            {"PBLOTAREAACR", QString::number(1.5 + (i * 13) % 40 / 2.0, 'f', 1)},
            {"PBSUBDIV", i % 4 == 0 ? QStringLiteral("Kettle Brook Estates") : QString()},
            {"BLK", inputs.sbl.block},
            {"LOT", inputs.sbl.lot},
            {"LOD", inputs.sbl.sublot1.isEmpty() ? QStringLiteral("0") : inputs.sbl.sublot1},
            {"SUB", QStringLiteral("0")},
        };
        for (const auto& [column, value] : columns) {
            if (!value.isEmpty()) {
                cases->setValue(QString::fromLatin1(column), value);
            }
        }
        status = cases::CaseRecord::writeDerivedColumns(*cases, inputs, demoUser());
        if (status.ok()) {
            status = cases->Update();
        }
        if (!status.ok()) {
            cases->CancelUpdate();
            m_failures << QStringLiteral("databases/pbproj.db: ") + status.description;
            return false;
        }
        ++m_caseCount;
    }
    // Numbering goes on after the last invented case.
    writeListFile(QStringLiteral("pnb.txt"), {QStringLiteral("-1")});
    writeListFile(QStringLiteral("zhi.txt"), {QString::number(kFirstSequence + kCases - 1)});
    return true;
}

bool DemoInstallation::writeMeetings()
{
    const QString path = databaseFolder() + QStringLiteral("/meeting.db");
    store::StoreStatus status;
    std::unique_ptr<store::Recordset> rows
        = store::openRecordsetAt(path, QStringLiteral("Select * from MEETING order by [MJUL]"), &status);
    if (!rows) {
        m_failures << QStringLiteral("databases/meeting.db: ") + status.description;
        return false;
    }
    const auto save = [&](const schedule::MeetingForm& form, const QDate& date) {
        rows->AddNew();
        store::StoreStatus written
            = schedule::movefieldsintodb(form, date.year(), date.month(), date.day(), *rows, demoUser());
        if (written.ok()) {
            written = rows->Update();
        }
        if (!written.ok()) {
            rows->CancelUpdate();
            m_failures << QStringLiteral("databases/meeting.db: ") + written.description;
            return false;
        }
        ++m_meetingCount;
        return true;
    };

    // The board's two standing meetings, every month.
    schedule::MeetingForm regular;
    regular.Text1 = QStringLiteral("Town Hall");
    regular.Text2 = QStringLiteral("Planning Board meeting");
    regular.Text3 = QStringLiteral("Town Hall, 14 Meetinghouse Road");
    regular.Text4 = QStringLiteral("3");
    regular.Text5 = QStringLiteral("Clerk");
    regular.DTPicker1 = QTime(19, 0);
    regular.Option2 = true;
    regular.Combo1 = QStringLiteral("First");
    regular.Combo2 = QStringLiteral("Tuesday");
    schedule::MeetingForm workshop = regular;
    workshop.Text1 = QStringLiteral("Room 2");
    workshop.Text2 = QStringLiteral("Work session");
    workshop.Text4 = QStringLiteral("2");
    workshop.Combo1 = QStringLiteral("Third");
    workshop.Combo2 = QStringLiteral("Thursday");
    workshop.DTPicker1 = QTime(18, 30);
    if (!save(regular, m_today) || !save(workshop, m_today)) {
        return false;
    }

    // Hearings and site visits on single dates, two weeks either side of today.
    const char* const purposes[] = {"Public hearing", "Site visit", "Pre-application conference",
        "Public hearing", "Site visit", "Escrow review"};
    for (int i = 0; i < 12; ++i) {
        const QDate day = m_today.addDays(-15 + i * 3 - (i % 2));
        const int caseIndex = kCases - 1 - i * 2;
        const QDate filed = m_today.addDays(-4 - (kCases - 1 - caseIndex) * 20);
        schedule::MeetingForm once;
        once.Text1 = i % 3 == 1 ? QStringLiteral("On site") : QStringLiteral("Town Hall");
        once.Text2 = QString::fromLatin1(purposes[i % 6]);
        once.Text3 = i % 3 == 1 ? QString::number(20 + caseIndex * 37 % 900) + QLatin1Char(' ')
                + QString::fromLatin1(kStreets[(caseIndex * 5) % 12])
                                : QStringLiteral("Town Hall, 14 Meetinghouse Road");
        once.Text4 = QStringLiteral("1");
        once.Text5 = QStringLiteral("Clerk");
        once.Text6 = QString::number(filed.year()).right(2) + QLatin1Char('-')
            + QString::number(kFirstSequence + caseIndex);
        once.Text7 = QString::fromLatin1(i % 3 == 1 ? "Board members meet at the driveway." : "");
        once.DTPicker1 = i % 3 == 1 ? QTime(10, 0) : QTime(19, 30);
        once.Option1 = true;
        if (!save(once, day)) {
            return false;
        }
    }
    return true;
}

bool DemoInstallation::writeFees()
{
    const QString casePath = databaseFolder() + QStringLiteral("/pbproj.db");
    const QString feePath = databaseFolder() + QStringLiteral("/pbfees.db");
    store::StoreStatus status;
    auto cases = store::openRecordsetAt(casePath, QStringLiteral("Select * from PBPROJ order by PBCASE"), &status);
    auto fees = cases ? store::openRecordsetAt(feePath, QStringLiteral("Select * from PBFEES order by SEQ"), &status)
                      : nullptr;
    if (!fees) {
        m_failures << QStringLiteral("databases/pbfees.db: ") + status.description;
        return false;
    }
    // A third of the cases owe fees: some paid, some paid in part, some
    // overdue. Amounts are whole cents, so every sum comes out exact.
    int i = 0;
    for (cases->MoveFirst(); !cases->Eof(); cases->MoveNext(), ++i) {
        if (i % 3 != 0) {
            continue;
        }
        const QString caseNumber = cases->text(QStringLiteral("PBCASE"));
        const QDate filed = cases->value(QStringLiteral("PBFILEDATE")).toDate().isValid()
            ? cases->value(QStringLiteral("PBFILEDATE")).toDate()
            : m_today.addDays(-30);
        const int charges = 1 + i % 2;
        for (int c = 0; c < charges; ++c) {
            const double charged = c == 0 ? 150.0 + (i % 4) * 125.0 : 37.5 + i;
            const int kind = (i / 3 + c) % 3; // 0 paid, 1 paid in part, 2 unpaid
            const double paid = kind == 0 ? charged : kind == 1 ? 100.0 : 0.0;
            const QDate due = filed.addDays(30);
            const QDate paidOn = kind == 2 ? QDate() : filed.addDays(7 + c);
            fees->AddNew();
            const QList<QPair<const char*, QVariant>> columns = {
                {"PBFCASE", caseNumber},
                {"PBFSTATUS", QStringLiteral("A")},
                {"PBFFILEDATE", filed},
                {"PBFDUEDATE", due},
                {"PBFPAIDDATE", paidOn.isValid() ? QVariant(paidOn) : QVariant()},
                {"PBFPAYMETHOD", kind == 2 ? QString() : QStringLiteral("Check")},
                {"PBFPAYID", kind == 2 ? QString() : QString::number(1200 + i * 3 + c)},
                {"PBFPAYDESC", c == 0 ? QStringLiteral("Application fee") : QStringLiteral("Public hearing notice")},
                {"PBFAMOUNT", charged},
                {"PBFPAID", paid},
                {"PBFBALDUE", charged - paid},
                {"PBFAPPNAME1", cases->text(QStringLiteral("PBAPPNAME1"))},
                {"PBFAPPADDR1", cases->text(QStringLiteral("PBAPPADDR1"))},
                {"PBFAPPTEL", cases->text(QStringLiteral("PBAPPTEL"))},
                {"PBFPROJNAME", cases->text(QStringLiteral("PBPROJNAME"))},
                {"PBFPAIDMM", paidOn.isValid() ? paidOn.toString(QStringLiteral("MM")) : QString()},
                {"PBFPAIDYY", paidOn.isValid() ? paidOn.toString(QStringLiteral("yy")) : QString()},
                {"PBFDUEMM", due.toString(QStringLiteral("MM"))},
                {"PBFDUEYY", due.toString(QStringLiteral("yy"))},
                {"BYUSER", demoUser()},
                {"TSTAMP", QDateTime(filed, QTime(10, 0))},
            };
            for (const auto& [column, value] : columns) {
                status = fees->setValue(QString::fromLatin1(column), value);
                if (!status.ok()) {
                    break;
                }
            }
            if (status.ok()) {
                status = fees->Update();
            }
            if (!status.ok()) {
                fees->CancelUpdate();
                m_failures << QStringLiteral("databases/pbfees.db: ") + status.description;
                return false;
            }
            ++m_feeCount;
        }
    }
    return true;
}

bool DemoInstallation::make()
{
    m_created.clear();
    m_failures.clear();
    writeMunicipality();
    writeListFile(QStringLiteral("zpt.txt"),
        {QStringLiteral("Subdivision"), QStringLiteral("Site Plan"), QStringLiteral("Special Use Permit"),
            QStringLiteral("Lot Line Adjustment"), QStringLiteral("Sketch Plan")});
    writeListFile(QStringLiteral("zpu.txt"),
        {QStringLiteral("Residential"), QStringLiteral("Commercial"), QStringLiteral("Agricultural"),
            QStringLiteral("Institutional"), QStringLiteral("Utility"), QStringLiteral("Mixed")});
    writeListFile(QStringLiteral("zps.txt"),
        {QStringLiteral("Garage"), QStringLiteral("Barn"), QStringLiteral("Shed"), QStringLiteral("Pool"),
            QStringLiteral("Accessory apartment"), QStringLiteral("None")});
    writeListFile(QStringLiteral("zpz.txt"),
        {QStringLiteral("AG Agricultural"), QStringLiteral("R-1 Rural Residential"),
            QStringLiteral("R-2 Hamlet Residential"), QStringLiteral("HB Hamlet Business"),
            QStringLiteral("HC Highway Commercial"), QStringLiteral("LI Light Industrial")});
    writeListFile(QStringLiteral("Inspectors.txt"),
        {QStringLiteral("Eleanor Hasbrouck, Chair"), QStringLiteral("Roderick Van Wyck"),
            QStringLiteral("Prudence Lattimore"), QStringLiteral("Gideon Schermerhorn"),
            QStringLiteral("Beatrix Oakley")});
    writeLetters();
    writeRollExtract();
    if (writeCases()) {
        m_created << QStringLiteral("databases/pbproj.db: ") + QString::number(m_caseCount)
                + QStringLiteral(" cases, with their parcels in databases/sbl.db");
        if (writeMeetings()) {
            m_created << QStringLiteral("databases/meeting.db: ") + QString::number(m_meetingCount)
                    + QStringLiteral(" meetings");
        }
        if (writeFees()) {
            m_created << QStringLiteral("databases/pbfees.db: ") + QString::number(m_feeCount)
                    + QStringLiteral(" fees of a third of the cases");
        }
    }
    return m_failures.isEmpty();
}

} // namespace pvardo::admin
