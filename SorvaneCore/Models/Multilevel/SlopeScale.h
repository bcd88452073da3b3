#pragma once

#include <cmath>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/RandomCovariance.h"

namespace sorvane {

/// Where the values of a slope lie.
struct SlopeUnits {
    double mean = 0.0;
    double deviation = 1.0;

    static SlopeUnits of(std::span<const double> slope);

    /// How far zero lies from the mean.
    double distance() const { return std::abs(mean) / deviation; }
};

/// A slope in units of its own, about its mean where it correlates with the intercept, so that no
/// correlation comes from where its zero lies; without correlation the zero has a meaning and stays.
class SlopeScale {
public:
    /// The slope as it is.
    SlopeScale() = default;
    SlopeScale(const SlopeUnits& units, bool correlated);

    /// A value of the slope, or all, in these units.
    double scaled(double value) const { return (value - shift_ * unit_) / unit_; }
    std::vector<double> scaled(std::span<const double> slope) const;
    /// The covariance that one of the slope as it is becomes.
    RandomCovariance scaled(const RandomCovariance& g) const;
    /// Of the slope as it is, from the factor of a covariance in these units.
    RandomCovariance unscaled(const SlopeSpread& factor) const;
    /// How far zero lies from the mean, in these units.
    double distance() const { return distance_; }
    /// An effect for a step of one, from that for a unit.
    double perUnit(double effect) const { return effect / unit_; }

    bool operator==(const SlopeScale&) const = default;

private:
    /// In units.
    double shift_ = 0.0;
    double unit_ = 1.0;
    double distance_ = 0.0;
};

}  // namespace sorvane
