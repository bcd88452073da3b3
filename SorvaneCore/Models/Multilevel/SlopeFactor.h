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

/// Covariances of an intercept and a slope by the entries of their factor (a, 0; b, c), of slopes
/// in their own units: no correlation comes from where the slope's zero lies, and an entry of 0 is
/// no boundary.
class SlopeFactor {
public:
    SlopeFactor(const SlopeUnits& units, bool correlated);

    /// The slope in these units.
    std::vector<double> scaled(std::span<const double> slope) const;
    /// Of the slope as it is, from a, b and c, or a and c without correlation.
    RandomCovariance covariance(std::span<const double> entries) const;
    std::vector<double> entries(const RandomCovariance& g) const;

private:
    /// In units; without correlation the slope's zero has a meaning and must stay.
    double shift_;
    double unit_;
    bool correlated_;
};

}  // namespace sorvane
