#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Models/Mediation/MediationAnalysis.h"

namespace sorvane {

/// A least-squares fit with an intercept, and the covariance of its coefficients.
struct MediationRegression {
    /// The intercept, then one per column.
    std::vector<double> coefficients{};
    /// Of the coefficients, row-major.
    std::vector<double> covariance{};
    double residualSumOfSquares = 0.0;
    double totalSumOfSquares = 0.0;
    double residualDegreesOfFreedom = 0.0;

    /// Method     Householder QR of the columns about their means, each at a length of 1
    /// Failure    no residual degree of freedom, a constant or collinear column -> absent
    /// Accuracy   rounding times the condition number of the centred columns
    static std::optional<MediationRegression> fit(
        std::span<const std::vector<double>* const> columns, std::span<const double> outcome);

    double standardError(std::size_t coefficient) const;
    MediationPath path(std::size_t coefficient, std::string label) const;
};

}  // namespace sorvane
