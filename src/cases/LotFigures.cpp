#include "cases/LotFigures.h"

#include "common/NumberText.h"

#include <cmath>

namespace pvardo::cases {

namespace {

constexpr double SquareMetresPerSquareFoot = 0.09290304;
constexpr double SquareMetresPerAcre = 4046.8564224;

float single(const QString& text)
{
    return static_cast<float>(LeadingNumber(text));
}

} // namespace

QString LotFigures::twoDecimals(double value, bool digitBeforePoint)
{
    QString text = QString::number(value, 'f', 2);
    if (!digitBeforePoint) {
        if (text.startsWith(QLatin1String("0."))) {
            text.remove(0, 1);
        } else if (text.startsWith(QLatin1String("-0."))) {
            text.remove(1, 1);
        }
    }
    return text;
}

std::optional<LotFigures::Results> LotFigures::calculate(const Inputs& inputs)
{
    const float width = single(inputs.width);
    const float depth = single(inputs.depth);
    const float area = width * depth;
    if (area == 0.0f) {
        return std::nullopt;
    }
    const auto squareMetres = static_cast<float>(area * SquareMetresPerSquareFoot);
    const auto acres = static_cast<float>(squareMetres / SquareMetresPerAcre);
    const float footprint = single(inputs.footprint);
    const float improvement = single(inputs.improvement);
    const float coverage = footprint / area * 100.0f;
    const float improved = (footprint + improvement) / area * 100.0f;

    Results results;
    results.area = twoDecimals(area, false);
    results.acres = twoDecimals(acres, true);
    results.coverage = twoDecimals(coverage, true);
    results.improvedCoverage = twoDecimals(improved, true);
    return results;
}

} // namespace pvardo::cases
