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

struct OrdinalPredictorEffect {
    std::string name{};
    /// Of the log odds of a higher level.
    double estimate = 0.0;
    double standardError = 0.0;
    double z = 0.0;
    double pValue = 1.0;
    double oddsRatio = 1.0;

    bool operator==(const OrdinalPredictorEffect&) const = default;
};
BOOST_DESCRIBE_STRUCT(OrdinalPredictorEffect,
                      (),
                      (name, estimate, standardError, z, pValue, oddsRatio))

/// The log odds of a level up to the cut point, all predictors at 0.
struct OrdinalThreshold {
    /// The levels on both sides: "Low|Medium".
    std::string name{};
    double estimate = 0.0;
    double standardError = 0.0;

    bool operator==(const OrdinalThreshold&) const = default;
};
BOOST_DESCRIBE_STRUCT(OrdinalThreshold, (), (name, estimate, standardError))

struct OrdinalRegressionResult {
    /// Both empty where the fit is blocked.
    std::vector<OrdinalPredictorEffect> predictorEffects{};
    std::vector<OrdinalThreshold> thresholds{};
    std::int64_t n = 0;
    std::int64_t predictorCount = 0;
    std::int64_t levelCount = 0;
    double logLikelihood = std::numeric_limits<double>::quiet_NaN();
    bool converged = false;
    std::int64_t iterations = 0;
    AnalysisReadiness readiness{};

    bool operator==(const OrdinalRegressionResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(OrdinalRegressionResult,
                      (),
                      (predictorEffects,
                       thresholds,
                       n,
                       predictorCount,
                       levelCount,
                       logLikelihood,
                       converged,
                       iterations,
                       readiness))

struct OrdinalRegressionOptions {
    /// One name per predictor.
    std::vector<std::string> predictorNames{};
    int maxIterations = 200;
    /// The largest step, per standard deviation of a predictor, that still counts as a move.
    double tolerance = 1e-10;
};

namespace OrdinalRegressionTests {

/// Proportional-odds regression of an ordered outcome on the predictors: logit P(Y <= j) =
/// threshold j - x'b.
///
/// Input      columns of one length, the outcome numbers whose ascending order is that of the
///            levels; rows with an absent entry are left out
/// Method     maximum likelihood by Newton's iteration on the standardized predictors, from the
///            cumulative shares; standard errors from the observed Hessian
/// Failure    names or lengths that do not match -> absent. Too few cases, fewer than three levels,
///            collinear predictors, separation, no convergence -> blocked
/// Accuracy   estimates to about 1e-10 standard deviations of a predictor
/// Cost       O(n p^2 + (p + levels)^3) an iteration, about six of them: three seconds for 1,000
///            levels, minutes for 2,000
/// Reference  McCullagh (1980), Regression models for ordinal data
[[nodiscard]] std::optional<OrdinalRegressionResult> proportionalOdds(
    std::span<const NumericColumn> predictors,
    const NumericColumn& outcomeLevels,
    const OrdinalRegressionOptions& options);

/// The same for an outcome of labels whose order, lowest first, is given.
///
/// Input      cells that are missing are left out; labels and order are compared trimmed
/// Failure    a label that is not in the order, or stands in it twice -> absent as well. A level of
///            the order that does not occur -> blocked
[[nodiscard]] std::optional<OrdinalRegressionResult> proportionalOdds(
    std::span<const NumericColumn> predictors,
    const TextColumn& outcomeLabels,
    std::span<const std::string> order,
    const OrdinalRegressionOptions& options);

}  // namespace OrdinalRegressionTests

}  // namespace sorvane
