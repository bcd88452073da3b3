#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Reliability/ReliabilityResult.h"

namespace sorvane {

/// The distribution of the scale score.
struct ScaleStatistics {
    std::int64_t n = 0;
    std::optional<double> mean{};
    std::optional<double> variance{};
    std::optional<double> standardDeviation{};

    bool operator==(const ScaleStatistics&) const = default;
};
BOOST_DESCRIBE_STRUCT(ScaleStatistics, (), (n, mean, variance, standardDeviation))

/// How one statistic spreads over the items; all absent when no item has it.
struct SummaryItemStatistic {
    std::string label{};
    std::optional<double> mean{};
    std::optional<double> minimum{};
    std::optional<double> maximum{};
    std::optional<double> range{};
    /// Absent when the minimum is 0.
    std::optional<double> maximumOverMinimum{};
    /// Of n - 1 denominator; 0 for a single value.
    std::optional<double> variance{};

    bool operator==(const SummaryItemStatistic&) const = default;
};
BOOST_DESCRIBE_STRUCT(SummaryItemStatistic,
                      (),
                      (label, mean, minimum, maximum, range, maximumOverMinimum, variance))

/// The scale without one item.
struct ItemTotalStatistic {
    std::string itemName{};
    std::optional<double> scaleMeanIfDeleted{};
    std::optional<double> scaleVarianceIfDeleted{};
    std::optional<double> correctedItemTotalCorrelation{};
    std::optional<double> alphaIfDeleted{};

    bool operator==(const ItemTotalStatistic&) const = default;
};
BOOST_DESCRIBE_STRUCT(ItemTotalStatistic,
                      (),
                      (itemName,
                       scaleMeanIfDeleted,
                       scaleVarianceIfDeleted,
                       correctedItemTotalCorrelation,
                       alphaIfDeleted))

/// The tables of a reliability analysis, from its result. A figure that is not finite is absent.
namespace ReliabilityScaleTables {

ScaleStatistics scaleStatistics(const ReliabilityResult& result);

/// "Item means", "Item variances" and "Inter-item correlations" (those above the diagonal).
std::vector<SummaryItemStatistic> summaryItemStatistics(const ReliabilityResult& result);

/// One entry per item.
///
/// Method     the mean without an item is the sum of all item means less its own, absent unless all
///            are present; the variance without it is the sum of s_i^2 and 2 r_ij s_i s_j over the
///            others, absent when one of these is, or when the matrix does not fit the items
/// Cost       O(k^3) for k items
std::vector<ItemTotalStatistic> itemTotalStatistics(const ReliabilityResult& result);

}  // namespace ReliabilityScaleTables

}  // namespace sorvane
