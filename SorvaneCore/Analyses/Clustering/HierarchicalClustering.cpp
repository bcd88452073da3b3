#include "SorvaneCore/Analyses/Clustering/HierarchicalClustering.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>
#include <utility>

#include "SorvaneCore/Analyses/Clustering/CaseColumns.h"
#include "SorvaneCore/Analyses/Clustering/ClusterDistances.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::ClusterAnalysis {

namespace {

constexpr std::int64_t fewestCases = 2;
constexpr std::int64_t degenerateBelow = 3;

std::string degenerate(std::int64_t cases) {
    return NumberText::integer(cases) +
           " case(s) are available; a dendrogram is degenerate below 3 cases.";
}

std::string tooManyCases(std::int64_t cases) {
    return "Hierarchical clustering keeps the distance between every two cases in memory, and " +
           NumberText::integer(cases) + " cases are more than the " +
           NumberText::integer(static_cast<std::int64_t>(hierarchicalCaseLimit)) +
           " it can take. Use k-means, or cluster a random part of the cases.";
}

AnalysisReadiness readiness(std::int64_t cases) {
    std::vector<AnalysisReadinessIssue> issues;
    if (cases > static_cast<std::int64_t>(hierarchicalCaseLimit)) {
        issues.push_back(AnalysisReadinessIssue::blocked(tooManyCases(cases)));
    }
    if (cases < degenerateBelow) {
        issues.push_back(AnalysisReadinessIssue::caution(degenerate(cases)));
    }
    return AnalysisReadiness::of("at least 2 cases to form a merge tree", cases, cases,
                                 std::move(issues));
}

/// The tree from single cases to one cluster; absent when distances overflow.
std::optional<std::vector<HierarchicalMerge>> mergeTree(const CaseColumns& cases,
                                                        HierarchicalLinkage linkage) {
    ClusterDistances clusters(cases, linkage);
    std::vector<HierarchicalMerge> merges;
    for (std::size_t number = cases.count(); merges.size() + 1 < cases.count(); ++number) {
        const std::optional<ClusterDistances::Pair> pair = clusters.closest();
        if (!pair) {
            return std::nullopt;
        }
        merges.push_back({.clusterA = clusters.number(pair->first),
                          .clusterB = clusters.number(pair->second),
                          .height = linkage == HierarchicalLinkage::ward
                                        ? std::sqrt(std::max(pair->distance, 0.0))
                                        : pair->distance,
                          .size = clusters.size(pair->first) + clusters.size(pair->second)});
        clusters.merge(*pair, static_cast<std::int64_t>(number));
    }
    return merges;
}

/// The last cluster that holds each of the first `made` clusters, after the merges that made them;
/// absent when a merge joins what is not there.
std::optional<std::vector<std::size_t>> owners(std::span<const HierarchicalMerge> merges,
                                               std::size_t caseCount) {
    std::vector<std::size_t> ownerOf(caseCount + merges.size());
    std::iota(ownerOf.begin(), ownerOf.end(), std::size_t{0});
    for (std::size_t i = 0; i < merges.size(); ++i) {
        for (const std::int64_t part : {merges[i].clusterA, merges[i].clusterB}) {
            if (part < 0 || part >= static_cast<std::int64_t>(caseCount + i)) {
                return std::nullopt;
            }
            ownerOf[static_cast<std::size_t>(part)] = caseCount + i;
        }
    }
    for (std::size_t i = ownerOf.size(); i-- > 0;) {
        ownerOf[i] = ownerOf[ownerOf[i]];
    }
    return ownerOf;
}

}  // namespace

std::optional<HierarchicalResult> hierarchical(const CaseRows& rows,
                                               const HierarchicalOptions& options) {
    const auto cases = static_cast<std::int64_t>(rows.count);
    HierarchicalResult result{.caseCount = cases,
                              .linkage = options.linkage,
                              .standardized = options.standardize,
                              .readiness = readiness(cases)};
    if (result.readiness.status == AnalysisReadinessStatus::blocked) {
        return result;
    }
    const std::optional<CaseColumns> columns = CaseColumns::of(rows, options.standardize);
    if (cases < fewestCases || rows.width < 1 || !columns) {
        return std::nullopt;
    }
    std::optional<std::vector<HierarchicalMerge>> merges = mergeTree(*columns, options.linkage);
    if (!merges) {
        return std::nullopt;
    }
    result.merges = *std::move(merges);
    return result;
}

std::optional<std::vector<std::int64_t>> cutTree(std::span<const HierarchicalMerge> merges,
                                                 std::int64_t caseCount,
                                                 std::int64_t k) {
    if (k < 1 || k > caseCount || static_cast<std::int64_t>(merges.size()) < caseCount - k) {
        return std::nullopt;
    }
    const auto cases = static_cast<std::size_t>(caseCount);
    const auto ownerOf = owners(merges.first(static_cast<std::size_t>(caseCount - k)), cases);
    if (!ownerOf) {
        return std::nullopt;
    }
    std::vector<std::int64_t> labelOf(ownerOf->size(), -1);
    std::vector<std::int64_t> labels;
    std::int64_t next = 0;
    for (std::size_t i = 0; i < cases; ++i) {
        std::int64_t& label = labelOf[(*ownerOf)[i]];
        label = label < 0 ? next++ : label;
        labels.push_back(label);
    }
    return labels;
}

}  // namespace sorvane::ClusterAnalysis
