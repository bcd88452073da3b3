#pragma once

#include <cstddef>
#include <span>

/// Sums over dense values, in fixed lanes so that every build adds in the same order.
namespace sorvane::SampleMoments {

/// The sum of the values, as they are.
double sum(std::span<const double> values);

/// The mean of at least one value.
///
/// Method     sum over n, then corrected by the mean of what is left: equal values give that value
///            exactly, so that their deviations are exactly 0
/// Accuracy   correctly rounded but for a unit or so in the last place, whatever the offset
double mean(std::span<const double> values);

/// The sum of squared deviations from the mean, of which `mean` is the rounded value.
///
/// Method     about `mean`, less the share of its rounding error, which counts where the spread is
///            small beside the offset
double sumOfSquares(std::span<const double> values, double mean);

/// The same for products of deviations, over two lists of one length.
double sumOfProducts(std::span<const double> x,
                     double meanX,
                     std::span<const double> y,
                     double meanY);

}  // namespace sorvane::SampleMoments
