#include "parcels/screens/SblBoxInputs.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

namespace pvardo::parcels {

SblBoxInputs::SblBoxInputs(QWidget* parent)
    : QWidget(parent)
{
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    const char* captions[] = {" Section", " Block", " Lot", " Sublot 1", " Sublot 2"};
    for (int i = 0; i < 5; ++i) {
        grid->addWidget(new QLabel(QString::fromLatin1(captions[i]), this), 0, i);
        auto* box = new QLineEdit(this);
        box->setObjectName(QStringLiteral("Text1_%1").arg(i + 2));
        // A part of the identifier is a few places; the section carries its
        // subsection after a point.
        box->setMaxLength(i == 0 ? 13 : 6);
        connect(box, &QLineEdit::returnPressed, this, &SblBoxInputs::returnPressed);
        grid->addWidget(box, 1, i);
        m_boxes[i] = box;
    }
}

SblBoxes SblBoxInputs::boxes() const
{
    SblBoxes boxes;
    for (int i = 0; i < 5; ++i) {
        boxes.box(i + 2) = m_boxes[i]->text();
    }
    return boxes;
}

void SblBoxInputs::setBoxes(const SblBoxes& boxes)
{
    for (int i = 0; i < 5; ++i) {
        m_boxes[i]->setText(boxes.box(i + 2));
    }
}

void SblBoxInputs::clear()
{
    setBoxes({});
}

void SblBoxInputs::setReadOnly(bool readOnly)
{
    for (QLineEdit* box : m_boxes) {
        box->setReadOnly(readOnly);
    }
}

QLineEdit* SblBoxInputs::box(int index) const
{
    return index >= 2 && index <= 6 ? m_boxes[index - 2] : nullptr;
}

} // namespace pvardo::parcels
