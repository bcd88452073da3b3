#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "SorvaneCore/Models/Multilevel/LinkedDesign.h"

namespace sorvane {

/// What the rows tell of the fixed effects where those of the clusters are estimated beside them:
/// X'WX - X'WZ (I + Z'WZ)^-1 Z'WX, with W the weights at the clusters' modes and Z the loadings of
/// effects of variance 1. Next to the negative Hessian of the marginal likelihood.
class LinkedInformation {
public:
    struct Cluster {
        /// Its first row.
        std::size_t first = 0;
        /// One per row.
        std::vector<double> weights{};
        /// Of two effects; the second may be none.
        std::vector<std::array<double, 2>> loadings{};
    };

    /// The design must outlive this.
    explicit LinkedInformation(const LinkedDesign& design);

    /// Cost       O(rows p^2)
    void add(const Cluster& cluster);
    /// The sum over the clusters, in the coordinates of the design.
    std::vector<double> take();

private:
    const LinkedDesign& design_;
    std::vector<double> sum_;
};

}  // namespace sorvane
