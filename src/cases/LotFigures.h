#pragma once

#include <QString>
#include <optional>

namespace pvardo::cases {

// The lot calculator of the "Project" tab: lot area, acres and the two
// coverages from the lot's width and depth and the areas of its buildings and
// improvements. Figures are worked in single precision, as the office's
// figures always were, so the two decimals shown match the old records.
class LotFigures
{
public:
    // The four inputs, as typed; each is read by its leading number.
    struct Inputs
    {
        QString width;
        QString depth;
        QString footprint; // buildings and accessory structures
        QString improvement; // all man-made improvements
    };

    // The four results, formatted for their inputs.
    struct Results
    {
        QString area; // "#####.#0": .50 for half a square foot
        QString acres; // "####0.#0"
        QString coverage; // "#0.#0"
        QString improvedCoverage; // "#0.#0", the footprint included
    };

    // Nothing when the lot area is zero.
    static std::optional<Results> calculate(const Inputs& inputs);

    static QString zeroAreaMessage() { return QStringLiteral("Lot Area cannot be zero."); }

    // A number with two decimals; with `digitBeforePoint` false a value below
    // one shows no digit before the point (.50).
    static QString twoDecimals(double value, bool digitBeforePoint);
};

} // namespace pvardo::cases
