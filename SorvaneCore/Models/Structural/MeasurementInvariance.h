#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

/// What is held equal in all groups: the form alone, the loadings too, the intercepts too.
enum class InvarianceLevel { configural, metric, scalar };
BOOST_DESCRIBE_ENUM(InvarianceLevel, configural, metric, scalar)
std::string_view displayName(InvarianceLevel level);

/// The factor in one group; the loading of the first item is 1.
struct InvarianceGroupEstimates {
    std::string name{};
    std::vector<double> loadings{};
    std::vector<double> intercepts{};
    std::vector<double> residualVariances{};
    double factorVariance = std::numeric_limits<double>::quiet_NaN();
    /// 0 in the first group, and in all of them unless intercepts are equal.
    double factorMean = std::numeric_limits<double>::quiet_NaN();

    bool operator==(const InvarianceGroupEstimates&) const = default;
};
BOOST_DESCRIBE_STRUCT(InvarianceGroupEstimates,
                      (),
                      (name, loadings, intercepts, residualVariances, factorVariance, factorMean))

/// One model over all groups.
struct InvarianceFit {
    InvarianceLevel level = InvarianceLevel::configural;
    bool converged = false;
    std::int64_t iterations = 0;
    double chiSquare = std::numeric_limits<double>::quiet_NaN();
    std::int64_t degreesOfFreedom = 0;
    /// NaN without degrees of freedom.
    double pValue = std::numeric_limits<double>::quiet_NaN();
    double cfi = std::numeric_limits<double>::quiet_NaN();
    double tli = std::numeric_limits<double>::quiet_NaN();
    /// With its 90% interval.
    double rmsea = std::numeric_limits<double>::quiet_NaN();
    std::optional<double> rmseaLower{};
    std::optional<double> rmseaUpper{};
    double srmr = std::numeric_limits<double>::quiet_NaN();
    double logLikelihood = std::numeric_limits<double>::quiet_NaN();
    double aic = std::numeric_limits<double>::quiet_NaN();
    double bic = std::numeric_limits<double>::quiet_NaN();
    std::int64_t parameterCount = 0;
    /// In the order of the groups.
    std::vector<InvarianceGroupEstimates> groups{};

    bool operator==(const InvarianceFit&) const = default;
};
BOOST_DESCRIBE_STRUCT(InvarianceFit,
                      (),
                      (level,
                       converged,
                       iterations,
                       chiSquare,
                       degreesOfFreedom,
                       pValue,
                       cfi,
                       tli,
                       rmsea,
                       rmseaLower,
                       rmseaUpper,
                       srmr,
                       logLikelihood,
                       aic,
                       bic,
                       parameterCount,
                       groups))

/// A model against the one that holds less equal.
struct InvarianceComparison {
    InvarianceLevel level = InvarianceLevel::metric;
    InvarianceLevel against = InvarianceLevel::configural;
    double chiSquareDifference = std::numeric_limits<double>::quiet_NaN();
    std::int64_t dfDifference = 0;
    double pValue = std::numeric_limits<double>::quiet_NaN();
    /// Of the stricter model less the other: a CFI that falls is negative.
    double deltaCFI = std::numeric_limits<double>::quiet_NaN();
    double deltaRMSEA = std::numeric_limits<double>::quiet_NaN();
    /// A CFI that falls by no more than 0.010 and an RMSEA that grows by no more than 0.015.
    bool isWithinCutoffs = false;

    bool operator==(const InvarianceComparison&) const = default;
};
BOOST_DESCRIBE_STRUCT(InvarianceComparison,
                      (),
                      (level,
                       against,
                       chiSquareDifference,
                       dfDifference,
                       pValue,
                       deltaCFI,
                       deltaRMSEA,
                       isWithinCutoffs))

