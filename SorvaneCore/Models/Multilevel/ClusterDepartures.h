#pragma once

#include <array>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/ClusterSpread.h"
#include "SorvaneCore/Models/Multilevel/MultilevelResult.h"
#include "SorvaneCore/Models/Multilevel/MultilevelRows.h"
#include "SorvaneCore/Models/Multilevel/SmallFactor.h"

namespace sorvane {

/// Two independent effects of variance 1, which make a cluster's intercept and slope, as its rows
/// leave them.
struct ClusterPosterior {
    std::array<double, 2> mean{};
    /// Of the inverse of their covariance.
    SmallFactor precision{};
};

/// What sets the clusters of a model apart, in order of first appearance.
namespace ClusterDepartures {

/// The clusters alone.
std::vector<MultilevelClusterEffect> named(const MultilevelRows& rows);

/// Input      one posterior per cluster; the residual deviation, or 1 on the scale of a link
std::vector<MultilevelClusterEffect> of(const MultilevelRows& rows,
                                        const ClusterSpread& spread,
                                        std::span<const ClusterPosterior> posteriors,
                                        double deviation);

}  // namespace ClusterDepartures

}  // namespace sorvane
