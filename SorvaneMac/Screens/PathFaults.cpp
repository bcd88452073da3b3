#include "SorvaneMac/Screens/PathFaults.h"

#include <algorithm>
#include <cmath>

namespace sorvane {

namespace {

using Place = PathPlaces::Place;

/// What a node takes from its middle on, in columns and rows, with some air.
constexpr double halfWidth = 0.3;
constexpr double halfHeight = 0.6;

/// Whether the line between two nodes runs through a third one, of a column that it passes.
bool isClash(const Place& from, const Place& to, const Place& node) {
    if (node.column <= from.column || node.column >= to.column) {
        return false;
    }
    const double start = from.column + halfWidth;
    const double slope = (to.row - from.row) / (to.column - halfWidth - start);
    const double left = from.row + slope * (node.column - halfWidth - start);
    const double right = from.row + slope * (node.column + halfWidth - start);
    return std::max(left, right) > node.row - halfHeight &&
           std::min(left, right) < node.row + halfHeight;
}

}  // namespace

bool PathFaults::areLessThan(const PathFaults& other) const {
    constexpr double rounding = 1e-6;
    return clashes < other.clashes ||
           (clashes == other.clashes && length < other.length - rounding);
}

PathFaults PathFaults::of(const PathDiagram& diagram, const std::vector<Place>& places) {
    PathFaults faults;
    for (const PathDiagram::Path& path : diagram.paths) {
        if (!joinsTwo(diagram, path) || places[path.from].column == places[path.to].column) {
            continue;
        }
        const bool isForward = places[path.from].column < places[path.to].column;
        const Place& from = places[isForward ? path.from : path.to];
        const Place& to = places[isForward ? path.to : path.from];
        for (const Place& node : places) {
            faults.clashes += isClash(from, to, node) ? 1 : 0;
        }
        const bool isDirected = path.arrow == PathDiagram::Arrow::directed;
        faults.length += isDirected ? std::abs(from.row - to.row) : 0.0;
    }
    return faults;
}

bool PathFaults::joinsTwo(const PathDiagram& diagram, const PathDiagram::Path& path) {
    const std::size_t count = diagram.nodes.size();
    return path.from < count && path.to < count && path.from != path.to;
}

}  // namespace sorvane