/// What freeing a loading (at the metric level) or an intercept (at the scalar one) of one item in
/// one group would do to the fit.
struct InvarianceHint {
    InvarianceLevel level = InvarianceLevel::metric;
    std::string itemName{};
    std::string groupName{};
    /// By how much chi-square would about fall, on 1 degree of freedom.
    double modificationIndex = 0.0;
    double pValue = 1.0;
    /// By how much the coefficient would about differ from the common one, the factor having
    /// variance 1 in the first group.
    double expectedChange = 0.0;

    bool operator==(const InvarianceHint&) const = default;
};
BOOST_DESCRIBE_STRUCT(InvarianceHint,
                      (),
                      (level, itemName, groupName, modificationIndex, pValue, expectedChange))

/// How far the factor mean of a group lies from that of the first, in standard deviations of the
/// factor in the first group.
struct LatentMeanDifference {
    std::string groupName{};
    double difference = 0.0;
    double standardError = 0.0;
    double z = 0.0;
    double pValue = 1.0;

    bool operator==(const LatentMeanDifference&) const = default;
};
BOOST_DESCRIBE_STRUCT(LatentMeanDifference, (), (groupName, difference, standardError, z, pValue))

struct InvarianceResult {
    std::vector<std::string> itemNames{};
    std::string groupFactorName{};
    /// In order of first appearance among the complete rows, with their cases.
    std::vector<std::string> groups{};
    std::vector<std::int64_t> groupSizes{};
    /// Configural, metric, scalar; none where blocked. Numbers are NaN where one did not converge.
    std::vector<InvarianceFit> fits{};
    /// Metric against configural, scalar against metric, where both converged.
    std::vector<InvarianceComparison> comparisons{};
    /// The largest modification index first within each level; two groups share one hint an item.
    std::vector<InvarianceHint> hints{};
    /// Under scalar invariance, of all groups but the first.
    std::vector<LatentMeanDifference> latentMeans{};
    std::int64_t n = 0;
    AnalysisReadiness readiness{};

    bool operator==(const InvarianceResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(InvarianceResult,
                      (),
                      (itemNames,
                       groupFactorName,
                       groups,
                       groupSizes,
                       fits,
                       comparisons,
                       hints,
                       latentMeans,
                       n,
                       readiness))

struct InvarianceOptions {
    /// One name per item.
    std::vector<std::string> itemNames{};
    std::string groupFactorName{};
};

/// Whether one factor behind several items is measured alike in all groups.
namespace MeasurementInvariance {

/// A CFI may fall, an RMSEA grow, by no more than this from one level to the next.
inline constexpr double cfiCutoff = 0.010;
inline constexpr double rmseaCutoff = 0.015;

/// Input      columns of one length; rows with a missing cell are left out. Groups are the cells'
///            texts, in order of first appearance
/// Method     one-factor models of means and covariances by normal-theory maximum likelihood (n in
///            the denominator), by Fisher scoring with the factor's variance 1 in the first group:
///            all free in each group; loadings equal, factor variances free; intercepts equal too,
///            factor means free but in the first group. Chi-square n F; RMSEA times the root of the
///            number of groups; the baseline has free means and variances in each group.
///            Modification indices are score tests by the expected information
/// Returns    cautions for groups below 100 cases, residual variances below 0, models that did not
///            converge, items of few categories
/// Failure    blocked: fewer than two groups or three items, a group with no more cases than items
///            or with collinear or constant items, a configural model that does not converge.
///            Absent: lengths or names that do not match, no items
/// Accuracy   chi-squares 1e-7 relative; estimates 1e-6
/// Cost       O(n p^2) and about ten rounds of O((3 p groups)^3) a model
/// Reference  Meredith (1993), Measurement invariance, factor analysis and factorial invariance;
///            Cheung and Rensvold (2002); Chen (2007), Sensitivity of goodness of fit indexes
std::optional<InvarianceResult> test(std::span<const NumericColumn> items,
                                     const TextColumn& groups,
                                     const InvarianceOptions& options);

}  // namespace MeasurementInvariance

}  // namespace sorvane
