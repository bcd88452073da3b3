#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Survey/SurveyDesign.h"

namespace sorvane {

/// The rows of a design that count for a model, with predictors turned into columns that tell
/// nothing of each other: powers of a year, which are all but the same, are fitted and tested in
/// them as exactly as any others.
struct SurveyModelFrame {
    const SurveyDesign& design;
    /// Positions in the design.
    std::vector<std::size_t> activeRows{};
    std::vector<double> outcome{};
    /// rows * cols entries, row-major; the first column is 1, the others, with mean 0 and standard
    /// deviation 1, are uncorrelated. Predictors as they stand less their means are these others
    /// times the inverse of `slopeUnits`.
    std::vector<double> matrix{};
    std::size_t cols = 1;
    /// Of the predictors.
    std::vector<double> means{};
    /// What slopes of the matrix are multiplied by to be slopes of the predictors: slopes by
    /// slopes, upper triangular. None without full rank.
    std::vector<double> slopeUnits{};
    /// Standard deviations of the predictors by the weights.
    std::vector<double> populationDeviations{};
    /// No predictor is constant or a sum of others.
    bool hasFullRank = false;

    std::size_t rows() const { return outcome.size(); }
    std::size_t slopes() const { return cols - 1; }
    std::span<const double> row(std::size_t i) const {
        return std::span(matrix).subspan(i * cols, cols);
    }
    /// Those of the active rows among one weight per row of the design, divided by their mean.
    std::vector<double> scaledWeights(std::span<const double> ofDesign) const;

    /// Input      columns as long as the design, which has no structural errors
    /// Method     Householder QR of the standardized predictors
    /// Accuracy   the columns are uncorrelated to rounding times the condition number of the
    ///            standardized predictors
    /// Cost       O(rows * cols^2)
    static SurveyModelFrame of(const NumericColumn& outcome,
                               std::span<const NumericColumn> predictors,
                               const SurveyDesign& design);
};

}  // namespace sorvane
