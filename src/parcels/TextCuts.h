#pragma once

#include <QString>

namespace pvardo::parcels {

// The parcel files trim blanks only: a tab or other mark inside a fixed column
// is part of the value, as the roll and the office's older tools read it.
inline QString trimBlanks(const QString& text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && text.at(begin) == QLatin1Char(' ')) {
        ++begin;
    }
    while (end > begin && text.at(end - 1) == QLatin1Char(' ')) {
        --end;
    }
    return text.mid(begin, end - begin);
}

// The first `longest` characters of a text: values longer than their column
// are cut, never refused.
inline QString cutText(const QString& text, int longest)
{
    return longest > 0 && text.size() > longest ? text.left(longest) : text;
}

// A text of 1-based position and length, as the fixed-column files number
// their columns; places past the end read as nothing.
inline QString midText(const QString& text, qsizetype position, qsizetype length = -1)
{
    if (position < 1 || position > text.size()) {
        return QString();
    }
    return text.mid(position - 1, length);
}

} // namespace pvardo::parcels
