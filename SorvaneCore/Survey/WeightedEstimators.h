#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Survey/SurveyDesign.h"

namespace sorvane {

enum class DesignVarianceMethod { taylorLinearization, replicateWeights, naiveWeighted };
BOOST_DESCRIBE_ENUM(DesignVarianceMethod, taylorLinearization, replicateWeights, naiveWeighted)

enum class WeightedEstimand { mean, total, proportion, ratio };
BOOST_DESCRIBE_ENUM(WeightedEstimand, mean, total, proportion, ratio)

/// An estimate for the population that the sample stands for.
struct WeightedEstimate {
    std::optional<std::string> variableName{};
    WeightedEstimand estimand = WeightedEstimand::mean;
    double estimate = std::numeric_limits<double>::quiet_NaN();
    double standardError = std::numeric_limits<double>::quiet_NaN();
    double confidenceIntervalLower = std::numeric_limits<double>::quiet_NaN();
    double confidenceIntervalUpper = std::numeric_limits<double>::quiet_NaN();
    double confidenceLevel = 0.95;
    std::int64_t designDegreesOfFreedom = 1;
    DesignVarianceMethod varianceMethod = DesignVarianceMethod::naiveWeighted;
    /// Of the rows that count.
    double sumOfWeights = 0.0;
    std::int64_t validN = 0;
    std::int64_t totalN = 0;
    /// Cases of equal weight that would tell as much (Kish).
    std::optional<double> effectiveSampleSize{};
    /// The variance as a multiple of that of a simple random sample with the same weights.
    std::optional<double> designEffect{};
    AnalysisReadiness readiness{};

    bool operator==(const WeightedEstimate&) const = default;
};
BOOST_DESCRIBE_STRUCT(WeightedEstimate,
                      (),
                      (variableName,
                       estimand,
                       estimate,
                       standardError,
                       confidenceIntervalLower,
                       confidenceIntervalUpper,
                       confidenceLevel,
                       designDegreesOfFreedom,
                       varianceMethod,
                       sumOfWeights,
                       validN,
                       totalN,
                       effectiveSampleSize,
                       designEffect,
                       readiness))

/// The estimate of one subgroup.
struct DomainEstimate {
    std::string group{};
    WeightedEstimate estimate{};

    bool operator==(const DomainEstimate&) const = default;
};
BOOST_DESCRIBE_STRUCT(DomainEstimate, (), (group, estimate))

/// Design-based estimates with their standard errors.
///
/// Input      columns of one entry per row of the design; rows with an absent or infinite value do
///            not count
/// Method     linearization (Taylor) over strata and primary sampling units that hold a row that
///            counts, or the estimate made again under each replicate weight; t limits on the
///            degrees of freedom of the whole design. A
///            replicate whose denominator is 0 adds nothing, though it counts among all, and is
///            told of. An error below 1e-12 of the estimate is rounding and counts as 0
/// Failure    a structural error of the design, a column of another length, fewer than two rows
///            that count, or sums beyond all numbers -> blocked, with NaN for the estimate, its
///            error and its limits
/// Cost       O(rows), and O(rows) a replicate, on all cores with the same result
/// Reference  Lumley (2010), Complex Surveys; Binder (1983)
namespace WeightedEstimators {

/// How the errors of an estimate under the design are found.
DesignVarianceMethod varianceMethod(const SurveyDesign& design);

WeightedEstimate mean(const NumericColumn& values,
                      const SurveyDesign& design,
                      std::optional<std::string> variableName = std::nullopt);

WeightedEstimate total(const NumericColumn& values,
                       const SurveyDesign& design,
                       std::optional<std::string> variableName = std::nullopt);

/// The share of ones.
///
/// Failure    a value other than 0 and 1 -> blocked
WeightedEstimate proportion(const NumericColumn& values,
                            const SurveyDesign& design,
                            std::optional<std::string> variableName = std::nullopt);

/// The total of the numerator over that of the denominator.
WeightedEstimate ratio(const NumericColumn& numerator,
                       const NumericColumn& denominator,
                       const SurveyDesign& design,
                       std::optional<std::string> variableName = std::nullopt);

/// A mean, total or proportion of each subgroup, by label.
///
/// Method     the whole sample keeps its strata and units, in which rows of other groups count as
///            zeros: how many rows fall into a group varies from sample to sample too
/// Input      a row without label belongs to no group      Cost O(rows * groups)
std::vector<DomainEstimate> byGroup(WeightedEstimand estimand,
                                    const NumericColumn& values,
                                    const TextColumn& groups,
                                    const SurveyDesign& design,
                                    const std::optional<std::string>& variableName = std::nullopt);

/// A ratio of totals of each subgroup, in the same way.
std::vector<DomainEstimate> ratioByGroup(
    const NumericColumn& numerator,
    const NumericColumn& denominator,
    const TextColumn& groups,
    const SurveyDesign& design,
    const std::optional<std::string>& variableName = std::nullopt);

/// The standard deviation in the population, with the sum of the weights and n / (n - 1).
///
/// Failure    a structural error of the design, a column of another length, fewer than two rows that
///            count -> NaN
double standardDeviation(const NumericColumn& values, const SurveyDesign& design);

/// The linearized variance of the total of one score per row, over the active rows.
double linearizedTotalVariance(std::span<const double> scores,
                               const SurveyDesign& design,
                               std::span<const std::size_t> activeRows);

}  // namespace WeightedEstimators

}  // namespace sorvane
