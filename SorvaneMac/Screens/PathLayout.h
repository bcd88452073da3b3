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

/// Places the nodes so that none lies on another, and that few lines run through one.
///
/// Method     Columns from left to right by the longest directed path that leads to a node. Indicators
///            (observed nodes on which a latent one, and no observed one, has a directed path, and
///            which have none of their own) stand in a last column for themselves, each beside the
///            latent that it comes first for; every other node then has rows of its own, in an order
///            that sends few lines through nodes and keeps them short. A latent of latents stands beside their
///            middle. Without indicators, each column is centred, and moved where lines run through it
/// Failure    a path to a node that is not there is passed over
/// Cost       O(nodes^2 x paths)
PathPlaces places(const PathDiagram& diagram);

}  // namespace PathLayout

}  // namespace sorvane
