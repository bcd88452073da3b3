#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

struct FactorAnalysisResult {
    std::int64_t itemCount = 0;
    std::int64_t casesUsed = 0;
    std::int64_t factorCount = 0;
    /// One row per item, one column per factor.
    std::vector<std::vector<double>> loadings{};
    /// The same after rotation; with one factor the loadings as they are.
    std::vector<std::vector<double>> varimaxLoadings{};
    std::vector<double> communalities{};
    /// 1 - communality, not below 0.
    std::vector<double> uniquenesses{};
    /// Of each unrotated factor: sum of squared loadings, and its share of the number of items.
    std::vector<double> varianceExplained{};
    std::vector<double> proportionExplained{};
    std::int64_t iterations = 0;
    bool converged = false;
    std::optional<AnalysisReadiness> readiness{};

    bool operator==(const FactorAnalysisResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(FactorAnalysisResult,
                      (),
                      (itemCount,
                       casesUsed,
                       factorCount,
                       loadings,
                       varimaxLoadings,
                       communalities,
                       uniquenesses,
                       varianceExplained,
                       proportionExplained,
                       iterations,
                       converged,
                       readiness))

/// Exploratory factor analysis by iterated principal axes and varimax rotation.
namespace FactorAnalyzer {

/// Input      as `LatentVariableSupport::prepare`; at least one factor and more items than factors
/// Method     communalities start at squared multiple correlations and are iterated until none
///            changes by 1e-7, at most 100 times; then a normalised varimax rotation
/// Returns    `converged` false after 100 passes; a caution where a communality is above 1.0001
/// Failure    too many or too few factors, items that cannot be prepared -> absent
/// Cost       O(n k^2), and O(k^3) a pass
/// Reference  Harman (1976), Modern Factor Analysis, chapter 8
std::optional<FactorAnalysisResult> analyze(std::span<const NumericColumn> items,
                                            std::int64_t factorCount);

}  // namespace FactorAnalyzer

}  // namespace sorvane
