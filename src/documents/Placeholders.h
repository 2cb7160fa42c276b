#pragma once

#include <QString>
#include <QTextCursor>

#include <functional>

class QTextDocument;

namespace pvardo::documents {

// Placeholders are plain runs of text in a letter, found in the text as it is
// shown (not in the RTF source), so one may be spread over font changes: in a
// letter head "%" may be bold Arial and "nm" plain Times and still be one
// placeholder.

// Finds `token` from `from` on: case ignored, not whole words (so "%ad" also
// finds the start of "%ADDRESS"). Gives a cursor that selects the match, or a
// null cursor.
QTextCursor findPlaceholder(const QTextDocument& document, const QString& token, int from = 0);

// Replaces every match of `token` by the text `valueFor` gives for it (the
// matches are numbered from 0), as plain text that takes the format of the
// match's first character. After each replacement the search goes on one
// position behind the match's start; when the new text itself holds the
// token, behind the new text instead, so a value can never make the search
// run for ever. Returns the number of replacements.
int replaceMatches(QTextDocument& document, const QString& token,
                   const std::function<QString(int match)>& valueFor);

// The merge's replacement of one placeholder by one value. Mode 1 puts the
// value; mode 2 puts it as a long date ("mmmm dd, yyyy"). By the second
// character of the token the value is first reformatted: "$" money, "@" legal
// date (today when the value is no date), "&" day count as a date, "~" clock
// time. Each match reformats the value left by the match before, as the
// office's letters always did, so "%@" and "%&" belong once in a template.
int ReplaceToken(QTextDocument& buffer, const QString& token, const QString& value, int mode = 1);

// ReplaceToken without the reformatting by the second character.
int ReplaceLiteral(QTextDocument& buffer, const QString& token, const QString& value, int mode = 1);

} // namespace pvardo::documents
