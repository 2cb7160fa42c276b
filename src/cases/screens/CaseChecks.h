#pragma once

#include "cases/CaseNumbering.h"

class QWidget;

namespace pvardo::cases {

class CaseForm;

// The checks the case screen runs before it writes a case, and its notepad:
// the required inputs, the parcel's violation note (Postit), the duplicate
// number (dupe) and a parcel the store does not hold yet. Outcomes are left in
// the session's StopFlag, true to stop, as every check of the program does.
class CaseChecks
{
public:
    CaseChecks(CaseForm& form, QWidget* parent);

    // Before IAdd (saving false) and ISave (saving true). On the way it ties
    // the case to its parcel, or adds the parcel when the clerk says so.
    void ValidateCaseInput(bool saving) const;
    // Shows and edits the note of the case's parcel.
    void iNote() const;
    // Asks `dupe` about a number already taken.
    DupeChoice askDupe() const;

private:
    CaseForm& m_form;
    QWidget* m_parent;
};

} // namespace pvardo::cases
