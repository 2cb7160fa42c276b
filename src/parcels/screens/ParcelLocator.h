#pragma once

#include "parcels/screens/ParcelListModel.h"

#include <QDialog>
#include <optional>

class QLineEdit;
class QTreeView;
class QVBoxLayout;

namespace pvardo::parcels {

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

// What the parcel finders share: the list of the parcels found, read from
// a cursor of the parcel store or of the roll; Find, Select and Cancel; and
// a choice by double click or Select, which closes the finder with that
// parcel.
class LocatorDialog : public QDialog
{
    Q_OBJECT

public:
    ~LocatorDialog() override;

    // Narrows the list to what the inputs say.
    virtual void iLook() = 0;
    // Takes the selected row; nothing when none is selected.
    void iContinue();

    const PickedParcel& picked() const { return m_picked; }
    ParcelListModel& model() const { return *m_model; }

protected:
    LocatorDialog(const QList<ParcelListModel::Column>& columns, QWidget* parent);

    // Puts the list and the command row under the inputs already laid out.
    void addListAndCommands(QVBoxLayout& layout);
    QTreeView& list() const { return *m_list; }
    // Lists a query of a database file; false after saying why.
    bool showQuery(const QString& databasePath, const QString& query);
    // Fills m_picked from the row and accepts; nothing for a row that is gone.
    virtual void choose(int row) = 0;
    // Runs a finder through the prompt service; nothing when it was closed
    // without a choice.
    static std::optional<PickedParcel> run(LocatorDialog& locator);

    PickedParcel m_picked;

private:
    ParcelListModel* m_model = nullptr;
    QTreeView* m_list = nullptr;
};

// The two small parcel finders of the case and neighbour screens: `sblloc`
// by a part of the S-B-L, `adloc` by a part of the address. Both list the
// whole store at first; iLook narrows the list.
class ParcelLocator : public LocatorDialog
{
    Q_OBJECT

public:
    enum class Kind { BySbl, ByAddress };
    explicit ParcelLocator(Kind kind, QWidget* parent = nullptr);
    ~ParcelLocator() override;

    void iLook() override;

    // The hint of the finders that look by address.
    static QString addressHint();

    // Runs a locator through the prompt service; nothing when the user
    // closed it without a choice.
    static std::optional<PickedParcel> pick(Kind kind, QWidget* parent);

private:
    void choose(int row) override;

    Kind m_kind;
    SblBoxInputs* m_boxes = nullptr;
    QLineEdit* m_lookFor = nullptr;
};

} // namespace pvardo::parcels
