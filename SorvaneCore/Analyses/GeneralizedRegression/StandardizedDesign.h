#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// Estimates of a model and their standard errors.
struct EstimatesWithErrors {
    std::vector<double> estimates{};
    std::vector<double> standardErrors{};
};

/// The complete rows of an outcome and its predictors, these in standard deviations from their
/// means. A model's fit does not depend on the units of its predictors, but tests for singularity
/// and convergence do.
struct StandardizedDesign {
    std::vector<double> outcome{};
    /// rows * cols entries, row-major; the first column is 1.
    std::vector<double> matrix{};
    /// One per predictor.
    std::vector<double> means{};
    std::vector<double> deviations{};
    /// Rows before listwise deletion.
    std::size_t totalRows = 0;
    /// Of the matrix: the predictors and the column of ones.
    std::size_t cols = 0;
    /// No predictor is constant or a sum of others.
    bool hasFullRank = false;

    std::size_t rows() const { return outcome.size(); }
    bool isFinite() const;

    /// Input      one name per predictor
    /// Failure    names or lengths that do not match -> absent
    /// Cost       O(rows * cols^2)
    static std::optional<StandardizedDesign> of(std::span<const NumericColumn> predictors,
                                                const NumericColumn& outcome,
                                                std::span<const std::string> names);

    /// The fit in the predictors' own units.
    ///
    /// Input      `leading` parameters that stand for the column of ones (an intercept, thresholds),
    ///            then the slopes; their covariance matrix; what the mean of a predictor times its
    ///            slope does to a leading one, 1 or -1
    EstimatesWithErrors inOwnUnits(std::span<const double> parameters,
                                   std::span<const double> covariance,
                                   std::size_t leading,
                                   double meanSign) const;
};

}  // namespace sorvane
