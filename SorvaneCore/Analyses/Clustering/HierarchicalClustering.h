#pragma once

#include <boost/describe/class.hpp>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Analyses/Basics/CaseRows.h"
#include "SorvaneCore/Analyses/HierarchicalLinkage.h"

namespace sorvane {

/// Two clusters made one. Cases are the clusters 0 to n - 1; the first merge makes cluster n.
struct HierarchicalMerge {
    /// The older cluster, which has the lower number, and the younger.
    std::int64_t clusterA = 0;
    std::int64_t clusterB = 0;
    /// On the scale of distances, for Ward's linkage too.
    double height = 0.0;
    /// Cases in the new cluster.
    std::int64_t size = 0;

    bool operator==(const HierarchicalMerge&) const = default;
};
BOOST_DESCRIBE_STRUCT(HierarchicalMerge, (), (clusterA, clusterB, height, size))

struct HierarchicalResult {
    /// One fewer than cases, in the order in which they were made; none where blocked.
    std::vector<HierarchicalMerge> merges{};
    std::int64_t caseCount = 0;
    HierarchicalLinkage linkage = HierarchicalLinkage::ward;
    bool standardized = false;
    AnalysisReadiness readiness{};

    bool operator==(const HierarchicalResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(HierarchicalResult, (), (merges, caseCount, linkage, standardized, readiness))

struct HierarchicalOptions {
    HierarchicalLinkage linkage = HierarchicalLinkage::ward;
    /// Whether each variable is first brought to mean 0 and standard deviation 1 (n - 1).
    bool standardize = true;

    bool operator==(const HierarchicalOptions&) const = default;
};
BOOST_DESCRIBE_STRUCT(HierarchicalOptions, (), (linkage, standardize))

namespace ClusterAnalysis {

/// The largest number of cases that `hierarchical` takes: their distances fill 1.6 GB.
inline constexpr std::size_t hierarchicalCaseLimit = 20000;

/// A tree of clusters, joined two by two from single cases.
///
/// Input      finite numbers
/// Method     of all pairs of clusters the closest is joined, the first of equals in the order of
///            cluster numbers; distances to the new cluster by the formula of Lance and Williams,
///            on squared Euclidean distances for Ward's linkage and on Euclidean ones otherwise
/// Failure    fewer than two cases, numbers that are not finite, or whose squared distances are not
///            -> absent; more cases than the limit -> blocked
/// Cost       O(n^2) memory, 4 n^2 bytes; O(n^2 (width + a few)) time as a rule: about a second
///            for 10,000 cases
/// Reference  Lance & Williams (1967), A general theory of classificatory sorting strategies
std::optional<HierarchicalResult> hierarchical(const CaseRows& rows,
                                               const HierarchicalOptions& options = {});

/// The cluster of each case where the tree is cut into k clusters, numbered from 0 in the order of
/// their first cases.
///
/// Failure    k outside 1 to `caseCount`, merges that are not those of so many cases -> absent
/// Cost       O(n)
std::optional<std::vector<std::int64_t>> cutTree(std::span<const HierarchicalMerge> merges,
                                                 std::int64_t caseCount,
                                                 std::int64_t k);

}  // namespace ClusterAnalysis

}  // namespace sorvane
