#pragma once

#include "store/Recordset.h"

#include <QDate>
#include <QString>
#include <functional>
#include <memory>

namespace pvardo::cases {

// What the user answered in the dialog `dupe` about a case number that is
// already taken.
enum class DupeChoice {
    Cancel, // iCancel, or iContinue with the box clear: the command is abandoned
    ResolveAutomatically, // iContinue with "Resolve Duplicate Numbers Automatically" ticked
};
using DupeDialog = std::function<DupeChoice()>;

// The numbering of cases: year digits, "-", a sequence number (12-207).
//
// One sequence runs through all years. The working number PermitSeq lives for
// the program run; the last one used is kept in \zhi.txt of the database
// folder, or in \pnb.txt when the office set a number to begin with (the
// preference dialog writes that file too). Workstations share the files
// without a lock: the proposal climbs past numbers already taken, so a stale
// counter does no harm, and the unique index on PBCASE is the last guard.
class CaseNumbering
{
public:
    // The numbering of a database folder, with the case file in it; the year
    // digits come from the program's start-up date.
    CaseNumbering(QString databaseFolder, QString caseDatabasePath, const QDate& startUpDate);

    // The working values, as text, as the files hold them.
    QString PermitSeq; // the working sequence number, empty at start-up
    QString PermitSeqStored; // line 1 of \zhi.txt
    QString PermitBase; // line 1 of \pnb.txt; "-1" lets the computer decide
    bool ResolveDupesAuto = false;

    // Reads \pnb.txt and \zhi.txt. When either is missing, both are written
    // anew ("-1" and "200") and read again, so a new installation starts at 200.
    void load();

    // The two digits of the year part.
    QString yearPart() const { return m_yearPart; }

    // Where PermitSeq starts when it has no value yet: the number of
    // "Begin Numbering with:" when the office set one (the computer does not
    // decide), else the last sequence kept in \zhi.txt.
    QString startingSequence() const;

    // The number INew proposes: year part, "-", PermitSeq, climbing past every
    // number already taken (and keeping the climb). Has no limit: the table
    // holds finitely many numbers.
    QString proposeNumber();
    // After a successful insert: PermitSeq gains one and is kept.
    void advanceAfterInsert();
    // A number of the case number input, bumped: the number from its fourth
    // character plus one, behind its first two characters. PermitSeq takes
    // it only when it is of this year and ahead of PermitSeq.
    QString BumpPermit(const QString& caseNumberInput);

    // True when a case row with exactly this number is in the store now.
    bool PermitExists(const QString& caseNumber);
    // Sets the session's StopFlag true when the number is free (also on an
    // empty table), false when it is taken: the opposite sense of PermitExists.
    void ValidatePermit(const QString& caseNumber);
    // Keeps PermitSeq in its file.
    void PersistPermitSeq();

    // The duplicate check of an insert: while the number is taken, bump it
    // (ResolveDupesAuto) or ask. Gives false, with StopFlag set, when the
    // user abandons the insert; the number is then as the user left it.
    bool resolveDuplicate(QString& caseNumber, const DupeDialog& askDupe);

    QString pnbPath() const;
    QString zhiPath() const;

private:
    bool openCases();

    QString m_folder;
    QString m_casePath;
    QString m_yearPart;
    std::unique_ptr<store::Recordset> m_cases;
};

// The numbering of the running program, made on first use from the session's
// database folder and start-up date, its files read then.
CaseNumbering& caseNumbering();
// Drops it, as at the end of a run; the next caseNumbering() reads the files again.
void resetCaseNumbering();
// After the preferences changed the numbering or the database folder: the
// working number starts over from the files of the session's database folder
// on the next proposal. The answer of the dialog `dupe` holds for the run.
void reloadCaseNumbering();

} // namespace pvardo::cases
