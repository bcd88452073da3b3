#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Models/Multilevel/MultilevelData.h"
#include "SorvaneCore/Models/Multilevel/MultilevelResult.h"

namespace sorvane {

/// The log odds of a level up to the cut point in an average cluster, all predictors at 0.
struct MultilevelOrdinalThreshold {
    /// The levels on both sides: "2|3".
    std::string name{};
    double estimate = 0.0;
    double standardError = 0.0;

    bool operator==(const MultilevelOrdinalThreshold&) const = default;
};
BOOST_DESCRIBE_STRUCT(MultilevelOrdinalThreshold, (), (name, estimate, standardError))

struct MultilevelOrdinalResult {
    /// One per predictor: the log odds of a higher level within a cluster. NaN where blocked.
    std::vector<MultilevelFixedEffect> fixedEffects{};
    /// exp of estimates and bounds, one per predictor.
    std::vector<double> oddsRatios{};
    std::vector<double> oddsRatioLowerBounds{};
    std::vector<double> oddsRatioUpperBounds{};
    /// None where blocked.
    std::vector<MultilevelOrdinalThreshold> thresholds{};
    /// The clusters' intercept; none where blocked.
    std::vector<MultilevelVarianceComponent> varianceComponents{};
    /// The intercept's share in its variance and that of a logistic variable, pi^2 / 3: of the
    /// scale underlying the answers, not of the answers.
    std::optional<double> latentICC{};
    /// Marginal; NaN where blocked.
    double logLikelihood = std::numeric_limits<double>::quiet_NaN();
    double aic = std::numeric_limits<double>::quiet_NaN();
    double bic = std::numeric_limits<double>::quiet_NaN();
    /// The levels that occur, lowest first, and their cases.
    std::vector<std::string> levels{};
    std::vector<std::int64_t> levelCounts{};
    /// Complete cases.
    std::int64_t n = 0;
    std::int64_t nClusters = 0;
    std::int64_t predictorCount = 0;
    bool converged = false;
    /// Newton steps.
    std::int64_t iterations = 0;
    AnalysisReadiness readiness{};

    bool operator==(const MultilevelOrdinalResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(MultilevelOrdinalResult,
                      (),
                      (fixedEffects,
                       oddsRatios,
                       oddsRatioLowerBounds,
                       oddsRatioUpperBounds,
                       thresholds,
                       varianceComponents,
                       latentICC,
                       logLikelihood,
                       aic,
                       bic,
                       levels,
                       levelCounts,
                       n,
                       nClusters,
                       predictorCount,
                       converged,
                       iterations,
                       readiness))

/// Proportional-odds models of an ordered outcome with a random intercept by cluster:
/// logit P(Y <= j) = threshold j - x'b - u, u normal.
namespace MultilevelOrdinal {

/// Input      as for `MultilevelModel::fit`; the outcome's distinct numbers in ascending order are
///            the levels. The second factor, the slope, the estimator and the method for df are not
///            read
/// Method     marginal maximum likelihood: the intercept of each cluster is integrated by 15-point
///            adaptive Gauss-Hermite quadrature about its mode; Newton's iteration on standardized
///            predictors, from the fit without clusters and four spreads. Errors from the joint
///            Hessian of thresholds, slopes and spread. Normal p-values and bounds
/// Failure    absent: as `MultilevelModel::fit`. Blocked: fewer than two clusters or three levels,
///            too few cases, collinear predictors, separation, no convergence
/// Accuracy   estimates 1e-5, errors 1e-4 relative to those of the usual package
/// Cost       O(15 n p) an evaluation, about ten of them; clusters on all threads
/// Reference  Hedeker and Gibbons (1994), A random-effects ordinal regression model for multilevel
///            analysis; Pinheiro and Bates (1995)
std::optional<MultilevelOrdinalResult> fit(const MultilevelData& data,
                                           const MultilevelOptions& options);

/// The departures of the clusters fitted to the same data, in order of first appearance: the most
/// likely values given the estimates, with the errors of the curvature.
///
/// Failure    a result that is blocked or of other data -> none
std::vector<MultilevelClusterEffect> clusterEffects(const MultilevelData& data,
                                                    const MultilevelOptions& options,
                                                    const MultilevelOrdinalResult& result);

/// What was found, in one sentence; empty for a blocked result.
std::string summary(const MultilevelOrdinalResult& result);

}  // namespace MultilevelOrdinal

}  // namespace sorvane
