#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QTreeView;

namespace pvardo::parcels {

class ParcelListModel;
class SblBoxInputs;

// The parcel a locator handed back: its key and the values that go to the
// screen that opened it.
struct PickedParcel
{
    QString sbl; // full form
    QString association;
    QString location;
    QString mailing;
    QString gisLink; // "latitude,longitude", or empty when the parcel has none
};

// The two small parcel finders of the case and neighbour screens: `sblloc`
// by a part of the S-B-L, `adloc` by a part of the address. Both list the
// whole store at first; iLook narrows the list, and a chosen row (double
// click or iContinue) closes the finder with that parcel.
class ParcelLocator : public QDialog
{
    Q_OBJECT

public:
    enum class Kind { BySbl, ByAddress };
    explicit ParcelLocator(Kind kind, QWidget* parent = nullptr);
    ~ParcelLocator() override;

    void iLook();
    // Takes the selected row; nothing when none is selected.
    void iContinue();

    const PickedParcel& picked() const { return m_picked; }
    // The hint of the finders that look by address.
    static QString addressHint();
    ParcelListModel& model() const { return *m_model; }

    // Runs a locator through the prompt service; nothing when the user
    // closed it without a choice.
    static std::optional<PickedParcel> pick(Kind kind, QWidget* parent);

private:
    bool showQuery(const QString& query);
    void choose(int row);

    Kind m_kind;
    SblBoxInputs* m_boxes = nullptr;
    QLineEdit* m_lookFor = nullptr;
    QTreeView* m_list = nullptr;
    ParcelListModel* m_model = nullptr;
    PickedParcel m_picked;
};

} // namespace pvardo::parcels
