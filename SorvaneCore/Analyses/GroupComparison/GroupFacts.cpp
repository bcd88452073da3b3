#include "SorvaneCore/Analyses/GroupComparison/GroupFacts.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "SorvaneCore/Analyses/Basics/GroupMoments.h"

namespace sorvane {

namespace {

constexpr std::size_t fewestUsable = 2;
constexpr double unevenRatio = 1.5;
constexpr double imbalancedRange = 0.1;
/// What the difference of two shares may lack by rounding, such as 0.3 - 0.2.
constexpr double rounding = 1e-12;
constexpr std::size_t fewDistinctValues = 8;
constexpr double strongSkewness = 2.0;
constexpr std::int64_t fewestForShape = 3;
constexpr std::int64_t fewestForOutliers = 4;

/// The smallest and the largest of what was seen.
struct Range {
    double lowest = std::numeric_limits<double>::infinity();
    double highest = -std::numeric_limits<double>::infinity();

    void add(double value) {
        lowest = std::min(lowest, value);
        highest = std::max(highest, value);
    }
    bool isEmpty() const { return lowest > highest; }
};

bool hasFewDistinctValues(std::span<const double> values) {
    std::vector<double> seen;
    for (const double value : values) {
        if (std::ranges::find(seen, value) != seen.end()) {
            continue;
        }
        seen.push_back(value);
        if (seen.size() == fewDistinctValues) {
            return false;
        }
    }
    return true;
}

bool hasOutliers(const DescriptiveSummary& summary) {
    if (summary.validN < fewestForOutliers || !(*summary.interquartileRange > 0.0)) {
        return false;
    }
    const double reach = 1.5 * *summary.interquartileRange;
    return *summary.maximum > *summary.thirdQuartile + reach ||
           *summary.minimum < *summary.firstQuartile - reach;
}

}  // namespace

GroupFacts GroupFacts::of(const GroupedRows& rows) {
    GroupFacts facts{.rows = rows.rows, .missingGroupRows = rows.missingGroupRows};
    Range sizes;
    Range missingShares;
    Range variances;
    for (const GroupedRows::Group& group : rows.groups) {
        const auto n = static_cast<double>(group.values.size());
        const auto missing = static_cast<double>(group.missingN);
        facts.validN += static_cast<std::int64_t>(group.values.size());
        missingShares.add(missing / (missing + n));
        if (!group.values.empty()) {
            sizes.add(n);
        }
        if (group.values.size() < fewestUsable) {
            facts.smallGroups.push_back(group.label);
            continue;
        }
        ++facts.usableGroups;
        const double variance = GroupMoments::of(group.values).variance();
        if (variance > 0.0) {
            variances.add(variance);
        }
    }
    facts.hasUnevenSizes = !sizes.isEmpty() && sizes.highest / sizes.lowest >= unevenRatio;
    facts.hasMissingImbalance =
        !missingShares.isEmpty() &&
        missingShares.highest - missingShares.lowest >= imbalancedRange - rounding;
    facts.varianceRatio = variances.isEmpty() ? 1.0 : variances.highest / variances.lowest;
    return facts;
}

bool hasOrdinalOrSkewFlag(std::span<const GroupedRows::Group> groups,
                          std::span<const DescriptiveSummary> summaries) {
    for (std::size_t i = 0; i < groups.size(); ++i) {
        const DescriptiveSummary& summary = summaries[i];
        if (summary.validN < fewestForShape) {
            continue;
        }
        if (hasFewDistinctValues(groups[i].values) ||
            std::abs(summary.skewness.value_or(0.0)) > strongSkewness || hasOutliers(summary)) {
            return true;
        }
    }
    return false;
}

}  // namespace sorvane
