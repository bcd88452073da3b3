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
#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

struct LogisticCoefficient {
    std::string name{};
    /// Of the log odds.
    double estimate = 0.0;
    double standardError = 0.0;
    double z = 0.0;
    double pValue = 1.0;
    double lowerBound = 0.0;
    double upperBound = 0.0;
    double oddsRatio = 1.0;
    double oddsRatioLowerBound = 1.0;
    double oddsRatioUpperBound = 1.0;

    bool operator==(const LogisticCoefficient&) const = default;
};
BOOST_DESCRIBE_STRUCT(LogisticCoefficient,
                      (),
                      (name,
                       estimate,
                       standardError,
                       z,
                       pValue,
                       lowerBound,
                       upperBound,
                       oddsRatio,
                       oddsRatioLowerBound,
                       oddsRatioUpperBound))

struct LogisticRegressionResult {
    /// "Intercept", then one for each predictor; empty where the fit is blocked.
    std::vector<LogisticCoefficient> coefficients{};
    std::int64_t n = 0;
    std::int64_t predictorCount = 0;
    std::int64_t events = 0;
    double logLikelihood = std::numeric_limits<double>::quiet_NaN();
    double nullLogLikelihood = std::numeric_limits<double>::quiet_NaN();
    double residualDeviance = std::numeric_limits<double>::quiet_NaN();
    double nullDeviance = std::numeric_limits<double>::quiet_NaN();
    double mcFaddenR2 = std::numeric_limits<double>::quiet_NaN();
    bool converged = false;
    std::int64_t iterations = 0;
    AnalysisReadiness readiness{};

    bool operator==(const LogisticRegressionResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(LogisticRegressionResult,
                      (),
                      (coefficients,
                       n,
                       predictorCount,
                       events,
                       logLikelihood,
                       nullLogLikelihood,
                       residualDeviance,
                       nullDeviance,
                       mcFaddenR2,
                       converged,
                       iterations,
                       readiness))

struct LogisticRegressionOptions {
    /// One name per predictor.
    std::vector<std::string> predictorNames{};
    double confidenceLevel = 0.95;
    int maxIterations = 100;
    /// The largest step, per standard deviation of a predictor, that still counts as a move.
    double tolerance = 1e-10;
};

namespace LogisticRegressionTests {

/// Logistic regression of a yes-or-no outcome on an intercept and the predictors.
///
/// Input      columns of one length, the outcome 0 or 1; rows with an absent entry are left out
/// Method     maximum likelihood by Newton's iteration on the standardized predictors; standard
///            errors from the inverse information, Wald tests and bounds
/// Failure    names or lengths that do not match, an outcome other than 0 or 1 -> absent. Too few
///            cases, one level, collinear predictors, separation, no convergence -> blocked
/// Accuracy   estimates to about 1e-10 standard deviations of a predictor
/// Cost       O(n p^2) an iteration, about six of them
/// Reference  Albert and Anderson (1984), On the existence of maximum likelihood estimates in
///            logistic regression models
[[nodiscard]] std::optional<LogisticRegressionResult> binaryLogistic(
    std::span<const NumericColumn> predictors,
    const NumericColumn& outcome,
    const LogisticRegressionOptions& options);

/// The same for an outcome of two labels, of which `eventLabel` counts as 1.
///
/// Failure    more than two labels -> absent as well
[[nodiscard]] std::optional<LogisticRegressionResult> binaryLogistic(
    std::span<const NumericColumn> predictors,
    const TextColumn& outcomeLabels,
    const LogisticRegressionOptions& options);

/// Which of the labels is the event: the larger of two numbers, otherwise the later in the order of
/// a list ("yes" of "no" and "yes").
///
/// Input      cells that are missing are left out
/// Failure    no or more than two labels -> absent. A single label is the event unless it is 0
[[nodiscard]] std::optional<std::string> eventLabel(const TextColumn& outcomeLabels);

}  // namespace LogisticRegressionTests

}  // namespace sorvane
