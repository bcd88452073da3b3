#pragma once

#include <cstdint>
#include <vector>

#include "SorvaneCore/Analyses/Clustering/HierarchicalClustering.h"
#include "SorvaneMac/Screens/Chart.h"

/// The tree of a hierarchical clustering as a chart.
namespace sorvane::ClusterTree {

/// A dendrogram with the line that cuts it into `k` clusters; a tree of more cases than can be read
/// is drawn from its last clusters on.
///
/// Input      `rows`: where each case stands in the table
Chart chart(const HierarchicalResult& result,
            const std::vector<std::uint32_t>& rows,
            std::int64_t k);

}  // namespace sorvane::ClusterTree
