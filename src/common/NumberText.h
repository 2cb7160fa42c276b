#pragma once

#include <QString>

namespace pvardo {

// Numbers typed into the screens are read by their leading digits: blanks
// anywhere are skipped, then an optional sign, digits, a decimal point and
// more digits, and an exponent; reading stops at the first other character.
// A text without any digits reads as 0. "12 ft" is 12, "1 200" is 1200,
// "abc" is 0.
double LeadingNumber(const QString& text);

// LeadingNumber cut to its whole part (toward zero) and held to the int range.
int LeadingWholeNumber(const QString& text);

} // namespace pvardo
