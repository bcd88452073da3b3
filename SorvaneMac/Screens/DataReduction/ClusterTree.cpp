#include "SorvaneMac/Screens/DataReduction/ClusterTree.h"

#include <algorithm>

#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::ClusterTree {

namespace {

/// More than these cannot be read; a larger tree is drawn from its last so many clusters on.
constexpr std::int64_t mostLeaves = 40;

/// The middle between the last merge within the clusters and the first one between them.
std::optional<double> cutHeight(const HierarchicalResult& result, std::int64_t k) {
    const auto within = static_cast<std::size_t>(result.caseCount - k);
    if (k < 2) {
        return std::nullopt;
    }
    const double below = within > 0 ? result.merges[within - 1].height : 0.0;
    const double above = result.merges[within].height;
    // Merges at one height leave no place to cut between them.
    return below < above ? std::optional((below + above) / 2.0) : std::nullopt;
}

/// The clusters that are left when `leaves` of them are, each with its number in the tree, and the
/// merges from there on.
struct TreeTop {
    std::vector<std::int64_t> leaves;
    Dendrogram plot;
};

TreeTop topOf(const HierarchicalResult& result, std::int64_t leaves) {
    const auto made = static_cast<std::size_t>(result.caseCount - leaves);
    const auto cases = static_cast<std::size_t>(result.caseCount);
    std::vector<bool> isPart(cases + result.merges.size(), false);
    for (std::size_t i = 0; i < made; ++i) {
        isPart[static_cast<std::size_t>(result.merges[i].clusterA)] = true;
        isPart[static_cast<std::size_t>(result.merges[i].clusterB)] = true;
    }
    TreeTop top;
    std::vector<std::int64_t> place(isPart.size(), -1);
    for (std::size_t node = 0; node < cases + made; ++node) {
        if (!isPart[node]) {
            place[node] = static_cast<std::int64_t>(top.leaves.size());
            top.leaves.push_back(static_cast<std::int64_t>(node));
        }
    }
    for (std::size_t i = made; i < result.merges.size(); ++i) {
        const HierarchicalMerge& merge = result.merges[i];
        place[cases + i] = leaves + static_cast<std::int64_t>(i - made);
        top.plot.merges.push_back({.first = place[static_cast<std::size_t>(merge.clusterA)],
                                   .second = place[static_cast<std::size_t>(merge.clusterB)],
                                   .height = merge.height});
    }
    return top;
}

}  // namespace

Chart chart(const HierarchicalResult& result,
            const std::vector<std::uint32_t>& rows,
            std::int64_t k) {
    const std::int64_t leaves = std::min(result.caseCount, std::max(mostLeaves, k));
    TreeTop top = topOf(result, leaves);
    for (const std::int64_t node : top.leaves) {
        const auto at = static_cast<std::size_t>(node);
        top.plot.leaves.push_back(
            node < result.caseCount
                ? "Row " + ResultText::count(static_cast<std::int64_t>(rows[at]) + 1)
                : ResultText::count(
                      result.merges[at - static_cast<std::size_t>(result.caseCount)].size) +
                      " cases");
    }
    top.plot.cut = cutHeight(result, k);
    Chart drawn;
    drawn.title = "Dendrogram";
    if (top.plot.cut) {
        drawn.subtitle =
            "The dashed line cuts the tree into " + DatasetText::counted(k, "cluster") + ".";
    }
    if (leaves < result.caseCount) {
        drawn.subtitle += drawn.subtitle.empty() ? "" : " ";
        drawn.subtitle +=
            "The tree is drawn from its last " + ResultText::count(leaves) + " clusters on.";
    }
    drawn.xLabel = "Height";
    drawn.plot = std::move(top.plot);
    return drawn;
}

}  // namespace sorvane::ClusterTree
