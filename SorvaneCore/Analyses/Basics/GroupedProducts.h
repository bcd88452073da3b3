#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "SorvaneCore/Analyses/Basics/RowPartition.h"
#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// A variable, group after group.
struct GroupedVariable {
    std::vector<double> values{};
    std::vector<double> groupMeans{};
    double grandMean = 0.0;

    /// The columns in the given rows, in all of which each has a number.
    static std::vector<GroupedVariable> of(std::span<const NumericColumn> columns,
                                           std::span<const std::uint32_t> rows,
                                           const RowPartition& partition);
};

/// The squares and products of p variables, p by p each, row-major.
struct GroupedProducts {
    std::vector<double> withinGroups{};
    std::vector<double> betweenGroups{};

    /// Cost       O(n p^2)
    static GroupedProducts of(std::span<const GroupedVariable> variables,
                              const RowPartition& partition);
};

}  // namespace sorvane
