#pragma once

#include <array>

namespace sorvane {

/// A covariance of intercept and slope, row-major; all but the first entry 0 without a slope.
using RandomCovariance = std::array<double, 4>;

/// The factor (intercept, 0; along, alone) of the covariance of an intercept and a slope: part of
/// the slope goes along with the intercept.
struct SlopeSpread {
    double intercept = 1.0;
    double along = 0.0;
    double alone = 0.0;

    RandomCovariance covariance() const {
        const double cross = intercept * along;
        return {intercept * intercept, cross, cross, along * along + alone * alone};
    }
    /// What each of two independent effects of variance 1 adds to a predictor.
    std::array<double, 2> loadings(double slope) const {
        return {intercept + slope * along, slope * alone};
    }

    bool operator==(const SlopeSpread&) const = default;
};

}  // namespace sorvane
