#pragma once

#include "documents/PrintState.h"

#include <QString>
#include <QStringList>


class QWidget;

namespace pvardo::documents {

// What the print command of a screen came to.
struct PrintChoice {
    bool chosen = false; // false: the dialog was cancelled
    QString choice;      // the chosen caption, trimmed and upper-cased
    QString customFile;  // the custom letter's file when a custom caption was chosen
};

// The print command of a screen: the screen's own report types, then the
// letters of its "<code>custom.txt", in the print dialog. A custom letter is
// merged at once; the screen acts on any other choice by its first three
// letters.
PrintChoice doprint(int screenCode, const QStringList& builtIn, QWidget* parent = nullptr);

// The run from a custom letter's file (relative to the forms folder) to the
// report window: the letter is addressed to the case's contact and filled by
// the PlugVars of `screenCode` and of the case. A missing file is a message.
bool MergeFormFile(const QString& fileName, int screenCode);

// The same for a template of the screen's own, such as a detail page, with an
// addressee of the screen's choice.
bool mergeAndShow(const QString& path, int screenCode, const Addressee& addressee);

// Shows the report in the buffer: locked in the report window, or, when the
// print dialog allowed editing first, saved as tmp.rtf in the temporary folder
// and opened in the notepad.
void showBuiltReport();

} // namespace pvardo::documents
