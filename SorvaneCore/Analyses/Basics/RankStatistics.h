#pragma once

#include <span>
#include <vector>

/// Ranks with ties. NaN values rank at the ends, each on its own.
namespace sorvane::RankStatistics {

/// The rank of each value from 1, in input order; equal values share the mean of their positions.
///
/// Cost       one radix sort of the values
std::vector<double> averageRanks(std::span<const double> values);

/// The number of pairs of equal values: the sum of t(t-1)/2 over the distinct values.
double tieTerm(std::span<const double> values);

/// The counts of the distinct values that occur more than once, by value ascending.
std::vector<double> tieGroupSizes(std::span<const double> values);

}  // namespace sorvane::RankStatistics
