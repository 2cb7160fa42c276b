#pragma once

#include <QList>
#include <QPair>
#include <QString>

namespace pvardo::schedule {

// The placeholders a letter or report merged from the dashboard gets beyond
// the common ones: "%mm", the full name of the month in view, and "%yy", its
// year. Given in the order the merge replaces them; the merge runs each
// through its ReplaceToken. Month names are the session's, falling back to
// the English ones before the session has them.
QList<QPair<QString, QString>> schedulerPlugValues(int year, int month);

} // namespace pvardo::schedule
