#include "SorvaneMac/Screens/PathLayout.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "SorvaneMac/Screens/PathFaults.h"

namespace sorvane::PathLayout {

namespace {

using Arrow = PathDiagram::Arrow;
using Shape = PathDiagram::Shape;
using Place = PathPlaces::Place;
using Owners = std::vector<std::optional<std::size_t>>;

/// How often the order of rows is gone through for a better one, and of how many nodes at most.
constexpr int mostRounds = 5;
constexpr std::size_t mostOrdered = 24;

bool isDirected(const PathDiagram& diagram, const PathDiagram::Path& path) {
    return path.arrow == Arrow::directed && PathFaults::joinsTwo(diagram, path);
}

/// The latent node beside which each node stands as an indicator; absent for all other nodes.
Owners ownersOf(const PathDiagram& diagram) {
    Owners owners(diagram.nodes.size());
    std::vector<bool> isStructural(diagram.nodes.size());
    for (const PathDiagram::Path& path : diagram.paths) {
        if (!isDirected(diagram, path)) {
            continue;
        }
        isStructural[path.from] = true;
        if (diagram.nodes[path.from].shape == Shape::observed) {
            isStructural[path.to] = true;
        } else if (!owners[path.to]) {
            owners[path.to] = path.from;
        }
    }
    for (std::size_t node = 0; node < owners.size(); ++node) {
        if (isStructural[node] || diagram.nodes[node].shape == Shape::latent) {
            owners[node].reset();
        }
    }
    return owners;
}

/// The column of each node but indicators: the longest directed path to it; a circle ends the search
/// at the number of nodes.
std::vector<int> columnsOf(const PathDiagram& diagram, const Owners& owners) {
    std::vector<int> depth(diagram.nodes.size());
    const int deepest = static_cast<int>(depth.size()) - 1;
    bool changed = true;
    for (int round = 0; changed && round < deepest; ++round) {
        changed = false;
        for (const PathDiagram::Path& path : diagram.paths) {
            if (isDirected(diagram, path) && !owners[path.to] &&
                depth[path.to] <= depth[path.from]) {
                const int next = std::min(depth[path.from] + 1, deepest);
                changed = changed || next != depth[path.to];
                depth[path.to] = next;
            }
        }
    }
    std::vector<int> used = depth;
    std::ranges::sort(used);
    used.erase(std::unique(used.begin(), used.end()), used.end());
    for (int& column : depth) {
        column = static_cast<int>(std::ranges::lower_bound(used, column) - used.begin());
    }
    return depth;
}

/// A layout with indicators in a last column.
class Banded {
public:
    Banded(const PathDiagram& diagram, const Owners& owners)
        : diagram_(diagram), owners_(owners), columns_(columnsOf(diagram, owners)) {
        for (std::size_t node = 0; node < owners.size(); ++node) {
            if (!owners[node]) {
                (isHub(node) ? hubs_ : order_).push_back(node);
                last_ = std::max(last_, columns_[node] + 1);
            }
        }
        // Whoever is acted on by latents of latents is placed before them.
        std::ranges::stable_sort(hubs_, std::greater<>(),
                                 [this](std::size_t hub) { return columns_[hub]; });
    }

    PathPlaces best() {
        PathPlaces best = placed();
        PathFaults fewest = PathFaults::of(diagram_, best.nodes);
        bool changed = last_ > 1 && order_.size() <= mostOrdered;
        for (int round = 0; changed && round < mostRounds; ++round) {
            changed = false;
            for (std::size_t a = 0; a < order_.size(); ++a) {
                for (std::size_t b = a + 1; b < order_.size(); ++b) {
                    std::swap(order_[a], order_[b]);
                    PathPlaces next = placed();
                    const PathFaults faults = PathFaults::of(diagram_, next.nodes);
                    if (faults.areLessThan(fewest)) {
                        fewest = faults;
                        best = std::move(next);
                        changed = true;
                    } else {
                        std::swap(order_[a], order_[b]);
                    }
                }
            }
        }
        return best;
    }

private:
    std::vector<std::size_t> indicatorsOf(std::size_t node) const {
        std::vector<std::size_t> indicators;
        for (std::size_t other = 0; other < owners_.size(); ++other) {
            if (owners_[other] == node) {
                indicators.push_back(other);
            }
        }
        return indicators;
    }

    /// The latent and other nodes on which a node acts, less its indicators.
    std::vector<std::size_t> targetsOf(std::size_t node) const {
        std::vector<std::size_t> targets;
        for (const PathDiagram::Path& path : diagram_.paths) {
            if (isDirected(diagram_, path) && path.from == node && !owners_[path.to]) {
                targets.push_back(path.to);
            }
        }
        return targets;
    }

