#pragma once

#include "parcels/RpsImport.h"
#include "parcels/screens/ParcelLocator.h"

#include <QDialog>
#include <functional>
#include <memory>
#include <optional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QProgressBar;

namespace pvardo::parcels {

class ParcelListModel;

// The form `rps` of "Import Tax Parcels..": what the import reads, the
// target SWIS, and the file to read, chosen in the dialog "Find Import
// File". The chosen file goes to the preview.
class RpsFrm : public QDialog
{
    Q_OBJECT

public:
    explicit RpsFrm(QWidget* parent = nullptr);

    // Asks for the file and runs the preview on it.
    void iImport();
    // Starts the office's own import program, when there is one.
    void iCustom();

private:
    QLineEdit* m_target = nullptr;
};

// The preview `rpsimport`, "Data Preview": pass 1 over the file shows the
// last record it could read and the confidence; iContinue runs pass 2 into
// the roll with a progress bar, and iStop ends it between two records,
// leaving the rows written until then.
class RpsImportFrm : public QDialog
{
    Q_OBJECT

public:
    RpsImportFrm(const QString& filePath, const QString& targetSwis, QWidget* parent = nullptr);
    ~RpsImportFrm() override;

    // Pass 1; hides iContinue when nothing in the file could be read.
    void analyse();
    void iContinue();
    void ICancel();
    void iStop();
    // Closing the window while it imports is a Stop.
    void reject() override;

    const RpsImportResult& lastResult() const { return m_result; }
    // Heard after each record of a pass, once the screen shows it.
    void setProgressObserver(std::function<void(const RpsImportProgress&)> observer)
    {
        m_observer = std::move(observer);
    }

    static QString warningText();

private:
    bool showProgress(const RpsImportProgress& progress);
    void showPreview(const RpsPreview& preview);

    RpsImport m_import;
    RpsImportResult m_result;
    bool m_stopAsked = false;
    bool m_running = false;
    int m_steps = 0;
    std::function<void(const RpsImportProgress&)> m_observer;
    QLabel* m_read = nullptr;
    QLabel* m_processed = nullptr;
    QLabel* m_confidence = nullptr;
    QProgressBar* m_confidenceBar = nullptr;
    QProgressBar* m_progress = nullptr;
    QLineEdit* m_fields[7] = {};
    QCheckBox* m_onlyTarget = nullptr;
};

// The roll viewer `viewRPS`, " View Tax Parcel Import File".
class ViewRPS : public QDialog
{
    Q_OBJECT

public:
    explicit ViewRPS(QWidget* parent = nullptr);
    ~ViewRPS() override;

    ParcelListModel& model() const { return *m_model; }

private:
    ParcelListModel* m_model = nullptr;
    QLabel* m_count = nullptr;
};

// The roll look-up `rpsloc` of the case screen: finds parcels of the
// imported roll by a part of their location and of their owner, so a parcel
// that never reached the parcel store can still be picked. The whole roll
// is listed at first.
class RpsLoc : public LocatorDialog
{
    Q_OBJECT

public:
    explicit RpsLoc(QWidget* parent = nullptr);
    ~RpsLoc() override;

    void iLook() override;

    // Runs the look-up through the prompt service; nothing when there is no
    // roll (after saying so) or the user closed it without a choice.
    static std::optional<PickedParcel> pick(QWidget* parent);

private:
    void choose(int row) override;

    QLineEdit* m_location = nullptr;
    QLineEdit* m_contact = nullptr;
};

// The window of "Synchronize SBL Repository" while the roll is carried into
// the parcel store: a bar and a Stop that ends the run between two rows,
// leaving the rows carried until then, whole.
class SyncFrm : public QDialog
{
    Q_OBJECT

public:
    explicit SyncFrm(QWidget* parent = nullptr);

    // Carries the roll; says how it ended and closes.
    void iContinue();
    void iStop();
    // Closing the window while it runs is a Stop.
    void reject() override;

    // Heard after each row carried, once the window shows it.
    void setProgressObserver(std::function<void(double percent)> observer)
    {
        m_observer = std::move(observer);
    }

private:
    bool showProgress(double percent);

    bool m_stopAsked = false;
    bool m_running = false;
    bool m_done = false;
    int m_steps = 0;
    std::function<void(double)> m_observer;
    QProgressBar* m_bar = nullptr;
};

// The dashboard's commands: "Import Tax Parcels..", "View Imported
// Parcels" and "Synchronize SBL Repository".
void updateparcel(QWidget* parent);
void viewparcel(QWidget* parent);
void syncSBL(QWidget* parent);

// Closes the roll the import screens keep open, as after a move to another
// database folder; the next use opens the roll of the session's folder.
void releaseRoll();

// Tells the parcel browser, when it is open, to read the store again.
void setParcelStoreChanged(std::function<void()> listener);

} // namespace pvardo::parcels
