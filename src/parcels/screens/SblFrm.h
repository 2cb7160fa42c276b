#pragma once

#include <QHash>
#include <QWidget>

class QLabel;
class QLineEdit;
class QMenu;
class QTreeView;

namespace pvardo::ui {
class XPButton;
}

namespace pvardo::parcels {

class ParcelListModel;
class SblBoxInputs;
struct ParcelSearchFields;

// The browser of the parcel store, " S-B-L Repository": lists the parcels,
// finds them by any of their fields, marks them with their flags and opens
// the editor. The list reads the rows of its own cursor as they are shown,
// so it opens at once on a store of any size.
class SblFrm : public QWidget
{
    Q_OBJECT

public:
    explicit SblFrm(QWidget* parent = nullptr);
    ~SblFrm() override;

    // The commands, as the buttons and the row menu run them.
    void ILocate();
    void iLook();
    void iReset();
    void IAdd();
    void iEdit();
    void iDelete();
    void iNote();
    void iXREF();
    void iPrint();
    void recinfod();
    void iContinue();
    // The row menu's flag commands: other, failed, violation, complaint
    // set the flag and open the note for the reason; clearing empties it.
    void fother();
    void ffailed();
    void fViol();
    void fcomplaint();
    void clearit();
    // Prints the list as it stands.
    void hprint();

    // Reopens the list on the whole store, shows the count.
    void resetdb();

    ParcelListModel& model() const { return *m_model; }
    QTreeView& list() const { return *m_list; }
    // The S-B-L of the selected row, "" when none is selected.
    QString selectedSbl() const;

private:
    ParcelSearchFields searchFields() const;
    // Opens the list on a query of the store; false after saying why.
    bool showQuery(const QString& query);
    void rowSelected();
    void setFlag(int which);
    void showCount();

    ParcelListModel* m_model = nullptr;
    QTreeView* m_list = nullptr;
    SblBoxInputs* m_boxes = nullptr;
    QLineEdit* m_owner = nullptr;
    QLineEdit* m_notes = nullptr;
    QLineEdit* m_permit = nullptr;
    QLineEdit* m_location = nullptr;
    QLabel* m_total = nullptr;
    QMenu* m_rowMenu = nullptr;
    QHash<QString, ui::XPButton*> m_buttons;
};

// Opens the browser from the dashboard; the one already open comes to the front.
void showParcelBrowser(QWidget* parent);

} // namespace pvardo::parcels
