#include "SorvaneCore/Analyses/StemAndLeaf.h"

#include <algorithm>
#include <cmath>

namespace sorvane::StemAndLeaf {

namespace {

constexpr double mostStems = 16.0;

double stemUnitFor(double minimum, double maximum) {
    const double range = maximum - minimum;
    const double largest = std::max(std::abs(minimum), std::abs(maximum));
    double unit = std::pow(10.0, std::floor(std::log10(largest)));
    while (range / unit > mostStems) {
        unit *= 10.0;
    }
    return unit;
}

/// The digit after the stem; 0 where the unit is too small to divide by.
std::int64_t leafOf(double value, double leafUnit) {
    const double digits = std::trunc(std::abs(value) / leafUnit);
    return std::isfinite(digits) ? static_cast<std::int64_t>(std::fmod(digits, 10.0)) : 0;
}

}  // namespace

std::optional<StemAndLeafPlot> plot(std::span<const double> values) {
    std::vector<double> finite;
    std::ranges::copy_if(values, std::back_inserter(finite),
                         [](double value) { return std::isfinite(value); });
    if (finite.size() < 2) {
        return std::nullopt;
    }
    const auto [minimum, maximum] = std::ranges::minmax(finite);
    const double range = maximum - minimum;
    const double stemUnit = stemUnitFor(minimum, maximum);
    if (!(range > 0.0) || !std::isfinite(range) || !(stemUnit > 0.0)) {
        return std::nullopt;
    }
    StemAndLeafPlot plot{.stemUnit = stemUnit,
                         .leafUnit = stemUnit / 10.0,
                         .n = static_cast<std::int64_t>(finite.size())};
    const auto firstStem = static_cast<std::int64_t>(std::floor(minimum / stemUnit));
    const auto lastStem = static_cast<std::int64_t>(std::floor(maximum / stemUnit));
    for (std::int64_t stem = firstStem; stem <= lastStem; ++stem) {
        plot.rows.push_back({.stem = stem});
    }
    for (const double value : finite) {
        const auto stem = static_cast<std::int64_t>(std::trunc(value / stemUnit));
        if (stem <= lastStem) {
            plot.rows[static_cast<std::size_t>(stem - firstStem)].leaves.push_back(
                leafOf(value, plot.leafUnit));
        }
    }
    for (StemAndLeafRow& row : plot.rows) {
        std::ranges::sort(row.leaves);
    }
    return plot;
}

std::optional<StemAndLeafPlot> plot(std::span<const std::optional<double>> values) {
    std::vector<double> present;
    for (const std::optional<double>& value : values) {
        if (value) {
            present.push_back(*value);
        }
    }
    return plot(present);
}

std::optional<StemAndLeafPlot> plot(const NumericColumn& values) {
    return plot(values.present());
}

}  // namespace sorvane::StemAndLeaf
