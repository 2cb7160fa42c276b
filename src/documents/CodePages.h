#pragma once

namespace pvardo::documents {

// The characters of bytes 0x80 to 0xFF in a single-byte Windows code page
// (874, 1250 to 1258), or nullptr for a code page without a table here.
// Bytes below 0x80 are ASCII in all of them.
const char16_t* codePageUpperHalf(int codePage);

} // namespace pvardo::documents
