#include "SorvaneCore/Analyses/Histogram.h"

#include <algorithm>
#include <cmath>

namespace sorvane::Histogram {

namespace {

/// A Likert range or a small count: wider ranges are binned.
constexpr double longestWholeRange = 20.0;

struct CountedValue {
    double value = 0.0;
    std::uint64_t count = 0;
};

/// 1, 2 or 5 times a power of ten, not below the width.
double roundedWidth(double width) {
    const double power = std::pow(10.0, std::floor(std::log10(width)));
    for (const double step : {1.0, 2.0, 5.0}) {
        if (step * power >= width) {
            return step * power;
        }
    }
    return 10.0 * power;
}

struct Edges {
    double first = 0.0;
    double width = 1.0;
    std::size_t binCount = 1;
};

/// How many units a value holds: a whole number where rounding alone keeps the quotient from it, so
/// that a value on an edge, such as 2.3 in bins of 0.1, is drawn in the bin that it begins.
double unitsIn(double value, double unit) {
    constexpr double rounding = 1e-9;
    const double quotient = value / unit;
    const double nearest = std::round(quotient);
    return std::abs(quotient - nearest) <= rounding ? nearest : quotient;
}

Edges wholeNumberEdges(double minimum, double maximum) {
    return {.first = minimum - 0.5,
            .width = 1.0,
            .binCount = static_cast<std::size_t>(maximum - minimum) + 1};
}

Edges sturgesEdges(double minimum, double maximum, std::uint64_t n) {
    const double binCount = std::ceil(std::log2(static_cast<double>(n))) + 1.0;
    const double width = roundedWidth((maximum - minimum) / binCount);
    const double first = std::floor(unitsIn(minimum, width)) * width;
    return {.first = first,
            .width = width,
            .binCount = static_cast<std::size_t>(
                std::max(std::ceil(unitsIn(maximum - first, width)), 1.0))};
}

/// Absent where the values lie so far apart, or so close together, that no width can part them.
std::optional<Edges> chooseEdges(std::span<const CountedValue> values) {
    const auto [lowest, highest] = std::minmax_element(
        values.begin(), values.end(),
        [](const CountedValue& a, const CountedValue& b) { return a.value < b.value; });
    const double minimum = lowest->value;
    const double maximum = highest->value;
    const bool whole = std::all_of(values.begin(), values.end(), [](const CountedValue& each) {
        return each.value == std::round(each.value);
    });
    if (minimum == maximum || (whole && maximum - minimum <= longestWholeRange)) {
        return wholeNumberEdges(minimum, maximum);
    }
    std::uint64_t n = 0;
    for (const CountedValue& each : values) {
        n += each.count;
    }
    const bool hasWidth = std::isnormal((maximum - minimum) / static_cast<double>(n));
    return hasWidth ? std::optional(sturgesEdges(minimum, maximum, n)) : std::nullopt;
}

std::optional<HistogramBins> binsOf(std::span<const CountedValue> values) {
    if (values.empty()) {
        return std::nullopt;
    }
    const std::optional<Edges> chosen = chooseEdges(values);
    if (!chosen) {
        return std::nullopt;
    }
    const Edges& edges = *chosen;
    HistogramBins result;
    result.counts.assign(edges.binCount, 0);
    for (std::size_t i = 0; i <= edges.binCount; ++i) {
        result.edges.push_back(edges.first + static_cast<double>(i) * edges.width);
    }
    const auto last = static_cast<double>(edges.binCount - 1);
    for (const CountedValue& each : values) {
        const double bin = std::floor(unitsIn(each.value - edges.first, edges.width));
        result.counts[static_cast<std::size_t>(std::clamp(bin, 0.0, last))] +=
            static_cast<std::int64_t>(each.count);
    }
    return result;
}

}  // namespace

std::optional<HistogramBins> bins(std::span<const double> values) {
    std::vector<CountedValue> counted;
    for (const double value : values) {
        if (std::isfinite(value)) {
            counted.push_back({.value = value, .count = 1});
        }
    }
    return binsOf(counted);
}

std::optional<HistogramBins> bins(const NumericColumn& column) {
    const std::vector<std::uint64_t> counts = column.levelCounts();
    std::vector<CountedValue> counted;
    for (std::size_t code = 0; code < counts.size(); ++code) {
        const std::optional<double>& level = column.levels()[code];
        if (level && std::isfinite(*level) && counts[code] > 0) {
            counted.push_back({.value = *level, .count = counts[code]});
        }
    }
    return binsOf(counted);
}

}  // namespace sorvane::Histogram
