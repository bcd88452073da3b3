#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/GaussHermite.h"
#include "SorvaneCore/Numerics/IRLS.h"

namespace sorvane {

/// Ordered answers that stand cluster by cluster.
struct OrdinalClusters {
    /// Counted from 0.
    std::span<const std::uint32_t> levels{};
    std::size_t levelCount = 0;
    /// One row of `width` predictors per answer, row-major.
    std::span<const double> predictors{};
    std::size_t width = 0;
    /// Rows of each cluster.
    std::span<const std::size_t> sizes{};

    std::size_t thresholdCount() const { return levelCount - 1; }
    /// Thresholds, slopes, and the standard deviation of the intercept.
    std::size_t parameterCount() const { return thresholdCount() + width + 1; }
};

/// The marginal likelihood of a cumulative logit model with a random intercept.
///
/// A search asks for settings next to each other, so each cluster's mode starts from that of the
/// setting before.
class OrdinalQuadrature {
public:
    /// The data must outlive this.
    explicit OrdinalQuadrature(const OrdinalClusters& data);

    /// Log likelihood, gradient and negative Hessian.
    ///
    /// Input      the parameters in the order of `OrdinalClusters`; the last may be negative and
    ///            counts for its size
    /// Method     15 Gauss-Hermite points about the mode of each cluster, at its curvature; the
    ///            derivatives are those of the integral, taken under the same points
    /// Returns    minus infinity where thresholds are not in increasing order
    /// Cost       O(rows * (points * p + p^2)); clusters on all threads, summed in fixed order
    IRLS::Evaluation at(std::span<const double> parameters);

    /// A cluster's most likely intercept at the setting last asked for, with the error that the
    /// curvature there stands for.
    struct Mode {
        double intercept = 0.0;
        double error = 0.0;
    };
    std::vector<Mode> modes(double sigma) const;

private:
    struct Cluster {
        std::size_t first = 0;
        std::size_t size = 0;
        /// In standard deviations.
        double mode = 0.0;
        double curvature = 1.0;
    };

    OrdinalClusters data_;
    std::vector<Cluster> clusters_;
};

}  // namespace sorvane
