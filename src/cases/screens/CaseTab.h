#pragma once

#include "parcels/screens/ParcelLocator.h"

#include <QWidget>

class QCheckBox;

namespace pvardo::cases {

class CaseForm;

// The "Case" tab: the case number, filing date and status, the parcel's
// S-B-L and location, and the four parties with their "Same as ..." copies.
class CaseTab : public QWidget
{
    Q_OBJECT

public:
    CaseTab(CaseForm& form, QWidget* parent = nullptr);

    // Clears the one-shot copy boxes, as each shown or cleared row does.
    void resetCopies();

    // Runs a parcel finder and puts the chosen parcel's S-B-L, owner,
    // location and mailing address into the case's inputs; the telephone,
    // e-mail and subdivision of another owner or parcel are cleared.
    void findParcel(parcels::ParcelLocator::Kind kind);
    // Puts a parcel picked from the store or the roll into the case's inputs.
    void fillParcel(const parcels::PickedParcel& picked);

signals:
    // Another parcel was put in: the case's coordinates become its pair,
    // empty when the parcel has none.
    void parcelReplaced(const QString& pair);

private:
    QCheckBox* makeCopy(const QString& name, const QString& caption, int from, int to);

    CaseForm& m_form;
    QList<QCheckBox*> m_copies;
};

} // namespace pvardo::cases
