#pragma once

#include "cases/screens/ZPermits.h"
#include "store/ColumnMap.h"
#include "store/Recordset.h"
#include "subrecords/SubRecordSettings.h"
#include "ui/RecordCommands.h"
#include "ui/RecordMode.h"
#include "ui/RecordNavigation.h"

#include <QHash>
#include <QMainWindow>
#include <QMap>
#include <QPointer>

#include <memory>

class QAction;
class QLabel;
class QLineEdit;
class QMenu;
class QTextDocument;
class QTreeWidget;
class QTreeWidgetItem;

namespace pvardo::ui {
class XPButton;
}

namespace pvardo::subrecords {

// The one screen of the records that hang from a case: fees, bonds,
// meetings, reviews and the rest. Its settings say which table, key, list
// and inputs; a kind of record adds its inputs and its own rules through the
// hooks below. It always shows the rows of the case the case screen shows
// last: each time it comes to the front it checks that case and binds again
// when the case screen has moved on.
class SubRecordFrm : public QMainWindow
{
    Q_OBJECT

public:
    SubRecordFrm(const SubRecordSettings& settings, cases::ZPermits& caseScreen, QWidget* parent = nullptr);
    ~SubRecordFrm() override;

    // The commands, as their buttons and menus run them.
    void INew();
    void IAdd();
    void IEdit();
    void ISave();
    void ICancel();
    void iReset();
    void iDelete();
    void voidRecord(); // delr
    void recinfod();
    void doprint();
    void mexit();
    void moveFirst() { step(ui::RecordNavigation::Step::First); }
    void movePrevious() { step(ui::RecordNavigation::Step::Previous); }
    void moveNext() { step(ui::RecordNavigation::Step::Next); }
    void moveLast() { step(ui::RecordNavigation::Step::Last); }

    // What the screen does each time it comes to the front.
    void activateScreen();
    // Reads the case screen's case and the rows of that case.
    void bind();
    // Binds to the case the case screen shows, when it is another; a record
    // being typed is saved to its own case first or dropped, as the clerk says.
    void followCase(const QString& shown);

    const SubRecordSettings& settings() const { return m_settings; }
    QString ownerCase() const { return m_ownerCase; }
    ui::RecordMode mode() const { return m_mode; }
    // A record typed and not written is saved, dropped or kept, as the clerk
    // says; true when the screen may close.
    bool settleUnsaved() { return m_record->settleUnsaved(); }
    store::Recordset* rows() const { return m_rows.get(); }
    // The cursor stands on a row the file can give back.
    bool rowReadable() const;
    QString currentQuery() const { return m_query; }
    QString boxText(int box) const;
    void setBoxText(int box, const QString& text);
    // The text of a case-screen input by its column ("PBAPPNAME1").
    QString caseColumnText(const QString& column) const;
    cases::ZPermits* caseScreen() const { return m_caseScreen; }

    // The shared case the sub-record screens were last bound to.
    static QString& lastBoundCase();

protected:
    // Builds the screen: commands, list, and the kind's inputs. Called once
    // by the kind's constructor.
    void build();
    // The kind's inputs, in `area`; each numbered input is registered with
    // addBox().
    virtual void buildDetail(QWidget* area) = 0;
    void addBox(int box, QLineEdit* input);
    // Inputs beyond the numbered ones: registered to lock with the rest.
    void addInput(QWidget* input) { m_otherInputs.append(input); }
    // The columns a row writes beyond its inputs: key, status, dates, stamps.
    virtual store::StoreStatus writeOwnColumns(store::Recordset& row) = 0;
    // Shows the columns the inputs of the map do not show.
    virtual void showOwnColumns(const store::Recordset&) {}
    // Puts the kind's own inputs to their new-record state.
    virtual void clearOwnInputs() {}
    // The list's rebuild, row by row.
    virtual void listStarted() {}
    virtual void listRowAdded(const store::Recordset&) {}
    virtual void listFinished(int) {}
    // A choice of the print dialog other than a custom letter, by its code.
    virtual void printChoice(const QString&) {}
    // The screen's part of a letter.
    virtual void PlugVars(QTextDocument& buffer);
    // The clerk is done typing: Add or Save was pressed, before the check.
    virtual void inputsFinished() {}
    // The menu item "Print Receipt".
    virtual void printreceipt() {}
    // The menu the kind adds its reports to.
    QMenu* reportsMenu() const { return m_reportsMenu; }
    QLabel* headingLabel() const { return m_heading; }
    QString projectName() const;

    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void buildCommands(QWidget* bar);
    void buildMenus();
    void registerModes();
    ui::XPButton* addButton(const QString& name, const QString& caption, const QString& toolTip, QWidget* parent);
    bool readRows();
    void handleStoreError(const store::StoreStatus& status);
    void fillList();
    void setListRow(QTreeWidgetItem* item, const store::Recordset& row) const;
    void showRow();
    void redrawPosition();
    void enterMode(ui::RecordMode mode);
    void lock(bool locked);
    void clearInputs();
    bool check();
    // Every money input holds an amount; tells the clerk of the first that
    // does not.
    bool moneyReadable();
    QString captionOf(const QLineEdit* input) const;
    store::StoreStatus movefieldsintodb(store::Recordset& row);
    bool hasRow() const;
    bool isVoided() const;
    void step(ui::RecordNavigation::Step step);
    void pickFromList(QTreeWidgetItem* item);
    void leftPaneOnly(bool ownOnly);
    void applyUserRights();

    const SubRecordSettings& m_settings;
    QPointer<cases::ZPermits> m_caseScreen;
    store::ColumnMap m_map;
    std::unique_ptr<store::Recordset> m_rows;
    ui::RecordNavigation m_nav{m_rows};
    QString m_path;
    QString m_query;
    QString m_ownerCase;
    ui::RecordMode m_mode = ui::RecordMode::Empty;
    ui::RecordModeCommands m_commands;
    std::unique_ptr<ui::RecordCommands> m_record;
    ui::HiddenDelete m_delete;
    bool m_saving = false;

    QMap<int, QLineEdit*> m_boxes;
    QList<QWidget*> m_otherInputs;
    QTreeWidget* m_list = nullptr;
    QLabel* m_heading = nullptr;
    QLabel* m_caseLabel = nullptr;
    QLabel* m_position = nullptr;
    QLabel* m_void = nullptr;
    QHash<QString, ui::XPButton*> m_buttons;
    QHash<QString, QAction*> m_actions;
    QMenu* m_fileMenu = nullptr;
    QMenu* m_reportsMenu = nullptr;
};

} // namespace pvardo::subrecords
