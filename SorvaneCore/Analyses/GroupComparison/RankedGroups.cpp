#include "SorvaneCore/Analyses/GroupComparison/RankedGroups.h"

#include <algorithm>

#include "SorvaneCore/Analyses/Basics/OrderedClasses.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"

namespace sorvane {

RankedGroups RankedGroups::of(std::span<const NamedNumericGroup> groups) {
    std::vector<double> pooled;
    for (const NamedNumericGroup& group : groups) {
        pooled.insert(pooled.end(), group.values.begin(), group.values.end());
    }
    if (!pooled.empty() && SampleMoments::areEqual(pooled)) {
        // Their order is that of their rounding.
        std::ranges::fill(pooled, pooled.front());
    }
    const OrderedClasses classes = OrderedClasses::of(pooled);
    const std::vector<double> midranks = classes.midranks();
    RankedGroups result{.n = static_cast<double>(pooled.size())};
    for (const std::uint32_t count : classes.counts) {
        const auto t = static_cast<double>(count);
        result.tieSum += t * t * t - t;
    }
    std::size_t position = 0;
    for (const NamedNumericGroup& group : groups) {
        if (group.values.empty()) {
            continue;
        }
        double rankSum = 0.0;
        for (const std::size_t end = position + group.values.size(); position < end; ++position) {
            rankSum += midranks[classes.classOf[position]];
        }
        const auto n = static_cast<double>(group.values.size());
        result.groups.push_back({.name = group.name, .n = n, .meanRank = rankSum / n});
    }
    return result;
}

}  // namespace sorvane
