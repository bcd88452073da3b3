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

/// One multivariate statistic with its F approximation; NaN where the analysis is blocked.
struct MANOVATestStatistic {
    std::string name{};
    double statistic = 0.0;
    double approxF = 0.0;
    double dfNumerator = 0.0;
    double dfDenominator = 0.0;
    double pValue = 1.0;

    bool operator==(const MANOVATestStatistic&) const = default;
};
BOOST_DESCRIBE_STRUCT(MANOVATestStatistic,
                      (),
                      (name, statistic, approxF, dfNumerator, dfDenominator, pValue))

struct MANOVAResult {
    std::string groupFactorName{};
    std::vector<std::string> dependentNames{};
    /// In order of first appearance among the complete rows.
    std::vector<std::string> groups{};
    MANOVATestStatistic pillai{};
    MANOVATestStatistic wilks{};
    MANOVATestStatistic hotellingLawley{};
    MANOVATestStatistic roy{};
    std::int64_t n = 0;
    std::int64_t numberOfGroups = 0;
    std::int64_t numberOfDependentVariables = 0;
    std::int64_t hypothesisDF = 0;
    std::int64_t errorDF = 0;
    AnalysisReadiness readiness{};

    bool operator==(const MANOVAResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(MANOVAResult,
                      (),
                      (groupFactorName,
                       dependentNames,
                       groups,
                       pillai,
                       wilks,
                       hotellingLawley,
                       roy,
                       n,
                       numberOfGroups,
                       numberOfDependentVariables,
                       hypothesisDF,
                       errorDF,
                       readiness))

struct MANOVAOptions {
    /// One name per outcome.
    std::vector<std::string> dependentNames{};
    std::string groupFactorName{};
};

/// The comparison of groups on several outcomes at once.
namespace MultivariateANOVA {

/// Input      columns of one length; rows with a missing cell are left out. Groups are the cells'
///            texts, in order of first appearance
/// Method     with E and H the squares and products within and between groups and E = LL', all
///            four statistics from the eigenvalues of inv(L) H inv(L)'. F of Wilks' lambda by
///            Rao's approximation; that of Roy's root is an upper bound, so its p is a lower one
/// Returns    cautions for error df below 20 and for groups below 5 cases or with fewer cases
///            than outcomes plus one
/// Failure    blocked: fewer than two groups, no more cases than groups plus outcomes, outcomes
///            that are collinear within groups (a share of 1e-12 or less of an outcome's variance
///            is its own), eigenvalues that cannot be had. Absent: lengths or names that do not
///            match, fewer than two outcomes
/// Accuracy   rounding times the condition number of E      Cost O(n p^2)
/// Reference  Rao (1951), An asymptotic expansion of the distribution of Wilks' criterion
std::optional<MANOVAResult> test(std::span<const NumericColumn> dependentColumns,
                                 const TextColumn& groups,
                                 const MANOVAOptions& options);

}  // namespace MultivariateANOVA

}  // namespace sorvane
