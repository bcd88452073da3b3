#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Models/Multilevel/ClusterSpread.h"
#include "SorvaneCore/Models/Multilevel/MultilevelSettings.h"

namespace sorvane {

struct MultilevelFixedEffect {
    std::string name{};
    double estimate = 0.0;
    double standardError = 0.0;
    /// The estimate over its standard error: a t ratio where there are degrees of freedom.
    double z = 0.0;
    double pValue = 1.0;
    double lowerBound = 0.0;
    double upperBound = 0.0;
    /// Absent under the normal reference.
    std::optional<double> df{};

    bool operator==(const MultilevelFixedEffect&) const = default;
};
BOOST_DESCRIBE_STRUCT(MultilevelFixedEffect,
                      (),
                      (name, estimate, standardError, z, pValue, lowerBound, upperBound, df))

struct MultilevelVarianceComponent {
    std::string name{};
    double variance = 0.0;
    double standardDeviation = 0.0;

    bool operator==(const MultilevelVarianceComponent&) const = default;
};
BOOST_DESCRIBE_STRUCT(MultilevelVarianceComponent, (), (name, variance, standardDeviation))

struct MultilevelResult {
    /// The intercept, then the predictors in their order; all numbers NaN where blocked.
    std::vector<MultilevelFixedEffect> fixedEffects{};
    /// The clusters' intercept, their slope or the second factor's intercept, the residual; none
    /// where blocked. There is no residual beside counts and shares.
    std::vector<MultilevelVarianceComponent> varianceComponents{};
    /// The share of the intercept in intercept and residual variance; absent for crossed factors,
    /// counts and shares.
    std::optional<double> icc{};
    /// Marginal, with all constants; NaN where blocked.
    double logLikelihood = 0.0;
    /// -2 times the restricted log likelihood, under `reml` alone.
    std::optional<double> remlCriterion{};
    MultilevelEstimator estimator = MultilevelEstimator::reml;
    /// Complete cases.
    std::int64_t n = 0;
    std::int64_t nClusters = 0;
    /// Levels of the second factor.
    std::optional<std::int64_t> nClustersSecondary{};
    /// Without the intercept.
    std::int64_t predictorCount = 0;
    bool converged = false;
    /// How many settings of the variances were tried.
    std::int64_t iterations = 0;
    AnalysisReadiness readiness{};
    std::optional<std::string> randomSlopeName{};
    /// Of the intercept and slope of a cluster, where they may correlate.
    std::optional<double> randomEffectCorrelation{};
    /// Whether these, as far as they may correlate, vary along one line at most: their correlation
    /// where the slope's predictor has its mean is at a bound, or a variance there is 0.
    bool isSingular = false;
    /// What the variances and their correlation come from, of a linear model of nested clusters and
    /// of others with a slope.
    std::optional<ClusterSpread> spread{};

    bool operator==(const MultilevelResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(MultilevelResult,
                      (),
                      (fixedEffects,
                       varianceComponents,
                       icc,
                       logLikelihood,
                       remlCriterion,
                       estimator,
                       n,
                       nClusters,
                       nClustersSecondary,
                       predictorCount,
                       converged,
                       iterations,
                       readiness,
                       randomSlopeName,
                       randomEffectCorrelation))

/// What sets one cluster apart, as a fitted model predicts it.
struct MultilevelClusterEffect {
    std::string cluster{};
    /// Rows of the cluster.
    std::int64_t n = 0;
    /// The departure of its intercept from the fixed one, with its conditional standard error.
    double intercept = 0.0;
    double interceptError = 0.0;
    /// The departure of its slope.
    std::optional<double> slope{};
    /// Beside a slope: the departure where its predictor has its mean.
    double middle = 0.0;

    bool operator==(const MultilevelClusterEffect&) const = default;
};
BOOST_DESCRIBE_STRUCT(MultilevelClusterEffect, (), (cluster, n, intercept, interceptError, slope))

}  // namespace sorvane
