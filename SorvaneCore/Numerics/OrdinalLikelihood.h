#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "SorvaneCore/Numerics/IRLS.h"

namespace sorvane {

/// The cumulative-logit likelihood of ordered levels.
///
/// Parameters are the thresholds, one fewer than levels, then the slopes: P(level <= j) is the
/// logistic function of threshold j minus the predictors' sum.
class OrdinalLikelihood {
public:
    /// `matrix` has rows of `stride` entries, of which the first is no predictor; `levels` counts
    /// from 0. One weight per row, or none for rows that count once. The data must outlive this.
    OrdinalLikelihood(std::span<const double> matrix,
                      std::size_t stride,
                      std::span<const std::uint32_t> levels,
                      std::size_t levelCount,
                      std::span<const double> weights = {})
        : matrix_(matrix),
          stride_(stride),
          levels_(levels),
          weights_(weights),
          thresholds_(levelCount - 1) {}

    std::size_t parameterCount() const { return thresholds_ + stride_ - 1; }

    /// Log likelihood, gradient and observed information.
    ///
    /// Returns    minus infinity where thresholds are not in increasing order
    /// Cost       O(rows * p^2)
    IRLS::Evaluation at(std::span<const double> parameters) const;

private:
    std::span<const double> matrix_;
    std::size_t stride_;
    std::span<const std::uint32_t> levels_;
    std::span<const double> weights_;
    std::size_t thresholds_;
};

}  // namespace sorvane
