#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/MultilevelRows.h"

namespace sorvane {

/// Fixed effects and outcome of a multilevel model on a scale on which their products keep their
/// digits and tests for singularity mean the same whatever the units: predictors centred and of
/// unit variance, the outcome less a least-squares fit.
class ScaledDesign {
public:
    explicit ScaledDesign(const MultilevelRows& rows);

    std::size_t rowCount() const { return rowCount_; }
    /// Fixed effects, the intercept first.
    std::size_t fixedCount() const { return fixedCount_; }
    /// The fixed effects, then the outcome.
    std::size_t width() const { return fixedCount_ + 1; }
    /// The columns one after another.
    std::span<const double> columns() const { return columns_; }

    /// How the estimates of the model come from those on this scale: row j, of one weight for each
    /// scaled effect.
    std::span<const double> weights(std::size_t j) const;
    /// Scaled effects as effects of the model.
    std::vector<double> unscaled(std::span<const double> scaled) const;
    /// The estimates from scaled ones, with what was taken from the outcome.
    std::vector<double> estimates(std::span<const double> scaled) const;
    /// Their variances, from the covariances of the scaled ones.
    std::vector<double> variances(std::span<const double> scaledCovariance) const;
    /// What to add to the log determinant of the scaled X'V^-1 X for that of X'V^-1 X.
    double logDeterminantShift() const { return logDeterminantShift_; }

private:
    void addPredictor(std::span<const double> values, std::size_t j);
    void addOutcome(std::span<const double> values);

    std::size_t rowCount_ = 0;
    std::size_t fixedCount_ = 0;
    std::vector<double> columns_;
    std::vector<double> weights_;
    /// What was taken from the outcome, in scaled effects.
    std::vector<double> offsets_;
    double logDeterminantShift_ = 0.0;
};

/// The quadratic form v'Mv of a square matrix.
double quadraticForm(std::span<const double> matrix, std::span<const double> v);

}  // namespace sorvane
