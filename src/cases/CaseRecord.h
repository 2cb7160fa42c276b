#pragma once

#include "cases/CaseNumbering.h"
#include "parcels/SblBoxes.h"
#include "store/ColumnMap.h"
#include "store/Recordset.h"

#include <QString>
#include <functional>

namespace pvardo {
struct Session;
}

namespace pvardo::parcels {
class ParcelService;
}

namespace pvardo::cases {

// The inputs of the case screen that the record's own rules read; the boxed
// columns come through the screen's ColumnMap walk.
struct CaseInputs
{
    QString caseNumber; // Text1(1)
    QString fileDate; // the file-date input, as typed
    QString statusText; // the status list's text
    parcels::SblBoxes sbl; // Text1(2) to Text1(6)
    QString ownerName; // the owner's name
    QString siteLocation; // the site location
    bool privateWater = false;
    bool privateSewage = false;
    bool privateElectric = false;
    bool privateGas = false;
};

// The rules of a case row: the columns derived on every write, the tie to the
// parcel, the guards of an insert and a save against a number another
// workstation took, void and delete. Nothing cascades: renaming, voiding or
// deleting a case leaves its sub-records and the parcel's trail alone, and a
// number used again picks the old sub-records up.
class CaseRecord
{
public:
    // Writes the columns derived from the inputs, whatever the user typed:
    // the file date and its month, day and year texts (left alone when the
    // input is empty), the case number and its two parts, the status letter,
    // section and subsection, the four utility flags, and the stamps.
    static store::StoreStatus writeDerivedColumns(
        store::Recordset& caseRow, const CaseInputs& inputs, const QString& currentUser);

    // The whole write of the screen's inputs into the row being added or
    // edited: the ColumnMap walk, the derived columns, then the change log.
    // The row is not written; the caller's Update() does that.
    static store::StoreStatus movefieldsintodb(const store::ColumnMap& map, store::Recordset& caseRow,
        const store::BoxReader& box, const CaseInputs& inputs, const Session& session);

    // Ties the case to its parcel, before the case row is written: the
    // parcel's owner and location follow the case, an insert adds "*Z" and the
    // number to the parcel's trail, and a parcel the store does not hold is
    // added. Gives the status of the parcel write.
    static store::StoreStatus PostCaseToParcel(
        parcels::ParcelService& parcels, const CaseInputs& inputs, bool inserting);

    // Fills a new or edited row; called again for each retry of an insert.
    using RowFiller = std::function<store::StoreStatus(store::Recordset& caseRow, const CaseInputs& inputs)>;

    // Adds the case, guarding against a number taken since the check: when
    // the store refuses the row by its unique index, the number is bumped
    // (ResolveDupesAuto) or the user is asked, and the write is retried. On
    // success the sequence advances. The case number of `inputs` is the one
    // written. StopFlag is set when the user abandons the insert.
    static store::StoreStatus insertCase(store::Recordset& cases, CaseNumbering& numbering,
        CaseInputs& inputs, const RowFiller& fill, const DupeDialog& askDupe);

    // Writes an edited case. A number already used by another case is refused
    // with the message " Duplicate Permit", the edit is cancelled and StopFlag
    // set, so the screen stays in edit mode.
    static store::StoreStatus saveCase(
        store::Recordset& cases, const CaseInputs& inputs, const RowFiller& fill);
    static QString duplicatePermitTitle() { return QStringLiteral(" Duplicate Permit"); }
    static QString duplicatePermitText();

    // "V" in the status, the row kept, stamped with the user and the time as
    // every write of a case is. The status the case had goes first to
    // \voided.txt in the database folder, so that restoring brings it back;
    // when that file cannot be written the case is not voided.
    static store::StoreStatus voidCase(
        store::Recordset& caseRow, const QString& currentUser, const QString& databaseFolder);
    // Writes `status` (a letter) back over the "V", stamped.
    static store::StoreStatus restoreCase(
        store::Recordset& caseRow, const QString& currentUser, const QString& status);
    // Notes the status a case had before it was voided (\voided.txt: one
    // line per void, the number, a tab, the letter). A case voided without a
    // status, or already voided, notes nothing.
    static store::StoreStatus rememberStatusBeforeVoid(
        const QString& databaseFolder, const QString& caseNumber, const QString& status);
    // The status noted at the case's last void; empty when none is known (a
    // case voided before the notes were kept, or renamed since).
    static QString statusBeforeVoid(const QString& databaseFolder, const QString& caseNumber);
    // The administrator's hard delete of the current row; the cursor moves on.
    static store::StoreStatus deleteCase(store::Recordset& caseRow);
    // What other tables still hold under a case number, one line a kind
    // ("2 fees", "1 surrounding parcel"); empty when nothing is filed under
    // it. A case is deleted only when this is empty: records left under a
    // number would otherwise be picked up by a later case given that number.
    // A table that cannot be read is named as such rather than counted as none.
    static QStringList recordsFiledUnder(const QString& databaseFolder, const QString& caseNumber);
    static QString filedRecordsTitle() { return QStringLiteral(" Delete"); }
    static QString filedRecordsText(const QString& caseNumber, const QStringList& filed);
    // The refusal of a new number for a case with records filed under its
    // number: they are filed by number, so they would stay behind.
    static QString renameRefusedText(const QString& caseNumber, const QStringList& filed);

    // The texts of the dialog `dupe`.
    static QString dupeTitle() { return QStringLiteral("  Duplicate Record Number"); }
    static QString dupeText();
    static QString dupeAdvice();
    static QString dupeCheckBoxText() { return QStringLiteral("Resolve Duplicate Numbers Automatically"); }
};

} // namespace pvardo::cases
