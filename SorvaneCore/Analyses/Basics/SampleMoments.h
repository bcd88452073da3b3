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

/// The most that rounding alone leaves of a sum of squared deviations: the one measure of when
/// values that are not quite equal count as equal.
///
/// Input      how many deviations, and the magnitude of the largest number that they were got from
/// Method     each off by eight units in the last place of that number, about its fifteenth digit
double squaresOfRounding(std::size_t count, double largest);

/// The sum of squares, or 0 where rounding alone explains it.
double beyondRounding(double squares, std::size_t count, double largest);

/// Sets deviations to 0 where rounding alone explains their squares.
void clearRounding(std::span<double> deviations, double largest);

/// The greatest of the magnitudes; 0 of no values.
double largestMagnitude(std::span<const double> values);

/// Whether the values differ by no more than rounding.
bool areEqual(std::span<const double> values);

/// The sum of squared deviations from the mean, of which `mean` is the rounded value; 0 where
/// rounding of the values explains it.
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
