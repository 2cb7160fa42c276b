#pragma once

#include <QDate>
#include <QString>

namespace pvardo::documents {

// "mmmm dd, yyyy", as "March 03, 2024": the form a placeholder of mode 2
// takes. A value that is no date comes back as it stands.
QString formatLongDate(const QString& value);
QString formatLongDate(const QDate& date);

// A money value for "$##,###,###.#0": the number a text holds, with "$" and
// thousands commas allowed, so that an already formatted value reads again the
// same. False when the text is no number (an empty value among them).
bool readMoneyValue(const QString& value, double* number);

} // namespace pvardo::documents
