#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// The paired t-test of two conditions, A - B.
struct RMPairwise {
    std::string conditionA{};
    std::string conditionB{};
    double meanDifference = 0.0;
    double t = 0.0;
    double df = 0.0;
    double pValue = 1.0;
    double bonferroniP = 1.0;

    bool operator==(const RMPairwise&) const = default;
};
BOOST_DESCRIBE_STRUCT(RMPairwise,
                      (),
                      (conditionA, conditionB, meanDifference, t, df, pValue, bonferroniP))

struct RMANOVAResult {
    std::vector<std::string> conditionNames{};
    /// Subjects complete in every condition, and conditions.
    std::int64_t n = 0;
    std::int64_t k = 0;
    double grandMean = 0.0;
    std::vector<double> conditionMeans{};
    std::vector<double> conditionSDs{};
    double ssConditions = 0.0;
    double ssError = 0.0;
    double ssSubjects = 0.0;
    double ssTotal = 0.0;
    std::int64_t dfConditions = 0;
    std::int64_t dfError = 0;
    double msConditions = 0.0;
    double msError = 0.0;
    /// NaN, as all p-values of it, where the error variance is zero.
    double f = 0.0;
    double pValue = 1.0;
    double partialEtaSquared = 0.0;
    /// Mauchly's test: NaN where it could not be computed, 1, 0 and 1 with two conditions.
    double mauchlyW = 1.0;
    double mauchlyChiSquare = 0.0;
    std::int64_t mauchlyDF = 0;
    double mauchlyP = 1.0;
    /// Whether Mauchly's p was had and is at least 0.05.
    bool sphericityAssumed = false;
    double greenhouseGeisserEpsilon = 1.0;
    double huynhFeldtEpsilon = 1.0;
    double ggP = 1.0;
    double hfP = 1.0;
    /// Every pair of conditions, in order.
    std::vector<RMPairwise> pairwise{};
    AnalysisReadiness readiness{};

    bool operator==(const RMANOVAResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(RMANOVAResult,
                      (),
                      (conditionNames,
                       n,
                       k,
                       grandMean,
                       conditionMeans,
                       conditionSDs,
                       ssConditions,
                       ssError,
                       ssSubjects,
                       ssTotal,
                       dfConditions,
                       dfError,
                       msConditions,
                       msError,
                       f,
                       pValue,
                       partialEtaSquared,
                       mauchlyW,
                       mauchlyChiSquare,
                       mauchlyDF,
                       mauchlyP,
                       sphericityAssumed,
                       greenhouseGeisserEpsilon,
                       huynhFeldtEpsilon,
                       ggP,
                       hfP,
                       pairwise,
                       readiness))

/// Analysis of variance with one factor within subjects.
namespace RepeatedMeasuresANOVA {

/// Input      a column of one length per condition, each with its name; a subject without a value
///            in every condition is left out
/// Method     the within-subject table of sums of squares; sphericity as in `Sphericity::of`;
///            corrected p-values with the degrees of freedom of F times epsilon
/// Failure    blocked: no error variance. Absent: lengths or names that do not match, fewer than
///            two complete subjects or two conditions
/// Accuracy   sums of squares from deviations; one that is no more than rounding of the values is
///            0, also of the differences of a pair      Cost O(n k^2)
/// Reference  Winer, Brown and Michels (1991), Statistical Principles in Experimental Design,
///            chapter 4
std::optional<RMANOVAResult> test(std::span<const NumericColumn> conditionColumns,
                                  std::span<const std::string> conditionNames);

}  // namespace RepeatedMeasuresANOVA

}  // namespace sorvane
