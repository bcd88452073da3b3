#include "SorvaneMac/Shell/ChartRange.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace sorvane::ChartRange {

namespace {

/// The difference of two such values, and its share of a picture, stay finite.
constexpr double largest = 1e290;
/// A span below this part of its ends cannot be told from rounding.
constexpr double smallestSpan = 1e-9;

}  // namespace

bool hasPlace(double value) {
    return std::isfinite(value) && std::abs(value) < largest;
}

ValueRange nothing() {
    return {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
}

void include(ValueRange& range, double value) {
    if (hasPlace(value)) {
        range.minimum = std::min(range.minimum, value);
        range.maximum = std::max(range.maximum, value);
    }
}

void include(ValueRange& range, const std::vector<double>& values) {
    for (const double value : values) {
        include(range, value);
    }
}

ValueRange drawable(ValueRange range) {
    if (!hasPlace(range.minimum) || !hasPlace(range.maximum)) {
        return {};
    }
    const double size = std::max(std::abs(range.minimum), std::abs(range.maximum));
    if (range.maximum - range.minimum > size * smallestSpan) {
        return range;
    }
    const double around = size < 1e3 ? 1.0 : size * 1e-3;
    return {range.minimum - around, range.maximum + around};
}

ValueRange padded(ValueRange range) {
    range = drawable(range);
    const double air = (range.maximum - range.minimum) * 0.04;
    const bool startsAtZero = range.minimum >= 0.0 && range.minimum < air;
    return {startsAtZero ? 0.0 : range.minimum - air, range.maximum + air};
}

}  // namespace sorvane::ChartRange
