#pragma once

#include <QtGlobal>

namespace pvardo::documents {

// Lengths inside a QTextDocument (indents, widths, picture sizes) are in the
// screen's pixels; Qt scales them to the printer's resolution when a document
// is laid out on a printer. RTF measures in twips, 1440 to the inch.
qreal twipsToUnits(qreal twips);
qreal unitsToTwips(qreal units);

} // namespace pvardo::documents
