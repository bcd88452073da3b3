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
#include "SorvaneCore/Analyses/Basics/WilksTest.h"
#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

/// What is taken for the chance of a case to belong to each group before it is measured.
enum class DiscriminantPriors {
    proportional,  ///< the groups' shares of the cases
    equal,         ///< one over the number of groups
};
BOOST_DESCRIBE_ENUM(DiscriminantPriors, proportional, equal)
std::string_view displayName(DiscriminantPriors priors);

/// A weighted combination of the variables, with variance 1 within groups and mean 0 overall.
struct DiscriminantFunction {
    /// Between over within groups.
    double eigenvalue = std::numeric_limits<double>::quiet_NaN();
    /// Of the sum of the eigenvalues, from 0 to 1, NaN where that is 0; with those of the functions
    /// before it.
    double shareOfVariance = std::numeric_limits<double>::quiet_NaN();
    double cumulativeShare = std::numeric_limits<double>::quiet_NaN();
    double canonicalCorrelation = std::numeric_limits<double>::quiet_NaN();
    /// The score is the constant and the sum of variables times coefficients.
    double constant = std::numeric_limits<double>::quiet_NaN();
    std::vector<double> rawCoefficients{};
    /// Per standard deviation within groups.
    std::vector<double> standardizedCoefficients{};
    /// The correlation of each variable with the function, pooled within groups.
    std::vector<double> structure{};

    bool operator==(const DiscriminantFunction&) const = default;
};
BOOST_DESCRIBE_STRUCT(DiscriminantFunction,
                      (),
                      (eigenvalue,
                       shareOfVariance,
                       cumulativeShare,
                       canonicalCorrelation,
                       constant,
                       rawCoefficients,
                       standardizedCoefficients,
                       structure))

struct DiscriminantGroup {
    std::string name{};
    std::int64_t n = 0;
    double prior = std::numeric_limits<double>::quiet_NaN();
    /// Per variable.
    std::vector<double> means{};
    /// The mean score on each function.
    std::vector<double> centroid{};
    /// One list per function, of one score per case in row order.
    std::vector<std::vector<double>> scores{};

    bool operator==(const DiscriminantGroup&) const = default;
};
BOOST_DESCRIBE_STRUCT(DiscriminantGroup, (), (name, n, prior, means, centroid, scores))

/// Where a rule places the cases.
struct DiscriminantClassification {
    /// One row per group that cases belong to, one column per group that they are placed in.
    std::vector<std::vector<std::int64_t>> counts{};
    /// Per group, the share of its cases that are placed in it; and of all cases.
    std::vector<double> groupAccuracy{};
    double accuracy = std::numeric_limits<double>::quiet_NaN();

    bool operator==(const DiscriminantClassification&) const = default;
};
BOOST_DESCRIBE_STRUCT(DiscriminantClassification, (), (counts, groupAccuracy, accuracy))

struct DiscriminantResult {
    std::string groupFactorName{};
    std::vector<std::string> predictorNames{};
    DiscriminantPriors priors = DiscriminantPriors::proportional;
    /// In order of first appearance among the complete rows.
    std::vector<DiscriminantGroup> groups{};
    /// As many as the smaller of variables and groups less one, the strongest first.
    std::vector<DiscriminantFunction> functions{};
    /// From each function onward.
    std::vector<WilksTest> tests{};
    /// Of the very cases that the functions were fitted to, which flatters the rule.
    DiscriminantClassification resubstitution{};
    /// Of each case by the rule of all others.
    DiscriminantClassification leaveOneOut{};
    /// The share that is right when all cases are placed in the largest group.
    double largestGroupShare = std::numeric_limits<double>::quiet_NaN();
    std::int64_t n = 0;
    std::int64_t numberOfGroups = 0;
    std::int64_t numberOfPredictors = 0;
    AnalysisReadiness readiness{};

    bool operator==(const DiscriminantResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(DiscriminantResult,
                      (),
                      (groupFactorName,
                       predictorNames,
                       priors,
                       groups,
                       functions,
                       tests,
                       resubstitution,
                       leaveOneOut,
                       largestGroupShare,
                       n,
                       numberOfGroups,
                       numberOfPredictors,
                       readiness))

struct DiscriminantOptions {
    /// One name per predictor.
    std::vector<std::string> predictorNames{};
    std::string groupFactorName{};
    DiscriminantPriors priors = DiscriminantPriors::proportional;
};

/// Linear functions of several variables that tell known groups apart.
namespace DiscriminantAnalysis {

/// Input      columns of one length; rows with a missing cell are left out. Groups are the cells'
///            texts, in order of first appearance
/// Method     with E and H the squares and products within and between groups and E = LL', the
///            eigenvectors of inv(L) H inv(L)'. Each function is signed so that its largest
///            standardized coefficient is positive. Cases go to the group of the highest posterior
///            under normal distributions of one covariance E / (n - g), the first of equals.
///            Leaving a case out changes its group's mean and the covariance, not the priors; the
///            only case of a group can then not be placed in it
/// Returns    cautions for groups below 5 cases or with no more cases than variables, and for a
///            rule that places no more cases than the largest group has
/// Failure    blocked: fewer than two groups, no more cases than groups plus variables, variables
///            that are collinear within groups or do not vary there, eigenvalues that cannot be
///            had. Absent: lengths or names that do not match, fewer than two predictors
/// Accuracy   rounding times the condition number of E
/// Cost       O(n p (p + g)), leaving one out included
/// Reference  Fisher (1936), The use of multiple measurements in taxonomic problems; Lachenbruch
///            and Mickey (1968), Estimation of error rates in discriminant analysis
std::optional<DiscriminantResult> fit(std::span<const NumericColumn> predictors,
                                      const TextColumn& groups,
                                      const DiscriminantOptions& options);

}  // namespace DiscriminantAnalysis

}  // namespace sorvane
