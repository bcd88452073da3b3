#pragma once

#include <optional>
#include <vector>

#include "SorvaneCore/Models/Multilevel/ClusterSums.h"
#include "SorvaneCore/Models/Multilevel/MultilevelProfile.h"

/// Variances and degrees of freedom of fixed effects that allow for the variances being estimated.
namespace sorvane::KenwardRoger {

struct Adjustment {
    /// Of the fixed effects, at least 0.
    std::vector<double> variances{};
    std::vector<double> degrees{};
};

/// The adjustment at a fit of nested clusters.
///
/// Input      the fitted relative covariance; its covariance entry counts as a parameter where
///            `correlated`
/// Method     expected information in the covariance entries and the residual variance; its inverse
///            with 1e-10 on the diagonal of unit scale where it has none
/// Failure    no inverse either way -> absent
/// Accuracy   1e-8 of the published form      Cost O(clusters p^2)
/// Reference  Kenward and Roger (1997); Halekoh and Hojsgaard (2014), pbkrtest, section 3
std::optional<Adjustment> adjust(const ClusterSums& sums,
                                 const ScaledDesign& design,
                                 const MultilevelProfile& profile,
                                 const RandomCovariance& g,
                                 bool correlated);

}  // namespace sorvane::KenwardRoger
