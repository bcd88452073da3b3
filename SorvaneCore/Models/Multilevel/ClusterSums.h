#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/RandomCovariance.h"
#include "SorvaneCore/Models/Multilevel/ScaledDesign.h"
#include "SorvaneCore/Models/Multilevel/SmallFactor.h"

namespace sorvane {

/// What the likelihood needs of the rows of each cluster, whatever their number.
///
/// With Z = QR the columns of the random effects, V^-1 = (I - QQ') + Q (I + R G R')^-1 Q'. So the
/// products under V^-1 are those of what Z leaves of the columns, which are summed once, plus small
/// blocks of Q' times the columns. All terms are positive: no digits are lost to a large G, and G
/// may be singular.
class ClusterSums {
public:
    /// Input      `slope` one value per row, or none
    /// Cost       O(n width^2)
    ClusterSums(const ScaledDesign& design,
                const ClusterCodes& clusters,
                std::span<const double> slope);

    std::size_t clusterCount() const { return sizes_.size(); }
    std::size_t clusterSize(std::size_t cluster) const { return sizes_[cluster]; }
    /// Random effects of a cluster, 1 or 2.
    std::size_t effects() const { return effects_; }
    std::size_t width() const { return width_; }

    /// Products of what Z leaves of the columns, width by width.
    std::span<const double> within() const { return within_; }
    /// Q' times the columns of a cluster: `effects` rows of `width`. The second row is zero where
    /// the slope does not vary in the cluster.
    std::span<const double> projection(std::size_t cluster) const;
    /// r00, r01 and r11 of R.
    const std::array<double, 3>& triangle(std::size_t cluster) const { return triangles_[cluster]; }

    /// R E R' for a symmetric E.
    RandomCovariance sandwiched(std::size_t cluster, const RandomCovariance& e) const;
    /// Of I + R G R'.
    SmallFactor factor(std::size_t cluster, const RandomCovariance& g) const;

private:
    void reduceCluster(std::size_t cluster,
                       std::span<double> columns,
                       std::span<const double> slope);

    std::size_t rows_ = 0;
    std::size_t width_ = 0;
    std::size_t effects_ = 1;
    std::vector<std::size_t> sizes_;
    std::vector<double> within_;
    std::vector<double> projections_;
    std::vector<std::array<double, 3>> triangles_;
};

}  // namespace sorvane
