#pragma once

#include <vector>

#include "SorvaneMac/Screens/PathLayout.h"

namespace sorvane {

/// What speaks against a layout of a path diagram.
struct PathFaults {
    /// Lines between columns that run through a node.
    int clashes = 0;
    /// Of directed lines between columns, from row to row.
    double length = 0.0;

    /// Clashes count first; lengths that differ by rounding alone are the same.
    bool areLessThan(const PathFaults& other) const;

    /// Input      a place for each node
    /// Cost       O(paths x nodes)
    static PathFaults of(const PathDiagram& diagram, const std::vector<PathPlaces::Place>& places);

    /// Whether a path joins two nodes that are there.
    static bool joinsTwo(const PathDiagram& diagram, const PathDiagram::Path& path);
};

}  // namespace sorvane
