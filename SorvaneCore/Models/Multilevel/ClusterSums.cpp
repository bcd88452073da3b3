#include "SorvaneCore/Models/Multilevel/ClusterSums.h"

#include <cmath>

#include "SorvaneCore/Analyses/Basics/RowPartition.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/ColumnKernels.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane {

namespace {

/// Smallest pivot of a factor.
constexpr double smallestPivot = 1e-18;
/// A slope whose spread in a cluster is below this share of its length does not vary there.
constexpr double constantShare = 1e-12;

}  // namespace

ClusterSums::ClusterSums(const ScaledDesign& design,
                         const ClusterCodes& clusters,
                         std::span<const double> slope)
    : rows_(design.rowCount()),
      width_(design.width()),
      effects_(slope.empty() ? 1 : 2),
      sizes_(clusters.sizes()),
      projections_(clusters.count() * effects_ * width_, 0.0),
      triangles_(clusters.count()) {
    const std::size_t n = design.rowCount();
    const RowPartition partition(clusters.codes, clusters.count());
    std::vector<double> columns;
    columns.reserve(n * width_);
    for (std::size_t j = 0; j < width_; ++j) {
        const std::vector<double> arranged = partition.arranged(design.columns().subspan(j * n, n));
        columns.insert(columns.end(), arranged.begin(), arranged.end());
    }
    const std::vector<double> slopes =
        slope.empty() ? std::vector<double>{} : partition.arranged(slope);
    std::size_t first = 0;
    for (std::size_t c = 0; c < clusters.count(); ++c) {
        const std::span<const double> own =
            slopes.empty() ? std::span<const double>{} : partition.group(std::span(slopes), c);
        reduceCluster(c, std::span(columns).subspan(first), own);
        first += sizes_[c];
    }
    within_ = LinearAlgebra::gramOfColumns(columns, n, width_);
}

/// Leaves of a cluster's part of each column, n apart, what its random effects do not explain.
void ClusterSums::reduceCluster(std::size_t cluster,
                                std::span<double> columns,
                                std::span<const double> slope) {
    const std::size_t size = sizes_[cluster];
    const double root = std::sqrt(static_cast<double>(size));
    std::array<double, 3>& r = triangles_[cluster];
    r = {root, 0.0, 0.0};
    std::vector<double> direction(slope.begin(), slope.end());
    if (!slope.empty()) {
        const double mean = SampleMoments::mean(slope);
        for (double& entry : direction) {
            entry -= mean;
        }
        const double length =
            std::sqrt(ColumnKernels::dot(direction.data(), direction.data(), size));
        const double whole = std::sqrt(ColumnKernels::dot(slope.data(), slope.data(), size));
        r[1] = root * mean;
        r[2] = length > constantShare * whole ? length : 0.0;
        for (double& entry : direction) {
            entry = r[2] > 0.0 ? entry / length : 0.0;
        }
    }
    double* projected = &projections_[cluster * effects_ * width_];
    for (std::size_t j = 0; j < width_; ++j) {
        const std::span<double> column = columns.subspan(j * rows_, size);
        const double mean = SampleMoments::mean(column);
        projected[j] = root * mean;
        for (double& entry : column) {
            entry -= mean;
        }
        if (r[2] > 0.0) {
            const double along = ColumnKernels::dot(direction.data(), column.data(), size);
            projected[width_ + j] = along;
            ColumnKernels::subtractScaled(along, direction.data(), column.data(), size);
        }
    }
}

std::span<const double> ClusterSums::projection(std::size_t cluster) const {
    return std::span(projections_).subspan(cluster * effects_ * width_, effects_ * width_);
}

RandomCovariance ClusterSums::sandwiched(std::size_t cluster, const RandomCovariance& e) const {
    const auto& [r00, r01, r11] = triangles_[cluster];
    const double first0 = r00 * e[0] + r01 * e[2];
    const double first1 = r00 * e[1] + r01 * e[3];
    const double second1 = r11 * e[3];
    const double cross = first1 * r11;
    return {first0 * r00 + first1 * r01, cross, cross, second1 * r11};
}

SmallFactor ClusterSums::factor(std::size_t cluster, const RandomCovariance& g) const {
    const RandomCovariance h = sandwiched(cluster, g);
    SmallFactor result;
    const double first = 1.0 + h[0];
    result.l00 = std::sqrt(first);
    result.l10 = h[1] / result.l00;
    const double second = 1.0 + h[3] - result.l10 * result.l10;
    result.l11 = std::sqrt(second);
    result.isValid = first > smallestPivot && second > smallestPivot;
    return result;
}

}  // namespace sorvane
