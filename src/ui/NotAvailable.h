#pragma once

#include <QString>

namespace pvardo::ui {

// What a command whose screen is not in the program yet says when pressed:
// one line naming it, "Fees is not available in this version.", in an
// information box titled with the name. The command stays on the screen
// where the office expects it; when its screen arrives, the command opens it
// instead and this line goes.
void showNotAvailable(const QString& what);

// The line itself, for a tool tip or a test.
QString notAvailableText(const QString& what);

} // namespace pvardo::ui
