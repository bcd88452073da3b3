#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "SorvaneCore/Analyses/Clustering/CaseColumns.h"
#include "SorvaneCore/Analyses/HierarchicalLinkage.h"

namespace sorvane {

/// The distances between the clusters that are left, two of which at a time become one.
///
/// Each cluster keeps its distances to the clusters of lower number, in a list of its own, and the
/// nearest of them. A new cluster has the highest number, so that it needs one new list and touches
/// no other's nearest; lists are read from front to back, and the first of equally close pairs is
/// found without a second table.
class ClusterDistances {
public:
    struct Pair {
        /// Where the two stand; the first has the lower number.
        std::size_t first = 0;
        std::size_t second = 0;
        double distance = 0.0;
    };

    /// Every case a cluster: squared distances for Ward's linkage, plain ones otherwise.
    ClusterDistances(const CaseColumns& cases, HierarchicalLinkage linkage);

    /// The closest pair, the first of equals by the number of the one and then of the other; absent
    /// when no distance is a number.
    std::optional<Pair> closest() const;
    std::int64_t number(std::size_t slot) const { return numbers_[slot]; }
    std::int64_t size(std::size_t slot) const { return static_cast<std::int64_t>(sizes_[slot]); }
    /// Makes one cluster, of the given number, of a pair.
    void merge(const Pair& pair, std::int64_t number);

private:
    static constexpr double none = std::numeric_limits<double>::infinity();

    static constexpr std::int64_t gone = -1;

    struct Cluster {
        /// To the cluster in each slot, `none` for those that are gone or have a higher number; the
        /// list ends where no others follow.
        std::vector<double> distances{};
        double nearestDistance = none;
        std::size_t nearest = 0;
    };

    void findNearest(Cluster& cluster) const;
    /// Takes the distances of one cluster of a pair to all others out of the lists that hold them;
    /// `none` for those of the pair and those that are gone.
    std::vector<double> takeAll(std::size_t slot, const Pair& pair);
    /// Asks memory for the entry that `takeAll` will read some clusters later: each list is
    /// elsewhere.
    void fetchAhead(std::size_t slot, std::size_t k) const;
    /// Makes the distances to the first cluster of a pair those to both together.
    void join(const Pair& pair,
              std::vector<double>& toFirst,
              const std::vector<double>& toSecond) const;
    /// Drops the slots of clusters that are gone.
    void compact();

    HierarchicalLinkage linkage_;
    std::size_t activeCount_;
    std::vector<Cluster> clusters_;
    /// Of each slot; numbers are `gone` and sizes 0 where there is no cluster.
    std::vector<std::int64_t> numbers_;
    std::vector<double> sizes_;
};

}  // namespace sorvane
