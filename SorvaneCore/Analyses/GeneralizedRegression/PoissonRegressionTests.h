#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

struct PoissonCoefficient {
    std::string name{};
    /// Of the log rate.
    double estimate = 0.0;
    double standardError = 0.0;
    double z = 0.0;
    double pValue = 1.0;
    double lowerBound = 0.0;
    double upperBound = 0.0;
    double rateRatio = 1.0;
    double rateRatioLowerBound = 1.0;
    double rateRatioUpperBound = 1.0;

    bool operator==(const PoissonCoefficient&) const = default;
};
BOOST_DESCRIBE_STRUCT(PoissonCoefficient,
                      (),
                      (name,
                       estimate,
                       standardError,
                       z,
                       pValue,
                       lowerBound,
                       upperBound,
                       rateRatio,
                       rateRatioLowerBound,
                       rateRatioUpperBound))

struct PoissonRegressionResult {
    /// "Intercept", then one for each predictor; empty where the fit is blocked.
    std::vector<PoissonCoefficient> coefficients{};
    std::int64_t n = 0;
    std::int64_t predictorCount = 0;
    /// With the term -ln y! of every case.
    double logLikelihood = std::numeric_limits<double>::quiet_NaN();
    double residualDeviance = std::numeric_limits<double>::quiet_NaN();
    std::int64_t residualDegreesOfFreedom = 0;
    /// Residual deviance per degree of freedom.
    double dispersion = std::numeric_limits<double>::quiet_NaN();
    bool converged = false;
    std::int64_t iterations = 0;
    AnalysisReadiness readiness{};

    bool operator==(const PoissonRegressionResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(PoissonRegressionResult,
                      (),
                      (coefficients,
                       n,
                       predictorCount,
                       logLikelihood,
                       residualDeviance,
                       residualDegreesOfFreedom,
                       dispersion,
                       converged,
                       iterations,
                       readiness))

struct PoissonRegressionOptions {
    /// One name per predictor.
    std::vector<std::string> predictorNames{};
    double confidenceLevel = 0.95;
    int maxIterations = 100;
    /// The largest step, per standard deviation of a predictor, that still counts as a move.
    double tolerance = 1e-10;
};

namespace PoissonRegressionTests {

/// Poisson regression of a count on an intercept and the predictors, with the log link.
///
/// Input      columns of one length, the outcome whole numbers from 0; rows with an absent entry
///            are left out
/// Method     maximum likelihood by Newton's iteration on the standardized predictors; standard
///            errors from the inverse information, Wald tests and bounds
/// Failure    names or lengths that do not match, an outcome that is no count -> absent. Too few
///            cases, collinear predictors, a rate that goes to 0 or beyond all bounds, no
///            convergence -> blocked
/// Accuracy   estimates to about 1e-10 standard deviations of a predictor
/// Cost       O(n p^2) an iteration, about six of them
[[nodiscard]] std::optional<PoissonRegressionResult> poisson(
    std::span<const NumericColumn> predictors,
    const NumericColumn& outcome,
    const PoissonRegressionOptions& options);

}  // namespace PoissonRegressionTests

}  // namespace sorvane
