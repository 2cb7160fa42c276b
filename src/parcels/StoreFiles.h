#pragma once

#include <QString>

namespace pvardo::parcels {

// Copies a file over another through a temporary file beside the target, so
// the target is either the old or the new file, never a part of one. Gives
// false, with a reason, when that failed; the target is then untouched.
bool copyFileReplacing(const QString& source, const QString& target, QString* error = nullptr);

} // namespace pvardo::parcels
