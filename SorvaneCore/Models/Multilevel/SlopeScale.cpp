#include "SorvaneCore/Models/Multilevel/SlopeScale.h"

#include <cmath>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"

namespace sorvane {

SlopeUnits SlopeUnits::of(std::span<const double> slope) {
    const double mean = SampleMoments::mean(slope);
    const double deviation =
        std::sqrt(SampleMoments::sumOfSquares(slope, mean) / static_cast<double>(slope.size()));
    return {.mean = mean, .deviation = deviation > 0.0 ? deviation : 1.0};
}

SlopeScale::SlopeScale(const SlopeUnits& units, bool correlated)
    : shift_(correlated ? units.mean / units.deviation : 0.0),
      unit_(units.deviation),
      distance_(units.distance()) {}

std::vector<double> SlopeScale::scaled(std::span<const double> slope) const {
    std::vector<double> result(slope.begin(), slope.end());
    for (double& value : result) {
        value = scaled(value);
    }
    return result;
}

RandomCovariance SlopeScale::scaled(const RandomCovariance& g) const {
    const double slope = unit_ * unit_ * g[3];
    const double cross = unit_ * g[1] + shift_ * slope;
    return {g[0] + 2.0 * shift_ * unit_ * g[1] + shift_ * shift_ * slope, cross, cross, slope};
}

RandomCovariance SlopeScale::unscaled(const SlopeSpread& factor) const {
    const auto& [a, b, c] = factor;
    // (1, -shift; 0, 1 / unit) times the factor.
    const double intercept = a - shift_ * b;
    const double along = -shift_ * c;
    const double cross = (intercept * b + along * c) / unit_;
    return {intercept * intercept + along * along, cross, cross, (b * b + c * c) / (unit_ * unit_)};
}

}  // namespace sorvane
