#include "SorvaneCore/Models/Multilevel/SlopeFactor.h"

#include <algorithm>
#include <cmath>

namespace sorvane::SlopeFactor {

SlopeSpread full(std::span<const double> entries) {
    return {.intercept = entries.front(),
            .along = entries.size() > 2 ? entries[1] : 0.0,
            .alone = entries.back()};
}

RandomCovariance covariance(std::span<const double> entries) {
    return full(entries).covariance();
}

std::vector<double> entries(const RandomCovariance& g, bool correlated) {
    const double a = std::sqrt(std::max(g[0], 0.0));
    if (!correlated) {
        return {a, std::sqrt(std::max(g[3], 0.0))};
    }
    const double b = a > 0.0 ? g[1] / a : 0.0;
    return {a, b, std::sqrt(std::max(g[3] - b * b, 0.0))};
}

bool isSingular(std::span<const double> entries) {
    constexpr double smallest = 1e-4;
    constexpr double rounding = 1e-7;
    const auto& [a, b, c] = full(entries);
    return std::min(std::abs(a), std::abs(c)) < std::max(smallest, rounding * std::abs(b));
}

}  // namespace sorvane::SlopeFactor
