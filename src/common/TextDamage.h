#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace pvardo {

// True when bytes hold what no text file of the office holds: a NUL or
// another control character than tab, line feed, carriage return and form
// feed (an end-of-file mark of old editors as the last byte aside). That is a
// block zeroed or overwritten by a failing disk, or a file that is not text.
bool looksDamagedText(const QByteArray& bytes);

// The lines of a settings or list file, read as readTextLines reads them, for
// a reader that must say when the file is damaged: a damaged file gives
// nullopt with *damaged set; otherwise *damaged is cleared.
std::optional<QStringList> readCheckedTextLines(const QString& path, bool* damaged);

// For the list files the screens read (board members, the lists of the case
// screen, the map providers): a damaged file is said once in the run, naming
// it, what the screen uses meanwhile (`instead`) and what to do, and gives
// nullopt, so that the reader falls back as for a missing file.
std::optional<QStringList> readListLines(const QString& path, const QString& instead);

} // namespace pvardo
