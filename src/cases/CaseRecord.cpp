#include "cases/CaseRecord.h"

#include "cases/CaseChangeLog.h"
#include "cases/CaseStatus.h"
#include "common/DateText.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "parcels/ParcelService.h"
#include "parcels/TextCuts.h"
#include "store/Catalogue.h"
#include "store/DatabaseLocation.h"
#include "store/Recordset.h"
#include "store/SqlSubset.h"

#include <QDate>
#include <QFileInfo>

namespace pvardo::cases {

using store::StoreStatus;

namespace {

const QString kNoParcel = QStringLiteral("0-0-0-0-0-0-0-0");

QString utilityFlag(bool isPrivate)
{
    return isPrivate ? QStringLiteral("1") : QStringLiteral("0");
}

} // namespace

QString CaseRecord::duplicatePermitText()
{
    return QStringLiteral("The permit number entered already exists.\n"
                          "You cannot change this permit to a number already used.");
}

QString CaseRecord::dupeText()
{
    return QStringLiteral(
        "The Case Number entered already exist. You cannot add a new case with the same number.");
}

QString CaseRecord::dupeAdvice()
{
    return QStringLiteral(
        "If your operation does not utilize pre-numbered cases, the program can resolve duplicate "
        "case numbers simply by incrementing your case number automatically. If you want for the "
        "program to resolve this automatically, simply check the box \"Resolve duplicate numbers "
        "automatically.\"");
}

StoreStatus CaseRecord::writeDerivedColumns(
    store::Recordset& caseRow, const CaseInputs& inputs, const QString& currentUser)
{
    QList<QPair<QString, QVariant>> values;
    const QString fileDate = inputs.fileDate.trimmed();
    if (!fileDate.isEmpty()) {
        const QString normal = FixDateText(fileDate);
        const QDate date = QDate::fromString(normal, QStringLiteral("MM/dd/yyyy"));
        if (date.isValid()) {
            values.append({QStringLiteral("PBFILEDATE"), date});
            values.append({QStringLiteral("FILEMONTH"), date.toString(QStringLiteral("MM"))});
            values.append({QStringLiteral("FILEDATE"), date.toString(QStringLiteral("dd"))});
            values.append({QStringLiteral("FILEYEAR"), date.toString(QStringLiteral("yy"))});
        }
    }
    // The number's parts are rewritten whatever the number looks like: ABC
    // gives AB and nothing.
    const QString caseNumber = inputs.caseNumber.trimmed();
    values.append({QStringLiteral("PBCASE"), parcels::cutText(caseNumber, 20)});
    values.append({QStringLiteral("BLDGPERMYY"), caseNumber.left(2)});
    values.append({QStringLiteral("BLDGPRM"), parcels::cutText(caseNumber.mid(3), 8)});
    values.append({QStringLiteral("PBSTATUS"), CaseStatus::letterOf(inputs.statusText)});
    // The section box holds the subsection after a point: 12.3 is 12 and 3.
    const QString section = inputs.sbl.section.trimmed();
    const qsizetype point = section.indexOf(QLatin1Char('.'));
    values.append({QStringLiteral("SEC"), parcels::cutText(point >= 0 ? section.left(point) : section, 6)});
    values.append({QStringLiteral("SUD"),
        parcels::cutText(point >= 0 ? section.mid(point + 1) : QStringLiteral("0"), 4)});
    values.append({QStringLiteral("PBFW"), utilityFlag(inputs.privateWater)});
    values.append({QStringLiteral("PBFS"), utilityFlag(inputs.privateSewage)});
    values.append({QStringLiteral("PBFE"), utilityFlag(inputs.privateElectric)});
    values.append({QStringLiteral("PBFG"), utilityFlag(inputs.privateGas)});
    for (const auto& [column, value] : values) {
        StoreStatus status = caseRow.setValue(column, value);
        if (!status.ok()) {
            return status;
        }
    }
    return store::stampRow(caseRow, currentUser);
}

StoreStatus CaseRecord::movefieldsintodb(const store::ColumnMap& map, store::Recordset& caseRow,
    const store::BoxReader& box, const CaseInputs& inputs, const Session& session)
{
    StoreStatus status = store::movefieldsintodb(map, caseRow, box);
    if (status.ok()) {
        status = writeDerivedColumns(caseRow, inputs, session.CurrentUser);
    }
    if (status.ok()) {
        // A change log that cannot be written does not stop the case.
        CaseChangeLog::LogCaseChange(
            session, QStringLiteral("20"), QStringLiteral("PBCASE"), inputs.caseNumber.trimmed());
    }
    return status;
}

StoreStatus CaseRecord::PostCaseToParcel(
    parcels::ParcelService& parcels, const CaseInputs& inputs, bool inserting)
{
    const QString sbl = parcels.MakeSBL(inputs.sbl);
    const QString caseNumber = inputs.caseNumber.trimmed();
    const QString owner = parcels::cutText(inputs.ownerName.trimmed(), 20);
    const QString location = parcels::cutText(inputs.siteLocation.trimmed(), 80);
    parcels::ParcelService::ColumnValues newRow = {
        {QStringLiteral("SBLF"), parcels::cutText(sbl, 40)},
        {QStringLiteral("ASSOC"), owner},
        {QStringLiteral("LOCN1"), location},
        {QStringLiteral("OTHER"), 0},
        {QStringLiteral("FAILED"), 0},
        {QStringLiteral("VIOL"), 0},
        {QStringLiteral("PERMIT"), QStringLiteral("?")},
    };
    if (sbl == kNoParcel) {
        return parcels.SBLAddColumns(newRow);
    }
    if (parcels.SBLExists(sbl)) {
        parcels::ParcelService::ColumnValues changes;
        if (inserting) {
            // The trail only grows: voiding, deleting or renaming the case
            // later leaves this token behind.
            const QString trail = parcels.recordset()->text(QStringLiteral("HISTORICAL"));
            changes.append(
                {QStringLiteral("HISTORICAL"), QString(trail + QStringLiteral("*Z") + caseNumber)});
        }
        changes.append({QStringLiteral("ASSOC"), owner});
        changes.append({QStringLiteral("LOCN1"), location});
        return parcels.SBLUpdateColumns(changes);
    }
    newRow.append({QStringLiteral("HISTORICAL"), QString(QStringLiteral("*Z") + caseNumber)});
    return parcels.SBLAddColumns(newRow);
}

StoreStatus CaseRecord::insertCase(store::Recordset& cases, CaseNumbering& numbering, CaseInputs& inputs,
    const RowFiller& fill, const DupeDialog& askDupe)
{
    for (;;) {
        cases.AddNew();
        StoreStatus status = fill(cases, inputs);
        if (status.ok()) {
            status = cases.Update();
        }
        if (status.ok()) {
            numbering.advanceAfterInsert();
            session().StopFlag = false;
            return status;
        }
        cases.CancelUpdate();
        if (status.number != store::StoreErrorNumber::DuplicateKey) {
            session().StopFlag = true;
            return status;
        }
        // Another workstation took the number since the check.
        if (!numbering.ResolveDupesAuto) {
            if (!askDupe || askDupe() == DupeChoice::Cancel) {
                session().StopFlag = true;
                return status;
            }
            numbering.ResolveDupesAuto = true;
            session().StopFlag = false;
        }
        inputs.caseNumber = numbering.BumpPermit(inputs.caseNumber.trimmed());
    }
}

StoreStatus CaseRecord::saveCase(store::Recordset& cases, const CaseInputs& inputs, const RowFiller& fill)
{
    StoreStatus status = fill(cases, inputs);
    if (status.ok()) {
        status = cases.Update();
    }
    if (status.ok()) {
        session().StopFlag = false;
        return status;
    }
    cases.CancelUpdate();
    session().StopFlag = true;
    if (status.number == store::StoreErrorNumber::DuplicateKey) {
        showMessage(duplicatePermitText(), duplicatePermitTitle(), PromptButtons::Ok, PromptIcon::Critical);
    }
    return status;
}

StoreStatus CaseRecord::voidCase(
    store::Recordset& caseRow, const QString& currentUser, const QString& databaseFolder)
{
    StoreStatus status = rememberStatusBeforeVoid(
        databaseFolder, caseRow.text(QStringLiteral("PBCASE")), caseRow.text(QStringLiteral("PBSTATUS")));
    if (!status.ok()) {
        return status; // a void that could not be undone is no void
    }
    status = caseRow.setValue(QStringLiteral("PBSTATUS"), QStringLiteral("V"));
    if (status.ok()) {
        status = store::stampRow(caseRow, currentUser); // who voided it, and when
    }
    return status.ok() ? caseRow.Update() : status;
}

StoreStatus CaseRecord::restoreCase(store::Recordset& caseRow, const QString& currentUser, const QString& status)
{
    StoreStatus written = caseRow.setValue(QStringLiteral("PBSTATUS"), status);
    if (written.ok()) {
        written = store::stampRow(caseRow, currentUser);
    }
    return written.ok() ? caseRow.Update() : written;
}

namespace {

QString voidedFile(const QString& databaseFolder)
{
    return joinPath(databaseFolder, QStringLiteral("\\voided.txt"));
}

} // namespace

StoreStatus CaseRecord::rememberStatusBeforeVoid(
    const QString& databaseFolder, const QString& caseNumber, const QString& status)
{
    const QString letter = status.trimmed();
    if (letter.isEmpty() || letter == QLatin1String("V") || caseNumber.trimmed().isEmpty()) {
        return StoreStatus::success();
    }
    QString error;
    if (!appendTextLine(voidedFile(databaseFolder), caseNumber.trimmed() + QLatin1Char('\t') + letter, &error)) {
        return StoreStatus::failure(store::StoreErrorNumber::WriteFailed,
            QStringLiteral("The case's status cannot be noted in ") + voidedFile(databaseFolder)
                + QStringLiteral(" (") + error + QStringLiteral("), so the case was not voided."));
    }
    return StoreStatus::success();
}

QString CaseRecord::statusBeforeVoid(const QString& databaseFolder, const QString& caseNumber)
{
    const std::optional<QStringList> lines = readTextLines(voidedFile(databaseFolder));
    if (!lines) {
        return {};
    }
    const QString wanted = caseNumber.trimmed() + QLatin1Char('\t');
    for (auto it = lines->crbegin(); it != lines->crend(); ++it) {
        if (it->startsWith(wanted)) {
            const QString letter = it->mid(wanted.size()).trimmed();
            // Only a status the list knows comes back.
            return CaseStatus::statusVerbose(letter) != letter && letter != QLatin1String("V") ? letter : QString();
        }
    }
    return {};
}

StoreStatus CaseRecord::deleteCase(store::Recordset& caseRow)
{
    StoreStatus status = caseRow.Delete();
    if (status.ok()) {
        caseRow.MoveNext();
    }
    return status;
}

QStringList CaseRecord::recordsFiledUnder(const QString& databaseFolder, const QString& caseNumber)
{
    struct Kind {
        store::Table table;
        const char* column;
        const char* one;
        const char* many;
    };
    static constexpr Kind kinds[] = {
        {store::Table::PBFEES, "PBFCASE", "fee", "fees"},
        {store::Table::BONDS, "BCASE", "bond", "bonds"},
        {store::Table::PBSEQRA, "SCASE", "environmental review", "environmental reviews"},
        {store::Table::PBAGENCY, "ACASE", "agency referral", "agency referrals"},
        {store::Table::PBMAPS, "MPCASE", "map", "maps"},
        {store::Table::PBWETL, "WCASE", "wetland permit", "wetland permits"},
        {store::Table::ISSUES, "ISRECNO", "issue", "issues"},
        {store::Table::ACTIONS, "APRECNO", "action", "actions"},
        {store::Table::ADJ, "ACASE", "surrounding parcel", "surrounding parcels"},
        {store::Table::CHECKLIST, "CASE", "checklist item", "checklist items"},
    };
    QStringList filed;
    for (const Kind& kind : kinds) {
        const store::TableDef& def = store::tableDef(kind.table);
        const QString path = store::databaseFile(databaseFolder, QString::fromLatin1(def.fileName));
        if (!QFileInfo::exists(path)) {
            continue; // a kind of record this office has never kept
        }
        const QString query = QStringLiteral("Select * from ") + QString::fromLatin1(def.tableName)
            + QStringLiteral(" where [") + QString::fromLatin1(kind.column) + QStringLiteral("] = ")
            + store::quotedText(caseNumber);
        store::StoreStatus status;
        const auto rows = store::openRecordsetAt(path, query, &status);
        if (!rows) {
            filed.append(QString::fromLatin1(kind.many) + QStringLiteral(" (") + QFileInfo(path).fileName()
                + QStringLiteral(" cannot be read)"));
            continue;
        }
        const int count = rows->RecordCount();
        if (count > 0) {
            filed.append(QString::number(count) + QLatin1Char(' ')
                + QString::fromLatin1(count == 1 ? kind.one : kind.many));
        }
    }
    return filed;
}

QString CaseRecord::filedRecordsText(const QString& caseNumber, const QStringList& filed)
{
    return QStringLiteral("Case ") + caseNumber + QStringLiteral(" cannot be deleted while records are filed under it:\n\n")
        + filed.join(QLatin1Char('\n'))
        + QStringLiteral("\n\nDelete those records first, or void the case instead (File, Void Record), which keeps "
                         "them with it.");
}

QString CaseRecord::renameRefusedText(const QString& caseNumber, const QStringList& filed)
{
    return QStringLiteral("The number of case ") + caseNumber
        + QStringLiteral(" cannot be changed while records are filed under it:\n\n") + filed.join(QLatin1Char('\n'))
        + QStringLiteral("\n\nThey are filed by the case number and would stay behind under ") + caseNumber
        + QStringLiteral(". The case keeps its number; the other changes can be saved.");
}

} // namespace pvardo::cases
