#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

struct ANCOVAAdjustedMean {
    std::string group{};
    std::int64_t n = 0;
    double rawMean = 0.0;
    /// Fitted at the grand means of the covariates.
    double adjustedMean = 0.0;

    bool operator==(const ANCOVAAdjustedMean&) const = default;
};
BOOST_DESCRIBE_STRUCT(ANCOVAAdjustedMean, (), (group, n, rawMean, adjustedMean))

struct ANCOVACovariateEffect {
    std::string name{};
    double coefficient = 0.0;
    double standardError = 0.0;
    double t = 0.0;
    double pValue = 1.0;

    bool operator==(const ANCOVACovariateEffect&) const = default;
};
BOOST_DESCRIBE_STRUCT(ANCOVACovariateEffect, (), (name, coefficient, standardError, t, pValue))

struct ANCOVAResult {
    std::string groupFactorName{};
    /// In order of first appearance.
    std::vector<ANCOVAAdjustedMean> adjustedMeans{};
    std::vector<ANCOVACovariateEffect> covariateEffects{};
    double groupF = 0.0;
    std::int64_t groupDFNumerator = 0;
    std::int64_t groupDFDenominator = 0;
    double groupPValue = 1.0;
    double partialEtaSquared = 0.0;
    std::int64_t n = 0;
    double meanSquareError = 0.0;
    AnalysisReadiness readiness{};

    bool operator==(const ANCOVAResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(ANCOVAResult,
                      (),
                      (groupFactorName,
                       adjustedMeans,
                       covariateEffects,
                       groupF,
                       groupDFNumerator,
                       groupDFDenominator,
                       groupPValue,
                       partialEtaSquared,
                       n,
                       meanSquareError,
                       readiness))

struct ANCOVAOptions {
    /// One name per covariate.
    std::vector<std::string> covariateNames{};
    std::string groupFactorName{};
};

/// The comparison of groups with covariates held constant.
namespace ANCOVATests {

/// Input      columns of one length; rows with a missing cell are left out. Groups are the cells'
///            texts, in order of first appearance
/// Method     least squares with parallel slopes, by deviations from the group means; the reduced
///            model, without groups, by deviations from the grand means
/// Returns    cautions for error df below 20 and for groups below 5 cases
/// Failure    lengths or names that do not match, no covariate, fewer than two groups, no error
///            df, collinear covariates or groups, an outcome or a covariate that does not vary but
///            for rounding, an exact fit, a value that is not finite -> absent
/// Accuracy   rounding times the condition number of the covariates within groups
/// Cost       O(n c^2) for c covariates
std::optional<ANCOVAResult> test(const NumericColumn& outcome,
                                 const TextColumn& groups,
                                 std::span<const NumericColumn> covariates,
                                 const ANCOVAOptions& options);

}  // namespace ANCOVATests

}  // namespace sorvane
