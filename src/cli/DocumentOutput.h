#pragma once

#include "cli/AdminCommand.h"
#include "documents/PrintRichText.h"

#include <QString>

class QTextDocument;

namespace pvardo::cli {

// Prints a laid-out document for a command of the admin tool: to the PDF file
// `pdf` when one is named (written beside its name and put in place whole),
// otherwise on the default printer, or, without one, to a PDF in the user's
// documents folder under the title, never over an earlier file. Says what happened on the context's
// streams, each message beginning with `command`; gives ExitCode::Ok or
// ExitCode::Failed.
int printDocument(CommandContext& context, const char* command, QTextDocument& document,
    const documents::PrintSettings& settings, const QString& title, const QString& pdf);

// The same for any printing job, such as a run of labels.
int printPages(CommandContext& context, const char* command, const documents::PageJob& job, const QString& title,
    const QString& pdf);

} // namespace pvardo::cli
