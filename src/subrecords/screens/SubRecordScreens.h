#pragma once

#include <QString>

namespace pvardo::cases {
class ZPermits;
}

namespace pvardo::subrecords {

class SubRecordFrm;

// The case screen's opener of its sub-record screens and of the receipt:
// "feesfrm" creates or shows the fees screen of the case shown, "receipt"
// opens the receipt of the case. A screen not yet in the program says so.
void openSubRecordScreen(const QString& screenName, cases::ZPermits& caseScreen);

// The screen of that name when it is open, or nullptr.
SubRecordFrm* subRecordScreen(const QString& screenName);

// Closes and deletes every sub-record screen (the case screen going away).
void closeSubRecordScreens();

} // namespace pvardo::subrecords
