#pragma once

#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/ClusterSums.h"

namespace sorvane {

/// Where the values of a slope lie.
struct SlopeUnits {
    double mean = 0.0;
    double deviation = 1.0;

    static SlopeUnits of(std::span<const double> slope);
};

/// A slope in units of its own, about its mean where it correlates with the intercept, so that no
/// correlation comes from where its zero lies; without correlation the zero has a meaning and stays.
class SlopeScale {
public:
    SlopeScale(const SlopeUnits& units, bool correlated);

    /// The slope in these units.
    std::vector<double> scaled(std::span<const double> slope) const;
    /// The covariance that one of the slope as it is becomes.
    RandomCovariance scaled(const RandomCovariance& g) const;
    /// Of the slope as it is, from the factor of a covariance in these units (`SlopeFactor`).
    RandomCovariance unscaled(std::span<const double> factor) const;

private:
    /// In units.
    double shift_;
    double unit_;
};

}  // namespace sorvane
