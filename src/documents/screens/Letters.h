#pragma once

#include "documents/Merge.h"
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
// `preselected`, when given, is the caption the dialog opens on.
PrintChoice doprint(int screenCode, const QStringList& builtIn, QWidget* parent = nullptr,
                    const QString& preselected = QString());

// The run from a custom letter's file (relative to the forms folder) to the
// report window: the letter is addressed to the case's contact and filled by
// the PlugVars of `screenCode` and of the case. A missing file is a message,
// and so is a letter to a case without a contact. `caption` names the report
// (with the current case) for the printer and a PDF file; by default the
// file's name.
bool MergeFormFile(const QString& fileName, int screenCode, const QString& caption = QString());

// A template of the screen's own, such as a detail page or a billing letter,
// with an addressee of the screen's choice (`party` names the addressee's
// role), printed at once; with "Allow view /edit before printing" ticked it is
// opened for editing instead.
bool mergeAndPrint(const QString& path, int screenCode, const Addressee& addressee, const QString& party,
                   const QString& caption, EmptyLines lines = EmptyLines::Keep);

// The title of a report of the current case: the caption and the case number.
QString caseReportTitle(const QString& caption);

// Shows the report in the buffer: locked in the report window, or, when the
// print dialog allowed editing first, saved as tmp.rtf in the temporary folder
// and opened in the notepad.
void showBuiltReport();

} // namespace pvardo::documents
