#include "SorvaneCore/Analyses/Clustering/ClusterDistances.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane {

namespace {

/// The smallest of some distances, infinity for none.
double smallest(const std::vector<double>& distances) {
    constexpr std::size_t laneCount = 8;
    std::array<double, laneCount> lanes;
    lanes.fill(std::numeric_limits<double>::infinity());
    const std::size_t whole = distances.size() - distances.size() % laneCount;
    for (std::size_t i = 0; i < whole; i += laneCount) {
        for (std::size_t lane = 0; lane < laneCount; ++lane) {
            const double distance = distances[i + lane];
            lanes[lane] = distance < lanes[lane] ? distance : lanes[lane];
        }
    }
    for (std::size_t i = whole; i < distances.size(); ++i) {
        lanes[0] = distances[i] < lanes[0] ? distances[i] : lanes[0];
    }
    return *std::ranges::min_element(lanes);
}

}  // namespace

ClusterDistances::ClusterDistances(const CaseColumns& cases, HierarchicalLinkage linkage)
    : linkage_(linkage), activeCount_(cases.count()), clusters_(cases.count()) {
    for (std::size_t i = 0; i < clusters_.size(); ++i) {
        clusters_[i].number = static_cast<std::int64_t>(i);
    }
    parallelFor(clusters_.size(), hardwareThreads(), [&](std::size_t i) {
        Cluster& cluster = clusters_[i];
        cluster.distances.resize(i);
        cases.squaredDistances(cases.row(i), 0, cluster.distances);
        if (linkage != HierarchicalLinkage::ward) {
            for (double& distance : cluster.distances) {
                distance = std::sqrt(distance);
            }
        }
        findNearest(cluster);
    });
}

void ClusterDistances::findNearest(Cluster& cluster) const {
    cluster.nearestDistance = smallest(cluster.distances);
    if (cluster.nearestDistance == none) {
        return;
    }
    std::int64_t lowest = std::numeric_limits<std::int64_t>::max();
    for (std::size_t slot = 0; slot < cluster.distances.size(); ++slot) {
        if (cluster.distances[slot] == cluster.nearestDistance && clusters_[slot].number < lowest) {
            lowest = clusters_[slot].number;
            cluster.nearest = slot;
        }
    }
}

std::optional<ClusterDistances::Pair> ClusterDistances::closest() const {
    Pair best{.distance = none};
    for (std::size_t slot = 0; slot < clusters_.size(); ++slot) {
        const Cluster& cluster = clusters_[slot];
        const double distance = cluster.nearestDistance;
        if (distance > best.distance || distance == none) {
            continue;
        }
        const Pair pair{.first = cluster.nearest, .second = slot, .distance = distance};
        if (distance < best.distance || std::pair(number(pair.first), number(pair.second)) <
                                            std::pair(number(best.first), number(best.second))) {
            best = pair;
        }
    }
    return best.distance == none ? std::nullopt : std::optional(best);
}

double ClusterDistances::take(std::size_t a, std::size_t k) {
    return clusters_[k].number > clusters_[a].number
               ? std::exchange(clusters_[k].distances[a], none)
               : clusters_[a].distances[k];
}

/// By Lance and Williams.
double ClusterDistances::joined(const Pair& pair,
                                std::size_t k,
                                double toFirst,
                                double toSecond) const {
    const auto a = static_cast<double>(size(pair.first));
    const auto b = static_cast<double>(size(pair.second));
    const auto c = static_cast<double>(size(k));
    switch (linkage_) {
        case HierarchicalLinkage::ward:
            return ((a + c) * toFirst + (b + c) * toSecond - c * pair.distance) / (a + b + c);
        case HierarchicalLinkage::complete:
            return std::max(toFirst, toSecond);
        case HierarchicalLinkage::average:
            return (a * toFirst + b * toSecond) / (a + b);
        case HierarchicalLinkage::single:
            break;
    }
    return std::min(toFirst, toSecond);
}

void ClusterDistances::merge(const Pair& pair, std::int64_t number) {
    Cluster merged{.number = number,
                   .size = size(pair.first) + size(pair.second),
                   .distances = std::vector<double>(clusters_.size(), none)};
    for (std::size_t k = 0; k < clusters_.size(); ++k) {
        if (clusters_[k].isActive && k != pair.first && k != pair.second) {
            const double toFirst = take(pair.first, k);
            const double toSecond = take(pair.second, k);
            merged.distances[k] = joined(pair, k, toFirst, toSecond);
        }
    }
    clusters_[pair.first] = std::move(merged);
    clusters_[pair.second] = {.isActive = false};
    --activeCount_;
    findNearest(clusters_[pair.first]);
    for (std::size_t k = 0; k < clusters_.size(); ++k) {
        Cluster& other = clusters_[k];
        if (other.isActive && k != pair.first && other.nearestDistance != none &&
            (other.nearest == pair.first || other.nearest == pair.second)) {
            findNearest(other);
        }
    }
    if (2 * activeCount_ < clusters_.size()) {
        compact();
    }
}

void ClusterDistances::compact() {
    std::vector<std::size_t> slots;
    for (std::size_t slot = 0; slot < clusters_.size(); ++slot) {
        if (clusters_[slot].isActive) {
            slots.push_back(slot);
        }
    }
    std::ranges::sort(slots, {}, [this](std::size_t slot) { return clusters_[slot].number; });
    std::vector<std::size_t> placeOf(clusters_.size(), 0);
    for (std::size_t place = 0; place < slots.size(); ++place) {
        placeOf[slots[place]] = place;
    }
    std::vector<Cluster> kept;
    kept.reserve(slots.size());
    for (std::size_t place = 0; place < slots.size(); ++place) {
        Cluster& cluster = kept.emplace_back(std::move(clusters_[slots[place]]));
        std::vector<double> distances(place);
        for (std::size_t older = 0; older < place; ++older) {
            distances[older] = cluster.distances[slots[older]];
        }
        cluster.distances = std::move(distances);
        cluster.nearest = placeOf[cluster.nearest];
    }
    clusters_ = std::move(kept);
}

}  // namespace sorvane
