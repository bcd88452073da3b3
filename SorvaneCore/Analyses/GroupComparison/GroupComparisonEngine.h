#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Analyses/Basics/NamedNumericGroup.h"
#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonRecords.h"
#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

/// The one-way comparison of a numeric outcome across groups.
namespace GroupComparisonEngine {

using HomogeneityTests::homogeneityTests;
using HomogeneityTests::leveneTest;

/// Whether the columns can be compared and what the user must be told first.
///
/// Input      a group and an outcome per row, read up to the end of the shorter column; a row whose
///            group is blank or a missing marker is left out
/// Returns    `totalRows` are the rows read, `validCases` those with a group and an outcome,
///            `usableGroups` the groups with two outcomes or more
AnalysisReadiness readiness(const TextColumn& groupValues, const NumericColumn& outcomeValues);

/// Every omnibus test that the data allow, the one that a fixed rule picks among them, its post-hoc
/// family, effect sizes, warnings and sentences.
///
/// Input      as for `readiness`
/// Method     groups stand in the order of their labels, case ignored, digits read as letters
///            ("10" before "2"). Welch is picked when the Brown-Forsythe test of equal variances
///            has p < 0.05, then Games-Howell; otherwise the classic test with Tukey's HSD, and
///            Kruskal-Wallis with Dunn's test where neither can be had. Where the family is empty,
///            Holm's pairwise t-tests take its place
/// Failure    fewer than two groups of two outcomes -> absent
/// Cost       O(n) and a radix sort; about 1 ms for each pair of groups under Games-Howell
[[nodiscard]] std::optional<GroupComparisonAnalysisResult> analyze(
    const TextColumn& groupValues,
    const NumericColumn& outcomeValues,
    const GroupComparisonOptions& options);

/// Welch's heteroscedastic F test.
///
/// Input      groups of fewer than two values, and those that do not vary, are left out
/// Failure    fewer than two groups, or an F or df that is not finite -> absent
/// Reference  Welch (1951), On the comparison of several mean values: an alternative approach
std::optional<ANOVAResult> welchANOVA(std::span<const NamedNumericGroup> groups);

/// The F* of Brown and Forsythe: the sum of squares between groups over the sum of
/// (1 - n_i/N) s_i^2.
///
/// Input      groups of fewer than two values are left out
/// Failure    fewer than two groups, or none that varies -> absent
/// Reference  Brown and Forsythe (1974), The small sample behavior of some statistics which test
///            the equality of several means
std::optional<ANOVAResult> brownForsytheANOVA(std::span<const NamedNumericGroup> groups);

/// The rank test H, corrected for ties, on the chi-square distribution.
///
/// Input      groups without values are left out
/// Method     from squared deviations of the mean ranks, so that H is never below 0
/// Returns    epsilon squared is NaN when every group has one value
/// Failure    fewer than two groups -> absent      Cost one radix sort
std::optional<ANOVAResult> kruskalWallis(std::span<const NamedNumericGroup> groups);

/// Tukey's honestly significant differences, in Kramer's form for unequal groups.
///
/// Input      groups without values are left out
/// Failure    fewer than two groups, `msWithin` not above 0, `dfWithin` below 2 -> no pairs
/// Accuracy   that of `MathDistributions::studentizedRangeCDF`
std::vector<PairwiseComparisonResult> tukeyHSD(std::span<const NamedNumericGroup> groups,
                                               double msWithin,
                                               std::int64_t dfWithin);

/// The pairs of Games and Howell, each under its own variances and degrees of freedom.
///
/// Input      groups of fewer than two values are left out; so is a pair that does not vary or has
///            fewer than two degrees of freedom
std::vector<PairwiseComparisonResult> gamesHowell(std::span<const NamedNumericGroup> groups);

/// Dunn's comparison of mean ranks over the pooled sample, adjusted after Holm.
///
/// Failure    values that are all equal -> no pairs      Cost one radix sort
/// Reference  Dunn (1964), Multiple comparisons using rank sums
std::vector<PairwiseComparisonResult> dunnTest(std::span<const NamedNumericGroup> groups);

/// A t-test for each pair of groups, p adjusted by `method`; intervals are not adjusted.
///
/// Input      groups of fewer than two values are left out; so is a pair without a standard error
///            above 0
/// Method     the variance is pooled per pair, not over all groups
std::vector<PairwiseComparisonResult> pairwiseTTests(std::span<const NamedNumericGroup> groups,
                                                     PostHocMethod method,
                                                     VarianceAssumption variances);

/// p-values adjusted after Holm or Bonferroni, in their order; unchanged for other methods.
std::vector<double> adjust(std::span<const double> pValues, PostHocMethod method);

}  // namespace GroupComparisonEngine

}  // namespace sorvane
