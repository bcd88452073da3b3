#pragma once

#include <array>

#include "SorvaneCore/Models/Multilevel/RandomCovariance.h"
#include "SorvaneCore/Models/Multilevel/SlopeScale.h"

namespace sorvane {

/// How the intercepts and slopes of clusters spread, in units in which no digits are lost where the
/// slope's zero lies far from its values.
struct ClusterSpread {
    /// In units of the scale, relative to the residual deviation or on the scale of a link.
    SlopeSpread factor{};
    SlopeScale scale{};

    /// What each of two independent effects of variance 1 adds where the slope has a value.
    std::array<double, 2> loadings(double value) const {
        return factor.loadings(scale.scaled(value));
    }
    /// What each adds to the slope.
    std::array<double, 2> slopeLoadings() const {
        return {scale.perUnit(factor.along), scale.perUnit(factor.alone)};
    }

    bool operator==(const ClusterSpread&) const = default;
};

}  // namespace sorvane