    /// A latent of latents.
    bool isHub(std::size_t node) const {
        return diagram_.nodes[node].shape == Shape::latent && indicatorsOf(node).empty() &&
               !targetsOf(node).empty();
    }

    PathPlaces placed() const {
        PathPlaces places{.nodes = std::vector<Place>(owners_.size()), .columns = last_ + 1};
        std::vector<bool> isPlaced(owners_.size());
        for (const std::size_t node : order_) {
            const int first = places.rows;
            for (const std::size_t indicator : indicatorsOf(node)) {
                places.nodes[indicator] = {last_, static_cast<double>(places.rows++)};
            }
            places.rows = std::max(places.rows, first + 1);
            places.nodes[node] = {columns_[node], (first + places.rows - 1) / 2.0};
            isPlaced[node] = true;
        }
        for (const std::size_t hub : hubs_) {
            places.nodes[hub] = {columns_[hub], freeRow(hub, places, isPlaced)};
            isPlaced[hub] = true;
        }
        return places;
    }

    /// The free row nearest to the middle of those on whom a node acts; a new one where none is free.
    double freeRow(std::size_t hub, PathPlaces& places, const std::vector<bool>& isPlaced) const {
        const std::vector<std::size_t> targets = targetsOf(hub);
        double wanted = 0.0;
        for (const std::size_t target : targets) {
            wanted += places.nodes[target].row / static_cast<double>(targets.size());
        }
        const auto isFree = [&](double row) {
            for (std::size_t node = 0; node < isPlaced.size(); ++node) {
                if (isPlaced[node] && places.nodes[node].column == columns_[hub] &&
                    std::abs(places.nodes[node].row - row) < 1.0) {
                    return false;
                }
            }
            return row >= 0.0 && row <= places.rows - 1.0;
        };
        for (double away = 0.0; away < places.rows; away += 0.5) {
            for (const double row : {wanted - away, wanted + away}) {
                if (isFree(row)) {
                    return row;
                }
            }
        }
        return places.rows++;
    }

    const PathDiagram& diagram_;
    const Owners& owners_;
    std::vector<int> columns_;
    /// The nodes that have rows of their own, from above.
    std::vector<std::size_t> order_;
    std::vector<std::size_t> hubs_;
    /// The column of indicators.
    int last_ = 0;
};

/// Moves a column as little as leaves the fewest lines through its nodes.
void clearColumn(const PathDiagram& diagram, std::vector<Place>& places, int column) {
    const auto moved = [&](double by) {
        std::vector<Place> next = places;
        for (Place& place : next) {
            place.row += place.column == column ? by : 0.0;
        }
        return next;
    };
    std::vector<Place> best = places;
    int fewest = PathFaults::of(diagram, best).clashes;
    const double furthest = static_cast<double>(places.size());
    for (double away = 0.5; away <= furthest && fewest > 0; away += 0.5) {
        for (const double by : {-away, away}) {
            std::vector<Place> next = moved(by);
            const int count = PathFaults::of(diagram, next).clashes;
            if (count < fewest) {
                fewest = count;
                best = std::move(next);
            }
        }
    }
    places = std::move(best);
}

PathPlaces inLayers(const PathDiagram& diagram, const Owners& owners) {
    const std::vector<int> columns = columnsOf(diagram, owners);
    PathPlaces places{.nodes = std::vector<Place>(columns.size())};
    std::vector<int> sizes;
    for (std::size_t node = 0; node < columns.size(); ++node) {
        const auto column = static_cast<std::size_t>(columns[node]);
        sizes.resize(std::max(sizes.size(), column + 1));
        places.nodes[node] = {columns[node], static_cast<double>(sizes[column]++)};
    }
    if (sizes.empty()) {
        return places;
    }
    places.columns = static_cast<int>(sizes.size());
    for (Place& place : places.nodes) {
        place.row -= sizes[static_cast<std::size_t>(place.column)] / 2.0;
    }
    for (int column = 1; column + 1 < places.columns; ++column) {
        clearColumn(diagram, places.nodes, column);
    }
    const auto [highest, lowest] = std::ranges::minmax(places.nodes, {}, &Place::row);
    for (Place& place : places.nodes) {
        place.row -= highest.row;
    }
    places.rows = static_cast<int>(std::ceil(lowest.row - highest.row)) + 1;
    return places;
}

}  // namespace

PathPlaces places(const PathDiagram& diagram) {
    const Owners owners = ownersOf(diagram);
    const bool hasIndicators =
        std::ranges::any_of(owners, [](const auto& owner) { return owner.has_value(); });
    return hasIndicators ? Banded(diagram, owners).best() : inLayers(diagram, owners);
}

}  // namespace sorvane::PathLayout
