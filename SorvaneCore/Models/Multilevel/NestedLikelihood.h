#pragma once

#include <optional>

#include "SorvaneCore/Models/Multilevel/ClusterSums.h"
#include "SorvaneCore/Models/Multilevel/MultilevelProfile.h"

namespace sorvane {

/// The profiled likelihood of clusters in the covariance of their random effects relative to the
/// residual variance.
class NestedLikelihood {
public:
    /// Both must outlive this.
    NestedLikelihood(const ClusterSums& sums,
                     const ScaledDesign& design,
                     MultilevelCriterion criterion)
        : sums_(sums), design_(design), criterion_(criterion) {}

    /// Failure    a V that is not positive definite, and as `profileOf` -> absent
    /// Cost       O(clusters * width^2)
    std::optional<MultilevelProfile> at(const RandomCovariance& g) const;

private:
    const ClusterSums& sums_;
    const ScaledDesign& design_;
    MultilevelCriterion criterion_;
};

}  // namespace sorvane
