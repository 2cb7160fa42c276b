#include "admin/ScrambleText.h"

#include <cstdint>

namespace pvardo::admin {

QString ScrambleText(const QString& text)
{
    QString result;
    result.reserve(text.size());
    std::uint16_t key = scrambleKeyStart;
    for (const QChar c : text) {
        const auto scrambled = static_cast<std::uint16_t>(c.unicode() ^ key);
        result.append(QChar(static_cast<char16_t>(scrambled & 0xFF)));
        ++key;
    }
    return result;
}

} // namespace pvardo::admin
