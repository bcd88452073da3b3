#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/ClusterSums.h"
#include "SorvaneCore/Models/Multilevel/MultilevelProfile.h"
#include "SorvaneCore/Models/Multilevel/SlopeScale.h"

/// The searches for the relative variances of a linear mixed model, none of which needs a start.
namespace sorvane::VarianceSearch {

/// Relative variances with their profile; absent where no setting gave one.
struct Found {
    RandomCovariance g{};
    std::optional<MultilevelProfile> profile{};
    std::int64_t evaluations = 0;
};

using NestedProfile = std::function<std::optional<MultilevelProfile>(const RandomCovariance& g)>;
/// Found on so many threads; several may be asked for at once.
using CrossedProfile = std::function<std::optional<MultilevelProfile>(
    double lambdaA, double lambdaB, unsigned threads)>;

/// Of an intercept: 0, the powers of ten from 1e-8 to 1e6 and a start of one's own, then Brent's
/// search for the logarithm within 4 of the best.
Found intercept(const NestedProfile& profile, std::optional<double> start);

/// Of an intercept and a slope, whose profile is of the slope in its own units, as is what is found:
/// for the slope as it is, 0 and a grid of standard deviations from 0.1 to 10, with correlations
/// about 0 where they correlate, then a simplex from the best, in the logarithms. As that depends on
/// the slope's unit and cannot leave a boundary, a second look follows: from there and from the best
/// of a grid, by the factor of the covariance in units; and, of independent effects at a zero far
/// from all values, from intercepts that vary as much as the slopes do on the way there, as the
/// likelihood has two maxima then. At a bound the variance is 0, or the correlation 1.
Found interceptAndSlope(const NestedProfile& profile, bool correlated, const SlopeScale& scale);

/// Of two crossed intercepts, as the first and last entry of `g`: a grid of variances from 1e-3 to
/// 100, whose points are shared out among the threads, then a simplex likewise. At a bound the
/// variance is 0.
Found crossed(const CrossedProfile& profile);

/// The relative variance of cluster means, from the analysis of variance of the outcome alone.
///
/// Failure    fewer than two clusters, no more rows than clusters, no variance within -> absent
std::optional<double> momentLambda(std::span<const double> outcome, const ClusterCodes& clusters);

}  // namespace sorvane::VarianceSearch
