#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace pvardo::documents {

// A form definition file lists letters or blank forms of a screen: a count on
// the first line (read by its leading digits), then a caption line and a file
// name line per entry, every line trimmed. "<code>custom.txt" offers letters
// in the print dialog; "sforms.txt", "aforms.txt" and "mforms.txt" the blank
// forms of the review, agency and map screens.
struct FormEntry {
    QString caption;
    QString fileName; // relative to the forms folder
};

// The most entries a definition file gives.
constexpr int CustomFormLimit = 20;
// The most captions the print dialog offers, the screen's own first.
constexpr int ReportListLimit = 15;

struct FormDefinitions {
    bool found = false; // the file was there and readable
    QList<FormEntry> entries;
};

// Reads a definition file: at most the count of its first line, at most
// `limit`, and no more than its lines hold.
FormDefinitions readFormDefinitions(const QString& path, int limit = CustomFormLimit);

// The name of a screen's letter list: "3custom.txt" for screen code 3.
QString customFileName(int screenCode);

// The captions of the print dialog: the screen's own, then the custom
// letters' captions, at most ReportListLimit.
QStringList makeReportList(const QStringList& builtIn, const QList<FormEntry>& custom);

// The file of the custom letter whose caption, upper-cased, is `reportChoice`;
// of two equal captions the later wins. Empty when none is.
QString customFormFor(const QList<FormEntry>& custom, const QString& reportChoice);

// The first three letters of a choice, which the screens act on.
inline QString choiceCode(const QString& reportChoice) { return reportChoice.left(3); }

} // namespace pvardo::documents
