#pragma once

#include <array>
#include <cstddef>

/// Integration by equal panels of 8-point Gauss-Legendre.
namespace sorvane::GaussLegendre {

/// Nodes and weights on [-1, 1], from the left.
inline constexpr std::array nodes{-0.9602898564975363, -0.7966664774136267, -0.525532409916329,
                                  -0.1834346424956498, 0.1834346424956498,  0.525532409916329,
                                  0.7966664774136267,  0.9602898564975363};
inline constexpr std::array weights{0.1012285362903763, 0.2223810344533745, 0.3137066458778873,
                                    0.362683783378362,  0.362683783378362,  0.3137066458778873,
                                    0.2223810344533745, 0.1012285362903763};

/// Calls `take(node, weight)` for the nodes of `panels` equal panels from `start`, ascending.
template <typename Take>
void forEachNode(double start, double panelWidth, int panels, const Take& take) {
    const double half = panelWidth / 2.0;
    for (int panel = 0; panel < panels; ++panel) {
        const double centre = (panel + 0.5) * panelWidth + start;
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            take(centre + half * nodes[i], half * weights[i]);
        }
    }
}

}  // namespace sorvane::GaussLegendre
