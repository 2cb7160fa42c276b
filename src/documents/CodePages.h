#pragma once

#include <QString>

#include <memory>

namespace pvardo::documents {

// The characters of bytes 0x80 to 0xFF in a single-byte code page (Windows
// 874 and 1250 to 1258, the DOS code pages, the Mac ones), as the system's
// ICU converters have them, or nullptr for a code page that is not single-byte
// or that ICU does not know. Bytes below 0x80 are ASCII in all of them; bytes
// a code page leaves undefined are U+FFFD.
const char16_t* codePageUpperHalf(int codePage);

// Whether ICU can decode the code page (single- or double-byte).
bool isKnownCodePage(int codePage);

// The double-byte code pages of East Asia: Windows 932 (Japanese), 936
// (simplified Chinese), 949 (Korean), 950 (traditional Chinese) and the Mac
// ones that follow the same encodings.
bool isDoubleByteCodePage(int codePage);

// Decodes a double-byte code page a byte at a time, as RTF hands the bytes
// over: a lead byte waits for its trail byte, which may come as \'hh or as
// plain text.
class DoubleByteDecoder
{
public:
    explicit DoubleByteDecoder(int codePage);
    ~DoubleByteDecoder();
    DoubleByteDecoder(const DoubleByteDecoder&) = delete;
    DoubleByteDecoder& operator=(const DoubleByteDecoder&) = delete;

    bool isValid() const;
    // Appends what the byte completes to `out`: nothing after a lead byte,
    // one character after a single byte or a trail byte, U+FFFD for a pair the
    // code page does not have.
    void feed(unsigned char byte, QString& out);
    // Whether a lead byte waits for its trail byte.
    bool pending() const { return m_pending; }
    // Drops a lead byte that waits.
    void reset();

private:
    struct Converter;
    std::unique_ptr<Converter> m_converter;
    bool m_pending = false;
};

} // namespace pvardo::documents
