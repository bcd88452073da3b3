#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Survey/WeightedEstimators.h"

namespace sorvane {

/// Pearson's correlation of two variables in the population that the sample stands for.
struct SurveyCorrelationResult {
    std::string xName{};
    std::string yName{};
    double r = std::numeric_limits<double>::quiet_NaN();
    double standardError = std::numeric_limits<double>::quiet_NaN();
    double t = std::numeric_limits<double>::quiet_NaN();
    double pValue = std::numeric_limits<double>::quiet_NaN();
    double confidenceIntervalLower = std::numeric_limits<double>::quiet_NaN();
    double confidenceIntervalUpper = std::numeric_limits<double>::quiet_NaN();
    double confidenceLevel = 0.95;
    /// By the weights, with n - 1.
    double covariance = std::numeric_limits<double>::quiet_NaN();
    double xVariance = std::numeric_limits<double>::quiet_NaN();
    double yVariance = std::numeric_limits<double>::quiet_NaN();
    /// Strata and primary sampling units of the rows that count.
    std::int64_t stratumCount = 0;
    std::int64_t psuCount = 0;
    std::int64_t designDegreesOfFreedom = 1;
    DesignVarianceMethod varianceMethod = DesignVarianceMethod::naiveWeighted;
    double sumOfWeights = 0.0;
    /// Cases of equal weight that would tell as much (Kish).
    std::optional<double> effectiveSampleSize{};
    std::int64_t validN = 0;
    std::int64_t totalN = 0;
    AnalysisReadiness readiness{};

    bool operator==(const SurveyCorrelationResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(SurveyCorrelationResult,
                      (),
                      (xName,
                       yName,
                       r,
                       standardError,
                       t,
                       pValue,
                       confidenceIntervalLower,
                       confidenceIntervalUpper,
                       confidenceLevel,
                       covariance,
                       xVariance,
                       yVariance,
                       stratumCount,
                       psuCount,
                       designDegreesOfFreedom,
                       varianceMethod,
                       sumOfWeights,
                       effectiveSampleSize,
                       validN,
                       totalN,
                       readiness))

namespace SurveyCorrelation {

/// Input      columns of one entry per row of the design; rows with an absent or infinite value do
///            not count
/// Method     weighted moments; the error by linearization, each row adding w (zx zy - r (zx^2 +
///            zy^2) / 2) / W with z in weighted standard deviations, or by the correlation under
///            each replicate weight. The test is t = r / error on the design's degrees of freedom;
///            the bounds are t bounds of Fisher's z, turned back
/// Failure    a structural error of the design, columns of another length, fewer than three rows, a
///            variable of one value, sums beyond all numbers -> blocked. An error of 0 (below
///            1e-12) is not tested: t, p and bounds NaN
/// Cost       O(rows), and as much a replicate
/// Reference  Binder (1983); Fisher (1921)
SurveyCorrelationResult pearson(const NumericColumn& x,
                                const NumericColumn& y,
                                const SurveyDesign& design,
                                const std::string& xName = {},
                                const std::string& yName = {});

/// Every pair of the variables, (0, 1), (0, 2), ..., each on the rows that hold both.
///
/// Input      `progress`: told after each pair which share of them is done
/// Failure    names that do not match -> absent
std::optional<std::vector<SurveyCorrelationResult>> matrix(
    std::span<const NumericColumn> variables,
    const SurveyDesign& design,
    std::span<const std::string> names,
    const std::function<void(double)>& progress = {});

}  // namespace SurveyCorrelation

}  // namespace sorvane
