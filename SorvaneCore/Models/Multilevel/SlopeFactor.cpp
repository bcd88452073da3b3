#include "SorvaneCore/Models/Multilevel/SlopeFactor.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"

namespace sorvane {

SlopeUnits SlopeUnits::of(std::span<const double> slope) {
    const double mean = SampleMoments::mean(slope);
    const double deviation =
        std::sqrt(SampleMoments::sumOfSquares(slope, mean) / static_cast<double>(slope.size()));
    return {.mean = mean, .deviation = deviation > 0.0 ? deviation : 1.0};
}

SlopeFactor::SlopeFactor(const SlopeUnits& units, bool correlated)
    : shift_(correlated ? units.mean / units.deviation : 0.0),
      unit_(units.deviation),
      correlated_(correlated) {}

std::vector<double> SlopeFactor::scaled(std::span<const double> slope) const {
    std::vector<double> result(slope.begin(), slope.end());
    for (double& value : result) {
        value = (value - shift_ * unit_) / unit_;
    }
    return result;
}

RandomCovariance SlopeFactor::covariance(std::span<const double> entries) const {
    const double b = correlated_ ? entries[1] : 0.0;
    const double c = entries.back();
    // (1, -shift; 0, 1 / unit) times the factor.
    const std::array<double, 4> l = {entries[0] - shift_ * b, -shift_ * c, b / unit_, c / unit_};
    const double cross = l[0] * l[2] + l[1] * l[3];
    return {l[0] * l[0] + l[1] * l[1], cross, cross, l[2] * l[2] + l[3] * l[3]};
}

std::vector<double> SlopeFactor::entries(const RandomCovariance& g) const {
    const double slope = unit_ * unit_ * g[3];
    const double cross = unit_ * g[1] + shift_ * slope;
    const double intercept = g[0] + 2.0 * shift_ * unit_ * g[1] + shift_ * shift_ * slope;
    const double a = std::sqrt(std::max(intercept, 0.0));
    if (!correlated_) {
        return {a, std::sqrt(std::max(slope, 0.0))};
    }
    const double b = a > 0.0 ? cross / a : 0.0;
    return {a, b, std::sqrt(std::max(slope - b * b, 0.0))};
}

}  // namespace sorvane
