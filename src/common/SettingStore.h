#pragma once

#include <QString>

namespace pvardo {

// The few named values kept outside the settings files: EP, the folder of the
// sibling inspection program; AE, its program file; VERSION, the installed
// version. Each name is one file in settings/ of the program folder (the
// session's ProgramFolder) and its value the file's first line.

// The value of a name. A name without its file gets the file, holding the
// default, and gives the default; when the settings folder cannot be written
// the default is given all the same. `section` names the group of the value
// and does not change where it is kept.
QString SettingGet(const QString& section, const QString& name, const QString& defaultValue);

// Replaces the value of a name. An empty value is kept as an empty first line.
// Gives false, with a reason, when the file could not be written; the old
// value then stands.
bool SettingPut(const QString& name, const QString& value, QString* error = nullptr);

// The file that keeps a name.
QString settingFile(const QString& name);

// Reads EP into the session's SiblingFolder and AE into SiblingProgram, both
// with empty defaults. True when SiblingFolder is not empty: the sibling
// program counts as installed, whatever the folder holds.
bool ReadSiblingInfo();

} // namespace pvardo
