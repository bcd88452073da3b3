#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Analyses/Categorical/FourCells.h"
#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

struct McNemarResult {
    /// Two rows (before) of two counts (after).
    std::vector<std::vector<std::int64_t>> observed{};
    /// The discordant pairs: from the first category to the second, and back.
    std::int64_t b = 0;
    std::int64_t c = 0;
    /// With the continuity correction.
    double statistic = 0.0;
    std::int64_t degreesOfFreedom = 1;
    double pValue = 1.0;
    /// Binomial, two-sided.
    double exactPValue = 1.0;
    bool usesExactRecommended = false;
    AnalysisReadiness readiness{};

    bool operator==(const McNemarResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(McNemarResult,
                      (),
                      (observed,
                       b,
                       c,
                       statistic,
                       degreesOfFreedom,
                       pValue,
                       exactPValue,
                       usesExactRecommended,
                       readiness))

/// McNemar's test of change between two measurements of one binary outcome.
///
/// Method     max(|b - c| - 1, 0)^2 / (b + c), chi-square with 1 df; exact p twice the lower
///            binomial tail of min(b, c), held at 1
/// Accuracy   as log gamma of b + c allows      Cost O(min(b, c))
namespace McNemarTests {

/// Failure    a negative count, or no discordant pair -> absent
std::optional<McNemarResult> test(const FourCells& counts);

/// Input      columns of one length; rows with a missing cell are left out. Both measurements
///            share the order of their categories, that of first appearance in `before` and then
///            in `after`, so that the same answer twice is always on the diagonal
/// Failure    as above; not exactly two categories in both columns together -> absent
std::optional<McNemarResult> test(const TextColumn& before, const TextColumn& after);

}  // namespace McNemarTests

}  // namespace sorvane
