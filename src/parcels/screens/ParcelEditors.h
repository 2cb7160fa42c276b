#pragma once

#include <QDialog>
#include <QHash>
#include <QSet>

class QLineEdit;
class QPlainTextEdit;

namespace pvardo::parcels {

class SblBoxInputs;

// The parcel editor `SBLEdit`, " SBL Repository Edit": one parcel of the
// store with its owner, location, permit, trail and note, and on a store of
// the newer generation its contact, mailing address, grid coordinates and
// GIS link. The S-B-L itself is shown, not edited. ILocate writes the
// fields, trimmed, and saves; ICancel leaves without a write.
class SBLEdit : public QDialog
{
    Q_OBJECT

public:
    explicit SBLEdit(const QString& sbl, QWidget* parent = nullptr);

    // The warning above the fields; the GIS link's format is explained only
    // where the store has the link.
    static QString warningText(bool withGisLink);
    // Empty when the text is a link the map can use, latitude "," longitude,
    // or nothing at all; otherwise what is wrong with it.
    static QString gisLinkFault(const QString& text);
    // False, after saying so, when the parcel is no longer in the store.
    bool loaded() const { return m_loaded; }

    void ILocate();
    void ICancel();

private:
    QLineEdit* addLine(const QString& column, const QString& caption, int longest);

    QString m_sbl;
    bool m_loaded = false;
    bool m_extended = false;
    SblBoxInputs* m_boxes = nullptr;
    QHash<QString, QLineEdit*> m_lines;
    QSet<QString> m_unset; // fields the store holds as "?", shown empty
    QPlainTextEdit* m_trail = nullptr;
    QPlainTextEdit* m_notes = nullptr;
};

// The parcel handler `Scan`, " Parcel Handler": adds a parcel to the store,
// or, when the store has it already and the user agrees, updates its
// permit, owner and location.
class Scan : public QDialog
{
    Q_OBJECT

public:
    explicit Scan(QWidget* parent = nullptr);

    // Checks and writes; closes when something was written.
    void IAdd();

private:
    SblBoxInputs* m_boxes = nullptr;
    QLineEdit* m_owner = nullptr;
    QLineEdit* m_permit = nullptr;
    QLineEdit* m_location = nullptr;
};

} // namespace pvardo::parcels
