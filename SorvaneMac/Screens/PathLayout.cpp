#include "SorvaneMac/Screens/PathLayout.h"

#include <algorithm>

namespace sorvane::PathLayout {

namespace {

using Arrow = PathDiagram::Arrow;
using Shape = PathDiagram::Shape;

bool isDirected(const PathDiagram& diagram, const PathDiagram::Path& path) {
    const std::size_t count = diagram.nodes.size();
    return path.arrow == Arrow::directed && path.from < count && path.to < count &&
           path.from != path.to;
}

/// The latent node beside which each node stands as an indicator; absent for all other nodes.
std::vector<std::optional<std::size_t>> ownersOf(const PathDiagram& diagram) {
    std::vector<std::optional<std::size_t>> owners(diagram.nodes.size());
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

/// Each node of the left column followed by its indicators, so that no two fans cross.
PathPlaces besideIndicators(const std::vector<std::optional<std::size_t>>& owners) {
    PathPlaces places{.nodes = std::vector<PathPlaces::Place>(owners.size()), .columns = 2};
    for (std::size_t node = 0; node < owners.size(); ++node) {
        if (owners[node]) {
            continue;
        }
        const int first = places.rows;
        for (std::size_t other = 0; other < owners.size(); ++other) {
            if (owners[other] == node) {
                places.nodes[other] = {.column = 1, .row = static_cast<double>(places.rows)};
                ++places.rows;
            }
        }
        places.rows = std::max(places.rows, first + 1);
        places.nodes[node].row = (first + places.rows - 1) / 2.0;
    }
    return places;
}

/// The longest directed path to each node; a circle ends the search at the number of nodes.
std::vector<int> depths(const PathDiagram& diagram) {
    std::vector<int> depth(diagram.nodes.size());
    const int deepest = static_cast<int>(depth.size()) - 1;
    bool changed = true;
    for (int round = 0; changed && round < deepest; ++round) {
        changed = false;
        for (const PathDiagram::Path& path : diagram.paths) {
            if (isDirected(diagram, path) && depth[path.to] <= depth[path.from]) {
                depth[path.to] = std::min(depth[path.from] + 1, deepest);
                changed = true;
            }
        }
    }
    return depth;
}

PathPlaces inLayers(const PathDiagram& diagram) {
    const std::vector<int> depth = depths(diagram);
    PathPlaces places{.nodes = std::vector<PathPlaces::Place>(depth.size())};
    std::vector<int> used = depth;
    std::ranges::sort(used);
    used.erase(std::unique(used.begin(), used.end()), used.end());
    std::vector<int> sizes(used.size());
    for (std::size_t node = 0; node < depth.size(); ++node) {
        const auto column = std::ranges::lower_bound(used, depth[node]) - used.begin();
        int& size = sizes[static_cast<std::size_t>(column)];
        places.nodes[node] = {.column = static_cast<int>(column), .row = static_cast<double>(size)};
        ++size;
    }
    places.columns = static_cast<int>(sizes.size());
    places.rows = sizes.empty() ? 0 : *std::ranges::max_element(sizes);
    for (PathPlaces::Place& place : places.nodes) {
        place.row += (places.rows - sizes[static_cast<std::size_t>(place.column)]) / 2.0;
    }
    return places;
}

}  // namespace

PathPlaces places(const PathDiagram& diagram) {
    const std::vector<std::optional<std::size_t>> owners = ownersOf(diagram);
    const bool hasIndicators =
        std::ranges::any_of(owners, [](const auto& owner) { return owner.has_value(); });
    return hasIndicators ? besideIndicators(owners) : inLayers(diagram);
}

}  // namespace sorvane::PathLayout
