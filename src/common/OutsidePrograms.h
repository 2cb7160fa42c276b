#pragma once

#include <QString>

namespace pvardo {

// Starting other programs: the browser, the program that opens a kind of file,
// links of records.

// Finds the program the desktop opens web pages with and keeps it in the
// session: DefaultBrowser is its path followed by one blank, and
// DefaultBrowserFound says whether there is one. The desktop's choice is asked
// of xdg-mime, else read from the mimeapps.list files, else the system's
// x-www-browser is taken. Gives DefaultBrowser.
QString FindDefaultBrowser();

// The program the desktop opens a file of this kind with (by its name and
// content), as a full path; empty when none is registered or installed.
QString programForFile(const QString& path);

// The same for a MIME type ("text/html").
QString programForMimeType(const QString& mimeType);

// Opens a link (a web address, a mail address or a file) with the desktop's
// program for it, with the hourglass meanwhile. When that fails says "Error
// Opening Link to " and the link, and gives false.
bool OpenLink(const QString& link);

// Opens a target with the program it needs: a web address in the default
// browser, a program on its own, any other file in the desktop's program for
// it. The target is a record's link, so a target that cannot be opened is
// the end of the session, as the office's program always had it: it says why
// and ends the program (through EndProgram).
void OpenInBrowser(const QString& target);

namespace detail {
// The program named by the Exec line of a desktop entry file, as a full path;
// empty when the file has none or the program is not installed.
QString programOfDesktopEntry(const QString& desktopFilePath);
// The desktop entry id ("firefox-esr.desktop") the desktop's files choose for a
// MIME type, read from the mimeapps.list and defaults.list files.
QString defaultDesktopEntryFromLists(const QString& mimeType);
} // namespace detail

} // namespace pvardo
