#include "SorvaneCore/Analyses/Clustering/ClusterDistances.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
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
    : linkage_(linkage),
      activeCount_(cases.count()),
      clusters_(cases.count()),
      numbers_(cases.count()),
      sizes_(cases.count(), 1.0) {
    std::iota(numbers_.begin(), numbers_.end(), std::int64_t{0});
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
        if (cluster.distances[slot] == cluster.nearestDistance && numbers_[slot] < lowest) {
            lowest = numbers_[slot];
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

void ClusterDistances::fetchAhead(std::size_t slot, std::size_t k) const {
    constexpr std::size_t ahead = 16;
    if (k + ahead < clusters_.size() && slot < clusters_[k + ahead].distances.size()) {
        __builtin_prefetch(&clusters_[k + ahead].distances[slot], 1);
    }
}

std::vector<double> ClusterDistances::takeAll(std::size_t slot, const Pair& pair) {
    std::vector<double> taken(clusters_.size(), none);
    const std::int64_t own = numbers_[slot];
    for (std::size_t k = 0; k < taken.size(); ++k) {
        fetchAhead(slot, k);
        if (numbers_[k] == gone || k == pair.first || k == pair.second) {
            continue;
        }
        taken[k] = numbers_[k] > own ? std::exchange(clusters_[k].distances[slot], none)
                                     : clusters_[slot].distances[k];
    }
    return taken;
}

/// By Lance and Williams.
void ClusterDistances::join(const Pair& pair,
                            std::vector<double>& toFirst,
                            const std::vector<double>& toSecond) const {
    const double a = sizes_[pair.first];
    const double b = sizes_[pair.second];
    const double between = pair.distance;
    const auto joinAll = [&](const auto& joined) {
        for (std::size_t k = 0; k < toFirst.size(); ++k) {
            toFirst[k] = joined(toFirst[k], toSecond[k], sizes_[k]);
        }
    };
    switch (linkage_) {
        case HierarchicalLinkage::ward:
            joinAll([a, b, between](double x, double y, double c) {
                return ((a + c) * x + (b + c) * y - c * between) / (a + b + c);
            });
            break;
        case HierarchicalLinkage::complete:
            joinAll([](double x, double y, double) { return std::max(x, y); });
            break;
        case HierarchicalLinkage::average:
            joinAll([a, b](double x, double y, double) { return (a * x + b * y) / (a + b); });
            break;
        case HierarchicalLinkage::single:
            joinAll([](double x, double y, double) { return std::min(x, y); });
            break;
    }
}

void ClusterDistances::merge(const Pair& pair, std::int64_t number) {
    std::vector<double> distances = takeAll(pair.first, pair);
    join(pair, distances, takeAll(pair.second, pair));
    clusters_[pair.first] = {.distances = std::move(distances)};
    clusters_[pair.second] = {};
    numbers_[pair.first] = number;
    numbers_[pair.second] = gone;
    sizes_[pair.first] += std::exchange(sizes_[pair.second], 0.0);
    --activeCount_;
    findNearest(clusters_[pair.first]);
    for (std::size_t k = 0; k < clusters_.size(); ++k) {
        Cluster& other = clusters_[k];
        if (k != pair.first && other.nearestDistance != none &&
            (other.nearest == pair.first || other.nearest == pair.second)) {
            findNearest(other);
        }
    }
    if (4 * activeCount_ < 3 * clusters_.size()) {
        compact();
    }
}

void ClusterDistances::compact() {
    std::vector<std::size_t> slots;
    for (std::size_t slot = 0; slot < clusters_.size(); ++slot) {
        if (numbers_[slot] != gone) {
            slots.push_back(slot);
        }
    }
    std::ranges::sort(slots, {}, [this](std::size_t slot) { return numbers_[slot]; });
    std::vector<std::size_t> placeOf(clusters_.size(), 0);
    for (std::size_t place = 0; place < slots.size(); ++place) {
        placeOf[slots[place]] = place;
    }
    std::vector<Cluster> kept;
    std::vector<std::int64_t> numbers;
    std::vector<double> sizes;
    for (std::size_t place = 0; place < slots.size(); ++place) {
        Cluster& cluster = kept.emplace_back(std::move(clusters_[slots[place]]));
        std::vector<double> distances(place);
        for (std::size_t older = 0; older < place; ++older) {
            distances[older] = cluster.distances[slots[older]];
        }
        cluster.distances = std::move(distances);
        cluster.nearest = placeOf[cluster.nearest];
        numbers.push_back(numbers_[slots[place]]);
        sizes.push_back(sizes_[slots[place]]);
    }
    clusters_ = std::move(kept);
    numbers_ = std::move(numbers);
    sizes_ = std::move(sizes);
}

}  // namespace sorvane
