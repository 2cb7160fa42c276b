#pragma once

#include <QString>

namespace pvardo::admin {

// The scrambling of the user list: hides names, passwords and levels from a
// casual look at the file, and nothing more. The same routine scrambles and
// unscrambles: each character's code is XORed with a running 16-bit key that
// starts at a fixed value for every field and grows by one per character;
// the low byte of the result is the stored character. So the result is always
// one byte per character (codes 0 to 255), and characters beyond that range
// do not survive the round trip.
QString ScrambleText(const QString& text);

// The key's start value, fixed by the format of the user file.
constexpr int scrambleKeyStart = 91;

} // namespace pvardo::admin
