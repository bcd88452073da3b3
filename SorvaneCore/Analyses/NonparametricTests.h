#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

struct MannWhitneyResult {
    /// The smaller of U1 and U2.
    double u = 0.0;
    /// Has the sign of U1 less its expectation: above 0 where the first group ranks higher.
    double z = 0.0;
    double pValue = 1.0;
    /// |z| / sqrt(N)
    double effectSizeR = 0.0;
    std::int64_t n1 = 0;
    std::int64_t n2 = 0;

    bool operator==(const MannWhitneyResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(MannWhitneyResult, (), (u, z, pValue, effectSizeR, n1, n2))

struct SignedRankResult {
    /// The sum of the ranks of the positive differences.
    double wPlus = 0.0;
    double z = 0.0;
    double pValue = 1.0;
    /// |z| / sqrt(n)
    double effectSizeR = 0.0;
    /// The differences other than zero.
    std::int64_t n = 0;

    bool operator==(const SignedRankResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(SignedRankResult, (), (wPlus, z, pValue, effectSizeR, n))

struct FriedmanResult {
    double chiSquare = 0.0;
    std::int64_t degreesOfFreedom = 0;
    double pValue = 1.0;
    /// chi-square / (n (k - 1)), from 0 to 1.
    double kendallsW = 0.0;
    std::int64_t subjects = 0;
    std::int64_t conditions = 0;

    bool operator==(const FriedmanResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(FriedmanResult,
                      (),
                      (chiSquare, degreesOfFreedom, pValue, kendallsW, subjects, conditions))

/// Tests on ranks, in their plain asymptotic form.
///
/// Method     normal tails are two-sided, 2 (1 - Phi(|z|)), without a continuity correction
/// Returns    a p-value of NaN where the statistic is not finite
namespace NonparametricTests {

/// The Mann-Whitney U test of two independent groups.
///
/// Method     midranks of the pooled values; z = (U1 - n1 n2 / 2) / sd, whose variance is
///            corrected for ties
/// Failure    a group without values, or all values equal but for rounding -> absent
/// Accuracy   U is exact      Cost one radix sort of all values
std::optional<MannWhitneyResult> mannWhitneyU(std::span<const double> group1,
                                              std::span<const double> group2);

/// The Wilcoxon signed-rank test of paired values.
///
/// Input      lists of one length; of columns, the rows in which both have a number
/// Method     midranks of the absolute differences after - before, without those that are zero but
///            for rounding of the pair; differences tie only where they are the same double. The
///            variance of z is not corrected for ties
/// Failure    lengths that differ, or no difference other than zero -> absent
/// Cost       one radix sort
std::optional<SignedRankResult> wilcoxonSignedRank(std::span<const double> before,
                                                   std::span<const double> after);
std::optional<SignedRankResult> wilcoxonSignedRank(const NumericColumn& before,
                                                   const NumericColumn& after);

/// The Friedman test of conditions that every subject went through.
///
/// Input      a row of values per subject; of columns, one per condition, the rows in which all
///            have a number
/// Method     midranks within each subject, all the same where only rounding tells all values apart;
///            the statistic is not corrected for ties
/// Failure    no rows, fewer than two conditions, rows or columns of different lengths -> absent
/// Cost       O(n k^2)
std::optional<FriedmanResult> friedman(std::span<const std::vector<double>> rowsBySubject);
std::optional<FriedmanResult> friedman(std::span<const NumericColumn> conditions);

}  // namespace NonparametricTests

}  // namespace sorvane
