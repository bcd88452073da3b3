#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

struct RegressionCoefficient {
    std::string name{};
    double estimate = 0.0;
    double standardError = 0.0;
    double t = 0.0;
    double pValue = 1.0;
    double lowerBound = 0.0;
    double upperBound = 0.0;
    /// b s_x / s_y; absent for the intercept.
    std::optional<double> standardizedEstimate{};

    bool operator==(const RegressionCoefficient&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    RegressionCoefficient,
    (),
    (name, estimate, standardError, t, pValue, lowerBound, upperBound, standardizedEstimate))

struct MultipleRegressionResult {
    /// "Intercept", then one for each predictor.
    std::vector<RegressionCoefficient> coefficients{};
    std::int64_t n = 0;
    std::int64_t predictorCount = 0;
    double rSquared = 0.0;
    double adjustedRSquared = 0.0;
    double fStatistic = 0.0;
    std::int64_t dfModel = 0;
    std::int64_t dfResidual = 0;
    double pValue = 1.0;
    double residualStandardError = 0.0;
    AnalysisReadiness readiness{};

    bool operator==(const MultipleRegressionResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(MultipleRegressionResult,
                      (),
                      (coefficients,
                       n,
                       predictorCount,
                       rSquared,
                       adjustedRSquared,
                       fStatistic,
                       dfModel,
                       dfResidual,
                       pValue,
                       residualStandardError,
                       readiness))

struct RegressionOptions {
    /// One name per predictor.
    std::vector<std::string> predictorNames{};
    double confidenceLevel = 0.95;
};

namespace RegressionTests {

/// Ordinary least squares of the outcome on an intercept and the predictors.
///
/// Input      columns of one length; rows with an absent entry are left out
/// Method     Householder QR of the centred columns, in row blocks. Centring leaves the residual
///            norms of the columns, on which the rank test rests, as they are
/// Returns    a figure that cannot be had is NaN: without residual degrees of freedom, with an
///            outcome that does not vary or without predictors; a perfect fit has standard
///            errors of 0, infinite test statistics and p-values of 0
/// Failure    names or lengths that do not match, fewer cases than coefficients, a collinear
///            predictor or one that is constant but for rounding, a value that is not finite ->
///            absent
/// Accuracy   rounding times the condition number of the centred predictors, whatever their offsets
/// Cost       O(n p^2) and a copy of the columns
[[nodiscard]] std::optional<MultipleRegressionResult> ordinaryLeastSquares(
    std::span<const std::span<const double>> predictors,
    std::span<const double> outcome,
    const RegressionOptions& options);
[[nodiscard]] std::optional<MultipleRegressionResult> ordinaryLeastSquares(
    std::span<const NumericColumn> predictors,
    const NumericColumn& outcome,
    const RegressionOptions& options);

}  // namespace RegressionTests

}  // namespace sorvane
