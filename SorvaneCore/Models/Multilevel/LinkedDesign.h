#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Models/Multilevel/LinkedOutcome.h"
#include "SorvaneCore/Models/Multilevel/MultilevelRows.h"

namespace sorvane {

/// The fixed part of a model of counts or shares, in coordinates in which its likelihood is round
/// without random effects: units are standard errors, the origin is the fit without random effects,
/// or that of the intercept alone where there is none.
class LinkedDesign {
public:
    /// Failure    collinear predictors -> absent
    static std::optional<LinkedDesign> of(const MultilevelRows& rows, LinkedFamily family);

    LinkedFamily family() const { return family_; }
    std::size_t rowCount() const { return outcome_.size(); }
    std::size_t fixedCount() const { return origin_.size(); }
    std::span<const double> outcome() const { return outcome_; }
    /// Of each outcome, see `LinkedMass`.
    std::span<const double> peaks() const { return peaks_; }
    /// The sum of the most that the log masses may be.
    double constant() const { return constant_; }
    /// Of the fixed coordinates, one after another.
    std::span<const double> columns() const { return columns_; }

    /// One per row, without random effects.
    std::vector<double> predictor(std::span<const double> coordinates) const;
    /// The fixed effects.
    std::vector<double> effects(std::span<const double> coordinates) const;
    /// Their variances, from the covariances of the coordinates.
    std::vector<double> variances(std::span<const double> covariance) const;

private:
    LinkedFamily family_ = LinkedFamily::logistic;
    std::vector<double> outcome_;
    std::vector<double> peaks_;
    double constant_ = 0.0;
    /// Column after column.
    std::vector<double> columns_;
    std::vector<double> basePredictor_;
    std::vector<double> origin_;
    /// Fixed effects by coordinate.
    std::vector<double> directions_;
};

}  // namespace sorvane
