#pragma once

#include <QDialog>

class QLineEdit;

namespace pvardo::parcels {

// The coordinates dialog `ccalc`: a latitude and longitude in decimal
// degrees, a converter from degrees, minutes and seconds, and the two ways
// out, storing the pair (Command2) or looking it up on the map (Command3).
// The six converter boxes take digits and the minus sign only.
class CCalc : public QDialog
{
    Q_OBJECT

public:
    enum Outcome { Nothing = 0, Store = 1, LookUp = 2 };

    // A dialog preset with a pair; without a row to store to, the store
    // command is hidden.
    CCalc(const QString& latitude, const QString& longitude, bool canStore, QWidget* parent = nullptr);

    void Command1(); // convert
    void Command2(); // store
    void Command3(); // look up

    Outcome outcome() const { return m_outcome; }
    QString latitude() const;
    QString longitude() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLineEdit* m_dms[6] = {};
    QLineEdit* m_latitude = nullptr;
    QLineEdit* m_longitude = nullptr;
    Outcome m_outcome = Nothing;
};

// Runs the dialog through the prompt service and, on a look-up, opens the
// map page on the point. Gives the outcome and the pair handed back.
struct CoordinateChoice
{
    CCalc::Outcome outcome = CCalc::Nothing;
    QString latitude;
    QString longitude;
};
CoordinateChoice askCoordinates(const QString& storedPair, bool canStore, QWidget* parent);

// The dashboard's look-up: the dialog without its store command.
void maplookup(QWidget* parent);

} // namespace pvardo::parcels
