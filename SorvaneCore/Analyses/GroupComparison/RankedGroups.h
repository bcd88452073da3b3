#pragma once

#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/NamedNumericGroup.h"

namespace sorvane {

/// Groups by the ranks of their values in the pooled sample.
struct RankedGroups {
    struct Group {
        std::string name{};
        double n = 0.0;
        double meanRank = 0.0;
    };

    std::vector<Group> groups{};
    /// The number of values, and t^3 - t summed over runs of t equal ones.
    double n = 0.0;
    double tieSum = 0.0;

    /// Input      groups without values are left out
    /// Method     midranks; values that are all equal but for rounding share one
    /// Cost       one radix sort
    static RankedGroups of(std::span<const NamedNumericGroup> groups);
};

}  // namespace sorvane
