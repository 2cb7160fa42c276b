// The code pages RTF files name in \ansicpg, \cpg and the font table's
// \fcharset, decoded through the system's ICU converters.
#include "documents/CodePages.h"

#include <unicode/ucnv.h>

#include <array>
#include <map>
#include <mutex>

namespace pvardo::documents {

namespace {

// The ICU converter for a Windows, DOS or Mac code page number.
QByteArray converterName(int codePage)
{
    switch (codePage) {
    case 10000:
        return "macintosh";
    case 10001: // Mac Japanese is Shift-JIS with a few extra symbols
        return "Shift_JIS";
    case 10002:
        return "Big5";
    case 10003:
        return "EUC-KR";
    case 10006:
        return "x-mac-greek";
    case 10007:
    case 10017:
        return "x-mac-cyrillic";
    case 10008:
        return "GBK";
    case 10029:
        return "x-mac-centraleurroman";
    case 10081:
        return "x-mac-turkish";
    default:
        break;
    }
    if (codePage >= 10000 && codePage < 10100) {
        return "macintosh"; // the other Mac scripts: their Latin half at least
    }
    if (codePage == 874 || (codePage >= 1250 && codePage <= 1258) || codePage == 932 || codePage == 936
        || codePage == 949 || codePage == 950) {
        return "windows-" + QByteArray::number(codePage);
    }
    if (codePage >= 437 && codePage <= 869) {
        return "ibm-" + QByteArray::number(codePage); // the DOS code pages of \pc and \pca
    }
    return {};
}

UConverter* openConverter(int codePage)
{
    const QByteArray name = converterName(codePage);
    if (name.isEmpty()) {
        return nullptr;
    }
    UErrorCode error = U_ZERO_ERROR;
    UConverter* converter = ucnv_open(name.constData(), &error);
    if (U_FAILURE(error)) {
        return nullptr;
    }
    return converter;
}

struct UpperHalf {
    bool singleByte = false;
    bool known = false;
    std::array<char16_t, 128> characters{};
};

// Tables are made once per code page and kept: readers on several threads
// may ask at the same time, and the pointers handed out stay valid.
const UpperHalf& upperHalf(int codePage)
{
    static std::mutex mutex;
    static std::map<int, UpperHalf> tables;
    const std::lock_guard<std::mutex> lock(mutex);
    const auto found = tables.find(codePage);
    if (found != tables.end()) {
        return found->second;
    }
    UpperHalf& table = tables[codePage];
    UConverter* converter = openConverter(codePage);
    if (!converter) {
        return table;
    }
    table.known = true;
    if (ucnv_getType(converter) == UCNV_SBCS || ucnv_getMaxCharSize(converter) == 1) {
        table.singleByte = true;
        for (int byte = 0x80; byte <= 0xFF; ++byte) {
            const char in = char(byte);
            UChar out[4] = {};
            UErrorCode error = U_ZERO_ERROR;
            ucnv_reset(converter);
            const int32_t length = ucnv_toUChars(converter, out, 4, &in, 1, &error);
            // ICU marks a byte the code page leaves undefined with SUB or U+FFFD.
            const bool defined = U_SUCCESS(error) && length == 1 && out[0] != 0x1A && out[0] != 0xFFFD;
            table.characters[size_t(byte - 0x80)] = defined ? char16_t(out[0]) : u'\uFFFD';
        }
    }
    ucnv_close(converter);
    return table;
}

} // namespace

const char16_t* codePageUpperHalf(int codePage)
{
    const UpperHalf& table = upperHalf(codePage);
    return table.singleByte ? table.characters.data() : nullptr;
}

bool isKnownCodePage(int codePage)
{
    return upperHalf(codePage).known;
}

bool isDoubleByteCodePage(int codePage)
{
    switch (codePage) {
    case 932:
    case 936:
    case 949:
    case 950:
    case 10001:
    case 10002:
    case 10003:
    case 10008:
        return true;
    default:
        return false;
    }
}

struct DoubleByteDecoder::Converter {
    UConverter* converter = nullptr;
    ~Converter()
    {
        if (converter) {
            ucnv_close(converter);
        }
    }
};

DoubleByteDecoder::DoubleByteDecoder(int codePage) : m_converter(std::make_unique<Converter>())
{
    m_converter->converter = openConverter(codePage);
}

DoubleByteDecoder::~DoubleByteDecoder() = default;

bool DoubleByteDecoder::isValid() const
{
    return m_converter->converter != nullptr;
}

void DoubleByteDecoder::feed(unsigned char byte, QString& out)
{
    if (!isValid()) {
        return;
    }
    const char in = char(byte);
    const char* source = &in;
    UChar buffer[8];
    UChar* target = buffer;
    UErrorCode error = U_ZERO_ERROR;
    // Not flushed: a lead byte stays in the converter until its trail byte comes.
    ucnv_toUnicode(m_converter->converter, &target, buffer + 8, &source, &in + 1, nullptr, false, &error);
    const qsizetype produced = target - buffer;
    for (qsizetype i = 0; i < produced; ++i) {
        out.append(QChar(buffer[i] == 0x1A ? u'\uFFFD' : char16_t(buffer[i])));
    }
    m_pending = produced == 0;
}

void DoubleByteDecoder::reset()
{
    if (isValid()) {
        ucnv_resetToUnicode(m_converter->converter);
    }
    m_pending = false;
}

} // namespace pvardo::documents
