#pragma once

#include "parcels/SblBoxes.h"

#include <QWidget>

class QLineEdit;

namespace pvardo::parcels {

// The five S-B-L entry boxes Text1(2) to Text1(6) under their captions
// " Section", " Block", " Lot", " Sublot 1", " Sublot 2", for the parcel
// screens. The subsection is typed after a point in the section box.
class SblBoxInputs : public QWidget
{
    Q_OBJECT

public:
    explicit SblBoxInputs(QWidget* parent = nullptr);

    SblBoxes boxes() const;
    void setBoxes(const SblBoxes& boxes);
    void clear();
    void setReadOnly(bool readOnly);
    QLineEdit* box(int index) const;

signals:
    // Enter in any box.
    void returnPressed();

private:
    QLineEdit* m_boxes[5] = {};
};

} // namespace pvardo::parcels
