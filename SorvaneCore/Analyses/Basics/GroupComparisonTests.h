#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Basics/NamedNumericGroup.h"

namespace sorvane {

/// Whether two groups are taken to share one variance (Student) or not (Welch).
enum class VarianceAssumption { equal, unequal };
BOOST_DESCRIBE_ENUM(VarianceAssumption, equal, unequal)

enum class ANOVAVariant { classicOneWay, welch, brownForsythe, kruskalWallis };
BOOST_DESCRIBE_ENUM(ANOVAVariant, classicOneWay, welch, brownForsythe, kruskalWallis)

std::string_view displayName(ANOVAVariant variant);

struct TTestResult {
    double t = 0.0;
    double degreesOfFreedom = 0.0;
    double pValue = 1.0;
    /// Cohen's d; of two groups, over their pooled standard deviation whatever the test.
    double effectSizeD = 0.0;
    double meanDifference = 0.0;

    bool operator==(const TTestResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(TTestResult, (), (t, degreesOfFreedom, pValue, effectSizeD, meanDifference))

/// One omnibus test of several groups.
struct ANOVAResult {
    ANOVAVariant variant = ANOVAVariant::classicOneWay;
    /// The test statistic: F, or the H of Kruskal-Wallis.
    double f = 0.0;
    std::int64_t dfBetween = 0;
    /// Whole: under Welch and Brown-Forsythe the rounded denominator, at least 1.
    std::int64_t dfWithin = 0;
    double dfNumerator = 0.0;
    double dfDenominator = 0.0;
    double pValue = 1.0;
    /// Epsilon squared for Kruskal-Wallis; 0 under Welch and Brown-Forsythe.
    double etaSquared = 0.0;
    /// 0 for Welch and Kruskal-Wallis.
    double ssBetween = 0.0;
    /// The denominator of F for Brown-Forsythe; 0 for Welch and Kruskal-Wallis.
    double ssWithin = 0.0;

    bool operator==(const ANOVAResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(ANOVAResult,
                      (),
                      (variant,
                       f,
                       dfBetween,
                       dfWithin,
                       dfNumerator,
                       dfDenominator,
                       pValue,
                       etaSquared,
                       ssBetween,
                       ssWithin))

/// Two groups compared under the mean square of all.
struct ANOVAPairwiseComparison {
    std::string groupI{};
    std::string groupJ{};
    double meanDifference = 0.0;
    double standardError = 0.0;
    /// Adjusted for the number of pairs.
    double pValue = 1.0;
    double lowerBound = 0.0;
    double upperBound = 0.0;

    bool operator==(const ANOVAPairwiseComparison&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    ANOVAPairwiseComparison,
    (),
    (groupI, groupJ, meanDifference, standardError, pValue, lowerBound, upperBound))

/// The plain tests of means. p-values are two-sided under Student's t.
///
/// Accuracy   deviations from corrected means: a large offset costs no digits, and values, or
///            differences of pairs, that are equal but for rounding have a variance of exactly 0
/// Cost       O(n), two passes over the values
namespace GroupComparisonTests {

/// t = (mean - mu) / (s / sqrt n) on n - 1 degrees of freedom, d = (mean - mu) / s.
///
/// Failure    fewer than two values, or s not above 0 -> absent
std::optional<TTestResult> oneSampleTTest(std::span<const double> values, double populationMean);

/// The one-sample test of before - after against 0.
///
/// Input      one entry per subject; a subject without both is left out
/// Failure    lists of different lengths, or as for one sample -> absent
std::optional<TTestResult> pairedSamplesTTest(std::span<const double> before,
                                              std::span<const double> after);
std::optional<TTestResult> pairedSamplesTTest(std::span<const std::optional<double>> before,
                                              std::span<const std::optional<double>> after);

/// Student's test of the mean of a less that of b, or Welch's with Satterthwaite's degrees of
/// freedom.
///
/// Failure    a group of fewer than two values, or a standard error not above 0 -> absent
std::optional<TTestResult> independentSamplesTTest(std::span<const double> a,
                                                   std::span<const double> b,
                                                   VarianceAssumption variances);

/// Classic one-way analysis of variance.
///
/// Input      groups of fewer than two values are left out
/// Failure    fewer than two groups, or no variation within groups -> absent
std::optional<ANOVAResult> oneWayANOVA(std::span<const NamedNumericGroup> groups);

/// Every pair of groups, with Sidak's adjustment for the number of pairs.
///
/// Input      the classic analysis of the same groups, of which it takes the mean square; groups
///            of fewer than two values are left out
/// Method     m pairs: p becomes 1 - (1 - p)^m, and each interval has the level^(1/m)
/// Failure    a level outside (0, 1) -> no pairs
std::vector<ANOVAPairwiseComparison> pairwiseComparisons(std::span<const NamedNumericGroup> groups,
                                                         const ANOVAResult& anova,
                                                         double familyConfidenceLevel = 0.95);

}  // namespace GroupComparisonTests

}  // namespace sorvane
