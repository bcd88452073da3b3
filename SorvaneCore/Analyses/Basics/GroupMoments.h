#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/NamedNumericGroup.h"

namespace sorvane {

/// A group as tests of means see it.
struct GroupMoments {
    std::string name{};
    /// At least 1.
    double n = 0.0;
    double mean = 0.0;
    /// Of squared deviations from the mean; exactly 0 for values that are equal but for rounding.
    double sumOfSquares = 0.0;

    /// With n - 1; NaN for one value.
    double variance() const { return sumOfSquares / (n - 1.0); }
    /// The squared standard error of the mean.
    double squaredError() const { return variance() / n; }

    /// Of at least one value.
    static GroupMoments of(std::span<const double> values, std::string name = {});
    /// Of the differences a - b of two lists of one length, of at least one pair.
    static GroupMoments ofDifferences(std::span<const double> a, std::span<const double> b);
    /// Of the groups that have at least `fewest` values, which is at least 1.
    static std::vector<GroupMoments> ofGroups(std::span<const NamedNumericGroup> groups,
                                              std::size_t fewest);

    /// The number of values of all groups.
    static double total(std::span<const GroupMoments> groups);
    /// The sums of squares of the one-way table: n_i (mean_i - grand mean)^2, and within groups.
    static double squaresBetween(std::span<const GroupMoments> groups);
    static double squaresWithin(std::span<const GroupMoments> groups);
};

}  // namespace sorvane
