#pragma once

#include "SorvaneMac/Screens/Chart.h"

namespace sorvane {

/// Where each node of a path diagram stands, in columns from the left and rows from above.
struct PathPlaces {
    struct Place {
        int column = 0;
        /// The middle of the node; halves occur.
        double row = 0.0;

        bool operator==(const Place&) const = default;
    };
    /// One per node.
    std::vector<Place> nodes;
    int columns = 0;
    int rows = 0;

    bool operator==(const PathPlaces&) const = default;
};

namespace PathLayout {

/// Places the nodes so that none lies on another.
///
/// Method     With indicators (observed nodes on which a latent one, and no observed one, has a
///            directed path, and which have none of their own): all other nodes in the left
///            column, each indicator in the right one, the latent beside the middle of those that
///            it comes first for. Without: columns from left to right by the longest directed path
///            that leads to a node, each column centred.
/// Failure    a path to a node that is not there is passed over
/// Cost       O(nodes x paths)
PathPlaces places(const PathDiagram& diagram);

}  // namespace PathLayout

}  // namespace sorvane
