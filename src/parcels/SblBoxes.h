#pragma once

#include <QString>

namespace pvardo::parcels {

// The five S-B-L entry boxes of a screen, Text1(2) to Text1(6), as plain texts.
// The case and neighbour screens hand their box texts over in this record and
// take the boxes back from it, so the S-B-L rules never touch a window.
struct SblBoxes
{
    QString section; // Text1(2): section, with an optional subsection after a point (12.34)
    QString block; // Text1(3)
    QString lot; // Text1(4)
    QString sublot1; // Text1(5)
    QString sublot2; // Text1(6)

    // The box of a screen's index, 2 to 6; any other index is the section.
    QString& box(int index)
    {
        switch (index) {
        case 3:
            return block;
        case 4:
            return lot;
        case 5:
            return sublot1;
        case 6:
            return sublot2;
        default:
            return section;
        }
    }
    const QString& box(int index) const { return const_cast<SblBoxes*>(this)->box(index); }

    bool operator==(const SblBoxes&) const = default;
};

} // namespace pvardo::parcels
